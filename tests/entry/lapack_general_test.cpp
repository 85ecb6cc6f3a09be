// SPDX-License-Identifier: BSD-3-Clause
// Dense factorisations and solvers through the public entries: residuals, pivots in arrays that
// end where they must, info.
#include <algorithm>

#include "tests/entry/support.h"

namespace qel::test {
namespace {

template <class T>
class General : public testing::Test {};
TYPED_TEST_SUITE(General, all_types);

template <class T>
constexpr auto getrf = pick<T>(sgetrf, dgetrf, cgetrf, zgetrf);
template <class T>
constexpr auto getrs = pick<T>(sgetrs, dgetrs, cgetrs, zgetrs);
template <class T>
constexpr auto getri = pick<T>(sgetri, dgetri, cgetri, zgetri);
template <class T>
constexpr auto gecon = pick<T>(sgecon, dgecon, cgecon, zgecon);

template <class T>
real_of<T> condition(char norm, int n, matrix<T>& factors, real_of<T> anorm) {
  real_of<T> rcond = -1;
  std::vector<T> work(4 * n);
  std::vector<real_of<T>> rwork(2 * n);
  if constexpr (is_complex<T>) {
    EXPECT_EQ(0, run(gecon<T>, norm, n, factors.data(), n, anorm, &rcond, work.data(), rwork.data()));
  } else {
    std::vector<int> iwork(n, 42);
    EXPECT_EQ(0, run(gecon<T>, norm, n, factors.data(), n, anorm, &rcond, work.data(), iwork.data()));
    EXPECT_EQ(n, std::count(iwork.begin(), iwork.end(), 42)) << "iwork must not be converted";
  }
  return rcond;
}

TYPED_TEST(General, FactorsSolveAndInvert) {
  using T = TypeParam;
  for (const int n : {1, 5, 40}) {
    const matrix<T> a = heavy_matrix<T>(n, 11), b = random_matrix<T>(n, 3, 12);
    matrix<T> lu = a;
    exact_ints pivots(n);
    ASSERT_EQ(0, run(getrf<T>, n, n, lu.data(), n, pivots.data()));
    for (int i = 0; i < n; ++i) EXPECT_TRUE(pivots[i] > i && pivots[i] <= n) << i;
    for (const char trans : {'N', 't', 'C'}) {
      matrix<T> x = b;
      ASSERT_EQ(0, run(getrs<T>, trans, n, 3, lu.data(), n, pivots.data(), x.data(), n));
      expect_near(op(form_of(trans), a) * x, b, "op(A) X = B");
    }
    matrix<T> inverse = lu;
    T best{};
    ASSERT_EQ(0, run(getri<T>, n, inverse.data(), n, pivots.data(), &best, -1));
    ASSERT_GE(best_size(best), n);
    std::vector<T> work(best_size(best));
    ASSERT_EQ(0, run(getri<T>, n, inverse.data(), n, pivots.data(), work.data(), best_size(best)));
    expect_near(a * inverse, identity<T>(n), "A inv(A)");
    const auto norm = static_cast<real_of<T>>(one_norm(a));
    expect_rcond(condition('1', n, lu, norm), a, inverse);
    const matrix<T> at = op(form::transposed, a), inverse_t = op(form::transposed, inverse);
    expect_rcond(condition('i', n, lu, static_cast<real_of<T>>(one_norm(at))), at, inverse_t);
  }
}

// Without a heavy diagonal rows are exchanged: P L U must give A back.
TYPED_TEST(General, PivotsOfRectangles) {
  using T = TypeParam;
  struct sizes {
    int m, n;
  };
  for (const auto& [m, n] : {sizes{3, 5}, {5, 3}, {17, 9}, {9, 17}}) {
    const matrix<T> a = random_matrix<T>(m, n, 21);
    const int least = std::min(m, n);
    matrix<T> lu = a, lower(m, least), upper(least, n);
    exact_ints pivots(least);
    ASSERT_EQ(0, run(getrf<T>, m, n, lu.data(), m, pivots.data()));
    for (int j = 0; j < least; ++j) {
      lower(j, j) = make<T>(1);
      for (int i = j + 1; i < m; ++i) lower(i, j) = lu(i, j);
    }
    for (int j = 0; j < n; ++j) {
      for (int i = 0; i <= std::min(j, least - 1); ++i) upper(i, j) = lu(i, j);
    }
    matrix<T> product = lower * upper;
    for (int i = least - 1; i >= 0; --i) {
      ASSERT_TRUE(pivots[i] > i && pivots[i] <= m);
      for (int j = 0; j < n; ++j) std::swap(product(i, j), product(pivots[i] - 1, j));
    }
    expect_near(product, a, "P L U = A");
  }
}

TYPED_TEST(General, InfoOfSingularEmptyAndBadMatrices) {
  using T = TypeParam;
  matrix<T> singular = identity<T>(3);
  singular(1, 1) = T{};
  int pivots[4] = {7, 7, 7, 7};
  EXPECT_EQ(2, run(getrf<T>, 3, 3, singular.data(), 3, pivots));
  EXPECT_TRUE(pivots[2] == 3 && pivots[3] == 7) << "pivots come back with info above 0";
  int untouched[2] = {7, 7};
  EXPECT_EQ(0, run(getrf<T>, 0, 2, singular.data(), 1, untouched));
  EXPECT_EQ(0, run(getrf<T>, 2, 0, singular.data(), 2, untouched));
  EXPECT_EQ(0, run(getrf<T>, 0, 0, singular.data(), 1, nullptr));
  testing::internal::CaptureStdout();
  EXPECT_EQ(-1, run(getrf<T>, -5, 2, singular.data(), 1, untouched));
  EXPECT_EQ(-4, run(getrf<T>, 2, 2, singular.data(), 1, untouched));
  EXPECT_EQ(-2, run(getrs<T>, 'N', -1, 1, singular.data(), 1, untouched, singular.data(), 1));
  testing::internal::GetCapturedStdout();
  EXPECT_TRUE(untouched[0] == 7 && untouched[1] == 7);
}

TEST(GeneralDouble, Gesv) {
  constexpr int n = 12;
  const matrix<double> a = random_matrix<double>(n, n, 31), b = random_matrix<double>(n, 2, 32);
  matrix<double> lu = a, x = b;
  exact_ints pivots(n);
  ASSERT_EQ(0, run(dgesv, n, 2, lu.data(), n, pivots.data(), x.data(), n));
  EXPECT_NE(0,
            std::count_if(pivots.begin(), pivots.end(), [&](int& p) { return p != &p - pivots.data() + 1; }));
  EXPECT_LE(distance(a * x, b), 1e-12);
}

TEST(GeneralDouble, Posv) {
  constexpr int n = 9;
  const matrix<double> a = mirrored(random_matrix<double>(n, n, 33), form::transposed, true);
  const matrix<double> b = random_matrix<double>(n, 2, 34);
  for (const char uplo : {'U', 'l'}) {
    matrix<double> factor = a, x = b;
    ASSERT_EQ(0, run(dposv, uplo, n, 2, factor.data(), n, x.data(), n));
    expect_near(a * x, b, "A X = B");
  }
  matrix<double> indefinite = a;
  indefinite(3, 3) = -1;
  matrix<double> x = b;
  EXPECT_EQ(4, run(dposv, 'L', n, 2, indefinite.data(), n, x.data(), n));
}

}  // namespace
}  // namespace qel::test
