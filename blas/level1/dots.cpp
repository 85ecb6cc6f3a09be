// SPDX-License-Identifier: BSD-3-Clause
// Core inner products but for ddot, which stands in dot_d.cpp: kernels of the processor level, bound on first
// use; sdot and cdotc on threads where they pay. dsdot and sdsdot run on the portable template.
#include "blas/level1/level1.h"
#include "blas/level1/level1_rows.h"
#include "blas/level1/slices.h"
#include "blas/plain/level1.h"

namespace qel::core {

float sdot(const core_int* n, const float* x, const core_int* incx, const float* y, const core_int* incy) {
  return dot_driver(level1_member::sdot, n, x, incx, y, incy,
                    [=](const core_int* length, const float* xs, const float* ys) {
                      return call_kernel<kSdot>(length, xs, incx, ys, incy);
                    });
}
void cdotc(complex8* result, const core_int* n, const complex8* x, const core_int* incx, const complex8* y,
           const core_int* incy) {
  *result = dot_driver(level1_member::cdotc, n, x, incx, y, incy,
                       [=](const core_int* length, const complex8* xs, const complex8* ys) {
                         complex8 sum;
                         call_kernel<kCdotc>(&sum, length, xs, incx, ys, incy);
                         return sum;
                       });
}

void cdotu(complex8* result, const core_int* n, const complex8* x, const core_int* incx, const complex8* y,
           const core_int* incy) {
  call_kernel<kCdotu>(result, n, x, incx, y, incy);
}
void zdotu(complex16* result, const core_int* n, const complex16* x, const core_int* incx, const complex16* y,
           const core_int* incy) {
  call_kernel<kZdotu>(result, n, x, incx, y, incy);
}
void zdotc(complex16* result, const core_int* n, const complex16* x, const core_int* incx, const complex16* y,
           const core_int* incy) {
  call_kernel<kZdotc>(result, n, x, incx, y, incy);
}

double dsdot(const core_int* n, const float* x, const core_int* incx, const float* y, const core_int* incy) {
  return plain::double_dot(*n, 0, x, *incx, y, *incy);
}
float sdsdot(const core_int* n, const float* sb, const float* x, const core_int* incx, const float* y,
             const core_int* incy) {
  return static_cast<float>(plain::double_dot(*n, *sb, x, *incx, y, *incy));
}

}  // namespace qel::core
