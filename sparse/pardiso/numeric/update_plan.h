// SPDX-License-Identifier: BSD-3-Clause
// How the update of one supernode by another is carried out: a pure function of its sizes.
#pragma once

#include <algorithm>

namespace qel::pardiso {

struct update_facts {
  int rows, columns, depth;  ///< of the product
  int sources;               ///< panels of one run that update together
  bool is_complex;
  bool triangular;  ///< the columns' own rows: only those on and below the diagonal are wanted
};

enum class update_scheme {
  elements,  ///< element by element, straight into their places
  product,   ///< a dense product, then scattered unless its places are contiguous
};
struct update_plan {
  update_scheme scheme;
  int column_step;  ///< a product per so many columns, each from its own rows on
};

constexpr update_plan plan_update(const update_facts& facts) {
  constexpr double kFewOperations = 256;
  const double operations = static_cast<double>(facts.rows) * facts.columns * facts.depth;
  if (facts.sources == 1 && operations <= kFewOperations) return {update_scheme::elements, facts.columns};
  return {update_scheme::product, std::max(facts.columns, 1)};
}

}  // namespace qel::pardiso
