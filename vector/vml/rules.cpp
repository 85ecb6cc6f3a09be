// SPDX-License-Identifier: BSD-3-Clause
#include "vector/vml/rules.h"

#include <algorithm>
#include <cstdint>
#include <limits>

namespace qel {
namespace {

constexpr int kNever = std::numeric_limits<int>::max();
constexpr int kShortest = 100;

// Cycles that a hand-over costs: between packages, between cores of one, between threads of one core.
constexpr float kPackageCost = 9000, kCoreCost = 60000, kThreadCost = 500000;

/// The three terms over a team of d + 1. Each is rounded before it is multiplied.
float overhead_terms(const vml_topology& t, double d) {
  const auto packages = static_cast<float>((t.logical / t.packages) * (t.packages - 1) / d);
  const auto cores = static_cast<float>((t.cores / t.packages - 1) * (t.logical / t.cores) / d);
  const auto threads = static_cast<float>((t.logical / t.cores - 1) / d);
  return packages * kPackageCost + cores * kCoreCost + threads * kThreadCost;
}

/// True if a region of this overhead costs as much as n elements.
bool outweighs(float overhead, double cost, int n) {
  const double elements = static_cast<double>(overhead) / cost;
  return elements >= static_cast<double>(n);
}

/// Takes one thread away: whole packages first, then cores, then threads of cores. False if one is left.
bool reduce(vml_topology& t) {
  if (t.packages > 1) {
    --t.packages;
    --t.cores;
    --t.logical;
  } else if (t.cores > 1) {
    --t.cores;
    --t.logical;
  } else if (t.logical >= 2) {
    --t.logical;
  } else {
    return false;
  }
  return true;
}

}  // namespace

vml_topology read_vml_topology(cpuid_reader cpuid, int logical) {
  const int logical_per_package = static_cast<int>(cpuid(1, 0).ebx >> 16 & 255);
  const int cores_per_package = is_selected_vendor(read_cpu_facts(cpuid))
                                    ? static_cast<int>(cpuid(4, 0).eax >> 26) + 1
                                    : static_cast<int>(cpuid(0x80000008, 0).ecx & 255) + 1;
  const int packages = logical_per_package > 0 ? logical / logical_per_package : 0;
  const int cores = packages * cores_per_package;
  if (packages == 0 || packages > cores || cores > logical) return {logical, logical, logical};
  return {logical, cores, packages};
}

double vml_element_cost(vml_cost_row row, int type) {
  constexpr double kHa[] = {17.15, 35.67, 15.69, 9.73, 10.57, 0};
  constexpr double kLa[] = {17.15, 15.12, 9.52, 8.53, 6.39, 0};
  constexpr double kEp[] = {17.15, 15.11, 9.53, 8.51, 6.39, 0};
  if (type < 0 || type > 5) return 0;
  return (row == kDivisionHa ? kHa : row == kDivisionLa ? kLa : kEp)[type];
}

float vml_fork_overhead(const vml_topology& topology) {
  return topology.logical == 1 ? -1 : overhead_terms(topology, topology.logical - 1);
}

int vml_fork_length(const vml_topology& topology, vml_cost_row row, int type) {
  if (type >= kFirstNativeType) return kNativeVmlFork;
  const float overhead = vml_fork_overhead(topology);
  const double cost = vml_element_cost(row, type);
  if (overhead == -1 || cost == 0) return kNever;
  return std::max(static_cast<int>(static_cast<double>(overhead) / cost), kShortest);
}

bool stores_past_caches(const store_facts& facts) {
  return facts.type >= kFirstNativeType && !facts.in_place && facts.bytes > facts.room &&
         reinterpret_cast<std::uintptr_t>(facts.result) % 8 == 0;
}

int vml_refined_threads(int threads, const vml_topology& topology, vml_cost_row row, int type, int n) {
  // Two at the shortest length; every further thread wants half as much again.
  if (type >= kFirstNativeType) return std::clamp(n / (kNativeVmlFork / 2), 1, threads);
  const double cost = vml_element_cost(row, type);
  float overhead = vml_fork_overhead(topology);
  if (cost == 0 || outweighs(overhead, cost, n)) return std::min(threads, 1);
  const double others = topology.logical - 1;
  vml_topology left = topology;
  int team = 1;
  while (reduce(left)) {
    ++team;
    overhead += overhead_terms(left, others);
    if (outweighs(overhead, cost, n)) break;
  }
  return std::min(threads, team);
}

vml_plan plan_vml(const vml_facts& facts) {
  constexpr int kArrays = 3;
  if (!facts.divides && facts.type < kFirstNativeType) return {1, false, "no threads on this processor type"};
  if (facts.n < vml_fork_length(facts.topology, kDivisionHa, facts.type)) return {1, false, "short vectors"};
  const double bytes = 1.0 * kArrays * sizeof(double) * facts.n;
  const int room = static_cast<int>(kVmlShareOfCache * facts.largest_cache);
  const bool past_caches = stores_past_caches({facts.type, bytes, room, facts.in_place, facts.result});
  if (facts.threads == 1) return {1, past_caches, "one thread in the domain"};
  if (!facts.dynamic) return {facts.threads, past_caches, "no dynamic adjustment: all threads of the domain"};
  const int threads = vml_refined_threads(facts.threads, facts.topology, facts.row, facts.type, facts.n);
  return {threads, past_caches,
          threads < facts.threads ? "as many as the work feeds" : "all threads of the domain"};
}

}  // namespace qel
