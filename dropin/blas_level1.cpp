// SPDX-License-Identifier: BSD-3-Clause
// Fortran names of BLAS level 1 over the core: vectors of n elements, strides of either sign. Nothing is
// refused here: sizes below 1 are no work.
#include "blas/level1/level1.h"

#include "dropin/blas_names.h"
#include "dropin/norm.h"
#include "dropin/widened_call.h"

namespace qel::dropin {

extern "C" {

float sdot_(const int* n, const float* x, const int* incx, const float* y, const int* incy) {
  return call(core::sdot, n, x, incx, y, incy);
}
double ddot_(const int* n, const double* x, const int* incx, const double* y, const int* incy) {
  return call(core::ddot, n, x, incx, y, incy);
}
double dsdot_(const int* n, const float* x, const int* incx, const float* y, const int* incy) {
  return call(core::dsdot, n, x, incx, y, incy);
}
float sdsdot_(const int* n, const float* b, const float* x, const int* incx, const float* y,
              const int* incy) {
  return call(core::sdsdot, n, b, x, incx, y, incy);
}
complex8 cdotu_(const int* n, const complex8* x, const int* incx, const complex8* y, const int* incy) {
  complex8 sum;
  call(core::cdotu, &sum, n, x, incx, y, incy);
  return sum;
}
complex8 cdotc_(const int* n, const complex8* x, const int* incx, const complex8* y, const int* incy) {
  complex8 sum;
  call(core::cdotc, &sum, n, x, incx, y, incy);
  return sum;
}
complex16 zdotu_(const int* n, const complex16* x, const int* incx, const complex16* y, const int* incy) {
  complex16 sum;
  call(core::zdotu, &sum, n, x, incx, y, incy);
  return sum;
}
complex16 zdotc_(const int* n, const complex16* x, const int* incx, const complex16* y, const int* incy) {
  complex16 sum;
  call(core::zdotc, &sum, n, x, incx, y, incy);
  return sum;
}

void saxpy_(const int* n, const float* alpha, const float* x, const int* incx, float* y, const int* incy) {
  call(core::saxpy, n, alpha, x, incx, y, incy);
}
void daxpy_(const int* n, const double* alpha, const double* x, const int* incx, double* y, const int* incy) {
  call(core::daxpy, n, alpha, x, incx, y, incy);
}
void caxpy_(const int* n, const complex8* alpha, const complex8* x, const int* incx, complex8* y,
            const int* incy) {
  call(core::caxpy, n, alpha, x, incx, y, incy);
}
void zaxpy_(const int* n, const complex16* alpha, const complex16* x, const int* incx, complex16* y,
            const int* incy) {
  call(core::zaxpy, n, alpha, x, incx, y, incy);
}

void scopy_(const int* n, const float* x, const int* incx, float* y, const int* incy) {
  call(core::scopy, n, x, incx, y, incy);
}
void dcopy_(const int* n, const double* x, const int* incx, double* y, const int* incy) {
  call(core::dcopy, n, x, incx, y, incy);
}
void ccopy_(const int* n, const complex8* x, const int* incx, complex8* y, const int* incy) {
  call(core::ccopy, n, x, incx, y, incy);
}
void zcopy_(const int* n, const complex16* x, const int* incx, complex16* y, const int* incy) {
  call(core::zcopy, n, x, incx, y, incy);
}

void sswap_(const int* n, float* x, const int* incx, float* y, const int* incy) {
  call(core::sswap, n, x, incx, y, incy);
}
void dswap_(const int* n, double* x, const int* incx, double* y, const int* incy) {
  call(core::dswap, n, x, incx, y, incy);
}
void cswap_(const int* n, complex8* x, const int* incx, complex8* y, const int* incy) {
  call(core::cswap, n, x, incx, y, incy);
}
void zswap_(const int* n, complex16* x, const int* incx, complex16* y, const int* incy) {
  call(core::zswap, n, x, incx, y, incy);
}

void sscal_(const int* n, const float* alpha, float* x, const int* incx) {
  call(core::sscal, n, alpha, x, incx);
}
void dscal_(const int* n, const double* alpha, double* x, const int* incx) {
  call(core::dscal, n, alpha, x, incx);
}
void cscal_(const int* n, const complex8* alpha, complex8* x, const int* incx) {
  call(core::cscal, n, alpha, x, incx);
}
void zscal_(const int* n, const complex16* alpha, complex16* x, const int* incx) {
  call(core::zscal, n, alpha, x, incx);
}
void csscal_(const int* n, const float* alpha, complex8* x, const int* incx) {
  call(core::csscal, n, alpha, x, incx);
}
void zdscal_(const int* n, const double* alpha, complex16* x, const int* incx) {
  call(core::zdscal, n, alpha, x, incx);
}

float sasum_(const int* n, const float* x, const int* incx) { return call(core::sasum, n, x, incx); }
double dasum_(const int* n, const double* x, const int* incx) { return call(core::dasum, n, x, incx); }
float scasum_(const int* n, const complex8* x, const int* incx) { return call(core::scasum, n, x, incx); }
double dzasum_(const int* n, const complex16* x, const int* incx) { return call(core::dzasum, n, x, incx); }

float snrm2_(const int* n, const float* x, const int* incx) { return euclidean_norm(*n, x, *incx); }
double dnrm2_(const int* n, const double* x, const int* incx) { return euclidean_norm(*n, x, *incx); }
float scnrm2_(const int* n, const complex8* x, const int* incx) { return euclidean_norm(*n, x, *incx); }
double dznrm2_(const int* n, const complex16* x, const int* incx) { return euclidean_norm(*n, x, *incx); }

int isamax_(const int* n, const float* x, const int* incx) {
  return static_cast<int>(call(core::isamax, n, x, incx));
}
int idamax_(const int* n, const double* x, const int* incx) {
  return static_cast<int>(call(core::idamax, n, x, incx));
}
int icamax_(const int* n, const complex8* x, const int* incx) {
  return static_cast<int>(call(core::icamax, n, x, incx));
}
int izamax_(const int* n, const complex16* x, const int* incx) {
  return static_cast<int>(call(core::izamax, n, x, incx));
}
int isamin_(const int* n, const float* x, const int* incx) {
  return static_cast<int>(call(core::isamin, n, x, incx));
}
int idamin_(const int* n, const double* x, const int* incx) {
  return static_cast<int>(call(core::idamin, n, x, incx));
}
int icamin_(const int* n, const complex8* x, const int* incx) {
  return static_cast<int>(call(core::icamin, n, x, incx));
}
int izamin_(const int* n, const complex16* x, const int* incx) {
  return static_cast<int>(call(core::izamin, n, x, incx));
}

void srot_(const int* n, float* x, const int* incx, float* y, const int* incy, const float* c,
           const float* s) {
  call(core::srot, n, x, incx, y, incy, c, s);
}
void drot_(const int* n, double* x, const int* incx, double* y, const int* incy, const double* c,
           const double* s) {
  call(core::drot, n, x, incx, y, incy, c, s);
}
void csrot_(const int* n, complex8* x, const int* incx, complex8* y, const int* incy, const float* c,
            const float* s) {
  call(core::csrot, n, x, incx, y, incy, c, s);
}
void zdrot_(const int* n, complex16* x, const int* incx, complex16* y, const int* incy, const double* c,
            const double* s) {
  call(core::zdrot, n, x, incx, y, incy, c, s);
}

void srotg_(float* a, float* b, float* c, float* s) { call(core::srotg, a, b, c, s); }
void drotg_(double* a, double* b, double* c, double* s) { call(core::drotg, a, b, c, s); }
void crotg_(complex8* a, complex8* b, float* c, complex8* s) { call(core::crotg, a, b, c, s); }
void zrotg_(complex16* a, complex16* b, double* c, complex16* s) { call(core::zrotg, a, b, c, s); }

void srotm_(const int* n, float* x, const int* incx, float* y, const int* incy, const float* param) {
  call(core::srotm, n, x, incx, y, incy, param);
}
void drotm_(const int* n, double* x, const int* incx, double* y, const int* incy, const double* param) {
  call(core::drotm, n, x, incx, y, incy, param);
}
void srotmg_(float* d1, float* d2, float* x1, const float* y1, float* param) {
  call(core::srotmg, d1, d2, x1, y1, param);
}
void drotmg_(double* d1, double* d2, double* x1, const double* y1, double* param) {
  call(core::drotmg, d1, d2, x1, y1, param);
}

float scabs1_(const complex8* z) { return call(core::scabs1, z); }
double dcabs1_(const complex16* z) { return call(core::dcabs1, z); }

}  // extern "C"

}  // namespace qel::dropin
