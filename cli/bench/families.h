// SPDX-License-Identifier: BSD-3-Clause
// The families that qel bench knows: their programs, which cases belong to a quick and to an ordinary run,
// and the libraries that they can be beside.
#pragma once

#include <string>
#include <vector>

namespace qel::cli::bench {

struct bench_family {
  const char *name, *title, *about;
  std::vector<const char*> peers;
  /// Regular expressions over the names of cases.
  const char *quick, *ordinary;
  /// Seconds that a run takes, roughly: the weights of the progress bar.
  double quick_seconds, ordinary_seconds;

  std::string program() const { return std::string("qel-bench-") + name; }
};
const std::vector<bench_family>& bench_families();
/// What the machine can do at most; runs before the others.
const bench_family& machine_family();

/// Contenders: the library itself and variants of it, limits that nothing can pass, peers.
enum class contender_role { own, limit, peer };
contender_role role_of(const std::string& contender);

/// Where a case stands: cases of one panel are one plot, by size.
struct case_place {
  std::string panel;
  double size = 0;  ///< 0: none
};
case_place place_of(const std::string& case_name);

}  // namespace qel::cli::bench
