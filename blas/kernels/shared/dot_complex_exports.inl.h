// SPDX-License-Identifier: BSD-3-Clause
// The kernels' names over dot_complex() of the file that includes this.
#pragma once

namespace qel::QEL_LEVEL {
namespace {

// Both parts by one store: the caller reads them by one load, which would wait for two.
inline void set_sum(complex8* result, complex8 sum) {
  put_low_element(result, _mm_unpacklo_ps(_mm_set_ss(sum.real), _mm_set_ss(sum.imag)));
}
inline void set_sum(complex16* result, complex16 sum) {
  _mm_storeu_pd(reinterpret_cast<double*>(result), _mm_set_pd(sum.imag, sum.real));
}

}  // namespace

void cdotu(complex8* result, const core_int* n, const complex8* x, const core_int* incx, const complex8* y,
           const core_int* incy) {
  set_sum(result, dot_complex<false>(*n, x, *incx, y, *incy));
}
void cdotc(complex8* result, const core_int* n, const complex8* x, const core_int* incx, const complex8* y,
           const core_int* incy) {
  set_sum(result, dot_complex<true>(*n, x, *incx, y, *incy));
}
void zdotu(complex16* result, const core_int* n, const complex16* x, const core_int* incx, const complex16* y,
           const core_int* incy) {
  set_sum(result, dot_complex<false>(*n, x, *incx, y, *incy));
}
void zdotc(complex16* result, const core_int* n, const complex16* x, const core_int* incx, const complex16* y,
           const core_int* incy) {
  set_sum(result, dot_complex<true>(*n, x, *incx, y, *incy));
}

}  // namespace qel::QEL_LEVEL
