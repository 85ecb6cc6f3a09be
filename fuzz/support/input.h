// SPDX-License-Identifier: BSD-3-Clause
// A fuzzer's bytes as numbers and choices. Past the end everything is 0, so that each input means something.
#pragma once

#include <algorithm>
#include <climits>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);

namespace qel::fuzz {

/// Ends the process where what the library promises does not hold; also in builds without assertions.
inline void promise(bool holds, const char* what) {
  if (holds) return;
  std::fprintf(stderr, "broken promise: %s\n", what);
  std::abort();
}

class input {
 public:
  input(const uint8_t* data, size_t size) : at_(data), end_(data + size) {}
  bool empty() const { return at_ == end_; }
  int byte() { return at_ == end_ ? 0 : *at_++; }
  /// One of low .. high, of a range below 256.
  int in_range(int low, int high) { return low + byte() % (high - low + 1); }
  template <size_t kCount, class T>
  const T& one_of(const T (&values)[kCount]) {
    return values[static_cast<size_t>(byte()) % kCount];
  }
  template <class T>
  T raw() {
    T value{};
    const size_t there = std::min(sizeof(T), static_cast<size_t>(end_ - at_));
    if (there > 0) std::memcpy(&value, at_, there);
    at_ += there;
    return value;
  }
  /// Mostly small, sometimes an extreme, sometimes anything.
  int integer() {
    const int kind = byte();
    constexpr int kExtremes[] = {INT_MIN, INT_MIN + 1, -1, INT_MAX, INT_MAX - 1, 1 << 16, 1 << 30, 46341};
    if (kind < 192) return kind % 32 - 4;
    if (kind < 240) return one_of(kExtremes);
    return raw<int>();
  }
  double number() {
    const int kind = byte();
    constexpr double kSpecial[] = {0.0,
                                   -0.0,
                                   1e-300,
                                   1e300,
                                   -1e300,
                                   5e-324,
                                   std::numeric_limits<double>::infinity(),
                                   -std::numeric_limits<double>::infinity(),
                                   std::numeric_limits<double>::quiet_NaN(),
                                   std::numeric_limits<double>::max(),
                                   -std::numeric_limits<double>::max(),
                                   std::numeric_limits<double>::epsilon()};
    if (kind < 208) return kind % 16 - 4 + (kind / 16) * 0.0625;
    if (kind < 240) return one_of(kSpecial);
    return raw<double>();
  }
  std::string rest() {
    std::string text(reinterpret_cast<const char*>(at_), static_cast<size_t>(end_ - at_));
    at_ = end_;
    return text;
  }

 private:
  const uint8_t *at_, *end_;
};

}  // namespace qel::fuzz
