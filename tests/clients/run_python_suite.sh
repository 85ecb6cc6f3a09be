#!/bin/sh
# usage: run_python_suite.sh DROP_IN_FOLDER RECORDER SCRATCH_FOLDER numpy|scipy
# The linear-algebra tests that come with NumPy or SciPy (Debian: python3-numpy, python3-scipy).
. "$(dirname "$(realpath "$0")")/client.sh"
python=/usr/bin/python3
case $1 in
  # Two tests multiply vectors of 2^31 elements: 17 GB each.
  numpy) tests="numpy.linalg numpy.core.tests.test_multiarray" at_least=500
         choice="linalg or ((dot or matmul or Dot or MatMul or inner or vdot) and not huge)" ;;
  scipy) tests=scipy.linalg at_least=3000 choice="" ;;
esac
# hypothesis: NumPy's tests want it
$python -c "import $1, pytest, hypothesis" 2> import.log || skip "$(tail -n 1 import.log)"

suite() { $1 $python -m pytest -q -rf -o cache_dir="$scratch/cache" ${3:-} --pyargs $tests -k "$choice" > "$2" 2>&1; }
failed() { sed -n 's/^FAILED \([^ ]*\).*/\1/p' "$1" | sort; }

suite with_ours report || [ $? -eq 1 ] || { tail -n 30 report; fail "the suite does not run"; }
check_loaded libblas.so.3 liblapack.so.3
tail -n 1 report
passed=$(grep -oE '[0-9]+ passed' report | tail -n 1 | cut -d' ' -f1)
[ "${passed:-0}" -ge $at_least ] || fail "only ${passed:-0} tests passed"
failed report > ours
[ -s ours ] || exit 0
have_reference || { cat ours; fail "failed, and there is no reference to compare with"; }
suite with_reference reference --last-failed || [ $? -eq 1 ] || fail "the suite does not run on the reference"
failed reference > theirs
comm -23 ours theirs > new
[ ! -s new ] || { cat new; grep -E '^E ' report | head -n 20; fail "failed on QEL only"; }
echo "fails on the reference, too: $(wc -l < ours) tests"
