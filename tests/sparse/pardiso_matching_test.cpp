// SPDX-License-Identifier: BSD-3-Clause
#include "sparse/pardiso/order/matching.h"

#include <cmath>
#include <limits>
#include <numeric>
#include <random>

#include "tests/sparse/pardiso_support.h"

namespace qel::test {
namespace {

using pardiso::ordering_options;

/// The largest sum of logarithms of a complete matching by trying all; -inf without one.
double best_product(const std::vector<std::vector<double>>& dense) {
  const size_t n = dense.size();
  std::vector<size_t> choice(n);
  std::iota(choice.begin(), choice.end(), size_t{0});
  double best = -std::numeric_limits<double>::infinity();
  do {
    double sum = 0;
    for (size_t i = 0; i < n; ++i) sum += std::log(std::abs(dense[i][choice[i]]));
    best = std::max(best, sum);
  } while (std::next_permutation(choice.begin(), choice.end()));
  return best;
}

sparse_problem random_problem(int n, int type, unsigned seed) {
  std::mt19937 random(seed);
  sparse_problem result{"random", n, type, {}};
  const auto value = [&] {
    return std::complex<double>(std::pow(10, static_cast<int>(random() % 9) - 4), type == 11 ? 0 : 1.0);
  };
  for (int i = 0; i < n; ++i)
    for (int j = type % 2 == 0 ? i : 0; j < n; ++j) {
      if (random() % 5 < 2) continue;
      const std::complex<double> v = value();
      result.entries.push_back({i, j, v});
      if (type % 2 == 0 && i != j) result.entries.push_back({j, i, std::conj(v)});
    }
  return result;
}

std::vector<std::vector<double>> moduli_of(const sparse_problem& problem) {
  const size_t n = static_cast<size_t>(problem.n);
  std::vector<std::vector<double>> result(n, std::vector<double>(n));
  for (const sparse_entry& e : problem.entries)
    result[static_cast<size_t>(e.row)][static_cast<size_t>(e.col)] = std::abs(e.value);
  return result;
}

TEST(Matching, IsTheBestThereIs) {
  int complete = 0, incomplete = 0;
  for (unsigned seed = 0; seed < 150; ++seed)
    for (const int type : {11, 13}) {
      const sparse_problem problem = random_problem(2 + static_cast<int>(seed % 6), type, seed);
      const auto dense = moduli_of(problem);
      const double best = best_product(dense);
      ordered o;
      ordering_options options;
      options.matching = options.scaling = 1;
      run_ordering(csr_of<complex16>(problem), options, o);
      if (std::isinf(best)) {
        ++incomplete;
        EXPECT_EQ(o.status.error, -6);
        EXPECT_LE(o.status.sub_code, 0);
        EXPECT_GT(o.status.sub_code, -problem.n);
        continue;
      }
      ++complete;
      ASSERT_TRUE(o.status.ok());
      double sum = 0;
      for (int i = 0; i < problem.n; ++i) {
        const auto row = static_cast<size_t>(o.order.matched_row[i]);
        const double matched = dense[row][static_cast<size_t>(i)];
        sum += std::log(matched);
        // Scaled: ones where matched, nothing larger elsewhere.
        EXPECT_NEAR(matched * o.order.row_scale[static_cast<int>(row)] * o.order.column_scale[i], 1, 1e-12);
        for (int j = 0; j < problem.n; ++j)
          EXPECT_LE(dense[row][static_cast<size_t>(j)] * o.order.row_scale[static_cast<int>(row)] *
                        o.order.column_scale[j],
                    1 + 1e-12);
      }
      EXPECT_NEAR(sum, best, 1e-9);
    }
  EXPECT_GT(complete, 100);
  EXPECT_GT(incomplete, 20);
}

TEST(Matching, CardinalityOfSingularPatterns) {
  const struct {
    std::vector<std::pair<int, int>> entries;
    int n, cardinality;
  } cases[] = {{{{0, 0}, {1, 0}, {2, 0}, {2, 1}}, 3, 2},
               {{{0, 1}, {1, 1}, {2, 1}}, 3, 1},
               {{{0, 1}, {0, 2}, {0, 3}, {1, 1}, {2, 1}, {3, 3}}, 4, 3}};
  for (const auto& one : cases) {
    sparse_problem problem{"singular", one.n, 11, {}};
    for (const auto& [i, j] : one.entries) problem.entries.push_back({i, j, 1.0 + i + j});
    ordered o;
    ordering_options options;
    options.matching = 1;
    run_ordering(csr_of<double>(problem), options, o);
    EXPECT_EQ(o.status.error, -6);
    EXPECT_EQ(o.status.sub_code, -one.cardinality);
  }
}

TEST(Matching, ChoosesByTypeAndRequest) {
  const struct {
    int type, matching, error;
    bool rows, scales;
  } cases[] = {{11, 0, 0, false, false},  {11, 1, 0, true, true},    {11, 2, -6, false, false},
               {11, 3, -6, false, false}, {11, 4, -6, false, false}, {11, 5, 0, false, false},
               {11, -1, 0, false, false}, {1, 1, 0, false, false},   {2, 1, 0, false, false},
               {-2, 1, 0, false, true},   {-2, 3, 0, false, true},   {-2, 0, 0, false, false}};
  for (const auto& one : cases) {
    ordered o;
    ordering_options options;
    options.matching = one.matching;
    options.scaling = 1;
    run_ordering(csr_of<double>(as_type(grid(6, 5, 1), one.type)), options, o);
    SCOPED_TRACE(std::to_string(one.type) + " " + std::to_string(one.matching));
    EXPECT_EQ(o.status.error, one.error);
    EXPECT_EQ(o.status.sub_code, one.error == 0 ? 0 : 1);
    EXPECT_EQ(o.order.matched_row.size() > 0, one.rows);
    EXPECT_EQ(o.order.row_scale.size() > 0, one.scales);
  }
}

TEST(Matching, SymmetricScalingAndPairs) {
  for (unsigned seed = 0; seed < 60; ++seed)
    for (const int type : {-2, -4, 6}) {
      sparse_problem problem = random_problem(3 + static_cast<int>(seed % 5), type, seed);
      if (type == -2)
        for (sparse_entry& e : problem.entries) e.value = e.value.real();
      const auto dense = moduli_of(problem);
      if (std::isinf(best_product(dense))) continue;
      ordered o;
      ordering_options options;
      options.matching = options.scaling = 1;
      options.method = static_cast<int>(seed % 4);
      run_ordering(csr_of<complex16>(problem), options, o);
      ASSERT_TRUE(o.status.ok());
      const auto scaled = [&](int i, int j) {
        return dense[static_cast<size_t>(i)][static_cast<size_t>(j)] * o.order.row_scale[i] *
               o.order.row_scale[j];
      };
      std::vector<bool> paired(static_cast<size_t>(problem.n));
      for (int64_t p = 0; p < o.order.pairs.size(); p += 2) {
        const int i = o.order.pairs[p], j = o.order.pairs[p + 1];
        EXPECT_NEAR(scaled(i, j), 1, 1e-12);
        EXPECT_GE(scaled(i, i), scaled(j, j));
        EXPECT_EQ(o.order.inverse[j], o.order.inverse[i] + 1);
        EXPECT_FALSE(paired[static_cast<size_t>(i)] || paired[static_cast<size_t>(j)]);
        paired[static_cast<size_t>(i)] = paired[static_cast<size_t>(j)] = true;
      }
      for (int i = 0; i < problem.n; ++i)
        for (int j = 0; j < problem.n; ++j) EXPECT_LE(scaled(i, j), 1 + 1e-12);
    }
}

std::vector<std::pair<int, int>> pairs_of_cycle(const std::vector<int>& column_of,
                                                const std::vector<double>& logs,
                                                const std::vector<double>& diagonal,
                                                std::vector<std::pair<int, int>>& held_back) {
  const int n = static_cast<int>(column_of.size());
  pardiso::memory_account account;
  pardiso::matching matched;
  pardiso::pairing paired;
  pardiso::block<double> column_log;
  matched.column_of.allocate(account, n, 1), matched.row_dual.allocate(account, n, 1);
  matched.column_dual.allocate(account, n, 1), column_log.allocate(account, n, 1);
  for (int i = 0; i < n; ++i) {
    matched.column_of[i] = column_of[static_cast<size_t>(i)];
    // log|a(i, column_of[i])| = column_log - row_dual - column_dual.
    matched.row_dual[i] = -logs[static_cast<size_t>(i)];
    matched.column_dual[i] = column_log[i] = 0;
  }
  EXPECT_TRUE(pardiso::pair_nodes(matched, n, column_log.get(), diagonal.data(), account, paired).ok());
  std::vector<std::pair<int, int>> result;
  for (int64_t p = 0; p < paired.pairs_length; p += 2)
    result.push_back({paired.pairs[p], paired.pairs[p + 1]});
  for (int64_t p = 0; p < paired.held_back_length; p += 2)
    held_back.push_back({paired.held_back[p], paired.held_back[p + 1]});
  return result;
}

TEST(Pairing, CutsCyclesTheBetterWay) {
  using list = std::vector<std::pair<int, int>>;
  const double tiny = 1e-9;
  const struct {
    std::vector<int> column_of;
    std::vector<double> logs, diagonal;
    list pairs, held_back;
  } cases[] = {
      {{0, 1}, {0, 0}, {1, 0}, {}, {}},
      {{1, 0}, {0, 0}, {0, 2}, {{1, 0}}, {}},
      {{1, 0}, {0, 0}, {2, 2}, {{0, 1}}, {}},
      {{1, 2, 3, 0}, {1, 5, 1, 5}, {0, 0, 0, 0}, {{1, 2}, {3, 0}}, {}},
      {{1, 2, 3, 0}, {1, 1 + tiny, 1, 1}, {0, 0, 0, 0}, {{0, 1}, {2, 3}}, {}},
      {{1, 2, 0}, {0, 0, 0}, {0.5, 0.5, 3}, {{0, 1}}, {}},
      {{1, 2, 0}, {0, 0, 0}, {1e-5, 1e-6, 1e-6}, {{1, 2}}, {{0, 1}}},
  };
  for (const auto& one : cases) {
    list held_back;
    EXPECT_EQ(pairs_of_cycle(one.column_of, one.logs, one.diagonal, held_back), one.pairs);
    EXPECT_EQ(held_back, one.held_back);
  }
}

TEST(Pairing, HeldBackNodesFollowTheirPartners) {
  // Triangles of large entries with zero diagonals, tied to a grid: each leaves a single node.
  sparse_problem problem = as_type(grid(12, 12, 1), -2);
  for (int t = 0; t < 20; ++t) {
    const int i = problem.n;
    problem.n += 3;
    for (const auto& [p, q] : {std::pair{0, 1}, {1, 2}, {2, 0}}) {
      problem.entries.push_back({i + p, i + q, 100});
      problem.entries.push_back({i + q, i + p, 100});
      problem.entries.push_back({i + p, 7 * t + p, 0.1});
      problem.entries.push_back({7 * t + p, i + p, 0.1});
    }
  }
  for (int method = 0; method <= 3; ++method) {
    ordered o;
    ordering_options options;
    options.matching = 1;
    options.method = method;
    run_ordering(csr_of<double>(problem), options, o);
    ASSERT_TRUE(o.status.ok());
    for (int t = 0; t < 20; ++t) {
      int at[3];
      for (int p = 0; p < 3; ++p) at[p] = o.order.inverse[144 + 3 * t + p];
      std::sort(at, at + 3);
      // Two are a pair; the third never comes before them.
      EXPECT_EQ(std::min(at[1] - at[0], at[2] - at[1]), 1);
      EXPECT_EQ(at[1] - at[0], 1) << "method " << method << " triangle " << t;
    }
  }
}

TEST(Matching, ValuesThatAreNoNumbersDoNotBreakIt) {
  const double inf = std::numeric_limits<double>::infinity(), nan = std::numeric_limits<double>::quiet_NaN();
  for (const double odd : {inf, -inf, nan, 0.0, 1e-320, 1e308})
    for (const int type : {11, 13, -2, -4, 6}) {
      sparse_problem problem = as_type(grid(9, 7, 1), type);
      for (size_t k = 0; k < problem.entries.size(); k += 5) problem.entries[k].value = odd;
      ordered o;
      ordering_options options;
      options.matching = options.scaling = 1;
      run_ordering(csr_of<complex16>(problem), options, o);
      ASSERT_TRUE(o.status.ok() || o.status.error == -6);
      if (!o.status.ok()) continue;
      for (const double factor : o.order.row_scale) EXPECT_TRUE(std::isfinite(factor) && factor > 0);
      for (const double factor : o.order.column_scale) EXPECT_TRUE(std::isfinite(factor) && factor > 0);
    }
}

}  // namespace
}  // namespace qel::test
