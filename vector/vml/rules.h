// SPDX-License-Identifier: BSD-3-Clause
// When a vector-math call is worth threads: pure functions of the machine's topology and of an element's
// cost.
#pragma once

#include "service/cpu_facts.h"

namespace qel {

/// The processors as vector math sees them.
struct vml_topology {
  int logical, cores, packages;
};
/// From CPUID and the count of logical processors; all three are that count where the answers contradict each
/// other.
vml_topology read_vml_topology(cpuid_reader cpuid, int logical);

/// The rows of the cost table that division uses, by accuracy.
enum vml_cost_row : int { kDivisionHa = 18, kDivisionLa = 24, kDivisionEp = 30 };
/// Cycles of one element on a processor type 0..5; 0: not threaded there.
double vml_element_cost(vml_cost_row row, int type);

/// Cycles that a parallel region costs; -1: there is only one processor.
float vml_fork_overhead(const vml_topology& topology);

/// The length from which an operation is threaded, at least 100; INT_MAX for never.
int vml_fork_length(const vml_topology& topology, vml_cost_row row, int type);
/// At most threads: as many as a call of n elements feeds.
int vml_refined_threads(int threads, const vml_topology& topology, vml_cost_row row, int type, int n);

/// Types 6 and 7: their kernels are bound by memory, so all operations are threaded by the bytes that they
/// move.
inline constexpr int kFirstNativeType = 6;
inline constexpr int kNativeVmlFork = 320 * 1024 / 8;

/// What tells whether results go past the caches: they do if the call's arrays need more room than is there,
/// on native types only; a result that lies over an operand, or off the boundary of 8 bytes, does not.
struct store_facts {
  int type;
  double bytes;  ///< of all arrays together
  int room;      ///< bytes of the largest cache that they may take
  bool in_place;
  const void* result;
};
bool stores_past_caches(const store_facts& facts);

/// Fills of fewer random numbers never go past the caches: they fit into any, so nobody asks.
inline constexpr int kLongFill = 1 << 14;

/// Results of vector operations go past the caches when the arrays need more than this share of the largest
/// one. Two operands that stay are worth more than the result: with three arrays of 8 MB and 32 MB of cache a
/// product takes 0.6 times as long. A fill has no operands and keeps all of the cache.
inline constexpr double kVmlShareOfCache = 0.5;

/// What a call of a vector operation depends on.
struct vml_facts {
  bool divides;      ///< the others have threads and stores of that kind on native types only
  vml_cost_row row;  ///< a division's, by its accuracy
  int n, type;
  int threads;   ///< what the domain allows
  bool dynamic;  ///< dynamic adjustment is on
  vml_topology topology;
  int largest_cache;
  bool in_place;
  const void* result;
};
/// Threads, whether results go past the caches, and the rule in words.
struct vml_plan {
  int threads;
  bool past_caches;
  const char* reason;
};
vml_plan plan_vml(const vml_facts& facts);

}  // namespace qel
