// SPDX-License-Identifier: BSD-3-Clause
// Numbers on which iterations for eigenvalues would not end, or balancing not stop: NaN, infinity, and such
// whose products overflow.
#pragma once

#include "service/complex_arithmetic.h"

namespace qel::lapack {

enum class fitness { fit, overflows, not_finite };

/// Of a rows by columns matrix; hessenberg: without what lies below the first subdiagonal.
template <class T>
fitness fitness_of(core_int rows, core_int columns, const T* a, core_int lda, bool hessenberg);

/// Whether count packed elements are finite and so far from the ends of the range that a factorisation of
/// them stays finite, too.
template <class T>
bool is_calm(core_int count, const T* ap);

/// A power of two that makes any finite number fit, by which no fit one becomes zero that counts beside it.
template <class T>
inline constexpr real_of<T> kCalming = sizeof(real_of<T>) == sizeof(float) ? real_of<T>(0x1p-64)
                                                                           : real_of<T>(0x1p-512);

/// Multiplies the elements on and above the first subdiagonal.
template <class T>
void scale_hessenberg(core_int n, T* h, core_int ldh, real_of<T> factor);

}  // namespace qel::lapack
