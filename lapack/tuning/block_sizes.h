// SPDX-License-Identifier: BSD-3-Clause
// What LAPACK asks its tuning routine: block sizes, crossovers and other constants of each algorithm, by the
// routine's name, sizes and threads. A pure function over a record.
#pragma once

#include <string_view>

#include "service/core_types.h"

namespace qel::lapack {

/// What is asked for; the values are those that LAPACK passes.
enum tuning_question : core_int {
  kBlockSize = 1,
  kLeastBlockSize = 2,
  kCrossover = 3,
  kGroup = 17,      ///< column blocks that a thread of the LU takes at once
  kLookahead = 18,  ///< column blocks that the first grants of the LU leave out
  kLevel = 19,
};

struct tuning_query {
  core_int question;
  std::string_view name, options;
  core_int n1 = -1, n2 = -1, n3 = -1, n4 = -1;
};
/// The processor: its level, and the tuning class of the matrix product.
struct tuning_processor {
  int level = 0;
  int product_class = 0;  ///< gemm_class
};

/// No block size: the plain rule for QR iterations (questions 12 to 16) applies.
inline constexpr core_int kPlainRule = -1000;

core_int tuned_block_size(const tuning_query& query, const tuning_processor& processor);

/// This process's.
tuning_processor this_tuning_processor();

/// n3 of a question about POTRF's block size that asks for the panels of one task instead.
inline constexpr core_int kAskTaskGrain = -2;

}  // namespace qel::lapack
