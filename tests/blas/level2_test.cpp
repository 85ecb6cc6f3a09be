// SPDX-License-Identifier: BSD-3-Clause
// Level 2 of the core BLAS against straightforward sums in long double: all options and storage forms,
// strides of both signs, padded leading dimensions, and NaN in everything that may not be read.
#include "tests/blas/by_type.h"
#include "tests/blas/reference.h"

namespace qel::test {
namespace {

template <class T>
class Level2 : public testing::Test {
 protected:
  random_source random_;
};
using element_types = testing::Types<float, double, complex8, complex16>;
TYPED_TEST_SUITE(Level2, element_types);

constexpr core_int kOrders[] = {0, 1, 2, 3, 5, 10, 33, 50};
constexpr core_int kStrides[][2] = {{1, 1}, {-1, -1}, {2, 1}, {1, 2}, {-3, 2}, {1, -1}};
constexpr form kForms[] = {form::kFull, form::kBanded, form::kPacked};
constexpr char kFormLetters[] = {'f', 'b', 'p'};

template <class... A>
std::string text(A... parts) {
  std::ostringstream out;
  ((out << parts << ' '), ...);
  return out.str();
}

/// Expects y = alpha a x + beta before.
template <class T>
void expect_product(strided<T>& y, T alpha, const dense& a, const dense& x, T beta, const dense& before,
                    const std::string& what) {
  for (core_int i = 0; i < a.m; ++i) {
    bounded sum;
    if (beta != T{}) sum.add(widen(beta) * before(i, 0));
    if (alpha != T{}) add_product(sum, widen(alpha), a, x, i, 0);
    EXPECT_TRUE(close(y[i], sum, a.n)) << what << i << ": got " << widen(y[i]) << ", want " << sum.value;
  }
  EXPECT_TRUE(y.intact()) << what;
}

TYPED_TEST(Level2, GemvAndGbmv) {
  using T = TypeParam;
  constexpr core_int kShapes[][4] = {{1, 1, 0, 0},  {3, 2, 1, 0},  {2, 5, 0, 2},    {10, 10, 3, 2},
                                     {33, 7, 2, 9}, {7, 33, 4, 4}, {50, 50, 60, 60}};
  int pair = 0;
  for (const char trans : {'N', 'T', 'C'}) {
    for (const auto& [m, n, kl, ku] : kShapes) {
      for (const auto& [incx, incy] : kStrides) {
        for (const bool banded : {false, true}) {
          const auto [alpha_index, beta_index] = kFactorPairs[pair++ % std::size(kFactorPairs)];
          const T alpha = factor<T>(alpha_index), beta = factor<T>(beta_index);
          matrix<T> a =
              banded ? matrix<T>::band(m, n, kl, ku, 1, this->random_) : matrix<T>(m, n, 2, this->random_);
          strided<T> x(trans == 'N' ? n : m, incx, this->random_),
              y(trans == 'N' ? m : n, incy, this->random_);
          if (alpha == T{}) a.fill(nan_element<T>());
          if (beta == T{}) y.fill(nan_element<T>());
          const dense before = y.as_output().column();
          if (banded) {
            call(core_of<T>::gbmv, trans, m, n, kl, ku, alpha, a.data(), a.ld(), x.data(), incx, beta,
                 y.data(), incy);
          } else {
            call(core_of<T>::gemv, trans, m, n, alpha, a.data(), a.ld(), x.data(), incx, beta, y.data(),
                 incy);
          }
          expect_product(y, alpha, op(trans, a.meaning(shape::kGeneral)), x.column(), beta, before,
                         text(banded ? "gbmv" : "gemv", trans, m, n, incx, incy));
        }
      }
    }
  }
}

TYPED_TEST(Level2, EmptyProductLeavesYAlone) {
  using T = TypeParam;
  const core_int none = 0, n = 3, one = 1;
  strided<T> x(3, 1, this->random_), y(3, 1, this->random_);
  const dense before = y.column();
  call(core_of<T>::gemv, 'T', none, n, factor<T>(1), x.data(), one, x.data(), one, factor<T>(2), y.data(),
       one);
  EXPECT_EQ(before.cells, y.column().cells);
}

TYPED_TEST(Level2, HermitianProductsReadOneTriangle) {
  using T = TypeParam;
  int pair = 0;
  for (const char uplo : {'U', 'L'}) {
    for (const form f : kForms) {
      for (const core_int n : kOrders) {
        for (const auto& [incx, incy] : kStrides) {
          const auto [alpha_index, beta_index] = kFactorPairs[pair++ % std::size(kFactorPairs)];
          const T alpha = factor<T>(alpha_index), beta = factor<T>(beta_index);
          const core_int k = n / 3;
          matrix<T> a = matrix<T>::triangle(f, uplo, false, n, k, 2, this->random_);
          strided<T> x(n, incx, this->random_), y(n, incy, this->random_);
          if (alpha == T{}) a.fill(nan_element<T>());
          if (beta == T{}) y.fill(nan_element<T>());
          const dense before = y.as_output().column();
          if (f == form::kFull) {
            call(core_of<T>::hemv, uplo, n, alpha, a.data(), a.ld(), x.data(), incx, beta, y.data(), incy);
          } else if (f == form::kBanded) {
            call(core_of<T>::hbmv, uplo, n, k, alpha, a.data(), a.ld(), x.data(), incx, beta, y.data(), incy);
          } else {
            call(core_of<T>::hpmv, uplo, n, alpha, a.data(), x.data(), incx, beta, y.data(), incy);
          }
          expect_product(y, alpha, a.meaning(shape::kHermitian), x.column(), beta, before,
                         text("h?mv", uplo, kFormLetters[static_cast<int>(f)], n, incx, incy));
        }
      }
    }
  }
}

TYPED_TEST(Level2, PackedSymmetricProducts) {
  using T = TypeParam;
  if constexpr (is_complex<T>) {
    const auto spmv = [](auto... arguments) {
      if constexpr (std::is_same_v<T, complex8>)
        return call(core::cspmv, arguments...);
      else
        return call(core::zspmv, arguments...);
    };
    for (const char uplo : {'U', 'L'}) {
      for (const core_int n : kOrders) {
        for (const auto& [incx, incy] : kStrides) {
          const T alpha = factor<T>(2), beta = factor<T>(2);
          matrix<T> a = matrix<T>::triangle(form::kPacked, uplo, false, n, 0, 0, this->random_);
          strided<T> x(n, incx, this->random_), y(n, incy, this->random_);
          const dense before = y.as_output().column();
          spmv(uplo, n, alpha, a.data(), x.data(), incx, beta, y.data(), incy);
          expect_product(y, alpha, a.meaning(shape::kSymmetric), x.column(), beta, before,
                         text("spmv", uplo, n));
        }
      }
    }
  }
}

/// Solution of op(A) x = before by its residual; product directly.
template <class T>
void expect_triangular(bool solve, strided<T>& x, const dense& a, const dense& before,
                       const std::string& what) {
  const dense after = x.column();
  for (core_int i = 0; i < a.m; ++i) {
    bounded sum;
    add_product(sum, 1, a, solve ? after : before, i, 0);
    sum.add(solve ? -before(i, 0) : -after(i, 0));
    EXPECT_LE(std::abs(sum.value), 4 * static_cast<long double>(a.n + 4) * epsilon<T>() * sum.size)
        << what << i;
  }
  EXPECT_TRUE(x.intact()) << what;
}

TYPED_TEST(Level2, TriangularProductsAndSolutions) {
  using T = TypeParam;
  using core = core_of<T>;
  for (const char uplo : {'U', 'L'}) {
    for (const char trans : {'N', 'T', 'C'}) {
      for (const char diag : {'N', 'U'}) {
        for (const form f : kForms) {
          for (const core_int n : kOrders) {
            for (const core_int inc : {1, -1, 2, -3}) {
              for (const bool solve : {false, true}) {
                const core_int k = n / 3;
                matrix<T> a = matrix<T>::triangle(f, uplo, diag == 'U', n, k, 1, this->random_);
                a.for_stored([&](core_int i, core_int j) {
                  const real_of<T> share = static_cast<real_of<T>>(1) / static_cast<real_of<T>>(n);
                  a.set(i, j, i == j ? element<T>(1.5, 0.5) : share * a.at(i, j));
                });
                strided<T> x(n, inc, this->random_);
                const dense before = x.as_output().column();
                if (f == form::kFull) {
                  call(solve ? core::trsv : core::trmv, uplo, trans, diag, n, a.data(), a.ld(), x.data(),
                       inc);
                } else if (f == form::kBanded) {
                  call(solve ? core::tbsv : core::tbmv, uplo, trans, diag, n, k, a.data(), a.ld(), x.data(),
                       inc);
                } else {
                  call(solve ? core::tpsv : core::tpmv, uplo, trans, diag, n, a.data(), x.data(), inc);
                }
                const shape kind = diag == 'U' ? shape::kUnitTriangular : shape::kTriangular;
                expect_triangular(solve, x, op(trans, a.meaning(kind)), before,
                                  text(solve ? "t?sv" : "t?mv", uplo, trans, diag,
                                       kFormLetters[static_cast<int>(f)], n, inc));
              }
            }
          }
        }
      }
    }
  }
}

TYPED_TEST(Level2, KeepsZeroDivisionUntested) {
  using T = TypeParam;
  const core_int n = 2, one = 1;
  for (const char trans : {'N', 'T'}) {
    matrix<T> a(2, 2, 0, this->random_, 'U');
    a.set(1, 1, T{});
    strided<T> x(2, 1, this->random_);
    call(core_of<T>::trsv, 'U', trans, 'N', n, a.data(), a.ld(), x.data(), one);
    EXPECT_FALSE(std::isfinite(std::abs(widen(x[1])))) << trans;
  }
}

template <class T>
void expect_updated(matrix<T>& a, shape kind, const dense& before,
                    const std::vector<std::pair<dense, dense>>& terms, const std::string& what) {
  a.for_stored([&](core_int i, core_int j) {
    bounded sum;
    sum.add(before(i, j));
    for (const auto& [column, row] : terms) sum.add(column(i, 0) * row(0, j));
    EXPECT_TRUE(close(a.at(i, j), sum, 4)) << what << i << ' ' << j;
    if (kind == shape::kHermitian && i == j) {
      EXPECT_EQ(0, widen(a.at(i, i)).imag()) << what;
    }
  });
  EXPECT_TRUE(a.intact()) << what;
}

dense times(wide t, dense a) {
  for (wide& cell : a.cells) cell *= t;
  return a;
}

TYPED_TEST(Level2, GeneralRankOneUpdates) {
  using T = TypeParam;
  for (const bool conjugated : {false, true}) {
    for (const auto& [m, n] : {std::pair<core_int, core_int>{0, 3}, {1, 1}, {5, 3}, {33, 10}, {10, 50}}) {
      for (const auto& [incx, incy] : kStrides) {
        const T alpha = factor<T>(2);
        matrix<T> a(m, n, 2, this->random_);
        strided<T> x(m, incx, this->random_), y(n, incy, this->random_);
        const dense before = a.as_output().meaning(shape::kGeneral);
        call(conjugated ? core_of<T>::gerc : core_of<T>::geru, m, n, alpha, x.data(), incx, y.data(), incy,
             a.data(), a.ld());
        expect_updated(a, shape::kGeneral, before,
                       {{times(widen(alpha), x.column()), op(conjugated ? 'C' : 'T', y.column())}},
                       text("ger", conjugated, m, n, incx, incy));
      }
    }
  }
}

TYPED_TEST(Level2, HermitianUpdatesTouchOneTriangle) {
  using T = TypeParam;
  using core = core_of<T>;
  const shape kind = is_complex<T> ? shape::kHermitian : shape::kSymmetric;
  const T alpha = factor<T>(2);
  const real_of<T> real_alpha = real_part(alpha);
  for (const char uplo : {'U', 'L'}) {
    for (const form f : {form::kFull, form::kPacked}) {
      for (const core_int n : kOrders) {
        for (const auto& [incx, incy] : kStrides) {
          for (const bool two : {false, true}) {
            matrix<T> a = matrix<T>::triangle(f, uplo, false, n, 0, 2, this->random_);
            strided<T> x(n, incx, this->random_), y(n, incy, this->random_);
            const dense before = a.as_output().meaning(kind), xc = x.column(), yc = y.column();
            if (f == form::kFull && two) {
              call(core::her2, uplo, n, alpha, x.data(), incx, y.data(), incy, a.data(), a.ld());
            } else if (f == form::kFull) {
              call(core::her, uplo, n, real_alpha, x.data(), incx, a.data(), a.ld());
            } else if (two) {
              call(core::hpr2, uplo, n, alpha, x.data(), incx, y.data(), incy, a.data());
            } else {
              call(core::hpr, uplo, n, real_alpha, x.data(), incx, a.data());
            }
            std::vector<std::pair<dense, dense>> terms;
            if (two) {
              terms = {{times(widen(alpha), xc), op('C', yc)},
                       {times(std::conj(widen(alpha)), yc), op('C', xc)}};
            } else {
              terms = {{times(widen(from_real<T>(real_alpha)), xc), op('C', xc)}};
            }
            expect_updated(a, kind, before, terms,
                           text("h?r", two, uplo, kFormLetters[static_cast<int>(f)], n, incx, incy));
          }
        }
      }
    }
  }
}

}  // namespace
}  // namespace qel::test
