#!/bin/sh
# usage: run_lapack_suite.sh LIBRARY_FOLDER SCRATCH_FOLDER REFERENCE_CACHE [PROGRAM INPUT]
# Runs the LAPACK test programs of Debian's liblapack-test (all with all their inputs, or one with one) on the
# libblas.so.3 and liblapack.so.3 of LIBRARY_FOLDER, and compares with the same run on the reference libraries,
# made once and kept in REFERENCE_CACHE. A case passes if our libraries are the ones bound, it exits with 0,
# everything that passes on the reference passes, and nothing fails that doesn't fail there.
# Exit 77: the package is not installed.
set -eu
library=$(realpath "$1"); mkdir -p "$2" "$3"; scratch=$(realpath "$2"); cache=$(realpath "$3"); shift 3
system=/usr/lib/$(gcc -print-multiarch); programs=$system/lapack
[ -x "$programs/xlintstd" ] || { echo "liblapack-test is not installed"; exit 77; }
reference=$system/blas:$system/lapack

fail() { echo "$program $input: $1"; status=1; }
seconds() { date +%s.%N; }

# The verdicts in a report, sorted, blanks squeezed. The balancing programs print measured errors instead of
# verdicts; one is good below 30, as the programs' own thresholds. ?ggbak's examples cancel completely: a last
# bit of a product moves their error between 1e-4 and 8000 (as OpenBLAS and BLIS show), so 10000 is the bound.
passes() {
  grep -E 'passed the (threshold|tests)|routines passed|End of tests|total number of examples' "$1" | tr -s ' ' | sort
}
failures() {
  {
    grep -E 'failed|error messages recorded|\*\*\*|[Ii]llegal|INFO|returned|FAIL|NaN' "$1" || true
    grep -E 'number.* (where|info).*= *[1-9]' "$1" || true
    awk -F= -v input="$input" '/value of largest test error/ {
      e = $2; gsub(/D/, "E", e); if (!(e + 0 < (input ~ /gbak/ ? 10000 : 30))) print}' "$1"
  } | tr -s ' ' | sort
}

# Some examples are so badly conditioned that another order of summation moves their error across the threshold
# of 30, on any library (OpenBLAS: 41 in STFSM, 34.8 in CTFSM, 53.8 in CST). One such example of a path, below 100, counts as
# passed. In the Schur forms an example of order 5 has eigenvalues so close that exchanging them may be refused:
# info is 6 then, and its two runs count as failed.
# settle_borderline REPORT EXPECTED
settle_borderline() {
  awk -v refused='100, *2082, *33, *613' '
    FNR == NR {  # the reference'"'"'s verdicts by path
      if (match($0, /All tests for .* passed/)) {
        name = substr($0, RSTART + 14, RLENGTH - 21); sub(/ +$/, "", name); sub(/ routines$/, "", name)
        passed[name] = $0
      }
      next
    }
    /^ *[A-Z0-9]+( drivers| routines)?: +[12] out of/ {
      name = $0; sub(/^ */, "", name); count = name
      sub(/:.*/, "", name); sub(/ routines$/, "", name); sub(/.*: */, "", count)
      if (name in passed && ((count + 0 == 1 && error > 0 && error < 100) || (count + 0 == 2 && twice == 2))) {
        print passed[name]; error = twice = 0; next
      }
    }
    /returned INFO= *6\./ {held = $0; next}
    held != "" {if ($0 !~ refused) print held; else refusal = 1; held = ""}
    /Error code from DGEES =/ && refusal {next}
    {if ($0 ~ refused && /test\( 7\)/) ++twice}
    / out of .*tests failed/ {error = twice = 0}
    /=[^=]*[0-9.]+ *$|result +[0-9]+ is/ {error = $NF + 0}
    {print}' "$2" "$1" > "$1.settled"
  mv "$1.settled" "$1"
  case $input in
    stest_rfp.in) routine=STFSM example='SIDE=.L., UPLO=.U., TRANS=.T., DIAG=.N., M= 50, N = 50' ;;
    ctest_rfp.in) routine=CTFSM example='SIDE=.L., UPLO=.U., TRANS=.C., DIAG=.U., M= 50, N = 50' ;;
    *) return 0 ;;
  esac
  awk -v failure="Failure in $routine" -v example="$example" '
       $0 ~ failure {n++; if ($0 ~ example && $NF + 0 < 100) near++}
       END {exit !(n == 1 && near == 1)}' "$1" || return 0
  sed -i -e "/Error(s) or Failure(s) while testing $routine/d" \
         -e "s/$routine auxiliary routine: *1 out of *\\([0-9]*\\) tests failed.*/All tests for $routine auxiliary routine passed the threshold ( \\1 tests run)/" "$1"
}

# run_on LIBRARY_PATH REPORT
run_on() {
  # A sanitizer's run time must come first in a process.
  sanitizer=$(LD_LIBRARY_PATH=$1 LD_TRACE_LOADED_OBJECTS=1 "$programs/$program" | awk '$1 ~ /^lib[at]san/ {print $3}')
  LD_PRELOAD=$sanitizer LD_LIBRARY_PATH=$1 "$programs/$program" < "$programs/$input" > "$2.part" 2>&1 ||
    echo "exit code $? FAIL" >> "$2.part"
  mv "$2.part" "$2"
}

check_bound() {
  for name in libblas.so.3 liblapack.so.3; do
    bound=$(LD_LIBRARY_PATH=$library LD_TRACE_LOADED_OBJECTS=1 "$programs/$program" |
            awk -v name=$name '$1 == name {print $3}')
    [ "$(realpath "$bound")" = "$(realpath "$library/$name")" ] || fail "$name is bound to $bound"
  done
}

run_case() {
  program=$1; input=$2; folder=$scratch/$program.$input; expected=$cache/$program.$input.out
  rm -rf "$folder"; mkdir -p "$folder"; cd "$folder"
  check_bound
  [ -s "$expected" ] || { run_on "$reference" "$folder/reference"; cp reference "$expected.$$"; mv "$expected.$$" "$expected"; }
  run_on "$library" "$folder/report"
  settle_borderline report "$expected"
  passes "$expected" > expected_passes; passes report > our_passes
  failures "$expected" > expected_failures; failures report > our_failures
  [ -s expected_passes ] || fail "the reference passes nothing"
  comm -23 expected_passes our_passes > lost; comm -13 expected_failures our_failures > new
  [ ! -s lost ] || { fail "passes on the reference only:"; cat lost; }
  [ ! -s new ] || { fail "fails here only:"; cat new; }
}

all_cases() {
  for p in s d c z; do
    echo xlintst$p ${p}test.in; echo xlintstrf$p ${p}test_rfp.in
    for name in nep sep se2 svd glm gqr gsv lse csd ${p}ec ${p}ed ${p}gg ${p}gd ${p}sb ${p}sg ${p}bb \
                ${p}bal ${p}bak ${p}gbal ${p}gbak; do echo xeigtst$p $name.in; done
  done
  echo xlintstds dstest.in; echo xlintstzc zctest.in
}

status=0; start=$(seconds); count=0
if [ $# -eq 0 ]; then set -- $(all_cases); fi
while [ $# -ge 2 ]; do run_case "$1" "$2"; count=$((count + 1)); shift 2; done
echo "$count cases, $(echo "$(seconds) - $start" | bc) s"
exit $status
