// SPDX-License-Identifier: BSD-3-Clause
#include <float.h>
#include <math.h>

#include "sparse/pardiso/order/matching.h"

namespace qel::pardiso {
namespace {

constexpr int kMemoryCode = block_struc_s0 - 3;
/// Ways of cutting a cycle that differ by less are equally good: the first one is kept.
constexpr double kSameWeight = 1e-8;
/// A diagonal entry below this is no pivot to begin with.
constexpr double kSmallDiagonal = 1e-4;

class cycle_cutter {
 public:
  cycle_cutter(const matching& matched, const double* column_log, const double* diagonal, pairing& result,
               int* cycle)
      : matched_(matched), column_log_(column_log), diagonal_(diagonal), result_(result), cycle_(cycle) {}

  /// The cycle that starts at a node; marks its nodes.
  void follow(int node, bool* visited) {
    length_ = 0;
    for (int i = node; !visited[i]; i = matched_.column_of[i]) {
      visited[i] = true;
      cycle_[length_++] = i;
    }
  }
  void cut() {
    if (length_ == 1) return;
    if (length_ % 2 == 0) {
      cut_even();
    } else {
      cut_odd();
    }
  }

 private:
  int node(int k) const { return cycle_[k % length_]; }
  /// Logarithm of the square of a node's symmetric scaling factor.
  double twice_log_scale(int i) const {
    return matched_.row_dual[i] + matched_.column_dual[i] - column_log_[i];
  }
  /// Logarithm of the scaled modulus of the matched entry from node k of the cycle to the next one.
  double weight(int k) const {
    const int i = node(k), j = node(k + 1);
    const double log_modulus = column_log_[j] - matched_.row_dual[i] - matched_.column_dual[j];
    return log_modulus + (twice_log_scale(i) + twice_log_scale(j)) / 2;
  }
  void add_pair(int k) {
    int i = node(k), j = node(k + 1);
    if (diagonal_[j] > diagonal_[i]) std::swap(i, j);
    result_.pairs[result_.pairs_length++] = i;
    result_.pairs[result_.pairs_length++] = j;
  }
  void cut_even() {
    double sums[2] = {0, 0};
    if (length_ > 2)
      for (int k = 0; k < length_; ++k) sums[k % 2] += weight(k);
    const int first = sums[1] > sums[0] + kSameWeight ? 1 : 0;
    for (int k = first; k < first + length_; k += 2) add_pair(k);
  }
  /// One node stays single: the one that leaves the largest product of pairs and its own diagonal entry.
  void cut_odd() {
    const auto alone = [&](int k) { return log(fmax(diagonal_[node(k)], DBL_MIN)); };
    double sum = 0;
    for (int k = 1; k < length_; k += 2) sum += weight(k);
    int single = 0;
    double best = sum + alone(0);
    for (int step = 1, k = 0; step < length_; ++step) {
      sum += weight(k) - weight(k + 1);
      k = (k + 2) % length_;
      if (sum + alone(k) > best + kSameWeight) best = sum + alone(k), single = k;
    }
    for (int k = single + 1; k < single + length_; k += 2) add_pair(k);
    if (diagonal_[node(single)] < kSmallDiagonal) {
      result_.held_back[result_.held_back_length++] = node(single);
      result_.held_back[result_.held_back_length++] = node(single + 1);
    }
  }

  const matching& matched_;
  const double* const column_log_;
  const double* const diagonal_;
  pairing& result_;
  int* const cycle_;
  int length_ = 0;
};

}  // namespace

stage_status pair_nodes(const matching& matched, int n, const double* column_log, const double* diagonal,
                        memory_account& account, pairing& result) {
  block<int> cycle;
  block<bool> visited;
  if (!cycle.allocate(account, n, kMemoryCode) || !visited.allocate(account, n, kMemoryCode) ||
      !result.pairs.allocate(account, n, kMemoryCode) || !result.held_back.allocate(account, n, kMemoryCode))
    return {-2, kMemoryCode};
  for (int i = 0; i < n; ++i) visited[i] = false;
  cycle_cutter cutter(matched, column_log, diagonal, result, cycle.get());
  for (int i = 0; i < n; ++i)
    if (!visited[i]) {
      cutter.follow(i, visited.get());
      cutter.cut();
    }
  return {};
}

}  // namespace qel::pardiso
