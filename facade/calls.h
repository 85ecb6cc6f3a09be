// SPDX-License-Identifier: BSD-3-Clause
// From data blocks, arrays and values to what numeric entries take: pointers of their element types. Every
// pointer into an array is one checked access.
#pragma once

#include <algorithm>
#include <cstddef>
#include <memory>
#include <type_traits>

#include "facade/entries.h"
#include "qel/types.h"
#include "tavik/kernel/dot_net_blas.h"

// Overloads for the element types, from one text.
#define TAVIK_FOR_REALS(DEFINE) DEFINE(double) DEFINE(float)
#define TAVIK_FOR_COMPLEX(DEFINE) DEFINE(DoubleComplex) DEFINE(FloatComplex)
#define TAVIK_FOR_ALL(DEFINE) TAVIK_FOR_REALS(DEFINE) TAVIK_FOR_COMPLEX(DEFINE)

namespace Tavik::Kernel {

// The entries' view of an element: complex numbers are the same bytes as the core's pairs.
static_assert(sizeof(Core::DoubleComplex) == sizeof(_QEL_Complex16) &&
              sizeof(Core::FloatComplex) == sizeof(_QEL_Complex8));
template <class P>
auto* entry_pointer(P* p) {
  using T = std::remove_const_t<P>;
  if constexpr (is_complex<T>) {
    using Pair = std::conditional_t<std::is_same_v<T, Core::DoubleComplex>, _QEL_Complex16, _QEL_Complex8>;
    return reinterpret_cast<std::conditional_t<std::is_const_v<P>, const Pair, Pair>*>(p);
  } else {
    return p;
  }
}

/// Values go to entries by their address, pointers as they are.
template <class A>
auto entry_argument(const A& argument) {
  if constexpr (std::is_pointer_v<A>) {
    return entry_pointer(argument);
  } else if constexpr (std::is_null_pointer_v<A>) {
    return nullptr;
  } else {
    return entry_pointer(&argument);
  }
}

/// Calls an entry with these arguments.
template <class Entry, class... A>
auto call(Entry* entry, const A&... arguments) {
  return entry(entry_argument(arguments)...);
}
/// The same for an entry with info, which comes last, and is the result.
template <class Entry, class... A>
int call_info(Entry* entry, const A&... arguments) {
  int info = 0;
  entry(entry_argument(arguments)..., &info);
  return info;
}

/// Index arithmetic wraps, as that of the managed callers does.
inline int moved_offset(int offset, int steps, int stride) {
  return static_cast<int>(static_cast<unsigned>(offset) +
                          static_cast<unsigned>(steps) * static_cast<unsigned>(stride));
}

/// The element with the lowest address of the vector (n, block, inc), which is what an entry takes together
/// with the stride as it stands. offset is added after the adjustment.
template <class T>
T* vector_pointer(int n, const Core::DataBlock<T>& block, int inc, int offset = 0) {
  return &block.Data[offset + DotNetBlas::AdjustVectorOffset(n, inc, block.Offset)];
}
/// The same for column j of a matrix, whose elements lie rowStride apart.
template <class T>
T* column_pointer(int rows, const Core::DataBlock<T>& block, int j, int rowStride, int colStride,
                  int offset = 0) {
  const int start = moved_offset(block.Offset, j, colStride) + offset;
  return &block.Data[DotNetBlas::AdjustVectorOffset(rows, rowStride, start)];
}
/// The first element of a block, with no adjustment.
template <class T>
T* block_pointer(const Core::DataBlock<T>& block) {
  return &block.Data[block.Offset];
}
/// The first element of a block that an entry may leave unused: null for a block without storage.
template <class T>
T* optional_pointer(const Core::DataBlock<T>& block) {
  return block.Data.Length() == 0 ? nullptr : block_pointer(block);
}
/// Element 0 of a plain array.
template <class T>
T* array_pointer(const Core::Array<T>& array) {
  return &array[0];
}

/// The sum of x_k y_k.
template <class T>
T dot_product(int n, const T* x, int incx, const T* y, int incy) {
  if constexpr (is_complex<T>) {
    T result(0, 0);
    call(entries<T>::dotu, &result, n, x, incx, y, incy);
    return result;
  } else {
    return call(entries<T>::dot, n, x, incx, y, incy);
  }
}
/// The sum of conj(x_k) y_k.
template <class T>
T conjugated_dot(int n, const T* x, int incx, const T* y, int incy) {
  T result(0, 0);
  call(entries<T>::dotc, &result, n, x, incx, y, incy);
  return result;
}

/// Scratch of size elements, at least one; its values are not set.
template <class T>
class workspace {
 public:
  explicit workspace(std::ptrdiff_t size)
      : cells_(std::make_unique_for_overwrite<T[]>(
            static_cast<std::size_t>(std::max<std::ptrdiff_t>(size, 1)))) {}
  operator T*() const { return cells_.get(); }
  T* get() const { return cells_.get(); }

 private:
  std::unique_ptr<T[]> cells_;
};

inline double real_part(double v) { return v; }
inline float real_part(float v) { return v; }
template <class R>
R real_part(Core::Complex<R> v) {
  return v.Real;
}

/// The info of run(work, lwork) with work space of the size that run(work, -1) asks for; what the query
/// returns is not looked at.
template <class T, class Run>
int with_best_work(const Run& run) {
  T size{};
  run(&size, -1);
  const int lwork = static_cast<int>(real_part(size));
  const workspace<T> work(lwork);
  return run(work.get(), lwork);
}

/// Pivots are zero-based between calls and one-based inside one. The array is lent to run() in the core's
/// form.
template <class Run>
auto with_core_indices(const Core::Array<int>& indices, const Run& run) {
  struct loan {
    const Core::Array<int>& lent;
    explicit loan(const Core::Array<int>& array) : lent(array) { DotNetBlas::AdjustIndicesUp(lent); }
    ~loan() { DotNetBlas::AdjustIndicesDown(lent); }
  };
  const loan during(indices);
  return run();
}
/// Pivots that a call has written go from the core's form to the facade's.
inline int with_new_indices(const Core::Array<int>& indices, int info) {
  DotNetBlas::AdjustIndicesDown(indices);
  return info;
}

}  // namespace Tavik::Kernel
