// SPDX-License-Identifier: BSD-3-Clause
// The supernodal structure against an elimination of the graph, node by node.
#include <gtest/gtest.h>

#include "sparse/pardiso/symbolic/supernodes.h"
#include "tests/sparse/pardiso_graphs.h"

namespace qel::test {
namespace {

using pardiso::build_structure;
using pardiso::column_range;
using pardiso::memory_account;
using pardiso::ordering;
using pardiso::stage_status;
using pardiso::structure;
using pardiso::structure_options;

/// Rows below the diagonal of every column, in the order given.
std::vector<std::set<int>> eliminate(int n, const edge_list& edges, const ordering& order) {
  std::vector<std::set<int>> below(static_cast<std::size_t>(n));
  for (const auto& [i, j] : edges) {
    const auto [low, high] = std::minmax(order.inverse[i], order.inverse[j]);
    if (low != high) below[static_cast<std::size_t>(low)].insert(high);
  }
  for (auto& column : below) {
    if (column.empty()) continue;
    auto& parent = below[static_cast<std::size_t>(*column.begin())];
    parent.insert(std::next(column.begin()), column.end());
  }
  return below;
}

struct analysed {
  memory_account account;
  ordering order;
  structure form;
  stage_status status;
};
void analyse(analysed& result, int n, const edge_list& edges, ordering order,
             const structure_options& options) {
  result.order = std::move(order);
  const pardiso::graph g = make_graph(n, edges, result.account);
  result.status = build_structure(g, options, result.order, result.account, result.form);
}

void expect_topological(const structure& s) {
  std::vector<int> place(static_cast<std::size_t>(s.supernodes), -1);
  for (int i = 0; i < s.supernodes; ++i) place[static_cast<std::size_t>(s.pnlsch[i])] = i;
  for (int i = 0; i < s.supernodes; ++i) {
    ASSERT_GE(place[static_cast<std::size_t>(i)], 0);
    if (s.parent[i] < 0) continue;
    EXPECT_LT(place[static_cast<std::size_t>(i)], place[static_cast<std::size_t>(s.parent[i])]);
  }
}

/// exact: no entries beyond the fill itself; else they must at least be there.
void expect_structure(const analysed& found, int n, const edge_list& edges, bool exact) {
  ASSERT_TRUE(found.status.ok()) << found.status.error;
  const structure& s = found.form;
  for (int k = 0; k < n; ++k) ASSERT_EQ(found.order.inverse[found.order.perm[k]], k);
  const auto below = eliminate(n, edges, found.order);
  int64_t nonzeros = 0;
  ASSERT_EQ(s.xsup[s.supernodes], n);
  for (int i = 0; i < s.supernodes; ++i) {
    const int first = s.xsup[i], width = s.xsup[i + 1] - first;
    ASSERT_GE(width, 1);
    ASSERT_LE(width, s.panel_width);
    const std::vector<int> rows(s.lindx.get() + s.xlindx[i], s.lindx.get() + s.xlindx[i + 1]);
    ASSERT_TRUE(std::is_sorted(rows.begin(), rows.end()));
    ASSERT_EQ(s.xlnz[i + 1] - s.xlnz[i], static_cast<int64_t>(rows.size()) * width);
    for (int j = 0; j < width; ++j) {
      EXPECT_EQ(rows[static_cast<std::size_t>(j)], first + j);
      EXPECT_EQ(s.snode[first + j], i);
      const auto& column = below[static_cast<std::size_t>(first + j)];
      EXPECT_TRUE(std::includes(rows.begin() + j, rows.end(), column.begin(), column.end()));
      if (exact) {
        EXPECT_EQ(column.size() + 1, rows.size() - static_cast<std::size_t>(j));
      }
      nonzeros += static_cast<int64_t>(rows.size()) - j;
    }
  }
  EXPECT_EQ(s.nonzeros_l, nonzeros);
  expect_topological(s);
}

TEST(Structure, IsThatOfAnElimination) {
  std::mt19937 random(7);
  for (int round = 0; round < 60; ++round) {
    const int n = 1 + static_cast<int>(random() % 70);
    const edge_list edges =
        random_edges(n, static_cast<int>(random() % static_cast<unsigned>(3 * n)), random);
    for (const bool native : {false, true}) {
      for (const int width : {1, 3, 80}) {
        for (const int threads : {1, 3}) {
          SCOPED_TRACE(testing::Message() << "n " << n << " native " << native << " width " << width);
          analysed found;
          const structure_options options{width, threads == 3, false, threads, native};
          analyse(found, n, edges, make_order(shuffled(n, random), found.account), options);
          expect_structure(found, n, edges, !native);
          EXPECT_EQ(found.form.nonzeros_u, threads == 3 ? found.form.nonzeros_l - n : 0);
        }
      }
    }
  }
}

TEST(Structure, SupernodesOfKnownMatrices) {
  edge_list blocks, path;
  for (int b = 0; b < 5; ++b)
    for (int i = 0; i < 4; ++i)
      for (int j = 0; j < i; ++j) blocks.emplace_back(4 * b + i, 4 * b + j);
  for (int i = 0; i + 1 < 10; ++i) path.emplace_back(i, i + 1);
  const struct {
    const char* what;
    int n;
    edge_list edges;
    int width, supernodes, largest, height, roots;
  } rows[] = {
      {"dense, cut", 1000, dense_edges(1000), 80, 13, 1000, 13, 1},
      {"one column", 1, {}, 80, 1, 1, 1, 1},
      {"separate blocks", 20, blocks, 80, 5, 4, 1, 5},
      {"path: the last two columns share a structure", 10, path, 80, 9, 2, 9, 1},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    analysed found;
    analyse(found, row.n, row.edges, make_order(natural(row.n), found.account), {row.width});
    ASSERT_TRUE(found.status.ok());
    EXPECT_EQ(found.form.supernodes, row.supernodes);
    EXPECT_EQ(found.form.largest_run, row.largest);
    EXPECT_EQ(found.form.tree_height, row.height);
    EXPECT_EQ(std::count(found.form.parent.begin(), found.form.parent.end(), -1), row.roots);
  }
}

TEST(Structure, TotalsBeyond32BitsAreReportedBeforeAnythingIsBuilt) {
  // A star whose centre goes first fills everything.
  const int n = 70000;
  edge_list star;
  for (int i = 1; i < n; ++i) star.emplace_back(0, i);
  analysed found;
  analyse(found, n, star, make_order(natural(n), found.account), {});
  EXPECT_EQ(found.status.error, -8);
  EXPECT_EQ(found.status.sub_code, pardiso::analysis_overflow);
}

TEST(Structure, PairsShareASupernode) {
  std::mt19937 random(3);
  for (int round = 0; round < 40; ++round) {
    const int n = 40;
    edge_list edges = random_edges(n, 50, random);
    const std::vector<int> perm = shuffled(n, random);
    std::vector<int> pairs;
    for (std::size_t k = 0; k + 1 < perm.size(); k += 1 + random() % 4) {
      if (!pairs.empty() && pairs.back() == perm[k]) continue;
      pairs.insert(pairs.end(), {perm[k], perm[k + 1]});
    }
    for (const bool native : {false, true}) {
      for (const int width : {2, 5, 80}) {
        analysed found;
        ordering order = make_order(perm, found.account);
        fill_block(order.pairs, pairs, found.account);
        fill_block<column_range>(order.ranges, {{0, n - 2}, {n - 1, n - 1}}, found.account);
        analyse(found, n, edges, std::move(order), {width, false, false, 1, native});
        expect_structure(found, n, edges, false);
        for (std::size_t k = 0; k + 1 < pairs.size(); k += 2) {
          const int a = found.order.inverse[pairs[k]], b = found.order.inverse[pairs[k + 1]];
          EXPECT_EQ(std::abs(a - b), 1);
          EXPECT_EQ(found.form.snode[a], found.form.snode[b]) << width;
        }
      }
    }
  }
}

TEST(Structure, RangesKeepTheirColumnsAndShareNoSupernode) {
  // Two leaves with a separator behind each, out of order inside, and the last column by itself.
  const int nx = 7, ny = 5, n = nx * ny;
  std::vector<int> perm;
  for (const auto& [from, to] : {std::pair{0, 3}, {4, 7}, {3, 4}})
    for (int x = to - 1; x >= from; --x)
      for (int y = 0; y < ny; ++y) perm.push_back(x + nx * y);
  const std::vector<column_range> ranges = {{0, 14}, {15, 29}, {n - 1, n - 1}};
  for (const bool native : {false, true}) {
    analysed found;
    ordering order = make_order(perm, found.account);
    fill_block(order.ranges, ranges, found.account);
    analyse(found, n, grid_edges(nx, ny), std::move(order), {80, true, false, 2, native});
    expect_structure(found, n, grid_edges(nx, ny), !native);
    for (const column_range& range : ranges) {
      std::set<int> before, after;
      for (int k = range.first; k <= range.last; ++k) {
        before.insert(perm[static_cast<std::size_t>(k)]);
        after.insert(found.order.perm[k]);
      }
      EXPECT_EQ(before, after);
    }
    const structure& s = found.form;
    ASSERT_EQ(s.supernode_ranges.size(), 4);
    for (int i = 0; i + 1 < 4; ++i) EXPECT_LT(s.supernode_ranges[i].last, s.supernode_ranges[i + 1].first);
    EXPECT_EQ(s.supernode_ranges[3].last, s.supernodes - 1);
  }
}

TEST(Structure, MergedSupernodesAreFewerAndStoreFewZeros) {
  const int nx = 60, ny = 50, n = nx * ny;
  analysed told, merged;
  analyse(told, n, grid_edges(nx, ny), make_order(dissected_grid(nx, ny), told.account), {80});
  analyse(merged, n, grid_edges(nx, ny), make_order(dissected_grid(nx, ny), merged.account),
          {80, false, false, 1, true});
  expect_structure(told, n, grid_edges(nx, ny), true);
  expect_structure(merged, n, grid_edges(nx, ny), false);
  EXPECT_LT(merged.form.supernodes, told.form.supernodes * 2 / 3);
  EXPECT_LT(static_cast<double>(merged.form.nonzeros_l), 1.6 * static_cast<double>(told.form.nonzeros_l));
}

TEST(Structure, WorkOfADenseMatrix) {
  const struct {
    bool unsymmetric, is_complex;
    double work;
  } rows[] = {{false, false, 1}, {true, false, 2}, {false, true, 4}, {true, true, 8}};
  const int n = 300;
  for (const auto& row : rows) {
    analysed found;
    analyse(found, n, dense_edges(n), make_order(natural(n), found.account),
            {64, row.unsymmetric, row.is_complex});
    EXPECT_NEAR(found.form.work, row.work * n / 3.0 * n * n, 0.02 * found.form.work);
  }
}

}  // namespace
}  // namespace qel::test
