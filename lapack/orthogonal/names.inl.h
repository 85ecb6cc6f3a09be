// SPDX-License-Identifier: BSD-3-Clause
// QR factorisations and products with their Q under LAPACK's names and with the integers that the including
// file defines: QEL_INT, QEL_OWN(routine) for what is defined here, QEL_PLAIN(routine) for the reference's,
// which answers queries, reports bad arguments and works without memory.
#include "blas/letters.h"
#include "lapack/factor/elements.h"
#include "lapack/orthogonal/qr.h"
#include "service/complex_arithmetic.h"

namespace qel::lapack {

namespace {

/// What a query answers: room for blocks of 32 columns.
template <class T>
void tell_work_length(core_int order, T* work) {
  set(work, from_real<T>(static_cast<real_of<T>>(32 * order)));
}

template <class T, class Plain>
void geqrf_or(core_int m, core_int n, T* a, core_int lda, T* tau, T* work, core_int lwork, QEL_INT* info,
              const Plain& plain) {
  if (m <= 0 || n <= 0 || lda < m || lwork < n || !geqrf(m, n, a, lda, tau)) return plain();
  *info = 0;
  tell_work_length(n, work);
}

template <class T, class Plain>
void ormqr_or(char side, char trans, core_int m, core_int n, core_int k, T* a, core_int lda, const T* tau,
              T* c, core_int ldc, T* work, core_int lwork, QEL_INT* info, const Plain& plain) {
  const bool left = blas::letter_is(side, 'L'), turned = blas::letter_is(trans, is_complex<T> ? 'C' : 'T');
  const core_int order = left ? m : n, others = left ? n : m;
  const bool good = (left || blas::letter_is(side, 'R')) && (turned || blas::letter_is(trans, 'N')) && m > 0 &&
                    n > 0 && k > 0 && k <= order && lda >= order && ldc >= m && lwork >= others;
  if (!good || !ormqr(left, turned, m, n, k, a, lda, tau, c, ldc)) return plain();
  *info = 0;
  tell_work_length(others, work);
}

}  // namespace

}  // namespace qel::lapack

extern "C" {

#define QEL_SIZE const QEL_INT*

#define QEL_ORTHOGONAL(T, s, q)                                                                             \
  void QEL_PLAIN(s##geqrf)(QEL_SIZE m, QEL_SIZE n, T * a, QEL_SIZE lda, T * tau, T * work, QEL_SIZE lwork,  \
                           QEL_INT * info);                                                                 \
  void QEL_OWN(s##geqrf)(QEL_SIZE m, QEL_SIZE n, T * a, QEL_SIZE lda, T * tau, T * work, QEL_SIZE lwork,    \
                         QEL_INT * info);                                                                   \
  void QEL_OWN(s##geqrf)(QEL_SIZE m, QEL_SIZE n, T * a, QEL_SIZE lda, T * tau, T * work, QEL_SIZE lwork,    \
                         QEL_INT * info) {                                                                  \
    qel::lapack::geqrf_or(*m, *n, a, *lda, tau, work, *lwork, info,                                         \
                          [=] { QEL_PLAIN(s##geqrf)(m, n, a, lda, tau, work, lwork, info); });              \
  }                                                                                                         \
  void QEL_PLAIN(s##q)(const char* side, const char* trans, QEL_SIZE m, QEL_SIZE n, QEL_SIZE k, T* a,       \
                       QEL_SIZE lda, const T* tau, T* c, QEL_SIZE ldc, T* work, QEL_SIZE lwork,             \
                       QEL_INT* info, size_t, size_t);                                                      \
  void QEL_OWN(s##q)(const char* side, const char* trans, QEL_SIZE m, QEL_SIZE n, QEL_SIZE k, T* a,         \
                     QEL_SIZE lda, const T* tau, T* c, QEL_SIZE ldc, T* work, QEL_SIZE lwork,               \
                     QEL_INT* info, size_t, size_t);                                                        \
  void QEL_OWN(s##q)(const char* side, const char* trans, QEL_SIZE m, QEL_SIZE n, QEL_SIZE k, T* a,         \
                     QEL_SIZE lda, const T* tau, T* c, QEL_SIZE ldc, T* work, QEL_SIZE lwork,               \
                     QEL_INT* info, size_t, size_t) {                                                       \
    qel::lapack::ormqr_or(*side, *trans, *m, *n, *k, a, *lda, tau, c, *ldc, work, *lwork, info, [=] {       \
      QEL_PLAIN(s##q)(side, trans, m, n, k, a, lda, tau, c, ldc, work, lwork, info, 1, 1);                  \
    });                                                                                                     \
  }
QEL_ORTHOGONAL(float, s, ormqr)
QEL_ORTHOGONAL(double, d, ormqr)
QEL_ORTHOGONAL(qel::complex8, c, unmqr)
QEL_ORTHOGONAL(qel::complex16, z, unmqr)

}  // extern "C"
