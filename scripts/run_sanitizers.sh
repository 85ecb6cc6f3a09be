#!/bin/sh
# usage: run_sanitizers.sh fast|all|threads
#   fast     address and undefined-behaviour sanitizers over tests of every family that end quickly; CI runs this
#   all      the same over the whole suite: ./test.sh sanitize
#   threads  the thread sanitizer over the whole suite: ./test.sh tsan
set -eu
cd "$(dirname "$0")/.."
case ${1:-} in
  all) exec ./test.sh sanitize ;;
  threads) exec ./test.sh tsan ;;
  fast) ;;
  *) sed -n '2,5s/^# *//p' "$0" >&2; exit 2 ;;
esac
scripts/install_packages.sh build test
cmake --preset sanitize -DQEL_BUILD_TESTS=ON -DQEL_BUILD_BENCH=OFF
tests="service_memory_test entry_blas_test entry_lapack_test whole_no_memory_test sparse_csr_product_test
       sparse_dss_test sparse_pardiso_failures_test fft_descriptor_test conv_task_test nls_protocol_test
       vector_errors_test facade_vectors_test facade_sparse_solvers_test cli_matrix_market_test"
inputs=$(cd fuzz && ls ./*.cpp | sed 's|./|fuzz_|; s|\.cpp$||')
cmake --build --preset sanitize --target $tests $inputs
ctest --preset sanitize -R "^(fuzz\..*|$(echo $tests | tr ' ' '|'))$"
