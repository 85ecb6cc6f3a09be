// SPDX-License-Identifier: BSD-3-Clause
// What executions in one dimension have in common.
#pragma once

#include <algorithm>

#include "conv/execute_ranks.h"
#include "conv/lines.h"
#include "conv/task.h"

namespace qel::conv {

struct execution {
  int job, dims;
  bool direct;
  const void *x, *y;
  void* z;
  cc_axis axes[kMaxDims];
};

/// The tests of one dimension, in the order in which the arguments stand.
inline int check_line(const execution& e) {
  const cc_axis& a = e.axes[0];
  if (e.x == nullptr) return kNullX;
  if (a.nx < 1) return kBadXShape;
  if (e.y == nullptr) return kNullY;
  if (a.ny < 1) return kBadYShape;
  if (e.z == nullptr) return kNullZ;
  return check_axis(e.job, a);
}

/// Each output of a task by itself, from that at start on: a plain sum of products, nothing else.
template <class X, class Y, class E>
void single_sums(const X& x, const Y& y, const cc_axis& a, core_int start, E* w) {
  for (core_int r = 0; r < a.nz; ++r) {
    const core_int t = start + r * a.decimation;
    E sum{};
    for (core_int i = std::max<core_int>(t - a.ny + 1, 0); i <= std::min(t, a.nx - 1); ++i)
      sum = sum + x[i] * y[t - i];
    w[r] = sum;
  }
}

}  // namespace qel::conv
