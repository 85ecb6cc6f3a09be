// SPDX-License-Identifier: BSD-3-Clause
// The register tile of the native levels: kVectors vectors of rows times kColumns real columns, summed over
// the depth with fused multiply-add, one sum per element in the order of the depth. A complex matrix is seen
// as reals: rows interleave real and imaginary parts, each column of B counts as two (its real parts, its
// imaginary parts), and the two sums are joined when the tile is finished. So all four types share one loop.
#pragma once

#include "blas/kernels/native/vec.inl.h"

namespace qel::QEL_LEVEL {
namespace {

/// A's next vectors of rows: packed, as far apart as told, or in place with a last vector that may be a part.
template <class R, int kVectors>
struct packed_rows {
  using V = vec<R>;
  const R* at;
  typename V::reg get(int v) const { return V::load(at + v * V::kLanes); }
  void advance() { at += kVectors * V::kLanes; }
};
template <class R, int kVectors>
struct rows_apart {
  using V = vec<R>;
  const R* at;
  core_int step;
  typename V::reg get(int v) const { return V::load(at + v * V::kLanes); }
  void advance() { at += step; }
};
template <class R, int kVectors, bool kPart>
struct direct_rows {
  using V = vec<R>;
  const R* at;
  core_int step;
  int last;  ///< lanes of the last vector
  typename V::reg get(int v) const {
    if (kPart && v == kVectors - 1) return V::load_part(at + v * V::kLanes, last);
    return V::load(at + v * V::kLanes);
  }
  void advance() {
#ifdef __AVX512F__
    // The same column of the panel below: a tall matrix is read in place (half as wide vectors have no room
    // for this among their loads).
    for (int v = 0; v < kVectors; ++v) _mm_prefetch(at + (kVectors + v) * V::kLanes, _MM_HINT_T0);
#endif
    at += step;
  }
};

/// B's next row of real columns.
template <class R, int kColumns>
struct packed_columns {
  const R* at;
  R get(int j) const { return at[j]; }
  void advance() { at += kColumns; }
};
/// kGroup real columns (1, or 2 of a complex element) stand together; groups are column_step apart.
template <class R, int kGroup>
struct direct_columns {
  const R* at;
  core_int row_step, column_step;
  R get(int j) const { return at[(j / kGroup) * column_step + j % kGroup]; }
  void advance() { at += row_step; }
};

template <class R, int kVectors, int kColumns>
struct tile_sums {
  typename vec<R>::reg of[kColumns][kVectors];
};

template <class R, int kVectors, int kColumns, class Rows, class Columns>
[[gnu::always_inline]] inline tile_sums<R, kVectors, kColumns> sum_tile(core_int k, Rows a, Columns b) {
  using V = vec<R>;
  tile_sums<R, kVectors, kColumns> sum;
#pragma GCC unroll 16
  for (int j = 0; j < kColumns; ++j) {
#pragma GCC unroll 4
    for (int v = 0; v < kVectors; ++v) sum.of[j][v] = V::zero();
  }
#pragma GCC unroll 4
  for (core_int p = 0; p < k; ++p) {
    typename V::reg row[kVectors];
#pragma GCC unroll 4
    for (int v = 0; v < kVectors; ++v) row[v] = a.get(v);
#pragma GCC unroll 16
    for (int j = 0; j < kColumns; ++j) {
      const typename V::reg factor = V::all(b.get(j));
#pragma GCC unroll 4
      for (int v = 0; v < kVectors; ++v) sum.of[j][v] = V::fma(row[v], factor, sum.of[j][v]);
    }
    a.advance();
    b.advance();
  }
  return sum;
}

/// How sums become C: C = alpha sum + beta C.
template <class T>
struct finish {
  using R = typename reals<T>::type;
  using V = vec<R>;
  using reg = typename V::reg;
  static constexpr int kParts = reals<T>::kCount;
  T alpha, beta;
  bool is_plain;               ///< C is the sum itself
  reg real_signs, imag_signs;  ///< of the two sums of a complex product

  finish(T alpha_, T beta_, bool a_conjugated, bool b_conjugated) : alpha(alpha_), beta(beta_) {
    is_plain = is_one(alpha) && !keeps_c();
    // (ar, ai) br and (ar, ai) bi; the second with its parts exchanged. Conjugation turns signs.
    if constexpr (kParts == 1) return;
    const R a = a_conjugated ? R(-1) : R(1), b = b_conjugated ? R(-1) : R(1);
    real_signs = V::pairs(1, a);
    imag_signs = V::pairs(-a * b, b);
  }
  bool keeps_c() const {
    if constexpr (kParts == 1) {
      return beta != 0;
    } else {
      return beta.real != 0 || beta.imag != 0;
    }
  }
  static bool is_one(T v) {
    if constexpr (kParts == 1) {
      return v == 1;
    } else {
      return v.real == 1 && v.imag == 0;
    }
  }
  bool has_beta_one() const { return is_one(beta); }
  /// sum += factor v
  static reg add_multiple(T factor, reg v, reg sum) {
    if constexpr (kParts == 1) {
      return V::fma(V::all(factor), v, sum);
    } else {
      return V::fma(V::pairs(-factor.imag, factor.imag), V::swapped(v), V::fma(V::all(factor.real), v, sum));
    }
  }
  static reg multiple(T factor, reg v) {
    if constexpr (kParts == 1) {
      return V::mul(V::all(factor), v);
    } else {
      return V::fma(V::pairs(-factor.imag, factor.imag), V::swapped(v), V::mul(V::all(factor.real), v));
    }
  }
};

/// Writes the tile: `rows` elements of each of its columns.
template <class T, int kVectors, int kColumns>
[[gnu::always_inline]] inline void finish_tile(
    const finish<T>& how, const tile_sums<typename reals<T>::type, kVectors, kColumns>& sum, core_int rows,
    T* c, core_int ldc) {
  using R = typename reals<T>::type;
  using V = vec<R>;
  constexpr int kParts = reals<T>::kCount;
  const int last = static_cast<int>(rows) * kParts - (kVectors - 1) * V::kLanes;
  const auto product_of = [&](int j, int v) {
    if constexpr (kParts == 1) {
      return sum.of[j][v];
    } else {
      return V::fma(how.imag_signs, V::swapped(sum.of[2 * j + 1][v]),
                    V::mul(how.real_signs, sum.of[2 * j][v]));
    }
  };
  const auto is_part = [&](int v) { return v == kVectors - 1 && last < V::kLanes; };
  const auto put = [&](R* at, int v, typename V::reg value) {
    if (is_part(v)) {
      V::store_part(at, last, value);
    } else {
      V::store(at, value);
    }
  };
  if (how.is_plain) {
#pragma GCC unroll 16
    for (int j = 0; j < kColumns / kParts; ++j) {
      R* const column = reinterpret_cast<R*>(c + j * ldc);
#pragma GCC unroll 4
      for (int v = 0; v < kVectors; ++v) put(column + v * V::kLanes, v, product_of(j, v));
    }
    return;
  }
  const bool keeps = how.keeps_c(), one = how.has_beta_one();
#pragma GCC unroll 16
  for (int j = 0; j < kColumns / kParts; ++j) {
    R* const column = reinterpret_cast<R*>(c + j * ldc);
#pragma GCC unroll 4
    for (int v = 0; v < kVectors; ++v) {
      R* const at = column + v * V::kLanes;
      typename V::reg value = product_of(j, v);
      if (keeps) {
        const typename V::reg old = is_part(v) ? V::load_part(at, last) : V::load(at);
        value = how.add_multiple(how.alpha, value, one ? old : how.multiple(how.beta, old));
      } else {
        value = how.multiple(how.alpha, value);
      }
      put(at, v, value);
    }
  }
}

}  // namespace
}  // namespace qel::QEL_LEVEL
