// SPDX-License-Identifier: BSD-3-Clause
// Strided data of the caller: where its elements lie, and copies into dense arrays of real and imaginary
// parts.
#pragma once

#include <algorithm>
#include <cstdlib>
#include <type_traits>

#include "service/complex_arithmetic.h"
#include "service/core_types.h"

namespace qel::conv {

/// Element i of n with any stride, counted from the lowest address.
constexpr core_int place_of(core_int i, core_int n, core_int stride) {
  return stride >= 0 ? i * stride : -stride * (n - 1 - i);
}

/// Part 0 (real) or 1 (imaginary) of element i.
template <class T>
real_of<T> part_of(const T& value, int part) {
  if constexpr (is_complex<T>) {
    return part == 0 ? value.real : value.imag;
  } else {
    return value;
  }
}

template <class T>
void set_part(T& value, int part, real_of<T> number) {
  if constexpr (is_complex<T>) {
    (part == 0 ? value.real : value.imag) = number;
  } else {
    value = number;
  }
}

/// Elements of T in the precision R.
template <class T, class R>
using element_of =
    std::conditional_t<!is_complex<T>, R, std::conditional_t<std::is_same_v<R, float>, complex8, complex16>>;

/// The value in another precision.
template <class To, class T>
To converted(const T& value) {
  if constexpr (is_complex<T>) {
    using R = real_of<To>;
    return {static_cast<R>(value.real), static_cast<R>(value.imag)};
  } else {
    return static_cast<To>(value);
  }
}

/// The n elements into a dense array, from the last to the first if reversed.
template <class T, class R>
void gather_part(const T* from, core_int n, core_int stride, bool reversed, int part, R* to) {
  if constexpr (std::is_same_v<T, R>) {
    if (stride == 1 && !reversed) return static_cast<void>(std::copy_n(from, n, to));
  }
  for (core_int i = 0; i < n; ++i)
    to[reversed ? n - 1 - i : i] = static_cast<R>(part_of(from[place_of(i, n, stride)], part));
}

}  // namespace qel::conv
