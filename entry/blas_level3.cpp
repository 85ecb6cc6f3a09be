// SPDX-License-Identifier: BSD-3-Clause
// Entries of the matrix products and triangular solves: each checks its arguments, reports the first bad one
// and returns, else widens and calls.
#include "blas/checks.h"
#include "blas/level3/level3.h"
#include "entry/shapes.h"
#include "qel/blas.h"

using qel::complex16;
using qel::complex8;
using qel::entry::call_widened;
using qel::entry::reported;
namespace core = qel::core;
namespace blas = qel::blas;

namespace {

bool gemm_check(const char* name, const char* transa, const char* transb, const int* m, const int* n,
                const int* k, const int* lda, const int* ldb, const int* ldc) {
  return reported(name, blas::gemm_bad_argument(transa, transb, *m, *n, *k, *lda, *ldb, *ldc));
}
bool trsm_check(const char* name, const char* side, const char* uplo, const char* transa, const char* diag,
                const int* m, const int* n, const int* lda, const int* ldb) {
  return reported(name, blas::trmm_bad_argument(side, uplo, transa, diag, *m, *n, *lda, *ldb));
}

}  // namespace

extern "C" {

void sgemm(const char* transa, const char* transb, const int* m, const int* n, const int* k,
           const float* alpha, const float* a, const int* lda, const float* b, const int* ldb,
           const float* beta, float* c, const int* ldc) {
  if (gemm_check("SGEMM ", transa, transb, m, n, k, lda, ldb, ldc)) return;
  call_widened(core::sgemm, transa, transb, m, n, k, alpha, a, lda, b, ldb, beta, c, ldc);
}
void dgemm(const char* transa, const char* transb, const int* m, const int* n, const int* k,
           const double* alpha, const double* a, const int* lda, const double* b, const int* ldb,
           const double* beta, double* c, const int* ldc) {
  if (gemm_check("DGEMM ", transa, transb, m, n, k, lda, ldb, ldc)) return;
  call_widened(core::dgemm, transa, transb, m, n, k, alpha, a, lda, b, ldb, beta, c, ldc);
}
void cgemm(const char* transa, const char* transb, const int* m, const int* n, const int* k,
           const complex8* alpha, const complex8* a, const int* lda, const complex8* b, const int* ldb,
           const complex8* beta, complex8* c, const int* ldc) {
  if (gemm_check("CGEMM ", transa, transb, m, n, k, lda, ldb, ldc)) return;
  call_widened(core::cgemm, transa, transb, m, n, k, alpha, a, lda, b, ldb, beta, c, ldc);
}
void zgemm(const char* transa, const char* transb, const int* m, const int* n, const int* k,
           const complex16* alpha, const complex16* a, const int* lda, const complex16* b, const int* ldb,
           const complex16* beta, complex16* c, const int* ldc) {
  if (gemm_check("ZGEMM ", transa, transb, m, n, k, lda, ldb, ldc)) return;
  call_widened(core::zgemm, transa, transb, m, n, k, alpha, a, lda, b, ldb, beta, c, ldc);
}

void strsm(const char* side, const char* uplo, const char* transa, const char* diag, const int* m,
           const int* n, const float* alpha, const float* a, const int* lda, float* b, const int* ldb) {
  if (trsm_check("STRSM ", side, uplo, transa, diag, m, n, lda, ldb)) return;
  call_widened(core::strsm, side, uplo, transa, diag, m, n, alpha, a, lda, b, ldb);
}
void dtrsm(const char* side, const char* uplo, const char* transa, const char* diag, const int* m,
           const int* n, const double* alpha, const double* a, const int* lda, double* b, const int* ldb) {
  if (trsm_check("DTRSM ", side, uplo, transa, diag, m, n, lda, ldb)) return;
  call_widened(core::dtrsm, side, uplo, transa, diag, m, n, alpha, a, lda, b, ldb);
}
void ctrsm(const char* side, const char* uplo, const char* transa, const char* diag, const int* m,
           const int* n, const complex8* alpha, const complex8* a, const int* lda, complex8* b,
           const int* ldb) {
  if (trsm_check("CTRSM ", side, uplo, transa, diag, m, n, lda, ldb)) return;
  call_widened(core::ctrsm, side, uplo, transa, diag, m, n, alpha, a, lda, b, ldb);
}
void ztrsm(const char* side, const char* uplo, const char* transa, const char* diag, const int* m,
           const int* n, const complex16* alpha, const complex16* a, const int* lda, complex16* b,
           const int* ldb) {
  if (trsm_check("ZTRSM ", side, uplo, transa, diag, m, n, lda, ldb)) return;
  call_widened(core::ztrsm, side, uplo, transa, diag, m, n, alpha, a, lda, b, ldb);
}

// The Fortran names. Lengths of option letters, which Fortran passes behind the arguments, are not looked at.

QEL_API decltype(sgemm) sgemm_ __attribute__((alias("sgemm")));
QEL_API decltype(dgemm) dgemm_ __attribute__((alias("dgemm")));
QEL_API decltype(cgemm) cgemm_ __attribute__((alias("cgemm")));
QEL_API decltype(zgemm) zgemm_ __attribute__((alias("zgemm")));
QEL_API decltype(strsm) strsm_ __attribute__((alias("strsm")));
QEL_API decltype(dtrsm) dtrsm_ __attribute__((alias("dtrsm")));
QEL_API decltype(ctrsm) ctrsm_ __attribute__((alias("ctrsm")));
QEL_API decltype(ztrsm) ztrsm_ __attribute__((alias("ztrsm")));

}  // extern "C"
