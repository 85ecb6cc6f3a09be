// SPDX-License-Identifier: BSD-3-Clause
// The modulus of an element.
#pragma once

#include <cmath>

#include "service/complex_arithmetic.h"

namespace qel::pardiso {

template <class T>
real_of<T> modulus(T x) {
  if constexpr (is_complex<T>) {
    return std::hypot(x.real, x.imag);
  } else {
    return std::fabs(x);
  }
}

}  // namespace qel::pardiso
