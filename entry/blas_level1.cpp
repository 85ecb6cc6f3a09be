// SPDX-License-Identifier: BSD-3-Clause
// Entries of the vector operations: plain widening, no checks. They cost a few stores, since matrices with
// odd strides are worked through them element by element.
#include "blas/level1/level1.h"
#include "entry/shapes.h"
#include "qel/blas.h"

using qel::complex16;
using qel::complex8;
using qel::entry::call_widened;
namespace core = qel::core;

extern "C" {

void scopy(const int* n, const float* x, const int* incx, float* y, const int* incy) {
  call_widened(__func__, core::scopy, n, x, incx, y, incy);
}
void dcopy(const int* n, const double* x, const int* incx, double* y, const int* incy) {
  call_widened(__func__, core::dcopy, n, x, incx, y, incy);
}
void ccopy(const int* n, const complex8* x, const int* incx, complex8* y, const int* incy) {
  call_widened(__func__, core::ccopy, n, x, incx, y, incy);
}
void zcopy(const int* n, const complex16* x, const int* incx, complex16* y, const int* incy) {
  call_widened(__func__, core::zcopy, n, x, incx, y, incy);
}

void saxpy(const int* n, const float* alpha, const float* x, const int* incx, float* y, const int* incy) {
  call_widened(__func__, core::saxpy, n, alpha, x, incx, y, incy);
}
void daxpy(const int* n, const double* alpha, const double* x, const int* incx, double* y, const int* incy) {
  call_widened(__func__, core::daxpy, n, alpha, x, incx, y, incy);
}
void caxpy(const int* n, const complex8* alpha, const complex8* x, const int* incx, complex8* y,
           const int* incy) {
  call_widened(__func__, core::caxpy, n, alpha, x, incx, y, incy);
}
void zaxpy(const int* n, const complex16* alpha, const complex16* x, const int* incx, complex16* y,
           const int* incy) {
  call_widened(__func__, core::zaxpy, n, alpha, x, incx, y, incy);
}

void sscal(const int* n, const float* alpha, float* x, const int* incx) {
  call_widened(__func__, core::sscal, n, alpha, x, incx);
}
void dscal(const int* n, const double* alpha, double* x, const int* incx) {
  call_widened(__func__, core::dscal, n, alpha, x, incx);
}
void cscal(const int* n, const complex8* alpha, complex8* x, const int* incx) {
  call_widened(__func__, core::cscal, n, alpha, x, incx);
}
void csscal(const int* n, const float* alpha, complex8* x, const int* incx) {
  call_widened(__func__, core::csscal, n, alpha, x, incx);
}
void zscal(const int* n, const complex16* alpha, complex16* x, const int* incx) {
  call_widened(__func__, core::zscal, n, alpha, x, incx);
}
void zdscal(const int* n, const double* alpha, complex16* x, const int* incx) {
  call_widened(__func__, core::zdscal, n, alpha, x, incx);
}

float sdot(const int* n, const float* x, const int* incx, const float* y, const int* incy) {
  return call_widened(__func__, core::sdot, n, x, incx, y, incy);
}
double ddot(const int* n, const double* x, const int* incx, const double* y, const int* incy) {
  return call_widened(__func__, core::ddot, n, x, incx, y, incy);
}

void cdotu(complex8* result, const int* n, const complex8* x, const int* incx, const complex8* y,
           const int* incy) {
  call_widened(__func__, core::cdotu, result, n, x, incx, y, incy);
}
void zdotu(complex16* result, const int* n, const complex16* x, const int* incx, const complex16* y,
           const int* incy) {
  call_widened(__func__, core::zdotu, result, n, x, incx, y, incy);
}

void cdotc(complex8* result, const int* n, const complex8* x, const int* incx, const complex8* y,
           const int* incy) {
  call_widened(__func__, core::cdotc, result, n, x, incx, y, incy);
}
void zdotc(complex16* result, const int* n, const complex16* x, const int* incx, const complex16* y,
           const int* incy) {
  call_widened(__func__, core::zdotc, result, n, x, incx, y, incy);
}

float sasum(const int* n, const float* x, const int* incx) {
  return call_widened(__func__, core::sasum, n, x, incx);
}
double dasum(const int* n, const double* x, const int* incx) {
  return call_widened(__func__, core::dasum, n, x, incx);
}
float scasum(const int* n, const complex8* x, const int* incx) {
  return call_widened(__func__, core::scasum, n, x, incx);
}
double dzasum(const int* n, const complex16* x, const int* incx) {
  return call_widened(__func__, core::dzasum, n, x, incx);
}

double dnrm2(const int* n, const double* x, const int* incx) {
  return call_widened(__func__, core::dnrm2, n, x, incx);
}
double dznrm2(const int* n, const complex16* x, const int* incx) {
  return call_widened(__func__, core::dznrm2, n, x, incx);
}

int isamax(const int* n, const float* x, const int* incx) {
  return static_cast<int>(call_widened(__func__, core::isamax, n, x, incx));
}
int idamax(const int* n, const double* x, const int* incx) {
  return static_cast<int>(call_widened(__func__, core::idamax, n, x, incx));
}
int icamax(const int* n, const complex8* x, const int* incx) {
  return static_cast<int>(call_widened(__func__, core::icamax, n, x, incx));
}
int izamax(const int* n, const complex16* x, const int* incx) {
  return static_cast<int>(call_widened(__func__, core::izamax, n, x, incx));
}

int isamin(const int* n, const float* x, const int* incx) {
  return static_cast<int>(call_widened(__func__, core::isamin, n, x, incx));
}
int idamin(const int* n, const double* x, const int* incx) {
  return static_cast<int>(call_widened(__func__, core::idamin, n, x, incx));
}
int icamin(const int* n, const complex8* x, const int* incx) {
  return static_cast<int>(call_widened(__func__, core::icamin, n, x, incx));
}
int izamin(const int* n, const complex16* x, const int* incx) {
  return static_cast<int>(call_widened(__func__, core::izamin, n, x, incx));
}

// The Fortran names. Lengths of option letters, which Fortran passes behind the arguments, are not looked at.
// Fortran functions return complex values, in the registers of a C struct by value.
QEL_API complex8 cdotu_(const int* n, const complex8* x, const int* incx, const complex8* y, const int* incy);
complex8 cdotu_(const int* n, const complex8* x, const int* incx, const complex8* y, const int* incy) {
  complex8 result = {0, 0};
  cdotu(&result, n, x, incx, y, incy);
  return result;
}
QEL_API complex16 zdotu_(const int* n, const complex16* x, const int* incx, const complex16* y,
                         const int* incy);
complex16 zdotu_(const int* n, const complex16* x, const int* incx, const complex16* y, const int* incy) {
  complex16 result = {0, 0};
  zdotu(&result, n, x, incx, y, incy);
  return result;
}
QEL_API complex8 cdotc_(const int* n, const complex8* x, const int* incx, const complex8* y, const int* incy);
complex8 cdotc_(const int* n, const complex8* x, const int* incx, const complex8* y, const int* incy) {
  complex8 result = {0, 0};
  cdotc(&result, n, x, incx, y, incy);
  return result;
}
QEL_API complex16 zdotc_(const int* n, const complex16* x, const int* incx, const complex16* y,
                         const int* incy);
complex16 zdotc_(const int* n, const complex16* x, const int* incx, const complex16* y, const int* incy) {
  complex16 result = {0, 0};
  zdotc(&result, n, x, incx, y, incy);
  return result;
}

QEL_API decltype(scopy) scopy_ __attribute__((alias("scopy")));
QEL_API decltype(dcopy) dcopy_ __attribute__((alias("dcopy")));
QEL_API decltype(ccopy) ccopy_ __attribute__((alias("ccopy")));
QEL_API decltype(zcopy) zcopy_ __attribute__((alias("zcopy")));
QEL_API decltype(saxpy) saxpy_ __attribute__((alias("saxpy")));
QEL_API decltype(daxpy) daxpy_ __attribute__((alias("daxpy")));
QEL_API decltype(caxpy) caxpy_ __attribute__((alias("caxpy")));
QEL_API decltype(zaxpy) zaxpy_ __attribute__((alias("zaxpy")));
QEL_API decltype(sscal) sscal_ __attribute__((alias("sscal")));
QEL_API decltype(dscal) dscal_ __attribute__((alias("dscal")));
QEL_API decltype(cscal) cscal_ __attribute__((alias("cscal")));
QEL_API decltype(csscal) csscal_ __attribute__((alias("csscal")));
QEL_API decltype(zscal) zscal_ __attribute__((alias("zscal")));
QEL_API decltype(zdscal) zdscal_ __attribute__((alias("zdscal")));
QEL_API decltype(sdot) sdot_ __attribute__((alias("sdot")));
QEL_API decltype(ddot) ddot_ __attribute__((alias("ddot")));
QEL_API decltype(sasum) sasum_ __attribute__((alias("sasum")));
QEL_API decltype(dasum) dasum_ __attribute__((alias("dasum")));
QEL_API decltype(scasum) scasum_ __attribute__((alias("scasum")));
QEL_API decltype(dzasum) dzasum_ __attribute__((alias("dzasum")));
QEL_API decltype(dnrm2) dnrm2_ __attribute__((alias("dnrm2")));
QEL_API decltype(dznrm2) dznrm2_ __attribute__((alias("dznrm2")));
QEL_API decltype(isamax) isamax_ __attribute__((alias("isamax")));
QEL_API decltype(idamax) idamax_ __attribute__((alias("idamax")));
QEL_API decltype(icamax) icamax_ __attribute__((alias("icamax")));
QEL_API decltype(izamax) izamax_ __attribute__((alias("izamax")));
QEL_API decltype(isamin) isamin_ __attribute__((alias("isamin")));
QEL_API decltype(idamin) idamin_ __attribute__((alias("idamin")));
QEL_API decltype(icamin) icamin_ __attribute__((alias("icamin")));
QEL_API decltype(izamin) izamin_ __attribute__((alias("izamin")));

}  // extern "C"
