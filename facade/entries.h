// SPDX-License-Identifier: BSD-3-Clause
// The numeric entries by element type: entries<double>::axpy is daxpy.
#pragma once

#include <type_traits>

#include "qel/blas.h"
#include "qel/lapack.h"
#include "tavik/core/complex.h"

namespace Tavik::Kernel {

template <class T>
inline constexpr bool is_complex = false;
template <class R>
inline constexpr bool is_complex<Core::Complex<R>> = true;

/// The real type of an element type.
template <class T>
struct real_part_of {
  using type = T;
};
template <class R>
struct real_part_of<Core::Complex<R>> {
  using type = R;
};
template <class T>
using real_of = typename real_part_of<T>::type;

template <class T>
struct entries;

// clang-format off
#define QEL_ENTRY(p, stem) static constexpr auto* stem = &::p##stem;
#define QEL_ENTRIES_OF_ALL(p)                                                                            \
  QEL_ENTRY(p, copy) QEL_ENTRY(p, axpy) QEL_ENTRY(p, scal) QEL_ENTRY(p, gemv) QEL_ENTRY(p, gbmv)         \
  QEL_ENTRY(p, spmv) QEL_ENTRY(p, tpmv) QEL_ENTRY(p, trmv) QEL_ENTRY(p, gemm) QEL_ENTRY(p, trsm)         \
  QEL_ENTRY(p, lange) QEL_ENTRY(p, getrf) QEL_ENTRY(p, getrs) QEL_ENTRY(p, getri) QEL_ENTRY(p, gecon)    \
  QEL_ENTRY(p, gbtrf) QEL_ENTRY(p, gbtrs) QEL_ENTRY(p, gbcon) QEL_ENTRY(p, pbtrf) QEL_ENTRY(p, pbtrs)    \
  QEL_ENTRY(p, pbcon) QEL_ENTRY(p, gttrf) QEL_ENTRY(p, gttrs) QEL_ENTRY(p, gtcon) QEL_ENTRY(p, pttrf)    \
  QEL_ENTRY(p, pttrs) QEL_ENTRY(p, ptcon) QEL_ENTRY(p, pptrf) QEL_ENTRY(p, pptrs) QEL_ENTRY(p, pptri)    \
  QEL_ENTRY(p, ppcon) QEL_ENTRY(p, sptrf) QEL_ENTRY(p, sptrs) QEL_ENTRY(p, sptri) QEL_ENTRY(p, spcon)    \
  QEL_ENTRY(p, tptrs) QEL_ENTRY(p, tptri) QEL_ENTRY(p, tpcon) QEL_ENTRY(p, geqrf) QEL_ENTRY(p, geqp3)    \
  QEL_ENTRY(p, gelsy) QEL_ENTRY(p, gesvd) QEL_ENTRY(p, gesdd) QEL_ENTRY(p, geevx) QEL_ENTRY(p, gebak)    \
  static constexpr auto *amax = &::i##p##amax, *amin = &::i##p##amin;
#define QEL_ENTRIES_OF_REALS(p)                                                                          \
  QEL_ENTRY(p, dot) QEL_ENTRY(p, sbmv) QEL_ENTRY(p, ormqr) QEL_ENTRY(p, orgqr) QEL_ENTRY(p, spevx)       \
  QEL_ENTRY(p, trcon) QEL_ENTRY(p, pocon) QEL_ENTRY(p, asum)
#define QEL_ENTRIES_OF_COMPLEX(p)                                                                        \
  QEL_ENTRY(p, dotu) QEL_ENTRY(p, dotc) QEL_ENTRY(p, hbmv) QEL_ENTRY(p, hpmv) QEL_ENTRY(p, hptrf)        \
  QEL_ENTRY(p, hptrs) QEL_ENTRY(p, hptri) QEL_ENTRY(p, hpcon) QEL_ENTRY(p, unmqr) QEL_ENTRY(p, ungqr)    \
  QEL_ENTRY(p, hpevx)
// clang-format on

template <>
struct entries<double> {
  QEL_ENTRIES_OF_ALL(d)
  QEL_ENTRIES_OF_REALS(d)
  QEL_ENTRY(d, nrm2) QEL_ENTRY(d, gels)
};
template <>
struct entries<float> {
  QEL_ENTRIES_OF_ALL(s)
  QEL_ENTRIES_OF_REALS(s)
};
template <>
struct entries<Core::DoubleComplex> {
  QEL_ENTRIES_OF_ALL(z)
  QEL_ENTRIES_OF_COMPLEX(z)
  QEL_ENTRY(z, gebal)
  QEL_ENTRY(z, gehrd)
  QEL_ENTRY(z, unghr)
  QEL_ENTRY(z, hseqr) QEL_ENTRY(z, trevc) static constexpr auto* asum = &::dzasum, *nrm2 = &::dznrm2;
  static constexpr auto* scal_by_real = &::zdscal;
};
template <>
struct entries<Core::FloatComplex> {
  QEL_ENTRIES_OF_ALL(c)
  QEL_ENTRIES_OF_COMPLEX(c)
  static constexpr auto* asum = &::scasum;
  static constexpr auto* scal_by_real = &::csscal;
};

#undef QEL_ENTRY
#undef QEL_ENTRIES_OF_ALL
#undef QEL_ENTRIES_OF_REALS
#undef QEL_ENTRIES_OF_COMPLEX

}  // namespace Tavik::Kernel
