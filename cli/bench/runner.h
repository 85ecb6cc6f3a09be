// SPDX-License-Identifier: BSD-3-Clause
// Runs the benchmark programs and reads what they report.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "cli/bench/results.h"

namespace qel::cli::bench {

struct run_settings {
  bool quick = false;
  int threads = 1;
  int repetitions = 9;
  double least_seconds = 0.02;     ///< of a repetition
  std::vector<std::string> peers;  ///< only these
  bool all_peers = true;
};
/// What a family gets of the two.
run_settings settings_of(bool quick, int threads);

/// The program of a family: beside this one, in the build's bench folder, or where it is installed. Empty if
/// it is nowhere.
std::string find_program(const bench_family& family);
/// The installed library, if this program is an installed one; else empty: programs know their own.
std::string installed_library();

/// Runs it; told(part) hears of the progress, 0 to 1. What went wrong stands in the result's note.
family_results run_family(const bench_family& family, const run_settings& settings,
                          const std::function<void(double)>& told);

}  // namespace qel::cli::bench
