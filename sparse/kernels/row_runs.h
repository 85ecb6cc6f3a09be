// SPDX-License-Identifier: BSD-3-Clause
// Runs: successive rows of a CSR matrix that have as many entries, each a column further than in the row
// before, as rows of bands and grids have. Kernels that have them take four rows of a run at a time. Which
// runs they take, and how often they look for one, is decided here.
#pragma once

#include "sparse/kernels/csr_kernels.h"

namespace qel {

inline constexpr int kRunWidth = 4;        ///< rows at a time
inline constexpr int kLargestRunRow = 31;  ///< entries of a run's rows
inline constexpr int kLargestGridRow = 7;  ///< those of rows with kernels of blocks
inline constexpr int kLargestMirroredGridRow = 4;
inline constexpr int kSummedInOrder = 9;         ///< longer rows of a product have four sums
inline constexpr core_int kLongestPause = 1024;  ///< rows
inline constexpr core_int kLargestGap = 32;      ///< rows, between a grid's runs
inline constexpr core_int kFirstLook = 8;        ///< rows; enough for a run in blocks

enum class run_use { kGather, kScatter, kMirror };

/// Rows of a run that pays, none if 0; and rows taken as one, 0: in blocks only.
struct run_limits {
  core_int least, largest;
};
/// A look goes ahead of the sums. Where memory sets the pace, what reads all of its streams all the time
/// keeps it busier: blocks or single rows; only mirrored products have instructions enough to gain by runs
/// there, and by shorter looks.
[[gnu::always_inline]] constexpr run_limits limits_of_runs(run_use use, csr_part part, bool streams) {
  if (use == run_use::kMirror) return streams ? run_limits{12, 32} : run_limits{24, 128};
  if (streams) return {use == run_use::kGather ? kFirstLook : 0, 0};
  return {use == run_use::kScatter && part == kWhole ? 20 : 12, 128};
}

/// How many rows to take one by one before the next look, after so many looks that found nothing. A run that
/// is met late loses little; rows without runs should not notice.
[[gnu::always_inline]] constexpr core_int pause_after(int failures) {
  return failures <= 2 ? 1 : failures < 12 ? core_int{1} << (failures - 2) : kLongestPause;
}

/// How many rows to take one by one behind a run if so many stood between the last two: in grids as many do
/// again, but not where one pattern ended and another began.
[[gnu::always_inline]] constexpr core_int gap_to_next(core_int last_gap) {
  return last_gap <= kLargestGap ? last_gap : 0;
}

/// Neighbours in the result that entries of neighbouring rows add to: at element row + offset the entry
/// `same` of the row itself, `before` of the row before (its offset is one more), `after` of the row after.
/// Numbers count from the first entry that takes part, -1: there is none.
struct run_target {
  int offset, before, same, after;
};

/// What the kernels do with rows of these offsets (column less row).
struct run_shape {
  bool served = false;
  bool in_blocks = false;   ///< a kernel takes block after block and compares the next one itself
  int first = 0, last = 0;  ///< entries that take part
  int targets = 0;          ///< scatter, mirror
  int single_targets = 0;   ///< the first ones: those that have `same` only
  run_target at[kLargestRunRow];
  int diagonal = -1;              ///< mirror: counts as targets do
  run_target own{0, -1, -1, -1};  ///< mirror: what comes to the row's own element from neighbours
};

/// Results that are read soon after they were written must be read as they were written: farther apart than
/// this the processor has long stored them.
inline constexpr int kLeastApart = 16;

/// Whether the middle three entries add to one target and each of the others to its own, as in grids with
/// neighbours on both sides.
[[gnu::always_inline]] constexpr bool is_grid(const run_shape& shape) {
  const int count = shape.last - shape.first, middle = (count - 3) / 2;
  if (count % 2 == 0 || shape.targets != count - 2 || shape.single_targets != count - 3) return false;
  const run_target& joined = shape.at[count - 3];
  return joined.after == middle && joined.same == middle + 1 && joined.before == middle + 2;
}

/// Whether a mirrored triangle has its diagonal, one entry beside it, and others each with its own target, as
/// grids have.
[[gnu::always_inline]] constexpr bool is_mirrored_grid(const run_shape& shape) {
  return shape.diagonal >= 0 && (shape.own.before >= 0) != (shape.own.after >= 0) &&
         shape.targets == shape.single_targets && shape.targets == shape.last - shape.first - 2;
}

/// Which kernel of blocks gathers the entries that take part: 0 for all, 1 and 2 for the lower half of a row
/// with the entry in the middle and without it, 3 and 4 for the upper half; -1: there is none.
[[gnu::always_inline]] constexpr int gathered_part(const run_shape& shape, int length) {
  if (length < 2 || length > kSummedInOrder) return -1;
  if (shape.first == 0 && shape.last == length) return 0;
  const int middle = length / 2;
  if (length % 2 == 0) return -1;
  if (shape.first == 0) return shape.last == middle + 1 ? 1 : shape.last == middle ? 2 : -1;
  if (shape.last == length) return shape.first == middle ? 3 : shape.first == middle + 1 ? 4 : -1;
  return -1;
}

/// Whether rows of so many entries may have a kernel of blocks: a look takes few of them then at first.
[[gnu::always_inline]] constexpr bool may_come_in_blocks(run_use use, int length, bool streams) {
  if (use == run_use::kGather) return streams && length >= 2 && length <= kSummedInOrder;
  if (use == run_use::kMirror) return length >= 2 && length <= kLargestMirroredGridRow;
  return !streams && length % 2 != 0 && length >= 3 && length <= kLargestGridRow;
}

[[gnu::always_inline]] constexpr run_shape shape_of_run(run_use use, csr_part part, const int* offsets,
                                                        int length) {
  run_shape shape;
  if (length < 1 || length > kLargestRunRow || part == kDiagonal || part == kDiagonalUnit) return shape;
  shape.last = length;
  if (use == run_use::kGather && part == kWhole) {
    shape.served = true;
    shape.in_blocks = gathered_part(shape, length) >= 0;
    return shape;
  }
  for (int k = 1; k < length; ++k)
    if (offsets[k] <= offsets[k - 1]) return shape;
  const int below_zero = part == kUpper ? 0 : 1, up_to_zero = part == kLower ? 0 : -1;
  if (part == kUpper || part == kUpperUnit)
    while (shape.first < length && offsets[shape.first] < below_zero) ++shape.first;
  if (part == kLower || part == kLowerUnit)
    while (shape.last > 0 && offsets[shape.last - 1] > up_to_zero) --shape.last;
  const int count = shape.last - shape.first;
  if (count < 1) return shape;
  if (use == run_use::kGather) {
    shape.served = length <= kSummedInOrder;
    shape.in_blocks = gathered_part(shape, length) >= 0;
    return shape;
  }
  if (use == run_use::kScatter && (part == kLowerUnit || part == kUpperUnit)) return shape;
  const int* const o = offsets + shape.first;
  bool has_previous = false, own_met = false;
  int previous = 0;
  for (int k = 0; k < count;) {
    run_target target{0, -1, -1, -1};
    if (use == run_use::kMirror && o[k] >= -1 && o[k] <= 1) {
      target.offset = 0;
    } else {
      target.offset = k + 1 < count && o[k + 1] <= o[k] + 2 ? o[k] + 1 : o[k];
    }
    for (; k < count && o[k] <= target.offset + 1; ++k)
      (o[k] < target.offset ? target.after : o[k] > target.offset ? target.before : target.same) = k;
    if (has_previous && target.offset - previous < kLeastApart) return shape;
    has_previous = true;
    previous = target.offset;
    if (use == run_use::kMirror && target.offset == 0) {
      shape.diagonal = target.same;
      target.same = -1;
      shape.own = target;
      own_met = true;
    } else {
      shape.at[shape.targets++] = target;
      if (target.before < 0 && target.after < 0) {
        shape.at[shape.targets - 1] = shape.at[shape.single_targets];
        shape.at[shape.single_targets++] = target;
      }
    }
  }
  // Without an entry beside it the row's own element is written all the same.
  const bool own_is_near =
      use == run_use::kMirror && !own_met && o[0] < kLeastApart && o[count - 1] > -kLeastApart;
  shape.served = !own_is_near;
  shape.in_blocks = shape.served && count == length && may_come_in_blocks(use, length, false) &&
                    (use == run_use::kMirror ? is_mirrored_grid(shape) : is_grid(shape));
  return shape;
}

}  // namespace qel
