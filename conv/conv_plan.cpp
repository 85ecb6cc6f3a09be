// SPDX-License-Identifier: BSD-3-Clause
#include "conv/conv_plan.h"

#include <algorithm>
#include <bit>
#include <cmath>

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

bool takes_sums(core_int longer, core_int shorter) {
  return longer + shorter - 1 < kLeastResult || shorter < kLeastShorter;
}

constexpr core_int kShortestTransform = 64, kLongestTransform = core_int{1} << 26;

// Costs on native types, in real products of sums in blocks; precisions are alike in them.
constexpr double kOfSingleSum = 32;      // a product of an output by itself
constexpr double kOfTransform = 3;       // for each real and each doubling of the length
constexpr double kOfOddPart = 1.08;      // times as much for other lengths than powers of two
constexpr double kOfLong = 1.3;          // times as much for lines that leave the nearest caches
constexpr double kOfReal = 1;            // of a piece: copies
constexpr double kOfPiece = 1500;        // calls
constexpr double kOfCall = 8000;         // memory, the spectrum of the taps
constexpr core_int kLongestNear = 8192;  // complex numbers

/// Products of the outputs below t.
double products_below(const native_conv_facts& f, core_int t) {
  const auto rising = [](core_int n) { return 0.5 * static_cast<double>(n) * static_cast<double>(n + 1); };
  const core_int head = std::min(t, f.shorter),
                 level = std::clamp<core_int>(t - f.shorter, 0, f.longer - f.shorter),
                 tail = std::max<core_int>(t - f.longer, 0);
  return rising(head) + static_cast<double>(level) * static_cast<double>(f.shorter) +
         static_cast<double>(tail) * static_cast<double>(f.shorter) - rising(tail);
}

/// By real transforms; complex ones cost twice as much.
double cost_of_pieces(core_int length, core_int pieces, bool complex_numbers) {
  const auto n = static_cast<double>(length);
  const bool is_long = (complex_numbers ? length : length / 2) > kLongestNear;
  const bool has_odd_part = !std::has_single_bit(static_cast<uint64_t>(length));
  const double transform =
      kOfTransform * n * std::log2(n) * (is_long ? kOfLong : 1) * (has_odd_part ? kOfOddPart : 1);
  return static_cast<double>(2 * pieces + 1) * transform +
         static_cast<double>(pieces) * (kOfReal * n + kOfPiece) + kOfCall;
}

/// The length that a single piece of all outputs takes.
core_int length_of_one(const native_conv_facts& f) {
  const core_int overlap = f.shorter - 1, from = std::max<core_int>(0, f.first - overlap);
  const core_int data = std::min(f.longer, f.last()) - from;
  return std::max(f.last() - from, data + overlap - (f.first - from));
}

/// Lengths of transforms: 4, 5, 6 or 7 times a power of two.
core_int next_length(core_int length) {
  return length + static_cast<core_int>(std::bit_floor(static_cast<uint64_t>(length)) / 4);
}

/// The cheapest transforms and their cost.
native_conv_plan best_pieces(const native_conv_facts& f, double& cost) {
  const core_int outputs = f.last() - f.first, of_one = length_of_one(f);
  native_conv_plan best{native_conv_method::kPieces, 0, 0, 0, "cheaper than sums"};
  cost = HUGE_VAL;
  for (core_int length = kShortestTransform; length <= kLongestTransform; length = next_length(length)) {
    const core_int step = length >= of_one ? outputs : length - f.shorter + 1;
    if (step < 1) continue;
    const core_int pieces = (outputs + step - 1) / step;
    const double found = cost_of_pieces(length, pieces, f.complex_numbers);
    if (found < cost) {
      cost = found;
      best.length = length, best.step = step, best.pieces = pieces;
    }
    if (pieces == 1) break;
  }
  return best;
}

}  // namespace

conv_plan plan_conv(core_int longer, core_int shorter) {
  const core_int result = longer + shorter - 1;
  if (takes_sums(longer, shorter)) {
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

native_conv_plan plan_native_conv(const native_conv_facts& f) {
  const bool sums = f.only_sums || takes_sums(f.longer, f.shorter);
  if (sums && f.decimation == 1) return {native_conv_method::kSums, 0, 0, 0, "short, or asked for"};
  const double together = products_below(f, f.last()) - products_below(f, f.first);
  const double alone = kOfSingleSum * static_cast<double>(f.count) * static_cast<double>(f.shorter);
  native_conv_plan best{native_conv_method::kSums, 0, 0, 0, "short, or asked for"};
  double cost = together;
  if (alone < cost) {
    best = {native_conv_method::kSingleSums, 0, 0, 0, "few outputs are wanted"};
    cost = alone;
  }
  if (sums) return best;
  if (f.complex_numbers) cost *= 2;
  double of_pieces;
  native_conv_plan pieces = best_pieces(f, of_pieces);
  best.weighed = pieces.weighed = true;
  if (of_pieces < cost) return pieces;
  best.reason = best.method == native_conv_method::kSums ? "cheaper than transforms" : best.reason;
  return best;
}

conv_piece piece_of(const native_conv_facts& f, const native_conv_plan& plan, core_int index) {
  const core_int from = f.first + index * plan.step, to = std::min(from + plan.step, f.last());
  const core_int data_from = std::max<core_int>(0, from - (f.shorter - 1));
  return {from, to, data_from, std::max<core_int>(0, std::min(f.longer, to) - data_from)};
}

}  // namespace qel::conv
