// SPDX-License-Identifier: BSD-3-Clause
// Which finished supernodes wait to update which others.
#pragma once

#include <algorithm>

#include "sparse/pardiso/numeric/supernode_worker.h"

namespace qel::pardiso {

/// For one thread: a finished supernode is in the list of the next one that it updates.
class linked_updates {
 public:
  bool allocate(const structure& form, memory_account& account) {
    form_ = &form;
    const int64_t count = form.supernodes;
    if (!head_.allocate(account, count, block_up_uplen) ||
        !link_.allocate(account, count, block_up_uplen - 1) ||
        !length_.allocate(account, count, block_up_uplen - 2) ||
        !batch_.allocate(account, count, block_up_uplen - 3)) {
      return false;
    }
    std::fill(head_.begin(), head_.end(), -1);
    return true;
  }
  /// All updates of a supernode, by the numbers of their sources.
  int take(int supernode) {
    int count = 0;
    for (int k = head_[supernode]; k >= 0; k = link_[k]) batch_[count++] = {k, length_[k]};
    std::sort(batch_.begin(), batch_.begin() + count,
              [](const update_source& a, const update_source& b) { return a.supernode < b.supernode; });
    return count;
  }
  const update_source* batch() const { return batch_.get(); }
  /// After the updates: every source goes on, and the supernode itself starts.
  void advance(int supernode, int count) {
    for (int i = 0; i < count; ++i) enter(batch_[i].supernode, batch_[i].from, form_->xsup[supernode + 1]);
    enter(supernode, form_->xsup[supernode + 1] - form_->xsup[supernode], 0);
  }

 private:
  void enter(int source, int from, int end) {
    const supernode_shape k = shape_of(*form_, source);
    while (from < k.rows && k.list[from] < end) ++from;
    if (from == k.rows) return;
    const int target = form_->snode[k.list[from]];
    length_[source] = from;
    link_[source] = head_[target];
    head_[target] = source;
  }

  const structure* form_ = nullptr;
  block<int> head_, link_, length_;
  block<update_source> batch_;
};

/// For several threads: a finished supernode is pushed on the lists of all that it updates. All calls after
/// allocate() hold the lock that the threads share.
class pushed_updates {
 public:
  bool allocate(const structure& form, memory_account& account) {
    form_ = &form;
    const int64_t count = form.supernodes;
    if (!head_.allocate(account, count, block_up_uplen) ||
        !nmod_.allocate(account, count, block_up_uplen - 1) ||
        !entries_.allocate(account, std::max<int64_t>(form.updates, 1), block_up_uplen - 2)) {
      return false;
    }
    std::fill(head_.begin(), head_.end(), -1);
    std::fill(nmod_.begin(), nmod_.end(), 0);
    for (int k = 0; k < form.supernodes; ++k) {
      for_each_target(k, [&](int target, int) { ++nmod_[target]; });
    }
    return true;
  }
  /// Takes what is ready; batch has room for a source per supernode. waits: others are still to come.
  int take(int supernode, update_source* batch, bool& waits) {
    int count = 0;
    for (int64_t e = head_[supernode]; e >= 0; e = entries_[e].next) batch[count++] = entries_[e].source;
    head_[supernode] = -1;
    waits = nmod_[supernode] > 0;
    return count;
  }
  void push(int supernode) {
    for_each_target(supernode, [&](int target, int from) {
      entries_[used_] = {{supernode, from}, head_[target]};
      head_[target] = used_++;
      --nmod_[target];
    });
  }

 private:
  struct entry {
    update_source source;
    int64_t next;
  };
  template <class Visit>
  void for_each_target(int source, const Visit& visit) const {
    const supernode_shape k = shape_of(*form_, source);
    for (int from = k.width, last = -1; from < k.rows; ++from) {
      const int target = form_->snode[k.list[from]];
      if (target != last) visit(target, from);
      last = target;
    }
  }

  const structure* form_ = nullptr;
  block<int64_t> head_;
  block<int> nmod_;
  block<entry> entries_;
  int64_t used_ = 0;
};

}  // namespace qel::pardiso
