// SPDX-License-Identifier: BSD-3-Clause
// Option words: fields with a mark of their own, and single bits.
#pragma once

#include <stdint.h>

namespace qel::dss {

/// A field: 0 if none of its bits is set, else first + k * step for k below count.
struct option_field {
  uint32_t mask, first, step;
  int count;
};
inline constexpr option_field kMessageLevel = {0x80000007, 0x80000001, 1, 6};
inline constexpr option_field kTerminationLevel = {0x40000038, 0x40000008, 8, 6};
inline constexpr option_field kStructure = {0x200001C0, 0x20000040, 64, 6};
inline constexpr option_field kReorder = {0x100001C0, 0x10000040, 64, 6};
inline constexpr option_field kFactor = {0x080001C0, 0x08000040, 64, 4};
inline constexpr option_field kNoField = {0, 0, 1, 0};

inline constexpr int kAbsent = -1, kInvalid = -2;
/// The value k of a field, kAbsent or kInvalid.
int field_value(uint32_t options, const option_field& field);

enum create_bits : uint32_t {
  bit_out_of_core_1 = 0x400,
  bit_out_of_core_2 = 0x800,
  bit_single = 0x10000,
  bit_accepted = 0x2000,
};
enum solve_bits : uint32_t {
  bit_no_refinement = 0x1000,
  bit_refinement = 0x2000,
  bit_forward = 0x4000,
  bit_diagonal = 0x8000,
};

/// What a routine knows beside the levels, and the status of a bad field of its own.
struct option_grammar {
  option_field field;
  uint32_t bits;
  int bad_field;
};
struct read_options {
  int message_level, termination_level, field;  ///< values, kAbsent, kInvalid
  bool stray_bits;
};
read_options parse_options(uint32_t options, const option_grammar& grammar);

/// Phase of a solve with these bits.
constexpr int solve_phase(uint32_t options) {
  const bool forward = (options & bit_forward) != 0, diagonal = (options & bit_diagonal) != 0;
  return forward && diagonal ? 333 : diagonal ? 332 : forward ? 331 : 33;
}

}  // namespace qel::dss
