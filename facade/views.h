// SPDX-License-Identifier: BSD-3-Clause
// What the facade's own loops run on: vectors whose both ends have been checked once, so that no element has
// to be.
#pragma once

#include <cstddef>
#include <limits>

#include "tavik/core/data_block.h"

namespace Tavik::Kernel {

/// Element k is first[k * inc].
template <class T>
struct strided {
  T* first;
  std::ptrdiff_t inc;
  T& operator[](std::ptrdiff_t k) const { return first[k * inc]; }
};

/// n elements of block from its offset plus shift on, inc apart. Throws std::out_of_range unless the first
/// and the last one lie in the array; n <= 0 touches nothing.
template <class T>
strided<T> elements(long n, const Core::DataBlock<T>& block, int inc, long shift = 0) {
  if (n <= 0) return {nullptr, inc};
  const auto checked = [&block](long index) -> T& {
    constexpr int kNowhere = -1;
    return block
        .Data[index < 0 || index > std::numeric_limits<int>::max() ? kNowhere : static_cast<int>(index)];
  };
  const long start = block.Offset + shift;
  T& first = checked(start);
  checked(start + (n - 1) * inc);
  return {&first, inc};
}
/// Column j of a matrix of rows rows.
template <class T>
strided<T> column(int rows, const Core::DataBlock<T>& block, int j, int rowStride, int colStride) {
  return elements(rows, block, rowStride, static_cast<long>(j) * colStride);
}

/// op(v_k...) for every k. Strides of 1 get a loop of their own, which the compiler can make vectors of.
template <class Op, class... T>
void for_each_element(int n, const Op& op, strided<T>... v) {
  if (((v.inc == 1) && ...)) {
    for (int k = 0; k < n; ++k) op(v.first[k]...);
  } else {
    for (int k = 0; k < n; ++k) op(v[k]...);
  }
}

}  // namespace Tavik::Kernel
