#!/bin/sh
# usage: bench_report.sh [BUILD_FOLDER]     runs the benchmarks on one thread and writes docs/benchmarks.md;
# nothing else should run on the machine meanwhile
set -eu
cd "$(dirname "$0")/.."
build=${1:-build}
out=docs/benchmarks.md
export OMP_NUM_THREADS=1 OPENBLAS_NUM_THREADS=1 BLIS_NUM_THREADS=1
table() { sed -n '/^case /,$p'; }
{
  echo "# Benchmarks"
  echo
  echo "Written by \`scripts/bench_report.sh\`. One thread; medians of 9 interleaved repetitions; a ratio above 1"
  echo "means that QEL is faster. QEL runs its native levels."
  echo
  echo "Machine: $(sed -n 's/^model name[^:]*: //p' /proc/cpuinfo | head -n 1), $(nproc) processors. Compiler:" \
       "$(c++ -dumpfullversion) ($(sed -n 's/^CMAKE_BUILD_TYPE:[^=]*=//p' "$build/CMakeCache.txt"))."
  echo
  echo "## BLAS"
  echo
  echo '```'
  "$build/bench/qel-bench-blas" 2>/dev/null | table
  echo '```'
  echo
  echo "## What an entry and the service cost"
  echo
  echo '```'
  "$build/bench/qel-bench-entry" --benchmark_repetitions=9 --benchmark_report_aggregates_only=true 2>/dev/null | grep -E '^Benchmark|median'
  "$build/bench/qel-bench-service" --benchmark_repetitions=9 --benchmark_report_aggregates_only=true 2>/dev/null | grep median
  echo '```'
} > "$out.part"
mv "$out.part" "$out"
