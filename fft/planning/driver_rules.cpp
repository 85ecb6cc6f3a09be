// SPDX-License-Identifier: BSD-3-Clause
#include "fft/planning/driver_rules.h"

#include <algorithm>

namespace qel::fft {
namespace {

constexpr core_int kCached = 1 << 19;
// What the third cache holds comes soon enough, and being asked for too much at once delays it: measured on a
// Zen 4.
constexpr core_int kNear = 1 << 23;

}  // namespace

core_int block_width(core_int dimension, const core_int* n, core_int first_output_stride) {
  if (dimension == 1) return kWidestBlock;
  if (first_output_stride != 1) return 1;
  core_int width = kWidestBlock;
  if (dimension > 2) {
    // Very long lines in one direction only: a narrower block keeps the buffer small.
    const bool long_first = n[1] <= 32 && n[2] <= 32 && n[0] >= 4096;
    const bool long_third = n[0] <= 16 && n[1] <= 16 && n[2] > 2048;
    if (long_first || long_third) width = 4;
  }
  return std::min(width, n[0]);
}

int parallel_axis(core_int dimension, int pass_node) {
  const int last = static_cast<int>(dimension) - 1;
  return pass_node < last ? last : last - 1;
}

bool asks_ahead(core_int transforms, core_int line_bytes) {
  constexpr core_int kShortest = 512, kLongest = 16384;
  return line_bytes >= kShortest && line_bytes <= kLongest && transforms * line_bytes > kNear;
}

bool asks_ahead_of_columns(core_int bytes) { return bytes > kCached; }

core_int first_block(uintptr_t address, core_int element_bytes, core_int count) {
  constexpr core_int kCacheLine = 64, kFewestBlocks = 16;
  const core_int block = 2 * kCacheLine / element_bytes;
  const auto over = static_cast<core_int>(address % kCacheLine);
  const bool cuts = over % element_bytes == 0 && over != 0 && count >= kFewestBlocks * block;
  return cuts ? (kCacheLine - over) / element_bytes : std::min(block, count);
}

}  // namespace qel::fft
