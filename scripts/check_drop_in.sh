#!/bin/sh
# usage: check_drop_in.sh LIBRARY_FOLDER EXPORTS REQUIRED
# Looks into libblas.so.3 and liblapack.so.3: names, versions, dependencies, and that the calls which a program
# may take over are bound at run time. EXPORTS lists libblas.so.3's names, REQUIRED what both must define.
set -eu
blas=$1/libblas.so.3 lapack=$1/liblapack.so.3
work=$(mktemp -d); trap 'rm -rf "$work"' EXIT
export LC_ALL=C
status=0
fail() { echo "$1"; status=1; }
# none MESSAGE FILE: fails with the file's lines, if it has any
none() { [ ! -s "$2" ] || { fail "$1"; sed 's/^/  /' "$2"; }; }
list() { grep -v '^#' "$1" | sort -u; }
names() { nm -D --defined-only "$1" | awk '{print $NF}' | sort; }

names "$blas" > "$work/blas"; names "$lapack" > "$work/lapack"; list "$2" > "$work/exports"
comm -3 "$work/blas" "$work/exports" > "$work/difference"
none "libblas.so.3 and its export list differ:" "$work/difference"
list "$3" | comm -23 - "$work/exports" | comm -23 - "$work/lapack" > "$work/missing"
none "required names that neither library defines:" "$work/missing"
cat "$work/blas" "$work/lapack" | grep -E '@|^_gfortran|^_Z|^qel_' > "$work/odd" || true
none "names that must not be exported:" "$work/odd"

nm -D --undefined-only "$lapack" | grep -E ' (qel_|_ZN3qel)' > "$work/odd" || true
none "liblapack.so.3 works with our libblas.so.3 only, for it asks for:" "$work/odd"

# dynamic FILE TAG VALUE
dynamic() { readelf -dW "$1" | grep -F "($2)" | grep -qF "[$3]"; }
dynamic "$blas" SONAME libblas.so.3 || fail "libblas.so.3 has another SONAME"
dynamic "$lapack" SONAME liblapack.so.3 || fail "liblapack.so.3 has another SONAME"
dynamic "$lapack" NEEDED libblas.so.3 || fail "liblapack.so.3 does not ask for libblas.so.3"
for file in "$blas" "$lapack"; do
  ! readelf -dW "$file" | grep -E 'libgfortran|libquadmath|SYMBOLIC|libqel' || fail "in $file"
done

# bound FILE NAME...: every use of the name has a relocation by symbol
bound() {
  file=$1; shift
  readelf -rW "$file" > "$work/relocations"
  for name; do
    grep -qE "R_X86_64_(JUMP_SLOT|GLOB_DAT).* $name( |$)" "$work/relocations" || fail "$name is bound inside $file"
  done
}
bound "$blas" xerbla_ cblas_xerbla RowMajorStrg
bound "$lapack" xerbla_ ilaenv_ iparmq_ dgemm_ dgetrf_
exit $status
