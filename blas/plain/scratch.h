// SPDX-License-Identifier: BSD-3-Clause
// Work memory of one scope, from the calling thread's cache of buffers, on a cache line or coarser. It may be
// refused: every user has a path without it.
#pragma once

#include <stddef.h>

#include "service/serv.h"

namespace qel::plain {

template <class T>
class scratch {
 public:
  explicit scratch(core_int elements, int alignment = 64)
      : data_(static_cast<T*>(serv_malloc(static_cast<size_t>(elements) * sizeof(T), alignment))) {}
  ~scratch() { serv_free(data_); }
  scratch(const scratch&) = delete;
  scratch& operator=(const scratch&) = delete;
  /// Null if there was no memory.
  T* get() const { return data_; }

 private:
  T* data_;
};

}  // namespace qel::plain
