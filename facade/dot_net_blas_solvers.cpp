// SPDX-License-Identifier: BSD-3-Clause
// Direct solvers and norms over blocks with a leading dimension.
#include <algorithm>

#include "facade/calls.h"
#include "tavik/kernel/dot_net_blas.h"

namespace Tavik::Kernel {
namespace {

template <class T>
int invert_factors(int n, T* a, int lda, const Array<int>& ipvt) {
  int* const pivots = array_pointer(ipvt);
  return with_core_indices(ipvt, [&] {
    return with_best_work<T>(
        [&](T* work, int lwork) { return call_info(entries<T>::getri, n, a, lda, pivots, work, lwork); });
  });
}

template <class T>
real_of<T> condition(char norm, int n, real_of<T> anorm, const T* a, int lda) {
  real_of<T> rcond = 0;
  if constexpr (is_complex<T>) {
    const workspace<T> work(2L * n);
    const workspace<real_of<T>> rwork(2L * n);
    call_info(entries<T>::gecon, norm, n, a, lda, anorm, &rcond, work.get(), rwork.get());
  } else {
    const workspace<T> work(4L * n);
    const workspace<int> iwork(n);
    call_info(entries<T>::gecon, norm, n, a, lda, anorm, &rcond, work.get(), iwork.get());
  }
  return rcond;
}

/// The rank, or an info that is not 0.
template <class T>
int least_squares(int m, int n, int nrhs, T* a, int lda, T* b, int ldb, int* jpvt, real_of<T> rcond) {
  int rank = 0;
  const workspace<real_of<T>> rwork(is_complex<T> ? 2L * n : 0);
  const int info = with_best_work<T>([&](T* work, int lwork) {
    if constexpr (is_complex<T>) {
      return call_info(entries<T>::gelsy, m, n, nrhs, a, lda, b, ldb, jpvt, rcond, &rank, work, lwork,
                       rwork.get());
    } else {
      return call_info(entries<T>::gelsy, m, n, nrhs, a, lda, b, ldb, jpvt, rcond, &rank, work, lwork);
    }
  });
  return info != 0 ? info : rank;
}

template <class T>
real_of<T> norm_of(char kind, int m, int n, int lda, const T* a) {
  if (kind != 'I' && kind != 'i') return call(entries<T>::lange, kind, m, n, a, lda, nullptr);
  const workspace<real_of<T>> work(m + 1L);
  return call(entries<T>::lange, kind, m, n, a, lda, work.get());
}

int qr_factors(int m, int n, const DoubleDataBlock& a, int lda, const DoubleDataBlock& tau) {
  double *const matrix = block_pointer(a), *const factors = block_pointer(tau);
  return with_best_work<double>(
      [&](double* work, int lwork) { return call_info(dgeqrf, m, n, matrix, lda, factors, work, lwork); });
}

/// C := op(Q) C with m reflections.
int multiply_by_q(char trans, int m, int n, const DoubleDataBlock& a, int lda, const DoubleDataBlock& tau,
                  const DoubleDataBlock& c, int ldc) {
  double *const matrix = block_pointer(a), *const factors = block_pointer(tau),
                *const target = block_pointer(c);
  return with_best_work<double>([&](double* work, int lwork) {
    return call_info(dormqr, 'L', trans, m, n, m, matrix, lda, factors, target, ldc, work, lwork);
  });
}

}  // namespace

#define DEFINE(T)                                                                                            \
  int DotNetBlas::LUFactorization(int rows, int cols, const DataBlock<T>& a, const Array<int>& ipvt) {       \
    return with_new_indices(                                                                                 \
        ipvt, call_info(entries<T>::getrf, rows, cols, block_pointer(a), rows, array_pointer(ipvt)));        \
  }                                                                                                          \
  /* Kept: the block of the factor gives the offset of the right-hand sides, too. */                         \
  int DotNetBlas::LUSolve(int n, int nrhs, const DataBlock<T>& a, int lda, const Array<int>& ipvt,           \
                          const DataBlock<T>& b, int ldb) {                                                  \
    T *const factors = block_pointer(a), *const sides = &b.Data[a.Offset];                                   \
    int* const pivots = array_pointer(ipvt);                                                                 \
    return with_core_indices(                                                                                \
        ipvt, [&] { return call_info(entries<T>::getrs, 'N', n, nrhs, factors, lda, pivots, sides, ldb); }); \
  }                                                                                                          \
  int DotNetBlas::LUInverse(int n, const DataBlock<T>& a, int lda, const Array<int>& ipvt) {                 \
    return invert_factors(n, block_pointer(a), lda, ipvt);                                                   \
  }                                                                                                          \
  real_of<T> DotNetBlas::LUCond(char norm, int n, real_of<T> anorm, const DataBlock<T>& a, int lda) {        \
    return condition<T>(norm, n, anorm, block_pointer(a), lda);                                              \
  }                                                                                                          \
  int DotNetBlas::LeastSquareCO(int m, int n, int nrhs, const DataBlock<T>& a, int lda,                      \
                                const DataBlock<T>& b, int ldb, const Array<int>& jpvt, real_of<T> rcond) {  \
    return with_new_indices(jpvt, least_squares<T>(m, n, nrhs, block_pointer(a), lda, block_pointer(b), ldb, \
                                                   array_pointer(jpvt), rcond));                             \
  }                                                                                                          \
  void DotNetBlas::SolveTriSystem(char uplo, char transa, int m, int n, const DataBlock<T>& a, int lda,      \
                                  const DataBlock<T>& b, int ldb) {                                          \
    call(entries<T>::trsm, 'L', uplo, transa, 'N', m, n, T(1), block_pointer(a), lda, block_pointer(b),      \
         ldb);                                                                                               \
  }                                                                                                          \
  real_of<T> DotNetBlas::MatrixNorm(char normType, int m, int n, int lda, const DataBlock<T>& a) {           \
    return norm_of(normType, m, n, lda, block_pointer(a));                                                   \
  }                                                                                                          \
  real_of<T> DotNetBlas::FrobNorm(int m, int n, int lda, const DataBlock<T>& a) {                            \
    return MatrixNorm('F', m, n, lda, a);                                                                    \
  }
TAVIK_FOR_ALL(DEFINE)
#undef DEFINE

double DotNetBlas::OneNorm(int m, int n, int lda, const DoubleDataBlock& a) {
  return MatrixNorm('1', m, n, lda, a);
}
double DotNetBlas::InfinityNorm(int m, int n, int lda, const DoubleDataBlock& a) {
  return MatrixNorm('I', m, n, lda, a);
}

int DotNetBlas::Solve(int n, const DoubleDataBlock& A, const Array<int>& ipvt, const DoubleDataBlock& b,
                      const DoubleDataBlock& x) {
  constexpr int kOne = 1;
  double* const solution = block_pointer(x);
  call(dcopy, n, block_pointer(b), kOne, solution, kOne);
  return call_info(dgesv, n, kOne, block_pointer(A), n, array_pointer(ipvt), solution, n);
}

int DotNetBlas::SolveTriDiag(int n, int nrhs, const DoubleDataBlock& dl, const DoubleDataBlock& d,
                             const DoubleDataBlock& du, const DoubleDataBlock& b, int ldb) {
  return call_info(dgtsv, n, nrhs, block_pointer(dl), block_pointer(d), block_pointer(du), block_pointer(b),
                   ldb);
}

int DotNetBlas::QRDecomp(int m, int n, const DoubleDataBlock& a, int lda, const DoubleDataBlock& tau) {
  return qr_factors(m, n, a, lda, tau);
}
// Kept: no pivoting; the permutation is there for the callers' sake only.
int DotNetBlas::QRWithPivot(int m, int n, const DoubleDataBlock& a, int lda, const Array<int>&,
                            const DoubleDataBlock& tau) {
  return qr_factors(m, n, a, lda, tau);
}
int DotNetBlas::QTransB(int m, int n, const DoubleDataBlock& a, int lda, const DoubleDataBlock& tau,
                        const DoubleDataBlock& c, int ldc) {
  return multiply_by_q('T', m, n, a, lda, tau, c, ldc);
}
int DotNetBlas::QB(int m, int n, const DoubleDataBlock& a, int lda, const DoubleDataBlock& tau,
                   const DoubleDataBlock& c, int ldc) {
  return multiply_by_q('N', m, n, a, lda, tau, c, ldc);
}

int DotNetBlas::LeastSqQRLQCalc(int m, int n, int nrhs, const DoubleDataBlock& a, int lda,
                                const DoubleDataBlock& b, int ldb) {
  const int lwork = 32 * (std::min(m, n) + std::max({m, n, nrhs}));
  const workspace<double> work(lwork);
  return call_info(dgels, 'N', m, n, nrhs, block_pointer(a), lda, block_pointer(b), ldb, work.get(), lwork);
}

}  // namespace Tavik::Kernel
