// SPDX-License-Identifier: BSD-3-Clause
// Threads that transform one line together.
#pragma once

#include <algorithm>

#include "service/core_types.h"

namespace qel::fft {

/// A team as one of its threads sees it. All of them call the same functions, in the same order.
struct team {
  int part, parts;

  struct range {
    core_int from, to;
  };
  /// This thread's part of count items, in whole grains.
  range share_of(core_int count, core_int grain = 1) const {
    if (parts == 1) return {0, count};
    const core_int grains = (count + grain - 1) / grain;
    const core_int chunk = (grains + parts - 1) / parts * grain;
    return {std::min(count, part * chunk), std::min(count, (part + 1) * chunk)};
  }
  /// Until all others are here. A thread alone is in no region, or in one that is not the team's.
  void wait() const {
    if (parts == 1) return;
#pragma omp barrier
  }
};

}  // namespace qel::fft
