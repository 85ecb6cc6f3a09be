// SPDX-License-Identifier: BSD-3-Clause
// The transform kernels of a processor level as one table per precision. Complex numbers may lie at any
// address. Kernels take no memory but the stack. Index [direction] is 0 for forward, 1 for backward.
#pragma once

#include "service/core_types.h"

namespace qel {

/// Radices with passes of their own; all others go through the generic ones.
enum fft_radix : int { kRadix2, kRadix3, kRadix4, kRadix5, kRadix7, kRadix11, kRadices };

/// Powers of two that have passes in bit-reversed order.
enum fft_pow2_radix : int { kPow2Radix4, kPow2Radix8, kPow2Radices };

/// How lines lie between passes where their sub-blocks allow it: blocks of 16 bytes of real parts and 16
/// bytes of imaginary ones. The numbers of a block:
template <class R>
inline constexpr int kPlaneBlock = 16 / static_cast<int>(sizeof(R));
/// What a pass leaves (or, if it splits, takes).
enum plane_side : int { kPlanes, kPairs, kPlaneSides };
inline constexpr int kFirstRadices = 3;  ///< 2, 4, 8

/// C is a complex number, R its real type.
inline constexpr int kStraightLengths = 16;
inline constexpr int kRegisterLengths = 64;
inline constexpr int kLargestRadix = 150;
/// Lengths of lines that native levels hold in registers.
inline constexpr int kHeldLengths[] = {8, 12, 16, 20, 24, 28, 32, 36, 40, 48, 56, 60, 64};

/// Radices of passes that sort as they go; the first one only changes the layout.
inline constexpr int kAutosortRadices[] = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13};
inline constexpr int kAutosortCount = 13;

/// Columns of a long line that are transformed together: two cache lines of each row.
template <class R>
inline constexpr core_int kLongBlock = 64 / static_cast<core_int>(sizeof(R));

/// The part of a pass that one call does: from <= p < to, q < count. Threads that share a line keep what they
/// have of it side by side: their p's are less than the line's by `origin`, and source and target may differ
/// in s.
struct pass_part {
  core_int m;
  core_int from, to, origin;
  core_int count;
  core_int s, to_s;
};

/// Such passes, of native levels; shared/autosort.inl.h says what they do. Lines lie as two arrays of parts.
template <class C, class R>
struct autosort_kernels {
  using first_of_line = void(const C* input, core_int count, R* re, R* im, core_int m, const R* twiddles);
  using first_of_columns = void(const C* input, core_int pitch, core_int s, R* re, R* im, core_int m,
                                const C* twiddles, core_int ahead);
  using middle = void(const R* re, const R* im, R* to_re, R* to_im, const pass_part& part, const C* twiddles);
  using middle_of_any = void(const R* re, const R* im, R* to_re, R* to_im, const pass_part& part,
                             const C* twiddles, int n, const C* roots, R* work);
  using last_of_line = void(const R* re, const R* im, core_int count, core_int s, C* out, core_int to_s);
  using last_of_columns = void(const R* re, const R* im, core_int s, core_int count, C* out, core_int pitch);
  using short_columns = void(const C* input, core_int pitch, C* output, core_int out_pitch, core_int s,
                             core_int ahead);
  using turn_and_deal = void(const C* lines, core_int rows, core_int count, const C* bases, const C* powers,
                             C* result, core_int columns, core_int first);

  /// shared/whole_lines.inl.h says what these do.
  using line_columns = void(const C* input, core_int m, C* buffer, const C* twiddles);
  using line_rows = void(const C* buffer, core_int r, C* output);
  using line_by_sums = void(const C* input, C* output, core_int n, core_int pitch, const R* cosines,
                            const R* sines, R* work);

  first_of_line* line[2][kAutosortCount];
  first_of_columns* columns[2][kAutosortCount];
  middle* middles[kAutosortCount];
  middle_of_any* any_middle;
  last_of_line* line_lasts[2][kAutosortCount];
  last_of_columns* column_lasts[2][kAutosortCount];
  short_columns* short_lines[2][kStraightLengths + 1];
  /// Whole lines in registers, by length, without scale; null where there is none.
  void (*registers[2][kRegisterLengths + 1])(const C* input, C* output, R);
  turn_and_deal* turn_and_deal_blocks[2];
  line_columns* of_columns[2][kStraightLengths + 1];
  line_rows* of_rows[2][kStraightLengths + 1];
  line_by_sums* by_sums[2];
  /// The transform of half complex numbers becomes the one of the reals in them, is multiplied by factors and
  /// goes back to before its end step; half is even, roots those of real_ends.
  void (*real_filter)(C* data, core_int half, const C* roots, const C* factors);
  /// roots[i] = exp(-2 pi i numerators[i] / n) for i < count, numerators 0 .. n - 1; null: 0, 1, 2 ...
  void (*roots_of_unity)(complex16* roots, const int* numerators, core_int count, core_int n);
  /// re[j] + i im[j] = exp(-2 pi i j step / n), j < count, count step <= n, from the roots up to half of n.
  void (*spread_roots)(const complex16* half, core_int step, core_int count, core_int n, R* re, R* im);
};

template <class C, class R>
struct fft_kernels {
  /// output = transform of input, all of it times scale if the form is scaled; in place or out.
  using straight = void(const C* input, C* output, R scale);
  /// count transforms of the radix: the b-th reads input + b step, element p at p stride, and writes a
  /// contiguous block of output.
  using leaf_pass = void(const C* input, core_int stride, core_int step, C* output, core_int count);
  /// Joins blocks of radix sub-blocks of m elements: element k of sub-block p is multiplied by
  /// twiddles[(p - 1) m + k], then the radix is transformed. source may be target.
  using join_pass = void(const C* source, C* target, core_int blocks, core_int m, const C* twiddles);
  /// shared/plane_passes.inl.h says what these do.
  using planes_of_groups = void(const C* input, core_int step, core_int stride, C* target, const int* places,
                                core_int count);
  using reversed_groups = void(C* data, core_int groups);
  using plane_pass = void(const C* source, core_int stride, C* target, core_int to_stride, core_int count,
                          core_int blocks, const C* twiddles);
  using any_plane_pass = void(const C* source, core_int stride, C* target, core_int to_stride, core_int count,
                              core_int blocks, const C* twiddles, int radix, const C* roots);
  using odd_sums = void(const C* input, C* output, int n, const C* factors);
  /// The generic forms of leaf and join, n odd, roots[j] = exp(-2 pi i j / n); work: 16 n bytes.
  using generic_leaf = void(const C* input, core_int stride, core_int step, C* output, core_int count, int n,
                            const C* roots, C* work);
  using generic_join = void(const C* source, C* target, core_int blocks, core_int m, const C* twiddles, int n,
                            const C* roots, C* work);

  /// The transpose of a join, from natural order on: the radix, then twiddles; sub-block p of the target is
  /// that of the outputs p, p + radix, ... source may be target.
  using split_pass = join_pass;
  /// A real line of a fixed length and its spectrum as R0, Rh, R1, I1, ... (odd lengths: no Rh), times scale.
  using real_straight = void(const R* input, R* output, R scale);
  /// n odd real elements and their spectrum, a sum for each pair of outputs; work: n reals.
  using real_direct = void(const R* input, R* output, int n, const C* roots, R* work);

  straight* unscaled[2][kStraightLengths + 1];  ///< by length, from 1
  straight* scaled[2][kStraightLengths + 1];
  straight* of_32[2];
  straight* of_64[2];
  straight* of_128[2];
  leaf_pass* leaf[2][kRadices];
  join_pass* join[2][kRadices];
  generic_leaf* any_leaf[2];
  generic_join* any_join[2];
  planes_of_groups* first_planes[2][kFirstRadices];  ///< null where a group fills no block
  plane_pass* plane_join[2][kPlaneSides][kRadices];
  any_plane_pass* any_plane_join[2][kPlaneSides];
  odd_sums* direct_sums[2];
  reversed_groups* first_reversed[2][kPow2Radices];
  plane_pass* pow2_join[2][kPlaneSides][kPow2Radices];
  // For lines in scrambled order: what the passes above do, transposed.
  split_pass* split[2][kRadices];
  generic_join* any_split[2];
  reversed_groups* last_reversed[2][kPow2Radices];
  plane_pass* pow2_split[2][kPlaneSides][kPow2Radices];
  real_straight* real[2][kStraightLengths + 1];
  real_direct* direct_real[2];
  /// Between the transform of n / 2 complex numbers and the spectrum of the n reals in them, in place;
  /// forward after the transform, backward before it. roots[k] = -i exp(-2 pi i k / n) / 2.
  void (*real_ends[2])(C* data, core_int half, const C* roots);
  /// data[l] *= factor * powers[l], backward its conjugate
  void (*turn_row[2])(C* data, core_int n, C factor, const C* powers);
  /// target[k] = source[k] * factor[k], backward its conjugate
  void (*multiply[2])(const C* source, const C* factor, C* target, core_int n);
  void (*scale)(C* data, core_int n, R factor);
};

using fft_kernels_d = fft_kernels<complex16, double>;
using fft_kernels_s = fft_kernels<complex8, float>;
using autosort_kernels_d = autosort_kernels<complex16, double>;
using autosort_kernels_s = autosort_kernels<complex8, float>;

namespace l0_generic {
extern const fft_kernels_d fft_d;
extern const fft_kernels_s fft_s;
}  // namespace l0_generic
namespace l4_avx {
extern const fft_kernels_d fft_d;
extern const fft_kernels_s fft_s;
}  // namespace l4_avx
namespace l5_avx2 {
extern const autosort_kernels_d autosort_d;
extern const autosort_kernels_s autosort_s;
extern const fft_kernels_d fft_d;
extern const fft_kernels_s fft_s;
}  // namespace l5_avx2
namespace l6_avx512 {
extern const autosort_kernels_d autosort_d;
extern const autosort_kernels_s autosort_s;
}  // namespace l6_avx512

}  // namespace qel
