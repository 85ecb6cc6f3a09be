// SPDX-License-Identifier: BSD-3-Clause
// Small Cholesky factors in a copy of whole vectors. A block of columns, as wide as the register tile, gets
// all that the columns before it take away as one sum over the depth; what it needs of itself follows in
// registers. Inside the diagonal block columns are divided by pivots, not by their roots, so that no step
// waits for one.
#pragma once

#include "blas/kernels/native/turn.inl.h"

namespace qel::QEL_LEVEL {
namespace {

/// A vector of which multiples are taken from others: x - y conj(f).
template <class T>
class subtrahend {
  using R = typename reals<T>::type;
  using V = vec<R>;
  using reg = typename V::reg;
  static constexpr int kParts = reals<T>::kCount;

 public:
  explicit subtrahend(reg y) : y_(y), turned_(y) {
    if constexpr (kParts == 2) turned_ = V::mul(V::swapped(y), V::pairs(1, -1));
  }
  /// f: an element of a vector
  template <int kElement>
  reg from(reg x, reg f) const {
    x = V::minus_fma(y_, V::template lane<kElement * kParts>(f), x);
    if constexpr (kParts == 2) x = V::minus_fma(turned_, V::template lane<kElement * kParts + 1>(f), x);
    return x;
  }
  reg from(reg x, const R* f) const {
    x = V::minus_fma(y_, V::all(f[0]), x);
    if constexpr (kParts == 2) x = V::minus_fma(turned_, V::all(f[1]), x);
    return x;
  }

 private:
  reg y_, turned_;  ///< turned: (imaginary, -real)
};

/// A triangle of order n being factored, its columns whole vectors apart; behind row n - 1 zeros, behind
/// column n - 1 ones on the diagonal up to a whole block.
template <class T>
struct cholesky_copy {
  using R = typename reals<T>::type;
  static constexpr int kColumns = tile_shape<T>::kColumns, kParts = reals<T>::kCount;
  T* l;
  core_int n, rows;

  R* at(core_int i, core_int j) const { return reinterpret_cast<R*>(l + i + j * rows); }
};

/// kVectors vectors of rows of columns j and behind, less what the columns before j take away.
template <class T, int kVectors>
struct cholesky_rows {
  using R = typename reals<T>::type;
  using V = vec<R>;
  using reg = typename V::reg;
  static constexpr int kColumns = tile_shape<T>::kColumns, kParts = reals<T>::kCount;
  reg x[kColumns][kVectors];

  [[gnu::always_inline]] cholesky_rows(const cholesky_copy<T>& a, core_int i, core_int j) {
    const tile_sums<R, kVectors, kColumns* kParts> sum = sum_tile<R, kVectors, kColumns * kParts>(
        j, rows_apart<R, kVectors>{a.at(i, 0), a.rows * kParts},
        direct_columns<R, kParts>{a.at(j, 0), a.rows * kParts, kParts});
    [[maybe_unused]] const reg signs = V::pairs(1, -1);
#pragma GCC unroll 8
    for (int c = 0; c < kColumns; ++c) {
#pragma GCC unroll 4
      for (int v = 0; v < kVectors; ++v) {
        const reg own = V::load(a.at(i, j + c) + v * V::kLanes);
        if constexpr (kParts == 1) {
          x[c][v] = V::minus(own, sum.of[c][v]);
        } else {
          x[c][v] = V::minus_fma(signs, V::swapped(sum.of[2 * c + 1][v]), V::minus(own, sum.of[2 * c][v]));
        }
      }
    }
  }
};

/// Column kStep of the diagonal block, whose first row is kFirst in its vector, taken from those behind it.
template <class T, int kFirst, int kStep, int kColumn, class Rows>
[[gnu::always_inline]] inline void take_column(Rows& rows, const subtrahend<T>& divided) {
  if constexpr (kColumn < Rows::kColumns) {
    rows.x[kColumn][0] = divided.template from<kFirst + kColumn>(rows.x[kColumn][0], rows.x[kStep][0]);
    take_column<T, kFirst, kStep, kColumn + 1>(rows, divided);
  }
}
template <class T, int kFirst, int kStep, class Rows>
[[gnu::always_inline]] inline void eliminate_columns(Rows& rows, typename reals<T>::type* pivots) {
  using V = vec<typename reals<T>::type>;
  if constexpr (kStep < Rows::kColumns) {
    const typename V::reg pivot = V::template lane<(kFirst + kStep) * reals<T>::kCount>(rows.x[kStep][0]);
    pivots[kStep] = V::first_lane(pivot);
    take_column<T, kFirst, kStep, kStep + 1>(rows, subtrahend<T>(V::div(rows.x[kStep][0], pivot)));
    eliminate_columns<T, kFirst, kStep + 1>(rows, pivots);
  }
}

/// The rows of the vector in which the diagonal block at column j lies. Returns how many pivots are positive
/// and leaves their roots' reciprocals; the column of the first other keeps it on its diagonal.
template <class T, int kFirst>
int factor_diagonal(const cholesky_copy<T>& a, core_int j, typename reals<T>::type* reciprocals) {
  using R = typename reals<T>::type;
  using V = vec<R>;
  constexpr int kColumns = tile_shape<T>::kColumns, kParts = reals<T>::kCount;
  cholesky_rows<T, 1> rows(a, j - kFirst, j);
  alignas(64) R pivots[V::kLanes], roots[V::kLanes];
  if constexpr (kColumns < V::kLanes) V::store(pivots, V::all(1));
  eliminate_columns<T, kFirst, 0>(rows, pivots);
  int good = 0;
  while (good < kColumns && pivots[good] > 0) ++good;  // nor is a NaN
  const typename V::reg root = V::sqrt(V::load(pivots));
  V::store(roots, root);
  V::store(reciprocals, V::div(V::all(1), root));
#pragma GCC unroll 8
  for (int c = 0; c < kColumns; ++c) {
    if (c > good) break;  // as it was
    const typename V::reg scale = V::all(c == good ? 1 : reciprocals[c]);
    V::store(a.at(j - kFirst, j + c), V::mul(scale, rows.x[c][0]));
    R* const diagonal = a.at(j + c, j + c);
    diagonal[0] = c == good ? pivots[c] : roots[c];
    if constexpr (kParts == 2) diagonal[1] = 0;
  }
  return good;
}

/// kVectors vectors of rows below the diagonal block.
template <class T, int kVectors>
void finish_rows(const cholesky_copy<T>& a, core_int i, core_int j,
                 const typename reals<T>::type* reciprocals) {
  using R = typename reals<T>::type;
  using V = vec<R>;
  constexpr int kColumns = tile_shape<T>::kColumns;
  cholesky_rows<T, kVectors> rows(a, i, j);
#pragma GCC unroll 8
  for (int c = 0; c < kColumns; ++c) {
    const typename V::reg scale = V::all(reciprocals[c]);
#pragma GCC unroll 4
    for (int v = 0; v < kVectors; ++v) {
      const typename V::reg done = V::mul(scale, rows.x[c][v]);
      V::store(a.at(i, j + c) + v * V::kLanes, done);
      const subtrahend<T> column(done);
#pragma GCC unroll 8
      for (int d = c + 1; d < kColumns; ++d) rows.x[d][v] = column.from(rows.x[d][v], a.at(j + d, j + c));
    }
  }
}

template <class T>
core_int factor_copy(const cholesky_copy<T>& a) {
  using R = typename reals<T>::type;
  constexpr int kColumns = tile_shape<T>::kColumns, kLanes = tile_shape<T>::kLanes;
  alignas(64) R reciprocals[vec<R>::kLanes];
  for (core_int j = 0; j < a.n; j += kColumns) {
    const core_int top = j / kLanes * kLanes;
    int good = 0;
    if constexpr (kColumns == kLanes) {
      good = factor_diagonal<T, 0>(a, j, reciprocals);
    } else {
      static_assert(2 * kColumns == kLanes);
      good = top == j ? factor_diagonal<T, 0>(a, j, reciprocals)
                      : factor_diagonal<T, kColumns>(a, j, reciprocals);
    }
    if (good < kColumns && j + good < a.n) return j + good + 1;
    for (core_int i = top + kLanes; i < a.rows;) {
      const core_int rows = panel_rows(a.rows - i, tile_shape<T>::kRows, kLanes);
      if (rows == kLanes) finish_rows<T, 1>(a, i, j, reciprocals);
      if (rows == 2 * kLanes) finish_rows<T, 2>(a, i, j, reciprocals);
      if (rows == 3 * kLanes) finish_rows<T, 3>(a, i, j, reciprocals);
      i += rows;
    }
  }
  return 0;
}

/// A column from its diagonal on into the copy, or back: the vector in which the diagonal lies in part.
template <class T>
inline void take_column_below(const cholesky_copy<T>& copy, core_int j, const T* column) {
  using R = typename reals<T>::type;
  using V = vec<R>;
  constexpr core_int kParts = reals<T>::kCount;
  const R* const from = reinterpret_cast<const R*>(column);
  R* const to = copy.at(0, j);
  const core_int end = copy.n * kParts;
  core_int i = j * kParts / V::kLanes * V::kLanes;
  const auto there = [&] { return static_cast<int>(end - i < V::kLanes ? end - i : V::kLanes); };
  V::store(to + i, V::load_between(from + i, static_cast<int>(j * kParts - i), there()));
  for (i += V::kLanes; i + V::kLanes <= end; i += V::kLanes) V::store(to + i, V::load(from + i));
  if (i < end) V::store(to + i, V::load_part(from + i, there()));
}
template <class T>
inline void give_column_below(const cholesky_copy<T>& copy, core_int j, T* column) {
  using R = typename reals<T>::type;
  using V = vec<R>;
  constexpr core_int kParts = reals<T>::kCount;
  const R* const from = copy.at(0, j);
  R* const to = reinterpret_cast<R*>(column);
  const core_int end = copy.n * kParts;
  core_int i = j * kParts / V::kLanes * V::kLanes;
  const auto there = [&] { return static_cast<int>(end - i < V::kLanes ? end - i : V::kLanes); };
  V::store_between(to + i, static_cast<int>(j * kParts - i), there(), V::load(from + i));
  for (i += V::kLanes; i + V::kLanes <= end; i += V::kLanes) V::store(to + i, V::load(from + i));
  if (i < end) V::store_part(to + i, there(), V::load(from + i));
}

template <class T>
core_int cholesky(bool upper, core_int n, T* a, core_int lda) {
  constexpr core_int kLanes = tile_shape<T>::kLanes, kColumns = tile_shape<T>::kColumns;
  alignas(64) T l[kCholeskyOrder<T> * kCholeskyOrder<T>];
  const core_int rows = (n + kLanes - 1) / kLanes * kLanes,
                 columns = (n + kColumns - 1) / kColumns * kColumns;
  const cholesky_copy<T> copy{l, n, rows};
  using V = vec<typename reals<T>::type>;
  for (core_int j = upper ? 0 : n; j < columns; ++j) {
    // Sums run over whole vectors, so what stands above the diagonal must be numbers.
    V::store(copy.at(j / kLanes * kLanes, j), V::zero());
    V::store(copy.at(rows - kLanes, j), V::zero());
    if (j >= n) *copy.at(j, j) = 1;
  }
  // An upper factor is the transpose of the lower one of the conjugate matrix.
  if (upper) {
    turn_triangle(false, n, a, lda, l, rows);
  } else {
    for (core_int j = 0; j < n; ++j) take_column_below(copy, j, a + j * lda);
  }
  const core_int minor = factor_copy(copy);
  if (upper) {
    turn_triangle(true, n, static_cast<const T*>(l), rows, a, lda);
  } else {
    for (core_int j = 0; j < n; ++j) give_column_below(copy, j, a + j * lda);
  }
  return minor;
}

}  // namespace
}  // namespace qel::QEL_LEVEL
