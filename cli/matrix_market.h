// SPDX-License-Identifier: BSD-3-Clause
// Matrix Market files (R. Boisvert, R. Pozo, K. Remington: The Matrix Market Exchange Formats, NISTIR 5935,
// 1996): coordinate and array form, real, integer, complex and pattern, all symmetries; plain or gzip.
#pragma once

#include <complex>
#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

namespace qel::cli {

/// A malformed or unreadable file; the text reads "FILE:LINE: what is wrong".
class file_error : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

enum class matrix_format { coordinate, array };
enum class matrix_field { real, integer, complex, pattern };
enum class matrix_symmetry { general, symmetric, skew_symmetric, hermitian };

/// One entry, zero-based. The imaginary part is 0 unless the field is complex.
struct matrix_entry {
  int row, col;
  std::complex<double> value;
};

/// A matrix as its entries, with the mirrored ones of a symmetric file written out. Entries that a file
/// gives twice stand twice: their sum is meant.
struct matrix_file {
  matrix_format format;
  matrix_field field;
  matrix_symmetry symmetry;
  int rows = 0, cols = 0;
  long stored = 0;  ///< entries in the file
  std::vector<matrix_entry> entries;

  bool is_complex() const { return field == matrix_field::complex; }
};

const char* name_of(matrix_format format);
const char* name_of(matrix_field field);
const char* name_of(matrix_symmetry symmetry);

/// Reads path. progress, if given, is called now and then with the entries read and to be read.
/// Throws file_error.
matrix_file read_matrix_market(const std::string& path,
                               const std::function<void(long, long)>& progress = nullptr);

/// Writes a rows x cols column-major matrix in array form with 17 digits, real if is_complex is false.
/// Throws file_error.
void write_matrix_market(const std::string& path, int rows, int cols,
                         const std::vector<std::complex<double>>& values, bool is_complex);

}  // namespace qel::cli
