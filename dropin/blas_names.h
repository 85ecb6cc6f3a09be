// SPDX-License-Identifier: BSD-3-Clause
// The Fortran BLAS as compiled programs call it: 32-bit integers, everything by address, one trailing
// underscore, complex results by value (a pair of numbers comes back in the same registers as a Fortran
// complex). Fortran callers append the lengths of character arguments after the last one; in this ABI the
// callee may leave such arguments undeclared. xerbla_ and xerbla_array_ do read the length.
#pragma once

#include <stddef.h>

#include "service/core_types.h"

namespace qel::dropin {

#pragma GCC visibility push(default)
extern "C" {

/// Told of bad arguments: the routine's name (not terminated) and the argument's position. Every report of
/// this library and of LAPACK goes through the dynamic symbol, so that a program's own definition wins.
void xerbla_(const char* name, const int* position, size_t name_length);
/// xerbla_ for callers that hold the name as single characters.
void xerbla_array_(const char* name, const int* name_length, const int* position);
/// 1 if both letters are the same in either case.
int lsame_(const char* a, const char* b);

// Sum of x_i y_i; sdsdot and dsdot sum in double precision
float sdot_(const int* n, const float* x, const int* incx, const float* y, const int* incy);
double ddot_(const int* n, const double* x, const int* incx, const double* y, const int* incy);
double dsdot_(const int* n, const float* x, const int* incx, const float* y, const int* incy);
float sdsdot_(const int* n, const float* b, const float* x, const int* incx, const float* y, const int* incy);
complex8 cdotu_(const int* n, const complex8* x, const int* incx, const complex8* y, const int* incy);
complex8 cdotc_(const int* n, const complex8* x, const int* incx, const complex8* y, const int* incy);
complex16 zdotu_(const int* n, const complex16* x, const int* incx, const complex16* y, const int* incy);
complex16 zdotc_(const int* n, const complex16* x, const int* incx, const complex16* y, const int* incy);

// Y += a x
void saxpy_(const int* n, const float* alpha, const float* x, const int* incx, float* y, const int* incy);
void daxpy_(const int* n, const double* alpha, const double* x, const int* incx, double* y, const int* incy);
void caxpy_(const int* n, const complex8* alpha, const complex8* x, const int* incx, complex8* y,
            const int* incy);
void zaxpy_(const int* n, const complex16* alpha, const complex16* x, const int* incx, complex16* y,
            const int* incy);

// Y = x
void scopy_(const int* n, const float* x, const int* incx, float* y, const int* incy);
void dcopy_(const int* n, const double* x, const int* incx, double* y, const int* incy);
void ccopy_(const int* n, const complex8* x, const int* incx, complex8* y, const int* incy);
void zcopy_(const int* n, const complex16* x, const int* incx, complex16* y, const int* incy);

// Exchange of x and y
void sswap_(const int* n, float* x, const int* incx, float* y, const int* incy);
void dswap_(const int* n, double* x, const int* incx, double* y, const int* incy);
void cswap_(const int* n, complex8* x, const int* incx, complex8* y, const int* incy);
void zswap_(const int* n, complex16* x, const int* incx, complex16* y, const int* incy);

// X *= a
void sscal_(const int* n, const float* alpha, float* x, const int* incx);
void dscal_(const int* n, const double* alpha, double* x, const int* incx);
void cscal_(const int* n, const complex8* alpha, complex8* x, const int* incx);
void zscal_(const int* n, const complex16* alpha, complex16* x, const int* incx);
void csscal_(const int* n, const float* alpha, complex8* x, const int* incx);
void zdscal_(const int* n, const double* alpha, complex16* x, const int* incx);

// Sum of |x_i|, for complex elements of |re| + |im|
float sasum_(const int* n, const float* x, const int* incx);
double dasum_(const int* n, const double* x, const int* incx);
float scasum_(const int* n, const complex8* x, const int* incx);
double dzasum_(const int* n, const complex16* x, const int* incx);

// Euclidean norm
float snrm2_(const int* n, const float* x, const int* incx);
double dnrm2_(const int* n, const double* x, const int* incx);
float scnrm2_(const int* n, const complex8* x, const int* incx);
double dznrm2_(const int* n, const complex16* x, const int* incx);

// Position of the element of largest or smallest size
int isamax_(const int* n, const float* x, const int* incx);
int idamax_(const int* n, const double* x, const int* incx);
int icamax_(const int* n, const complex8* x, const int* incx);
int izamax_(const int* n, const complex16* x, const int* incx);
int isamin_(const int* n, const float* x, const int* incx);
int idamin_(const int* n, const double* x, const int* incx);
int icamin_(const int* n, const complex8* x, const int* incx);
int izamin_(const int* n, const complex16* x, const int* incx);

// Plane rotation of the points (x_i, y_i)
void srot_(const int* n, float* x, const int* incx, float* y, const int* incy, const float* c,
           const float* s);
void drot_(const int* n, double* x, const int* incx, double* y, const int* incy, const double* c,
           const double* s);
void csrot_(const int* n, complex8* x, const int* incx, complex8* y, const int* incy, const float* c,
            const float* s);
void zdrot_(const int* n, complex16* x, const int* incx, complex16* y, const int* incy, const double* c,
            const double* s);

// Rotation that takes (a, b) to (r, 0)
void srotg_(float* a, float* b, float* c, float* s);
void drotg_(double* a, double* b, double* c, double* s);
void crotg_(complex8* a, complex8* b, float* c, complex8* s);
void zrotg_(complex16* a, complex16* b, double* c, complex16* s);

// Modified rotation and its construction
void srotm_(const int* n, float* x, const int* incx, float* y, const int* incy, const float* param);
void drotm_(const int* n, double* x, const int* incx, double* y, const int* incy, const double* param);
void srotmg_(float* d1, float* d2, float* x1, const float* y1, float* param);
void drotmg_(double* d1, double* d2, double* x1, const double* y1, double* param);

// |re| + |im|
float scabs1_(const complex8* z);
double dcabs1_(const complex16* z);

// General matrix times vector: y = alpha op(A) x + beta y
void sgemv_(const char* trans, const int* m, const int* n, const float* alpha, const float* a, const int* lda,
            const float* x, const int* incx, const float* beta, float* y, const int* incy);
void dgemv_(const char* trans, const int* m, const int* n, const double* alpha, const double* a,
            const int* lda, const double* x, const int* incx, const double* beta, double* y, const int* incy);
void cgemv_(const char* trans, const int* m, const int* n, const complex8* alpha, const complex8* a,
            const int* lda, const complex8* x, const int* incx, const complex8* beta, complex8* y,
            const int* incy);
void zgemv_(const char* trans, const int* m, const int* n, const complex16* alpha, const complex16* a,
            const int* lda, const complex16* x, const int* incx, const complex16* beta, complex16* y,
            const int* incy);

// General band matrix times vector
void sgbmv_(const char* trans, const int* m, const int* n, const int* kl, const int* ku, const float* alpha,
            const float* a, const int* lda, const float* x, const int* incx, const float* beta, float* y,
            const int* incy);
void dgbmv_(const char* trans, const int* m, const int* n, const int* kl, const int* ku, const double* alpha,
            const double* a, const int* lda, const double* x, const int* incx, const double* beta, double* y,
            const int* incy);
void cgbmv_(const char* trans, const int* m, const int* n, const int* kl, const int* ku,
            const complex8* alpha, const complex8* a, const int* lda, const complex8* x, const int* incx,
            const complex8* beta, complex8* y, const int* incy);
void zgbmv_(const char* trans, const int* m, const int* n, const int* kl, const int* ku,
            const complex16* alpha, const complex16* a, const int* lda, const complex16* x, const int* incx,
            const complex16* beta, complex16* y, const int* incy);

// Symmetric or Hermitian matrix times vector
void ssymv_(const char* uplo, const int* n, const float* alpha, const float* a, const int* lda,
            const float* x, const int* incx, const float* beta, float* y, const int* incy);
void dsymv_(const char* uplo, const int* n, const double* alpha, const double* a, const int* lda,
            const double* x, const int* incx, const double* beta, double* y, const int* incy);
void chemv_(const char* uplo, const int* n, const complex8* alpha, const complex8* a, const int* lda,
            const complex8* x, const int* incx, const complex8* beta, complex8* y, const int* incy);
void zhemv_(const char* uplo, const int* n, const complex16* alpha, const complex16* a, const int* lda,
            const complex16* x, const int* incx, const complex16* beta, complex16* y, const int* incy);

// Symmetric or Hermitian band matrix times vector
void ssbmv_(const char* uplo, const int* n, const int* k, const float* alpha, const float* a, const int* lda,
            const float* x, const int* incx, const float* beta, float* y, const int* incy);
void dsbmv_(const char* uplo, const int* n, const int* k, const double* alpha, const double* a,
            const int* lda, const double* x, const int* incx, const double* beta, double* y, const int* incy);
void chbmv_(const char* uplo, const int* n, const int* k, const complex8* alpha, const complex8* a,
            const int* lda, const complex8* x, const int* incx, const complex8* beta, complex8* y,
            const int* incy);
void zhbmv_(const char* uplo, const int* n, const int* k, const complex16* alpha, const complex16* a,
            const int* lda, const complex16* x, const int* incx, const complex16* beta, complex16* y,
            const int* incy);

// Symmetric or Hermitian packed matrix times vector
void sspmv_(const char* uplo, const int* n, const float* alpha, const float* ap, const float* x,
            const int* incx, const float* beta, float* y, const int* incy);
void dspmv_(const char* uplo, const int* n, const double* alpha, const double* ap, const double* x,
            const int* incx, const double* beta, double* y, const int* incy);
void chpmv_(const char* uplo, const int* n, const complex8* alpha, const complex8* ap, const complex8* x,
            const int* incx, const complex8* beta, complex8* y, const int* incy);
void zhpmv_(const char* uplo, const int* n, const complex16* alpha, const complex16* ap, const complex16* x,
            const int* incx, const complex16* beta, complex16* y, const int* incy);

// Triangular matrix times vector, and the solve
void strmv_(const char* uplo, const char* trans, const char* diag, const int* n, const float* a,
            const int* lda, float* x, const int* incx);
void dtrmv_(const char* uplo, const char* trans, const char* diag, const int* n, const double* a,
            const int* lda, double* x, const int* incx);
void ctrmv_(const char* uplo, const char* trans, const char* diag, const int* n, const complex8* a,
            const int* lda, complex8* x, const int* incx);
void ztrmv_(const char* uplo, const char* trans, const char* diag, const int* n, const complex16* a,
            const int* lda, complex16* x, const int* incx);
void strsv_(const char* uplo, const char* trans, const char* diag, const int* n, const float* a,
            const int* lda, float* x, const int* incx);
void dtrsv_(const char* uplo, const char* trans, const char* diag, const int* n, const double* a,
            const int* lda, double* x, const int* incx);
void ctrsv_(const char* uplo, const char* trans, const char* diag, const int* n, const complex8* a,
            const int* lda, complex8* x, const int* incx);
void ztrsv_(const char* uplo, const char* trans, const char* diag, const int* n, const complex16* a,
            const int* lda, complex16* x, const int* incx);

// Triangular band matrix times vector, and the solve
void stbmv_(const char* uplo, const char* trans, const char* diag, const int* n, const int* k, const float* a,
            const int* lda, float* x, const int* incx);
void dtbmv_(const char* uplo, const char* trans, const char* diag, const int* n, const int* k,
            const double* a, const int* lda, double* x, const int* incx);
void ctbmv_(const char* uplo, const char* trans, const char* diag, const int* n, const int* k,
            const complex8* a, const int* lda, complex8* x, const int* incx);
void ztbmv_(const char* uplo, const char* trans, const char* diag, const int* n, const int* k,
            const complex16* a, const int* lda, complex16* x, const int* incx);
void stbsv_(const char* uplo, const char* trans, const char* diag, const int* n, const int* k, const float* a,
            const int* lda, float* x, const int* incx);
void dtbsv_(const char* uplo, const char* trans, const char* diag, const int* n, const int* k,
            const double* a, const int* lda, double* x, const int* incx);
void ctbsv_(const char* uplo, const char* trans, const char* diag, const int* n, const int* k,
            const complex8* a, const int* lda, complex8* x, const int* incx);
void ztbsv_(const char* uplo, const char* trans, const char* diag, const int* n, const int* k,
            const complex16* a, const int* lda, complex16* x, const int* incx);

// Triangular packed matrix times vector, and the solve
void stpmv_(const char* uplo, const char* trans, const char* diag, const int* n, const float* ap, float* x,
            const int* incx);
void dtpmv_(const char* uplo, const char* trans, const char* diag, const int* n, const double* ap, double* x,
            const int* incx);
void ctpmv_(const char* uplo, const char* trans, const char* diag, const int* n, const complex8* ap,
            complex8* x, const int* incx);
void ztpmv_(const char* uplo, const char* trans, const char* diag, const int* n, const complex16* ap,
            complex16* x, const int* incx);
void stpsv_(const char* uplo, const char* trans, const char* diag, const int* n, const float* ap, float* x,
            const int* incx);
void dtpsv_(const char* uplo, const char* trans, const char* diag, const int* n, const double* ap, double* x,
            const int* incx);
void ctpsv_(const char* uplo, const char* trans, const char* diag, const int* n, const complex8* ap,
            complex8* x, const int* incx);
void ztpsv_(const char* uplo, const char* trans, const char* diag, const int* n, const complex16* ap,
            complex16* x, const int* incx);

// Rank-1 update: A += alpha x y^T, or y^H for gerc
void sger_(const int* m, const int* n, const float* alpha, const float* x, const int* incx, const float* y,
           const int* incy, float* a, const int* lda);
void dger_(const int* m, const int* n, const double* alpha, const double* x, const int* incx, const double* y,
           const int* incy, double* a, const int* lda);
void cgeru_(const int* m, const int* n, const complex8* alpha, const complex8* x, const int* incx,
            const complex8* y, const int* incy, complex8* a, const int* lda);
void zgeru_(const int* m, const int* n, const complex16* alpha, const complex16* x, const int* incx,
            const complex16* y, const int* incy, complex16* a, const int* lda);
void cgerc_(const int* m, const int* n, const complex8* alpha, const complex8* x, const int* incx,
            const complex8* y, const int* incy, complex8* a, const int* lda);
void zgerc_(const int* m, const int* n, const complex16* alpha, const complex16* x, const int* incx,
            const complex16* y, const int* incy, complex16* a, const int* lda);

// Symmetric or Hermitian rank-1 update
void ssyr_(const char* uplo, const int* n, const float* alpha, const float* x, const int* incx, float* a,
           const int* lda);
void dsyr_(const char* uplo, const int* n, const double* alpha, const double* x, const int* incx, double* a,
           const int* lda);
void cher_(const char* uplo, const int* n, const float* alpha, const complex8* x, const int* incx,
           complex8* a, const int* lda);
void zher_(const char* uplo, const int* n, const double* alpha, const complex16* x, const int* incx,
           complex16* a, const int* lda);

// Symmetric or Hermitian packed rank-1 update
void sspr_(const char* uplo, const int* n, const float* alpha, const float* x, const int* incx, float* ap);
void dspr_(const char* uplo, const int* n, const double* alpha, const double* x, const int* incx, double* ap);
void chpr_(const char* uplo, const int* n, const float* alpha, const complex8* x, const int* incx,
           complex8* ap);
void zhpr_(const char* uplo, const int* n, const double* alpha, const complex16* x, const int* incx,
           complex16* ap);

// Symmetric or Hermitian rank-2 update
void ssyr2_(const char* uplo, const int* n, const float* alpha, const float* x, const int* incx,
            const float* y, const int* incy, float* a, const int* lda);
void dsyr2_(const char* uplo, const int* n, const double* alpha, const double* x, const int* incx,
            const double* y, const int* incy, double* a, const int* lda);
void cher2_(const char* uplo, const int* n, const complex8* alpha, const complex8* x, const int* incx,
            const complex8* y, const int* incy, complex8* a, const int* lda);
void zher2_(const char* uplo, const int* n, const complex16* alpha, const complex16* x, const int* incx,
            const complex16* y, const int* incy, complex16* a, const int* lda);

// Symmetric or Hermitian packed rank-2 update
void sspr2_(const char* uplo, const int* n, const float* alpha, const float* x, const int* incx,
            const float* y, const int* incy, float* ap);
void dspr2_(const char* uplo, const int* n, const double* alpha, const double* x, const int* incx,
            const double* y, const int* incy, double* ap);
void chpr2_(const char* uplo, const int* n, const complex8* alpha, const complex8* x, const int* incx,
            const complex8* y, const int* incy, complex8* ap);
void zhpr2_(const char* uplo, const int* n, const complex16* alpha, const complex16* x, const int* incx,
            const complex16* y, const int* incy, complex16* ap);

// C = alpha op(A) op(B) + beta C
void sgemm_(const char* transa, const char* transb, const int* m, const int* n, const int* k,
            const float* alpha, const float* a, const int* lda, const float* b, const int* ldb,
            const float* beta, float* c, const int* ldc);
void dgemm_(const char* transa, const char* transb, const int* m, const int* n, const int* k,
            const double* alpha, const double* a, const int* lda, const double* b, const int* ldb,
            const double* beta, double* c, const int* ldc);
void cgemm_(const char* transa, const char* transb, const int* m, const int* n, const int* k,
            const complex8* alpha, const complex8* a, const int* lda, const complex8* b, const int* ldb,
            const complex8* beta, complex8* c, const int* ldc);
void zgemm_(const char* transa, const char* transb, const int* m, const int* n, const int* k,
            const complex16* alpha, const complex16* a, const int* lda, const complex16* b, const int* ldb,
            const complex16* beta, complex16* c, const int* ldc);

// C = alpha A B + beta C or alpha B A + beta C, A symmetric or Hermitian
void ssymm_(const char* side, const char* uplo, const int* m, const int* n, const float* alpha,
            const float* a, const int* lda, const float* b, const int* ldb, const float* beta, float* c,
            const int* ldc);
void dsymm_(const char* side, const char* uplo, const int* m, const int* n, const double* alpha,
            const double* a, const int* lda, const double* b, const int* ldb, const double* beta, double* c,
            const int* ldc);
void csymm_(const char* side, const char* uplo, const int* m, const int* n, const complex8* alpha,
            const complex8* a, const int* lda, const complex8* b, const int* ldb, const complex8* beta,
            complex8* c, const int* ldc);
void zsymm_(const char* side, const char* uplo, const int* m, const int* n, const complex16* alpha,
            const complex16* a, const int* lda, const complex16* b, const int* ldb, const complex16* beta,
            complex16* c, const int* ldc);
void chemm_(const char* side, const char* uplo, const int* m, const int* n, const complex8* alpha,
            const complex8* a, const int* lda, const complex8* b, const int* ldb, const complex8* beta,
            complex8* c, const int* ldc);
void zhemm_(const char* side, const char* uplo, const int* m, const int* n, const complex16* alpha,
            const complex16* a, const int* lda, const complex16* b, const int* ldb, const complex16* beta,
            complex16* c, const int* ldc);

// C = alpha A op(A) + beta C and the like, C symmetric or Hermitian
void ssyrk_(const char* uplo, const char* trans, const int* n, const int* k, const float* alpha,
            const float* a, const int* lda, const float* beta, float* c, const int* ldc);
void dsyrk_(const char* uplo, const char* trans, const int* n, const int* k, const double* alpha,
            const double* a, const int* lda, const double* beta, double* c, const int* ldc);
void csyrk_(const char* uplo, const char* trans, const int* n, const int* k, const complex8* alpha,
            const complex8* a, const int* lda, const complex8* beta, complex8* c, const int* ldc);
void zsyrk_(const char* uplo, const char* trans, const int* n, const int* k, const complex16* alpha,
            const complex16* a, const int* lda, const complex16* beta, complex16* c, const int* ldc);
void cherk_(const char* uplo, const char* trans, const int* n, const int* k, const float* alpha,
            const complex8* a, const int* lda, const float* beta, complex8* c, const int* ldc);
void zherk_(const char* uplo, const char* trans, const int* n, const int* k, const double* alpha,
            const complex16* a, const int* lda, const double* beta, complex16* c, const int* ldc);

// C = alpha A op(B) + alpha B op(A) + beta C and the like
void ssyr2k_(const char* uplo, const char* trans, const int* n, const int* k, const float* alpha,
             const float* a, const int* lda, const float* b, const int* ldb, const float* beta, float* c,
             const int* ldc);
void dsyr2k_(const char* uplo, const char* trans, const int* n, const int* k, const double* alpha,
             const double* a, const int* lda, const double* b, const int* ldb, const double* beta, double* c,
             const int* ldc);
void csyr2k_(const char* uplo, const char* trans, const int* n, const int* k, const complex8* alpha,
             const complex8* a, const int* lda, const complex8* b, const int* ldb, const complex8* beta,
             complex8* c, const int* ldc);
void zsyr2k_(const char* uplo, const char* trans, const int* n, const int* k, const complex16* alpha,
             const complex16* a, const int* lda, const complex16* b, const int* ldb, const complex16* beta,
             complex16* c, const int* ldc);
void cher2k_(const char* uplo, const char* trans, const int* n, const int* k, const complex8* alpha,
             const complex8* a, const int* lda, const complex8* b, const int* ldb, const float* beta,
             complex8* c, const int* ldc);
void zher2k_(const char* uplo, const char* trans, const int* n, const int* k, const complex16* alpha,
             const complex16* a, const int* lda, const complex16* b, const int* ldb, const double* beta,
             complex16* c, const int* ldc);

// B = alpha op(A) B or alpha B op(A), A triangular, and the solves
void strmm_(const char* side, const char* uplo, const char* transa, const char* diag, const int* m,
            const int* n, const float* alpha, const float* a, const int* lda, float* b, const int* ldb);
void dtrmm_(const char* side, const char* uplo, const char* transa, const char* diag, const int* m,
            const int* n, const double* alpha, const double* a, const int* lda, double* b, const int* ldb);
void ctrmm_(const char* side, const char* uplo, const char* transa, const char* diag, const int* m,
            const int* n, const complex8* alpha, const complex8* a, const int* lda, complex8* b,
            const int* ldb);
void ztrmm_(const char* side, const char* uplo, const char* transa, const char* diag, const int* m,
            const int* n, const complex16* alpha, const complex16* a, const int* lda, complex16* b,
            const int* ldb);
void strsm_(const char* side, const char* uplo, const char* transa, const char* diag, const int* m,
            const int* n, const float* alpha, const float* a, const int* lda, float* b, const int* ldb);
void dtrsm_(const char* side, const char* uplo, const char* transa, const char* diag, const int* m,
            const int* n, const double* alpha, const double* a, const int* lda, double* b, const int* ldb);
void ctrsm_(const char* side, const char* uplo, const char* transa, const char* diag, const int* m,
            const int* n, const complex8* alpha, const complex8* a, const int* lda, complex8* b,
            const int* ldb);
void ztrsm_(const char* side, const char* uplo, const char* transa, const char* diag, const int* m,
            const int* n, const complex16* alpha, const complex16* a, const int* lda, complex16* b,
            const int* ldb);

}  // extern "C"
#pragma GCC visibility pop

}  // namespace qel::dropin
