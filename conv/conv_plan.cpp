// SPDX-License-Identifier: BSD-3-Clause
#include "conv/conv_plan.h"

namespace qel::conv {
namespace {

constexpr core_int kLeastResult = 512, kLeastShorter = 64;  // transforms
constexpr core_int kLongLonger = 4096, kBlock = 4096;       // sums
constexpr core_int kManyTimes = 3;                          // overlap-save

/// The smallest order from least on whose power of two is not below length.
int order_of(core_int length, int least) {
  int order = least;
  while ((core_int{1} << order) < length) ++order;
  return order;
}

}  // namespace

conv_plan plan_conv(core_int longer, core_int shorter) {
  const core_int result = longer + shorter - 1;
  if (result < kLeastResult || shorter < kLeastShorter) {
    const char* reason = result < kLeastResult ? "short result" : "short second sequence";
    if (longer < kLongLonger) return {conv_method::kDirect, 0, 0, 0, reason};
    return {conv_method::kBlocks, 0, kBlock, 0, reason};
  }
  if (longer < kManyTimes * shorter)
    return {conv_method::kTransform, order_of(result, 2), 0, 0, "sequences of like lengths"};
  const int order = order_of(2 * shorter, 1) + 1;
  return {conv_method::kOverlapSave, order, 0, (core_int{1} << order) - shorter + 1,
          "one sequence is much longer"};
}

}  // namespace qel::conv
