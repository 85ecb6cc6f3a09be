// SPDX-License-Identifier: BSD-3-Clause
// Entries of the packed factorisations, and of packed and full triangular solves, inverses and condition
// numbers.
#include "entry/shapes.h"
#include "lapack/lapack.h"
#include "qel/lapack.h"

using qel::complex16;
using qel::complex8;
using qel::entry::call_info;
using qel::entry::in_ints;
using qel::entry::out_ints;
using qel::entry::work_ints;
namespace core = qel::core;

extern "C" {

int spptrf(const char* uplo, const int* n, float* ap, int* info) {
  return call_info(__func__, core::qel_core_spptrf_, info, uplo, n, ap);
}
int dpptrf(const char* uplo, const int* n, double* ap, int* info) {
  return call_info(__func__, core::qel_core_dpptrf_, info, uplo, n, ap);
}
int cpptrf(const char* uplo, const int* n, complex8* ap, int* info) {
  return call_info(__func__, core::qel_core_cpptrf_, info, uplo, n, ap);
}
int zpptrf(const char* uplo, const int* n, complex16* ap, int* info) {
  return call_info(__func__, core::qel_core_zpptrf_, info, uplo, n, ap);
}

int spptrs(const char* uplo, const int* n, const int* nrhs, const float* ap, float* b, const int* ldb,
           int* info) {
  return call_info(__func__, core::qel_core_spptrs_, info, uplo, n, nrhs, ap, b, ldb);
}
int dpptrs(const char* uplo, const int* n, const int* nrhs, const double* ap, double* b, const int* ldb,
           int* info) {
  return call_info(__func__, core::qel_core_dpptrs_, info, uplo, n, nrhs, ap, b, ldb);
}
int cpptrs(const char* uplo, const int* n, const int* nrhs, const complex8* ap, complex8* b, const int* ldb,
           int* info) {
  return call_info(__func__, core::qel_core_cpptrs_, info, uplo, n, nrhs, ap, b, ldb);
}
int zpptrs(const char* uplo, const int* n, const int* nrhs, const complex16* ap, complex16* b, const int* ldb,
           int* info) {
  return call_info(__func__, core::qel_core_zpptrs_, info, uplo, n, nrhs, ap, b, ldb);
}

int spptri(const char* uplo, const int* n, float* ap, int* info) {
  return call_info(__func__, core::qel_core_spptri_, info, uplo, n, ap);
}
int dpptri(const char* uplo, const int* n, double* ap, int* info) {
  return call_info(__func__, core::qel_core_dpptri_, info, uplo, n, ap);
}
int cpptri(const char* uplo, const int* n, complex8* ap, int* info) {
  return call_info(__func__, core::qel_core_cpptri_, info, uplo, n, ap);
}
int zpptri(const char* uplo, const int* n, complex16* ap, int* info) {
  return call_info(__func__, core::qel_core_zpptri_, info, uplo, n, ap);
}

int sppcon(const char* uplo, const int* n, const float* ap, const float* anorm, float* rcond, float* work,
           int*, int* info) {
  return call_info(__func__, core::qel_core_sppcon_, info, uplo, n, ap, anorm, rcond, work, work_ints(*n));
}
int dppcon(const char* uplo, const int* n, const double* ap, const double* anorm, double* rcond, double* work,
           int*, int* info) {
  return call_info(__func__, core::qel_core_dppcon_, info, uplo, n, ap, anorm, rcond, work, work_ints(*n));
}
int cppcon(const char* uplo, const int* n, const complex8* ap, const float* anorm, float* rcond,
           complex8* work, float* rwork, int* info) {
  return call_info(__func__, core::qel_core_cppcon_, info, uplo, n, ap, anorm, rcond, work, rwork);
}
int zppcon(const char* uplo, const int* n, const complex16* ap, const double* anorm, double* rcond,
           complex16* work, double* rwork, int* info) {
  return call_info(__func__, core::qel_core_zppcon_, info, uplo, n, ap, anorm, rcond, work, rwork);
}

int ssptrf(const char* uplo, const int* n, float* ap, int* ipiv, int* info) {
  return call_info(__func__, core::qel_core_ssptrf_, info, uplo, n, ap, out_ints(ipiv, *n));
}
int dsptrf(const char* uplo, const int* n, double* ap, int* ipiv, int* info) {
  return call_info(__func__, core::qel_core_dsptrf_, info, uplo, n, ap, out_ints(ipiv, *n));
}
int csptrf(const char* uplo, const int* n, complex8* ap, int* ipiv, int* info) {
  return call_info(__func__, core::qel_core_csptrf_, info, uplo, n, ap, out_ints(ipiv, *n));
}
int zsptrf(const char* uplo, const int* n, complex16* ap, int* ipiv, int* info) {
  return call_info(__func__, core::qel_core_zsptrf_, info, uplo, n, ap, out_ints(ipiv, *n));
}

int ssptrs(const char* uplo, const int* n, const int* nrhs, const float* ap, const int* ipiv, float* b,
           const int* ldb, int* info) {
  return call_info(__func__, core::qel_core_ssptrs_, info, uplo, n, nrhs, ap, in_ints(ipiv, *n), b, ldb);
}
int dsptrs(const char* uplo, const int* n, const int* nrhs, const double* ap, const int* ipiv, double* b,
           const int* ldb, int* info) {
  return call_info(__func__, core::qel_core_dsptrs_, info, uplo, n, nrhs, ap, in_ints(ipiv, *n), b, ldb);
}
int csptrs(const char* uplo, const int* n, const int* nrhs, const complex8* ap, const int* ipiv, complex8* b,
           const int* ldb, int* info) {
  return call_info(__func__, core::qel_core_csptrs_, info, uplo, n, nrhs, ap, in_ints(ipiv, *n), b, ldb);
}
int zsptrs(const char* uplo, const int* n, const int* nrhs, const complex16* ap, const int* ipiv,
           complex16* b, const int* ldb, int* info) {
  return call_info(__func__, core::qel_core_zsptrs_, info, uplo, n, nrhs, ap, in_ints(ipiv, *n), b, ldb);
}

int ssptri(const char* uplo, const int* n, float* ap, const int* ipiv, float* work, int* info) {
  return call_info(__func__, core::qel_core_ssptri_, info, uplo, n, ap, in_ints(ipiv, *n), work);
}
int dsptri(const char* uplo, const int* n, double* ap, const int* ipiv, double* work, int* info) {
  return call_info(__func__, core::qel_core_dsptri_, info, uplo, n, ap, in_ints(ipiv, *n), work);
}
int csptri(const char* uplo, const int* n, complex8* ap, const int* ipiv, complex8* work, int* info) {
  return call_info(__func__, core::qel_core_csptri_, info, uplo, n, ap, in_ints(ipiv, *n), work);
}
int zsptri(const char* uplo, const int* n, complex16* ap, const int* ipiv, complex16* work, int* info) {
  return call_info(__func__, core::qel_core_zsptri_, info, uplo, n, ap, in_ints(ipiv, *n), work);
}

int sspcon(const char* uplo, const int* n, const float* ap, const int* ipiv, const float* anorm, float* rcond,
           float* work, int*, int* info) {
  return call_info(__func__, core::qel_core_sspcon_, info, uplo, n, ap, in_ints(ipiv, *n), anorm, rcond, work,
                   work_ints(*n));
}
int dspcon(const char* uplo, const int* n, const double* ap, const int* ipiv, const double* anorm,
           double* rcond, double* work, int*, int* info) {
  return call_info(__func__, core::qel_core_dspcon_, info, uplo, n, ap, in_ints(ipiv, *n), anorm, rcond, work,
                   work_ints(*n));
}
int cspcon(const char* uplo, const int* n, const complex8* ap, const int* ipiv, const float* anorm,
           float* rcond, complex8* work, int* info) {
  return call_info(__func__, core::qel_core_cspcon_, info, uplo, n, ap, in_ints(ipiv, *n), anorm, rcond,
                   work);
}
int zspcon(const char* uplo, const int* n, const complex16* ap, const int* ipiv, const double* anorm,
           double* rcond, complex16* work, int* info) {
  return call_info(__func__, core::qel_core_zspcon_, info, uplo, n, ap, in_ints(ipiv, *n), anorm, rcond,
                   work);
}

int chptrf(const char* uplo, const int* n, complex8* ap, int* ipiv, int* info) {
  return call_info(__func__, core::qel_core_chptrf_, info, uplo, n, ap, out_ints(ipiv, *n));
}
int zhptrf(const char* uplo, const int* n, complex16* ap, int* ipiv, int* info) {
  return call_info(__func__, core::qel_core_zhptrf_, info, uplo, n, ap, out_ints(ipiv, *n));
}

int chptrs(const char* uplo, const int* n, const int* nrhs, const complex8* ap, const int* ipiv, complex8* b,
           const int* ldb, int* info) {
  return call_info(__func__, core::qel_core_chptrs_, info, uplo, n, nrhs, ap, in_ints(ipiv, *n), b, ldb);
}
int zhptrs(const char* uplo, const int* n, const int* nrhs, const complex16* ap, const int* ipiv,
           complex16* b, const int* ldb, int* info) {
  return call_info(__func__, core::qel_core_zhptrs_, info, uplo, n, nrhs, ap, in_ints(ipiv, *n), b, ldb);
}

int chptri(const char* uplo, const int* n, complex8* ap, const int* ipiv, complex8* work, int* info) {
  return call_info(__func__, core::qel_core_chptri_, info, uplo, n, ap, in_ints(ipiv, *n), work);
}
int zhptri(const char* uplo, const int* n, complex16* ap, const int* ipiv, complex16* work, int* info) {
  return call_info(__func__, core::qel_core_zhptri_, info, uplo, n, ap, in_ints(ipiv, *n), work);
}

int chpcon(const char* uplo, const int* n, const complex8* ap, const int* ipiv, const float* anorm,
           float* rcond, complex8* work, int* info) {
  return call_info(__func__, core::qel_core_chpcon_, info, uplo, n, ap, in_ints(ipiv, *n), anorm, rcond,
                   work);
}
int zhpcon(const char* uplo, const int* n, const complex16* ap, const int* ipiv, const double* anorm,
           double* rcond, complex16* work, int* info) {
  return call_info(__func__, core::qel_core_zhpcon_, info, uplo, n, ap, in_ints(ipiv, *n), anorm, rcond,
                   work);
}

int stptrs(const char* uplo, const char* trans, const char* diag, const int* n, const int* nrhs,
           const float* ap, float* b, const int* ldb, int* info) {
  return call_info(__func__, core::qel_core_stptrs_, info, uplo, trans, diag, n, nrhs, ap, b, ldb);
}
int dtptrs(const char* uplo, const char* trans, const char* diag, const int* n, const int* nrhs,
           const double* ap, double* b, const int* ldb, int* info) {
  return call_info(__func__, core::qel_core_dtptrs_, info, uplo, trans, diag, n, nrhs, ap, b, ldb);
}
int ctptrs(const char* uplo, const char* trans, const char* diag, const int* n, const int* nrhs,
           const complex8* ap, complex8* b, const int* ldb, int* info) {
  return call_info(__func__, core::qel_core_ctptrs_, info, uplo, trans, diag, n, nrhs, ap, b, ldb);
}
int ztptrs(const char* uplo, const char* trans, const char* diag, const int* n, const int* nrhs,
           const complex16* ap, complex16* b, const int* ldb, int* info) {
  return call_info(__func__, core::qel_core_ztptrs_, info, uplo, trans, diag, n, nrhs, ap, b, ldb);
}

int stptri(const char* uplo, const char* diag, const int* n, float* ap, int* info) {
  return call_info(__func__, core::qel_core_stptri_, info, uplo, diag, n, ap);
}
int dtptri(const char* uplo, const char* diag, const int* n, double* ap, int* info) {
  return call_info(__func__, core::qel_core_dtptri_, info, uplo, diag, n, ap);
}
int ctptri(const char* uplo, const char* diag, const int* n, complex8* ap, int* info) {
  return call_info(__func__, core::qel_core_ctptri_, info, uplo, diag, n, ap);
}
int ztptri(const char* uplo, const char* diag, const int* n, complex16* ap, int* info) {
  return call_info(__func__, core::qel_core_ztptri_, info, uplo, diag, n, ap);
}

int stpcon(const char* norm, const char* uplo, const char* diag, const int* n, const float* ap, float* rcond,
           float* work, int*, int* info) {
  return call_info(__func__, core::qel_core_stpcon_, info, norm, uplo, diag, n, ap, rcond, work,
                   work_ints(*n));
}
int dtpcon(const char* norm, const char* uplo, const char* diag, const int* n, const double* ap,
           double* rcond, double* work, int*, int* info) {
  return call_info(__func__, core::qel_core_dtpcon_, info, norm, uplo, diag, n, ap, rcond, work,
                   work_ints(*n));
}
int ctpcon(const char* norm, const char* uplo, const char* diag, const int* n, const complex8* ap,
           float* rcond, complex8* work, float* rwork, int* info) {
  return call_info(__func__, core::qel_core_ctpcon_, info, norm, uplo, diag, n, ap, rcond, work, rwork);
}
int ztpcon(const char* norm, const char* uplo, const char* diag, const int* n, const complex16* ap,
           double* rcond, complex16* work, double* rwork, int* info) {
  return call_info(__func__, core::qel_core_ztpcon_, info, norm, uplo, diag, n, ap, rcond, work, rwork);
}

int strcon(const char* norm, const char* uplo, const char* diag, const int* n, const float* a, const int* lda,
           float* rcond, float* work, int*, int* info) {
  return call_info(__func__, core::qel_core_strcon_, info, norm, uplo, diag, n, a, lda, rcond, work,
                   work_ints(*n));
}
int dtrcon(const char* norm, const char* uplo, const char* diag, const int* n, const double* a,
           const int* lda, double* rcond, double* work, int*, int* info) {
  return call_info(__func__, core::qel_core_dtrcon_, info, norm, uplo, diag, n, a, lda, rcond, work,
                   work_ints(*n));
}

int spocon(const char* uplo, const int* n, const float* a, const int* lda, const float* anorm, float* rcond,
           float* work, int*, int* info) {
  return call_info(__func__, core::qel_core_spocon_, info, uplo, n, a, lda, anorm, rcond, work,
                   work_ints(*n));
}
int dpocon(const char* uplo, const int* n, const double* a, const int* lda, const double* anorm,
           double* rcond, double* work, int*, int* info) {
  return call_info(__func__, core::qel_core_dpocon_, info, uplo, n, a, lda, anorm, rcond, work,
                   work_ints(*n));
}

// The Fortran names. Lengths of option letters, which Fortran passes behind the arguments, are not looked at.

QEL_API decltype(spptrf) spptrf_ __attribute__((alias("spptrf")));
QEL_API decltype(dpptrf) dpptrf_ __attribute__((alias("dpptrf")));
QEL_API decltype(cpptrf) cpptrf_ __attribute__((alias("cpptrf")));
QEL_API decltype(zpptrf) zpptrf_ __attribute__((alias("zpptrf")));
QEL_API decltype(spptrs) spptrs_ __attribute__((alias("spptrs")));
QEL_API decltype(dpptrs) dpptrs_ __attribute__((alias("dpptrs")));
QEL_API decltype(cpptrs) cpptrs_ __attribute__((alias("cpptrs")));
QEL_API decltype(zpptrs) zpptrs_ __attribute__((alias("zpptrs")));
QEL_API decltype(spptri) spptri_ __attribute__((alias("spptri")));
QEL_API decltype(dpptri) dpptri_ __attribute__((alias("dpptri")));
QEL_API decltype(cpptri) cpptri_ __attribute__((alias("cpptri")));
QEL_API decltype(zpptri) zpptri_ __attribute__((alias("zpptri")));
QEL_API decltype(sppcon) sppcon_ __attribute__((alias("sppcon")));
QEL_API decltype(dppcon) dppcon_ __attribute__((alias("dppcon")));
QEL_API decltype(cppcon) cppcon_ __attribute__((alias("cppcon")));
QEL_API decltype(zppcon) zppcon_ __attribute__((alias("zppcon")));
QEL_API decltype(ssptrf) ssptrf_ __attribute__((alias("ssptrf")));
QEL_API decltype(dsptrf) dsptrf_ __attribute__((alias("dsptrf")));
QEL_API decltype(csptrf) csptrf_ __attribute__((alias("csptrf")));
QEL_API decltype(zsptrf) zsptrf_ __attribute__((alias("zsptrf")));
QEL_API decltype(ssptrs) ssptrs_ __attribute__((alias("ssptrs")));
QEL_API decltype(dsptrs) dsptrs_ __attribute__((alias("dsptrs")));
QEL_API decltype(csptrs) csptrs_ __attribute__((alias("csptrs")));
QEL_API decltype(zsptrs) zsptrs_ __attribute__((alias("zsptrs")));
QEL_API decltype(ssptri) ssptri_ __attribute__((alias("ssptri")));
QEL_API decltype(dsptri) dsptri_ __attribute__((alias("dsptri")));
QEL_API decltype(csptri) csptri_ __attribute__((alias("csptri")));
QEL_API decltype(zsptri) zsptri_ __attribute__((alias("zsptri")));
QEL_API decltype(sspcon) sspcon_ __attribute__((alias("sspcon")));
QEL_API decltype(dspcon) dspcon_ __attribute__((alias("dspcon")));
QEL_API decltype(cspcon) cspcon_ __attribute__((alias("cspcon")));
QEL_API decltype(zspcon) zspcon_ __attribute__((alias("zspcon")));
QEL_API decltype(chptrf) chptrf_ __attribute__((alias("chptrf")));
QEL_API decltype(zhptrf) zhptrf_ __attribute__((alias("zhptrf")));
QEL_API decltype(chptrs) chptrs_ __attribute__((alias("chptrs")));
QEL_API decltype(zhptrs) zhptrs_ __attribute__((alias("zhptrs")));
QEL_API decltype(chptri) chptri_ __attribute__((alias("chptri")));
QEL_API decltype(zhptri) zhptri_ __attribute__((alias("zhptri")));
QEL_API decltype(chpcon) chpcon_ __attribute__((alias("chpcon")));
QEL_API decltype(zhpcon) zhpcon_ __attribute__((alias("zhpcon")));
QEL_API decltype(stptrs) stptrs_ __attribute__((alias("stptrs")));
QEL_API decltype(dtptrs) dtptrs_ __attribute__((alias("dtptrs")));
QEL_API decltype(ctptrs) ctptrs_ __attribute__((alias("ctptrs")));
QEL_API decltype(ztptrs) ztptrs_ __attribute__((alias("ztptrs")));
QEL_API decltype(stptri) stptri_ __attribute__((alias("stptri")));
QEL_API decltype(dtptri) dtptri_ __attribute__((alias("dtptri")));
QEL_API decltype(ctptri) ctptri_ __attribute__((alias("ctptri")));
QEL_API decltype(ztptri) ztptri_ __attribute__((alias("ztptri")));
QEL_API decltype(stpcon) stpcon_ __attribute__((alias("stpcon")));
QEL_API decltype(dtpcon) dtpcon_ __attribute__((alias("dtpcon")));
QEL_API decltype(ctpcon) ctpcon_ __attribute__((alias("ctpcon")));
QEL_API decltype(ztpcon) ztpcon_ __attribute__((alias("ztpcon")));
QEL_API decltype(strcon) strcon_ __attribute__((alias("strcon")));
QEL_API decltype(dtrcon) dtrcon_ __attribute__((alias("dtrcon")));
QEL_API decltype(spocon) spocon_ __attribute__((alias("spocon")));
QEL_API decltype(dpocon) dpocon_ __attribute__((alias("dpocon")));

}  // extern "C"
