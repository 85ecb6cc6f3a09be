#!/bin/sh
# usage: check_install.sh BUILD_FOLDER SOURCE_FOLDER SCRATCH_FOLDER LIBDIR
# Installs into a folder, moves it, and uses what is there as somebody else would: programs in C and C++ built by
# CMake, with pkg-config and by hand, each with the shared and the static library; the command; a program of
# another BLAS on the drop-in if there is one.
set -eu
build=$1; source=$2; scratch=$3/install; libdir=$4
user=$source/tests/install/user
fail() { echo "$1"; exit 1; }
rm -rf "$scratch"; mkdir -p "$scratch"; cd "$scratch"
cmake --install "$build" --prefix "$scratch/first" > install.log
mkdir "a place"; mv first "a place/moved"; ln -s "a place/moved" prefix
prefix=$scratch/prefix; libraries=$prefix/$libdir
! grep -rlF "$scratch/first" "$prefix/" --include='*.cmake' --include='*.pc' || fail "these files know their prefix"
! grep -rlF "$build" "$prefix/" --include='*.cmake' --include='*.pc' || fail "these files know the build folder"

for file in "$libraries/libqel.so" "$libraries/libqel.a" include/qel/qel.h include/tavik/kernel/dot_net_blas.h bin/qel \
            share/man/man1/qel.1 share/man/man1/qel-solve.1 share/bash-completion/completions/qel \
            share/zsh/vendor-completions/_qel share/fish/vendor_completions.d/qel.fish share/doc/qel/copyright \
            "$libraries/qel-drop-in/libblas.so.3" "$libraries/qel-drop-in/liblapack.so.3"; do
  case $file in /*) ;; *) file=$prefix/$file ;; esac
  [ -e "$file" ] || fail "missing: $file"
done
readelf -d "$libraries/libqel.so" | grep -q 'SONAME.*libqel\.so\.1\]' || fail "libqel.so has another SONAME"

# right PROGRAM shared|static: it computes right, and loads libqel.so of the prefix, or none
right() {
  [ "$(LD_LIBRARY_PATH=$libraries "$1")" = right ] || fail "$1: wrong"
  loaded=$(LD_LIBRARY_PATH=$libraries LD_TRACE_LOADED_OBJECTS=1 "$1" | awk '$1 ~ /^libqel/ {print $3}')
  case $2 in
    shared) [ "$loaded" = "$libraries/libqel.so.1" ] || fail "$1 loads $loaded" ;;
    static) [ -z "$loaded" ] || fail "$1 loads $loaded" ;;
  esac
  count=$((count + 1))
}
count=0

# by hand
c="cc -Wall -Wextra -Wpedantic -Werror -std=c99" cxx="c++ -Wall -Wextra -Wpedantic -Werror -std=c++20"
hand="$libraries/libqel.a -lmetis -lstdc++ -lgomp -lm"
$c "$user/solve.c" -I "$prefix/include" -L "$libraries" -lqel -o hand_c; right ./hand_c shared
$c "$user/solve.c" -I "$prefix/include" $hand -o hand_c_static; right ./hand_c_static static
$cxx "$user/facade.cpp" -I "$prefix/include" -L "$libraries" -lqel -o hand_cxx; right ./hand_cxx shared
$cxx "$user/facade.cpp" -I "$prefix/include" $hand -o hand_cxx_static; right ./hand_cxx_static static
$cxx -std=c++11 -x c++ "$user/solve.c" -x none -I "$prefix/include" -L "$libraries" -lqel -o hand_both; right ./hand_both shared

# by CMake, where the prefix is known by its path only, which has a blank in it
for languages in C_ONLY=OFF C_ONLY=ON; do
  cmake -S "$user" -B cmake.$languages -D$languages -DCMAKE_PREFIX_PATH="$scratch/a place/moved" \
        -DCMAKE_BUILD_TYPE=Release > cmake.log 2>&1 || { cat cmake.log; fail "cmake: can't configure"; }
  cmake --build cmake.$languages >> cmake.log 2>&1 || { cat cmake.log; fail "cmake: can't build"; }
done
for program in cmake.*/solve_static cmake.*/facade_static; do right "$program" static; done
for program in cmake.*/solve_qel cmake.*/facade_qel; do
  # CMake gives its programs the library's folder.
  [ "$("$program")" = right ] || fail "$program: wrong"
  LD_TRACE_LOADED_OBJECTS=1 "$program" | grep -q "$scratch/a place/moved/$libdir/libqel.so.1" || fail "$program: another library"
  count=$((count + 1))
done

# by pkg-config
if command -v pkg-config > /dev/null; then
  export PKG_CONFIG_PATH="$libraries/pkgconfig"
  pc() { pkg-config "$@"; }
  $c "$user/solve.c" $(pc --cflags --libs qel) -o pc_c; right ./pc_c shared
  $cxx "$user/facade.cpp" $(pc --cflags --libs qel) -o pc_cxx; right ./pc_cxx shared
  $c "$user/solve.c" $(pc --cflags --libs qel-static) -o pc_c_static; right ./pc_c_static static
  $cxx "$user/facade.cpp" $(pc --cflags --libs qel-static) -o pc_cxx_static; right ./pc_cxx_static static
  # --static where there is no shared library
  mkdir -p "archive/$libdir"; cp -r "$libraries/pkgconfig" "archive/$libdir"; cp -r "$prefix/include" archive
  ln -s "$libraries/libqel.a" "archive/$libdir"
  PKG_CONFIG_PATH="$scratch/archive/$libdir/pkgconfig"
  $c "$user/solve.c" $(pc --static --cflags --libs qel) -o pc_c_archive; right ./pc_c_archive static
  $cxx "$user/facade.cpp" $(pc --static --cflags --libs qel) -o pc_cxx_archive; right ./pc_cxx_archive static
  [ "$(pc --modversion qel)" = "$("$prefix/bin/qel" --version | cut -d' ' -f2)" ] || fail "qel.pc: another version"
else
  echo "pkg-config is not installed"
fi

"$prefix/bin/qel" solve "$source/examples/data/494_bus.mtx.gz" > qel.log || { cat qel.log; fail "qel solve fails"; }
for program in "$prefix"/bin/qel-bench-*; do
  [ -x "$program" ] || continue
  "$program" --benchmark_list_tests > bench.log 2>&1 || { cat bench.log; fail "$program does not start"; }
done
program=/usr/lib/$(cc -print-multiarch)/blas/xblat1d
if [ -x "$program" ]; then
  LD_LIBRARY_PATH=$libraries/qel-drop-in "$program" > blas.log
  grep -q 'Test Summary\|PASS' blas.log && ! grep -q FAIL blas.log || fail "drop-in: xblat1d fails"
fi
echo "$count programs built and right"
