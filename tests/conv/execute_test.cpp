// SPDX-License-Identifier: BSD-3-Clause
// Convolution and correlation against exact sums: lengths around every threshold, strides, starts,
// decimation, precisions, any number of dimensions.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <complex>
#include <random>
#include <vector>

#include "conv/conv_full.h"
#include "conv/conv_plan.h"
#include "conv/task.h"
#include "qel/conv.h"
#include "service/complex_arithmetic.h"
#include "tests/support/guarded.h"

namespace qel::test {
namespace {

using namespace conv;
using wide = std::complex<double>;  // exact: all values are small integers

template <class T>
T make(double re, double im) {
  using R = real_of<T>;
  if constexpr (is_complex<T>) {
    return {static_cast<R>(re), static_cast<R>(im)};
  } else {
    return static_cast<R>(re);
  }
}
template <class T>
wide widen(T v) {
  if constexpr (is_complex<T>) {
    return {v.real, v.imag};
  } else {
    return v;
  }
}

/// Small integers: sums are exact.
template <class T>
std::vector<T> integers(int n, unsigned seed) {
  std::mt19937 random(seed);
  const auto part = [&] { return static_cast<double>(static_cast<int>(random() % 9) - 4); };
  std::vector<T> v;
  for (int i = 0; i < n; ++i) v.push_back(make<T>(part(), part()));
  return v;
}

/// sum + a b, without the care for infinities that the library's product takes.
wide plus_product(wide sum, wide a, wide b) {
  return {sum.real() + a.real() * b.real() - a.imag() * b.imag(),
          sum.imag() + a.real() * b.imag() + a.imag() * b.real()};
}

/// w[t] for t counted from the first.
template <class T>
wide reference(bool correlates, const std::vector<T>& x, const std::vector<T>& y, int t) {
  const int nx = static_cast<int>(x.size()), ny = static_cast<int>(y.size());
  wide sum = 0;
  for (int i = 0; i < nx; ++i) {
    const int j = correlates ? i + t : t - i;
    if (j >= 0 && j < ny) sum = plus_product(sum, widen(x[i]), widen(y[j]));
  }
  return sum;
}

/// Lays n elements out with a stride, lowest address first, behind each other in memory that ends at a guard
/// page.
template <class T>
void lay_out(const std::vector<T>& values, int stride, guarded<T>& into) {
  const long n = static_cast<long>(values.size()), s = stride;
  for (long i = 0; i < n; ++i)
    into.data()[s >= 0 ? i * s : -s * (n - 1 - i)] = values[static_cast<size_t>(i)];
}
std::size_t extent(int n, int stride) {
  return static_cast<std::size_t>(n - 1) * static_cast<std::size_t>(std::abs(stride)) + 1;
}

template <class T>
struct entries;
template <>
struct entries<float> {
  static constexpr decltype(vslsConvNewTaskX1D)* create[2] = {vslsConvNewTaskX1D, vslsCorrNewTaskX1D};
  static constexpr decltype(vslsConvExecX1D)* execute[2] = {vslsConvExecX1D, vslsCorrExecX1D};
};
template <>
struct entries<double> {
  static constexpr decltype(vsldConvNewTaskX1D)* create[2] = {vsldConvNewTaskX1D, vsldCorrNewTaskX1D};
  static constexpr decltype(vsldConvExecX1D)* execute[2] = {vsldConvExecX1D, vsldCorrExecX1D};
};
template <>
struct entries<complex8> {
  static constexpr decltype(vslcConvNewTaskX1D)* create[2] = {vslcConvNewTaskX1D, vslcCorrNewTaskX1D};
  static constexpr decltype(vslcConvExecX1D)* execute[2] = {vslcConvExecX1D, vslcCorrExecX1D};
};
template <>
struct entries<complex16> {
  static constexpr decltype(vslzConvNewTaskX1D)* create[2] = {vslzConvNewTaskX1D, vslzCorrNewTaskX1D};
  static constexpr decltype(vslzConvExecX1D)* execute[2] = {vslzConvExecX1D, vslzCorrExecX1D};
};

template <class T>
class Convolution : public testing::Test {};
using all_types = testing::Types<float, double, complex8, complex16>;
TYPED_TEST_SUITE(Convolution, all_types);

struct setting {
  bool correlates = false;
  int mode = 0;
  int sx = 1, sy = 1, sz = 1;
  bool whole = true;
  int start = 0, decimation = 1;  ///< counted from the first output
  int precision = 0;              ///< internal; 0: as it is
};

/// Greatest difference from the reference, in units of the sum of absolute products.
template <class T>
double worst_error(int nx, int ny, const setting& s) {
  const std::vector<T> x = integers<T>(nx, 1), y = integers<T>(ny, 2);
  const int results = nx + ny - 1, first = s.correlates ? 1 - nx : 0;
  const int nz = s.whole ? results : (results - 1 - s.start) / s.decimation + 1;
  guarded<T> gx(extent(nx, s.sx)), gy(extent(ny, s.sy)), gz(extent(nz, s.sz));
  lay_out(x, s.sx, gx);
  lay_out(y, s.sy, gy);
  std::fill_n(gz.data(), gz.size(), make<T>(99, 99));
  ::vsl_cc_task* task = nullptr;
  EXPECT_EQ(entries<T>::create[s.correlates](&task, s.mode, nx, ny, nz, gx.data(), s.sx), 0);
  auto* record = reinterpret_cast<conv::vsl_cc_task*>(task);
  const int start = first + s.start;
  if (!s.whole) {
    vsl_cc_set(record, 5, &start);
    vsl_cc_set(record, 6, &s.decimation);
  }
  if (s.precision != 0) vslConvSetInternalPrecision(task, s.precision);
  EXPECT_EQ(entries<T>::execute[s.correlates](task, gy.data(), s.sy, gz.data(), s.sz), 0);
  double worst = 0, size = 0;
  for (const T v : x) size += std::norm(widen(v));
  double size_y = 0;
  for (const T v : y) size_y += std::norm(widen(v));
  for (long r = 0; r < nz; ++r) {
    const wide want =
        reference(s.correlates, x, y, static_cast<int>(s.whole ? first + r : start + r * s.decimation));
    const long place = s.sz >= 0 ? r * s.sz : -static_cast<long>(s.sz) * (nz - 1 - r);
    worst = std::max(worst, std::abs(widen(gz.data()[place]) - want));
  }
  // Gaps of z stay as they were.
  for (std::size_t k = 0; k < gz.size(); ++k) {
    const bool gap = k % static_cast<std::size_t>(std::abs(s.sz)) != 0;
    EXPECT_TRUE(!gap || widen(gz.data()[k]) == widen(make<T>(99, 99)));
  }
  vslConvDeleteTask(&task);
  EXPECT_EQ(task, nullptr);
  return worst / std::sqrt(size * size_y + 1e-300);
}
template <class T>
constexpr double kEps = std::is_same_v<real_of<T>, float> ? 6e-8 : 1.2e-16;

TYPED_TEST(Convolution, LengthsAroundTheThresholds) {
  using T = TypeParam;
  const std::pair<int, int> lengths[] = {
      {1, 1},     {1, 7},      {5, 3},     {8, 8},     {16, 33},   {70, 63},   {447, 64},  {448, 64},
      {449, 64},  {64, 449},   {256, 256}, {255, 256}, {300, 100}, {299, 100}, {301, 100}, {512, 512},
      {4095, 63}, {4096, 63},  {4097, 63}, {63, 9000}, {8191, 3},  {8192, 2},  {5000, 64}, {1500, 400},
      {2000, 70}, {1000, 999}, {100, 100}, {31, 1000}, {193, 64}};
  for (const auto& [nx, ny] : lengths) {
    for (const bool correlates : {false, true}) {
      for (const int mode : {nx % 2 == 0 ? 0 : 2, 1}) {
        setting s;
        s.correlates = correlates;
        s.mode = mode;
        const int shorter = std::min(nx, ny);
        const bool sums = mode == 1 || nx + ny - 1 < 512 || shorter < 64;
        // Integers are exact in sums; transforms err by some roundings of the whole.
        ASSERT_LE(worst_error<T>(nx, ny, s), sums ? 0 : 8 * kEps<T>)
            << nx << " by " << ny << ", correlation " << correlates << ", mode " << mode;
      }
    }
  }
}

TYPED_TEST(Convolution, StridesStartsDecimation) {
  using T = TypeParam;
  for (const bool correlates : {false, true}) {
    for (const int mode : {1, 2}) {
      for (const auto& [nx, ny] : {std::pair{9, 14}, {14, 9}, {300, 260}}) {
        const double allowed = mode == 1 || nx < 100 ? 0 : 8 * kEps<T>;
        for (const auto& [sx, sy, sz] :
             {std::tuple{1, 1, 2}, {-1, 1, 1}, {3, -2, -4}, {2, 5, 1}, {1, -1, -1}}) {
          setting s;
          s.correlates = correlates;
          s.mode = mode;
          s.sx = sx, s.sy = sy, s.sz = sz;
          ASSERT_LE(worst_error<T>(nx, ny, s), allowed) << sx << ' ' << sy << ' ' << sz;
          s.whole = false;
          for (const auto& [start, decimation] :
               {std::pair{0, 2}, {5, 1}, {3, 7}, {nx + ny - 2, 1}, {nx + ny - 2, 100}}) {
            s.start = start;
            s.decimation = decimation;
            ASSERT_LE(worst_error<T>(nx, ny, s), allowed) << start << ' ' << decimation << ", mode " << mode;
          }
        }
      }
    }
  }
}

TYPED_TEST(Convolution, ZeroStridesRepeatAnElement) {
  using T = TypeParam;
  const std::vector<T> x = integers<T>(4, 3), y = integers<T>(5, 4), flat(5, y[0]);
  std::vector<T> z(8), want(8);
  for (const int mode : {1, 2}) {
    for (auto& [stride, from, to] : {std::tuple{0, &y, &z}, {1, &flat, &want}}) {
      ::vsl_cc_task* task = nullptr;
      entries<T>::create[0](&task, mode, 4, 5, 8, x.data(), 1);
      EXPECT_EQ(entries<T>::execute[0](task, from->data(), stride, to->data(), 1), 0);
      vslConvDeleteTask(&task);
    }
    for (std::size_t k = 0; k < 8; ++k) EXPECT_EQ(widen(z[k]), widen(want[k]));
  }
}

TEST(ConvolutionPrecision, SumsInDouble) {
  setting s;
  s.precision = 2;
  // As exact as its results can be stored.
  for (const int mode : {0, 1}) {
    s.mode = mode;
    EXPECT_LE(worst_error<float>(600, 500, s), 1e-8);
    EXPECT_LE(worst_error<complex8>(600, 500, s), 1e-8);
  }
}

TYPED_TEST(Convolution, AllShortLengths) {
  using T = TypeParam;
  setting s;
  s.mode = 1;
  for (int nx = 1; nx < 200; nx += nx < 100 ? 1 : 7)
    for (int ny = 1; ny <= 34; ++ny) ASSERT_EQ(worst_error<T>(nx, ny, s), 0) << nx << " by " << ny;
}

TEST(ConvolutionEdges, NothingBesideTheOverlapTakesPart) {
  // An infinity and a NaN show where a padded product would have been formed.
  for (const int taps : {5, 16, 30}) {
    for (const int n : {5, 40, 64, 200}) {
      std::vector<double> x(static_cast<std::size_t>(n), 1.0), y(static_cast<std::size_t>(taps), 1.0);
      std::vector<double> full(x.size() + y.size() - 1), sums(full.size());
      y.front() = HUGE_VAL;
      y.back() = std::nan("");
      conv_full(x.data(), n, y.data(), taps, full.data());
      ::vsl_cc_task* task = nullptr;
      vsldConvNewTaskX1D(&task, 1, n, taps, n + taps - 1, x.data(), 1);
      EXPECT_EQ(vsldConvExecX1D(task, y.data(), 1, sums.data(), 1), 0);
      vslConvDeleteTask(&task);
      for (const auto& w : {full, sums}) {
        for (int t = 0; t < n + taps - 1; ++t) {
          const bool has_infinity = t < n, has_nan = t >= taps - 1;
          EXPECT_EQ(std::isnan(w[static_cast<std::size_t>(t)]), has_nan) << t;
          EXPECT_TRUE(has_nan || std::isinf(w[static_cast<std::size_t>(t)]) == has_infinity) << t;
        }
      }
    }
  }
}

TEST(ConvolutionFull, Arguments) {
  double one = 1;
  EXPECT_EQ(conv_full<double>(nullptr, 1, &one, 1, &one), kConvNull);
  EXPECT_EQ(conv_full<double>(&one, 0, &one, 1, &one), kConvBadLength);
}

TEST(ConvolutionPlan, Table) {
  const struct {
    core_int longer, shorter;
    conv_method method;
    int order;
    core_int step;
  } rows[] = {
      {1, 1, conv_method::kDirect, 0, 0},
      {256, 255, conv_method::kDirect, 0, 0},
      {256, 256, conv_method::kDirect, 0, 0},
      {257, 256, conv_method::kTransform, 9, 0},
      {449, 64, conv_method::kOverlapSave, 8, 193},
      {448, 64, conv_method::kDirect, 0, 0},
      {450, 63, conv_method::kDirect, 0, 0},
      {100000, 63, conv_method::kBlocks, 0, 0},
      {4095, 63, conv_method::kDirect, 0, 0},
      {4096, 1, conv_method::kBlocks, 0, 0},
      {600, 200, conv_method::kOverlapSave, 10, 825},
      {599, 200, conv_method::kTransform, 10, 0},
      {512, 512, conv_method::kTransform, 10, 0},
      {513, 512, conv_method::kTransform, 10, 0},
      {514, 512, conv_method::kTransform, 11, 0},
  };
  for (const auto& row : rows) {
    const conv_plan plan = plan_conv(row.longer, row.shorter);
    EXPECT_EQ(plan.method, row.method) << row.longer << ' ' << row.shorter;
    EXPECT_EQ(plan.order, row.order) << row.longer << ' ' << row.shorter;
    EXPECT_EQ(plan.step, row.step) << row.longer << ' ' << row.shorter;
  }
}

TEST(ConvolutionPlan, NativeTable) {
  constexpr auto kSums = native_conv_method::kSums, kSingle = native_conv_method::kSingleSums,
                 kPieces = native_conv_method::kPieces;
  const struct {
    native_conv_facts facts;
    native_conv_method method;
    core_int length, pieces;
  } rows[] = {
      // Where results are exact they stay so.
      {{100000, 63, 0, 100062, 1, false, false}, kSums, 0, 0},
      {{256, 256, 0, 511, 1, true, false}, kSums, 0, 0},
      {{100000, 1000, 0, 100999, 1, false, true}, kSums, 0, 0},
      {{449, 64, 0, 512, 1, false, false}, kSums, 0, 0},
      {{512, 512, 0, 1023, 1, false, false}, kPieces, 1024, 1},
      {{4096, 4096, 0, 8191, 1, false, false}, kPieces, 8192, 1},
      {{4096, 4096, 4095, 1, 1, false, false}, kSums, 0, 0},
      // Outputs that all taps meet need no more than the data.
      {{2048, 1024, 1023, 1025, 1, false, false}, kPieces, 2048, 1},
      {{65536, 4096, 0, 69631, 1, false, false}, kPieces, 16384, 6},
      {{1000, 50, 0, 2, 1000, false, false}, kSingle, 0, 0},
      {{1000, 50, 0, 100, 10, false, true}, kSums, 0, 0},
      {{100000, 5000, 0, 3, 40000, false, false}, kSingle, 0, 0},
      // No transform is as long as that.
      {{1 << 30, 1 << 30, 1 << 30, 1 << 29, 1, false, false}, kSums, 0, 0},
  };
  for (const auto& row : rows) {
    const native_conv_facts& f = row.facts;
    const native_conv_plan plan = plan_native_conv(f);
    EXPECT_EQ(plan.method, row.method) << f.longer << ' ' << f.shorter;
    EXPECT_EQ(plan.length, row.length) << f.longer << ' ' << f.shorter;
    EXPECT_EQ(plan.pieces, row.pieces) << f.longer << ' ' << f.shorter;
  }
}

TEST(ConvolutionPlan, PiecesHoldTheirOutputs) {
  for (const auto& [longer, shorter] : {std::pair{5000L, 200L}, {700L, 699L}, {90000L, 65L}}) {
    const core_int whole = longer + shorter - 1;
    for (const core_int first : {0L, 1L, shorter - 1, longer, whole - 2}) {
      for (const core_int count : {1L, 2L, whole / 2, whole}) {
        const native_conv_facts f{longer, shorter, first, std::min(count, whole - first), 1, false, false};
        for (const core_int step : {1L, 64L, whole}) {
          // A piece of a plan's own, and pieces as short as can be.
          native_conv_plan plan = plan_native_conv(f);
          if (plan.method != native_conv_method::kPieces || step < whole) {
            plan = {native_conv_method::kPieces, step + shorter - 1, step,
                    (f.last() - first + step - 1) / step, ""};
          }
          core_int next = first;
          for (core_int k = 0; k < plan.pieces; ++k) {
            const conv_piece p = piece_of(f, plan, k);
            ASSERT_EQ(p.from, next);
            next = p.to;
            // All data that the outputs meet are there, and nothing wraps onto them.
            ASSERT_LE(p.data_from, std::max<core_int>(0, p.from - shorter + 1));
            ASSERT_GE(p.data_from + p.data_count, std::min(longer, p.to));
            ASSERT_LE(p.to - p.data_from, plan.length);
            ASSERT_LE(p.data_count + shorter - 1 - plan.length, p.from - p.data_from);
          }
          ASSERT_EQ(next, f.last());
        }
      }
    }
  }
}

TYPED_TEST(Convolution, ATaskTakesOtherDataAndEdits) {
  using T = TypeParam;
  constexpr int kX = 900, kY = 300, kZ = 400;
  const std::vector<T> x = integers<T>(kX, 7);
  ::vsl_cc_task* task = nullptr;
  ASSERT_EQ(entries<T>::create[0](&task, 0, kX, kY, kZ, x.data(), 1), 0);
  for (unsigned round = 0; round < 6; ++round) {
    const int start = round < 3 ? 0 : 500;
    vsl_cc_set(reinterpret_cast<conv::vsl_cc_task*>(task), 5, &start);
    const std::vector<T> y = integers<T>(kY, 8 + round);
    // The results may take the place of an operand.
    std::vector<T> z = y;
    z.resize(kZ);
    ASSERT_EQ(entries<T>::execute[0](task, round % 2 == 0 ? z.data() : y.data(), 1, z.data(), 1), 0);
    for (int r = 0; r < kZ; ++r)
      ASSERT_LE(std::abs(widen(z[static_cast<std::size_t>(r)]) - reference(false, x, y, start + r)),
                kEps<T> * 1e5)
          << round << ' ' << r;
  }
  EXPECT_EQ(vslConvDeleteTask(&task), 0);
}

/// A dense array of any rank, first dimension fastest.
struct array {
  std::vector<int> n;
  std::vector<complex16> v;
  explicit array(std::vector<int> shape, unsigned seed = 0) : n(std::move(shape)) {
    int size = 1;
    for (const int k : n) size *= k;
    v = seed != 0 ? integers<complex16>(size, seed) : std::vector<complex16>(static_cast<std::size_t>(size));
  }
  std::vector<int> index(std::size_t place) const {
    std::vector<int> at;
    for (const int k : n) {
      at.push_back(static_cast<int>(place % static_cast<std::size_t>(k)));
      place /= static_cast<std::size_t>(k);
    }
    return at;
  }
};

TEST(ConvolutionRanks, AgainstSums) {
  for (const auto& [nx, ny] :
       {std::pair{std::vector{3, 2}, std::vector{4, 5}}, {std::vector{2, 3, 2}, std::vector{3, 1, 4}}}) {
    for (const int job : {kConvolution, kCorrelation}) {
      const int dims = static_cast<int>(nx.size());
      const array x(nx, 5), y(ny, 6);
      std::vector<int> start, decimation, nz;
      for (int d = 0; d < dims; ++d) {
        const int first = job == kConvolution ? 0 : 1 - nx[d];
        start.push_back(first + d % 2);
        decimation.push_back(1 + d);
        nz.push_back((nx[d] + ny[d] - 2 - d % 2) / (1 + d) + 1);
      }
      array z(nz);
      conv::vsl_cc_task* task = nullptr;
      const cc_kind kind = {job, kComplex, kDouble, kDouble, dims};
      ASSERT_EQ(vsl_cc_create(&task, kind, 0, nx.data(), ny.data(), nz.data(), x.v.data(), nullptr), 0);
      vsl_cc_set(task, 5, start.data());
      vsl_cc_set(task, 6, decimation.data());
      ASSERT_EQ(vsl_cc_execute(task, x.v.data(), nullptr, y.v.data(), nullptr, z.v.data(), nullptr), 0);
      vsl_cc_delete(&task);
      for (std::size_t r = 0; r < z.v.size(); ++r) {
        wide sum = 0;
        for (std::size_t p = 0; p < x.v.size(); ++p) {
          std::size_t place = 0, step = 1;
          bool meets = true;
          for (int d = 0; d < dims; ++d) {
            const int t = start[d] + z.index(r)[d] * decimation[d], i = x.index(p)[d];
            const int j = job == kConvolution ? t - i : t + i;
            meets = meets && j >= 0 && j < ny[d];
            if (meets) place += static_cast<std::size_t>(j) * step;
            step *= static_cast<std::size_t>(ny[d]);
          }
          if (meets) sum += widen(x.v[p]) * widen(y.v[place]);
        }
        ASSERT_EQ(widen(z.v[r]), sum) << "job " << job << ", output " << r;
      }
    }
  }
}

}  // namespace
}  // namespace qel::test
