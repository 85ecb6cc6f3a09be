#!/bin/sh
# usage: run_program.sh DROP_IN_FOLDER RECORDER SCRATCH_FOLDER armadillo|eigen
# Compiles a program of that C++ library (Debian: libarmadillo-dev; libeigen3-dev, liblapacke-dev) against the
# system's BLAS and runs it on ours.
. "$(dirname "$(realpath "$0")")/client.sh"
case $1 in
  armadillo) header=armadillo flags=-larmadillo calls=dgesvd_ ;;
  eigen) header=Eigen/Dense
         flags="-I/usr/include/eigen3 -DEIGEN_USE_BLAS -DEIGEN_USE_LAPACKE -llapacke -llapack -lblas"
         calls='LAPACKE_dgetrf\|dgemm_'
         echo '#include <lapacke.h>' | c++ -E -x c++ - > /dev/null 2>&1 || skip "liblapacke-dev is not installed" ;;
esac
echo "#include <$header>" | c++ -std=c++17 -E -x c++ $flags - > /dev/null 2>&1 || skip "$header is not installed"
c++ -std=c++17 -O0 "$here/$1.cpp" -x none $flags -o program > compile.log 2>&1 || { head -n 20 compile.log; fail "can't compile"; }
nm -D --undefined-only program | grep -q "$calls" || fail "the program does not call LAPACK"
[ "$(with_ours ./program | tee report)" = right ] || { cat report; fail "wrong"; }
check_loaded libblas.so.3 liblapack.so.3
echo right
