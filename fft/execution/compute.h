// SPDX-License-Identifier: BSD-3-Clause
// What a compute call of a generally planned descriptor runs.
#pragma once

#include "fft/descriptor/dfti_node.h"

namespace qel::fft {

/// Sets the compute entries by domain, storage and placement.
template <class R>
void install_compute_entries(dfti_node* first);

}  // namespace qel::fft
