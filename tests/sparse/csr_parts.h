// SPDX-License-Identifier: BSD-3-Clause
// Which entries of a CSR matrix take part in a product.
#pragma once

#include "sparse/kernels/csr_kernels.h"

namespace qel::test {

inline bool takes_part(csr_part part, int i, int j) {
  switch (part) {
    case kLower:
      return j <= i;
    case kLowerUnit:
      return j < i;
    case kUpper:
      return j >= i;
    case kUpperUnit:
      return j > i;
    default:
      return part == kWhole;
  }
}

}  // namespace qel::test
