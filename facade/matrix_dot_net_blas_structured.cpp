// SPDX-License-Identifier: BSD-3-Clause
// Band, tridiagonal and packed matrices, over numeric entries.
#include <type_traits>

#include "facade/calls.h"
#include "tavik/kernel/matrix_dot_net_blas.h"

namespace Tavik::Kernel {
namespace {

/// A reciprocal condition number, or the info of run(&rcond) as a number if that is negative.
template <class R, class Run>
R condition_or_info(const Run& run) {
  R rcond = 0;
  const int info = run(&rcond);
  return info < 0 ? static_cast<R>(info) : rcond;
}

/// The estimate of an entry that takes 3 n elements and n integers of scratch, or, over complex types, 2 n
/// elements and n reals; arguments are those before the estimate.
template <class T, class Entry, class... A>
real_of<T> estimate(Entry* entry, int n, const A&... arguments) {
  using Second = std::conditional_t<is_complex<T>, real_of<T>, int>;
  const workspace<T> work((is_complex<T> ? 2L : 3L) * n);
  const workspace<Second> second(n);
  return condition_or_info<real_of<T>>(
      [&](real_of<T>* rcond) { return call_info(entry, arguments..., rcond, work.get(), second.get()); });
}
/// The same for an entry with 2 n elements and, over real types only, n integers.
template <class T, class Entry, class... A>
real_of<T> estimate_with_less(Entry* entry, int n, const A&... arguments) {
  const workspace<T> work(2L * n);
  return condition_or_info<real_of<T>>([&](real_of<T>* rcond) {
    if constexpr (is_complex<T>) {
      return call_info(entry, arguments..., rcond, work.get());
    } else {
      const workspace<int> iwork(n);
      return call_info(entry, arguments..., rcond, work.get(), iwork.get());
    }
  });
}

/// y := A x, or y := A x + y with accumulate, by a symmetric or Hermitian entry.
template <class T>
constexpr auto packed_product_entry() {
  if constexpr (is_complex<T>) {
    return entries<T>::hpmv;
  } else {
    return entries<T>::spmv;
  }
}
template <class T>
void packed_product(int n, const DataBlock<T>& m, const DataBlock<T>& x, int incx, const DataBlock<T>& y) {
  constexpr int kContiguous = 1;
  call(packed_product_entry<T>(), 'U', n, T(1), block_pointer(m), vector_pointer(n, x, incx), incx, T(0),
       block_pointer(y), kContiguous);
}
template <class T>
void band_product(int n, int k, const DataBlock<T>& a, const DataBlock<T>& x, int incx, const DataBlock<T>& y,
                  int incy) {
  const int lda = k + 1;
  T *const matrix = block_pointer(a), *const from = vector_pointer(n, x, incx),
           *const to = vector_pointer(n, y, incy);
  if constexpr (is_complex<T>) {
    call(entries<T>::hbmv, 'U', n, k, T(1), matrix, lda, from, incx, T(1), to, incy);
  } else {
    call(entries<T>::sbmv, 'U', n, k, T(1), matrix, lda, from, incx, T(1), to, incy);
  }
}

template <class T>
int factor_indefinite(int n, T* a, int* ipiv) {
  if constexpr (is_complex<T>) {
    return call_info(entries<T>::hptrf, 'U', n, a, ipiv);
  } else {
    return call_info(entries<T>::sptrf, 'U', n, a, ipiv);
  }
}
template <class T>
int solve_indefinite(int n, int nrhs, const T* ap, const int* ipiv, T* b, int ldb) {
  if constexpr (is_complex<T>) {
    return call_info(entries<T>::hptrs, 'U', n, nrhs, ap, ipiv, b, ldb);
  } else {
    return call_info(entries<T>::sptrs, 'U', n, nrhs, ap, ipiv, b, ldb);
  }
}

template <class T>
int solve_positive_tridiagonal(int n, int nrhs, const real_of<T>* d, const T* e, T* b, int ldb) {
  if constexpr (is_complex<T>) {
    return call_info(entries<T>::pttrs, 'L', n, nrhs, d, e, b, ldb);
  } else {
    return call_info(entries<T>::pttrs, n, nrhs, d, e, b, ldb);
  }
}

template <class T>
int packed_eigenvalues(char jobz, char range, int n, T* ap, real_of<T> vl, real_of<T> vu, int il, int iu,
                       real_of<T> abstol, real_of<T>* w, T* z, int ldz, int* ifail) {
  int found = 0;
  const workspace<int> iwork(5L * n);
  if constexpr (is_complex<T>) {
    const workspace<T> work(2L * n);
    const workspace<real_of<T>> rwork(7L * n);
    return call_info(entries<T>::hpevx, jobz, range, 'U', n, ap, vl, vu, il, iu, abstol, &found, w, z, ldz,
                     work.get(), rwork.get(), iwork.get(), ifail);
  } else {
    const workspace<T> work(8L * n);
    return call_info(entries<T>::spevx, jobz, range, 'U', n, ap, vl, vu, il, iu, abstol, &found, w, z, ldz,
                     work.get(), iwork.get(), ifail);
  }
}

int* optional_array(const Array<int>& array) { return array.Length() == 0 ? nullptr : array_pointer(array); }

}  // namespace

// Band matrices.
#define DEFINE(T)                                                                                           \
  int MatrixDotNetBlas::BandedFact(int m, int n, int kl, int ku, const DataBlock<T>& ab, int ldab,          \
                                   const Array<int>& ipiv) {                                                \
    return with_new_indices(                                                                                \
        ipiv, call_info(entries<T>::gbtrf, m, n, kl, ku, block_pointer(ab), ldab, array_pointer(ipiv)));    \
  }                                                                                                         \
  int MatrixDotNetBlas::SolveFromBandFact(char trans, int n, int kl, int ku, int nrhs,                      \
                                          const DataBlock<T>& ab, int ldab, const Array<int>& ipiv,         \
                                          const DataBlock<T>& b, int ldb) {                                 \
    T *const factors = block_pointer(ab), *const sides = block_pointer(b);                                  \
    int* const pivots = array_pointer(ipiv);                                                                \
    return with_core_indices(ipiv, [&] {                                                                    \
      return call_info(entries<T>::gbtrs, trans, n, kl, ku, nrhs, factors, ldab, pivots, sides, ldb);       \
    });                                                                                                     \
  }                                                                                                         \
  real_of<T> MatrixDotNetBlas::CondNumberFromBandFact(char norm, int n, int kl, int ku,                     \
                                                      const DataBlock<T>& ab, int ldab,                     \
                                                      const Array<int>& ipiv, real_of<T> anorm) {           \
    T* const factors = block_pointer(ab);                                                                   \
    int* const pivots = array_pointer(ipiv);                                                                \
    return with_core_indices(ipiv, [&] {                                                                    \
      return estimate<T>(entries<T>::gbcon, n, norm, n, kl, ku, factors, ldab, pivots, anorm);              \
    });                                                                                                     \
  }                                                                                                         \
  int MatrixDotNetBlas::SymPDBandFact(int n, int kd, const DataBlock<T>& ab, int ldab) {                    \
    return call_info(entries<T>::pbtrf, 'U', n, kd, block_pointer(ab), ldab);                               \
  }                                                                                                         \
  int MatrixDotNetBlas::SolveFromSymPDBandFact(int n, int kd, int nrhs, const DataBlock<T>& ab, int ldab,   \
                                               const DataBlock<T>& b, int ldb) {                            \
    return call_info(entries<T>::pbtrs, 'U', n, kd, nrhs, block_pointer(ab), ldab, block_pointer(b), ldb);  \
  }                                                                                                         \
  real_of<T> MatrixDotNetBlas::CondNumberFromSymPDBandFact(int n, int kd, const DataBlock<T>& ab, int ldab, \
                                                           real_of<T> anorm) {                              \
    return estimate<T>(entries<T>::pbcon, n, 'U', n, kd, block_pointer(ab), ldab, anorm);                   \
  }                                                                                                         \
  /* Kept: n finds the bases of both vectors, though one of them has m elements. */                         \
  void MatrixDotNetBlas::BandedProduct(char trans, int m, int n, int kl, int ku, const DataBlock<T>& a,     \
                                       const DataBlock<T>& x, int incx, const DataBlock<T>& y, int incy) {  \
    const int lda = kl + ku + 1;                                                                            \
    call(entries<T>::gbmv, trans, m, n, kl, ku, T(1), block_pointer(a), lda, vector_pointer(n, x, incx),    \
         incx, T(1), vector_pointer(n, y, incy), incy);                                                     \
  }
TAVIK_FOR_ALL(DEFINE)
#undef DEFINE

// Tridiagonal matrices.
#define DEFINE(T)                                                                                           \
  int MatrixDotNetBlas::TriDiagLUFact(int n, const DataBlock<T>& dl, const DataBlock<T>& d,                 \
                                      const DataBlock<T>& du, const DataBlock<T>& du2,                      \
                                      const Array<int>& ipvt) {                                             \
    return with_new_indices(ipvt, call_info(entries<T>::gttrf, n, block_pointer(dl), block_pointer(d),      \
                                            block_pointer(du), block_pointer(du2), array_pointer(ipvt)));   \
  }                                                                                                         \
  int MatrixDotNetBlas::SolveTriDiagFromLUFact(                                                             \
      int n, int nrhs, const DataBlock<T>& dl, const DataBlock<T>& d, const DataBlock<T>& du,               \
      const DataBlock<T>& du2, const Array<int>& ipvt, const DataBlock<T>& b, int ldb) {                    \
    T *const below = block_pointer(dl), *const on = block_pointer(d), *const above = block_pointer(du),     \
             *const second = block_pointer(du2), *const sides = block_pointer(b);                           \
    int* const pivots = array_pointer(ipvt);                                                                \
    return with_core_indices(ipvt, [&] {                                                                    \
      return call_info(entries<T>::gttrs, 'N', n, nrhs, below, on, above, second, pivots, sides, ldb);      \
    });                                                                                                     \
  }                                                                                                         \
  real_of<T> MatrixDotNetBlas::CondNumberFromTriDiagLU(                                                     \
      char norm, int n, const DataBlock<T>& dl, const DataBlock<T>& d, const DataBlock<T>& du,              \
      const DataBlock<T>& du2, const Array<int>& ipvt, real_of<T> anorm) {                                  \
    T *const below = block_pointer(dl), *const on = block_pointer(d), *const above = block_pointer(du),     \
             *const second = block_pointer(du2);                                                            \
    int* const pivots = array_pointer(ipvt);                                                                \
    return with_core_indices(ipvt, [&] {                                                                    \
      return estimate_with_less<T>(entries<T>::gtcon, n, norm, n, below, on, above, second, pivots, anorm); \
    });                                                                                                     \
  }                                                                                                         \
  int MatrixDotNetBlas::SymPDTriDiagFact(int n, const DataBlock<real_of<T>>& d, const DataBlock<T>& e) {    \
    return call_info(entries<T>::pttrf, n, block_pointer(d), block_pointer(e));                             \
  }                                                                                                         \
  int MatrixDotNetBlas::SolveSymPDTriDiagFromFact(int n, int nrhs, const DataBlock<real_of<T>>& d,          \
                                                  const DataBlock<T>& e, const DataBlock<T>& b, int ldb) {  \
    return solve_positive_tridiagonal<T>(n, nrhs, block_pointer(d), block_pointer(e), block_pointer(b),     \
                                         ldb);                                                              \
  }                                                                                                         \
  real_of<T> MatrixDotNetBlas::CondNumberFromSymPDTriDiagFact(int n, const DataBlock<real_of<T>>& d,        \
                                                              const DataBlock<T>& e, real_of<T> anorm) {    \
    const workspace<real_of<T>> work(n);                                                                    \
    return condition_or_info<real_of<T>>([&](real_of<T>* rcond) {                                           \
      return call_info(entries<T>::ptcon, n, block_pointer(d), block_pointer(e), anorm, rcond, work.get()); \
    });                                                                                                     \
  }
TAVIK_FOR_ALL(DEFINE)
#undef DEFINE

// Packed matrices. Kept: the lower variants of inverse and condition number pass the letters of the upper
// ones. Kept: condition number and inverse of complex factors are the symmetric routines', not the Hermitian
// ones'.
#define DEFINE(T)                                                                                           \
  int MatrixDotNetBlas::SymFact(int n, const DataBlock<T>& a, const Array<int>& ipiv) {                     \
    return factor_indefinite(n, block_pointer(a), array_pointer(ipiv));                                     \
  }                                                                                                         \
  int MatrixDotNetBlas::SolveSymFromFact(int n, int nrhs, const DataBlock<T>& ap, const Array<int>& ipiv,   \
                                         const DataBlock<T>& b, int ldb) {                                  \
    return solve_indefinite(n, nrhs, block_pointer(ap), array_pointer(ipiv), block_pointer(b), ldb);        \
  }                                                                                                         \
  real_of<T> MatrixDotNetBlas::CondNumberFromSymFact(int n, const DataBlock<T>& ap, const Array<int>& ipiv, \
                                                     real_of<T> anorm) {                                    \
    return estimate_with_less<T>(entries<T>::spcon, n, 'U', n, block_pointer(ap), array_pointer(ipiv),      \
                                 anorm);                                                                    \
  }                                                                                                         \
  int MatrixDotNetBlas::InverseFromSymFact(int n, const DataBlock<T>& ap, const Array<int>& ipiv) {         \
    const workspace<T> work(n);                                                                             \
    return call_info(entries<T>::sptri, 'U', n, block_pointer(ap), array_pointer(ipiv), work.get());        \
  }                                                                                                         \
  int MatrixDotNetBlas::SymPDFact(int n, const DataBlock<T>& ap) {                                          \
    return call_info(entries<T>::pptrf, 'U', n, block_pointer(ap));                                         \
  }                                                                                                         \
  int MatrixDotNetBlas::SolveSymPDFromFact(int n, int nrhs, const DataBlock<T>& ap, const DataBlock<T>& b,  \
                                           int ldb) {                                                       \
    return call_info(entries<T>::pptrs, 'U', n, nrhs, block_pointer(ap), block_pointer(b), ldb);            \
  }                                                                                                         \
  real_of<T> MatrixDotNetBlas::CondNumberFromSymPDFact(int n, const DataBlock<T>& ap, real_of<T> anorm) {   \
    return estimate<T>(entries<T>::ppcon, n, 'U', n, block_pointer(ap), anorm);                             \
  }                                                                                                         \
  int MatrixDotNetBlas::InverseFromSymPDFact(int n, const DataBlock<T>& ap) {                               \
    return call_info(entries<T>::pptri, 'U', n, block_pointer(ap));                                         \
  }                                                                                                         \
  int MatrixDotNetBlas::SolvePackedUpperTriSystem(int n, int nrhs, const DataBlock<T>& ap,                  \
                                                  const DataBlock<T>& b, int ldb) {                         \
    return call_info(entries<T>::tptrs, 'U', 'N', 'N', n, nrhs, block_pointer(ap), block_pointer(b), ldb);  \
  }                                                                                                         \
  int MatrixDotNetBlas::SolvePackedLowerTriSystem(int n, int nrhs, const DataBlock<T>& ap,                  \
                                                  const DataBlock<T>& b, int ldb) {                         \
    return call_info(entries<T>::tptrs, 'U', 'T', 'N', n, nrhs, block_pointer(ap), block_pointer(b), ldb);  \
  }                                                                                                         \
  int MatrixDotNetBlas::InverseOfPackedUpperTriSystem(int n, const DataBlock<T>& ap) {                      \
    return call_info(entries<T>::tptri, 'U', 'N', n, block_pointer(ap));                                    \
  }                                                                                                         \
  int MatrixDotNetBlas::InverseOfPackedLowerTriSystem(int n, const DataBlock<T>& ap) {                      \
    return InverseOfPackedUpperTriSystem(n, ap);                                                            \
  }                                                                                                         \
  /* Kept: a negative info comes back as a positive number here. */                                         \
  real_of<T> MatrixDotNetBlas::ConditionNumOfPackedUpperTriMat(char norm, int n, const DataBlock<T>& ap) {  \
    const real_of<T> result = estimate<T>(entries<T>::tpcon, n, norm, 'U', 'N', n, block_pointer(ap));      \
    return result < 0 ? -result : result;                                                                   \
  }                                                                                                         \
  real_of<T> MatrixDotNetBlas::ConditionNumOfPackedLowerTriMat(char norm, int n, const DataBlock<T>& ap) {  \
    return ConditionNumOfPackedUpperTriMat(norm, n, ap);                                                    \
  }                                                                                                         \
  void MatrixDotNetBlas::UpperTriangularProduct(int n, const DataBlock<T>& ap, const DataBlock<T>& x,       \
                                                int incx) {                                                 \
    call(entries<T>::tpmv, 'U', 'N', 'N', n, block_pointer(ap), vector_pointer(n, x, incx), incx);          \
  }                                                                                                         \
  void MatrixDotNetBlas::LowerTriangularProduct(int n, const DataBlock<T>& ap, const DataBlock<T>& x,       \
                                                int incx) {                                                 \
    call(entries<T>::tpmv, 'U', 'T', 'N', n, block_pointer(ap), vector_pointer(n, x, incx), incx);          \
  }                                                                                                         \
  int MatrixDotNetBlas::SymmetricPackedEigDecomp(char jobz, char range, int n, const DataBlock<T>& ap,      \
                                                 real_of<T> vl, real_of<T> vu, int il, int iu,              \
                                                 real_of<T> abstol, const DataBlock<real_of<T>>& w,         \
                                                 const DataBlock<T>& z, int ldz, const Array<int>& ifail) { \
    return packed_eigenvalues<T>(jobz, range, n, block_pointer(ap), vl, vu, il, iu, abstol,                 \
                                 block_pointer(w), optional_pointer(z), ldz, optional_array(ifail));        \
  }
TAVIK_FOR_ALL(DEFINE)
#undef DEFINE

#define DEFINE(T)                                                                                        \
  void MatrixDotNetBlas::SymBandedProduct(int n, int k, const DataBlock<T>& a, const DataBlock<T>& x,    \
                                          int incx, const DataBlock<T>& y, int incy) {                   \
    band_product(n, k, a, x, incx, y, incy);                                                             \
  }                                                                                                      \
  void MatrixDotNetBlas::SymmetricProduct(int n, const DataBlock<T>& m, const DataBlock<T>& x, int incx, \
                                          const DataBlock<T>& y) {                                       \
    packed_product(n, m, x, incx, y);                                                                    \
  }
TAVIK_FOR_REALS(DEFINE)
#undef DEFINE

#define DEFINE(T)                                                                                           \
  void MatrixDotNetBlas::HermitianBandedProduct(int n, int k, const DataBlock<T>& a, const DataBlock<T>& x, \
                                                int incx, const DataBlock<T>& y, int incy) {                \
    band_product(n, k, a, x, incx, y, incy);                                                                \
  }                                                                                                         \
  void MatrixDotNetBlas::HermitianProduct(int n, const DataBlock<T>& m, const DataBlock<T>& x, int incx,    \
                                          const DataBlock<T>& y) {                                          \
    packed_product(n, m, x, incx, y);                                                                       \
  }
TAVIK_FOR_COMPLEX(DEFINE)
#undef DEFINE

}  // namespace Tavik::Kernel
