// SPDX-License-Identifier: BSD-3-Clause
// Core copies and exchanges: on threads where they pay, else the kernel of the processor level, bound on
// first use.
#include "blas/level1/level1.h"
#include "blas/level1/level1_rows.h"
#include "blas/level1/slices.h"

namespace qel {
namespace {

template <level1_member kMember, const auto& kRow, class T>
void copy(const core_int* n, const T* x, const core_int* incx, T* y, const core_int* incy) {
  update_driver(kMember, n, x, incx, y, incy, [=](const core_int* length, const T* xs, T* ys) {
    call_kernel<kRow>(length, xs, incx, ys, incy);
  });
}

template <level1_member kMember, const auto& kRow, class T>
void swap(const core_int* n, T* x, const core_int* incx, T* y, const core_int* incy) {
  update_driver<kShortestNativeFork>(kMember, n, x, incx, y, incy, [=](const core_int* length, T* xs, T* ys) {
    call_kernel<kRow>(length, xs, incx, ys, incy);
  });
}

}  // namespace

void core::scopy(const core_int* n, const float* x, const core_int* incx, float* y, const core_int* incy) {
  copy<level1_member::scopy, kScopy>(n, x, incx, y, incy);
}
void core::dcopy(const core_int* n, const double* x, const core_int* incx, double* y, const core_int* incy) {
  copy<level1_member::dcopy, kDcopy>(n, x, incx, y, incy);
}
void core::ccopy(const core_int* n, const complex8* x, const core_int* incx, complex8* y,
                 const core_int* incy) {
  copy<level1_member::ccopy, kCcopy>(n, x, incx, y, incy);
}
void core::zcopy(const core_int* n, const complex16* x, const core_int* incx, complex16* y,
                 const core_int* incy) {
  copy<level1_member::zcopy, kZcopy>(n, x, incx, y, incy);
}

void core::sswap(const core_int* n, float* x, const core_int* incx, float* y, const core_int* incy) {
  swap<level1_member::sswap, kSswap>(n, x, incx, y, incy);
}
void core::dswap(const core_int* n, double* x, const core_int* incx, double* y, const core_int* incy) {
  swap<level1_member::dswap, kDswap>(n, x, incx, y, incy);
}
void core::cswap(const core_int* n, complex8* x, const core_int* incx, complex8* y, const core_int* incy) {
  swap<level1_member::cswap, kCswap>(n, x, incx, y, incy);
}
void core::zswap(const core_int* n, complex16* x, const core_int* incx, complex16* y, const core_int* incy) {
  swap<level1_member::zswap, kZswap>(n, x, incx, y, incy);
}

}  // namespace qel
