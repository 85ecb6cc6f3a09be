// SPDX-License-Identifier: BSD-3-Clause
// The kernels of sums of magnitudes and Euclidean norms: order of summation, exactness, range, special
// values, no access outside the operand.
#include <limits>

#include "blas/plain/level1.h"
#include "tests/kernels/support.h"

namespace qel::test {
namespace {

template <class T>
std::vector<real_of<T>> magnitudes(const std::vector<T>& v) {
  std::vector<real_of<T>> result;
  for (const T& a : v) {
    if constexpr (is_complex<T>) {
      result.push_back(std::fabs(a.real));
      result.push_back(std::fabs(a.imag));
    } else {
      result.push_back(std::fabs(a));
    }
  }
  return result;
}

/// Registers alternately to two accumulators, single terms to lanes 0 and 1 of the first.
template <class R>
R two_sums(const std::vector<R>& terms) {
  std::vector<R> sum[2] = {std::vector<R>(kLanes<R>, 0), std::vector<R>(kLanes<R>, 0)};
  const std::size_t whole = terms.size() / kLanes<R> * kLanes<R>;
  for (std::size_t i = 0; i < whole; ++i) sum[i / kLanes<R> % 2][i % kLanes<R>] += terms[i];
  for (std::size_t i = whole; i < terms.size(); ++i) sum[0][(i - whole) % 2] += terms[i];
  for (std::size_t l = 0; l < kLanes<R>; ++l) sum[0][l] += sum[1][l];
  return neighbours_first(sum[0]);
}

class SumsLevel : public ByLevel {
 protected:
  /// Where the order is free: the sum up to rounding, and the same bits at every alignment.
  template <class T>
  real_of<T> native_sum(const std::vector<T>& cells, core_int inc) {
    const auto size = static_cast<core_int>(cells.size()), n = (size + std::abs(inc) - 1) / std::abs(inc);
    const real_of<T> result = rows<T>::asum.kernel[level()](&n, cells.data(), &inc);
    long double sum = 0;
    for (const auto part : magnitudes(elements(cells, n, inc))) sum += part;
    EXPECT_TRUE(near_sum(sum, sum, n, result)) << "stride " << inc;
    return result;
  }
};

TEST_P(SumsLevel, MagnitudesAddInTheDocumentedOrderAtEveryAlignment) {
  for_element_types([&]<class T>() {
    using R = real_of<T>;
    arena<T> x(5100);
    for (core_int n = 0; n <= 5003; n += n < 200 ? 1 : 4803) {
      const auto xs = order_sensitive<T>(static_cast<std::size_t>(n), 1);
      const auto terms = magnitudes(xs);
      for (std::size_t off = 0; off < 64; off += sizeof(R) / 2) {
        const T* at = x.place(xs, off);
        const R want = native() ? native_sum(xs, 1) : four_sums(terms, terms_to_boundary<R>(at), true);
        for (const core_int inc : {1, -1}) {
          ASSERT_EQ(want, rows<T>::asum.kernel[level()](&n, at, &inc)) << "n " << n << " offset " << off;
        }
      }
    }
  });
}

TEST_P(SumsLevel, StridedMagnitudesAddInTheDocumentedOrder) {
  for_element_types([&]<class T>() {
    arena<T> x(900);
    for (core_int n = 1; n < 60; ++n) {
      for (const core_int inc : {2, -2, 3, -15}) {
        const auto xs = order_sensitive<T>(span_of(n, inc), 2);
        ASSERT_EQ(native() ? native_sum(xs, inc) : two_sums(magnitudes(elements(xs, n, inc))),
                  rows<T>::asum.kernel[level()](&n, x.place(xs, sizeof(real_of<T>)), &inc))
            << "n " << n << " stride " << inc;
      }
    }
  });
}

TEST_P(SumsLevel, StrideZeroAddsOneElementOverAndOver) {
  for_element_types([&]<class T>() {
    using R = real_of<T>;
    const std::vector<T> x = order_sensitive<T>(1, 3);
    const auto parts = magnitudes(x);
    const R each = is_complex<T> ? parts[0] + parts.back() : parts[0];
    R sum = 0;
    const core_int n = 37, zero = 0;
    for (core_int i = 0; i < n; ++i) sum += each;
    const R got = rows<T>::asum.kernel[level()](&n, x.data(), &zero);
    EXPECT_TRUE(native() ? near_sum(sum, sum, n, got) : testing::AssertionResult(sum == got));
  });
}

// Bit for bit the portable norm, but for native levels, which have the same bits at every alignment.
TEST_P(SumsLevel, NormIsTheRootOfTheSumOfSquares) {
  for_element_types([&]<class T>() {
    using R = real_of<T>;
    arena<T> x(1200);
    for (core_int n = 0; n <= 1100; n += n < 70 ? 1 : 257) {
      for (const core_int inc : {1, -1, 2, -2, 5, 0}) {
        if (n > 70 && std::abs(inc) > 1) continue;
        auto xs = order_sensitive<T>(span_of(n, inc), 5);
        if (n > 3) xs[span_of(n, inc) / 2] = T{};
        const R aligned =
            native() ? rows<T>::nrm2.kernel[level()](&n, xs.data(), &inc) : plain::nrm2(n, xs.data(), inc);
        for (const std::size_t off : {sizeof(R) / 2, sizeof(R), 16 + sizeof(R)}) {
          ASSERT_EQ(aligned, rows<T>::nrm2.kernel[level()](&n, x.place(xs, off), &inc))
              << "n " << n << " stride " << inc;
        }
        long double squares = 0;
        for (const R part : magnitudes(elements(xs, n, inc))) {
          squares += static_cast<long double>(part) * part;
        }
        const long double norm = std::sqrt(squares);
        ASSERT_TRUE(near_sum(norm, 2 * norm, n, aligned)) << "stride " << inc;
      }
    }
  });
}

// Between the smallest and the largest numbers: no size of numbers loses digits, mixed with small ones or
// not.
TEST_P(SumsLevel, NormHasItsDigitsAtEverySize) {
  for_element_types([&]<class T>() {
    using R = real_of<T>;
    using limits = std::numeric_limits<R>;
    const core_int n = 45, one = 1;
    for (int power = limits::min_exponent - limits::digits + 8; power < limits::max_exponent - 4;
         power += 3) {
      for (const bool mixed : {false, true}) {
        std::vector<T> x(45);
        long double squares = 0;  // its range holds them all
        for (std::size_t i = 0; i < 45; ++i) {
          const R v = std::ldexp(static_cast<R>(1 + i % 5), mixed && i % 3 == 0 ? power / 2 : power);
          reinterpret_cast<R*>(&x[i])[is_complex<T> ? i % 2 : 0] = v;
          squares += static_cast<long double>(v) * v;
        }
        const long double norm = std::sqrt(squares);
        ASSERT_TRUE(near_sum(norm, norm, n, rows<T>::nrm2.kernel[level()](&n, x.data(), &one)))
            << "2^" << power << (mixed ? " mixed" : "");
      }
    }
  });
}

TEST_P(SumsLevel, KeepsNanAsNormOfTwoInfinitiesBelowNative) {
  for_element_types([&]<class T>() {
    using R = real_of<T>;
    const core_int n = 40, one = 1;
    for (std::size_t at = 0; at < 40; ++at) {
      auto x = order_sensitive<T>(40, 4);
      reinterpret_cast<R*>(&x[at])[0] = -std::numeric_limits<R>::infinity();
      EXPECT_EQ(std::numeric_limits<R>::infinity(), rows<T>::asum.kernel[level()](&n, x.data(), &one));
      EXPECT_TRUE(std::isinf(rows<T>::nrm2.kernel[level()](&n, x.data(), &one))) << at;
      x[(at + 7) % 40] = x[at];
      const R two = rows<T>::nrm2.kernel[level()](&n, x.data(), &one);
      EXPECT_TRUE(native() ? std::isinf(two) : std::isnan(two)) << at;
    }
  });
}

struct norm_case {
  const char* name;
  std::vector<double> values;
  core_int n, inc;
  double want;
};
const norm_case kNorms[] = {
    {"NoOverflow", {3e300, 4e300}, 2, 1, 5e300},
    {"NoUnderflow", {3e-300, 4e-300}, 2, 1, 5e-300},
    {"SubnormalsCount", {3 * 0x1p-1074, 4 * 0x1p-1074}, 2, 1, 5 * 0x1p-1074},
    {"OneElementIsItsMagnitude", {-7}, 1, 1, 7},
    {"NegativeStrideWalksUp", {3, 9, 4}, 2, -2, 5},
    {"StrideZeroRepeats", {-3}, 4, 0, 6},
    {"Empty", {1}, 0, 1, 0},
    {"NegativeLength", {1}, -2, 1, 0},
};
TEST_P(SumsLevel, NormCases) {
  for (const norm_case& c : kNorms) {
    EXPECT_DOUBLE_EQ(c.want, kDnrm2.kernel[level()](&c.n, c.values.data(), &c.inc)) << c.name;
  }
  const complex16 one_number = {-3e300, 4e300};
  const core_int one = 1;
  EXPECT_DOUBLE_EQ(5e300, kDznrm2.kernel[level()](&one, &one_number, &one));
}

INSTANTIATE_TEST_SUITE_P(Levels, SumsLevel, testing::Range(0, kLevels));

}  // namespace
}  // namespace qel::test
