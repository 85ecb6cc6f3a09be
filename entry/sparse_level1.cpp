// SPDX-License-Identifier: BSD-3-Clause
// Entries of the operations on compressed vectors: the positions go through a 64-bit copy.
#include "entry/shapes.h"
#include "qel/sparse.h"
#include "sparse/blas/level1.h"

using qel::complex16;
using qel::entry::call_sparse;
using qel::entry::in_ints;
namespace core = qel::core;

extern "C" {

void saxpyi(const int* n, const float* alpha, const float* x, const int* indx, float* y) {
  call_sparse(__func__, core::saxpyi, n, alpha, x, in_ints(indx, *n), y);
}
void daxpyi(const int* n, const double* alpha, const double* x, const int* indx, double* y) {
  call_sparse(__func__, core::daxpyi, n, alpha, x, in_ints(indx, *n), y);
}
void zaxpyi(const int* n, const complex16* alpha, const complex16* x, const int* indx, complex16* y) {
  call_sparse(__func__, core::zaxpyi, n, alpha, x, in_ints(indx, *n), y);
}

double ddoti(const int* n, const double* x, const int* indx, const double* y) {
  return call_sparse(__func__, core::ddoti, n, x, in_ints(indx, *n), y);
}

void zdotui(complex16* result, const int* n, const complex16* x, const int* indx, const complex16* y) {
  call_sparse(__func__, core::zdotui, result, n, x, in_ints(indx, *n), y);
}

void dgthr(const int* n, const double* y, double* x, const int* indx) {
  call_sparse(__func__, core::dgthr, n, y, x, in_ints(indx, *n));
}
void zgthr(const int* n, const complex16* y, complex16* x, const int* indx) {
  call_sparse(__func__, core::zgthr, n, y, x, in_ints(indx, *n));
}

void dgthrz(const int* n, double* y, double* x, const int* indx) {
  call_sparse(__func__, core::dgthrz, n, y, x, in_ints(indx, *n));
}
void zgthrz(const int* n, complex16* y, complex16* x, const int* indx) {
  call_sparse(__func__, core::zgthrz, n, y, x, in_ints(indx, *n));
}

void dsctr(const int* n, const double* x, const int* indx, double* y) {
  call_sparse(__func__, core::dsctr, n, x, in_ints(indx, *n), y);
}
void zsctr(const int* n, const complex16* x, const int* indx, complex16* y) {
  call_sparse(__func__, core::zsctr, n, x, in_ints(indx, *n), y);
}

// The Fortran names. Lengths of option letters, which Fortran passes behind the arguments, are not looked at.
// Fortran functions return complex values, in the registers of a C struct by value.
QEL_API complex16 zdotui_(const int* n, const complex16* x, const int* indx, const complex16* y);
complex16 zdotui_(const int* n, const complex16* x, const int* indx, const complex16* y) {
  complex16 result = {0, 0};
  zdotui(&result, n, x, indx, y);
  return result;
}

QEL_API decltype(saxpyi) saxpyi_ __attribute__((alias("saxpyi")));
QEL_API decltype(daxpyi) daxpyi_ __attribute__((alias("daxpyi")));
QEL_API decltype(zaxpyi) zaxpyi_ __attribute__((alias("zaxpyi")));
QEL_API decltype(ddoti) ddoti_ __attribute__((alias("ddoti")));
QEL_API decltype(dgthr) dgthr_ __attribute__((alias("dgthr")));
QEL_API decltype(zgthr) zgthr_ __attribute__((alias("zgthr")));
QEL_API decltype(dgthrz) dgthrz_ __attribute__((alias("dgthrz")));
QEL_API decltype(zgthrz) zgthrz_ __attribute__((alias("zgthrz")));
QEL_API decltype(dsctr) dsctr_ __attribute__((alias("dsctr")));
QEL_API decltype(zsctr) zsctr_ __attribute__((alias("zsctr")));

}  // extern "C"
