// SPDX-License-Identifier: BSD-3-Clause
#include "sparse/pardiso/determinant.h"

#include <cmath>

#include "sparse/pardiso/handle.h"
#include "sparse/pardiso/numeric/diagonal_block.h"
#include "sparse/pardiso/numeric/panel_store.h"

namespace qel::pardiso {
namespace {

/// A product that neither overflows nor underflows.
class scaled_product {
 public:
  template <class T>
  void multiply(T factor) {
    if constexpr (is_complex<T>) {
      value_ = value_ * complex16{factor.real, factor.imag};
    } else {
      value_ = static_cast<double>(factor) * value_;
    }
    normalise();
  }
  void divide(double divisor) {
    value_ = (1 / divisor) * value_;
    normalise();
  }
  scaled_number result() const { return {exponent_, value_.real, value_.imag}; }

 private:
  void normalise() {
    const double size = std::hypot(value_.real, value_.imag);
    if (size == 0 || !std::isfinite(size)) {
      exponent_ = 0;
      return;
    }
    const double power = std::floor(std::log10(size));
    if (power == 0) return;
    // In two steps, because the power of a tiny number's own size would overflow.
    const double half = std::trunc(power / 2);
    value_ = std::pow(10.0, -half) * value_;
    value_ = std::pow(10.0, half - power) * value_;
    exponent_ += power;
  }
  complex16 value_ = {1, 0};
  double exponent_ = 0;
};

/// Sign of a permutation of 0 .. n - 1. visited: n marks of 0.
int sign_of_permutation(const int* p, int n, char* visited) {
  int sign = 1;
  for (int start = 0; start < n; ++start) {
    for (int k = p[start]; visited[start] == 0 && k != start; k = p[k]) {
      visited[k] = 1;
      sign = -sign;
    }
  }
  return sign;
}

template <class T>
scaled_number determinant_of(const handle& h, int mnum) {
  const factors<T>* const made = h.factors_of<T>(mnum);
  if (made == nullptr || h.analysed() == nullptr || (!made->lnz && made->store == nullptr)) return {};
  const structure& form = h.analysed()->form;
  const ordering& order = h.analysed()->order;
  const matrix_type type = {h.record()->mtype};
  panels_in_core<T> in_core(form, made->lnz.get(), made->unz.get());
  panel_store<T>& store = made->store != nullptr ? *made->store : in_core;
  scaled_product product;
  int sign = 1;
  for (int s = 0; s < form.supernodes; ++s) {
    const int first = form.xsup[s], width = form.xsup[s + 1] - first;
    const int64_t rows = form.xlindx[s + 1] - form.xlindx[s];
    const_panel_pair<T> panels;
    if (!store.read(s, 0, panels)) return {};
    for (int k = 0; k < width; ++k) {
      const T* const d = panels.l + k + rows * k;
      if (type.indefinite() && made->pivot[first + k] < 0) {
        // A pivot of two: the element below the diagonal stands above it.
        const T below = d[rows], above = type.hermitian() ? conj(below) : below;
        product.multiply(*d * d[rows + 1] - below * above);
        ++k;
        continue;
      }
      product.multiply(*d);
      if (type.definite()) product.multiply(*d);
      if (type.unsymmetric()) {
        if (swapped_with(made->luperm[first + k]) != k) sign = -sign;
        if (swapped_with(made->luperm_row[first + k]) != k) sign = -sign;
      }
    }
  }
  const int n = form.n;
  for (int i = 0; order.row_scale && i < n; ++i) {
    product.divide(order.row_scale[i]);
    product.divide(order.column_scale[i]);
  }
  if (order.matched_row) {
    memory_account account;
    block<char> visited;
    if (!visited.allocate(account, n, block_work_r0)) return {};
    std::fill(visited.begin(), visited.end(), char{0});
    sign *= sign_of_permutation(order.matched_row.get(), n, visited.get());
  }
  product.multiply(static_cast<double>(sign));
  return product.result();
}

}  // namespace

scaled_number determinant(void* const* pt, int mnum) {
  const handle h(const_cast<void**>(pt));
  if (!h.live()) return {};
  const basic_record& record = *h.record();
  return with_element(scalar_words(record.mtype) == 2, record.single,
                      [&](auto element) { return determinant_of<decltype(element)>(h, mnum); });
}

}  // namespace qel::pardiso
