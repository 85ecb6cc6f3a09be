// SPDX-License-Identifier: BSD-3-Clause
// Complex calls of every shape beside a long double transform: dimensions, strides, several transforms,
// threads, split parts, scrambled order, long lines in parts.
#include <algorithm>
#include <cstdlib>
#include <limits>

#include "qel/service.h"
#include "tests/fft/reference.h"
#include "tests/fft/support.h"

namespace qel::test {
namespace {

using Z = std::complex<double>;

/// As many threads as the tests ask for, whatever the machine has; read on first use.
const bool kThreadsAsAsked = setenv("QEL_DYNAMIC", "FALSE", 1) == 0;

/// Where the elements of several transforms lie; strides in the caller's order, offset first.
struct layout {
  std::vector<int> strides;
  int distance;
};

/// A tight layout with gaps: every stride times gap, an offset.
layout make_layout(const std::vector<int>& lengths, int gap) {
  layout result{std::vector<int>(lengths.size() + 1), 0};
  int step = gap;
  for (std::size_t i = lengths.size(); i-- > 0;) {
    result.strides[i + 1] = step;
    step *= lengths[i];
  }
  result.strides[0] = gap == 1 ? 0 : 3;
  result.distance = step + gap - 1;
  return result;
}

/// The places of one transform's elements, in row-major order.
std::vector<std::size_t> places(const layout& of, const std::vector<int>& lengths, int transform) {
  std::vector<std::size_t> result{static_cast<std::size_t>(of.strides[0] + transform * of.distance)};
  for (std::size_t i = 0; i < lengths.size(); ++i) {
    std::vector<std::size_t> next;
    for (const std::size_t base : result) {
      for (int j = 0; j < lengths[i]; ++j)
        next.push_back(base + static_cast<std::size_t>(j * of.strides[i + 1]));
    }
    result = std::move(next);
  }
  return result;
}

template <class R>
std::vector<std::complex<R>> run(const owned_descriptor& d, bool forward, std::vector<std::complex<R>>& in,
                                 std::size_t out_size) {
  auto* compute = forward ? DftiComputeForward : DftiComputeBackward;
  if (out_size == 0) {
    EXPECT_EQ(compute(d.handle, in.data()), 0);
    return in;
  }
  std::vector<std::complex<R>> out(out_size);
  const auto before = in;
  EXPECT_EQ(compute(d.handle, in.data(), out.data()), 0);
  EXPECT_EQ(in, before) << "input changed";
  return out;
}

struct shape_case {
  std::vector<int> lengths;
  int transforms;
  int in_gap, out_gap;  // 0: in place
};

void check_shape(const shape_case& c, int threads) {
  SCOPED_TRACE(testing::Message() << testing::PrintToString(c.lengths) << " x " << c.transforms << " gaps "
                                  << c.in_gap << ' ' << c.out_gap << " threads " << threads);
  qel_set_num_threads(threads);
  const layout in = make_layout(c.lengths, c.in_gap),
               out = c.out_gap == 0 ? in : make_layout(c.lengths, c.out_gap);
  const owned_descriptor d(DFTI_DOUBLE, DFTI_COMPLEX, c.lengths);
  DftiSetValue(d.handle, DFTI_PLACEMENT, c.out_gap == 0 ? DFTI_INPLACE : DFTI_NOT_INPLACE);
  DftiSetValue(d.handle, DFTI_NUMBER_OF_TRANSFORMS, c.transforms);
  DftiSetValue(d.handle, DFTI_INPUT_STRIDES, in.strides.data());
  DftiSetValue(d.handle, DFTI_OUTPUT_STRIDES, out.strides.data());
  DftiSetValue(d.handle, DFTI_INPUT_DISTANCE, in.distance);
  DftiSetValue(d.handle, DFTI_OUTPUT_DISTANCE, out.distance);
  DftiSetValue(d.handle, DFTI_BACKWARD_SCALE, 0.3);
  ASSERT_EQ(DftiCommitDescriptor(d.handle), 0);
  const auto extent = [&](const layout& of) { return places(of, c.lengths, c.transforms - 1).back() + 1; };
  for (const bool forward : {true, false}) {
    std::vector<Z> data = random_line<double>(extent(in), 7);
    const std::vector<Z> before = data;
    const std::vector<Z> result = run<double>(d, forward, data, c.out_gap == 0 ? 0 : extent(out));
    for (int t = 0; t < c.transforms; ++t) {
      std::vector<wide> x;
      for (const std::size_t at : places(in, c.lengths, t)) x.emplace_back(before[at]);
      std::vector<wide> want = wide_transform_of(x, c.lengths, forward ? -1 : 1);
      std::vector<Z> got;
      for (const std::size_t at : places(out, c.lengths, t)) got.push_back(result[at]);
      if (!forward) {
        for (wide& z : want) z *= 0.3L;
      }
      EXPECT_LE(relative_error(got.data(), want), 1e-15L) << "transform " << t << " forward " << forward;
    }
  }
  qel_set_num_threads(1);
}

TEST(Shapes, DimensionsStridesTransformsAndThreads) {
  ASSERT_TRUE(kThreadsAsAsked);
  const shape_case cases[] = {
      {{1, 8}, 1, 1, 0},
      {{8, 1}, 1, 1, 1},
      {{5, 6}, 1, 1, 0},
      {{16, 12}, 2, 1, 1},
      {{12, 33}, 1, 2, 3},
      {{7, 9}, 3, 2, 0},
      {{3, 4, 5}, 1, 1, 0},
      {{20, 9, 33}, 1, 1, 1},
      {{4, 3, 17}, 2, 2, 1},
      {{1, 1, 1}, 1, 1, 1},
      {{2, 3, 2, 3}, 1, 1, 0},
      {{2, 1, 2, 2, 3, 2, 5}, 1, 1, 1},
      {{2, 3, 4, 2, 2}, 2, 1, 0},
      {{60}, 5, 1, 1},
      {{60}, 3, 2, 0},
      {{3, 2, 4096}, 1, 1, 0},
      // Enough elements for threads on every level.
      {{24, 20, 33}, 1, 1, 1},
      {{97, 100}, 1, 2, 3},
      {{3, 7, 20, 40}, 1, 1, 0},
  };
  for (const shape_case& c : cases) {
    for (const int threads : {1, 2, 3, 8}) check_shape(c, threads);
  }
}

TEST(Shapes, InterleavedTransforms) {
  // Transforms side by side: distance 1, the stride their number. 13 is a block of 8, one of 4 and one line.
  for (const int transforms : {3, 8, 13}) {
    for (const int threads : {1, 4}) {
      qel_set_num_threads(threads);
      const int n = 36, strides[] = {1, transforms};
      const owned_descriptor d(DFTI_SINGLE, DFTI_COMPLEX, {n});
      DftiSetValue(d.handle, DFTI_NUMBER_OF_TRANSFORMS, transforms);
      for (const int side : {DFTI_INPUT_STRIDES, DFTI_OUTPUT_STRIDES}) DftiSetValue(d.handle, side, strides);
      for (const int side : {DFTI_INPUT_DISTANCE, DFTI_OUTPUT_DISTANCE}) DftiSetValue(d.handle, side, 1);
      ASSERT_EQ(DftiCommitDescriptor(d.handle), 0);
      auto data = random_line<float>(static_cast<std::size_t>(1 + n * transforms), 3);
      const auto before = data;
      ASSERT_EQ(DftiComputeForward(d.handle, data.data()), 0);
      EXPECT_EQ(data[0], before[0]);
      for (int t = 0; t < transforms; ++t) {
        std::vector<wide> x;
        std::vector<std::complex<float>> got;
        for (int j = 0; j < n; ++j) {
          const auto at = static_cast<std::size_t>(1 + t + j * transforms);
          x.emplace_back(before[at]);
          got.push_back(data[at]);
        }
        EXPECT_LE(relative_error(got.data(), wide_transform(x, -1)), 5e-7L);
      }
    }
  }
  qel_set_num_threads(1);
}

TEST(Shapes, SplitPartsGiveTheInterleavedNumbers) {
  const struct {
    int n, stride, transforms;
    bool in_place;
  } cases[] = {{8, 1, 1, true},    {60, 1, 1, false},  {60, 2, 3, true},
               {151, 3, 2, false}, {1024, 1, 1, true}, {5, 1, 4, false}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.n);
    const int strides[] = {2, c.stride}, distance = c.n * c.stride + 1;
    const owned_descriptor split(DFTI_DOUBLE, DFTI_COMPLEX, {c.n}), pairs(DFTI_DOUBLE, DFTI_COMPLEX, {c.n});
    for (const owned_descriptor* d : {&split, &pairs}) {
      DftiSetValue(d->handle, DFTI_PLACEMENT, c.in_place ? DFTI_INPLACE : DFTI_NOT_INPLACE);
      DftiSetValue(d->handle, DFTI_NUMBER_OF_TRANSFORMS, c.transforms);
      for (const int side : {DFTI_INPUT_STRIDES, DFTI_OUTPUT_STRIDES}) DftiSetValue(d->handle, side, strides);
      for (const int side : {DFTI_INPUT_DISTANCE, DFTI_OUTPUT_DISTANCE})
        DftiSetValue(d->handle, side, distance);
      DftiSetValue(d->handle, DFTI_FORWARD_SCALE, 0.7);
    }
    DftiSetValue(split.handle, DFTI_COMPLEX_STORAGE, DFTI_REAL_REAL);
    ASSERT_EQ(DftiCommitDescriptor(split.handle), 0);
    ASSERT_EQ(DftiCommitDescriptor(pairs.handle), 0);
    const std::size_t size = static_cast<std::size_t>(2 + c.transforms * distance);
    std::vector<Z> x = random_line<double>(size, 2), y(size);
    std::vector<double> re(size), im(size), out_re(size), out_im(size);
    for (std::size_t i = 0; i < size; ++i) re[i] = x[i].real(), im[i] = x[i].imag();
    for (auto* compute : {DftiComputeForward, DftiComputeBackward}) {
      if (c.in_place) {
        ASSERT_EQ(compute(split.handle, re.data(), im.data()), 0);
        ASSERT_EQ(compute(pairs.handle, x.data()), 0);
      } else {
        ASSERT_EQ(compute(split.handle, re.data(), im.data(), out_re.data(), out_im.data()), 0);
        ASSERT_EQ(compute(pairs.handle, x.data(), y.data()), 0);
      }
      for (std::size_t i = 0; i < size; ++i) {
        EXPECT_EQ((c.in_place ? Z{re[i], im[i]} : Z{out_re[i], out_im[i]}), c.in_place ? x[i] : y[i]) << i;
      }
    }
  }
  const owned_descriptor two(DFTI_DOUBLE, DFTI_COMPLEX, {4, 4}), both(DFTI_DOUBLE, DFTI_COMPLEX, {24});
  double re[24], im[24];
  DftiSetValue(two.handle, DFTI_COMPLEX_STORAGE, DFTI_REAL_REAL);
  EXPECT_EQ(DftiCommitDescriptor(two.handle), 0);
  EXPECT_EQ(DftiComputeForward(two.handle, re, im), 6);
  DftiSetValue(both.handle, DFTI_COMPLEX_STORAGE, DFTI_REAL_REAL);
  DftiSetValue(both.handle, DFTI_ORDERING, DFTI_BACKWARD_SCRAMBLED);
  EXPECT_EQ(DftiCommitDescriptor(both.handle), 0);
  EXPECT_EQ(DftiComputeForward(both.handle, re, im), 2);
}

template <class R>
void check_scrambled(int n) {
  SCOPED_TRACE(n);
  const int domain = sizeof(R) == sizeof(double) ? DFTI_DOUBLE : DFTI_SINGLE;
  const owned_descriptor ordered(domain, DFTI_COMPLEX, {n}), scrambled(domain, DFTI_COMPLEX, {n});
  DftiSetValue(scrambled.handle, DFTI_ORDERING, DFTI_BACKWARD_SCRAMBLED);
  for (const owned_descriptor* d : {&ordered, &scrambled}) {
    DftiSetValue(d->handle, DFTI_FORWARD_SCALE, 0.5);  // no fast plan
    ASSERT_EQ(DftiCommitDescriptor(d->handle), 0);
  }
  const auto x = random_line<R>(static_cast<std::size_t>(n), 11);
  auto y = x, z = x;
  ASSERT_EQ(DftiComputeForward(ordered.handle, y.data()), 0);
  ASSERT_EQ(DftiComputeForward(scrambled.handle, z.data()), 0);
  auto permuted = z;
  const auto less = [](const auto& a, const auto& b) { return a.real() < b.real(); };
  std::sort(y.begin(), y.end(), less);
  std::sort(permuted.begin(), permuted.end(), less);
  const R tolerance = std::numeric_limits<R>::epsilon() * static_cast<R>(8 * std::sqrt(n));
  std::size_t off = 0;
  for (std::size_t i = 0; i < y.size(); ++i) off += std::abs(y[i].real() - permuted[i].real()) > tolerance;
  EXPECT_EQ(off, 0u) << "not a permutation of the ordered result";
  ASSERT_EQ(DftiComputeBackward(scrambled.handle, z.data()), 0);
  off = 0;
  for (std::size_t i = 0; i < z.size(); ++i) {
    off += std::abs(z[i] / static_cast<R>(0.5 * n) - x[i]) > 32 * std::numeric_limits<R>::epsilon();
  }
  EXPECT_EQ(off, 0u) << "round trip";
}

TEST(Shapes, ScrambledOrder) {
  for (const int n :
       {12, 60, 64, 2048, 1 << 17, 1 << 18, 1 << 19, 5184, 13 * 13 * 37, 6930, 7 * 7 * 7 * 7 * 11, 151}) {
    check_scrambled<double>(n);
    check_scrambled<float>(n);
  }
}

TEST(Shapes, LongLinesInParts) {
  const struct {
    int n;
    bool in_place;
    double scale;
  } cases[] = {{1 << 16, true, 1},  {1 << 10, false, 1},   {1 << 11, false, 0.3},
               {1 << 13, false, 1}, {1 << 17, false, 1},   {3 << 15, true, 0.7},
               {65537, false, 1},   {2 * 33331, false, 1}, {5 * 7 * 11 * 13 * 17, false, 1},
               {1 << 18, true, 1}};
  for (const auto& c : cases) {
    std::vector<Z> x = random_line<double>(static_cast<std::size_t>(c.n), 4), alone, y(x.size());
    for (const int threads : {1, 2, 3, 4, 8, 11}) {
      SCOPED_TRACE(testing::Message() << c.n << " on " << threads);
      qel_set_num_threads(threads);
      const owned_descriptor d(DFTI_DOUBLE, DFTI_COMPLEX, {c.n});
      DftiSetValue(d.handle, DFTI_PLACEMENT, c.in_place ? DFTI_INPLACE : DFTI_NOT_INPLACE);
      DftiSetValue(d.handle, DFTI_FORWARD_SCALE, c.scale);
      ASSERT_EQ(DftiCommitDescriptor(d.handle), 0);
      y = x;
      ASSERT_EQ(DftiComputeForward(d.handle, c.in_place ? y.data() : x.data(), y.data()), 0);
      if (threads == 1) alone = y;
      long double error = 0, size = 0;
      for (std::size_t i = 0; i < y.size(); ++i) {
        error += std::norm(y[i] - alone[i]);
        size += std::norm(alone[i]);
      }
      EXPECT_LE(std::sqrt(error / size), 2e-15L);
      ASSERT_EQ(DftiComputeBackward(d.handle, y.data(), alone.size() == 0 ? nullptr : y.data()), 0);
    }
  }
  qel_set_num_threads(1);
}

}  // namespace
}  // namespace qel::test
