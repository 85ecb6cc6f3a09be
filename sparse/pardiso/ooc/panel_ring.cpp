// SPDX-License-Identifier: BSD-3-Clause
#include <algorithm>

#include "sparse/pardiso/ooc/panel_files.h"

namespace qel::pardiso {

namespace {

/// Panels start on a cache line.
constexpr int64_t kLine = 64;

}  // namespace

bool panel_ring::allocate(int supernodes, int64_t bytes, memory_account& account) {
  first_ = latest_ = -1;
  if (!entries_.allocate(account, supernodes, block_fact_lu - 1) ||
      !pins_.allocate(account, supernodes, block_fact_lu - 2) ||
      !room_.allocate(account, std::max<int64_t>(bytes, 0) / kLine * kLine, block_fact_lu - 3)) {
    return false;
  }
  std::fill(entries_.begin(), entries_.end(), entry{-1, 0, -1, false});
  std::fill(pins_.begin(), pins_.end(), 0);
  return true;
}

char* panel_ring::find(int supernode) {
  if (entries_[supernode].offset < 0 || !entries_[supernode].complete) return nullptr;
  ++pins_[supernode];
  return room_.get() + entries_[supernode].offset;
}

/// Takes the entry behind `before` (-1: the first one) out of the ring.
void panel_ring::remove_behind(int before) {
  int& link = before < 0 ? first_ : entries_[before].next;
  const int gone = link;
  link = entries_[gone].next;
  if (latest_ == gone) latest_ = before;
  entries_[gone].offset = -1;
}

void panel_ring::drop(int supernode) {
  --pins_[supernode];
  int before = -1;
  for (int e = first_; e != supernode; e = entries_[e].next) before = e;
  remove_behind(before);
}

char* panel_ring::place(int supernode, int64_t bytes) {
  const int64_t wanted = (bytes + kLine - 1) / kLine * kLine;
  if (wanted > room_.size() || entries_[supernode].offset >= 0) return nullptr;
  int before = latest_;
  int64_t at = before < 0 ? 0 : entries_[before].offset + entries_[before].bytes;
  for (bool wrapped = before < 0;;) {
    if (at + wanted > room_.size()) {
      if (wrapped) return nullptr;
      wrapped = true;
      before = -1;
      at = 0;
    }
    const int next = before < 0 ? first_ : entries_[before].next;
    if (next < 0 || entries_[next].offset >= at + wanted) break;
    if (pins_[next] > 0) {
      before = next;
      at = entries_[next].offset + entries_[next].bytes;
    } else {
      remove_behind(before);
    }
  }
  int& link = before < 0 ? first_ : entries_[before].next;
  entries_[supernode] = {at, wanted, link, false};
  link = supernode;
  latest_ = supernode;
  pins_[supernode] = 1;
  return room_.get() + at;
}

}  // namespace qel::pardiso
