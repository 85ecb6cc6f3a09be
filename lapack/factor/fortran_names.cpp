// SPDX-License-Identifier: BSD-3-Clause
// The factorisations under the names by which entries and plain LAPACK call them: arguments tested and
// reported as LAPACK does. The names that end in 2 are LAPACK's own recursive forms, here the same routine.
#include "lapack/factor/getrf.h"
#include "lapack/factor/potrf.h"
#include "lapack/lapack.h"
#include "service/serv.h"

namespace qel::core {

namespace {

/// info of a bad argument, after its report.
core_int refuse(const char* name, int length, int position) {
  serv_xerbla(name, &position, length);
  return -position;
}

template <class T>
void checked_getrf(const char* name, int length, core_int m, core_int n, T* a, core_int lda, core_int* pivots,
                   core_int* info) {
  const int bad = lapack::getrf_bad_argument(m, n, lda);
  *info = bad != 0 ? refuse(name, length, bad) : m == 0 || n == 0 ? 0 : lapack::getrf(m, n, a, lda, pivots);
}
template <class T>
void checked_potrf(const char* name, int length, char uplo, core_int n, T* a, core_int lda, core_int* info) {
  const int bad = lapack::potrf_bad_argument(uplo, n, lda);
  const bool upper = blas::letter_is(uplo, 'U');
  *info = bad != 0 ? refuse(name, length, bad) : n == 0 ? 0 : lapack::potrf(upper, n, a, lda);
}

}  // namespace

extern "C" {

#define QEL_FACTORISATIONS(T, s, S)                                                                          \
  void qel_core_##s##getrf_(const core_int* m, const core_int* n, T* a, const core_int* lda, core_int* ipiv, \
                            core_int* info) {                                                                \
    checked_getrf(S "GETRF", 6, *m, *n, a, *lda, ipiv, info);                                                \
  }                                                                                                          \
  void qel_core_##s##getrf2_(const core_int* m, const core_int* n, T* a, const core_int* lda,                \
                             core_int* ipiv, core_int* info) {                                               \
    checked_getrf(S "GETRF2", 7, *m, *n, a, *lda, ipiv, info);                                               \
  }                                                                                                          \
  void qel_core_##s##potrf_(const char* uplo, const core_int* n, T* a, const core_int* lda, core_int* info,  \
                            size_t) {                                                                        \
    checked_potrf(S "POTRF", 6, *uplo, *n, a, *lda, info);                                                   \
  }                                                                                                          \
  void qel_core_##s##potrf2_(const char* uplo, const core_int* n, T* a, const core_int* lda, core_int* info, \
                             size_t) {                                                                       \
    checked_potrf(S "POTRF2", 7, *uplo, *n, a, *lda, info);                                                  \
  }
QEL_FACTORISATIONS(float, s, "S")
QEL_FACTORISATIONS(double, d, "D")
QEL_FACTORISATIONS(complex8, c, "C")
QEL_FACTORISATIONS(complex16, z, "Z")
#undef QEL_FACTORISATIONS

}  // extern "C"

}  // namespace qel::core
