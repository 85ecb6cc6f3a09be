// SPDX-License-Identifier: BSD-3-Clause
// BLAS level 2 from the C interface, one shape per argument pattern for all element types. A row-major
// matrix is handed on as the transposed column-major one: the sizes or the triangle and the transposition
// change over. Where that leaves a conjugate (op C of a general or triangular matrix, Hermitian matrices),
// the conjugate of the whole equation is computed: vectors read are copied, vectors written are turned in
// place before and after. Included by cblas_level2.cpp only.
#pragma once

#include <utility>

#include "blas/checks.h"
#include "dropin/cblas_call.h"
#include "dropin/widened_call.h"

namespace qel::dropin {

// conj(y) = conj(alpha) M conj(x) + conj(beta) conj(y); product(alpha, x, incx, beta) adds M x to y.
template <class T, class Product>
void conjugated_product(const cblas_call& from, int x_length, const T* alpha, const T* x, int incx,
                        const T* beta, int y_length, T* y, int incy, Product product) {
  const conjugated<T> x_conjugate(x_length, x, incx);
  if (!x_conjugate) return from.report_no_memory();
  const T alpha_conjugate = conj(*alpha), beta_conjugate = conj(*beta);
  conjugate(y_length, y, incy);
  product(&alpha_conjugate, x_conjugate.data(), &kCopyStride, &beta_conjugate);
  conjugate(y_length, y, incy);
}

template <class Routine, class T>
void gemv(cblas_call from, Routine* routine, CBLAS_TRANSPOSE trans, int m, int n, const T* alpha, const T* a,
          int lda, const T* x, int incx, const T* beta, T* y, int incy) {
  char op = from.letter(2, trans);
  const bool conjugating = is_complex<T> && from.row_major() && op == 'C';
  if (from.row_major()) {
    op = flipped_trans(op);
    std::swap(m, n);
  }
  if (from.refused(blas::gemv_bad_argument(&op, m, n, lda, incx, incy))) return;
  const auto product = [&](const T* by, const T* vector, const int* stride, const T* keep) {
    call(routine, &op, &m, &n, by, a, &lda, vector, stride, keep, y, &incy);
  };
  if (conjugating) return conjugated_product(from, n, alpha, x, incx, beta, m, y, incy, product);
  product(alpha, x, &incx, beta);
}

template <class Routine, class T>
void gbmv(cblas_call from, Routine* routine, CBLAS_TRANSPOSE trans, int m, int n, int kl, int ku,
          const T* alpha, const T* a, int lda, const T* x, int incx, const T* beta, T* y, int incy) {
  char op = from.letter(2, trans);
  const bool conjugating = is_complex<T> && from.row_major() && op == 'C';
  if (from.row_major()) {
    op = flipped_trans(op);
    std::swap(m, n);
    std::swap(kl, ku);
  }
  if (from.refused(blas::gbmv_bad_argument(&op, m, n, kl, ku, lda, incx, incy))) return;
  const auto product = [&](const T* by, const T* vector, const int* stride, const T* keep) {
    call(routine, &op, &m, &n, &kl, &ku, by, a, &lda, vector, stride, keep, y, &incy);
  };
  if (conjugating) return conjugated_product(from, n, alpha, x, incx, beta, m, y, incy, product);
  product(alpha, x, &incx, beta);
}

// symv; complex elements are hemv, and so on: the C interface has no complex symmetric ones.
template <class Routine, class T>
void symv(cblas_call from, Routine* routine, CBLAS_UPLO uplo, int n, const T* alpha, const T* a, int lda,
          const T* x, int incx, const T* beta, T* y, int incy) {
  char triangle = from.letter(2, uplo);
  if (from.row_major()) triangle = flipped_uplo(triangle);
  if (from.refused(blas::symv_bad_argument(&triangle, n, lda, incx, incy))) return;
  const auto product = [&](const T* by, const T* vector, const int* stride, const T* keep) {
    call(routine, &triangle, &n, by, a, &lda, vector, stride, keep, y, &incy);
  };
  if (is_complex<T> && from.row_major()) {
    return conjugated_product(from, n, alpha, x, incx, beta, n, y, incy, product);
  }
  product(alpha, x, &incx, beta);
}

template <class Routine, class T>
void sbmv(cblas_call from, Routine* routine, CBLAS_UPLO uplo, int n, int k, const T* alpha, const T* a,
          int lda, const T* x, int incx, const T* beta, T* y, int incy) {
  char triangle = from.letter(2, uplo);
  if (from.row_major()) triangle = flipped_uplo(triangle);
  if (from.refused(blas::sbmv_bad_argument(&triangle, n, k, lda, incx, incy))) return;
  const auto product = [&](const T* by, const T* vector, const int* stride, const T* keep) {
    call(routine, &triangle, &n, &k, by, a, &lda, vector, stride, keep, y, &incy);
  };
  if (is_complex<T> && from.row_major()) {
    return conjugated_product(from, n, alpha, x, incx, beta, n, y, incy, product);
  }
  product(alpha, x, &incx, beta);
}

template <class Routine, class T>
void spmv(cblas_call from, Routine* routine, CBLAS_UPLO uplo, int n, const T* alpha, const T* ap, const T* x,
          int incx, const T* beta, T* y, int incy) {
  char triangle = from.letter(2, uplo);
  if (from.row_major()) triangle = flipped_uplo(triangle);
  if (from.refused(blas::spmv_bad_argument(&triangle, n, incx, incy))) return;
  const auto product = [&](const T* by, const T* vector, const int* stride, const T* keep) {
    call(routine, &triangle, &n, by, ap, vector, stride, keep, y, &incy);
  };
  if (is_complex<T> && from.row_major()) {
    return conjugated_product(from, n, alpha, x, incx, beta, n, y, incy, product);
  }
  product(alpha, x, &incx, beta);
}

// The options of a triangular matrix as letters, and whether x is to be turned before and after.
template <class T>
struct triangular_options {
  triangular_options(cblas_call& from, CBLAS_UPLO uplo, CBLAS_TRANSPOSE trans, CBLAS_DIAG diag)
      : triangle(from.letter(2, uplo)), op(from.letter(3, trans)), diagonal(from.letter(4, diag)) {
    if (!from.row_major()) return;
    conjugating = is_complex<T> && op == 'C';
    triangle = flipped_uplo(triangle);
    op = flipped_trans(op);
  }
  char triangle, op, diagonal;
  bool conjugating = false;
};

// trmv and trsv, and so on.
template <class Routine, class T>
void trmv(cblas_call from, Routine* routine, CBLAS_UPLO uplo, CBLAS_TRANSPOSE trans, CBLAS_DIAG diag, int n,
          const T* a, int lda, T* x, int incx) {
  const triangular_options<T> with(from, uplo, trans, diag);
  if (from.refused(blas::trmv_bad_argument(&with.triangle, &with.op, &with.diagonal, n, lda, incx))) return;
  if (with.conjugating) conjugate(n, x, incx);
  call(routine, &with.triangle, &with.op, &with.diagonal, &n, a, &lda, x, &incx);
  if (with.conjugating) conjugate(n, x, incx);
}

template <class Routine, class T>
void tbmv(cblas_call from, Routine* routine, CBLAS_UPLO uplo, CBLAS_TRANSPOSE trans, CBLAS_DIAG diag, int n,
          int k, const T* a, int lda, T* x, int incx) {
  const triangular_options<T> with(from, uplo, trans, diag);
  if (from.refused(blas::tbmv_bad_argument(&with.triangle, &with.op, &with.diagonal, n, k, lda, incx)))
    return;
  if (with.conjugating) conjugate(n, x, incx);
  call(routine, &with.triangle, &with.op, &with.diagonal, &n, &k, a, &lda, x, &incx);
  if (with.conjugating) conjugate(n, x, incx);
}

template <class Routine, class T>
void tpmv(cblas_call from, Routine* routine, CBLAS_UPLO uplo, CBLAS_TRANSPOSE trans, CBLAS_DIAG diag, int n,
          const T* ap, T* x, int incx) {
  const triangular_options<T> with(from, uplo, trans, diag);
  if (from.refused(blas::tpmv_bad_argument(&with.triangle, &with.op, &with.diagonal, n, incx))) return;
  if (with.conjugating) conjugate(n, x, incx);
  call(routine, &with.triangle, &with.op, &with.diagonal, &n, ap, x, &incx);
  if (with.conjugating) conjugate(n, x, incx);
}

// ger and geru: the transposed update has the vectors exchanged.
template <class Routine, class T>
void ger(cblas_call from, Routine* routine, int m, int n, const T* alpha, const T* x, int incx, const T* y,
         int incy, T* a, int lda) {
  if (from.row_major()) {
    std::swap(m, n);
    std::swap(x, y);
    std::swap(incx, incy);
  }
  if (from.refused(blas::ger_bad_argument(m, n, incx, incy, lda))) return;
  call(routine, &m, &n, alpha, x, &incx, y, &incy, a, &lda);
}

// The transpose of x y^H is conj(y) x^T, which is an unconjugated update.
template <class Routine, class T>
void gerc(cblas_call from, Routine* routine, Routine* unconjugated_routine, int m, int n, const T* alpha,
          const T* x, int incx, const T* y, int incy, T* a, int lda) {
  if (!from.row_major()) return ger(from, routine, m, n, alpha, x, incx, y, incy, a, lda);
  if (from.refused(blas::ger_bad_argument(n, m, incy, incx, lda))) return;
  const conjugated<T> y_conjugate(n, y, incy);
  if (!y_conjugate) return from.report_no_memory();
  call(unconjugated_routine, &n, &m, alpha, y_conjugate.data(), &kCopyStride, x, &incx, a, &lda);
}

// Symmetric rank-1 updates; for complex elements Hermitian ones, whose alpha is real.
template <class Routine, class T>
void syr(cblas_call from, Routine* routine, CBLAS_UPLO uplo, int n, const real_of<T>* alpha, const T* x,
         int incx, T* a, int lda) {
  char triangle = from.letter(2, uplo);
  if (from.row_major()) triangle = flipped_uplo(triangle);
  if (from.refused(blas::syr_bad_argument(&triangle, n, incx, lda))) return;
  if (!is_complex<T> || !from.row_major()) return call(routine, &triangle, &n, alpha, x, &incx, a, &lda);
  const conjugated<T> x_conjugate(n, x, incx);
  if (!x_conjugate) return from.report_no_memory();
  call(routine, &triangle, &n, alpha, x_conjugate.data(), &kCopyStride, a, &lda);
}

template <class Routine, class T>
void spr(cblas_call from, Routine* routine, CBLAS_UPLO uplo, int n, const real_of<T>* alpha, const T* x,
         int incx, T* ap) {
  char triangle = from.letter(2, uplo);
  if (from.row_major()) triangle = flipped_uplo(triangle);
  if (from.refused(blas::spr_bad_argument(&triangle, n, incx))) return;
  if (!is_complex<T> || !from.row_major()) return call(routine, &triangle, &n, alpha, x, &incx, ap);
  const conjugated<T> x_conjugate(n, x, incx);
  if (!x_conjugate) return from.report_no_memory();
  call(routine, &triangle, &n, alpha, x_conjugate.data(), &kCopyStride, ap);
}

// The conjugate of alpha x y^H + conj(alpha) y x^H is the same form in (conj(y), conj(x)).
template <class Routine, class T>
void syr2(cblas_call from, Routine* routine, CBLAS_UPLO uplo, int n, const T* alpha, const T* x, int incx,
          const T* y, int incy, T* a, int lda) {
  char triangle = from.letter(2, uplo);
  const bool exchanging = is_complex<T> && from.row_major();
  if (from.row_major()) triangle = flipped_uplo(triangle);
  if (exchanging) std::swap(incx, incy);
  if (from.refused(blas::syr2_bad_argument(&triangle, n, incx, incy, lda))) return;
  if (!exchanging) return call(routine, &triangle, &n, alpha, x, &incx, y, &incy, a, &lda);
  const conjugated<T> first(n, y, incx), second(n, x, incy);
  if (!first || !second) return from.report_no_memory();
  call(routine, &triangle, &n, alpha, first.data(), &kCopyStride, second.data(), &kCopyStride, a, &lda);
}

template <class Routine, class T>
void spr2(cblas_call from, Routine* routine, CBLAS_UPLO uplo, int n, const T* alpha, const T* x, int incx,
          const T* y, int incy, T* ap) {
  char triangle = from.letter(2, uplo);
  const bool exchanging = is_complex<T> && from.row_major();
  if (from.row_major()) triangle = flipped_uplo(triangle);
  if (exchanging) std::swap(incx, incy);
  if (from.refused(blas::spr2_bad_argument(&triangle, n, incx, incy))) return;
  if (!exchanging) return call(routine, &triangle, &n, alpha, x, &incx, y, &incy, ap);
  const conjugated<T> first(n, y, incx), second(n, x, incy);
  if (!first || !second) return from.report_no_memory();
  call(routine, &triangle, &n, alpha, first.data(), &kCopyStride, second.data(), &kCopyStride, ap);
}

}  // namespace qel::dropin
