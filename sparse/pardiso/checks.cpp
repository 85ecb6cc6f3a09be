// SPDX-License-Identifier: BSD-3-Clause
#include "sparse/pardiso/checks.h"

#include <algorithm>

namespace qel::pardiso {
namespace {

constexpr bool same_oddness(int a, int b) { return (a % 2 == 0) == (b % 2 == 0); }

// The types that there are factorisations for.
constexpr bool known_type(int mtype) {
  for (const int known : {1, 2, -2, 3, 4, -4, 6, 11, 13}) {
    if (mtype == known) return true;
  }
  return false;
}

constexpr bool in_range(int value, int low, int high) { return value >= low && value <= high; }

}  // namespace

structure_fault check_structure(matrix_type type, int n, const int* ia, const int* ja) {
  structure_fault fault;
  if (ia[0] != 1) fault = {fault_ia, {1, ia[0], ia[1]}};
  for (int i = 0; i < n; ++i) {
    if (ia[i + 1] <= ia[i]) fault = {fault_ia, {i + 1, ia[i], ia[i + 1]}};
  }
  if (fault.sub_code != fault_none) return fault;

  const int entries = ia[n] - 1;
  for (int j = 0; j < entries; ++j) {
    if (!in_range(ja[j], 1, n)) fault = {fault_ja_range, {j + 1, ja[j], n}};
  }
  if (fault.sub_code != fault_none) return fault;

  for (int i = 0; type.symmetric() && i < n; ++i) {
    const int first = ia[i];
    if (ja[first - 1] < i + 1) fault = {fault_triangle, {i + 1, first, ja[first - 1]}};
  }
  if (fault.sub_code != fault_none) return fault;

  for (int i = 0; i < n; ++i) {
    for (int j = ia[i]; j < ia[i + 1] - 1; ++j) {
      if (ja[j] <= ja[j - 1]) fault = {fault_ja_order, {j, ja[j - 1], ja[j]}};
    }
  }
  return fault;
}

int check_input(const solver_call& call, const basic_record& stored) {
  const parameters iparm = call.iparm();
  const int phase = call.phase;
  if (!in_range(phase, -1, 33) && !in_range(phase, 331, 333)) return fault_phase;
  iparm(p_threads) = std::max(iparm(p_threads), 1);
  if (call.maxfct > stored.maxfct && stored.maxfct > 0) return fault_maxfct;
  if (call.mnum > call.maxfct) return fault_mnum;
  if (call.mnum <= 0 && phase >= 22) return fault_mnum_phase;
  if (phase < 1) return fault_done;  // a release looks at no matrix
  if (!known_type(call.mtype)) return fault_type;
  if (stored.mtype != 0 && call.mtype != -stored.mtype && !same_oddness(call.mtype, stored.mtype)) {
    return fault_type_change;
  }
  if (stored.n > 0 && call.n != stored.n) return fault_n_change;
  if (call.n <= 0) return fault_n;
  if (call.ia[call.n] - 1 < call.n) return fault_ia_end;
  if (call.nrhs <= 0 && phase > 32) return fault_nrhs;
  if (!in_range(iparm(p_solution_in_b), 0, 1)) return fault_solution_place;
  if (!in_range(iparm(p_ordering), 0, 3)) return fault_ordering;
  if (iparm(p_check_structure) != 0) {
    const structure_fault fault = check_structure(call.type(), call.n, call.ia, call.ja);
    if (fault.sub_code != fault_none) {
      std::copy_n(fault.numbers, 3, &iparm(p_fault_1));
      return fault.sub_code;
    }
    iparm(p_check_structure) = 0;
  }
  const stage_range stages = stages_of(phase);
  const bool known_step = in_range(stages.first, 1, 3) && in_range(stages.last, stages.first, 3);
  return known_step ? fault_none : fault_step;
}

uint64_t pattern_fingerprint(int n, const int* ia, const int* ja) {
  constexpr uint64_t kPrime = 0x100000001b3, kMix = 0x9e3779b97f4a7c15;
  uint64_t hash = 0xcbf29ce484222325 ^ static_cast<uint64_t>(n);
  const auto add = [&](int value) {
    hash = (hash ^ static_cast<uint32_t>(value)) * kPrime;
    hash ^= hash >> 29;
  };
  std::for_each(ia, ia + n + 1, add);
  std::for_each(ja, ja + ia[n] - 1, add);
  return hash * kMix | 1;  // 0 means that none was taken
}

}  // namespace qel::pardiso
