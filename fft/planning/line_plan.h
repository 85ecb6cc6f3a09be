// SPDX-License-Identifier: BSD-3-Clause
// How one line of complex numbers is transformed: pure decisions on its length.
#pragma once

#include "fft/kernels/fft_kernels.h"
#include "service/core_types.h"

namespace qel::fft {

enum class line_method : int {
  kStraight,  ///< straight-line kernel
  kPowerOfTwo,
  kMixed,      ///< passes over a table of factors
  kDirect,     ///< a sum over folded terms for each pair of outputs
  kBluestein,  ///< a convolution with a chirp
  kRader,      ///< native: prime; a cyclic convolution in the order of the powers of a root
  kAutosort,   ///< native: passes that sort as they go
  kLong,       ///< native: rows times columns
  kRefused,    ///< too long
};

struct line_plan {
  line_method method;
  int factors[32];         ///< of kMixed; the last is that of the first pass
  int factor_count;        ///< of kMixed
  core_int rows, columns;  ///< of kLong
  int padded;              ///< of kBluestein
  int workspace_bytes;     ///< without that of plans inside
  bool second_buffer;      ///< of kBluestein: its transforms, powers of two, permute on their way to it
  bool scrambled;          ///< the result is left in an order of the plan's own
};
/// may_scramble: the order of the result is left to the plan. native: for a native level, which has no use
/// for that.
line_plan plan_line(core_int length, bool may_scramble = false, bool native = false);

inline constexpr int kCachedBlock = 501;  ///< bound below which a block counts as cached
inline constexpr int kLargestDirect = kLargestRadix;
inline constexpr int kLargestSpecialised = 11;  ///< factors above it go through the generic passes
inline constexpr int kFirstScrambledMixed =
    5001;  ///< below it a mixed line is not worth a second set of passes
inline constexpr int kLargestStraight = 16;
inline constexpr int kLargestPlainOrder = 16;  ///< powers of two above it are transformed in blocks
inline constexpr int kLargestOrder = 26;

/// Whether a line of plan kMixed runs as planes, in blocks of that many numbers: all sub-blocks are whole
/// blocks if the groups of the first pass are.
bool runs_in_planes(const line_plan& plan, int block);
/// The first row of the factors whose blocks are transformed at once, because they are short enough to stay
/// in cache; longer ones are joined from their sub-blocks one by one.
int first_cached_row(const line_plan& plan);

/// The passes over 2^order elements that are already transformed in groups of 2^done: orders by pass, each 2
/// or 3 (radix 4 or 8).
struct pow2_passes {
  int orders[12];
  int count;
};
/// Passes of a whole power of two, from order 6 on.
pow2_passes plan_pow2_passes(int order);
/// Passes that combine 2^k transformed blocks.
pow2_passes plan_combination(int k);

/// How the elements of order 17 and up are split: 2^k blocks, then groups of 2^(c - k) columns.
struct pow2_split {
  int k;
  int c;
};
pow2_split plan_pow2_split(int order);

}  // namespace qel::fft
