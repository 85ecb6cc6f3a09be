// SPDX-License-Identifier: BSD-3-Clause
#include "lapack/solve/split.h"

#include <algorithm>

namespace qel::lapack {

split_plan plan_split(const split_facts& facts) {
  // Below it the start of a region costs more than the slices save.
  constexpr double kWorkToFork = 30000;
  if (facts.threads < 2) return {1, "one thread"};
  const core_int block = std::max<core_int>(
      tuned_block_size({kBlockSize, facts.routine, " ", facts.n, facts.nrhs, -1, -1}, facts.processor), 1);
  const core_int blocks = (facts.nrhs - 1) / block + 1;
  if (facts.nrhs < 2 || blocks < 2) return {1, "one block of right-hand sides"};
  const double by_work = facts.work * static_cast<double>(facts.nrhs) / kWorkToFork;
  if (by_work < 2) return {1, "too little work"};
  const auto most = static_cast<double>(std::min<core_int>(blocks, facts.threads));
  return {static_cast<int>(std::min(by_work, most)), "slices of right-hand sides"};
}

}  // namespace qel::lapack
