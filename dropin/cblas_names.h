// SPDX-License-Identifier: BSD-3-Clause
// The C interface to the BLAS as compiled programs call it: sizes and real scalars by value, complex scalars
// by address, matrices row- or column-major, options as enumerators with the interface's numbers. Seen from
// C the complex pointers are void pointers, which is the same ABI.
#pragma once

#include <stddef.h>

#include "service/core_types.h"

namespace qel::dropin {

// The int underneath lets a caller's wrong number be looked at and reported.
enum CBLAS_LAYOUT : int { CblasRowMajor = 101, CblasColMajor = 102 };
enum CBLAS_TRANSPOSE : int { CblasNoTrans = 111, CblasTrans = 112, CblasConjTrans = 113 };
enum CBLAS_UPLO : int { CblasUpper = 121, CblasLower = 122 };
enum CBLAS_DIAG : int { CblasNonUnit = 131, CblasUnit = 132 };
enum CBLAS_SIDE : int { CblasLeft = 141, CblasRight = 142 };

#pragma GCC visibility push(default)
extern "C" {

/// 1 while a report about a row-major call is out: its position then counts the arguments of the
/// column-major call that stands for it. Error handlers of test programs read it.
extern int RowMajorStrg;
/// For error handlers that serve both interfaces; always 0, since C calls report to cblas_xerbla alone.
extern int CBLAS_CallFromC;

/// Told of bad arguments of the C interface; format and what follows are printf's. Called through the
/// dynamic symbol, so that a program's own definition wins.
void cblas_xerbla(int position, const char* name, const char* format, ...)
    __attribute__((format(printf, 3, 4)));

// Sum of x_i y_i; sdsdot and dsdot sum in double precision
float cblas_sdot(int n, const float* x, int incx, const float* y, int incy);
double cblas_ddot(int n, const double* x, int incx, const double* y, int incy);
double cblas_dsdot(int n, const float* x, int incx, const float* y, int incy);
float cblas_sdsdot(int n, float b, const float* x, int incx, const float* y, int incy);
void cblas_cdotu_sub(int n, const complex8* x, int incx, const complex8* y, int incy, complex8* sum);
void cblas_cdotc_sub(int n, const complex8* x, int incx, const complex8* y, int incy, complex8* sum);
void cblas_zdotu_sub(int n, const complex16* x, int incx, const complex16* y, int incy, complex16* sum);
void cblas_zdotc_sub(int n, const complex16* x, int incx, const complex16* y, int incy, complex16* sum);

// Y += a x
void cblas_saxpy(int n, float alpha, const float* x, int incx, float* y, int incy);
void cblas_daxpy(int n, double alpha, const double* x, int incx, double* y, int incy);
void cblas_caxpy(int n, const complex8* alpha, const complex8* x, int incx, complex8* y, int incy);
void cblas_zaxpy(int n, const complex16* alpha, const complex16* x, int incx, complex16* y, int incy);

// Y = x
void cblas_scopy(int n, const float* x, int incx, float* y, int incy);
void cblas_dcopy(int n, const double* x, int incx, double* y, int incy);
void cblas_ccopy(int n, const complex8* x, int incx, complex8* y, int incy);
void cblas_zcopy(int n, const complex16* x, int incx, complex16* y, int incy);

// Exchange of x and y
void cblas_sswap(int n, float* x, int incx, float* y, int incy);
void cblas_dswap(int n, double* x, int incx, double* y, int incy);
void cblas_cswap(int n, complex8* x, int incx, complex8* y, int incy);
void cblas_zswap(int n, complex16* x, int incx, complex16* y, int incy);

// X *= a
void cblas_sscal(int n, float alpha, float* x, int incx);
void cblas_dscal(int n, double alpha, double* x, int incx);
void cblas_cscal(int n, const complex8* alpha, complex8* x, int incx);
void cblas_zscal(int n, const complex16* alpha, complex16* x, int incx);
void cblas_csscal(int n, float alpha, complex8* x, int incx);
void cblas_zdscal(int n, double alpha, complex16* x, int incx);

// Sum of |x_i|, for complex elements of |re| + |im|
float cblas_sasum(int n, const float* x, int incx);
double cblas_dasum(int n, const double* x, int incx);
float cblas_scasum(int n, const complex8* x, int incx);
double cblas_dzasum(int n, const complex16* x, int incx);

// Euclidean norm
float cblas_snrm2(int n, const float* x, int incx);
double cblas_dnrm2(int n, const double* x, int incx);
float cblas_scnrm2(int n, const complex8* x, int incx);
double cblas_dznrm2(int n, const complex16* x, int incx);

// Position of the element of largest or smallest size
size_t cblas_isamax(int n, const float* x, int incx);
size_t cblas_idamax(int n, const double* x, int incx);
size_t cblas_icamax(int n, const complex8* x, int incx);
size_t cblas_izamax(int n, const complex16* x, int incx);
size_t cblas_isamin(int n, const float* x, int incx);
size_t cblas_idamin(int n, const double* x, int incx);
size_t cblas_icamin(int n, const complex8* x, int incx);
size_t cblas_izamin(int n, const complex16* x, int incx);

// Plane rotation of the points (x_i, y_i)
void cblas_srot(int n, float* x, int incx, float* y, int incy, float c, float s);
void cblas_drot(int n, double* x, int incx, double* y, int incy, double c, double s);
void cblas_csrot(int n, complex8* x, int incx, complex8* y, int incy, float c, float s);
void cblas_zdrot(int n, complex16* x, int incx, complex16* y, int incy, double c, double s);

// Rotation that takes (a, b) to (r, 0)
void cblas_srotg(float* a, float* b, float* c, float* s);
void cblas_drotg(double* a, double* b, double* c, double* s);
void cblas_crotg(complex8* a, complex8* b, float* c, complex8* s);
void cblas_zrotg(complex16* a, complex16* b, double* c, complex16* s);

// Modified rotation and its construction
void cblas_srotm(int n, float* x, int incx, float* y, int incy, const float* param);
void cblas_drotm(int n, double* x, int incx, double* y, int incy, const double* param);
void cblas_srotmg(float* d1, float* d2, float* x1, float y1, float* param);
void cblas_drotmg(double* d1, double* d2, double* x1, double y1, double* param);

// |re| + |im|
float cblas_scabs1(const complex8* z);
double cblas_dcabs1(const complex16* z);

// General matrix times vector: y = alpha op(A) x + beta y
void cblas_sgemv(CBLAS_LAYOUT layout, CBLAS_TRANSPOSE trans, int m, int n, float alpha, const float* a,
                 int lda, const float* x, int incx, float beta, float* y, int incy);
void cblas_dgemv(CBLAS_LAYOUT layout, CBLAS_TRANSPOSE trans, int m, int n, double alpha, const double* a,
                 int lda, const double* x, int incx, double beta, double* y, int incy);
void cblas_cgemv(CBLAS_LAYOUT layout, CBLAS_TRANSPOSE trans, int m, int n, const complex8* alpha,
                 const complex8* a, int lda, const complex8* x, int incx, const complex8* beta, complex8* y,
                 int incy);
void cblas_zgemv(CBLAS_LAYOUT layout, CBLAS_TRANSPOSE trans, int m, int n, const complex16* alpha,
                 const complex16* a, int lda, const complex16* x, int incx, const complex16* beta,
                 complex16* y, int incy);

// General band matrix times vector
void cblas_sgbmv(CBLAS_LAYOUT layout, CBLAS_TRANSPOSE trans, int m, int n, int kl, int ku, float alpha,
                 const float* a, int lda, const float* x, int incx, float beta, float* y, int incy);
void cblas_dgbmv(CBLAS_LAYOUT layout, CBLAS_TRANSPOSE trans, int m, int n, int kl, int ku, double alpha,
                 const double* a, int lda, const double* x, int incx, double beta, double* y, int incy);
void cblas_cgbmv(CBLAS_LAYOUT layout, CBLAS_TRANSPOSE trans, int m, int n, int kl, int ku,
                 const complex8* alpha, const complex8* a, int lda, const complex8* x, int incx,
                 const complex8* beta, complex8* y, int incy);
void cblas_zgbmv(CBLAS_LAYOUT layout, CBLAS_TRANSPOSE trans, int m, int n, int kl, int ku,
                 const complex16* alpha, const complex16* a, int lda, const complex16* x, int incx,
                 const complex16* beta, complex16* y, int incy);

// Symmetric or Hermitian matrix times vector
void cblas_ssymv(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, int n, float alpha, const float* a, int lda,
                 const float* x, int incx, float beta, float* y, int incy);
void cblas_dsymv(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, int n, double alpha, const double* a, int lda,
                 const double* x, int incx, double beta, double* y, int incy);
void cblas_chemv(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, int n, const complex8* alpha, const complex8* a,
                 int lda, const complex8* x, int incx, const complex8* beta, complex8* y, int incy);
void cblas_zhemv(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, int n, const complex16* alpha, const complex16* a,
                 int lda, const complex16* x, int incx, const complex16* beta, complex16* y, int incy);

// Symmetric or Hermitian band matrix times vector
void cblas_ssbmv(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, int n, int k, float alpha, const float* a, int lda,
                 const float* x, int incx, float beta, float* y, int incy);
void cblas_dsbmv(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, int n, int k, double alpha, const double* a, int lda,
                 const double* x, int incx, double beta, double* y, int incy);
void cblas_chbmv(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, int n, int k, const complex8* alpha, const complex8* a,
                 int lda, const complex8* x, int incx, const complex8* beta, complex8* y, int incy);
void cblas_zhbmv(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, int n, int k, const complex16* alpha,
                 const complex16* a, int lda, const complex16* x, int incx, const complex16* beta,
                 complex16* y, int incy);

// Symmetric or Hermitian packed matrix times vector
void cblas_sspmv(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, int n, float alpha, const float* ap, const float* x,
                 int incx, float beta, float* y, int incy);
void cblas_dspmv(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, int n, double alpha, const double* ap, const double* x,
                 int incx, double beta, double* y, int incy);
void cblas_chpmv(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, int n, const complex8* alpha, const complex8* ap,
                 const complex8* x, int incx, const complex8* beta, complex8* y, int incy);
void cblas_zhpmv(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, int n, const complex16* alpha, const complex16* ap,
                 const complex16* x, int incx, const complex16* beta, complex16* y, int incy);

// Triangular matrix times vector, and the solve
void cblas_strmv(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, CBLAS_TRANSPOSE trans, CBLAS_DIAG diag, int n,
                 const float* a, int lda, float* x, int incx);
void cblas_dtrmv(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, CBLAS_TRANSPOSE trans, CBLAS_DIAG diag, int n,
                 const double* a, int lda, double* x, int incx);
void cblas_ctrmv(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, CBLAS_TRANSPOSE trans, CBLAS_DIAG diag, int n,
                 const complex8* a, int lda, complex8* x, int incx);
void cblas_ztrmv(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, CBLAS_TRANSPOSE trans, CBLAS_DIAG diag, int n,
                 const complex16* a, int lda, complex16* x, int incx);
void cblas_strsv(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, CBLAS_TRANSPOSE trans, CBLAS_DIAG diag, int n,
                 const float* a, int lda, float* x, int incx);
void cblas_dtrsv(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, CBLAS_TRANSPOSE trans, CBLAS_DIAG diag, int n,
                 const double* a, int lda, double* x, int incx);
void cblas_ctrsv(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, CBLAS_TRANSPOSE trans, CBLAS_DIAG diag, int n,
                 const complex8* a, int lda, complex8* x, int incx);
void cblas_ztrsv(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, CBLAS_TRANSPOSE trans, CBLAS_DIAG diag, int n,
                 const complex16* a, int lda, complex16* x, int incx);

// Triangular band matrix times vector, and the solve
void cblas_stbmv(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, CBLAS_TRANSPOSE trans, CBLAS_DIAG diag, int n, int k,
                 const float* a, int lda, float* x, int incx);
void cblas_dtbmv(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, CBLAS_TRANSPOSE trans, CBLAS_DIAG diag, int n, int k,
                 const double* a, int lda, double* x, int incx);
void cblas_ctbmv(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, CBLAS_TRANSPOSE trans, CBLAS_DIAG diag, int n, int k,
                 const complex8* a, int lda, complex8* x, int incx);
void cblas_ztbmv(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, CBLAS_TRANSPOSE trans, CBLAS_DIAG diag, int n, int k,
                 const complex16* a, int lda, complex16* x, int incx);
void cblas_stbsv(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, CBLAS_TRANSPOSE trans, CBLAS_DIAG diag, int n, int k,
                 const float* a, int lda, float* x, int incx);
void cblas_dtbsv(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, CBLAS_TRANSPOSE trans, CBLAS_DIAG diag, int n, int k,
                 const double* a, int lda, double* x, int incx);
void cblas_ctbsv(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, CBLAS_TRANSPOSE trans, CBLAS_DIAG diag, int n, int k,
                 const complex8* a, int lda, complex8* x, int incx);
void cblas_ztbsv(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, CBLAS_TRANSPOSE trans, CBLAS_DIAG diag, int n, int k,
                 const complex16* a, int lda, complex16* x, int incx);

// Triangular packed matrix times vector, and the solve
void cblas_stpmv(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, CBLAS_TRANSPOSE trans, CBLAS_DIAG diag, int n,
                 const float* ap, float* x, int incx);
void cblas_dtpmv(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, CBLAS_TRANSPOSE trans, CBLAS_DIAG diag, int n,
                 const double* ap, double* x, int incx);
void cblas_ctpmv(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, CBLAS_TRANSPOSE trans, CBLAS_DIAG diag, int n,
                 const complex8* ap, complex8* x, int incx);
void cblas_ztpmv(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, CBLAS_TRANSPOSE trans, CBLAS_DIAG diag, int n,
                 const complex16* ap, complex16* x, int incx);
void cblas_stpsv(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, CBLAS_TRANSPOSE trans, CBLAS_DIAG diag, int n,
                 const float* ap, float* x, int incx);
void cblas_dtpsv(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, CBLAS_TRANSPOSE trans, CBLAS_DIAG diag, int n,
                 const double* ap, double* x, int incx);
void cblas_ctpsv(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, CBLAS_TRANSPOSE trans, CBLAS_DIAG diag, int n,
                 const complex8* ap, complex8* x, int incx);
void cblas_ztpsv(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, CBLAS_TRANSPOSE trans, CBLAS_DIAG diag, int n,
                 const complex16* ap, complex16* x, int incx);

// Rank-1 update: A += alpha x y^T, or y^H for gerc
void cblas_sger(CBLAS_LAYOUT layout, int m, int n, float alpha, const float* x, int incx, const float* y,
                int incy, float* a, int lda);
void cblas_dger(CBLAS_LAYOUT layout, int m, int n, double alpha, const double* x, int incx, const double* y,
                int incy, double* a, int lda);
void cblas_cgeru(CBLAS_LAYOUT layout, int m, int n, const complex8* alpha, const complex8* x, int incx,
                 const complex8* y, int incy, complex8* a, int lda);
void cblas_zgeru(CBLAS_LAYOUT layout, int m, int n, const complex16* alpha, const complex16* x, int incx,
                 const complex16* y, int incy, complex16* a, int lda);
void cblas_cgerc(CBLAS_LAYOUT layout, int m, int n, const complex8* alpha, const complex8* x, int incx,
                 const complex8* y, int incy, complex8* a, int lda);
void cblas_zgerc(CBLAS_LAYOUT layout, int m, int n, const complex16* alpha, const complex16* x, int incx,
                 const complex16* y, int incy, complex16* a, int lda);

// Symmetric or Hermitian rank-1 update
void cblas_ssyr(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, int n, float alpha, const float* x, int incx, float* a,
                int lda);
void cblas_dsyr(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, int n, double alpha, const double* x, int incx,
                double* a, int lda);
void cblas_cher(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, int n, float alpha, const complex8* x, int incx,
                complex8* a, int lda);
void cblas_zher(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, int n, double alpha, const complex16* x, int incx,
                complex16* a, int lda);

// Symmetric or Hermitian packed rank-1 update
void cblas_sspr(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, int n, float alpha, const float* x, int incx,
                float* ap);
void cblas_dspr(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, int n, double alpha, const double* x, int incx,
                double* ap);
void cblas_chpr(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, int n, float alpha, const complex8* x, int incx,
                complex8* ap);
void cblas_zhpr(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, int n, double alpha, const complex16* x, int incx,
                complex16* ap);

// Symmetric or Hermitian rank-2 update
void cblas_ssyr2(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, int n, float alpha, const float* x, int incx,
                 const float* y, int incy, float* a, int lda);
void cblas_dsyr2(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, int n, double alpha, const double* x, int incx,
                 const double* y, int incy, double* a, int lda);
void cblas_cher2(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, int n, const complex8* alpha, const complex8* x,
                 int incx, const complex8* y, int incy, complex8* a, int lda);
void cblas_zher2(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, int n, const complex16* alpha, const complex16* x,
                 int incx, const complex16* y, int incy, complex16* a, int lda);

// Symmetric or Hermitian packed rank-2 update
void cblas_sspr2(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, int n, float alpha, const float* x, int incx,
                 const float* y, int incy, float* ap);
void cblas_dspr2(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, int n, double alpha, const double* x, int incx,
                 const double* y, int incy, double* ap);
void cblas_chpr2(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, int n, const complex8* alpha, const complex8* x,
                 int incx, const complex8* y, int incy, complex8* ap);
void cblas_zhpr2(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, int n, const complex16* alpha, const complex16* x,
                 int incx, const complex16* y, int incy, complex16* ap);

// C = alpha op(A) op(B) + beta C
void cblas_sgemm(CBLAS_LAYOUT layout, CBLAS_TRANSPOSE transa, CBLAS_TRANSPOSE transb, int m, int n, int k,
                 float alpha, const float* a, int lda, const float* b, int ldb, float beta, float* c,
                 int ldc);
void cblas_dgemm(CBLAS_LAYOUT layout, CBLAS_TRANSPOSE transa, CBLAS_TRANSPOSE transb, int m, int n, int k,
                 double alpha, const double* a, int lda, const double* b, int ldb, double beta, double* c,
                 int ldc);
void cblas_cgemm(CBLAS_LAYOUT layout, CBLAS_TRANSPOSE transa, CBLAS_TRANSPOSE transb, int m, int n, int k,
                 const complex8* alpha, const complex8* a, int lda, const complex8* b, int ldb,
                 const complex8* beta, complex8* c, int ldc);
void cblas_zgemm(CBLAS_LAYOUT layout, CBLAS_TRANSPOSE transa, CBLAS_TRANSPOSE transb, int m, int n, int k,
                 const complex16* alpha, const complex16* a, int lda, const complex16* b, int ldb,
                 const complex16* beta, complex16* c, int ldc);

// C = alpha A B + beta C or alpha B A + beta C, A symmetric or Hermitian
void cblas_ssymm(CBLAS_LAYOUT layout, CBLAS_SIDE side, CBLAS_UPLO uplo, int m, int n, float alpha,
                 const float* a, int lda, const float* b, int ldb, float beta, float* c, int ldc);
void cblas_dsymm(CBLAS_LAYOUT layout, CBLAS_SIDE side, CBLAS_UPLO uplo, int m, int n, double alpha,
                 const double* a, int lda, const double* b, int ldb, double beta, double* c, int ldc);
void cblas_csymm(CBLAS_LAYOUT layout, CBLAS_SIDE side, CBLAS_UPLO uplo, int m, int n, const complex8* alpha,
                 const complex8* a, int lda, const complex8* b, int ldb, const complex8* beta, complex8* c,
                 int ldc);
void cblas_zsymm(CBLAS_LAYOUT layout, CBLAS_SIDE side, CBLAS_UPLO uplo, int m, int n, const complex16* alpha,
                 const complex16* a, int lda, const complex16* b, int ldb, const complex16* beta,
                 complex16* c, int ldc);
void cblas_chemm(CBLAS_LAYOUT layout, CBLAS_SIDE side, CBLAS_UPLO uplo, int m, int n, const complex8* alpha,
                 const complex8* a, int lda, const complex8* b, int ldb, const complex8* beta, complex8* c,
                 int ldc);
void cblas_zhemm(CBLAS_LAYOUT layout, CBLAS_SIDE side, CBLAS_UPLO uplo, int m, int n, const complex16* alpha,
                 const complex16* a, int lda, const complex16* b, int ldb, const complex16* beta,
                 complex16* c, int ldc);

// C = alpha A op(A) + beta C and the like, C symmetric or Hermitian
void cblas_ssyrk(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, CBLAS_TRANSPOSE trans, int n, int k, float alpha,
                 const float* a, int lda, float beta, float* c, int ldc);
void cblas_dsyrk(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, CBLAS_TRANSPOSE trans, int n, int k, double alpha,
                 const double* a, int lda, double beta, double* c, int ldc);
void cblas_csyrk(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, CBLAS_TRANSPOSE trans, int n, int k,
                 const complex8* alpha, const complex8* a, int lda, const complex8* beta, complex8* c,
                 int ldc);
void cblas_zsyrk(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, CBLAS_TRANSPOSE trans, int n, int k,
                 const complex16* alpha, const complex16* a, int lda, const complex16* beta, complex16* c,
                 int ldc);
void cblas_cherk(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, CBLAS_TRANSPOSE trans, int n, int k, float alpha,
                 const complex8* a, int lda, float beta, complex8* c, int ldc);
void cblas_zherk(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, CBLAS_TRANSPOSE trans, int n, int k, double alpha,
                 const complex16* a, int lda, double beta, complex16* c, int ldc);

// C = alpha A op(B) + alpha B op(A) + beta C and the like
void cblas_ssyr2k(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, CBLAS_TRANSPOSE trans, int n, int k, float alpha,
                  const float* a, int lda, const float* b, int ldb, float beta, float* c, int ldc);
void cblas_dsyr2k(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, CBLAS_TRANSPOSE trans, int n, int k, double alpha,
                  const double* a, int lda, const double* b, int ldb, double beta, double* c, int ldc);
void cblas_csyr2k(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, CBLAS_TRANSPOSE trans, int n, int k,
                  const complex8* alpha, const complex8* a, int lda, const complex8* b, int ldb,
                  const complex8* beta, complex8* c, int ldc);
void cblas_zsyr2k(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, CBLAS_TRANSPOSE trans, int n, int k,
                  const complex16* alpha, const complex16* a, int lda, const complex16* b, int ldb,
                  const complex16* beta, complex16* c, int ldc);
void cblas_cher2k(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, CBLAS_TRANSPOSE trans, int n, int k,
                  const complex8* alpha, const complex8* a, int lda, const complex8* b, int ldb, float beta,
                  complex8* c, int ldc);
void cblas_zher2k(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, CBLAS_TRANSPOSE trans, int n, int k,
                  const complex16* alpha, const complex16* a, int lda, const complex16* b, int ldb,
                  double beta, complex16* c, int ldc);

// B = alpha op(A) B or alpha B op(A), A triangular, and the solves
void cblas_strmm(CBLAS_LAYOUT layout, CBLAS_SIDE side, CBLAS_UPLO uplo, CBLAS_TRANSPOSE transa,
                 CBLAS_DIAG diag, int m, int n, float alpha, const float* a, int lda, float* b, int ldb);
void cblas_dtrmm(CBLAS_LAYOUT layout, CBLAS_SIDE side, CBLAS_UPLO uplo, CBLAS_TRANSPOSE transa,
                 CBLAS_DIAG diag, int m, int n, double alpha, const double* a, int lda, double* b, int ldb);
void cblas_ctrmm(CBLAS_LAYOUT layout, CBLAS_SIDE side, CBLAS_UPLO uplo, CBLAS_TRANSPOSE transa,
                 CBLAS_DIAG diag, int m, int n, const complex8* alpha, const complex8* a, int lda,
                 complex8* b, int ldb);
void cblas_ztrmm(CBLAS_LAYOUT layout, CBLAS_SIDE side, CBLAS_UPLO uplo, CBLAS_TRANSPOSE transa,
                 CBLAS_DIAG diag, int m, int n, const complex16* alpha, const complex16* a, int lda,
                 complex16* b, int ldb);
void cblas_strsm(CBLAS_LAYOUT layout, CBLAS_SIDE side, CBLAS_UPLO uplo, CBLAS_TRANSPOSE transa,
                 CBLAS_DIAG diag, int m, int n, float alpha, const float* a, int lda, float* b, int ldb);
void cblas_dtrsm(CBLAS_LAYOUT layout, CBLAS_SIDE side, CBLAS_UPLO uplo, CBLAS_TRANSPOSE transa,
                 CBLAS_DIAG diag, int m, int n, double alpha, const double* a, int lda, double* b, int ldb);
void cblas_ctrsm(CBLAS_LAYOUT layout, CBLAS_SIDE side, CBLAS_UPLO uplo, CBLAS_TRANSPOSE transa,
                 CBLAS_DIAG diag, int m, int n, const complex8* alpha, const complex8* a, int lda,
                 complex8* b, int ldb);
void cblas_ztrsm(CBLAS_LAYOUT layout, CBLAS_SIDE side, CBLAS_UPLO uplo, CBLAS_TRANSPOSE transa,
                 CBLAS_DIAG diag, int m, int n, const complex16* alpha, const complex16* a, int lda,
                 complex16* b, int ldb);

}  // extern "C"
#pragma GCC visibility pop

}  // namespace qel::dropin
