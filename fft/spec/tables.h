// SPDX-License-Identifier: BSD-3-Clause
// Tables of a plan: memory that goes with its owner, and roots of unity.
#pragma once

#include <algorithm>
#include <memory>

#include "fft/kernels/fft_kernels.h"
#include "service/core_types.h"
#include "service/serv.h"

namespace qel::fft {

struct table_release {
  void operator()(void* block) const { serv_aligned_free(block); }
};
template <class T>
using table = std::unique_ptr<T[], table_release>;

/// count elements, not initialised; null if memory is out.
template <class T>
table<T> make_table(core_int count) {
  return table<T>(static_cast<T*>(serv_aligned_malloc(static_cast<size_t>(count) * sizeof(T), 64)));
}

/// exp(-2 pi i k / n), its angle reduced to an eighth of the circle before the functions see it.
complex16 unit_root(core_int k, core_int n);

/// Those of 0 <= k < count <= n / 2 + 1; native levels have sines and cosines of their own.
void fill_roots(complex16* roots, core_int count, core_int n);

/// Those of 0 <= numerators[i] < n; false if memory is out.
bool fill_roots_at(complex16* roots, const int* numerators, core_int count, core_int n);

/// All of them for k < n, the functions called for an eighth of the circle only; null if memory is out.
table<complex16> make_root_table(core_int n);

/// The same by way of half of the circle, the other half being its conjugate.
class half_circle {
 public:
  /// False if memory is out.
  bool make(core_int n);
  /// 0 <= k < n
  complex16 operator[](core_int k) const {
    if (2 * k <= n_) return roots_[static_cast<size_t>(k)];
    const complex16 z = roots_[static_cast<size_t>(n_ - k)];
    return {z.real, -z.imag};
  }
  /// The same without a branch, for callers that jump about the circle.
  complex16 anywhere(core_int k) const {
    constexpr double kSigns[] = {1, -1};
    const core_int mirrored = n_ - k;
    const complex16 z = roots_[static_cast<size_t>(std::min(k, mirrored))];
    return {z.real, z.imag * kSigns[k > mirrored ? 1 : 0]};
  }
  /// Roots 0 .. n / 2.
  const complex16* get() const { return roots_.get(); }

 private:
  core_int n_ = 0;
  table<complex16> roots_;
};

/// The same for a power of two n: from a quarter wave of sines, n / 4 + 1 of them.
class quarter_wave {
 public:
  /// False if memory is out.
  bool make(core_int n);
  complex16 root(core_int k) const;

 private:
  int order_of_quarter_ = 0;
  table<double> sines_;
};

template <class C>
C narrowed(complex16 z) {
  using R = decltype(C::real);
  return {static_cast<R>(z.real), static_cast<R>(z.imag)};
}

/// The twiddles of a pass over planes as it reads them: root(k p) for a block's k and p = 1, p = 2, ...
template <class R, class C, class Root>
void fill_plane_twiddles(C* target, core_int radix, core_int points, Root root) {
  constexpr core_int kBlock = kPlaneBlock<R>;
  R* next = &target->real;
  for (core_int k = 0; k < points; k += kBlock) {
    for (core_int p = 1; p < radix; ++p, next += 2 * kBlock) {
      for (core_int i = 0; i < kBlock; ++i) {
        const C w = narrowed<C>(root((k + i) * p));
        next[i] = w.real;
        next[kBlock + i] = w.imag;
      }
    }
  }
}

}  // namespace qel::fft
