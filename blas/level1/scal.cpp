// SPDX-License-Identifier: BSD-3-Clause
// Core scaling of vectors: the kernel of the processor level, bound on first use.
#include "blas/level1/level1.h"
#include "blas/level1/level1_rows.h"

namespace qel::core {

void sscal(const core_int* n, const float* alpha, float* x, const core_int* incx) {
  call_kernel<kSscal>(n, alpha, x, incx);
}
void dscal(const core_int* n, const double* alpha, double* x, const core_int* incx) {
  call_kernel<kDscal>(n, alpha, x, incx);
}
void cscal(const core_int* n, const complex8* alpha, complex8* x, const core_int* incx) {
  call_kernel<kCscal>(n, alpha, x, incx);
}
void zscal(const core_int* n, const complex16* alpha, complex16* x, const core_int* incx) {
  call_kernel<kZscal>(n, alpha, x, incx);
}
void csscal(const core_int* n, const float* alpha, complex8* x, const core_int* incx) {
  call_kernel<kCsscal>(n, alpha, x, incx);
}
void zdscal(const core_int* n, const double* alpha, complex16* x, const core_int* incx) {
  call_kernel<kZdscal>(n, alpha, x, incx);
}

}  // namespace qel::core
