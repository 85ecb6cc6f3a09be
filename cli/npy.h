// SPDX-License-Identifier: BSD-3-Clause
// Arrays of numbers in NumPy's file format (numpy.lib.format, versions 1 to 3).
#pragma once

#include <complex>
#include <string>
#include <vector>

namespace qel::cli {

struct number_array {
  std::vector<int> shape;  ///< the last index varies fastest; empty: a single number
  bool is_complex = false;
  std::vector<std::complex<double>> values;
};

/// Booleans, integers, real and complex floating-point numbers of 4 and 8 bytes, either byte order, C or
/// Fortran order. Throws file_error.
number_array read_npy(const std::string& path);

/// As 8-byte real or complex numbers in C order. Throws file_error.
void write_npy(const std::string& path, const number_array& array);

}  // namespace qel::cli
