// SPDX-License-Identifier: BSD-3-Clause
// Entries of the band and tridiagonal factorisations, solvers and condition numbers.
#include <algorithm>

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

int sgbtrf(const int* m, const int* n, const int* kl, const int* ku, float* ab, const int* ldab, int* ipiv,
           int* info) {
  return call_info(__func__, core::qel_core_sgbtrf_, info, m, n, kl, ku, ab, ldab,
                   out_ints(ipiv, std::min(*m, *n)));
}
int dgbtrf(const int* m, const int* n, const int* kl, const int* ku, double* ab, const int* ldab, int* ipiv,
           int* info) {
  return call_info(__func__, core::qel_core_dgbtrf_, info, m, n, kl, ku, ab, ldab,
                   out_ints(ipiv, std::min(*m, *n)));
}
int cgbtrf(const int* m, const int* n, const int* kl, const int* ku, complex8* ab, const int* ldab, int* ipiv,
           int* info) {
  return call_info(__func__, core::qel_core_cgbtrf_, info, m, n, kl, ku, ab, ldab,
                   out_ints(ipiv, std::min(*m, *n)));
}
int zgbtrf(const int* m, const int* n, const int* kl, const int* ku, complex16* ab, const int* ldab,
           int* ipiv, int* info) {
  return call_info(__func__, core::qel_core_zgbtrf_, info, m, n, kl, ku, ab, ldab,
                   out_ints(ipiv, std::min(*m, *n)));
}

int sgbtrs(const char* trans, const int* n, const int* kl, const int* ku, const int* nrhs, const float* ab,
           const int* ldab, const int* ipiv, float* b, const int* ldb, int* info) {
  return call_info(__func__, core::qel_core_sgbtrs_, info, trans, n, kl, ku, nrhs, ab, ldab,
                   in_ints(ipiv, *n), b, ldb);
}
int dgbtrs(const char* trans, const int* n, const int* kl, const int* ku, const int* nrhs, const double* ab,
           const int* ldab, const int* ipiv, double* b, const int* ldb, int* info) {
  return call_info(__func__, core::qel_core_dgbtrs_, info, trans, n, kl, ku, nrhs, ab, ldab,
                   in_ints(ipiv, *n), b, ldb);
}
int cgbtrs(const char* trans, const int* n, const int* kl, const int* ku, const int* nrhs, const complex8* ab,
           const int* ldab, const int* ipiv, complex8* b, const int* ldb, int* info) {
  return call_info(__func__, core::qel_core_cgbtrs_, info, trans, n, kl, ku, nrhs, ab, ldab,
                   in_ints(ipiv, *n), b, ldb);
}
int zgbtrs(const char* trans, const int* n, const int* kl, const int* ku, const int* nrhs,
           const complex16* ab, const int* ldab, const int* ipiv, complex16* b, const int* ldb, int* info) {
  return call_info(__func__, core::qel_core_zgbtrs_, info, trans, n, kl, ku, nrhs, ab, ldab,
                   in_ints(ipiv, *n), b, ldb);
}

int sgbcon(const char* norm, const int* n, const int* kl, const int* ku, const float* ab, const int* ldab,
           const int* ipiv, const float* anorm, float* rcond, float* work, int*, int* info) {
  return call_info(__func__, core::qel_core_sgbcon_, info, norm, n, kl, ku, ab, ldab, in_ints(ipiv, *n),
                   anorm, rcond, work, work_ints(*n));
}
int dgbcon(const char* norm, const int* n, const int* kl, const int* ku, const double* ab, const int* ldab,
           const int* ipiv, const double* anorm, double* rcond, double* work, int*, int* info) {
  return call_info(__func__, core::qel_core_dgbcon_, info, norm, n, kl, ku, ab, ldab, in_ints(ipiv, *n),
                   anorm, rcond, work, work_ints(*n));
}
int cgbcon(const char* norm, const int* n, const int* kl, const int* ku, const complex8* ab, const int* ldab,
           const int* ipiv, const float* anorm, float* rcond, complex8* work, float* rwork, int* info) {
  return call_info(__func__, core::qel_core_cgbcon_, info, norm, n, kl, ku, ab, ldab, in_ints(ipiv, *n),
                   anorm, rcond, work, rwork);
}
int zgbcon(const char* norm, const int* n, const int* kl, const int* ku, const complex16* ab, const int* ldab,
           const int* ipiv, const double* anorm, double* rcond, complex16* work, double* rwork, int* info) {
  return call_info(__func__, core::qel_core_zgbcon_, info, norm, n, kl, ku, ab, ldab, in_ints(ipiv, *n),
                   anorm, rcond, work, rwork);
}

int spbtrf(const char* uplo, const int* n, const int* kd, float* ab, const int* ldab, int* info) {
  return call_info(__func__, core::qel_core_spbtrf_, info, uplo, n, kd, ab, ldab);
}
int dpbtrf(const char* uplo, const int* n, const int* kd, double* ab, const int* ldab, int* info) {
  return call_info(__func__, core::qel_core_dpbtrf_, info, uplo, n, kd, ab, ldab);
}
int cpbtrf(const char* uplo, const int* n, const int* kd, complex8* ab, const int* ldab, int* info) {
  return call_info(__func__, core::qel_core_cpbtrf_, info, uplo, n, kd, ab, ldab);
}
int zpbtrf(const char* uplo, const int* n, const int* kd, complex16* ab, const int* ldab, int* info) {
  return call_info(__func__, core::qel_core_zpbtrf_, info, uplo, n, kd, ab, ldab);
}

int spbtrs(const char* uplo, const int* n, const int* kd, const int* nrhs, const float* ab, const int* ldab,
           float* b, const int* ldb, int* info) {
  return call_info(__func__, core::qel_core_spbtrs_, info, uplo, n, kd, nrhs, ab, ldab, b, ldb);
}
int dpbtrs(const char* uplo, const int* n, const int* kd, const int* nrhs, const double* ab, const int* ldab,
           double* b, const int* ldb, int* info) {
  return call_info(__func__, core::qel_core_dpbtrs_, info, uplo, n, kd, nrhs, ab, ldab, b, ldb);
}
int cpbtrs(const char* uplo, const int* n, const int* kd, const int* nrhs, const complex8* ab,
           const int* ldab, complex8* b, const int* ldb, int* info) {
  return call_info(__func__, core::qel_core_cpbtrs_, info, uplo, n, kd, nrhs, ab, ldab, b, ldb);
}
int zpbtrs(const char* uplo, const int* n, const int* kd, const int* nrhs, const complex16* ab,
           const int* ldab, complex16* b, const int* ldb, int* info) {
  return call_info(__func__, core::qel_core_zpbtrs_, info, uplo, n, kd, nrhs, ab, ldab, b, ldb);
}

int spbcon(const char* uplo, const int* n, const int* kd, const float* ab, const int* ldab,
           const float* anorm, float* rcond, float* work, int*, int* info) {
  return call_info(__func__, core::qel_core_spbcon_, info, uplo, n, kd, ab, ldab, anorm, rcond, work,
                   work_ints(*n));
}
int dpbcon(const char* uplo, const int* n, const int* kd, const double* ab, const int* ldab,
           const double* anorm, double* rcond, double* work, int*, int* info) {
  return call_info(__func__, core::qel_core_dpbcon_, info, uplo, n, kd, ab, ldab, anorm, rcond, work,
                   work_ints(*n));
}
int cpbcon(const char* uplo, const int* n, const int* kd, const complex8* ab, const int* ldab,
           const float* anorm, float* rcond, complex8* work, float* rwork, int* info) {
  return call_info(__func__, core::qel_core_cpbcon_, info, uplo, n, kd, ab, ldab, anorm, rcond, work, rwork);
}
int zpbcon(const char* uplo, const int* n, const int* kd, const complex16* ab, const int* ldab,
           const double* anorm, double* rcond, complex16* work, double* rwork, int* info) {
  return call_info(__func__, core::qel_core_zpbcon_, info, uplo, n, kd, ab, ldab, anorm, rcond, work, rwork);
}

int sgttrf(const int* n, float* dl, float* d, float* du, float* du2, int* ipiv, int* info) {
  return call_info(__func__, core::qel_core_sgttrf_, info, n, dl, d, du, du2, out_ints(ipiv, *n));
}
int dgttrf(const int* n, double* dl, double* d, double* du, double* du2, int* ipiv, int* info) {
  return call_info(__func__, core::qel_core_dgttrf_, info, n, dl, d, du, du2, out_ints(ipiv, *n));
}
int cgttrf(const int* n, complex8* dl, complex8* d, complex8* du, complex8* du2, int* ipiv, int* info) {
  return call_info(__func__, core::qel_core_cgttrf_, info, n, dl, d, du, du2, out_ints(ipiv, *n));
}
int zgttrf(const int* n, complex16* dl, complex16* d, complex16* du, complex16* du2, int* ipiv, int* info) {
  return call_info(__func__, core::qel_core_zgttrf_, info, n, dl, d, du, du2, out_ints(ipiv, *n));
}

int sgttrs(const char* trans, const int* n, const int* nrhs, const float* dl, const float* d, const float* du,
           const float* du2, const int* ipiv, float* b, const int* ldb, int* info) {
  return call_info(__func__, core::qel_core_sgttrs_, info, trans, n, nrhs, dl, d, du, du2, in_ints(ipiv, *n),
                   b, ldb);
}
int dgttrs(const char* trans, const int* n, const int* nrhs, const double* dl, const double* d,
           const double* du, const double* du2, const int* ipiv, double* b, const int* ldb, int* info) {
  return call_info(__func__, core::qel_core_dgttrs_, info, trans, n, nrhs, dl, d, du, du2, in_ints(ipiv, *n),
                   b, ldb);
}
int cgttrs(const char* trans, const int* n, const int* nrhs, const complex8* dl, const complex8* d,
           const complex8* du, const complex8* du2, const int* ipiv, complex8* b, const int* ldb, int* info) {
  return call_info(__func__, core::qel_core_cgttrs_, info, trans, n, nrhs, dl, d, du, du2, in_ints(ipiv, *n),
                   b, ldb);
}
int zgttrs(const char* trans, const int* n, const int* nrhs, const complex16* dl, const complex16* d,
           const complex16* du, const complex16* du2, const int* ipiv, complex16* b, const int* ldb,
           int* info) {
  return call_info(__func__, core::qel_core_zgttrs_, info, trans, n, nrhs, dl, d, du, du2, in_ints(ipiv, *n),
                   b, ldb);
}

int sgtcon(const char* norm, const int* n, const float* dl, const float* d, const float* du, const float* du2,
           const int* ipiv, const float* anorm, float* rcond, float* work, int*, int* info) {
  return call_info(__func__, core::qel_core_sgtcon_, info, norm, n, dl, d, du, du2, in_ints(ipiv, *n), anorm,
                   rcond, work, work_ints(*n));
}
int dgtcon(const char* norm, const int* n, const double* dl, const double* d, const double* du,
           const double* du2, const int* ipiv, const double* anorm, double* rcond, double* work, int*,
           int* info) {
  return call_info(__func__, core::qel_core_dgtcon_, info, norm, n, dl, d, du, du2, in_ints(ipiv, *n), anorm,
                   rcond, work, work_ints(*n));
}
int cgtcon(const char* norm, const int* n, const complex8* dl, const complex8* d, const complex8* du,
           const complex8* du2, const int* ipiv, const float* anorm, float* rcond, complex8* work,
           int* info) {
  return call_info(__func__, core::qel_core_cgtcon_, info, norm, n, dl, d, du, du2, in_ints(ipiv, *n), anorm,
                   rcond, work);
}
int zgtcon(const char* norm, const int* n, const complex16* dl, const complex16* d, const complex16* du,
           const complex16* du2, const int* ipiv, const double* anorm, double* rcond, complex16* work,
           int* info) {
  return call_info(__func__, core::qel_core_zgtcon_, info, norm, n, dl, d, du, du2, in_ints(ipiv, *n), anorm,
                   rcond, work);
}

int dgtsv(const int* n, const int* nrhs, double* dl, double* d, double* du, double* b, const int* ldb,
          int* info) {
  return call_info(__func__, core::qel_core_dgtsv_, info, n, nrhs, dl, d, du, b, ldb);
}

int spttrf(const int* n, float* d, float* e, int* info) {
  return call_info(__func__, core::qel_core_spttrf_, info, n, d, e);
}
int dpttrf(const int* n, double* d, double* e, int* info) {
  return call_info(__func__, core::qel_core_dpttrf_, info, n, d, e);
}
int cpttrf(const int* n, float* d, complex8* e, int* info) {
  return call_info(__func__, core::qel_core_cpttrf_, info, n, d, e);
}
int zpttrf(const int* n, double* d, complex16* e, int* info) {
  return call_info(__func__, core::qel_core_zpttrf_, info, n, d, e);
}

int spttrs(const int* n, const int* nrhs, const float* d, const float* e, float* b, const int* ldb,
           int* info) {
  return call_info(__func__, core::qel_core_spttrs_, info, n, nrhs, d, e, b, ldb);
}
int dpttrs(const int* n, const int* nrhs, const double* d, const double* e, double* b, const int* ldb,
           int* info) {
  return call_info(__func__, core::qel_core_dpttrs_, info, n, nrhs, d, e, b, ldb);
}
int cpttrs(const char* uplo, const int* n, const int* nrhs, const float* d, const complex8* e, complex8* b,
           const int* ldb, int* info) {
  return call_info(__func__, core::qel_core_cpttrs_, info, uplo, n, nrhs, d, e, b, ldb);
}
int zpttrs(const char* uplo, const int* n, const int* nrhs, const double* d, const complex16* e, complex16* b,
           const int* ldb, int* info) {
  return call_info(__func__, core::qel_core_zpttrs_, info, uplo, n, nrhs, d, e, b, ldb);
}

int sptcon(const int* n, const float* d, const float* e, const float* anorm, float* rcond, float* work,
           int* info) {
  return call_info(__func__, core::qel_core_sptcon_, info, n, d, e, anorm, rcond, work);
}
int dptcon(const int* n, const double* d, const double* e, const double* anorm, double* rcond, double* work,
           int* info) {
  return call_info(__func__, core::qel_core_dptcon_, info, n, d, e, anorm, rcond, work);
}
int cptcon(const int* n, const float* d, const complex8* e, const float* anorm, float* rcond, float* rwork,
           int* info) {
  return call_info(__func__, core::qel_core_cptcon_, info, n, d, e, anorm, rcond, rwork);
}
int zptcon(const int* n, const double* d, const complex16* e, const double* anorm, double* rcond,
           double* rwork, int* info) {
  return call_info(__func__, core::qel_core_zptcon_, info, n, d, e, anorm, rcond, rwork);
}

// The Fortran names. Lengths of option letters, which Fortran passes behind the arguments, are not looked at.

QEL_API decltype(sgbtrf) sgbtrf_ __attribute__((alias("sgbtrf")));
QEL_API decltype(dgbtrf) dgbtrf_ __attribute__((alias("dgbtrf")));
QEL_API decltype(cgbtrf) cgbtrf_ __attribute__((alias("cgbtrf")));
QEL_API decltype(zgbtrf) zgbtrf_ __attribute__((alias("zgbtrf")));
QEL_API decltype(sgbtrs) sgbtrs_ __attribute__((alias("sgbtrs")));
QEL_API decltype(dgbtrs) dgbtrs_ __attribute__((alias("dgbtrs")));
QEL_API decltype(cgbtrs) cgbtrs_ __attribute__((alias("cgbtrs")));
QEL_API decltype(zgbtrs) zgbtrs_ __attribute__((alias("zgbtrs")));
QEL_API decltype(sgbcon) sgbcon_ __attribute__((alias("sgbcon")));
QEL_API decltype(dgbcon) dgbcon_ __attribute__((alias("dgbcon")));
QEL_API decltype(cgbcon) cgbcon_ __attribute__((alias("cgbcon")));
QEL_API decltype(zgbcon) zgbcon_ __attribute__((alias("zgbcon")));
QEL_API decltype(spbtrf) spbtrf_ __attribute__((alias("spbtrf")));
QEL_API decltype(dpbtrf) dpbtrf_ __attribute__((alias("dpbtrf")));
QEL_API decltype(cpbtrf) cpbtrf_ __attribute__((alias("cpbtrf")));
QEL_API decltype(zpbtrf) zpbtrf_ __attribute__((alias("zpbtrf")));
QEL_API decltype(spbtrs) spbtrs_ __attribute__((alias("spbtrs")));
QEL_API decltype(dpbtrs) dpbtrs_ __attribute__((alias("dpbtrs")));
QEL_API decltype(cpbtrs) cpbtrs_ __attribute__((alias("cpbtrs")));
QEL_API decltype(zpbtrs) zpbtrs_ __attribute__((alias("zpbtrs")));
QEL_API decltype(spbcon) spbcon_ __attribute__((alias("spbcon")));
QEL_API decltype(dpbcon) dpbcon_ __attribute__((alias("dpbcon")));
QEL_API decltype(cpbcon) cpbcon_ __attribute__((alias("cpbcon")));
QEL_API decltype(zpbcon) zpbcon_ __attribute__((alias("zpbcon")));
QEL_API decltype(sgttrf) sgttrf_ __attribute__((alias("sgttrf")));
QEL_API decltype(dgttrf) dgttrf_ __attribute__((alias("dgttrf")));
QEL_API decltype(cgttrf) cgttrf_ __attribute__((alias("cgttrf")));
QEL_API decltype(zgttrf) zgttrf_ __attribute__((alias("zgttrf")));
QEL_API decltype(sgttrs) sgttrs_ __attribute__((alias("sgttrs")));
QEL_API decltype(dgttrs) dgttrs_ __attribute__((alias("dgttrs")));
QEL_API decltype(cgttrs) cgttrs_ __attribute__((alias("cgttrs")));
QEL_API decltype(zgttrs) zgttrs_ __attribute__((alias("zgttrs")));
QEL_API decltype(sgtcon) sgtcon_ __attribute__((alias("sgtcon")));
QEL_API decltype(dgtcon) dgtcon_ __attribute__((alias("dgtcon")));
QEL_API decltype(cgtcon) cgtcon_ __attribute__((alias("cgtcon")));
QEL_API decltype(zgtcon) zgtcon_ __attribute__((alias("zgtcon")));
QEL_API decltype(dgtsv) dgtsv_ __attribute__((alias("dgtsv")));
QEL_API decltype(spttrf) spttrf_ __attribute__((alias("spttrf")));
QEL_API decltype(dpttrf) dpttrf_ __attribute__((alias("dpttrf")));
QEL_API decltype(cpttrf) cpttrf_ __attribute__((alias("cpttrf")));
QEL_API decltype(zpttrf) zpttrf_ __attribute__((alias("zpttrf")));
QEL_API decltype(spttrs) spttrs_ __attribute__((alias("spttrs")));
QEL_API decltype(dpttrs) dpttrs_ __attribute__((alias("dpttrs")));
QEL_API decltype(cpttrs) cpttrs_ __attribute__((alias("cpttrs")));
QEL_API decltype(zpttrs) zpttrs_ __attribute__((alias("zpttrs")));
QEL_API decltype(sptcon) sptcon_ __attribute__((alias("sptcon")));
QEL_API decltype(dptcon) dptcon_ __attribute__((alias("dptcon")));
QEL_API decltype(cptcon) cptcon_ __attribute__((alias("cptcon")));
QEL_API decltype(zptcon) zptcon_ __attribute__((alias("zptcon")));

}  // extern "C"
