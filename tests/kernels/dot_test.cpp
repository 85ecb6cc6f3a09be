// SPDX-License-Identifier: BSD-3-Clause
// The dot kernels of all levels: order of summation, strides, alignment, no access outside the operands.
#include "blas/level1/level1.h"
#include "tests/kernels/support.h"

namespace qel::test {
namespace {

constexpr core_int kLengths[] = {0,  1,  2,  3,  4,  5,  6,  7,  8,  9,  11, 12, 13,  15,  16,  17,
                                 19, 23, 31, 32, 33, 34, 37, 47, 63, 64, 65, 67, 100, 131, 200, 1003};
constexpr core_int kStrides[][2] = {{1, 2}, {-3, 1}, {0, 1}, {1, 0}, {-1, 1}, {2, -2}, {-2, -5}, {0, 0}};

// The orders, written element by element.
template <class R>
R sum_by_class(const std::vector<R>& terms, std::size_t classes) {
  std::vector<R> sum(classes, 0);
  for (std::size_t i = 0; i < terms.size(); ++i) sum[i % classes] += terms[i];
  return neighbours_first(sum);
}
template <class R>
R sum_strided(const std::vector<R>& terms) {
  constexpr std::size_t kWidth = kLanes<R>;
  std::vector<R> lane(kWidth, 0);
  const std::size_t whole = terms.size() / kWidth * kWidth;
  for (std::size_t i = 0; i < whole; ++i) lane[i % kWidth] += terms[i];
  for (std::size_t i = whole; i < terms.size(); ++i) lane[(i - whole) % 2] += terms[i];
  return neighbours_first(lane);
}

// Where the order is free: the sum up to rounding, and the same bits at every alignment.
template <class R>
R expected_native(int level, const std::vector<R>& x, const std::vector<R>& y, core_int n, core_int incx,
                  core_int incy) {
  long double sum = 0, size = 0;
  for (core_int i = 0; i < n; ++i) {
    const auto term = static_cast<long double>(x[cell_of(i, n, incx)]) * y[cell_of(i, n, incy)];
    sum += term;
    size += std::fabs(term);
  }
  const R result = rows<R>::dot.kernel[level](&n, x.data(), &incx, y.data(), &incy);
  EXPECT_TRUE(near_sum(sum, size, n, result)) << "strides " << incx << ' ' << incy;
  return result;
}

template <class R>
R expected_real(int level, const std::vector<R>& x, const std::vector<R>& y, core_int n, core_int incx,
                core_int incy, const R* at_x, const R* at_y) {
  if (level >= kFirstNative) return expected_native(level, x, y, n, incx, incy);
  // Both strides -1 walk in storage order: the contiguous path sees only the pointers.
  const bool contiguous = incx * incy == 1;
  const std::vector<R> xs = elements(x, n, contiguous ? 1 : incx), ys = elements(y, n, contiguous ? 1 : incy);
  std::vector<R> terms;
  for (std::size_t i = 0; i < xs.size(); ++i) terms.push_back(xs[i] * ys[i]);
  if (!contiguous) return sum_strided(terms);
  if (level > 0) return sum_by_class(terms, 2 * kLanes<R>);
  const bool alike =
      (reinterpret_cast<std::uintptr_t>(at_x) - reinterpret_cast<std::uintptr_t>(at_y)) % 16 == 0;
  return four_sums(terms, alike ? terms_to_boundary<R>(at_x) : 0, false);
}

template <class C>
C expected_complex(int level, bool conjugated, const std::vector<C>& x, const std::vector<C>& y, core_int n,
                   core_int incx, core_int incy) {
  using R = real_of<C>;
  if (level >= kFirstNative) {  // check_complex_values looks at the value
    C result;
    const auto& row = conjugated ? rows<C>::dotc : rows<C>::dotu;
    row.kernel[level](&result, &n, x.data(), &incx, y.data(), &incy);
    return result;
  }
  const bool contiguous = incx * incy == 1;
  const std::vector<C> xs = elements(x, n, contiguous ? 1 : incx), ys = elements(y, n, contiguous ? 1 : incy);
  const std::size_t in_register = kLanes<R> / 2, classes = level == 0 ? 1 : 2 * in_register;
  struct four {
    R re_re = 0, im_im = 0, re_im = 0, im_re = 0;
    void add(const four& o) { re_re += o.re_re, im_im += o.im_im, re_im += o.re_im, im_re += o.im_re; }
  };
  std::vector<four> sum(classes);
  for (std::size_t i = 0; i < xs.size(); ++i) {
    sum[i % classes].add(
        {xs[i].real * ys[i].real, xs[i].imag * ys[i].imag, xs[i].real * ys[i].imag, xs[i].imag * ys[i].real});
  }
  // Register 0 + register 1, then even + odd elements.
  for (std::size_t half = classes / 2; half > 0; half /= 2) {
    for (std::size_t c = 0; c < half; ++c) sum[c].add(sum[c + half]);
  }
  const four& s = sum[0];
  if (conjugated) return {s.re_re + s.im_im, s.re_im - s.im_re};
  return {s.re_re - s.im_im, s.re_im + s.im_re};
}

class DdotLevel : public ByLevel {};

template <class R>
void check_alignments(int level) {
  arena<R> x(1003), y(1003);
  for (const core_int n : kLengths) {
    const auto xs = order_sensitive<R>(static_cast<std::size_t>(n), 1),
               ys = order_sensitive<R>(static_cast<std::size_t>(n), 2);
    // Every pair of element offsets, and offsets that are no whole number of elements.
    for (std::size_t x_off = 0; x_off < 64; x_off += sizeof(R) / 2) {
      for (std::size_t y_off = 0; y_off < 16; y_off += sizeof(R) / 2) {
        const R *at_x = x.place(xs, x_off), *at_y = y.place(ys, y_off);
        for (const core_int inc : {1, -1}) {
          ASSERT_EQ(expected_real(level, xs, ys, n, inc, inc, at_x, at_y),
                    rows<R>::dot.kernel[level](&n, at_x, &inc, at_y, &inc))
              << "level " << level << " n " << n << " offsets " << x_off << ' ' << y_off;
        }
      }
    }
  }
}

template <class R>
void check_strides(int level) {
  arena<R> x(5100), y(5100);
  for (const core_int n : kLengths) {
    for (const auto& [incx, incy] : kStrides) {
      const auto xs = order_sensitive<R>(span_of(n, incx), 3), ys = order_sensitive<R>(span_of(n, incy), 4);
      const R *at_x = x.place(xs, 0), *at_y = y.place(ys, sizeof(R) / 2);
      ASSERT_EQ(expected_real(level, xs, ys, n, incx, incy, at_x, at_y),
                rows<R>::dot.kernel[level](&n, at_x, &incx, at_y, &incy))
          << "level " << level << " n " << n << " strides " << incx << ' ' << incy;
    }
  }
}

TEST_P(DdotLevel, SumsInTheDocumentedOrderAtEveryAlignment) {
  for_types<float, double>([&]<class R>() { check_alignments<R>(level()); });
}
TEST_P(DdotLevel, SumsStridedInTheDocumentedOrder) {
  for_types<float, double>([&]<class R>() { check_strides<R>(level()); });
}
TEST_P(DdotLevel, TouchesNothingForAnEmptyVector) {
  const core_int one = 1;
  for (const core_int n : {0, -1, -1000}) {
    EXPECT_EQ(0, kSdot.kernel[level()](&n, nullptr, &one, nullptr, &one));
    EXPECT_EQ(0, kDdot.kernel[level()](&n, nullptr, &one, nullptr, &one));
    complex16 result = {7, 7};
    kZdotc.kernel[level()](&result, &n, nullptr, &one, nullptr, &one);
    EXPECT_TRUE(result == complex16{});
  }
}
INSTANTIATE_TEST_SUITE_P(Levels, DdotLevel, testing::Range(0, kLevels));

class ComplexDotLevel : public ByLevel {};

template <class C>
void check_complex_order(int level) {
  using R = real_of<C>;
  arena<C> x(5100), y(5100);
  const auto check = [&](core_int n, core_int incx, core_int incy, std::size_t x_off, std::size_t y_off) {
    const auto xs = order_sensitive<C>(span_of(n, incx), 5), ys = order_sensitive<C>(span_of(n, incy), 6);
    const C *at_x = x.place(xs, x_off), *at_y = y.place(ys, y_off);
    for (const bool conjugated : {false, true}) {
      C result = {7, 7};
      const auto& row = conjugated ? rows<C>::dotc : rows<C>::dotu;
      row.kernel[level](&result, &n, at_x, &incx, at_y, &incy);
      ASSERT_TRUE(expected_complex(level, conjugated, xs, ys, n, incx, incy) == result)
          << "level " << level << " n " << n << " strides " << incx << ' ' << incy << " offsets " << x_off
          << ' ' << y_off << " conjugated " << conjugated;
    }
  };
  for (const core_int n : kLengths) {
    for (std::size_t x_off = 0; x_off < 16; x_off += sizeof(R)) {
      for (std::size_t y_off = 0; y_off < 16; y_off += sizeof(R)) check(n, 1, 1, x_off, y_off);
    }
    check(n, -1, -1, 0, 0);
    check(n, 1, 1, 3, 0);
    for (const auto& [incx, incy] : kStrides) check(n, incx, incy, 0, sizeof(R));
  }
}

// Against long double sums of the logical pairs: the models above could share a misreading of the strides.
template <class C>
void check_complex_values(int level) {
  constexpr core_int kPairs[][2] = {{1, 1}, {-1, -1}, {2, -1}, {-3, 1}, {0, 2}};
  for (const auto& [incx, incy] : kPairs) {
    for (const core_int n : kLengths) {
      const auto x = order_sensitive<C>(span_of(n, incx), 7), y = order_sensitive<C>(span_of(n, incy), 8);
      for (const bool conjugated : {false, true}) {
        long double re = 0, im = 0, size = 0;
        for (core_int i = 0; i < n; ++i) {
          const C a = x[cell_of(i, n, incx)], b = y[cell_of(i, n, incy)];
          const long double a_im = conjugated ? -a.imag : a.imag;
          re += static_cast<long double>(a.real) * b.real - a_im * b.imag;
          im += static_cast<long double>(a.real) * b.imag + a_im * b.real;
          size += std::hypot(a.real, a.imag) * std::hypot(b.real, b.imag);
        }
        C result;
        (conjugated ? rows<C>::dotc : rows<C>::dotu)
            .kernel[level](&result, &n, x.data(), &incx, y.data(), &incy);
        EXPECT_TRUE(near_sum(re, 2 * size, n, result.real)) << level << incx << incy;
        EXPECT_TRUE(near_sum(im, 2 * size, n, result.imag)) << level << incx << incy;
      }
    }
  }
}

TEST_P(ComplexDotLevel, SumsInTheDocumentedOrder) {
  for_types<complex8, complex16>([&]<class C>() { check_complex_order<C>(level()); });
}
TEST_P(ComplexDotLevel, IsTheConjugatedOrPlainProduct) {
  for_types<complex8, complex16>([&]<class C>() { check_complex_values<C>(level()); });
}
INSTANTIATE_TEST_SUITE_P(Levels, ComplexDotLevel, testing::Range(0, kLevels));

// With a forced level this checks that the forced kernel is the one that the core calls: levels 0 and 1
// differ in the order, whatever the machine.
TEST(CoreDdot, CallsTheKernelOfTheProcessLevel) {
  const core_int n = 1003, one = 1;
  const auto x = order_sensitive<double>(1003, 5), y = order_sensitive<double>(1003, 6);
  const auto at_level = [&](int level) {
    return expected_real(level, x, y, n, one, one, x.data(), y.data());
  };
  EXPECT_EQ(at_level(serv_cpu_level()), core::ddot(&n, x.data(), &one, y.data(), &one));
  EXPECT_NE(at_level(0), at_level(1));
  const auto v = order_sensitive<complex8>(1003, 7);
  complex8 got;
  core::cdotu(&got, &n, v.data(), &one, v.data(), &one);
  EXPECT_TRUE(expected_complex(serv_cpu_level(), false, v, v, n, 1, 1) == got);
  if (const char* forced = std::getenv("QEL_DEBUG_CPU_TYPE")) {
    EXPECT_EQ(serv_cpu_level(), std::atoi(forced));
  }
}

}  // namespace
}  // namespace qel::test
