// SPDX-License-Identifier: BSD-3-Clause
// The accumulation kernel: a block of outputs stays in registers while the taps go by. Taps that meet data
// for only a part of the block, at both ends of the data, are worked output by output; the order of summation
// is the same everywhere.
#include <immintrin.h>
#include <stdint.h>

#include "conv/kernels/conv_kernels.h"

#ifndef QEL_LEVEL
#error "kernel files are built by qel_add_level, which names the processor type"
#endif

namespace qel::QEL_LEVEL {
namespace {

#ifdef __AVX__
#define QEL_CONV(operation) _mm256_##operation
using double_register = __m256d;
using float_register = __m256;
#else
#define QEL_CONV(operation) _mm_##operation
using double_register = __m128d;
using float_register = __m128;
#endif

/// The widest registers of the processor type.
struct doubles {
  using reg = double_register;
  static constexpr int kCount = sizeof(reg) / sizeof(double);
  static reg all(double v) { return QEL_CONV(set1_pd)(v); }
  static reg load(const double* p) { return QEL_CONV(loadu_pd)(p); }
  static void store(double* p, reg v) { QEL_CONV(storeu_pd)(p, v); }
  static reg plus_product(reg sum, reg a, reg b) { return QEL_CONV(add_pd)(sum, QEL_CONV(mul_pd)(a, b)); }
  static double plus_product(double sum, double a, double b) { return sum + a * b; }
};
struct floats {
  using reg = float_register;
  static constexpr int kCount = sizeof(reg) / sizeof(float);
  static reg all(float v) { return QEL_CONV(set1_ps)(v); }
  static reg load(const float* p) { return QEL_CONV(loadu_ps)(p); }
  static void store(float* p, reg v) { QEL_CONV(storeu_ps)(p, v); }
  static reg plus_product(reg sum, reg a, reg b) { return QEL_CONV(add_ps)(sum, QEL_CONV(mul_ps)(a, b)); }
  static float plus_product(float sum, float a, float b) { return sum + a * b; }
};
#undef QEL_CONV

template <class R>
struct run {
  const R* taps;
  int64_t tap_count;
  const R* data;
  int64_t data_count;
};

inline int64_t least(int64_t a, int64_t b) { return a < b ? a : b; }
inline int64_t greatest(int64_t a, int64_t b) { return a > b ? a : b; }

/// w += the taps first .. last - 1 that meet output t.
template <class V, class R>
inline void one_output(const run<R>& c, int64_t t, int64_t first, int64_t last, R* w) {
  first = greatest(first, t - c.data_count + 1);
  last = least(last, t + 1);
  R sum = *w;
  for (int64_t i = first; i < last; ++i) sum = V::plus_product(sum, c.taps[i], c.data[t - i]);
  *w = sum;
}

/// kRegisters registers of outputs from t on.
template <class V, int kRegisters, class R>
inline void block(const run<R>& c, int64_t t, R* w) {
  constexpr int64_t kOutputs = kRegisters * V::kCount;
  // Taps from whole on meet data at every output of the block, up to beyond.
  const int64_t whole = least(greatest(t + kOutputs - c.data_count, 0), c.tap_count);
  const int64_t beyond = greatest(least(t + 1, c.tap_count), whole);
  if (whole > 0)
    for (int64_t k = 0; k < kOutputs; ++k) one_output<V>(c, t + k, 0, whole, w + k);
  typename V::reg sum[kRegisters];
  for (int r = 0; r < kRegisters; ++r) sum[r] = V::load(w + r * V::kCount);
  const R* at = c.data + (t - whole);
  for (int64_t i = whole; i < beyond; ++i, --at) {
    const typename V::reg tap = V::all(c.taps[i]);
#pragma GCC unroll 16
    for (int r = 0; r < kRegisters; ++r) sum[r] = V::plus_product(sum[r], tap, V::load(at + r * V::kCount));
  }
  for (int r = 0; r < kRegisters; ++r) V::store(w + r * V::kCount, sum[r]);
  if (beyond < c.tap_count)
    for (int64_t k = 0; k < kOutputs; ++k) one_output<V>(c, t + k, beyond, c.tap_count, w + k);
}

template <class V, class R>
inline void accumulate(const run<R>& c, int64_t first, int64_t last, R* w) {
  constexpr int kWide = 8;
  int64_t t = first;
  for (; t + kWide * V::kCount <= last; t += kWide * V::kCount) block<V, kWide>(c, t, w + (t - first));
  for (; t + 2 * V::kCount <= last; t += 2 * V::kCount) block<V, 2>(c, t, w + (t - first));
  for (; t < last; ++t) one_output<V>(c, t, 0, c.tap_count, w + (t - first));
}

}  // namespace

void accumulate_s(const float* taps, core_int tap_count, const float* data, core_int data_count,
                  core_int first, core_int last, float* w) {
  accumulate<floats>(run<float>{taps, tap_count, data, data_count}, first, last, w);
}
void accumulate_d(const double* taps, core_int tap_count, const double* data, core_int data_count,
                  core_int first, core_int last, double* w) {
  accumulate<doubles>(run<double>{taps, tap_count, data, data_count}, first, last, w);
}

}  // namespace qel::QEL_LEVEL
