// SPDX-License-Identifier: BSD-3-Clause
// Packed factorisations and triangular matrices through the public entries, against dense products of the
// same matrix.
#include <algorithm>

#include "tests/entry/support.h"

namespace qel::test {
namespace {

template <class T>
class Packed : public testing::Test {};
TYPED_TEST_SUITE(Packed, all_types);
template <class T>
class PackedReal : public testing::Test {};
TYPED_TEST_SUITE(PackedReal, real_types);
template <class T>
class PackedHermitian : public testing::Test {};
using complex_types = testing::Types<complex8, complex16>;
TYPED_TEST_SUITE(PackedHermitian, complex_types);

constexpr int n = 14;
constexpr char kTriangles[] = {'U', 'L'};

TYPED_TEST(Packed, PositiveDefinite) {
  using T = TypeParam;
  using R = real_of<T>;
  const matrix<T> a = mirrored(random_matrix<T>(n, n, 61), form::adjoint, true),
                  b = random_matrix<T>(n, 2, 62);
  for (const char uplo : kTriangles) {
    std::vector<T> factor = packed(uplo, a);
    ASSERT_EQ(0, run(pick<T>(spptrf, dpptrf, cpptrf, zpptrf), uplo, n, factor.data()));
    matrix<T> x = b;
    ASSERT_EQ(0, run(pick<T>(spptrs, dpptrs, cpptrs, zpptrs), uplo, n, 2, factor.data(), x.data(), n));
    expect_near(a * x, b, "A X = B");
    std::vector<T> inverse = factor;
    ASSERT_EQ(0, run(pick<T>(spptri, dpptri, cpptri, zpptri), uplo, n, inverse.data()));
    const matrix<T> full = unpacked(uplo, n, inverse, form::adjoint);
    expect_near(a * full, identity<T>(n), "A inv(A)");
    R rcond = -1;
    const R norm = static_cast<R>(one_norm(a));
    std::vector<T> work(3 * n);
    if constexpr (is_complex<T>) {
      std::vector<R> rwork(n);
      ASSERT_EQ(0, run(pick<T>(sppcon, dppcon, cppcon, zppcon), uplo, n, factor.data(), norm, &rcond,
                       work.data(), rwork.data()));
    } else {
      std::vector<int> iwork(n);
      ASSERT_EQ(0, run(pick<T>(sppcon, dppcon, cppcon, zppcon), uplo, n, factor.data(), norm, &rcond,
                       work.data(), iwork.data()));
    }
    expect_rcond(rcond, a, full);
  }
}

/// Symmetric or Hermitian with a diagonal of 0, so that blocks of order 2, marked by pivots below 0, occur.
template <class T>
matrix<T> indefinite_matrix(form how) {
  matrix<T> a = mirrored(random_matrix<T>(n, n, 63), how, false);
  for (int i = 0; i < n; ++i) a(i, i) = T{};
  return a;
}

/// Factors and solves when it is made, testing both.
template <class T>
struct indefinite_case {
  char uplo;
  matrix<T> a, inverse;
  std::vector<T> factor;
  exact_ints pivots{n};
  double bound;

  indefinite_case(form how, char triangle, auto trf, auto trs)
      : uplo(triangle), a(indefinite_matrix<T>(how)), inverse(inverse_of(a)), factor(packed(uplo, a)) {
    bound = 30 * n * kEpsilon<T> * one_norm(a) * one_norm(inverse);
    EXPECT_EQ(0, run(trf, uplo, n, factor.data(), pivots.data()));
    EXPECT_NE(0, std::count_if(pivots.begin(), pivots.end(), [](int p) { return p < 0; }));
    EXPECT_TRUE(std::all_of(pivots.begin(), pivots.end(), [](int p) { return p && std::abs(p) <= n; }));
    const matrix<T> b = random_matrix<T>(n, 2, 64);
    matrix<T> x = b;
    EXPECT_EQ(0, run(trs, uplo, n, 2, factor.data(), pivots.data(), x.data(), n));
    EXPECT_LE(distance(a * x, b), bound);
  }
};

template <class T>
void expect_condition_and_inverse(form how, indefinite_case<T>& f, auto con, auto tri) {
  real_of<T> rcond = -1;
  const auto norm = static_cast<real_of<T>>(one_norm(f.a));
  std::vector<T> work(2 * n);
  std::vector<int> iwork(n);
  if constexpr (is_complex<T>) {
    EXPECT_EQ(0, run(con, f.uplo, n, f.factor.data(), f.pivots.data(), norm, &rcond, work.data()));
  } else {
    EXPECT_EQ(0,
              run(con, f.uplo, n, f.factor.data(), f.pivots.data(), norm, &rcond, work.data(), iwork.data()));
  }
  expect_rcond(rcond, f.a, f.inverse);
  EXPECT_EQ(0, run(tri, f.uplo, n, f.factor.data(), f.pivots.data(), work.data()));
  EXPECT_LE(distance(f.a * unpacked(f.uplo, n, f.factor, how), identity<T>(n)), f.bound);
}

TYPED_TEST(Packed, Symmetric) {
  using T = TypeParam;
  for (const char uplo : kTriangles) {
    indefinite_case<T> f(form::transposed, uplo, pick<T>(ssptrf, dsptrf, csptrf, zsptrf),
                         pick<T>(ssptrs, dsptrs, csptrs, zsptrs));
    expect_condition_and_inverse(form::transposed, f, pick<T>(sspcon, dspcon, cspcon, zspcon),
                                 pick<T>(ssptri, dsptri, csptri, zsptri));
  }
}

TYPED_TEST(PackedHermitian, Factors) {
  using T = TypeParam;
  for (const char uplo : kTriangles) {
    indefinite_case<T> f(form::adjoint, uplo, pick<T>(0, 0, chptrf, zhptrf), pick<T>(0, 0, chptrs, zhptrs));
    expect_condition_and_inverse(form::adjoint, f, pick<T>(0, 0, chpcon, zhpcon),
                                 pick<T>(0, 0, chptri, zhptri));
  }
}

TYPED_TEST(Packed, Triangular) {
  using T = TypeParam;
  using R = real_of<T>;
  const matrix<T> b = random_matrix<T>(n, 2, 66);
  for (const char uplo : kTriangles) {
    std::vector<T> ap = packed(uplo, heavy_matrix<T>(n, 65));
    const matrix<T> a = unpacked(uplo, n, ap, form::plain);
    for (const char trans : {'N', 't', 'C'}) {
      matrix<T> x = b;
      ASSERT_EQ(0,
                run(pick<T>(stptrs, dtptrs, ctptrs, ztptrs), uplo, trans, 'n', n, 2, ap.data(), x.data(), n));
      expect_near(op(form_of(trans), a) * x, b, "op(A) X = B");
    }
    std::vector<T> inverse = ap;
    ASSERT_EQ(0, run(pick<T>(stptri, dtptri, ctptri, ztptri), uplo, 'N', n, inverse.data()));
    const matrix<T> full = unpacked(uplo, n, inverse, form::plain);
    expect_near(a * full, identity<T>(n), "A inv(A)");
    R rcond = -1;
    std::vector<T> work(3 * n);
    std::vector<R> rwork(n);
    std::vector<int> iwork(n);
    constexpr auto tpcon = pick<T>(stpcon, dtpcon, ctpcon, ztpcon);
    if constexpr (is_complex<T>) {
      ASSERT_EQ(0, run(tpcon, '1', uplo, 'N', n, ap.data(), &rcond, work.data(), rwork.data()));
    } else {
      ASSERT_EQ(0, run(tpcon, '1', uplo, 'N', n, ap.data(), &rcond, work.data(), iwork.data()));
      R same = -1;
      constexpr auto trcon = pick<T>(strcon, dtrcon, 0, 0);
      ASSERT_EQ(0, run(trcon, '1', uplo, 'N', n, a.values.data(), n, &same, work.data(), iwork.data()));
      EXPECT_NEAR(rcond, same, 10 * n * kEpsilon<T>);
    }
    expect_rcond(rcond, a, full);
    ap[uplo == 'U' ? 2 : n] = T{};  // the second diagonal element
    EXPECT_EQ(2, run(pick<T>(stptri, dtptri, ctptri, ztptri), uplo, 'N', n, ap.data()));
  }
}

TYPED_TEST(PackedReal, ConditionFromFullCholeskyFactor) {
  using T = TypeParam;
  const matrix<T> a = mirrored(random_matrix<T>(n, n, 67), form::transposed, true);
  for (const char uplo : kTriangles) {
    std::vector<T> ap = packed(uplo, a), work(3 * n);
    ASSERT_EQ(0, run(pick<T>(spptrf, dpptrf, 0, 0), uplo, n, ap.data()));
    const matrix<T> factor = unpacked(uplo, n, ap, form::plain);
    T rcond = -1;
    std::vector<int> iwork(n);
    ASSERT_EQ(0, run(pick<T>(spocon, dpocon, 0, 0), uplo, n, factor.values.data(), n,
                     static_cast<T>(one_norm(a)), &rcond, work.data(), iwork.data()));
    expect_rcond(rcond, a, inverse_of(a));
  }
}

}  // namespace
}  // namespace qel::test
