// SPDX-License-Identifier: BSD-3-Clause
// What an operation of the facade costs above the entry that it calls: the same short vectors through
// DotNetBlas, by its interface, and through the entry of the same library.
#include <benchmark/benchmark.h>

#include <memory>
#include <vector>

#include "qel/blas.h"
#include "tavik/kernel/dot_net_blas.h"

namespace {

using Tavik::Core::Array;
using Tavik::Core::DoubleDataBlock;

constexpr int kOne = 1;

struct operands {
  DoubleDataBlock x, y;
  explicit operands(int n)
      : x{Array<double>(std::vector<double>(static_cast<size_t>(n) + 1, 1.0)), 1},
        y{Array<double>(std::vector<double>(static_cast<size_t>(n) + 1, 1.0)), 1} {}
};

std::unique_ptr<Tavik::Core::ITavikKernel> kernel() { return std::make_unique<Tavik::Kernel::DotNetBlas>(); }

void dot_facade(benchmark::State& state) {
  const auto blas = kernel();
  const int n = static_cast<int>(state.range(0));
  const operands o(n);
  for (auto _ : state) benchmark::DoNotOptimize(blas->dot(n, o.x, 1, o.y, 1));
}
void dot_entry(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  const operands o(n);
  for (auto _ : state) benchmark::DoNotOptimize(ddot(&n, &o.x.Data[1], &kOne, &o.y.Data[1], &kOne));
}

void axpy_facade(benchmark::State& state) {
  const auto blas = kernel();
  const int n = static_cast<int>(state.range(0));
  const operands o(n);
  for (auto _ : state) {
    blas->axpy(n, -1.0, o.x, 1, o.y, 1);
    benchmark::ClobberMemory();
  }
}
void axpy_entry(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  const operands o(n);
  const double alpha = -1;
  for (auto _ : state) {
    daxpy(&n, &alpha, &o.x.Data[1], &kOne, &o.y.Data[1], &kOne);
    benchmark::ClobberMemory();
  }
}

void amax_facade(benchmark::State& state) {
  const auto blas = kernel();
  const int n = static_cast<int>(state.range(0));
  const operands o(n);
  for (auto _ : state) benchmark::DoNotOptimize(blas->amax(n, o.x, 1));
}
void amax_entry(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  const operands o(n);
  for (auto _ : state) benchmark::DoNotOptimize(idamax(&n, &o.x.Data[1], &kOne));
}

BENCHMARK(dot_facade)->Arg(1)->Arg(16);
BENCHMARK(dot_entry)->Arg(1)->Arg(16);
BENCHMARK(axpy_facade)->Arg(1)->Arg(16);
BENCHMARK(axpy_entry)->Arg(1)->Arg(16);
BENCHMARK(amax_facade)->Arg(1)->Arg(16);
BENCHMARK(amax_entry)->Arg(1)->Arg(16);

}  // namespace

BENCHMARK_MAIN();
