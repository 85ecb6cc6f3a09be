// SPDX-License-Identifier: BSD-3-Clause
// Where a register tile finds B's numbers for a step. get(l, q): register q, l steps on; step(l): where its
// four registers can be read from. A number is read into all lanes, or a pair fills a register, in single
// precision twice.
#pragma once

#include "blas/kernels/shared/gemm_steps.inl.h"

namespace qel::QEL_LEVEL {
namespace {

#ifdef QEL_LEVEL_l4_avx
template <class R, int kReals>
struct packed_numbers {
  const R* at;
  typename lane_set<R>::reg get(int l, int q) const { return lane_set<R>::all(at[l * kReals + q]); }
  void advance(int steps) { at += steps * kReals; }
};
#else
/// What get() of others gave, register after register.
template <class R, int kRegisters>
struct spread_numbers {
  static constexpr read_of_b kRead = read_of_b::whole;
  const R* at;
  const R* step(int l) const { return at + l * kRegisters * lane_set<R>::kCount; }
  typename lane_set<R>::reg get(int l, int q) const {
    return lane_set<R>::load(step(l) + q * lane_set<R>::kCount);
  }
  void advance(int steps) { at = step(steps); }
};
template <class R>
struct packed_numbers;
template <>
struct packed_numbers<double> {
  static constexpr read_of_b kRead = kTwice;
  const double* at;
  const double* step(int l) const { return at + 4 * l; }
  __m128d get(int l, int q) const { return _mm_set1_pd(step(l)[q]); }
  void advance(int steps) { at = step(steps); }
};
template <>
struct packed_numbers<float> {
  static constexpr read_of_b kRead = read_of_b::made;
  const float* at;
  __m128 get(int l, int q) const {
    // One load and a shuffle each: SSE has no load into all four lanes.
    const __m128i numbers = _mm_castps_si128(_mm_load_ps(at + l * 4));
    switch (q) {
      case 0:
        return _mm_castsi128_ps(_mm_shuffle_epi32(numbers, 0x00));
      case 1:
        return _mm_castsi128_ps(_mm_shuffle_epi32(numbers, 0x55));
      case 2:
        return _mm_castsi128_ps(_mm_shuffle_epi32(numbers, 0xAA));
      default:
        return _mm_castsi128_ps(_mm_shuffle_epi32(numbers, 0xFF));
    }
  }
  void advance(int steps) { at += steps * 4; }
};
/// Four pairs a step.
template <class R>
struct packed_pairs {
  static constexpr read_of_b kRead = sizeof(R) == 8 ? read_of_b::whole : kTwice;
  const R* at;
  const R* step(int l) const { return at + 8 * l; }
  typename lane_set<R>::reg get(int l, int q) const { return lane_set<R>::pair(step(l) + 2 * q); }
  void advance(int steps) { at = step(steps); }
};
/// Two pairs a step, each followed by its swapped copy.
template <class R>
struct packed_swaps {
  static constexpr read_of_b kRead = read_of_b::made;
  const R* at;
  typename lane_set<R>::reg get(int l, int q) const {
    const auto pair = lane_set<R>::pair(at + l * 4 + q / 2 * 2);
    return q % 2 == 0 ? pair : lane_set<R>::swapped(pair);
  }
  void advance(int steps) { at += steps * 4; }
};

/// Unpacked columns of B.
template <class T, int kReals>
struct column_numbers {
  static constexpr read_of_b kRead = read_of_b::made;
  using R = typename parts<T>::real;
  static constexpr int kParts = parts<T>::kCount;
  const R* at[kReals / kParts];
  column_numbers(const T* b, core_int ldb, core_int columns) {
    // What lies beyond the last column repeats it: such sums are not stored.
    for (core_int j = 0; j < kReals / kParts; ++j) at[j] = reals(b + (j < columns ? j : columns - 1) * ldb);
  }
  typename lane_set<R>::reg get(int l, int q) const {
    return lane_set<R>::all(element_at(at[q / kParts] + l * kParts + q % kParts));
  }
  void advance(int steps) {
    for (auto& column : at) column += steps * kParts;
  }
};

/// `depth` steps of B's registers as spread_numbers reads them.
template <int kRegisters, class R, class B>
inline void spread(core_int depth, B b, R* out) {
  using L = lane_set<R>;
  for (; depth > 0; --depth, b.advance(1), out += kRegisters * L::kCount) {
#pragma GCC unroll 4
    for (int q = 0; q < kRegisters; ++q) L::store(out + q * L::kCount, b.get(0, q));
  }
}
#endif

}  // namespace
}  // namespace qel::QEL_LEVEL
