#!/bin/sh
# Runs each fuzz target over its corpus. What it learns stays in the build folder; an input that
# fails is left there too, and belongs into fuzz/corpus/TARGET once the fault is mended.
#   fuzz/run.sh BUILD_FOLDER SECONDS
set -eu
build="$1"
seconds="$2"
here="$(dirname "$0")"
status=0
for program in "$build"/fuzz/fuzz_*; do
  [ -x "$program" ] && [ -f "$program" ] || continue
  target="$(basename "$program" | sed 's/^fuzz_//')"
  learnt="$build/fuzz/learnt/$target"
  mkdir -p "$learnt"
  # The library of compound files does not give back a few bytes of a directory that it refuses.
  case "$target" in
    compound_file) export ASAN_OPTIONS=detect_leaks=0 ;;
    *) unset ASAN_OPTIONS ;;
  esac
  "$program" -max_total_time="$seconds" -max_len=1024 -timeout=60 -print_final_stats=1 \
    -artifact_prefix="$build/fuzz/$target-" "$learnt" "$here/corpus/$target" || status=1
done
exit "$status"
