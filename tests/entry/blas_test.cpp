// SPDX-License-Identifier: BSD-3-Clause
// BLAS, norms and the scaled copy through the public entries: each name does its own operation on its own
// type, with strides of both signs reaching the core as such. Data are small integers, so results are exact.
#include <algorithm>

#include "tests/entry/support.h"

extern "C" {
qel::complex8 cdotu_(const int*, const qel::complex8*, const int*, const qel::complex8*, const int*);
qel::complex16 zdotu_(const int*, const qel::complex16*, const int*, const qel::complex16*, const int*);
qel::complex8 cdotc_(const int*, const qel::complex8*, const int*, const qel::complex8*, const int*);
qel::complex16 zdotc_(const int*, const qel::complex16*, const int*, const qel::complex16*, const int*);
}

namespace qel::test {
namespace {

template <class T>
class Blas : public testing::Test {};
TYPED_TEST_SUITE(Blas, all_types);

/// Integers from -8 to 8 in both parts.
template <class T>
matrix<T> integers(int m, int n, unsigned seed) {
  std::mt19937 engine(seed);
  std::uniform_int_distribution<int> uniform(-8, 8);
  matrix<T> a(m, n);
  for (T& value : a.values) {
    const int re = uniform(engine);
    value = make<T>(re, uniform(engine));
  }
  return a;
}

/// A vector of n elements (a one-column matrix) as an array of stride inc, with 99 in the gaps.
template <class T>
std::vector<T> strided(const matrix<T>& x, int inc) {
  std::vector<T> array(1 + (x.rows - 1) * std::abs(inc), make<T>(99));
  for (int i = 0; i < x.rows; ++i) array[(inc > 0 ? i : x.rows - 1 - i) * std::abs(inc)] = x(i, 0);
  return array;
}

template <class T>
void expect_same(const std::vector<T>& got, const std::vector<T>& want, const char* what) {
  ASSERT_EQ(got.size(), want.size());
  for (std::size_t i = 0; i < got.size(); ++i)
    EXPECT_EQ(wide(got[i]), wide(want[i])) << what << ", element " << i;
}

struct stride_pair {
  int x, y;
};
constexpr stride_pair kStrides[] = {{1, 1}, {-1, 1}, {2, -3}, {-2, -1}};
constexpr int n = 7;

TYPED_TEST(Blas, TwoVectors) {
  using T = TypeParam;
  const matrix<T> x = integers<T>(n, 1, 1), y = integers<T>(n, 1, 2);
  const T alpha = make<T>(3, -2);
  T dot{}, dot_conjugate{};
  matrix<T> sum = y;
  for (int i = 0; i < n; ++i) {
    dot += x(i, 0) * y(i, 0);
    dot_conjugate += conj(x(i, 0)) * y(i, 0);
    sum(i, 0) += alpha * x(i, 0);
  }
  for (const auto& [incx, incy] : kStrides) {
    const std::vector<T> xs = strided(x, incx), ys = strided(y, incy);
    std::vector<T> target = ys;
    call(pick<T>(scopy, dcopy, ccopy, zcopy), n, xs.data(), incx, target.data(), incy);
    expect_same(target, strided(x, incy), "copy");
    target = ys;
    call(pick<T>(saxpy, daxpy, caxpy, zaxpy), n, alpha, xs.data(), incx, target.data(), incy);
    expect_same(target, strided(sum, incy), "axpy");
    if constexpr (is_complex<T>) {
      T result[3] = {make<T>(99), {}, make<T>(99)};
      call(pick<T>(0, 0, cdotu, zdotu), &result[1], n, xs.data(), incx, ys.data(), incy);
      EXPECT_EQ(wide(dot), wide(result[1]));
      call(pick<T>(0, 0, cdotc, zdotc), &result[1], n, xs.data(), incx, ys.data(), incy);
      EXPECT_EQ(wide(dot_conjugate), wide(result[1]));
      EXPECT_TRUE(result[0] == make<T>(99) && result[2] == make<T>(99));
      EXPECT_EQ(wide(dot), wide(call(pick<T>(0, 0, cdotu_, zdotu_), n, xs.data(), incx, ys.data(), incy)));
      EXPECT_EQ(wide(dot_conjugate),
                wide(call(pick<T>(0, 0, cdotc_, zdotc_), n, xs.data(), incx, ys.data(), incy)));
    } else {
      EXPECT_EQ(dot, call(pick<T>(sdot, ddot, 0, 0), n, xs.data(), incx, ys.data(), incy));
    }
  }
}

TYPED_TEST(Blas, OneVector) {
  using T = TypeParam;
  matrix<T> x = integers<T>(n, 1, 3);
  x(2, 0) = make<T>(-9, 8);
  x(3, 0) = make<T>(1);
  x(4, 0) = make<T>(0);
  double sum = 0, squares = 0;
  matrix<T> scaled = x, halved = x;
  for (int i = 0; i < n; ++i) {
    sum += abs1(x(i, 0));
    squares += std::norm(wide(x(i, 0)));
    scaled(i, 0) = make<T>(3, -2) * x(i, 0);
    halved(i, 0) = make<T>(0.5) * x(i, 0);
  }
  for (const int inc : {1, 2, -2}) {
    const std::vector<T> xs = strided(x, inc);
    std::vector<T> target = xs;
    call(pick<T>(sscal, dscal, cscal, zscal), n, make<T>(3, -2), target.data(), inc);
    expect_same(target, strided(scaled, inc), "scal");
    if constexpr (is_complex<T>) {
      target = xs;
      call(pick<T>(0, 0, csscal, zdscal), n, real_of<T>(0.5), target.data(), inc);
      expect_same(target, strided(halved, inc), "scal by a real number");
    }
    EXPECT_EQ(sum, call(pick<T>(sasum, dasum, scasum, dzasum), n, xs.data(), inc));
    if constexpr (std::is_same_v<real_of<T>, double>) {
      EXPECT_NEAR(std::sqrt(squares), call(pick<T>(0, dnrm2, 0, dznrm2), n, xs.data(), inc), 1e-14 * sum);
    }
    EXPECT_EQ(inc > 0 ? 3 : 0, call(pick<T>(isamax, idamax, icamax, izamax), n, xs.data(), inc));
    EXPECT_EQ(inc > 0 ? 5 : 0, call(pick<T>(isamin, idamin, icamin, izamin), n, xs.data(), inc));
  }
}

/// alpha A x + beta y.
template <class T>
matrix<T> product(T alpha, const matrix<T>& a, const matrix<T>& x, T beta, const matrix<T>& y) {
  matrix<T> z = a * x;
  for (std::size_t i = 0; i < z.values.size(); ++i) z.values[i] = alpha * z.values[i] + beta * y.values[i];
  return z;
}

template <class T>
void clear_outside_band(matrix<T>& a, int kl, int ku) {
  for (int j = 0; j < a.cols; ++j) {
    for (int i = 0; i < a.rows; ++i) {
      if (i - j > kl || j - i > ku) a(i, j) = T{};
    }
  }
}

TYPED_TEST(Blas, GeneralAndBandMatrixTimesVector) {
  using T = TypeParam;
  constexpr int m = 5, kl = 2, ku = 1;
  const matrix<T> a = integers<T>(m, n, 4);
  matrix<T> band = a, ab(kl + ku + 1, n);
  clear_outside_band(band, kl, ku);
  for (int j = 0; j < n; ++j) {
    for (int i = std::max(0, j - ku); i <= std::min(m - 1, j + kl); ++i) ab(ku + i - j, j) = a(i, j);
  }
  const T alpha = make<T>(2, 1), beta = make<T>(-1, 3);
  for (const char trans : {'N', 't', 'C'}) {
    const form how = form_of(trans);
    const matrix<T> x = integers<T>(how == form::plain ? n : m, 1, 5),
                    y = integers<T>(how == form::plain ? m : n, 1, 6);
    for (const auto& [incx, incy] : kStrides) {
      std::vector<T> target = strided(y, incy);
      call(pick<T>(sgemv, dgemv, cgemv, zgemv), trans, m, n, alpha, a.values.data(), m,
           strided(x, incx).data(), incx, beta, target.data(), incy);
      expect_same(target, strided(product(alpha, op(how, a), x, beta, y), incy), "gemv");
      target = strided(y, incy);
      call(pick<T>(sgbmv, dgbmv, cgbmv, zgbmv), trans, m, n, kl, ku, alpha, ab.data(), ab.rows,
           strided(x, incx).data(), incx, beta, target.data(), incy);
      expect_same(target, strided(product(alpha, op(how, band), x, beta, y), incy), "gbmv");
    }
  }
}

TYPED_TEST(Blas, SymmetricAndHermitianMatrixTimesVector) {
  using T = TypeParam;
  constexpr int k = 2;
  const matrix<T> x = integers<T>(n, 1, 7), y = integers<T>(n, 1, 8), values = integers<T>(n, n, 9);
  const T alpha = make<T>(2, 1), beta = make<T>(-1, 3);
  const matrix<T> symmetric = mirrored(values, form::transposed, false),
                  hermitian = mirrored(values, form::adjoint, false);
  matrix<T> banded = hermitian;
  clear_outside_band(banded, k, k);
  for (const char uplo : {'U', 'L'}) {
    matrix<T> ab(k + 1, n);
    for (int j = 0; j < n; ++j) {
      for (int d = 0; d <= k; ++d) {
        const int i = uplo == 'U' ? j - d : j + d;
        if (i >= 0 && i < n) ab(uplo == 'U' ? k - d : d, j) = hermitian(i, j);
      }
    }
    for (const auto& [incx, incy] : kStrides) {
      const std::vector<T> xs = strided(x, incx);
      std::vector<T> target = strided(y, incy);
      call(pick<T>(ssbmv, dsbmv, chbmv, zhbmv), uplo, n, k, alpha, ab.data(), k + 1, xs.data(), incx, beta,
           target.data(), incy);
      expect_same(target, strided(product(alpha, banded, x, beta, y), incy), "sbmv or hbmv");
      target = strided(y, incy);
      call(pick<T>(sspmv, dspmv, cspmv, zspmv), uplo, n, alpha, packed(uplo, symmetric).data(), xs.data(),
           incx, beta, target.data(), incy);
      expect_same(target, strided(product(alpha, symmetric, x, beta, y), incy), "spmv");
      if constexpr (is_complex<T>) {
        target = strided(y, incy);
        call(pick<T>(0, 0, chpmv, zhpmv), uplo, n, alpha, packed(uplo, hermitian).data(), xs.data(), incx,
             beta, target.data(), incy);
        expect_same(target, strided(product(alpha, hermitian, x, beta, y), incy), "hpmv");
      }
    }
  }
}

TYPED_TEST(Blas, TriangularMatrices) {
  using T = TypeParam;
  const matrix<T> values = integers<T>(n, n, 10), x = integers<T>(n, 1, 11), b = integers<T>(n, 3, 12);
  for (const char uplo : {'U', 'L'}) {
    const std::vector<T> ap = packed(uplo, values);
    for (const char diag : {'N', 'u'}) {
      matrix<T> a = unpacked(uplo, n, ap, form::plain);
      for (int i = 0; diag == 'u' && i < n; ++i) a(i, i) = make<T>(1);
      for (const char trans : {'n', 'T', 'C'}) {
        const matrix<T> want = op(form_of(trans), a) * x;
        for (const int inc : {1, -2}) {
          std::vector<T> target = strided(x, inc);
          call(pick<T>(stpmv, dtpmv, ctpmv, ztpmv), uplo, trans, diag, n, ap.data(), target.data(), inc);
          expect_same(target, strided(want, inc), "tpmv");
          target = strided(x, inc);
          call(pick<T>(strmv, dtrmv, ctrmv, ztrmv), uplo, trans, diag, n, values.values.data(), n,
               target.data(), inc);
          expect_same(target, strided(want, inc), "trmv");
        }
        // With a unit diagonal the solution is exact: the right-hand side is made from it.
        if (diag == 'N') continue;
        for (const char side : {'L', 'r'}) {
          const matrix<T> solution = side == 'L' ? b : op(form::transposed, b);
          const matrix<T> opa = op(form_of(trans), a);
          matrix<T> rhs = side == 'L' ? opa * solution : solution * opa;
          call(pick<T>(strsm, dtrsm, ctrsm, ztrsm), side, uplo, trans, diag, rhs.rows, rhs.cols, make<T>(2),
               values.values.data(), n, rhs.data(), rhs.rows);
          matrix<T> twice = solution;
          for (T& value : twice.values) value = make<T>(2) * value;
          const double growth = 1e3;
          EXPECT_LE(distance(rhs, twice),
                    growth * kEpsilon<T> * one_norm(opa) * one_norm(inverse_of(opa)) * one_norm(twice))
              << side << uplo << trans;
        }
      }
    }
  }
}

TYPED_TEST(Blas, MatrixProducts) {
  using T = TypeParam;
  constexpr int rows = 5, columns = 6, inner = 4, ldc = 8;
  const T alpha = make<T>(2, 1), beta = make<T>(-1, 3);
  const matrix<T> plain_a = integers<T>(rows, inner, 13), plain_b = integers<T>(inner, columns, 14);
  const matrix<T> c = integers<T>(rows, columns, 15);
  for (const char transa : {'N', 't', 'C'}) {
    for (const char transb : {'n', 'T', 'c'}) {
      const matrix<T> a = op(form_of(transa), plain_a), b = op(form_of(transb), plain_b);
      matrix<T> target(ldc, columns);
      std::fill(target.values.begin(), target.values.end(), make<T>(99));
      for (int j = 0; j < columns; ++j) std::copy_n(&c.values[j * rows], rows, &target(0, j));
      call(pick<T>(sgemm, dgemm, cgemm, zgemm), transa, transb, rows, columns, inner, alpha, a.values.data(),
           a.rows, b.values.data(), b.rows, beta, target.data(), ldc);
      const matrix<T> want = product(alpha, plain_a, plain_b, beta, c);
      for (int j = 0; j < columns; ++j) {
        for (int i = 0; i < ldc; ++i)
          EXPECT_EQ(wide(target(i, j)), wide(i < rows ? want(i, j) : make<T>(99)));
      }
    }
  }
}

TYPED_TEST(Blas, Norms) {
  using T = TypeParam;
  constexpr auto lange = pick<T>(slange, dlange, clange, zlange);
  const matrix<T> a = integers<T>(6, n, 16);
  std::vector<real_of<T>> work(6);
  real_of<T>* none = nullptr;
  double largest = 0, squares = 0;
  for (const T& value : a.values) {
    largest = std::max(largest, std::abs(wide(value)));
    squares += std::norm(wide(value));
  }
  const double tolerance = 100 * kEpsilon<T> * squares;
  EXPECT_NEAR(largest, call(lange, 'm', 6, n, a.values.data(), 6, none), tolerance);
  EXPECT_NEAR(one_norm(a), call(lange, '1', 6, n, a.values.data(), 6, none), tolerance);
  EXPECT_NEAR(one_norm(op(form::transposed, a)), call(lange, 'I', 6, n, a.values.data(), 6, work.data()),
              tolerance);
  EXPECT_NEAR(std::sqrt(squares), call(lange, 'F', 6, n, a.values.data(), 6, none), tolerance);
  EXPECT_EQ(0, call(lange, 'F', 0, n, a.values.data(), 6, none));
}

struct copy_case {
  const char* name;
  char ordering, trans;
  double alpha;
};
constexpr copy_case kCopies[] = {
    {"CopyByColumns", 'C', 'N', 2.5},    {"CopyByRows", 'r', 'n', -1},       {"Conjugate", 'C', 'R', 1},
    {"TransposeByColumns", 'c', 'T', 1}, {"TransposeByRows", 'R', 't', 0.5}, {"AdjointByRows", 'R', 'C', -3},
    {"ZeroByColumns", 'C', 'T', 0},      {"ZeroByRows", 'R', 'N', 0},
};
class ScaledCopy : public testing::TestWithParam<copy_case> {};

// Element (i, j) of A and B is found by ordering alone; every element of B, and no other, is written.
TEST_P(ScaledCopy, MovesEachElement) {
  const copy_case& c = GetParam();
  const bool by_columns = c.ordering == 'C' || c.ordering == 'c';
  const bool turned = form_of(c.trans) != form::plain && c.trans != 'R';
  struct sizes {
    std::size_t rows, cols;
  };
  for (const auto& [rows, cols] : {sizes{1, 1}, {3, 2}, {8, 8}, {17, 70}, {70, 17}, {65, 129}, {0, 3}}) {
    const std::size_t b_rows = turned ? cols : rows, b_cols = turned ? rows : cols;
    const std::size_t lda = (by_columns ? rows : cols) + 3, ldb = (by_columns ? b_rows : b_cols) + 2;
    const auto at = [&](std::size_t i, std::size_t j, std::size_t ld) {
      return by_columns ? i + j * ld : j + i * ld;
    };
    std::vector<double> a(lda * (by_columns ? cols : rows), c.alpha == 0 ? std::nan("") : 1e9);
    poisoned<double> b(ldb * (by_columns ? b_cols : b_rows));
    std::vector<double> want(b.size(), 77);
    std::fill(b.begin(), b.end(), 77);
    for (std::size_t i = 0; i < rows; ++i) {
      for (std::size_t j = 0; j < cols; ++j) {
        const auto value = static_cast<double>(1 + i * 1000 + j);
        if (c.alpha != 0) a[at(i, j, lda)] = value;
        want[turned ? at(j, i, ldb) : at(i, j, ldb)] = c.alpha * value;
      }
    }
    QEL_Domatcopy(c.ordering, c.trans, rows, cols, c.alpha, a.data(), lda, b.data(), ldb);
    EXPECT_TRUE(std::equal(want.begin(), want.end(), b.begin())) << rows << " x " << cols;
    EXPECT_TRUE(b.intact());
  }
}
INSTANTIATE_TEST_SUITE_P(Table, ScaledCopy, testing::ValuesIn(kCopies),
                         [](const auto& test) { return test.param.name; });

}  // namespace
}  // namespace qel::test
