// SPDX-License-Identifier: BSD-3-Clause
// Level 1 of the core BLAS: vector operations. All arguments by reference, sizes and strides as core_int.
// Element i of a vector of stride inc stands at x + i * inc, for a negative stride at x + (i + 1 - n) * inc:
// the base is always the lowest address. n <= 0 is no work. Complex results go to the address given first.
// Called by the public entries, the drop-ins and lapack/plain_names.cpp.
#pragma once

#include "service/core_types.h"

namespace qel::core {

// dots.cpp; ddot stands in dot_d.cpp: sum of x_i y_i (dotc: conj(x_i) y_i). dsdot and sdsdot add in double;
// sdsdot starts at sb.
float sdot(const core_int* n, const float* x, const core_int* incx, const float* y, const core_int* incy);
double ddot(const core_int* n, const double* x, const core_int* incx, const double* y, const core_int* incy);

void cdotu(complex8* result, const core_int* n, const complex8* x, const core_int* incx, const complex8* y,
           const core_int* incy);
void zdotu(complex16* result, const core_int* n, const complex16* x, const core_int* incx, const complex16* y,
           const core_int* incy);
void cdotc(complex8* result, const core_int* n, const complex8* x, const core_int* incx, const complex8* y,
           const core_int* incy);
void zdotc(complex16* result, const core_int* n, const complex16* x, const core_int* incx, const complex16* y,
           const core_int* incy);

double dsdot(const core_int* n, const float* x, const core_int* incx, const float* y, const core_int* incy);
float sdsdot(const core_int* n, const float* sb, const float* x, const core_int* incx, const float* y,
             const core_int* incy);

// axpy.cpp: y = alpha x + y.
void saxpy(const core_int* n, const float* alpha, const float* x, const core_int* incx, float* y,
           const core_int* incy);
void daxpy(const core_int* n, const double* alpha, const double* x, const core_int* incx, double* y,
           const core_int* incy);
void caxpy(const core_int* n, const complex8* alpha, const complex8* x, const core_int* incx, complex8* y,
           const core_int* incy);
void zaxpy(const core_int* n, const complex16* alpha, const complex16* x, const core_int* incx, complex16* y,
           const core_int* incy);

// copy.cpp: y = x; x and y exchanged.
void scopy(const core_int* n, const float* x, const core_int* incx, float* y, const core_int* incy);
void dcopy(const core_int* n, const double* x, const core_int* incx, double* y, const core_int* incy);
void ccopy(const core_int* n, const complex8* x, const core_int* incx, complex8* y, const core_int* incy);
void zcopy(const core_int* n, const complex16* x, const core_int* incx, complex16* y, const core_int* incy);

void sswap(const core_int* n, float* x, const core_int* incx, float* y, const core_int* incy);
void dswap(const core_int* n, double* x, const core_int* incx, double* y, const core_int* incy);
void cswap(const core_int* n, complex8* x, const core_int* incx, complex8* y, const core_int* incy);
void zswap(const core_int* n, complex16* x, const core_int* incx, complex16* y, const core_int* incy);

// scal.cpp: x = alpha x; csscal and zdscal with a real factor.
void sscal(const core_int* n, const float* alpha, float* x, const core_int* incx);
void dscal(const core_int* n, const double* alpha, double* x, const core_int* incx);
void cscal(const core_int* n, const complex8* alpha, complex8* x, const core_int* incx);
void zscal(const core_int* n, const complex16* alpha, complex16* x, const core_int* incx);
void csscal(const core_int* n, const float* alpha, complex8* x, const core_int* incx);
void zdscal(const core_int* n, const double* alpha, complex16* x, const core_int* incx);

// asum.cpp: sum of |x_i|, of |re| + |im| if complex.
float sasum(const core_int* n, const float* x, const core_int* incx);
double dasum(const core_int* n, const double* x, const core_int* incx);
float scasum(const core_int* n, const complex8* x, const core_int* incx);
double dzasum(const core_int* n, const complex16* x, const core_int* incx);

float scabs1(const complex8* z);
double dcabs1(const complex16* z);

// nrm2.cpp: Euclidean norm.
float snrm2(const core_int* n, const float* x, const core_int* incx);
double dnrm2(const core_int* n, const double* x, const core_int* incx);
float scnrm2(const core_int* n, const complex8* x, const core_int* incx);
double dznrm2(const core_int* n, const complex16* x, const core_int* incx);

// amax.cpp: 1-based index of the first element of largest or smallest |x_i| (complex: |re| + |im|); 0 if n or
// incx is not above 0.
core_int isamax(const core_int* n, const float* x, const core_int* incx);
core_int idamax(const core_int* n, const double* x, const core_int* incx);
core_int icamax(const core_int* n, const complex8* x, const core_int* incx);
core_int izamax(const core_int* n, const complex16* x, const core_int* incx);

core_int isamin(const core_int* n, const float* x, const core_int* incx);
core_int idamin(const core_int* n, const double* x, const core_int* incx);
core_int icamin(const core_int* n, const complex8* x, const core_int* incx);
core_int izamin(const core_int* n, const complex16* x, const core_int* incx);

// rot.cpp: plane rotations (x, y) = (c x + s y, c y - s x), and their making; modified rotations.
void srot(const core_int* n, float* x, const core_int* incx, float* y, const core_int* incy, const float* c,
          const float* s);
void drot(const core_int* n, double* x, const core_int* incx, double* y, const core_int* incy,
          const double* c, const double* s);
void csrot(const core_int* n, complex8* x, const core_int* incx, complex8* y, const core_int* incy,
           const float* c, const float* s);
void zdrot(const core_int* n, complex16* x, const core_int* incx, complex16* y, const core_int* incy,
           const double* c, const double* s);

void srotg(float* a, float* b, float* c, float* s);
void drotg(double* a, double* b, double* c, double* s);
void crotg(complex8* a, const complex8* b, float* c, complex8* s);
void zrotg(complex16* a, const complex16* b, double* c, complex16* s);

void srotm(const core_int* n, float* x, const core_int* incx, float* y, const core_int* incy,
           const float* param);
void drotm(const core_int* n, double* x, const core_int* incx, double* y, const core_int* incy,
           const double* param);

void srotmg(float* d1, float* d2, float* x1, const float* y1, float* param);
void drotmg(double* d1, double* d2, double* x1, const double* y1, double* param);

}  // namespace qel::core
