// SPDX-License-Identifier: BSD-3-Clause
// A vector or matrix buffer with poisoned cells around it, so that a write outside shows.
#pragma once

#include <gtest/gtest.h>

#include <cstddef>
#include <cstring>
#include <vector>

namespace qel::test {

/// size elements of T between guard zones of 64 elements; starts at the given misalignment in bytes from a
/// 64-byte boundary, which must be a multiple of alignof(T).
template <class T>
class poisoned {
 public:
  explicit poisoned(std::size_t size, std::size_t misalignment = 0)
      : bytes_((size + 2 * kGuard) * sizeof(T) + 128, kPoison), size_(size), misalignment_(misalignment) {
    auto base = reinterpret_cast<std::uintptr_t>(bytes_.data()) + kGuard * sizeof(T);
    base = (base + 63) / 64 * 64 + misalignment;
    data_ = reinterpret_cast<T*>(base);
    std::memset(static_cast<void*>(data_), 0, size * sizeof(T));
  }
  poisoned(const poisoned& from) : poisoned(from.size_, from.misalignment_) {
    std::memcpy(static_cast<void*>(data_), from.data_, size_ * sizeof(T));
  }
  poisoned& operator=(const poisoned& from) {
    if (this == &from) return *this;
    poisoned copy(from);
    bytes_.swap(copy.bytes_);  // the bytes stay where they are
    size_ = copy.size_;
    misalignment_ = copy.misalignment_;
    data_ = copy.data_;
    return *this;
  }
  T* data() { return data_; }
  std::size_t size() const { return size_; }
  T& operator[](std::size_t i) { return data_[i]; }
  T* begin() { return data_; }
  T* end() { return data_ + size_; }
  /// True if no byte outside the buffer was written.
  bool intact() const {
    const auto* first = reinterpret_cast<const unsigned char*>(data_);
    const auto* last = reinterpret_cast<const unsigned char*>(data_ + size_);
    for (const unsigned char& byte : bytes_) {
      if ((&byte < first || &byte >= last) && byte != kPoison) return false;
    }
    return true;
  }

 private:
  static constexpr std::size_t kGuard = 64;
  static constexpr unsigned char kPoison = 0xA5;
  std::vector<unsigned char> bytes_;
  std::size_t size_, misalignment_;
  T* data_;
};

}  // namespace qel::test
