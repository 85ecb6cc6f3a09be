/* SPDX-License-Identifier: BSD-3-Clause
 * BLAS levels 1 to 3 and two matrix utilities, for s (float), d (double), c and z (complex). Plain C.
 *
 * Every scalar is passed by its address; option letters in either case. Integers are 32-bit int.
 * Matrices are column-major, a leading dimension is the distance of two columns in elements. Element i of a
 * vector of n elements with stride inc is v[i * inc], or v[(n - 1 - i) * -inc] for a negative stride: the
 * pointer is always the lowest address. A pointer to an output must not overlap another argument.
 * Errors: levels 2 and 3 report the position of the first bad argument, counted from 1, through xerbla
 * (service.h) and leave their outputs alone; level 1 has no bad arguments.
 * Threads: all entries may be called from several threads at once, on outputs of their own. Large calls share
 * their work out to OpenMP's threads (qel_set_num_threads, service.h), not inside a parallel region.
 * Every name but QEL_Domatcopy is there for Fortran too, with an underscore at its end.
 */
#ifndef QEL_BLAS_H
#define QEL_BLAS_H

#include <stddef.h>

#include "qel/export.h"
#include "qel/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/* ---- Level 1: vectors ---- */

/* y := x.
 *   n     elements; n <= 0 returns at once
 *   x     source vector, stride incx
 *   y     target vector, stride incy; must not overlap x
 */
QEL_API void scopy(const int* n, const float* x, const int* incx, float* y, const int* incy);
QEL_API void dcopy(const int* n, const double* x, const int* incx, double* y, const int* incy);
QEL_API void ccopy(const int* n, const _QEL_Complex8* x, const int* incx, _QEL_Complex8* y, const int* incy);
QEL_API void zcopy(const int* n, const _QEL_Complex16* x, const int* incx, _QEL_Complex16* y,
                   const int* incy);

/* y := alpha x + y, each element multiplied first and then added.
 *   n     elements; n <= 0 returns at once
 *   alpha factor; exactly 0 returns at once and reads neither vector
 *   x, y  vectors of strides incx, incy; y must not overlap x
 */
QEL_API void saxpy(const int* n, const float* alpha, const float* x, const int* incx, float* y,
                   const int* incy);
QEL_API void daxpy(const int* n, const double* alpha, const double* x, const int* incx, double* y,
                   const int* incy);
QEL_API void caxpy(const int* n, const _QEL_Complex8* alpha, const _QEL_Complex8* x, const int* incx,
                   _QEL_Complex8* y, const int* incy);
QEL_API void zaxpy(const int* n, const _QEL_Complex16* alpha, const _QEL_Complex16* x, const int* incx,
                   _QEL_Complex16* y, const int* incy);

/* x := alpha x. csscal and zdscal scale a complex vector by a real number.
 *   n     elements; n <= 0 returns at once
 *   alpha factor; 1 returns at once, 0 is a factor like any other: NaN and infinity become NaN
 */
QEL_API void sscal(const int* n, const float* alpha, float* x, const int* incx);
QEL_API void dscal(const int* n, const double* alpha, double* x, const int* incx);
QEL_API void cscal(const int* n, const _QEL_Complex8* alpha, _QEL_Complex8* x, const int* incx);
QEL_API void csscal(const int* n, const float* alpha, _QEL_Complex8* x, const int* incx);
QEL_API void zscal(const int* n, const _QEL_Complex16* alpha, _QEL_Complex16* x, const int* incx);
QEL_API void zdscal(const int* n, const double* alpha, _QEL_Complex16* x, const int* incx);

/* The sum of x[i] * y[i]; 0 for n <= 0. The vectors may overlap: they are only read.
 */
QEL_API float sdot(const int* n, const float* x, const int* incx, const float* y, const int* incy);
QEL_API double ddot(const int* n, const double* x, const int* incx, const double* y, const int* incy);

/* result := the sum of x[i] * y[i], no conjugation; 0 for n <= 0. The C name takes the result's address
 * as its first argument; the Fortran name (cdotu_, zdotu_) returns the value.
 */
QEL_API void cdotu(_QEL_Complex8* result, const int* n, const _QEL_Complex8* x, const int* incx,
                   const _QEL_Complex8* y, const int* incy);
QEL_API void zdotu(_QEL_Complex16* result, const int* n, const _QEL_Complex16* x, const int* incx,
                   const _QEL_Complex16* y, const int* incy);

/* result := the sum of conj(x[i]) * y[i]; 0 for n <= 0. Calling forms as cdotu.
 */
QEL_API void cdotc(_QEL_Complex8* result, const int* n, const _QEL_Complex8* x, const int* incx,
                   const _QEL_Complex8* y, const int* incy);
QEL_API void zdotc(_QEL_Complex16* result, const int* n, const _QEL_Complex16* x, const int* incx,
                   const _QEL_Complex16* y, const int* incy);

/* The sum of |x[i]|, of |re| + |im| for complex vectors; 0 for n <= 0.
 */
QEL_API float sasum(const int* n, const float* x, const int* incx);
QEL_API double dasum(const int* n, const double* x, const int* incx);
QEL_API float scasum(const int* n, const _QEL_Complex8* x, const int* incx);
QEL_API double dzasum(const int* n, const _QEL_Complex16* x, const int* incx);

/* The Euclidean norm of x; 0 for n <= 0. Scaled: no overflow or underflow on the way.
 */
QEL_API double dnrm2(const int* n, const double* x, const int* incx);
QEL_API double dznrm2(const int* n, const _QEL_Complex16* x, const int* incx);

/* The one-based index of the first element of largest |x[i]| (|re| + |im| for complex vectors).
 * 0 for n <= 0 or incx <= 0. A NaN takes the lead from any element and loses it to the next one.
 */
QEL_API int isamax(const int* n, const float* x, const int* incx);
QEL_API int idamax(const int* n, const double* x, const int* incx);
QEL_API int icamax(const int* n, const _QEL_Complex8* x, const int* incx);
QEL_API int izamax(const int* n, const _QEL_Complex16* x, const int* incx);

/* The same for the smallest |x[i]|.
 */
QEL_API int isamin(const int* n, const float* x, const int* incx);
QEL_API int idamin(const int* n, const double* x, const int* incx);
QEL_API int icamin(const int* n, const _QEL_Complex8* x, const int* incx);
QEL_API int izamin(const int* n, const _QEL_Complex16* x, const int* incx);

/* ---- Level 2: matrix and vector ---- */

/* y := alpha op(A) x + beta y.
 *   trans 'N' op(A) = A, 'T' its transpose, 'C' its conjugate transpose
 *   m, n  rows and columns of A, >= 0; 0 returns at once
 *   a     m x n, lda >= max(1, m)
 *   x     n elements for 'N', else m; incx not 0
 *   y     m elements for 'N', else n; incy not 0; must not overlap a or x
 *   beta  0 overwrites y without reading it; alpha 0 reads neither a nor x
 * Errors: xerbla, name "DGEMV " and kin; trans = 1, m 2, n 3, lda 6, incx 8, incy 11; y untouched.
 */
QEL_API void sgemv(const char* trans, const int* m, const int* n, const float* alpha, const float* a,
                   const int* lda, const float* x, const int* incx, const float* beta, float* y,
                   const int* incy);
QEL_API void dgemv(const char* trans, const int* m, const int* n, const double* alpha, const double* a,
                   const int* lda, const double* x, const int* incx, const double* beta, double* y,
                   const int* incy);
QEL_API void cgemv(const char* trans, const int* m, const int* n, const _QEL_Complex8* alpha,
                   const _QEL_Complex8* a, const int* lda, const _QEL_Complex8* x, const int* incx,
                   const _QEL_Complex8* beta, _QEL_Complex8* y, const int* incy);
QEL_API void zgemv(const char* trans, const int* m, const int* n, const _QEL_Complex16* alpha,
                   const _QEL_Complex16* a, const int* lda, const _QEL_Complex16* x, const int* incx,
                   const _QEL_Complex16* beta, _QEL_Complex16* y, const int* incy);

/* y := alpha op(A) x + beta y for a band matrix with kl diagonals below and ku above the main one.
 *   a     band storage, (kl + ku + 1) x n, lda >= kl + ku + 1: element (i, j) at a[ku + i - j + j * lda]
 * Other arguments as in gemv.
 * Errors: trans = 1, m 2, n 3, kl 4, ku 5, lda 8, incx 10, incy 13.
 */
QEL_API void sgbmv(const char* trans, const int* m, const int* n, const int* kl, const int* ku,
                   const float* alpha, const float* a, const int* lda, const float* x, const int* incx,
                   const float* beta, float* y, const int* incy);
QEL_API void dgbmv(const char* trans, const int* m, const int* n, const int* kl, const int* ku,
                   const double* alpha, const double* a, const int* lda, const double* x, const int* incx,
                   const double* beta, double* y, const int* incy);
QEL_API void cgbmv(const char* trans, const int* m, const int* n, const int* kl, const int* ku,
                   const _QEL_Complex8* alpha, const _QEL_Complex8* a, const int* lda, const _QEL_Complex8* x,
                   const int* incx, const _QEL_Complex8* beta, _QEL_Complex8* y, const int* incy);
QEL_API void zgbmv(const char* trans, const int* m, const int* n, const int* kl, const int* ku,
                   const _QEL_Complex16* alpha, const _QEL_Complex16* a, const int* lda,
                   const _QEL_Complex16* x, const int* incx, const _QEL_Complex16* beta, _QEL_Complex16* y,
                   const int* incy);

/* y := alpha A x + beta y for a symmetric (sb) or Hermitian (hb) band matrix of order n, k diagonals wide.
 *   uplo  'U': element (i, j), i <= j, at a[k + i - j + j * lda]; 'L': i >= j, at a[i - j + j * lda]
 *   lda   >= k + 1
 * The imaginary parts of a Hermitian diagonal are taken as 0.
 * Errors: uplo = 1, n 2, k 3, lda 6, incx 8, incy 11.
 */
QEL_API void ssbmv(const char* uplo, const int* n, const int* k, const float* alpha, const float* a,
                   const int* lda, const float* x, const int* incx, const float* beta, float* y,
                   const int* incy);
QEL_API void dsbmv(const char* uplo, const int* n, const int* k, const double* alpha, const double* a,
                   const int* lda, const double* x, const int* incx, const double* beta, double* y,
                   const int* incy);
QEL_API void chbmv(const char* uplo, const int* n, const int* k, const _QEL_Complex8* alpha,
                   const _QEL_Complex8* a, const int* lda, const _QEL_Complex8* x, const int* incx,
                   const _QEL_Complex8* beta, _QEL_Complex8* y, const int* incy);
QEL_API void zhbmv(const char* uplo, const int* n, const int* k, const _QEL_Complex16* alpha,
                   const _QEL_Complex16* a, const int* lda, const _QEL_Complex16* x, const int* incx,
                   const _QEL_Complex16* beta, _QEL_Complex16* y, const int* incy);

/* y := alpha A x + beta y for a symmetric matrix of order n in packed storage; complex: no conjugation.
 *   uplo  which triangle ap holds, column after column: 'U' element (i, j), i <= j, at ap[i + j (j + 1) / 2],
 *         'L' i >= j, at ap[i + j (2 n - j - 1) / 2]
 *   ap    n (n + 1) / 2 elements
 * Errors: uplo = 1, n 2, incx 6, incy 9.
 */
QEL_API void sspmv(const char* uplo, const int* n, const float* alpha, const float* ap, const float* x,
                   const int* incx, const float* beta, float* y, const int* incy);
QEL_API void dspmv(const char* uplo, const int* n, const double* alpha, const double* ap, const double* x,
                   const int* incx, const double* beta, double* y, const int* incy);
QEL_API void cspmv(const char* uplo, const int* n, const _QEL_Complex8* alpha, const _QEL_Complex8* ap,
                   const _QEL_Complex8* x, const int* incx, const _QEL_Complex8* beta, _QEL_Complex8* y,
                   const int* incy);
QEL_API void zspmv(const char* uplo, const int* n, const _QEL_Complex16* alpha, const _QEL_Complex16* ap,
                   const _QEL_Complex16* x, const int* incx, const _QEL_Complex16* beta, _QEL_Complex16* y,
                   const int* incy);

/* y := alpha A x + beta y for a Hermitian matrix of order n in packed storage, as spmv; the imaginary
 * parts of the diagonal are taken as 0. Errors: uplo = 1, n 2, incx 6, incy 9.
 */
QEL_API void chpmv(const char* uplo, const int* n, const _QEL_Complex8* alpha, const _QEL_Complex8* ap,
                   const _QEL_Complex8* x, const int* incx, const _QEL_Complex8* beta, _QEL_Complex8* y,
                   const int* incy);
QEL_API void zhpmv(const char* uplo, const int* n, const _QEL_Complex16* alpha, const _QEL_Complex16* ap,
                   const _QEL_Complex16* x, const int* incx, const _QEL_Complex16* beta, _QEL_Complex16* y,
                   const int* incy);

/* x := op(A) x for a triangular matrix of order n in packed storage (layout as spmv).
 *   uplo  'U' upper, 'L' lower;  trans as in gemv;  diag 'U' takes the diagonal as 1 and doesn't read it
 * Errors: uplo = 1, trans 2, diag 3, n 4, incx 7.
 */
QEL_API void stpmv(const char* uplo, const char* trans, const char* diag, const int* n, const float* ap,
                   float* x, const int* incx);
QEL_API void dtpmv(const char* uplo, const char* trans, const char* diag, const int* n, const double* ap,
                   double* x, const int* incx);
QEL_API void ctpmv(const char* uplo, const char* trans, const char* diag, const int* n,
                   const _QEL_Complex8* ap, _QEL_Complex8* x, const int* incx);
QEL_API void ztpmv(const char* uplo, const char* trans, const char* diag, const int* n,
                   const _QEL_Complex16* ap, _QEL_Complex16* x, const int* incx);

/* x := op(A) x for a triangular matrix of order n in an n x n array, lda >= max(1, n); the other triangle
 * is not read. Letters as in tpmv; x must not overlap a.
 * Errors: xerbla, name "DTRMV " and kin; uplo = 1, trans 2, diag 3, n 4, lda 6, incx 8; x untouched.
 */
QEL_API void strmv(const char* uplo, const char* trans, const char* diag, const int* n, const float* a,
                   const int* lda, float* x, const int* incx);
QEL_API void dtrmv(const char* uplo, const char* trans, const char* diag, const int* n, const double* a,
                   const int* lda, double* x, const int* incx);
QEL_API void ctrmv(const char* uplo, const char* trans, const char* diag, const int* n,
                   const _QEL_Complex8* a, const int* lda, _QEL_Complex8* x, const int* incx);
QEL_API void ztrmv(const char* uplo, const char* trans, const char* diag, const int* n,
                   const _QEL_Complex16* a, const int* lda, _QEL_Complex16* x, const int* incx);

/* ---- Level 3: matrices ---- */

/* C := alpha op(A) op(B) + beta C.
 *   transa, transb  'N' the matrix itself, 'T' its transpose, 'C' its conjugate transpose
 *   m, n, k  op(A) is m x k, op(B) k x n, C m x n; all >= 0, m = 0 or n = 0 returns at once
 *   lda   >= max(1, m) for transa 'N', else >= max(1, k)
 *   ldb   >= max(1, k) for transb 'N', else >= max(1, n)
 *   c     ldc >= max(1, m); must not overlap a or b
 *   alpha 0 (or k = 0) reads neither a nor b;  beta 0 overwrites c without reading it
 * Errors: xerbla, name "DGEMM " and kin; transa = 1, transb 2, m 3, n 4, k 5, lda 8, ldb 10, ldc 13;
 * c untouched.
 * Source: Dongarra et al., ACM TOMS 16 (1990) 1-17.
 */
QEL_API void sgemm(const char* transa, const char* transb, const int* m, const int* n, const int* k,
                   const float* alpha, const float* a, const int* lda, const float* b, const int* ldb,
                   const float* beta, float* c, const int* ldc);
QEL_API void dgemm(const char* transa, const char* transb, const int* m, const int* n, const int* k,
                   const double* alpha, const double* a, const int* lda, const double* b, const int* ldb,
                   const double* beta, double* c, const int* ldc);
QEL_API void cgemm(const char* transa, const char* transb, const int* m, const int* n, const int* k,
                   const _QEL_Complex8* alpha, const _QEL_Complex8* a, const int* lda, const _QEL_Complex8* b,
                   const int* ldb, const _QEL_Complex8* beta, _QEL_Complex8* c, const int* ldc);
QEL_API void zgemm(const char* transa, const char* transb, const int* m, const int* n, const int* k,
                   const _QEL_Complex16* alpha, const _QEL_Complex16* a, const int* lda,
                   const _QEL_Complex16* b, const int* ldb, const _QEL_Complex16* beta, _QEL_Complex16* c,
                   const int* ldc);

/* Solves op(A) X = alpha B (side 'L') or X op(A) = alpha B (side 'R') for triangular A; X overwrites B.
 *   uplo, transa, diag  as in trmv
 *   m, n  rows and columns of B; 0 returns at once
 *   a     triangle of order m (side 'L') or n (side 'R'), lda >= max(1, order)
 *   b     m x n, ldb >= max(1, m); must not overlap a
 *   alpha 0 zeroes b and doesn't read a
 * A zero on the diagonal is not detected: X then holds infinities or NaN.
 * Errors: xerbla, name "DTRSM " and kin; side = 1, uplo 2, transa 3, diag 4, m 5, n 6, lda 9, ldb 11;
 * b untouched.
 */
QEL_API void strsm(const char* side, const char* uplo, const char* transa, const char* diag, const int* m,
                   const int* n, const float* alpha, const float* a, const int* lda, float* b,
                   const int* ldb);
QEL_API void dtrsm(const char* side, const char* uplo, const char* transa, const char* diag, const int* m,
                   const int* n, const double* alpha, const double* a, const int* lda, double* b,
                   const int* ldb);
QEL_API void ctrsm(const char* side, const char* uplo, const char* transa, const char* diag, const int* m,
                   const int* n, const _QEL_Complex8* alpha, const _QEL_Complex8* a, const int* lda,
                   _QEL_Complex8* b, const int* ldb);
QEL_API void ztrsm(const char* side, const char* uplo, const char* transa, const char* diag, const int* m,
                   const int* n, const _QEL_Complex16* alpha, const _QEL_Complex16* a, const int* lda,
                   _QEL_Complex16* b, const int* ldb);

/* ---- Matrix utilities ---- */

/* A norm of the m x n matrix A: norm 'M' the largest |a(i, j)|, '1' or 'O' the largest column sum, 'I' the
 * largest row sum, 'F' or 'E' the Frobenius norm; 0 for m or n 0.
 *   lda   >= max(1, m)
 *   work  m elements for 'I', otherwise not used and may be null
 */
QEL_API float slange(const char* norm, const int* m, const int* n, const float* a, const int* lda,
                     float* work);
QEL_API double dlange(const char* norm, const int* m, const int* n, const double* a, const int* lda,
                      double* work);
QEL_API float clange(const char* norm, const int* m, const int* n, const _QEL_Complex8* a, const int* lda,
                     float* work);
QEL_API double zlange(const char* norm, const int* m, const int* n, const _QEL_Complex16* a, const int* lda,
                      double* work);

/* B := alpha op(A), out of place; sizes by value in 64 bits.
 *   ordering  'C' column-major, 'R' row-major
 *   trans     'N' copy, 'T' transpose, 'C' as 'T', 'R' as 'N': the data are real
 *   rows, cols  of A; B is cols x rows for 'T' and 'C'; 0 returns at once
 *   lda, ldb  >= the length of a column (ordering 'C') or row ('R') of A and of B, at least 1
 *   b         must not overlap a;  alpha 0 writes zeros and doesn't read a
 * Errors: xerbla, name "QEL_DOMATCOPY"; ordering = 1, trans 2, lda 7, ldb 9; b untouched.
 */
QEL_API void QEL_Domatcopy(char ordering, char trans, size_t rows, size_t cols, double alpha, const double* a,
                           size_t lda, double* b, size_t ldb);

#ifdef __cplusplus
}
#endif

#endif /* QEL_BLAS_H */
