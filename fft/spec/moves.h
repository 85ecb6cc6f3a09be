// SPDX-License-Identifier: BSD-3-Clause
// Moves of elements that may lie at any address.
#pragma once

#include <cstring>

#include "service/core_types.h"

namespace qel::fft {

template <class T>
T element_at(const T* p) {
  T value;
  std::memcpy(&value, p, sizeof value);
  return value;
}
template <class T>
void set_element(T* p, T value) {
  std::memcpy(p, &value, sizeof value);
}

/// n elements at a stride to a dense line, and back.
template <class T>
void gather(const T* from, core_int stride, T* to, core_int n) {
  for (core_int i = 0; i < n; ++i) set_element(to + i, element_at(from + i * stride));
}
template <class T>
void scatter(const T* from, T* to, core_int stride, core_int n) {
  for (core_int i = 0; i < n; ++i) set_element(to + i * stride, element_at(from + i));
}

/// Two arrays of parts to a line of pairs, and back.
template <class R, class C>
void join_parts(const R* real, const R* imag, core_int stride, C* line, core_int n) {
  for (core_int i = 0; i < n; ++i) {
    set_element(line + i, C{element_at(real + i * stride), element_at(imag + i * stride)});
  }
}
template <class R, class C>
void part(const C* line, core_int n, R* real, R* imag, core_int stride) {
  for (core_int i = 0; i < n; ++i) {
    const C z = element_at(line + i);
    set_element(real + i * stride, z.real);
    set_element(imag + i * stride, z.imag);
  }
}

}  // namespace qel::fft
