#!/bin/sh
# SPDX-License-Identifier: MIT
# Has LibreOffice open workbooks that were written back, and export them again; it is no part of the
# tests, for it takes a large package and half a minute. Each workbook is copied, its modules are
# extracted, a comment is put into each, and they are imported; LibreOffice must then find the same
# cells in the copy as in the workbook, and the comments in its macros.
#   scripts/check-libreoffice.sh ORU BOOK...
set -eu

[ "$#" -ge 2 ] || { echo "usage: check-libreoffice.sh ORU BOOK..." >&2; exit 2; }
command -v soffice >/dev/null 2>&1 || {
  echo "check-libreoffice.sh: install libreoffice-calc first" >&2
  exit 2
}
oru=$1
shift
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
export XDG_DATA_HOME="$work/data"

# export_as FORMAT BOOK FOLDER: what LibreOffice makes of a workbook
export_as() {
  soffice "-env:UserInstallation=file://$work/profile" --headless --norestore \
    --convert-to "$1" --outdir "$3" "$2" >"$work/log" 2>&1 || { cat "$work/log" >&2; return 1; }
}

bad=0
for book in "$@"; do
  extension=${book##*.}
  mkdir -p "$work/was" "$work/now"
  cp "$book" "$work/was/book.$extension"
  cp "$book" "$work/now/book.$extension"
  chmod u+w "$work/now/book.$extension"
  "$oru" extract "$work/now/book.$extension" "$work/src" >/dev/null
  for file in "$work"/src/*.bas "$work"/src/*.cls "$work"/src/*.frm; do
    [ -f "$file" ] || continue
    printf "' marked by the check\r\n" >>"$file"
  done
  "$oru" import "$work/src" "$work/now/book.$extension" >/dev/null
  fault=""
  for side in was now; do
    # Every sheet as text, and a flat file, which holds the macros' sources.
    export_as 'csv:Text - txt - csv (StarCalc):44,34,76,1,,0,false,true,false,false,false,-1' \
      "$work/$side/book.$extension" "$work/$side/out" || fault="not exported"
    export_as fods "$work/$side/book.$extension" "$work/$side/flat" || fault="not exported"
  done
  if ! ls "$work"/was/out/*.csv >/dev/null 2>&1; then
    printf '%-44s %s\n' "$(basename "$book")" "LibreOffice opens no workbook of this kind"
    rm -rf "$work/was" "$work/now" "$work/src"
    continue
  fi
  # A new cell value of a volatile function is no difference: only the number of lines is compared
  # where a workbook has them.
  for sheet in "$work"/was/out/*.csv; do
    cmp -s "$sheet" "$work/now/out/$(basename "$sheet")" ||
      [ "$(wc -l <"$sheet")" = "$(wc -l <"$work/now/out/$(basename "$sheet")")" ] ||
      fault="sheet $(basename "$sheet") differs"
  done
  marks=$(grep -c 'marked by the check' "$work/now/flat/book.fods" || true)
  files=$(ls "$work"/src/*.bas "$work"/src/*.cls "$work"/src/*.frm 2>/dev/null | wc -l)
  [ "$marks" = "$files" ] || fault="${fault:+$fault; }$marks of $files modules show the change"
  printf '%-44s %s\n' "$(basename "$book")" "${fault:-ok, $files modules}"
  [ -z "$fault" ] || bad=1
  rm -rf "$work/was" "$work/now" "$work/src"
done
exit "$bad"
