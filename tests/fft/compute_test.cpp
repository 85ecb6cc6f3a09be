// SPDX-License-Identifier: BSD-3-Clause
// From a committed descriptor to numbers: strides, offsets, several transforms, scales, states, copies.
#include <limits>
#include <thread>

#include "qel/service.h"
#include "tests/fft/reference.h"
#include "tests/fft/support.h"

namespace qel::test {
namespace {

using Z = std::complex<double>;

int commit(const owned_descriptor& d) { return DftiCommitDescriptor(d.handle); }

long double bound(int n) {
  return std::numeric_limits<double>::epsilon() *
         (0.5L * std::sqrt(std::log2(static_cast<long double>(n))) + 2);
}

TEST(Compute, StridesOffsetsDistancesAndScales) {
  const struct {
    int n, transforms, in_offset, in_stride, in_distance, out_offset, out_stride, out_distance;
    double scale;
  } cases[] = {
      {8, 1, 0, 1, 0, 0, 1, 0, 1},      {8, 1, 0, 1, 0, 0, 1, 0, 0.3},  {8, 1, 0, 1, 0, 0, 1, 0, 0.125},
      {60, 1, 3, 1, 0, 5, 1, 0, 2},     {60, 1, 1, 2, 0, 0, 1, 0, 1},   {60, 1, 0, 1, 0, 2, 3, 0, 1},
      {60, 3, 1, 2, 130, 4, 3, 190, 7}, {64, 4, 0, 4, 1, 0, 4, 1, 1},   {151, 2, 0, 1, 160, 0, 1, 151, 0.5},
      {1, 1, 2, 1, 0, 0, 1, 0, 3},      {4097, 1, 0, 1, 0, 0, 1, 0, 1}, {1 << 18, 1, 0, 1, 0, 0, 1, 0, 1},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(testing::Message() << c.n << " x " << c.transforms << " strides " << c.in_stride << ' '
                                    << c.out_stride);
    const owned_descriptor d(DFTI_DOUBLE, DFTI_COMPLEX, {c.n});
    const int in_strides[] = {c.in_offset, c.in_stride}, out_strides[] = {c.out_offset, c.out_stride};
    DftiSetValue(d.handle, DFTI_PLACEMENT, DFTI_NOT_INPLACE);
    DftiSetValue(d.handle, DFTI_NUMBER_OF_TRANSFORMS, c.transforms);
    DftiSetValue(d.handle, DFTI_INPUT_STRIDES, in_strides);
    DftiSetValue(d.handle, DFTI_OUTPUT_STRIDES, out_strides);
    DftiSetValue(d.handle, DFTI_INPUT_DISTANCE, c.in_distance);
    DftiSetValue(d.handle, DFTI_OUTPUT_DISTANCE, c.out_distance);
    DftiSetValue(d.handle, DFTI_BACKWARD_SCALE, c.scale);
    ASSERT_EQ(commit(d), 0);
    const auto size = [&](int offset, int stride, int distance) {
      return static_cast<std::size_t>(offset + (c.n - 1) * stride + (c.transforms - 1) * distance + 1);
    };
    std::vector<Z> in = random_line<double>(size(c.in_offset, c.in_stride, c.in_distance), 5);
    std::vector<Z> out(size(c.out_offset, c.out_stride, c.out_distance));
    for (const int sign : {-1, 1}) {
      auto* run = sign < 0 ? DftiComputeForward : DftiComputeBackward;
      ASSERT_EQ(run(d.handle, in.data(), out.data()), 0);
      for (int t = 0; t < c.transforms; ++t) {
        std::vector<wide> x;
        std::vector<Z> got;
        for (int j = 0; j < c.n; ++j) {
          x.emplace_back(in[static_cast<std::size_t>(c.in_offset + t * c.in_distance + j * c.in_stride)]);
          got.push_back(out[static_cast<std::size_t>(c.out_offset + t * c.out_distance + j * c.out_stride)]);
        }
        std::vector<wide> want = wide_transform(x, sign);
        if (sign > 0) {
          for (wide& z : want) z *= static_cast<long double>(c.scale);
        }
        EXPECT_LE(relative_error(got.data(), want), bound(c.n)) << "transform " << t;
      }
    }
  }
}

TEST(Compute, StatesAndRecommits) {
  const owned_descriptor d(DFTI_DOUBLE, DFTI_COMPLEX, {8});
  std::vector<Z> x = random_line<double>(8, 1);
  const std::vector<Z> before = x;
  EXPECT_EQ(DftiCommitDescriptor(nullptr), 5);
  EXPECT_EQ(DftiComputeForward(nullptr, x.data()), 5);
  EXPECT_EQ(DftiComputeForward(d.handle, x.data()), 2);
  ASSERT_EQ(commit(d), 0);
  EXPECT_EQ(d.get(DFTI_COMMIT_STATUS), DFTI_COMMITTED);
  EXPECT_EQ(DftiSetValue(d.handle, DFTI_DESCRIPTOR_NAME, "x"), 0);
  EXPECT_EQ(DftiSetValue(d.handle, DFTI_LENGTHS, nullptr), 3);
  EXPECT_EQ(DftiSetValue(d.handle, 27, 0), 3);
  EXPECT_EQ(d.get(DFTI_COMMIT_STATUS), DFTI_COMMITTED);
  EXPECT_EQ(DftiSetValue(d.handle, DFTI_PLACEMENT, 42), 3);
  EXPECT_EQ(d.get(DFTI_COMMIT_STATUS), DFTI_UNCOMMITTED);
  EXPECT_EQ(DftiComputeForward(d.handle, x.data()), 2);
  EXPECT_EQ(x, before);
  // Through all plans of the length and back to the first: the scale decides.
  for (const double scale : {1.0, 0.125, 0.3, 0.125, 1.0}) {
    SCOPED_TRACE(scale);
    ASSERT_EQ(DftiSetValue(d.handle, DFTI_BACKWARD_SCALE, scale), 0);
    EXPECT_EQ(DftiComputeForward(d.handle, x.data()), 2);
    ASSERT_EQ(commit(d), 0);
    std::copy(before.begin(), before.end(), x.begin());
    ASSERT_EQ(DftiComputeForward(d.handle, x.data()), 0);
    ASSERT_EQ(DftiComputeBackward(d.handle, x.data()), 0);
    for (std::size_t i = 0; i < 8; ++i) EXPECT_LT(std::abs(x[i] - 8 * scale * before[i]), 1e-14);
  }
}

TEST(Compute, CommittedCopyComputesTheSame) {
  for (const int n : {8, 60, 151, 300}) {
    const owned_descriptor d(DFTI_SINGLE, DFTI_COMPLEX, {n});
    DftiSetValue(d.handle, DFTI_FORWARD_SCALE, 0.3);
    ASSERT_EQ(commit(d), 0);
    owned_descriptor copy;
    ASSERT_EQ(DftiCopyDescriptor(d.handle, &copy.handle), 0);
    EXPECT_EQ(copy.get(DFTI_COMMIT_STATUS), DFTI_COMMITTED);
    auto x = random_line<float>(static_cast<std::size_t>(n), 3), y = x;
    ASSERT_EQ(DftiComputeForward(d.handle, x.data()), 0);
    ASSERT_EQ(DftiComputeForward(copy.handle, y.data()), 0);
    EXPECT_EQ(x, y);
  }
}

TEST(Compute, TooLongIsAnInternalError) {
  qel_set_num_threads(1);  // several would take the line in parts
  for (const int n : {(1 << 26) + 4, 1 << 27, 33554467}) {
    const owned_descriptor d(DFTI_DOUBLE, DFTI_COMPLEX, {n});
    EXPECT_EQ(commit(d), 7) << n;
  }
}

TEST(Compute, UserThreadsHaveTheirOwnWork) {
  const owned_descriptor d(DFTI_DOUBLE, DFTI_COMPLEX, {1000});
  DftiSetValue(d.handle, DFTI_NUMBER_OF_USER_THREADS, 4);
  DftiSetValue(d.handle, DFTI_NUMBER_OF_TRANSFORMS, 2);
  DftiSetValue(d.handle, DFTI_INPUT_DISTANCE, 1000);
  ASSERT_EQ(commit(d), 0);  // in place the input's distance serves for the output
  const auto x = random_line<double>(2000, 9);
  auto alone = x;
  ASSERT_EQ(DftiComputeForward(d.handle, alone.data()), 0);
  std::vector<std::thread> threads;
  std::vector<int> wrong(4);
  for (std::size_t t = 0; t < 4; ++t) {
    threads.emplace_back([&, t] {
      for (int i = 0; i < 50; ++i) {
        auto y = x;
        if (DftiComputeForward(d.handle, y.data()) != 0 || y != alone) ++wrong[t];
      }
    });
  }
  for (auto& thread : threads) thread.join();
  EXPECT_EQ(wrong, std::vector<int>(4));
}

}  // namespace
}  // namespace qel::test
