// SPDX-License-Identifier: BSD-3-Clause
// Small sparse matrices with arrays of just their size, for the fuzzers of the direct solver.
#pragma once

#include "fuzz/support/input.h"

namespace qel::fuzz {

struct small_matrix {
  int n;
  std::vector<int> ia, ja;
  int entries() const { return static_cast<int>(ja.size()); }
};

/// A sound structure of 1 to 16 rows with the whole diagonal; upper: nothing below it.
inline small_matrix structure_from(input& in, bool upper) {
  small_matrix m{in.in_range(1, 16), {1}, {}};
  const int density = in.byte();
  for (int i = 1; i <= m.n; ++i) {
    for (int j = upper ? i : 1; j <= m.n; ++j)
      if (i == j || in.byte() * 7 % 256 < density) m.ja.push_back(j);
    m.ia.push_back(static_cast<int>(m.ja.size()) + 1);
  }
  return m;
}

/// count numbers of that kind in a block of just their size; large on the diagonal of m where it is asked.
class number_block {
 public:
  number_block(input& in, size_t count, bool complex_numbers, bool single)
      : bytes_(count * (complex_numbers ? 2 : 1) * (single ? sizeof(float) : sizeof(double))) {
    const size_t reals = count * (complex_numbers ? 2 : 1);
    for (size_t k = 0; k < reals; ++k) {
      const double value = in.number();
      const auto as_float = static_cast<float>(value);
      if (single) {
        std::memcpy(bytes_.data() + k * sizeof(float), &as_float, sizeof(float));
      } else {
        std::memcpy(bytes_.data() + k * sizeof(double), &value, sizeof(double));
      }
    }
  }
  void* data() { return bytes_.data(); }

 private:
  std::vector<char> bytes_;
};

}  // namespace qel::fuzz
