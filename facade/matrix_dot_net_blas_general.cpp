// SPDX-License-Identifier: BSD-3-Clause
// Factorisations and decompositions of general matrices.
#include <algorithm>

#include "facade/calls.h"
#include "tavik/kernel/matrix_dot_net_blas.h"

namespace Tavik::Kernel {
namespace {

template <class T>
int qr_with_pivoting(int m, int n, T* a, int lda, int* jpvt, T* tau) {
  const workspace<real_of<T>> rwork(is_complex<T> ? 2L * n : 0);
  return with_best_work<T>([&](T* work, int lwork) {
    if constexpr (is_complex<T>) {
      return call_info(entries<T>::geqp3, m, n, a, lda, jpvt, tau, work, lwork, rwork.get());
    } else {
      return call_info(entries<T>::geqp3, m, n, a, lda, jpvt, tau, work, lwork);
    }
  });
}

template <class T>
int q_of_qr(int m, int n, int k, T* a, int lda, const T* tau) {
  return with_best_work<T>([&](T* work, int lwork) {
    if constexpr (is_complex<T>) {
      return call_info(entries<T>::ungqr, m, n, k, a, lda, tau, work, lwork);
    } else {
      return call_info(entries<T>::orgqr, m, n, k, a, lda, tau, work, lwork);
    }
  });
}

template <class T>
int multiply_by_q(char side, char trans, int m, int n, int k, T* a, int lda, const T* tau, T* c, int ldc) {
  int info = 0;
  if constexpr (is_complex<T>) {
    TavikForwarders::tavik_unmqr(&side, &trans, &m, &n, &k, a, &lda, tau, c, &ldc, &info);
  } else {
    const int lwork = std::max(m, n) * MatrixDotNetBlas::BLOCKSIZE;
    const workspace<T> work(lwork);
    info = call_info(entries<T>::ormqr, side, trans, m, n, k, a, lda, tau, c, ldc, work.get(), lwork);
  }
  return info;
}

/// A factor of a decomposition that may not be wanted: then the block is not touched, and its leading
/// dimension is 1.
template <class T>
struct wanted_factor {
  T* first;
  int ld;
  wanted_factor(bool wanted, const DataBlock<T>& block, int given)
      : first(wanted ? block_pointer(block) : nullptr), ld(wanted ? given : 1) {}
};
bool wants_vectors(char job) { return job != 'N' && job != 'n' && job != 'O' && job != 'o'; }

template <class T>
int singular_values(char jobu, char jobvt, int m, int n, T* a, int lda, real_of<T>* s,
                    const wanted_factor<T>& u, const wanted_factor<T>& vt) {
  const workspace<real_of<T>> rwork(is_complex<T> ? 5L * std::min(m, n) : 0);
  return with_best_work<T>([&](T* work, int lwork) {
    if constexpr (is_complex<T>) {
      return call_info(entries<T>::gesvd, jobu, jobvt, m, n, a, lda, s, u.first, u.ld, vt.first, vt.ld, work,
                       lwork, rwork.get());
    } else {
      return call_info(entries<T>::gesvd, jobu, jobvt, m, n, a, lda, s, u.first, u.ld, vt.first, vt.ld, work,
                       lwork);
    }
  });
}

/// Real scratch of a complex divide and conquer.
long divide_and_conquer_reals(char jobz, long m, long n) {
  const long least = std::min(m, n), most = std::max(m, n);
  if (jobz == 'N' || jobz == 'n') return 7 * least;
  return std::max(5 * least * least + 5 * least, 2 * most * least + 2 * least * least + least);
}

template <class T>
int singular_values_divided(char jobz, int m, int n, T* a, int lda, real_of<T>* s, const wanted_factor<T>& u,
                            const wanted_factor<T>& vt) {
  const workspace<int> iwork(8L * std::min(m, n));
  const workspace<real_of<T>> rwork(is_complex<T> ? divide_and_conquer_reals(jobz, m, n) : 0);
  return with_best_work<T>([&](T* work, int lwork) {
    if constexpr (is_complex<T>) {
      return call_info(entries<T>::gesdd, jobz, m, n, a, lda, s, u.first, u.ld, vt.first, vt.ld, work, lwork,
                       rwork.get(), iwork.get());
    } else {
      return call_info(entries<T>::gesdd, jobz, m, n, a, lda, s, u.first, u.ld, vt.first, vt.ld, work, lwork,
                       iwork.get());
    }
  });
}

/// What geevx finds out about the balanced matrix.
template <class T>
struct balancing {
  int ilo = 0, ihi = 0;
  real_of<T> norm = 0;
  workspace<real_of<T>> scale;
  explicit balancing(int n) : scale(n) {}
};

/// info, or the number of eigenvalues that have converged, which are then moved down in w.
/// Kept: they are taken from the start of the array and put behind the block's offset.
template <class T>
int converged(int info, int n, int ilo, std::initializer_list<const DataBlock<T>*> parts) {
  if (info <= 0) return info;
  for (const DataBlock<T>* w : parts) {
    for (int i = 0; i < n - info; ++i) w->Data[w->Offset + ilo - 1 + i] = w->Data[info - 1 + i];
  }
  return ilo - info + n - 1;
}

}  // namespace

#define DEFINE(T)                                                                                            \
  int MatrixDotNetBlas::QRDecomp(int m, int n, const DataBlock<T>& a, int lda, const DataBlock<T>& tau) {    \
    T *const matrix = block_pointer(a), *const factors = block_pointer(tau);                                 \
    return with_best_work<T>([&](T* work, int lwork) {                                                       \
      return call_info(entries<T>::geqrf, m, n, matrix, lda, factors, work, lwork);                          \
    });                                                                                                      \
  }                                                                                                          \
  int MatrixDotNetBlas::QRDecompWithPivoting(int m, int n, const DataBlock<T>& a, int lda,                   \
                                             const Array<int>& jpvt, const DataBlock<T>& tau) {              \
    return with_new_indices(                                                                                 \
        jpvt, qr_with_pivoting(m, n, block_pointer(a), lda, array_pointer(jpvt), block_pointer(tau)));       \
  }                                                                                                          \
  int MatrixDotNetBlas::GetQFromQR(int m, int n, int k, const DataBlock<T>& a, int lda,                      \
                                   const DataBlock<T>& tau) {                                                \
    return q_of_qr(m, n, k, block_pointer(a), lda, block_pointer(tau));                                      \
  }                                                                                                          \
  int MatrixDotNetBlas::MultiplyByQFromQR(char side, char trans, int m, int n, int k, const DataBlock<T>& a, \
                                          int lda, const DataBlock<T>& tau, const DataBlock<T>& c,           \
                                          int ldc) {                                                         \
    return multiply_by_q(side, trans, m, n, k, block_pointer(a), lda, block_pointer(tau), block_pointer(c),  \
                         ldc);                                                                               \
  }                                                                                                          \
  int MatrixDotNetBlas::SVDFromGeneral(char jobu, char jobvt, int m, int n, const DataBlock<T>& a, int lda,  \
                                       const DataBlock<real_of<T>>& s, const DataBlock<T>& u, int ldu,       \
                                       const DataBlock<T>& vt, int ldvt) {                                   \
    return singular_values<T>(jobu, jobvt, m, n, block_pointer(a), lda, block_pointer(s),                    \
                              {wants_vectors(jobu), u, ldu}, {wants_vectors(jobvt), vt, ldvt});              \
  }                                                                                                          \
  int MatrixDotNetBlas::SVDFromGeneralDC(char jobz, int m, int n, const DataBlock<T>& a, int lda,            \
                                         const DataBlock<real_of<T>>& s, const DataBlock<T>& u, int ldu,     \
                                         const DataBlock<T>& vt, int ldvt) {                                 \
    const bool wanted = jobz != 'N' && jobz != 'n';                                                          \
    return singular_values_divided<T>(jobz, m, n, block_pointer(a), lda, block_pointer(s), {wanted, u, ldu}, \
                                      {wanted, vt, ldvt});                                                   \
  }                                                                                                          \
  /* Kept: a vector with a negative stride is taken from its block's offset as it stands. */                 \
  void MatrixDotNetBlas::TriangularProduct(char uplo, char trans, int n, const DataBlock<T>& a, int lda,     \
                                           const DataBlock<T>& x, int incx) {                                \
    call(entries<T>::trmv, uplo, trans, 'N', n, block_pointer(a), lda, block_pointer(x), incx);              \
  }
TAVIK_FOR_ALL(DEFINE)
#undef DEFINE

#define DEFINE(T)                                                                                         \
  int MatrixDotNetBlas::GeneralEigDecomp(                                                                 \
      char balance, char jobvl, char jobvr, char sense, int n, const DataBlock<T>& a, int lda,            \
      const DataBlock<T>& wr, const DataBlock<T>& wi, const DataBlock<T>& vl, int ldvl,                   \
      const DataBlock<T>& vr, int ldvr, const DataBlock<T>& rconde, const DataBlock<T>& rcondv) {         \
    balancing<T> found(n);                                                                                \
    const int lwork = (n + 8) * n;                                                                        \
    const workspace<T> work(lwork);                                                                       \
    const workspace<int> iwork(2L * n);                                                                   \
    const int info =                                                                                      \
        call_info(entries<T>::geevx, balance, jobvl, jobvr, sense, n, block_pointer(a), lda,              \
                  block_pointer(wr), block_pointer(wi), optional_pointer(vl), ldvl, optional_pointer(vr), \
                  ldvr, &found.ilo, &found.ihi, found.scale.get(), &found.norm, optional_pointer(rconde), \
                  optional_pointer(rcondv), work.get(), lwork, iwork.get());                              \
    return converged<T>(info, n, found.ilo, {&wr, &wi});                                                  \
  }
TAVIK_FOR_REALS(DEFINE)
#undef DEFINE

#define DEFINE(T)                                                                                   \
  int MatrixDotNetBlas::GeneralEigDecomp(                                                           \
      char balance, char jobvl, char jobvr, char sense, int n, const DataBlock<T>& a, int lda,      \
      const DataBlock<T>& w, const DataBlock<T>& vl, int ldvl, const DataBlock<T>& vr, int ldvr,    \
      const DataBlock<real_of<T>>& rconde, const DataBlock<real_of<T>>& rcondv) {                   \
    balancing<T> found(n);                                                                          \
    const workspace<real_of<T>> rwork((n + 1L) * 2);                                                \
    int info = 0;                                                                                   \
    tavik_geevx(&balance, &jobvl, &jobvr, &sense, &n, block_pointer(a), &lda, block_pointer(w),     \
                optional_pointer(vl), &ldvl, optional_pointer(vr), &ldvr, &found.ilo, &found.ihi,   \
                found.scale.get(), &found.norm, optional_pointer(rconde), optional_pointer(rcondv), \
                rwork.get(), &info);                                                                \
    return converged<T>(info, n, found.ilo, {&w});                                                  \
  }
TAVIK_FOR_COMPLEX(DEFINE)
#undef DEFINE

int MatrixDotNetBlas::GeneralLinearLeastSq(char trans, int m, int n, int nrhs, const Array<double>& a,
                                           int lda, const Array<double>& b, int ldb) {
  double *const matrix = array_pointer(a), *const sides = array_pointer(b);
  return with_best_work<double>([&](double* work, int lwork) {
    return call_info(dgels, trans, m, n, nrhs, matrix, lda, sides, ldb, work, lwork);
  });
}

}  // namespace Tavik::Kernel
