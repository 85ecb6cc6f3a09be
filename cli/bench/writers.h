// SPDX-License-Identifier: BSD-3-Clause
// The forms in which results are given away.
#pragma once

#include <string>

#include "cli/bench/results.h"

namespace qel::cli::bench {

/// One page that needs nothing else: the template with the document in it.
std::string html_page(const nlohmann::ordered_json& document);
/// Tables for the documentation.
std::string markdown_page(const nlohmann::ordered_json& document,
                          const std::vector<family_results>& families);
/// The table for a terminal.
std::string summary_table(const std::vector<family_results>& families);

}  // namespace qel::cli::bench
