// SPDX-License-Identifier: BSD-3-Clause
// Products of CSR matrices with vectors in every class, and with one another, beside the sums of their
// entries.
#include <fmt/core.h>

#include <map>

#include "cli/selftest/sparse_matrices.h"
#include "qel/sparse.h"

namespace qel::cli::selftest {
namespace {

template <class T>
struct sparse_calls;
template <>
struct sparse_calls<double> {
  using element = double;
  static constexpr auto csrmv = qel_dcsrmv;
  static constexpr auto csrmultcsr = qel_dcsrmultcsr;
  static constexpr auto csradd = qel_dcsradd;
};
template <>
struct sparse_calls<complex16> {
  using element = _QEL_Complex16;
  static constexpr auto csrmv = qel_zcsrmv;
  static constexpr auto csrmultcsr = qel_zcsrmultcsr;
  static constexpr auto csradd = qel_zcsradd;
};
template <class T>
auto* as_public(T* p) {
  using element = typename sparse_calls<std::remove_const_t<T>>::element;
  return reinterpret_cast<std::conditional_t<std::is_const_v<T>, const element*, element*>>(p);
}

/// What an entry stands for in a matrix of a class: places and values, by body(row, column, value).
template <class Body>
void each_meant(char kind, bool lower, bool unit, int i, int j, wide value, const Body& body) {
  const bool inside = lower ? i >= j : i <= j;
  if (kind == 'G') return body(i, j, value);
  if (kind == 'D') {
    if (i == j && !unit) body(i, j, value);
    return;
  }
  if (!inside || (i == j && (unit || kind == 'A'))) return;
  body(i, j, value);
  if (i == j || kind == 'T') return;
  body(j, i, kind == 'H' ? std::conj(value) : kind == 'A' ? -value : value);
}

template <class T>
void check_vector(recorder& out, const sparse_rows<T>& a, char trans, char kind, bool lower, bool unit) {
  number_source source(static_cast<std::uint64_t>(a.rows));
  const bool turned = trans != 'N';
  const int length_x = turned ? a.rows : a.columns, length_y = turned ? a.columns : a.rows;
  const std::vector<T> x = source.numbers<T>(length_x);
  std::vector<T> y = source.numbers<T>(length_y);
  const T alpha = source.number<T>(), beta = source.number<T>();
  std::vector<wide> sum(y.size());
  std::vector<double> scale(y.size(), 0);
  const auto add = [&](int i, int j, const wide& value) {
    if (turned) std::swap(i, j);
    const wide term = (trans == 'C' ? std::conj(value) : value) * widened(x[static_cast<size_t>(j)]);
    sum[static_cast<size_t>(i)] += term;
    scale[static_cast<size_t>(i)] += static_cast<double>(std::abs(term));
  };
  a.each([&](int i, int j, const wide& value) { each_meant(kind, lower, unit, i, j, value, add); });
  if (unit && kind != 'G' && kind != 'A')
    for (int i = 0; i < std::min(a.rows, a.columns); ++i) add(i, i, 1);
  for (size_t i = 0; i < sum.size(); ++i) {
    sum[i] = widened(alpha) * sum[i] + widened(beta) * widened(y[i]);
    scale[i] = scale[i] * static_cast<double>(std::abs(widened(alpha))) +
               static_cast<double>(std::abs(widened(y[i])));
  }
  const char about[] = {kind, lower ? 'L' : 'U', unit ? 'U' : 'N', 'F', 0, 0};
  sparse_calls<T>::csrmv(&trans, &a.rows, &a.columns, as_public(&alpha), about, as_public(a.a.data()),
                         a.ja.data(), a.ia.data(), a.ia.data() + 1, as_public(x.data()), as_public(&beta),
                         as_public(y.data()));
  out.compare(fmt::format("{}csrmv", kLetter<T>),
              fmt::format("{} {}{}{} {}x{}", trans, kind, about[1], about[2], a.rows, a.columns),
              worst_error(y, sum, scale), sum_bound(a.columns));
}

using places = std::map<std::pair<int, int>, std::pair<wide, double>>;

/// The result's structure and values.
template <class T>
void compare_matrix(recorder& out, const std::string& name, const std::string& sizes,
                    const sparse_rows<T>& got, const places& want) {
  double worst = 0;
  size_t found = 0;
  got.each([&](int i, int j, const wide& value) {
    const auto entry = want.find({i, j});
    found += entry != want.end();
    const double error = entry == want.end() ? 1e300
                                             : static_cast<double>(std::abs(value - entry->second.first)) /
                                                   (entry->second.second * kEpsilon<T>);
    raise(worst, error);
  });
  out.expect(name, sizes + " structure", found == want.size() && got.ja.size() == want.size());
  out.compare(name, sizes, worst, sum_bound(got.columns));
}

template <class T>
void check_matrices(recorder& out, int m, int n, int k) {
  number_source source(static_cast<std::uint64_t>(m * n + k));
  sparse_rows<T> a = random_rows<T>(source, m, n), b = random_rows<T>(source, n, k),
                 same = random_rows<T>(source, m, n), c;
  const std::string sizes = fmt::format("{}x{}x{}", m, n, k);
  const auto note = [](places& all, int i, int j, const wide& term) {
    auto& [value, scale] = all[{i, j}];
    value += term;
    scale += static_cast<double>(std::abs(term));
  };
  const int zero = 0;
  const auto prepare = [&](int columns, int most) {
    c = {};
    c.rows = m;
    c.columns = columns;
    c.ia.assign(static_cast<size_t>(m) + 1, 0);
    c.ja.assign(static_cast<size_t>(most), 0);
    c.a.assign(static_cast<size_t>(most), T{});
  };
  const auto finish = [&] {
    c.ja.resize(static_cast<size_t>(c.ia.back() - 1));
    c.a.resize(c.ja.size());
  };
  int info = 0;

  places product;
  a.each([&](int i, int l, const wide& left) {
    b.each([&](int row, int j, const wide& right) {
      if (row == l) note(product, i, j, left * right);
    });
  });
  int most = m * k;
  prepare(k, most);
  sparse_calls<T>::csrmultcsr("N", &zero, &zero, &m, &n, &k, as_public(a.a.data()), a.ja.data(), a.ia.data(),
                              as_public(b.a.data()), b.ja.data(), b.ia.data(), as_public(c.a.data()),
                              c.ja.data(), c.ia.data(), &most, &info);
  finish();
  compare_matrix(out, fmt::format("{}csrmultcsr", kLetter<T>), sizes, c, product);

  places sum;
  const T beta = source.number<T>();
  a.each([&](int i, int j, const wide& value) { note(sum, i, j, value); });
  same.each([&](int i, int j, const wide& value) { note(sum, i, j, widened(beta) * value); });
  most = m * n;
  prepare(n, most);
  sparse_calls<T>::csradd("N", &zero, &zero, &m, &n, as_public(a.a.data()), a.ja.data(), a.ia.data(),
                          as_public(&beta), as_public(same.a.data()), same.ja.data(), same.ia.data(),
                          as_public(c.a.data()), c.ja.data(), c.ia.data(), &most, &info);
  finish();
  compare_matrix(out, fmt::format("{}csradd", kLetter<T>), sizes, c, sum);
}

template <class T>
void check_type(recorder& out) {
  for (const int n : {1, 5, 16, 37, 120, 700}) {
    number_source source(static_cast<std::uint64_t>(n));
    const sparse_rows<T> a = random_rows<T>(source, n, n);
    for (const char trans : {'N', 'T', 'C'}) {
      check_vector(out, a, trans, 'G', false, false);
      for (const char kind : {'S', 'H', 'A', 'T', 'D'}) {
        if (kind == 'H' && !is_complex<T>) continue;
        for (const bool lower : {false, true})
          for (const bool unit : {false, true}) check_vector(out, a, trans, kind, lower, unit);
      }
    }
  }
  number_source source(7);
  for (const auto& [m, n] : {std::pair{40, 90}, {300, 20}}) {
    const sparse_rows<T> a = random_rows<T>(source, m, n);
    for (const char trans : {'N', 'T', 'C'}) check_vector(out, a, trans, 'G', false, false);
  }
  check_matrices<T>(out, 11, 7, 9);
  check_matrices<T>(out, 40, 31, 25);
}

}  // namespace

void check_sparse_products(recorder& out) {
  check_type<double>(out);
  check_type<complex16>(out);
}

}  // namespace qel::cli::selftest
