// SPDX-License-Identifier: BSD-3-Clause
// Factorisations, their solves and inverses under LAPACK's names: arguments tested and reported as LAPACK
// does. The including file defines QEL_INT, the integers; QEL_OWN(routine), the name; and
// qel::lapack::report(name, position, length). Names that end in 2 are LAPACK's own recursive forms, here the
// same routine.
#include "lapack/factor/factored.h"
#include "lapack/factor/getrf.h"
#include "lapack/factor/potrf.h"
#include "lapack/factor/triangles.h"
#include "service/serv.h"

namespace qel::lapack {

namespace {

/// True if the argument at that position is bad, after its report; info is then set.
inline bool refused(const char* name, size_t length, int position, QEL_INT* info) {
  *info = -position;
  if (position != 0) report(name, position, length);
  return position != 0;
}

constexpr bool too_small(core_int leading, core_int rows) { return leading < (rows > 1 ? rows : 1); }
constexpr bool is_uplo(char letter) { return blas::letter_is(letter, 'U') || blas::letter_is(letter, 'L'); }

template <class T>
QEL_INT factor_lu_and_store(core_int m, core_int n, T* a, core_int lda, QEL_INT* ipiv) {
  if constexpr (sizeof(QEL_INT) == sizeof(core_int)) {
    return getrf(m, n, a, lda, ipiv);
  } else {
    constexpr core_int kOnStack = 128;
    const core_int order = m < n ? m : n;
    core_int few[kOnStack];
    core_int* pivots = few;
    if (order > kOnStack) {
      pivots = static_cast<core_int*>(serv_malloc(static_cast<size_t>(order) * sizeof(core_int), 64));
    }
    const auto store = [ipiv](core_int first, core_int count, const core_int* from) {
      for (core_int i = 0; i < count; ++i) set(ipiv + first + i, static_cast<QEL_INT>(from[i] + first));
    };
    if (pivots == nullptr) {
      return static_cast<QEL_INT>(factor_lu_in_panels(m, n, a, lda, few, kOnStack, store));
    }
    const core_int info = getrf(m, n, a, lda, pivots);
    store(0, order, pivots);
    if (pivots != few) serv_free(pivots);
    return static_cast<QEL_INT>(info);
  }
}

template <class T>
void checked_getrf(const char* name, size_t length, core_int m, core_int n, T* a, core_int lda, QEL_INT* ipiv,
                   QEL_INT* info) {
  if (refused(name, length, getrf_bad_argument(m, n, lda), info) || m == 0 || n == 0) return;
  *info = factor_lu_and_store(m, n, a, lda, ipiv);
}
template <class T>
void checked_potrf(const char* name, size_t length, char uplo, core_int n, T* a, core_int lda,
                   QEL_INT* info) {
  if (refused(name, length, potrf_bad_argument(uplo, n, lda), info) || n == 0) return;
  *info = static_cast<QEL_INT>(potrf(blas::letter_is(uplo, 'U'), n, a, lda));
}
template <class T>
void checked_getrs(const char* name, char trans, core_int n, core_int nrhs, const T* a, core_int lda,
                   const QEL_INT* ipiv, T* b, core_int ldb, QEL_INT* info) {
  const char op = blas::letter_is(trans, 'N')   ? 'N'
                  : blas::letter_is(trans, 'T') ? 'T'
                  : blas::letter_is(trans, 'C') ? 'C'
                                                : '?';
  const int bad = op == '?'           ? 1
                  : n < 0             ? 2
                  : nrhs < 0          ? 3
                  : too_small(lda, n) ? 5
                  : too_small(ldb, n) ? 8
                                      : 0;
  if (refused(name, 6, bad, info) || n == 0 || nrhs == 0) return;
  solve_by_lu(op, n, nrhs, a, lda, ipiv, b, ldb);
}
template <class T>
void checked_potrs(const char* name, char uplo, core_int n, core_int nrhs, const T* a, core_int lda, T* b,
                   core_int ldb, QEL_INT* info) {
  const int bad = !is_uplo(uplo)      ? 1
                  : n < 0             ? 2
                  : nrhs < 0          ? 3
                  : too_small(lda, n) ? 5
                  : too_small(ldb, n) ? 7
                                      : 0;
  if (refused(name, 6, bad, info) || n == 0 || nrhs == 0) return;
  solve_by_cholesky(blas::letter_is(uplo, 'U'), n, nrhs, a, lda, b, ldb);
}
template <class T>
void checked_trtri(const char* name, char uplo, char diag, core_int n, T* a, core_int lda, QEL_INT* info) {
  const bool unit = blas::letter_is(diag, 'U');
  const int bad = !is_uplo(uplo)                         ? 1
                  : !unit && !blas::letter_is(diag, 'N') ? 2
                  : n < 0                                ? 3
                  : too_small(lda, n)                    ? 5
                                                         : 0;
  if (refused(name, 6, bad, info) || n == 0) return;
  *info = static_cast<QEL_INT>(invert_triangle(blas::letter_is(uplo, 'U'), unit, n, a, lda));
}
template <class T>
void checked_lauum(const char* name, char uplo, core_int n, T* a, core_int lda, QEL_INT* info) {
  const int bad = !is_uplo(uplo) ? 1 : n < 0 ? 2 : too_small(lda, n) ? 4 : 0;
  if (refused(name, 6, bad, info) || n == 0) return;
  square_triangle(blas::letter_is(uplo, 'U'), n, a, lda);
}
template <class T>
void checked_getri(const char* name, core_int n, T* a, core_int lda, const QEL_INT* ipiv, T* work,
                   core_int lwork, QEL_INT* info) {
  constexpr core_int kBlock = 64;
  const bool query = lwork == -1;
  const int bad = n < 0 ? 1 : too_small(lda, n) ? 3 : !query && too_small(lwork, n) ? 6 : 0;
  if (bad == 0) set(work, from_real<T>(static_cast<real_of<T>>(n > 0 ? n * kBlock : 1)));
  if (refused(name, 6, bad, info) || query || n == 0 || invert_small(n, a, lda, ipiv)) return;
  *info = static_cast<QEL_INT>(invert_triangle(true, false, n, a, lda));
  if (*info != 0) return;
  finish_lu_inverse(n, a, lda, ipiv, work, lwork);
  set(work, from_real<T>(static_cast<real_of<T>>(n * kBlock)));
}

}  // namespace

}  // namespace qel::lapack

extern "C" {

#define QEL_LETTER const char*
#define QEL_SIZE const QEL_INT*
#define QEL_DEFINE(routine, parameters, call) \
  void QEL_OWN(routine) parameters;           \
  void QEL_OWN(routine) parameters { qel::lapack::call; }

#define QEL_FACTORISATIONS(T, s, S)                                                                        \
  QEL_DEFINE(s##getrf, (QEL_SIZE m, QEL_SIZE n, T * a, QEL_SIZE lda, QEL_INT * ipiv, QEL_INT * info),      \
             checked_getrf(S "GETRF", 6, *m, *n, a, *lda, ipiv, info))                                     \
  QEL_DEFINE(s##getrf2, (QEL_SIZE m, QEL_SIZE n, T * a, QEL_SIZE lda, QEL_INT * ipiv, QEL_INT * info),     \
             checked_getrf(S "GETRF2", 7, *m, *n, a, *lda, ipiv, info))                                    \
  QEL_DEFINE(s##potrf, (QEL_LETTER uplo, QEL_SIZE n, T * a, QEL_SIZE lda, QEL_INT * info, size_t),         \
             checked_potrf(S "POTRF", 6, *uplo, *n, a, *lda, info))                                        \
  QEL_DEFINE(s##potrf2, (QEL_LETTER uplo, QEL_SIZE n, T * a, QEL_SIZE lda, QEL_INT * info, size_t),        \
             checked_potrf(S "POTRF2", 7, *uplo, *n, a, *lda, info))                                       \
  QEL_DEFINE(s##getrs,                                                                                     \
             (QEL_LETTER trans, QEL_SIZE n, QEL_SIZE nrhs, const T* a, QEL_SIZE lda, QEL_SIZE ipiv, T* b,  \
              QEL_SIZE ldb, QEL_INT* info, size_t),                                                        \
             checked_getrs(S "GETRS", *trans, *n, *nrhs, a, *lda, ipiv, b, *ldb, info))                    \
  QEL_DEFINE(s##potrs,                                                                                     \
             (QEL_LETTER uplo, QEL_SIZE n, QEL_SIZE nrhs, const T* a, QEL_SIZE lda, T* b, QEL_SIZE ldb,    \
              QEL_INT* info, size_t),                                                                      \
             checked_potrs(S "POTRS", *uplo, *n, *nrhs, a, *lda, b, *ldb, info))                           \
  QEL_DEFINE(s##getri,                                                                                     \
             (QEL_SIZE n, T * a, QEL_SIZE lda, QEL_SIZE ipiv, T * work, QEL_SIZE lwork, QEL_INT * info),   \
             checked_getri(S "GETRI", *n, a, *lda, ipiv, work, *lwork, info))                              \
  QEL_DEFINE(                                                                                              \
      s##trtri,                                                                                            \
      (QEL_LETTER uplo, QEL_LETTER diag, QEL_SIZE n, T * a, QEL_SIZE lda, QEL_INT * info, size_t, size_t), \
      checked_trtri(S "TRTRI", *uplo, *diag, *n, a, *lda, info))                                           \
  QEL_DEFINE(s##lauum, (QEL_LETTER uplo, QEL_SIZE n, T * a, QEL_SIZE lda, QEL_INT * info, size_t),         \
             checked_lauum(S "LAUUM", *uplo, *n, a, *lda, info))
QEL_FACTORISATIONS(float, s, "S")
QEL_FACTORISATIONS(double, d, "D")
QEL_FACTORISATIONS(qel::complex8, c, "C")
QEL_FACTORISATIONS(qel::complex16, z, "Z")

}  // extern "C"
