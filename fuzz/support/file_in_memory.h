// SPDX-License-Identifier: BSD-3-Clause
// A file of given bytes that is on no disk, for readers that want a path.
#pragma once

#include <sys/mman.h>
#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <string>

namespace qel::fuzz {

class file_in_memory {
 public:
  file_in_memory(const uint8_t* data, size_t size) : descriptor_(memfd_create("fuzz", 0)) {
    if (descriptor_ < 0 || write(descriptor_, data, size) != static_cast<ssize_t>(size)) std::abort();
  }
  ~file_in_memory() { close(descriptor_); }
  file_in_memory(const file_in_memory&) = delete;
  file_in_memory& operator=(const file_in_memory&) = delete;
  static constexpr const char* folder() { return "/proc/self/fd"; }
  std::string name() const { return std::to_string(descriptor_); }
  std::string path() const { return std::string(folder()) + "/" + name(); }

 private:
  int descriptor_;
};

}  // namespace qel::fuzz
