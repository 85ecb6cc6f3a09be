// SPDX-License-Identifier: BSD-3-Clause
// Core search for the largest and the smallest element: the kernel of the processor level, bound on first
// use.
#include "blas/level1/level1.h"
#include "blas/level1/level1_rows.h"

namespace qel::core {

core_int isamax(const core_int* n, const float* x, const core_int* incx) {
  return call_kernel<kIsamax>(n, x, incx);
}
core_int idamax(const core_int* n, const double* x, const core_int* incx) {
  return call_kernel<kIdamax>(n, x, incx);
}
core_int icamax(const core_int* n, const complex8* x, const core_int* incx) {
  return call_kernel<kIcamax>(n, x, incx);
}
core_int izamax(const core_int* n, const complex16* x, const core_int* incx) {
  return call_kernel<kIzamax>(n, x, incx);
}

core_int isamin(const core_int* n, const float* x, const core_int* incx) {
  return call_kernel<kIsamin>(n, x, incx);
}
core_int idamin(const core_int* n, const double* x, const core_int* incx) {
  return call_kernel<kIdamin>(n, x, incx);
}
core_int icamin(const core_int* n, const complex8* x, const core_int* incx) {
  return call_kernel<kIcamin>(n, x, incx);
}
core_int izamin(const core_int* n, const complex16* x, const core_int* incx) {
  return call_kernel<kIzamin>(n, x, incx);
}

}  // namespace qel::core
