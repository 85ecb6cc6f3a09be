// SPDX-License-Identifier: BSD-3-Clause
#include "fft/planning/native_plan.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <functional>
#include <iterator>
#include <limits>

#include "fft/kernels/fft_kernels.h"
#include "fft/planning/line_plan.h"

namespace qel::fft {
namespace {

constexpr core_int kLongestPrimeLine = kLargestDirect;  ///< primes beyond are faster as convolutions
constexpr core_int kLongestInTwoSteps = 256;
constexpr core_int kLongestLine = 1 << 17;  ///< beyond, rows times columns keep the work in cache
constexpr core_int kLongestAutosort = 1 << 27;
constexpr core_int kLongestOddLine = 1 << 25;
// Costs of an element, in passes of radix 2.
constexpr double kGenericCost = 0.6;     ///< times the radix
constexpr double kFilledRegisters = 12;  ///< numbers side by side below which such passes cost more
constexpr double kMoveCost = 1;
constexpr double kFarMoveCost = 12;  ///< in an order of its own, beyond the second-level cache
constexpr core_int kCachedPoints = 1 << 15;

void add(autosort_plan& plan, int radix, int times = 1) {
  for (; times > 0; --times) plan.radices[plan.count++] = radix;
}

int take_out(core_int& left, int divisor) {
  int times = 0;
  for (; left % divisor == 0; left /= divisor) ++times;
  return times;
}

/// Radices without factors above 5, by what a pass costs an element; what it costs more as the first one,
/// which has one element at a time and turns registers round: best with a power of two, whose multiples fill
/// registers from then on.
struct smooth_radix {
  int radix, twos, threes, fives;
  double cost, first;
};
constexpr smooth_radix kSmooth[] = {{9, 0, 2, 0, 3.1, 3}, {3, 0, 1, 0, 1.9, 3},   {5, 0, 0, 1, 2.5, 3},
                                    {6, 1, 1, 0, 2.5, 3}, {10, 1, 0, 1, 3.1, 3},  {12, 2, 1, 0, 3.3, 1.5},
                                    {2, 1, 0, 0, 1.5, 3}, {4, 2, 0, 0, 2.0, 0.5}, {8, 3, 0, 0, 2.6, 0}};
constexpr int kSmoothRadices = static_cast<int>(std::size(kSmooth));

/// The cheapest product of powers of 2, 3 and 5: the first radix, and how often each other one comes.
struct smooth_product {
  int first;  ///< 1: there is none
  int counts[kSmoothRadices];
};
smooth_product cheapest_product(int twos, int threes, int fives) {
  constexpr int kMost = 512;  // of all products to kLongestAutosort
  constexpr double kNever = std::numeric_limits<double>::infinity();
  double cost[kMost];
  signed char last[kMost];
  const auto at = [&](int a, int b, int c) { return (a * (threes + 1) + b) * (fives + 1) + c; };
  const auto goes = [](const smooth_radix& r, int a, int b, int c) {
    return r.twos <= a && r.threes <= b && r.fives <= c;
  };
  for (int a = 0; a <= twos; ++a) {
    for (int b = 0; b <= threes; ++b) {
      for (int c = 0; c <= fives; ++c) {
        const int here = at(a, b, c);
        cost[here] = here == 0 ? 0 : kNever;
        for (int i = 0; i < kSmoothRadices; ++i) {
          const smooth_radix& r = kSmooth[i];
          if (!goes(r, a, b, c)) continue;
          const double sum = r.cost + cost[at(a - r.twos, b - r.threes, c - r.fives)];
          if (sum >= cost[here]) continue;
          cost[here] = sum;
          last[here] = static_cast<signed char>(i);
        }
      }
    }
  }
  smooth_product product{1, {}};
  double least = kNever;
  int a = twos, b = threes, c = fives;
  for (const smooth_radix& r : kSmooth) {
    if (!goes(r, twos, threes, fives)) continue;
    const double sum = r.cost + r.first + cost[at(twos - r.twos, threes - r.threes, fives - r.fives)];
    if (sum >= least) continue;
    least = sum;
    product.first = r.radix;
    a = twos - r.twos, b = threes - r.threes, c = fives - r.fives;
  }
  while (a + b + c > 0) {
    const int i = last[at(a, b, c)];
    ++product.counts[i];
    a -= kSmooth[i].twos, b -= kSmooth[i].threes, c -= kSmooth[i].fives;
  }
  return product;
}

/// Passes take numbers side by side, as many as the radices before them have made. Unless the first radix is
/// a multiple of 4, whose multiples fill registers, larger ones come first; those without code of their own
/// come last but one.
void order_radices(autosort_plan& plan) {
  int *const begin = plan.radices, *const end = begin + plan.count;
  int* const generic = std::stable_partition(begin, end, has_autosort_pass);
  if (generic == begin) return;
  const bool fills = begin[0] % 4 == 0;
  if (fills && generic == end) return;
  std::sort(fills ? begin + 1 : begin, generic, std::greater<>());
  if (generic != end && generic - begin > 1) std::rotate(generic - 1, generic, end);
}

bool is_prime(core_int n) {
  for (core_int divisor = 2; divisor * divisor <= n; ++divisor) {
    if (n % divisor == 0) return false;
  }
  return n > 1;
}

/// Two factors of length, as near to each other as can be, the larger one a multiple of 8 if it can; passes
/// if there are fewer than 8 rows.
native_plan split_long(core_int length) {
  core_int best = 1;
  for (core_int rows = 2; rows * rows <= length; ++rows) {
    if (length % rows != 0) continue;
    // Multiples of 8 fill the blocks of the halves.
    const bool fills = rows % 8 == 0 || best % 8 != 0;
    if (fills || rows >= 2 * best) best = rows;
  }
  return best >= 8 ? native_plan{native_method::kLong, best, length / best, 0}
                   : native_plan{native_method::kAutosort, 0, 0, 0};
}

}  // namespace

bool has_autosort_pass(int radix) {
  return std::find(std::begin(kAutosortRadices), std::end(kAutosortRadices), radix) !=
         std::end(kAutosortRadices);
}

autosort_plan plan_autosort(core_int length) {
  autosort_plan plan{};
  if (length > kLongestAutosort) return plan;
  core_int left = length;
  const int twos = take_out(left, 2), threes = take_out(left, 3), fives = take_out(left, 5);
  bool generic = false;
  autosort_plan rest{};
  for (core_int divisor = 7; left > 1; divisor += 2) {
    if (divisor * divisor > left) divisor = left;
    if (divisor > kLargestDirect) return {};
    const int times = take_out(left, static_cast<int>(divisor));
    if (times > 0 && !has_autosort_pass(static_cast<int>(divisor))) generic = true;
    add(rest, static_cast<int>(divisor), times);
  }
  const smooth_product smooth = cheapest_product(twos, threes, fives);
  if (smooth.first > 1) add(plan, smooth.first);
  for (int i = 0; i < rest.count; ++i) add(plan, rest.radices[i]);
  for (int i = 0; i < kSmoothRadices; ++i) add(plan, kSmooth[i].radix, smooth.counts[i]);
  order_radices(plan);
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
  for (int rows = static_cast<int>(std::sqrt(static_cast<double>(length))); rows > 1; --rows) {
    const auto columns = static_cast<int>(length / rows);
    if (length % rows == 0 && columns <= kStraightLengths) return {whole_line::kTwoSteps, rows, columns};
  }
  // Sums err more than passes do, but less than passes of a radix without code of its own cost.
  const autosort_plan passes = plan_autosort(length);
  const bool generic = !std::all_of(passes.radices, passes.radices + passes.count, has_autosort_pass);
  const bool sums = generic && length % 2 == 1 && length <= kLargestDirect;
  return {sums ? whole_line::kSums : whole_line::kPasses, 0, 0};
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

double native_cost(core_int length) {
  const autosort_plan passes = plan_autosort(length);
  if (passes.count == 0) return -1;
  double cost = 0, side_by_side = 1;
  for (int i = 0; i < passes.count; ++i) {
    const int radix = passes.radices[i];
    cost += has_autosort_pass(radix) ? 1 + std::log2(radix)
                                     : kGenericCost * radix * std::max(1.0, kFilledRegisters / side_by_side);
    side_by_side *= radix;
  }
  return (cost + (length > kLongestLine ? 2 * kMoveCost : 0)) * static_cast<double>(length);
}

core_int primitive_root(core_int prime) {
  const residues modulo(prime);
  const auto power = [&](core_int base, core_int exponent) {
    core_int result = 1;
    for (; exponent > 0; exponent /= 2, base = modulo.product(base, base)) {
      if (exponent % 2 == 1) result = modulo.product(result, base);
    }
    return result;
  };
  core_int exponents[8];  // one for each prime factor of prime - 1, of which 2^26 has room for no more
  int count = 0;
  core_int left = prime - 1;
  for (core_int divisor = 2; left > 1; divisor += divisor == 2 ? 1 : 2) {
    if (divisor * divisor > left) divisor = left;
    if (take_out(left, static_cast<int>(divisor)) > 0) exponents[count++] = (prime - 1) / divisor;
  }
  core_int root = 2;
  while (std::any_of(exponents, exponents + count, [&](core_int e) { return power(root, e) == 1; })) ++root;
  return root;
}

bool prefers_rader(core_int prime, core_int padded) {
  const double cyclic = native_cost(prime - 1), chirp = native_cost(padded);
  if (cyclic < 0) return false;
  const double move = prime > kCachedPoints ? kFarMoveCost : kMoveCost;
  return cyclic + move * static_cast<double>(prime) < chirp + 1.5 * kMoveCost * static_cast<double>(padded);
}

native_plan plan_native_line(core_int length) {
  const autosort_plan passes = plan_autosort(length);
  const bool prime = passes.count == 0 || passes.radices[0] == length || passes.radices[1] == length;
  if (passes.count > 0 && !(prime && length > kLongestPrimeLine)) {
    if (length <= kLongestLine) return {native_method::kAutosort, 0, 0, 0};
    return split_long(length);
  }
  if (length >= kLongestOddLine) return {native_method::kRefused, 0, 0, 0};
  const core_int padded = good_length(2 * length - 1);
  const native_method method =
      is_prime(length) && prefers_rader(length, padded) ? native_method::kRader : native_method::kBluestein;
  return {method, 0, 0, method == native_method::kRader ? 0 : padded};
}

}  // namespace qel::fft
