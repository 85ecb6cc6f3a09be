// SPDX-License-Identifier: BSD-3-Clause
// CSV tables, also as sampled data. The first line chooses the column.
#include "cli/table.h"

#include "cli/matrix_market.h"
#include "cli/signal_file.h"
#include "fuzz/support/file_in_memory.h"
#include "fuzz/support/input.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using namespace qel::cli;
  const auto* const line_end = static_cast<const uint8_t*>(std::memchr(data, '\n', size));
  const size_t skipped = line_end == nullptr ? size : static_cast<size_t>(line_end + 1 - data);
  const std::string column(reinterpret_cast<const char*>(data), line_end == nullptr ? 0 : skipped - 1);
  const qel::fuzz::file_in_memory file(data + skipped, size - skipped);
  try {
    const table read = read_table(file.path());
    for (const auto& values : read.columns)
      qel::fuzz::promise(values.size() == read.rows(), "columns of one length");
  } catch (const file_error&) {}
  try {
    const signal samples = read_signal(file.path(), {column, 1});
    size_t count = 1;
    for (const int n : samples.samples.shape) count *= static_cast<size_t>(n);
    qel::fuzz::promise(count == samples.samples.values.size(), "as many values as the shape says");
  } catch (const file_error&) {}
  return 0;
}
