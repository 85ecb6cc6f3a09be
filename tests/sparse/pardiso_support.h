// SPDX-License-Identifier: BSD-3-Clause
// What the direct solver's tests of its first stages share.
#pragma once

#include <gtest/gtest.h>

#include "sparse/pardiso/order/ordering.h"
#include "tests/support/sparse_problems.h"

namespace qel::test {

template <class T>
pardiso::csr_view<T> view_of(const csr_arrays<T>& m) {
  return {m.n, m.ia.data(), m.ja.data(), m.a.data(), {m.type}};
}

/// An ordering with what it needs to live.
struct ordered {
  pardiso::memory_account account;
  pardiso::ordering order;
  pardiso::graph adjacency;
  pardiso::stage_status status;
};

template <class T>
void run_ordering(const csr_arrays<T>& m, const pardiso::ordering_options& options, ordered& result,
                  int* user_perm = nullptr) {
  result.status = pardiso::compute_ordering(view_of(m), options, user_perm, result.account, result.order,
                                            result.adjacency);
}

}  // namespace qel::test
