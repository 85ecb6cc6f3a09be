// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <nlohmann/json.hpp>

namespace qel::cli {

/// Version, build and processor, as qel info --json has them.
nlohmann::ordered_json process_facts();

}  // namespace qel::cli
