// SPDX-License-Identifier: BSD-3-Clause
// A supernode's part of a substitution: every width around the groups of columns and number of rows around
// the vectors, against sums one by one; all levels give the same bits.
#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <type_traits>
#include <vector>

#include "service/serv.h"
#include "sparse/kernels/substitution_kernels.h"
#include "tests/support/guarded.h"

namespace qel::test {
namespace {

template <class T>
const substitution_kernels<T>& generic() {
  if constexpr (std::is_same_v<T, float>) {
    return l0_generic::substitution_s;
  } else {
    return l0_generic::substitution_d;
  }
}
template <class T>
const substitution_kernels<T>& avx2() {
  if constexpr (std::is_same_v<T, float>) {
    return l5_avx2::substitution_s;
  } else {
    return l5_avx2::substitution_d;
  }
}

template <class T>
struct panels {
  int rows, width;
  std::vector<T> block, other, z;
  panels(int r, int w) : rows(r), width(w) {
    std::mt19937 random(static_cast<unsigned>(100 * r + w));
    std::uniform_real_distribution<T> uniform(-1, 1);
    const auto size = static_cast<std::size_t>(r) * static_cast<std::size_t>(w);
    for (std::size_t i = 0; i < size; ++i) block.push_back(uniform(random)), other.push_back(uniform(random));
    for (int k = 0; k < w; ++k) at(block, k, k) = 3 + at(block, k, k);
    for (int i = 0; i < r; ++i) z.push_back(uniform(random));
  }
  T& at(std::vector<T>& panel, int i, int j) const {
    return panel[static_cast<std::size_t>(i) + static_cast<std::size_t>(j) * static_cast<std::size_t>(rows)];
  }
};

/// What is left of z if the step's result is put back into the triangle and the products: nothing, but for
/// rounding.
template <class T>
double largest_remainder(panels<T>& p, bool lower, bool forward, bool unit, bool apart,
                         const std::vector<T>& result) {
  double largest = 0;
  for (int i = 0; i < p.rows; ++i) {
    if (!forward && i >= p.width) {
      if (result[static_cast<std::size_t>(i)] != p.z[static_cast<std::size_t>(i)]) return INFINITY;
      continue;
    }
    double sum = i < p.width ? 0 : static_cast<double>(result[static_cast<std::size_t>(i)]);
    const auto factor = [&](int row, int column) {
      return static_cast<double>(row >= p.width && apart ? p.at(p.other, row, column)
                                                         : p.at(p.block, row, column));
    };
    for (int k = 0; k < p.rows; ++k) {
      const auto x = static_cast<double>(result[static_cast<std::size_t>(k)]);
      // The matrix that the forward pass solves with is L or U', that of the backward pass L' or U.
      if (i < p.width && k == i) {
        sum += x * (unit ? 1 : factor(i, i));
      } else if (i < p.width && k < p.width) {
        const bool needs = forward ? k < i : k > i;
        if (needs) sum += x * (lower == forward ? factor(i, k) : factor(k, i));
      } else if (i < p.width && k >= p.width && !forward) {
        sum += x * factor(k, i);
      } else if (i >= p.width && k < p.width) {
        sum += x * factor(i, k);
      }
    }
    largest = std::max(largest, std::abs(sum - static_cast<double>(p.z[static_cast<std::size_t>(i)])));
  }
  return largest;
}

template <class T>
class Substitution : public testing::Test {};
using real_types = testing::Types<float, double>;
TYPED_TEST_SUITE(Substitution, real_types);

TYPED_TEST(Substitution, SolvesAndSubtracts) {
  using T = TypeParam;
  for (int width = 1; width <= 9; ++width) {
    for (const int below : {0, 1, 3, 4, 7, 8, 13, 33}) {
      for (const bool unit : {true, false}) {
        for (const auto& [lower, forward] :
             {std::pair{true, true}, {true, false}, {false, true}, {false, false}}) {
          for (const bool apart : {false, true}) {
            panels<T> p(width + below, width);
            const auto run = [&](const substitution_kernels<T>& kernels) {
              guarded<T> block(p.block.size()), other(p.other.size()), z(p.z.size());
              block.assign(p.block);
              other.assign(p.other);
              z.assign(p.z);
              const panel_substitution<T> step = {
                  p.rows, p.width, block.data(), apart ? other.data() : block.data(), unit, z.data()};
              (lower     ? forward ? kernels.forward_lower : kernels.backward_lower
               : forward ? kernels.forward_upper
                         : kernels.backward_upper)(&step);
              return std::vector<T>(z.data(), z.data() + p.rows);
            };
            const std::vector<T> result = run(generic<T>());
            double size = 1;
            for (const T value : result) size = std::max(size, std::abs(static_cast<double>(value)));
            EXPECT_LT(largest_remainder(p, lower, forward, unit, apart, result),
                      200 * size * std::numeric_limits<T>::epsilon())
                << width << ' ' << below << unit << lower << forward << apart;
            if (serv_cpu_level() < 5) continue;
            EXPECT_EQ(run(avx2<T>()), result) << width << ' ' << below;
          }
        }
      }
    }
  }
}

}  // namespace
}  // namespace qel::test
