// SPDX-License-Identifier: BSD-3-Clause
// The kernels' names over scal() and real_scal() of the file that includes this.
#pragma once

namespace qel::QEL_LEVEL {

void sscal(const core_int* n, const float* alpha, float* x, const core_int* incx) {
  scal(*n, *alpha, x, *incx);
}
void dscal(const core_int* n, const double* alpha, double* x, const core_int* incx) {
  scal(*n, *alpha, x, *incx);
}
void cscal(const core_int* n, const complex8* alpha, complex8* x, const core_int* incx) {
  scal(*n, *alpha, x, *incx);
}
void zscal(const core_int* n, const complex16* alpha, complex16* x, const core_int* incx) {
  scal(*n, *alpha, x, *incx);
}
void csscal(const core_int* n, const float* alpha, complex8* x, const core_int* incx) {
  real_scal(*n, *alpha, x, *incx);
}
void zdscal(const core_int* n, const double* alpha, complex16* x, const core_int* incx) {
  real_scal(*n, *alpha, x, *incx);
}

}  // namespace qel::QEL_LEVEL
