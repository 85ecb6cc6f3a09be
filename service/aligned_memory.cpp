// SPDX-License-Identifier: BSD-3-Clause
// Aligned memory without a cache. The word just below an aligned address holds the block's own address.
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <limits>

#include "service/serv.h"

namespace qel {

void* (*serv_platform_malloc)(size_t) = std::malloc;
void* (*serv_platform_calloc)(size_t, size_t) = std::calloc;
void* (*serv_platform_realloc)(void*, size_t) = std::realloc;
void (*serv_platform_free)(void*) = std::free;

namespace {

constexpr size_t kWord = sizeof(void*);

void*& block_word(void* pointer) { return static_cast<void**>(pointer)[-1]; }

/// The aligned address inside a block that has room for padding and the word, with the word written.
void* place(void* block, size_t padding) {
  uintptr_t address = reinterpret_cast<uintptr_t>(block) + padding + kWord;
  if (padding != 0) address -= address % padding;
  void* pointer = reinterpret_cast<void*>(address);
  block_word(pointer) = block;
  return pointer;
}

size_t padding_for(int alignment) {
  if (alignment < 8) return 0;
  const auto wanted = static_cast<size_t>(alignment);
  return (wanted & (wanted - 1)) == 0 ? wanted : 32;
}

}  // namespace

void* serv_aligned_malloc(size_t size, int alignment) {
  const size_t padding = padding_for(alignment);
  if (size == 0 || size > std::numeric_limits<size_t>::max() - padding - kWord) return nullptr;
  void* block = serv_platform_malloc(size + padding + kWord);
  return block != nullptr ? place(block, padding) : nullptr;
}

void* serv_aligned_calloc(size_t count, size_t size, int alignment) {
  size_t bytes;
  if (__builtin_mul_overflow(count, size, &bytes)) return nullptr;
  void* pointer = serv_aligned_malloc(bytes, alignment);
  if (pointer != nullptr) std::memset(pointer, 0, bytes);
  return pointer;
}

void* serv_aligned_realloc(void* pointer, size_t size) {
  constexpr size_t kFresh = 136;  // alignment to 128 and the word
  if (pointer == nullptr) {
    if (size > std::numeric_limits<size_t>::max() - kFresh) return nullptr;
    void* block = serv_platform_malloc(size + kFresh);
    return block != nullptr ? place(block, kFresh - kWord) : nullptr;
  }
  void* block = block_word(pointer);
  if (block == nullptr) return nullptr;
  const auto distance = static_cast<size_t>(static_cast<char*>(pointer) - static_cast<char*>(block));
  if (size > std::numeric_limits<size_t>::max() - distance) return nullptr;
  void* moved = serv_platform_realloc(block, distance + size);
  if (moved == nullptr) return nullptr;
  void* result = static_cast<char*>(moved) + distance;
  block_word(result) = moved;
  return result;
}

void serv_aligned_free(void* pointer) {
  if (pointer == nullptr) return;
  void* block = block_word(pointer);
  if (block != nullptr) serv_platform_free(block);
}

}  // namespace qel
