// SPDX-License-Identifier: BSD-3-Clause
// TrustRegionKernel: results, offsets, numerical Jacobians, texts of exceptions, user functions that fail.
#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <limits>

#include "tavik/kernel/trust_region_kernel.h"

namespace Tavik::Kernel {
namespace {

using Core::Array;

Array<double> rosenbrock(const Array<double>& x) { return {10 * (x[1] - x[0] * x[0]), 1 - x[0]}; }
Array<double> rosenbrock_slopes(const Array<double>& x) { return {-20 * x[0], -1, 10, 0}; }

const Array<double> kEps = {1e-10, 1e-10, 1e-10, 1e-10, 1e-10, 1e-10};

struct results {
  int iterations = -1, stop = -1;
  double first = -1, last = -1;
};
results solve(TrustRegionKernel& kernel, int n, int m, const Analysis::TrustRegionFunction& f,
              const Array<double>& x, int offset, const Analysis::TrustRegionFunction& jacobian,
              const Array<double>& eps = kEps) {
  results r;
  kernel.Solve(n, m, f, x, offset, jacobian, eps, 200, 50, 0, r.iterations, r.stop, r.first, r.last);
  return r;
}
results solve_bounded(TrustRegionKernel& kernel, const Analysis::TrustRegionFunction& f,
                      const Array<double>& x, const Array<double>& lower, const Array<double>& upper) {
  results r;
  kernel.SolveWithBoundaryContraints(x.Length(), 2, f, x, lower, upper, nullptr, kEps, 200, 50, 0,
                                     r.iterations, r.stop, r.first, r.last);
  return r;
}

template <class Action>
std::string text_of(const Action& action) {
  try {
    action();
  } catch (const Core::Exception& error) {
    return error.what();
  }
  return "no exception";
}

TEST(TrustRegion, SolvesWithBothKindsOfJacobian) {
  for (const bool modern : {false, true}) {
    TrustRegionKernel kernel;
    kernel.UseModernRules = modern;
    for (const bool analytic : {true, false}) {
      const Array<double> x{-1.2, 1};
      const results r = solve(kernel, 2, 2, rosenbrock, x, 0,
                              analytic ? Analysis::TrustRegionFunction(rosenbrock_slopes) : nullptr);
      EXPECT_NEAR(x[0], 1, 1e-8);
      EXPECT_NEAR(x[1], 1, 1e-8);
      EXPECT_GT(r.iterations, 0);
      EXPECT_GT(r.stop, 0);
      EXPECT_NEAR(r.first, std::sqrt(4.4 * 4.4 + 2.2 * 2.2), 1e-12);
      EXPECT_LT(r.last, 1e-8);
    }
  }
}

TEST(TrustRegion, UnknownsBeginAtTheOffset) {
  TrustRegionKernel kernel;
  const auto shifted = [](const Array<double>& x) { return rosenbrock({x[2], x[3]}); };
  for (const bool analytic : {true, false}) {
    const Array<double> x{7, 8, -1.2, 1, 9};
    const auto slopes = [](const Array<double>& all) { return rosenbrock_slopes({all[2], all[3]}); };
    solve(kernel, 2, 2, shifted, x, 2, analytic ? Analysis::TrustRegionFunction(slopes) : nullptr);
    EXPECT_NEAR(x[2], 1, 1e-8);
    EXPECT_NEAR(x[3], 1, 1e-8);
    EXPECT_TRUE(x[0] == 7 && x[1] == 8 && x[4] == 9);
  }
}

TEST(TrustRegion, Bounds) {
  TrustRegionKernel kernel;
  const Array<double> x{-1.2, 1};
  const results r = solve_bounded(kernel, rosenbrock, x, {-2, -2}, {0.5, DBL_MAX});
  EXPECT_NEAR(x[0], 0.5, 1e-3);
  EXPECT_LE(x[0], 0.5);
  EXPECT_GT(r.stop, 0);
}

TEST(TrustRegion, NumericalJacobiansCostTwoCallsPerUnknown) {
  TrustRegionKernel kernel;
  int calls = 0;
  const auto counted = [&](const Array<double>& x) {
    ++calls;
    return rosenbrock(x);
  };
  const Array<double> x{3, 2}, jacobian(4);
  kernel.ComputeJacobian(2, 2, counted, x, jacobian, 1e-6);
  EXPECT_EQ(calls, 4);
  const Array<double> want = rosenbrock_slopes(x);
  for (int k = 0; k < 4; ++k) EXPECT_NEAR(jacobian[k], want[k], 1e-8);
  kernel.ComputeJacobian(2, 2, counted, x, jacobian);
  for (int k = 0; k < 4; ++k) EXPECT_NEAR(jacobian[k], want[k], 1e-8);
  EXPECT_TRUE(x[0] == 3 && x[1] == 2);
  EXPECT_EQ(text_of([&] { kernel.ComputeJacobian(2, 2, counted, x, jacobian, 0); }), "Error in djacobi_init");
  EXPECT_THROW(kernel.ComputeJacobian(2, 2, counted, x, Array<double>(3), 1e-6), std::out_of_range);
}

TEST(TrustRegion, OneByOne) {
  TrustRegionKernel kernel;
  const Array<double> x{3};
  solve(
      kernel, 1, 1, [](const Array<double>& at) { return Array<double>{at[0] * at[0] - 2}; }, x, 0, nullptr);
  EXPECT_NEAR(x[0], std::sqrt(2), 1e-8);
}

TEST(TrustRegion, FailuresAreExceptions) {
  TrustRegionKernel kernel;
  const Array<double> x{1, 1};
  EXPECT_EQ(text_of([&] { solve(kernel, 2, 1, rosenbrock, x, 0, nullptr); }), "Error in dtrnlsp_init");
  for (int k = 0; k < 6; ++k) {
    const Array<double> eps(6);
    for (int i = 0; i < 6; ++i) eps[i] = i == k ? 0 : 1e-6;
    EXPECT_EQ(text_of([&] { solve(kernel, 2, 2, rosenbrock, x, 0, nullptr, eps); }), "Error in dtrnlsp_init");
  }
  EXPECT_THROW(solve(kernel, 2, 2, rosenbrock, x, 1, nullptr), std::out_of_range);
  EXPECT_THROW(solve(kernel, 2, 2, rosenbrock, x, 0, nullptr, {1e-6}), std::out_of_range);
  const auto nowhere = [](const Array<double>&) {
    return Array<double>{1, std::numeric_limits<double>::quiet_NaN()};
  };
  EXPECT_EQ(text_of([&] { solve(kernel, 2, 2, nowhere, x, 0, nullptr); }), "Error in dtrnlsp_solve");
  EXPECT_EQ(text_of([&] { solve_bounded(kernel, nowhere, x, {0, 0}, {2, 2}); }), "Error in dtrnlspbc_solve");
}

TEST(TrustRegion, UserFunctionsMayFail) {
  TrustRegionKernel kernel;
  int calls = 0;
  const auto failing = [&](const Array<double>& x) -> Array<double> {
    if (++calls == 5) throw std::logic_error("mine");
    return rosenbrock(x);
  };
  EXPECT_THROW(solve(kernel, 2, 2, failing, {-1.2, 1}, 0, nullptr), std::logic_error);
  EXPECT_THROW(solve(
                   kernel, 2, 2, [](const Array<double>&) { return Array<double>{1}; }, {1, 1}, 0, nullptr),
               std::out_of_range);
  // The solver's own values never reach the user's array.
  const Array<double> shared{3, 4};
  const Array<double> x{1, 1};
  solve(
      kernel, 2, 2, [&](const Array<double>&) { return shared; }, x, 0,
      [](const Array<double>&) {
        return Array<double>{1, 0, 0, 1};
      });
  EXPECT_TRUE(shared[0] == 3 && shared[1] == 4);
}

}  // namespace
}  // namespace Tavik::Kernel
