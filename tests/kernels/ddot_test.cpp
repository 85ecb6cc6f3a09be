// SPDX-License-Identifier: BSD-3-Clause
// The ddot kernels of all levels: order of summation, strides, alignment, no access outside the operands.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <random>
#include <vector>

#include "blas/level1/dot_rows.h"
#include "blas/level1/level1.h"
#include "tests/support/guarded.h"

namespace qel {
namespace {

// Numbers of widely different size, so that almost every change of the order changes the last bits.
std::vector<double> order_sensitive(size_t n, unsigned seed) {
  std::mt19937 random(seed);
  std::uniform_real_distribution<double> mantissa(-1, 1);
  std::uniform_int_distribution<int> exponent(-20, 20);
  std::vector<double> values(n);
  for (double& v : values) v = std::ldexp(mantissa(random), exponent(random));
  return values;
}

// The told orders, written element by element.
double sum_by_class(const std::vector<double>& p) {
  double c[4] = {0, 0, 0, 0};
  for (size_t i = 0; i < p.size(); ++i) c[i % 4] += p[i];
  return (c[0] + c[1]) + (c[2] + c[3]);
}
double sum_strided(const std::vector<double>& p) {
  double lane[2] = {0, 0};
  for (size_t i = 0; i < p.size(); ++i) lane[i % 2] += p[i];
  return lane[0] + lane[1];
}
double sum_generic(const std::vector<double>& p, bool peel) {
  double lane[8] = {0, 0, 0, 0, 0, 0, 0, 0};
  size_t i = 0;
  if (peel && !p.empty()) lane[0] = p[i++];
  size_t left = p.size() - i;
  for (; left >= 16; left -= 16) {
    for (int half = 0; half < 2; ++half) {
      for (double& sum : lane) sum += p[i++];
    }
  }
  if (left >= 8) {
    for (double& sum : lane) sum += p[i++];
    left -= 8;
  }
  for (size_t k = 0; k < left; ++k) lane[k % 2] += p[i + k];
  const double low = (lane[0] + lane[2]) + (lane[4] + lane[6]),
               high = (lane[1] + lane[3]) + (lane[5] + lane[7]);
  return low + high;
}

// Reads an element wherever it lies, also off its natural alignment.
double element(const double* base, core_int i) {
  double value;
  std::memcpy(&value, reinterpret_cast<const char*>(base) + i * core_int{sizeof value}, sizeof value);
  return value;
}

std::vector<double> products(const double* x, core_int incx, const double* y, core_int incy, core_int n) {
  std::vector<double> p;
  for (core_int i = 0; i < n; ++i) {
    const core_int ix = incx >= 0 ? i * incx : (i + 1 - n) * incx,
                   iy = incy >= 0 ? i * incy : (i + 1 - n) * incy;
    p.push_back(element(x, ix) * element(y, iy));
  }
  return p;
}

double expected(int level, const double* x, core_int incx, const double* y, core_int incy, core_int n) {
  const std::vector<double> p = products(x, incx, y, incy, n);
  if (incx * incy != 1) return sum_strided(p);
  // Both strides -1 walk in storage order too: the fast path sees only the pointers.
  const std::vector<double> in_storage_order = products(x, 1, y, 1, n);
  const bool peel = reinterpret_cast<uintptr_t>(x) % 16 == 8 && reinterpret_cast<uintptr_t>(y) % 16 == 8;
  return level == 0 ? sum_generic(in_storage_order, peel) : sum_by_class(in_storage_order);
}

class DdotLevel : public testing::TestWithParam<int> {
 protected:
  double dot(core_int n, const double* x, core_int incx, const double* y, core_int incy) const {
    return kDdot.kernel[GetParam()](&n, x, &incx, y, &incy);
  }
};

TEST_P(DdotLevel, SumsInTheToldOrderAtEveryAlignment) {
  for (const core_int n :
       {0, 1, 2, 3, 4, 5, 7, 8, 9, 15, 16, 17, 31, 32, 33, 34, 35, 36, 37, 63, 64, 65, 100, 131, 1003}) {
    const auto size = static_cast<size_t>(n);
    for (const size_t x_off : {0u, 8u, 4u}) {
      for (const size_t y_off : {0u, 8u, 4u}) {
        test::guarded<double> x(size, x_off), y(size, y_off);
        x.assign(order_sensitive(size, 1));
        y.assign(order_sensitive(size, 2));
        for (const core_int inc : {1, -1}) {
          EXPECT_EQ(dot(n, x.data(), inc, y.data(), inc),
                    expected(GetParam(), x.data(), inc, y.data(), inc, n))
              << "n " << n << " offsets " << x_off << ' ' << y_off << " stride " << inc;
        }
      }
    }
  }
}

TEST_P(DdotLevel, SumsStridedInTheToldOrder) {
  for (const core_int n : {1, 2, 3, 4, 5, 6, 7, 8, 57}) {
    for (const core_int incx : {-3, -1, 0, 1, 2}) {
      for (const core_int incy : {-2, -1, 0, 1, 5}) {
        if (incx * incy == 1) continue;
        const auto span = [n](core_int inc) { return static_cast<size_t>((n - 1) * std::abs(inc) + 1); };
        test::guarded<double> x(span(incx)), y(span(incy), 8);
        x.assign(order_sensitive(x.size(), 3));
        y.assign(order_sensitive(y.size(), 4));
        EXPECT_EQ(dot(n, x.data(), incx, y.data(), incy),
                  expected(GetParam(), x.data(), incx, y.data(), incy, n))
            << "n " << n << " strides " << incx << ' ' << incy;
      }
    }
  }
}

TEST_P(DdotLevel, TouchesNothingForAnEmptyVector) {
  for (const core_int n : {0, -1, -1000}) EXPECT_EQ(dot(n, nullptr, 1, nullptr, 1), 0.0);
}

INSTANTIATE_TEST_SUITE_P(Levels, DdotLevel, testing::Range(0, kLevels));

// With a forced level this checks that the forced kernel is the one that the core calls: levels 0 and 1
// differ in the order, whatever the machine.
TEST(CoreDdot, CallsTheKernelOfTheProcessLevel) {
  const core_int n = 1003, one = 1;
  const std::vector<double> x = order_sensitive(1003, 5), y = order_sensitive(1003, 6);
  EXPECT_EQ(core::ddot(&n, x.data(), &one, y.data(), &one),
            expected(serv_cpu_level(), x.data(), 1, y.data(), 1, n));
  EXPECT_NE(expected(0, x.data(), 1, y.data(), 1, n), expected(1, x.data(), 1, y.data(), 1, n));
  if (const char* forced = std::getenv("QEL_DEBUG_CPU_TYPE")) {
    EXPECT_EQ(serv_cpu_level(), std::atoi(forced));
  }
}

}  // namespace
}  // namespace qel
