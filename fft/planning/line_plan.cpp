// SPDX-License-Identifier: BSD-3-Clause
#include "fft/planning/line_plan.h"

#include <algorithm>
#include <bit>
#include <utility>

#include "fft/planning/native_plan.h"

namespace qel::fft {
namespace {

/// Takes length apart into factors of at most kLargestDirect; false if that can't be done.
bool factorise(int length, line_plan& plan) {
  int left = length, count = 0;
  auto& factors = plan.factors;
  for (; left % 4 == 0; left /= 4) factors[count++] = 4;
  if (left % 2 == 0) {
    left /= 2;
    if (count > 0) factors[count] = factors[0];
    factors[0] = 2;
    ++count;
  }
  for (int divisor = 3; left >= 9 && left >= divisor * divisor;) {
    if (left % divisor == 0) {
      factors[count++] = divisor;
      left /= divisor;
    } else {
      divisor += 2;
      if (divisor > kLargestDirect) return false;
    }
  }
  if (count == 0 || left > kLargestDirect) return false;
  factors[count++] = left;
  plan.factor_count = count;
  return true;
}

/// The first pass reads with a stride: radix 4 does that best, so a 4 (or a leading 2) goes there.
void order_factors(line_plan& plan) {
  int* factors = plan.factors;
  int& last = factors[plan.factor_count - 1];
  if (factors[0] == 4) {
    std::swap(factors[0], last);
  } else if (factors[1] == 4) {
    std::swap(factors[1], last);
  } else if (factors[0] == 2) {
    std::swap(factors[0], last);
  }
}

void add_passes(pow2_passes& passes, int left) {
  while (left > 0) {
    const int order = left == 2 || left == 4 ? 2 : 3;
    passes.orders[passes.count++] = order;
    left -= order;
  }
}

line_plan native_line(core_int length) {
  const native_plan found = plan_native_line(length);
  line_plan plan{};
  plan.rows = found.rows;
  plan.columns = found.columns;
  plan.padded = static_cast<int>(found.padded);
  switch (found.method) {
    case native_method::kAutosort:
      plan.method = line_method::kAutosort;
      break;
    case native_method::kLong:
      plan.method = line_method::kLong;
      break;
    case native_method::kBluestein:
      plan.method = line_method::kBluestein;
      plan.workspace_bytes = plan.padded * 16 + 32;
      break;
    case native_method::kRader:
      plan.method = line_method::kRader;
      plan.workspace_bytes = static_cast<int>(length) * 16 + 32;
      break;
    case native_method::kRefused:
      plan.method = line_method::kRefused;
      break;
  }
  return plan;
}

}  // namespace

line_plan plan_line(core_int length, bool may_scramble, bool native) {
  if (native && length > kLargestStraight && length <= core_int{1} << kLargestOrder)
    return native_line(length);
  line_plan plan{};
  const auto bits = static_cast<uint64_t>(length);
  if (length <= kLargestStraight) {
    plan.method = line_method::kStraight;
  } else if (std::has_single_bit(bits)) {
    const bool short_enough = length <= core_int{1} << kLargestOrder;
    plan.method = short_enough ? line_method::kPowerOfTwo : line_method::kRefused;
    plan.scrambled = may_scramble && length > 32;
  } else if (length >= core_int{1} << 26) {
    plan.method = line_method::kRefused;
  } else if (factorise(static_cast<int>(length), plan)) {
    plan.method = line_method::kMixed;
    plan.scrambled = may_scramble && length >= kFirstScrambledMixed;
    if (!plan.scrambled) order_factors(plan);
    const int largest = *std::max_element(plan.factors, plan.factors + plan.factor_count);
    const int generic = largest > kLargestSpecialised ? largest : 0;
    // Scrambled lines are transformed in place.
    plan.workspace_bytes = plan.scrambled ? (generic == 0 ? 0 : generic * 16 + 64)
                                          : (generic + static_cast<int>(length)) * 16 + 64;
  } else if (length <= kLargestDirect) {
    plan.method = line_method::kDirect;
    // More than the sums need: it says which lines are small plans, and with that how their scales are
    // rounded.
    plan.workspace_bytes = 16 * static_cast<int>(length) + 32;
  } else if (length < core_int{1} << 25) {
    plan.method = line_method::kBluestein;
    plan.padded = static_cast<int>(std::bit_ceil(2 * bits - 1));
    plan.second_buffer = plan.padded <= 1 << kLargestPlainOrder;
    plan.workspace_bytes = plan.padded * (plan.second_buffer ? 32 : 16) + 32;
  } else {
    plan.method = line_method::kRefused;
  }
  return plan;
}

bool runs_in_planes(const line_plan& plan, int block) {
  return plan.method == line_method::kMixed && !plan.scrambled &&
         plan.factors[plan.factor_count - 1] % block == 0;
}

int first_cached_row(const line_plan& plan) {
  const int last = plan.factor_count - 1;
  int length = 1;
  for (int i = 0; i <= last; ++i) length *= plan.factors[i];
  int row = 0;
  for (; length >= kCachedBlock && row + 1 < last; ++row) length /= plan.factors[row];
  return row;
}

pow2_passes plan_pow2_passes(int order) {
  pow2_passes passes{};
  const int first = order == 4 || order == 8 || order == 11 ? 2 : 3;
  passes.orders[passes.count++] = first;
  add_passes(passes, order - first);
  return passes;
}

pow2_passes plan_combination(int k) {
  pow2_passes passes{};
  add_passes(passes, k);
  return passes;
}

pow2_split plan_pow2_split(int order) {
  if (order <= 18) return {6, 10};
  if (order <= 20) return {6, 12};
  return {8, order == 21 ? 12 : 14};
}

}  // namespace qel::fft
