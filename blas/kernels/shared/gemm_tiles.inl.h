// SPDX-License-Identifier: BSD-3-Clause
// Register tiles of the matrix product. Each element of a tile is one sum over the depth in order, from zero,
// product rounded before it is added; then it goes to C. So all tiles of all levels give the same bits for
// the same depth block. A complex tile runs the loop of a real one over real and imaginary parts and
// combines: re = sum(ar br) - sum(ai bi), im = sum(ai br) + sum(ar bi).
//
// broadcast_tile  A's registers times one number of B in all lanes
// pair_tile       A's registers times pairs of B, and one of both swapped; elements end up scattered over the
//                 sums and are sorted on the way to C
//
// A tile's columns are handed out as registers of rows: column(j, r) for r < kRegisters.
#pragma once

#include "blas/kernels/shared/gemm_numbers.inl.h"

namespace qel::QEL_LEVEL {
namespace {

/// How a tile goes to C.
struct add_to_c {};
struct store_to_c {};
template <class T>
struct add_to_multiple {
  T beta;
};

/// A's registers times single numbers of B: columns by kReals of them.
template <class T, int kRegistersA, int kReals>
struct broadcast_tile {
  using R = typename parts<T>::real;
  using L = lane_set<R>;
  using reg = typename L::reg;
  static constexpr int kRegisters = kRegistersA, kRows = kRegistersA * L::kCount / parts<T>::kCount;
  static constexpr int kColumns = kReals / parts<T>::kCount;
  static constexpr bool kSpreads = false;
#ifdef QEL_LEVEL_l4_avx
  using packed = packed_numbers<R, kReals>;
#else
  using packed = packed_numbers<R>;
#endif

  reg sum[kReals * kRegistersA];

  broadcast_tile() {
    for (reg& s : sum) s = L::zero();
  }
  template <class B>
  [[gnu::always_inline]] void step(int l, const R* a, const B& b) {
    if constexpr (kRegistersA == 2) {
      two_by_four<second_register::next, L>(sum, l, a, b);
    } else {
      one_by_many<L>(sum, l, a, b);
    }
  }
  template <class B>
  [[gnu::always_inline]] void run(core_int depth, const R* a, B b) {
    // With registers of 16 bytes blocks of A lie in the second cache: every other line does.
    run_depth<4, kRegistersA * L::kCount, sizeof(reg) == 16 ? 128 : 64>(*this, depth, a, b);
  }
  reg column(int j, int r) const {
    if constexpr (parts<T>::kCount == 1) {
      return sum[kRegistersA * j + r];
    } else {
      return L::crosswise_sum(sum[kRegistersA * 2 * j + r], L::exchanged(sum[kRegistersA * (2 * j + 1) + r]));
    }
  }
};

#ifndef QEL_LEVEL_l4_avx
// Lane l of a straight sum belongs to lane l of A and to number l % 2 of B's pair, of a swapped one to the
// other lane of A's pair. Sorted into columns of C; to a complex type a pair is one column.

inline void sort_sums(double*, __m128d straight, __m128d swapped, __m128d (&column)[2]) {
  column[0] = _mm_unpacklo_pd(straight, swapped);
  column[1] = _mm_unpackhi_pd(swapped, straight);
}
inline void sort_sums(float*, __m128 straight, __m128 swapped, __m128 (&column)[2]) {
  const __m128 low = _mm_unpacklo_ps(straight, swapped), high = _mm_unpackhi_ps(straight, swapped);
  column[0] = _mm_movelh_ps(low, high);
  column[1] = _mm_shuffle_ps(low, high, _MM_SHUFFLE(2, 3, 2, 3));
}
inline void sort_sums(complex16*, __m128d straight, __m128d swapped, __m128d (&column)[1]) {
  column[0] =
      lane_set<double>::crosswise_sum(_mm_unpacklo_pd(straight, swapped), _mm_unpackhi_pd(straight, swapped));
}
inline void sort_sums(complex8*, __m128 straight, __m128 swapped, __m128 (&column)[1]) {
  const __m128 low = _mm_unpacklo_ps(straight, swapped), high = _mm_unpackhi_ps(straight, swapped);
  column[0] = lane_set<float>::crosswise_sum(_mm_movelh_ps(low, high), _mm_movehl_ps(high, low));
}

/// Which factor is there as it is and with neighbours swapped: the one register of A times four pairs of B,
/// or each of B's two pairs times two registers of A.
enum class swapped_factor { a, b };

template <class T, swapped_factor kSwapped>
struct pair_tile {
  using R = typename parts<T>::real;
  using L = lane_set<R>;
  using reg = typename L::reg;
  static constexpr bool kSwapsA = kSwapped == swapped_factor::a;
  static constexpr int kRegisters = kSwapsA ? 1 : 2, kRows = kRegisters * L::kCount / parts<T>::kCount;
  static constexpr int kColumnsOfPair = 2 / parts<T>::kCount, kColumns = 4 / kRegisters * kColumnsOfPair;
  static constexpr bool kSpreads = !kSwapsA;
  using packed = typename one_of_two<kSwapsA, packed_pairs<R>, packed_swaps<R>>::type;

  reg sum[8];

  pair_tile() {
    for (reg& s : sum) s = L::zero();
  }
  template <class B>
  [[gnu::always_inline]] void step(int l, const R* a, const B& b) {
    two_by_four<kSwapsA ? second_register::swapped : second_register::next, L>(sum, l, a, b);
  }
  template <class B>
  [[gnu::always_inline]] void run(core_int depth, const R* a, B b) {
    run_depth<8, kRegisters * L::kCount, 64>(*this, depth, a, b);
  }
  reg column(int j, int r) const {
    const int q = j / kColumnsOfPair;
    reg column[kColumnsOfPair];
    if constexpr (kSwapsA) {
      sort_sums(static_cast<T*>(nullptr), sum[2 * q], sum[2 * q + 1], column);
    } else {
      sort_sums(static_cast<T*>(nullptr), sum[4 * q + r], L::exchanged(sum[4 * q + 2 + r]), column);
    }
    return column[j % kColumnsOfPair];
  }
};
#endif

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
