// SPDX-License-Identifier: BSD-3-Clause
// The kernels' names over nrm2() of the file that includes this.
#pragma once

namespace qel::QEL_LEVEL {

float snrm2(const core_int* n, const float* x, const core_int* incx) { return nrm2<float>(*n, x, *incx); }
double dnrm2(const core_int* n, const double* x, const core_int* incx) { return nrm2<double>(*n, x, *incx); }
float scnrm2(const core_int* n, const complex8* x, const core_int* incx) { return nrm2<float>(*n, x, *incx); }
double dznrm2(const core_int* n, const complex16* x, const core_int* incx) {
  return nrm2<double>(*n, x, *incx);
}

}  // namespace qel::QEL_LEVEL
