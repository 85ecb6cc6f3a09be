// SPDX-License-Identifier: BSD-3-Clause
// The sequence of requests, the stop codes, arguments and memory of the solver without bounds.
#include <gtest/gtest.h>

#include <atomic>
#include <cmath>
#include <cstdlib>
#include <functional>
#include <limits>

#include "nls/trust_region.h"
#include "service/serv.h"
#include "tests/nls/driver.h"

namespace qel::test {
namespace {

std::atomic<int> held;
void* counting_malloc(std::size_t size) {
  ++held;
  return std::malloc(size);
}
void counting_free(void* pointer) {
  held -= pointer != nullptr;
  std::free(pointer);
}

class NlsProtocol : public testing::TestWithParam<int> {
 protected:
  static void SetUpTestSuite() {
    setenv("QEL_DISABLE_FAST_MM", "1", 1);
    serv_platform_malloc = counting_malloc;
    serv_platform_free = counting_free;
    serv_set_dynamic(0);
  }
  void SetUp() override {
    held = 0;
    serv_set_num_threads(GetParam());
  }
  void TearDown() override { EXPECT_EQ(held, 0); }
};
INSTANTIATE_TEST_SUITE_P(Threads, NlsProtocol, testing::Values(1, 3));

/// A run that is driven request by request.
class driven {
 public:
  std::vector<double> x, f, jacobian;
  int request = 0, iter = 0, st_cr = 0;
  double r1 = 0, r2 = 0;

  explicit driven(std::vector<double> start, int m, std::vector<double> eps = {1e-9, 1e-9, 1e-9, 1e-9, 1, 1},
                  int iter1 = 50, double rs = 0)
      : x(std::move(start)),
        f(static_cast<std::size_t>(m)),
        jacobian(f.size() * x.size()),
        eps_(std::move(eps)) {
    const int n = static_cast<int>(x.size()), iter2 = 20;
    EXPECT_EQ(dtrnlsp_init(&run_, &n, &m, x.data(), eps_.data(), &iter1, &iter2, &rs), QEL_NLS_SUCCESS);
  }
  ~driven() { EXPECT_EQ(dtrnlsp_delete(&run_), QEL_NLS_SUCCESS); }
  int solve() {
    const int status = dtrnlsp_solve(&run_, f.data(), jacobian.data(), &request);
    dtrnlsp_get(&run_, &iter, &st_cr, &r1, &r2);
    return status;
  }
  /// Answers requests until one is not 0, 1 or 2; returns their order.
  std::string to_end(const std::function<void(driven&)>& residual,
                     const std::function<void(driven&)>& slopes) {
    std::string order;
    while (solve() == QEL_NLS_SUCCESS && st_cr == 0 && order.size() < 1000) {
      order += static_cast<char>('0' + request);
      if (request == 1) residual(*this);
      if (request == 2) slopes(*this);
    }
    return order;
  }
  void** handle() { return &run_; }

 private:
  std::vector<double> eps_;
  void* run_ = nullptr;
};

void line_residual(driven& d) { d.f[0] = 2 * (d.x[0] - 5); }
void line_slope(driven& d) { d.jacobian[0] = 2; }

TEST_P(NlsProtocol, LinearProblem) {
  driven d({1.0}, 1);
  // F, J, F at the trial point, judged; then F is zero.
  EXPECT_EQ(d.to_end(line_residual, line_slope), "1210");
  EXPECT_EQ(d.request, -3);
  EXPECT_EQ(d.st_cr, 3);
  EXPECT_EQ(d.iter, 1);
  EXPECT_EQ(d.r1, 8);
  EXPECT_EQ(d.r2, 0);
  EXPECT_EQ(d.x[0], 5);
  EXPECT_STREQ(qel_nls_reason(&d.st_cr), "the residual is at or below its limit");
  // After the end nothing changes.
  d.x[0] = 77;
  EXPECT_EQ(d.solve(), QEL_NLS_SUCCESS);
  EXPECT_EQ(d.request, -3);
  EXPECT_EQ(d.x[0], 77);
}

TEST_P(NlsProtocol, StartsAtASolution) {
  driven d({5.0}, 1);
  EXPECT_EQ(d.to_end(line_residual, line_slope), "1");
  EXPECT_EQ(d.request, -3);
  EXPECT_EQ(d.iter, 0);
}

TEST_P(NlsProtocol, OneIteration) {
  driven d({1.0, 1.0}, 2, {1e-9, 1e-9, 1e-9, 1e-9, 1, 1}, 1);
  const nls_problem& rosenbrock = classic_problems()[0];
  d.to_end([&](driven& r) { evaluate(rosenbrock, r.x.data(), r.f.data(), nullptr); },
           [&](driven& r) { evaluate(rosenbrock, r.x.data(), r.f.data(), r.jacobian.data()); });
  // (1, 1) is its solution; from elsewhere one step is taken.
  EXPECT_EQ(d.st_cr, 3);
  driven e({-1.2, 1.0}, 2, {1e-9, 1e-9, 1e-9, 1e-9, 1, 1}, 1);
  e.to_end([&](driven& r) { evaluate(rosenbrock, r.x.data(), r.f.data(), nullptr); },
           [&](driven& r) { evaluate(rosenbrock, r.x.data(), r.f.data(), r.jacobian.data()); });
  EXPECT_EQ(e.st_cr, 1);
  EXPECT_EQ(e.request, -1);
  EXPECT_EQ(e.iter, 1);
  EXPECT_LT(e.r2, e.r1);
}

TEST_P(NlsProtocol, RejectedStepsAskForFOnlyAndRestoreX) {
  driven d({0.1}, 1);
  int calls = 0;
  std::vector<double> seen;
  // The slope promises much, F is worse at every trial point until the radius is too small.
  const std::string order = d.to_end(
      [&](driven& r) {
        seen.push_back(r.x[0]);
        r.f[0] = calls++ == 0 ? 1.0 : 2.0;
      },
      line_slope);
  EXPECT_EQ(order.substr(0, 8), "12101010");
  EXPECT_EQ(order.find('2', 2), std::string::npos) << order;
  EXPECT_EQ(d.st_cr, 2);
  EXPECT_EQ(d.iter, 0);
  EXPECT_EQ(d.x[0], 0.1) << "not the same bits";
  EXPECT_EQ(d.f[0], 1.0) << "fvec holds the residual of x";
  for (std::size_t k = 2; k < seen.size(); ++k)
    EXPECT_LT(std::fabs(seen[k] - 0.1), std::fabs(seen[k - 1] - 0.1)) << "the radius shrinks";
}

TEST_P(NlsProtocol, ZeroJacobian) {
  driven d({1.0}, 2);
  d.to_end([](driven& r) { r.f = {3, 4}; }, [](driven& r) { r.jacobian = {0, 0}; });
  EXPECT_EQ(d.st_cr, 4);
  EXPECT_EQ(d.request, -4);
  EXPECT_EQ(d.r1, 5);
  EXPECT_EQ(d.r2, 5);
}

TEST_P(NlsProtocol, SmallStepAndNoProgress) {
  driven step({1.0}, 1, {1e-9, 1e-9, 1e-9, 100, 1, 1});
  step.to_end(line_residual, line_slope);
  EXPECT_EQ(step.st_cr, 5);
  // J s at right angles to F: the model promises nothing.
  driven model({1.0}, 2, {1e-9, 1e-9, 1e-6, 1e-30, 1e300, 1});
  model.to_end([](driven& r) { r.f = {1, 1e-9}; }, [](driven& r) { r.jacobian = {0, 1}; });
  EXPECT_EQ(model.st_cr, 6);
  EXPECT_EQ(model.request, -6);
}

TEST_P(NlsProtocol, StoppedByTheCaller) {
  for (const int code : {-1, -2}) {
    driven d({1.0}, 1);
    EXPECT_EQ(d.solve(), QEL_NLS_SUCCESS);
    d.request = code;
    EXPECT_EQ(d.solve(), QEL_NLS_SUCCESS);
    EXPECT_EQ(d.st_cr, code);
    EXPECT_EQ(d.request, 0);
  }
}

TEST_P(NlsProtocol, WhatIsNotFiniteEndsTheRun) {
  const double nan = std::nan(""), infinity = HUGE_VAL;
  for (const double bad : {nan, infinity, -infinity, 1e200}) {
    driven slopes({1.0, 1.0}, 2);
    slopes.to_end([](driven& r) { r.f = {1, 2}; }, [&](driven& r) { r.jacobian = {1, bad, 0, 1}; });
    EXPECT_EQ(slopes.st_cr, -4) << bad;
    EXPECT_EQ(slopes.request, 2) << "left as it was";
    EXPECT_EQ(slopes.iter, 0);
    EXPECT_EQ(slopes.solve(), QEL_NLS_INVALID_OPTION);
    if (bad == 1e200) continue;
    driven start({1.0, 1.0}, 2);
    start.to_end([&](driven& r) { r.f = {1, bad}; }, [](driven& r) { r.jacobian = {1, 0, 0, 1}; });
    EXPECT_EQ(start.st_cr, -4) << bad;
    // At trial points it is a step to be rejected.
    driven later({1.0}, 1);
    int calls = 0;
    later.to_end([&](driven& r) { r.f[0] = calls++ == 0 ? 1.0 : bad; }, line_slope);
    EXPECT_EQ(later.st_cr, 2) << bad;
    EXPECT_EQ(later.x[0], 1.0);
  }
}

TEST_P(NlsProtocol, DependentColumns) {
  // H is singular: the shift finds a step all the same.
  driven d({1.0, 2.0, 0.0}, 3);
  d.to_end(
      [](driven& r) {
        const double sum = r.x[0] + r.x[1];
        r.f = {sum - 1, 2 * sum - 2, 0};
      },
      [](driven& r) { r.jacobian = {1, 2, 0, 1, 2, 0, 0, 0, 0}; });
  EXPECT_GT(d.st_cr, 0) << d.r2;
  EXPECT_NEAR(d.x[0] + d.x[1], 1, 1e-4);
}

TEST_P(NlsProtocol, ManyResiduals) {
  // Enough for threads to share the columns out.
  const int m = 3000, n = 12;
  driven d(std::vector<double>(n, 1.0), m);
  d.to_end(
      [&](driven& r) {
        for (int i = 0; i < m; ++i) {
          const auto j = static_cast<std::size_t>(i % n);
          r.f[static_cast<std::size_t>(i)] = (1 + i % 7) * (r.x[j] - static_cast<double>(j));
        }
      },
      [&](driven& r) {
        std::fill(r.jacobian.begin(), r.jacobian.end(), 0);
        for (int i = 0; i < m; ++i) r.jacobian[static_cast<std::size_t>(i % n * m + i)] = 1 + i % 7;
      });
  EXPECT_GT(d.st_cr, 0);
  for (int j = 0; j < n; ++j) EXPECT_NEAR(d.x[static_cast<std::size_t>(j)], j, 1e-6);
}

TEST_P(NlsProtocol, Arguments) {
  const std::vector<double> good(6, 1e-6);
  const struct {
    int n, m, iter1, iter2;
    double rs;
    int status;
  } rows[] = {{1, 1, 1, 1, 0, 1501},  {0, 1, 1, 1, 0, 1502},   {-1, 1, 1, 1, 0, 1502},
              {2, 1, 1, 1, 0, 1502},  {1, 0, 1, 1, 0, 1502},   {1, 1, 0, 1, 0, 1502},
              {1, 1, 1, 0, 0, 1502},  {1, 1, 1, 1, 100, 1501}, {1, 1, 1, 1, 101, 1502},
              {1, 1, 1, 1, -1, 1502}, {3, 5, 9, 9, 50, 1501},  {1, 1, 1, 1, std::nan(""), 1502}};
  std::vector<double> x(3, 1), lower(3, 0), upper(3, 2);
  for (const auto& row : rows) {
    void* run = nullptr;
    EXPECT_EQ(dtrnlsp_init(&run, &row.n, &row.m, x.data(), good.data(), &row.iter1, &row.iter2, &row.rs),
              row.status);
    EXPECT_EQ(run != nullptr, row.status == 1501);
    dtrnlsp_delete(&run);
    EXPECT_EQ(run, nullptr);
    EXPECT_EQ(dtrnlspbc_init(&run, &row.n, &row.m, x.data(), lower.data(), upper.data(), good.data(),
                             &row.iter1, &row.iter2, &row.rs),
              row.status);
    dtrnlspbc_delete(&run);
  }
  for (int k = 0; k < 6; ++k) {
    for (const double value : {0.0, -1.0, std::nan("")}) {
      auto eps = good;
      eps[static_cast<std::size_t>(k)] = value;
      void* run = nullptr;
      const int one = 1;
      const double rs = 0;
      EXPECT_EQ(dtrnlsp_init(&run, &one, &one, x.data(), eps.data(), &one, &one, &rs), QEL_NLS_INVALID_OPTION)
          << k;
    }
  }
}

TEST_P(NlsProtocol, OptionsAndNullHandles) {
  driven d({1.0}, 1);
  for (const auto& [option, value, status] :
       {std::tuple{0, 1, 1501}, {3, 0, 1501}, {4, 1, 1502}, {-1, 1, 1502}, {1, 2, 1502}})
    EXPECT_EQ(qel_dtrnlsp_option(d.handle(), &option, &value), status);
  void* none = nullptr;
  int request = 0, k;
  double r;
  EXPECT_EQ(dtrnlsp_solve(&none, &r, &r, &request), QEL_NLS_INVALID_OPTION);
  EXPECT_EQ(dtrnlspbc_get(&none, &k, &k, &r, &r), QEL_NLS_INVALID_OPTION);
  EXPECT_EQ(qel_dtrnlsp_evaluations(&none, &k, &k), QEL_NLS_INVALID_OPTION);
  EXPECT_EQ(qel_dtrnlsp_option(&none, &k, &k), QEL_NLS_INVALID_OPTION);
  EXPECT_EQ(dtrnlsp_delete(&none), QEL_NLS_SUCCESS);
}

TEST(NlsThreads, ColumnNorms) {
  // m, n, threads allowed, threads taken
  const int rows[][4] = {
      {19999, 1, 4, 1}, {20000, 1, 4, 4}, {200, 100, 2, 2}, {199, 100, 2, 1}, {20000, 9, 1, 1}};
  for (const auto& row : rows)
    EXPECT_EQ(nls::threads_for_norms(row[0], row[1], row[2]), row[3]) << row[0] << ' ' << row[1];
}

}  // namespace
}  // namespace qel::test
