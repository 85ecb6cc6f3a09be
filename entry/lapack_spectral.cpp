// SPDX-License-Identifier: BSD-3-Clause
// Entries of the singular value and eigenvalue routines. Counts and ranges that the core finds (ilo, ihi, m)
// are narrowed back; arrays that an option leaves unused are not touched and may be null.
#include <algorithm>

#include "entry/shapes.h"
#include "lapack/lapack.h"
#include "qel/lapack.h"

using qel::complex16;
using qel::complex8;
using qel::core_int;
using qel::entry::call_info;
using qel::entry::in_ints;
using qel::entry::out_int;
using qel::entry::out_ints;
using qel::entry::work_ints;
namespace core = qel::core;

namespace {

/// The numbers of vectors without convergence, or null if no vectors are asked for.
int* vectors_only(const char* jobz, int* ifail) { return *jobz == 'V' || *jobz == 'v' ? ifail : nullptr; }

/// The selection of eigenvalues, or null if howmny doesn't ask for one.
const int* selected_only(const char* howmny, const int* select) {
  return *howmny == 'S' || *howmny == 's' ? select : nullptr;
}

}  // namespace

extern "C" {

int sgesvd(const char* jobu, const char* jobvt, const int* m, const int* n, float* a, const int* lda,
           float* s, float* u, const int* ldu, float* vt, const int* ldvt, float* work, const int* lwork,
           int* info) {
  return call_info(__func__, core::qel_core_sgesvd_, info, jobu, jobvt, m, n, a, lda, s, u, ldu, vt, ldvt,
                   work, lwork);
}
int dgesvd(const char* jobu, const char* jobvt, const int* m, const int* n, double* a, const int* lda,
           double* s, double* u, const int* ldu, double* vt, const int* ldvt, double* work, const int* lwork,
           int* info) {
  return call_info(__func__, core::qel_core_dgesvd_, info, jobu, jobvt, m, n, a, lda, s, u, ldu, vt, ldvt,
                   work, lwork);
}
int cgesvd(const char* jobu, const char* jobvt, const int* m, const int* n, complex8* a, const int* lda,
           float* s, complex8* u, const int* ldu, complex8* vt, const int* ldvt, complex8* work,
           const int* lwork, float* rwork, int* info) {
  return call_info(__func__, core::qel_core_cgesvd_, info, jobu, jobvt, m, n, a, lda, s, u, ldu, vt, ldvt,
                   work, lwork, rwork);
}
int zgesvd(const char* jobu, const char* jobvt, const int* m, const int* n, complex16* a, const int* lda,
           double* s, complex16* u, const int* ldu, complex16* vt, const int* ldvt, complex16* work,
           const int* lwork, double* rwork, int* info) {
  return call_info(__func__, core::qel_core_zgesvd_, info, jobu, jobvt, m, n, a, lda, s, u, ldu, vt, ldvt,
                   work, lwork, rwork);
}

int sgesdd(const char* jobz, const int* m, const int* n, float* a, const int* lda, float* s, float* u,
           const int* ldu, float* vt, const int* ldvt, float* work, const int* lwork, int*, int* info) {
  return call_info(__func__, core::qel_core_sgesdd_, info, jobz, m, n, a, lda, s, u, ldu, vt, ldvt, work,
                   lwork, work_ints(8 * core_int{std::min(*m, *n)}));
}
int dgesdd(const char* jobz, const int* m, const int* n, double* a, const int* lda, double* s, double* u,
           const int* ldu, double* vt, const int* ldvt, double* work, const int* lwork, int*, int* info) {
  return call_info(__func__, core::qel_core_dgesdd_, info, jobz, m, n, a, lda, s, u, ldu, vt, ldvt, work,
                   lwork, work_ints(8 * core_int{std::min(*m, *n)}));
}
int cgesdd(const char* jobz, const int* m, const int* n, complex8* a, const int* lda, float* s, complex8* u,
           const int* ldu, complex8* vt, const int* ldvt, complex8* work, const int* lwork, float* rwork,
           int*, int* info) {
  return call_info(__func__, core::qel_core_cgesdd_, info, jobz, m, n, a, lda, s, u, ldu, vt, ldvt, work,
                   lwork, rwork, work_ints(8 * core_int{std::min(*m, *n)}));
}
int zgesdd(const char* jobz, const int* m, const int* n, complex16* a, const int* lda, double* s,
           complex16* u, const int* ldu, complex16* vt, const int* ldvt, complex16* work, const int* lwork,
           double* rwork, int*, int* info) {
  return call_info(__func__, core::qel_core_zgesdd_, info, jobz, m, n, a, lda, s, u, ldu, vt, ldvt, work,
                   lwork, rwork, work_ints(8 * core_int{std::min(*m, *n)}));
}

int sgeevx(const char* balanc, const char* jobvl, const char* jobvr, const char* sense, const int* n,
           float* a, const int* lda, float* wr, float* wi, float* vl, const int* ldvl, float* vr,
           const int* ldvr, int* ilo, int* ihi, float* scale, float* abnrm, float* rconde, float* rcondv,
           float* work, const int* lwork, int*, int* info) {
  return call_info(__func__, core::qel_core_sgeevx_, info, balanc, jobvl, jobvr, sense, n, a, lda, wr, wi, vl,
                   ldvl, vr, ldvr, out_int(ilo), out_int(ihi), scale, abnrm, rconde, rcondv, work, lwork,
                   work_ints(2 * core_int{*n} - 2));
}
int dgeevx(const char* balanc, const char* jobvl, const char* jobvr, const char* sense, const int* n,
           double* a, const int* lda, double* wr, double* wi, double* vl, const int* ldvl, double* vr,
           const int* ldvr, int* ilo, int* ihi, double* scale, double* abnrm, double* rconde, double* rcondv,
           double* work, const int* lwork, int*, int* info) {
  return call_info(__func__, core::qel_core_dgeevx_, info, balanc, jobvl, jobvr, sense, n, a, lda, wr, wi, vl,
                   ldvl, vr, ldvr, out_int(ilo), out_int(ihi), scale, abnrm, rconde, rcondv, work, lwork,
                   work_ints(2 * core_int{*n} - 2));
}
int cgeevx(const char* balanc, const char* jobvl, const char* jobvr, const char* sense, const int* n,
           complex8* a, const int* lda, complex8* w, complex8* vl, const int* ldvl, complex8* vr,
           const int* ldvr, int* ilo, int* ihi, float* scale, float* abnrm, float* rconde, float* rcondv,
           complex8* work, const int* lwork, float* rwork, int* info) {
  return call_info(__func__, core::qel_core_cgeevx_, info, balanc, jobvl, jobvr, sense, n, a, lda, w, vl,
                   ldvl, vr, ldvr, out_int(ilo), out_int(ihi), scale, abnrm, rconde, rcondv, work, lwork,
                   rwork);
}
int zgeevx(const char* balanc, const char* jobvl, const char* jobvr, const char* sense, const int* n,
           complex16* a, const int* lda, complex16* w, complex16* vl, const int* ldvl, complex16* vr,
           const int* ldvr, int* ilo, int* ihi, double* scale, double* abnrm, double* rconde, double* rcondv,
           complex16* work, const int* lwork, double* rwork, int* info) {
  return call_info(__func__, core::qel_core_zgeevx_, info, balanc, jobvl, jobvr, sense, n, a, lda, w, vl,
                   ldvl, vr, ldvr, out_int(ilo), out_int(ihi), scale, abnrm, rconde, rcondv, work, lwork,
                   rwork);
}

int sgebak(const char* job, const char* side, const int* n, const int* ilo, const int* ihi,
           const float* scale, const int* m, float* v, const int* ldv, int* info) {
  return call_info(__func__, core::qel_core_sgebak_, info, job, side, n, ilo, ihi, scale, m, v, ldv);
}
int dgebak(const char* job, const char* side, const int* n, const int* ilo, const int* ihi,
           const double* scale, const int* m, double* v, const int* ldv, int* info) {
  return call_info(__func__, core::qel_core_dgebak_, info, job, side, n, ilo, ihi, scale, m, v, ldv);
}
int cgebak(const char* job, const char* side, const int* n, const int* ilo, const int* ihi,
           const float* scale, const int* m, complex8* v, const int* ldv, int* info) {
  return call_info(__func__, core::qel_core_cgebak_, info, job, side, n, ilo, ihi, scale, m, v, ldv);
}
int zgebak(const char* job, const char* side, const int* n, const int* ilo, const int* ihi,
           const double* scale, const int* m, complex16* v, const int* ldv, int* info) {
  return call_info(__func__, core::qel_core_zgebak_, info, job, side, n, ilo, ihi, scale, m, v, ldv);
}

int sspevx(const char* jobz, const char* range, const char* uplo, const int* n, float* ap, const float* vl,
           const float* vu, const int* il, const int* iu, const float* abstol, int* m, float* w, float* z,
           const int* ldz, float* work, int*, int* ifail, int* info) {
  return call_info(__func__, core::qel_core_sspevx_, info, jobz, range, uplo, n, ap, vl, vu, il, iu, abstol,
                   out_int(m), w, z, ldz, work, work_ints(5 * core_int{*n}),
                   out_ints(vectors_only(jobz, ifail), *n));
}
int dspevx(const char* jobz, const char* range, const char* uplo, const int* n, double* ap, const double* vl,
           const double* vu, const int* il, const int* iu, const double* abstol, int* m, double* w, double* z,
           const int* ldz, double* work, int*, int* ifail, int* info) {
  return call_info(__func__, core::qel_core_dspevx_, info, jobz, range, uplo, n, ap, vl, vu, il, iu, abstol,
                   out_int(m), w, z, ldz, work, work_ints(5 * core_int{*n}),
                   out_ints(vectors_only(jobz, ifail), *n));
}
int chpevx(const char* jobz, const char* range, const char* uplo, const int* n, complex8* ap, const float* vl,
           const float* vu, const int* il, const int* iu, const float* abstol, int* m, float* w, complex8* z,
           const int* ldz, complex8* work, float* rwork, int*, int* ifail, int* info) {
  return call_info(__func__, core::qel_core_chpevx_, info, jobz, range, uplo, n, ap, vl, vu, il, iu, abstol,
                   out_int(m), w, z, ldz, work, rwork, work_ints(5 * core_int{*n}),
                   out_ints(vectors_only(jobz, ifail), *n));
}
int zhpevx(const char* jobz, const char* range, const char* uplo, const int* n, complex16* ap,
           const double* vl, const double* vu, const int* il, const int* iu, const double* abstol, int* m,
           double* w, complex16* z, const int* ldz, complex16* work, double* rwork, int*, int* ifail,
           int* info) {
  return call_info(__func__, core::qel_core_zhpevx_, info, jobz, range, uplo, n, ap, vl, vu, il, iu, abstol,
                   out_int(m), w, z, ldz, work, rwork, work_ints(5 * core_int{*n}),
                   out_ints(vectors_only(jobz, ifail), *n));
}

int zgebal(const char* job, const int* n, complex16* a, const int* lda, int* ilo, int* ihi, double* scale,
           int* info) {
  return call_info(__func__, core::qel_core_zgebal_, info, job, n, a, lda, out_int(ilo), out_int(ihi), scale);
}

int zgehrd(const int* n, const int* ilo, const int* ihi, complex16* a, const int* lda, complex16* tau,
           complex16* work, const int* lwork, int* info) {
  return call_info(__func__, core::qel_core_zgehrd_, info, n, ilo, ihi, a, lda, tau, work, lwork);
}

int zunghr(const int* n, const int* ilo, const int* ihi, complex16* a, const int* lda, const complex16* tau,
           complex16* work, const int* lwork, int* info) {
  return call_info(__func__, core::qel_core_zunghr_, info, n, ilo, ihi, a, lda, tau, work, lwork);
}

int zhseqr(const char* job, const char* compz, const int* n, const int* ilo, const int* ihi, complex16* h,
           const int* ldh, complex16* w, complex16* z, const int* ldz, complex16* work, const int* lwork,
           int* info) {
  return call_info(__func__, core::qel_core_zhseqr_, info, job, compz, n, ilo, ihi, h, ldh, w, z, ldz, work,
                   lwork);
}

int ztrevc(const char* side, const char* howmny, const int* select, const int* n, complex16* t,
           const int* ldt, complex16* vl, const int* ldvl, complex16* vr, const int* ldvr, const int* mm,
           int* m, complex16* work, double* rwork, int* info) {
  return call_info(__func__, core::qel_core_ztrevc_, info, side, howmny,
                   in_ints(selected_only(howmny, select), *n), n, t, ldt, vl, ldvl, vr, ldvr, mm, out_int(m),
                   work, rwork);
}

// The Fortran names. Lengths of option letters, which Fortran passes behind the arguments, are not looked at.

QEL_API decltype(sgesvd) sgesvd_ __attribute__((alias("sgesvd")));
QEL_API decltype(dgesvd) dgesvd_ __attribute__((alias("dgesvd")));
QEL_API decltype(cgesvd) cgesvd_ __attribute__((alias("cgesvd")));
QEL_API decltype(zgesvd) zgesvd_ __attribute__((alias("zgesvd")));
QEL_API decltype(sgesdd) sgesdd_ __attribute__((alias("sgesdd")));
QEL_API decltype(dgesdd) dgesdd_ __attribute__((alias("dgesdd")));
QEL_API decltype(cgesdd) cgesdd_ __attribute__((alias("cgesdd")));
QEL_API decltype(zgesdd) zgesdd_ __attribute__((alias("zgesdd")));
QEL_API decltype(sgeevx) sgeevx_ __attribute__((alias("sgeevx")));
QEL_API decltype(dgeevx) dgeevx_ __attribute__((alias("dgeevx")));
QEL_API decltype(cgeevx) cgeevx_ __attribute__((alias("cgeevx")));
QEL_API decltype(zgeevx) zgeevx_ __attribute__((alias("zgeevx")));
QEL_API decltype(sgebak) sgebak_ __attribute__((alias("sgebak")));
QEL_API decltype(dgebak) dgebak_ __attribute__((alias("dgebak")));
QEL_API decltype(cgebak) cgebak_ __attribute__((alias("cgebak")));
QEL_API decltype(zgebak) zgebak_ __attribute__((alias("zgebak")));
QEL_API decltype(sspevx) sspevx_ __attribute__((alias("sspevx")));
QEL_API decltype(dspevx) dspevx_ __attribute__((alias("dspevx")));
QEL_API decltype(chpevx) chpevx_ __attribute__((alias("chpevx")));
QEL_API decltype(zhpevx) zhpevx_ __attribute__((alias("zhpevx")));
QEL_API decltype(zgebal) zgebal_ __attribute__((alias("zgebal")));
QEL_API decltype(zgehrd) zgehrd_ __attribute__((alias("zgehrd")));
QEL_API decltype(zunghr) zunghr_ __attribute__((alias("zunghr")));
QEL_API decltype(zhseqr) zhseqr_ __attribute__((alias("zhseqr")));
QEL_API decltype(ztrevc) ztrevc_ __attribute__((alias("ztrevc")));

}  // extern "C"
