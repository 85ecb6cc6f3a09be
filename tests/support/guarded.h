// SPDX-License-Identifier: BSD-3-Clause
// A buffer between two pages that can't be touched: an access past its end faults at once, one before its
// start too when the buffer fills its pages from the front.
#pragma once

#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <new>
#include <vector>

namespace qel::test {

/// size elements of T whose last byte lies as near to the page that follows as the start's offset from a
/// 16-byte boundary allows (misalignment, in bytes, 0..15).
template <class T>
class guarded {
 public:
  explicit guarded(std::size_t size, std::size_t misalignment = 0) : size_(size) {
    const auto page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    const std::size_t bytes = size * sizeof(T);
    mapped_ = (bytes + 32 + page - 1) / page * page + 2 * page;
    void* map = mmap(nullptr, mapped_, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (map == MAP_FAILED) throw std::bad_alloc();
    map_ = static_cast<char*>(map);
    mprotect(map_ + page, mapped_ - 2 * page, PROT_READ | PROT_WRITE);
    std::size_t start = mapped_ - page - bytes;
    while (start % 16 != misalignment) --start;
    data_ = reinterpret_cast<T*>(map_ + start);
  }
  ~guarded() { munmap(map_, mapped_); }
  guarded(const guarded&) = delete;
  guarded& operator=(const guarded&) = delete;
  T* data() { return data_; }
  std::size_t size() const { return size_; }
  void assign(const std::vector<T>& values) {
    // Bytes, because a misaligned T can't be assigned to.
    std::copy_n(reinterpret_cast<const char*>(values.data()), std::min(size_, values.size()) * sizeof(T),
                reinterpret_cast<char*>(data_));
  }

 private:
  std::size_t size_, mapped_;
  char* map_;
  T* data_;
};

}  // namespace qel::test
