#!/bin/sh
# usage: run_sanitizers.sh fast|races|all|threads
#   fast     address and undefined-behaviour sanitizers over tests of every family that end quickly; CI runs this
#   races    the thread sanitizer over tests of every driver with threads that end quickly; CI runs this, too
#   all      address and undefined-behaviour sanitizers over the whole suite: ./test.sh sanitize
#   threads  the thread sanitizer over the whole suite: ./test.sh tsan
set -eu
cd "$(dirname "$0")/.."
case ${1:-} in
  all) exec ./test.sh sanitize ;;
  threads) exec ./test.sh tsan ;;
  fast)
    preset=sanitize purposes=""
    tests="service_memory_test entry_blas_test entry_lapack_test whole_no_memory_test sparse_csr_check_test sparse_csr_vector_test sparse_csr_triangle_test
           sparse_csr_product_test sparse_dss_test sparse_pardiso_failures_test fft_descriptor_test
           conv_task_test nls_protocol_test vector_errors_test facade_vectors_test
           facade_sparse_solvers_test cli_matrix_market_test"
    inputs=$(cd fuzz && ls ./*.cpp | sed 's|./|fuzz_|; s|\.cpp$||')
    chosen="^(fuzz\..*|$(echo $tests | tr ' ' '|'))$"
    ;;
  races)
    preset=tsan purposes=tsan inputs=""
    tests="blas_level2_threads_test blas_native_product_test lapack_factored_test lapack_qr_test
           lapack_split_solve_test fft_concurrency_test sparse_csr_vector_test sparse_csr_product_test
           whole_many_threads_test"
    chosen="^($(echo $tests | tr ' ' '|'))(\.native_1)?$"  # native plans split more, and otherwise
    ;;
  *) sed -n '2,6s/^# *//p' "$0" >&2; exit 2 ;;
esac
scripts/install_packages.sh build test $purposes
cmake --preset $preset -DQEL_BUILD_TESTS=ON -DQEL_BUILD_BENCH=OFF
cmake --build --preset $preset --target $tests $inputs
ctest --preset $preset -R "$chosen"
