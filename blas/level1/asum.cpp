// SPDX-License-Identifier: BSD-3-Clause
// Core sums of absolute values: the kernel of the processor level, bound on first use.
#include "blas/level1/level1.h"
#include "blas/level1/level1_rows.h"
#include "service/complex_arithmetic.h"

namespace qel::core {

float sasum(const core_int* n, const float* x, const core_int* incx) {
  return call_kernel<kSasum>(n, x, incx);
}
double dasum(const core_int* n, const double* x, const core_int* incx) {
  return call_kernel<kDasum>(n, x, incx);
}
float scasum(const core_int* n, const complex8* x, const core_int* incx) {
  return call_kernel<kScasum>(n, x, incx);
}
double dzasum(const core_int* n, const complex16* x, const core_int* incx) {
  return call_kernel<kDzasum>(n, x, incx);
}

float scabs1(const complex8* z) { return abs1(*z); }
double dcabs1(const complex16* z) { return abs1(*z); }

}  // namespace qel::core
