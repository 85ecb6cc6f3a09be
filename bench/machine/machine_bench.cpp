// SPDX-License-Identifier: BSD-3-Clause
// What the machine could do at most, on OMP_NUM_THREADS threads: multiplications and additions on registers
// only, fused where the processor can, in the widest registers that it has; and reading from memory, alone
// and with writing. Results of the other programs are held against it.
#include <immintrin.h>
#include <omp.h>

#include <memory>
#include <string>
#include <vector>

#include "bench/support/compare.h"

namespace qel::bench {
namespace {

constexpr int kSums = 12, kSteps = 2000;  // independent sums hide the latencies

// Loops for each instruction set: its functions can't be inlined into others.
#define QEL_PEAK_LOOP(name, isa, vector, set, step)             \
  __attribute__((target(isa))) double name() {                  \
    vector factor = set(0.9999);                                \
    asm("" : "+v"(factor));                                     \
    vector sum[kSums];                                          \
    for (vector & s : sum) s = set(0.5);                        \
    for (int i = 0; i < kSteps; ++i) {                          \
      _Pragma("GCC unroll 12") for (vector & s : sum) s = step; \
    }                                                           \
    vector total = set(0);                                      \
    for (vector & s : sum) total += s;                          \
    return total[0];                                            \
  }
QEL_PEAK_LOOP(peak_sse2, "sse2", __m128d, _mm_set1_pd, _mm_add_pd(_mm_mul_pd(s, factor), factor))
QEL_PEAK_LOOP(peak_avx, "avx", __m256d, _mm256_set1_pd, _mm256_add_pd(_mm256_mul_pd(s, factor), factor))
QEL_PEAK_LOOP(peak_fma, "avx2,fma", __m256d, _mm256_set1_pd, _mm256_fmadd_pd(s, factor, factor))
QEL_PEAK_LOOP(peak_avx512, "avx512f", __m512d, _mm512_set1_pd, _mm512_fmadd_pd(s, factor, factor))
#undef QEL_PEAK_LOOP

struct peak_loop {
  double (*run)();
  int numbers;  ///< in a register
};
peak_loop widest() {
  if (__builtin_cpu_supports("avx512f")) return {peak_avx512, 8};
  if (__builtin_cpu_supports("avx2") && __builtin_cpu_supports("fma")) return {peak_fma, 4};
  if (__builtin_cpu_supports("avx")) return {peak_avx, 4};
  return {peak_sse2, 2};
}

void set_rate(benchmark::State& state, const char* unit, double per_call) {
  state.counters[unit] = benchmark::Counter(per_call, benchmark::Counter::kIsIterationInvariantRate);
}

void peak(benchmark::State& state) {
  const peak_loop loop = widest();
  const int threads = omp_get_max_threads();
  for (auto _ : state) {
    double total = 0;
#pragma omp parallel num_threads(threads) reduction(+ : total)
    for (int part = 0; part < 10; ++part) total += loop.run();
    benchmark::DoNotOptimize(total);
  }
  set_rate(state, "flop/s", 10.0 * threads * 2 * kSums * kSteps * loop.numbers);
}

constexpr std::size_t kLong = std::size_t{24} << 20;  // doubles: beyond any cache

/// Memory that each thread has touched first.
std::shared_ptr<double[]> touched(std::size_t n) {
  const std::shared_ptr<double[]> memory(new double[n]);
  double* const p = memory.get();
#pragma omp parallel for
  for (std::size_t i = 0; i < n; ++i) p[i] = 1;
  return memory;
}

void read(benchmark::State& state) {
  static const std::shared_ptr<double[]> memory = touched(kLong);
  const double* const p = memory.get();
  for (auto _ : state) {
    double total = 0;
#pragma omp parallel for simd reduction(+ : total)
    for (std::size_t i = 0; i < kLong; ++i) total += p[i];
    benchmark::DoNotOptimize(total);
  }
  set_rate(state, "byte/s", 8.0 * kLong);
}

void copy(benchmark::State& state) {
  static const std::shared_ptr<double[]> from = touched(kLong / 2), to = touched(kLong / 2);
  const double* const p = from.get();
  double* const q = to.get();
  for (auto _ : state) {
#pragma omp parallel for simd
    for (std::size_t i = 0; i < kLong / 2; ++i) q[i] = p[i];
    benchmark::ClobberMemory();
  }
  set_rate(state, "byte/s", 8.0 * kLong);
}

}  // namespace
}  // namespace qel::bench

int main(int argc, char** argv) {
  using namespace qel::bench;
  set_environment_defaults();
  for (const auto& [name, body] :
       {std::pair<const char*, void (*)(benchmark::State&)>{"peak", peak}, {"read", read}, {"copy", copy}}) {
    remember_case(name);
    add_run(name, kSubject, body);
  }
  return run_comparison(argc, argv);
}
