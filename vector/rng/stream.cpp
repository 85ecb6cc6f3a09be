// SPDX-License-Identifier: BSD-3-Clause
// The life of a stream.
#include "vector/rng/stream.h"

#include "service/serv.h"

namespace qel {

int check_stream(const stream_head* stream) {
  if (stream == nullptr) return QEL_RNG_NULL_STREAM;
  return stream->marker == kStreamMarker ? QEL_RNG_OK : QEL_RNG_NOT_A_STREAM;
}

int new_stream(stream_head** stream, int brng, uint32_t seed) {
  constexpr int kAlignment = 32;
  if (stream == nullptr) return QEL_RNG_NULL_STREAM;
  const generator_row* row = find_generator(brng);
  if (row == nullptr) return QEL_RNG_INVALID_GENERATOR;
  auto* made = static_cast<stream_head*>(serv_aligned_malloc(row->state_size, kAlignment));
  if (made == nullptr) return QEL_RNG_NO_MEMORY;
  made->brng = brng;
  made->chain = nullptr;
  made->marker = kStreamMarker;
  const int status = row->init(0, made, 1, &seed);
  if (status < 0) {
    serv_aligned_free(made);
    return status;
  }
  *stream = made;
  return status;
}

int delete_stream(stream_head** stream) {
  if (stream == nullptr) return QEL_RNG_NULL_STREAM;
  if (const int status = check_stream(*stream)) return status;
  for (stream_block* block = (*stream)->chain; block != nullptr;) {
    stream_block* next = block->next;
    serv_aligned_free(block);
    block = next;
  }
  (*stream)->marker = 0;  // so that a second delete through a copy of the handle has a chance to be seen
  serv_aligned_free(*stream);
  *stream = nullptr;
  return QEL_RNG_OK;
}

}  // namespace qel
