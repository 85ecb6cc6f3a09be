// SPDX-License-Identifier: BSD-3-Clause
// qel check: how a sparse matrix is built, and what solvers and sparse operations would stumble over.
#include <fmt/core.h>

#include <algorithm>
#include <climits>
#include <nlohmann/json.hpp>
#include <vector>

#include "cli/commands.h"
#include "cli/matrix_market.h"
#include "qel/sparse.h"

namespace qel::cli {
namespace {

struct row_form {
  std::vector<int> ia, ja;
};

/// Rows with their columns in the order of the file, counted from 1.
row_form rows_of(const matrix_file& file) {
  std::vector<int> next(static_cast<size_t>(file.rows) + 1, 0);
  for (const matrix_entry& entry : file.entries) ++next[static_cast<size_t>(entry.row) + 1];
  row_form result{{1}, std::vector<int>(file.entries.size())};
  for (size_t i = 1; i < next.size(); ++i) {
    next[i] += next[i - 1];
    result.ia.push_back(next[i] + 1);
  }
  for (const matrix_entry& entry : file.entries)
    result.ja[static_cast<size_t>(next[static_cast<size_t>(entry.row)]++)] = entry.col + 1;
  return result;
}

struct row_lengths {
  int least = 0, greatest = 0, empty = 0;
};
row_lengths lengths_of(const row_form& rows) {
  row_lengths result{rows.ia.size() > 1 ? INT_MAX : 0, 0, 0};
  for (size_t i = 0; i + 1 < rows.ia.size(); ++i) {
    const int length = rows.ia[i + 1] - rows.ia[i];
    result.least = std::min(result.least, length);
    result.greatest = std::max(result.greatest, length);
    result.empty += length == 0;
  }
  return result;
}

}  // namespace

int run_check(const check_options& options) {
  const matrix_file file = read_matrix_market(options.matrix);
  if (file.entries.size() > INT_MAX)
    throw file_error(options.matrix + ": more entries than 32-bit indices reach");
  const row_form rows = rows_of(file);
  const row_lengths lengths = lengths_of(rows);
  const int entries = static_cast<int>(file.entries.size()), base = 1, size = 2000;
  char words[2000];
  const int found =
      qel_csr_check(&file.rows, &file.cols, rows.ia.data(), rows.ja.data(), &entries, &base, words, &size);
  if (options.json) {
    const nlohmann::ordered_json json = {{"matrix", options.matrix},
                                         {"rows", file.rows},
                                         {"columns", file.cols},
                                         {"entries", entries},
                                         {"symmetry", name_of(file.symmetry)},
                                         {"shortest_row", lengths.least},
                                         {"longest_row", lengths.greatest},
                                         {"empty_rows", lengths.empty},
                                         {"findings", found},
                                         {"words", words}};
    fmt::print("{}\n", json.dump(2));
    return kDone;
  }
  fmt::print("matrix          {}: {} {} {}, {} by {}, {} entries in full\n", options.matrix,
             name_of(file.format), name_of(file.field), name_of(file.symmetry), file.rows, file.cols,
             entries);
  fmt::print("rows            {} to {} entries, {} of them empty\n", lengths.least, lengths.greatest,
             lengths.empty);
  fmt::print("{}", found == 0 ? "structure       no faults\n" : words);
  return kDone;
}

}  // namespace qel::cli
