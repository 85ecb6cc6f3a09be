// SPDX-License-Identifier: BSD-3-Clause
// The processor levels and types that this processor can run, and how a process is made to take one.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "service/cpu_facts.h"

namespace qel::cli::selftest {

struct level_run {
  int level, type;
  bool only_by_type;  ///< a type without a level of its own
};

/// Everything that a processor with these facts can run.
std::vector<level_run> runs_on(const cpu_facts& facts);
/// Of this processor, only these levels (empty: all). Throws std::invalid_argument for one that it has not.
std::vector<level_run> runs_of(const std::vector<int>& levels);

/// Changes of the environment; an empty value takes a variable away.
std::vector<std::pair<std::string, std::string>> environment_of(const level_run& run);

}  // namespace qel::cli::selftest
