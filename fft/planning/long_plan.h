// SPDX-License-Identifier: BSD-3-Clause
// A long line on several threads, as rows times columns.
#pragma once

#include "fft/descriptor/dfti_node.h"
#include "fft/planning/long_rules.h"
#include "fft/spec/dft_spec.h"

namespace qel::fft {

/// Input element j1 * columns + j2, output element k1 + rows * k2: lines of `rows` elements down the columns,
/// twiddles exp(-2 pi i j2 k1 / n), lines of `columns` elements along the rows.
template <class R>
struct split_plan {
  using C = complex_of<R>;
  core_int rows, columns;        ///< rows is the smaller
  dfti_node* row_descriptor;     ///< of length rows
  dfti_node* column_descriptor;  ///< of length columns, with the scales; the same one if both are alike
  int parts;                     ///< threads of both regions; 0: as many as the descriptor may use
  core_int twiddle_block;        ///< a power of two
  table<complex16>
      twiddles;           ///< of the first twiddle_block exponents, then of the multiples of twiddle_block
  table<C> powers;        ///< kWidestBlock of them for each k1: w^(k1 l)
  table<C> all_twiddles;  ///< of a fixed number of parts: by blocks of columns, in the order of their use
  dft_spec<R>* shared;    ///< of kShared, in place of all else
  ~split_plan();
};

/// The plan of a choice, which is not kNone, put into the descriptor. A status.
template <class R>
int make_long_plan(dfti_node* first, const long_choice& choice);
/// Bytes of work that each of its threads needs.
template <class R>
int long_workspace(const dfti_node& first);
/// Releases the plan of a long line, if the descriptor holds one.
void release_long_plan(dfti_node* first);

}  // namespace qel::fft
