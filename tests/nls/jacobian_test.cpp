// SPDX-License-Identifier: BSD-3-Clause
// Central differences by requests and by calls: points, divisors, restored x, threads, memory.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <mutex>
#include <vector>

#include "qel/nls.h"
#include "service/serv.h"

namespace qel::test {
namespace {

bool refuses = false;
void* refusing_malloc(std::size_t size) { return refuses ? nullptr : std::malloc(size); }

class NlsJacobian : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    setenv("QEL_DISABLE_FAST_MM", "1", 1);
    serv_platform_malloc = refusing_malloc;
    serv_set_dynamic(0);
  }
  void TearDown() override {
    refuses = false;
    serv_set_num_threads(1);
  }
};

/// f_i = sum over j of (i + 1) x_j^2 + i x_0.
void quadratic(int* m, int* n, double* x, double* f) {
  for (int i = 0; i < *m; ++i) {
    f[i] = i * x[0];
    for (int j = 0; j < *n; ++j) f[i] += (i + 1) * x[j] * x[j];
  }
}

const std::vector<double> kPoints = {0, 1e-6, -1e-6, 2e-6, -2, 1e-300, 12345.678, -1e8};

TEST_F(NlsJacobian, PointsOfEachColumn) {
  const double eps = 1e-6;
  const struct {
    double x, forward, backward, divisor;
  } rows[] = {{0, 1e-6, -1e-6, 2e-6},
              {1e-6, 2e-6, 0, 2e-6},
              {-2, -2 * (1 + 1e-6), -2 * (1 - 1e-6), 2e-6 * -2},
              {3, 3 * (1 + 1e-6), 3 * (1 - 1e-6), 2e-6 * 3}};
  for (const auto& row : rows) {
    double x = row.x, slope = 0, f1 = 5, f2 = 2;
    const int one = 1;
    int request = 0;
    void* run = nullptr;
    ASSERT_EQ(djacobi_init(&run, &one, &one, &x, &slope, &eps), QEL_NLS_SUCCESS);
    EXPECT_EQ(djacobi_solve(&run, &f1, &f2, &request), QEL_NLS_SUCCESS);
    EXPECT_EQ(request, 1);
    EXPECT_EQ(x, row.forward);
    djacobi_solve(&run, &f1, &f2, &request);
    EXPECT_EQ(request, 2);
    EXPECT_EQ(x, row.backward);
    djacobi_solve(&run, &f1, &f2, &request);
    EXPECT_EQ(request, 0);
    EXPECT_EQ(x, row.x);
    EXPECT_EQ(slope, 3 * (1 / row.divisor));
    // Done is done.
    djacobi_solve(&run, &f1, &f2, &request);
    EXPECT_EQ(request, 0);
    EXPECT_EQ(x, row.x);
    djacobi_delete(&run);
    EXPECT_EQ(run, nullptr);
  }
}

TEST_F(NlsJacobian, BothFormsAgreeOnAnyNumberOfThreads) {
  const int n = static_cast<int>(kPoints.size()), m = 5;
  const double eps = 1e-5;
  std::vector<double> x = kPoints, by_requests(static_cast<std::size_t>(n * m)), f1(m), f2(m);
  void* run = nullptr;
  ASSERT_EQ(djacobi_init(&run, &n, &m, x.data(), by_requests.data(), &eps), QEL_NLS_SUCCESS);
  int request = 0, rows = m, columns = n;
  do {
    djacobi_solve(&run, f1.data(), f2.data(), &request);
    if (request == 1) quadratic(&rows, &columns, x.data(), f1.data());
    if (request == 2) quadratic(&rows, &columns, x.data(), f2.data());
  } while (request != 0);
  djacobi_delete(&run);
  EXPECT_EQ(x, kPoints);
  for (int j = 0; j < n; ++j) {
    const double at = kPoints[static_cast<std::size_t>(j)];
    for (int i = 0; i < m; ++i) {
      const double want = 2 * (i + 1) * at + (j == 0 ? i : 0);
      // F is dominated by its greatest terms: rounding of 1e16 over the step.
      const double step = std::max(eps, eps * std::fabs(at));
      EXPECT_NEAR(by_requests[static_cast<std::size_t>(j * m + i)], want,
                  1e-16 * 2e17 / step + 1e-9 * std::fabs(want));
    }
  }
  for (const int threads : {1, 2, 3, 8}) {
    serv_set_num_threads(threads);
    std::vector<double> by_calls(by_requests.size(), 99);
    EXPECT_EQ(djacobi(quadratic, &n, &m, by_calls.data(), x.data(), &eps), QEL_NLS_SUCCESS);
    EXPECT_EQ(by_calls, by_requests) << threads;
    EXPECT_EQ(x, kPoints);
    for (const int limit : {1, 2, 100}) {
      std::fill(by_calls.begin(), by_calls.end(), 99);
      EXPECT_EQ(qel_djacobi(quadratic, &n, &m, by_calls.data(), x.data(), &eps, &limit), QEL_NLS_SUCCESS);
      EXPECT_EQ(by_calls, by_requests);
    }
  }
}

TEST_F(NlsJacobian, Arguments) {
  double x = 1, slope;
  const int one = 1, zero = 0;
  const double eps = 1e-6, none = 0;
  void* run = nullptr;
  EXPECT_EQ(djacobi_init(&run, &zero, &one, &x, &slope, &eps), QEL_NLS_INVALID_OPTION);
  EXPECT_EQ(djacobi_init(&run, &one, &zero, &x, &slope, &eps), QEL_NLS_INVALID_OPTION);
  EXPECT_EQ(djacobi_init(&run, &one, &one, &x, &slope, &none), QEL_NLS_INVALID_OPTION);
  EXPECT_EQ(djacobi(quadratic, &zero, &one, &slope, &x, &eps), QEL_NLS_INVALID_OPTION);
  EXPECT_EQ(djacobi(quadratic, &one, &one, &slope, &x, &none), QEL_NLS_INVALID_OPTION);
  EXPECT_EQ(qel_djacobi(quadratic, &one, &one, &slope, &x, &eps, &zero), QEL_NLS_INVALID_OPTION);
  int request = 0;
  EXPECT_EQ(djacobi_solve(&run, &slope, &slope, &request), QEL_NLS_INVALID_OPTION);
}

// Kept: only one thread tells that memory is out.
TEST_F(NlsJacobian, NoMemory) {
  double x = 1, slope = 99;
  const int one = 1;
  const double eps = 1e-6;
  void* run = nullptr;
  refuses = true;
  EXPECT_EQ(djacobi_init(&run, &one, &one, &x, &slope, &eps), QEL_NLS_OUT_OF_MEMORY);
  serv_set_num_threads(1);
  EXPECT_EQ(djacobi(quadratic, &one, &one, &slope, &x, &eps), QEL_NLS_OUT_OF_MEMORY);
  serv_set_num_threads(2);
  EXPECT_EQ(djacobi(quadratic, &one, &one, &slope, &x, &eps), QEL_NLS_SUCCESS);
  EXPECT_EQ(slope, 99);
  EXPECT_EQ(qel_djacobi(quadratic, &one, &one, &slope, &x, &eps, &one), QEL_NLS_OUT_OF_MEMORY);
}

}  // namespace
}  // namespace qel::test
