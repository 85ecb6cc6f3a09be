// SPDX-License-Identifier: BSD-3-Clause
// Text into a caller's buffer: as much as fits, always ended by 0.
#pragma once

#include <cstdarg>
#include <cstddef>
#include <cstdio>

namespace qel::fft {

class text {
 public:
  text(char* buffer, size_t size) : buffer_(buffer), size_(size) {
    if (size > 0) buffer[0] = '\0';
  }
  [[gnu::format(printf, 2, 3)]] void add(const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    add_list(format, arguments);
    va_end(arguments);
  }
  void add_list(const char* format, va_list arguments) {
    const size_t left = used_ < size_ ? size_ - used_ : 0;
    const int count = std::vsnprintf(left > 0 ? buffer_ + used_ : nullptr, left, format, arguments);
    if (count > 0) used_ += static_cast<size_t>(count);
  }
  size_t used() const { return used_; }

 private:
  char* buffer_;
  size_t size_;
  size_t used_ = 0;
};

}  // namespace qel::fft
