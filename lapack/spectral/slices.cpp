// SPDX-License-Identifier: BSD-3-Clause
#include "lapack/spectral/slices.h"

namespace qel::lapack {

int plan_vectors(const vector_facts& facts) {
  constexpr double kWorkToFork =
      500000;  // operations of a slice; below it a region and its copies do not pay
  constexpr core_int kFewest = 8;
  if (facts.threads < 2) return 1;
  const double slices =
      std::min({facts.work * static_cast<double>(facts.vectors) / kWorkToFork,
                static_cast<double>(facts.vectors / kFewest), static_cast<double>(facts.threads)});
  return slices < 2 ? 1 : static_cast<int>(slices);
}

}  // namespace qel::lapack
