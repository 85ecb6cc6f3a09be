// SPDX-License-Identifier: BSD-3-Clause
// Products with a triangular matrix and solutions of triangular systems with many right-hand sides, in place.
// The order is halved until a diagonal block is small; between the halves stands a general product. A
// diagonal block works from the right on rows of B, long columns at a time; from the left it does the same on
// transposed copies of columns of B. Only the stored triangle is read, its diagonal only if not of ones.
#include <algorithm>

#include "blas/plain/level3.h"
#include "blas/plain/packed_product.h"
#include "blas/plain/strided_loops.h"

namespace qel::plain {

namespace {

constexpr core_int kOrder = 32;  ///< largest diagonal block
constexpr core_int kRows = 64;   ///< rows that a diagonal block works on at a time

/// op(A) as a view; upper says which triangle op(A) has.
template <class T>
struct triangle {
  operand<T> a;
  bool unit;

  triangle from(core_int i) const { return {a.from(i, i), unit}; }
  triangle transposed() const { return {a.transposed(), unit}; }
};

/// A diagonal block, column-major and dense in its triangle; off_sign multiplies what is off the diagonal.
template <class T>
struct diagonal_block {
  T element[kOrder * kOrder];

  const T* column(core_int j) const { return element + j * kOrder; }
  void take(const triangle<T>& t, core_int order, T off_sign) {
    for (core_int j = 0; j < order; ++j) {
      T* out = element + j * kOrder;
      for (core_int i = t.a.upper ? 0 : j + 1; i < (t.a.upper ? j : order); ++i)
        out[i] = off_sign * t.a.at(i, j);
      out[j] = t.unit ? from_real<T>(1) : t.a.at(j, j);
    }
  }
};

/// Rows of B times the block: b_j = sum of b_k t_kj, in the order in which no b_k is needed after its change.
template <class T>
void multiply_rows(const diagonal_block<T>& t, bool upper, bool unit, core_int order, core_int rows, T* b,
                   core_int ldb) {
  for (core_int step = 0; step < order; ++step) {
    const core_int j = upper ? order - 1 - step : step;
    T* bj = b + j * ldb;
    if (!unit) {
      const T pivot = t.column(j)[j];
      for (core_int i = 0; i < rows; ++i) bj[i] = pivot * bj[i];
    }
    const core_int first = upper ? 0 : j + 1, count = upper ? j : order - 1 - j;
    add_columns(rows, count, t.column(j) + first, b + first * ldb, ldb, bj);
  }
}

/// Rows of X from X T = B: x_j = (b_j - sum of x_k t_kj) / t_jj; the block holds -t_kj.
template <class T>
void solve_rows(const diagonal_block<T>& t, bool upper, bool unit, core_int order, core_int rows, T* b,
                core_int ldb) {
  for (core_int step = 0; step < order; ++step) {
    const core_int j = upper ? step : order - 1 - step;
    T* bj = b + j * ldb;
    const core_int first = upper ? 0 : j + 1, count = upper ? j : order - 1 - j;
    add_columns(rows, count, t.column(j) + first, b + first * ldb, ldb, bj);
    if (unit) continue;
    const T pivot = t.column(j)[j];
    for (core_int i = 0; i < rows; ++i) bj[i] = bj[i] / pivot;
  }
}

template <bool kSolve, class T>
void apply_to_rows(const diagonal_block<T>& block, const triangle<T>& t, core_int order, core_int rows, T* b,
                   core_int ldb) {
  if constexpr (kSolve) {
    solve_rows(block, t.a.upper, t.unit, order, rows, b, ldb);
  } else {
    multiply_rows(block, t.a.upper, t.unit, order, rows, b, ldb);
  }
}

/// A diagonal block from the right on all rows of B.
template <bool kSolve, class T>
void apply_right(const triangle<T>& t, core_int order, core_int rows, T* b, core_int ldb) {
  diagonal_block<T> block;
  block.take(t, order, from_real<T>(kSolve ? -1 : 1));
  for (core_int i = 0; i < rows; i += kRows) {
    apply_to_rows<kSolve>(block, t, order, std::min(kRows, rows - i), b + i, ldb);
  }
}

/// A diagonal block from the left: T B is the transpose of B**T T**T.
template <bool kSolve, class T>
void apply_left(const triangle<T>& t, core_int order, core_int columns, T* b, core_int ldb) {
  const triangle<T> turned = t.transposed();
  diagonal_block<T> block;
  block.take(turned, order, from_real<T>(kSolve ? -1 : 1));
  T rows[kRows * kOrder];
  for (core_int j = 0; j < columns; j += kRows) {
    const core_int count = std::min(kRows, columns - j);
    T* part = b + j * ldb;
    for (core_int c = 0; c < count; ++c) {
      for (core_int i = 0; i < order; ++i) rows[c + i * kRows] = part[i + c * ldb];
    }
    apply_to_rows<kSolve>(block, turned, order, count, rows, kRows);
    for (core_int c = 0; c < count; ++c) {
      for (core_int i = 0; i < order; ++i) part[i + c * ldb] = rows[c + i * kRows];
    }
  }
}

/// B = op(A)^(+-1) B or B op(A)^(+-1); count is B's other dimension. One half of B, the target, depends on
/// the other, the source, through the block of op(A) off its diagonal: a solve finishes the source first, a
/// product reads it before it changes.
template <bool kSolve, class T>
void apply_triangle(bool left, const triangle<T>& t, core_int order, core_int count, T* b, core_int ldb) {
  if (order <= kOrder) {
    if (left) {
      apply_left<kSolve>(t, order, count, b, ldb);
    } else {
      apply_right<kSolve>(t, order, count, b, ldb);
    }
    return;
  }
  // The last cut is even, the ones before it leave whole diagonal blocks.
  const core_int half = order <= 2 * kOrder ? order / 2 : (order / 2 + kOrder - 1) / kOrder * kOrder;
  const core_int rest = order - half;
  T* const second = b + half * (left ? 1 : ldb);
  const bool target_first = left == t.a.upper;
  T *const target = target_first ? b : second, *const source = target_first ? second : b;
  const core_int target_size = target_first ? half : rest, source_size = order - target_size;
  const operand<T> off = t.a.upper ? t.a.from(0, half) : t.a.from(half, 0);
  const operand<T> source_view = general_operand('N', static_cast<const T*>(source), ldb);
  const auto recurse = [&](bool first) {
    apply_triangle<kSolve>(left, first ? t : t.from(half), first ? half : rest, count, first ? b : second,
                           ldb);
  };

  recurse(kSolve ? !target_first : target_first);
  const T sign = from_real<T>(kSolve ? -1 : 1);
  if (left) {
    multiply_add(target_size, count, source_size, sign, off, source_view, target, ldb);
  } else {
    multiply_add(count, target_size, source_size, sign, source_view, off, target, ldb);
  }
  recurse(kSolve ? target_first : !target_first);
}

template <bool kSolve, class T>
void scaled_triangle(char side, char uplo, char transa, char diag, core_int m, core_int n, T alpha,
                     const T* a, core_int lda, T* b, core_int ldb) {
  if (m == 0 || n == 0) return;
  for (core_int j = 0; j < n; ++j) scale_output(m, alpha, b + j * ldb, 1);
  if (alpha == T{}) return;
  const bool left = blas::letter_is(side, 'L');
  operand<T> view = general_operand(transa, a, lda);
  view.upper = blas::letter_is(uplo, 'U') == blas::letter_is(transa, 'N');
  const triangle<T> t{view, blas::letter_is(diag, 'U')};
  apply_triangle<kSolve>(left, t, left ? m : n, left ? n : m, b, ldb);
}

}  // namespace

template <class T>
void trmm(char side, char uplo, char transa, char diag, core_int m, core_int n, T alpha, const T* a,
          core_int lda, T* b, core_int ldb) {
  scaled_triangle<false>(side, uplo, transa, diag, m, n, alpha, a, lda, b, ldb);
}

template <class T>
void trsm(char side, char uplo, char transa, char diag, core_int m, core_int n, T alpha, const T* a,
          core_int lda, T* b, core_int ldb) {
  scaled_triangle<true>(side, uplo, transa, diag, m, n, alpha, a, lda, b, ldb);
}

template void trmm(char, char, char, char, core_int, core_int, float, const float*, core_int, float*,
                   core_int);
template void trmm(char, char, char, char, core_int, core_int, double, const double*, core_int, double*,
                   core_int);
template void trmm(char, char, char, char, core_int, core_int, complex8, const complex8*, core_int, complex8*,
                   core_int);
template void trmm(char, char, char, char, core_int, core_int, complex16, const complex16*, core_int,
                   complex16*, core_int);
template void trsm(char, char, char, char, core_int, core_int, float, const float*, core_int, float*,
                   core_int);
template void trsm(char, char, char, char, core_int, core_int, double, const double*, core_int, double*,
                   core_int);
template void trsm(char, char, char, char, core_int, core_int, complex8, const complex8*, core_int, complex8*,
                   core_int);
template void trsm(char, char, char, char, core_int, core_int, complex16, const complex16*, core_int,
                   complex16*, core_int);

}  // namespace qel::plain
