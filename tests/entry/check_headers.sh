#!/bin/sh
# usage: check_headers.sh ROOT CC CXX
# Every public header compiles alone as C11 and as C++; every exported name is declared in one of them, by its
# C name, and nothing is declared that is not exported.
set -eu
root=$1; cc=$2; cxx=$3
work=$(mktemp -d); trap 'rm -rf "$work"' EXIT
for header in "$root"/include/qel/*.h; do
  name=$(basename "$header")
  printf '#include "qel/%s"\nextern int unit_is_not_empty;\n' "$name" > "$work/alone.c"
  cp "$work/alone.c" "$work/alone.cpp"
  "$cc" -std=c11 -pedantic -Wall -Wextra -Wstrict-prototypes -Wundef -Werror -I"$root/include" -fsyntax-only "$work/alone.c"
  "$cxx" -std=c++11 -pedantic -Wall -Wextra -Wundef -Werror -I"$root/include" -fsyntax-only "$work/alone.cpp"
done
grep -hv "^#" "$root"/include/qel/*.h | tr '\n' ' ' | grep -oE 'QEL_API [A-Za-z_0-9 *]*\(' | sed -E 's/.*[ *]([A-Za-z_0-9]+)\($/\1/' |
  sort -u > "$work/declared"
# A Fortran name is its C name with an underscore; a name that ends so itself is declared as it stands.
grep -E '^[A-Za-z_]' "$root/entry/exports.txt" | sort > "$work/exported"
[ -z "$(uniq -d "$work/exported")" ] || { echo "exported twice:"; uniq -d "$work/exported"; exit 1; }
sed 's/_$//' "$work/exported" | sort -u > "$work/stems"
sort -u "$work/exported" "$work/stems" > "$work/known"
{ comm -23 "$work/declared" "$work/exported" | sed 's/^/declared, not exported: /'
  comm -13 "$work/declared" "$work/stems" | sed 's/^/exported, not declared: /'; } > "$work/differences"
cat "$work/differences"
[ ! -s "$work/differences" ]
