// SPDX-License-Identifier: BSD-3-Clause
// The kernels of all tuned level-1 routines, by processor level: which level has its own, which borrows.
#pragma once

#include <type_traits>

#include "blas/kernels/kernel_names.h"
#include "blas/plain/level1.h"
#include "service/dispatch.h"

namespace qel {

/// Levels 2 to 4 share one kernel, and so do the native ones.
template <class Fn>
constexpr level_row<Fn> row_of(Fn* generic, Fn* sse3, Fn* ssse3, Fn* avx2) {
  return {{generic, sse3, ssse3, ssse3, ssse3, avx2, avx2}};
}
/// One kernel for levels 0 to 4.
template <class Fn>
constexpr level_row<Fn> row_of(Fn* generic, Fn* avx2) {
  return row_of<Fn>(generic, generic, generic, avx2);
}

// The portable templates, by reference.
template <class T>
void portable_swap(const core_int* n, T* x, const core_int* incx, T* y, const core_int* incy) {
  plain::swap(*n, x, *incx, y, *incy);
}
template <class R, class T>
void portable_rot(const core_int* n, T* x, const core_int* incx, T* y, const core_int* incy, const R* c,
                  const R* s) {
  plain::rot(*n, x, *incx, y, *incy, *c, *s);
}
template <class R>
void portable_rotm(const core_int* n, R* x, const core_int* incx, R* y, const core_int* incy,
                   const R* param) {
  plain::rotm(*n, x, *incx, y, *incy, param);
}

// clang-format off
//                              0 generic            1 SSE3           2 SSSE3 to 4 AVX  5 AVX2 and FMA, 6
inline constexpr auto kSdot  = row_of(l0_generic::sdot, l1_sse3::sdot, l2_ssse3::sdot, l5_avx2::sdot);
inline constexpr auto kDdot  = row_of(l0_generic::ddot, l1_sse3::ddot, l2_ssse3::ddot, l5_avx2::ddot);
inline constexpr auto kCdotu = row_of(l0_generic::cdotu, l1_sse3::cdotu, l2_ssse3::cdotu, l5_avx2::cdotu);
inline constexpr auto kCdotc = row_of(l0_generic::cdotc, l1_sse3::cdotc, l2_ssse3::cdotc, l5_avx2::cdotc);
inline constexpr auto kZdotu = row_of(l0_generic::zdotu, l1_sse3::zdotu, l2_ssse3::zdotu, l5_avx2::zdotu);
inline constexpr auto kZdotc = row_of(l0_generic::zdotc, l1_sse3::zdotc, l2_ssse3::zdotc, l5_avx2::zdotc);

inline constexpr auto kSaxpy = row_of(l0_generic::saxpy, l1_sse3::saxpy, l2_ssse3::saxpy, l5_avx2::saxpy);
inline constexpr auto kDaxpy = row_of(l0_generic::daxpy, l1_sse3::daxpy, l2_ssse3::daxpy, l5_avx2::daxpy);
inline constexpr auto kCaxpy = row_of(l0_generic::caxpy, l1_sse3::caxpy, l2_ssse3::caxpy, l5_avx2::caxpy);
inline constexpr auto kZaxpy = row_of(l0_generic::zaxpy, l1_sse3::zaxpy, l2_ssse3::zaxpy, l5_avx2::zaxpy);

inline constexpr auto kScopy = row_of(l0_generic::scopy, l0_generic::scopy, l2_ssse3::scopy, l5_avx2::scopy);
inline constexpr auto kDcopy = row_of(l0_generic::dcopy, l0_generic::dcopy, l2_ssse3::dcopy, l5_avx2::dcopy);
inline constexpr auto kCcopy = row_of(l0_generic::ccopy, l0_generic::ccopy, l2_ssse3::ccopy, l5_avx2::ccopy);
inline constexpr auto kZcopy = row_of(l0_generic::zcopy, l0_generic::zcopy, l2_ssse3::zcopy, l5_avx2::zcopy);

//                               0 to 4              5, 6
inline constexpr auto kSscal  = row_of(l0_generic::sscal, l5_avx2::sscal);
inline constexpr auto kDscal  = row_of(l0_generic::dscal, l5_avx2::dscal);
inline constexpr auto kCscal  = row_of(l0_generic::cscal, l5_avx2::cscal);
inline constexpr auto kZscal  = row_of(l0_generic::zscal, l5_avx2::zscal);
inline constexpr auto kCsscal = row_of(l0_generic::csscal, l5_avx2::csscal);
inline constexpr auto kZdscal = row_of(l0_generic::zdscal, l5_avx2::zdscal);

inline constexpr auto kSasum  = row_of(l0_generic::sasum, l5_avx2::sasum);
inline constexpr auto kDasum  = row_of(l0_generic::dasum, l5_avx2::dasum);
inline constexpr auto kScasum = row_of(l0_generic::scasum, l5_avx2::scasum);
inline constexpr auto kDzasum = row_of(l0_generic::dzasum, l5_avx2::dzasum);

inline constexpr auto kSnrm2  = row_of(l0_generic::snrm2, l5_avx2::snrm2);
inline constexpr auto kDnrm2  = row_of(l0_generic::dnrm2, l5_avx2::dnrm2);
inline constexpr auto kScnrm2 = row_of(l0_generic::scnrm2, l5_avx2::scnrm2);
inline constexpr auto kDznrm2 = row_of(l0_generic::dznrm2, l5_avx2::dznrm2);

inline constexpr auto kIsamax = row_of(l0_generic::isamax, l5_avx2::isamax);
inline constexpr auto kIdamax = row_of(l0_generic::idamax, l5_avx2::idamax);
inline constexpr auto kIcamax = row_of(l0_generic::icamax, l5_avx2::icamax);
inline constexpr auto kIzamax = row_of(l0_generic::izamax, l5_avx2::izamax);
inline constexpr auto kIsamin = row_of(l0_generic::isamin, l5_avx2::isamin);
inline constexpr auto kIdamin = row_of(l0_generic::idamin, l5_avx2::idamin);
inline constexpr auto kIcamin = row_of(l0_generic::icamin, l5_avx2::icamin);
inline constexpr auto kIzamin = row_of(l0_generic::izamin, l5_avx2::izamin);

inline constexpr auto kSswap = row_of(portable_swap<float>, l5_avx2::sswap);
inline constexpr auto kDswap = row_of(portable_swap<double>, l5_avx2::dswap);
inline constexpr auto kCswap = row_of(portable_swap<complex8>, l5_avx2::cswap);
inline constexpr auto kZswap = row_of(portable_swap<complex16>, l5_avx2::zswap);
inline constexpr auto kSrot  = row_of(portable_rot<float, float>, l5_avx2::srot);
inline constexpr auto kDrot  = row_of(portable_rot<double, double>, l5_avx2::drot);
inline constexpr auto kCsrot = row_of(portable_rot<float, complex8>, l5_avx2::csrot);
inline constexpr auto kZdrot = row_of(portable_rot<double, complex16>, l5_avx2::zdrot);
inline constexpr auto kSrotm = row_of(portable_rotm<float>, l5_avx2::srotm);
inline constexpr auto kDrotm = row_of(portable_rotm<double>, l5_avx2::drotm);

// For slices of a threaded search; levels 0 to 4 have no threads there.
inline constexpr auto kIsamaxSlice = row_of<index_fn<float>>(nullptr, l5_avx2::isamax_slice);
inline constexpr auto kIsaminSlice = row_of<index_fn<float>>(nullptr, l5_avx2::isamin_slice);
inline constexpr auto kIdamaxSlice = row_of<index_fn<double>>(nullptr, l5_avx2::idamax_slice);
inline constexpr auto kIdaminSlice = row_of<index_fn<double>>(nullptr, l5_avx2::idamin_slice);
inline constexpr auto kIcamaxSlice = row_of<index_fn<complex8>>(nullptr, l5_avx2::icamax_slice);
inline constexpr auto kIcaminSlice = row_of<index_fn<complex8>>(nullptr, l5_avx2::icamin_slice);
inline constexpr auto kIzamaxSlice = row_of<index_fn<complex16>>(nullptr, l5_avx2::izamax_slice);
inline constexpr auto kIzaminSlice = row_of<index_fn<complex16>>(nullptr, l5_avx2::izamin_slice);
// clang-format on

template <class Fn>
Fn* kernel_type(const level_row<Fn>&);

/// One slot for each row.
template <const auto& kRow>
inline constinit bind_slot<std::remove_pointer_t<decltype(kernel_type(kRow))>> slot_of{nullptr};

/// Calls the row's kernel of this process.
template <const auto& kRow, class... A>
inline auto call_kernel(A... args) {
  return call_bound<slot_of<kRow>, kRow>(args...);
}

}  // namespace qel
