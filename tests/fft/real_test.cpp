// SPDX-License-Identifier: BSD-3-Clause
// Real transforms beside a long double transform: packed formats, directions, placement, strides, dimensions.
#include <cstdlib>
#include <limits>

#include "qel/service.h"
#include "tests/fft/reference.h"
#include "tests/fft/support.h"

namespace qel::test {
namespace {

/// As many threads as the tests ask for, whatever the machine has; read on first use.
[[maybe_unused]] const bool kThreadsAsAsked = setenv("QEL_DYNAMIC", "FALSE", 1) == 0;

/// The numbers of the spectrum in the order of a packed line.
std::vector<long double> packed_line(const std::vector<wide>& spectrum, int format) {
  const std::size_t n = spectrum.size();
  std::vector<long double> result;
  const bool even = n % 2 == 0;
  result.push_back(spectrum[0].real());
  if (format == DFTI_CCS_FORMAT) result.push_back(0);
  if (format == DFTI_PERM_FORMAT && even) result.push_back(spectrum[n / 2].real());
  for (std::size_t k = 1; 2 * k < n; ++k) {
    result.push_back(spectrum[k].real());
    result.push_back(spectrum[k].imag());
  }
  if (format != DFTI_PERM_FORMAT && even) result.push_back(spectrum[n / 2].real());
  if (format == DFTI_CCS_FORMAT && even) result.push_back(0);
  return result;
}

template <class R>
long double distance_to(const R* got, const std::vector<long double>& want) {
  long double error = 0, size = 0;
  for (std::size_t i = 0; i < want.size(); ++i) {
    const long double d = static_cast<long double>(got[i]) - want[i];
    error += d * d;
    size += want[i] * want[i];
  }
  return std::sqrt(error / size);
}

template <class R>
std::vector<R> random_reals(std::size_t n, unsigned seed) {
  std::vector<R> result;
  for (const auto& z : random_line<R>(n, seed)) result.push_back(z.real());
  return result;
}
template <class R>
std::vector<wide> widened(const std::vector<R>& x) {
  std::vector<wide> result;
  for (const R v : x) result.emplace_back(static_cast<long double>(v), 0);
  return result;
}

template <class R>
class Real : public testing::Test {
 public:
  static constexpr int kPrecision = sizeof(R) == sizeof(double) ? DFTI_DOUBLE : DFTI_SINGLE;
  static long double bound(int n) {
    return std::numeric_limits<R>::epsilon() * (0.5L * std::sqrt(std::log2(static_cast<long double>(n))) + 1);
  }

  static void check_line(int n, int format, bool in_place, double scale) {
    SCOPED_TRACE(testing::Message() << n << " format " << format << " in place " << in_place);
    const owned_descriptor d(kPrecision, DFTI_REAL, {n});
    DftiSetValue(d.handle, DFTI_PLACEMENT, in_place ? DFTI_INPLACE : DFTI_NOT_INPLACE);
    DftiSetValue(d.handle, DFTI_PACKED_FORMAT, format);
    DftiSetValue(d.handle, DFTI_FORWARD_SCALE, scale);
    ASSERT_EQ(DftiCommitDescriptor(d.handle), 0);
    const auto count = static_cast<std::size_t>(n);
    const std::vector<R> x = random_reals<R>(count, 5);
    std::vector<wide> spectrum = wide_transform(widened(x), -1);
    for (wide& z : spectrum) z *= static_cast<long double>(static_cast<R>(scale));
    const std::vector<long double> want = packed_line(spectrum, format);
    std::vector<R> data(x), result(want.size() + 1, R{-7});
    data.resize(want.size() + 1, R{-7});
    if (in_place) {
      ASSERT_EQ(DftiComputeForward(d.handle, data.data()), 0);
      result = data;
    } else {
      ASSERT_EQ(DftiComputeForward(d.handle, data.data(), result.data()), 0);
      EXPECT_TRUE(std::equal(x.begin(), x.end(), data.begin()));
    }
    EXPECT_LE(distance_to(result.data(), want), bound(n));
    EXPECT_EQ(result.back(), R{-7}) << "wrote behind the format";
    if (format == DFTI_CCS_FORMAT) {
      EXPECT_EQ(result[1], R{0});
      if (n % 2 == 0) {
        EXPECT_EQ(result[count + 1], R{0});
      }
    }
    std::vector<R> back(count + 1, R{-7});
    const std::vector<R> before = result;
    if (in_place) {
      ASSERT_EQ(DftiComputeBackward(d.handle, result.data()), 0);
      back = result;
      if (format == DFTI_CCS_FORMAT) {
        EXPECT_EQ(result[count], R{0});
      }
    } else {
      ASSERT_EQ(DftiComputeBackward(d.handle, result.data(), back.data()), 0);
      EXPECT_EQ(result, before);
      EXPECT_EQ(back[count], R{-7});
    }
    std::vector<long double> again;
    for (const R v : x) again.push_back(static_cast<long double>(v) * n * static_cast<long double>(scale));
    EXPECT_LE(distance_to(back.data(), again), 2 * bound(n));
  }
};
using reals = testing::Types<double, float>;
TYPED_TEST_SUITE(Real, reals);

TYPED_TEST(Real, EveryShortLengthInEachFormat) {
  for (int n = 1; n <= 200; ++n) {
    for (const int format : {DFTI_CCS_FORMAT, DFTI_PACK_FORMAT, DFTI_PERM_FORMAT}) {
      for (const bool in_place : {true, false}) this->check_line(n, format, in_place, n % 3 == 0 ? 0.3 : 1);
    }
  }
}

TYPED_TEST(Real, LongerLines) {
  for (const int n : {256, 360, 1001, 1009, 2 * 1009, 1024, 4096, 5005, 30030, 1 << 17, 3 << 16}) {
    this->check_line(n, DFTI_PACK_FORMAT, true, 1);
    this->check_line(n, DFTI_CCS_FORMAT, false, 1);
  }
}

/// Spectrum element of an array in row-major order, any indices.
struct spectrum_array {
  std::vector<wide> values;
  std::vector<int> lengths;
  wide at(std::vector<int> index) const {
    std::size_t place = 0;
    for (std::size_t i = 0; i < lengths.size(); ++i) {
      place = place * static_cast<std::size_t>(lengths[i]) + static_cast<std::size_t>(index[i]);
    }
    return values[place];
  }
};

template <class R>
void check_complex_rows(const std::vector<int>& lengths, bool in_place, int threads, int storage) {
  SCOPED_TRACE(testing::Message() << testing::PrintToString(lengths) << " in place " << in_place
                                  << " threads " << threads << " storage " << storage);
  qel_set_num_threads(threads);
  using Z = std::complex<R>;
  const std::size_t dimension = lengths.size();
  const int n0 = lengths.back(), row = n0 / 2 + 1;
  int outer = 1;
  std::vector<int> real_strides(dimension + 1), strides(dimension + 1);
  real_strides[dimension] = strides[dimension] = 1;
  for (std::size_t i = dimension - 1; i > 0; --i) {
    strides[i] = row * outer;
    real_strides[i] = (in_place ? 2 * row : n0) * outer;
    outer *= lengths[i - 1];
  }
  const auto element = static_cast<std::size_t>(outer * n0);
  const owned_descriptor d(Real<R>::kPrecision, DFTI_REAL, lengths);
  if (storage == DFTI_COMPLEX_COMPLEX) DftiSetValue(d.handle, DFTI_CONJUGATE_EVEN_STORAGE, storage);
  DftiSetValue(d.handle, DFTI_PLACEMENT, in_place ? DFTI_INPLACE : DFTI_NOT_INPLACE);
  DftiSetValue(d.handle, DFTI_INPUT_STRIDES, real_strides.data());
  DftiSetValue(d.handle, DFTI_OUTPUT_STRIDES, strides.data());
  ASSERT_EQ(DftiCommitDescriptor(d.handle), 0);
  const std::vector<R> x = random_reals<R>(element, 6);
  const spectrum_array want{wide_transform_of(widened(x), lengths, -1), lengths};
  const int pitch = in_place ? 2 * row : n0;
  std::vector<R> data(static_cast<std::size_t>(outer * pitch));
  for (int r = 0; r < outer; ++r) std::copy_n(x.begin() + r * n0, n0, data.begin() + r * pitch);
  std::vector<Z> half(static_cast<std::size_t>(outer * row));
  ASSERT_EQ(in_place ? DftiComputeForward(d.handle, data.data())
                     : DftiComputeForward(d.handle, data.data(), half.data()),
            0);
  if (in_place) std::copy_n(data.begin(), 2 * half.size(), reinterpret_cast<R*>(half.data()));
  std::vector<wide> expected;
  for (int r = 0; r < outer; ++r) {
    for (int k = 0; k < row; ++k) expected.push_back(want.values[static_cast<std::size_t>(r * n0 + k)]);
  }
  EXPECT_LE(relative_error(half.data(), expected), Real<R>::bound(outer * n0) * 2);
  if (!in_place) {
    // Backward the spectrum is the input.
    DftiSetValue(d.handle, DFTI_INPUT_STRIDES, strides.data());
    DftiSetValue(d.handle, DFTI_OUTPUT_STRIDES, real_strides.data());
    ASSERT_EQ(DftiCommitDescriptor(d.handle), 0);
  }
  const std::vector<Z> before = half;
  ASSERT_EQ(in_place ? DftiComputeBackward(d.handle, data.data())
                     : DftiComputeBackward(d.handle, half.data(), data.data()),
            0);
  EXPECT_EQ(half, before);
  long double off = 0;
  for (int r = 0; r < outer; ++r) {
    for (int j = 0; j < n0; ++j) {
      const R got = data[static_cast<std::size_t>(r * pitch + j)] / static_cast<R>(outer * n0);
      off = std::max<long double>(off, std::abs(got - x[static_cast<std::size_t>(r * n0 + j)]));
    }
  }
  EXPECT_LE(off, 16 * std::numeric_limits<R>::epsilon());
  qel_set_num_threads(1);
}

TYPED_TEST(Real, RowsOfComplexNumbers) {
  for (const auto& lengths : std::vector<std::vector<int>>{
           {4, 6}, {5, 7}, {1, 8}, {8, 1}, {33, 20}, {3, 4, 5}, {6, 5, 34}, {6, 5, 32}, {130, 128}}) {
    for (const bool in_place : {true, false}) {
      for (const int threads : {1, 3}) {
        for (const int storage : {DFTI_COMPLEX_COMPLEX, DFTI_COMPLEX_REAL}) {
          check_complex_rows<TypeParam>(lengths, in_place, threads, storage);
        }
      }
    }
  }
}

/// Packs along the first dimension of the array of frequencies, then what is real along the next one.
void pack_array(const spectrum_array& s, std::vector<int> index, std::size_t axis, int format,
                std::vector<int> place, std::vector<long double>& out) {
  const int n = s.lengths[axis], last = n % 2 == 0 ? n / 2 : -1;
  const auto store = [&](const std::vector<int>& at, long double value) {
    std::size_t flat = 0;
    for (std::size_t i = 0; i < s.lengths.size(); ++i) {
      flat = flat * static_cast<std::size_t>(s.lengths[i]) + static_cast<std::size_t>(at[i]);
    }
    out[flat] = value;
  };
  for (int k = 0; 2 * k <= n; ++k) {
    index[axis] = k;
    const bool edge = k == 0 || k == last;
    const bool perm = format == DFTI_PERM_FORMAT && last >= 0;
    place[axis] = k == 0 ? 0 : k == last ? (perm ? 1 : n - 1) : (perm ? 2 * k : 2 * k - 1);
    if (edge && axis > 0) {
      pack_array(s, index, axis - 1, format, place, out);
    } else if (edge) {
      store(place, s.at(index).real());
    } else {
      // All frequencies of the dimensions before.
      int count = 1;
      for (std::size_t i = 0; i < axis; ++i) count *= s.lengths[i];
      for (int flat = 0; flat < count; ++flat) {
        int rest = flat;
        for (std::size_t i = axis; i-- > 0; rest /= s.lengths[i]) index[i] = place[i] = rest % s.lengths[i];
        store(place, s.at(index).real());
        ++place[axis];
        store(place, s.at(index).imag());
        --place[axis];
      }
    }
  }
}

TYPED_TEST(Real, PackedArrays) {
  using R = TypeParam;
  for (const auto& lengths : std::vector<std::vector<int>>{
           {4, 6}, {5, 7}, {6, 5}, {2, 2}, {1, 3}, {3, 4, 5}, {4, 6, 8}, {5, 3, 2}, {4, 3, 32}}) {
    for (const int format : {DFTI_PACK_FORMAT, DFTI_PERM_FORMAT}) {
      SCOPED_TRACE(testing::Message() << testing::PrintToString(lengths) << " format " << format);
      const owned_descriptor d(this->kPrecision, DFTI_REAL, lengths);
      DftiSetValue(d.handle, DFTI_PACKED_FORMAT, format);
      ASSERT_EQ(DftiCommitDescriptor(d.handle), 0);
      std::size_t count = 1;
      for (const int n : lengths) count *= static_cast<std::size_t>(n);
      const std::vector<R> x = random_reals<R>(count, 8);
      const spectrum_array s{wide_transform_of(widened(x), lengths, -1), lengths};
      std::vector<long double> want(count);
      const std::vector<int> zeros(lengths.size());
      pack_array(s, zeros, lengths.size() - 1, format, zeros, want);
      std::vector<R> data = x;
      ASSERT_EQ(DftiComputeForward(d.handle, data.data()), 0);
      EXPECT_LE(distance_to(data.data(), want), 4 * this->bound(static_cast<int>(count)));
      ASSERT_EQ(DftiComputeBackward(d.handle, data.data()), 0);
      std::vector<long double> again;
      for (const R v : x) again.push_back(static_cast<long double>(v) * static_cast<long double>(count));
      EXPECT_LE(distance_to(data.data(), again), 4 * this->bound(static_cast<int>(count)));
    }
  }
}

TYPED_TEST(Real, StridesTransformsAndUserThreads) {
  using R = TypeParam;
  const int n = 30, transforms = 3, strides[] = {1, 2}, tight[] = {0, 1};
  for (const int users : {1, 2}) {
    for (const int threads : {1, 2}) {
      qel_set_num_threads(threads);
      const owned_descriptor d(this->kPrecision, DFTI_REAL, {n});
      DftiSetValue(d.handle, DFTI_CONJUGATE_EVEN_STORAGE, DFTI_COMPLEX_COMPLEX);
      DftiSetValue(d.handle, DFTI_PLACEMENT, DFTI_NOT_INPLACE);
      DftiSetValue(d.handle, DFTI_NUMBER_OF_TRANSFORMS, transforms);
      DftiSetValue(d.handle, DFTI_NUMBER_OF_USER_THREADS, users);
      DftiSetValue(d.handle, DFTI_INPUT_STRIDES, strides);
      DftiSetValue(d.handle, DFTI_OUTPUT_STRIDES, tight);
      DftiSetValue(d.handle, DFTI_INPUT_DISTANCE, 64);
      DftiSetValue(d.handle, DFTI_OUTPUT_DISTANCE, 20);
      ASSERT_EQ(DftiCommitDescriptor(d.handle), 0);
      const std::vector<R> x = random_reals<R>(1 + 3 * 64, 9);
      std::vector<std::complex<R>> half(60);
      ASSERT_EQ(DftiComputeForward(d.handle, const_cast<R*>(x.data()), half.data()), 0);
      for (int t = 0; t < transforms; ++t) {
        std::vector<wide> line;
        for (int j = 0; j < n; ++j) line.emplace_back(x[static_cast<std::size_t>(1 + t * 64 + 2 * j)], 0);
        std::vector<wide> want = wide_transform(line, -1);
        want.resize(16);
        EXPECT_LE(relative_error(half.data() + t * 20, want), this->bound(n) * 2);
      }
    }
  }
  qel_set_num_threads(1);
}

TEST(RealConfiguration, WhatCommitsAndWhatDoesNot) {
  const owned_descriptor line(DFTI_DOUBLE, DFTI_REAL, {8}), array(DFTI_DOUBLE, DFTI_REAL, {8, 8});
  DftiSetValue(line.handle, DFTI_PACKED_FORMAT, DFTI_CCE_FORMAT);
  EXPECT_EQ(DftiCommitDescriptor(line.handle), 6);
  EXPECT_EQ(line.get(DFTI_COMMIT_STATUS), DFTI_UNCOMMITTED);
  DftiSetValue(line.handle, DFTI_CONJUGATE_EVEN_STORAGE, DFTI_COMPLEX_COMPLEX);
  EXPECT_EQ(DftiCommitDescriptor(line.handle), 0);
  // In place the default strides leave no room for rows of five complex numbers.
  EXPECT_EQ(DftiCommitDescriptor(array.handle), 3);
  DftiSetValue(array.handle, DFTI_PLACEMENT, DFTI_NOT_INPLACE);
  EXPECT_EQ(DftiCommitDescriptor(array.handle), 0);
}

}  // namespace
}  // namespace qel::test
