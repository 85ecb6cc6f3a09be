// SPDX-License-Identifier: BSD-3-Clause
// What DotNetBlas, MatrixDotNetBlas and MatrixSupport offer under the same names.
#include "tavik/kernel/matrix_support.h"

#include "facade/calls.h"
#include "facade/views.h"
#include "qel/vml.h"
#include "tavik/kernel/matrix_dot_net_blas.h"

namespace Tavik::Kernel {
namespace {

/// C := A / B by vector math, each from its block's offset.
void fast_divide(int n, const DoubleDataBlock& a, const DoubleDataBlock& b, const DoubleDataBlock& c) {
  call(vddiv, n, block_pointer(a), block_pointer(b), block_pointer(c));
}

/// x / y, with epsilon for a y that is exactly 0.
double safe_quotient(double x, double y, double epsilon) { return x / (y == 0.0 ? epsilon : y); }

void safe_divide(int len, const Array<double>& a, const Array<double>& b, const Array<double>& c,
                 double epsilon) {
  if (len > a.Length() || len > b.Length() || len > c.Length()) {
    throw ArgumentException("Arrays do not have enough elements.");
  }
  for (int i = 0; i < len; ++i) c[i] = safe_quotient(a[i], b[i], epsilon);
}

void safe_divide(int rows, int cols, const DoubleDataBlock& a, int aRowStride, int aColStride,
                 const DoubleDataBlock& b, int bRowStride, int bColStride, const DoubleDataBlock& c,
                 int cRowStride, int cColStride, double epsilon) {
  for (int j = 0; j < cols; ++j) {
    for_each_element(
        rows, [=](double x, double y, double& z) { z = safe_quotient(x, y, epsilon); },
        column(rows, a, j, aRowStride, aColStride), column(rows, b, j, bRowStride, bColStride),
        column(rows, c, j, cRowStride, cColStride));
  }
}

void make_non_negative(int rows, int cols, const DoubleDataBlock& a, int rowStride, int colStride) {
  for (int j = 0; j < cols; ++j) {
    for_each_element(
        rows, [](double& x) { x = x < 0.0 ? 0.0 : x; }, column(rows, a, j, rowStride, colStride));
  }
}

int solve_symmetric_positive(char uplo, int n, int nrhs, const DoubleDataBlock& a, int lda,
                             const DoubleDataBlock& b, int ldb) {
  return call_info(dposv, uplo, n, nrhs, block_pointer(a), lda, block_pointer(b), ldb);
}

}  // namespace

#define DEFINE(Class)                                                                                        \
  int Class::SolveSymPd(char uplo, int n, int nrhs, const DoubleDataBlock& a, int lda,                       \
                        const DoubleDataBlock& b, int ldb) {                                                 \
    return solve_symmetric_positive(uplo, n, nrhs, a, lda, b, ldb);                                          \
  }                                                                                                          \
  void Class::FastDivide(int n, const DoubleDataBlock& AData, const DoubleDataBlock& BData,                  \
                         const DoubleDataBlock& CData) {                                                     \
    fast_divide(n, AData, BData, CData);                                                                     \
  }                                                                                                          \
  void Class::SafeDivide(int len, const Array<double>& a, const Array<double>& b, const Array<double>& c) {  \
    safe_divide(len, a, b, c, epsilon);                                                                      \
  }                                                                                                          \
  void Class::SafeDivide(int rows, int cols, const DoubleDataBlock& AData, int ARowStride, int AColStride,   \
                         const DoubleDataBlock& BData, int BRowStride, int BColStride) {                     \
    safe_divide(rows, cols, AData, ARowStride, AColStride, BData, BRowStride, BColStride, AData, ARowStride, \
                AColStride, epsilon);                                                                        \
  }                                                                                                          \
  void Class::SafeDivide(int rows, int cols, const DoubleDataBlock& AData, int ARowStride, int AColStride,   \
                         const DoubleDataBlock& BData, int BRowStride, int BColStride,                       \
                         const DoubleDataBlock& CData, int CRowStride, int CColStride) {                     \
    safe_divide(rows, cols, AData, ARowStride, AColStride, BData, BRowStride, BColStride, CData, CRowStride, \
                CColStride, epsilon);                                                                        \
  }                                                                                                          \
  void Class::MakeNonNegative(int rows, int cols, const DoubleDataBlock& AData, int ARowStride,              \
                              int AColStride) {                                                              \
    make_non_negative(rows, cols, AData, ARowStride, AColStride);                                            \
  }
DEFINE(DotNetBlas)
DEFINE(MatrixDotNetBlas)
DEFINE(MatrixSupport)
#undef DEFINE

}  // namespace Tavik::Kernel
