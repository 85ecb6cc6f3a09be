// SPDX-License-Identifier: BSD-3-Clause
// Packed spectra against full ones; faults of configurations in words.
#include <gtest/gtest.h>

#include "fft/planning/validate.h"
#include "tests/fft/reference.h"
#include "tests/fft/support.h"

namespace qel::test {
namespace {

struct shape {
  std::vector<int> lengths;
  int format;
};

class PackedSpectra : public testing::TestWithParam<shape> {};

// What a transform leaves, unpacked, is the full spectrum of the same data; packing it again gives it back.
TEST_P(PackedSpectra, AgreesWithTransform) {
  const auto& [lengths, format] = GetParam();
  size_t count = 1;
  for (const int n : lengths) count *= static_cast<size_t>(n);
  owned_descriptor transform(DFTI_DOUBLE, DFTI_REAL, lengths);
  DftiSetValue(transform.handle, DFTI_PLACEMENT, DFTI_NOT_INPLACE);
  const int half = lengths.back() / 2 + 1;
  size_t packed_count = count;
  std::vector<int> strides{0, 1};
  if (format == DFTI_CCE_FORMAT) {
    DftiSetValue(transform.handle, DFTI_CONJUGATE_EVEN_STORAGE, DFTI_COMPLEX_COMPLEX);
  } else {
    DftiSetValue(transform.handle, DFTI_PACKED_FORMAT, format);
  }
  if (format == DFTI_CCE_FORMAT || format == DFTI_CCS_FORMAT) {
    packed_count = 2 * count / static_cast<size_t>(lengths.back()) * static_cast<size_t>(half);
    int row = half;
    for (size_t d = lengths.size() - 1; d > 0; --d) {
      strides.insert(strides.begin() + 1, row);
      row *= lengths[d - 1];
    }
    DftiSetValue(transform.handle, DFTI_OUTPUT_STRIDES, strides.data());
  }
  ASSERT_EQ(DftiCommitDescriptor(transform.handle), DFTI_NO_ERROR);
  std::mt19937 source(7);
  std::uniform_real_distribution<double> uniform(-1, 1);
  std::vector<double> data(count), packed(packed_count), again(packed_count, -9);
  for (double& x : data) x = uniform(source);
  ASSERT_EQ(DftiComputeForward(transform.handle, data.data(), packed.data()), DFTI_NO_ERROR);

  std::vector<std::complex<double>> full(count);
  auto* pairs = reinterpret_cast<_QEL_Complex16*>(full.data());
  const int dimension = static_cast<int>(lengths.size());
  ASSERT_EQ(qel_dfti_unpack_d(format, dimension, lengths.data(), packed.data(), pairs), 0);
  const std::vector<wide> want = wide_transform_of({data.begin(), data.end()}, lengths, -1);
  EXPECT_LT(relative_error(full.data(), want), 1e-15L);
  ASSERT_EQ(qel_dfti_pack_d(format, dimension, lengths.data(), pairs, again.data()), 0);
  for (size_t i = 0; i < packed_count; ++i) ASSERT_EQ(again[i], packed[i]) << i;
}

std::vector<shape> all_shapes() {
  std::vector<shape> result;
  for (const auto& lengths : std::vector<std::vector<int>>{
           {1}, {2}, {5}, {8}, {4, 6}, {6, 4}, {5, 7}, {1, 4}, {3, 4, 6}, {4, 5, 2}, {2, 3, 1}})
    for (const int format : {DFTI_CCS_FORMAT, DFTI_PACK_FORMAT, DFTI_PERM_FORMAT, DFTI_CCE_FORMAT})
      result.push_back({lengths, format});
  return result;
}
INSTANTIATE_TEST_SUITE_P(All, PackedSpectra, testing::ValuesIn(all_shapes()));

TEST(PackedSpectraArguments, AreChecked) {
  const int n[] = {4, 4, 4, 4}, bad[] = {4, 0};
  double packed[64] = {};
  _QEL_Complex16 full[64] = {};
  EXPECT_EQ(qel_dfti_unpack_d(DFTI_NONE, 1, n, packed, full), 3);
  EXPECT_EQ(qel_dfti_unpack_d(DFTI_CCS_FORMAT, 0, n, packed, full), 3);
  EXPECT_EQ(qel_dfti_unpack_d(DFTI_CCS_FORMAT, 4, n, packed, full), 3);
  EXPECT_EQ(qel_dfti_pack_d(DFTI_CCS_FORMAT, 2, bad, full, packed), 3);
  EXPECT_EQ(qel_dfti_pack_d(DFTI_CCS_FORMAT, 1, n, nullptr, packed), 3);
}

// Against marks in a set, over all small strides.
TEST(Sharing, IsExactWhereSmall) {
  for (int s0 = -4; s0 <= 4; ++s0)
    for (int s1 = -4; s1 <= 9; ++s1)
      for (int s2 = 0; s2 <= 7; ++s2)
        for (int n2 = 1; n2 <= 3; ++n2) {
          fft::axes of;
          of.add(3, s0), of.add(4, s1), of.add(n2, s2);
          std::vector<int> seen(200);
          bool shared = false;
          for (int i = 0; i < 3; ++i)
            for (int j = 0; j < 4; ++j)
              for (int k = 0; k < n2; ++k) {
                const int at = 100 + i * s0 + j * s1 + k * s2;
                shared = shared || seen[static_cast<size_t>(at)]++ > 0;
              }
          ASSERT_EQ(fft::find_sharing(of), shared ? fft::sharing::kSome : fft::sharing::kNone)
              << s0 << ' ' << s1 << ' ' << s2 << ' ' << n2;
        }
}

struct setting {
  int parameter, value;
};
struct configuration {
  int domain;
  std::vector<int> lengths;
  std::vector<setting> settings;
  std::vector<int> input, output;  ///< strides
  const char* fault;               ///< part of a line; null: none
};

TEST(Validate, NamesFaults) {
  const setting two{DFTI_NUMBER_OF_TRANSFORMS, 2}, out{DFTI_PLACEMENT, DFTI_NOT_INPLACE};
  const setting cce{DFTI_CONJUGATE_EVEN_STORAGE, DFTI_COMPLEX_COMPLEX};
  const configuration rows[] = {
      {DFTI_COMPLEX, {8}, {}, {}, {}, nullptr},
      {DFTI_COMPLEX, {8}, {two}, {}, {}, "distance 0 between 2"},
      {DFTI_COMPLEX, {8}, {two, {DFTI_INPUT_DISTANCE, 8}}, {}, {}, nullptr},
      {DFTI_COMPLEX, {8}, {two, {DFTI_INPUT_DISTANCE, 7}}, {}, {}, "share places; strides 1, distance 7"},
      {DFTI_COMPLEX, {8}, {two, {DFTI_INPUT_DISTANCE, 1}}, {0, 2}, {0, 2}, nullptr},
      {DFTI_COMPLEX, {4, 4}, {}, {0, 3, 1}, {0, 3, 1}, "share places; strides 3 1"},
      {DFTI_COMPLEX, {4, 4}, {}, {0, 4, 1}, {0, 1, 4}, "strides 1 of the input and 4 of the output"},
      {DFTI_COMPLEX, {4, 4}, {out}, {0, 0, 1}, {0, 4, 1}, nullptr},
      {DFTI_COMPLEX, {4, 4}, {out}, {0, 4, 1}, {0, 0, 1}, "output: stride 0 along the dimension of 4"},
      {DFTI_COMPLEX, {4, 4}, {{DFTI_COMPLEX_STORAGE, DFTI_REAL_REAL}}, {}, {}, "only in one dimension"},
      {DFTI_REAL, {8}, {two, {DFTI_INPUT_DISTANCE, 8}}, {}, {}, "share places"},
      {DFTI_REAL, {8}, {two, {DFTI_INPUT_DISTANCE, 10}}, {}, {}, nullptr},
      {DFTI_REAL, {8}, {two, cce, {DFTI_INPUT_DISTANCE, 10}, {DFTI_OUTPUT_DISTANCE, 5}}, {}, {}, nullptr},
      {DFTI_REAL, {8}, {two, cce, {DFTI_INPUT_DISTANCE, 8}, {DFTI_OUTPUT_DISTANCE, 5}}, {}, {}, "apart"},
      {DFTI_REAL, {4, 6}, {cce}, {0, 8, 1}, {0, 4, 1}, nullptr},
      {DFTI_REAL, {4, 6}, {cce}, {0, 6, 1}, {0, 4, 1}, "twice those of the output"},
  };
  for (const configuration& row : rows) {
    owned_descriptor transform(DFTI_DOUBLE, row.domain, row.lengths);
    for (const setting& s : row.settings)
      ASSERT_EQ(DftiSetValue(transform.handle, s.parameter, s.value), DFTI_NO_ERROR);
    if (!row.input.empty()) DftiSetValue(transform.handle, DFTI_INPUT_STRIDES, row.input.data());
    if (!row.output.empty()) DftiSetValue(transform.handle, DFTI_OUTPUT_STRIDES, row.output.data());
    char words[400];
    const int status = qel_dfti_validate(transform.handle, 0, words, sizeof words);
    EXPECT_EQ(status, row.fault == nullptr ? 0 : 3) << words;
    if (row.fault == nullptr) {
      EXPECT_STREQ(words, "");
    } else {
      EXPECT_NE(std::string(words).find(row.fault), std::string::npos) << row.fault << " / " << words;
      EXPECT_EQ(qel_dfti_validate(transform.handle, 0, nullptr, 0), 3);
    }
  }
  EXPECT_EQ(qel_dfti_validate(nullptr, 0, nullptr, 0), DFTI_BAD_DESCRIPTOR);
}

}  // namespace
}  // namespace qel::test
