// SPDX-License-Identifier: BSD-3-Clause
// Core scaling of vectors, on the portable templates. Arguments come by reference in Fortran order and go
// on by value; the header says what is computed and who calls.
#include "blas/level1/level1.h"
#include "blas/plain/level1.h"

namespace qel::core {

void sscal(const core_int* n, const float* alpha, float* x, const core_int* incx) {
  plain::scal(*n, *alpha, x, *incx);
}
void dscal(const core_int* n, const double* alpha, double* x, const core_int* incx) {
  plain::scal(*n, *alpha, x, *incx);
}
void cscal(const core_int* n, const complex8* alpha, complex8* x, const core_int* incx) {
  plain::scal(*n, *alpha, x, *incx);
}
void zscal(const core_int* n, const complex16* alpha, complex16* x, const core_int* incx) {
  plain::scal(*n, *alpha, x, *incx);
}
void csscal(const core_int* n, const float* alpha, complex8* x, const core_int* incx) {
  plain::real_scal(*n, *alpha, x, *incx);
}
void zdscal(const core_int* n, const double* alpha, complex16* x, const core_int* incx) {
  plain::real_scal(*n, *alpha, x, *incx);
}

}  // namespace qel::core
