// SPDX-License-Identifier: BSD-3-Clause
// What stands above the results: the library, the machine, the settings, the peers' versions.
#pragma once

#include "cli/bench/runner.h"

namespace qel::cli::bench {

/// machine: the results of machine_family(); families: for the names of the peers that took part.
nlohmann::ordered_json heading_of(const run_settings& settings, const family_results& machine,
                                  const std::vector<family_results>& families);

}  // namespace qel::cli::bench
