// SPDX-License-Identifier: BSD-3-Clause
// Parallel regions of the drivers.
#pragma once

#include <omp.h>

#include <algorithm>
#include <atomic>

#include "fft/planning/driver_rules.h"
#include "fft/spec/team.h"

namespace qel::fft {

/// body(part) for each part on a thread of its own; a region that gets fewer threads runs several parts on
/// one. The status of a part that failed, else 0.
template <class Body>
int in_parts(int parts, Body body) {
  if (parts == 1) return body(0);
  std::atomic<int> status{0};
#pragma omp parallel num_threads(parts)
  {
    for (int part = omp_get_thread_num(); part < parts; part += omp_get_num_threads()) {
      const int result = body(part);
      if (result != 0) status.store(result, std::memory_order_relaxed);
    }
  }
  return status.load(std::memory_order_relaxed);
}

/// body(part, from, to) for count items dealt in chunks.
template <class Body>
int over_shares(core_int count, int threads, Body body) {
  const share dealt = deal(count, threads);
  return in_parts(threads, [&](int part) {
    const core_int from = std::min(count, part * dealt.chunk), to = std::min(count, from + dealt.chunk);
    return from < to ? body(part, from, to) : 0;
  });
}

/// body(team) on each of its threads.
template <class Body>
void in_team(int threads, Body body) {
#pragma omp parallel num_threads(threads)
  body(team{omp_get_thread_num(), omp_get_num_threads()});
}

}  // namespace qel::fft
