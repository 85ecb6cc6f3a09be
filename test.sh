#!/bin/sh
# usage: test.sh [PRESET] [ctest options]     installs what the tests need, builds, runs all tests
# PRESET: release (default), debug, sanitize, tsan, coverage
set -eu
cd "$(dirname "$0")"
preset=release
case ${1:-} in release|debug|sanitize|tsan|coverage) preset=$1; shift ;; esac
purposes="build test"
bench=OFF
[ "$preset" = release ] && { purposes="$purposes bench clients"; bench=ON; }
[ "$preset" = tsan ] && purposes="$purposes tsan"
scripts/install_packages.sh $purposes
cmake --preset "$preset" -DQEL_BUILD_TESTS=ON -DQEL_BUILD_BENCH=$bench
cmake --build --preset "$preset"
ctest --preset "$preset" "$@"
