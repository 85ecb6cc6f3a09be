// SPDX-License-Identifier: BSD-3-Clause
// Routines that go their own way or, for queries, bad arguments and want of memory, the reference's, under
// LAPACK's names and with the integers that the including file defines: QEL_INT, QEL_OWN(routine) for what is
// defined here, QEL_PLAIN(routine) for the reference's.
#include <cstring>
#include <initializer_list>
#include <limits>

#include "blas/letters.h"
#include "blas/plain/scratch.h"
#include "lapack/factor/elements.h"
#include "lapack/factor/gbtrf.h"
#include "lapack/fitness.h"
#include "lapack/orthogonal/qr.h"
#include "lapack/spectral/rotations.h"
#include "lapack/spectral/slices.h"
#include "service/complex_arithmetic.h"
#include "service/serv.h"

namespace qel::lapack {

namespace {

/// What a query answers: room for blocks of 32 columns.
template <class T>
void tell_work_length(core_int order, T* work) {
  set(work, from_real<T>(static_cast<real_of<T>>(32 * order)));
}

template <class T, class Plain>
void geqrf_or(core_int m, core_int n, T* a, core_int lda, T* tau, T* work, core_int lwork, QEL_INT* info,
              const Plain& call_plain) {
  if (m <= 0 || n <= 0 || lda < m || lwork < n || !geqrf(m, n, a, lda, tau)) return call_plain();
  *info = 0;
  tell_work_length(n, work);
}

template <class T, class Plain>
void ormqr_or(char side, char trans, core_int m, core_int n, core_int k, T* a, core_int lda, const T* tau,
              T* c, core_int ldc, T* work, core_int lwork, QEL_INT* info, const Plain& call_plain) {
  const bool left = blas::letter_is(side, 'L'), turned = blas::letter_is(trans, is_complex<T> ? 'C' : 'T');
  const core_int order = left ? m : n, others = left ? n : m;
  const bool good = (left || blas::letter_is(side, 'R')) && (turned || blas::letter_is(trans, 'N')) &&
                    m > 0 && n > 0 && k > 0 && k <= order && lda >= order && ldc >= m && lwork >= others;
  if (!good || !ormqr(left, turned, m, n, k, a, lda, tau, c, ldc)) return call_plain();
  *info = 0;
  tell_work_length(others, work);
}

/// The pivots as the caller's integers; 64-bit ones are needed meanwhile.
template <class T>
bool band_lu_with_pivots(core_int m, core_int n, core_int kl, core_int ku, T* ab, core_int ldab,
                         QEL_INT* ipiv, core_int* first_zero) {
  if constexpr (sizeof(QEL_INT) == sizeof(core_int)) {
    return gbtrf(m, n, kl, ku, ab, ldab, ipiv, first_zero);
  } else {
    const core_int order = m < n ? m : n;
    const plain::scratch<core_int> pivots(order);
    if (pivots.get() == nullptr || !gbtrf(m, n, kl, ku, ab, ldab, pivots.get(), first_zero)) return false;
    for (core_int i = 0; i < order; ++i) set(ipiv + i, static_cast<QEL_INT>(pivots.get()[i]));
    return true;
  }
}
template <class T, class Plain>
void gbtrf_or(core_int m, core_int n, core_int kl, core_int ku, T* ab, core_int ldab, QEL_INT* ipiv,
              QEL_INT* info, const Plain& call_plain) {
  core_int first_zero = 0;
  const bool good = m > 0 && n > 0 && kl > 1 && ku >= 0 && ldab > 2 * kl + ku;
  if (!good || !band_lu_with_pivots(m, n, kl, ku, ab, ldab, ipiv, &first_zero)) return call_plain();
  *info = static_cast<QEL_INT>(first_zero);
}

constexpr bool is_one_of(char letter, char first, char second) {
  return blas::letter_is(letter, first) || blas::letter_is(letter, second);
}

template <class T, class Plain>
void lasr_or(char side, char pivot, char direct, core_int m, core_int n, const real_of<T>* c,
             const real_of<T>* s, T* a, core_int lda, const Plain& call_plain) {
  const bool good = is_one_of(side, 'L', 'R') && blas::letter_is(pivot, 'V') && is_one_of(direct, 'F', 'B') &&
                    m > 0 && n > 0 && lda >= m;
  if (!good ||
      !rotate_neighbours(blas::letter_is(side, 'L'), blas::letter_is(direct, 'F'), m, n, c, s, a, lda)) {
    call_plain();
  }
}

}  // namespace

}  // namespace qel::lapack

extern "C" {

#define QEL_LETTER const char*
#define QEL_SIZE const QEL_INT*

// `own` sees the reference's routine, called with `arguments`, as `plain`.
#define QEL_OWN_OR_PLAIN(routine, parameters, arguments, own) \
  void QEL_PLAIN(routine) parameters;                         \
  void QEL_OWN(routine) parameters;                           \
  void QEL_OWN(routine) parameters {                          \
    const auto plain = [=] { QEL_PLAIN(routine) arguments; }; \
    qel::lapack::own;                                         \
  }

#define QEL_ALL(T, s, q)                                                                                     \
  QEL_OWN_OR_PLAIN(                                                                                          \
      s##geqrf,                                                                                              \
      (QEL_SIZE m, QEL_SIZE n, T * a, QEL_SIZE lda, T * tau, T * work, QEL_SIZE lwork, QEL_INT * info),      \
      (m, n, a, lda, tau, work, lwork, info), geqrf_or(*m, *n, a, *lda, tau, work, *lwork, info, plain))     \
  QEL_OWN_OR_PLAIN(s##q,                                                                                     \
                   (QEL_LETTER side, QEL_LETTER trans, QEL_SIZE m, QEL_SIZE n, QEL_SIZE k, T * a,            \
                    QEL_SIZE lda, const T* tau, T* c, QEL_SIZE ldc, T* work, QEL_SIZE lwork, QEL_INT* info,  \
                    size_t length1, size_t length2),                                                         \
                   (side, trans, m, n, k, a, lda, tau, c, ldc, work, lwork, info, length1, length2),         \
                   ormqr_or(*side, *trans, *m, *n, *k, a, *lda, tau, c, *ldc, work, *lwork, info, plain))    \
  QEL_OWN_OR_PLAIN(s##gbtrf,                                                                                 \
                   (QEL_SIZE m, QEL_SIZE n, QEL_SIZE kl, QEL_SIZE ku, T * ab, QEL_SIZE ldab, QEL_INT * ipiv, \
                    QEL_INT * info),                                                                         \
                   (m, n, kl, ku, ab, ldab, ipiv, info),                                                     \
                   gbtrf_or(*m, *n, *kl, *ku, ab, *ldab, ipiv, info, plain))
QEL_ALL(float, s, ormqr)
QEL_ALL(double, d, ormqr)
QEL_ALL(qel::complex8, c, unmqr)
QEL_ALL(qel::complex16, z, unmqr)

// Eigenvectors in slices. Bad arguments, too, go to one call of the reference's routine.
#define QEL_VECTORS(T, R, s, q, turned)                                                                      \
  void QEL_PLAIN(s##q)(QEL_LETTER side, QEL_LETTER uplo, QEL_LETTER trans, QEL_SIZE m, QEL_SIZE n, T * ap,   \
                       const T* tau, T* c, QEL_SIZE ldc, T* work, QEL_INT* info, size_t, size_t, size_t);    \
  void QEL_OWN(s##q)(QEL_LETTER side, QEL_LETTER uplo, QEL_LETTER trans, QEL_SIZE m, QEL_SIZE n, T * ap,     \
                     const T* tau, T* c, QEL_SIZE ldc, T* work, QEL_INT* info, size_t, size_t, size_t);      \
  void QEL_OWN(s##q)(QEL_LETTER side, QEL_LETTER uplo, QEL_LETTER trans, QEL_SIZE m, QEL_SIZE n, T * ap,     \
                     const T* tau, T* c, QEL_SIZE ldc, T* work, QEL_INT* info, size_t, size_t, size_t) {     \
    using namespace qel::lapack;                                                                             \
    const bool good = qel::blas::letter_is(*side, 'L') && is_one_of(*uplo, 'U', 'L') &&                      \
                      is_one_of(*trans, 'N', turned) && *m > 0 && *n > 1 && *ldc >= *m;                      \
    *info = 0;                                                                                               \
    if (!good || !multiply_packed_q(*m, *n, ap,                                                              \
                                    [=](qel::core_int first, qel::core_int columns, T* copy, T* own_work) {  \
                                      const auto count = static_cast<QEL_INT>(columns);                      \
                                      QEL_INT fine = 0;                                                      \
                                      QEL_PLAIN(s##q)                                                        \
                                      (side, uplo, trans, m, &count, copy, tau, c + first * *ldc, ldc,       \
                                       own_work, &fine, 1, 1, 1);                                            \
                                    })) {                                                                    \
      QEL_PLAIN(s##q)(side, uplo, trans, m, n, ap, tau, c, ldc, work, info, 1, 1, 1);                        \
    }                                                                                                        \
  }                                                                                                          \
  void QEL_PLAIN(s##stein)(QEL_SIZE n, const R* d, const R* e, QEL_SIZE m, const R* w, QEL_SIZE iblock,      \
                           QEL_SIZE isplit, T* z, QEL_SIZE ldz, R* work, QEL_INT* iwork, QEL_INT* ifail,     \
                           QEL_INT* info);                                                                   \
  void QEL_OWN(s##stein)(QEL_SIZE n, const R* d, const R* e, QEL_SIZE m, const R* w, QEL_SIZE iblock,        \
                         QEL_SIZE isplit, T* z, QEL_SIZE ldz, R* work, QEL_INT* iwork, QEL_INT* ifail,       \
                         QEL_INT* info);                                                                     \
  void QEL_OWN(s##stein)(QEL_SIZE n, const R* d, const R* e, QEL_SIZE m, const R* w, QEL_SIZE iblock,        \
                         QEL_SIZE isplit, T* z, QEL_SIZE ldz, R* work, QEL_INT* iwork, QEL_INT* ifail,       \
                         QEL_INT* info) {                                                                    \
    using namespace qel::lapack;                                                                             \
    const auto plain = [=](qel::core_int first, qel::core_int vectors, R* own_work, QEL_INT* own_iwork,      \
                           QEL_INT* fail, QEL_INT* failed) {                                                 \
      const auto count = static_cast<QEL_INT>(vectors);                                                      \
      QEL_PLAIN(s##stein)                                                                                    \
      (n, d, e, &count, w + first, iblock + first, isplit, z + first * *ldz, ldz, own_work, own_iwork, fail, \
       failed);                                                                                              \
    };                                                                                                       \
    const bool good = *n > 1 && *m > 1 && *m <= *n && *ldz >= *n && in_order(*m, w, iblock);                 \
    if (!good || !iterate_inversely(*n, *m, d, e, w, iblock, ifail, info, plain)) {                          \
      plain(0, *m, work, iwork, ifail, info);                                                                \
    }                                                                                                        \
  }
#define QEL_ROTATIONS(T, R, s)                                                                   \
  QEL_OWN_OR_PLAIN(                                                                              \
      s##lasr,                                                                                   \
      (QEL_LETTER side, QEL_LETTER pivot, QEL_LETTER direct, QEL_SIZE m, QEL_SIZE n, const R* c, \
       const R* sines, T* a, QEL_SIZE lda, size_t length1, size_t length2, size_t length3),      \
      (side, pivot, direct, m, n, c, sines, a, lda, length1, length2, length3),                  \
      lasr_or(*side, *pivot, *direct, *m, *n, c, sines, a, *lda, plain))
QEL_ROTATIONS(float, float, s)
QEL_ROTATIONS(double, double, d)
QEL_ROTATIONS(qel::complex8, float, c)
QEL_ROTATIONS(qel::complex16, double, z)

QEL_VECTORS(float, float, s, opmtr, 'T')
QEL_VECTORS(double, double, d, opmtr, 'T')
QEL_VECTORS(qel::complex8, float, c, upmtr, 'C')
QEL_VECTORS(qel::complex16, double, z, upmtr, 'C')

}  // extern "C"

#include "lapack/guarded.inl.h"
