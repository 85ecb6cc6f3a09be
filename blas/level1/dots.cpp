// SPDX-License-Identifier: BSD-3-Clause
// Core inner products, on the portable templates. ddot has kernels per processor level and stands in
// dot_d.cpp. Arguments come by reference in Fortran order and go on by value; the header says what is
// computed and who calls.
#include "blas/level1/level1.h"
#include "blas/plain/level1.h"

namespace qel::core {

float sdot(const core_int* n, const float* x, const core_int* incx, const float* y, const core_int* incy) {
  return plain::dot(*n, x, *incx, y, *incy);
}

void cdotu(complex8* result, const core_int* n, const complex8* x, const core_int* incx, const complex8* y,
           const core_int* incy) {
  *result = plain::dot(*n, x, *incx, y, *incy);
}
void zdotu(complex16* result, const core_int* n, const complex16* x, const core_int* incx, const complex16* y,
           const core_int* incy) {
  *result = plain::dot(*n, x, *incx, y, *incy);
}
void cdotc(complex8* result, const core_int* n, const complex8* x, const core_int* incx, const complex8* y,
           const core_int* incy) {
  *result = plain::dotc(*n, x, *incx, y, *incy);
}
void zdotc(complex16* result, const core_int* n, const complex16* x, const core_int* incx, const complex16* y,
           const core_int* incy) {
  *result = plain::dotc(*n, x, *incx, y, *incy);
}

double dsdot(const core_int* n, const float* x, const core_int* incx, const float* y, const core_int* incy) {
  return plain::double_dot(*n, 0, x, *incx, y, *incy);
}
float sdsdot(const core_int* n, const float* sb, const float* x, const core_int* incx, const float* y,
             const core_int* incy) {
  return static_cast<float>(plain::double_dot(*n, *sb, x, *incx, y, *incy));
}

}  // namespace qel::core
