// SPDX-License-Identifier: BSD-3-Clause
// The solves with shared-out right-hand sides, under the names and with the integers that the including file
// defines: QEL_INT, QEL_OWN(routine) for what is defined here, QEL_PLAIN(routine) for the reference's.
#include "lapack/solve/split.h"

extern "C" {

// The call in parentheses sees `count` columns of B at `part`, and `bad` for info.
#define QEL_SPLIT(routine, title, T, work, parameters, call)                                                 \
  void QEL_PLAIN(routine) parameters;                                                                        \
  void QEL_OWN(routine) parameters;                                                                          \
  void QEL_OWN(routine) parameters {                                                                         \
    qel::lapack::split_solve(title, *n, *nrhs, work, info, [&](QEL_INT first, QEL_INT count, QEL_INT* bad) { \
      T* const part = b + first * static_cast<qel::core_int>(*ldb);                                          \
      QEL_PLAIN(routine) call;                                                                               \
    });                                                                                                      \
  }

#define QEL_WORK(name, below, above) qel::lapack::split_work(name, *n, below, above)
#define QEL_LETTER const char*
#define QEL_SIZE const QEL_INT*
#define QEL_SIDES(T) T *b, QEL_SIZE ldb, QEL_INT *info

#define QEL_SPLIT_ALL(T, s, S)                                                                               \
  QEL_SPLIT(s##gttrs, S "GTTRS", T, QEL_WORK("GTTRS", 0, 0),                                                 \
            (QEL_LETTER trans, QEL_SIZE n, QEL_SIZE nrhs, const T* dl, const T* d, const T* du,              \
             const T* du2, QEL_SIZE ipiv, QEL_SIDES(T), size_t length),                                      \
            (trans, n, &count, dl, d, du, du2, ipiv, part, ldb, bad, length))                                \
  QEL_SPLIT(s##pptrs, S "PPTRS", T, QEL_WORK("PPTRS", 0, 0),                                                 \
            (QEL_LETTER uplo, QEL_SIZE n, QEL_SIZE nrhs, const T* ap, QEL_SIDES(T), size_t length),          \
            (uplo, n, &count, ap, part, ldb, bad, length))                                                   \
  QEL_SPLIT(                                                                                                 \
      s##sptrs, S "SPTRS", T, QEL_WORK("SPTRS", 0, 0),                                                       \
      (QEL_LETTER uplo, QEL_SIZE n, QEL_SIZE nrhs, const T* ap, QEL_SIZE ipiv, QEL_SIDES(T), size_t length), \
      (uplo, n, &count, ap, ipiv, part, ldb, bad, length))                                                   \
  QEL_SPLIT(s##gbtrs, S "GBTRS", T, QEL_WORK("GBTRS", *kl, *ku),                                             \
            (QEL_LETTER trans, QEL_SIZE n, QEL_SIZE kl, QEL_SIZE ku, QEL_SIZE nrhs, const T* ab,             \
             QEL_SIZE ldab, QEL_SIZE ipiv, QEL_SIDES(T), size_t length),                                     \
            (trans, n, kl, ku, &count, ab, ldab, ipiv, part, ldb, bad, length))                              \
  QEL_SPLIT(s##pbtrs, S "PBTRS", T, QEL_WORK("PBTRS", *kd, 0),                                               \
            (QEL_LETTER uplo, QEL_SIZE n, QEL_SIZE kd, QEL_SIZE nrhs, const T* ab, QEL_SIZE ldab,            \
             QEL_SIDES(T), size_t length),                                                                   \
            (uplo, n, kd, &count, ab, ldab, part, ldb, bad, length))                                         \
  QEL_SPLIT(s##tptrs, S "TPTRS", T, QEL_WORK("TPTRS", 0, 0),                                                 \
            (QEL_LETTER uplo, QEL_LETTER trans, QEL_LETTER diag, QEL_SIZE n, QEL_SIZE nrhs, const T* ap,     \
             QEL_SIDES(T), size_t length1, size_t length2, size_t length3),                                  \
            (uplo, trans, diag, n, &count, ap, part, ldb, bad, length1, length2, length3))

#define QEL_SPLIT_REAL(T, s, S)                                                \
  QEL_SPLIT_ALL(T, s, S)                                                       \
  QEL_SPLIT(s##pttrs, S "PTTRS", T, QEL_WORK("PTTRS", 0, 0),                   \
            (QEL_SIZE n, QEL_SIZE nrhs, const T* d, const T* e, QEL_SIDES(T)), \
            (n, &count, d, e, part, ldb, bad))

#define QEL_SPLIT_COMPLEX(T, s, S, R)                                                                        \
  QEL_SPLIT_ALL(T, s, S)                                                                                     \
  QEL_SPLIT(                                                                                                 \
      s##pttrs, S "PTTRS", T, QEL_WORK("PTTRS", 0, 0),                                                       \
      (QEL_LETTER uplo, QEL_SIZE n, QEL_SIZE nrhs, const R* d, const T* e, QEL_SIDES(T), size_t length),     \
      (uplo, n, &count, d, e, part, ldb, bad, length))                                                       \
  QEL_SPLIT(                                                                                                 \
      s##hptrs, S "HPTRS", T, QEL_WORK("HPTRS", 0, 0),                                                       \
      (QEL_LETTER uplo, QEL_SIZE n, QEL_SIZE nrhs, const T* ap, QEL_SIZE ipiv, QEL_SIDES(T), size_t length), \
      (uplo, n, &count, ap, ipiv, part, ldb, bad, length))

QEL_SPLIT_REAL(float, s, "S")
QEL_SPLIT_REAL(double, d, "D")
QEL_SPLIT_COMPLEX(qel::complex8, c, "C", float)
QEL_SPLIT_COMPLEX(qel::complex16, z, "Z", double)

}  // extern "C"
