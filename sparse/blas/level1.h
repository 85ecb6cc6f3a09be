// SPDX-License-Identifier: BSD-3-Clause
// Operations on a compressed vector, n values x[k] with their positions indx[k] in the full vector y.
// Positions count from 1, need not be sorted and may repeat: entries are then worked in order. n < 1 is no
// work. Called by the public entries.
#pragma once

#include "service/core_types.h"

namespace qel::core {

/// y[indx[k] - 1] += alpha * x[k]; alpha exactly 0 is no work.
void saxpyi(const core_int* n, const float* alpha, const float* x, const core_int* indx, float* y);
void daxpyi(const core_int* n, const double* alpha, const double* x, const core_int* indx, double* y);
void zaxpyi(const core_int* n, const complex16* alpha, const complex16* x, const core_int* indx,
            complex16* y);

/// The sum of x[k] * y[indx[k] - 1], without conjugation.
double ddoti(const core_int* n, const double* x, const core_int* indx, const double* y);
void zdotui(complex16* result, const core_int* n, const complex16* x, const core_int* indx,
            const complex16* y);

/// x[k] = y[indx[k] - 1].
void dgthr(const core_int* n, const double* y, double* x, const core_int* indx);
void zgthr(const core_int* n, const complex16* y, complex16* x, const core_int* indx);

/// The same, then y[indx[k] - 1] = 0, in one pass: a repeated position gathers 0 the second time.
void dgthrz(const core_int* n, double* y, double* x, const core_int* indx);
void zgthrz(const core_int* n, complex16* y, complex16* x, const core_int* indx);

/// y[indx[k] - 1] = x[k].
void dsctr(const core_int* n, const double* x, const core_int* indx, double* y);
void zsctr(const core_int* n, const complex16* x, const core_int* indx, complex16* y);

}  // namespace qel::core
