// SPDX-License-Identifier: BSD-3-Clause
// 64-bit copies of the callers' integer arrays. Copies live for one call and come from the calling thread's
// cache of work memory.
#include "entry/wide_ints.h"

#include <algorithm>

#include "service/serv.h"

namespace qel::entry {
namespace {

constexpr int kAlignment = 128;

}  // namespace

wide_ints::wide_ints(const int* from, int* back, core_int length) : back_(back), length_(length) {
  const auto elements = static_cast<std::size_t>(std::max<core_int>(length, 1));
  data_ = static_cast<core_int*>(serv_malloc(elements * sizeof(core_int), kAlignment));
  if (data_ && from) {
    for (core_int i = 0; i < length; ++i) data_[i] = from[i];
  }
}

wide_ints::~wide_ints() { serv_free(data_); }

void wide_ints::write_back() const {
  if (!back_) return;
  for (core_int i = 0; i < length_; ++i) back_[i] = static_cast<int>(data_[i]);
}

}  // namespace qel::entry
