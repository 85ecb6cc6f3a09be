// SPDX-License-Identifier: BSD-3-Clause
// Plans of the native levels: passes that sort as they go over one line or over lines side by side, and long
// lines as rows times columns.
#pragma once

#include "fft/planning/native_plan.h"
#include "fft/spec/level_kernels.h"
#include "fft/spec/tables.h"
#include "fft/spec/team.h"

namespace qel::fft {

/// Elements at a pitch: element j of line l is data[j * pitch + l].
template <class C>
struct columns_of {
  C* data;
  core_int pitch;
};

/// What a plan is for: lines one by one, or any, also side by side, which takes larger tables.
enum class line_use : int { kOneByOne, kAny };

/// The kernel that holds a whole line of that length in registers; null if there is none.
template <class R>
auto* register_kernel(core_int length, direction way) {
  const auto* native = native_passes<R>();
  return native != nullptr && length <= kRegisterLengths ? native->registers[way][length] : nullptr;
}

template <class R>
struct autosort_spec {
  using C = complex_of<R>;
  struct pass {
    int radix;
    int index;          ///< among the radices with passes of their own; below zero: any
    core_int m;         ///< points left over when this pass is done
    table<C> twiddles;  ///< radix - 1 of them for each p
    table<C> roots;     ///< of a pass of any radix
  };
  const typename precision_types<R>::autosort* kernels;
  bool in_columns;  ///< run_columns is there
  int length;
  int pass_count;
  int largest_generic;
  pass passes[32];
  table<R> line_twiddles;  ///< of the first pass of a line
  whole_line_plan whole;   ///< of a single line
  table<C> step_twiddles;  ///< of its two steps: exp(-2 pi i j k / n) at k columns + j
  table<R> sum_factors;    ///< of its sums: rows of cosines, then of sines

  /// False if memory is out. A length of up to 16 needs no passes, nor does one that is transformed whole if
  /// lines are never side by side.
  bool make(core_int n, line_use use);
  /// Reals of work for so many lines side by side.
  core_int work_reals(core_int lines) const;
  /// The most that any length up to this one needs.
  static core_int most_work_reals(core_int longest, core_int lines);
  /// One line at unit stride, in place or out.
  void run_line(const C* input, C* output, R* work, direction way) const;
  /// The same line by a team, the same bits: passes of at least three. Each thread needs scratch_reals of the
  /// work for itself, the first one's are part of work_reals.
  void run_line(const C* input, C* output, R* work, direction way, const team& members) const;
  core_int scratch_reals() const { return scratch_of(largest_generic); }
  /// At most what any line of more than 16 elements needs, whatever its radices.
  static constexpr core_int least_work_reals(core_int n) { return 4 * pitch_of(n) + scratch_of(0); }
  /// Lines side by side, in place or out. ahead: how far away, in elements, the lines lie that are asked for
  /// meanwhile, because the next call takes them; 0: none.
  void run_columns(columns_of<const C> input, columns_of<C> output, core_int lines, R* work, direction way,
                   core_int ahead) const;

 private:
  bool make_passes(const half_circle& roots);
  bool make_whole(const half_circle& roots);
  core_int sum_pitch() const { return (length / 2 + kSumPitch - 1) / kSumPitch * kSumPitch; }
  static constexpr core_int kSumPitch = 64 / static_cast<core_int>(sizeof(R));
  static constexpr core_int kCacheLine = 64 / core_int{sizeof(R)};
  /// Between the arrays of parts, which begin with cache lines: without it powers of two would put all four
  /// of them on the same cache sets. Arrays that are short enough share none anyway.
  static constexpr core_int gap_after(core_int reals) {
    return reals * core_int{sizeof(R)} < 1024 ? 0 : 3 * kCacheLine;
  }
  static constexpr core_int pitch_of(core_int reals) {
    return (reals + kCacheLine - 1) / kCacheLine * kCacheLine + gap_after(reals);
  }
  static constexpr core_int scratch_of(core_int radix) { return 2 * 16 * (radix + 1); }
  const R* run_middle(R* work, core_int lines) const;
  void run_pass(const pass& p, const pass_part& part, const R* from, R* to, core_int pitch, R* scratch) const;
  core_int pitch_of_parts(core_int lines) const { return pitch_of(length * lines); }
};

/// Element j1 columns + j2, frequency k1 + rows k2: lines down the columns, twiddles, lines along the rows.
/// Between both halves blocks of eight k1 lie element by element, so that either half reads and writes whole
/// cache lines.
template <class R>
struct long_spec {
  using C = complex_of<R>;
  static constexpr core_int kBlock = kLongBlock<R>;
  core_int rows, columns;
  bool hands_back;              ///< by a team: see there
  autosort_spec<R> of_rows;     ///< lines down the columns, of `rows` elements
  autosort_spec<R> of_columns;  ///< lines along the rows
  table<C> bases;               ///< w^(kBlock b k) for block b of columns, k < rows
  table<C> powers;              ///< w^(k l), l < kBlock

  bool make(core_int row_count, core_int column_count);
  /// Reals of work of one thread in either half.
  core_int work_reals() const;
  /// The line by a team; middle: as many elements as it has.
  void run(const C* input, C* middle, C* output, R* work, direction way, const team& members) const;
  core_int blocks_of_columns() const { return (columns + kBlock - 1) / kBlock; }
  core_int blocks_of_rows() const { return (rows + kBlock - 1) / kBlock; }
  /// Blocks from .. to of columns, into the middle array.
  void first_half(const C* input, C* middle, core_int from, core_int to, R* work, direction way) const;
  /// Blocks from .. to of rows, out of it.
  void second_half(const C* middle, C* output, core_int from, core_int to, R* work, direction way) const;
};

}  // namespace qel::fft
