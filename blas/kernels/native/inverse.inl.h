// SPDX-License-Identifier: BSD-3-Clause
// Inverses of small matrices from their LU factors: X = inv(U) inv(L), vectors of rows of X by themselves.
// Each goes by a few columns at a time, first from the left against U, then from the right against L.
#pragma once

#include "blas/kernels/native/factor.inl.h"

namespace qel::QEL_LEVEL {
namespace {

/// Factors of order n as getrf leaves them, and their inverse, its columns whole vectors.
template <class T>
struct lu_inverse {
  using R = typename reals<T>::type;
  static constexpr int kParts = reals<T>::kCount;
  core_int n;
  const T* lu;
  core_int ldlu;
  T* x;
  core_int ldx;
  const R *real, *imag;  ///< of the pivots' reciprocals, as reciprocal_pivots leaves them

  const R* factor(core_int i, core_int j) const { return reinterpret_cast<const R*>(lu + i + j * ldlu); }
  R* at(core_int i, core_int j) const { return reinterpret_cast<R*>(x + i + j * ldx); }
};

/// kColumns columns from c on of kVectors vectors of rows from row i on.
template <class T, int kVectors, int kColumns>
struct inverse_rows {
  using R = typename reals<T>::type;
  using V = vec<R>;
  using reg = typename V::reg;
  static constexpr int kParts = reals<T>::kCount;
  const lu_inverse<T>& all;
  core_int i, c;
  reg x[kColumns][kVectors];

  /// What columns begin .. end - 1 of X, times their elements of the factor, take away.
  [[gnu::always_inline]] void take(core_int begin, core_int end) {
    for (core_int k = begin; k < end; ++k) {
#pragma GCC unroll 2
      for (int v = 0; v < kVectors; ++v) {
        const multiplied<T> known(V::load(all.at(i, k) + v * V::kLanes));
#pragma GCC unroll 4
        for (int j = 0; j < kColumns; ++j) x[j][v] = known.from(x[j][v], all.factor(k, c + j));
      }
    }
  }
  /// Column j is known but for its pivot: takes its multiples from the others on one side of it.
  template <bool kRightwards, int kStep>
  [[gnu::always_inline]] void finish() {
    constexpr int j = kRightwards ? kStep : kColumns - 1 - kStep;
#pragma GCC unroll 2
    for (int v = 0; v < kVectors; ++v) {
      if constexpr (kRightwards) {
        const core_int pivot = (c + j) * kParts;
        reg divided = V::mul(x[j][v], V::all(all.real[pivot]));
        if constexpr (kParts == 2) {
          const reg turned = V::mul(V::swapped(x[j][v]), V::pairs(-1, 1));
          divided = V::fma(turned, V::all(all.imag[pivot + 1]), divided);
        }
        x[j][v] = divided;
      }
      const multiplied<T> known(x[j][v]);
#pragma GCC unroll 4
      for (int other = kRightwards ? j + 1 : 0; other < (kRightwards ? kColumns : j); ++other)
        x[other][v] = known.from(x[other][v], all.factor(c + j, c + other));
      V::store(all.at(i, c + j) + v * V::kLanes, x[j][v]);
    }
    if constexpr (kStep + 1 < kColumns) finish<kRightwards, kStep + 1>();
  }
};

/// Rows of inv(U): those of the identity, divided from the right.
template <class T, int kVectors, int kColumns>
void divide_by_upper(const lu_inverse<T>& all, core_int i, core_int first, core_int c) {
  using rows = inverse_rows<T, kVectors, kColumns>;
  using V = typename rows::V;
  static constexpr core_int kLanes = tile_shape<T>::kLanes, kRows = kVectors * kLanes;
  // A column of the identity is a window of zeros with a one among them.
  static constexpr auto kAround = [] {
    struct {
      typename rows::R lanes[(2 * kRows + 1) * rows::kParts];
    } around{};
    around.lanes[kRows * rows::kParts] = 1;
    return around;
  }();
  rows own{all, i, c, {}};
#pragma GCC unroll 4
  for (int j = 0; j < kColumns; ++j) {
    const core_int one = c + j - i < kRows ? c + j - i : kRows;
    const typename rows::R* const window = kAround.lanes + (kRows - one) * rows::kParts;
    for (int v = 0; v < kVectors; ++v) own.x[j][v] = V::load(window + v * V::kLanes);
  }
  own.take(first, c);
  own.template finish<true, 0>();
}
template <class T, int kVectors, int kColumns>
void divide_by_lower(const lu_inverse<T>& all, core_int i, core_int c) {
  using rows = inverse_rows<T, kVectors, kColumns>;
  using V = typename rows::V;
  rows own{all, i, c, {}};
#pragma GCC unroll 4
  for (int j = 0; j < kColumns; ++j) {
    for (int v = 0; v < kVectors; ++v) own.x[j][v] = V::load(all.at(i, c + j) + v * V::kLanes);
  }
  own.take(c + kColumns, all.n);
  own.template finish<false, 0>();
}

/// False if a result is not finite.
template <class T, int kVectors>
bool invert_rows(const lu_inverse<T>& all, core_int i) {
  using V = vec<typename reals<T>::type>;
  constexpr core_int kColumns = 4, kRows = kVectors * tile_shape<T>::kLanes;
  const core_int n = all.n, whole = n / kColumns * kColumns, first = i / kColumns * kColumns;
  for (core_int j = 0; j < first; ++j) {
    for (int v = 0; v < kVectors; ++v) V::store(all.at(i, j) + v * V::kLanes, V::zero());
  }
  for (core_int c = first; c < whole; c += kColumns) divide_by_upper<T, kVectors, kColumns>(all, i, first, c);
  for (core_int c = whole; c < n; ++c) divide_by_upper<T, kVectors, 1>(all, i, first, c);
  for (core_int c = n - 1; c >= whole; --c) divide_by_lower<T, kVectors, 1>(all, i, c);
  for (core_int c = whole - kColumns; c >= 0; c -= kColumns)
    divide_by_lower<T, kVectors, kColumns>(all, i, c);
  typename V::reg sum = V::zero();
  for (core_int j = 0; j < n; ++j) {
    for (int v = 0; v < kVectors; ++v) {
      const typename V::reg value = V::load(all.at(i, j) + v * V::kLanes);
      sum = V::add(sum, V::minus(value, value));
    }
  }
  static_assert(kRows % kColumns == 0 || kColumns % kRows == 0);
  return V::is_zero(sum);
}

template <class T>
bool invert_lu(core_int n, T* a, core_int lda, const core_int* places) {
  using R = typename reals<T>::type;
  constexpr core_int kLanes = tile_shape<T>::kLanes;
  alignas(64) T x[kInverseOrder * kInverseOrder];
  alignas(64) R real[kInverseOrder * reals<T>::kCount], imag[kInverseOrder * reals<T>::kCount];
  if (!reciprocal_pivots(n, a, lda, real, imag)) return false;
  const lu_inverse<T> all{n, a, lda, x, (n + kLanes - 1) / kLanes * kLanes, real, imag};
  for (core_int i = 0; i < n;) {
    const bool two = n - i > kLanes;
    if (!(two ? invert_rows<T, 2>(all, i) : invert_rows<T, 1>(all, i))) return false;
    i += two ? 2 * kLanes : kLanes;
  }
  for (core_int j = 0; j < n; ++j) move_column(n, x + j * all.ldx, a + places[j] * lda, false);
  return true;
}

}  // namespace
}  // namespace qel::QEL_LEVEL
