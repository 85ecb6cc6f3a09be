// SPDX-License-Identifier: BSD-3-Clause
// C names of BLAS level 3 over the core, one shape per argument pattern for all element types. A row-major
// call is handed on as the column-major call for the transposed matrices: factors or sides, sizes and
// triangles change over; nothing is copied.
#include "blas/level3/level3.h"

#include <utility>

#include "blas/checks.h"
#include "dropin/cblas_call.h"
#include "dropin/cblas_names.h"
#include "dropin/update_letters.h"
#include "dropin/widened_call.h"

namespace qel::dropin {

namespace {

// (op(A) op(B))^T = op(B)^T op(A)^T: the letters stay with their matrices.
template <class Routine, class T>
void gemm(cblas_call from, Routine* routine, CBLAS_TRANSPOSE transa, CBLAS_TRANSPOSE transb, int m, int n,
          int k, const T* alpha, const T* a, int lda, const T* b, int ldb, const T* beta, T* c, int ldc) {
  char op_a = from.letter(2, transa), op_b = from.letter(3, transb);
  if (from.row_major()) {
    std::swap(op_a, op_b);
    std::swap(m, n);
    std::swap(a, b);
    std::swap(lda, ldb);
  }
  if (from.refused(blas::gemm_bad_argument(&op_a, &op_b, m, n, k, lda, ldb, ldc))) return;
  call(routine, &op_a, &op_b, &m, &n, &k, alpha, a, &lda, b, &ldb, beta, c, &ldc);
}

template <class Routine, class T>
void symm(cblas_call from, Routine* routine, CBLAS_SIDE side, CBLAS_UPLO uplo, int m, int n, const T* alpha,
          const T* a, int lda, const T* b, int ldb, const T* beta, T* c, int ldc) {
  char hand = from.letter(2, side), triangle = from.letter(3, uplo);
  if (from.row_major()) {
    hand = flipped_side(hand);
    triangle = flipped_uplo(triangle);
    std::swap(m, n);
  }
  if (from.refused(blas::symm_bad_argument(&hand, &triangle, m, n, lda, ldb, ldc))) return;
  call(routine, &hand, &triangle, &m, &n, alpha, a, &lda, b, &ldb, beta, c, &ldc);
}

// The row-major letter of an update: N and the transposition that the update takes change over. A letter
// that it doesn't take stays, and is refused.
template <blas::update_letters letters>
char flipped_update(char op) {
  const char transposed = letters == blas::update_letters::kNc ? 'C' : 'T';
  if (op == 'N') return transposed;
  return op == transposed || letters == blas::update_letters::kNtc ? 'N' : op;
}

template <class Routine, class Scalar, class T>
void syrk(cblas_call from, Routine* routine, CBLAS_UPLO uplo, CBLAS_TRANSPOSE trans, int n, int k,
          const Scalar* alpha, const T* a, int lda, const Scalar* beta, T* c, int ldc) {
  char triangle = from.letter(2, uplo), op = from.letter(3, trans);
  constexpr blas::update_letters letters = letters_of<T, Scalar>;
  if (from.row_major()) {
    triangle = flipped_uplo(triangle);
    op = flipped_update<letters>(op);
  }
  if (from.refused(blas::syrk_bad_argument(letters, &triangle, &op, n, k, lda, ldc))) return;
  call(routine, &triangle, &op, &n, &k, alpha, a, &lda, beta, c, &ldc);
}

// her2k's alpha belongs to A B^H, which the transposition turns into the other term.
template <class Routine, class T, class Beta>
void syr2k(cblas_call from, Routine* routine, CBLAS_UPLO uplo, CBLAS_TRANSPOSE trans, int n, int k,
           const T* alpha, const T* a, int lda, const T* b, int ldb, const Beta* beta, T* c, int ldc) {
  char triangle = from.letter(2, uplo), op = from.letter(3, trans);
  constexpr blas::update_letters letters = letters_of<T, Beta>;
  T factor = *alpha;
  if (from.row_major()) {
    triangle = flipped_uplo(triangle);
    op = flipped_update<letters>(op);
    if (letters == blas::update_letters::kNc) factor = conj(factor);
  }
  if (from.refused(blas::syr2k_bad_argument(letters, &triangle, &op, n, k, lda, ldb, ldc))) return;
  call(routine, &triangle, &op, &n, &k, &factor, a, &lda, b, &ldb, beta, c, &ldc);
}

// trmm and trsm
template <class Routine, class T>
void trmm(cblas_call from, Routine* routine, CBLAS_SIDE side, CBLAS_UPLO uplo, CBLAS_TRANSPOSE transa,
          CBLAS_DIAG diag, int m, int n, const T* alpha, const T* a, int lda, T* b, int ldb) {
  char hand = from.letter(2, side), triangle = from.letter(3, uplo);
  const char op = from.letter(4, transa), diagonal = from.letter(5, diag);
  if (from.row_major()) {
    hand = flipped_side(hand);
    triangle = flipped_uplo(triangle);
    std::swap(m, n);
  }
  if (from.refused(blas::trmm_bad_argument(&hand, &triangle, &op, &diagonal, m, n, lda, ldb))) return;
  call(routine, &hand, &triangle, &op, &diagonal, &m, &n, alpha, a, &lda, b, &ldb);
}

}  // namespace

extern "C" {

void cblas_sgemm(CBLAS_LAYOUT layout, CBLAS_TRANSPOSE transa, CBLAS_TRANSPOSE transb, int m, int n, int k,
                 float alpha, const float* a, int lda, const float* b, int ldb, float beta, float* c,
                 int ldc) {
  gemm({"cblas_sgemm", layout}, core::sgemm, transa, transb, m, n, k, &alpha, a, lda, b, ldb, &beta, c, ldc);
}
void cblas_dgemm(CBLAS_LAYOUT layout, CBLAS_TRANSPOSE transa, CBLAS_TRANSPOSE transb, int m, int n, int k,
                 double alpha, const double* a, int lda, const double* b, int ldb, double beta, double* c,
                 int ldc) {
  gemm({"cblas_dgemm", layout}, core::dgemm, transa, transb, m, n, k, &alpha, a, lda, b, ldb, &beta, c, ldc);
}
void cblas_cgemm(CBLAS_LAYOUT layout, CBLAS_TRANSPOSE transa, CBLAS_TRANSPOSE transb, int m, int n, int k,
                 const complex8* alpha, const complex8* a, int lda, const complex8* b, int ldb,
                 const complex8* beta, complex8* c, int ldc) {
  gemm({"cblas_cgemm", layout}, core::cgemm, transa, transb, m, n, k, alpha, a, lda, b, ldb, beta, c, ldc);
}
void cblas_zgemm(CBLAS_LAYOUT layout, CBLAS_TRANSPOSE transa, CBLAS_TRANSPOSE transb, int m, int n, int k,
                 const complex16* alpha, const complex16* a, int lda, const complex16* b, int ldb,
                 const complex16* beta, complex16* c, int ldc) {
  gemm({"cblas_zgemm", layout}, core::zgemm, transa, transb, m, n, k, alpha, a, lda, b, ldb, beta, c, ldc);
}

void cblas_ssymm(CBLAS_LAYOUT layout, CBLAS_SIDE side, CBLAS_UPLO uplo, int m, int n, float alpha,
                 const float* a, int lda, const float* b, int ldb, float beta, float* c, int ldc) {
  symm({"cblas_ssymm", layout}, core::ssymm, side, uplo, m, n, &alpha, a, lda, b, ldb, &beta, c, ldc);
}
void cblas_dsymm(CBLAS_LAYOUT layout, CBLAS_SIDE side, CBLAS_UPLO uplo, int m, int n, double alpha,
                 const double* a, int lda, const double* b, int ldb, double beta, double* c, int ldc) {
  symm({"cblas_dsymm", layout}, core::dsymm, side, uplo, m, n, &alpha, a, lda, b, ldb, &beta, c, ldc);
}
void cblas_csymm(CBLAS_LAYOUT layout, CBLAS_SIDE side, CBLAS_UPLO uplo, int m, int n, const complex8* alpha,
                 const complex8* a, int lda, const complex8* b, int ldb, const complex8* beta, complex8* c,
                 int ldc) {
  symm({"cblas_csymm", layout}, core::csymm, side, uplo, m, n, alpha, a, lda, b, ldb, beta, c, ldc);
}
void cblas_zsymm(CBLAS_LAYOUT layout, CBLAS_SIDE side, CBLAS_UPLO uplo, int m, int n, const complex16* alpha,
                 const complex16* a, int lda, const complex16* b, int ldb, const complex16* beta,
                 complex16* c, int ldc) {
  symm({"cblas_zsymm", layout}, core::zsymm, side, uplo, m, n, alpha, a, lda, b, ldb, beta, c, ldc);
}
void cblas_chemm(CBLAS_LAYOUT layout, CBLAS_SIDE side, CBLAS_UPLO uplo, int m, int n, const complex8* alpha,
                 const complex8* a, int lda, const complex8* b, int ldb, const complex8* beta, complex8* c,
                 int ldc) {
  symm({"cblas_chemm", layout}, core::chemm, side, uplo, m, n, alpha, a, lda, b, ldb, beta, c, ldc);
}
void cblas_zhemm(CBLAS_LAYOUT layout, CBLAS_SIDE side, CBLAS_UPLO uplo, int m, int n, const complex16* alpha,
                 const complex16* a, int lda, const complex16* b, int ldb, const complex16* beta,
                 complex16* c, int ldc) {
  symm({"cblas_zhemm", layout}, core::zhemm, side, uplo, m, n, alpha, a, lda, b, ldb, beta, c, ldc);
}

void cblas_ssyrk(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, CBLAS_TRANSPOSE trans, int n, int k, float alpha,
                 const float* a, int lda, float beta, float* c, int ldc) {
  syrk({"cblas_ssyrk", layout}, core::ssyrk, uplo, trans, n, k, &alpha, a, lda, &beta, c, ldc);
}
void cblas_dsyrk(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, CBLAS_TRANSPOSE trans, int n, int k, double alpha,
                 const double* a, int lda, double beta, double* c, int ldc) {
  syrk({"cblas_dsyrk", layout}, core::dsyrk, uplo, trans, n, k, &alpha, a, lda, &beta, c, ldc);
}
void cblas_csyrk(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, CBLAS_TRANSPOSE trans, int n, int k,
                 const complex8* alpha, const complex8* a, int lda, const complex8* beta, complex8* c,
                 int ldc) {
  syrk({"cblas_csyrk", layout}, core::csyrk, uplo, trans, n, k, alpha, a, lda, beta, c, ldc);
}
void cblas_zsyrk(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, CBLAS_TRANSPOSE trans, int n, int k,
                 const complex16* alpha, const complex16* a, int lda, const complex16* beta, complex16* c,
                 int ldc) {
  syrk({"cblas_zsyrk", layout}, core::zsyrk, uplo, trans, n, k, alpha, a, lda, beta, c, ldc);
}
void cblas_cherk(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, CBLAS_TRANSPOSE trans, int n, int k, float alpha,
                 const complex8* a, int lda, float beta, complex8* c, int ldc) {
  syrk({"cblas_cherk", layout}, core::cherk, uplo, trans, n, k, &alpha, a, lda, &beta, c, ldc);
}
void cblas_zherk(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, CBLAS_TRANSPOSE trans, int n, int k, double alpha,
                 const complex16* a, int lda, double beta, complex16* c, int ldc) {
  syrk({"cblas_zherk", layout}, core::zherk, uplo, trans, n, k, &alpha, a, lda, &beta, c, ldc);
}

void cblas_ssyr2k(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, CBLAS_TRANSPOSE trans, int n, int k, float alpha,
                  const float* a, int lda, const float* b, int ldb, float beta, float* c, int ldc) {
  syr2k({"cblas_ssyr2k", layout}, core::ssyr2k, uplo, trans, n, k, &alpha, a, lda, b, ldb, &beta, c, ldc);
}
void cblas_dsyr2k(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, CBLAS_TRANSPOSE trans, int n, int k, double alpha,
                  const double* a, int lda, const double* b, int ldb, double beta, double* c, int ldc) {
  syr2k({"cblas_dsyr2k", layout}, core::dsyr2k, uplo, trans, n, k, &alpha, a, lda, b, ldb, &beta, c, ldc);
}
void cblas_csyr2k(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, CBLAS_TRANSPOSE trans, int n, int k,
                  const complex8* alpha, const complex8* a, int lda, const complex8* b, int ldb,
                  const complex8* beta, complex8* c, int ldc) {
  syr2k({"cblas_csyr2k", layout}, core::csyr2k, uplo, trans, n, k, alpha, a, lda, b, ldb, beta, c, ldc);
}
void cblas_zsyr2k(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, CBLAS_TRANSPOSE trans, int n, int k,
                  const complex16* alpha, const complex16* a, int lda, const complex16* b, int ldb,
                  const complex16* beta, complex16* c, int ldc) {
  syr2k({"cblas_zsyr2k", layout}, core::zsyr2k, uplo, trans, n, k, alpha, a, lda, b, ldb, beta, c, ldc);
}
void cblas_cher2k(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, CBLAS_TRANSPOSE trans, int n, int k,
                  const complex8* alpha, const complex8* a, int lda, const complex8* b, int ldb, float beta,
                  complex8* c, int ldc) {
  syr2k({"cblas_cher2k", layout}, core::cher2k, uplo, trans, n, k, alpha, a, lda, b, ldb, &beta, c, ldc);
}
void cblas_zher2k(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, CBLAS_TRANSPOSE trans, int n, int k,
                  const complex16* alpha, const complex16* a, int lda, const complex16* b, int ldb,
                  double beta, complex16* c, int ldc) {
  syr2k({"cblas_zher2k", layout}, core::zher2k, uplo, trans, n, k, alpha, a, lda, b, ldb, &beta, c, ldc);
}

void cblas_strmm(CBLAS_LAYOUT layout, CBLAS_SIDE side, CBLAS_UPLO uplo, CBLAS_TRANSPOSE transa,
                 CBLAS_DIAG diag, int m, int n, float alpha, const float* a, int lda, float* b, int ldb) {
  trmm({"cblas_strmm", layout}, core::strmm, side, uplo, transa, diag, m, n, &alpha, a, lda, b, ldb);
}
void cblas_dtrmm(CBLAS_LAYOUT layout, CBLAS_SIDE side, CBLAS_UPLO uplo, CBLAS_TRANSPOSE transa,
                 CBLAS_DIAG diag, int m, int n, double alpha, const double* a, int lda, double* b, int ldb) {
  trmm({"cblas_dtrmm", layout}, core::dtrmm, side, uplo, transa, diag, m, n, &alpha, a, lda, b, ldb);
}
void cblas_ctrmm(CBLAS_LAYOUT layout, CBLAS_SIDE side, CBLAS_UPLO uplo, CBLAS_TRANSPOSE transa,
                 CBLAS_DIAG diag, int m, int n, const complex8* alpha, const complex8* a, int lda,
                 complex8* b, int ldb) {
  trmm({"cblas_ctrmm", layout}, core::ctrmm, side, uplo, transa, diag, m, n, alpha, a, lda, b, ldb);
}
void cblas_ztrmm(CBLAS_LAYOUT layout, CBLAS_SIDE side, CBLAS_UPLO uplo, CBLAS_TRANSPOSE transa,
                 CBLAS_DIAG diag, int m, int n, const complex16* alpha, const complex16* a, int lda,
                 complex16* b, int ldb) {
  trmm({"cblas_ztrmm", layout}, core::ztrmm, side, uplo, transa, diag, m, n, alpha, a, lda, b, ldb);
}
void cblas_strsm(CBLAS_LAYOUT layout, CBLAS_SIDE side, CBLAS_UPLO uplo, CBLAS_TRANSPOSE transa,
                 CBLAS_DIAG diag, int m, int n, float alpha, const float* a, int lda, float* b, int ldb) {
  trmm({"cblas_strsm", layout}, core::strsm, side, uplo, transa, diag, m, n, &alpha, a, lda, b, ldb);
}
void cblas_dtrsm(CBLAS_LAYOUT layout, CBLAS_SIDE side, CBLAS_UPLO uplo, CBLAS_TRANSPOSE transa,
                 CBLAS_DIAG diag, int m, int n, double alpha, const double* a, int lda, double* b, int ldb) {
  trmm({"cblas_dtrsm", layout}, core::dtrsm, side, uplo, transa, diag, m, n, &alpha, a, lda, b, ldb);
}
void cblas_ctrsm(CBLAS_LAYOUT layout, CBLAS_SIDE side, CBLAS_UPLO uplo, CBLAS_TRANSPOSE transa,
                 CBLAS_DIAG diag, int m, int n, const complex8* alpha, const complex8* a, int lda,
                 complex8* b, int ldb) {
  trmm({"cblas_ctrsm", layout}, core::ctrsm, side, uplo, transa, diag, m, n, alpha, a, lda, b, ldb);
}
void cblas_ztrsm(CBLAS_LAYOUT layout, CBLAS_SIDE side, CBLAS_UPLO uplo, CBLAS_TRANSPOSE transa,
                 CBLAS_DIAG diag, int m, int n, const complex16* alpha, const complex16* a, int lda,
                 complex16* b, int ldb) {
  trmm({"cblas_ztrsm", layout}, core::ztrsm, side, uplo, transa, diag, m, n, alpha, a, lda, b, ldb);
}

}  // extern "C"

}  // namespace qel::dropin
