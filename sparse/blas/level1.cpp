// SPDX-License-Identifier: BSD-3-Clause
// Compressed-vector operations, two entries per pass. Stores stay in the order of the entries, so that
// repeated positions mean the same as in a plain loop. The dot product keeps two partial sums, of the even
// and the odd entries, added at the end; an odd last entry goes to the even one.
#include "sparse/blas/level1.h"

#include "service/complex_arithmetic.h"

namespace qel::core {
namespace {

template <class T>
void axpyi(core_int n, T alpha, const T* x, const core_int* indx, T* y) {
  if (alpha == T{}) return;
  core_int k = 0;
  for (; k + 1 < n; k += 2) {
    y[indx[k] - 1] += alpha * x[k];
    y[indx[k + 1] - 1] += alpha * x[k + 1];
  }
  if (k < n) y[indx[k] - 1] += alpha * x[k];
}

template <class T>
T doti(core_int n, const T* x, const core_int* indx, const T* y) {
  T even{}, odd{};
  core_int k = 0;
  for (; k + 1 < n; k += 2) {
    even += x[k] * y[indx[k] - 1];
    odd += x[k + 1] * y[indx[k + 1] - 1];
  }
  if (k < n) even += x[k] * y[indx[k] - 1];
  return even + odd;
}

template <class T>
void gthr(core_int n, const T* y, T* x, const core_int* indx) {
  core_int k = 0;
  for (; k + 1 < n; k += 2) {
    const T first = y[indx[k] - 1], second = y[indx[k + 1] - 1];
    x[k] = first;
    x[k + 1] = second;
  }
  if (k < n) x[k] = y[indx[k] - 1];
}

template <class T>
void gthrz(core_int n, T* y, T* x, const core_int* indx) {
  for (core_int k = 0; k < n; ++k) {
    x[k] = y[indx[k] - 1];
    y[indx[k] - 1] = T{};
  }
}

template <class T>
void sctr(core_int n, const T* x, const core_int* indx, T* y) {
  core_int k = 0;
  for (; k + 1 < n; k += 2) {
    y[indx[k] - 1] = x[k];
    y[indx[k + 1] - 1] = x[k + 1];
  }
  if (k < n) y[indx[k] - 1] = x[k];
}

}  // namespace

void saxpyi(const core_int* n, const float* alpha, const float* x, const core_int* indx, float* y) {
  axpyi(*n, *alpha, x, indx, y);
}
void daxpyi(const core_int* n, const double* alpha, const double* x, const core_int* indx, double* y) {
  axpyi(*n, *alpha, x, indx, y);
}
void zaxpyi(const core_int* n, const complex16* alpha, const complex16* x, const core_int* indx,
            complex16* y) {
  axpyi(*n, *alpha, x, indx, y);
}

double ddoti(const core_int* n, const double* x, const core_int* indx, const double* y) {
  return doti(*n, x, indx, y);
}
void zdotui(complex16* result, const core_int* n, const complex16* x, const core_int* indx,
            const complex16* y) {
  *result = doti(*n, x, indx, y);
}

void dgthr(const core_int* n, const double* y, double* x, const core_int* indx) { gthr(*n, y, x, indx); }
void zgthr(const core_int* n, const complex16* y, complex16* x, const core_int* indx) {
  gthr(*n, y, x, indx);
}

void dgthrz(const core_int* n, double* y, double* x, const core_int* indx) { gthrz(*n, y, x, indx); }
void zgthrz(const core_int* n, complex16* y, complex16* x, const core_int* indx) { gthrz(*n, y, x, indx); }

void dsctr(const core_int* n, const double* x, const core_int* indx, double* y) { sctr(*n, x, indx, y); }
void zsctr(const core_int* n, const complex16* x, const core_int* indx, complex16* y) {
  sctr(*n, x, indx, y);
}

}  // namespace qel::core
