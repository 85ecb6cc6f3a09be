// SPDX-License-Identifier: BSD-3-Clause
// What a compute call of a generally planned complex line runs.
#pragma once

#include "fft/descriptor/dfti_node.h"

namespace qel::fft {

/// Sets the node kernels and the compute entries of the placement.
template <class R>
void install_line(dfti_node* node);

}  // namespace qel::fft
