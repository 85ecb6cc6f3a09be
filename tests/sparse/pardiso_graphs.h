// SPDX-License-Identifier: BSD-3-Clause
// Graphs for tests of the direct solver's stages, and an order handed in as it is.
#pragma once

#include <numeric>
#include <random>
#include <set>
#include <utility>
#include <vector>

#include "sparse/pardiso/symbolic/structure.h"

namespace qel::test {

using edge_list = std::vector<std::pair<int, int>>;

inline pardiso::graph make_graph(int n, const edge_list& edges, pardiso::memory_account& account) {
  std::vector<std::set<int>> lists(static_cast<std::size_t>(n));
  for (const auto& [i, j] : edges) {
    if (i == j) continue;
    lists[static_cast<std::size_t>(i)].insert(j);
    lists[static_cast<std::size_t>(j)].insert(i);
  }
  pardiso::graph g;
  g.n = n;
  int64_t total = 0;
  for (const auto& list : lists) total += static_cast<int64_t>(list.size());
  g.xadj.allocate(account, n + 1, -1);
  g.adjncy.allocate(account, total, -1);
  total = 0;
  for (int i = 0; i < n; ++i) {
    g.xadj[i] = total;
    for (const int j : lists[static_cast<std::size_t>(i)]) g.adjncy[total++] = j;
  }
  g.xadj[n] = total;
  return g;
}

template <class T>
void fill_block(pardiso::block<T>& to, const std::vector<T>& from, pardiso::memory_account& account) {
  to.allocate(account, static_cast<int64_t>(from.size()), -1);
  std::copy(from.begin(), from.end(), to.begin());
}

inline pardiso::ordering make_order(const std::vector<int>& perm, pardiso::memory_account& account) {
  pardiso::ordering order;
  const int n = static_cast<int>(perm.size());
  fill_block(order.perm, perm, account);
  order.inverse.allocate(account, n, -1);
  for (int k = 0; k < n; ++k) order.inverse[perm[static_cast<std::size_t>(k)]] = k;
  fill_block<pardiso::column_range>(order.ranges, {{0, n - 1}}, account);
  return order;
}

inline std::vector<int> natural(int n) {
  std::vector<int> perm(static_cast<std::size_t>(n));
  std::iota(perm.begin(), perm.end(), 0);
  return perm;
}
inline std::vector<int> shuffled(int n, std::mt19937& random) {
  std::vector<int> perm = natural(n);
  for (int i = n - 1; i > 0; --i) {
    std::swap(perm[static_cast<std::size_t>(i)], perm[random() % static_cast<unsigned>(i + 1)]);
  }
  return perm;
}

inline edge_list random_edges(int n, int count, std::mt19937& random) {
  edge_list edges;
  const auto node = [&] { return static_cast<int>(random() % static_cast<unsigned>(n)); };
  for (int i = 0; i < count; ++i) edges.emplace_back(node(), node());
  return edges;
}
inline edge_list dense_edges(int n) {
  edge_list edges;
  for (int i = 0; i < n; ++i)
    for (int j = 0; j < i; ++j) edges.emplace_back(i, j);
  return edges;
}
inline edge_list grid_edges(int nx, int ny, int nz = 1) {
  edge_list edges;
  const auto at = [&](int x, int y, int z) { return x + nx * (y + ny * z); };
  for (int z = 0; z < nz; ++z)
    for (int y = 0; y < ny; ++y)
      for (int x = 0; x < nx; ++x) {
        if (x + 1 < nx) edges.emplace_back(at(x, y, z), at(x + 1, y, z));
        if (y + 1 < ny) edges.emplace_back(at(x, y, z), at(x, y + 1, z));
        if (z + 1 < nz) edges.emplace_back(at(x, y, z), at(x, y, z + 1));
      }
  return edges;
}

/// A geometric dissection of a grid: halves first, then the plane between them.
inline void dissect_grid(int nx, int ny, int nz, int x0, int x1, int y0, int y1, int z0, int z1,
                         std::vector<int>& perm) {
  const int wx = x1 - x0, wy = y1 - y0, wz = z1 - z0;
  if (wx <= 0 || wy <= 0 || wz <= 0) return;
  if (wx * wy * wz <= 8) {
    for (int z = z0; z < z1; ++z)
      for (int y = y0; y < y1; ++y)
        for (int x = x0; x < x1; ++x) perm.push_back(x + nx * (y + ny * z));
    return;
  }
  const auto part = [&](int a0, int a1, int b0, int b1, int c0, int c1) {
    dissect_grid(nx, ny, nz, a0, a1, b0, b1, c0, c1, perm);
  };
  const auto plane = [&](int a0, int a1, int b0, int b1, int c0, int c1) {
    for (int z = c0; z < c1; ++z)
      for (int y = b0; y < b1; ++y)
        for (int x = a0; x < a1; ++x) perm.push_back(x + nx * (y + ny * z));
  };
  if (wx >= wy && wx >= wz) {
    const int m = x0 + wx / 2;
    part(x0, m, y0, y1, z0, z1), part(m + 1, x1, y0, y1, z0, z1), plane(m, m + 1, y0, y1, z0, z1);
  } else if (wy >= wz) {
    const int m = y0 + wy / 2;
    part(x0, x1, y0, m, z0, z1), part(x0, x1, m + 1, y1, z0, z1), plane(x0, x1, m, m + 1, z0, z1);
  } else {
    const int m = z0 + wz / 2;
    part(x0, x1, y0, y1, z0, m), part(x0, x1, y0, y1, m + 1, z1), plane(x0, x1, y0, y1, m, m + 1);
  }
}
inline std::vector<int> dissected_grid(int nx, int ny, int nz = 1) {
  std::vector<int> perm;
  dissect_grid(nx, ny, nz, 0, nx, 0, ny, 0, nz, perm);
  return perm;
}

}  // namespace qel::test
