#!/bin/sh
# usage: check.sh DOXYGEN FOLDER EXPORTS PICTURES
# Writes the reference into FOLDER (with its Doxyfile): no warnings, and every exported name is in it. Drawn pictures
# are as their script draws them.
set -eu
"$1" "$2/Doxyfile"
if [ -s "$2/warnings.txt" ]; then
  head -n 40 "$2/warnings.txt"
  exit 1
fi
mkdir -p "$2/pictures"
"$4/packed_formats.py" "$2/pictures"
for picture in "$2"/pictures/*.svg; do
  cmp "$picture" "$4/${picture##*/}" || { echo "draw again: $4/packed_formats.py $4"; exit 1; }
done
known=$(mktemp)
trap 'rm -f "$known"' EXIT
sed -n 's/.*<member .*kind="function"><name>\([^<]*\)<\/name>.*/\1/p' "$2/xml/index.xml" | sort -u > "$known"
# A Fortran name is described with the name that it belongs to.
missing=$(sed -n 's/^\([A-Za-z][A-Za-z0-9_]*[A-Za-z0-9]\)$/\1/p' "$3" | sort -u | comm -23 - "$known")
[ -z "$missing" ] || { echo "not in the reference:" $missing; exit 1; }
