// SPDX-License-Identifier: BSD-3-Clause
// The kernels' names over dot_complex() of the file that includes this.
#pragma once

namespace qel::QEL_LEVEL {

void cdotu(complex8* result, const core_int* n, const complex8* x, const core_int* incx, const complex8* y,
           const core_int* incy) {
  set_element(result, dot_complex<false>(*n, x, *incx, y, *incy));
}
void cdotc(complex8* result, const core_int* n, const complex8* x, const core_int* incx, const complex8* y,
           const core_int* incy) {
  set_element(result, dot_complex<true>(*n, x, *incx, y, *incy));
}
void zdotu(complex16* result, const core_int* n, const complex16* x, const core_int* incx, const complex16* y,
           const core_int* incy) {
  set_element(result, dot_complex<false>(*n, x, *incx, y, *incy));
}
void zdotc(complex16* result, const core_int* n, const complex16* x, const core_int* incx, const complex16* y,
           const core_int* incy) {
  set_element(result, dot_complex<true>(*n, x, *incx, y, *incy));
}

}  // namespace qel::QEL_LEVEL
