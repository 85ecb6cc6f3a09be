// SPDX-License-Identifier: BSD-3-Clause
// Residuals with the matrix as the caller gave it: one triangle is mirrored for the symmetric types.
#pragma once

#include "sparse/pardiso/matrix.h"
#include "sparse/pardiso/memory_account.h"

namespace qel::pardiso {

struct residual_options {
  bool transposed = false;
  bool extended = false;  ///< sums in a wider format than the elements'
  int threads = 1;
};

/// Computes r := b - A x for columns of n. Allocated once, used for many steps.
template <class T>
class residual_sums {
 public:
  /// False if memory is out.
  bool allocate(const csr_view<T>& a, const residual_options& options, memory_account& account);
  /// b null: r := -A x. r may be b, but not x.
  void compute(const csr_view<T>& a, int nrhs, const T* b, const T* x, T* r) const;

 private:
  template <class R>
  void compute_in(const csr_view<T>& a, int nrhs, const T* b, const T* x, T* r) const;

  residual_options options_;
  bool scatters_ = false;  ///< entries add to rows other than their own: each thread has sums of its own
  block<char> sums_;
};

/// The sum of the absolute values.
template <class T>
double sum_of_moduli(const T* x, int64_t count);

}  // namespace qel::pardiso
