// SPDX-License-Identifier: BSD-3-Clause
// Core sums of absolute values, on the portable template. Arguments come by reference in Fortran order and
// go on by value; the header says what is computed and who calls.
#include "blas/level1/level1.h"
#include "blas/plain/level1.h"

namespace qel::core {

float sasum(const core_int* n, const float* x, const core_int* incx) { return plain::asum(*n, x, *incx); }
double dasum(const core_int* n, const double* x, const core_int* incx) { return plain::asum(*n, x, *incx); }
float scasum(const core_int* n, const complex8* x, const core_int* incx) { return plain::asum(*n, x, *incx); }
double dzasum(const core_int* n, const complex16* x, const core_int* incx) {
  return plain::asum(*n, x, *incx);
}

float scabs1(const complex8* z) { return abs1(*z); }
double dcabs1(const complex16* z) { return abs1(*z); }

}  // namespace qel::core
