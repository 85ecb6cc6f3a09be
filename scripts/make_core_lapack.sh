#!/bin/sh
# usage: make_core_lapack.sh LIBLAPACK64_PIC.a OUT.a MEMBER.o...
# The private copy of plain 64-bit LAPACK: every name of the archive and every BLAS name that it calls gets
# the prefix qel_core_, so that the library's own BLAS is what it calls and no LAPACK name can meet another
# library's. The listed members are left out: the library has its own.
set -eu
in=$1; out=$2; shift 2
work=$(mktemp -d); trap 'rm -rf "$work"' EXIT
cp "$in" "$work/core.a"
nm -g --defined-only "$in" 2>/dev/null | awk 'NF==3 {print $3}' | sort -u > "$work/defined"
nm -u "$in" 2>/dev/null | awk 'NF==2 {print $2}' | sort -u > "$work/undefined"
{
  cat "$work/defined"
  comm -23 "$work/undefined" "$work/defined" | grep -E '^[a-z0-9]+_$'
} | sort -u | sed 's/.*/& qel_core_&/' > "$work/rename"
# The three Fortran run-time routines that remain are the library's own too (lapack/fortran_runtime.cpp).
for f in concat_string pow_r8_i8 pow_r4_i8; do echo "_gfortran_$f qel_core_$f"; done >> "$work/rename"
ar d "$work/core.a" "$@"
objcopy --redefine-syms="$work/rename" "$work/core.a"
ranlib "$work/core.a"
mv "$work/core.a" "$out"
