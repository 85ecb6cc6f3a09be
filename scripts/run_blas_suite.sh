#!/bin/sh
# usage: run_blas_suite.sh LIBRARY_FOLDER SCRATCH_FOLDER [PROGRAM...]
# Runs the BLAS test programs of Debian's libblas-test (xblat1d ... Fortran, xdcblat1 ... C interface; all of
# them if none is named) on the libblas.so.3 of LIBRARY_FOLDER. A program passes if that library is the one
# bound, it exits with 0, prints no complaint, and reports every routine of its input as passed, error exits
# included. Exit 77: the package is not installed. If the library is built with a sanitizer, whose run time must
# come first in a process, the programs get that preloaded.
set -eu
library=$(realpath "$1"); mkdir -p "$2"; scratch=$(realpath "$2"); shift 2
programs=/usr/lib/$(gcc -print-multiarch)/blas
[ -x "$programs/xblat1d" ] || { echo "libblas-test is not installed"; exit 77; }

fail() { echo "$program: $1"; status=1; }

# check_level1 REPORT: every announced test has its PASS line.
check_level1() {
  tests=$(grep -c 'Test of subprogram number' "$1") || true
  passes=$(grep -c -e '----- PASS -----' "$1") || true
  [ "$tests" -ge 8 ] && [ "$passes" -eq "$tests" ] || fail "$passes of $tests routines passed"
}

# check_levels23 REPORT INPUT RUNS: every routine that the input switches on is reported as passed, in RUNS
# storage orders; one report of error exits per routine. The C level 2 programs report both orders alike, and
# the complex one names one routine twice there, hence the count instead of the names.
check_levels23() {
  routines=$(awk '$2 == "T" {print $1}' "$2")
  for routine in $routines; do
    passes=$(grep -c "^ $routine  *PASSED THE .*COMPUTATIONAL TESTS" "$1") || true
    [ "$passes" -eq "$3" ] || fail "$routine passed $passes of $3 computational tests"
  done
  exits=$(grep -c 'PASSED THE TESTS OF ERROR-EXITS' "$1") || true
  [ "$exits" -eq "$(echo "$routines" | wc -l)" ] || fail "$exits routines passed the tests of error exits"
  grep -q 'END OF TESTS' "$1" || fail "did not reach its end"
}

run() {
  program=$1; folder=$scratch/$program
  rm -rf "$folder"; mkdir -p "$folder"; cd "$folder"
  export LD_LIBRARY_PATH="$library"
  loaded=$(LD_TRACE_LOADED_OBJECTS=1 "$programs/$program")
  bound=$(echo "$loaded" | awk '$1 == "libblas.so.3" {print $3}')
  sanitizer=$(echo "$loaded" | awk '$1 ~ /^lib[at]san/ {print $3}')
  [ "$(realpath "$bound")" = "$(realpath "$library/libblas.so.3")" ] || fail "bound to $bound"
  case $program in                            # input file, storage orders
    x?cblat[23]) input=$(echo "$program" | sed 's/x\(.\)cblat\(.\)/\1in\2/') runs=2 ;;
    xblat[23]?)  input=$(echo "$program" | sed 's/xblat\(.\)\(.\)/\2blat\1.in/') runs=1 ;;
    *)           input= runs=1 ;;
  esac
  LD_PRELOAD=$sanitizer "$programs/$program" < "${input:+$programs/}${input:-/dev/null}" > report 2>&1 || fail "exit code $?"
  cat ./*.out >> report 2> /dev/null || true  # the Fortran programs of levels 2 and 3 report there
  ! grep -nE 'FAIL|\*\*\*\*\*|SUSPECT|FATAL|ABANDONED|NOT DETECTED' report || fail "complaints in $folder/report"
  if [ -n "$input" ]; then check_levels23 report "$programs/$input" $runs; else check_level1 report; fi
}

status=0
if [ $# -eq 0 ]; then
  for p in s d c z; do set -- "$@" xblat1$p xblat2$p xblat3$p x${p}cblat1 x${p}cblat2 x${p}cblat3; done
fi
for name; do run "$name"; done
[ $status -eq 0 ] && echo "all passed: $*"
exit $status
