// SPDX-License-Identifier: BSD-3-Clause
// Core Euclidean norms, on the portable template. Arguments come by reference in Fortran order and go on by
// value; the header says what is computed and who calls.
#include "blas/level1/level1.h"
#include "blas/plain/level1.h"

namespace qel::core {

float snrm2(const core_int* n, const float* x, const core_int* incx) { return plain::nrm2(*n, x, *incx); }
double dnrm2(const core_int* n, const double* x, const core_int* incx) { return plain::nrm2(*n, x, *incx); }
float scnrm2(const core_int* n, const complex8* x, const core_int* incx) { return plain::nrm2(*n, x, *incx); }
double dznrm2(const core_int* n, const complex16* x, const core_int* incx) {
  return plain::nrm2(*n, x, *incx);
}

}  // namespace qel::core
