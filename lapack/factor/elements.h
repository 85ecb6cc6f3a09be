// SPDX-License-Identifier: BSD-3-Clause
// Elements at any address: a caller's pointer need not be a multiple of the element size, and plain
// dereferences would let the compiler assume so in the loops that it vectorises.
#pragma once

#include <cstring>

#include "service/core_types.h"

namespace qel::lapack {

template <class T>
inline T element(const T* p) {
  T value;
  std::memcpy(&value, p, sizeof value);
  return value;
}
template <class T>
inline void set(T* p, T value) {
  std::memcpy(static_cast<void*>(p), &value, sizeof value);
}
template <class T>
inline void exchange(T* x, T* y) {
  const T kept = element(x);
  set(x, element(y));
  set(y, kept);
}

}  // namespace qel::lapack
