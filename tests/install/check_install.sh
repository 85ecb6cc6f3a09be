#!/bin/sh
# usage: check_install.sh BUILD_FOLDER SOURCE_FOLDER SCRATCH_FOLDER LIBDIR
# Installs into a folder, and uses what is there as somebody else would: compiles the example against the
# shared and the static library, runs the command, and a program of another BLAS on the drop-in if there is one.
set -eu
build=$1; source=$2; prefix=$3/prefix; libraries=$prefix/$4
rm -rf "$prefix"; mkdir -p "$prefix"
cmake --install "$build" --prefix "$prefix" > "$3/install.log"
moved=$3/moved; rm -rf "$moved"; mv "$prefix" "$moved"; prefix=$moved; libraries=$prefix/$4   # nothing knows its place

for file in "$libraries/libqel.so" "$libraries/libqel.a" "$prefix/include/qel/qel.h" "$prefix/bin/qel" \
            "$prefix/include/tavik/kernel/dot_net_blas.h" \
            "$libraries/qel-drop-in/libblas.so.3" "$libraries/qel-drop-in/liblapack.so.3"; do
  [ -e "$file" ] || { echo "missing: $file"; exit 1; }
done
expected='x = 1 1 1, first row times x = 3'
cc -Wall -Werror "$source/examples/solve.c" -I "$prefix/include" -L "$libraries" -lqel -o "$3/shared"
[ "$(LD_LIBRARY_PATH=$libraries "$3/shared")" = "$expected" ] || { echo "shared: wrong result"; exit 1; }
cc "$source/examples/solve.c" -I "$prefix/include" "$libraries/libqel.a" -lmetis -lstdc++ -lgomp -lm -o "$3/static"
[ "$("$3/static")" = "$expected" ] || { echo "static: wrong result"; exit 1; }
"$prefix/bin/qel" info > /dev/null
program=/usr/lib/$(cc -print-multiarch)/blas/xblat1d
if [ -x "$program" ]; then
  LD_LIBRARY_PATH=$libraries/qel-drop-in "$program" > "$3/blas.log"
  grep -q 'Test Summary\|PASS' "$3/blas.log" && ! grep -q FAIL "$3/blas.log" || { echo "drop-in: xblat1d fails"; exit 1; }
fi
