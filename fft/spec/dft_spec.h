// SPDX-License-Identifier: BSD-3-Clause
// The plan of one line of interleaved complex numbers: its method and all tables that the method reads.
#pragma once

#include "fft/planning/line_plan.h"
#include "fft/spec/autosort_spec.h"
#include "fft/spec/level_kernels.h"
#include "fft/spec/pow2_spec.h"
#include "fft/spec/tables.h"

namespace qel::fft {

/// How the numbers of a line lie.
enum class line_form : int {
  kOrdered,    ///< pairs, in natural order
  kScrambled,  ///< pairs; the forward transform leaves, the backward one takes an order of the plan's own
  kSplit,      ///< real and imaginary parts in two arrays
};

/// What dft_spec_create is asked to scale.
enum spec_flag : int { kForwardByN = 1, kBackwardByN = 2, kBothByRoot = 4, kUnscaled = 8 };

/// Results below zero.
enum spec_result : int {
  kSpecBadLength = -6,
  kSpecNull = -8,
  kSpecNoMemory = -9,
  kSpecBadFlag = -16,
  kSpecBadKind = -17
};

template <class R>
struct dft_spec {
  using C = complex_of<R>;
  static constexpr int kind_of(line_form form) {
    constexpr bool kDouble = sizeof(R) == sizeof(double);
    if (form == line_form::kSplit) return kDouble ? 17 : 14;
    if (form == line_form::kScrambled) return kDouble ? 0x434D414B : 0x534D414B;  // "KAMC", "KAMS"
    return kDouble ? 16 : 13;
  }

  /// A row of the factor table; a block of factor * remaining elements is joined from `factor` sub-blocks.
  struct factor_row {
    int factor;
    int remaining;          ///< length divided by the factors up to this one
    int stride_before;      ///< product of the factors before this one
    int radix;              ///< fft_radix, or -1
    table<C> twiddles;      ///< as the join reads them; none in the last row
    const C* factor_roots;  ///< of generic passes; rows of one factor share them
    table<C> own_roots;
  };

  /// The one kernel that transforms the line, scale and all; null if it takes more.
  typename precision_types<R>::kernels::straight* whole[2];
  int kind;
  line_form form;
  line_use use;
  int length;
  int scaled[2];  ///< by direction
  double scale;
  int workspace_bytes;
  line_plan plan;
  table<C> odd_table;  ///< of kDirect
  table<C> chirp;
  table<C> factor_spectrum;    ///< what the data are convolved with
  table<int> powers;           ///< of kRader: root^k modulo length, k < length - 1
  pow2_spec<R>* pow2;          ///< of a power of two
  dft_spec<R>* inner;          ///< of the convolution
  autosort_spec<R>* autosort;  ///< of kAutosort
  long_spec<R>* long_line;     ///< of kLong
  factor_row factors[32];
  int largest_generic;  ///< factor, 0 if there is none
  bool in_planes;       ///< of kMixed
  int cached_row;       ///< of planes: first_cached_row
  table<int> places;    ///< of planes: where the groups of a cached block's first pass go

  ~dft_spec();
};

/// Creates the plan; 0 or a spec_result.
template <class R>
int dft_spec_create(dft_spec<R>** spec, core_int length, int flag, line_form form = line_form::kOrdered,
                    line_use use = line_use::kOneByOne);
/// Null is ignored.
template <class R>
void dft_spec_free(dft_spec<R>* spec);

/// Whether the plan takes lines side by side, which is faster than one after the other.
template <class R>
bool takes_columns(const dft_spec<R>& spec);
/// Such lines, in place or out, without the plan's own scale; work: column_work_bytes; ahead: see
/// autosort_spec::run_columns.
template <class R>
void dft_spec_run_columns(columns_of<const complex_of<R>> input, columns_of<complex_of<R>> output,
                          core_int lines, const dft_spec<R>& spec, void* work, direction way, core_int ahead);
/// Enough for so many lines of any plan of up to that length.
template <class R>
size_t column_work_bytes(core_int length, core_int lines);

/// Transforms a line of pairs at unit stride, in place or out. work: workspace_bytes and 64 more, at any
/// address; null: taken for the call. 0 or a spec_result.
template <class R>
int dft_spec_run(const complex_of<R>* input, complex_of<R>* output, const dft_spec<R>* spec, void* work,
                 direction way);

/// The same by a team, the same bits, on native levels and for lengths that are not transformed whole. work:
/// shared_bytes that all of them see, aligned.
template <class R>
void dft_spec_run_shared(const complex_of<R>* input, complex_of<R>* output, const dft_spec<R>& spec,
                         void* work, direction way, const team& members);
template <class R>
size_t shared_bytes(const dft_spec<R>& spec, int threads);

/// count such lines, from one to the next a step of either side; the results are multiplied by scale. ahead:
/// each is asked for while the one before it is transformed.
template <class R>
struct dense_lines {
  const complex_of<R>* input;
  complex_of<R>* output;
  core_int in_step, out_step, count;
  R scale;
  bool ahead;
};
template <class R>
int dft_spec_run_lines(const dense_lines<R>& lines, const dft_spec<R>& spec, void* work, direction way);

/// The two arrays of a split line.
template <class R>
struct split_line {
  R* real;
  R* imag;
};
/// The same for a split line.
template <class R>
int dft_spec_run_split(split_line<const R> input, split_line<R> output, const dft_spec<R>* spec, void* work,
                       direction way);

}  // namespace qel::fft
