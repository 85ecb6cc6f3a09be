// SPDX-License-Identifier: BSD-3-Clause
// Arrays in NumPy's format.
#include "cli/npy.h"

#include "cli/matrix_market.h"
#include "fuzz/support/file_in_memory.h"
#include "fuzz/support/input.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const qel::fuzz::file_in_memory file(data, size);
  try {
    const qel::cli::number_array array = qel::cli::read_npy(file.path());
    size_t count = 1;
    for (const int n : array.shape) count *= static_cast<size_t>(n);
    qel::fuzz::promise(count == array.values.size(), "as many values as the shape says");
  } catch (const qel::cli::file_error&) {}
  return 0;
}
