// SPDX-License-Identifier: BSD-3-Clause
// How a committed descriptor will be computed, in words.
#pragma once

#include <cstddef>

#include "fft/descriptor/dfti_node.h"

namespace qel::fft {

/// Lines "key value" into the buffer, cut off where it ends. The length of the whole text without its end.
size_t explain_descriptor(const dfti_node& first, char* buffer, size_t size);

}  // namespace qel::fft
