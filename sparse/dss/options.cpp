// SPDX-License-Identifier: BSD-3-Clause
#include "sparse/dss/options.h"

namespace qel::dss {

int field_value(uint32_t options, const option_field& field) {
  const uint32_t bits = options & field.mask;
  if (bits == 0) return kAbsent;
  for (int k = 0; k < field.count; ++k) {
    if (bits == field.first + static_cast<uint32_t>(k) * field.step) return k;
  }
  return kInvalid;
}

read_options parse_options(uint32_t options, const option_grammar& grammar) {
  const uint32_t known = kMessageLevel.mask | kTerminationLevel.mask | grammar.field.mask | grammar.bits;
  return {field_value(options, kMessageLevel), field_value(options, kTerminationLevel),
          field_value(options, grammar.field), (options & ~known) != 0};
}

}  // namespace qel::dss
