// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "bench/direct/solvers.h"

namespace qel::bench {

std::unique_ptr<direct_solver> make_qel(const matrix& a);

}  // namespace qel::bench
