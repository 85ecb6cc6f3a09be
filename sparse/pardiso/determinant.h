// SPDX-License-Identifier: BSD-3-Clause
#pragma once

namespace qel::pardiso {

/// (real + i imag) * 10^exponent, 1 <= |mantissa| < 10; exponent 0 for zero.
struct scaled_number {
  double exponent = 0, real = 0, imag = 0;
};
/// The determinant by the factors of mnum; zero without factors.
scaled_number determinant(void* const* pt, int mnum);

}  // namespace qel::pardiso
