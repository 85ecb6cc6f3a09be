// SPDX-License-Identifier: BSD-3-Clause
// Core sums of absolute values: on threads where they pay, else the kernel of the processor level, bound on
// first use.
#include "blas/level1/level1.h"
#include "blas/level1/level1_rows.h"
#include "blas/level1/slices.h"
#include "service/complex_arithmetic.h"

namespace qel {
namespace {

template <level1_member kMember, const auto& kRow, class T>
real_of<T> asum(const core_int* n, const T* x, const core_int* incx) {
  const auto serial = [=](const core_int* length, const T* xs) {
    return call_kernel<kRow>(length, xs, incx);
  };
  return reduction_driver<real_of<T>>(kMember, n, x, incx, serial, serial, sum_of_partials<real_of<T>>);
}

}  // namespace

float core::sasum(const core_int* n, const float* x, const core_int* incx) {
  return asum<level1_member::sasum, kSasum>(n, x, incx);
}
double core::dasum(const core_int* n, const double* x, const core_int* incx) {
  return asum<level1_member::dasum, kDasum>(n, x, incx);
}
float core::scasum(const core_int* n, const complex8* x, const core_int* incx) {
  return asum<level1_member::scasum, kScasum>(n, x, incx);
}
double core::dzasum(const core_int* n, const complex16* x, const core_int* incx) {
  return asum<level1_member::dzasum, kDzasum>(n, x, incx);
}

float core::scabs1(const complex8* z) { return abs1(*z); }
double core::dcabs1(const complex16* z) { return abs1(*z); }

}  // namespace qel
