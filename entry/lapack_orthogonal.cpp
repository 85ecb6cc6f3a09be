// SPDX-License-Identifier: BSD-3-Clause
// Entries of the QR factorisations and least squares. A size query leaves the column permutation alone: a
// caller may not have it yet.
#include "entry/shapes.h"
#include "lapack/lapack.h"
#include "qel/lapack.h"

using qel::complex16;
using qel::complex8;
using qel::entry::call_info;
using qel::entry::in_out_ints;
using qel::entry::out_int;
namespace core = qel::core;

namespace {

/// The column permutation, or null in a size query, which doesn't use it.
int* unless_query(const int* lwork, int* jpvt) { return *lwork == -1 ? nullptr : jpvt; }

}  // namespace

extern "C" {

int sgeqrf(const int* m, const int* n, float* a, const int* lda, float* tau, float* work, const int* lwork,
           int* info) {
  return call_info(__func__, core::qel_core_sgeqrf_, info, m, n, a, lda, tau, work, lwork);
}
int dgeqrf(const int* m, const int* n, double* a, const int* lda, double* tau, double* work, const int* lwork,
           int* info) {
  return call_info(__func__, core::qel_core_dgeqrf_, info, m, n, a, lda, tau, work, lwork);
}
int cgeqrf(const int* m, const int* n, complex8* a, const int* lda, complex8* tau, complex8* work,
           const int* lwork, int* info) {
  return call_info(__func__, core::qel_core_cgeqrf_, info, m, n, a, lda, tau, work, lwork);
}
int zgeqrf(const int* m, const int* n, complex16* a, const int* lda, complex16* tau, complex16* work,
           const int* lwork, int* info) {
  return call_info(__func__, core::qel_core_zgeqrf_, info, m, n, a, lda, tau, work, lwork);
}

int sgeqp3(const int* m, const int* n, float* a, const int* lda, int* jpvt, float* tau, float* work,
           const int* lwork, int* info) {
  return call_info(__func__, core::qel_core_sgeqp3_, info, m, n, a, lda,
                   in_out_ints(unless_query(lwork, jpvt), *n), tau, work, lwork);
}
int dgeqp3(const int* m, const int* n, double* a, const int* lda, int* jpvt, double* tau, double* work,
           const int* lwork, int* info) {
  return call_info(__func__, core::qel_core_dgeqp3_, info, m, n, a, lda,
                   in_out_ints(unless_query(lwork, jpvt), *n), tau, work, lwork);
}
int cgeqp3(const int* m, const int* n, complex8* a, const int* lda, int* jpvt, complex8* tau, complex8* work,
           const int* lwork, float* rwork, int* info) {
  return call_info(__func__, core::qel_core_cgeqp3_, info, m, n, a, lda,
                   in_out_ints(unless_query(lwork, jpvt), *n), tau, work, lwork, rwork);
}
int zgeqp3(const int* m, const int* n, complex16* a, const int* lda, int* jpvt, complex16* tau,
           complex16* work, const int* lwork, double* rwork, int* info) {
  return call_info(__func__, core::qel_core_zgeqp3_, info, m, n, a, lda,
                   in_out_ints(unless_query(lwork, jpvt), *n), tau, work, lwork, rwork);
}

int sormqr(const char* side, const char* trans, const int* m, const int* n, const int* k, float* a,
           const int* lda, const float* tau, float* c, const int* ldc, float* work, const int* lwork,
           int* info) {
  return call_info(__func__, core::qel_core_sormqr_, info, side, trans, m, n, k, a, lda, tau, c, ldc, work,
                   lwork);
}
int dormqr(const char* side, const char* trans, const int* m, const int* n, const int* k, double* a,
           const int* lda, const double* tau, double* c, const int* ldc, double* work, const int* lwork,
           int* info) {
  return call_info(__func__, core::qel_core_dormqr_, info, side, trans, m, n, k, a, lda, tau, c, ldc, work,
                   lwork);
}
int cunmqr(const char* side, const char* trans, const int* m, const int* n, const int* k, complex8* a,
           const int* lda, const complex8* tau, complex8* c, const int* ldc, complex8* work, const int* lwork,
           int* info) {
  return call_info(__func__, core::qel_core_cunmqr_, info, side, trans, m, n, k, a, lda, tau, c, ldc, work,
                   lwork);
}
int zunmqr(const char* side, const char* trans, const int* m, const int* n, const int* k, complex16* a,
           const int* lda, const complex16* tau, complex16* c, const int* ldc, complex16* work,
           const int* lwork, int* info) {
  return call_info(__func__, core::qel_core_zunmqr_, info, side, trans, m, n, k, a, lda, tau, c, ldc, work,
                   lwork);
}

int sorgqr(const int* m, const int* n, const int* k, float* a, const int* lda, const float* tau, float* work,
           const int* lwork, int* info) {
  return call_info(__func__, core::qel_core_sorgqr_, info, m, n, k, a, lda, tau, work, lwork);
}
int dorgqr(const int* m, const int* n, const int* k, double* a, const int* lda, const double* tau,
           double* work, const int* lwork, int* info) {
  return call_info(__func__, core::qel_core_dorgqr_, info, m, n, k, a, lda, tau, work, lwork);
}
int cungqr(const int* m, const int* n, const int* k, complex8* a, const int* lda, const complex8* tau,
           complex8* work, const int* lwork, int* info) {
  return call_info(__func__, core::qel_core_cungqr_, info, m, n, k, a, lda, tau, work, lwork);
}
int zungqr(const int* m, const int* n, const int* k, complex16* a, const int* lda, const complex16* tau,
           complex16* work, const int* lwork, int* info) {
  return call_info(__func__, core::qel_core_zungqr_, info, m, n, k, a, lda, tau, work, lwork);
}

int dgels(const char* trans, const int* m, const int* n, const int* nrhs, double* a, const int* lda,
          double* b, const int* ldb, double* work, const int* lwork, int* info) {
  return call_info(__func__, core::qel_core_dgels_, info, trans, m, n, nrhs, a, lda, b, ldb, work, lwork);
}

int sgelsy(const int* m, const int* n, const int* nrhs, float* a, const int* lda, float* b, const int* ldb,
           int* jpvt, const float* rcond, int* rank, float* work, const int* lwork, int* info) {
  return call_info(__func__, core::qel_core_sgelsy_, info, m, n, nrhs, a, lda, b, ldb,
                   in_out_ints(unless_query(lwork, jpvt), *n), rcond, out_int(rank), work, lwork);
}
int dgelsy(const int* m, const int* n, const int* nrhs, double* a, const int* lda, double* b, const int* ldb,
           int* jpvt, const double* rcond, int* rank, double* work, const int* lwork, int* info) {
  return call_info(__func__, core::qel_core_dgelsy_, info, m, n, nrhs, a, lda, b, ldb,
                   in_out_ints(unless_query(lwork, jpvt), *n), rcond, out_int(rank), work, lwork);
}
int cgelsy(const int* m, const int* n, const int* nrhs, complex8* a, const int* lda, complex8* b,
           const int* ldb, int* jpvt, const float* rcond, int* rank, complex8* work, const int* lwork,
           float* rwork, int* info) {
  return call_info(__func__, core::qel_core_cgelsy_, info, m, n, nrhs, a, lda, b, ldb,
                   in_out_ints(unless_query(lwork, jpvt), *n), rcond, out_int(rank), work, lwork, rwork);
}
int zgelsy(const int* m, const int* n, const int* nrhs, complex16* a, const int* lda, complex16* b,
           const int* ldb, int* jpvt, const double* rcond, int* rank, complex16* work, const int* lwork,
           double* rwork, int* info) {
  return call_info(__func__, core::qel_core_zgelsy_, info, m, n, nrhs, a, lda, b, ldb,
                   in_out_ints(unless_query(lwork, jpvt), *n), rcond, out_int(rank), work, lwork, rwork);
}

// The Fortran names. Lengths of option letters, which Fortran passes behind the arguments, are not looked at.

QEL_API decltype(sgeqrf) sgeqrf_ __attribute__((alias("sgeqrf")));
QEL_API decltype(dgeqrf) dgeqrf_ __attribute__((alias("dgeqrf")));
QEL_API decltype(cgeqrf) cgeqrf_ __attribute__((alias("cgeqrf")));
QEL_API decltype(zgeqrf) zgeqrf_ __attribute__((alias("zgeqrf")));
QEL_API decltype(sgeqp3) sgeqp3_ __attribute__((alias("sgeqp3")));
QEL_API decltype(dgeqp3) dgeqp3_ __attribute__((alias("dgeqp3")));
QEL_API decltype(cgeqp3) cgeqp3_ __attribute__((alias("cgeqp3")));
QEL_API decltype(zgeqp3) zgeqp3_ __attribute__((alias("zgeqp3")));
QEL_API decltype(sormqr) sormqr_ __attribute__((alias("sormqr")));
QEL_API decltype(dormqr) dormqr_ __attribute__((alias("dormqr")));
QEL_API decltype(cunmqr) cunmqr_ __attribute__((alias("cunmqr")));
QEL_API decltype(zunmqr) zunmqr_ __attribute__((alias("zunmqr")));
QEL_API decltype(sorgqr) sorgqr_ __attribute__((alias("sorgqr")));
QEL_API decltype(dorgqr) dorgqr_ __attribute__((alias("dorgqr")));
QEL_API decltype(cungqr) cungqr_ __attribute__((alias("cungqr")));
QEL_API decltype(zungqr) zungqr_ __attribute__((alias("zungqr")));
QEL_API decltype(dgels) dgels_ __attribute__((alias("dgels")));
QEL_API decltype(sgelsy) sgelsy_ __attribute__((alias("sgelsy")));
QEL_API decltype(dgelsy) dgelsy_ __attribute__((alias("dgelsy")));
QEL_API decltype(cgelsy) cgelsy_ __attribute__((alias("cgelsy")));
QEL_API decltype(zgelsy) zgelsy_ __attribute__((alias("zgelsy")));

}  // extern "C"
