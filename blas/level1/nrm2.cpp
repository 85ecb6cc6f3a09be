// SPDX-License-Identifier: BSD-3-Clause
// Core Euclidean norms: the kernel of the processor level, bound on first use.
#include "blas/level1/level1.h"
#include "blas/level1/level1_rows.h"

namespace qel::core {

float snrm2(const core_int* n, const float* x, const core_int* incx) {
  return call_kernel<kSnrm2>(n, x, incx);
}
double dnrm2(const core_int* n, const double* x, const core_int* incx) {
  return call_kernel<kDnrm2>(n, x, incx);
}
float scnrm2(const core_int* n, const complex8* x, const core_int* incx) {
  return call_kernel<kScnrm2>(n, x, incx);
}
double dznrm2(const core_int* n, const complex16* x, const core_int* incx) {
  return call_kernel<kDznrm2>(n, x, incx);
}

}  // namespace qel::core
