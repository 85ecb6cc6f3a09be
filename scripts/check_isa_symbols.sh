#!/bin/sh
# usage: check_isa_symbols.sh LEVEL OBJECT...
# A kernel object of a level defines global symbols of that level's namespace only, and none that the linker
# may share with other objects (weak, vague or unique): such a copy could carry instructions that the
# processor lacks into code of another level.
set -eu
level=$1; shift
nm -C --defined-only "$@" | awk -v level="qel::$level::" '
  NF < 3 {next}
  {name = $0; sub(/^[0-9a-f]+ [A-Za-z] /, "", name)}
  $2 ~ /^[WVuvw]$/ {print "shared by the linker: " $0; bad = 1; next}
  $2 ~ /^[A-Z]$/ && index(name, level) != 1 {print "outside " level ": " $0; bad = 1}
  END {exit bad}'
