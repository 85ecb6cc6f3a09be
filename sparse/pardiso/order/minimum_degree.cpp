// SPDX-License-Identifier: BSD-3-Clause
#include "sparse/pardiso/order/minimum_degree.h"

#include <math.h>
#include <string.h>

namespace qel::pardiso {
namespace {

constexpr int kNone = -1;

/// The quotient graph. A node is a variable (a set of unknowns that are still to be eliminated), an element
/// (a clique left by an elimination) or gone. A variable's list holds its elements first, then the variables
/// that no element connects it with; an element's list holds its variables. Lists only ever shrink, apart
/// from those of new elements, which take at most n places: so that a store of all edges and n places is
/// enough.
class quotient_graph {
 public:
  quotient_graph(const minimum_degree_problem& problem, memory_account& account)
      : problem_(problem), n_(problem.g.n), account_(account) {}

  bool allocate();
  void order(int* order, int* class_start);

 private:
  enum kinds : unsigned char { gone, variable, element };

  bool alive_variable(int i) const { return kind_[i] == variable; }
  int class_of(int i) const { return problem_.node_class == nullptr ? 0 : problem_.node_class[i]; }

  void set_aside_dense_nodes();
  void sort_by_class();
  void eliminate_class(int c);
  void emit(int first_of_chain);

  void insert(int i);
  void remove(int i);

  void form_element(int pivot);
  void link_element(int i, int new_element);
  void collect_garbage();

  void update_degrees(int e);
  void measure_elements(int e);
  void prune_and_count(int e, int i);
  void merge_twins(int e);
  bool same_lists(int i, int j) const;
  void append_chain(int to, int from);

  const minimum_degree_problem& problem_;
  const int n_;
  memory_account& account_;

  block<int> store_;
  int64_t store_end_ = 0;
  block<int64_t> at_;       // where a node's list begins
  block<int> length_;       // of the list
  block<int> elements_;     // how many entries of a variable's list are elements
  block<int> size_;         // unknowns of a variable; negative while it is marked as a member of an element
  block<int> degree_;       // bound on a variable's neighbours; an element's size in unknowns
  block<int64_t> stamp_;    // of an element: stamp_now_ + its unknowns outside the element that is looked at
  block<int> next_, prev_;  // degree lists
  block<int> head_;         // by degree
  block<int> chain_, chain_end_;  // nodes that were put together, to be numbered one after the other
  block<int> hash_head_, hash_next_, hash_;
  block<int> round_;  // pivots of this round
  block<int> by_class_, class_first_;
  block<unsigned char> kind_;
  block<bool> listed_;
  int total_ = 0, left_ = 0, least_ = 0, in_lists_ = 0, current_class_ = 0;
  int64_t stamp_now_ = 1;
  int* order_ = nullptr;
  int emitted_ = 0, emitted_unknowns_ = 0;
};

bool quotient_graph::allocate() {
  const graph& g = problem_.g;
  const int64_t edges = g.xadj[n_];
  for (int i = 0; i < n_; ++i) total_ += problem_.weight[i];
  const auto get = [&](auto& array, int64_t count) {
    return array.allocate(account_, count, block_struc_s0);
  };
  // A fifth more than needed, so that garbage is collected seldom.
  if (!get(store_, edges + edges / 5 + n_ + 1) || !get(at_, n_) || !get(length_, n_) || !get(elements_, n_) ||
      !get(size_, n_) || !get(degree_, n_) || !get(stamp_, n_) || !get(next_, n_) || !get(prev_, n_) ||
      !get(head_, total_ + 1) || !get(chain_, n_) || !get(chain_end_, n_) || !get(hash_head_, n_) ||
      !get(hash_next_, n_) || !get(hash_, n_) || !get(round_, n_) || !get(by_class_, n_) ||
      !get(class_first_, problem_.classes + 1) || !get(kind_, n_) || !get(listed_, n_))
    return false;
  memcpy(store_.get(), g.adjncy.get(), static_cast<size_t>(edges) * sizeof(int));
  store_end_ = edges;
  for (int i = 0; i < n_; ++i) {
    at_[i] = g.xadj[i];
    length_[i] = static_cast<int>(g.xadj[i + 1] - g.xadj[i]);
    elements_[i] = 0;
    size_[i] = problem_.weight[i];
    int degree = 0;
    for (int64_t p = g.xadj[i]; p < g.xadj[i + 1]; ++p) degree += problem_.weight[g.adjncy[p]];
    degree_[i] = degree;
    stamp_[i] = 0;
    chain_[i] = kNone;
    chain_end_[i] = i;
    hash_head_[i] = kNone;
    kind_[i] = variable;
    listed_[i] = false;
  }
  for (int d = 0; d <= total_; ++d) head_[d] = kNone;
  return true;
}

void quotient_graph::order(int* order, int* class_start) {
  order_ = order;
  left_ = total_;
  sort_by_class();
  set_aside_dense_nodes();
  for (int c = 0; c < problem_.classes; ++c) {
    class_start[c] = emitted_unknowns_;
    eliminate_class(c);
  }
  class_start[problem_.classes] = emitted_unknowns_;
  for (int i = 0; i < n_; ++i)
    if (length_[i] == kNone) order_[emitted_++] = i;
}

void quotient_graph::set_aside_dense_nodes() {
  const double limit = densest_degree(total_);
  for (int i = 0; i < n_; ++i)
    if (degree_[i] > limit) {
      kind_[i] = gone;
      length_[i] = kNone;
      left_ -= size_[i];
      size_[i] = 0;
    }
}

void quotient_graph::sort_by_class() {
  const int classes = problem_.classes;
  for (int c = 0; c <= classes; ++c) class_first_[c] = 0;
  for (int i = 0; i < n_; ++i) ++class_first_[class_of(i)];
  for (int c = 0, before = 0; c <= classes; ++c) {
    const int count = class_first_[c];
    class_first_[c] = before;
    before += count;
  }
  for (int i = 0; i < n_; ++i) by_class_[class_first_[class_of(i)]++] = i;
  for (int c = classes; c > 0; --c) class_first_[c] = class_first_[c - 1];
  class_first_[0] = 0;
}

/// In rounds: nodes of least degree that don't touch are eliminated one after the other, then the degrees
/// around them are renewed.
void quotient_graph::eliminate_class(int c) {
  current_class_ = c;
  least_ = total_;
  for (int k = class_first_[c + 1] - 1; k >= class_first_[c]; --k)
    if (alive_variable(by_class_[k])) insert(by_class_[k]);
  while (in_lists_ > 0) {
    while (head_[least_] == kNone) ++least_;
    int pivots = 0;
    while (head_[least_] != kNone) {
      const int pivot = head_[least_];
      remove(pivot);
      form_element(pivot);
      round_[pivots++] = pivot;
    }
    for (int k = 0; k < pivots; ++k)
      if (kind_[round_[k]] == element) update_degrees(round_[k]);
    for (int k = 0; k < pivots; ++k) emit(round_[k]);
  }
}

void quotient_graph::emit(int first_of_chain) {
  for (int i = first_of_chain; i != kNone; i = chain_[i]) {
    order_[emitted_++] = i;
    emitted_unknowns_ += problem_.weight[i];
  }
}

void quotient_graph::insert(int i) {
  const int d = degree_[i];
  next_[i] = head_[d];
  prev_[i] = kNone;
  if (head_[d] != kNone) prev_[head_[d]] = i;
  head_[d] = i;
  listed_[i] = true;
  ++in_lists_;
  least_ = std::min(least_, d);
}

void quotient_graph::remove(int i) {
  if (!listed_[i]) return;
  if (next_[i] != kNone) prev_[next_[i]] = prev_[i];
  (prev_[i] == kNone ? head_[degree_[i]] : next_[prev_[i]]) = next_[i];
  listed_[i] = false;
  --in_lists_;
}

/// The pivot's neighbours, through its elements and direct, become the new element's list; its elements are
/// absorbed. The neighbours leave the degree lists until their degrees are renewed.
void quotient_graph::form_element(int pivot) {
  int64_t most = length_[pivot] - elements_[pivot];
  for (int k = 0; k < elements_[pivot]; ++k) most += length_[store_[at_[pivot] + k]];
  if (store_end_ + std::min<int64_t>(most, n_) > store_.size()) collect_garbage();

  const int unknowns = size_[pivot];
  left_ -= unknowns;
  size_[pivot] = -unknowns;
  int members_size = 0;
  const int64_t begin = store_end_;
  int64_t end = begin;
  const auto take = [&](const int* list, int count) {
    for (int k = 0; k < count; ++k) {
      const int i = list[k];
      if (size_[i] <= 0 || kind_[i] != variable) continue;
      members_size += size_[i];
      size_[i] = -size_[i];
      store_[end++] = i;
    }
  };
  for (int k = 0; k < elements_[pivot]; ++k) {
    const int e = store_[at_[pivot] + k];
    if (kind_[e] != element) continue;
    take(store_.get() + at_[e], length_[e]);
    kind_[e] = gone;
  }
  take(store_.get() + at_[pivot] + elements_[pivot], length_[pivot] - elements_[pivot]);
  at_[pivot] = begin;
  length_[pivot] = static_cast<int>(end - begin);
  degree_[pivot] = members_size;
  kind_[pivot] = length_[pivot] == 0 ? gone : element;
  stamp_[pivot] = 0;
  store_end_ = end;
  for (int64_t p = begin; p < end; ++p) {
    remove(store_[p]);
    link_element(store_[p], pivot);
  }
  for (int64_t p = begin; p < end; ++p) size_[store_[p]] = -size_[store_[p]];
}

/// Puts the element into i's list in place of what it covers: absorbed elements, its members, the pivot.
void quotient_graph::link_element(int i, int new_element) {
  int* const list = store_.get() + at_[i];
  int kept = 0;
  for (int k = 0; k < elements_[i]; ++k)
    if (kind_[list[k]] == element) list[kept++] = list[k];
  const int kept_elements = kept;
  for (int k = elements_[i]; k < length_[i]; ++k)
    if (kind_[list[k]] == variable && size_[list[k]] > 0) list[kept++] = list[k];
  // At least one entry went: the first kept variable moves to the end, the element takes its place.
  list[kept] = list[kept_elements];
  list[kept_elements] = new_element;
  elements_[i] = kept_elements + 1;
  length_[i] = kept + 1;
}

/// Moves the lists of what is alive to the front of the store. The first entry of each is kept in at_
/// meanwhile, and the node's number stands in its place.
void quotient_graph::collect_garbage() {
  for (int i = 0; i < n_; ++i) {
    if (kind_[i] == gone || length_[i] <= 0) continue;
    const int64_t begin = at_[i];
    at_[i] = store_[begin];
    store_[begin] = -i - 1;
  }
  int64_t kept = 0;
  for (int64_t p = 0; p < store_end_;) {
    const int found = store_[p];
    if (found >= 0) {
      ++p;
      continue;
    }
    const int i = -found - 1;
    store_[p] = static_cast<int>(at_[i]);
    at_[i] = kept;
    memmove(store_.get() + kept, store_.get() + p, static_cast<size_t>(length_[i]) * sizeof(int));
    kept += length_[i];
    p += length_[i];
  }
  store_end_ = kept;
}

/// Renews the degrees of an element's variables, finds those that have become indistinguishable, and
/// eliminates those that have no other neighbours.
void quotient_graph::update_degrees(int e) {
  int* const members = store_.get() + at_[e];
  int count = 0;
  for (int k = 0; k < length_[e]; ++k)
    if (alive_variable(members[k])) members[count++] = members[k];
  length_[e] = count;
  for (int k = 0; k < count; ++k) {
    const int i = members[k];
    remove(i);
    size_[i] = -size_[i];
  }
  stamp_now_ += total_ + 1;
  measure_elements(e);
  for (int k = 0; k < count; ++k) prune_and_count(e, members[k]);
  merge_twins(e);

  int kept = 0;
  for (int k = 0; k < count; ++k) {
    const int i = members[k];
    if (kind_[i] != variable) continue;
    size_[i] = -size_[i];
    degree_[i] = std::max(0, std::min(degree_[i] + degree_[e] - size_[i], left_ - size_[i]));
    members[kept++] = i;
    if (class_of(i) == current_class_) insert(i);
  }
  length_[e] = kept;
  if (kept == 0) kind_[e] = gone;
}

/// For every element f beside e: how many unknowns of f are not in e.
void quotient_graph::measure_elements(int e) {
  const int* const members = store_.get() + at_[e];
  for (int k = 0; k < length_[e]; ++k) {
    const int i = members[k];
    const int* const list = store_.get() + at_[i];
    for (int p = 0; p < elements_[i]; ++p) {
      const int f = list[p];
      if (f == e || kind_[f] != element) continue;
      if (stamp_[f] < stamp_now_) stamp_[f] = stamp_now_ + degree_[f];
      stamp_[f] += size_[i];  // negative: i is marked
    }
  }
}

/// Member i of e: its list without what is gone or inside e, the bound on its degree outside e, and its hash.
void quotient_graph::prune_and_count(int e, int i) {
  int* const list = store_.get() + at_[i];
  int kept = 0, outside = 0;
  unsigned hash = 0;
  for (int p = 0; p < elements_[i]; ++p) {
    const int f = list[p];
    if (kind_[f] != element) continue;
    if (f != e) {
      const int beyond = static_cast<int>(stamp_[f] - stamp_now_);
      if (beyond == 0) {
        kind_[f] = gone;  // inside e: absorbed
        continue;
      }
      outside += beyond;
    }
    hash += static_cast<unsigned>(f);
    list[kept++] = f;
  }
  const int kept_elements = kept;
  for (int p = elements_[i]; p < length_[i]; ++p) {
    const int j = list[p];
    if (kind_[j] != variable || size_[j] <= 0) continue;
    outside += size_[j];
    hash += static_cast<unsigned>(j);
    list[kept++] = j;
  }
  elements_[i] = kept_elements;
  length_[i] = kept;
  if (kept == 1 && class_of(i) == current_class_) {
    // Nothing but e: eliminated with it, without further fill.
    left_ += size_[i];
    degree_[e] += size_[i];
    kind_[i] = gone;
    size_[i] = 0;
    append_chain(e, i);
    return;
  }
  degree_[i] = std::min(degree_[i], outside);
  const int slot = static_cast<int>(hash % static_cast<unsigned>(n_));
  hash_[i] = slot;
  hash_next_[i] = hash_head_[slot];
  hash_head_[slot] = i;
}

void quotient_graph::append_chain(int to, int from) {
  chain_[chain_end_[to]] = from;
  chain_end_[to] = chain_end_[from];
}

/// True if all of j's list is stamped.
bool quotient_graph::same_lists(int i, int j) const {
  if (length_[i] != length_[j] || elements_[i] != elements_[j] || class_of(i) != class_of(j)) return false;
  const int* const list = store_.get() + at_[j];
  for (int p = 0; p < length_[j]; ++p)
    if (stamp_[list[p]] != stamp_now_) return false;
  return true;
}

/// Members with equal lists can't be told apart any more: they become one variable.
void quotient_graph::merge_twins(int e) {
  const int* const members = store_.get() + at_[e];
  stamp_now_ += total_ + 1;
  for (int k = 0; k < length_[e]; ++k) {
    if (kind_[members[k]] != variable) continue;
    const int slot = hash_[members[k]];
    int i = hash_head_[slot];
    hash_head_[slot] = kNone;
    for (; i != kNone; i = hash_next_[i]) {
      if (hash_next_[i] == kNone) break;
      ++stamp_now_;
      const int* const list = store_.get() + at_[i];
      for (int p = 0; p < length_[i]; ++p) stamp_[list[p]] = stamp_now_;
      int previous = i;
      for (int j = hash_next_[i]; j != kNone; j = hash_next_[j]) {
        if (!same_lists(i, j)) {
          previous = j;
          continue;
        }
        size_[i] += size_[j];
        size_[j] = 0;
        kind_[j] = gone;
        append_chain(i, j);
        hash_next_[previous] = hash_next_[j];
      }
    }
  }
}

}  // namespace

double densest_degree(double unknowns) { return fmax(16, 5 * sqrt(unknowns)); }

stage_status minimum_degree(const minimum_degree_problem& problem, memory_account& account, int* order,
                            int* class_start) {
  quotient_graph quotient(problem, account);
  if (!quotient.allocate()) return {-2, block_struc_s0};
  quotient.order(order, class_start);
  return {};
}

}  // namespace qel::pardiso
