// SPDX-License-Identifier: BSD-3-Clause
// The managed rectangular array of the class library: rows of equal length, one after the other.
#pragma once

#include "tavik/core/array.h"

namespace Tavik::Core {

/// Array2D<T>: a copy is another handle to the same elements. Element access is checked.
template <class T>
class Array2D {
 public:
  Array2D() = default;
  /// Zeros. Throws std::length_error if a size is negative.
  Array2D(int rows, int columns) : elements_(Checked(rows, columns)), rows_(rows), columns_(columns) {}

  /// The sizes.
  int Rows() const { return rows_; }
  int Columns() const { return columns_; }
  /// Element (row, column). Throws std::out_of_range outside the array.
  T& operator()(int row, int column) const {
    if (row < 0 || row >= rows_ || column < 0 || column >= columns_) [[unlikely]] {
      throw std::out_of_range("indices " + std::to_string(row) + ", " + std::to_string(column) +
                              " are outside an array of " + std::to_string(rows_) + " x " +
                              std::to_string(columns_));
    }
    return elements_[row * columns_ + column];
  }

 private:
  static int Checked(int rows, int columns) {
    const long long count = static_cast<long long>(rows) * columns;
    if (rows < 0 || columns < 0 || count > 0x7FFFFFFF)
      throw std::length_error("sizes of a rectangular array");
    return static_cast<int>(count);
  }
  Array<T> elements_;
  int rows_ = 0, columns_ = 0;
};

}  // namespace Tavik::Core
