// SPDX-License-Identifier: BSD-3-Clause
// Waves of plane rotations on the native levels, as QR iterations on tridiagonal and bidiagonal matrices send
// them through the vectors.
#pragma once

#include "service/complex_arithmetic.h"

namespace qel::lapack {

struct rotation_facts {
  core_int along, count;  ///< rotations, and the elements that each goes along
  int threads;
};
/// Slices of the elements along a rotation, one thread each.
int plan_rotations(const rotation_facts& facts);

/// A = P A (left) or A P**T, with a rotation for each pair of neighbours, from the first on or from the last
/// back; m and n above 0. False below the native levels; nothing is done then.
template <class T>
bool rotate_neighbours(bool left, bool forward, core_int m, core_int n, const real_of<T>* cosines,
                       const real_of<T>* sines, T* a, core_int lda);

}  // namespace qel::lapack
