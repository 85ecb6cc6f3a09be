// SPDX-License-Identifier: BSD-3-Clause
// The descriptor through its entries: statuses of creation, the parameter table, copies, messages.
#include <cstring>

#include "tests/fft/support.h"

namespace qel::test {
namespace {

TEST(Descriptor, CreationTestsItsArguments) {
  const int lengths[7] = {2, 3, 4, 5, 6, 7, 8}, with_zero[3] = {4, 0, 4};
  const struct {
    int precision, domain, dimension;
    const int* lengths;
    int want;
  } cases[] = {
      {36, 32, 7, lengths, 0},  {35, 32, 7, lengths, 0}, {36, 33, 3, lengths, 0},   {36, 33, 4, lengths, 6},
      {35, 33, 7, lengths, 6},  {36, 32, 8, lengths, 2}, {36, 32, 0, lengths, 2},   {36, 34, 2, lengths, 2},
      {34, 32, 2, lengths, 2},  {37, 32, 2, lengths, 2}, {36, 32, 3, with_zero, 2}, {36, 33, 8, lengths, 2},
      {36, 32, -1, lengths, 2}, {36, 32, 2, nullptr, 2},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(testing::Message() << c.precision << ' ' << c.domain << ' ' << c.dimension);
    char elsewhere = 0;
    auto* const untouched = reinterpret_cast<DFTI_DESCRIPTOR_HANDLE>(&elsewhere);
    DFTI_DESCRIPTOR_HANDLE handle = untouched;
    if (c.dimension != 1) {
      EXPECT_EQ(DftiCreateDescriptor(&handle, c.precision, c.domain, c.dimension, c.lengths), c.want);
      if (c.want == 0) {
        EXPECT_EQ(DftiFreeDescriptor(&handle), 0);
      } else {
        EXPECT_EQ(handle, untouched);
      }
    }
    if (c.precision != 35 && c.precision != 36) continue;
    auto* const create_md = c.precision == 36 ? DftiCreateDescriptor_d_md : DftiCreateDescriptor_s_md;
    handle = nullptr;
    EXPECT_EQ(create_md(&handle, c.domain, c.dimension, c.lengths), c.want);
    if (c.want == 0) {
      EXPECT_EQ(DftiFreeDescriptor(&handle), 0);
    }
    EXPECT_EQ(create_md(nullptr, c.domain, c.dimension, c.lengths), 3);
  }
  for (auto* create : {DftiCreateDescriptor_d_1d, DftiCreateDescriptor_s_1d}) {
    DFTI_DESCRIPTOR_HANDLE handle = nullptr;
    EXPECT_EQ(create(nullptr, 34, 0), 3);
    EXPECT_EQ(create(&handle, 34, 8), 2);
    EXPECT_EQ(create(&handle, 32, 0), 2);
    EXPECT_EQ(create(&handle, 33, 1), 0);
    EXPECT_EQ(DftiFreeDescriptor(&handle), 0);
  }
  DFTI_DESCRIPTOR_HANDLE handle = nullptr;
  EXPECT_EQ(DftiCreateDescriptor(nullptr, 0, 0, 0, 0), 3);
  EXPECT_EQ(DftiCreateDescriptor(&handle, 36, 32, 1, -8), 2);
}

TEST(Descriptor, FreeLeavesNull) {
  DFTI_DESCRIPTOR_HANDLE handle = nullptr;
  EXPECT_EQ(DftiFreeDescriptor(nullptr), 3);
  EXPECT_EQ(DftiFreeDescriptor(&handle), 5);
  ASSERT_EQ(DftiCreateDescriptor(&handle, 36, 32, 1, 8), 0);
  EXPECT_EQ(DftiFreeDescriptor(&handle), 0);
  EXPECT_EQ(handle, nullptr);
  EXPECT_EQ(DftiFreeDescriptor(&handle), 5);
  char zeros[2048] = {};
  handle = reinterpret_cast<DFTI_DESCRIPTOR_HANDLE>(zeros);
  EXPECT_EQ(DftiFreeDescriptor(&handle), 5);
  EXPECT_EQ(DftiSetValue(handle, DFTI_PLACEMENT, 44), 5);
  EXPECT_EQ(DftiSetValue(nullptr, 27, 44), 5);
  EXPECT_EQ(DftiGetValue(nullptr, DFTI_PLACEMENT, zeros), 5);
}

TEST(Descriptor, IntegersHaveDefaultsAndTakeTheirValuesOnly) {
  const struct {
    int parameter, initial;
    std::vector<int> taken, refused, unimplemented;
  } cases[] = {
      {0, 32, {}, {32, 33}, {}},
      {1, 1, {}, {1}, {}},
      {3, 36, {}, {36}, {}},
      {7, 1, {0, -3, 5, 1}, {}, {}},
      {8, 39, {42, 39}, {43, 0, -1}, {40, 41}},
      {9, 42, {42}, {39, 40, 0}, {41}},
      {10, 40, {39, 40}, {43, 0}, {41, 42}},
      {11, 43, {44, 43}, {42, 45, 0}, {}},
      {14, 0, {7, -7, 0}, {}, {}},
      {15, 0, {7, -7, 0}, {}, {}},
      {18, 48, {49, 48}, {47, 51, 0}, {50}},
      {19, 53, {}, {53, 0}, {}},
      {21, 54, {57, 56, 55, 54}, {53, 58, 0}, {}},
      {22, 31, {}, {30, 31}, {}},
      {26, 1, {4, 0, -1, 1}, {}, {}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.parameter);
    const owned_descriptor d(DFTI_DOUBLE, DFTI_COMPLEX, {12});
    EXPECT_EQ(d.get(c.parameter), c.initial);
    int held = c.initial;
    for (const int value : c.taken) {
      EXPECT_EQ(DftiSetValue(d.handle, c.parameter, value), 0) << value;
      EXPECT_EQ(d.get(c.parameter), held = value);
    }
    for (const int value : c.refused) EXPECT_EQ(DftiSetValue(d.handle, c.parameter, value), 3) << value;
    for (const int value : c.unimplemented) EXPECT_EQ(DftiSetValue(d.handle, c.parameter, value), 6) << value;
    EXPECT_EQ(d.get(c.parameter), held);
  }
  const owned_descriptor d(DFTI_DOUBLE, DFTI_COMPLEX, {12});
  int unused[8] = {};
  for (const int parameter : {6, 16, 17, 24, 25}) {
    EXPECT_EQ(DftiSetValue(d.handle, parameter, 1), 6) << parameter;
    EXPECT_EQ(DftiGetValue(d.handle, parameter, unused), 6) << parameter;
  }
  for (const int parameter : {27, 1000, -1}) {
    EXPECT_EQ(DftiSetValue(d.handle, parameter, 1), 3) << parameter;
    EXPECT_EQ(DftiGetValue(d.handle, parameter, unused), 3) << parameter;
  }
  EXPECT_EQ(DftiSetValue(d.handle, DFTI_LENGTHS, unused), 3);
  EXPECT_EQ(DftiSetValue(d.handle, DFTI_VERSION, unused), 3);
}

TEST(Descriptor, OrderingDependsOnTheDomain) {
  const owned_descriptor real(DFTI_DOUBLE, DFTI_REAL, {12});
  EXPECT_EQ(DftiSetValue(real.handle, DFTI_ORDERING, 49), 6);
  EXPECT_EQ(DftiSetValue(real.handle, DFTI_ORDERING, 50), 6);
  EXPECT_EQ(DftiSetValue(real.handle, DFTI_ORDERING, 48), 0);
}

TEST(Descriptor, ConjugateEvenComplexForcesItsFormatOneWay) {
  const owned_descriptor d(DFTI_SINGLE, DFTI_REAL, {4, 6});
  ASSERT_EQ(DftiSetValue(d.handle, DFTI_CONJUGATE_EVEN_STORAGE, 39), 0);
  EXPECT_EQ(d.get(DFTI_PACKED_FORMAT), 57);
  ASSERT_EQ(DftiSetValue(d.handle, DFTI_CONJUGATE_EVEN_STORAGE, 40), 0);
  EXPECT_EQ(d.get(DFTI_PACKED_FORMAT), 57);
}

TEST(Descriptor, LengthsReadReversedAndStridesDoNot) {
  const owned_descriptor d(DFTI_DOUBLE, DFTI_COMPLEX, {4, 8, 3});
  EXPECT_EQ(d.get_all(DFTI_LENGTHS, 3), (std::vector<int>{3, 8, 4}));
  EXPECT_EQ(d.get_all(DFTI_INPUT_STRIDES, 4), (std::vector<int>{0, 24, 3, 1}));
  const std::vector<int> strides{5, 100, -7, 2};
  ASSERT_EQ(DftiSetValue(d.handle, DFTI_INPUT_STRIDES, strides.data()), 0);
  EXPECT_EQ(d.get_all(DFTI_INPUT_STRIDES, 4), strides);
  EXPECT_EQ(d.get_all(DFTI_OUTPUT_STRIDES, 4), (std::vector<int>{0, 24, 3, 1}));
}

TEST(Descriptor, ScaleLivesOnTheFirstLongNode) {
  for (const std::vector<int>& lengths : {std::vector<int>{1, 8, 1}, {1}, {1, 1}, {5, 1}, {5, 7}}) {
    const owned_descriptor d(DFTI_DOUBLE, DFTI_COMPLEX, lengths);
    EXPECT_EQ(d.scale(DFTI_FORWARD_SCALE), 1.0);
    EXPECT_EQ(DftiSetValue(d.handle, DFTI_FORWARD_SCALE, 0.1), 0);
    EXPECT_EQ(DftiSetValue(d.handle, DFTI_BACKWARD_SCALE, 3.0), 0);
    EXPECT_EQ(d.scale(DFTI_FORWARD_SCALE), 0.1);
    EXPECT_EQ(d.scale(DFTI_BACKWARD_SCALE), 3.0);
  }
}

TEST(Descriptor, NameIsCutAndVersionFillsItsBytes) {
  const owned_descriptor d(DFTI_DOUBLE, DFTI_COMPLEX, {8});
  char name[10];
  ASSERT_EQ(DftiSetValue(d.handle, DFTI_DESCRIPTOR_NAME, "twelve chars"), 0);
  ASSERT_EQ(DftiGetValue(d.handle, DFTI_DESCRIPTOR_NAME, name), 0);
  EXPECT_STREQ(name, "twelve ch");
  ASSERT_EQ(DftiSetValue(d.handle, DFTI_DESCRIPTOR_NAME, "ab"), 0);
  ASSERT_EQ(DftiGetValue(d.handle, DFTI_DESCRIPTOR_NAME, name), 0);
  EXPECT_EQ(std::memcmp(name, "ab\0\0\0\0\0\0\0\0", 10), 0);

  std::string version(200, '#');
  ASSERT_EQ(DftiGetValue(d.handle, DFTI_VERSION, version.data()), 0);
  EXPECT_EQ(version.substr(197), std::string("\0##", 3));
  const std::size_t end = version.find('\0');
  EXPECT_EQ(version.find_first_not_of('\0', end), 198U);
  int parts[3], date = 0, used = 0;
  const std::size_t at = version.find(" Version ");
  ASSERT_NE(at, std::string::npos);
  EXPECT_EQ(std::sscanf(version.c_str() + at, " Version %d.%d.%d Product Build %8d for x86-64 applications%n",
                        &parts[0], &parts[1], &parts[2], &date, &used),
            4);
  EXPECT_EQ(at + static_cast<std::size_t>(used), end);
}

TEST(Descriptor, CopyTakesTheConfiguration) {
  const owned_descriptor d(DFTI_SINGLE, DFTI_COMPLEX, {4, 8});
  const std::vector<int> strides{3, 20, 2}, out_strides{1, 9, 1};
  const struct {
    int parameter, value;
  } values[] = {{7, 3}, {8, 42}, {10, 39}, {11, 44}, {14, 50}, {15, 60}, {18, 49}, {21, 55}, {26, 2}};
  for (const auto& v : values) ASSERT_EQ(DftiSetValue(d.handle, v.parameter, v.value), 0) << v.parameter;
  DftiSetValue(d.handle, DFTI_INPUT_STRIDES, strides.data());
  DftiSetValue(d.handle, DFTI_OUTPUT_STRIDES, out_strides.data());
  DftiSetValue(d.handle, DFTI_FORWARD_SCALE, 0.25);
  DftiSetValue(d.handle, DFTI_DESCRIPTOR_NAME, "first");

  owned_descriptor copy;
  EXPECT_EQ(DftiCopyDescriptor(nullptr, nullptr), 5);
  EXPECT_EQ(DftiCopyDescriptor(d.handle, nullptr), 3);
  ASSERT_EQ(DftiCopyDescriptor(d.handle, &copy.handle), 0);
  for (const auto& v : values) EXPECT_EQ(copy.get(v.parameter), v.value) << v.parameter;
  EXPECT_EQ(copy.get_all(DFTI_LENGTHS, 2), d.get_all(DFTI_LENGTHS, 2));
  EXPECT_EQ(copy.get_all(DFTI_INPUT_STRIDES, 3), strides);
  EXPECT_EQ(copy.get_all(DFTI_OUTPUT_STRIDES, 3), out_strides);
  char name[10];
  DftiGetValue(copy.handle, DFTI_DESCRIPTOR_NAME, name);
  EXPECT_STREQ(name, "first");
  EXPECT_EQ(copy.scale<float>(DFTI_FORWARD_SCALE), 1.0F);  // a single-precision copy reads as unscaled

  const owned_descriptor wide(DFTI_DOUBLE, DFTI_COMPLEX, {4, 8});
  DftiSetValue(wide.handle, DFTI_FORWARD_SCALE, 0.25);
  owned_descriptor wide_copy;
  ASSERT_EQ(DftiCopyDescriptor(wide.handle, &wide_copy.handle), 0);
  EXPECT_EQ(wide_copy.scale(DFTI_FORWARD_SCALE), 0.25);
}

TEST(Descriptor, StatusesHaveTexts) {
  EXPECT_STREQ(qel_dfti_message(0), "QEL DFTI SUCCESS: No error");
  EXPECT_STREQ(qel_dfti_message(5), "QEL DFTI ERROR: Descriptor is bad or corrupted");
  EXPECT_STREQ(qel_dfti_message(8), "QEL DFTI ERROR: Lack of DFTI_NUMBER_OF_USER_THREADS in descriptor");
  for (const int status : {10, 11, -1}) {
    EXPECT_STREQ(qel_dfti_message(status), "QEL DFTI ERROR: Incorrect status") << status;
  }
  EXPECT_EQ(DftiErrorClass(5, 5), -1);
  EXPECT_EQ(DftiErrorClass(5, 0), 0);
}

}  // namespace
}  // namespace qel::test
