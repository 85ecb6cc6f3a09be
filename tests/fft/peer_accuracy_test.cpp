// SPDX-License-Identifier: BSD-3-Clause
// Errors beside those of FFTW on the same data.
#include <fftw3.h>
#include <gtest/gtest.h>

#include "tests/fft/reference.h"
#include "tests/fft/support.h"

namespace qel::test {
namespace {

void transform_by_peer(std::vector<std::complex<double>>& x, int sign) {
  auto* const data = reinterpret_cast<fftw_complex*>(x.data());
  const fftw_plan plan = fftw_plan_dft_1d(static_cast<int>(x.size()), data, data, sign, FFTW_ESTIMATE);
  fftw_execute(plan);
  fftw_destroy_plan(plan);
}
void transform_by_peer(std::vector<std::complex<float>>& x, int sign) {
  auto* const data = reinterpret_cast<fftwf_complex*>(x.data());
  const fftwf_plan plan = fftwf_plan_dft_1d(static_cast<int>(x.size()), data, data, sign, FFTW_ESTIMATE);
  fftwf_execute(plan);
  fftwf_destroy_plan(plan);
}

template <class R>
class Peer : public testing::Test {};
using reals = testing::Types<double, float>;
TYPED_TEST_SUITE(Peer, reals);

TYPED_TEST(Peer, ErrorsAreNotMuchLarger) {
  std::vector<std::size_t> lengths = {256,  512,  1009, 1024, 1920,  2017,  2187,
                                      3000, 4097, 5005, 8192, 22650, 30030, 1 << 16};
  for (std::size_t n = 2; n < 200; ++n) lengths.push_back(n);
  for (const std::size_t n : lengths) {
    // Errors of a few roundings vary with the data.
    const unsigned samples = n < 200 ? 8 : 1;
    owned_descriptor plan(sizeof(TypeParam) == 8 ? DFTI_DOUBLE : DFTI_SINGLE, DFTI_COMPLEX,
                          {static_cast<int>(n)});
    ASSERT_EQ(DftiCommitDescriptor(plan.handle), DFTI_NO_ERROR);
    for (const int sign : {-1, 1}) {
      long double own = 0, peer = 0;
      for (unsigned sample = 0; sample < samples; ++sample) {
        const auto x = random_line<TypeParam>(n, 1000 * sample + static_cast<unsigned>(n));
        const auto want = wide_transform({x.begin(), x.end()}, sign);
        auto y = x, z = x;
        (sign < 0 ? DftiComputeForward : DftiComputeBackward)(plan.handle, y.data());
        transform_by_peer(z, sign);
        own += relative_error(y.data(), want);
        peer += relative_error(z.data(), want);
      }
      EXPECT_LE(own, 1.5L * peer) << "length " << n << " sign " << sign;
    }
  }
}

}  // namespace
}  // namespace qel::test
