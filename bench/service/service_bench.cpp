// SPDX-License-Identifier: BSD-3-Clause
// What the service costs per call in the steady state: a buffer from the cache beside plain malloc, a call
// through a bound dispatch slot beside a direct one, a thread count.
#include <benchmark/benchmark.h>

#include <cstdlib>

#include "blas/level1/level1.h"
#include "blas/level1/level1_rows.h"
#include "service/serv.h"

namespace {

using namespace qel;

void cached_buffer(benchmark::State& state) {
  const auto size = static_cast<size_t>(state.range(0));
  for (auto _ : state) {
    void* buffer = serv_malloc(size, 128);
    benchmark::DoNotOptimize(buffer);
    serv_free(buffer);
  }
}

void plain_malloc(benchmark::State& state) {
  const auto size = static_cast<size_t>(state.range(0));
  for (auto _ : state) {
    void* buffer = std::malloc(size);
    benchmark::DoNotOptimize(buffer);
    std::free(buffer);
  }
}

// Empty vectors: what is left is the way to the kernel.
void bound_call(benchmark::State& state) {
  const core_int n = 0, one = 1;
  for (auto _ : state) benchmark::DoNotOptimize(core::ddot(&n, nullptr, &one, nullptr, &one));
}

void direct_call(benchmark::State& state) {
  const core_int n = 0, one = 1;
  ddot_fn* const volatile kernel = kDdot.kernel[serv_cpu_level()];
  ddot_fn* const direct = kernel;
  for (auto _ : state) benchmark::DoNotOptimize(direct(&n, nullptr, &one, nullptr, &one));
}

void thread_count(benchmark::State& state) {
  for (auto _ : state) benchmark::DoNotOptimize(serv_threads_for_domain(1));
}

BENCHMARK(cached_buffer)->Arg(1000)->Arg(1 << 20);
BENCHMARK(plain_malloc)->Arg(1000)->Arg(1 << 20);
BENCHMARK(bound_call);
BENCHMARK(direct_call);
BENCHMARK(thread_count);

}  // namespace

BENCHMARK_MAIN();
