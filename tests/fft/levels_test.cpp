// SPDX-License-Identifier: BSD-3-Clause
// Levels 0 to 4 promise the same bits: the kernels of their two builds side by side.
#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <random>
#include <vector>

#include "fft/kernels/fft_kernels.h"

namespace qel {
namespace {

template <class C>
std::vector<C> random_numbers(size_t count, unsigned seed) {
  std::mt19937 generator(seed);
  std::uniform_real_distribution<double> uniform(-1, 1);
  std::vector<C> numbers(count);
  for (C& z : numbers) {
    z.real = static_cast<decltype(z.real)>(uniform(generator));
    z.imag = static_cast<decltype(z.imag)>(uniform(generator));
  }
  return numbers;
}

/// run(kernels, target) of both builds leaves the same bytes.
template <class Kernels, class C, class Run>
void expect_same_bits(const Kernels& plain, const Kernels& avx, const std::vector<C>& before, Run run) {
  std::vector<C> a = before, b = before;
  run(plain, a.data());
  run(avx, b.data());
  EXPECT_NE(std::memcmp(a.data(), before.data(), sizeof(C) * a.size()), 0) << "nothing was done";
  EXPECT_EQ(std::memcmp(a.data(), b.data(), sizeof(C) * a.size()), 0);
}

template <class C, class R>
void check_builds(const fft_kernels<C, R>& plain, const fft_kernels<C, R>& avx) {
  using kernels = fft_kernels<C, R>;
  constexpr core_int kCount = 24;  // of a sub-block
  const auto input = random_numbers<C>(4096, 1), other = random_numbers<C>(4096, 2);
  // Twiddles of planes and factors of sums are read as whole registers.
  auto* const aligned = static_cast<C*>(std::aligned_alloc(64, 4096 * sizeof(C)));
  std::memcpy(aligned, other.data(), 4096 * sizeof(C));
  for (int way = 0; way < 2; ++way) {
    for (int n = 2; n <= kStraightLengths; ++n) {
      SCOPED_TRACE(testing::Message() << "straight " << n << " way " << way);
      expect_same_bits(plain, avx, other, [&](const kernels& k, C* out) {
        k.unscaled[way][n](input.data(), out, R{1});
        k.scaled[way][n](input.data(), out + 64, R{3});
      });
    }
    for (int i = 0; i < kRadices; ++i) {
      constexpr int kRadix[] = {2, 3, 4, 5, 7, 11};
      SCOPED_TRACE(testing::Message() << "radix " << kRadix[i] << " way " << way);
      expect_same_bits(plain, avx, input, [&](const kernels& k, C* data) {
        k.plane_join[way][kPlanes][i](data, kCount, data, kCount, kCount, 2, aligned);
        k.plane_join[way][kPairs][i](data + 1024, kCount, data + 2048, kCount, kCount, 2, aligned);
        k.join[way][i](data + 3072, data + 3072, 2, kCount + 1, other.data());
      });
    }
    for (const int n : {13, 17, 149}) {
      SCOPED_TRACE(testing::Message() << "odd " << n << " way " << way);
      expect_same_bits(plain, avx, input, [&](const kernels& k, C* data) {
        k.any_plane_join[way][kPlanes](data, 4, data, 4, 4, 1, aligned, n, other.data());
        if (n < 100) k.direct_sums[way](data + 1024, data + 2048, n, aligned);
      });
    }
    for (int i = 0; i < kPow2Radices; ++i) {
      SCOPED_TRACE(testing::Message() << "power of two " << i << " way " << way);
      expect_same_bits(plain, avx, input, [&](const kernels& k, C* data) {
        k.first_reversed[way][i](data, 8);
        k.pow2_join[way][kPairs][i](data + 512, kCount, data + 512, kCount, kCount, 1, aligned);
        k.pow2_split[way][kPairs][i](data + 1024, kCount, data + 1024, kCount, kCount, 1, aligned);
        k.last_reversed[way][i](data + 2048, 8);
      });
    }
  }
  std::free(aligned);
}

TEST(Levels, BothBuildsGiveTheSameBits) {
  if (!__builtin_cpu_supports("avx")) GTEST_SKIP() << "no AVX here";
  check_builds(l0_generic::fft_d, l4_avx::fft_d);
  check_builds(l0_generic::fft_s, l4_avx::fft_s);
}

}  // namespace
}  // namespace qel
