// SPDX-License-Identifier: BSD-3-Clause
// Core scaling of vectors: on threads where they pay, else the kernel of the processor level, bound on first
// use.
#include "blas/level1/level1.h"
#include "blas/level1/level1_rows.h"
#include "blas/level1/slices.h"

namespace qel {
namespace {

template <level1_member kMember, const auto& kRow, class F, class T>
void scal(const core_int* n, const F* alpha, T* x, const core_int* incx) {
  update_driver<kShortestNativeFork>(kMember, n, x, incx, x, incx, [=](const core_int* length, T* xs, T*) {
    call_kernel<kRow>(length, alpha, xs, incx);
  });
}

}  // namespace

void core::sscal(const core_int* n, const float* alpha, float* x, const core_int* incx) {
  scal<level1_member::sscal, kSscal>(n, alpha, x, incx);
}
void core::dscal(const core_int* n, const double* alpha, double* x, const core_int* incx) {
  scal<level1_member::dscal, kDscal>(n, alpha, x, incx);
}
void core::cscal(const core_int* n, const complex8* alpha, complex8* x, const core_int* incx) {
  scal<level1_member::cscal, kCscal>(n, alpha, x, incx);
}
void core::zscal(const core_int* n, const complex16* alpha, complex16* x, const core_int* incx) {
  scal<level1_member::zscal, kZscal>(n, alpha, x, incx);
}
void core::csscal(const core_int* n, const float* alpha, complex8* x, const core_int* incx) {
  scal<level1_member::csscal, kCsscal>(n, alpha, x, incx);
}
void core::zdscal(const core_int* n, const double* alpha, complex16* x, const core_int* incx) {
  scal<level1_member::zdscal, kZdscal>(n, alpha, x, incx);
}

}  // namespace qel
