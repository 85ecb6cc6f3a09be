// SPDX-License-Identifier: BSD-3-Clause
// Tables of numbers with named columns, from CSV files (RFC 4180).
#pragma once

#include <string>
#include <vector>

namespace qel::cli {

struct table {
  std::vector<std::string> names;
  std::vector<std::vector<double>> columns;  ///< one per name, all of the same length
  size_t rows() const { return columns.empty() ? 0 : columns[0].size(); }
  /// Index of a column, or -1.
  int find(const std::string& name) const;
};

/// The first line names the columns; empty lines and such that begin with # are skipped. Throws file_error.
table read_table(const std::string& path);

}  // namespace qel::cli
