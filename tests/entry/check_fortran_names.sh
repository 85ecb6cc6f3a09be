#!/bin/sh
# usage: check_fortran_names.sh LIBRARY
# Each Fortran name of the shared library is the same code as its C name, but for the functions with a complex
# value, which return it to Fortran and store it for C; no C name but those of
# the service, the transforms, vector math and random streams, which take values, lacks its Fortran name.
set -eu
nm -D --defined-only "$1" | awk '
  $2 ~ /[TW]/ && $3 !~ /^_Z/ { address[$3] = "@" $1 }  # a text: some addresses look like numbers with exponents
  END {
    for (name in address) {
      stem = name
      if (sub(/_$/, "", stem)) {
        ++pairs
        own_body = stem ~ /^([cz]dot[uc]|zdotui)$/
        if (!(stem in address) || own_body == (address[stem] == address[name])) { print "wrong: " name; bad = 1 }
      } else if (!((name "_") in address) && name !~ /^(QEL_.*|qel_.*|Dfti.*|vd[A-Z].*|vsl.*|xerbla|PARDISO)$/) { print "missing: " name "_"; bad = 1 }
    }
    exit bad || !pairs
  }'
