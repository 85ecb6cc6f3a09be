// SPDX-License-Identifier: BSD-3-Clause
// What a run of qel bench has found, and what it amounts to.
#pragma once

#include <map>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "cli/bench/families.h"

namespace qel::cli::bench {

struct contender_result {
  std::string contender;
  double seconds, least, most;  ///< median, shortest and longest of the repetitions
  double flops = 0, bytes = 0;  ///< per second; 0: not told
};
struct case_result {
  std::string name;
  std::vector<contender_result> results;

  const contender_result* own() const;
  /// The fastest peer; null if there is none.
  const contender_result* best_peer() const;
  /// Its time over the library's own: above 1 the library is faster. 0 without a peer.
  double ratio() const;
  /// The time of a limit, the slowest of them, over the library's own: the share of what is possible that it
  /// has. 0 without a limit.
  double share() const;
};
struct family_results {
  std::string name, title, about;
  std::string note;  ///< why something is missing; empty: nothing is
  double seconds = 0;
  std::vector<case_result> cases;
};

struct family_summary {
  int cases = 0, compared = 0;
  double ratio = 0;            ///< geometric mean beside the best peer; 0: nothing to compare
  double worst = 0, best = 0;  ///< ratios
  double share = 0;            ///< geometric mean of the shares; 0: no limits
  std::string worst_case, worst_peer, best_case;
};
family_summary summarise(const family_results& family);

/// Adds a line of a benchmark program's report to the family. Lines of other kinds are left alone.
void add_record(family_results& family, const nlohmann::ordered_json& record);

/// The document that --json writes and that the page shows, from its heading (machine, settings, peers).
nlohmann::ordered_json as_document(nlohmann::ordered_json heading,
                                   const std::vector<family_results>& families);
/// The families of such a document. Throws std::invalid_argument if it isn't one.
std::vector<family_results> families_of(const nlohmann::ordered_json& document);

}  // namespace qel::cli::bench
