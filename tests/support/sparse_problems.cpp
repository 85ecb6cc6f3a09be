// SPDX-License-Identifier: BSD-3-Clause
#include "tests/support/sparse_problems.h"

#include <cmath>
#include <random>

namespace qel::test {
namespace {

double between(std::mt19937& random, double low, double high) {
  return low + (high - low) * (static_cast<double>(random()) / 4294967296.0);
}
int below(std::mt19937& random, int n) { return static_cast<int>(random() % static_cast<unsigned>(n)); }

/// Calls tie(i, j, axes) for the neighbours j > i of all points i; axes: how many coordinates differ.
template <class Tie>
void for_each_neighbour(int nx, int ny, int nz, bool box, const Tie& tie) {
  for (int z = 0; z < nz; ++z)
    for (int y = 0; y < ny; ++y)
      for (int x = 0; x < nx; ++x)
        for (int dz = 0; dz <= 1; ++dz)
          for (int dy = -1; dy <= 1; ++dy)
            for (int dx = -1; dx <= 1; ++dx) {
              const int i = x + nx * (y + ny * z), j = i + dx + nx * (dy + ny * dz);
              const int axes = std::abs(dx) + std::abs(dy) + dz;
              if (j <= i || axes == 0 || (!box && axes > 1)) continue;
              if (x + dx < 0 || x + dx >= nx || y + dy < 0 || y + dy >= ny || z + dz >= nz) continue;
              tie(i, j, axes);
            }
}

void add_both(std::vector<sparse_entry>& entries, int i, int j, std::complex<double> value) {
  entries.push_back({i, j, value});
  entries.push_back({j, i, value});
}

std::string sizes(std::string name, int nx, int ny, int nz) {
  name.append(std::to_string(nx)).append("x").append(std::to_string(ny));
  if (nz > 1) name.append("x").append(std::to_string(nz));
  return name;
}

}  // namespace

sparse_problem grid(int nx, int ny, int nz, bool box) {
  sparse_problem result{sizes(box ? "box" : "grid", nx, ny, nz), nx * ny * nz, 2, {}};
  const double centre = box ? 27 : nz > 1 ? 6.01 : 4.01;
  for (int i = 0; i < result.n; ++i) result.entries.push_back({i, i, centre});
  for_each_neighbour(nx, ny, nz, box, [&](int i, int j, int) { add_both(result.entries, i, j, -1); });
  return result;
}

sparse_problem elasticity(int nx, int ny, int nz) {
  std::mt19937 random(3);
  sparse_problem result{sizes("elasticity", nx, ny, nz), 3 * nx * ny * nz, 2, {}};
  for (int i = 0; i < nx * ny * nz; ++i)
    for (int c = 0; c < 3; ++c)
      for (int d = 0; d < 3; ++d) result.entries.push_back({3 * i + c, 3 * i + d, c == d ? 60.0 : 1.0});
  for_each_neighbour(nx, ny, nz, true, [&](int i, int j, int) {
    for (int c = 0; c < 3; ++c)
      for (int d = 0; d < 3; ++d)
        add_both(result.entries, 3 * i + c, 3 * j + d, c == d ? -1 : between(random, -0.4, 0.4));
  });
  return result;
}

sparse_problem convection(int nx, int ny, int nz) {
  sparse_problem result{sizes("convection", nx, ny, nz), nx * ny * nz, 11, {}};
  const double wind = 0.7;
  for (int i = 0; i < result.n; ++i) result.entries.push_back({i, i, (nz > 1 ? 6.0 : 4.0) + 3 * wind});
  for_each_neighbour(nx, ny, nz, false, [&](int i, int j, int) {
    result.entries.push_back({i, j, -1.0});
    result.entries.push_back({j, i, -1.0 - wind});
  });
  return result;
}

sparse_problem saddle_point(int side, int constraints) {
  std::mt19937 random(5);
  sparse_problem result = grid(side, side, 1);
  const int points = result.n;
  result.name = "saddle" + std::to_string(side) + "+" + std::to_string(constraints);
  result.type = -2;
  result.n += constraints;
  for (int c = 0; c < constraints; ++c) {
    // The first unknown of each constraint is its own, so that the constraints are independent.
    add_both(result.entries, points + c, c * (points / constraints), 1.0);
    for (int k = 0; k < 3; ++k)
      add_both(result.entries, points + c, below(random, points), between(random, -0.3, 0.3));
  }
  return result;
}

sparse_problem circuit(int n, unsigned seed) {
  std::mt19937 random(seed);
  sparse_problem result{"circuit" + std::to_string(n), n, 11, {}};
  const int sources = n / 20;
  for (int i = 0; i < n - sources; ++i) {
    result.entries.push_back({i, i, between(random, 1, 3)});
    const int near = i + 1 + below(random, 8), far = below(random, n - sources);
    const int supply = below(random, 4);  // few nets that many elements hang on
    for (const int j : {near < n - sources ? near : far, random() % 4 == 0 ? supply : near / 2}) {
      if (j == i) continue;
      const double g = std::pow(10, between(random, -3, 1));
      result.entries.push_back({i, i, g});
      result.entries.push_back({j, j, g});
      result.entries.push_back({i, j, -g});
      result.entries.push_back({j, i, random() % 3 == 0 ? -g * 0.1 : -g});
    }
  }
  // Voltage sources: a branch current each, nothing on the diagonal.
  for (int s = 0; s < sources; ++s) {
    const int branch = n - sources + s, node = 4 + s * ((n - sources - 4) / std::max(sources, 1));
    result.entries.push_back({branch, node, 1});
    result.entries.push_back({node, branch, 1});
  }
  return result;
}

sparse_problem as_type(const sparse_problem& from, int type) {
  std::mt19937 random(7);
  sparse_problem result = from;
  result.type = type;
  result.name += " type " + std::to_string(type);
  const bool complex_values = type == 3 || type == 13 || type == 4 || type == -4 || type == 6;
  const bool hermitian = type == 4 || type == -4, symmetric = type % 2 == 0;
  for (size_t k = 0; k < from.entries.size(); ++k) {
    sparse_entry& e = result.entries[k];
    if (e.row == e.col) {
      if (type == -2 || type == -4) e.value -= e.row % 3 == 0 ? 7.0 : 0.0;
      if (type == 6 || type == 13 || type == 3) e.value += std::complex<double>(0, 0.5);
      continue;
    }
    // From the places alone, so that both triangles agree.
    const int low = std::min(e.row, e.col), high = std::max(e.row, e.col);
    const double turn = 0.3 * std::sin(low + 2.0 * high);
    if (complex_values) e.value += std::complex<double>(0, hermitian && e.row > e.col ? -turn : turn);
    if (!symmetric) e.value *= between(random, 0.8, 1.0);
  }
  return result;
}

sparse_problem arrow(int n, int type) {
  sparse_problem result{"arrow" + std::to_string(n), n, 2, {}};
  for (int i = 0; i < n; ++i) result.entries.push_back({i, i, i == 0 ? 4.0 * n : 4.0});
  for (int i = 1; i < n; ++i) add_both(result.entries, 0, i, -1);
  return type == 2 ? result : as_type(result, type);
}

sparse_problem badly_scaled(const sparse_problem& problem, int range) {
  std::mt19937 random(11);
  sparse_problem result = problem;
  result.name += " scaled";
  std::vector<double> row(static_cast<size_t>(problem.n)), column;
  for (double& factor : row) factor = std::pow(10, std::round(between(random, -range, range)));
  column = row;
  if (problem.type % 2 != 0)
    for (double& factor : column) factor = std::pow(10, std::round(between(random, -range, range)));
  for (sparse_entry& e : result.entries)
    e.value *= row[static_cast<size_t>(e.row)] * column[static_cast<size_t>(e.col)];
  return result;
}

}  // namespace qel::test
