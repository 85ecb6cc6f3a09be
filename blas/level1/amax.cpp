// SPDX-License-Identifier: BSD-3-Clause
// Core search for the largest and the smallest element, on the portable templates. Arguments come by
// reference in Fortran order and go on by value; the header says what is computed and who calls.
#include "blas/level1/level1.h"
#include "blas/plain/level1.h"

namespace qel::core {

core_int isamax(const core_int* n, const float* x, const core_int* incx) { return plain::amax(*n, x, *incx); }
core_int idamax(const core_int* n, const double* x, const core_int* incx) {
  return plain::amax(*n, x, *incx);
}
core_int icamax(const core_int* n, const complex8* x, const core_int* incx) {
  return plain::amax(*n, x, *incx);
}
core_int izamax(const core_int* n, const complex16* x, const core_int* incx) {
  return plain::amax(*n, x, *incx);
}

core_int isamin(const core_int* n, const float* x, const core_int* incx) { return plain::amin(*n, x, *incx); }
core_int idamin(const core_int* n, const double* x, const core_int* incx) {
  return plain::amin(*n, x, *incx);
}
core_int icamin(const core_int* n, const complex8* x, const core_int* incx) {
  return plain::amin(*n, x, *incx);
}
core_int izamin(const core_int* n, const complex16* x, const core_int* incx) {
  return plain::amin(*n, x, *incx);
}

}  // namespace qel::core
