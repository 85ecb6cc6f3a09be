// SPDX-License-Identifier: BSD-3-Clause
#include "fft/planning/native_plan.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <iterator>

#include "fft/kernels/fft_kernels.h"
#include "fft/planning/line_plan.h"

namespace qel::fft {
namespace {

constexpr core_int kLongestPrimeLine = kLargestDirect;  ///< primes beyond are faster as convolutions
constexpr core_int kLongestInTwoSteps = 256;
constexpr core_int kLongestLine = 1 << 13;  ///< beyond, rows times columns keep the work in cache
constexpr core_int kLongestOddLine = 1 << 25;

void add(autosort_plan& plan, int radix, int times = 1) {
  for (; times > 0; --times) plan.radices[plan.count++] = radix;
}

int take_out(core_int& left, int divisor) {
  int times = 0;
  for (; left % divisor == 0; left /= divisor) ++times;
  return times;
}

/// Two factors of length, as near to each other as can be, the larger one a multiple of 8 if it can; rows 1:
/// none.
native_plan split_long(core_int length) {
  core_int best = 1;
  for (core_int rows = 2; rows * rows <= length; ++rows) {
    if (length % rows != 0) continue;
    // Multiples of 8 fill the blocks of the halves.
    const bool fills = rows % 8 == 0 || best % 8 != 0;
    if (fills || rows >= 2 * best) best = rows;
  }
  return {native_method::kLong, best, length / best, 0};
}

}  // namespace

bool has_autosort_pass(int radix) {
  return std::find(std::begin(kAutosortRadices), std::end(kAutosortRadices), radix) !=
         std::end(kAutosortRadices);
}

autosort_plan plan_autosort(core_int length) {
  autosort_plan plan{};
  core_int left = length;
  const int twos = take_out(left, 2), threes = take_out(left, 3);
  // The first pass has one element at a time and turns registers round: best with radix 8 or 4.
  int eights = twos / 3, fours = 0, single_two = 0;
  if (twos % 3 == 2) fours = 1;
  if (twos % 3 == 1) {
    if (eights > 0) {
      --eights;
      fours = 2;
    } else {
      single_two = 1;
    }
  }
  const bool six = single_two == 1 && threes % 2 == 1;
  if (eights > 0) {
    add(plan, 8);
  } else if (fours > 0) {
    add(plan, 4);
  }
  add(plan, 9, threes / 2);
  if (six) {
    add(plan, 6);
  } else {
    add(plan, 3, threes % 2);
    add(plan, 2, single_two);
  }
  bool generic = false;
  for (int divisor = 5; left > 1; divisor += 2) {
    if (divisor > kLargestDirect) return {};
    const int times = take_out(left, divisor);
    if (times > 0 && !has_autosort_pass(divisor)) generic = true;
    add(plan, divisor, times);
  }
  if (eights > 0) {
    add(plan, 4, fours);
    add(plan, 8, eights - 1);
  } else {
    add(plan, 4, fours - (fours > 0 ? 1 : 0));
  }
  if (generic && !has_autosort_pass(plan.radices[0])) {
    std::copy_backward(plan.radices, plan.radices + plan.count, plan.radices + plan.count + 1);
    plan.radices[0] = 1;
    ++plan.count;
  }
  if (!has_autosort_pass(plan.radices[plan.count - 1]) || plan.count == 1) add(plan, 1);
  return plan;
}

whole_line_plan plan_whole_line(core_int length) {
  if (length > kLongestInTwoSteps) return {whole_line::kPasses, 0, 0};
  int smallest = 2;
  while (length % smallest != 0) ++smallest;
  if (smallest == length) return {length <= kLargestDirect ? whole_line::kSums : whole_line::kPasses, 0, 0};
  for (int rows = static_cast<int>(std::sqrt(static_cast<double>(length))); rows > 1; --rows) {
    const auto columns = static_cast<int>(length / rows);
    if (length % rows == 0 && columns <= kStraightLengths) return {whole_line::kTwoSteps, rows, columns};
  }
  return {whole_line::kPasses, 0, 0};
}

core_int good_length(core_int n) {
  core_int best = static_cast<core_int>(std::bit_ceil(static_cast<uint64_t>(n)));
  for (const core_int odd : {3, 5, 9, 15}) {
    core_int length = odd * 16;
    while (length < n) length *= 2;
    best = std::min(best, length);
  }
  return best;
}

native_plan plan_native_line(core_int length) {
  const autosort_plan passes = plan_autosort(length);
  const bool prime = passes.count == 0 || passes.radices[0] == length || passes.radices[1] == length;
  if (passes.count > 0 && !(prime && length > kLongestPrimeLine)) {
    if (length <= kLongestLine) return {native_method::kAutosort, 0, 0, 0};
    const native_plan split = split_long(length);
    if (split.rows >= 8) return split;
    return {native_method::kAutosort, 0, 0, 0};
  }
  if (length >= kLongestOddLine) return {native_method::kRefused, 0, 0, 0};
  return {native_method::kBluestein, 0, 0, good_length(2 * length - 1)};
}

}  // namespace qel::fft
