// SPDX-License-Identifier: BSD-3-Clause
// The tables of basic generators, of which one is here: R250.
#include <algorithm>
#include <iterator>

#include "service/largest_cache.h"
#include "vector/rng/stream.h"
#include "vector/vml/rules.h"
#include "vector/vml/vector_rows.h"

namespace qel {
namespace {

constexpr int kSkipAheadUnsupported = -1002, kLeapfrogUnsupported = -1003, kBadMethod = -2;
constexpr int kSkipAhead = 1, kLeapfrog = 2;
constexpr double kTwoToMinus32 = 1 / 4294967296.0;

r250_register& register_of(stream_head* stream) { return reinterpret_cast<r250_stream*>(stream)->state; }

/// The words of the seed, or a linear congruential sequence from one seed that the recurrence alone would
/// leave linearly dependent: 32 words get a diagonal of ones.
int r250_init(int method, stream_head* stream, int seed_count, const uint32_t* seeds) {
  if (method == kSkipAhead) return kSkipAheadUnsupported;
  if (method == kLeapfrog) return kLeapfrogUnsupported;
  if (method != 0) return kBadMethod;
  r250_register& state = register_of(stream);
  if (seed_count >= kR250Words) {
    std::copy_n(seeds, kR250Words, state.x);
  } else {
    uint32_t word = seed_count > 0 && seeds[0] != 0 ? seeds[0] : 1;
    for (uint32_t& x : state.x) x = word *= 69069u;
    for (int k = 0; k < 32; ++k) {
      uint32_t& x = state.x[3 + 7 * k];
      x = (x & (0xffffffffu >> k)) | (0x80000000u >> k);
    }
  }
  state.p = 0;
  state.q = kR250Lag;
  return QEL_RNG_OK;
}

constinit bind_slot<r250_fill_kernel> fill_slot{nullptr};

int r250_fill_double(stream_head* stream, int n, double* r, double a, double b) {
  r250_fill_kernel* kernel = fill_slot.load(std::memory_order_relaxed);
  if (kernel == nullptr) {
    kernel = choose_kernel(kR250Fill);
    fill_slot.store(kernel, std::memory_order_relaxed);
  }
  const bool streamed = n >= kLongFill && stores_past_caches({serv_cpu_type(), 1.0 * sizeof(double) * n,
                                                              largest_native_cache(), false, r});
  kernel(register_of(stream), n, r, a, (b - a) * kTwoToMinus32, streamed);
  return QEL_RNG_OK;
}

/// Numbers of another kind, by way of doubles on the stack; make(number) is exact for words of 32 bits.
template <class T, class Make>
int r250_fill_from_words(stream_head* stream, int n, T* r, const Make& make) {
  constexpr int kPiece = 512;
  double word[kPiece];
  for (int done = 0; done < n; done += kPiece) {
    const int piece = std::min(kPiece, n - done);
    r250_fill_double(stream, piece, word, 0, 4294967296.0);
    std::transform(word, word + piece, r + done, make);
  }
  return QEL_RNG_OK;
}

int r250_fill_float(stream_head* stream, int n, float* r, float a, float b) {
  const double scale = (static_cast<double>(b) - a) * kTwoToMinus32;
  return r250_fill_from_words(stream, n, r, [=](double w) { return static_cast<float>(a + w * scale); });
}

int r250_fill_int(stream_head* stream, int n, uint32_t* r) {
  return r250_fill_from_words(stream, n, r, [](double w) { return static_cast<uint32_t>(w); });
}

// A generator's number is its place plus 1, in the bits from 20 up; the bits below number its sub-streams.
// Rows without functions keep the places of generators that are not here.
constexpr int kNumberShift = 20, kSubstreamMask = (1 << kNumberShift) - 1;
constexpr generator_row kAbsent{};
constexpr generator_row kGenerators[] = {
    kAbsent,
    {sizeof(r250_stream), 252, 1, 4, 32, 1, r250_init, r250_fill_float, r250_fill_double, r250_fill_int},
};
// Ids below 0x100000 are places in a table of their own, in which those from 4 to 276 share one.
constexpr generator_row kSecondTable[] = {kAbsent, kAbsent, kAbsent, kAbsent, kAbsent};
constexpr int kSharedPlace = 4, kLastShared = 276;

}  // namespace

bool is_abstract_generator(int brng) { return brng == 0xa00000 || brng == 0xb00000 || brng == 0xc00000; }

const generator_row* find_generator(int brng) {
  const generator_row* row = nullptr;
  int substream = 0;
  if (brng < 0) return nullptr;
  if (brng <= kSubstreamMask) {
    const int place = brng >= kSharedPlace && brng <= kLastShared ? kSharedPlace : brng;
    if (place < static_cast<int>(std::size(kSecondTable))) row = &kSecondTable[place];
  } else {
    const int place = (brng >> kNumberShift) - 1;
    substream = brng & kSubstreamMask;
    if (place < static_cast<int>(std::size(kGenerators))) row = &kGenerators[place];
  }
  return row != nullptr && row->init != nullptr && substream < row->substreams ? row : nullptr;
}

}  // namespace qel
