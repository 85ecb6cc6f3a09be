// SPDX-License-Identifier: BSD-3-Clause
// Register tiles of the matrix product. Each element of a tile is one sum over the depth in order, from zero,
// product rounded before it is added; then it goes to C. So all tiles of all levels give the same bits for
// the same depth block. A complex tile runs the loop of a real one over real and imaginary parts and
// combines: re = sum(ar br) - sum(ai bi), im = sum(ai br) + sum(ar bi).
//
// shuffle_tile    A's registers and their permuted copies times registers of B; elements end up scattered
//                 over the sums and are sorted on the way to C
// broadcast_tile  A's registers times one number of B in all lanes
//
// A tile's columns are handed out as registers of rows: column(j, r) for r < kRegisters.
#pragma once

#include "blas/kernels/shared/gemm_lanes.inl.h"

namespace qel::QEL_LEVEL {
namespace {

/// How a tile goes to C.
struct add_to_c {};
struct store_to_c {};
template <class T>
struct add_to_multiple {
  T beta;
};

/// Keeps g++ from loading a value again instead of copying it.
template <class Reg>
[[gnu::always_inline]] inline void hold(Reg& value) {
  asm volatile("" : "+x"(value));
}
// sum += product, in this order. Left alone, g++ finishes one sum over all unrolled steps before the next one
// and spills the rest (with AVX it is enough to hold the sums at the end of a step), or adds into the
// product's register and copies it back.
#ifdef QEL_LEVEL_l4_avx
template <class Reg>
[[gnu::always_inline]] inline void accumulate(Reg& sum, Reg product) {
  sum = sum + product;
}
#else
[[gnu::always_inline]] inline void accumulate(__m128d& sum, __m128d product) {
  asm volatile("addpd %1, %0" : "+x"(sum) : "x"(product));
}
[[gnu::always_inline]] inline void accumulate(__m128& sum, __m128 product) {
  asm volatile("addps %1, %0" : "+x"(sum) : "x"(product));
}
#endif

#ifndef QEL_LEVEL_l4_avx
// Sums by flip: lane l of sum[x] belongs to lane l ^ x of A and lane l of B. Sorted into columns of C.

inline void sort_columns(double*, const __m128d (&sum)[2], __m128d (&column)[2]) {
  column[0] = _mm_unpacklo_pd(sum[0], sum[1]);
  column[1] = _mm_unpackhi_pd(sum[1], sum[0]);
}
inline void sort_columns(float*, const __m128 (&sum)[4], __m128 (&column)[4]) {
  const __m128 low01 = _mm_unpacklo_ps(sum[0], sum[1]), low23 = _mm_unpacklo_ps(sum[2], sum[3]);
  const __m128 high01 = _mm_unpackhi_ps(sum[0], sum[1]), high23 = _mm_unpackhi_ps(sum[2], sum[3]);
  column[0] = _mm_movelh_ps(low01, low23);
  column[1] = _mm_shuffle_ps(low01, low23, _MM_SHUFFLE(2, 3, 2, 3));
  column[2] = _mm_movelh_ps(high23, high01);
  column[3] = _mm_shuffle_ps(high23, high01, _MM_SHUFFLE(2, 3, 2, 3));
}
inline void sort_columns(complex16*, const __m128d (&sum)[2], __m128d (&column)[1]) {
  column[0] =
      lane_set<double>::crosswise_sum(_mm_unpacklo_pd(sum[0], sum[1]), _mm_unpackhi_pd(sum[0], sum[1]));
}
inline void sort_columns(complex8*, const __m128 (&sum)[4], __m128 (&column)[2]) {
  const __m128 low01 = _mm_unpacklo_ps(sum[0], sum[1]), low23 = _mm_unpacklo_ps(sum[2], sum[3]);
  const __m128 high01 = _mm_unpackhi_ps(sum[0], sum[1]), high23 = _mm_unpackhi_ps(sum[2], sum[3]);
  using L = lane_set<float>;
  column[0] = L::crosswise_sum(_mm_movelh_ps(low01, low23), _mm_movehl_ps(low23, low01));
  column[1] = L::crosswise_sum(_mm_movelh_ps(high23, high01), _mm_movehl_ps(high01, high23));
}

template <class T, int kRegistersA, int kRegistersB>
struct shuffle_tile {
  using R = typename parts<T>::real;
  using L = lane_set<R>;
  using reg = typename L::reg;
  static constexpr int kLanes = L::kCount, kRegisters = kRegistersA;
  static constexpr int kRows = kRegistersA * kLanes / parts<T>::kCount;
  static constexpr int kColumnsOfB = kLanes / parts<T>::kCount;
  static constexpr int kColumns = kRegistersB * kColumnsOfB;
  static constexpr int kStepA = kRegistersA * kLanes, kStepB = kRegistersB * kLanes;  // reals

  reg sum[kRegistersB][kRegistersA][kLanes];

  shuffle_tile() {
#pragma GCC unroll 4
    for (int q = 0; q < kRegistersB; ++q) {
#pragma GCC unroll 2
      for (int r = 0; r < kRegistersA; ++r) {
#pragma GCC unroll 4
        for (int x = 0; x < kLanes; ++x) sum[q][r][x] = L::zero();
      }
    }
  }
  template <int kFlip>
  void flip_all(const reg (&from_a)[kRegistersA], reg (&flipped)[kRegistersA][kLanes]) {
#pragma GCC unroll 2
    for (int r = 0; r < kRegistersA; ++r) flipped[r][kFlip] = L::template flipped<kFlip>(from_a[r]);
  }
  void step(const R* a, const R* b) {
    reg from_a[kRegistersA], flipped[kRegistersA][kLanes];
#pragma GCC unroll 2
    for (int r = 0; r < kRegistersA; ++r) from_a[r] = L::load(a + r * kLanes);
    flip_all<0>(from_a, flipped);
    flip_all<1>(from_a, flipped);
    if constexpr (kLanes == 4) {
      flip_all<2>(from_a, flipped);
      flip_all<3>(from_a, flipped);
    }
#pragma GCC unroll 4
    for (int q = 0; q < kRegistersB; ++q) {
      reg from_b = L::load(b + q * kLanes);
      hold(from_b);  // one load and copies: a second load would cost more
#pragma GCC unroll 2
      for (int r = 0; r < kRegistersA; ++r) {
#pragma GCC unroll 4
        for (int x = 0; x < kLanes; ++x) {
          accumulate(sum[q][r][x], L::mul(from_b, flipped[r][x]));
        }
      }
    }
  }
  /// Depth in steps of 8 with a tail.
  [[gnu::always_inline]] void run(core_int depth, const R* a, const R* b) {
    for (; depth >= 8; depth -= 8, a += 8 * kStepA, b += 8 * kStepB) {
      _mm_prefetch(reinterpret_cast<const char*>(a) + 0x600, _MM_HINT_T0);
#pragma GCC unroll 8
      for (int l = 0; l < 8; ++l) step(a + l * kStepA, b + l * kStepB);
    }
    for (; depth > 0; --depth, a += kStepA, b += kStepB) step(a, b);
  }
  /// The columns of C that belong to register q of B.
  void columns(int q, reg (&column)[kRegistersA][kColumnsOfB]) const {
#pragma GCC unroll 2
    for (int r = 0; r < kRegistersA; ++r) sort_columns(static_cast<T*>(nullptr), sum[q][r], column[r]);
  }
};
#endif

/// B's numbers for one step of a broadcast_tile: packed panels, unpacked columns, or a strip with every
/// number in all lanes already.
template <class T, int kReals>
struct packed_numbers {
  using R = typename parts<T>::real;
  const R* at;
  typename lane_set<R>::reg get(int l, int j) const {
#ifndef QEL_LEVEL_l4_avx
    if constexpr (sizeof(R) == 4 && kReals == 4) {
      // One load and a shuffle each: SSE has no load into all four lanes.
      const __m128i numbers = _mm_castps_si128(_mm_load_ps(at + l * kReals));
      switch (j) {
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
#endif
    return lane_set<R>::all(at[l * kReals + j]);
  }
  void advance(int steps) { at += steps * kReals; }
};
template <class T, int kReals>
struct column_numbers {
  using R = typename parts<T>::real;
  const R* at[kReals / parts<T>::kCount];
  column_numbers(const T* b, core_int ldb, core_int columns) {
    // What lies beyond the last column repeats it: such sums are not stored.
    for (core_int j = 0; j < kReals / parts<T>::kCount; ++j)
      at[j] = reals(b + (j < columns ? j : columns - 1) * ldb);
  }
  typename lane_set<R>::reg get(int l, int j) const {
    return lane_set<R>::all(
        element_at(at[j / parts<T>::kCount] + l * parts<T>::kCount + j % parts<T>::kCount));
  }
  void advance(int steps) {
    for (auto& column : at) column += steps * parts<T>::kCount;
  }
};
template <class T, int kReals>
struct strip_numbers {
  using R = typename parts<T>::real;
  const R* at;
  typename lane_set<R>::reg get(int l, int j) const {
    return lane_set<R>::load(at + (l * kReals + j) * lane_set<R>::kCount);
  }
  void advance(int steps) { at += steps * kReals * lane_set<R>::kCount; }
};

template <class T, int kRegistersA, int kReals>
struct broadcast_tile {
  using R = typename parts<T>::real;
  using L = lane_set<R>;
  using reg = typename L::reg;
  static constexpr int kLanes = L::kCount, kRegisters = kRegistersA;
  static constexpr int kRows = kRegistersA * kLanes / parts<T>::kCount;
  static constexpr int kColumns = kReals / parts<T>::kCount;
  static constexpr int kStepA = kRegistersA * kLanes;

  reg sum[kReals][kRegistersA];

  broadcast_tile() {
#pragma GCC unroll 12
    for (int j = 0; j < kReals; ++j) {
#pragma GCC unroll 2
      for (int r = 0; r < kRegistersA; ++r) sum[j][r] = L::zero();
    }
  }
  template <class B>
  void step(int l, const R* a, const B& b) {
    reg from_a[kRegistersA];
#pragma GCC unroll 2
    for (int r = 0; r < kRegistersA; ++r) from_a[r] = L::load(a + l * kStepA + r * kLanes);
#pragma GCC unroll 12
    for (int j = 0; j < kReals; ++j) {
      const reg from_b = b.get(l, j);
#pragma GCC unroll 2
      for (int r = 0; r < kRegistersA; ++r) accumulate(sum[j][r], L::mul(from_b, from_a[r]));
    }
#ifdef QEL_LEVEL_l4_avx
#pragma GCC unroll 8
    for (int i = 0; i < kReals * kRegistersA; ++i) hold(sum[i / kRegistersA][i % kRegistersA]);
#endif
  }
  template <class B>
  [[gnu::always_inline]] void run(core_int depth, const R* a, B b) {
    constexpr int kSteps = 4;
    for (; depth >= kSteps; depth -= kSteps) {
      _mm_prefetch(reinterpret_cast<const char*>(a) + 0x600, _MM_HINT_T0);
#pragma GCC unroll 8
      for (int l = 0; l < kSteps; ++l) step(l, a, b);
      a += kSteps * kStepA;
      b.advance(kSteps);
    }
    for (; depth > 0; --depth, a += kStepA, b.advance(1)) step(0, a, b);
  }
  reg column(int j, int r) const {
    if constexpr (parts<T>::kCount == 1) {
      return sum[j][r];
    } else {
      return L::crosswise_sum(sum[2 * j][r], L::exchanged(sum[2 * j + 1][r]));
    }
  }
};

// One register of rows to one column of C.

template <bool kAligned, class R>
inline typename lane_set<R>::reg load_c(const R* c) {
  return kAligned ? lane_set<R>::load(c) : lane_set<R>::loadu(c);
}
template <bool kAligned, class T>
inline void put_rows(T* c, typename lane_set<typename parts<T>::real>::reg rows, add_to_c) {
  using L = lane_set<typename parts<T>::real>;
  auto* at = reals(c);
  if (kAligned) {
    L::store(at, L::add(L::load(at), rows));
  } else {
    L::storeu(at, L::add(L::loadu(at), rows));
  }
}
template <bool kAligned, class T>
inline void put_rows(T* c, typename lane_set<typename parts<T>::real>::reg rows, store_to_c) {
  using L = lane_set<typename parts<T>::real>;
  if (kAligned) {
    L::store(reals(c), rows);
  } else {
    L::storeu(reals(c), rows);
  }
}
template <bool kAligned, class T>
inline void put_rows(T* c, typename lane_set<typename parts<T>::real>::reg rows,
                     const add_to_multiple<T>& by) {
  using L = lane_set<typename parts<T>::real>;
  auto scaled = load_c<kAligned>(reals(c));
  if constexpr (parts<T>::kCount == 1) {
    scaled = L::mul(L::all(by.beta), scaled);
  } else {
    scaled = L::crosswise_sum(L::mul(L::all(by.beta.real), scaled),
                              L::mul(L::all(by.beta.imag), L::exchanged(scaled)));
  }
  put_rows<kAligned>(c, L::add(scaled, rows), store_to_c{});
}

template <class T>
inline void put_element(T* c, T value, add_to_c) {
  set_element(c, plus(element_at(c), value));
}
template <class T>
inline void put_element(T* c, T value, store_to_c) {
  set_element(c, value);
}
template <class T>
inline void put_element(T* c, T value, const add_to_multiple<T>& by) {
  set_element(c, plus(times(by.beta, element_at(c)), value));
}

/// The first rows of a register that is not whole.
template <class T, class How>
inline void put_part(T* c, core_int rows, typename lane_set<typename parts<T>::real>::reg values,
                     const How& how) {
  using L = lane_set<typename parts<T>::real>;
  constexpr int kInRegister = L::kCount / parts<T>::kCount;
  T kept[kInRegister];
  L::storeu(reals(kept), values);
  for (int i = 0; i < kInRegister - 1 && i < rows; ++i) put_element(c + i, kept[i], how);
}

}  // namespace
}  // namespace qel::QEL_LEVEL
