// SPDX-License-Identifier: BSD-3-Clause
// The spectrum of real data of up to three dimensions packed into an array of as many reals. Along the first
// node the real and imaginary parts of an inner frequency lie side by side, as in a packed line; the first
// frequency, and the middle one of an even length, are spectra of real data of one dimension less, and are
// packed along the next node in the same way.
#pragma once

#include "fft/execution/passes.h"
#include "fft/spec/moves.h"

namespace qel::fft {

/// Where the parts of frequency k lie in a packed line; imag below zero: it has none.
struct packed_place {
  core_int real, imag;
};
inline packed_place place_in_line(packing format, core_int n, core_int k) {
  if (format == packing::kCcs) return {2 * k, 2 * k + 1};
  const bool even = n % 2 == 0;
  if (k == 0) return {0, -1};
  if (even && 2 * k == n) return {format == packing::kPerm ? 1 : n - 1, -1};
  const core_int first = even && format == packing::kPerm ? 2 * k : 2 * k - 1;
  return {first, first + 1};
}

/// Walks the frequencies that a packed array holds. half: rows of n / 2 + 1 complex numbers.
class packed_walk {
 public:
  /// shape.count: lengths of the reals; strides: of the packed array, in reals; half_row: from one row of
  /// half to the next, 0 if they are dense.
  packed_walk(const pass_shape& shape, const core_int* strides, packing format, core_int half_row = 0)
      : format_(format) {
    dimension_ = static_cast<int>(shape.dimension);
    core_int dense = 1;
    for (int i = 0; i < dimension_ && i < kAxes; ++i) {
      length_[i] = shape.count[i];
      stride_[i] = strides[i];
      half_stride_[i] = dense;
      dense *= i > 0 ? length_[i] : half_row > 0 ? half_row : length_[i] / 2 + 1;
    }
  }
  /// visit(place in half, place of the conjugate in half, place of the real part, of the imaginary part); a
  /// place below zero: there is none.
  template <class Visit>
  void run(Visit visit) const {
    edge<0>(0, 0, visit);
  }

 private:
  static constexpr int kAxes = 3;
  template <int axis, class Visit>
  void edge(core_int at, core_int reals, Visit& visit) const {
    const core_int n = length_[axis];
    for (core_int k = 0; 2 * k <= n; ++k) {
      const packed_place place = place_in_line(format_, n, k);
      const core_int here = at + k * half_stride_[axis], real = reals + place.real * stride_[axis];
      if (place.imag >= 0) {
        // Row 0 has no place for negative frequencies.
        const core_int mirrored = axis == 0 ? -1 : at + (n - k) * half_stride_[axis];
        inner<axis + 1>(here, mirrored, real, reals + place.imag * stride_[axis], visit);
      } else if (axis + 1 == dimension_) {
        visit(here, core_int{-1}, real, core_int{-1});
      } else if constexpr (axis + 1 < kAxes) {
        edge<axis + 1>(here, real, visit);
      }
    }
  }
  template <int axis, class Visit>
  void inner(core_int at, core_int mirrored, core_int real, core_int imag, Visit& visit) const {
    if constexpr (axis < kAxes) {
      if (axis < dimension_) {
        const core_int n = length_[axis];
        for (core_int k = 0; k < n; ++k) {
          const core_int back = k == 0 ? 0 : n - k, step = k * stride_[axis];
          inner<axis + 1>(at + k * half_stride_[axis],
                          mirrored < 0 ? -1 : mirrored + back * half_stride_[axis], real + step, imag + step,
                          visit);
        }
        return;
      }
    }
    visit(at, mirrored, real, imag);
  }

  packing format_;
  int dimension_;
  core_int length_[kAxes], stride_[kAxes], half_stride_[kAxes];
};

template <class R, class C>
void pack_spectrum(const packed_walk& walk, const C* half, R* packed) {
  walk.run([&](core_int at, core_int, core_int real, core_int imag) {
    set_element(packed + real, half[at].real);
    if (imag >= 0) set_element(packed + imag, half[at].imag);
  });
}
template <class R, class C>
void unpack_spectrum(const packed_walk& walk, const R* packed, C* half) {
  walk.run([&](core_int at, core_int mirrored, core_int real, core_int imag) {
    const R re = element_at(packed + real), im = imag < 0 ? R{0} : element_at(packed + imag);
    half[at] = {re, im};
    if (mirrored >= 0) half[mirrored] = {re, -im};
  });
}

}  // namespace qel::fft
