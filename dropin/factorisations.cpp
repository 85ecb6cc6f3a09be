// SPDX-License-Identifier: BSD-3-Clause
#include "dropin/factorisations.h"

#include <algorithm>

#include "lapack/factor/getrf.h"
#include "lapack/factor/potrf.h"
#include "service/serv.h"

namespace qel::dropin {

namespace {

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

}  // namespace

extern "C" {

#define QEL_FACTORISATIONS(T, s)                                                           \
  int qel_dropin_##s##getrf(const int* m, const int* n, T* a, const int* lda, int* ipiv) { \
    return narrow_getrf<T>(*m, *n, a, *lda, ipiv);                                         \
  }                                                                                        \
  int qel_dropin_##s##potrf(int upper, const int* n, T* a, const int* lda) {               \
    return static_cast<int>(lapack::potrf<T>(upper != 0, *n, a, *lda));                    \
  }
QEL_FACTORISATIONS(float, s)
QEL_FACTORISATIONS(double, d)
QEL_FACTORISATIONS(complex8, c)
QEL_FACTORISATIONS(complex16, z)
#undef QEL_FACTORISATIONS

}  // extern "C"

}  // namespace qel::dropin
