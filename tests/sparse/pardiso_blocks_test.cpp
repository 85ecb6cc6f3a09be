// SPDX-License-Identifier: BSD-3-Clause
// Pivots of a diagonal block, one by one, against the rules in their plainest form.
#include "sparse/pardiso/numeric/diagonal_block.h"

#include <cstring>

#include "tests/sparse/pardiso_systems.h"

namespace qel::test {
namespace {

template <class T>
class PardisoBlock : public testing::Test {};
TYPED_TEST_SUITE(PardisoBlock, all_types);

/// Complete pivoting as a textbook has it, the last of equals.
template <class T>
int plain_lu(int w, std::vector<T>& a, real_of<T> threshold, std::vector<int>& columns,
             std::vector<int>& rows) {
  const auto at = [&](int i, int j) -> T& { return a[static_cast<std::size_t>(i + j * w)]; };
  int perturbed = 0;
  for (int k = 0; k < w; ++k) {
    int p = k, q = k;
    for (int j = k; j < w; ++j)
      for (int i = k; i < w; ++i)
        if (std::abs(widen(at(i, j))) >= std::abs(widen(at(p, q)))) p = i, q = j;
    for (int j = 0; j < w; ++j) std::swap(at(p, j), at(k, j));
    for (int i = 0; i < w; ++i) std::swap(at(i, q), at(i, k));
    columns.push_back(q + 1);
    rows.push_back(p + 1);
    if (threshold >= std::abs(widen(at(k, k)))) {
      const real_of<T> size = threshold != 0 ? threshold : static_cast<real_of<T>>(1e-13);
      at(k, k) = make<T>(real_part(at(k, k)) < 0 ? -size : size, 0);
      rows.back() = -rows.back();
      ++perturbed;
    }
    for (int i = k + 1; i < w; ++i) {
      at(i, k) = at(i, k) / at(k, k);
      for (int j = k + 1; j < w; ++j) at(i, j) = at(i, j) - at(i, k) * at(k, j);
    }
  }
  return perturbed;
}

TYPED_TEST(PardisoBlock, CompletePivotingTakesTheLastOfEquals) {
  using T = TypeParam;
  std::mt19937 random(1);
  for (int round = 0; round < 300; ++round) {
    const int w = 1 + static_cast<int>(random() % 24), ld = w + static_cast<int>(random() % 3);
    const int range = round % 3 == 0 ? 2 : round % 3 == 1 ? 5 : 100000;  // few values: many ties, zero pivots
    const real_of<T> threshold = round % 2 == 0 ? 0 : static_cast<real_of<T>>(0.125);
    const real_of<T> scale = static_cast<real_of<T>>(round % 7 == 0 ? 1e-25 : 1);
    std::vector<T> plain(static_cast<std::size_t>(w * w)), a(static_cast<std::size_t>(ld * w));
    for (int j = 0; j < w; ++j) {
      for (int i = 0; i < w; ++i) {
        const auto part = [&] {
          return static_cast<double>(scale) *
                 (static_cast<int>(random() % static_cast<unsigned>(2 * range + 1)) - range);
        };
        plain[static_cast<std::size_t>(i + j * w)] = a[static_cast<std::size_t>(i + j * ld)] =
            is_complex<T> && round % 4 != 0 ? make<T>(0, part()) : make<T>(part(), 0);
      }
    }
    std::vector<int> want_columns, want_rows, columns(static_cast<std::size_t>(w)), rows(columns.size());
    const int perturbed = plain_lu(w, plain, threshold, want_columns, want_rows);
    pardiso::pivot_counts counts;
    pardiso::factor_lu_block(w, a.data(), ld, threshold, columns.data(), rows.data(), counts);
    ASSERT_EQ(rows, want_rows) << round;
    ASSERT_EQ(columns, want_columns) << round;
    ASSERT_EQ(counts.perturbed, perturbed) << round;
    for (int j = 0; j < w; ++j) {
      ASSERT_EQ(std::memcmp(&plain[static_cast<std::size_t>(j * w)], &a[static_cast<std::size_t>(j * ld)],
                            static_cast<std::size_t>(w) * sizeof(T)),
                0)
          << round;
    }
  }
}

/// Small symmetric blocks whose pivots follow from the rule by hand.
TYPED_TEST(PardisoBlock, BunchKaufmanChoices) {
  using T = TypeParam;
  const struct {
    const char* what;
    std::vector<double> lower;  ///< of a block of order 3, column by column
    double threshold;
    std::vector<int> interchanges;
    int perturbed, positive, negative;
  } rows[] = {
      {"diagonal large enough", {4, 1, 1, 3, 0, -2}, 0, {1, 2, 3}, 0, 2, 1},
      {"small, but large against its row's other elements", {1, 2, 0, 1, 8, 1}, 0, {1, -2, -3}, 0, 2, 1},
      {"the other diagonal element", {0.1, 1, 0, 5, 1, 3}, 0, {2, 3, 3}, 0, 2, 1},
      {"a pair", {0, 1, 0, 0, 0, 2}, 0, {-1, -2, 3}, 0, 2, 1},
      {"a pair with an interchange", {0, 0, 2, 5, 0, 0}, 0, {-1, -3, 3}, 0, 2, 1},
      {"a column of noise", {1e-9, 1e-9, 0, 1, 0, 1}, 1e-8, {1, 2, 3}, 1, 3, 0},
      {"a zero column", {0, 0, 0, 1, 0, 1}, 0, {1, 2, 3}, 1, 3, 0},
  };
  for (const bool hermitian : {false, true}) {
    for (const auto& row : rows) {
      SCOPED_TRACE(row.what);
      std::vector<T> a(9);
      std::size_t next = 0;
      for (std::size_t j = 0; j < 3; ++j)
        for (std::size_t i = j; i < 3; ++i) a[i + 3 * j] = make<T>(row.lower[next++], 0);
      std::vector<int> interchanges(3);
      pardiso::pivot_counts counts;
      pardiso::factor_ldl_block(hermitian, true, 3, a.data(), 3, static_cast<real_of<T>>(row.threshold),
                                interchanges.data(), counts);
      EXPECT_EQ(interchanges, row.interchanges);
      EXPECT_EQ(counts.perturbed, row.perturbed);
      if (is_complex<T> && !hermitian) continue;
      EXPECT_EQ(counts.positive, row.positive);
      EXPECT_EQ(counts.negative, row.negative);
    }
  }
}

}  // namespace
}  // namespace qel::test
