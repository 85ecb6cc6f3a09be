// SPDX-License-Identifier: BSD-3-Clause
// From data blocks and arrays to what numeric entries take: pointers of their element types.
#pragma once

#include "qel/types.h"
#include "tavik/core/data_block.h"
#include "tavik/kernel/dot_net_blas.h"

namespace Tavik::Kernel {

// The entries' view of an element: complex numbers are the same bytes as the core's pairs.
inline int* entry_pointer(int* p) { return p; }
inline double* entry_pointer(double* p) { return p; }
inline float* entry_pointer(float* p) { return p; }
inline _QEL_Complex16* entry_pointer(Core::DoubleComplex* p) { return reinterpret_cast<_QEL_Complex16*>(p); }
inline _QEL_Complex8* entry_pointer(Core::FloatComplex* p) { return reinterpret_cast<_QEL_Complex8*>(p); }
static_assert(sizeof(Core::DoubleComplex) == sizeof(_QEL_Complex16) &&
              sizeof(Core::FloatComplex) == sizeof(_QEL_Complex8));

/// The element with the lowest address of the vector (n, block, inc), which is what an entry takes together
/// with the stride as it stands. One checked access.
template <class T>
auto* vector_pointer(int n, const Core::DataBlock<T>& block, int inc) {
  return entry_pointer(&block.Data[DotNetBlas::AdjustVectorOffset(n, inc, block.Offset)]);
}

/// Element 0 of a plain array. One checked access.
template <class T>
auto* array_pointer(const Core::Array<T>& array) {
  return entry_pointer(&array[0]);
}

}  // namespace Tavik::Kernel
