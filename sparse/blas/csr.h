// SPDX-License-Identifier: BSD-3-Clause
// Operations on matrices in compressed sparse row form, with 32-bit indices as the caller holds them. The
// three-array form (a, ja, ia) counts from 1, the four-array form (val, indx, pntrb, pntre) from the base
// that matdescra names. Arguments have been checked. Called by the public entries; docstrings in
// qel/sparse.h.
#pragma once

#include "service/core_types.h"

namespace qel::core {

void dcsrgemv(const char* transa, const core_int* m, const double* a, const int* ia, const int* ja,
              const double* x, double* y);
void zcsrgemv(const char* transa, const core_int* m, const complex16* a, const int* ia, const int* ja,
              const complex16* x, complex16* y);

void dcsrmv(const char* transa, const core_int* m, const core_int* k, const double* alpha,
            const char* matdescra, const double* val, const int* indx, const int* pntrb, const int* pntre,
            const double* x, const double* beta, double* y);
void zcsrmv(const char* transa, const core_int* m, const core_int* k, const complex16* alpha,
            const char* matdescra, const complex16* val, const int* indx, const int* pntrb, const int* pntre,
            const complex16* x, const complex16* beta, complex16* y);

void dcsradd(const char* transa, const core_int* request, const core_int* sort, const core_int* m,
             const core_int* n, double* a, int* ja, const int* ia, const double* beta, double* b, int* jb,
             const int* ib, double* c, int* jc, int* ic, const core_int* nzmax, int* info);
void zcsradd(const char* transa, const core_int* request, const core_int* sort, const core_int* m,
             const core_int* n, complex16* a, int* ja, const int* ia, const complex16* beta, complex16* b,
             int* jb, const int* ib, complex16* c, int* jc, int* ic, const core_int* nzmax, int* info);

void dcsrmultcsr(const char* transa, const core_int* request, const core_int* sort, const core_int* m,
                 const core_int* n, const core_int* k, double* a, int* ja, const int* ia, double* b, int* jb,
                 const int* ib, double* c, int* jc, int* ic, const core_int* nzmax, int* info);
void zcsrmultcsr(const char* transa, const core_int* request, const core_int* sort, const core_int* m,
                 const core_int* n, const core_int* k, complex16* a, int* ja, const int* ia, complex16* b,
                 int* jb, const int* ib, complex16* c, int* jc, int* ic, const core_int* nzmax, int* info);

void dcsrmultd(const char* transa, const core_int* m, const core_int* n, const core_int* k, const double* a,
               const int* ja, const int* ia, const double* b, const int* jb, const int* ib, double* c,
               const core_int* ldc);
void zcsrmultd(const char* transa, const core_int* m, const core_int* n, const core_int* k,
               const complex16* a, const int* ja, const int* ia, const complex16* b, const int* jb,
               const int* ib, complex16* c, const core_int* ldc);

void ddnscsr(const int* job, const core_int* m, const core_int* n, double* adns, const core_int* lda,
             double* acsr, int* ja, int* ia, int* info);

}  // namespace qel::core
