// SPDX-License-Identifier: BSD-3-Clause
// Solves with factors, inverses, and triangles times themselves, in four types: what the factors stand for
// times the result, written out in double.
#include "lapack/factor/factored.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <numeric>
#include <vector>

#include "lapack/factor/triangles.h"
#include "lapack/lapack.h"
#include "tests/lapack/wide_matrix.h"

namespace qel::lapack {
namespace {

/// Rows exchanged as the pivots say, of the identity.
wide_matrix exchanges(const std::vector<core_int>& pivots) {
  const auto n = static_cast<core_int>(pivots.size());
  wide_matrix p = filled(n, n, [](core_int i, core_int j) { return wide(i == j ? 1 : 0); });
  for (core_int i = 0; i < n; ++i) {
    for (core_int j = 0; j < n; ++j) std::swap(p(i, j), p(pivots[static_cast<size_t>(i)] - 1, j));
  }
  return p;
}

constexpr double kMost = 10;

/// A triangle with a heavy diagonal; what stands on the other side must not be read.
template <class T>
matrix<T> factors_of(core_int n, unsigned seed) {
  matrix<T> f = random_matrix<T>(n, n, seed);
  for (core_int j = 0; j < n; ++j) {
    for (core_int i = 0; i < n; ++i) f(i, j) = from_real<T>(1 / static_cast<real_of<T>>(n)) * f(i, j);
    f(j, j) = from_real<T>(1 + static_cast<real_of<T>>(j % 5) / 8);
  }
  return f;
}

const core_int kOrders[] = {1, 2, 3, 5, 7, 8, 11, 16, 17, 35, 40, 64, 90, 140};

template <class T>
class factored : public testing::Test {};
TYPED_TEST_SUITE(factored, element_types);

TYPED_TEST(factored, lu_solves_and_inverse) {
  using T = TypeParam;
  for (const core_int n : kOrders) {
    SCOPED_TRACE(n);
    const matrix<T> f = factors_of<T>(n, 3);
    std::vector<core_int> pivots(static_cast<size_t>(n));
    std::vector<int> narrow(pivots.size());
    for (core_int i = 0; i < n; ++i) {
      pivots[static_cast<size_t>(i)] = i + 1 + (n - 1 - i) * (i % 3) / 2;
      narrow[static_cast<size_t>(i)] = static_cast<int>(pivots[static_cast<size_t>(i)]);
    }
    const wide_matrix a =
        turned(exchanges(pivots), false) * (triangle(f, false, true) * triangle(f, true, false));
    const double size = largest(a) * static_cast<double>(n);
    for (const char trans : {'N', 'T', 'C'}) {
      for (const core_int nrhs : {1, 5}) {
        const matrix<T> b = random_matrix<T>(n, nrhs, 4);
        matrix<T> x = b, y = b;
        solve_by_lu(trans, n, nrhs, f.data(), f.lda, pivots.data(), x.data(), x.lda);
        const wide_matrix op = trans == 'N' ? a : turned(a, trans == 'C');
        EXPECT_LT(apart<T>(op * whole(x), whole(b), size * largest(whole(x))), kMost) << trans << nrhs;
        solve_by_lu(trans, n, nrhs, f.data(), f.lda, narrow.data(), y.data(), y.lda);
        EXPECT_TRUE(
            std::equal(x.cells.begin(), x.cells.end(), y.cells.begin(), [](T u, T v) { return u == v; }));
      }
    }
    const wide_matrix one = identity(n);
    for (const core_int length : {n, 100 * n}) {
      matrix<T> inverse = f;
      std::vector<T> work(static_cast<size_t>(length));
      EXPECT_EQ(invert_triangle(true, false, n, inverse.data(), inverse.lda), 0);
      finish_lu_inverse(n, inverse.data(), inverse.lda, pivots.data(), work.data(), length);
      EXPECT_LT(apart<T>(a * whole(inverse), one, size * largest(whole(inverse))), kMost) << length;
    }
    matrix<T> at_once = f;
    if (invert_small(n, at_once.data(), at_once.lda, pivots.data())) {
      EXPECT_LT(apart<T>(a * whole(at_once), one, size * largest(whole(at_once))), kMost);
      for (core_int j = 0; j < n; ++j) {
        for (core_int i = n; i < f.lda; ++i) ASSERT_TRUE(at_once(i, j) == f(i, j)) << "below the columns";
      }
    } else {
      EXPECT_TRUE(n > kInverseOrder || native_factor_kernels<T>() == nullptr);
    }
  }
}

// Rows are shared out where columns are put back; factors of a scaled permutation tell where each element
// goes.
TYPED_TEST(factored, columns_of_a_large_inverse_go_back) {
  using T = TypeParam;
  const core_int n = 600;
  matrix<T> a(n, n), expected(n, n);
  std::vector<core_int> pivots(static_cast<size_t>(n)), places(pivots.size());
  std::iota(places.begin(), places.end(), 0);
  for (core_int i = 0; i < n; ++i) {
    a(i, i) = from_real<T>(2);
    pivots[static_cast<size_t>(i)] = i + 1 + (n - 1 - i) * (i % 3) / 2;
  }
  for (core_int j = n - 1; j >= 0; --j) {
    std::swap(places[static_cast<size_t>(j)],
              places[static_cast<size_t>(pivots[static_cast<size_t>(j)] - 1)]);
  }
  for (core_int j = 0; j < n; ++j) expected(places[static_cast<size_t>(j)], j) = from_real<T>(0.5);
  std::vector<T> work(static_cast<size_t>(n));
  const forced_threads two(2);
  EXPECT_EQ(invert_triangle(true, false, n, a.data(), a.lda), 0);
  finish_lu_inverse(n, a.data(), a.lda, pivots.data(), work.data(), n);
  for (core_int j = 0; j < n; ++j) {
    for (core_int i = 0; i < n; ++i) ASSERT_TRUE(a(i, j) == expected(i, j)) << i << ' ' << j;
  }
}

// What has no finite inverse is left to the routines that report it.
TYPED_TEST(factored, no_inverse_at_once) {
  using T = TypeParam;
  using limits = std::numeric_limits<real_of<T>>;
  const core_int n = 9;
  std::vector<core_int> unmoved(static_cast<size_t>(n));
  std::iota(unmoved.begin(), unmoved.end(), 1);
  const struct {
    core_int i, j;
    real_of<T> value;
  } faults[] = {{0, 0, 0},
                {8, 8, 0},
                {3, 3, limits::quiet_NaN()},
                {2, 2, limits::min()},
                {1, 6, limits::infinity()},
                {8, 2, limits::quiet_NaN()}};
  for (const auto& fault : faults) {
    matrix<T> f = factors_of<T>(n, 3);
    f(fault.i, fault.j) = from_real<T>(fault.value);
    matrix<T> a = f;
    EXPECT_FALSE(invert_small(n, a.data(), a.lda, unmoved.data())) << fault.i << fault.j;
    EXPECT_EQ(std::memcmp(a.data(), f.data(), f.cells.size() * sizeof(T)), 0);
  }
}

TYPED_TEST(factored, triangles) {
  using T = TypeParam;
  const forced_threads two(2);  // from some order on halves are inverted on a thread each
  for (const core_int n : kOrders) {
    for (const bool upper : {false, true}) {
      SCOPED_TRACE(testing::Message() << n << (upper ? " upper" : " lower"));
      matrix<T> f = factors_of<T>(n, 5);
      const auto untouched = [&](const matrix<T>& after) {
        bool same = true;
        for (core_int j = 0; j < n; ++j) {
          for (core_int i = 0; i < f.lda; ++i) {
            if (i >= n || (i != j && (i < j) != upper)) same = same && after(i, j) == f(i, j);
          }
        }
        return same;
      };
      for (const bool unit : {false, true}) {
        matrix<T> inverse = f;
        EXPECT_EQ(invert_triangle(upper, unit, n, inverse.data(), inverse.lda), 0);
        const wide_matrix one = triangle(f, upper, unit) * triangle(inverse, upper, unit);
        EXPECT_LT(apart<T>(one, filled(n, n, [](core_int i, core_int j) { return wide(i == j ? 1 : 0); }),
                           largest(triangle(inverse, upper, unit)) * static_cast<double>(n)),
                  kMost);
        EXPECT_TRUE(untouched(inverse));
        if (unit) {
          EXPECT_TRUE(inverse(n / 2, n / 2) == f(n / 2, n / 2));
        }
      }
      matrix<T> square = f;
      square_triangle(upper, n, square.data(), square.lda);
      const wide_matrix t = triangle(f, upper, false), s = upper ? t * turned(t, true) : turned(t, true) * t;
      const wide_matrix expected =
          filled(n, n, [&](core_int i, core_int j) { return i == j || (i < j) == upper ? s(i, j) : wide(); });
      EXPECT_LT(apart<T>(triangle(square, upper, false), expected, static_cast<double>(n)), kMost);
      EXPECT_TRUE(untouched(square));

      const matrix<T> b = random_matrix<T>(n, 3, 6);
      matrix<T> x = b;
      solve_by_cholesky(upper, n, core_int{3}, f.data(), f.lda, x.data(), x.lda);
      const wide_matrix a = upper ? turned(t, true) * t : t * turned(t, true);
      EXPECT_LT(apart<T>(a * whole(x), whole(b), static_cast<double>(n) * largest(a) * largest(whole(x))),
                kMost);

      f(n / 2, n / 2) = T{};
      square = f;
      EXPECT_EQ(invert_triangle(upper, false, n, square.data(), square.lda), n / 2 + 1);
      EXPECT_TRUE(
          std::equal(f.cells.begin(), f.cells.end(), square.cells.begin(), [](T u, T v) { return u == v; }));
    }
  }
}

// Triangles with few columns at their right. What stands in the other triangle, and on a diagonal of ones, is
// not read; pivots without a reciprocal are divided by.
TYPED_TEST(factored, triangles_with_few_columns) {
  using T = TypeParam;
  using R = real_of<T>;
  const R nan = std::numeric_limits<R>::quiet_NaN(),
          small =
              std::sqrt(std::sqrt(std::numeric_limits<R>::min())) * std::sqrt(std::numeric_limits<R>::min());
  for (const core_int n : {1, 2, 5, 8, 9, 15, 17, 33, 64}) {
    for (const bool upper : {false, true}) {
      for (const char diag : {'U', 'N', 'S'}) {  // S: small pivots
        const bool unit = diag == 'U';
        matrix<T> f = factors_of<T>(n, 3);
        for (core_int j = 0; j < n; ++j) {
          for (core_int i = 0; i < n; ++i) {
            if (diag == 'S') f(i, j) = small * f(i, j);
            if (i == j ? unit : (i < j) != upper) f(i, j) = from_real<T>(nan);
          }
        }
        for (const char trans : {'N', 'T', 'C'}) {
          for (const core_int count : {1, 2, 3, 4, 7}) {
            SCOPED_TRACE(testing::Message() << n << ' ' << upper << trans << diag << ' ' << count);
            matrix<T> b = random_matrix<T>(n, count, 6);
            if (diag == 'S') {
              for (T& value : b.cells) value = small * value;
            }
            matrix<T> x = b;
            solve('L', upper ? 'U' : 'L', trans, unit ? 'U' : 'N', n, count, f.data(), f.lda, x.data(),
                  x.lda);
            wide_matrix t = triangle(f, upper, unit);
            if (trans != 'N') t = turned(t, trans == 'C');
            const double size = diag == 'S' ? small : 1;
            EXPECT_LT(apart<T>(t * whole(x), whole(b), size * largest(whole(x))), kMost);
            for (core_int j = 0; j < count; ++j) {
              for (core_int i = n; i < x.lda; ++i) ASSERT_TRUE(x(i, j) == b(i, j)) << "below the columns";
            }
          }
        }
      }
    }
  }
}

// Without a transpose a zero at the right leaves its column and its pivot out.
TYPED_TEST(factored, zeros_at_the_right_of_a_triangle) {
  using T = TypeParam;
  using R = real_of<T>;
  const core_int n = 11;
  for (const R bad : {R(0), std::numeric_limits<R>::infinity()}) {
    matrix<T> f = factors_of<T>(n, 3);
    f(4, 4) = from_real<T>(bad);
    f(6, 4) = from_real<T>(std::numeric_limits<R>::quiet_NaN());
    std::vector<T> x(static_cast<size_t>(n));
    x[7] = from_real<T>(1);
    solve('L', 'L', 'N', 'N', n, core_int{1}, f.data(), f.lda, x.data(), n);
    for (core_int i = 0; i < n; ++i) {
      EXPECT_TRUE(std::isfinite(real_part(x[static_cast<size_t>(i)]))) << i;
      EXPECT_EQ(x[static_cast<size_t>(i)] == T{}, i < 7) << i;
    }
  }
}

// Two triangles in one call are two calls, also where a pivot has no reciprocal and zeros leave columns out.
TYPED_TEST(factored, both_triangles_at_once) {
  using T = TypeParam;
  using R = real_of<T>;
  using limits = std::numeric_limits<R>;
  const auto alike = [](R x, R y, R size) {
    return std::isfinite(y) ? std::abs(x - y) <= 50 * limits::epsilon() * size && (x == 0) == (y == 0)
                            : std::isnan(x) == std::isnan(y) && !std::isfinite(x);
  };
  for (const core_int n : {3, 8, 19}) {
    std::vector<core_int> unmoved(static_cast<size_t>(n));
    std::iota(unmoved.begin(), unmoved.end(), 1);
    for (const R pivot : {R(2), limits::min() / 2, R(0), limits::infinity(), limits::quiet_NaN()}) {
      matrix<T> f = factors_of<T>(n, 3);
      f(n / 2, n / 2) = from_real<T>(pivot);
      for (const char way : {'N', 'T', 'C', 'U', 'L'}) {  // U, L: of Cholesky's factors
        matrix<T> b(n, 2, 0);
        b(n / 3, 0) = b(n - 1, 1) = from_real<T>(1);
        matrix<T> x = b, y = b;
        const auto solve_both = [&](char uplo, char trans, char diag, char uplo2, char trans2, char diag2) {
          solve('L', uplo, trans, diag, n, core_int{2}, f.data(), f.lda, y.data(), n);
          solve('L', uplo2, trans2, diag2, n, core_int{2}, f.data(), f.lda, y.data(), n);
        };
        if (way == 'U' || way == 'L') {
          solve_by_cholesky(way == 'U', n, core_int{2}, f.data(), f.lda, x.data(), n);
          const char first = way == 'U' ? kTurnedLetter<T> : 'N', then = way == 'U' ? 'N' : kTurnedLetter<T>;
          solve_both(way, first, 'N', way, then, 'N');
        } else {
          solve_by_lu(way, n, core_int{2}, f.data(), f.lda, unmoved.data(), x.data(), n);
          if (way == 'N') solve_both('L', 'N', 'U', 'U', 'N', 'N');
          if (way != 'N') solve_both('U', way, 'N', 'L', way, 'U');
        }
        for (core_int j = 0; j < 2; ++j) {
          R size = 0;
          for (core_int i = 0; i < n; ++i) {
            const R value = std::abs(real_part(y(i, j)));
            if (std::isfinite(value)) size = std::max(size, value);
          }
          for (core_int i = 0; i < n; ++i) {
            EXPECT_TRUE(alike(real_part(x(i, j)), real_part(y(i, j)), size))
                << n << way << pivot << ": " << i << ' ' << j;
          }
        }
      }
    }
  }
}

// Wide blocks, natively, whatever room the work array has.
TYPED_TEST(factored, large_inverse) {
  using T = TypeParam;
  const core_int n = 450;
  const matrix<T> f = factors_of<T>(n, 3);
  std::vector<core_int> pivots(static_cast<size_t>(n));
  for (core_int i = 0; i < n; ++i) pivots[static_cast<size_t>(i)] = i + 1 + (n - 1 - i) * (i % 3) / 2;
  for (const core_int length : {n, 64 * n}) {
    matrix<T> inverse = f;
    std::vector<T> work(static_cast<size_t>(length));
    EXPECT_EQ(invert_triangle(true, false, n, inverse.data(), inverse.lda), 0);
    finish_lu_inverse(n, inverse.data(), inverse.lda, pivots.data(), work.data(), length);
    for (const core_int j : {core_int{0}, n / 2, n - 1}) {
      const wide_matrix x = filled(n, 1, [&](core_int i, core_int) { return widened(inverse(i, j)); });
      wide_matrix y = triangle(f, false, true) * (triangle(f, true, false) * x);
      for (core_int i = n - 1; i >= 0; --i) std::swap(y(i, 0), y(pivots[static_cast<size_t>(i)] - 1, 0));
      const wide_matrix one = filled(n, 1, [&](core_int i, core_int) { return wide(i == j ? 1 : 0); });
      EXPECT_LT(apart<T>(y, one, largest(x)), kMost) << length << ' ' << j;
    }
  }
}

TEST(is_narrow, by_order_and_columns) {
  EXPECT_TRUE(is_narrow(1, 1));
  EXPECT_TRUE(is_narrow(64, 32));
  EXPECT_FALSE(is_narrow(65, 1));
  EXPECT_FALSE(is_narrow(8, 33));
  EXPECT_FALSE(is_narrow(0, 4));
  EXPECT_FALSE(is_narrow(4, 0));
}

TEST(inverse_block, by_order_room_and_level) {
  EXPECT_EQ(inverse_block(300, 40, true), 40);
  EXPECT_EQ(inverse_block(300, 100, true), 64);
  EXPECT_EQ(inverse_block(385, 1, true), 192);
  EXPECT_EQ(inverse_block(5000, 100, false), 64);
}

}  // namespace
}  // namespace qel::lapack
