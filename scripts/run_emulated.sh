#!/bin/sh
# usage: run_emulated.sh BUILD_DIR [MODEL...]
# Runs the tests of what depends on the processor under QEMU's user mode, on every model of the table below (or
# the given ones): first that level and type are the expected ones, then the numbers. An instruction that the
# model lacks traps, so code that leaks into a lower level shows, whatever machine this is.
# Exit 77: qemu-x86_64 is not installed.
set -eu
build=$(realpath "$1"); shift
command -v qemu-x86_64 > /dev/null || { echo "qemu-user is not installed"; exit 77; }
ulimit -c 0
unset QEL_NATIVE QEL_DEBUG_CPU_TYPE  # the caller's choice of a level

# model, the variable set, level and type; "only" stands where the choice is all that is looked at. QEL_NATIVE
# must change nothing on the models without AVX2.
table="
kvm64        NONE=                 1 1
kvm64        QEL_NATIVE=1          1 1 only
Conroe       NONE=                 2 2
Conroe       QEL_NATIVE=1          2 2 only
Penryn       NONE=                 2 3
Penryn       QEL_NATIVE=1          2 3 only
Nehalem      NONE=                 3 4
Nehalem      QEL_NATIVE=1          3 4 only
SandyBridge  NONE=                 3 5 only
SandyBridge  QEL_NATIVE=1          3 5 only
SandyBridge  QEL_DEBUG_CPU_TYPE=4  4 5
Opteron_G3   NONE=                 0 0
Opteron_G3   QEL_NATIVE=1          0 0 only
Haswell      NONE=                 3 5 only
Haswell      QEL_NATIVE=1          5 6
EPYC         NONE=                 0 0 only
EPYC         QEL_NATIVE=1          5 6
"

status=0
fail() { echo "$model $setting: $1"; status=1; }

# emulated PROGRAM [arguments]: runs it on $model with $setting; tells its report only if it fails.
emulated() {
  program=$1; shift
  report=$(env "$setting" qemu-x86_64 -cpu "$model" "$build/tests/$program" "$@" 2>&1 < /dev/null) && return 0
  code=$?; echo "$report"; return $code
}

# A kernel above the model's level must trap, else the emulator proves nothing.
check_trap() {
  code=0
  { emulated kernels/kernel_ddot_test --gtest_filter="*DdotLevel*/$1" || code=$?; } > /dev/null 2>&1
  [ $code -eq 132 ] || fail "the kernel of level $1 ends with $code, not with an illegal instruction"
}

# The kernel tests end their cases' names in the level.
check_numbers() {
  for program in "$build"/tests/kernels/kernel_*_test; do
    emulated "kernels/$(basename "$program")" --gtest_brief=1 --gtest_filter="*/$1:Core*" || fail "$(basename "$program")"
  done
  for program in service/service_cpu_select_test facade/facade_dot_test blas/blas_level1_test entry/entry_blas_test \
                 entry/entry_lapack_test vector/vector_kernels_test vector/vector_errors_test \
                 vector/vector_random_test; do
    emulated $program --gtest_brief=1 || fail $program
  done
  # One type of products: all of level 3 takes minutes.
  emulated blas/blas_level3_test --gtest_brief=1 --gtest_filter='Level3/1.GemmAllOptionsAndSizes' || fail blas_level3_test
}

[ $# -gt 0 ] || set -- $(echo "$table" | awk 'NF {print $1}' | uniq)
for wanted; do
  rows=0
  while read -r model setting level type scope; do
    [ "$model" = "$wanted" ] || continue
    rows=$((rows + 1))
    emulated whole/processor_choice "$level" "$type" || fail "another level or type"
    [ "$scope" = only ] || check_numbers "$level"
    [ "$model$setting" != kvm64NONE= ] || check_trap 2
  done <<ROWS
$table
ROWS
  model=$wanted; setting=; [ $rows -gt 0 ] || fail "is not in the table"
done
[ $status -eq 0 ] && echo "as expected: $*"
exit $status
