// SPDX-License-Identifier: BSD-3-Clause
// Core y += alpha x: on threads where they pay, else the kernel of the processor level, bound on first use.
#include "blas/level1/level1.h"
#include "blas/level1/level1_rows.h"
#include "blas/level1/slices.h"

namespace qel {
namespace {

template <level1_member kMember, const auto& kRow, class T>
void axpy(const core_int* n, const T* alpha, const T* x, const core_int* incx, T* y, const core_int* incy) {
  update_driver(kMember, n, x, incx, y, incy, [=](const core_int* length, const T* xs, T* ys) {
    call_kernel<kRow>(length, alpha, xs, incx, ys, incy);
  });
}

}  // namespace

void core::saxpy(const core_int* n, const float* alpha, const float* x, const core_int* incx, float* y,
                 const core_int* incy) {
  axpy<level1_member::saxpy, kSaxpy>(n, alpha, x, incx, y, incy);
}
void core::daxpy(const core_int* n, const double* alpha, const double* x, const core_int* incx, double* y,
                 const core_int* incy) {
  axpy<level1_member::daxpy, kDaxpy>(n, alpha, x, incx, y, incy);
}
void core::caxpy(const core_int* n, const complex8* alpha, const complex8* x, const core_int* incx,
                 complex8* y, const core_int* incy) {
  axpy<level1_member::caxpy, kCaxpy>(n, alpha, x, incx, y, incy);
}
void core::zaxpy(const core_int* n, const complex16* alpha, const complex16* x, const core_int* incx,
                 complex16* y, const core_int* incy) {
  axpy<level1_member::zaxpy, kZaxpy>(n, alpha, x, incx, y, incy);
}

}  // namespace qel
