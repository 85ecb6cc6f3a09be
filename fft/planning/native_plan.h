// SPDX-License-Identifier: BSD-3-Clause
// How the native levels transform a line: pure decisions on its length.
#pragma once

#include "service/core_types.h"

namespace qel::fft {

/// Passes that sort as they go: the radices in their order; those that have no pass of their own are odd.
struct autosort_plan {
  int radices[32];
  int count;  ///< 0: the length has a prime factor that is too large
};
autosort_plan plan_autosort(core_int length);
/// Whether a radix has passes of its own.
bool has_autosort_pass(int radix);

/// Points that a thread takes at a time from a line's first passes.
inline constexpr int kPointGrain = 4;
/// The passes of a line that threads share out by frequencies: the last one, if its points are the same
/// number of whole grains for each of them, else two. One leaves longer runs of data to change hands.
constexpr int passes_after_meeting(int last_radix, int threads) {
  return last_radix % (kPointGrain * threads) == 0 ? 1 : 2;
}

/// How a single line is transformed where passes would be too short.
enum class whole_line : int {
  kPasses,    ///< it is not
  kTwoSteps,  ///< rows times columns, through a buffer
  kSums,      ///< odd, with a factor that has no pass of its own: sums over folded terms, side by side
};
struct whole_line_plan {
  whole_line method;
  int rows, columns;  ///< of kTwoSteps, at most 16 each
};
whole_line_plan plan_whole_line(core_int length);

enum class native_method : int {
  kAutosort,  ///< passes over the whole line
  kLong,      ///< rows times columns
  kBluestein,
  kRader,
  kRefused,
};
struct native_plan {
  native_method method;
  core_int rows, columns;  ///< of kLong
  core_int padded;         ///< of kBluestein
};
/// The plan of a length above 16.
native_plan plan_native_line(core_int length);

/// What a line costs, in passes of radix 2 over one element; below zero if it is no product of small primes.
double native_cost(core_int length);
/// Whether a prime line is better transformed as a cyclic convolution of prime - 1 points than as one with a
/// chirp of `padded` points.
bool prefers_rader(core_int prime, core_int padded);
/// Products modulo n < 2^26, which stay below 2^53, so that the quotient is the rounded one or next to it.
class residues {
 public:
  explicit residues(core_int n) : n_(n), inverse_(1.0 / static_cast<double>(n)) {}
  core_int product(core_int a, core_int b) const {
    const core_int rest = a * b - static_cast<core_int>(static_cast<double>(a * b) * inverse_) * n_;
    return rest + (rest < 0 ? n_ : rest >= n_ ? -n_ : 0);
  }

 private:
  core_int n_;
  double inverse_;
};
/// The smallest number whose powers modulo an odd prime are all of 1 .. prime - 1.
core_int primitive_root(core_int prime);

/// Whether threads that share a line as rows times columns hand back what they read: while it is in caches,
/// which input, middle and output share.
constexpr bool hands_back_lines(core_int bytes, core_int largest_cache) { return bytes <= largest_cache / 4; }

/// The shortest length of at least n whose transform is fast.
core_int good_length(core_int n);

}  // namespace qel::fft
