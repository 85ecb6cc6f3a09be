// SPDX-License-Identifier: BSD-3-Clause
// Band and tridiagonal factorisations through the public entries, against dense products of the same matrix.
#include <algorithm>

#include "tests/entry/support.h"

namespace qel::test {
namespace {

template <class T>
class Banded : public testing::Test {};
TYPED_TEST_SUITE(Banded, all_types);

/// Random, zero outside the band, heavy on the diagonal only if asked for.
template <class T>
matrix<T> band_matrix(int n, int kl, int ku, unsigned seed, double diagonal) {
  matrix<T> a = random_matrix<T>(n, n, seed);
  for (int j = 0; j < n; ++j) {
    for (int i = 0; i < n; ++i) {
      if (i - j > kl || j - i > ku) a(i, j) = T{};
    }
    a(j, j) += make<T>(diagonal);
  }
  return a;
}

/// Band storage with spare rows at the top.
template <class T>
matrix<T> stored(const matrix<T>& a, int kl, int ku, int spare) {
  matrix<T> ab(spare + kl + ku + 1, a.cols);
  for (int j = 0; j < a.cols; ++j) {
    for (int i = std::max(0, j - ku); i <= std::min(a.rows - 1, j + kl); ++i)
      ab(spare + ku + i - j, j) = a(i, j);
  }
  return ab;
}

/// The trailing arguments of condition estimates: rcond, work and, by type, iwork or rwork.
template <class T, class F, class... A>
double estimate(F entry, int n, const A&... arguments) {
  real_of<T> rcond = -1;
  std::vector<T> work(3 * n);
  std::vector<real_of<T>> rwork(2 * n);
  std::vector<int> iwork(n, 42);
  if constexpr (is_complex<T>) {
    EXPECT_EQ(0, run(entry, arguments..., &rcond, work.data(), rwork.data()));
  } else {
    EXPECT_EQ(0, run(entry, arguments..., &rcond, work.data(), iwork.data()));
    EXPECT_EQ(n, std::count(iwork.begin(), iwork.end(), 42)) << "iwork must not be converted";
  }
  return rcond;
}

TYPED_TEST(Banded, General) {
  using T = TypeParam;
  constexpr auto gbtrf = pick<T>(sgbtrf, dgbtrf, cgbtrf, zgbtrf);
  constexpr auto gbtrs = pick<T>(sgbtrs, dgbtrs, cgbtrs, zgbtrs);
  constexpr auto gbcon = pick<T>(sgbcon, dgbcon, cgbcon, zgbcon);
  struct sizes {
    int n, kl, ku;
  };
  for (const auto& [n, kl, ku] : {sizes{1, 0, 0}, {7, 2, 1}, {30, 3, 5}}) {
    const matrix<T> a = band_matrix<T>(n, kl, ku, 41, 2.5), b = random_matrix<T>(n, 2, 42);
    matrix<T> lu = stored(a, kl, ku, kl);
    exact_ints pivots(n);
    ASSERT_EQ(0, run(gbtrf, n, n, kl, ku, lu.data(), lu.rows, pivots.data()));
    for (int i = 0; i < n; ++i) EXPECT_TRUE(pivots[i] > i && pivots[i] <= std::min(n, i + 1 + kl));
    for (const char trans : {'n', 'T', 'C'}) {
      matrix<T> x = b;
      ASSERT_EQ(0, run(gbtrs, trans, n, kl, ku, 2, lu.data(), lu.rows, pivots.data(), x.data(), n));
      expect_near(op(form_of(trans), a) * x, b, "op(A) X = B");
    }
    const double rcond = estimate<T>(gbcon, n, 'O', n, kl, ku, lu.data(), lu.rows, pivots.data(),
                                     static_cast<real_of<T>>(one_norm(a)));
    expect_rcond(rcond, a, inverse_of(a));
  }
}

TYPED_TEST(Banded, PositiveDefinite) {
  using T = TypeParam;
  constexpr auto pbtrf = pick<T>(spbtrf, dpbtrf, cpbtrf, zpbtrf);
  constexpr auto pbtrs = pick<T>(spbtrs, dpbtrs, cpbtrs, zpbtrs);
  constexpr auto pbcon = pick<T>(spbcon, dpbcon, cpbcon, zpbcon);
  constexpr int n = 20, kd = 3;
  const matrix<T> a = mirrored(band_matrix<T>(n, kd, kd, 43, 9), form::adjoint, false);
  const matrix<T> b = random_matrix<T>(n, 2, 44), inverse = inverse_of(a);
  for (const char uplo : {'U', 'L'}) {
    matrix<T> factor = uplo == 'U' ? stored(a, 0, kd, 0) : stored(a, kd, 0, 0), x = b;
    ASSERT_EQ(0, run(pbtrf, uplo, n, kd, factor.data(), kd + 1));
    ASSERT_EQ(0, run(pbtrs, uplo, n, kd, 2, factor.data(), kd + 1, x.data(), n));
    expect_near(a * x, b, "A X = B");
    const auto norm = static_cast<real_of<T>>(one_norm(a));
    expect_rcond(estimate<T>(pbcon, n, uplo, n, kd, factor.data(), kd + 1, norm), a, inverse);
  }
}

template <class T>
std::vector<T> diagonal_of(const matrix<T>& a, int row, int column) {
  std::vector<T> d;
  for (int i = 0; i + std::max(row, column) < a.rows; ++i) d.push_back(a(i + row, i + column));
  return d;
}

TYPED_TEST(Banded, Tridiagonal) {
  using T = TypeParam;
  constexpr auto gttrf = pick<T>(sgttrf, dgttrf, cgttrf, zgttrf);
  constexpr auto gttrs = pick<T>(sgttrs, dgttrs, cgttrs, zgttrs);
  constexpr auto gtcon = pick<T>(sgtcon, dgtcon, cgtcon, zgtcon);
  constexpr int n = 15;
  const matrix<T> a = band_matrix<T>(n, 1, 1, 45, 0.3), b = random_matrix<T>(n, 2, 46);
  std::vector<T> dl = diagonal_of(a, 1, 0), d = diagonal_of(a, 0, 0), du = diagonal_of(a, 0, 1), du2(n);
  exact_ints pivots(n);
  ASSERT_EQ(0, run(gttrf, n, dl.data(), d.data(), du.data(), du2.data(), pivots.data()));
  int exchanges = 0;
  for (int i = 0; i < n; ++i) {
    EXPECT_TRUE(pivots[i] == i + 1 || pivots[i] == i + 2);
    exchanges += pivots[i] == i + 2;
  }
  EXPECT_GT(exchanges, 0) << "the case must exchange rows";
  const matrix<T> inverse = inverse_of(a);
  const double condition = one_norm(a) * one_norm(inverse);
  for (const char trans : {'N', 'T', 'c'}) {
    matrix<T> x = b;
    ASSERT_EQ(
        0, run(gttrs, trans, n, 2, dl.data(), d.data(), du.data(), du2.data(), pivots.data(), x.data(), n));
    EXPECT_LE(distance(op(form_of(trans), a) * x, b), 30 * n * kEpsilon<T> * condition);
  }
  real_of<T> rcond = -1;
  const auto norm = static_cast<real_of<T>>(one_norm(a));
  std::vector<T> work(2 * n);
  if constexpr (is_complex<T>) {
    ASSERT_EQ(0, run(gtcon, '1', n, dl.data(), d.data(), du.data(), du2.data(), pivots.data(), norm, &rcond,
                     work.data()));
  } else {
    std::vector<int> iwork(n);
    ASSERT_EQ(0, run(gtcon, '1', n, dl.data(), d.data(), du.data(), du2.data(), pivots.data(), norm, &rcond,
                     work.data(), iwork.data()));
  }
  expect_rcond(rcond, a, inverse);
}

TYPED_TEST(Banded, PositiveDefiniteTridiagonal) {
  using T = TypeParam;
  using R = real_of<T>;
  constexpr auto pttrf = pick<T>(spttrf, dpttrf, cpttrf, zpttrf);
  constexpr auto pttrs = pick<T>(spttrs, dpttrs, cpttrs, zpttrs);
  constexpr auto ptcon = pick<T>(sptcon, dptcon, cptcon, zptcon);
  constexpr int n = 15;
  const matrix<T> a = mirrored(band_matrix<T>(n, 1, 1, 47, 4), form::adjoint, false);
  const matrix<T> b = random_matrix<T>(n, 2, 48);
  for (const char uplo : {'U', 'L'}) {
    std::vector<R> d;
    for (int i = 0; i < n; ++i) d.push_back(real_part(a(i, i)));
    // The factorisation reads the diagonal below; for 'U' the one above stands for its conjugate.
    std::vector<T> e = uplo == 'L' ? diagonal_of(a, 1, 0) : diagonal_of(a, 0, 1);
    ASSERT_EQ(0, run(pttrf, n, d.data(), e.data()));
    matrix<T> x = b;
    if constexpr (is_complex<T>) {
      ASSERT_EQ(0, run(pttrs, uplo, n, 2, d.data(), e.data(), x.data(), n));
    } else {
      ASSERT_EQ(0, run(pttrs, n, 2, d.data(), e.data(), x.data(), n));
    }
    expect_near(a * x, b, "A X = B");
    R rcond = -1;
    std::vector<R> work(n);
    ASSERT_EQ(0, run(ptcon, n, d.data(), e.data(), static_cast<R>(one_norm(a)), &rcond, work.data()));
    expect_rcond(rcond, a, inverse_of(a));
  }
}

TEST(BandedDouble, Gtsv) {
  constexpr int n = 10;
  const matrix<double> a = band_matrix<double>(n, 1, 1, 49, 0.5), b = random_matrix<double>(n, 3, 50);
  std::vector<double> dl = diagonal_of(a, 1, 0), d = diagonal_of(a, 0, 0), du = diagonal_of(a, 0, 1);
  matrix<double> x = b;
  ASSERT_EQ(0, run(dgtsv, n, 3, dl.data(), d.data(), du.data(), x.data(), n));
  EXPECT_LE(distance(a * x, b), 1e-12);
}

}  // namespace
}  // namespace qel::test
