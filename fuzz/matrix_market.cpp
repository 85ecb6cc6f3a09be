// SPDX-License-Identifier: BSD-3-Clause
// Matrix Market files, plain and gzip: read, and brought into the direct solver's form.
#include "cli/matrix_market.h"

#include "cli/sparse_matrix.h"
#include "fuzz/support/file_in_memory.h"
#include "fuzz/support/input.h"
#include "qel/sparse.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using namespace qel::cli;
  const qel::fuzz::file_in_memory file(data, size);
  try {
    const matrix_file matrix = read_matrix_market(file.path());
    for (const matrix_entry& e : matrix.entries) {
      qel::fuzz::promise(e.row >= 0 && e.row < matrix.rows && e.col >= 0 && e.col < matrix.cols,
                         "entries lie in the matrix");
    }
    // A header alone can ask for gigabytes of row starts.
    if (matrix.rows > 1000) return 0;
    for (const int type : types_to_try(matrix, 0, "m")) {
      const sparse_matrix form = sparse_form(matrix, type, "m");
      const int base = 1, entries = static_cast<int>(form.ja.size());
      const int found =
          qel_csr_check(&form.n, &form.n, form.ia.data(), form.ja.data(), &entries, &base, nullptr, &base);
      qel::fuzz::promise(found == 0, "the solver's form is sound");
    }
  } catch (const file_error&) {}
  return 0;
}
