// SPDX-License-Identifier: BSD-3-Clause
// The entries of A by the supernode whose panels take them, so that each supernode can fetch its own.
#pragma once

#include "sparse/pardiso/numeric/factor.h"

namespace qel::pardiso {

template <class T>
class matrix_entries {
 public:
  /// False if memory is out.
  bool sort(const csr_view<T>& a, const analysis& analysed, memory_account& account);
  /// Square root of the sum of squared moduli, mirrored entries counted.
  double norm() const { return norm_; }

  /// Adds the entries of a supernode to its zeroed panels, scaled and permuted. indmap: positions of the
  /// supernode's rows in its list. False if an entry has no place there: the pattern is not the analysed
  /// one.
  bool scatter(int supernode, const int* indmap, T* l, T* u) const;

 private:
  const csr_view<T>* a_ = nullptr;
  const analysis* analysed_ = nullptr;
  block<int64_t> start_;
  block<int> row_, entry_;
  block<int> position_of_row_;  ///< of a row of A in the final order, if there is a matching
  double norm_ = 0;
};

}  // namespace qel::pardiso
