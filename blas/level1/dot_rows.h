// SPDX-License-Identifier: BSD-3-Clause
// The kernels of the dot products, by processor level.
#pragma once

#include "blas/kernels/kernel_names.h"
#include "service/dispatch.h"

namespace qel {

// clang-format off
//                                       0 generic         1 SSE3         2 SSSE3          3 SSE4.2         4 AVX            5 AVX2, FMA      6 AVX-512
inline constexpr level_row<ddot_fn> kDdot{{l0_generic::ddot, l1_sse3::ddot, l2_ssse3::ddot, l2_ssse3::ddot, l2_ssse3::ddot, l2_ssse3::ddot, l2_ssse3::ddot}};
// clang-format on

}  // namespace qel
