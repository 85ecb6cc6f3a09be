// SPDX-License-Identifier: BSD-3-Clause
// From the callers' 32-bit integers to the core's 64-bit ones, for the exported BLAS names of both
// languages: call(core::ddot, n, x, incx, y, incy) widens each integer and passes all else as it stands.
// Bad arguments are found beforehand by the tests of blas/checks.h.
#pragma once

#include <type_traits>

#include "service/core_types.h"

namespace qel::dropin {

/// One integer, widened, with an address for as long as the call lasts.
class widened {
 public:
  explicit widened(const int* value) : value_(*value) {}
  operator const core_int*() const { return &value_; }

 private:
  core_int value_;
};

/// What the core gets for an argument: a widened integer, or the pointer itself.
template <class T>
auto core_argument(T* pointer) {
  if constexpr (std::is_same_v<std::remove_const_t<T>, int>) {
    return widened(pointer);
  } else {
    return pointer;
  }
}

/// routine(arguments); the widened integers live until it returns.
template <class Result, class... Parameters, class... Arguments>
Result call(Result (*routine)(Parameters...), Arguments... arguments) {
  return routine(core_argument(arguments)...);
}

/// True if position isn't 0, after the report that the Fortran routine's argument there is bad. name is
/// padded to six letters, as handlers compare it.
bool refused(const char* name, int position);

}  // namespace qel::dropin
