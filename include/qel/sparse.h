/* SPDX-License-Identifier: BSD-3-Clause
 * Operations on a compressed vector and a full one. Plain C; every scalar is passed by its address.
 *
 *   n     entries of the compressed vector; n < 1 returns at once
 *   x     its n values;  indx their positions in y, counted from 1, in any order, not checked
 *   y     the full vector
 * Errors: no memory for the 64-bit copy of indx: xerbla (service.h) with the upper-case name and position
 * 1079; no array is touched.
 * Every name is there for Fortran too, with an underscore at its end.
 */
#ifndef QEL_SPARSE_H
#define QEL_SPARSE_H

#include "qel/export.h"
#include "qel/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/* ---- Level 1 ---- */

/* y[indx[k] - 1] += alpha * x[k] for k = 0..n-1, in this order; alpha exactly 0 returns at once.
 */
QEL_API void saxpyi(const int* n, const float* alpha, const float* x, const int* indx, float* y);
QEL_API void daxpyi(const int* n, const double* alpha, const double* x, const int* indx, double* y);
QEL_API void zaxpyi(const int* n, const _QEL_Complex16* alpha, const _QEL_Complex16* x, const int* indx,
                    _QEL_Complex16* y);

/* The sum of x[k] * y[indx[k] - 1]; 0 for n < 1 (and when memory is out).
 */
QEL_API double ddoti(const int* n, const double* x, const int* indx, const double* y);

/* result := the sum of x[k] * y[indx[k] - 1], no conjugation. The Fortran name zdotui_ returns the value.
 */
QEL_API void zdotui(_QEL_Complex16* result, const int* n, const _QEL_Complex16* x, const int* indx,
                    const _QEL_Complex16* y);

/* Gather: x[k] := y[indx[k] - 1].
 */
QEL_API void dgthr(const int* n, const double* y, double* x, const int* indx);
QEL_API void zgthr(const int* n, const _QEL_Complex16* y, _QEL_Complex16* x, const int* indx);

/* Gather and zero: x[k] := y[indx[k] - 1], then y[indx[k] - 1] := 0, one position after the other: a repeated
 * position gathers 0 the second time.
 */
QEL_API void dgthrz(const int* n, double* y, double* x, const int* indx);
QEL_API void zgthrz(const int* n, _QEL_Complex16* y, _QEL_Complex16* x, const int* indx);

/* Scatter: y[indx[k] - 1] := x[k]; of repeated positions the last one wins.
 */
QEL_API void dsctr(const int* n, const double* x, const int* indx, double* y);
QEL_API void zsctr(const int* n, const _QEL_Complex16* x, const int* indx, _QEL_Complex16* y);

#ifdef __cplusplus
}
#endif

#endif /* QEL_SPARSE_H */
