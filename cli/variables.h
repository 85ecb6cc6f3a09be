// SPDX-License-Identifier: BSD-3-Clause
// The environment variables that the library reads, and what a value of each does.
#pragma once

#include <string>
#include <vector>

namespace qel::cli {

struct variable_state {
  std::string name;
  std::string purpose;
  bool set = false;  ///< exists and is not empty
  std::string value;
  bool ignored = false;  ///< set, but to a value without effect
  std::string effect;    ///< what holds because of the value, or by default
};

/// Every variable, as the process sees it now.
std::vector<variable_state> environment_variables();

/// Their table as a page in Markdown (docs/environment.md): what each means, and what holds without it.
std::string variables_page();

}  // namespace qel::cli
