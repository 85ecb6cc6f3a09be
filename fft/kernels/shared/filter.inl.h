// SPDX-License-Identifier: BSD-3-Clause
// A spectrum of reals and its product with factors, between the transform of half as many complex numbers and
// the one back: both end steps and the product in one pass.
#pragma once

#include "fft/kernels/shared/real.inl.h"

namespace qel::QEL_LEVEL {
namespace {

template <class V, class C>
[[gnu::always_inline]] inline core_int filter_run(C* data, core_int half, const C* roots, const C* factors,
                                                  core_int k) {
  for (; 2 * (k + V::kCount) <= half + 1; k += V::kCount) {
    const core_int mirrored = half - k - V::kCount + 1;
    auto a = V::load(data + k), b = V::reversed(V::load(data + mirrored));
    const auto root = V::load(roots + k);
    end_pair<V, false>(a, b, root);
    a = turned<V, false>(a, V::load(factors + k));
    b = turned<V, false>(b, V::reversed(V::load(factors + mirrored)));
    end_pair<V, true>(a, b, root);
    V::store(data + k, a);
    V::store(data + mirrored, V::reversed(b));
  }
  return k;
}

/// half is even; factors as a spectrum R0, Rh, R1, I1, ...
template <class R>
void real_filter(complex_type<R>* data, core_int half, const complex_type<R>* roots,
                 const complex_type<R>* factors) {
  using V = single<R>;
  const auto zeroth = parted<R>(V::load(data));
  const R first = (zeroth.real + zeroth.imag) * factors[0].real,
          last = (zeroth.real - zeroth.imag) * factors[0].imag;
  V::store(data, joined<R>(first + last, first - last));
  const core_int done = filter_run<widest<R>>(data, half, roots, factors, 1);
  filter_run<V>(data, half, roots, factors, done);
  complex_type<R>* const at = data + half / 2;
  const auto middle = turned<V, false>(V::minus_imag(V::load(at)), V::load(factors + half / 2));
  V::store(at, V::minus_imag(V::add(middle, middle)));
}

}  // namespace
}  // namespace qel::QEL_LEVEL
