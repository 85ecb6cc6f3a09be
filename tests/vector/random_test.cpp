// SPDX-License-Identifier: BSD-3-Clause
// Random streams against a recurrence written down independently: seeds, splits of a fill, intervals,
// kernels; statuses and reports; the tables.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <functional>
#include <numeric>
#include <vector>

#include "qel/qel.h"
#include "service/serv.h"
#include "tests/support/guarded.h"
#include "tests/vector/runnable.h"
#include "vector/rng/stream.h"
#include "vector/vml/vector_rows.h"

namespace qel {
namespace {

/// The first n words for a seed, by the recurrence over the whole sequence.
std::vector<uint32_t> words_of(uint32_t seed, size_t n) {
  std::vector<uint32_t> y;
  uint32_t word = seed == 0 ? 1 : seed;
  for (int k = 0; k < 250; ++k)
    y.push_back(word = static_cast<uint32_t>(uint64_t{word} * 69069 % 4294967296));
  for (unsigned k = 0; k < 32; ++k) {
    uint32_t& x = y[3 + 7 * k];
    x &= 0xffffffffu >> k;
    x |= 0x80000000u >> k;
  }
  for (size_t k = 250; k < 250 + n; ++k) y.push_back(y[k - 250] ^ y[k - 147]);
  return {y.begin() + 250, y.end()};
}

class stream {
 public:
  explicit stream(unsigned seed) { EXPECT_EQ(vslNewStream(&handle_, QEL_BRNG_R250, seed), 0); }
  ~stream() { EXPECT_EQ(vslDeleteStream(&handle_), 0); }
  stream(const stream&) = delete;
  stream& operator=(const stream&) = delete;
  qel_random_stream_handle get() const { return handle_; }
  std::vector<double> uniform(int n, double a = 0, double b = 1, int method = 0) {
    std::vector<double> r(static_cast<size_t>(n));
    EXPECT_EQ(vdRngUniform(method, handle_, n, r.data(), a, b), 0);
    return r;
  }

 private:
  qel_random_stream_handle handle_ = nullptr;
};

TEST(RandomStream, FollowsTheRecurrenceForAnySeedAndAnySplit) {
  const std::vector<std::vector<int>> splits = {
      {2000},           {249, 1, 1750},       {250, 250, 1500},   {1, 250, 1749},
      {251, 1749},      {500, 500, 500, 500}, {17, 400, 3, 1580}, {147, 103, 1000, 750},
      {999, 1, 1, 999},
  };
  for (unsigned seed = 0; seed < 100; ++seed) {
    const unsigned spread = seed < 3 ? seed : seed * 2654435761u;
    const std::vector<uint32_t> words = words_of(spread, 2000);
    const auto& split = splits[seed % splits.size()];
    stream s(spread);
    size_t k = 0;
    for (const int n : split) {
      for (const double r : s.uniform(n)) ASSERT_EQ(r, words[k++] * (1 / 4294967296.0)) << seed << ' ' << k;
    }
    ASSERT_EQ(k, 2000U);
  }
}

TEST(RandomStream, LongFillsAreShortOnesInARow) {
  for (const int n : {1700, 1707, 3072, 3321, 10000}) {
    stream whole(7), parts(7);
    const std::vector<double> all = whole.uniform(n + 300, -3, 5);
    std::vector<double> joined;
    for (int done = 0; done < n + 300; done += 100) {
      for (const double r : parts.uniform(std::min(100, n + 300 - done), -3, 5)) joined.push_back(r);
    }
    ASSERT_EQ(all, joined) << n;
  }
}

TEST(RandomStream, EveryTypesKernelGivesTheSameBitsAndStaysInside) {
  const int n = 9000;
  const std::vector<uint32_t> words = words_of(42, n);
  // Ways to make a number: a scaled word, a rounded product, products too large and too small for shortcuts.
  const struct {
    double a, scale;
  } intervals[] = {{0, 1}, {0.1, 0x1.3456789p-33}, {-0.5, 0x1p-32}, {0, 0x1.23p990}, {0, 0x1.9p-1070}};
  const auto number = [&](const auto& in, int k) { return in.a + words[static_cast<size_t>(k)] * in.scale; };
  size_t turn = 0;
  for (const int type : test::runnable_types()) {
    for (const int length : {5, 100, 249, 250, 253, 1001, 1999, 2000, 2007, 2008, 2015, 4001, 8700}) {
      for (const size_t shift : {0U, 5U, 8U}) {
        r250_register state{};
        std::vector<uint32_t> x = words_of(42, 250);
        for (int k = 249; k >= 0; --k) {  // back to the start: 250 words before the first output
          state.x[k] = x[static_cast<size_t>(k)];
        }
        state.q = kR250Lag;
        test::guarded<double> r(static_cast<size_t>(length), shift);
        const auto& in = intervals[turn++ % std::size(intervals)];
        kR250Fill.kernel[type](state, length, r.data(), in.a, in.scale, shift == 8);
        std::vector<double> got(static_cast<size_t>(length));
        std::memcpy(got.data(), r.data(), got.size() * sizeof(double));
        // The register holds outputs 0 to 249, so these are outputs 250 and on.
        for (int k = 0; k < length && k + 250 < n; ++k) {
          ASSERT_EQ(got[static_cast<size_t>(k)], number(in, k + 250))
              << type << ' ' << in.scale << ' ' << length << ' ' << k;
        }
      }
    }
  }
}

TEST(RandomStream, SeedZeroIsSeedOne) {
  stream zero(0), one(1), two(2);
  const std::vector<double> first = zero.uniform(300);
  EXPECT_EQ(first, one.uniform(300));
  EXPECT_NE(first, two.uniform(300));
}

TEST(RandomStream, FillsTheIntervalEvenly) {
  stream s(2024);
  const int n = 400000;
  const std::vector<double> r = s.uniform(n, -2, 6);
  std::vector<int> bins(64);
  for (const double v : r) {
    ASSERT_TRUE(v >= -2 && v <= 6);
    ++bins[static_cast<size_t>(std::min(63.0, (v + 2) * 8))];
  }
  double chi = 0;
  for (const int count : bins) chi += (count - n / 64.0) * (count - n / 64.0) / (n / 64.0);
  EXPECT_LT(chi, 120) << "63 degrees of freedom";
  EXPECT_NEAR(std::accumulate(r.begin(), r.end(), 0.0) / n, 2.0, 0.02);
}

TEST(RandomStream, ClampsOnRequest) {
  // A step of the interval is wider than it, so that rounding leads out of it.
  const double a = 1, b = 1 + 0x1p-52;
  stream plain(5), clamped(5);
  const std::vector<double> raw = plain.uniform(1000, a, b), inside = clamped.uniform(1000, a, b, 0x40000000);
  for (size_t i = 0; i < raw.size(); ++i) EXPECT_EQ(inside[i], std::min(b, std::max(a, raw[i])));
}

TEST(RandomStream, OtherKindsOfNumbersComeFromTheSameWords) {
  const generator_row* row = find_generator(QEL_BRNG_R250);
  ASSERT_NE(row, nullptr);
  EXPECT_EQ(row->state_size, 1024U);
  EXPECT_EQ(row->seed_count, 252U);
  const std::vector<uint32_t> words = words_of(9, 1500);
  stream s(9), t(9);
  std::vector<uint32_t> ints(1500);
  std::vector<float> floats(1500);
  EXPECT_EQ(row->fill_int(reinterpret_cast<stream_head*>(s.get()), 1500, ints.data()), 0);
  EXPECT_EQ(row->fill_float(reinterpret_cast<stream_head*>(t.get()), 1500, floats.data(), -1, 1), 0);
  EXPECT_EQ(ints, words);
  for (size_t i = 0; i < words.size(); ++i) {
    EXPECT_EQ(floats[i], static_cast<float>(-1 + words[i] * (2 / 4294967296.0)));
  }
}

TEST(RandomStream, TakesAWholeRegisterOfSeeds) {
  const generator_row* row = find_generator(QEL_BRNG_R250);
  stream s(1);
  auto* head = reinterpret_cast<stream_head*>(s.get());
  std::vector<uint32_t> seeds(252);
  std::iota(seeds.begin(), seeds.end(), 100U);
  EXPECT_EQ(row->init(0, head, 252, seeds.data()), 0);
  std::vector<uint32_t> ints(1);
  row->fill_int(head, 1, ints.data());
  EXPECT_EQ(ints[0], 100U ^ 203U);
  EXPECT_EQ(row->init(0, head, 0, nullptr), 0) << "no seeds: as seed 1";
  row->fill_int(head, 1, ints.data());
  EXPECT_EQ(ints[0], words_of(1, 1)[0]);
  EXPECT_EQ(row->init(1, head, 1, seeds.data()), -1002);
  EXPECT_EQ(row->init(2, head, 1, seeds.data()), -1003);
  EXPECT_EQ(row->init(3, head, 1, seeds.data()), -2);
}

TEST(RandomStream, RefusesWhatIsNoGenerator) {
  const struct {
    int brng;
    bool reported;
  } cases[] = {{0xa00000, true}, {0xb00000, true},  {0xc00000, true}, {0, false},
               {3, false},       {100, false},      {0xfffff, false}, {0x100000, false},
               {-1, false},      {0x200001, false}, {0x300000, false}};
  for (const auto& c : cases) {
    qel_random_stream_handle handle = nullptr;
    testing::internal::CaptureStdout();
    EXPECT_EQ(vslNewStream(&handle, c.brng, 1), -1000);
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              c.reported ? "\nQEL ERROR: Parameter 2 was incorrect on entry to vslNewStream\n" : "")
        << std::hex << c.brng;
    EXPECT_EQ(handle, nullptr);
  }
  EXPECT_EQ(vslNewStream(nullptr, QEL_BRNG_R250, 1), -5);
}

void* no_memory(size_t) { return nullptr; }

TEST(RandomStream, TellsThatMemoryIsOut) {
  const auto allocate = serv_platform_malloc;
  serv_platform_malloc = no_memory;
  qel_random_stream_handle handle = nullptr;
  testing::internal::CaptureStdout();
  EXPECT_EQ(vslNewStream(&handle, QEL_BRNG_R250, 1), -4);
  serv_platform_malloc = allocate;
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
  EXPECT_EQ(handle, nullptr);
}

TEST(RandomStream, ChecksArgumentsInOrder) {
  stream s(1);
  alignas(16) char other[1024] = {};
  auto* no_stream = reinterpret_cast<qel_random_stream_handle>(other);
  double r[4] = {-77, -77, -77, -77};
  const struct {
    int method;
    qel_random_stream_handle handle;
    int n;
    double* r;
    double a, b;
    int status, position;
  } cases[] = {
      {-1, nullptr, -1, nullptr, 1, 0, -3, 1},
      {5, nullptr, -1, nullptr, 1, 0, -5, 2},
      {5, no_stream, -1, nullptr, 1, 0, -1006, 2},
      {5, s.get(), -1, nullptr, 1, 0, -3, 3},
      {5, s.get(), 0, nullptr, 1, 0, 0, 0},
      {5, s.get(), 4, nullptr, 1, 0, -3, 4},
      {5, s.get(), 4, r, 1, 0, -3, 1},
      {0, s.get(), 4, r, 1, 1, -3, 5},
      {0, s.get(), 4, r, NAN, 1, -3, 5},
      {0, s.get(), 4, r, 0, NAN, -3, 5},
  };
  for (const auto& c : cases) {
    testing::internal::CaptureStdout();
    EXPECT_EQ(vdRngUniform(c.method, c.handle, c.n, c.r, c.a, c.b), c.status);
    const std::string text = testing::internal::GetCapturedStdout();
    if (c.position == 0) {
      EXPECT_EQ(text, "");
    } else {
      EXPECT_EQ(text, "\nQEL ERROR: Parameter " + std::to_string(c.position) +
                          " was incorrect on entry to vdRngUniform\n");
    }
    EXPECT_EQ(r[0], -77);
  }
  qel_random_stream_handle gone = nullptr;
  EXPECT_EQ(vslDeleteStream(&gone), -5);
  EXPECT_EQ(vslDeleteStream(nullptr), -5);
  EXPECT_EQ(vslDeleteStream(&no_stream), -1006);
}

}  // namespace
}  // namespace qel
