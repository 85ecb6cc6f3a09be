#!/bin/sh
# usage: run_valgrind.sh [BUILD]     a fast set of tests of a release build (build) under valgrind's memcheck: reads of
# what was never written, accesses outside blocks, leaks. On one thread, on levels 0 and 3: it does not know all
# instructions of the native ones.
set -eu
cd "$(dirname "$0")/.."
build=${1:-build}
command -v valgrind > /dev/null || { echo "valgrind is not installed" >&2; exit 77; }
tests="service/service_memory_test entry/entry_blas_test entry/entry_lapack_test sparse/sparse_dss_test
       fft/fft_descriptor_test fft/fft_line_plan_test conv/conv_task_test nls/nls_protocol_test vector/vector_random_test
       facade/facade_vectors_test facade/facade_sparse_solvers_test"
failed=""
for test in $tests; do
  program=$build/tests/$test
  [ -x "$program" ] || { echo "not built: $program"; failed="$failed $test"; continue; }
  for level in 0 3; do
    OMP_NUM_THREADS=1 QEL_DEBUG_CPU_TYPE=$level valgrind -q --error-exitcode=99 --leak-check=full \
      --errors-for-leak-kinds=definite "$program" --gtest_brief=1 > "$build/valgrind.log" 2>&1 ||
      { echo "$test (level $level):"; tail -n 40 "$build/valgrind.log"; failed="$failed $test"; }
  done
done
[ -z "$failed" ] || { echo "failed:$failed"; exit 1; }
echo "clean: $(echo "$tests" | wc -w) programs, twice"
