// SPDX-License-Identifier: BSD-3-Clause
// Core plane rotations: applied by the kernel of the processor level, bound on first use; made by the portable
// templates.
#include "blas/level1/level1.h"
#include "blas/level1/level1_rows.h"
#include "blas/plain/level1.h"

namespace qel::core {

void srot(const core_int* n, float* x, const core_int* incx, float* y, const core_int* incy, const float* c,
          const float* s) {
  call_kernel<kSrot>(n, x, incx, y, incy, c, s);
}
void drot(const core_int* n, double* x, const core_int* incx, double* y, const core_int* incy,
          const double* c, const double* s) {
  call_kernel<kDrot>(n, x, incx, y, incy, c, s);
}
void csrot(const core_int* n, complex8* x, const core_int* incx, complex8* y, const core_int* incy,
           const float* c, const float* s) {
  call_kernel<kCsrot>(n, x, incx, y, incy, c, s);
}
void zdrot(const core_int* n, complex16* x, const core_int* incx, complex16* y, const core_int* incy,
           const double* c, const double* s) {
  call_kernel<kZdrot>(n, x, incx, y, incy, c, s);
}

void srotg(float* a, float* b, float* c, float* s) { plain::rotg(a, b, c, s); }
void drotg(double* a, double* b, double* c, double* s) { plain::rotg(a, b, c, s); }
void crotg(complex8* a, const complex8* b, float* c, complex8* s) { plain::complex_rotg(a, *b, c, s); }
void zrotg(complex16* a, const complex16* b, double* c, complex16* s) { plain::complex_rotg(a, *b, c, s); }

void srotm(const core_int* n, float* x, const core_int* incx, float* y, const core_int* incy,
           const float* param) {
  call_kernel<kSrotm>(n, x, incx, y, incy, param);
}
void drotm(const core_int* n, double* x, const core_int* incx, double* y, const core_int* incy,
           const double* param) {
  call_kernel<kDrotm>(n, x, incx, y, incy, param);
}

void srotmg(float* d1, float* d2, float* x1, const float* y1, float* param) {
  plain::rotmg(d1, d2, x1, *y1, param);
}
void drotmg(double* d1, double* d2, double* x1, const double* y1, double* param) {
  plain::rotmg(d1, d2, x1, *y1, param);
}

}  // namespace qel::core
