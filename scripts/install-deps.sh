#!/bin/sh
# Installs what the build needs, by Debian package name; does nothing where all of it is there.
#   scripts/install-deps.sh [run] [test] [bench] [lint] [fuzz]
set -eu

run="g++ cmake ninja-build ccache mold pkg-config libfmt-dev libicu-dev libcli11-dev nlohmann-json3-dev libxxhash-dev libgsf-1-dev libzip-dev libxml2-dev libpcre2-dev libglib2.0-dev"
test="libgtest-dev graphviz"
bench="libbenchmark-dev universal-ctags ripgrep unzip python3"
lint="clang-tidy clang-format"
fuzz="clang libclang-rt-14-dev"

wanted="$run"
for set in "$@"; do
  case "$set" in
    run) ;;
    test) wanted="$wanted $test" ;;
    bench) wanted="$wanted $bench" ;;
    lint) wanted="$wanted $lint" ;;
    fuzz) wanted="$wanted $fuzz" ;;
    *) echo "install-deps.sh: unknown set '$set'" >&2; exit 2 ;;
  esac
done

missing=""
for package in $wanted; do
  dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'install ok installed' || missing="$missing $package"
done
[ -n "$missing" ] || exit 0

as_root=""
if [ "$(id -u)" -ne 0 ]; then
  command -v sudo >/dev/null 2>&1 || { echo "install-deps.sh: these packages are missing and sudo is not there; install them as root:$missing" >&2; exit 1; }
  as_root="sudo"
fi
echo "installing:$missing" >&2
log=$(mktemp)
trap 'rm -f "$log"' EXIT
export DEBIAN_FRONTEND=noninteractive
# shellcheck disable=SC2086
if ! { $as_root apt-get update -qq && $as_root apt-get install -y -qq --no-install-recommends $missing; } >"$log" 2>&1; then
  cat "$log" >&2
  echo "install-deps.sh: the packages could not be installed; the lines above say why" >&2
  exit 1
fi
