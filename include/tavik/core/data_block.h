// SPDX-License-Identifier: BSD-3-Clause
// Data blocks: views of an array from an offset on. Several blocks may view one array, and an operation
// writes through its block into the shared storage.
#pragma once

#include "tavik/core/array.h"
#include "tavik/core/complex.h"

namespace Tavik::Core {

/// Data, and the index in it of the block's first element (in elements). Element k of a vector with stride
/// inc is Data[Offset + k * inc]; element (i, j) of a matrix Data[Offset + i * rowStride + j * colStride].
template <class T>
struct DataBlock {
  Array<T> Data;   ///< the elements, shared with other blocks
  int Offset = 0;  ///< index of the block's first element
};

/// Blocks of the four element types.
using DoubleDataBlock = DataBlock<double>;
using FloatDataBlock = DataBlock<float>;
using DoubleComplexDataBlock = DataBlock<DoubleComplex>;
using FloatComplexDataBlock = DataBlock<FloatComplex>;

}  // namespace Tavik::Core
