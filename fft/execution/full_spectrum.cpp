// SPDX-License-Identifier: BSD-3-Clause
#include "fft/execution/full_spectrum.h"

#include "fft/execution/packed_spectrum.h"

namespace qel::fft {
namespace {

core_int rows_of(const packed_shape& shape) {
  core_int rows = 1;
  for (int i = 1; i < shape.dimension; ++i) rows *= shape.length[i];
  return rows;
}

packed_walk walk_of(const packed_shape& shape) {
  pass_shape walked{};
  walked.dimension = shape.dimension;
  core_int strides[3] = {1, shape.length[0], shape.dimension > 1 ? shape.length[0] * shape.length[1] : 0};
  std::copy_n(shape.length, shape.dimension, walked.count);
  return packed_walk(walked, strides, shape.format, shape.length[0]);
}

/// The row whose frequencies are the negatives of row's.
core_int opposite_row(const packed_shape& shape, core_int row) {
  core_int result = 0, step = 1;
  for (int i = 1; i < shape.dimension; ++i) {
    const core_int n = shape.length[i], k = row % n;
    row /= n;
    result += (k == 0 ? 0 : n - k) * step;
    step *= n;
  }
  return result;
}

}  // namespace

template <class R>
void spread_spectrum(const packed_shape& shape, const R* packed, complex_of<R>* full) {
  using C = complex_of<R>;
  const core_int n = shape.length[0], half = n / 2 + 1, rows = rows_of(shape);
  if (shape.complex_rows) {
    for (core_int row = 0; row < rows; ++row)
      for (core_int k = 0; k < half; ++k) {
        const R* const z = packed + 2 * (row * half + k);
        full[row * n + k] = C{z[0], z[1]};
      }
  } else {
    unpack_spectrum(walk_of(shape), packed, full);
  }
  for (core_int row = 0; row < rows; ++row) {
    const C* const opposite = full + opposite_row(shape, row) * n;
    for (core_int k = half; k < n; ++k) full[row * n + k] = C{opposite[n - k].real, -opposite[n - k].imag};
  }
}

template <class R>
void pick_spectrum(const packed_shape& shape, const complex_of<R>* full, R* packed) {
  if (!shape.complex_rows) {
    pack_spectrum(walk_of(shape), full, packed);
    return;
  }
  const core_int n = shape.length[0], half = n / 2 + 1, rows = rows_of(shape);
  for (core_int row = 0; row < rows; ++row)
    for (core_int k = 0; k < half; ++k) {
      R* const z = packed + 2 * (row * half + k);
      z[0] = full[row * n + k].real;
      z[1] = full[row * n + k].imag;
    }
}

template void spread_spectrum<float>(const packed_shape&, const float*, complex_of<float>*);
template void spread_spectrum<double>(const packed_shape&, const double*, complex_of<double>*);
template void pick_spectrum<float>(const packed_shape&, const complex_of<float>*, float*);
template void pick_spectrum<double>(const packed_shape&, const complex_of<double>*, double*);

}  // namespace qel::fft
