// SPDX-License-Identifier: BSD-3-Clause
#include <limits.h>
#include <signal.h>
#include <stdlib.h>

#include <set>
#include <thread>

#include "sparse/pardiso/order/dissection.h"
#include "sparse/pardiso/order/fill.h"
#include "tests/sparse/pardiso_support.h"

namespace qel::test {
namespace {

using pardiso::column_range;
using pardiso::ordering_options;

/// Entries of L, diagonal included, by row: the nodes of the elimination tree between a row's entries and it.
int64_t fill_of(const ordered& o) {
  const int n = o.adjacency.n;
  std::vector<int> parent(static_cast<size_t>(n), -1), mark(static_cast<size_t>(n), -1);
  int64_t count = n;
  for (int k = 0; k < n; ++k) {
    mark[static_cast<size_t>(k)] = k;
    const int old = o.order.perm[k];
    for (int64_t p = o.adjacency.xadj[old]; p < o.adjacency.xadj[old + 1]; ++p) {
      int j = o.order.inverse[o.adjacency.adjncy[p]];
      for (; j < k && mark[static_cast<size_t>(j)] != k; j = parent[static_cast<size_t>(j)]) {
        if (parent[static_cast<size_t>(j)] < 0) parent[static_cast<size_t>(j)] = k;
        mark[static_cast<size_t>(j)] = k;
        ++count;
      }
    }
  }
  return count;
}

void expect_permutation(const ordered& o) {
  for (int k = 0; k < o.adjacency.n; ++k) {
    ASSERT_TRUE(o.order.perm[k] >= 0 && o.order.perm[k] < o.adjacency.n);
    ASSERT_EQ(o.order.inverse[o.order.perm[k]], k);
  }
}

/// Ascending, disjoint, and no edge between two of them.
void expect_independent_ranges(const ordered& o) {
  std::vector<int> range_of(static_cast<size_t>(o.adjacency.n), -1);
  int last = -1;
  for (int r = 0; r < o.order.ranges.size(); ++r) {
    const column_range range = o.order.ranges[r];
    ASSERT_GT(range.first, last);
    ASSERT_LE(range.first, range.last);
    last = range.last;
    ASSERT_LT(last, o.adjacency.n);
    for (int k = range.first; k <= last; ++k) range_of[static_cast<size_t>(k)] = r;
  }
  // The last column may stand alone, off the range before it: an edge there is no fault.
  const int split_off = o.order.ranges.size() > 1 && last == o.adjacency.n - 1 ? last : -1;
  for (int old = 0; old < o.adjacency.n; ++old) {
    const int k = o.order.inverse[old], mine = range_of[static_cast<size_t>(k)];
    for (int64_t p = o.adjacency.xadj[old]; p < o.adjacency.xadj[old + 1]; ++p) {
      const int l = o.order.inverse[o.adjacency.adjncy[p]], other = range_of[static_cast<size_t>(l)];
      const bool apart = mine < 0 || other < 0 || mine == other;
      ASSERT_TRUE(apart || k == split_off || l == split_off);
    }
  }
}

void expect_neighbouring_pairs(const ordered& o) {
  for (int64_t p = 0; p < o.order.pairs.size(); p += 2)
    EXPECT_EQ(o.order.inverse[o.order.pairs[p + 1]], o.order.inverse[o.order.pairs[p]] + 1);
}

sparse_problem from_edges(const char* name, int n, int type, const std::vector<std::pair<int, int>>& edges) {
  sparse_problem result{name, n, type, {}};
  for (int i = 0; i < n; ++i) result.entries.push_back({i, i, 4});
  for (const auto& [i, j] : edges) {
    result.entries.push_back({i, j, -1});
    if (type % 2 == 0) result.entries.push_back({j, i, -1});
  }
  return result;
}

std::vector<sparse_problem> graphs() {
  std::vector<std::pair<int, int>> complete, star, path, islands;
  for (int i = 0; i < 40; ++i)
    for (int j = 0; j < i; ++j) complete.push_back({i, j});
  for (int i = 1; i < 3000; ++i) star.push_back({0, i});
  for (int i = 1; i < 500; ++i) path.push_back({i - 1, i});
  for (int i = 0; i < 600; i += 3) islands.push_back({i, i + 1});
  return {from_edges("one", 1, 2, {}),
          from_edges("two", 2, 11, {{0, 1}}),
          from_edges("empty", 300, 11, {}),
          from_edges("complete", 40, 2, complete),
          from_edges("star", 3000, -2, star),
          from_edges("path", 500, 1, path),
          from_edges("islands", 601, 11, islands),
          grid(30, 20, 1),
          grid(8, 9, 10, true),
          elasticity(5, 6, 4),
          convection(11, 12, 13),
          circuit(2000, 1),
          saddle_point(20, 90),
          as_type(grid(15, 15, 1), -4),
          as_type(saddle_point(20, 90), 6)};
}

TEST(Ordering, EveryMethodNumbersEveryGraph) {
  for (const sparse_problem& problem : graphs()) {
    const auto m = csr_of<complex16>(problem);
    for (int method = 0; method <= 3; ++method)
      for (int matching = 0; matching <= 1; ++matching) {
        SCOPED_TRACE(problem.name + " method " + std::to_string(method) + " matching " +
                     std::to_string(matching));
        ordered o;
        ordering_options options;
        options.method = method;
        options.matching = options.scaling = matching;
        options.threads = 2;
        run_ordering(m, options, o);
        ASSERT_TRUE(o.status.ok());
        expect_permutation(o);
        expect_independent_ranges(o);
        expect_neighbouring_pairs(o);
        EXPECT_EQ(o.order.matched_row.size(), matching == 1 && m.type == 11 ? m.n : 0);
      }
  }
}

// Little more than what minimum degree and dissection orderings of other libraries leave here; without
// supervariables, absorption, or classes in their order, each is missed.
TEST(Ordering, FillStaysNearWhatIsKnownToBePossible) {
  const struct {
    sparse_problem problem;
    int64_t minimum_degree, dissection;
  } cases[] = {{grid(100, 100, 1), 206000, 199600},      {grid(20, 20, 20), 842000, 605500},
               {elasticity(10, 10, 10), 669000, 593000}, {grid(15, 15, 15, true), 556000, 370000},
               {saddle_point(60, 600), 669000, 474000},  {circuit(20000, 1), 226000, 245000}};
  for (const auto& one : cases) {
    const auto m = csr_of<double>(one.problem);
    const int64_t bounds[] = {one.minimum_degree, 0, one.dissection, one.dissection};
    for (const int method : {0, 2, 3}) {
      ordered o;
      ordering_options options;
      options.method = method;
      run_ordering(m, options, o);
      EXPECT_LT(static_cast<double>(fill_of(o)), 1.05 * static_cast<double>(bounds[method]))
          << one.problem.name << " method " << method;
    }
  }
}

TEST(Ordering, ChoosesByFill) {
  // Minimum degree is better on the first, which is left to it only without the corner that has many
  // neighbours; dissection on the second.
  sparse_problem plane = grid(30, 30, 1);
  for (int k = 1; k <= 8; ++k) {
    plane.entries.push_back({0, 30 * k + k, -0.1});
    plane.entries.push_back({30 * k + k, 0, -0.1});
  }
  for (const auto& [problem, method] : {std::pair{plane, 0}, {grid(20, 20, 20), 2}}) {
    const auto m = csr_of<double>(problem);
    int64_t fill[3];
    for (const int one : {0, 2}) {
      ordered o;
      ordering_options options;
      options.method = one;
      run_ordering(m, options, o);
      fill[one] = fill_of(o);
      EXPECT_EQ(pardiso::count_fill(o.adjacency, o.order.perm.get(), o.order.inverse.get(), o.account),
                fill[one]);
    }
    ordered chosen;
    ordering_options options;
    options.choose_by_fill = true;
    run_ordering(m, options, chosen);
    EXPECT_EQ(chosen.order.method, fill[0] < fill[2] ? 0 : 2) << fill[0] << " " << fill[2];
    EXPECT_EQ(chosen.order.method, method);
    EXPECT_EQ(fill_of(chosen), std::min(fill[0], fill[2]));
    expect_permutation(chosen);
  }
}

TEST(Ordering, CountsRangesAsAsked) {
  const auto m = csr_of<double>(convection(30, 30, 1));
  const struct {
    int method, exponent;
    size_t ranges;
  } cases[] = {{0, 0, 1}, {1, 0, 4}, {1, 3, 8}, {2, 0, 2}, {2, 3, 2}, {3, 0, 4}, {3, 3, 8}};
  for (const auto& one : cases) {
    ordered o;
    ordering_options options;
    options.method = one.method;
    options.subgraph_exponent = one.exponent;
    run_ordering(m, options, o);
    EXPECT_EQ(static_cast<size_t>(o.order.ranges.size()), one.ranges) << one.method << " " << one.exponent;
    if (one.method == 2) {
      EXPECT_EQ(o.order.ranges[0].last, m.n - 2);
      EXPECT_EQ(o.order.ranges[1].first, m.n - 1);
    }
  }
}

TEST(Ordering, SubgraphsAndDissectionOptions) {
  const struct {
    int n, type, threads, exponent, subgraphs;
  } cases[] = {{1000, 2, 8, 0, 4},  {1000, 11, 1, 0, 4}, {1000, 11, 2, 0, 2},
               {1000, 11, 5, 0, 8}, {1000, 13, 8, 0, 4}, {1000, 2, 1, 4, 16},
               {1000, 2, 1, 1, 4},  {3, 2, 1, 0, 3},     {1000, 2, 1, 62, 1000}};
  for (const auto& c : cases)
    EXPECT_EQ(pardiso::choose_subgraphs(c.n, c.type, c.threads, c.exponent), c.subgraphs);
  const auto circuit = pardiso::choose_leaf(10000, 40000, 501), plane = pardiso::choose_leaf(10000, 40000, 6),
             general = pardiso::choose_leaf(10000, 40000, 7);
  EXPECT_GT(circuit, plane);
  EXPECT_GT(plane, general);
  EXPECT_EQ(pardiso::choose_leaf(10000, 40000, 500), general);
  for (const int most : {6, 7, 501}) EXPECT_EQ(pardiso::choose_leaf(10000, 50000, most), general);
  EXPECT_EQ(pardiso::choose_dissection_options(8000, 999), pardiso::dissection_options{});
  const pardiso::dissection_options dense{1, 3, 1, 2, 0, 1, 200, 1};
  EXPECT_EQ(pardiso::choose_dissection_options(8000, 1000), dense);
}

TEST(Ordering, OneDenseRowIsOrderedLast) {
  sparse_problem problem = grid(150, 150, 1);
  for (int i = 0; i < problem.n; i += 7) {
    problem.entries.push_back({11, i, 0.01});
    problem.entries.push_back({i, 11, 0.01});
  }
  ordered o;
  run_ordering(csr_of<double>(problem), {}, o);
  EXPECT_TRUE(o.order.dense_rows);
  EXPECT_EQ(o.order.inverse[11], problem.n - 1);
}

TEST(Ordering, CallersPermutation) {
  const auto m = csr_of<double>(grid(5, 4, 1));
  std::vector<int> perm(20);
  for (int k = 0; k < 20; ++k) perm[static_cast<size_t>(k)] = (7 * k) % 20 + 1;
  ordering_options options;
  options.permutation_mode = 1;
  ordered taken;
  run_ordering(m, options, taken, perm.data());
  ASSERT_TRUE(taken.status.ok());
  for (int k = 0; k < 20; ++k) EXPECT_EQ(taken.order.perm[k], (7 * k) % 20);
  expect_permutation(taken);

  options.permutation_mode = 2;
  ordered given;
  run_ordering(m, options, given, perm.data());
  for (int k = 0; k < 20; ++k) EXPECT_EQ(perm[static_cast<size_t>(k)], given.order.perm[k] + 1);

  options.permutation_mode = 1;
  for (const int wrong : {0, 21, perm[3], INT_MIN}) {
    std::vector<int> broken = perm;
    broken[5] = wrong;
    ordered refused;
    run_ordering(m, options, refused, broken.data());
    EXPECT_EQ(refused.status.error, -3);
  }
}

void application_handler(int) {}

TEST(Ordering, LeavesTheProcessAsItWas) {
  ASSERT_EQ(signal(SIGTERM, application_handler), SIG_DFL);
  srand(42);
  const int first = rand(), second = rand();
  srand(42);
  EXPECT_EQ(rand(), first);
  const auto m = csr_of<double>(grid(60, 60, 1));
  ordered alone;
  run_ordering(m, {}, alone);
  EXPECT_EQ(rand(), second);
  EXPECT_EQ(signal(SIGTERM, SIG_DFL), application_handler);
  EXPECT_EQ(signal(SIGABRT, SIG_DFL), SIG_DFL);

  ordered together[4];
  std::vector<std::thread> threads;
  for (ordered& one : together) threads.emplace_back([&] { run_ordering(m, {}, one); });
  for (std::thread& thread : threads) thread.join();
  for (const ordered& one : together)
    EXPECT_TRUE(std::equal(one.order.perm.begin(), one.order.perm.end(), alone.order.perm.begin()));
}

}  // namespace
}  // namespace qel::test
