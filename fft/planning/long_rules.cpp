// SPDX-License-Identifier: BSD-3-Clause
#include "fft/planning/long_rules.h"

#include <algorithm>
#include <bit>

#include "qel/dfti.h"

namespace qel::fft {
namespace {

int log2_of(core_int n) { return static_cast<int>(std::bit_width(static_cast<uint64_t>(n))) - 1; }
bool is_power_of_two(core_int n) { return std::has_single_bit(static_cast<uint64_t>(n)); }

constexpr int kFirstSplitOrder = 16;
constexpr int kFirstFixedOrder = 10;
constexpr int kLastFixedOrder = 26;
// Fewer points are not worth a thread's way into a region and the exchange of data; measured on two cores of
// a Zen 4. Single-precision lines that go as passes gain a tenth at most by a second thread, and lose half
// where both share a core's caches.
constexpr core_int kPointsPerThread = 3 << 12, kSingleForFew = 9 << 14, kFew = 3;
constexpr core_int kLongestShared = core_int{1} << kLastFixedOrder;

bool is_plain(const long_facts& f) {
  return f.complex_storage == DFTI_COMPLEX_COMPLEX && f.ordering == DFTI_ORDERED && f.transforms == 1 &&
         f.input_stride == 1 && f.output_stride == 1;
}

bool wants_split(const long_facts& f) {
  if (log2_of(f.length) < kFirstSplitOrder) return false;
  return !is_power_of_two(f.length) || f.threads > 8 || f.placement == DFTI_INPLACE ||
         log2_of(f.length) > kLastFixedOrder;
}

bool wants_fixed(const long_facts& f) {
  const int order = log2_of(f.length);
  return is_power_of_two(f.length) && order >= kFirstFixedOrder && order <= kLastFixedOrder &&
         f.placement == DFTI_NOT_INPLACE;
}

int fixed_parts(const long_facts& f) {
  const int order = log2_of(f.length);
  if (f.threads >= 8 && (!f.dynamic || order >= 17)) return 8;
  if (f.threads >= 4 && (!f.dynamic || order >= 15)) return 4;
  return 2;
}

}  // namespace

line_split dfti_plan_split(core_int length) {
  if (is_power_of_two(length)) {
    const core_int rows = core_int{1} << (log2_of(length) / 2);
    return {rows, length / rows};
  }
  core_int root = 1;
  while (root * root < length) ++root;
  core_int primes[64];
  int count = 0;
  core_int left = length;
  const auto take_out = [&](core_int divisor) {
    for (; left % divisor == 0; left /= divisor) primes[count++] = divisor;
  };
  take_out(2);
  take_out(3);
  for (core_int divisor = 5; divisor * divisor <= left; divisor += 6) {
    take_out(divisor);
    take_out(divisor + 2);
  }
  if (left > 1) primes[count++] = left;
  core_int a = 1, b = 1;
  for (int i = count - 1; i >= 0; --i) {
    if (b < a || a * primes[i] > root) {
      b *= primes[i];
    } else {
      a *= primes[i];
    }
  }
  const core_int rows = std::min(a, b);
  return {rows, length / rows};
}

long_choice choose_long_tier(const long_facts& f) {
  long_choice none{long_tier::kNone, 0, 0, 0, ""};
  const auto because = [&](const char* reason) {
    none.reason = reason;
    return none;
  };
  if (f.threads <= 1) return because("one thread is allowed");
  if (f.user_threads > 1) return because("several threads of the application share the descriptor");
  if (!is_plain(f)) return because("not one ordered line at unit stride");
  if (f.native && f.length <= kLongestShared) {
    const core_int parts = std::min<core_int>(f.threads, f.length / kPointsPerThread);
    if (parts < 2) return because("too short for threads");
    if (f.single && parts <= kFew && f.length < kSingleForFew) return because("too short for few threads");
    return {long_tier::kShared, 0, 0, static_cast<int>(parts), "shared out"};
  }
  if (wants_split(f)) {
    const line_split split = dfti_plan_split(f.length);
    if (split.rows > 1) return {long_tier::kSplit, split.rows, split.columns, 0, "rows times columns"};
  }
  if (wants_fixed(f)) {
    const line_split split = dfti_plan_split(f.length);
    return {long_tier::kFixed, split.rows, split.columns, fixed_parts(f), "a power of two out of place"};
  }
  return because("no two factors, or too short for threads");
}

column_groups deal_columns(core_int columns, int threads) {
  const core_int k = columns / threads / 4 * 4;
  if (columns < 8) return {1, columns};
  if (k >= 5 && columns - (threads - 1) * k < 2 * k) return {threads, k};
  const core_int x = k >= 5 ? threads : columns / 8;
  const int count = 1 << log2_of(x);
  return {count, columns / count / 4 * 4};
}

}  // namespace qel::fft
