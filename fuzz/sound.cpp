// SPDX-License-Identifier: BSD-3-Clause
// Sound files. The first byte chooses the channel.
#include "cli/matrix_market.h"
#include "cli/signal_file.h"
#include "fuzz/support/file_in_memory.h"
#include "fuzz/support/input.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size == 0) return 0;
  const qel::fuzz::file_in_memory file(data + 1, size - 1);
  try {
    const qel::cli::signal read = qel::cli::read_signal(file.path(), {"", static_cast<int8_t>(data[0])});
    size_t count = 1;
    for (const int n : read.samples.shape) count *= static_cast<size_t>(n);
    qel::fuzz::promise(count == read.samples.values.size(), "as many values as the shape says");
  } catch (const qel::cli::file_error&) {}
  return 0;
}
