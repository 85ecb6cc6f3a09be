// SPDX-License-Identifier: BSD-3-Clause
// What a plain level-1 entry costs above the core routine that it calls: the public ddot of libqel.so,
// called through a pointer as any program does, beside core::ddot linked statically.
#include <benchmark/benchmark.h>

#include <vector>

#include "bench/support/contenders.h"
#include "blas/level1/level1.h"

namespace {

using namespace qel;
using entry_fn = double(const int*, const double*, const int*, const double*, const int*);

void public_entry(benchmark::State& state) {
  entry_fn* dot = bench::contenders().front().find<entry_fn>("ddot");
  const int n = static_cast<int>(state.range(0)), one = 1;
  const std::vector<double> x(static_cast<size_t>(n), 1.0);
  for (auto _ : state) benchmark::DoNotOptimize(dot(&n, x.data(), &one, x.data(), &one));
}

void core_routine(benchmark::State& state) {
  double (*volatile dot)(const core_int*, const double*, const core_int*, const double*, const core_int*) =
      core::ddot;
  const core_int n = state.range(0), one = 1;
  const std::vector<double> x(static_cast<size_t>(n), 1.0);
  for (auto _ : state) benchmark::DoNotOptimize(dot(&n, x.data(), &one, x.data(), &one));
}

BENCHMARK(public_entry)->Arg(1)->Arg(16);
BENCHMARK(core_routine)->Arg(1)->Arg(16);

}  // namespace

BENCHMARK_MAIN();
