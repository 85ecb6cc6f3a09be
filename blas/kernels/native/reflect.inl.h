// SPDX-License-Identifier: BSD-3-Clause
// Small QR factorisations by Householder reflectors, in a copy of whole vectors. A reflector's vector begins
// inside of a vector of its column: that one is kept in a register, with zeros above the one.
#pragma once

#include "blas/kernels/native/inverse.inl.h"

namespace qel::QEL_LEVEL {
namespace {

/// Columns of whole vectors, zeros behind row m - 1.
template <class T>
struct qr_copy {
  using R = typename reals<T>::type;
  core_int m, n, rows;
  T* a;

  R* at(core_int i, core_int j) const { return reinterpret_cast<R*>(a + i + j * rows); }
};

/// Columns j .. j + count - 1, at most a vector's elements, less the reflector's multiples of what they have
/// in its direction. `head`: the vector at row `top` of the reflector; the others stand in column i.
template <class T>
void reflect_group(const qr_copy<T>& copy, core_int i, core_int top, typename finish<T>::reg head, T tau,
                   core_int j, core_int count) {
  using R = typename reals<T>::type;
  using V = vec<R>;
  using reg = typename V::reg;
  constexpr int kParts = reals<T>::kCount, kLanes = tile_shape<T>::kLanes;
  reg sum[V::kLanes];
  const R* column[kLanes];
#pragma GCC unroll 16
  for (int c = 0; c < V::kLanes; ++c) sum[c] = V::zero();
    // Columns that are not there are the first once more; their sums are not used.
#pragma GCC unroll 16
  for (int c = 0; c < kLanes; ++c) column[c] = copy.at(0, c < count ? j + c : j);
  const auto add = [&](reg v, core_int k) {
    [[maybe_unused]] reg conjugate = v;
    if constexpr (kParts == 2) conjugate = V::mul(v, V::pairs(1, -1));
#pragma GCC unroll 16
    for (int c = 0; c < kLanes; ++c) {
      const reg x = V::load(column[c] + k * kParts);
      sum[c * kParts] = V::fma(v, x, sum[c * kParts]);
      if constexpr (kParts == 2) sum[2 * c + 1] = V::fma(conjugate, V::swapped(x), sum[2 * c + 1]);
    }
  };
  add(head, top);
  for (core_int k = top + kLanes; k < copy.rows; k += kLanes) add(V::load(copy.at(k, i)), k);
  const reg product = V::sums(sum);
  const R* const factor = reinterpret_cast<const R*>(&tau);
  alignas(64) R multiples[V::kLanes];
  reg multiple = V::mul(product, V::all(factor[0]));
  if constexpr (kParts == 2)
    multiple = V::fma(V::swapped(product), V::pairs(factor[1], -factor[1]), multiple);
  V::store(multiples, multiple);
  constexpr int kAtOnce = kLanes < 4 ? kLanes : 4;
  for (int c = 0; c < count; c += kAtOnce) {
    reg real[kAtOnce], imag[kAtOnce];
    R* to[kAtOnce];
    const auto there = static_cast<int>(count - c < kAtOnce ? count - c : kAtOnce);
#pragma GCC unroll 4
    for (int b = 0; b < kAtOnce; ++b) {
      real[b] = V::all(multiples[(c + b) * kParts]);
      imag[b] = V::all(multiples[(c + b) * kParts + kParts - 1]);
      to[b] = copy.at(0, j + c + b);
    }
    if (there == kAtOnce) {
      const auto take = [&](const multiplied<T>& v, core_int k) {
#pragma GCC unroll 4
        for (int b = 0; b < kAtOnce; ++b) {
          R* const p = to[b] + k * kParts;
          V::store(p, v.from(V::load(p), real[b], imag[b]));
        }
      };
      take(multiplied<T>(head), top);
      for (core_int k = top + kLanes; k < copy.rows; k += kLanes)
        take(multiplied<T>(V::load(copy.at(k, i))), k);
    } else {
      for (core_int k = top; k < copy.rows; k += kLanes) {
        const multiplied<T> v(k == top ? head : V::load(copy.at(k, i)));
        for (int b = 0; b < there; ++b) {
          R* const p = to[b] + k * kParts;
          V::store(p, v.from(V::load(p), V::all(multiples[(c + b) * kParts]),
                             V::all(multiples[(c + b) * kParts + kParts - 1])));
        }
      }
    }
  }
}

/// The reflector that leaves column i zeros below its diagonal, in place of them; none (tau 0) for a real
/// last row. False if the column is too short or too long for its squares, or zero there; nothing is done
/// then.
template <class T>
bool make_reflector(const qr_copy<T>& copy, core_int i, T* tau, typename finish<T>::reg* head) {
  using R = typename reals<T>::type;
  using V = vec<R>;
  using reg = typename V::reg;
  using P = pivots_of<T>;
  constexpr int kParts = reals<T>::kCount, kLanes = tile_shape<T>::kLanes;
  constexpr auto kHigh = static_cast<R>(sizeof(R) == 4 ? 0x1p100 : 0x1p900);
  constexpr R kLow = 1 / kHigh;
  const core_int top = i / kLanes * kLanes, place = (i - top) * kParts;
  const lanes_from<R> below(place + kParts), from_diagonal(place);
  const reg old = V::load(copy.at(top, i)), x = below.choose(old, V::zero());
  reg squares = V::mul(x, x);
  for (core_int k = top + kLanes; k < copy.rows; k += kLanes) {
    const reg y = V::load(copy.at(k, i));
    squares = V::fma(y, y, squares);
  }
  const T alpha = element_at(copy.a + i + i * copy.rows);
  const R* const parts = reinterpret_cast<const R*>(&alpha);
  const R imag = kParts == 2 ? parts[kParts - 1] : 0, length = V::total(squares),
          whole = length + parts[0] * parts[0] + imag * imag;
  R* const factor = reinterpret_cast<R*>(tau);
  if (i + 1 == copy.m && imag == 0) {
    factor[0] = factor[kParts - 1] = 0;
    return true;
  }
  if (!(whole >= kLow && whole <= kHigh && (length >= kLow || i + 1 == copy.m))) return false;
  const R root = V::first_lane(V::sqrt(V::all(whole))), beta = parts[0] < 0 ? root : -root;
  T scale = P::from(parts[0] - beta);
  factor[0] = (beta - parts[0]) / beta;
  if constexpr (kParts == 2) {
    factor[1] = -imag / beta;
    scale.imag = imag;
    const R size = scale.real * scale.real + imag * imag;
    scale = {scale.real / size, -imag / size};
  } else {
    scale = 1 / scale;
  }
  const reg v = finish<T>::multiple(scale, x);
  // A one among zeros.
  const reg one = below.choose(V::zero(), from_diagonal.choose(V::pairs(1, kParts == 2 ? 0 : 1), V::zero()));
  const reg diagonal = V::pairs(beta, kParts == 2 ? 0 : beta);
  *head = below.choose(v, one);
  V::store(copy.at(top, i), below.choose(v, from_diagonal.choose(diagonal, old)));
  for (core_int k = top + kLanes; k < copy.rows; k += kLanes) {
    V::store(copy.at(k, i), finish<T>::multiple(scale, V::load(copy.at(k, i))));
  }
  return true;
}

/// How many columns are done.
template <class T>
core_int reflect_columns(core_int m, core_int n, T* a, core_int lda, T* tau) {
  constexpr core_int kLanes = tile_shape<T>::kLanes, kRoom = kReflectBytes / static_cast<core_int>(sizeof(T));
  const core_int rows = (m + kLanes - 1) / kLanes * kLanes, order = m < n ? m : n;
  if (rows * n > kRoom) return 0;
  alignas(64) T room[kRoom];
  const qr_copy<T> copy{m, n, rows, room};
  for (core_int j = 0; j < n; ++j) move_column(m, a + j * lda, room + j * rows, true);
  core_int i = 0;
  for (; i < order; ++i) {
    T factor{};
    typename finish<T>::reg head = vec<typename reals<T>::type>::zero();
    if (!make_reflector(copy, i, &factor, &head)) break;
    set_element(tau + i, factor);
    if (pivots_of<T>::size(factor) == 0) continue;
    for (core_int j = i + 1; j < n; j += kLanes) {
      reflect_group(copy, i, i / kLanes * kLanes, head, factor, j, n - j < kLanes ? n - j : kLanes);
    }
  }
  for (core_int j = 0; j < n; ++j) move_column(m, room + j * rows, a + j * lda, false);
  return i;
}

}  // namespace
}  // namespace qel::QEL_LEVEL
