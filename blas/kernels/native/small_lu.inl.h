// SPDX-License-Identifier: BSD-3-Clause
// LU factors of few rows and columns in a copy. Rows stay where they are until the end: what is exchanged
// element by element can't be read as vectors at once. A mask tells which rows are still to be pivots. For
// vectors of 32 bytes.
#pragma once

#include "blas/kernels/native/narrow.inl.h"

namespace qel::QEL_LEVEL {
namespace {

template <class T>
struct pivots_of {
  using R = typename reals<T>::type;
  static R magnitude(R v) { return v < 0 ? -v : v; }
  static R size(T v) {
    if constexpr (reals<T>::kCount == 1) {
      return magnitude(v);
    } else {
      return magnitude(v.real) + magnitude(v.imag);
    }
  }
  static T one() {
    if constexpr (reals<T>::kCount == 1) {
      return 1;
    } else {
      return {1, 0};
    }
  }
  static R real(T v) {
    if constexpr (reals<T>::kCount == 1) {
      return v;
    } else {
      return v.real;
    }
  }
  static T from(R v) {
    if constexpr (reals<T>::kCount == 1) {
      return v;
    } else {
      return {v, 0};
    }
  }
  static T conjugate(T v) {
    if constexpr (reals<T>::kCount == 1) {
      return v;
    } else {
      return {v.real, -v.imag};
    }
  }
};

/// One division deep where the square of the pivot's modulus is far from overflow and underflow; all columns
/// wait for it.
template <class T>
inline T reciprocal_of(T pivot) {
  using P = pivots_of<T>;
  if constexpr (reals<T>::kCount == 2) {
    constexpr auto kHigh = static_cast<typename P::R>(sizeof(typename P::R) == 4 ? 0x1p60 : 0x1p500);
    const typename P::R size = P::size(pivot);
    if (size >= 1 / kHigh && size <= kHigh) {
      const typename P::R square = pivot.real * pivot.real + pivot.imag * pivot.imag;
      return {pivot.real / square, -pivot.imag / square};
    }
  }
  return divided(P::one(), pivot);
}

constexpr core_int kSmallRows = 32;

/// Which row stands where after the exchanges so far.
struct row_order {
  int place[kSmallRows];  ///< of a row of the copy
  int at[kSmallRows];     ///< the row at a place

  explicit row_order(core_int m) {
    for (int i = 0; i < static_cast<int>(m); ++i) place[i] = at[i] = i;
  }
  /// The row becomes the one at place j; where it stood before.
  int move(int row, int j) {
    const int before = place[row], other = at[j];
    at[before] = other;
    place[other] = before;
    at[j] = row;
    place[row] = j;
    return before;
  }
};

template <class T, int kVectors>
struct small_lu {
  using R = typename reals<T>::type;
  using V = vec<R>;
  using reg = typename V::reg;
  static constexpr int kParts = reals<T>::kCount;
  static constexpr core_int kLanes = tile_shape<T>::kLanes;
  static constexpr core_int kRows = kVectors * kLanes;

  core_int m, n;
  T* a;
  row_order order;
  reg mask[kVectors];  ///< all bits of rows that are not pivots yet

  small_lu(core_int m_, core_int n_, T* a_) : m(m_), n(n_), a(a_), order(m_) {
    for (int v = 0; v < kVectors; ++v) {
      const core_int left = m - v * kLanes, there = left < 0 ? 0 : left < kLanes ? left : kLanes;
      mask[v] = lanes_from<R>(there * kParts).choose(V::zero(), V::all_bits());
    }
  }
  R* at(core_int i, core_int j) const { return reinterpret_cast<R*>(a + i + j * kRows); }
  R* vector(int v, core_int j) const { return at(v * kLanes, j); }

  /// The row of the largest element among `sizes`, the one that stands first if there are several.
  int pivot_row(const reg (&sizes)[kVectors], R largest) const {
    unsigned long long lanes = 0;
#pragma GCC unroll 8
    for (int v = 0; v < kVectors; ++v)
      lanes |= static_cast<unsigned long long>(V::equal_lanes(sizes[v], largest)) << (v * V::kLanes);
    if (lanes == 0) return -1;
    int best = __builtin_ctzll(lanes) / kParts;
    for (lanes &= lanes - 1; lanes != 0; lanes &= lanes - 1) {
      const int row = __builtin_ctzll(lanes) / kParts;
      if (order.place[row] < order.place[best]) best = row;
    }
    return best;
  }
  void drop(int row) {
#pragma GCC unroll 8
    for (int v = 0; v < kVectors; ++v) {
      core_int lane = row - v * kLanes;
      if (lane < 0 || lane >= kLanes) continue;
      const lanes_from<R> own(lane * kParts), behind((lane + 1) * kParts);
      mask[v] = behind.choose(mask[v], own.choose(V::zero(), mask[v]));
    }
  }

  template <int kColumns>
  [[gnu::always_inline]] void take_multiples(const reg (&l)[kVectors], int row, core_int c) {
#pragma GCC unroll 4
    for (int b = 0; b < kColumns; ++b) {
      const R* const u = at(row, c + b);
      const reg real = V::all(u[0]), imag = V::all(u[kParts - 1]);
#pragma GCC unroll 8
      for (int v = 0; v < kVectors; ++v) {
        V::store(vector(v, c + b), multiplied<T>(l[v]).from(V::load(vector(v, c + b)), real, imag));
      }
    }
  }

  /// False if a pivot's reciprocal would overflow.
  bool eliminate(core_int j, int row, R largest) {
    constexpr auto kSmallest = static_cast<R>(sizeof(R) == 4 ? 0x1p-126 : 0x1p-1022);
    if (largest < kSmallest) return false;
    const T reciprocal = reciprocal_of(element_at(a + row + j * kRows));
    reg l[kVectors];
#pragma GCC unroll 8
    for (int v = 0; v < kVectors; ++v) {
      const reg old = V::load(vector(v, j));
      l[v] = V::choose(mask[v], finish<T>::multiple(reciprocal, old), V::zero());
      V::store(vector(v, j), V::choose(mask[v], l[v], old));
    }
    core_int c = j + 1;
    for (; c + 2 <= n; c += 2) take_multiples<2>(l, row, c);
    if (c < n) take_multiples<1>(l, row, c);
    return true;
  }
};

/// A's factors in place; -1 if another way is to be taken, with nothing written, else the number of the first
/// zero pivot.
template <class T, int kVectors>
core_int factor_small(core_int m, core_int n, T* a, core_int lda, core_int* pivots) {
  using lu_type = small_lu<T, kVectors>;
  using V = typename lu_type::V;
  constexpr core_int kLanes = lu_type::kLanes, kRows = lu_type::kRows;
  constexpr int kParts = reals<T>::kCount;
  alignas(64) T copy[kRows * kStayingColumns];
  typename V::reg sum = V::zero();
  lu_type lu(m, n, copy);
  for (core_int j = 0; j < n; ++j) {
    for (int v = 0; v < kVectors; ++v) {
      const core_int left = (m - v * kLanes) * kParts;
      const auto* const from = reinterpret_cast<const typename lu_type::R*>(a + v * kLanes + j * lda);
      const typename V::reg x =
          left >= V::kLanes ? V::load(from) : V::load_part(from, static_cast<int>(left < 0 ? 0 : left));
      V::store(lu.vector(v, j), x);
      sum = V::add(sum, V::minus(x, x));
    }
  }
  if (!V::is_zero(sum)) return -1;
  core_int first_zero = 0;
  const int order = static_cast<int>(m < n ? m : n);
  for (int j = 0; j < order; ++j) {
    typename V::reg sizes[kVectors], most = V::zero();
#pragma GCC unroll 8
    for (int v = 0; v < kVectors; ++v) {
      typename V::reg size = V::magnitude(V::load(lu.vector(v, j)));
      if constexpr (kParts == 2) size = V::add(size, V::swapped(size));
      sizes[v] = V::choose(lu.mask[v], size, V::zero());
      most = V::larger(most, sizes[v]);
    }
    const auto largest = V::largest(most);
    const int row = largest > 0 ? lu.pivot_row(sizes, largest) : lu.order.at[j];
    if (row < 0) return -1;
    pivots[j] = lu.order.move(row, j) + 1;
    lu.drop(row);
    if (largest == 0) {
      if (first_zero == 0) first_zero = j + 1;
    } else if (!lu.eliminate(j, row, largest)) {
      return -1;
    }
  }
  for (core_int j = 0; j < n; ++j) {
    for (core_int i = 0; i < m; ++i)
      set_element(a + i + j * lda, element_at(copy + lu.order.at[i] + j * kRows));
  }
  return first_zero;
}

}  // namespace
}  // namespace qel::QEL_LEVEL
