// SPDX-License-Identifier: BSD-3-Clause
// Declarations of every level's kernels, for the dispatch rows and the level tests.
#pragma once

#include "service/core_types.h"

namespace qel {

using ddot_fn = double(const core_int* n, const double* x, const core_int* incx, const double* y,
                       const core_int* incy);

namespace l0_generic {
ddot_fn ddot;
}
namespace l1_sse3 {
ddot_fn ddot;
}
namespace l2_ssse3 {
ddot_fn ddot;
}

}  // namespace qel
