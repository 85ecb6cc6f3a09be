// SPDX-License-Identifier: BSD-3-Clause
// Core plane rotations: applied on threads where they pay, else by the kernel of the processor level, bound
// on first use; made by the portable templates.
#include "blas/level1/level1.h"
#include "blas/level1/level1_rows.h"
#include "blas/level1/slices.h"
#include "blas/plain/level1.h"

namespace qel {
namespace {

/// The rest of the arguments, c and s or the parameters, goes on as it is.
template <level1_member kMember, const auto& kRow, class T, class... Rest>
void turn(const core_int* n, T* x, const core_int* incx, T* y, const core_int* incy, Rest... rest) {
  update_driver<kShortestNativeFork>(kMember, n, x, incx, y, incy, [=](const core_int* length, T* xs, T* ys) {
    call_kernel<kRow>(length, xs, incx, ys, incy, rest...);
  });
}

}  // namespace
}  // namespace qel

namespace qel::core {

void srot(const core_int* n, float* x, const core_int* incx, float* y, const core_int* incy, const float* c,
          const float* s) {
  turn<level1_member::srot, kSrot>(n, x, incx, y, incy, c, s);
}
void drot(const core_int* n, double* x, const core_int* incx, double* y, const core_int* incy,
          const double* c, const double* s) {
  turn<level1_member::drot, kDrot>(n, x, incx, y, incy, c, s);
}
void csrot(const core_int* n, complex8* x, const core_int* incx, complex8* y, const core_int* incy,
           const float* c, const float* s) {
  turn<level1_member::csrot, kCsrot>(n, x, incx, y, incy, c, s);
}
void zdrot(const core_int* n, complex16* x, const core_int* incx, complex16* y, const core_int* incy,
           const double* c, const double* s) {
  turn<level1_member::zdrot, kZdrot>(n, x, incx, y, incy, c, s);
}

void srotg(float* a, float* b, float* c, float* s) { plain::rotg(a, b, c, s); }
void drotg(double* a, double* b, double* c, double* s) { plain::rotg(a, b, c, s); }
void crotg(complex8* a, const complex8* b, float* c, complex8* s) { plain::complex_rotg(a, *b, c, s); }
void zrotg(complex16* a, const complex16* b, double* c, complex16* s) { plain::complex_rotg(a, *b, c, s); }

void srotm(const core_int* n, float* x, const core_int* incx, float* y, const core_int* incy,
           const float* param) {
  turn<level1_member::srotm, kSrotm>(n, x, incx, y, incy, param);
}
void drotm(const core_int* n, double* x, const core_int* incx, double* y, const core_int* incy,
           const double* param) {
  turn<level1_member::drotm, kDrotm>(n, x, incx, y, incy, param);
}

void srotmg(float* d1, float* d2, float* x1, const float* y1, float* param) {
  plain::rotmg(d1, d2, x1, *y1, param);
}
void drotmg(double* d1, double* d2, double* x1, const double* y1, double* param) {
  plain::rotmg(d1, d2, x1, *y1, param);
}

}  // namespace qel::core
