// SPDX-License-Identifier: BSD-3-Clause
// Core Euclidean norms: on threads where they pay, else the kernel of the processor level, bound on first
// use. The norms of the threads' slices are a vector whose norm is the whole one's.
#include "blas/level1/level1.h"
#include "blas/level1/level1_rows.h"
#include "blas/level1/slices.h"
#include "service/complex_arithmetic.h"

namespace qel {
namespace {

template <level1_member kMember, const auto& kRow, const auto& kRealRow, class T>
real_of<T> nrm2(const core_int* n, const T* x, const core_int* incx) {
  const auto serial = [=](const core_int* length, const T* xs) {
    return call_kernel<kRow>(length, xs, incx);
  };
  return reduction_driver<real_of<T>>(kMember, n, x, incx, serial, serial,
                                      [](const real_of<T>* norms, int threads) {
                                        const core_int count = threads, one = 1;
                                        return call_kernel<kRealRow>(&count, norms, &one);
                                      });
}

}  // namespace

float core::snrm2(const core_int* n, const float* x, const core_int* incx) {
  return nrm2<level1_member::snrm2, kSnrm2, kSnrm2>(n, x, incx);
}
double core::dnrm2(const core_int* n, const double* x, const core_int* incx) {
  return nrm2<level1_member::dnrm2, kDnrm2, kDnrm2>(n, x, incx);
}
float core::scnrm2(const core_int* n, const complex8* x, const core_int* incx) {
  return nrm2<level1_member::scnrm2, kScnrm2, kSnrm2>(n, x, incx);
}
double core::dznrm2(const core_int* n, const complex16* x, const core_int* incx) {
  return nrm2<level1_member::dznrm2, kDznrm2, kDnrm2>(n, x, incx);
}

}  // namespace qel
