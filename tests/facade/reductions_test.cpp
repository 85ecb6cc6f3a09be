// SPDX-License-Identifier: BSD-3-Clause
// Sums, statistics, extremes and sequences: values, NaN, and the precision and order of their sums.
#include <cmath>

#include "tests/facade/support.h"

namespace Tavik::test {
namespace {

Kernel::DotNetBlas blas;
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

template <class T>
class Reductions : public testing::Test {};
TYPED_TEST_SUITE(Reductions, AllTypes);

TYPED_TEST(Reductions, FollowTheirDefinitions) {
  using T = TypeParam;
  for (const int n : {1, 2, 3, 4, 5, 9, 17}) {
    for (const placing p : kPlacings) {
      const vector_operand<T> x(p, 11);
      wide sum = 0, squares = 0, product = 1;
      for (int k = 0; k < n; ++k) {
        sum += x.was(k);
        squares += x.was(k) * x.was(k);
        if (k < 5) product *= x.was(k);
      }
      const wide deviation = squares - sum * sum / static_cast<double>(n);
      const double tolerance = 4 * kEpsilon<T> * (1 + std::abs(squares));
      EXPECT_LE(std::abs(widened(blas.SumOfSquares(n, x.block, x.inc)) - deviation), tolerance);
      EXPECT_LE(std::abs(widened(blas.Variance(n, x.block, x.inc)) - deviation / static_cast<double>(n)),
                tolerance);
      EXPECT_LE(std::abs(widened(blas.Product(std::min(n, 5), x.block, x.inc)) - product),
                8 * kEpsilon<T> * std::abs(product));
      const DataBlock<T> y{Array<T>(30), 3};
      blas.Delta(n, x.block, x.inc, y);
      EXPECT_EQ(widened(y.Data[3]), x.was(0));
      for (int k = 1; k < n; ++k) EXPECT_EQ(widened(y.Data[3 + k]), x.was(k) - x.was(k - 1));
      EXPECT_EQ(widened(y.Data[3 + n]), wide());
      if constexpr (!is_complex<T>) {
        blas.CumulativeSum(n, x.block, x.inc, y);
        T running = 0;
        for (int k = 0; k < n; ++k) EXPECT_EQ(y.Data[3 + k], running += static_cast<T>(x.was(k).real()));
      }
    }
  }
  const DataBlock<T> x{exact_numbers<T>(4, 1), 1};
  EXPECT_EQ(widened(blas.Sum(0, x, 1)), wide());
  EXPECT_EQ(widened(blas.Product(0, x, 1)), widened(x.Data[1])) << "element 0 is read whatever n is";
  EXPECT_EQ(widened(blas.Variance(1, x, 1)), wide());
  EXPECT_TRUE(std::isnan(widened(blas.Variance(0, x, 1)).real()));
}

/// Data in the manner of the statistical reference sets: the exact mean and sum of squared deviations are
/// known.
struct reference_set {
  const char* name;
  std::vector<double> data;
  double mean, deviation;
};
std::vector<reference_set> reference_sets() {
  std::vector<reference_set> sets = {{"integers", {1, 2, 3, 4, 5, 6, 7, 8, 9}, 5, 60}};
  // 1001 numbers that alternate by 0.2 around a mean, after one at the mean itself.
  for (const double mean : {1.2, 1000.2, 1000000.2}) {
    reference_set set{"alternating", {mean}, mean, 1000 * 0.01};
    for (int i = 0; i < 500; ++i) set.data.insert(set.data.end(), {mean + 0.1, mean - 0.1});
    sets.push_back(set);
  }
  return sets;
}

TEST(Statistics, OnePassLosesWhatTheMeanExceedsTheDeviations) {
  for (const reference_set& set : reference_sets()) {
    const int n = static_cast<int>(set.data.size());
    const DoubleDataBlock x{set.data, 0};
    // The squares of the data sum up to about n mean^2, each with a relative error of half a unit.
    const double error =
        n * set.mean * set.mean * std::numeric_limits<double>::epsilon() * 300 + 1e-12 * set.deviation;
    EXPECT_NEAR(blas.SumOfSquares(n, x, 1), set.deviation, error) << set.name << set.mean;
    EXPECT_EQ(blas.SumOfSquares(x.Data), blas.SumOfSquares(n, x, 1));
    EXPECT_EQ(blas.Variance(n, x, 1), blas.SumOfSquares(n, x, 1) / n);
    EXPECT_NEAR(blas.NaNMean(n, x, 1), set.mean, 1e-12 * set.mean);
    // The two-pass form keeps its digits.
    EXPECT_NEAR(blas.NaNVariance(n, x, 1), set.deviation / n, 1e-9 * set.deviation / n + 2e-16 * set.mean)
        << set.mean;
  }
}

TEST(Statistics, OnePassCancelsAltogetherFarFromZero) {
  // Kept: 1e9 + {4, 7, 13, 16} has variance 22.5; its squares need 60 bits.
  const DoubleDataBlock x{{1e9 + 4, 1e9 + 7, 1e9 + 13, 1e9 + 16}, 0};
  double s1 = 0, s2 = 0;
  for (int k = 0; k < 4; ++k) {
    s1 += x.Data[k];
    s2 += x.Data[k] * x.Data[k];
  }
  const double got = blas.SumOfSquares(4, x, 1);
  EXPECT_EQ(got, s2 - s1 * s1 / 4);
  EXPECT_GT(std::abs(got - 90), 20);
  EXPECT_EQ(blas.NaNVariance(4, x, 1), 22.5);
}

TEST(Statistics, SinglePrecisionSumsInDouble) {
  const int n = 1000;
  std::vector<float> data(n, 4097.3F);
  data[0] = 4100.3F;
  const FloatDataBlock x{data, 0};
  double s1 = 0, s2 = 0;
  float single = 0;
  for (const float v : data) {
    s1 += v;
    s2 += static_cast<double>(v) * v;
    single += v;
  }
  EXPECT_EQ(blas.SumOfSquares(n, x, 1), static_cast<float>(s2 - s1 * s1 / n));
  EXPECT_EQ(blas.NaNSum(n, x, 1), static_cast<float>(s1));
  EXPECT_EQ(blas.Sum(n, x, 1), single) << "rounded at each step";
  EXPECT_NE(static_cast<float>(s1), single);
  const FloatComplexDataBlock z{std::vector<FloatComplex>(n, {4097.25F, 1}), 0};
  EXPECT_LT(std::abs(widened(blas.SumOfSquares(n, z, 1))), 1e-3);
}

TEST(Statistics, NaNSumOfSquaresHasSinglePrecision) {
  const DoubleDataBlock x{{0.1, kNaN, 0.7, 0.35}, 0};
  const double s1 = 0.1 + 0.7 + 0.35, s2 = 0.1 * 0.1 + 0.7 * 0.7 + 0.35 * 0.35;
  const double deviation = s2 - s1 * s1 / 3;
  EXPECT_EQ(blas.NaNSumOfSquares(4, x, 1), static_cast<double>(static_cast<float>(deviation)));
  EXPECT_NE(blas.NaNSumOfSquares(4, x, 1), deviation);
}

template <class T>
class NaNForms : public testing::Test {};
TYPED_TEST_SUITE(NaNForms, RealTypes);

TYPED_TEST(NaNForms, LeaveNaNOut) {
  using T = TypeParam;
  const T nan = std::numeric_limits<T>::quiet_NaN(), inf = std::numeric_limits<T>::infinity();
  const struct {
    std::vector<T> data;
    int max_index, min_index, nan_max_index, nan_min_index, count;
    T nan_sum;
  } cases[] = {
      {{1, nan, 3}, 2, 0, 2, 0, 2, 4},          {{nan, 1, 2}, 0, 0, 2, 1, 2, 3},
      {{nan, nan}, 0, 0, -1, -1, 0, 0},         {{3, 1, 3, 1}, 0, 1, 0, 1, 4, 8},
      {{-inf, -inf}, 0, 0, -1, 0, 2, -inf},     {{inf}, 0, 0, 0, -1, 1, inf},
      {{2, nan, -5, nan, 7}, 4, 2, 4, 2, 3, 4}, {{5}, 0, 0, 0, 0, 1, 5},
  };
  for (const auto& c : cases) {
    const int n = static_cast<int>(c.data.size());
    for (const int stride : {1, -1, 2}) {
      DataBlock<T> x{Array<T>(2 * n), stride < 0 ? n - 1 : 0};
      for (int k = 0; k < n; ++k) x.Data[x.Offset + k * stride] = c.data[static_cast<size_t>(k)];
      const auto value = [&](int index) {
        return index < 0 ? c.data[0] : c.data[static_cast<size_t>(index)];
      };
      const auto same = [](T a, T b) { return a == b || (std::isnan(a) && std::isnan(b)); };
      EXPECT_EQ(blas.MaxIndex(n, x, stride), c.max_index);
      EXPECT_EQ(blas.MinIndex(n, x, stride), c.min_index);
      EXPECT_TRUE(same(blas.MaxValue(n, x, stride), value(c.max_index)));
      EXPECT_TRUE(same(blas.MinValue(n, x, stride), value(c.min_index)));
      EXPECT_EQ(blas.NaNMaxIndex(n, x, stride), c.nan_max_index);
      EXPECT_EQ(blas.NaNMinIndex(n, x, stride), c.nan_min_index);
      EXPECT_TRUE(same(blas.NaNMaxValue(n, x, stride), value(c.nan_max_index)));
      EXPECT_TRUE(same(blas.NaNMinValue(n, x, stride), value(c.nan_min_index)));
      EXPECT_EQ(blas.NaNCount(n, x, stride), c.count);
      EXPECT_EQ(blas.NaNSum(n, x, stride), c.nan_sum);
      EXPECT_TRUE(same(blas.NaNMean(n, x, stride), c.nan_sum / static_cast<T>(c.count)));
    }
  }
}

TYPED_TEST(NaNForms, HaveAVarianceOfTheNumbersAlone) {
  using T = TypeParam;
  const T nan = std::numeric_limits<T>::quiet_NaN();
  const DataBlock<T> x{{0, nan, 2, 4, nan, 6, 8, 0}, 1};
  EXPECT_EQ(blas.NaNVariance(6, x, 1), 5);  // 2, 4, 6, 8
  EXPECT_EQ(blas.NaNSumOfSquares(6, x, 1), 20);
  EXPECT_TRUE(std::isnan(blas.NaNVariance(1, x, 1)));
  EXPECT_EQ(blas.MaxIndex(0, x, 1), 0);
  EXPECT_TRUE(std::isnan(blas.MaxValue(-3, x, 1))) << "element 0 is read whatever n is";
}

}  // namespace
}  // namespace Tavik::test
