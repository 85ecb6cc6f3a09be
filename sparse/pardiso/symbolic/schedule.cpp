// SPDX-License-Identifier: BSD-3-Clause
#include "sparse/pardiso/symbolic/schedule.h"

#include <algorithm>
#include <numeric>

namespace qel::pardiso {

namespace {

/// Subtrees of at most this part of a thread's share can be spread evenly.
constexpr int kSubtreesPerThread = 8;
constexpr int kTop = -1;

/// The subtrees of one thread; their supernodes in ascending order.
struct stream {
  double given, done;
  int next;
};

stream& least(stream* streams, int threads, double stream::*load) {
  return *std::min_element(streams, streams + threads,
                           [&](const stream& a, const stream& b) { return a.*load < b.*load; });
}

}  // namespace

bool schedule_supernodes(int supernodes, const int* parent, const double* work, int threads,
                         memory_account& account, int* order) {
  std::iota(order, order + supernodes, 0);
  if (threads < 2) return true;
  block<double> below;                // work of the whole subtree
  block<int> owner, subtrees, links;  // owner: the subtree's root, later its stream
  block<stream> streams;
  if (!below.allocate(account, supernodes, block_struc_s2) ||
      !owner.allocate(account, supernodes, block_struc_s2 - 1) ||
      !subtrees.allocate(account, supernodes, block_struc_s2 - 2) ||
      !links.allocate(account, supernodes, block_struc_s2 - 3) ||
      !streams.allocate(account, threads, block_struc_s2 - 4)) {
    return false;
  }
  std::copy(work, work + supernodes, below.begin());
  for (int s = 0; s < supernodes; ++s) {
    if (parent[s] >= 0) below[parent[s]] += below[s];
  }
  const double heavy = std::accumulate(work, work + supernodes, 0.0) / (kSubtreesPerThread * threads);
  int count = 0;
  for (int s = supernodes - 1; s >= 0; --s) {
    const bool under_top = parent[s] < 0 || owner[parent[s]] == kTop;
    owner[s] = !under_top ? owner[parent[s]] : below[s] > heavy ? kTop : s;
    if (owner[s] == s) subtrees[count++] = s;
  }

  // Heaviest first to whom has least.
  std::sort(subtrees.begin(), subtrees.begin() + count,
            [&](int a, int b) { return below[a] > below[b] || (below[a] == below[b] && a < b); });
  std::fill(streams.begin(), streams.end(), stream{0, 0, -1});
  int* const stream_of = links.get();  // of a subtree, by its root
  for (int i = 0; i < count; ++i) {
    stream& lightest = least(streams.get(), threads, &stream::given);
    lightest.given += below[subtrees[i]];
    stream_of[subtrees[i]] = static_cast<int>(&lightest - streams.get());
  }
  for (int s = supernodes - 1; s >= 0; --s) {
    if (owner[s] != kTop) owner[s] = stream_of[owner[s]];
  }
  int waiting = 0;
  for (int s = supernodes - 1; s >= 0; --s) {
    if (owner[s] == kTop) continue;
    links[s] = streams[owner[s]].next;
    streams[owner[s]].next = s;
    ++waiting;
  }

  int placed = 0;
  for (; placed < waiting; ++placed) {
    stream* chosen = nullptr;
    for (stream& each : streams) {
      if (each.next >= 0 && (chosen == nullptr || each.done < chosen->done)) chosen = &each;
    }
    const int s = chosen->next;
    order[placed] = s;
    chosen->done += work[s];
    chosen->next = links[s];
  }
  for (int s = 0; s < supernodes; ++s) {
    if (owner[s] == kTop) order[placed++] = s;
  }
  return true;
}

}  // namespace qel::pardiso
