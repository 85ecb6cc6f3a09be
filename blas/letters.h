// SPDX-License-Identifier: BSD-3-Clause
// Option letters of the BLAS interface: one letter, either case, nothing after it is looked at. Read by the
// argument tests and by the routines that branch on them.
#pragma once

namespace qel::blas {

/// True if letter is the capital wanted, in either case.
constexpr bool letter_is(char letter, char wanted) {
  return letter == wanted || letter == static_cast<char>(wanted + ('a' - 'A'));
}

}  // namespace qel::blas
