// SPDX-License-Identifier: BSD-3-Clause
// Three numeric libraries in one process, libqel.so, the reference LAPACK with its BLAS, and METIS, each
// asked for what it is there for. Names of the first two overlap (dgesv_ and the like), so calls inside one
// may end in the other: results must be right whoever wins. The two programs differ in how the libraries come
// in.
#pragma once

#include <cstdint>

namespace coexistence {

struct complex16 {
  double real, imag;
};

// Every function by the prototype its callers use; 32-bit integers throughout.
using gesv_function = int(const int* n, const int* nrhs, double* a, const int* lda, int* ipiv, double* b,
                          const int* ldb, int* info);
using fortran_gesv_function = void(const int* n, const int* nrhs, double* a, const int* lda, int* ipiv,
                                   double* b, const int* ldb, int* info);
using gemm_function = void(const char* transa, const char* transb, const int* m, const int* n, const int* k,
                           const double* alpha, const double* a, const int* lda, const double* b,
                           const int* ldb, const double* beta, double* c, const int* ldc);
using zdotc_function = void(complex16* result, const int* n, const complex16* x, const int* incx,
                            const complex16* y, const int* incy);
using fortran_zdotc_function = complex16(const int* n, const complex16* x, const int* incx,
                                         const complex16* y, const int* incy);
using node_nd_function = int(int32_t* vertices, int32_t* starts, int32_t* neighbours, int32_t* weights,
                             int32_t* options, int32_t* permutation, int32_t* inverse);

struct functions {
  gesv_function* qel_dgesv;
  gemm_function* qel_dgemm;
  zdotc_function* qel_zdotc;
  fortran_gesv_function* dgesv_;
  gemm_function* dgemm_;
  fortran_zdotc_function* zdotc_;
  node_nd_function* metis_node_nd;
};

/// Runs everything, twice and in turns; prints what is wrong and returns how much it is.
int wrong_results(const functions& of);

}  // namespace coexistence
