// SPDX-License-Identifier: BSD-3-Clause
// The table of a level's kernels.
#pragma once

#include "fft/kernels/shared/passes.inl.h"

namespace qel::QEL_LEVEL {

// clang-format off
#define QEL_LENGTHS(backward, scaled)                                                                   \
  {nullptr, straight<R, backward, scaled, 1>, straight<R, backward, scaled, 2>,                          \
   straight<R, backward, scaled, 3>, straight<R, backward, scaled, 4>, straight<R, backward, scaled, 5>, \
   straight<R, backward, scaled, 6>, straight<R, backward, scaled, 7>, straight<R, backward, scaled, 8>, \
   straight<R, backward, scaled, 9>, straight<R, backward, scaled, 10>,                                  \
   straight<R, backward, scaled, 11>, straight<R, backward, scaled, 12>,                                 \
   straight<R, backward, scaled, 13>, straight<R, backward, scaled, 14>,                                 \
   straight<R, backward, scaled, 15>, straight<R, backward, scaled, 16>}
#define QEL_BOTH(name, ...) {name<R, false, __VA_ARGS__>, name<R, true, __VA_ARGS__>}
#define QEL_LEAVES(b) \
  {leaf_pass<R, b, 2>, leaf_pass<R, b, 3>, leaf_pass<R, b, 4>, leaf_pass<R, b, 5>, leaf_pass<R, b, 7>, leaf_pass<R, b, 11>}
#define QEL_JOINS(b)                                                                                   \
  {join_pass<R, b, 2, false>, join_pass<R, b, 3, false>, join_pass<R, b, 4, false>,                     \
   join_pass<R, b, 5, false>, join_pass<R, b, 7, false>, join_pass<R, b, 11, false>}

namespace {
template <class C, class R>
constexpr fft_kernels<C, R> all_kernels() {
  return {
      {QEL_LENGTHS(false, false), QEL_LENGTHS(true, false)},
      {QEL_LENGTHS(false, true), QEL_LENGTHS(true, true)},
      QEL_BOTH(buffered, 4, 8), QEL_BOTH(buffered, 8, 8), QEL_BOTH(buffered, 8, 16),
      {QEL_LEAVES(false), QEL_LEAVES(true)},
      {QEL_JOINS(false), QEL_JOINS(true)},
      {generic_leaf<R, false>, generic_leaf<R, true>},
      {generic_join<R, false>, generic_join<R, true>},
      {{first_pass<R, false, 4>, first_pass<R, false, 8>}, {first_pass<R, true, 4>, first_pass<R, true, 8>}},
      {{join_pass<R, false, 4, true>, join_pass<R, false, 8, true>},
       {join_pass<R, true, 4, true>, join_pass<R, true, 8, true>}},
      {{column_pass<R, false, 4>, column_pass<R, false, 8>}, {column_pass<R, true, 4>, column_pass<R, true, 8>}},
      multiply<R>, scale<R>};
}
}  // namespace
#undef QEL_LENGTHS
#undef QEL_BOTH
#undef QEL_LEAVES
#undef QEL_JOINS
// clang-format on

}  // namespace qel::QEL_LEVEL
