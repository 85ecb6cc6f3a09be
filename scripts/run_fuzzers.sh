#!/bin/sh
# usage: run_fuzzers.sh [SECONDS [NAMES...]]     builds the fuzzers (preset fuzz) and runs each for SECONDS (600),
# one after the other at the lowest priority. New inputs go to build-fuzz/found/NAME, crashes beside them;
# `run_fuzzers.sh keep [NAMES...]` minimises what was found together with the corpus into fuzz/corpus/NAME.
set -eu
cd "$(dirname "$0")/.."
build=build-fuzz
what=${1:-600}
[ $# -gt 0 ] && shift
names=${*:-$(cd fuzz && ls ./*.cpp | sed 's|./||; s|\.cpp$||')}
if [ "$what" != keep ]; then
  scripts/install_packages.sh build fuzz
  cmake --preset fuzz > /dev/null
  for name in $names; do cmake --build $build --target "fuzz_$name"; done
fi
export ASAN_OPTIONS=allocator_may_return_null=1 UBSAN_OPTIONS=print_stacktrace=1 QEL_NUM_THREADS=1
limits="-rss_limit_mb=1024 -timeout=10 -max_len=2048"
failed=""
for name in $names; do
  found=$build/found/$name
  corpus=fuzz/corpus/$name
  mkdir -p "$found" "$corpus"
  if [ "$what" = keep ]; then
    # The inputs come in the order of what they add: the first ones are nearly all.
    mkdir -p "$found.all"
    rm -f "$found.all"/*
    $build/fuzz/fuzz_"$name" -set_cover_merge=1 $limits "$found.all" "$corpus" "$found" > "$found.log" 2>&1 ||
      failed="$failed $name"
    for input in $(ls -tr "$found.all" | head -60); do cp "$found.all/$input" "$corpus"; done
    continue
  fi
  echo "fuzz_$name: $what s"
  dictionary=""
  [ -f "fuzz/$name.dict" ] && dictionary="-dict=fuzz/$name.dict"
  nice -n 19 $build/fuzz/fuzz_"$name" $limits $dictionary -max_total_time="$what" -print_final_stats=1 \
    -artifact_prefix="$found-" "$found" "$corpus" > "$found.log" 2>&1 || failed="$failed $name"
  grep -E 'stat::number_of_executed_units|SUMMARY' "$found.log" || true
done
[ -z "$failed" ] || { echo "failed:$failed"; exit 1; }
