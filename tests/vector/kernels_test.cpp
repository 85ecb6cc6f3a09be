// SPDX-License-Identifier: BSD-3-Clause
// Every kernel of vector math on every processor type that this machine can run: the IEEE result of each
// element, whatever it holds, at any length and address, nothing outside the arrays.
#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstring>
#include <limits>
#include <random>
#include <vector>

#include "tests/support/guarded.h"
#include "tests/vector/runnable.h"
#include "vector/vml/state.h"
#include "vector/vml/vector_rows.h"

namespace qel {
namespace {

/// Numbers of all kinds; every fifth is special.
std::vector<double> numbers(int n, unsigned seed) {
  constexpr double kSpecial[] = {0.0,
                                 -0.0,
                                 std::numeric_limits<double>::denorm_min(),
                                 -1e-310,
                                 std::numeric_limits<double>::infinity(),
                                 std::numeric_limits<double>::quiet_NaN(),
                                 std::numeric_limits<double>::max(),
                                 std::numeric_limits<double>::min()};
  std::mt19937_64 engine(seed);
  std::vector<double> values;
  for (int i = 0; i < n; ++i) {
    const double ordinary =
        std::ldexp(static_cast<double>(engine() >> 11), static_cast<int>(engine() % 200) - 150);
    values.push_back(engine() % 5 == 0 ? kSpecial[engine() % std::size(kSpecial)] : ordinary);
  }
  return values;
}

bool same(double a, double b) {
  return std::isnan(a) ? std::isnan(b) : std::bit_cast<uint64_t>(a) == std::bit_cast<uint64_t>(b);
}

struct operation {
  const char* name;
  const type_row<vml_kernel>& row;
  double (*of)(double, double);
};
const operation kOperations[] = {
    {"div HA", kDivHa, [](double a, double b) { return a / b; }},
    {"div LA", kDivLa, [](double a, double b) { return a / b; }},
    {"div EP", kDivEp, [](double a, double b) { return a / b; }},
    {"mul", kMul, [](double a, double b) { return a * b; }},
    {"sub", kSub, [](double a, double b) { return a - b; }},
    {"div past caches", kDivStreamed, [](double a, double b) { return a / b; }},
    {"mul past caches", kMulStreamed, [](double a, double b) { return a * b; }},
    {"sub past caches", kSubStreamed, [](double a, double b) { return a - b; }},
};

TEST(VectorKernels, GiveTheIeeeResultAtEveryLengthAndAddress) {
  vml_set_mode(VML_ERRMODE_IGNORE);
  for (const operation& op : kOperations) {
    for (const int type : test::runnable_types()) {
      for (const int n : {0, 1, 2, 7, 15, 16, 17, 31, 32, 33, 48, 63, 200}) {
        const std::vector<double> x = numbers(n, 1), y = numbers(n, 2);
        for (const std::size_t shift : {0U, 8U, 3U}) {
          if (op.row.kernel[type] == nullptr || (op.row.kernel[0] == nullptr && shift % 8 != 0)) continue;
          const auto size = static_cast<std::size_t>(n);
          test::guarded<double> a(size, shift), b(size, shift), r(size, shift);
          a.assign(x);
          b.assign(y);
          op.row.kernel[type](n, a.data(), b.data(), r.data());
          std::vector<double> got(size);
          if (n > 0) std::memcpy(got.data(), r.data(), size * sizeof(double));
          for (std::size_t i = 0; i < size; ++i) {
            ASSERT_TRUE(same(got[i], op.of(x[i], y[i]))) << op.name << " type " << type << " n " << n << ": "
                                                         << x[i] << ", " << y[i] << " -> " << got[i];
          }
        }
      }
    }
  }
}

TEST(VectorKernels, WorkInPlace) {
  vml_set_mode(VML_ERRMODE_IGNORE);
  const int n = 77;
  const std::vector<double> x = numbers(n, 3), y = numbers(n, 4);
  for (const operation& op : kOperations) {
    for (const int type : test::runnable_types()) {
      if (op.row.kernel[0] == nullptr) continue;
      std::vector<double> over_a = x, over_b = y;
      op.row.kernel[type](n, over_a.data(), y.data(), over_a.data());
      op.row.kernel[type](n, x.data(), over_b.data(), over_b.data());
      for (std::size_t i = 0; i < n; ++i) {
        ASSERT_TRUE(same(over_a[i], op.of(x[i], y[i])) && same(over_b[i], op.of(x[i], y[i])))
            << op.name << type;
      }
    }
  }
}

TEST(VectorKernels, ClampIntoTheClosedInterval) {
  const std::vector<double> x = numbers(100, 5);
  for (const int type : test::runnable_types()) {
    for (const int n : {1, 15, 16, 17, 100}) {
      test::guarded<double> r(static_cast<std::size_t>(n));
      r.assign(x);
      kClamp.kernel[type](n, r.data(), 0.25, 1e10);
      for (int i = 0; i < n; ++i) {
        const double v = x[static_cast<std::size_t>(i)];
        const double want = std::isnan(v) ? v : std::min(1e10, std::max(0.25, v));
        ASSERT_TRUE(same(r.data()[i], want)) << type << ' ' << v;
      }
    }
  }
}

}  // namespace
}  // namespace qel
