// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "service/core_types.h"

namespace qel::conv {

/// One dimension of an execution, with all defaults filled in.
struct cc_axis {
  core_int nx, ny, nz, sx, sy, sz, start, decimation;
};

/// The first failing test of an axis (a shape, z's stride, start, decimation), or kOk.
int check_axis(int job, const cc_axis& axis);
/// kOk if 1 <= dims <= 7 and every axis passes.
int check_axes(int job, int dims, const cc_axis* axes);

/// z of any rank by sums. T is the caller's element type, R the precision of the sums.
template <class T, class R>
int execute_ranks(int job, int dims, const cc_axis* axes, const T* x, const T* y, T* z);

}  // namespace qel::conv
