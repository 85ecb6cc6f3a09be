// SPDX-License-Identifier: BSD-3-Clause
// Level 1 of the core BLAS against straightforward sums in long double, over lengths about the lanes of the
// contiguous loops and strides of both signs and zero. Special values: tests/kernels.
#include "tests/blas/by_type.h"
#include "tests/blas/reference.h"

namespace qel::test {
namespace {

template <class T>
class Level1 : public testing::Test {
 protected:
  random_source random_;
};
using element_types = testing::Types<float, double, complex8, complex16>;
TYPED_TEST_SUITE(Level1, element_types);

constexpr core_int kLengths[] = {-1, 0, 1, 2, 3, 5, 7, 8, 9, 16, 17, 33, 50};
constexpr core_int kStrides[][2] = {{1, 1}, {-1, -1}, {2, 1}, {1, -3}, {-2, 2}, {0, 1}, {1, 0}, {-1, 1}};

std::string where(core_int n, core_int incx, core_int incy = 0) {
  return "n " + std::to_string(n) + " strides " + std::to_string(incx) + ' ' + std::to_string(incy);
}

template <class T>
T dot(bool conjugated, core_int n, const T* x, core_int incx, const T* y, core_int incy) {
  if constexpr (is_complex<T>) {
    T result = nan_element<T>();
    call(conjugated ? core_of<T>::dotc : core_of<T>::dotu, &result, n, x, incx, y, incy);
    return result;
  } else {
    return call(core_of<T>::dotu, n, x, incx, y, incy);
  }
}

TYPED_TEST(Level1, InnerProducts) {
  using T = TypeParam;
  for (const core_int n : kLengths) {
    for (const auto& [incx, incy] : kStrides) {
      const core_int cells = std::max<core_int>(n, 0);
      strided<T> x(cells, incx, this->random_), y(cells, incy, this->random_);
      for (const bool conjugated : {false, true}) {
        bounded sum;
        for (core_int i = 0; i < n; ++i)
          sum.add((conjugated ? std::conj(widen(x[i])) : widen(x[i])) * widen(y[i]));
        EXPECT_TRUE(close(dot(conjugated, n, x.data(), incx, y.data(), incy), sum, cells))
            << where(n, incx, incy);
      }
    }
  }
}

TEST(Level1Single, DoubleSumsKeepWhatSingleWouldLose) {
  const float x[] = {1e8F, 1, -1e8F}, y[] = {1, 1, 1};
  const core_int n = 3, one = 1, none = 0;
  EXPECT_EQ(1.0, call(core::dsdot, n, x, one, y, one));
  EXPECT_EQ(3.5F, call(core::sdsdot, n, 2.5F, x, one, y, one));
  EXPECT_EQ(2.5F, call(core::sdsdot, none, 2.5F, x, one, y, one));
}

TYPED_TEST(Level1, AxpyCopySwap) {
  using T = TypeParam;
  for (const core_int n : kLengths) {
    for (const auto& [incx, incy] : kStrides) {
      if (incx == 0 || incy == 0) continue;
      const core_int cells = std::max<core_int>(n, 0);
      strided<T> x(cells, incx, this->random_), y(cells, incy, this->random_);
      const dense x0 = x.as_output().column(), y0 = y.as_output().column();
      const T alpha = factor<T>(2);
      call(core_of<T>::axpy, n, alpha, x.data(), incx, y.data(), incy);
      for (core_int i = 0; i < n; ++i) {
        bounded sum;
        sum.add(y0(i, 0));
        sum.add(widen(alpha) * x0(i, 0));
        EXPECT_TRUE(close(y[i], sum, 1)) << where(n, incx, incy);
      }
      const dense y1 = y.column();
      call(core_of<T>::swap, n, x.data(), incx, y.data(), incy);
      EXPECT_EQ(x0.cells, y.column().cells) << where(n, incx, incy);
      EXPECT_EQ(y1.cells, x.column().cells) << where(n, incx, incy);
      call(core_of<T>::copy, n, x.data(), incx, y.data(), incy);
      EXPECT_EQ(y1.cells, y.column().cells) << where(n, incx, incy);
      EXPECT_TRUE(x.intact() && y.intact()) << where(n, incx, incy);
    }
  }
}

TYPED_TEST(Level1, ZeroStridesRepeatOneElement) {
  using T = TypeParam;
  const core_int n = 5, zero = 0, one = 1;
  strided<T> x(5, 1, this->random_);
  T target{};
  call(core_of<T>::axpy, n, element<T>(1, 0), x.data(), one, &target, zero);
  bounded sum;
  for (core_int i = 0; i < n; ++i) sum.add(widen(x[i]));
  EXPECT_TRUE(close(target, sum, n));
  call(core_of<T>::copy, n, x.data(), one, &target, zero);
  EXPECT_EQ(widen(x[4]), widen(target));
  T value = element<T>(1, 1);
  call(core_of<T>::scal, n, element<T>(2, 0), &value, zero);
  EXPECT_EQ(widen(element<T>(32, 32)), widen(value));
  EXPECT_EQ((is_complex<T> ? 2 : 1) * 160, call(core_of<T>::asum, n, &value, zero));
  const T three = element<T>(3, 0);
  EXPECT_NEAR(6, call(core_of<T>::nrm2, core_int{4}, &three, zero), 1e-5);
}

TYPED_TEST(Level1, ScaleAndSums) {
  using T = TypeParam;
  for (const core_int n : kLengths) {
    for (const core_int inc : {1, -1, 2, -3}) {
      const core_int cells = std::max<core_int>(n, 0);
      for (const bool real : {false, true}) {
        strided<T> x(cells, inc, this->random_);
        const dense before = x.column();
        bounded sum, squares;
        for (core_int i = 0; i < n; ++i) {
          sum.add(std::abs(before(i, 0).real()) + std::abs(before(i, 0).imag()));
          squares.add(std::norm(before(i, 0)));
        }
        EXPECT_TRUE(close(call(core_of<T>::asum, n, x.data(), inc), sum, cells)) << where(n, inc);
        const long double norm = std::sqrt(squares.value.real());
        const long double bound = 4 * static_cast<long double>(cells + 4) * epsilon<T>() * norm;
        EXPECT_LE(std::fabs(call(core_of<T>::nrm2, n, x.data(), inc) - norm), bound) << where(n, inc);
        x.as_output();
        const T alpha = real ? element<T>(-1.5, 0) : factor<T>(2);
        if (real) {
          call(core_of<T>::real_scal, n, real_part(alpha), x.data(), inc);
        } else {
          call(core_of<T>::scal, n, alpha, x.data(), inc);
        }
        for (core_int i = 0; i < n; ++i) {
          bounded product;
          product.add(widen(alpha) * before(i, 0));
          EXPECT_TRUE(close(x[i], product, 1)) << where(n, inc);
        }
        EXPECT_TRUE(x.intact()) << where(n, inc);
      }
    }
  }
}

TYPED_TEST(Level1, NormNeitherOverflowsNorUnderflows) {
  using T = TypeParam;
  using R = real_of<T>;
  const core_int n = 7, two = 2;
  for (const R size : {std::numeric_limits<R>::max() / 8, std::numeric_limits<R>::min() * 8}) {
    strided<T> x(n, 2, this->random_);
    x.fill(element<T>(size, 0));
    x.set(3, T{});
    const R norm = call(core_of<T>::nrm2, n, x.data(), two);
    EXPECT_NEAR(std::sqrt(R{6}), norm / size, 16 * std::numeric_limits<R>::epsilon());
  }
  strided<T> x(n, 1, this->random_);
  x.set(5, nan_element<T>());
  EXPECT_TRUE(std::isnan(call(core_of<T>::nrm2, n, x.data(), core_int{1})));
}

TYPED_TEST(Level1, RotationsTurnPairs) {
  using T = TypeParam;
  using R = real_of<T>;
  const R c = R{0.6F}, s = R{-0.8F};
  for (const core_int n : kLengths) {
    for (const auto& [incx, incy] : kStrides) {
      if (incx == 0 || incy == 0) continue;
      const core_int cells = std::max<core_int>(n, 0);
      strided<T> x(cells, incx, this->random_), y(cells, incy, this->random_);
      const dense x0 = x.as_output().column(), y0 = y.as_output().column();
      call(core_of<T>::rot, n, x.data(), incx, y.data(), incy, c, s);
      for (core_int i = 0; i < n; ++i) {
        bounded to_x, to_y;
        to_x.add(widen(c) * x0(i, 0)), to_x.add(widen(s) * y0(i, 0));
        to_y.add(widen(c) * y0(i, 0)), to_y.add(widen(-s) * x0(i, 0));
        EXPECT_TRUE(close(x[i], to_x, 2) && close(y[i], to_y, 2)) << where(n, incx, incy);
      }
      EXPECT_TRUE(x.intact() && y.intact()) << where(n, incx, incy);
    }
  }
}

TEST(Level1Rotations, MadeRotationsZeroTheSecondNumber) {
  constexpr double kPairs[][2] = {{3, 4}, {4, -3}, {-5, 1},        {0, 2},
                                  {2, 0}, {0, 0},  {1e300, 1e300}, {1e-300, -2e-300}};
  for (const auto& [a0, b0] : kPairs) {
    double a = a0, b = b0, c = 7, s = 7;
    core::drotg(&a, &b, &c, &s);
    const double size = std::max(std::fabs(a0), std::fabs(b0));
    EXPECT_NEAR(a / (size + (size == 0)), c * (a0 / (size + (size == 0))) + s * (b0 / (size + (size == 0))),
                1e-14);
    EXPECT_LE(std::fabs(c * b0 - s * a0), 1e-14 * size);
    EXPECT_NEAR(1, c * c + s * s, 1e-14);
    // The one number that c and s are to be found from again.
    const double c_again = std::fabs(b) < 1 ? std::sqrt(1 - b * b) : b == 1 ? 0 : 1 / b;
    EXPECT_NEAR(c_again, c, 1e-14) << a0 << ' ' << b0;
  }
}

TEST(Level1Rotations, MadeComplexRotationsZeroTheSecondNumber) {
  const complex16 kPairs[][2] = {
      {{3, 1}, {4, -2}}, {{0, 0}, {1, 2}}, {{1, -2}, {0, 0}}, {{1e300, 1e300}, {-1e300, 2e299}}};
  for (const auto& [a0, b0] : kPairs) {
    complex16 a = a0, s{};
    double c = 7;
    core::zrotg(&a, &b0, &c, &s);
    const long double size = std::abs(widen(a0)) + std::abs(widen(b0));
    EXPECT_LE(std::abs(widen(a) - (wide(c) * widen(a0) + widen(s) * widen(b0))), 1e-14L * size);
    EXPECT_LE(std::abs(wide(c) * widen(b0) - std::conj(widen(s)) * widen(a0)), 1e-14L * size);
    EXPECT_NEAR(1, c * c + static_cast<double>(std::norm(widen(s))), 1e-14);
  }
}

TEST(Level1Rotations, ModifiedRotationsZeroTheSecondNumber) {
  // d1, d2, x1, y1: both branches, a quick return, and weights that need rescaling up and down, also twice.
  constexpr double kCases[][4] = {{1, 2, 3, 1},     {1, 2, 1, 3},         {2, 0, 1, 1},   {1e-9, 1e-9, 1, 2},
                                  {1e9, 2e9, 3, 1}, {1e-16, 1e-16, 2, 1}, {1e18, 1, 1, 1}};
  for (const auto& [d1_in, d2_in, x_in, y_in] : kCases) {
    double d1 = d1_in, d2 = d2_in, x1 = x_in, param[5] = {7, 7, 7, 7, 7};
    core::drotmg(&d1, &d2, &x1, &y_in, param);
    double x = x_in, y = y_in;
    const core_int one = 1;
    call(core::drotm, one, &x, one, &y, one, param);
    EXPECT_NEAR(x1, x, 1e-13 * std::fabs(x1)) << d1_in;
    const double energy = d1_in * x_in * x_in + d2_in * y_in * y_in;
    if (d2_in != 0) {
      EXPECT_NEAR(0, y, 1e-13 * std::fabs(y_in)) << d1_in << ' ' << d2_in;
      EXPECT_NEAR(energy, d1 * x1 * x1, 1e-13 * energy) << d1_in << ' ' << d2_in;
    }
    if (param[0] == -1) {
      EXPECT_TRUE(d1 > 1 / 4096.0 / 4096.0 && d1 < 4096.0 * 4096.0) << d1;
    }
  }
}

}  // namespace
}  // namespace qel::test
