// SPDX-License-Identifier: BSD-3-Clause
// Random streams: their layout, the tables of generators, and what the entries carry out.
#pragma once

#include <stddef.h>
#include <stdint.h>

#include "qel/rng.h"
#include "vector/kernels/vector_kernels.h"

namespace qel {

/// A block of memory that belongs to a stream.
struct stream_block {
  stream_block* next;
};

/// What every stream starts with.
struct stream_head {
  int32_t brng;         ///< generator
  uint8_t marker;       ///< kStreamMarker
  stream_block* chain;  ///< attached blocks
};
inline constexpr uint8_t kStreamMarker = 1;

struct r250_stream {
  stream_head head;
  r250_register state;
};
static_assert(sizeof(r250_stream) == 1024 && offsetof(r250_stream, state) == 16);
static_assert(offsetof(r250_stream, state.p) == 1016 && offsetof(r250_stream, state.q) == 1020);

/// A basic generator. Fills return a status.
struct generator_row {
  uint32_t state_size;     ///< bytes of the stream object
  uint32_t seed_count;     ///< 32-bit seed words that fill the state
  uint32_t includes_zero;  ///< whether a raw word can be 0
  uint32_t word_size;      ///< bytes of a word of state
  uint64_t bits;           ///< significant bits of a raw word
  int substreams;          ///< how many the generator has
  int (*init)(int method, stream_head* stream, int seed_count, const uint32_t* seeds);
  int (*fill_float)(stream_head* stream, int n, float* r, float a, float b);
  int (*fill_double)(stream_head* stream, int n, double* r, double a, double b);
  int (*fill_int)(stream_head* stream, int n, uint32_t* r);
};

/// The row of a generator id; null if there is none.
const generator_row* find_generator(int brng);
/// Ids of abstract streams, which have no generator.
bool is_abstract_generator(int brng);

/// 0 or a status: whether stream is one.
int check_stream(const stream_head* stream);

int new_stream(stream_head** stream, int brng, uint32_t seed);
int delete_stream(stream_head** stream);

/// A status, and the position of the bad argument where there is one to report.
struct checked_status {
  int status, position;
};
checked_status check_uniform(int method, const stream_head* stream, int n, const double* r, double a,
                             double b);
/// n > 0 numbers; arguments are good.
int fill_uniform(int method, stream_head* stream, int n, double* r, double a, double b);

}  // namespace qel
