/* SPDX-License-Identifier: BSD-3-Clause
 * Operations on a compressed vector and a full one, and on matrices in compressed sparse row form. Plain C;
 * every scalar is passed by its address. Compressed vectors:
 *
 *   n     entries of the compressed vector; n < 1 returns at once
 *   x     its n values;  indx their positions in y, counted from 1, in any order, not checked
 *   y     the full vector
 * Errors: no memory for the 64-bit copy of indx: xerbla (service.h) with the upper-case name and position
 * 1079; no array is touched.
 * Threads as in blas.h; compressed vectors are one thread's work.
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

/* ---- Matrices in compressed sparse row form (CSR) ----
 *
 * Three arrays, counted from 1: values a, their columns ja, row starts ia; row i (from 0) has the entries
 * ia[i] .. ia[i + 1] - 1. Four arrays: val, indx, and starts pntrb[i], ends pntre[i] (one past), counted from
 * the base that matdescra names. Structures are not checked here: see qel_csr_check.
 * transa: N, T, C of either case; C conjugates in the complex routines. A bad argument is reported to xerbla
 * with the upper-case name and its position, and nothing is touched.
 */

/* y := op(A) x for a square A of order m, in the three-array form. op by transa: N, T, C.
 * Bad arguments: 1 transa, 2 m.
 */
QEL_API void qel_dcsrgemv(const char* transa, const int* m, const double* a, const int* ia, const int* ja,
                          const double* x, double* y);
QEL_API void qel_zcsrgemv(const char* transa, const int* m, const _QEL_Complex16* a, const int* ia,
                          const int* ja, const _QEL_Complex16* x, _QEL_Complex16* y);

/* y := alpha op(A) x + beta y, A m by k, in the four-array form. y has m elements for N, else k. With beta
 * exactly 0 y is not read. matdescra, letters of either case:
 *   [0]  G every entry as it stands; T only the triangle [1]; D only the diagonal; S, H, A the triangle [1],
 *        mirrored as a symmetric, Hermitian or antisymmetric matrix (A: no diagonal; m = k)
 *   [1]  L lower, U upper: read for T, S, H, A
 *   [2]  N stored diagonal, U ones in place of it: read for T, S, H, D
 *   [3]  C: columns and row positions count from 0; anything else: from 1; not checked
 * Bad arguments: 1 transa, 2 m, 3 k, 5 matdescra.
 */
QEL_API void qel_dcsrmv(const char* transa, const int* m, const int* k, const double* alpha,
                        const char* matdescra, const double* val, const int* indx, const int* pntrb,
                        const int* pntre, const double* x, const double* beta, double* y);
QEL_API void qel_zcsrmv(const char* transa, const int* m, const int* k, const _QEL_Complex16* alpha,
                        const char* matdescra, const _QEL_Complex16* val, const int* indx, const int* pntrb,
                        const int* pntre, const _QEL_Complex16* x, const _QEL_Complex16* beta,
                        _QEL_Complex16* y);

/* C := A + beta op(B), all m by n (B n by m unless transa, which belongs to B, is N), in the three-array
 * form.
 *   request  0  builds ic, jc, c, of which nzmax entries fit; info is the row (from 1) that doesn't fit,
 *               the rows before it are complete
 *            1  only ic: ic[m] - 1 entries are needed; jc, c may be null
 *            2  jc and c, with ic as request 1 left it
 *   sort     1, 2, 3 sorts the rows of A, of B, of both by column, in the caller's arrays; else nothing.
 *            Rows must be sorted; it isn't checked
 * Sums that are zero stay entries.
 * Bad arguments: 1 transa, 2 request, 4 m, 5 n, 16 nzmax (request 0 only). No memory (T, C only): position
 * 1079, info -1023.
 */
QEL_API void qel_dcsradd(const char* transa, const int* request, const int* sort, const int* m, const int* n,
                         double* a, int* ja, const int* ia, const double* beta, double* b, int* jb,
                         const int* ib, double* c, int* jc, int* ic, const int* nzmax, int* info);
QEL_API void qel_zcsradd(const char* transa, const int* request, const int* sort, const int* m, const int* n,
                         _QEL_Complex16* a, int* ja, const int* ia, const _QEL_Complex16* beta,
                         _QEL_Complex16* b, int* jb, const int* ib, _QEL_Complex16* c, int* jc, int* ic,
                         const int* nzmax, int* info);

/* C := op(A) B, A m by n, in the three-array form. N: B n by k, C m by k; T, C: B m by k, C n by k. request,
 * nzmax and info as for csradd. The rows of C come sorted, in whatever order those of A and B are; sort
 * 1, 2, 3 sorts A, B, both in place beforehand.
 * Bad arguments: 1 transa, 2 request, 4 m, 5 n, 6 k, 16 nzmax (request 0 only). No memory: position 1079,
 * info -1023.
 */
QEL_API void qel_dcsrmultcsr(const char* transa, const int* request, const int* sort, const int* m,
                             const int* n, const int* k, double* a, int* ja, const int* ia, double* b,
                             int* jb, const int* ib, double* c, int* jc, int* ic, const int* nzmax,
                             int* info);
QEL_API void qel_zcsrmultcsr(const char* transa, const int* request, const int* sort, const int* m,
                             const int* n, const int* k, _QEL_Complex16* a, int* ja, const int* ia,
                             _QEL_Complex16* b, int* jb, const int* ib, _QEL_Complex16* c, int* jc, int* ic,
                             const int* nzmax, int* info);

/* C := op(A) B with a dense column-major C of leading dimension ldc, m by k (N) or n by k (T, C), which is
 * zeroed first; ldc is not compared with the rows.
 * Bad arguments: 1 transa, 2 m, 3 n, 4 k, 12 ldc (below 0).
 */
QEL_API void qel_dcsrmultd(const char* transa, const int* m, const int* n, const int* k, const double* a,
                           const int* ja, const int* ia, const double* b, const int* jb, const int* ib,
                           double* c, const int* ldc);
QEL_API void qel_zcsrmultd(const char* transa, const int* m, const int* n, const int* k,
                           const _QEL_Complex16* a, const int* ja, const int* ia, const _QEL_Complex16* b,
                           const int* jb, const int* ib, _QEL_Complex16* c, const int* ldc);

/* Between a dense array, element (i, j) at adns[i * lda + j], and the three-array form, m by n.
 *   job[0]  0 dense to CSR, 1 CSR to dense
 *   job[1]  base of the dense array, 0 or 1; job[2]  base of the CSR arrays, 0 or 1
 *   job[3]  the part of the dense array that is read or written: 0 lower triangle, 1 upper triangle, 2 all
 *   job[4]  entries that fit; job[5]  0: only ia is filled; else ja and acsr, too
 * An element that compares equal to 0 is no entry. info: 0, or the row, counted from job[2], that didn't fit.
 * Bad arguments: 1 job, 2 m, 3 n, 5 lda (below 0).
 */
QEL_API void qel_ddnscsr(const int* job, const int* m, const int* n, double* adns, const int* lda,
                         double* acsr, int* ja, int* ia, int* info);

/* Looks over the structure of a CSR matrix of m rows and n columns: row starts ia (m + 1), columns ja (nnz),
 * both counted from base. Returns 0, or a sum of:
 */
#define QEL_CSR_BAD_SIZES 1      /* m, n or nnz below 0, base neither 0 nor 1 */
#define QEL_CSR_BAD_ROW_STARTS 2 /* a row start below the one before it or outside of ja */
#define QEL_CSR_OTHER_BASE 4     /* faultless if counted from the other base, not from this one */
#define QEL_CSR_OUT_OF_RANGE 8   /* a column that the matrix doesn't have */
#define QEL_CSR_UNSORTED 16      /* a row whose columns don't ascend */
#define QEL_CSR_DUPLICATE 32     /* a column twice in a row */
#define QEL_CSR_NO_DIAGONAL 64   /* a row without an entry on the diagonal */
/* text, if not null, gets size - 1 characters at most: a line in words for each kind, with its first place.
 * Nothing outside the arrays is read, whatever they hold; the operations above need no diagonal and, but for
 * csradd, no order.
 */
QEL_API int qel_csr_check(const int* m, const int* n, const int* ia, const int* ja, const int* nnz,
                          const int* base, char* text, const int* size);

#ifdef __cplusplus
}
#endif

#endif /* QEL_SPARSE_H */
