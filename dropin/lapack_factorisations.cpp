// SPDX-License-Identifier: BSD-3-Clause
// The factorisations of liblapack.so.3 under their Fortran names: arguments tested and reported through the
// program's own xerbla_ if it has one. The names that end in 2 are LAPACK's recursive forms, here the same.
#include <stddef.h>

#include "dropin/factorisations.h"
#include "lapack/factor/getrf.h"
#include "lapack/factor/potrf.h"

extern "C" void xerbla_(const char* name, const int* position, size_t length);

namespace qel::dropin {

namespace {

/// info of a bad argument, after its report.
int refuse(const char* name, size_t length, int position) {
  xerbla_(name, &position, length);
  return -position;
}

template <class T>
using lu = int (*)(const int*, const int*, T*, const int*, int*);
template <class T>
void checked_getrf(const char* name, size_t length, lu<T> factor, const int* m, const int* n, T* a,
                   const int* lda, int* ipiv, int* info) {
  const int bad = lapack::getrf_bad_argument(*m, *n, *lda);
  *info = bad != 0 ? refuse(name, length, bad) : *m == 0 || *n == 0 ? 0 : factor(m, n, a, lda, ipiv);
}
template <class T>
using cholesky = int (*)(int, const int*, T*, const int*);
template <class T>
void checked_potrf(const char* name, size_t length, cholesky<T> factor, const char* uplo, const int* n, T* a,
                   const int* lda, int* info) {
  const int bad = lapack::potrf_bad_argument(*uplo, *n, *lda);
  const bool upper = blas::letter_is(*uplo, 'U');
  *info = bad != 0 ? refuse(name, length, bad) : *n == 0 ? 0 : factor(upper, n, a, lda);
}

}  // namespace

extern "C" {

#pragma GCC visibility push(default)
#define QEL_NAMES(T, s, S, suffix, length)                                                            \
  void s##getrf##suffix##_(const int* m, const int* n, T* a, const int* lda, int* ipiv, int* info);   \
  void s##potrf##suffix##_(const char* uplo, const int* n, T* a, const int* lda, int* info, size_t);  \
  void s##getrf##suffix##_(const int* m, const int* n, T* a, const int* lda, int* ipiv, int* info) {  \
    checked_getrf(S "GETRF" #suffix, length, qel_dropin_##s##getrf, m, n, a, lda, ipiv, info);        \
  }                                                                                                   \
  void s##potrf##suffix##_(const char* uplo, const int* n, T* a, const int* lda, int* info, size_t) { \
    checked_potrf(S "POTRF" #suffix, length, qel_dropin_##s##potrf, uplo, n, a, lda, info);           \
  }
#define QEL_BOTH_NAMES(T, s, S) QEL_NAMES(T, s, S, , 6) QEL_NAMES(T, s, S, 2, 7)
QEL_BOTH_NAMES(float, s, "S")
QEL_BOTH_NAMES(double, d, "D")
QEL_BOTH_NAMES(complex8, c, "C")
QEL_BOTH_NAMES(complex16, z, "Z")
#undef QEL_BOTH_NAMES
#undef QEL_NAMES
#pragma GCC visibility pop

}  // extern "C"

}  // namespace qel::dropin
