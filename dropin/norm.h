// SPDX-License-Identifier: BSD-3-Clause
// Euclidean norm for the exported BLAS names. Below the native levels the core's own norm takes two
// infinities for NaN and divides for every element; callers from outside expect what the reference gives:
// infinity unless there is a NaN, no overflow or underflow on the way. x has n elements, |incx| apart.
#pragma once

#include "service/complex_arithmetic.h"

namespace qel::dropin {

template <class T>
real_of<T> euclidean_norm(core_int n, const T* x, core_int incx);

extern template float euclidean_norm(core_int, const float*, core_int);
extern template double euclidean_norm(core_int, const double*, core_int);
extern template float euclidean_norm(core_int, const complex8*, core_int);
extern template double euclidean_norm(core_int, const complex16*, core_int);

}  // namespace qel::dropin
