// SPDX-License-Identifier: BSD-3-Clause
// LU and Cholesky factors of all four types on every path: residuals, pivots, first singular index, NaN.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>
#include <vector>

#include "lapack/factor/getrf.h"
#include "lapack/factor/potrf.h"
#include "lapack/lapack.h"
#include "tests/lapack/matrices.h"

namespace qel::lapack {
namespace {

/// Largest column sum of |difference| over that of |a|, in units of n eps; of a large matrix over some
/// columns.
template <class T, class Product>
double residual(const matrix<T>& a, core_int inner, const Product& product, bool lower_only = false) {
  double difference = 0, norm = 0;
  std::vector<wide> column(static_cast<size_t>(a.m));
  const core_int step = a.n < 100 ? 1 : 7;
  for (core_int j = (a.n - 1) % step; j < a.n; j += step) {
    std::fill(column.begin(), column.end(), wide{});
    product(j, column);
    double sum = 0, size = 0;
    for (core_int i = lower_only ? j : 0; i < a.m; ++i) {
      const wide expected = i == j && lower_only ? widened(a(i, j)).real() : widened(a(i, j));
      sum += std::abs(column[static_cast<size_t>(i)] - expected);
      size += std::abs(expected);
    }
    difference = std::max(difference, sum);
    norm = std::max(norm, size);
  }
  return difference / (norm * static_cast<double>(inner) * std::numeric_limits<real_of<T>>::epsilon());
}
template <class T>
double lu_residual(matrix<T> a, const matrix<T>& factors, const std::vector<core_int>& pivots) {
  const core_int order = std::min(a.m, a.n);
  for (core_int i = 0; i < order; ++i) {
    const core_int other = pivots[static_cast<size_t>(i)] - 1;
    for (core_int j = 0; j < a.n; ++j) std::swap(a(i, j), a(other, j));
  }
  return residual(a, std::max(a.m, a.n), [&](core_int j, std::vector<wide>& column) {
    for (core_int k = 0; k <= std::min(j, order - 1); ++k) {
      const wide u = widened(factors(k, j));
      column[static_cast<size_t>(k)] += u;
      for (core_int i = k + 1; i < a.m; ++i) column[static_cast<size_t>(i)] += widened(factors(i, k)) * u;
    }
  });
}
template <class T>
double cholesky_residual(const matrix<T>& a, const matrix<T>& factors, bool upper) {
  const auto factor = [&](core_int i, core_int k) {
    return upper ? std::conj(widened(factors(k, i))) : widened(factors(i, k));
  };
  return residual(
      a, a.n,
      [&](core_int j, std::vector<wide>& column) {
        for (core_int k = 0; k <= j; ++k) {
          const wide right = std::conj(factor(j, k));
          for (core_int i = j; i < a.m; ++i) column[static_cast<size_t>(i)] += factor(i, k) * right;
        }
      },
      true);
}

constexpr double kMostResidual = 10;

lu_plan tasks_of(int threads, core_int block, core_int group, core_int lookahead) {
  return {lu_path::tasks, threads, block, group, lookahead, ""};
}

template <class T>
class factors : public testing::Test {};
TYPED_TEST_SUITE(factors, element_types);

TYPED_TEST(factors, lu_of_every_shape_and_path) {
  using T = TypeParam;
  std::mt19937 generator(3);
  const core_int shapes[][2] = {{1, 1},    {1, 9},     {9, 1},    {2, 2},   {7, 8},   {8, 7},
                                {5, 8},    {8, 8},     {8, 5},    {6, 20},  {9, 9},   {16, 17},
                                {17, 16},  {33, 20},   {20, 33},  {64, 64}, {65, 65}, {100, 31},
                                {31, 100}, {129, 128}, {80, 140}, {140, 80}};
  for (const auto& [m, n] : shapes) {
    for (int threads : {1, 3, 8}) {
      const core_int block = 2 + static_cast<core_int>(generator() % 20);
      if (threads > 1 && block >= std::min(m, n)) continue;
      const auto group = static_cast<core_int>(generator() % 4 + 1),
                 lookahead = static_cast<core_int>(generator() % 6);
      SCOPED_TRACE(testing::Message() << m << " x " << n << " threads " << threads << " block " << block
                                      << " group " << group << " lookahead " << lookahead);
      const matrix<T> a = random_matrix<T>(m, n, 5);
      matrix<T> f = a;
      std::vector<core_int> pivots(static_cast<size_t>(std::min(m, n)), -1);
      const lu_plan plan = threads == 1 ? lu_plan{lu_path::recursive, 1, 0, 0, 0, ""}
                                        : tasks_of(threads, block, group, lookahead);
      EXPECT_EQ(factor_lu_as_planned(plan, m, n, f.data(), f.lda, pivots.data()), 0);
      for (core_int i = 0; i < std::min(m, n); ++i) {
        ASSERT_GT(pivots[static_cast<size_t>(i)], i);
        ASSERT_LE(pivots[static_cast<size_t>(i)], m);
      }
      EXPECT_LT(lu_residual(a, f, pivots), kMostResidual);
      for (core_int j = 0; j < n; ++j) {
        for (core_int i = m; i < f.lda; ++i) ASSERT_TRUE(f(i, j) == a(i, j)) << "outside the matrix";
      }
    }
  }
}

TYPED_TEST(factors, lu_by_tasks_under_strain) {
  using T = TypeParam;
  std::mt19937 generator(17);
  for (int threads = 2; threads <= 24; threads += 2) {
    const auto m = static_cast<core_int>(40 + generator() % 120),
               n = static_cast<core_int>(40 + generator() % 120);
    const auto block = static_cast<core_int>(2 + generator() % 16);
    const lu_plan plan = tasks_of(threads, block, static_cast<core_int>(1 + generator() % 4),
                                  generator() % 3 == 0 ? 1000000 : static_cast<core_int>(generator() % 5));
    SCOPED_TRACE(testing::Message() << m << " x " << n << " threads " << threads << " block " << block);
    const matrix<T> a = random_matrix<T>(m, n, static_cast<unsigned>(threads));
    matrix<T> f = a;
    std::vector<core_int> pivots(static_cast<size_t>(std::min(m, n)));
    EXPECT_EQ(factor_lu_as_planned(plan, m, n, f.data(), f.lda, pivots.data()), 0);
    EXPECT_LT(lu_residual(a, f, pivots), kMostResidual);
  }
}

TYPED_TEST(factors, tasks_round_alike_in_every_order) {
  using T = TypeParam;
  const core_int n = 150;
  const matrix<T> a = random_matrix<T>(n, n, 5), p = positive_matrix<T>(n, 5);
  std::vector<core_int> first_pivots(static_cast<size_t>(n)), pivots = first_pivots;
  matrix<T> first_lu = a, first_cholesky = p;
  factor_lu_as_planned(tasks_of(2, 12, 1, 0), n, n, first_lu.data(), first_lu.lda, first_pivots.data());
  const auto tiles = [](int threads, core_int grain) {
    return cholesky_plan{cholesky_path::tasks, threads, 12, grain, ""};
  };
  factor_cholesky_as_planned(tiles(2, 1), false, n, first_cholesky.data(), first_cholesky.lda);
  const auto same = [](const matrix<T>& x, const matrix<T>& y) {
    return std::equal(x.cells.begin(), x.cells.end(), y.cells.begin(), [](T u, T v) { return u == v; });
  };
  for (const int threads : {3, 8}) {
    matrix<T> f = a;
    factor_lu_as_planned(tasks_of(threads, 12, threads / 2, threads), n, n, f.data(), f.lda, pivots.data());
    EXPECT_TRUE(pivots == first_pivots && same(f, first_lu)) << threads;
    f = p;
    factor_cholesky_as_planned(tiles(threads, threads), false, n, f.data(), f.lda);
    EXPECT_TRUE(same(f, first_cholesky)) << threads;
  }
}

// The first zero pivot, wherever it lies: columns of zeros make it exact.
TYPED_TEST(factors, lu_of_a_singular_matrix_names_the_first_zero_pivot) {
  using T = TypeParam;
  const core_int n = 110;
  for (const core_int zero : {1, 2, 8, 9, 16, 17, 70, 107, 109, 110}) {
    for (const int threads : {1, 2, 8}) {
      SCOPED_TRACE(testing::Message() << "column " << zero << " threads " << threads);
      matrix<T> a = random_matrix<T>(n, n, 9);
      for (core_int i = 0; i < n; ++i) a(i, zero - 1) = a(i, n - 1) = T{};
      matrix<T> f = a;
      std::vector<core_int> pivots(static_cast<size_t>(n));
      const lu_plan plan =
          threads == 1 ? lu_plan{lu_path::recursive, 1, 0, 0, 0, ""} : tasks_of(threads, 16, 2, 2);
      EXPECT_EQ(factor_lu_as_planned(plan, n, n, f.data(), f.lda, pivots.data()), zero);
      EXPECT_LT(lu_residual(a, f, pivots), kMostResidual);
    }
  }
}

// Of equal candidates the one that stands first after the exchanges so far, also where rows are not moved
// until the end.
TYPED_TEST(factors, lu_takes_the_first_of_equal_pivots) {
  using T = TypeParam;
  std::mt19937 generator(5);
  const auto sign = [&] { return static_cast<real_of<T>>(static_cast<int>(generator() % 3) - 1); };
  for (const core_int m : {5, 8, 11, 16, 19}) {
    for (const core_int n : {5, 6, 9}) {
      matrix<T> a(m, n);
      for (T& cell : a.cells) cell = from_real<T>(sign());
      if (m % 2 == 1) {
        for (core_int i = 0; i < m; ++i) a(i, 3) = a(i, 1);  // singular
      }
      matrix<T> f = a;
      std::vector<core_int> pivots(static_cast<size_t>(std::min(m, n))), expected(pivots.size());
      const core_int info = factor_lu(m, n, f.data(), f.lda, pivots.data());
      core_int first_zero = 0;
      for (core_int j = 0; j < std::min(m, n); ++j) {
        core_int best = j;
        for (core_int i = j; i < m; ++i) {
          if (abs1(a(i, j)) > abs1(a(best, j))) best = i;
        }
        expected[static_cast<size_t>(j)] = best + 1;
        if (a(best, j) == T{}) {
          first_zero = first_zero == 0 ? j + 1 : first_zero;
          continue;
        }
        for (core_int c = 0; c < n; ++c) std::swap(a(j, c), a(best, c));
        for (core_int i = j + 1; i < m; ++i) {
          a(i, j) = a(i, j) * (from_real<T>(1) / a(j, j));
          for (core_int c = j + 1; c < n; ++c) a(i, c) = a(i, c) - a(i, j) * a(j, c);
        }
      }
      EXPECT_EQ(pivots, expected) << m << " x " << n;
      EXPECT_EQ(info, first_zero) << m << " x " << n;
    }
  }
}

TYPED_TEST(factors, lu_in_panels_with_room_for_few_pivots) {
  using T = TypeParam;
  const core_int shapes[][2] = {{1, 1}, {60, 60}, {50, 90}, {90, 50}, {40, 40}};
  for (const auto& [m, n] : shapes) {
    matrix<T> a = random_matrix<T>(m, n, 5);
    for (core_int i = 0; i < m; ++i) a(i, n / 2) = a(i, n - 1) = T{};
    matrix<T> f = a;
    std::vector<core_int> pivots(static_cast<size_t>(std::min(m, n))), few(20);
    const core_int zero = factor_lu_in_panels(m, n, f.data(), f.lda, few.data(), 20,
                                              [&](core_int first, core_int count, const core_int* from) {
                                                for (core_int i = first; i < first + count; ++i) {
                                                  pivots[static_cast<size_t>(i)] = from[i - first] + first;
                                                }
                                              });
    EXPECT_EQ(zero, n / 2 < m ? n / 2 + 1 : 0) << m << ' ' << n;
    if (n > 1) {
      EXPECT_LT(lu_residual(a, f, pivots), kMostResidual) << m << ' ' << n;
    }
  }
}

TYPED_TEST(factors, lu_with_tiny_pivots_does_not_overflow) {
  using T = TypeParam;
  const real_of<T> tiny = std::numeric_limits<real_of<T>>::denorm_min();
  const core_int shapes[][2] = {{3, 2}, {8, 6}, {12, 6}};
  for (const auto& [m, n] : shapes) {
    matrix<T> a(m, n);
    a(0, 0) = a(m - 1, 1) = from_real<T>(4 * tiny);
    a(1, 0) = from_real<T>(2 * tiny);
    for (core_int j = 2; j < n; ++j) a(j, j) = from_real<T>(1);
    core_int pivots[6];
    EXPECT_EQ(getrf(m, n, a.data(), a.lda, pivots), 0);
    EXPECT_EQ(real_part(a(m - 1, 0)), real_of<T>(0.5));  // the second exchange brought it there
  }
}

// Squares of the elements are out of range.
TYPED_TEST(factors, lu_of_small_and_large_elements) {
  using T = TypeParam;
  using R = real_of<T>;
  const R large = std::sqrt(std::numeric_limits<R>::max()) * 64;
  for (const R scale : {1 / large, large}) {
    for (const core_int n : {2, 6, 8, 13, 40}) {
      matrix<T> a = random_matrix<T>(n, n, 5);
      for (T& cell : a.cells) cell = scale * cell;
      matrix<T> f = a;
      std::vector<core_int> pivots(static_cast<size_t>(n));
      EXPECT_EQ(getrf(n, n, f.data(), f.lda, pivots.data()), 0);
      EXPECT_LT(lu_residual(a, f, pivots), kMostResidual) << n << ' ' << scale;
    }
  }
}

TYPED_TEST(factors, not_a_number_and_infinity_end) {
  using T = TypeParam;
  using R = real_of<T>;
  for (const R bad : {std::numeric_limits<R>::quiet_NaN(), std::numeric_limits<R>::infinity()}) {
    for (const core_int n : {5, 60, 150}) {
      for (const core_int where : {core_int{0}, n / 2, n - 1}) {
        for (const int threads : {1, 3}) {
          if (threads > 1 && n < 60) continue;
          matrix<T> a = positive_matrix<T>(n, 1);
          a(where, where) = from_real<T>(bad);
          matrix<T> f = a;
          std::vector<core_int> pivots(static_cast<size_t>(n));
          const lu_plan plan =
              threads == 1 ? lu_plan{lu_path::recursive, 1, 0, 0, 0, ""} : tasks_of(threads, 16, 2, 2);
          factor_lu_as_planned(plan, n, n, f.data(), f.lda, pivots.data());
          for (core_int i = 0; i < n; ++i) {
            ASSERT_GT(pivots[static_cast<size_t>(i)], i);
            ASSERT_LE(pivots[static_cast<size_t>(i)], n);
          }
          for (const bool upper : {false, true}) {
            f = a;
            const cholesky_plan tiles{threads == 1 ? cholesky_path::serial : cholesky_path::tasks, threads,
                                      16, 2, ""};
            const core_int minor = factor_cholesky_as_planned(tiles, upper, n, f.data(), f.lda);
            if (std::isnan(bad)) {
              EXPECT_EQ(minor, where + 1);
            }
          }
        }
      }
    }
  }
}

TYPED_TEST(factors, cholesky_of_every_order_and_path) {
  using T = TypeParam;
  std::mt19937 generator(21);
  for (const bool upper : {false, true}) {
    for (const core_int n : {1, 2, 3, 5, 8, 9, 15, 16, 17, 31, 33, 47, 64, 65, 100, 128, 129, 150}) {
      for (const int threads : {1, 5}) {
        const auto block = static_cast<core_int>(1 + generator() % 40);
        const core_int grain = upper ? n : 2;
        SCOPED_TRACE(testing::Message()
                     << (upper ? "upper " : "lower ") << n << " threads " << threads << " block " << block);
        const matrix<T> a = positive_matrix<T>(n, 2);
        matrix<T> f = a;
        const auto is_other = [=](core_int i, core_int j) { return i >= n || (upper ? i > j : i < j); };
        for (core_int j = 0; j < n; ++j) {
          for (core_int i = 0; i < f.lda; ++i)
            if (is_other(i, j)) f(i, j) = from_real<T>(std::numeric_limits<real_of<T>>::quiet_NaN());
        }
        const cholesky_plan plan{threads == 1 ? cholesky_path::serial : cholesky_path::tasks, threads, block,
                                 grain, ""};
        EXPECT_EQ(factor_cholesky_as_planned(plan, upper, n, f.data(), f.lda), 0);
        EXPECT_LT(cholesky_residual(a, f, upper), kMostResidual);
        for (core_int j = 0; j < n; ++j) {
          for (core_int i = 0; i < f.lda; ++i) {
            ASSERT_EQ(std::isnan(real_part(f(i, j))), is_other(i, j))
                << "the other triangle " << i << ' ' << j;
          }
        }
      }
    }
  }
}

TYPED_TEST(factors, cholesky_names_the_first_minor_that_is_not_positive) {
  using T = TypeParam;
  const core_int n = 150;
  for (const bool upper : {false, true}) {
    for (const core_int bad : {1, 2, 16, 17, 75, 149, 150}) {
      for (const int threads : {1, 2, 8}) {
        matrix<T> a = positive_matrix<T>(n, 4);
        a(bad - 1, bad - 1) = from_real<T>(-1);
        if (bad < n) a(n - 1, n - 1) = from_real<T>(-1);
        const cholesky_plan plan{threads == 1 ? cholesky_path::serial : cholesky_path::tasks, threads, 16, 2,
                                 ""};
        EXPECT_EQ(factor_cholesky_as_planned(plan, upper, n, a.data(), a.lda), bad)
            << upper << ' ' << threads;
      }
    }
  }
}

// What comes before the bad pivot is factored, and the pivot stands on the diagonal.
TYPED_TEST(factors, cholesky_keeps_what_it_has_before_a_bad_pivot) {
  using T = TypeParam;
  const core_int n = 21;
  for (const bool upper : {false, true}) {
    for (core_int bad = 1; bad <= n; ++bad) {
      SCOPED_TRACE(testing::Message() << upper << ' ' << bad);
      matrix<T> a = positive_matrix<T>(n, 4);
      matrix<T> whole = a;
      ASSERT_EQ(
          factor_cholesky_as_planned({cholesky_path::serial, 1, 0, 0, ""}, upper, n, whole.data(), whole.lda),
          0);
      const real_of<T> pivot = real_part(whole(bad - 1, bad - 1));
      a(bad - 1, bad - 1) = a(bad - 1, bad - 1) - from_real<T>(pivot * pivot + 1);
      ASSERT_EQ(factor_cholesky_as_planned({cholesky_path::serial, 1, 0, 0, ""}, upper, n, a.data(), a.lda),
                bad);
      EXPECT_NEAR(real_part(a(bad - 1, bad - 1)), -1, 1e-4);
      for (core_int j = 0; j < bad - 1; ++j) {
        for (core_int i = j; i < bad - 1; ++i) {
          const auto found = widened(upper ? a(j, i) : a(i, j)),
                     good = widened(upper ? whole(j, i) : whole(i, j));
          EXPECT_NEAR(std::abs(found - good), 0, 1e-5) << i << ' ' << j;
        }
      }
    }
  }
}

TYPED_TEST(factors, cholesky_of_tiny_and_huge_pivots) {
  using T = TypeParam;
  using R = real_of<T>;
  const core_int n = 9;
  for (const R size : {std::numeric_limits<R>::denorm_min(), std::numeric_limits<R>::max()}) {
    matrix<T> a(n, n);
    for (core_int i = 0; i < n; ++i) a(i, i) = from_real<T>(i % 2 == 0 ? size : R(1));
    EXPECT_EQ(potrf(false, n, a.data(), a.lda), 0);
    for (core_int i = 0; i < n; ++i) EXPECT_EQ(real_part(a(i, i)), i % 2 == 0 ? std::sqrt(size) : R(1));
  }
}

TYPED_TEST(factors, this_process_takes_a_path_that_is_right) {
  using T = TypeParam;
  for (const core_int n : {70, 530}) {
    const matrix<T> a = random_matrix<T>(n, n, 5), p = positive_matrix<T>(n, 5);
    matrix<T> f = a, g = p;
    std::vector<core_int> pivots(static_cast<size_t>(n));
    EXPECT_EQ(getrf(n, n, f.data(), f.lda, pivots.data()), 0);
    EXPECT_LT(lu_residual(a, f, pivots), kMostResidual);
    EXPECT_EQ(potrf(false, n, g.data(), g.lda), 0);
    EXPECT_LT(cholesky_residual(p, g, false), kMostResidual);
  }
}

TEST(factor_names, bad_arguments_are_reported) {
  double a[9] = {};
  core_int pivots[3], info = 0;
  const auto lu = [&](core_int m, core_int n, core_int lda) {
    core::qel_core_dgetrf_(&m, &n, a, &lda, pivots, &info);
    return info;
  };
  EXPECT_EQ(lu(-1, 3, 3), -1);
  EXPECT_EQ(lu(3, -1, 3), -2);
  EXPECT_EQ(lu(3, 3, 2), -4);
  EXPECT_EQ(lu(0, 3, 0), -4);
  EXPECT_EQ(lu(0, 3, 1), 0);
  EXPECT_EQ(lu(3, 0, 3), 0);
  const auto cholesky = [&](const char* uplo, core_int n, core_int lda) {
    core::qel_core_dpotrf_(uplo, &n, a, &lda, &info, 1);
    return info;
  };
  EXPECT_EQ(cholesky("X", 3, 3), -1);
  EXPECT_EQ(cholesky("l", -1, 3), -2);
  EXPECT_EQ(cholesky("U", 3, 2), -4);
  EXPECT_EQ(cholesky("U", 0, 1), 0);
}

}  // namespace
}  // namespace qel::lapack
