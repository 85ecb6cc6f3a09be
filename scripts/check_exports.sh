#!/bin/sh
# usage: check_exports.sh LIBQEL.so EXPORTS.txt
# The library's dynamic symbols are the listed ones and the facade's namespace, no more and no fewer.
set -eu
work=$(mktemp -d); trap 'rm -rf "$work"' EXIT
nm -D --defined-only "$1" | awk '{print $NF}' | sort -u > "$work/all"
# The facade: anything whose demangled name belongs to Tavik::.
c++filt < "$work/all" | paste -d'\t' "$work/all" - |
  awk -F'\t' '$2 ~ /^(typeinfo (name )?for |vtable for |VTT for )?Tavik::/ {next} {print $1}' > "$work/flat"
grep -E '^[A-Za-z_]' "$2" | sort -u > "$work/listed"
if ! diff "$work/listed" "$work/flat" > "$work/diff"; then
  echo "exported symbols differ from $2 (< listed but not exported, > exported but not listed):"
  grep '^[<>]' "$work/diff"
  exit 1
fi
echo "$(wc -l < "$work/flat") listed symbols, $(($(wc -l < "$work/all") - $(wc -l < "$work/flat"))) of the facade"
