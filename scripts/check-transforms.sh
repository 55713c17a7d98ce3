#!/bin/sh
# SPDX-License-Identifier: MIT
# Has the commands that rewrite code prove on a project that they lose nothing: on copies, never on
# the project itself.
#   scripts/check-transforms.sh ORU PROJECT...      workbooks, or folders of exported files
# Without its line numbers, which formatting takes out: formatted, every file has the same characters
# but for blanks, tabs and line ends; formatted again, nothing changes; line labels, and trace lines,
# set and removed give the same bytes (but for blanks at the end of a numbered line). What was
# written is taken back to the bytes of the project.
set -eu

[ "$#" -ge 2 ] || { echo "usage: check-transforms.sh ORU PROJECT..." >&2; exit 2; }
oru=$1
shift
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
export XDG_DATA_HOME="$work/data"

# run COMMAND... : oru on the copy, quietly; what it says is shown when it fails
run() {
  "$oru" "$@" -q >"$work/log" 2>&1 || { status=$?; cat "$work/log" >&2; return "$status"; }
}

# modules NAME: the copy's modules as files in $work/NAME
modules() {
  rm -rf "${work:?}/$1"
  mkdir "$work/$1"
  if [ -d "$copy" ]; then
    (cd "$copy" && find . \( -iname '*.bas' -o -iname '*.cls' -o -iname '*.frm' -o -iname '*.doccls' \) \
      -exec cp --parents {} "$work/$1" \;)
  else
    "$oru" extract "$copy" "$work/$1" >/dev/null
    find "$work/$1" -name '*.frx' -delete
  fi
}

# same A B FILTER: every file of $work/A is one of $work/B behind the filter
same() {
  (cd "$work/$1" && find . -type f) | while read -r file; do
    sh -c "$3" <"$work/$1/$file" >"$work/was"
    sh -c "$3" <"$work/$2/$file" >"$work/now"
    cmp -s "$work/was" "$work/now" || { echo "$2 differs in $file" >&2; exit 1; }
  done
}

bad=0
for project in "$@"; do
  copy=$work/project
  [ -d "$project" ] || copy=$work/project.${project##*.}
  fresh() {
    rm -rf "$copy" "$work"/*.oru-undo "$work"/*.VMH
    cp -r "$project" "$copy"
    chmod -R u+w "$copy"
    run number remove "$copy" --write --signed
  }
  prove() (
    set -e
    fresh
    modules bare
    cp -r "$copy" "$work/before"
    run format "$copy" --write --signed
    modules formatted
    same bare formatted "tr -d ' \\t\\r\\n'"
    run format "$copy" --check
    if [ -f "$copy" ] && ! cmp -s "$copy" "$work/before"; then
      "$oru" undo "$copy" >/dev/null
      cmp "$copy" "$work/before"
    fi
    fresh
    run number set "$copy" --write --signed
    modules numbered
    run number remove "$copy" --write --signed
    modules cleared
    same bare cleared "sed 's/[ \\t\\r]*\$//'"
    fresh
    run trace set "$copy" --write --signed
    modules traced
    run trace remove "$copy" --write --signed
    modules untraced
    same bare untraced cat
    changed=$(diff -rq "$work/bare" "$work/formatted" | wc -l)
    echo "$(find "$work/bare" -type f | wc -l) modules, $changed formatted," \
      "$(cat "$work"/traced/* 2>/dev/null | grep -c '%%TraceLine' || true) traced," \
      "$(cat "$work"/numbered/* 2>/dev/null | grep -cE '^[0-9]+: ' || true) lines numbered"
  )
  # Not as a condition, in which -e would not count.
  set +e
  told=$(prove)
  status=$?
  set -e
  if [ "$status" -eq 0 ]; then
    printf '%-44s ok, %s\n' "$(basename "$project")" "$told"
  else
    printf '%-44s FAILED\n' "$(basename "$project")"
    bad=1
  fi
  rm -rf "$work/before"
done
exit "$bad"
