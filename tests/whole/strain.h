// SPDX-License-Identifier: BSD-3-Clause
// How much of a repetition is run: all of it, or a part where a sanitizer makes each step slower and needs
// fewer of them to see a fault. QEL_STRAIN_PERCENT comes from the build.
#pragma once

#include <algorithm>

namespace qel::test {

inline constexpr bool kSanitized = QEL_STRAIN_PERCENT < 100;

constexpr unsigned under_strain(unsigned repetitions) {
  return std::max(repetitions * QEL_STRAIN_PERCENT / 100, 1u);
}

}  // namespace qel::test
