# The two commands a user needs: `make run` and `make test`. The rest is for whoever works on it.
PROJECT ?= samples/juchu
BUILD   := cmake --build --preset

.PHONY: run test asan bench lint fuzz clean help

help:
	@sed -n 's/^## //p' $(MAKEFILE_LIST)

## make run [PROJECT=path]   build, then analyse the project (the bundled sample by default)
run: build/release/src/app/oru
	@build/release/src/app/oru analyse "$(PROJECT)"
	@echo
	@build/release/src/app/oru list modules "$(PROJECT)"
	@echo
	@build/release/src/app/oru list procedures "$(PROJECT)" --group
	@echo
	@build/release/src/app/oru unused "$(PROJECT)"

.PHONY: build/release/src/app/oru
build/release/src/app/oru:
	@scripts/install-deps.sh run
	@cmake --preset release >/dev/null
	@$(BUILD) release --target oru >build/release/build.log 2>&1 || { cat build/release/build.log; exit 1; }

## make test                 build and run every test
test:
	@scripts/install-deps.sh test
	@cmake --preset dev >/dev/null
	@$(BUILD) dev
	@ctest --preset dev

## make asan                 the same under the address and undefined-behaviour sanitizers
asan:
	@scripts/install-deps.sh test
	@cmake --preset asan >/dev/null
	@$(BUILD) asan
	@ctest --preset asan

## make bench                measure, and print the table of docs/performance.md
bench:
	@scripts/install-deps.sh bench
	@cmake --preset bench >/dev/null
	@$(BUILD) bench >build/release/build.log 2>&1 || { cat build/release/build.log; exit 1; }
	@bench/run.sh build/release

## make lint                 clang-format and clang-tidy over the whole tree
lint:
	@scripts/install-deps.sh test lint
	@cmake --preset dev >/dev/null
	@scripts/lint.sh build/dev

## make fuzz [SECONDS=60]    run each fuzz target for that long
SECONDS ?= 60
fuzz:
	@scripts/install-deps.sh fuzz
	@cmake --preset fuzz >/dev/null
	@$(BUILD) fuzz
	@fuzz/run.sh build/fuzz $(SECONDS)

clean:
	@rm -rf build
