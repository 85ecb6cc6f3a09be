// SPDX-License-Identifier: BSD-3-Clause
// The first and the last column of a half spectrum are spectra of real data, A and B. While its dimensions
// but the first are transformed, A + i B stands in the first column for both.
#pragma once

#include "fft/planning/box_rules.h"
#include "fft/spec/moves.h"

namespace qel::fft {

template <class R>
class edge_columns {
  using C = complex_of<R>;

 public:
  /// shape: of the half spectrum without its last column.
  edge_columns(const box_shape& shape, C* half) : shape_(shape), half_(half) {}

  /// From A + i B to A and B: A_k = (Z_k + conj Z_-k) / 2, B_k = (Z_k - conj Z_-k) / 2 i.
  void part() const {
    pairs(shape_.dimension - 1, 0, 0, true, [this](core_int at, core_int mirrored) {
      const C z = element_at(half_ + at), y = element_at(half_ + mirrored);
      const C a{(z.real + y.real) / 2, (z.imag - y.imag) / 2},
          b{(z.imag + y.imag) / 2, (y.real - z.real) / 2};
      put(at, a, b);
      put(mirrored, {a.real, -a.imag}, {b.real, -b.imag});
    });
  }
  /// Back; what A and B have that no spectrum of real data has is left out.
  void join() const {
    pairs(shape_.dimension - 1, 0, 0, true, [this](core_int at, core_int mirrored) {
      const core_int last = shape_.count[0];
      const C a1 = element_at(half_ + at), a2 = element_at(half_ + mirrored);
      const C b1 = element_at(half_ + at + last), b2 = element_at(half_ + mirrored + last);
      const C a{(a1.real + a2.real) / 2, (a1.imag - a2.imag) / 2};
      const C b{(b1.real + b2.real) / 2, (b1.imag - b2.imag) / 2};
      set_element(half_ + at, C{a.real - b.imag, a.imag + b.real});
      set_element(half_ + mirrored, C{a.real + b.imag, b.real - a.imag});
    });
  }

 private:
  void put(core_int at, C a, C b) const {
    set_element(half_ + at, a);
    set_element(half_ + at + shape_.count[0], b);
  }
  /// body(place of k, place of -k), once for each pair. own: the outer indices are their own negatives.
  template <class Body>
  void pairs(int node, core_int at, core_int mirrored, bool own, Body body) const {
    if (node == 0) {
      body(at, mirrored);
      return;
    }
    const core_int n = shape_.count[node], stride = shape_.stride[node];
    for (core_int k = 0; own ? 2 * k <= n : k < n; ++k) {
      const core_int minus_k = k == 0 ? 0 : n - k;
      pairs(node - 1, at + k * stride, mirrored + minus_k * stride, own && k == minus_k, body);
    }
  }
  box_shape shape_;
  C* half_;
};

}  // namespace qel::fft
