// SPDX-License-Identifier: BSD-3-Clause
// Singular values and eigenvalues through the public entries: A = U S V^H, A V = V D, ranges, balancing, and
// the integers that come back.
#include <algorithm>

#include "tests/entry/support.h"

namespace qel::test {
namespace {

template <class T>
class Spectral : public testing::Test {};
TYPED_TEST_SUITE(Spectral, all_types);

template <class T>
matrix<T> scaled_columns(matrix<T> a, const std::vector<real_of<T>>& factors) {
  for (int j = 0; j < a.cols; ++j) {
    for (int i = 0; i < a.rows; ++i) a(i, j) = from_real<T>(factors[j]) * a(i, j);
  }
  return a;
}

template <class T>
struct svd {
  matrix<T> u, vt;
  std::vector<real_of<T>> s;
};

template <class T>
void expect_svd(const matrix<T>& a, const svd<T>& f) {
  expect_near(scaled_columns(f.u, f.s) * f.vt, a, "U S V^H = A");
  expect_near(op(form::adjoint, f.u) * f.u, identity<T>(f.u.cols), "U^H U = I");
  EXPECT_TRUE(std::is_sorted(f.s.rbegin(), f.s.rend()));
}

/// Calls twice, for the size and with the work; after stands for what follows lwork.
template <class T, class... B, class F, class... A>
int sized(F entry, std::tuple<A...> before, B... after) {
  T best{};
  const auto once = [&](T* work, int lwork) {
    return std::apply([&](const A&... a) { return run(entry, a..., work, lwork, after...); }, before);
  };
  EXPECT_EQ(0, once(&best, -1));
  std::vector<T> work(best_size(best));
  return once(work.data(), best_size(best));
}

TYPED_TEST(Spectral, SingularValues) {
  using T = TypeParam;
  using R = real_of<T>;
  constexpr auto gesvd = pick<T>(sgesvd, dgesvd, cgesvd, zgesvd);
  constexpr auto gesdd = pick<T>(sgesdd, dgesdd, cgesdd, zgesdd);
  struct sizes {
    int m, n;
  };
  for (const auto& [m, n] : {sizes{1, 1}, {9, 6}, {6, 9}, {30, 30}}) {
    const int least = std::min(m, n);
    const matrix<T> a = random_matrix<T>(m, n, 81);
    matrix<T> copy = a;
    svd<T> f{{m, least}, {least, n}, std::vector<R>(least)};
    const auto svd_arguments =
        std::tuple('s', 'S', m, n, copy.data(), m, f.s.data(), f.u.data(), m, f.vt.data(), least);
    std::vector<R> rwork(7 * 30 * 30);
    if constexpr (is_complex<T>) {
      ASSERT_EQ(0, sized<T>(gesvd, svd_arguments, rwork.data()));
    } else {
      ASSERT_EQ(0, sized<T>(gesvd, svd_arguments));
    }
    expect_svd(a, f);
    const std::vector<R> by_iteration = f.s;
    copy = a;
    std::vector<int> iwork(8 * least, 42);
    const auto sdd_arguments =
        std::tuple('S', m, n, copy.data(), m, f.s.data(), f.u.data(), m, f.vt.data(), least);
    if constexpr (is_complex<T>) {
      ASSERT_EQ(0, sized<T>(gesdd, sdd_arguments, rwork.data(), iwork.data()));
    } else {
      ASSERT_EQ(0, sized<T>(gesdd, sdd_arguments, iwork.data()));
    }
    expect_svd(a, f);
    for (int i = 0; i < least; ++i) EXPECT_NEAR(by_iteration[i], f.s[i], 100 * m * kEpsilon<T>);
    // Without vectors u and vt may be absent.
    copy = a;
    const auto values_only = std::tuple('N', 'n', m, n, copy.data(), m, f.s.data(), nullptr, 1, nullptr, 1);
    if constexpr (is_complex<T>) {
      ASSERT_EQ(0, sized<T>(gesvd, values_only, rwork.data()));
    } else {
      ASSERT_EQ(0, sized<T>(gesvd, values_only));
    }
    EXPECT_NEAR(by_iteration[0], f.s[0], 100 * m * kEpsilon<T>);
  }
}

using complex_matrix = matrix<complex16>;

/// Eigenvectors as the real routines store them, or as they stand, in double.
template <class T>
complex_matrix vectors(const matrix<T>& v, const std::vector<real_of<T>>& imaginary) {
  complex_matrix w(v.rows, v.cols);
  for (int j = 0; j < v.cols; ++j) {
    for (int i = 0; i < v.rows; ++i) {
      if constexpr (is_complex<T>) {
        w(i, j) = {v(i, j).real, v(i, j).imag};
      } else if (imaginary[j] == 0) {
        w(i, j) = {v(i, j), 0};
      } else {
        const int first = imaginary[j] > 0 ? j : j - 1;
        w(i, j) = {v(i, first), imaginary[j] > 0 ? v(i, first + 1) : -v(i, first + 1)};
      }
    }
  }
  return w;
}
template <class T>
complex_matrix widened(const matrix<T>& a) {
  return vectors(a, std::vector<real_of<T>>(a.cols));
}

/// One call of geevx with everything asked for.
template <class T>
struct eigen {
  int n;
  std::vector<T> w;                    // complex types
  std::vector<real_of<T>> real, imag;  // real types
  matrix<T> left, right;
  poisoned<int> ilo{1}, ihi{1};
  std::vector<real_of<T>> scale, rconde, rcondv;
  real_of<T> abnrm = -1;
  explicit eigen(int order)
      : n(order), w(n), real(n), imag(n), left(n, n), right(n, n), scale(n), rconde(n), rcondv(n) {}

  int compute(matrix<T> a) {
    constexpr auto geevx = pick<T>(sgeevx, dgeevx, cgeevx, zgeevx);
    if constexpr (is_complex<T>) {
      std::vector<real_of<T>> rwork(2 * n);
      return sized<T>(
          geevx,
          std::tuple('B', 'V', 'v', 'B', n, a.data(), n, w.data(), left.data(), n, right.data(), n,
                     ilo.data(), ihi.data(), scale.data(), &abnrm, rconde.data(), rcondv.data()),
          rwork.data());
    } else {
      std::vector<int> iwork(2 * n, 42);
      return sized<T>(geevx,
                      std::tuple('B', 'V', 'v', 'B', n, a.data(), n, real.data(), imag.data(), left.data(), n,
                                 right.data(), n, ilo.data(), ihi.data(), scale.data(), &abnrm, rconde.data(),
                                 rcondv.data()),
                      iwork.data());
    }
  }
};

TYPED_TEST(Spectral, GeneralEigenvalues) {
  using T = TypeParam;
  for (const int n : {1, 2, 17}) {
    matrix<T> a = random_matrix<T>(n, n, 82);
    // A first column of zeros below the diagonal can be split off: balancing must find it.
    for (int i = 1; i < n; ++i) a(i, 0) = T{};
    eigen<T> e(n);
    ASSERT_EQ(0, e.compute(a));
    EXPECT_TRUE(e.ilo.intact() && e.ihi.intact());
    EXPECT_TRUE(e.ilo[0] >= 1 && e.ihi[0] <= n);
    EXPECT_EQ(n == 17 ? 2 : 1, e.ilo[0]);
    complex_matrix d(n, n);
    for (int i = 0; i < n; ++i) {
      if constexpr (is_complex<T>) {
        d(i, i) = {e.w[i].real, e.w[i].imag};
      } else {
        d(i, i) = {e.real[i], e.imag[i]};
      }
    }
    const complex_matrix wide_a = widened(a), right = vectors(e.right, e.imag),
                         left = vectors(e.left, e.imag);
    const double bound = 100 * n * kEpsilon<T> * (1 + one_norm(a)) * n;
    EXPECT_LE(distance(wide_a * right, right * d), bound) << "A V = V D";
    const complex_matrix adjoint = op(form::adjoint, left);
    EXPECT_LE(distance(adjoint * wide_a, d * adjoint), bound) << "U^H A = D U^H";
    for (int i = 0; i < n; ++i) EXPECT_TRUE(e.rconde[i] > 0 && e.rconde[i] <= 1.001 && e.rcondv[i] > 0);
  }
}

// gebak undoes a known balancing: scaled by powers of two, then rows exchanged.
TYPED_TEST(Spectral, BacktransformsBalancedVectors) {
  using T = TypeParam;
  using R = real_of<T>;
  constexpr auto gebak = pick<T>(sgebak, dgebak, cgebak, zgebak);
  matrix<T> v = random_matrix<T>(4, 2, 83), left = v;
  const matrix<T> before = v;
  const std::vector<R> scale = {3, 2, 8, 2};  // 1 was exchanged with 3; 2 to 3 scaled; 4 exchanged with 2
  ASSERT_EQ(0, run(gebak, 'B', 'R', 4, 2, 3, scale.data(), 2, v.data(), 4));
  ASSERT_EQ(0, run(gebak, 'B', 'l', 4, 2, 3, scale.data(), 2, left.data(), 4));
  for (int j = 0; j < 2; ++j) {
    for (auto [got, up] : {std::pair{&v, true}, {&left, false}}) {
      std::vector<T> want;
      for (int i = 0; i < 4; ++i) want.push_back(before(i, j));
      for (int i : {1, 2}) want[i] = from_real<T>(up ? scale[i] : 1 / scale[i]) * want[i];
      std::swap(want[0], want[2]);
      std::swap(want[3], want[1]);
      for (int i = 0; i < 4; ++i) EXPECT_EQ(wide(want[i]), wide((*got)(i, j))) << up << i;
    }
  }
}

template <class T>
int packed_eigen(char jobz, char range, char uplo, int n, std::vector<T> ap, int il, int iu, int* m,
                 std::vector<real_of<T>>& w, T* z, int* ifail) {
  using R = real_of<T>;
  constexpr auto spevx = pick<T>(sspevx, dspevx, chpevx, zhpevx);
  std::vector<T> work(8 * n);
  std::vector<R> rwork(7 * n);
  std::vector<int> iwork(5 * n, 42);
  if constexpr (is_complex<T>) {
    return run(spevx, jobz, range, uplo, n, ap.data(), R(-10), R(1), il, iu, R(0), m, w.data(), z, n,
               work.data(), rwork.data(), iwork.data(), ifail);
  } else {
    return run(spevx, jobz, range, uplo, n, ap.data(), R(-10), R(1), il, iu, R(0), m, w.data(), z, n,
               work.data(), iwork.data(), ifail);
  }
}

TYPED_TEST(Spectral, SelectedEigenvaluesOfPackedMatrices) {
  using T = TypeParam;
  using R = real_of<T>;
  constexpr int n = 13, il = 3, iu = 7;
  const matrix<T> a = mirrored(random_matrix<T>(n, n, 84), form::adjoint, false);
  for (const char uplo : {'U', 'l'}) {
    const std::vector<T> ap = packed(uplo == 'U' ? 'U' : 'L', a);
    std::vector<R> all(n), some(n);
    poisoned<int> m(1);
    exact_ints ifail(n), not_used(0);
    ASSERT_EQ(0, packed_eigen<T>('N', 'A', uplo, n, ap, 0, 0, m.data(), all, nullptr, not_used.data()));
    ASSERT_EQ(n, m[0]);
    EXPECT_TRUE(m.intact() && std::is_sorted(all.begin(), all.end()));
    matrix<T> z(n, n);
    std::fill(ifail.begin(), ifail.end(), 77);
    ASSERT_EQ(0, packed_eigen<T>(uplo == 'U' ? 'V' : 'v', 'i', uplo, n, ap, il, iu, m.data(), some, z.data(),
                                 ifail.data()));
    ASSERT_EQ(iu - il + 1, m[0]);
    EXPECT_EQ(m[0], std::count(ifail.begin(), ifail.begin() + m[0], 0));
    EXPECT_EQ(n - m[0], std::count(ifail.begin() + m[0], ifail.end(), 77)) << "the rest keeps its values";
    for (int k = 0; k < m[0]; ++k) EXPECT_NEAR(all[il - 1 + k], some[k], 100 * n * kEpsilon<T>);
    z.cols = m[0];
    z.values.resize(static_cast<std::size_t>(n) * z.cols);
    some.resize(z.cols);
    EXPECT_LE(distance(a * z, scaled_columns(z, some)), 100 * n * kEpsilon<T> * one_norm(a));
    ASSERT_EQ(0,
              packed_eigen<T>('n', 'V', uplo, n, ap, 0, 0, m.data(), some = all, nullptr, not_used.data()));
    EXPECT_EQ(std::count_if(all.begin(), all.end(), [](R w) { return w <= 1; }), m[0]);
  }
}

// The whole chain that geevx stands for: balance, reduce, form Q, iterate, vectors, transform back.
TEST(SpectralComplex16, EigenvaluesStepByStep) {
  using T = complex16;
  constexpr int n = 12;
  matrix<T> a = random_matrix<T>(n, n, 85);
  for (int i = 1; i < n; ++i) a(i, 0) = T{};
  matrix<T> h = a;
  poisoned<int> ilo(1), ihi(1), used(1);
  std::vector<double> scale(n), rwork(n);
  std::vector<T> tau(n), w(n), work(2 * n);
  ASSERT_EQ(0, run(zgebal, 'B', n, h.data(), n, ilo.data(), ihi.data(), scale.data()));
  EXPECT_TRUE(ilo.intact() && ihi.intact());
  EXPECT_TRUE(ilo[0] == 2 && ihi[0] == n);
  ASSERT_EQ(0, sized<T>(zgehrd, std::tuple(n, ilo[0], ihi[0], h.data(), n, tau.data())));
  matrix<T> q = h;
  ASSERT_EQ(0, sized<T>(zunghr, std::tuple(n, ilo[0], ihi[0], q.data(), n, tau.data())));
  ASSERT_EQ(0, sized<T>(zhseqr, std::tuple('S', 'V', n, ilo[0], ihi[0], h.data(), n, w.data(), q.data(), n)));
  // Selected vectors of T itself: numbers 2 and 9. The others' columns stay untouched.
  const int wanted[n] = {0, 1, 0, 0, 0, 0, 0, 0, 1, 0, 0, 0};
  matrix<T> triangle(n, n), some(n, 2);
  for (int j = 0; j < n; ++j) std::copy_n(&h(0, j), j + 1, &triangle(0, j));
  ASSERT_EQ(0, run(ztrevc, 'R', 's', wanted, n, triangle.data(), n, nullptr, 1, some.data(), n, 2,
                   used.data(), work.data(), rwork.data()));
  EXPECT_EQ(2, used[0]);
  EXPECT_TRUE(used.intact());
  matrix<T> d2(2, 2);
  d2(0, 0) = w[1];
  d2(1, 1) = w[8];
  expect_near(triangle * some, some * d2, "T x = x w");
  // All vectors, multiplied by Q, brought back to A.
  exact_ints not_read(0);
  ASSERT_EQ(0, run(ztrevc, 'R', 'B', not_read.data(), n, triangle.data(), n, nullptr, 1, q.data(), n, n,
                   used.data(), work.data(), rwork.data()));
  EXPECT_EQ(n, used[0]);
  ASSERT_EQ(0, run(zgebak, 'B', 'R', n, ilo[0], ihi[0], scale.data(), n, q.data(), n));
  matrix<T> d(n, n);
  for (int i = 0; i < n; ++i) d(i, i) = w[i];
  expect_near(a * q, q * d, "A V = V D");
}

}  // namespace
}  // namespace qel::test
