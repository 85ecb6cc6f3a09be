// SPDX-License-Identifier: BSD-3-Clause
// Level 2 with a triangular matrix, full, banded or packed: x = op(A) x and the solution of op(A) x = b in
// place. One pass over the stored columns: without a transpose columns are added to x, and a zero x_j skips
// its column and its division; with one, x_j takes an inner product with column j. A singular A is not
// detected. No work memory.
#include "blas/plain/level2.h"
#include "blas/plain/stored_triangle.h"
#include "blas/plain/strided_loops.h"

namespace qel::plain {

namespace {

using blas::letter_is;

/// Calls visit(j) for all columns, from the first or from the last.
template <class Visit>
void for_columns(core_int n, bool ascending, Visit visit) {
  if (ascending) {
    for (core_int j = 0; j < n; ++j) visit(j);
  } else {
    for (core_int j = n - 1; j >= 0; --j) visit(j);
  }
}

template <class T>
void multiply(const stored_triangle<const T>& a, bool unit, T* x, core_int incx) {
  for_columns(a.n, a.upper, [&](core_int j) {
    const T t = x[j * incx];
    if (t == T{}) return;
    const T* column = a.column(j);
    const core_int first = a.first(j);
    add_multiple(a.last(j) - first, t, column + first, 1, x + first * incx, incx);
    if (!unit) x[j * incx] = t * column[j];
  });
}

template <bool kConjugate, class T>
void multiply_transposed(const stored_triangle<const T>& a, bool unit, T* x, core_int incx) {
  for_columns(a.n, !a.upper, [&](core_int j) {
    const T* column = a.column(j);
    const core_int first = a.first(j);
    T t = x[j * incx];
    if (!unit) t = t * conj_if<kConjugate>(column[j]);
    x[j * incx] = t + inner_product<kConjugate>(a.last(j) - first, column + first, 1, x + first * incx, incx);
  });
}

template <class T>
void solve(const stored_triangle<const T>& a, bool unit, T* x, core_int incx) {
  for_columns(a.n, !a.upper, [&](core_int j) {
    if (x[j * incx] == T{}) return;
    const T* column = a.column(j);
    const core_int first = a.first(j);
    const T t = unit ? x[j * incx] : x[j * incx] / column[j];
    x[j * incx] = t;
    add_multiple(a.last(j) - first, -t, column + first, 1, x + first * incx, incx);
  });
}

template <bool kConjugate, class T>
void solve_transposed(const stored_triangle<const T>& a, bool unit, T* x, core_int incx) {
  for_columns(a.n, a.upper, [&](core_int j) {
    const T* column = a.column(j);
    const core_int first = a.first(j);
    T t =
        x[j * incx] - inner_product<kConjugate>(a.last(j) - first, column + first, 1, x + first * incx, incx);
    if (!unit) t = t / conj_if<kConjugate>(column[j]);
    x[j * incx] = t;
  });
}

template <class T>
void multiply_any(const stored_triangle<const T>& a, char trans, char diag, T* x, core_int incx) {
  if (a.n == 0) return;
  const bool unit = letter_is(diag, 'U');
  T* x0 = first_element(x, a.n, incx);
  if (letter_is(trans, 'N')) {
    multiply(a, unit, x0, incx);
  } else if (letter_is(trans, 'C')) {
    multiply_transposed<true>(a, unit, x0, incx);
  } else {
    multiply_transposed<false>(a, unit, x0, incx);
  }
}

template <class T>
void solve_any(const stored_triangle<const T>& a, char trans, char diag, T* x, core_int incx) {
  if (a.n == 0) return;
  const bool unit = letter_is(diag, 'U');
  T* x0 = first_element(x, a.n, incx);
  if (letter_is(trans, 'N')) {
    solve(a, unit, x0, incx);
  } else if (letter_is(trans, 'C')) {
    solve_transposed<true>(a, unit, x0, incx);
  } else {
    solve_transposed<false>(a, unit, x0, incx);
  }
}

}  // namespace

template <class T>
void trmv(char uplo, char trans, char diag, core_int n, const T* a, core_int lda, T* x, core_int incx) {
  multiply_any(full_triangle(uplo, n, a, lda), trans, diag, x, incx);
}
template <class T>
void tbmv(char uplo, char trans, char diag, core_int n, core_int k, const T* a, core_int lda, T* x,
          core_int incx) {
  multiply_any(banded_triangle(uplo, n, k, a, lda), trans, diag, x, incx);
}
template <class T>
void tpmv(char uplo, char trans, char diag, core_int n, const T* ap, T* x, core_int incx) {
  multiply_any(packed_triangle(uplo, n, ap), trans, diag, x, incx);
}
template <class T>
void trsv(char uplo, char trans, char diag, core_int n, const T* a, core_int lda, T* x, core_int incx) {
  solve_any(full_triangle(uplo, n, a, lda), trans, diag, x, incx);
}
template <class T>
void tbsv(char uplo, char trans, char diag, core_int n, core_int k, const T* a, core_int lda, T* x,
          core_int incx) {
  solve_any(banded_triangle(uplo, n, k, a, lda), trans, diag, x, incx);
}
template <class T>
void tpsv(char uplo, char trans, char diag, core_int n, const T* ap, T* x, core_int incx) {
  solve_any(packed_triangle(uplo, n, ap), trans, diag, x, incx);
}

template void trmv(char, char, char, core_int, const float*, core_int, float*, core_int);
template void trmv(char, char, char, core_int, const double*, core_int, double*, core_int);
template void trmv(char, char, char, core_int, const complex8*, core_int, complex8*, core_int);
template void trmv(char, char, char, core_int, const complex16*, core_int, complex16*, core_int);
template void tbmv(char, char, char, core_int, core_int, const float*, core_int, float*, core_int);
template void tbmv(char, char, char, core_int, core_int, const double*, core_int, double*, core_int);
template void tbmv(char, char, char, core_int, core_int, const complex8*, core_int, complex8*, core_int);
template void tbmv(char, char, char, core_int, core_int, const complex16*, core_int, complex16*, core_int);
template void tpmv(char, char, char, core_int, const float*, float*, core_int);
template void tpmv(char, char, char, core_int, const double*, double*, core_int);
template void tpmv(char, char, char, core_int, const complex8*, complex8*, core_int);
template void tpmv(char, char, char, core_int, const complex16*, complex16*, core_int);
template void trsv(char, char, char, core_int, const float*, core_int, float*, core_int);
template void trsv(char, char, char, core_int, const double*, core_int, double*, core_int);
template void trsv(char, char, char, core_int, const complex8*, core_int, complex8*, core_int);
template void trsv(char, char, char, core_int, const complex16*, core_int, complex16*, core_int);
template void tbsv(char, char, char, core_int, core_int, const float*, core_int, float*, core_int);
template void tbsv(char, char, char, core_int, core_int, const double*, core_int, double*, core_int);
template void tbsv(char, char, char, core_int, core_int, const complex8*, core_int, complex8*, core_int);
template void tbsv(char, char, char, core_int, core_int, const complex16*, core_int, complex16*, core_int);
template void tpsv(char, char, char, core_int, const float*, float*, core_int);
template void tpsv(char, char, char, core_int, const double*, double*, core_int);
template void tpsv(char, char, char, core_int, const complex8*, complex8*, core_int);
template void tpsv(char, char, char, core_int, const complex16*, complex16*, core_int);

}  // namespace qel::plain
