#!/bin/sh
# usage: quickstart.sh     installs what the build needs, builds, and solves a real system that ships with
# the sources: a power network of 494 buses
set -eu
cd "$(dirname "$0")"
scripts/install_packages.sh build
cmake --preset release -DQEL_BUILD_TESTS=OFF -DQEL_BUILD_BENCH=OFF > build-quickstart.log 2>&1 ||
  { cat build-quickstart.log; exit 1; }
cmake --build build >> build-quickstart.log 2>&1 || { tail -n 50 build-quickstart.log; exit 1; }
echo "built: build/cli/qel, build/libqel.so, build/libqel.a, build/qel-drop-in/"
echo
build/cli/qel solve examples/data/494_bus.mtx.gz -o build/494_bus_solution.mtx
