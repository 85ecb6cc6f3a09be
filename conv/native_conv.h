// SPDX-License-Identifier: BSD-3-Clause
// Convolution of dense sequences of any of the four element types on native processor types.
#pragma once

#include "conv/conv_plan.h"
#include "fft/spec/filter_spec.h"

namespace qel::conv {

/// The sequences in their roles.
template <class E>
struct dense_pair {
  const E* longer;
  core_int long_count;
  const E* shorter;
  core_int short_count;
};
template <class E>
dense_pair<E> make_pair(const E* a, core_int na, const E* b, core_int nb) {
  return na >= nb ? dense_pair<E>{a, na, b, nb} : dense_pair<E>{b, nb, a, na};
}

/// A plan and the transform of its pieces, for any number of calls with these facts.
template <class E>
struct kept_plan {
  native_conv_facts facts;
  native_conv_plan plan;
  fft::filter_spec<E> filter;
};

/// w[t - first] for all t from the first to the last output of the pieces; w must not overlap the operands. 0
/// or a conv_result.
template <class E>
int run_pieces(const dense_pair<E>& c, const kept_plan<E>& kept, E* w);

/// conv_full.
template <class E>
int native_full(const E* a, core_int na, const E* b, core_int nb, E* w);

}  // namespace qel::conv
