// SPDX-License-Identifier: BSD-3-Clause
// When a level-1 routine uses threads, and how many: a table of vector lengths and one pure function over it.
// Routines without a row here never fork. Called by the drivers (slices.h).
#pragma once

#include "service/core_types.h"

namespace qel {

/// The routines that may fork.
enum class level1_member : int {
  sdot,
  ddot,
  cdotc,
  saxpy,
  daxpy,
  caxpy,
  scopy,
  dcopy,
  ccopy,
  zaxpy,  // from here on: two threads or none
  zcopy,
};

/// No routine forks for shorter vectors.
inline constexpr core_int kShortestFork = 1601;

/// Everything that the decision depends on.
struct level1_facts {
  level1_member member;
  core_int n, incx, incy;
  int level;      ///< serv_cpu_level
  int threads;    ///< what the BLAS domain allows
  bool dynamic;   ///< dynamic adjustment is on
  int caches[5];  ///< as serv_cache_sizes gives them; looked at on level 2 only
};
/// A thread count and the rule that settled it, in words; 1 means the calling thread alone.
struct level1_choice {
  int threads;
  const char* reason;
};
level1_choice choose_level1_threads(const level1_facts& facts);

/// The decision with this process's facts.
level1_choice explain_level1_threads(level1_member member, core_int n, core_int incx, core_int incy);

}  // namespace qel
