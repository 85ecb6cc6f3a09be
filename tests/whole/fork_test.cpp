// SPDX-License-Identifier: BSD-3-Clause
// Forks of a process that has used the library: the child has none of the parent's threads and may have got
// its locks in any state, yet must compute, and so must the parent afterwards. A child that hangs ends by
// alarm. The numbers are exact in any order of summation, so parent and child may split the work differently.
#include <gtest/gtest.h>
#include <omp.h>

#include <atomic>
#include <cstdlib>
#include <thread>
#include <vector>

#include "qel/qel.h"
#include "tests/support/in_child.h"
#include "tests/whole/strain.h"

namespace qel::test {
namespace {

constexpr int n = 200, one = 1;
constexpr unsigned kSecondsForAChild = 10 * (kSanitized ? 6 : 1);
constexpr double kZero = 0, kOne = 1;

struct matrix {
  std::vector<double> cells = std::vector<double>(size_t{n} * n);
  double& operator()(int i, int j) { return cells[static_cast<size_t>(i) + static_cast<size_t>(j) * n]; }
};

/// Factors whose product, and every step of whose elimination, is exact: halves below the unit diagonal,
/// small integers above, pivots a power of two, each the largest of its column by a factor of two.
struct exact_factors {
  matrix lower, upper;
  exact_factors() {
    for (int j = 0; j < n; ++j) {
      for (int i = 0; i < n; ++i) {
        const int digit = (7 * i + 3 * j + i * j) % 3 - 1;
        if (i > j) lower(i, j) = 0.5 * digit;
        if (i < j) upper(i, j) = digit;
      }
      lower(j, j) = 1;
      upper(j, j) = 4;
    }
  }
};

int wrong_dot() {
  constexpr int kLength = 100000;
  std::vector<double> x(kLength), y(kLength);
  double want = 0;
  for (size_t i = 0; i < x.size(); ++i) {
    x[i] = static_cast<double>(i % 11) - 5;
    y[i] = static_cast<double>(i % 7) - 2;
    want += x[i] * y[i];
  }
  const int length = kLength;
  return ddot(&length, x.data(), &one, y.data(), &one) != want;
}

int wrong_gemm(exact_factors& factors, matrix& product) {
  dgemm("N", "N", &n, &n, &n, &kOne, factors.lower.cells.data(), &n, factors.upper.cells.data(), &n, &kZero,
        product.cells.data(), &n);
  int wrong = 0;
  for (int j = 0; j < n; ++j) {
    for (int i = 0; i < n; ++i) {
      double want = 0;
      for (int k = 0; k <= std::min(i, j); ++k) want += factors.lower(i, k) * factors.upper(k, j);
      wrong += product(i, j) != want;
    }
  }
  return wrong;
}

/// Factorises the product with its rows turned by one, which pivoting must turn back.
int wrong_getrf(exact_factors& factors, matrix& product) {
  matrix a;
  for (int j = 0; j < n; ++j) {
    for (int i = 0; i < n; ++i) a(i, j) = product((i + 1) % n, j);
  }
  std::vector<int> pivots(n);
  int info = -1;
  dgetrf(&n, &n, a.cells.data(), &n, pivots.data(), &info);
  int wrong = info != 0;
  for (int j = 0; j < n; ++j) {
    for (int i = 0; i < n; ++i) wrong += a(i, j) != (i > j ? factors.lower(i, j) : factors.upper(i, j));
  }
  return wrong;
}

int wrong_results() {
  exact_factors factors;
  matrix product;
  const int wrong = wrong_dot() + wrong_gemm(factors, product) + wrong_getrf(factors, product);
  if (wrong != 0) std::printf("%d numbers are wrong\n", wrong);
  return wrong;
}

/// Forks; the child must end in time and with the right numbers.
void expect_child_computes() {
  const child_result child = in_child([] {
    alarm(kSecondsForAChild);
    const int wrong = wrong_results();
    QEL_FreeBuffers();
    return wrong == 0 && wrong_results() == 0 ? 0 : 1;
  });
  EXPECT_EQ(child.exit_status, 0) << (child.exit_status == -1 ? "it hung or died" : child.output);
}

TEST(Fork, ChildAndParentComputeAfterOpenMpRegions) {
  setenv("QEL_DYNAMIC", "FALSE", 1);  // four threads, whatever the machine has
  omp_set_num_threads(4);
  for (int turn = 0; turn < 2; ++turn) {
    std::atomic<int> wrong{0}, team{0};
#pragma omp parallel
    {
      team = omp_get_num_threads();
      wrong += wrong_results();
    }
    EXPECT_EQ(team, 4);
    EXPECT_EQ(wrong_results() + wrong, 0) << "in the parent, turn " << turn;
    expect_child_computes();
  }
  EXPECT_EQ(wrong_results(), 0) << "in the parent after the forks";
}

TEST(Fork, ChildOfAGrandchildComputes) {
  EXPECT_EQ(wrong_results(), 0);
  const child_result child = in_child([] {
    alarm(3 * kSecondsForAChild);
    expect_child_computes();
    return wrong_results() == 0 && !testing::Test::HasFailure() ? 0 : 1;
  });
  EXPECT_EQ(child.exit_status, 0) << child.output;
}

TEST(Fork, ChildComputesThoughTheParentsThreadsHoldLocks) {
  std::atomic<bool> stop{false};
  std::vector<std::thread> threads;
  for (int t = 0; t < 3; ++t) {
    threads.emplace_back([&stop] {
      constexpr int kEntries = 50;
      const std::vector<double> x(kEntries, 1), y(kEntries, 1);
      const std::vector<int> places(kEntries, 1);
      const int entries = kEntries;
      while (!stop) {
        ddoti(&entries, x.data(), places.data(), y.data());
        QEL_FreeBuffers();
      }
    });
  }
  for (unsigned turn = 0; turn < under_strain(50) && !HasFailure(); ++turn) expect_child_computes();
  stop = true;
  for (std::thread& thread : threads) thread.join();
}

}  // namespace
}  // namespace qel::test
