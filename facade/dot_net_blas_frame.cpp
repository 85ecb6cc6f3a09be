// SPDX-License-Identifier: BSD-3-Clause
// The frame's helpers: offsets, compactness, index bases.
#include <utility>

#include "tavik/kernel/dot_net_blas.h"

namespace Tavik::Kernel {

int DotNetBlas::AdjustVectorOffset(int n, int inc, int offset) {
  if (inc >= 0) return offset;
  // Unsigned, because the managed callers' integers wrap.
  const auto distance = (static_cast<unsigned>(n) - 1) * static_cast<unsigned>(inc);
  return static_cast<int>(distance + static_cast<unsigned>(offset));
}

bool DotNetBlas::IsCompactStride(int numRows, int rowStride, int colStride) {
  return rowStride == 1 && colStride == numRows;
}

void DotNetBlas::AdjustIndicesUp(const Core::Array<int>& indices) {
  for (int i = 0; i < indices.Length(); ++i) ++indices[i];
}

void DotNetBlas::AdjustIndicesDown(const Core::Array<int>& indices) {
  for (int i = 0; i < indices.Length(); ++i) --indices[i];
}

void DotNetBlas::TransposeSizes(int& rows, int& cols, int& rowStride, int& colStride) {
  std::swap(rows, cols);
  std::swap(rowStride, colStride);
}

}  // namespace Tavik::Kernel
