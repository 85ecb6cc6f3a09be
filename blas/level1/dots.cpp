// SPDX-License-Identifier: BSD-3-Clause
// Core inner products but for ddot, which stands in dot_d.cpp: on threads where they pay, else the kernel of
// the processor level, bound on first use. dsdot and sdsdot run on the portable template.
#include "blas/level1/level1.h"
#include "blas/level1/level1_rows.h"
#include "blas/level1/slices.h"
#include "blas/plain/level1.h"

namespace qel {
namespace {

template <level1_member kMember, const auto& kRow, class C>
void complex_dot(C* result, const core_int* n, const C* x, const core_int* incx, const C* y,
                 const core_int* incy) {
  *result = dot_driver(kMember, n, x, incx, y, incy, [=](const core_int* length, const C* xs, const C* ys) {
    C sum;
    call_kernel<kRow>(&sum, length, xs, incx, ys, incy);
    return sum;
  });
}

}  // namespace

float core::sdot(const core_int* n, const float* x, const core_int* incx, const float* y,
                 const core_int* incy) {
  return dot_driver(level1_member::sdot, n, x, incx, y, incy,
                    [=](const core_int* length, const float* xs, const float* ys) {
                      return call_kernel<kSdot>(length, xs, incx, ys, incy);
                    });
}
void core::cdotu(complex8* result, const core_int* n, const complex8* x, const core_int* incx,
                 const complex8* y, const core_int* incy) {
  complex_dot<level1_member::cdotu, kCdotu>(result, n, x, incx, y, incy);
}
void core::cdotc(complex8* result, const core_int* n, const complex8* x, const core_int* incx,
                 const complex8* y, const core_int* incy) {
  complex_dot<level1_member::cdotc, kCdotc>(result, n, x, incx, y, incy);
}
void core::zdotu(complex16* result, const core_int* n, const complex16* x, const core_int* incx,
                 const complex16* y, const core_int* incy) {
  complex_dot<level1_member::zdotu, kZdotu>(result, n, x, incx, y, incy);
}
void core::zdotc(complex16* result, const core_int* n, const complex16* x, const core_int* incx,
                 const complex16* y, const core_int* incy) {
  complex_dot<level1_member::zdotc, kZdotc>(result, n, x, incx, y, incy);
}

double core::dsdot(const core_int* n, const float* x, const core_int* incx, const float* y,
                   const core_int* incy) {
  return plain::double_dot(*n, 0, x, *incx, y, *incy);
}
float core::sdsdot(const core_int* n, const float* sb, const float* x, const core_int* incx, const float* y,
                   const core_int* incy) {
  return static_cast<float>(plain::double_dot(*n, *sb, x, *incx, y, *incy));
}

}  // namespace qel
