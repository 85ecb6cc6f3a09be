// SPDX-License-Identifier: BSD-3-Clause
// Operations on compressed vectors through the public entries. Positions 5, 1, 4 with 5 repeated: order
// matters, and nothing else of the full vector may change.
#include <algorithm>

#include "tests/entry/support.h"

extern "C" qel::complex16 zdotui_(const int*, const qel::complex16*, const int*, const qel::complex16*);

namespace qel::test {
namespace {

template <class T>
class SparseVector : public testing::Test {
 protected:
  const std::vector<int> at = {5, 1, 4, 5, 2};
  std::vector<T> x, y;
  SparseVector() {
    for (int k = 0; k < 5; ++k) x.push_back(make<T>(k + 2, 1 - k));
    for (int i = 0; i < 6; ++i) y.push_back(make<T>(10 * i - 7, i));
  }
};
using sparse_types = testing::Types<float, double, complex16>;
TYPED_TEST_SUITE(SparseVector, sparse_types);

template <class T>
void expect_same(const std::vector<T>& got, const std::vector<T>& want) {
  for (std::size_t i = 0; i < want.size(); ++i) EXPECT_EQ(wide(got[i]), wide(want[i])) << "element " << i;
}

TYPED_TEST(SparseVector, Adds) {
  using T = TypeParam;
  constexpr auto axpyi = pick<T>(saxpyi, daxpyi, 0, zaxpyi);
  for (const int n : {-1, 0, 1, 4, 5}) {
    std::vector<T> got = this->y, want = this->y;
    const T alpha = make<T>(3, 2);
    for (int k = 0; k < n; ++k) want[this->at[k] - 1] += alpha * this->x[k];
    call(axpyi, n, alpha, this->x.data(), this->at.data(), got.data());
    expect_same(got, want);
  }
  std::vector<T> got = this->y;
  const std::vector<T> infinite(5, make<T>(HUGE_VAL));
  call(axpyi, 5, T{}, infinite.data(), this->at.data(), got.data());
  expect_same(got, this->y);
}

TYPED_TEST(SparseVector, MultipliesAndMoves) {
  using T = TypeParam;
  if constexpr (!std::is_same_v<T, float>) {
    for (const int n : {0, 1, 4, 5}) {
      T dot{}, result{};
      std::vector<T> gathered(5, make<T>(99)), scattered = this->y, zeroed = this->y;
      auto want_gathered = gathered, want_scattered = scattered, want_zeroed = zeroed,
           zero_gathered = gathered;
      auto want_zero_gathered = gathered;
      for (int k = 0; k < n; ++k) {
        const int i = this->at[k] - 1;
        dot += this->x[k] * this->y[i];
        want_gathered[k] = this->y[i];
        want_scattered[i] = this->x[k];
        want_zero_gathered[k] = want_zeroed[i];
        want_zeroed[i] = T{};
      }
      if constexpr (is_complex<T>) {
        call(zdotui, &result, n, this->x.data(), this->at.data(), this->y.data());
        EXPECT_EQ(wide(dot), wide(call(zdotui_, n, this->x.data(), this->at.data(), this->y.data())));
      } else {
        result = call(ddoti, n, this->x.data(), this->at.data(), this->y.data());
      }
      EXPECT_EQ(wide(dot), wide(result));
      call(pick<T>(0, dgthr, 0, zgthr), n, this->y.data(), gathered.data(), this->at.data());
      expect_same(gathered, want_gathered);
      call(pick<T>(0, dsctr, 0, zsctr), n, this->x.data(), this->at.data(), scattered.data());
      expect_same(scattered, want_scattered);
      call(pick<T>(0, dgthrz, 0, zgthrz), n, zeroed.data(), zero_gathered.data(), this->at.data());
      expect_same(zeroed, want_zeroed);
      expect_same(zero_gathered, want_zero_gathered);
    }
  }
}

}  // namespace
}  // namespace qel::test
