#!/bin/sh
# usage: install_packages.sh build|test|bench|clients|tsan|fuzz|coverage...     installs what these need from Debian's packages
set -eu
packages=""
for purpose in "$@"; do
  case $purpose in
    build) packages="$packages g++ cmake ninja-build binutils ccache liblapack64-dev liblapack-dev libblas-dev
                     libcli11-dev libfmt-dev nlohmann-json3-dev zlib1g-dev libmuparser-dev libcsv-dev
                     libsndfile1-dev libmetis-dev" ;;
    test) packages="$packages libgtest-dev libblas-test liblapack-test libblas3 liblapack3 qemu-user
                    python3 clang-format git gnuplot-nox pkg-config dpkg-dev zsh fish mandoc doxygen chromium" ;;
    bench) packages="$packages libbenchmark-dev libfftw3-dev libopenblas0-openmp libblis4-openmp libfftw3-double3
                     libfftw3-single3 libeigen3-dev libcminpack-dev libgsl-dev libceres-dev
                     libsuitesparse-dev libmumps-seq-dev libsuperlu-dev" ;;
    clients) packages="$packages python3-numpy python3-scipy python3-pytest python3-hypothesis octave
                       scalapack-mpi-test openmpi-bin libarmadillo-dev libeigen3-dev liblapacke-dev
                       libblas3 liblapack3 mono-mcs mono-runtime" ;;
    tsan|fuzz) packages="$packages clang llvm libomp-dev libclang-rt-14-dev" ;;
    coverage) packages="$packages gcovr" ;;
    *) echo "unknown purpose: $purpose" >&2; exit 2 ;;
  esac
done
missing=""
for package in $packages; do
  dpkg-query -W -f '${Status}' "$package" 2>/dev/null | grep -q 'ok installed' || missing="$missing $package"
done
[ -z "$missing" ] && exit 0
echo "installing:$missing"
sudo=""
[ "$(id -u)" = 0 ] || sudo=sudo
export DEBIAN_FRONTEND=noninteractive
$sudo apt-get -o DPkg::Lock::Timeout=300 update -qq
$sudo apt-get -o DPkg::Lock::Timeout=300 install -y -qq --no-install-recommends $missing > /dev/null
