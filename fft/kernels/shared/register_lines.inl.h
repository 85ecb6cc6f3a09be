// SPDX-License-Identifier: BSD-3-Clause
// Short lines of r m elements whose rows and columns both fill registers: transforms down the columns,
// several side by side, twiddles, an exchange of rows and columns between registers, transforms along the
// rows.
#pragma once

#include "fft/kernels/shared/straight.inl.h"

namespace qel::QEL_LEVEL {
namespace {

template <class R, int r, int m>
struct line_twiddles {
  complex_type<R> of[r * m]{};
  constexpr line_twiddles() {
    for (int k = 0; k < r; ++k) {
      for (int j = 0; j < m; ++j) {
        const circle_point p = point_on_circle(j * k, r * m);
        of[k * m + j] = {static_cast<R>(p.c), static_cast<R>(-p.s)};
      }
    }
  }
};

/// Registers that both r and m fill.
template <class R, int r, int m>
using filled = cx<R, r % widest<R>::kCount == 0 && m % widest<R>::kCount == 0 ? widest<R>::kCount : 2>;

template <class R, bool kBackward, int r, int m>
void register_line(const complex_type<R>* input, complex_type<R>* output, R) {
  using V = filled<R, r, m>;
  constexpr int kWidth = V::kCount, kColumns = m / kWidth;
  static_assert(r % kWidth == 0 && m % kWidth == 0);
  alignas(32) static constexpr line_twiddles<R, r, m> kTwiddles{};
  reg_of<V> y[r * kColumns];
#pragma GCC unroll 16
  for (int c = 0; c < kColumns; ++c) {
    reg_of<V> x[r];
#pragma GCC unroll 16
    for (int i = 0; i < r; ++i) x[i] = V::load(input + c * kWidth + i * m);
    dft<V, kBackward, r>::run(x);
    y[c] = x[0];
#pragma GCC unroll 16
    for (int k = 1; k < r; ++k) {
      y[k * kColumns + c] = turned<V, kBackward>(x[k], V::load(kTwiddles.of + k * m + c * kWidth));
    }
  }
#pragma GCC unroll 16
  for (int k = 0; k < r; k += kWidth) {
    reg_of<V> z[m];
#pragma GCC unroll 16
    for (int c = 0; c < kColumns; ++c) {
#pragma GCC unroll 4
      for (int i = 0; i < kWidth; ++i) z[c * kWidth + i] = y[(k + i) * kColumns + c];
      V::transpose(z + c * kWidth);
    }
    dft<V, kBackward, m>::run(z);
#pragma GCC unroll 16
    for (int j = 0; j < m; ++j) V::store(output + k + r * j, z[j]);
  }
}

}  // namespace
}  // namespace qel::QEL_LEVEL
