// SPDX-License-Identifier: BSD-3-Clause
// The kernels of all tuned level-1 routines, by processor level: which level has its own, which borrows.
#pragma once

#include <type_traits>

#include "blas/kernels/kernel_names.h"
#include "service/dispatch.h"

namespace qel {

/// A row whose levels from 2 on, native ones included, share one kernel.
template <class Fn>
constexpr level_row<Fn> row_of(Fn* generic, Fn* sse3, Fn* ssse3) {
  return {{generic, sse3, ssse3, ssse3, ssse3, ssse3, ssse3}};
}
/// A row of one kernel for all levels.
template <class Fn>
constexpr level_row<Fn> row_of(Fn* all) {
  return row_of<Fn>(all, all, all);
}

// clang-format off
//                              0 generic            1 SSE3               2 SSSE3 and later
inline constexpr auto kSdot  = row_of(l0_generic::sdot,  l1_sse3::sdot,  l2_ssse3::sdot);
inline constexpr auto kDdot  = row_of(l0_generic::ddot,  l1_sse3::ddot,  l2_ssse3::ddot);
inline constexpr auto kCdotu = row_of(l0_generic::cdotu, l1_sse3::cdotu, l2_ssse3::cdotu);
inline constexpr auto kCdotc = row_of(l0_generic::cdotc, l1_sse3::cdotc, l2_ssse3::cdotc);
inline constexpr auto kZdotu = row_of(l0_generic::zdotu, l1_sse3::zdotu, l2_ssse3::zdotu);
inline constexpr auto kZdotc = row_of(l0_generic::zdotc, l1_sse3::zdotc, l2_ssse3::zdotc);

inline constexpr auto kSaxpy = row_of(l0_generic::saxpy, l1_sse3::saxpy, l2_ssse3::saxpy);
inline constexpr auto kDaxpy = row_of(l0_generic::daxpy, l1_sse3::daxpy, l2_ssse3::daxpy);
inline constexpr auto kCaxpy = row_of(l0_generic::caxpy, l1_sse3::caxpy, l2_ssse3::caxpy);
inline constexpr auto kZaxpy = row_of(l0_generic::zaxpy, l1_sse3::zaxpy, l2_ssse3::zaxpy);

inline constexpr auto kScopy = row_of(l0_generic::scopy, l0_generic::scopy, l2_ssse3::scopy);
inline constexpr auto kDcopy = row_of(l0_generic::dcopy, l0_generic::dcopy, l2_ssse3::dcopy);
inline constexpr auto kCcopy = row_of(l0_generic::ccopy, l0_generic::ccopy, l2_ssse3::ccopy);
inline constexpr auto kZcopy = row_of(l0_generic::zcopy, l0_generic::zcopy, l2_ssse3::zcopy);

//                                        all levels
inline constexpr auto kSscal  = row_of(l0_generic::sscal);
inline constexpr auto kDscal  = row_of(l0_generic::dscal);
inline constexpr auto kCscal  = row_of(l0_generic::cscal);
inline constexpr auto kZscal  = row_of(l0_generic::zscal);
inline constexpr auto kCsscal = row_of(l0_generic::csscal);
inline constexpr auto kZdscal = row_of(l0_generic::zdscal);

inline constexpr auto kSasum  = row_of(l0_generic::sasum);
inline constexpr auto kDasum  = row_of(l0_generic::dasum);
inline constexpr auto kScasum = row_of(l0_generic::scasum);
inline constexpr auto kDzasum = row_of(l0_generic::dzasum);

inline constexpr auto kSnrm2  = row_of(l0_generic::snrm2);
inline constexpr auto kDnrm2  = row_of(l0_generic::dnrm2);
inline constexpr auto kScnrm2 = row_of(l0_generic::scnrm2);
inline constexpr auto kDznrm2 = row_of(l0_generic::dznrm2);

inline constexpr auto kIsamax = row_of(l0_generic::isamax);
inline constexpr auto kIdamax = row_of(l0_generic::idamax);
inline constexpr auto kIcamax = row_of(l0_generic::icamax);
inline constexpr auto kIzamax = row_of(l0_generic::izamax);
inline constexpr auto kIsamin = row_of(l0_generic::isamin);
inline constexpr auto kIdamin = row_of(l0_generic::idamin);
inline constexpr auto kIcamin = row_of(l0_generic::icamin);
inline constexpr auto kIzamin = row_of(l0_generic::izamin);
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
