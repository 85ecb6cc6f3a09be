// SPDX-License-Identifier: BSD-3-Clause
// C names of BLAS level 1 over the core: vectors of n elements, strides of either sign. Positions of
// elements count from 0; nothing is refused.
#include "blas/level1/level1.h"

#include "dropin/cblas_names.h"
#include "dropin/norm.h"
#include "dropin/widened_call.h"

namespace qel::dropin {

namespace {

// A core position, 0 for none, as C callers count; no element is 0 too.
size_t from_zero(core_int position) { return position > 0 ? static_cast<size_t>(position - 1) : 0; }

}  // namespace

extern "C" {

float cblas_sdot(int n, const float* x, int incx, const float* y, int incy) {
  return call(core::sdot, &n, x, &incx, y, &incy);
}
double cblas_ddot(int n, const double* x, int incx, const double* y, int incy) {
  return call(core::ddot, &n, x, &incx, y, &incy);
}
double cblas_dsdot(int n, const float* x, int incx, const float* y, int incy) {
  return call(core::dsdot, &n, x, &incx, y, &incy);
}
float cblas_sdsdot(int n, float b, const float* x, int incx, const float* y, int incy) {
  return call(core::sdsdot, &n, &b, x, &incx, y, &incy);
}
void cblas_cdotu_sub(int n, const complex8* x, int incx, const complex8* y, int incy, complex8* sum) {
  call(core::cdotu, sum, &n, x, &incx, y, &incy);
}
void cblas_cdotc_sub(int n, const complex8* x, int incx, const complex8* y, int incy, complex8* sum) {
  call(core::cdotc, sum, &n, x, &incx, y, &incy);
}
void cblas_zdotu_sub(int n, const complex16* x, int incx, const complex16* y, int incy, complex16* sum) {
  call(core::zdotu, sum, &n, x, &incx, y, &incy);
}
void cblas_zdotc_sub(int n, const complex16* x, int incx, const complex16* y, int incy, complex16* sum) {
  call(core::zdotc, sum, &n, x, &incx, y, &incy);
}

void cblas_saxpy(int n, float alpha, const float* x, int incx, float* y, int incy) {
  call(core::saxpy, &n, &alpha, x, &incx, y, &incy);
}
void cblas_daxpy(int n, double alpha, const double* x, int incx, double* y, int incy) {
  call(core::daxpy, &n, &alpha, x, &incx, y, &incy);
}
void cblas_caxpy(int n, const complex8* alpha, const complex8* x, int incx, complex8* y, int incy) {
  call(core::caxpy, &n, alpha, x, &incx, y, &incy);
}
void cblas_zaxpy(int n, const complex16* alpha, const complex16* x, int incx, complex16* y, int incy) {
  call(core::zaxpy, &n, alpha, x, &incx, y, &incy);
}

void cblas_scopy(int n, const float* x, int incx, float* y, int incy) {
  call(core::scopy, &n, x, &incx, y, &incy);
}
void cblas_dcopy(int n, const double* x, int incx, double* y, int incy) {
  call(core::dcopy, &n, x, &incx, y, &incy);
}
void cblas_ccopy(int n, const complex8* x, int incx, complex8* y, int incy) {
  call(core::ccopy, &n, x, &incx, y, &incy);
}
void cblas_zcopy(int n, const complex16* x, int incx, complex16* y, int incy) {
  call(core::zcopy, &n, x, &incx, y, &incy);
}

void cblas_sswap(int n, float* x, int incx, float* y, int incy) { call(core::sswap, &n, x, &incx, y, &incy); }
void cblas_dswap(int n, double* x, int incx, double* y, int incy) {
  call(core::dswap, &n, x, &incx, y, &incy);
}
void cblas_cswap(int n, complex8* x, int incx, complex8* y, int incy) {
  call(core::cswap, &n, x, &incx, y, &incy);
}
void cblas_zswap(int n, complex16* x, int incx, complex16* y, int incy) {
  call(core::zswap, &n, x, &incx, y, &incy);
}

void cblas_sscal(int n, float alpha, float* x, int incx) { call(core::sscal, &n, &alpha, x, &incx); }
void cblas_dscal(int n, double alpha, double* x, int incx) { call(core::dscal, &n, &alpha, x, &incx); }
void cblas_cscal(int n, const complex8* alpha, complex8* x, int incx) {
  call(core::cscal, &n, alpha, x, &incx);
}
void cblas_zscal(int n, const complex16* alpha, complex16* x, int incx) {
  call(core::zscal, &n, alpha, x, &incx);
}
void cblas_csscal(int n, float alpha, complex8* x, int incx) { call(core::csscal, &n, &alpha, x, &incx); }
void cblas_zdscal(int n, double alpha, complex16* x, int incx) { call(core::zdscal, &n, &alpha, x, &incx); }

float cblas_sasum(int n, const float* x, int incx) { return call(core::sasum, &n, x, &incx); }
double cblas_dasum(int n, const double* x, int incx) { return call(core::dasum, &n, x, &incx); }
float cblas_scasum(int n, const complex8* x, int incx) { return call(core::scasum, &n, x, &incx); }
double cblas_dzasum(int n, const complex16* x, int incx) { return call(core::dzasum, &n, x, &incx); }

float cblas_snrm2(int n, const float* x, int incx) { return euclidean_norm(n, x, incx); }
double cblas_dnrm2(int n, const double* x, int incx) { return euclidean_norm(n, x, incx); }
float cblas_scnrm2(int n, const complex8* x, int incx) { return euclidean_norm(n, x, incx); }
double cblas_dznrm2(int n, const complex16* x, int incx) { return euclidean_norm(n, x, incx); }

size_t cblas_isamax(int n, const float* x, int incx) { return from_zero(call(core::isamax, &n, x, &incx)); }
size_t cblas_idamax(int n, const double* x, int incx) { return from_zero(call(core::idamax, &n, x, &incx)); }
size_t cblas_icamax(int n, const complex8* x, int incx) {
  return from_zero(call(core::icamax, &n, x, &incx));
}
size_t cblas_izamax(int n, const complex16* x, int incx) {
  return from_zero(call(core::izamax, &n, x, &incx));
}
size_t cblas_isamin(int n, const float* x, int incx) { return from_zero(call(core::isamin, &n, x, &incx)); }
size_t cblas_idamin(int n, const double* x, int incx) { return from_zero(call(core::idamin, &n, x, &incx)); }
size_t cblas_icamin(int n, const complex8* x, int incx) {
  return from_zero(call(core::icamin, &n, x, &incx));
}
size_t cblas_izamin(int n, const complex16* x, int incx) {
  return from_zero(call(core::izamin, &n, x, &incx));
}

void cblas_srot(int n, float* x, int incx, float* y, int incy, float c, float s) {
  call(core::srot, &n, x, &incx, y, &incy, &c, &s);
}
void cblas_drot(int n, double* x, int incx, double* y, int incy, double c, double s) {
  call(core::drot, &n, x, &incx, y, &incy, &c, &s);
}
void cblas_csrot(int n, complex8* x, int incx, complex8* y, int incy, float c, float s) {
  call(core::csrot, &n, x, &incx, y, &incy, &c, &s);
}
void cblas_zdrot(int n, complex16* x, int incx, complex16* y, int incy, double c, double s) {
  call(core::zdrot, &n, x, &incx, y, &incy, &c, &s);
}

void cblas_srotg(float* a, float* b, float* c, float* s) { call(core::srotg, a, b, c, s); }
void cblas_drotg(double* a, double* b, double* c, double* s) { call(core::drotg, a, b, c, s); }
void cblas_crotg(complex8* a, complex8* b, float* c, complex8* s) { call(core::crotg, a, b, c, s); }
void cblas_zrotg(complex16* a, complex16* b, double* c, complex16* s) { call(core::zrotg, a, b, c, s); }

void cblas_srotm(int n, float* x, int incx, float* y, int incy, const float* param) {
  call(core::srotm, &n, x, &incx, y, &incy, param);
}
void cblas_drotm(int n, double* x, int incx, double* y, int incy, const double* param) {
  call(core::drotm, &n, x, &incx, y, &incy, param);
}
void cblas_srotmg(float* d1, float* d2, float* x1, float y1, float* param) {
  call(core::srotmg, d1, d2, x1, &y1, param);
}
void cblas_drotmg(double* d1, double* d2, double* x1, double y1, double* param) {
  call(core::drotmg, d1, d2, x1, &y1, param);
}

float cblas_scabs1(const complex8* z) { return call(core::scabs1, z); }
double cblas_dcabs1(const complex16* z) { return call(core::dcabs1, z); }

}  // extern "C"

}  // namespace qel::dropin
