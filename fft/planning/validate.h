// SPDX-License-Identifier: BSD-3-Clause
// What a configuration would do to the caller's data: elements that share a place, sides that do not fit.
#pragma once

#include <cstddef>

#include "fft/descriptor/dfti_node.h"

namespace qel::fft {

/// Axes of an array: counts and strides in elements.
struct axes {
  static constexpr int kMost = 8;
  int count = 0;
  core_int length[kMost], stride[kMost];
  void add(core_int n, core_int step) {
    length[count] = n;
    stride[count++] = step;
  }
};

enum class sharing { kNone, kSome, kUnknown };
/// Whether two elements have one address.
sharing find_sharing(const axes& of);

/// Number of faults found; a line for each into the buffer.
int validate_descriptor(const dfti_node& first, bool backward, char* buffer, size_t size);

}  // namespace qel::fft
