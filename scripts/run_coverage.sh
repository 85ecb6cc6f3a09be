#!/bin/sh
# usage: run_coverage.sh [ctest options]     runs the tests in a build instrumented for gcov (preset coverage) and lists
# the lines of the library, the drop-in and the command that none of them reaches: build-coverage/unreached.txt
set -eu
cd "$(dirname "$0")/.."
scripts/install_packages.sh build test coverage
cmake --preset coverage -DQEL_BUILD_TESTS=ON > /dev/null
cmake --build --preset coverage
find build-coverage -name '*.gcda' -delete
# Failures do not matter here: instrumented code is slow, some tests end at their time limit.
ctest --preset coverage --output-on-failure "$@" || true
folders="service|blas|lapack|fft|sparse|conv|vector|nls|entry|facade|dropin|cli|include"
gcovr --root . --object-directory build-coverage -j "$(nproc)" --filter "($folders)/" --gcov-ignore-parse-errors \
  --exclude-unreachable-branches --exclude-throw-branches --txt build-coverage/unreached.txt
tail -4 build-coverage/unreached.txt
