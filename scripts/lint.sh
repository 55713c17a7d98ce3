#!/bin/sh
# clang-format (check only) and clang-tidy over the sources of this tree.
#   scripts/lint.sh BUILD_FOLDER [FILE...]
set -eu
build="$1"
shift
[ "$#" -gt 0 ] || set -- $(git ls-files '*.cpp' | grep -v '^fuzz/' | grep -v '^bench/')
clang-format --dry-run --Werror $(git ls-files '*.cpp' '*.h')
printf '%s\n' "$@" | xargs -P "$(nproc)" -n 1 clang-tidy -p "$build" --quiet 2>/dev/null
