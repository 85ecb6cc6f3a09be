// SPDX-License-Identifier: BSD-3-Clause
// The factorisations of liblapack.so.3 under their Fortran names: arguments tested and reported through the
// program's own xerbla_ if it has one. The names that end in 2 are LAPACK's recursive forms, here the same.
#include <stddef.h>

#include <algorithm>

#include "lapack/factor/getrf.h"
#include "lapack/factor/potrf.h"
#include "service/serv.h"

extern "C" void xerbla_(const char* name, const int* position, size_t length);

namespace qel::dropin {

namespace {

/// info of a bad argument, after its report.
int refuse(const char* name, size_t length, int position) {
  xerbla_(name, &position, length);
  return -position;
}

/// info where there is no memory for the pivots, as LAPACK's C interface has it.
constexpr int kNoWorkMemory = -1010;

template <class T>
int narrow_getrf(core_int m, core_int n, T* a, core_int lda, int* ipiv) {
  constexpr core_int kOnStack = 128;
  const core_int order = std::min(m, n);
  core_int few[kOnStack];
  core_int* pivots = few;
  if (order > kOnStack) {
    pivots = static_cast<core_int*>(serv_malloc(static_cast<size_t>(order) * sizeof(core_int), 64));
    if (pivots == nullptr) return kNoWorkMemory;
  }
  const core_int info = lapack::getrf(m, n, a, lda, pivots);
  std::transform(pivots, pivots + order, ipiv, [](core_int pivot) { return static_cast<int>(pivot); });
  if (pivots != few) serv_free(pivots);
  return static_cast<int>(info);
}

template <class T>
void checked_getrf(const char* name, size_t length, const int* m, const int* n, T* a, const int* lda,
                   int* ipiv, int* info) {
  const int bad = lapack::getrf_bad_argument(*m, *n, *lda);
  *info = bad != 0             ? refuse(name, length, bad)
          : *m == 0 || *n == 0 ? 0
                               : narrow_getrf<T>(*m, *n, a, *lda, ipiv);
}
template <class T>
void checked_potrf(const char* name, size_t length, const char* uplo, const int* n, T* a, const int* lda,
                   int* info) {
  const int bad = lapack::potrf_bad_argument(*uplo, *n, *lda);
  const bool upper = blas::letter_is(*uplo, 'U');
  *info = bad != 0  ? refuse(name, length, bad)
          : *n == 0 ? 0
                    : static_cast<int>(lapack::potrf<T>(upper, *n, a, *lda));
}

}  // namespace

extern "C" {

#pragma GCC visibility push(default)
#define QEL_NAMES(T, s, S, suffix, length)                                                            \
  void s##getrf##suffix##_(const int* m, const int* n, T* a, const int* lda, int* ipiv, int* info);   \
  void s##potrf##suffix##_(const char* uplo, const int* n, T* a, const int* lda, int* info, size_t);  \
  void s##getrf##suffix##_(const int* m, const int* n, T* a, const int* lda, int* ipiv, int* info) {  \
    checked_getrf(S "GETRF" #suffix, length, m, n, a, lda, ipiv, info);                               \
  }                                                                                                   \
  void s##potrf##suffix##_(const char* uplo, const int* n, T* a, const int* lda, int* info, size_t) { \
    checked_potrf(S "POTRF" #suffix, length, uplo, n, a, lda, info);                                  \
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
