// SPDX-License-Identifier: BSD-3-Clause
// When a level-1 routine uses threads, and how many: tables of vector lengths and one pure function over
// them. Native levels have a table of their own (native_thread_rules.cpp). Called by the drivers (slices.h).
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
  zaxpy,  // two threads or none
  zcopy,  // two threads or none
  // From here on: native levels only.
  cdotu,
  zdotu,
  zdotc,
  sscal,
  dscal,
  cscal,
  zscal,
  csscal,
  zdscal,
  sswap,
  dswap,
  cswap,
  zswap,
  sasum,
  dasum,
  scasum,
  dzasum,
  snrm2,
  dnrm2,
  scnrm2,
  dznrm2,
  isamax,
  idamax,
  icamax,
  izamax,
  isamin,
  idamin,
  icamin,
  izamin,
  srot,
  drot,
  csrot,
  zdrot,
  srotm,
  drotm,
};
inline constexpr int kLevel1Members = static_cast<int>(level1_member::drotm) + 1;
const char* name_of(level1_member member);

/// No routine forks for shorter vectors; none from cdotu on for vectors shorter than the second.
inline constexpr core_int kShortestFork = 1601;
inline constexpr core_int kShortestNativeFork = 14336;

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
/// Its part for native levels.
level1_choice choose_native_level1_threads(const level1_facts& facts);
/// The shortest vector for which a member forks natively.
core_int native_fork_length(level1_member member);

/// The decision with this process's facts.
level1_choice explain_level1_threads(level1_member member, core_int n, core_int incx, core_int incy);

}  // namespace qel
