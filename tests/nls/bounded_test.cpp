// SPDX-License-Identifier: BSD-3-Clause
// The solver with bounds: where optima may lie, starts on and outside of bounds, bounds of one side; F is
// never asked for outside the box.
#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "tests/nls/driver.h"

namespace qel::test {
namespace {

constexpr double kNone = DBL_MAX;

/// Stretched squares around a point: the bounded optimum is the projection of the point.
nls_problem squares_around(std::vector<double> point) {
  nls_problem p;
  p.name = "squares";
  p.start = std::vector<double>(point.size(), 0);
  p.residuals = static_cast<int>(point.size());
  p.evaluate = [point](const duals& x, duals& f) {
    for (std::size_t i = 0; i < x.size(); ++i) f[i] = static_cast<double>(i + 1) * (x[i] - point[i]);
  };
  return p;
}

struct box_case {
  const char* what;
  std::vector<double> point, start, lower, upper, want;
};
const box_case kCases[] = {
    {"inside", {0.3, -0.2}, {0, 0}, {-1, -1}, {1, 1}, {0.3, -0.2}},
    {"on a face", {2, 0.5}, {0, 0}, {-1, -1}, {1, 1}, {1, 0.5}},
    {"in a corner", {2, -3}, {0, 0}, {-1, -1}, {1, 1}, {1, -1}},
    {"starts on a bound, optimum inside", {0.3, -0.2}, {1, -1}, {-1, -1}, {1, 1}, {0.3, -0.2}},
    {"starts on the right bound", {2, 0}, {1, 0.5}, {-1, -1}, {1, 1}, {1, 0}},
    {"starts outside", {0.3, -0.2}, {5, -7}, {-1, -1}, {1, 1}, {0.3, -0.2}},
    {"fixed variable", {0.3, 4}, {0, 0.7}, {-1, 0.7}, {1, 0.7}, {0.3, 0.7}},
    {"only lower bounds", {-3, 4}, {1, 1}, {0, 0}, {kNone, kNone}, {0, 4}},
    {"only upper bounds", {3, -4}, {-1, -1}, {-kNone, -kNone}, {0, 0}, {0, -4}},
    {"mixed", {3, -4}, {-1, 1}, {-kNone, 0}, {kNone, kNone}, {3, 0}},
    {"no bounds", {3, -4}, {1, 1}, {-kNone, -kNone}, {kNone, kNone}, {3, -4}},
    {"negative bounds", {-9, -0.5}, {-2, -2}, {-3, -3}, {-1, -1}, {-3, -1}},
};

TEST(NlsBounded, FindsTheOptimumOfTheBox) {
  for (const box_case& c : kCases) {
    for (const bool modern : {false, true}) {
      nls_settings settings;
      settings.lower = c.lower;
      settings.upper = c.upper;
      settings.modern = modern;
      const nls_outcome out = minimise(squares_around(c.point), c.start, settings);
      EXPECT_FALSE(out.left_box) << c.what;
      EXPECT_GT(out.stop, 0) << c.what;
      for (std::size_t i = 0; i < c.want.size(); ++i)
        EXPECT_NEAR(out.x[i], c.want[i], 2e-3) << c.what << ", modern " << modern << ", stop " << out.stop;
    }
  }
}

TEST(NlsBounded, ClassicProblemsInWideBoxes) {
  for (const nls_problem& problem : classic_problems()) {
    if (problem.unknowns() > 4) continue;
    for (const bool modern : {false, true}) {
      nls_settings settings;
      settings.modern = modern;
      for (const double value : problem.start) {
        settings.lower.push_back(value - 10 * (1 + std::fabs(value)));
        settings.upper.push_back(value + 10 * (1 + std::fabs(value)));
      }
      const nls_outcome out = minimise(problem, problem.start, settings);
      EXPECT_FALSE(out.left_box) << problem.name;
      EXPECT_LE(out.r2, out.r1) << problem.name;
      EXPECT_NE(out.stop, -4) << problem.name;
    }
  }
}

TEST(NlsBounded, RandomBoxes) {
  std::mt19937 random(9);
  std::uniform_real_distribution<double> uniform(-2, 2);
  for (int round = 0; round < 300; ++round) {
    const std::size_t n = 1 + random() % 4;
    box_case c{"random", {}, {}, {}, {}, {}};
    for (std::size_t i = 0; i < n; ++i) {
      const double a = uniform(random), b = uniform(random);
      c.point.push_back(2 * uniform(random));
      c.start.push_back(2 * uniform(random));
      c.lower.push_back(random() % 4 == 0 ? -kNone : std::min(a, b));
      c.upper.push_back(random() % 4 == 0 ? kNone : std::max(a, b));
    }
    nls_settings settings;
    settings.lower = c.lower;
    settings.upper = c.upper;
    settings.modern = round % 2 == 1;
    const nls_outcome out = minimise(squares_around(c.point), c.start, settings);
    ASSERT_FALSE(out.left_box) << round;
    ASSERT_LE(out.r2, out.r1 * (1 + 1e-12)) << round;
    ASSERT_TRUE(std::isfinite(out.r2)) << round;
  }
}

TEST(NlsBounded, AFailedStepShowsOnlyInItsCode) {
  nls_problem broken = squares_around({1});
  broken.evaluate = [](const duals&, duals& f) { f[0] = dual(1, std::nan("")); };
  nls_settings settings;
  settings.lower = {-1};
  settings.upper = {2};
  const nls_outcome out = minimise(broken, {0.5}, settings);
  EXPECT_EQ(out.stop, -4);
  EXPECT_EQ(out.status, QEL_NLS_SUCCESS);
  EXPECT_EQ(minimise(broken, {0.5}).status, QEL_NLS_INVALID_OPTION);
}

}  // namespace
}  // namespace qel::test
