#!/bin/sh
# usage: run_scalapack.sh DROP_IN_FOLDER RECORDER SCRATCH_FOLDER
# ScaLAPACK's test programs (Debian: scalapack-mpi-test, openmpi-bin) on two processes; those whose data ask for
# grids of four, on four. What fails must fail on the reference libraries, too.
. "$(dirname "$(realpath "$0")")/client.sh"
programs=$system/scalapack/openmpi-tests
[ -x "$programs/xdlu" ] || skip "scalapack-mpi-test is not installed"
need mpirun.openmpi openmpi-bin
have_reference || skip "libblas3, liblapack3 are not installed"
export OMPI_MCA_btl=self,vader OMPI_MCA_rmaps_base_oversubscribe=1 OMPI_ALLOW_RUN_AS_ROOT=1 OMPI_ALLOW_RUN_AS_ROOT_CONFIRM=1
export OMPI_MCA_mpi_yield_when_idle=1 OMP_NUM_THREADS=1    # the processes share the machine

passed() { grep -c PASSED "$1" || true; }
failed() { grep -cE 'FAILED|ABORT|[1-9][0-9]* tests completed and failed' "$1" || true; }
run() {  # PROCESSES PROGRAM REPORT WITH
  $4 timeout 300 mpirun.openmpi --oversubscribe -n "$1" "$programs/$2" > "$3" 2>&1 || echo "exit code $? FAILED" >> "$3"
}
cp /usr/share/scalapack/*.dat .
status=0 checks=0 count=0
check() {  # PROCESSES PROGRAM
  [ -x "$programs/$2" ] || return 0
  run "$1" "$2" ours with_ours
  checks=$((checks + $(passed ours))) count=$((count + 1))
  [ "$(failed ours)" -gt 0 ] || [ "$(passed ours)" -eq 0 ] || return 0
  run "$1" "$2" theirs with_reference
  if [ "$(passed ours)" -lt "$(passed theirs)" ] || [ "$(failed ours)" -gt "$(failed theirs)" ]; then
    echo "$2: $(passed ours) passed, $(failed ours) failed; on the reference $(passed theirs), $(failed theirs)"
    cp ours "$2.log"; status=1
  fi
}
for family in lu llt qr ls inv trd brd hrd nep dblu gblu dtlu ptllt pbllt; do
  for type in d z; do check 2 x$type$family; done
done
for program in xslu xclu xsllt xcllt xsqr xcqr; do check 2 $program; done
for program in xdsvd xdsyevr xzheevr; do check 4 $program; done
check_loaded libblas.so.3 liblapack.so.3
echo "$count programs, $checks checks passed"
[ $count -ge 35 ] && [ $checks -ge 2000 ] || fail "that is too few"
exit $status
