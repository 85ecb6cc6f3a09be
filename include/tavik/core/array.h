// SPDX-License-Identifier: BSD-3-Clause
// The managed array of the class library, in the form that the facade needs: a handle with a length, whose
// copies share storage.
#pragma once

#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace Tavik::Core {

/// Array<T>: elements 0 .. Length() - 1. A copy is another handle to the same elements. Element access is
/// checked; forming a pointer for a numeric entry is one such access.
template <class T>
class Array {
 public:
  /// The empty array.
  Array() = default;
  /// length zeros. Throws std::length_error if length is negative.
  explicit Array(int length) : Array(std::vector<T>(Checked(length))) {}
  /// Takes over the elements of values.
  Array(std::vector<T> values) {  // NOLINT(google-explicit-constructor): a list of numbers is an array
    auto owner = std::make_shared<std::vector<T>>(std::move(values));
    data_ = owner->data();
    length_ = static_cast<int>(owner->size());
    owner_ = std::move(owner);
  }
  /// A new array of these values.
  Array(std::initializer_list<T> values) : Array(std::vector<T>(values)) {}
  /// An array around length elements of the caller, who keeps them alive; nothing is copied.
  static Array Around(T* elements, int length) {
    Array array;
    array.length_ = static_cast<int>(Checked(length));
    array.data_ = elements;
    return array;
  }

  /// The number of elements.
  int Length() const { return length_; }
  /// Element index. Throws std::out_of_range outside 0 .. Length() - 1.
  T& operator[](int index) const {
    if (index < 0 || index >= length_) [[unlikely]] {
      ThrowOutOfRange(index);
    }
    return data_[index];
  }

 private:
  static std::size_t Checked(int length) {
    if (length < 0) throw std::length_error("negative array length");
    return static_cast<std::size_t>(length);
  }
  [[noreturn]] void ThrowOutOfRange(int index) const {
    throw std::out_of_range("index " + std::to_string(index) + " is outside an array of length " +
                            std::to_string(length_));
  }

  std::shared_ptr<const void> owner_;
  T* data_ = nullptr;
  int length_ = 0;
};

}  // namespace Tavik::Core
