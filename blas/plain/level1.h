// SPDX-License-Identifier: BSD-3-Clause
// Portable level 1 of the BLAS: templates over float, double, complex8, complex16 with arguments by value,
// instantiated in this folder. A vector is given by its lowest address whatever the sign of its stride, and
// n <= 0 is no work. The core routines in blas/level1 forward to them.
#pragma once

#include "service/complex_arithmetic.h"

namespace qel::plain {

// vector_sums.cpp

/// Sum of x_i y_i.
template <class T>
T dot(core_int n, const T* x, core_int incx, const T* y, core_int incy);
/// Sum of conj(x_i) y_i.
template <class T>
T dotc(core_int n, const T* x, core_int incx, const T* y, core_int incy);
/// start plus the sum of x_i y_i, added in double.
double double_dot(core_int n, double start, const float* x, core_int incx, const float* y, core_int incy);
/// Sum of |re| + |im|; stride 0 adds the one element n times.
template <class T>
real_of<T> asum(core_int n, const T* x, core_int incx);
/// Euclidean norm by running scale and sum of squares; the elements are visited from the lowest address.
template <class T>
real_of<T> nrm2(core_int n, const T* x, core_int incx);

// vector_extremes.cpp

/// 1-based index of the first element of largest |re| + |im|; 0 if n or incx is not above 0.
template <class T>
core_int amax(core_int n, const T* x, core_int incx);
/// As amax, for the smallest.
template <class T>
core_int amin(core_int n, const T* x, core_int incx);

// vector_updates.cpp

/// y += alpha x
template <class T>
void axpy(core_int n, T alpha, const T* x, core_int incx, T* y, core_int incy);
template <class T>
void copy(core_int n, const T* x, core_int incx, T* y, core_int incy);
template <class T>
void swap(core_int n, T* x, core_int incx, T* y, core_int incy);
/// x = alpha x; alpha = 0 multiplies, so that NaN stays.
template <class T>
void scal(core_int n, T alpha, T* x, core_int incx);
/// x = alpha x with a real factor.
template <class T>
void real_scal(core_int n, real_of<T> alpha, T* x, core_int incx);

// rotations.cpp

/// (x_i, y_i) = (c x_i + s y_i, c y_i - s x_i)
template <class T>
void rot(core_int n, T* x, core_int incx, T* y, core_int incy, real_of<T> c, real_of<T> s);
/// Makes the rotation that turns (a, b) into (r, 0); a becomes r, b the one number that c and s follow from.
template <class T>
void rotg(T* a, T* b, T* c, T* s);
/// Complex: c real; a becomes r.
template <class T>
void complex_rotg(T* a, T b, real_of<T>* c, T* s);
/// Applies the modified rotation param = (flag, h11, h21, h12, h22).
template <class T>
void rotm(core_int n, T* x, core_int incx, T* y, core_int incy, const T* param);
/// Makes the modified rotation that zeroes the second component of (sqrt(d1) x1, sqrt(d2) y1).
template <class T>
void rotmg(T* d1, T* d2, T* x1, T y1, T* param);

}  // namespace qel::plain
