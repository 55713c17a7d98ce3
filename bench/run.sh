#!/bin/sh
# SPDX-License-Identifier: MIT
# Measures a release build and prints the table of docs/performance.md.
#   bench/run.sh BUILD_FOLDER [--runs N] [--quick] [--check]
# The generated projects stay in BUILD_FOLDER/bench-data and are made again when the generator or
# its arguments change.
set -eu

build=${1:?"usage: bench/run.sh BUILD_FOLDER [--runs N] [--quick] [--check]"}
shift
here=$(dirname "$0")
data=$build/bench-data
mkdir -p "$data"
generator=$(cat "$here/generate.py" "$here/words.py" | cksum)

# project NAME ARGUMENTS: a generated project in $data/NAME
project() {
  name=$1
  shift
  stamp="$* $generator"
  if [ -d "$data/$name" ] && [ "$(cat "$data/$name.stamp" 2>/dev/null)" = "$stamp" ]; then return; fi
  rm -rf "${data:?}/$name" "$data/$name.stamp"
  echo "generating $name" >&2
  python3 "$here/generate.py" --out "$data/$name" --seed 1 "$@"
  echo "$stamp" >"$data/$name.stamp"
}

project nothing --lines 50 --modules 1
project ten-thousand --lines 10000 --modules 10
project million --lines 1000000 --modules 1000
project one-module --lines 100000 --modules 1
project comments --shape comments --lines 262120 --modules 4
project one-procedure --shape one-procedure --lines 240000 --modules 40
project many-procedures --shape many-procedures --lines 180000 --modules 4
project continuations --shape continuations --lines 250000 --modules 25

book=$data/million.xlsm
stamp="$generator $(cksum <"$build/bench/bench_make_book")"
if [ ! -f "$book" ] || [ "$(cat "$book.stamp" 2>/dev/null)" != "$stamp" ]; then
  "$build/bench/bench_make_book" "$data/million" "$book"
  echo "$stamp" >"$book.stamp"
fi

exec python3 "$here/measure.py" "$build" "$data" "$@"
