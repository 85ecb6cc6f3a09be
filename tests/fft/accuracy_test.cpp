// SPDX-License-Identifier: BSD-3-Clause
// Lines of all methods beside a long double transform, in place and out, both directions and precisions.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <limits>
#include <numbers>
#include <numeric>
#include <vector>

#include "fft/spec/dft_spec.h"
#include "tests/fft/reference.h"
#include "tests/support/guarded.h"

namespace qel::test {
namespace {

using namespace qel::fft;

template <class R>
class Line : public testing::Test {
 public:
  using C = complex_of<R>;
  using Z = std::complex<R>;

  static long double bound(std::size_t n) {
    return std::numeric_limits<R>::epsilon() * (0.5L * std::sqrt(std::log2(static_cast<long double>(n))) + 1);
  }
  /// Checks length n; data lie against a page that can't be touched.
  static void check(std::size_t n, int flag = kUnscaled) {
    SCOPED_TRACE(testing::Message() << "length " << n << " flag " << flag);
    dft_spec<R>* spec = nullptr;
    ASSERT_EQ(dft_spec_create(&spec, static_cast<core_int>(n), flag), 0);
    const auto x = random_line<R>(n, static_cast<unsigned>(n));
    const std::vector<wide> exact(x.begin(), x.end());
    guarded<Z> in(n), out(n);
    std::vector<char> work(static_cast<std::size_t>(spec->workspace_bytes) + 64);
    for (const direction way : {kForward, kBackward}) {
      std::vector<wide> want = wide_transform(exact, way == kForward ? -1 : 1);
      if (spec->scaled[way] != 0) {
        for (wide& z : want) z *= static_cast<long double>(spec->scale);
      }
      in.assign(x);
      auto* input = reinterpret_cast<C*>(in.data());
      auto* output = reinterpret_cast<C*>(out.data());
      ASSERT_EQ(dft_spec_run<R>(input, output, spec, work.data(), way), 0);
      EXPECT_LE(relative_error(out.data(), want), bound(n)) << "direction " << way;
      EXPECT_EQ(std::memcmp(in.data(), x.data(), n * sizeof(Z)), 0) << "input changed";
      ASSERT_EQ(dft_spec_run<R>(input, input, spec, nullptr, way), 0);
      EXPECT_EQ(std::memcmp(in.data(), out.data(), n * sizeof(Z)), 0)
          << "in place differs, direction " << way;
    }
    dft_spec_free(spec);
  }
};
using reals = testing::Types<double, float>;
TYPED_TEST_SUITE(Line, reals);

TYPED_TEST(Line, EveryShortLength) {
  for (std::size_t n = 1; n <= 320; ++n) this->check(n);
}

TYPED_TEST(Line, LongerOfEachMethod) {
  for (const std::size_t n :
       {509,  521,  625,  641,  1000,  1001,         1009,  1331,  1920,      2017,
        2187, 3000, 4097, 5005, 10000, 13 * 13 * 13, 22650, 30030, 37 * 1024, 149 * 128}) {
    this->check(n);
  }
}

TYPED_TEST(Line, PowersOfTwo) {
  for (int order = 5; order <= 19; ++order) this->check(std::size_t{1} << order);
}

TYPED_TEST(Line, ScaledForms) {
  for (const std::size_t n : {1, 7, 16, 32, 60, 64, 127, 151, 167, 1024}) {
    for (const int flag : {kForwardByN, kBackwardByN, kBothByRoot}) this->check(n, flag);
  }
}

/// The largest error of roots k -> root(k) for the given k's.
template <class Root>
long double worst_error(const std::vector<int>& numerators, core_int n, Root root) {
  long double worst = 0;
  for (std::size_t i = 0; i < numerators.size(); ++i) {
    const long double angle =
        2 * std::numbers::pi_v<long double> * numerators[i] / static_cast<long double>(n);
    const complex16 w = root(i);
    worst = std::max({worst, std::abs(w.real - std::cos(angle)), std::abs(w.imag + std::sin(angle))});
  }
  return worst;
}

TEST(RootTable, ErrsInTheLastPlaceOnly) {
  // Native tables are rounded once; the others round their angles as well.
  const long double bound =
      (native_passes<double>() != nullptr ? 0.4L : 1.0L) * std::numeric_limits<double>::epsilon();
  for (const int n :
       {1, 2, 3, 4, 5, 6, 7, 8, 9, 12, 31, 64, 100, 1021, 4096, 65537, 1 << 20, (1 << 26) - 2}) {
    // In order, and all over the circle in an order of their own.
    std::vector<int> scattered;
    for (core_int k = 0, at = 0; k < std::min(n, 99991); ++k, at = (at + 25214903917) % n)
      scattered.push_back(static_cast<int>(at));
    std::vector<complex16> at_scattered(scattered.size());
    ASSERT_TRUE(fill_roots_at(at_scattered.data(), scattered.data(), std::ssize(scattered), n));
    EXPECT_LT(worst_error(scattered, n, [&](std::size_t i) { return at_scattered[i]; }), bound) << n;
    if (n > 1 << 20) continue;
    std::vector<int> in_order(static_cast<std::size_t>(n));
    std::iota(in_order.begin(), in_order.end(), 0);
    const auto roots = make_root_table(n);
    ASSERT_NE(roots, nullptr);
    EXPECT_LT(worst_error(in_order, n, [&](std::size_t i) { return roots[i]; }), bound) << n;
  }
}

}  // namespace
}  // namespace qel::test
