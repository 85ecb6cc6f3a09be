// SPDX-License-Identifier: BSD-3-Clause
// The packed spectrum of real data against all its frequencies: dense arrays of one to three dimensions.
#pragma once

#include "fft/spec/real_spec.h"
#include "service/complex_arithmetic.h"

namespace qel::fft {

/// A real array's lengths, the fastest one first, and how its spectrum is packed.
struct packed_shape {
  int dimension;
  core_int length[3];
  bool complex_rows;  ///< rows of length[0] / 2 + 1 complex numbers; else packed as format says
  packing format;
};

/// All frequencies from the packed ones, by F[-k] = conj(F[k]).
template <class R>
void spread_spectrum(const packed_shape& shape, const R* packed, complex_of<R>* full);
/// The packed ones from all; what the symmetry repeats is not read.
template <class R>
void pick_spectrum(const packed_shape& shape, const complex_of<R>* full, R* packed);

}  // namespace qel::fft
