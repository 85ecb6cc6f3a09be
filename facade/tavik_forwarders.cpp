// SPDX-License-Identifier: BSD-3-Clause
#include "tavik/kernel/tavik_forwarders.h"

#include "facade/calls.h"

namespace Tavik::Kernel {
namespace {

constexpr int kBlockSize = 64;  // columns of Q that unmqr applies at a time

/// Calls an entry with the same arguments.
template <class Entry, class... A>
auto pass(Entry* entry, A*... arguments) {
  return entry(entry_pointer(arguments)...);
}

}  // namespace

// All four types.
#define DEFINE(T)                                                                                           \
  void TavikForwarders::tavik_axpy(const int* n, const T* alpha, const T* x, const int* incx, T* y,         \
                                   const int* incy) {                                                       \
    pass(entries<T>::axpy, n, alpha, x, incx, y, incy);                                                     \
  }                                                                                                         \
  void TavikForwarders::tavik_gbmv(const char* trans, const int* m, const int* n, const int* kl,            \
                                   const int* ku, const T* alpha, const T* a, const int* lda, const T* x,   \
                                   const int* incx, const T* beta, T* y, const int* incy) {                 \
    pass(entries<T>::gbmv, trans, m, n, kl, ku, alpha, a, lda, x, incx, beta, y, incy);                     \
  }                                                                                                         \
  void TavikForwarders::tavik_spmv(const char* uplo, const int* n, const T* alpha, const T* ap, const T* x, \
                                   const int* incx, const T* beta, T* y, const int* incy) {                 \
    pass(entries<T>::spmv, uplo, n, alpha, ap, x, incx, beta, y, incy);                                     \
  }                                                                                                         \
  void TavikForwarders::tavik_tpmv(const char* uplo, const char* trans, const char* diag, const int* n,     \
                                   const T* ap, T* x, const int* incx) {                                    \
    pass(entries<T>::tpmv, uplo, trans, diag, n, ap, x, incx);                                              \
  }                                                                                                         \
  void TavikForwarders::tavik_trmv(const char* uplo, const char* trans, const char* diag, const int* n,     \
                                   const T* a, const int* lda, T* x, const int* incx) {                     \
    pass(entries<T>::trmv, uplo, trans, diag, n, a, lda, x, incx);                                          \
  }                                                                                                         \
  int TavikForwarders::tavik_gttrf(const int* n, T* dl, T* d, T* du, T* du2, int* ipiv, int* info) {        \
    return pass(entries<T>::gttrf, n, dl, d, du, du2, ipiv, info);                                          \
  }                                                                                                         \
  int TavikForwarders::tavik_gttrs(const char* trans, const int* n, const int* nrhs, const T* dl,           \
                                   const T* d, const T* du, const T* du2, const int* ipiv, T* b,            \
                                   const int* ldb, int* info) {                                             \
    return pass(entries<T>::gttrs, trans, n, nrhs, dl, d, du, du2, ipiv, b, ldb, info);                     \
  }                                                                                                         \
  int TavikForwarders::tavik_pttrf(const int* n, real_of<T>* d, T* e, int* info) {                          \
    return pass(entries<T>::pttrf, n, d, e, info);                                                          \
  }                                                                                                         \
  int TavikForwarders::tavik_pptrf(const char* uplo, const int* n, T* ap, int* info) {                      \
    return pass(entries<T>::pptrf, uplo, n, ap, info);                                                      \
  }                                                                                                         \
  int TavikForwarders::tavik_pptrs(const char* uplo, const int* n, const int* nrhs, const T* ap, T* b,      \
                                   const int* ldb, int* info) {                                             \
    return pass(entries<T>::pptrs, uplo, n, nrhs, ap, b, ldb, info);                                        \
  }                                                                                                         \
  int TavikForwarders::tavik_pptri(const char* uplo, const int* n, T* ap, int* info) {                      \
    return pass(entries<T>::pptri, uplo, n, ap, info);                                                      \
  }                                                                                                         \
  int TavikForwarders::tavik_sptrf(const char* uplo, const int* n, T* ap, int* ipiv, int* info) {           \
    return pass(entries<T>::sptrf, uplo, n, ap, ipiv, info);                                                \
  }                                                                                                         \
  int TavikForwarders::tavik_sptrs(const char* uplo, const int* n, const int* nrhs, const T* ap,            \
                                   const int* ipiv, T* b, const int* ldb, int* info) {                      \
    return pass(entries<T>::sptrs, uplo, n, nrhs, ap, ipiv, b, ldb, info);                                  \
  }                                                                                                         \
  int TavikForwarders::tavik_sptri(const char* uplo, const int* n, T* ap, const int* ipiv, T* work,         \
                                   int* info) {                                                             \
    return pass(entries<T>::sptri, uplo, n, ap, ipiv, work, info);                                          \
  }                                                                                                         \
  int TavikForwarders::tavik_tptrs(const char* uplo, const char* trans, const char* diag, const int* n,     \
                                   const int* nrhs, const T* ap, T* b, const int* ldb, int* info) {         \
    return pass(entries<T>::tptrs, uplo, trans, diag, n, nrhs, ap, b, ldb, info);                           \
  }                                                                                                         \
  int TavikForwarders::tavik_tptri(const char* uplo, const char* diag, const int* n, T* ap, int* info) {    \
    return pass(entries<T>::tptri, uplo, diag, n, ap, info);                                                \
  }                                                                                                         \
  int TavikForwarders::tavik_gbtrf(const int* m, const int* n, const int* kl, const int* ku, T* ab,         \
                                   const int* ldab, int* ipiv, int* info) {                                 \
    return pass(entries<T>::gbtrf, m, n, kl, ku, ab, ldab, ipiv, info);                                     \
  }                                                                                                         \
  int TavikForwarders::tavik_gbtrs(const char* trans, const int* n, const int* kl, const int* ku,           \
                                   const int* nrhs, const T* ab, const int* ldab, const int* ipiv, T* b,    \
                                   const int* ldb, int* info) {                                             \
    return pass(entries<T>::gbtrs, trans, n, kl, ku, nrhs, ab, ldab, ipiv, b, ldb, info);                   \
  }                                                                                                         \
  int TavikForwarders::tavik_pbtrf(const char* uplo, const int* n, const int* kd, T* ab, const int* ldab,   \
                                   int* info) {                                                             \
    return pass(entries<T>::pbtrf, uplo, n, kd, ab, ldab, info);                                            \
  }                                                                                                         \
  int TavikForwarders::tavik_pbtrs(const char* uplo, const int* n, const int* kd, const int* nrhs,          \
                                   const T* ab, const int* ldab, T* b, const int* ldb, int* info) {         \
    return pass(entries<T>::pbtrs, uplo, n, kd, nrhs, ab, ldab, b, ldb, info);                              \
  }                                                                                                         \
  int TavikForwarders::tavik_gebak(const char* job, const char* side, const int* n, const int* ilo,         \
                                   const int* ihi, const real_of<T>* scale, const int* m, T* v,             \
                                   const int* ldv, int* info) {                                             \
    return pass(entries<T>::gebak, job, side, n, ilo, ihi, scale, m, v, ldv, info);                         \
  }
TAVIK_FOR_ALL(DEFINE)
#undef DEFINE

// Real types.
#define DEFINE(T)                                                                                            \
  T TavikForwarders::tavik_dot(const int* n, const T* x, const int* incx, const T* y, const int* incy) {     \
    return pass(entries<T>::dot, n, x, incx, y, incy);                                                       \
  }                                                                                                          \
  void TavikForwarders::tavik_sbmv(const char* uplo, const int* n, const int* k, const T* alpha, const T* a, \
                                   const int* lda, const T* x, const int* incx, const T* beta, T* y,         \
                                   const int* incy) {                                                        \
    pass(entries<T>::sbmv, uplo, n, k, alpha, a, lda, x, incx, beta, y, incy);                               \
  }                                                                                                          \
  int TavikForwarders::tavik_gtcon(const char* norm, const int* n, const T* dl, const T* d, const T* du,     \
                                   const T* du2, const int* ipiv, const T* anorm, T* rcond, T* work,         \
                                   int* iwork, int* info) {                                                  \
    return pass(entries<T>::gtcon, norm, n, dl, d, du, du2, ipiv, anorm, rcond, work, iwork, info);          \
  }                                                                                                          \
  int TavikForwarders::tavik_pttrs(const int* n, const int* nrhs, const T* d, const T* e, T* b,              \
                                   const int* ldb, int* info) {                                              \
    return pass(entries<T>::pttrs, n, nrhs, d, e, b, ldb, info);                                             \
  }                                                                                                          \
  int TavikForwarders::tavik_ptcon(const int* n, const T* d, const T* e, const T* anorm, T* rcond, T* work,  \
                                   int* info) {                                                              \
    return pass(entries<T>::ptcon, n, d, e, anorm, rcond, work, info);                                       \
  }                                                                                                          \
  int TavikForwarders::tavik_ppcon(const char* uplo, const int* n, const T* ap, const T* anorm, T* rcond,    \
                                   T* work, int* iwork, int* info) {                                         \
    return pass(entries<T>::ppcon, uplo, n, ap, anorm, rcond, work, iwork, info);                            \
  }                                                                                                          \
  int TavikForwarders::tavik_spcon(const char* uplo, const int* n, const T* ap, const int* ipiv,             \
                                   const T* anorm, T* rcond, T* work, int* iwork, int* info) {               \
    return pass(entries<T>::spcon, uplo, n, ap, ipiv, anorm, rcond, work, iwork, info);                      \
  }                                                                                                          \
  int TavikForwarders::tavik_tpcon(const char* norm, const char* uplo, const char* diag, const int* n,       \
                                   const T* ap, T* rcond, T* work, int* iwork, int* info) {                  \
    return pass(entries<T>::tpcon, norm, uplo, diag, n, ap, rcond, work, iwork, info);                       \
  }                                                                                                          \
  int TavikForwarders::tavik_gbcon(const char* norm, const int* n, const int* kl, const int* ku,             \
                                   const T* ab, const int* ldab, const int* ipiv, const T* anorm, T* rcond,  \
                                   T* work, int* iwork, int* info) {                                         \
    return pass(entries<T>::gbcon, norm, n, kl, ku, ab, ldab, ipiv, anorm, rcond, work, iwork, info);        \
  }                                                                                                          \
  int TavikForwarders::tavik_pbcon(const char* uplo, const int* n, const int* kd, const T* ab,               \
                                   const int* ldab, const T* anorm, T* rcond, T* work, int* iwork,           \
                                   int* info) {                                                              \
    return pass(entries<T>::pbcon, uplo, n, kd, ab, ldab, anorm, rcond, work, iwork, info);                  \
  }                                                                                                          \
  int TavikForwarders::tavik_pocon(const char* uplo, const int* n, const T* a, const int* lda,               \
                                   const T* anorm, T* rcond, T* work, int* iwork, int* info) {               \
    return pass(entries<T>::pocon, uplo, n, a, lda, anorm, rcond, work, iwork, info);                        \
  }                                                                                                          \
  int TavikForwarders::tavik_trcon(const char* norm, const char* uplo, const char* diag, const int* n,       \
                                   const T* a, const int* lda, T* rcond, T* work, int* iwork, int* info) {   \
    return pass(entries<T>::trcon, norm, uplo, diag, n, a, lda, rcond, work, iwork, info);                   \
  }                                                                                                          \
  int TavikForwarders::tavik_geqrf(const int* m, const int* n, T* a, const int* lda, T* tau, T* work,        \
                                   const int* lwork, int* info) {                                            \
    return pass(entries<T>::geqrf, m, n, a, lda, tau, work, lwork, info);                                    \
  }                                                                                                          \
  int TavikForwarders::tavik_geqp3(const int* m, const int* n, T* a, const int* lda, int* jpvt, T* tau,      \
                                   T* work, const int* lwork, int* info) {                                   \
    return pass(entries<T>::geqp3, m, n, a, lda, jpvt, tau, work, lwork, info);                              \
  }                                                                                                          \
  int TavikForwarders::tavik_ormqr(const char* side, const char* trans, const int* m, const int* n,          \
                                   const int* k, T* a, const int* lda, const T* tau, T* c, const int* ldc,   \
                                   T* work, const int* lwork, int* info) {                                   \
    return pass(entries<T>::ormqr, side, trans, m, n, k, a, lda, tau, c, ldc, work, lwork, info);            \
  }                                                                                                          \
  int TavikForwarders::tavik_orgqr(const int* m, const int* n, const int* k, T* a, const int* lda,           \
                                   const T* tau, T* work, const int* lwork, int* info) {                     \
    return pass(entries<T>::orgqr, m, n, k, a, lda, tau, work, lwork, info);                                 \
  }                                                                                                          \
  int TavikForwarders::tavik_gesvd(const char* jobu, const char* jobvt, const int* m, const int* n, T* a,    \
                                   const int* lda, T* s, T* u, const int* ldu, T* vt, const int* ldvt,       \
                                   T* work, const int* lwork, int* info) {                                   \
    return pass(entries<T>::gesvd, jobu, jobvt, m, n, a, lda, s, u, ldu, vt, ldvt, work, lwork, info);       \
  }                                                                                                          \
  int TavikForwarders::tavik_gesdd(const char* jobz, const int* m, const int* n, T* a, const int* lda, T* s, \
                                   T* u, const int* ldu, T* vt, const int* ldvt, T* work, const int* lwork,  \
                                   int* iwork, int* info) {                                                  \
    return pass(entries<T>::gesdd, jobz, m, n, a, lda, s, u, ldu, vt, ldvt, work, lwork, iwork, info);       \
  }                                                                                                          \
  int TavikForwarders::tavik_geevx(                                                                          \
      const char* balanc, const char* jobvl, const char* jobvr, const char* sense, const int* n, T* a,       \
      const int* lda, T* wr, T* wi, T* vl, const int* ldvl, T* vr, const int* ldvr, int* ilo, int* ihi,      \
      T* scale, T* abnrm, T* rconde, T* rcondv, T* work, const int* lwork, int* iwork, int* info) {          \
    return pass(entries<T>::geevx, balanc, jobvl, jobvr, sense, n, a, lda, wr, wi, vl, ldvl, vr, ldvr, ilo,  \
                ihi, scale, abnrm, rconde, rcondv, work, lwork, iwork, info);                                \
  }                                                                                                          \
  int TavikForwarders::tavik_spevx(const char* jobz, const char* range, const char* uplo, const int* n,      \
                                   T* ap, const T* vl, const T* vu, const int* il, const int* iu,            \
                                   const T* abstol, int* m, T* w, T* z, const int* ldz, T* work, int* iwork, \
                                   int* ifail, int* info) {                                                  \
    return pass(entries<T>::spevx, jobz, range, uplo, n, ap, vl, vu, il, iu, abstol, m, w, z, ldz, work,     \
                iwork, ifail, info);                                                                         \
  }
TAVIK_FOR_REALS(DEFINE)
#undef DEFINE

// Complex types.
#define DEFINE(T)                                                                                            \
  void TavikForwarders::tavik_dotu(T* result, const int* n, const T* x, const int* incx, const T* y,         \
                                   const int* incy) {                                                        \
    pass(entries<T>::dotu, result, n, x, incx, y, incy);                                                     \
  }                                                                                                          \
  void TavikForwarders::tavik_hbmv(const char* uplo, const int* n, const int* k, const T* alpha, const T* a, \
                                   const int* lda, const T* x, const int* incx, const T* beta, T* y,         \
                                   const int* incy) {                                                        \
    pass(entries<T>::hbmv, uplo, n, k, alpha, a, lda, x, incx, beta, y, incy);                               \
  }                                                                                                          \
  void TavikForwarders::tavik_hpmv(const char* uplo, const int* n, const T* alpha, const T* ap, const T* x,  \
                                   const int* incx, const T* beta, T* y, const int* incy) {                  \
    pass(entries<T>::hpmv, uplo, n, alpha, ap, x, incx, beta, y, incy);                                      \
  }                                                                                                          \
  int TavikForwarders::tavik_gtcon(const char* norm, const int* n, const T* dl, const T* d, const T* du,     \
                                   const T* du2, const int* ipiv, const real_of<T>* anorm,                   \
                                   real_of<T>* rcond, T* work, int* info) {                                  \
    return pass(entries<T>::gtcon, norm, n, dl, d, du, du2, ipiv, anorm, rcond, work, info);                 \
  }                                                                                                          \
  int TavikForwarders::tavik_pttrs(const char* uplo, const int* n, const int* nrhs, const real_of<T>* d,     \
                                   const T* e, T* b, const int* ldb, int* info) {                            \
    return pass(entries<T>::pttrs, uplo, n, nrhs, d, e, b, ldb, info);                                       \
  }                                                                                                          \
  int TavikForwarders::tavik_ptcon(const int* n, const real_of<T>* d, const T* e, const real_of<T>* anorm,   \
                                   real_of<T>* rcond, real_of<T>* rwork, int* info) {                        \
    return pass(entries<T>::ptcon, n, d, e, anorm, rcond, rwork, info);                                      \
  }                                                                                                          \
  int TavikForwarders::tavik_ppcon(const char* uplo, const int* n, const T* ap, const real_of<T>* anorm,     \
                                   real_of<T>* rcond, T* work, real_of<T>* rwork, int* info) {               \
    return pass(entries<T>::ppcon, uplo, n, ap, anorm, rcond, work, rwork, info);                            \
  }                                                                                                          \
  int TavikForwarders::tavik_spcon(const char* uplo, const int* n, const T* ap, const int* ipiv,             \
                                   const real_of<T>* anorm, real_of<T>* rcond, T* work, int* info) {         \
    return pass(entries<T>::spcon, uplo, n, ap, ipiv, anorm, rcond, work, info);                             \
  }                                                                                                          \
  int TavikForwarders::tavik_hptrf(const char* uplo, const int* n, T* ap, int* ipiv, int* info) {            \
    return pass(entries<T>::hptrf, uplo, n, ap, ipiv, info);                                                 \
  }                                                                                                          \
  int TavikForwarders::tavik_hptrs(const char* uplo, const int* n, const int* nrhs, const T* ap,             \
                                   const int* ipiv, T* b, const int* ldb, int* info) {                       \
    return pass(entries<T>::hptrs, uplo, n, nrhs, ap, ipiv, b, ldb, info);                                   \
  }                                                                                                          \
  int TavikForwarders::tavik_hptri(const char* uplo, const int* n, T* ap, const int* ipiv, T* work,          \
                                   int* info) {                                                              \
    return pass(entries<T>::hptri, uplo, n, ap, ipiv, work, info);                                           \
  }                                                                                                          \
  int TavikForwarders::tavik_hpcon(const char* uplo, const int* n, const T* ap, const int* ipiv,             \
                                   const real_of<T>* anorm, real_of<T>* rcond, T* work, int* info) {         \
    return pass(entries<T>::hpcon, uplo, n, ap, ipiv, anorm, rcond, work, info);                             \
  }                                                                                                          \
  int TavikForwarders::tavik_tpcon(const char* norm, const char* uplo, const char* diag, const int* n,       \
                                   const T* ap, real_of<T>* rcond, T* work, real_of<T>* rwork, int* info) {  \
    return pass(entries<T>::tpcon, norm, uplo, diag, n, ap, rcond, work, rwork, info);                       \
  }                                                                                                          \
  int TavikForwarders::tavik_gbcon(const char* norm, const int* n, const int* kl, const int* ku,             \
                                   const T* ab, const int* ldab, const int* ipiv, const real_of<T>* anorm,   \
                                   real_of<T>* rcond, T* work, real_of<T>* rwork, int* info) {               \
    return pass(entries<T>::gbcon, norm, n, kl, ku, ab, ldab, ipiv, anorm, rcond, work, rwork, info);        \
  }                                                                                                          \
  int TavikForwarders::tavik_pbcon(const char* uplo, const int* n, const int* kd, const T* ab,               \
                                   const int* ldab, const real_of<T>* anorm, real_of<T>* rcond, T* work,     \
                                   real_of<T>* rwork, int* info) {                                           \
    return pass(entries<T>::pbcon, uplo, n, kd, ab, ldab, anorm, rcond, work, rwork, info);                  \
  }                                                                                                          \
  int TavikForwarders::tavik_geqrf(const int* m, const int* n, T* a, const int* lda, T* tau, int* info) {    \
    return with_best_work<T>(                                                                                \
        [&](T* work, int lwork) { return pass(entries<T>::geqrf, m, n, a, lda, tau, work, &lwork, info); }); \
  }                                                                                                          \
  int TavikForwarders::tavik_geqp3(const int* m, const int* n, T* a, const int* lda, int* jpvt, T* tau,      \
                                   real_of<T>* rwork, int* info) {                                           \
    return with_best_work<T>([&](T* work, int lwork) {                                                       \
      return pass(entries<T>::geqp3, m, n, a, lda, jpvt, tau, work, &lwork, rwork, info);                    \
    });                                                                                                      \
  }                                                                                                          \
  int TavikForwarders::tavik_unmqr(const char* side, const char* trans, const int* m, const int* n,          \
                                   const int* k, T* a, const int* lda, const T* tau, T* c, const int* ldc,   \
                                   int* info) {                                                              \
    const int lwork = *side == 'L' ? kBlockSize * *n : kBlockSize * *m;                                      \
    const workspace<T> memory(lwork);                                                                        \
    T* const work = memory.get();                                                                            \
    return pass(entries<T>::unmqr, side, trans, m, n, k, a, lda, tau, c, ldc, work, &lwork, info);           \
  }                                                                                                          \
  int TavikForwarders::tavik_ungqr(const int* m, const int* n, const int* k, T* a, const int* lda,           \
                                   const T* tau, int* info) {                                                \
    return with_best_work<T>([&](T* work, int lwork) {                                                       \
      return pass(entries<T>::ungqr, m, n, k, a, lda, tau, work, &lwork, info);                              \
    });                                                                                                      \
  }                                                                                                          \
  int TavikForwarders::tavik_gesvd(const char* jobu, const char* jobvt, const int* m, const int* n, T* a,    \
                                   const int* lda, real_of<T>* s, T* u, const int* ldu, T* vt,               \
                                   const int* ldvt, real_of<T>* rwork, int* info) {                          \
    return with_best_work<T>([&](T* work, int lwork) {                                                       \
      return pass(entries<T>::gesvd, jobu, jobvt, m, n, a, lda, s, u, ldu, vt, ldvt, work, &lwork, rwork,    \
                  info);                                                                                     \
    });                                                                                                      \
  }                                                                                                          \
  int TavikForwarders::tavik_gesdd(const char* jobz, const int* m, const int* n, T* a, const int* lda,       \
                                   real_of<T>* s, T* u, const int* ldu, T* vt, const int* ldvt,              \
                                   real_of<T>* rwork, int* iwork, int* info) {                               \
    return with_best_work<T>([&](T* work, int lwork) {                                                       \
      return pass(entries<T>::gesdd, jobz, m, n, a, lda, s, u, ldu, vt, ldvt, work, &lwork, rwork, iwork,    \
                  info);                                                                                     \
    });                                                                                                      \
  }                                                                                                          \
  int TavikForwarders::tavik_geevx(const char* balanc, const char* jobvl, const char* jobvr,                 \
                                   const char* sense, const int* n, T* a, const int* lda, T* w, T* vl,       \
                                   const int* ldvl, T* vr, const int* ldvr, int* ilo, int* ihi,              \
                                   real_of<T>* scale, real_of<T>* abnrm, real_of<T>* rconde,                 \
                                   real_of<T>* rcondv, real_of<T>* rwork, int* info) {                       \
    const int lwork = (*n + 4) * *n;                                                                         \
    const workspace<T> memory(lwork);                                                                        \
    T* const work = memory.get();                                                                            \
    return pass(entries<T>::geevx, balanc, jobvl, jobvr, sense, n, a, lda, w, vl, ldvl, vr, ldvr, ilo, ihi,  \
                scale, abnrm, rconde, rcondv, work, &lwork, rwork, info);                                    \
  }                                                                                                          \
  int TavikForwarders::tavik_hpevx(                                                                          \
      const char* jobz, const char* range, const char* uplo, const int* n, T* ap, const real_of<T>* vl,      \
      const real_of<T>* vu, const int* il, const int* iu, const real_of<T>* abstol, int* m, real_of<T>* w,   \
      T* z, const int* ldz, T* work, real_of<T>* rwork, int* iwork, int* ifail, int* info) {                 \
    return pass(entries<T>::hpevx, jobz, range, uplo, n, ap, vl, vu, il, iu, abstol, m, w, z, ldz, work,     \
                rwork, iwork, ifail, info);                                                                  \
  }
TAVIK_FOR_COMPLEX(DEFINE)
#undef DEFINE

// One type only.
int TavikForwarders::tavik_gels(const char* trans, const int* m, const int* n, const int* nrhs, double* a,
                                const int* lda, double* b, const int* ldb, double* work, const int* lwork,
                                int* info) {
  return pass(entries<double>::gels, trans, m, n, nrhs, a, lda, b, ldb, work, lwork, info);
}
int TavikForwarders::tavik_gebal(const char* job, const int* n, DoubleComplex* a, const int* lda, int* ilo,
                                 int* ihi, double* scale, int* info) {
  return pass(entries<DoubleComplex>::gebal, job, n, a, lda, ilo, ihi, scale, info);
}
int TavikForwarders::tavik_gehrd(const int* n, const int* ilo, const int* ihi, DoubleComplex* a,
                                 const int* lda, DoubleComplex* tau, int* info) {
  return with_best_work<DoubleComplex>([&](DoubleComplex* work, int lwork) {
    return pass(entries<DoubleComplex>::gehrd, n, ilo, ihi, a, lda, tau, work, &lwork, info);
  });
}
int TavikForwarders::tavik_unghr(const int* n, const int* ilo, const int* ihi, DoubleComplex* a,
                                 const int* lda, const DoubleComplex* tau, int* info) {
  return with_best_work<DoubleComplex>([&](DoubleComplex* work, int lwork) {
    return pass(entries<DoubleComplex>::unghr, n, ilo, ihi, a, lda, tau, work, &lwork, info);
  });
}
int TavikForwarders::tavik_hseqr(const char* job, const char* compz, const int* n, const int* ilo,
                                 const int* ihi, DoubleComplex* h, const int* ldh, DoubleComplex* w,
                                 DoubleComplex* z, const int* ldz, int* info) {
  return with_best_work<DoubleComplex>([&](DoubleComplex* work, int lwork) {
    return pass(entries<DoubleComplex>::hseqr, job, compz, n, ilo, ihi, h, ldh, w, z, ldz, work, &lwork,
                info);
  });
}
int TavikForwarders::tavik_trevc(const char* side, const char* howmny, const int* select, const int* n,
                                 DoubleComplex* t, const int* ldt, DoubleComplex* vl, const int* ldvl,
                                 DoubleComplex* vr, const int* ldvr, const int* mm, int* m,
                                 DoubleComplex* work, double* rwork, int* info) {
  return pass(entries<DoubleComplex>::trevc, side, howmny, select, n, t, ldt, vl, ldvl, vr, ldvr, mm, m, work,
              rwork, info);
}

}  // namespace Tavik::Kernel
