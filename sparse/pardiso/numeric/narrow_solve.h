// SPDX-License-Identifier: BSD-3-Clause
// Triangles and panels against a single vector, in plain loops. Supernodes are many and mostly small: a call
// of a general routine costs more than the work. Four columns go together, so that the vector passes through
// the registers once for all of them.
#pragma once

#include "service/complex_arithmetic.h"

namespace qel::pardiso {

/// Panels of up to so many elements are worth these loops.
inline constexpr int64_t kNarrowPanel = 1024;

/// y -= A x, or y = A x if fresh; A rows x columns.
template <class T>
void add_columns(bool fresh, int rows, int columns, const T* a, int64_t lda, const T* x, T* y) {
  int k = 0;
  if (fresh && columns % 4 != 0) {
    for (int i = 0; i < rows; ++i) y[i] = a[i] * x[0];
    k = 1;
  } else if (fresh) {
    for (int i = 0; i < rows; ++i) {
      y[i] = a[i] * x[0] + a[i + lda] * x[1] + a[i + 2 * lda] * x[2] + a[i + 3 * lda] * x[3];
    }
    k = 4;
  }
  const T sign = from_real<T>(fresh ? 1 : -1);
  for (; k + 4 <= columns; k += 4) {
    const T *const c0 = a + k * lda, *const c1 = c0 + lda, *const c2 = c1 + lda, *const c3 = c2 + lda;
    const T x0 = sign * x[k], x1 = sign * x[k + 1], x2 = sign * x[k + 2], x3 = sign * x[k + 3];
    for (int i = 0; i < rows; ++i) y[i] = y[i] + (c0[i] * x0 + c1[i] * x1 + c2[i] * x2 + c3[i] * x3);
  }
  for (; k < columns; ++k) {
    const T* const c = a + k * lda;
    const T factor = sign * x[k];
    for (int i = 0; i < rows; ++i) y[i] = y[i] + c[i] * factor;
  }
}

/// Sum of products of a column and x, in four lanes.
template <class T>
T dot_lanes(int rows, const T* a, const T* x) {
  T lane[4] = {};
  int i = 0;
  for (; i + 4 <= rows; i += 4) {
    for (int j = 0; j < 4; ++j) lane[j] = lane[j] + a[i + j] * x[i + j];
  }
  for (; i < rows; ++i) lane[0] = lane[0] + a[i] * x[i];
  return (lane[0] + lane[1]) + (lane[2] + lane[3]);
}

/// y -= A' x, A rows x columns.
template <class T>
void subtract_dots(int rows, int columns, const T* a, int64_t lda, const T* x, T* y) {
  int k = 0;
  for (; k + 2 <= columns; k += 2) {
    const T *const c0 = a + k * lda, *const c1 = c0 + lda;
    T lane[8] = {};
    int i = 0;
    for (; i + 4 <= rows; i += 4) {
      for (int j = 0; j < 4; ++j) {
        lane[j] = lane[j] + c0[i + j] * x[i + j];
        lane[4 + j] = lane[4 + j] + c1[i + j] * x[i + j];
      }
    }
    for (; i < rows; ++i) {
      lane[0] = lane[0] + c0[i] * x[i];
      lane[4] = lane[4] + c1[i] * x[i];
    }
    y[k] = y[k] - ((lane[0] + lane[1]) + (lane[2] + lane[3]));
    y[k + 1] = y[k + 1] - ((lane[4] + lane[5]) + (lane[6] + lane[7]));
  }
  if (k < columns) y[k] = y[k] - dot_lanes(rows, a + k * lda, x);
}

/// x = inv(A) x or inv(A') x for a triangle.
template <class T>
void solve_triangle(bool lower, bool turned, bool unit, int w, const T* a, int64_t lda, T* x) {
  const bool upwards = lower == turned;
  for (int step = 0; step < w; ++step) {
    const int k = upwards ? w - 1 - step : step;
    const T* const column = a + k * lda;
    const int from = lower ? k + 1 : 0, count = lower ? w - k - 1 : k;
    if (turned) x[k] = x[k] - dot_lanes(count, column + from, x + from);
    if (!unit) x[k] = x[k] / column[k];
    if (turned) continue;
    const T factor = x[k];
    for (int i = from; i < from + count; ++i) x[i] = x[i] - column[i] * factor;
  }
}

}  // namespace qel::pardiso
