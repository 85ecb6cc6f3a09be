// SPDX-License-Identifier: BSD-3-Clause
// The kernels that find the largest and the smallest element: ties, NaN, strides, and the blocks that the
// contiguous search passes over.
#include <algorithm>
#include <limits>

#include "tests/kernels/support.h"

namespace qel::test {
namespace {

const double kNan = std::numeric_limits<double>::quiet_NaN();
const double kInfinity = std::numeric_limits<double>::infinity();

/// An element of the given magnitude |re| + |im|.
template <class T>
T element_of_size(double size) {
  using R = real_of<T>;
  if constexpr (is_complex<T>) {
    return {static_cast<R>(-0.25 * size), static_cast<R>(0.75 * size)};
  } else {
    return static_cast<T>(-size);
  }
}

/// One element after the other: the best is replaced unless the comparison that keeps it holds.
core_int index_by_rule(const std::vector<double>& sizes, bool largest) {
  std::size_t best = 0;
  for (std::size_t i = 1; i < sizes.size(); ++i) {
    const bool keeps = largest ? sizes[best] >= sizes[i] : sizes[i] >= sizes[best];
    if (!keeps) best = i;
  }
  return static_cast<core_int>(best) + 1;
}

class ExtremesLevel : public ByLevel {
 protected:
  void expect_rule(const std::vector<double>& sizes, const std::string& what) {
    const auto n = static_cast<core_int>(sizes.size());
    for_element_types([&]<class T>() {
      static arena<T> memory(3000);
      for (const core_int inc : {1, 3}) {
        std::vector<T> x(span_of(n, inc), element_of_size<T>(inc == 1 ? 0 : 1e9));
        for (core_int i = 0; i < n; ++i)
          x[cell_of(i, n, inc)] = element_of_size<T>(sizes[static_cast<std::size_t>(i)]);
        for (const std::size_t off : {std::size_t{0}, sizeof(real_of<T>) / 2}) {
          const T* at = memory.place(x, off);
          ASSERT_EQ(index_by_rule(sizes, true), rows<T>::amax.kernel[level()](&n, at, &inc))
              << what << " stride " << inc;
          ASSERT_EQ(index_by_rule(sizes, false), rows<T>::amin.kernel[level()](&n, at, &inc))
              << what << " stride " << inc;
          if (!native()) continue;
          // The forms for slices mark with a sign that there was a NaN.
          const bool nan = std::any_of(sizes.begin(), sizes.end(), [](double v) { return std::isnan(v); });
          ASSERT_EQ(index_by_rule(sizes, true) * (nan ? -1 : 1),
                    rows<T>::amax_slice.kernel[level()](&n, at, &inc))
              << what;
          ASSERT_EQ(index_by_rule(sizes, false) * (nan ? -1 : 1),
                    rows<T>::amin_slice.kernel[level()](&n, at, &inc))
              << what;
        }
      }
    });
  }
};

struct extreme_case {
  const char* name;
  std::vector<double> values;
  core_int largest, smallest;
};
const extreme_case kCases[] = {
    {"One", {4}, 1, 1},
    {"OneNan", {kNan}, 1, 1},
    {"FirstOfEqualIsLargest", {1, 3, 3}, 2, 1},
    {"FirstOfEqualIsSmallest", {2, 1, 1}, 1, 2},
    {"KeepsElementAfterNan", {1, kNan, 0.5}, 3, 3},
    {"KeepsLastNan", {1, 2, kNan}, 3, 3},
    {"KeepsSearchAfterFirstNan", {kNan, 2, 8, 4}, 3, 2},
    {"KeepsLastOfTwoNans", {5, kNan, kNan}, 3, 3},
    {"InfinityIsOrdered", {1, kInfinity, 2}, 2, 1},
};
TEST_P(ExtremesLevel, Cases) {
  for (const extreme_case& c : kCases) {
    EXPECT_EQ(c.largest, index_by_rule(c.values, true)) << c.name;
    EXPECT_EQ(c.smallest, index_by_rule(c.values, false)) << c.name;
    expect_rule(c.values, c.name);
  }
}

// The event may stand anywhere in, before or after the blocks: first alone, then with a second one behind it.
TEST_P(ExtremesLevel, FindsEveryPosition) {
  for (const double event : {9.0, 0.25, kNan}) {
    for (std::size_t at = 0; at < 150; ++at) {
      std::vector<double> sizes(150, 2);
      sizes[at] = event;
      expect_rule(sizes, std::to_string(event) + " at " + std::to_string(at));
      sizes[(at * 7 + 5) % 150] = event;
      expect_rule(sizes, std::to_string(event) + " twice from " + std::to_string(at));
    }
  }
}

// Few different values, so that ties abound, and NaN among them.
TEST_P(ExtremesLevel, FollowsTheRuleOnRandomVectors) {
  std::mt19937 random(11);
  for (std::size_t n = 1; n < 220; ++n) {
    for (const int nan_in : {0, 40}) {
      std::vector<double> sizes(n);
      for (double& v : sizes) {
        v = static_cast<double>(random() % 7);
        if (nan_in != 0 && random() % 40 == 0) v = kNan;
      }
      expect_rule(sizes, "n " + std::to_string(n));
    }
  }
}

TEST_P(ExtremesLevel, NothingHasIndexZero) {
  for_element_types([&]<class T>() {
    const T x = element_of_size<T>(1);
    for (const auto& [n, inc] : {std::pair<core_int, core_int>{0, 1}, {-1, 1}, {1, 0}, {3, 0}, {3, -1}}) {
      EXPECT_EQ(0, rows<T>::amax.kernel[level()](&n, &x, &inc)) << n << ' ' << inc;
      EXPECT_EQ(0, rows<T>::amin.kernel[level()](&n, &x, &inc)) << n << ' ' << inc;
    }
  });
}

INSTANTIATE_TEST_SUITE_P(Levels, ExtremesLevel, testing::Range(0, kLevels));

}  // namespace
}  // namespace qel::test
