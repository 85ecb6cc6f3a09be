// SPDX-License-Identifier: BSD-3-Clause
// Sparse systems of all matrix types for tests of the direct solver's numeric phases, analysed in a given
// order.
#pragma once

#include <complex>
#include <map>

#include "sparse/pardiso/numeric/factor.h"
#include "tests/sparse/pardiso_graphs.h"
#include "tests/sparse/support.h"

namespace qel::test {

/// A matrix and its whole form; row r of `whole` is that of A.
template <class T>
struct sparse_system {
  int n = 0;
  pardiso::matrix_type type{};
  std::vector<int> ia, ja;
  std::vector<T> a;
  std::vector<std::map<int, T>> whole;

  pardiso::csr_view<T> view() const { return {n, ia.data(), ja.data(), a.data(), type}; }
  edge_list edges() const {
    edge_list list;
    for (int i = 0; i < n; ++i)
      for (const auto& [j, value] : whole[static_cast<std::size_t>(i)]) list.emplace_back(i, j);
    return list;
  }
  /// From `whole` to the stored form.
  void store() {
    ia.assign(1, 1);
    ja.clear();
    a.clear();
    for (int i = 0; i < n; ++i) {
      for (const auto& [j, value] : whole[static_cast<std::size_t>(i)]) {
        if (type.symmetric() && j < i) continue;
        ja.push_back(j + 1);
        a.push_back(value);
      }
      ia.push_back(static_cast<int>(ja.size()) + 1);
    }
  }
};

template <class T>
T random_value(std::mt19937& random) {
  std::uniform_real_distribution<double> unit(-1, 1);
  return make<T>(unit(random), is_complex<T> ? unit(random) : 0);
}

/// Values on a pattern. diagonal: its size over the sum of the other moduli of its row; its sign is random
/// but for definite types.
template <class T>
sparse_system<T> make_system(int type, int n, const edge_list& edges, double diagonal, std::mt19937& random) {
  sparse_system<T> s;
  s.n = n;
  s.type = {type};
  s.whole.resize(static_cast<std::size_t>(n));
  std::vector<double> sum(static_cast<std::size_t>(n), 0);
  const auto set = [&](int i, int j, T value) {
    s.whole[static_cast<std::size_t>(i)][j] = value;
    sum[static_cast<std::size_t>(i)] += std::abs(std::complex<double>(widen(value)));
  };
  for (const auto& [i, j] : edges) {
    if (i == j || s.whole[static_cast<std::size_t>(i)].count(j) != 0) continue;
    const T value = random_value<T>(random);
    set(i, j, value);
    if (s.type.symmetric()) {
      set(j, i, s.type.hermitian() ? conj(value) : value);
    } else if (type == 1 || type == 3 || random() % 3 != 0) {
      set(j, i, random_value<T>(random));
    }
  }
  for (int i = 0; i < n; ++i) {
    const double size = diagonal * (sum[static_cast<std::size_t>(i)] + 0.5);
    const bool minus = !s.type.definite() && random() % 2 == 0;
    T value = from_real<T>(static_cast<real_of<T>>(minus ? -size : size));
    if (is_complex<T> && !s.type.hermitian()) value = value * make<T>(0.6, 0.8);
    s.whole[static_cast<std::size_t>(i)][i] = value;
  }
  s.store();
  return s;
}

struct solver_setup {
  std::vector<int> perm;
  int panel_width = 80;
  int threads = 1;
  bool merged = false;
  bool bunch_kaufman = true;
  double threshold = 0;
};

/// Analysis and factors of a system.
template <class T>
struct factored {
  pardiso::memory_account account;
  pardiso::analysis analysed;
  pardiso::factors<T> f;
  pardiso::stage_status status;
  pardiso::factor_options options;

  void analyse(const sparse_system<T>& s, const solver_setup& setup) {
    analyse(s.n, s.edges(), s.type, setup, make_order(setup.perm, account));
  }
  void analyse(int n, const edge_list& edges, pardiso::matrix_type type, const solver_setup& setup,
               pardiso::ordering order) {
    analysed.order = std::move(order);
    const pardiso::graph g = make_graph(n, edges, account);
    status = pardiso::build_structure(
        g, {setup.panel_width, type.unsymmetric(), type.is_complex(), setup.threads, setup.merged},
        analysed.order, account, analysed.form);
    options.threshold = setup.threshold;
    options.threads = setup.threads;
    options.bunch_kaufman = setup.bunch_kaufman;
  }
  void factor(const sparse_system<T>& s) {
    if (status.ok()) status = pardiso::factorise(s.view(), analysed, options, account, f);
  }
  std::vector<T> solve(const std::vector<T>& b, int nrhs, const pardiso::solve_options& how = {}) const {
    std::vector<T> x(b.size()), work(b.size());
    pardiso::substitute(analysed, f, how, nrhs, b.data(), x.data(), work.data());
    return x;
  }
};

template <class T>
std::vector<T> random_vector(int n, std::mt19937& random) {
  std::vector<T> v(static_cast<std::size_t>(n));
  for (T& each : v) each = random_value<T>(random);
  return v;
}

/// Largest component of b - A x (or A' x) over the norms of A and x.
template <class T>
double residual(const sparse_system<T>& s, const std::vector<T>& b, const std::vector<T>& x, int nrhs,
                bool transposed = false) {
  double worst = 0;
  for (int column = 0; column < nrhs; ++column) {
    const auto at = [&](const std::vector<T>& v, int i) {
      return widen(
          v[static_cast<std::size_t>(i) + static_cast<std::size_t>(column) * static_cast<std::size_t>(s.n)]);
    };
    std::vector<reference> r(static_cast<std::size_t>(s.n));
    long double norm_x = 0, norm_a = 0;
    for (int i = 0; i < s.n; ++i) {
      r[static_cast<std::size_t>(i)] += at(b, i);
      norm_x = std::max(norm_x, std::abs(at(x, i)));
      long double row = 0;
      for (const auto& [j, value] : s.whole[static_cast<std::size_t>(i)]) {
        const int to = transposed ? j : i, from = transposed ? i : j;
        r[static_cast<std::size_t>(to)] -= widen(value) * at(x, from);
        row += std::abs(widen(value));
      }
      norm_a = std::max(norm_a, row);
    }
    for (const reference& each : r) {
      const double now = static_cast<double>(std::abs(each) / (norm_a * norm_x));
      if (!(now <= worst)) worst = now;
    }
  }
  return worst;
}

}  // namespace qel::test
