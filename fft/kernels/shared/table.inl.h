// SPDX-License-Identifier: BSD-3-Clause
// The table of a level's kernels.
#pragma once

#include "fft/kernels/shared/passes.inl.h"
#include "fft/kernels/shared/plane_passes.inl.h"
#include "fft/kernels/shared/real.inl.h"

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
#define QEL_PLANE_JOINS(b, pairs)                                                                      \
  {plane_join<R, b, 2, false, pairs>, plane_join<R, b, 3, false, pairs>, plane_join<R, b, 4, false, pairs>, \
   plane_join<R, b, 5, false, pairs>, plane_join<R, b, 7, false, pairs>, plane_join<R, b, 11, false, pairs>}
#define QEL_POW2_JOINS(b, pairs) {plane_join<R, b, 4, true, pairs>, plane_join<R, b, 8, true, pairs>}
#define QEL_POW2_SPLITS(b, pairs) {plane_split<R, b, 4, pairs>, plane_split<R, b, 8, pairs>}
#define QEL_FIRSTS(b) {first_planes_or_none<R, b, 2>(), first_planes<R, b, 4>, first_planes<R, b, 8>}
#define QEL_REVERSED(name) {{name<R, false, 4>, name<R, false, 8>}, {name<R, true, 4>, name<R, true, 8>}}
#define QEL_BY_SIDE(list) {{list(false, false), list(false, true)}, {list(true, false), list(true, true)}}
#define QEL_REALS(name)                                                                          \
  {nullptr, name<R, 1>, name<R, 2>, name<R, 3>, name<R, 4>, name<R, 5>, name<R, 6>, name<R, 7>,   \
   name<R, 8>, name<R, 9>, name<R, 10>, name<R, 11>, name<R, 12>, name<R, 13>, name<R, 14>,       \
   name<R, 15>, name<R, 16>}
#define QEL_SPLITS(b)                                                                                  \
  {split_pass<R, b, 2>, split_pass<R, b, 3>, split_pass<R, b, 4>,                  \
   split_pass<R, b, 5>, split_pass<R, b, 7>, split_pass<R, b, 11>}
#define QEL_JOINS(b)                                                                                   \
  {join_pass<R, b, 2>, join_pass<R, b, 3>, join_pass<R, b, 4>,                     \
   join_pass<R, b, 5>, join_pass<R, b, 7>, join_pass<R, b, 11>}

namespace {
template <class R, bool kBackward, int radix>
constexpr auto first_planes_or_none() -> typename fft_kernels<complex_type<R>, R>::planes_of_groups* {
  if constexpr (radix % planes<R>::kCount == 0) {
    return first_planes<R, kBackward, radix>;
  } else {
    return nullptr;
  }
}

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
      {QEL_FIRSTS(false), QEL_FIRSTS(true)},
      QEL_BY_SIDE(QEL_PLANE_JOINS),
      {{any_plane_join<R, false, false>, any_plane_join<R, false, true>},
       {any_plane_join<R, true, false>, any_plane_join<R, true, true>}},
      {direct_sums<R, false>, direct_sums<R, true>},
      QEL_REVERSED(first_reversed),
      QEL_BY_SIDE(QEL_POW2_JOINS),
      {QEL_SPLITS(false), QEL_SPLITS(true)},
      {generic_split<R, false>, generic_split<R, true>},
      QEL_REVERSED(last_reversed),
      QEL_BY_SIDE(QEL_POW2_SPLITS),
      {QEL_REALS(real_forward), QEL_REALS(real_backward)},
      {direct_forward<R>, direct_backward<R>},
      {real_ends<R, false>, real_ends<R, true>},
      {turn_row<R, false>, turn_row<R, true>},
      {multiply<R, false>, multiply<R, true>}, scale<R>};
}
}  // namespace
#undef QEL_LENGTHS
#undef QEL_BOTH
#undef QEL_LEAVES
#undef QEL_JOINS
#undef QEL_SPLITS
#undef QEL_PLANE_JOINS
#undef QEL_POW2_JOINS
#undef QEL_POW2_SPLITS
#undef QEL_FIRSTS
#undef QEL_REVERSED
#undef QEL_BY_SIDE
#undef QEL_REALS
// clang-format on

}  // namespace qel::QEL_LEVEL
