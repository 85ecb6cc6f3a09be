// SPDX-License-Identifier: BSD-3-Clause
// The small triangles on the diagonal of a triangular matrix, kOrder x kOrder, with their part of x held in
// registers: products and solutions, in the same order of operations as one element after the other. In the
// names below the off-diagonal element (r, c) of an upper block has r < c, of a lower one r > c.
#pragma once

#include "blas/kernels/shared/level2_panels.inl.h"

namespace qel::QEL_LEVEL {
namespace {

template <class T>
constexpr int kBlock = kIsComplex<T> ? 4 : 8;

/// One block of x, and its matrix's columns from the block's first row on.
template <bool kUpper, class T>
struct diagonal_block {
  static constexpr int kOrder = kBlock<T>;
  const T* column[kOrder];
  T x[kOrder];

  static constexpr bool holds(int r, int c) { return kUpper ? r < c : r > c; }
  T at(int r, int c) const { return element_at(column[c] + r); }
  /// The column that comes at `step` when they are taken from the first of an upper, from the last of a
  /// lower triangle, or the other way round.
  static constexpr int taken(int step, bool inward) { return kUpper != inward ? step : kOrder - 1 - step; }

  [[gnu::always_inline]] void load(vector_view<const T> from, core_int j0) {
#pragma GCC unroll 8
    for (int k = 0; k < kOrder; ++k) x[k] = from.get(j0 + k);
  }
  /// By whole registers where x is contiguous: the next panel reads it so, and would wait for single ones.
  [[gnu::always_inline]] void store(vector_view<T> to, core_int j0) const {
    using R = typename parts<T>::real;
    using W = wide<R>;
    if (to.inc != 1) {
      for (int k = 0; k < kOrder; ++k) to.set(j0 + k, x[k]);
      return;
    }
    constexpr int kReals = kOrder * parts<T>::kCount;
    R reals[kReals];
#pragma GCC unroll 8
    for (int k = 0; k < kOrder; ++k) {
      if constexpr (kIsComplex<T>) {
        reals[2 * k] = x[k].real;
        reals[2 * k + 1] = x[k].imag;
      } else {
        reals[k] = x[k];
      }
    }
    R* at = reinterpret_cast<R*>(to.at + j0);
#pragma GCC unroll 8
    for (int k = 0; k < kReals; k += W::kCount) W::storeu(at + k, W::of(reals + k));
  }

  [[gnu::always_inline]] bool has_zero() const {
    bool found = false;
#pragma GCC unroll 8
    for (int k = 0; k < kOrder; ++k) found |= equals_real(x[k], 0);
    return found;
  }

  /// x = A x; no x_c is zero.
  [[gnu::always_inline]] void multiply(bool unit) {
    T sum[kOrder];
#pragma GCC unroll 8
    for (int k = 0; k < kOrder; ++k) sum[k] = unit ? x[k] : product_of(x[k], at(k, k));
#pragma GCC unroll 8
    for (int step = 0; step < kOrder; ++step) {
      const int c = taken(step, false);
#pragma GCC unroll 8
      for (int r = 0; r < kOrder; ++r) {
        if (holds(r, c)) sum[r] = mul_add(x[c], at(r, c), sum[r]);
      }
    }
#pragma GCC unroll 8
    for (int k = 0; k < kOrder; ++k) x[k] = sum[k];
  }

  /// x = op(A) x + more
  template <bool kConjugate>
  [[gnu::always_inline]] void multiply_transposed(bool unit, const T* more) {
    T sum[kOrder];
#pragma GCC unroll 8
    for (int c = 0; c < kOrder; ++c) {
      sum[c] = unit ? x[c] : product_of(x[c], conjugate_if<kConjugate>(at(c, c)));
#pragma GCC unroll 8
      for (int r = 0; r < kOrder; ++r) {
        if (holds(r, c)) sum[c] = mul_add(conjugate_if<kConjugate>(at(r, c)), x[r], sum[c]);
      }
    }
#pragma GCC unroll 8
    for (int k = 0; k < kOrder; ++k) x[k] = sum_of(sum[k], more[k]);
  }

  [[gnu::always_inline]] void solve(bool unit) {
#pragma GCC unroll 8
    for (int step = 0; step < kOrder; ++step) {
      const int c = taken(step, true);
      if (equals_real(x[c], 0)) continue;
      if (!unit) x[c] = quotient_of(x[c], at(c, c));
#pragma GCC unroll 8
      for (int r = 0; r < kOrder; ++r) {
        if (holds(r, c)) x[r] = mul_add(negative(x[c]), at(r, c), x[r]);
      }
    }
  }

  /// op(A) x = b - less, b being in x.
  template <bool kConjugate>
  [[gnu::always_inline]] void solve_transposed(bool unit, const T* less) {
#pragma GCC unroll 8
    for (int step = 0; step < kOrder; ++step) {
      const int c = taken(step, false);
      T rest = sum_of(x[c], negative(less[c]));
#pragma GCC unroll 8
      for (int r = 0; r < kOrder; ++r) {
        if (holds(r, c)) rest = mul_add(negative(conjugate_if<kConjugate>(at(r, c))), x[r], rest);
      }
      x[c] = unit ? rest : quotient_of(rest, conjugate_if<kConjugate>(at(c, c)));
    }
  }
};

/// Loads the block of columns j0 .. j0 + kOrder - 1, works on it and stores x; work returns false to leave x
/// as it was.
template <bool kUpper, class T, class Work>
[[gnu::always_inline]] inline bool on_block(const T* const* column, core_int j0, vector_view<T> x,
                                            Work work) {
  diagonal_block<kUpper, T> block;
#pragma GCC unroll 8
  for (int k = 0; k < block.kOrder; ++k) block.column[k] = column[k] + j0;
  block.load({x.at, x.inc}, j0);
  if (!work(block)) return false;
  block.store(x, j0);
  return true;
}
template <class T, class Work>
[[gnu::always_inline]] inline bool on_block(bool upper, const T* const* column, core_int j0, vector_view<T> x,
                                            Work work) {
  if (upper) return on_block<true>(column, j0, x, work);
  return on_block<false>(column, j0, x, work);
}

}  // namespace
}  // namespace qel::QEL_LEVEL
