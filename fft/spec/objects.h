// SPDX-License-Identifier: BSD-3-Clause
// Objects in the service's memory.
#pragma once

#include <new>

#include "service/serv.h"

namespace qel::fft {

/// An object with its fields zero; null if memory is out.
template <class T>
T* make_object() {
  void* memory = serv_aligned_malloc(sizeof(T), 64);
  return memory == nullptr ? nullptr : new (memory) T{};
}
template <class T>
void free_object(T* object) {
  if (object == nullptr) return;
  object->~T();
  serv_aligned_free(object);
}

}  // namespace qel::fft
