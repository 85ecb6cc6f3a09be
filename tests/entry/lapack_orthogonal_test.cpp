// SPDX-License-Identifier: BSD-3-Clause
// QR factorisations and least squares through the public entries: A = Q R, orthogonality, permutations,
// ranks, workspace queries.
#include <algorithm>

#include "tests/entry/support.h"

namespace qel::test {
namespace {

template <class T>
class Orthogonal : public testing::Test {};
TYPED_TEST_SUITE(Orthogonal, all_types);

/// Calls an entry whose last arguments are work and lwork twice: for the size, then with so much work.
template <class T, class F, class... A>
int with_work(F entry, const A&... arguments) {
  T best{};
  EXPECT_EQ(0, run(entry, arguments..., &best, -1));
  EXPECT_GE(best_size(best), 1);
  std::vector<T> work(best_size(best));
  return run(entry, arguments..., work.data(), best_size(best));
}

template <class T>
matrix<T> upper_part(const matrix<T>& a, int rows) {
  matrix<T> r(rows, a.cols);
  for (int j = 0; j < a.cols; ++j) {
    for (int i = 0; i <= std::min(j, rows - 1); ++i) r(i, j) = a(i, j);
  }
  return r;
}

TYPED_TEST(Orthogonal, FactorsAndAppliesQ) {
  using T = TypeParam;
  constexpr char adjoint = is_complex<T> ? 'C' : 'T';
  struct sizes {
    int m, n;
  };
  for (const auto& [m, n] : {sizes{1, 1}, {12, 12}, {40, 7}}) {
    const matrix<T> a = random_matrix<T>(m, n, 71);
    matrix<T> qr = a;
    std::vector<T> tau(n);
    ASSERT_EQ(0, with_work<T>(pick<T>(sgeqrf, dgeqrf, cgeqrf, zgeqrf), m, n, qr.data(), m, tau.data()));
    matrix<T> q = qr;
    ASSERT_EQ(0, with_work<T>(pick<T>(sorgqr, dorgqr, cungqr, zungqr), m, n, n, q.data(), m, tau.data()));
    expect_near(q * upper_part(qr, n), a, "Q R = A");
    expect_near(op(form::adjoint, q) * q, identity<T>(n), "Q^H Q = I");
    // Q^H A = (R; 0) from the left, A^H Q = (R^H 0) from the right.
    constexpr auto ormqr = pick<T>(sormqr, dormqr, cunmqr, zunmqr);
    matrix<T> left = a, right = op(form::adjoint, a);
    ASSERT_EQ(0, with_work<T>(ormqr, 'l', adjoint, m, n, n, qr.data(), m, tau.data(), left.data(), m));
    expect_near(left, upper_part(qr, m), "Q^H A = R");
    ASSERT_EQ(0, with_work<T>(ormqr, 'R', 'N', n, m, n, qr.data(), m, tau.data(), right.data(), n));
    expect_near(right, op(form::adjoint, upper_part(qr, m)), "A^H Q = R^H");
  }
}

/// geqp3 with its work, after a query that must not touch the permutation.
template <class T>
int pivoted_qr(matrix<T>& a, int* jpvt, std::vector<T>& tau) {
  constexpr auto geqp3 = pick<T>(sgeqp3, dgeqp3, cgeqp3, zgeqp3);
  T best{};
  exact_ints not_used(0);
  std::vector<real_of<T>> rwork(2 * a.cols);
  if constexpr (is_complex<T>) {
    EXPECT_EQ(0, run(geqp3, a.rows, a.cols, a.data(), a.rows, not_used.data(), tau.data(), &best, -1,
                     rwork.data()));
    std::vector<T> work(best_size(best));
    return run(geqp3, a.rows, a.cols, a.data(), a.rows, jpvt, tau.data(), work.data(), best_size(best),
               rwork.data());
  } else {
    EXPECT_EQ(0, run(geqp3, a.rows, a.cols, a.data(), a.rows, not_used.data(), tau.data(), &best, -1));
    std::vector<T> work(best_size(best));
    return run(geqp3, a.rows, a.cols, a.data(), a.rows, jpvt, tau.data(), work.data(), best_size(best));
  }
}

TYPED_TEST(Orthogonal, PermutesColumns) {
  using T = TypeParam;
  constexpr int m = 11, n = 8, fixed = 5;
  const matrix<T> a = random_matrix<T>(m, n, 72);
  matrix<T> qr = a;
  std::vector<T> tau(n);
  exact_ints jpvt(n);
  jpvt[fixed] = 1;  // this column goes to the front
  ASSERT_EQ(0, pivoted_qr(qr, jpvt.data(), tau));
  EXPECT_EQ(fixed + 1, jpvt[0]);
  matrix<T> permuted(m, n), q = qr;
  std::vector<bool> seen(n);
  for (int j = 0; j < n; ++j) {
    ASSERT_TRUE(jpvt[j] >= 1 && jpvt[j] <= n && !seen[jpvt[j] - 1]);
    seen[jpvt[j] - 1] = true;
    for (int i = 0; i < m; ++i) permuted(i, j) = a(i, jpvt[j] - 1);
  }
  ASSERT_EQ(0, with_work<T>(pick<T>(sorgqr, dorgqr, cungqr, zungqr), m, n, n, q.data(), m, tau.data()));
  expect_near(q * upper_part(qr, n), permuted, "Q R = A P");
  for (int j = 2; j < n; ++j) EXPECT_LE(abs1(qr(j, j)), 2 * abs1(qr(j - 1, j - 1))) << "R's diagonal falls";
}

template <class T>
int least_squares(matrix<T> a, matrix<T>& b, int* jpvt, int* rank) {
  constexpr auto gelsy = pick<T>(sgelsy, dgelsy, cgelsy, zgelsy);
  const auto rcond = static_cast<real_of<T>>(100 * kEpsilon<T>);
  const int m = a.rows, n = a.cols, ldb = b.rows;
  T best{};
  exact_ints not_used(0);
  std::vector<real_of<T>> rwork(2 * n);
  if constexpr (is_complex<T>) {
    EXPECT_EQ(0, run(gelsy, m, n, b.cols, a.data(), m, b.data(), ldb, not_used.data(), rcond, rank, &best, -1,
                     rwork.data()));
    std::vector<T> work(best_size(best));
    return run(gelsy, m, n, b.cols, a.data(), m, b.data(), ldb, jpvt, rcond, rank, work.data(),
               best_size(best), rwork.data());
  } else {
    EXPECT_EQ(0,
              run(gelsy, m, n, b.cols, a.data(), m, b.data(), ldb, not_used.data(), rcond, rank, &best, -1));
    std::vector<T> work(best_size(best));
    return run(gelsy, m, n, b.cols, a.data(), m, b.data(), ldb, jpvt, rcond, rank, work.data(),
               best_size(best));
  }
}

TYPED_TEST(Orthogonal, LeastSquaresOfDeficientRank) {
  using T = TypeParam;
  constexpr int m = 12, n = 7, true_rank = 4;
  const matrix<T> a = random_matrix<T>(m, true_rank, 73) * random_matrix<T>(true_rank, n, 74);
  const matrix<T> b = random_matrix<T>(m, 2, 75);
  matrix<T> solution = b;
  exact_ints jpvt(n);
  poisoned<int> rank(1);
  rank[0] = 77;
  ASSERT_EQ(0, least_squares(a, solution, jpvt.data(), rank.data()));
  EXPECT_TRUE(rank.intact());
  EXPECT_EQ(true_rank, rank[0]);
  matrix<T> x(n, 2);
  for (int j = 0; j < 2; ++j) std::copy_n(&solution(0, j), n, &x(0, j));
  // The residual is orthogonal to the range of A.
  matrix<T> residual = a * x;
  for (std::size_t i = 0; i < residual.values.size(); ++i)
    residual.values[i] = residual.values[i] - b.values[i];
  EXPECT_LE(one_norm(op(form::adjoint, a) * residual), 1e3 * m * kEpsilon<T> * one_norm(a) * one_norm(b));
}

TEST(OrthogonalDouble, Gels) {
  constexpr int m = 12, n = 5;
  const matrix<double> a = random_matrix<double>(m, n, 76), exact = random_matrix<double>(n, 2, 77);
  matrix<double> factors = a, b = a * exact;
  ASSERT_EQ(0, with_work<double>(dgels, 'N', m, n, 2, factors.data(), m, b.data(), m));
  for (int j = 0; j < 2; ++j) {
    for (int i = 0; i < n; ++i) EXPECT_NEAR(exact(i, j), b(i, j), 1e-12);
  }
  // The minimum-norm solution of A^T Y = C, which is in the range of A: Y = A (A^T A)^-1 C.
  factors = a;
  matrix<double> y(m, 1);
  std::copy_n(exact.values.data(), n, y.data());
  ASSERT_EQ(0, with_work<double>(dgels, 't', m, n, 1, factors.data(), m, y.data(), m));
  matrix<double> c(n, 1);
  std::copy_n(exact.values.data(), n, c.data());
  expect_near(y, a * (inverse_of(op(form::transposed, a) * a) * c), "minimum norm");
}

}  // namespace
}  // namespace qel::test
