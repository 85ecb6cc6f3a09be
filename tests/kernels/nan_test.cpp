// SPDX-License-Identifier: BSD-3-Clause
// Where a NaN goes: every level-1 routine and level, a NaN at every place of short vectors, so in whole steps
// and in what they leave, and factors 0, 1 and NaN. The searches have tests of their own.
#include <algorithm>
#include <limits>

#include "tests/kernels/support.h"

namespace qel::test {
namespace {

constexpr core_int kOne = 1;
constexpr std::size_t kNowhere = 1000;

template <class T>
T number(double real) {
  T value{};
  reinterpret_cast<real_of<T>*>(&value)[0] = static_cast<real_of<T>>(real);
  return value;
}
template <class T>
bool has_nan(T v) {
  if constexpr (is_complex<T>) {
    return std::isnan(v.real) || std::isnan(v.imag);
  } else {
    return std::isnan(v);
  }
}
template <class T>
bool same_bits(const T& a, const T& b) {
  return std::memcmp(&a, &b, sizeof a) == 0;
}

/// One case: vectors of n elements with a signalling NaN in x or y, or none, and a factor.
template <class T>
struct nan_case {
  std::vector<T> x, y;
  double factor;
  core_int n;
  nan_case(std::size_t length, std::size_t in_x, std::size_t in_y, double with_factor)
      : x(order_sensitive<T>(length, 1)),
        y(order_sensitive<T>(length, 2)),
        factor(with_factor),
        n(static_cast<core_int>(length)) {
    if (in_x < length) x[in_x] = number<T>(std::numeric_limits<real_of<T>>::signaling_NaN());
    if (in_y < length) y[in_y] = number<T>(std::numeric_limits<real_of<T>>::signaling_NaN());
  }
};

class NanLevel : public ByLevel {
 protected:
  template <class Body>
  void for_cases(const Body& body) {
    for_element_types([&]<class T>() {
      for (const std::size_t n : {1, 2, 5, 9, 39, 70}) {
        for (const double factor : {0.0, 1.0, std::numeric_limits<double>::quiet_NaN()}) {
          body(nan_case<T>(n, kNowhere, kNowhere, factor));
          for (std::size_t at = 0; at < n; ++at) {
            body(nan_case<T>(n, at, kNowhere, factor));
            body(nan_case<T>(n, kNowhere, at, factor));
          }
        }
      }
    });
  }
};

TEST_P(NanLevel, UpdatesTakeItWhereTheFactorLets) {
  for_cases([&]<class T>(const nan_case<T>& c) {
    const T alpha = number<T>(c.factor);
    auto added = c.y, scaled = c.x, really_scaled = c.x;
    const auto real_alpha = static_cast<real_of<T>>(c.factor);
    rows<T>::axpy.kernel[level()](&c.n, &alpha, c.x.data(), &kOne, added.data(), &kOne);
    rows<T>::scal.kernel[level()](&c.n, &alpha, scaled.data(), &kOne);
    rows<T>::real_scal.kernel[level()](&c.n, &real_alpha, really_scaled.data(), &kOne);
    for (std::size_t i = 0; i < c.x.size(); ++i) {
      const bool from_factor = std::isnan(c.factor), from_x = has_nan(c.x[i]), from_y = has_nan(c.y[i]);
      // axpy with 0 and scal with 1 touch nothing, not even to make a signalling NaN quiet.
      EXPECT_TRUE(c.factor == 0 ? same_bits(c.y[i], added[i])
                                : has_nan(added[i]) == (from_factor || from_x || from_y))
          << "axpy " << c.factor << " at " << i << " of " << c.n;
      for (const T& result : {scaled[i], really_scaled[i]}) {
        EXPECT_TRUE(c.factor == 1 ? same_bits(c.x[i], result) : has_nan(result) == (from_factor || from_x))
            << "scal " << c.factor << " at " << i << " of " << c.n;
      }
    }
  });
}

TEST_P(NanLevel, RotationsAndExchangesCarryIt) {
  for_cases([&]<class T>(const nan_case<T>& c) {
    auto turned_x = c.x, turned_y = c.y, x = c.x, y = c.y;
    const auto cosine = static_cast<real_of<T>>(c.factor);
    const real_of<T> sine = 0;
    rows<T>::rot.kernel[level()](&c.n, turned_x.data(), &kOne, turned_y.data(), &kOne, &cosine, &sine);
    rows<T>::swap.kernel[level()](&c.n, x.data(), &kOne, y.data(), &kOne);
    for (std::size_t i = 0; i < c.x.size(); ++i) {
      const bool expected = std::isnan(c.factor) || has_nan(c.x[i]) || has_nan(c.y[i]);
      EXPECT_TRUE(has_nan(turned_x[i]) == expected && has_nan(turned_y[i]) == expected) << i << " of " << c.n;
      EXPECT_TRUE(same_bits(c.x[i], y[i]) && same_bits(c.y[i], x[i])) << i << " of " << c.n;
    }
  });
}

TEST_P(NanLevel, SumsCarryIt) {
  for_cases([&]<class T>(const nan_case<T>& c) {
    const auto any = [](const std::vector<T>& v) { return std::any_of(v.begin(), v.end(), has_nan<T>); };
    const bool in_x = any(c.x), in_either = in_x || any(c.y);
    const auto dot = [&](const auto& row) {
      if constexpr (is_complex<T>) {
        T result{};
        row.kernel[level()](&result, &c.n, c.x.data(), &kOne, c.y.data(), &kOne);
        EXPECT_EQ(in_either, std::isnan(result.real) && std::isnan(result.imag)) << c.n;
      } else {
        EXPECT_EQ(in_either, std::isnan(row.kernel[level()](&c.n, c.x.data(), &kOne, c.y.data(), &kOne)))
            << c.n;
      }
    };
    if constexpr (is_complex<T>) {
      dot(rows<T>::dotu);
      dot(rows<T>::dotc);
    } else {
      dot(rows<T>::dot);
    }
    EXPECT_EQ(in_x, std::isnan(rows<T>::asum.kernel[level()](&c.n, c.x.data(), &kOne))) << c.n;
    EXPECT_EQ(in_x, std::isnan(rows<T>::nrm2.kernel[level()](&c.n, c.x.data(), &kOne))) << c.n;
  });
}

INSTANTIATE_TEST_SUITE_P(Levels, NanLevel, testing::Range(0, kLevels));

}  // namespace
}  // namespace qel::test
