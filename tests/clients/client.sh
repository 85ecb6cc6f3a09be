# Sourced by run_*.sh with DROP_IN_FOLDER RECORDER SCRATCH_FOLDER. Runs programs of other makers on the drop-in
# libraries, and sees in their processes' memory maps that these, and no other BLAS, were loaded.
set -eu
library=$(realpath "$1"); recorder=$2; scratch=$3; shift 3
here=$(dirname "$(realpath "$0")")
system=/usr/lib/$(gcc -print-multiarch)
rm -rf "$scratch"; mkdir -p "$scratch/maps"; cd "$scratch"
export LC_ALL=C

skip() { echo "skipped: $1"; exit 77; }
fail() { echo "$1"; exit 1; }
need() { command -v "$1" > /dev/null || skip "$2 is not installed"; }

with_ours() { env LD_LIBRARY_PATH="$library" LD_PRELOAD="$recorder" QEL_CLIENT_MAPS="$scratch/maps" "$@"; }
# Debian's reference libraries: what fails there, too, is not our fault.
have_reference() { [ -e "$system/blas/libblas.so.3" ] && [ -e "$system/lapack/liblapack.so.3" ]; }
with_reference() { env LD_LIBRARY_PATH="$system/blas:$system/lapack" "$@"; }

# check_loaded LIBRARY...: some process had each of them from our folder, and none had another BLAS or LAPACK
check_loaded() {
  cat maps/* > mapped 2> /dev/null || fail "no process has left its map"
  for name; do grep -qF "$library/$name" mapped || fail "$name was not loaded from $library"; done
  others=$(grep -E '/lib(blas|cblas|gslcblas|lapack|openblas|blis|[st]*atlas|f77blas|mkl)[^/]*\.so' mapped |
           grep -vF -e "$library/" -e /liblapacke.so | sort -u) || true
  [ -z "$others" ] || fail "other libraries were loaded: $others"
}
