#!/bin/sh
# usage: bench_report.sh [BUILD_FOLDER [COMMAND...]]     runs qel bench family by family and writes
# docs/benchmarks.md and docs/pictures/bench.png (with Chromium). COMMAND is put before each run, e.g.
# taskset -c 2; QEL_BENCH_OPTIONS are options for them, e.g. --quick. A family that is missing because its run
# was ended keeps the results of the last one. Nothing else should run on the machine meanwhile.
set -eu
cd "$(dirname "$0")/.."
build=${1:-build}
[ $# -eq 0 ] || shift
results=$build/bench/results
mkdir -p "$results" docs/pictures
files=""
for family in $("$build/cli/qel" bench --list | cut -d' ' -f1); do
  # shellcheck disable=SC2086
  if "$@" "$build/cli/qel" bench --family "$family" --json "$results/$family.part" ${QEL_BENCH_OPTIONS:-} > /dev/null; then
    mv "$results/$family.part" "$results/$family.json"
  else
    echo "$family: not run whole" >&2
  fi
  [ ! -e "$results/$family.json" ] || files="$files --from $results/$family.json"
done
# shellcheck disable=SC2086
"$build/cli/qel" bench $files --markdown docs/benchmarks.md --html "$results/report.html"
scripts/picture_of_page.sh "$results/report.html" docs/pictures/bench.png
