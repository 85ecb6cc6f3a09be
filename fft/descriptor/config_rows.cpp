// SPDX-License-Identifier: BSD-3-Clause
#include "fft/descriptor/config_rows.h"

#include <algorithm>
#include <iterator>

namespace qel::fft {
namespace {

using enum value_kind;
using enum set_rule;
using enum uncommit_rule;
using node = dfti_node;

constexpr config_row integer(int number, set_rule set, int node::*narrow) {
  return {number, kInteger, set, kFirst, {}, {}, narrow, nullptr};
}
constexpr config_row integer(int number, set_rule set, core_int node::*wide) {
  return {number, kInteger, set, kFirst, {}, {}, nullptr, wide};
}
constexpr config_row missing(int number) {
  return {number, kMissing, kRefused, kFirst, {}, {}, nullptr, nullptr};
}
constexpr config_row special(int number, value_kind kind, set_rule set, uncommit_rule uncommit) {
  return {number, kind, set, uncommit, {}, {}, nullptr, nullptr};
}

// By number.
constexpr config_row kRows[] = {
    integer(DFTI_FORWARD_DOMAIN, kRefused, &node::forward_domain),
    integer(DFTI_DIMENSION, kRefused, &node::dimension),
    special(DFTI_LENGTHS, kLengths, kRefused, kNever),
    integer(DFTI_PRECISION, kRefused, &node::precision),
    special(DFTI_FORWARD_SCALE, kScale, kAny, kOnSuccess),
    special(DFTI_BACKWARD_SCALE, kScale, kAny, kOnSuccess),
    missing(DFTI_FORWARD_SIGN),
    integer(DFTI_NUMBER_OF_TRANSFORMS, kAny, &node::number_of_transforms),
    {DFTI_COMPLEX_STORAGE, kInteger, kListed, kFirst, {39, 42}, {40, 41}, &node::complex_storage, nullptr},
    {DFTI_REAL_STORAGE, kInteger, kListed, kFirst, {42}, {41}, &node::real_storage, nullptr},
    {DFTI_CONJUGATE_EVEN_STORAGE,
     kInteger,
     kListed,
     kFirst,
     {39, 40},
     {41, 42},
     &node::conjugate_even_storage,
     nullptr},
    {DFTI_PLACEMENT, kInteger, kListed, kFirst, {43, 44}, {}, &node::placement, nullptr},
    special(DFTI_INPUT_STRIDES, kStrides, kAny, kFirst),
    special(DFTI_OUTPUT_STRIDES, kStrides, kAny, kFirst),
    integer(DFTI_INPUT_DISTANCE, kAny, &node::input_distance),
    integer(DFTI_OUTPUT_DISTANCE, kAny, &node::output_distance),
    missing(DFTI_INITIALIZATION_EFFORT),
    missing(DFTI_WORKSPACE),
    {DFTI_ORDERING, kInteger, kListed, kFirst, {48, 49}, {50}, &node::ordering, nullptr},
    integer(DFTI_TRANSPOSE, kRefused, &node::transpose),
    special(DFTI_DESCRIPTOR_NAME, kName, kAny, kNever),
    {DFTI_PACKED_FORMAT, kInteger, kListed, kFirst, {54, 55, 56, 57}, {}, &node::packed_format, nullptr},
    integer(DFTI_COMMIT_STATUS, kRefused, &node::commit_status),
    special(DFTI_VERSION, kVersion, kRefused, kNever),
    missing(DFTI_FORWARD_ORDERING),
    missing(DFTI_BACKWARD_ORDERING),
    integer(DFTI_NUMBER_OF_USER_THREADS, kAny, &node::number_of_user_threads),
};

constexpr bool rows_stand_at_their_numbers() {
  for (int i = 0; i < static_cast<int>(std::size(kRows)); ++i) {
    if (kRows[i].number != i) return false;
  }
  return true;
}
static_assert(rows_stand_at_their_numbers());

template <int kCount>
bool lists(const int (&values)[kCount], int value) {
  return value != 0 && std::find(values, values + kCount, value) != values + kCount;
}

}  // namespace

const config_row* find_config_row(int parameter) {
  return parameter >= 0 && parameter < static_cast<int>(std::size(kRows)) ? &kRows[parameter] : nullptr;
}

int judge_setting(const config_row& row, int value, int domain) {
  if (row.kind == kMissing) return DFTI_UNIMPLEMENTED;
  if (row.set == kRefused) return DFTI_INCONSISTENT_CONFIGURATION;
  if (row.set == kAny) return DFTI_NO_ERROR;
  if (lists(row.unimplemented, value)) return DFTI_UNIMPLEMENTED;
  if (!lists(row.accepted, value)) return DFTI_INCONSISTENT_CONFIGURATION;
  const bool scrambled_real =
      row.number == DFTI_ORDERING && value == DFTI_BACKWARD_SCRAMBLED && domain != DFTI_COMPLEX;
  return scrambled_real ? DFTI_UNIMPLEMENTED : DFTI_NO_ERROR;
}

}  // namespace qel::fft
