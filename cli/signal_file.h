// SPDX-License-Identifier: BSD-3-Clause
// Sampled data: .npy, sound files, columns of CSV tables.
#pragma once

#include "cli/npy.h"

namespace qel::cli {

struct signal {
  number_array samples;
  double rate = 0;  ///< samples in a unit of time; 0: not known
};

/// Which column of a table, which channel of a sound (from 1).
struct signal_choice {
  std::string column;
  int channel = 1;
};

/// The kind is told by the file's first bytes. Tables: columns named real and imag (or re and im) are complex
/// numbers; a column named t or time gives the rate; one other column may be left, or is chosen. Throws
/// file_error.
signal read_signal(const std::string& path, const signal_choice& choice);

/// A table: a column of places under that name, then the values (one dimension), real parts only or two
/// columns. Throws file_error.
void write_columns(const std::string& path, const std::string& name, const std::vector<double>& places,
                   const number_array& values);

}  // namespace qel::cli
