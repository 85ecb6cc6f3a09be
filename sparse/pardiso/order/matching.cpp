// SPDX-License-Identifier: BSD-3-Clause
#include "sparse/pardiso/order/matching.h"

#include <math.h>
#include <string.h>

#include <limits>

namespace qel::pardiso {
namespace {

constexpr int kMemoryCode = block_struc_s0 - 2;
constexpr stage_status kNoMemory{-2, kMemoryCode};
constexpr double kFar = std::numeric_limits<double>::infinity();

/// Calls entry(i, j, log of modulus) for every entry that counts.
template <class T, class Entry>
void for_each_entry(const csr_view<T>& a, const Entry& entry) {
  for (int i = 0; i < a.n; ++i)
    for (int p = a.ia[i] - 1; p < a.ia[i + 1] - 1; ++p) {
      const double m = modulus(a.a[p]);
      if (!(m > 0)) continue;
      const int j = a.ja[p] - 1;
      entry(i, j, log(m));
      if (a.type.symmetric() && i != j) entry(j, i, log(m));
    }
}

/// Columns by their distance, the nearest on top.
class column_heap {
 public:
  bool allocate(memory_account& account, int n) {
    if (!heap_.allocate(account, n, kMemoryCode) || !place_.allocate(account, n, kMemoryCode)) return false;
    for (int j = 0; j < n; ++j) place_[j] = -1;
    return true;
  }
  bool empty() const { return size_ == 0; }
  int top() const { return heap_[0]; }
  void clear() {
    while (size_ > 0) place_[heap_[--size_]] = -1;
  }
  /// Enters j, or moves it up after its distance fell.
  void raise(int j, const double* distance) {
    int at = place_[j] >= 0 ? place_[j] : size_++;
    for (; at > 0 && distance[heap_[(at - 1) / 2]] > distance[j]; at = (at - 1) / 2)
      set(at, heap_[(at - 1) / 2]);
    set(at, j);
  }
  void pop(const double* distance) {
    place_[heap_[0]] = -1;
    const int last = heap_[--size_];
    if (size_ == 0) return;
    int at = 0;
    for (int child; (child = 2 * at + 1) < size_; at = child) {
      if (child + 1 < size_ && distance[heap_[child + 1]] < distance[heap_[child]]) ++child;
      if (distance[heap_[child]] >= distance[last]) break;
      set(at, heap_[child]);
    }
    set(at, last);
  }

 private:
  void set(int at, int j) {
    heap_[at] = j;
    place_[j] = at;
  }
  block<int> heap_, place_;
  int size_ = 0;
};

class matcher {
 public:
  matcher(const cost_matrix& costs, matching& result) : costs_(costs), n_(costs.n), result_(result) {}
  bool allocate(memory_account& account);
  void run() {
    assign_cheaply();
    for (int i = 0; i < n_; ++i)
      if (result_.column_of[i] < 0) augment(i);
    result_.cardinality = 0;
    for (int i = 0; i < n_; ++i)
      if (result_.column_of[i] >= 0) ++result_.cardinality;
  }

 private:
  void join(int i, int j) {
    result_.column_of[i] = j;
    result_.row_of[j] = i;
  }
  double reduced(int i, int64_t p) const {
    return fmax(0, costs_.cost[p] - result_.row_dual[i] - result_.column_dual[costs_.column[p]]);
  }
  bool is_tight(int i, int64_t p) const { return reduced(i, p) == 0; }
  void assign_cheaply();
  bool assign_around(int i);
  void augment(int root);

  const cost_matrix& costs_;
  const int n_;
  matching& result_;
  block<double> distance_;  // of a column from the root, infinite before it is met
  block<int> from_;         // row from which a column is reached
  block<int> met_;          // columns with a distance
  block<bool> hopeless_;    // no free column can be reached from here, now or later
  block<int> settled_;      // columns whose distance is final
  column_heap heap_;
};

bool matcher::allocate(memory_account& account) {
  const auto get = [&](auto& array) { return array.allocate(account, n_, kMemoryCode); };
  if (!get(result_.row_of) || !get(result_.column_of) || !get(result_.row_dual) ||
      !get(result_.column_dual) || !get(distance_) || !get(from_) || !get(met_) || !get(hopeless_) ||
      !get(settled_) || !heap_.allocate(account, n_))
    return false;
  for (int i = 0; i < n_; ++i) {
    result_.row_of[i] = result_.column_of[i] = -1;
    result_.column_dual[i] = 0;
    distance_[i] = kFar;
    hopeless_[i] = false;
  }
  return true;
}

/// Free columns at no reduced cost, direct or by moving one other row.
void matcher::assign_cheaply() {
  for (int i = 0; i < n_; ++i) {
    double least = kFar;
    for (int64_t p = costs_.start[i]; p < costs_.start[i + 1]; ++p) least = fmin(least, costs_.cost[p]);
    result_.row_dual[i] = least == kFar ? 0 : least;
    for (int64_t p = costs_.start[i]; p < costs_.start[i + 1]; ++p)
      if (result_.row_of[costs_.column[p]] < 0 && is_tight(i, p)) {
        join(i, costs_.column[p]);
        break;
      }
  }
  for (int i = 0; i < n_; ++i)
    if (result_.column_of[i] < 0) assign_around(i);
}

bool matcher::assign_around(int i) {
  for (int64_t p = costs_.start[i]; p < costs_.start[i + 1]; ++p) {
    if (!is_tight(i, p)) continue;
    const int j = costs_.column[p], other = result_.row_of[j];
    for (int64_t q = costs_.start[other]; q < costs_.start[other + 1]; ++q)
      if (result_.row_of[costs_.column[q]] < 0 && is_tight(other, q)) {
        join(other, costs_.column[q]);
        join(i, j);
        return true;
      }
  }
  return false;
}

void matcher::augment(int root) {
  int met = 0, settled = 0, end = -1;
  double reach = 0, best = kFar;
  for (int i = root;;) {
    for (int64_t p = costs_.start[i]; p < costs_.start[i + 1]; ++p) {
      const int j = costs_.column[p];
      const double d = reach + reduced(i, p);
      if (hopeless_[j] || !(d < best) || !(d < distance_[j])) continue;
      if (distance_[j] == kFar) met_[met++] = j;
      distance_[j] = d;
      from_[j] = i;
      if (result_.row_of[j] < 0) {
        best = d;
        end = j;
      } else {
        heap_.raise(j, distance_.get());
      }
    }
    if (heap_.empty() || distance_[heap_.top()] >= best) break;
    const int j = heap_.top();
    heap_.pop(distance_.get());
    settled_[settled++] = j;
    reach = distance_[j];
    i = result_.row_of[j];
  }
  heap_.clear();
  if (end >= 0) {
    result_.row_dual[root] += best;
    for (int k = 0; k < settled; ++k) {
      const int j = settled_[k];
      const double gain = best - distance_[j];
      result_.column_dual[j] -= gain;
      result_.row_dual[result_.row_of[j]] += gain;
    }
    for (int j = end, i; j >= 0;) {
      i = from_[j];
      const int next = result_.column_of[i];
      join(i, j);
      j = i == root ? -1 : next;
    }
  } else {
    for (int k = 0; k < met; ++k) hopeless_[met_[k]] = true;
  }
  for (int k = 0; k < met; ++k) distance_[met_[k]] = kFar;
}

}  // namespace

template <class T>
stage_status build_costs(const csr_view<T>& a, memory_account& account, cost_matrix& result) {
  const int n = a.n;
  block<int64_t> start;
  if (!start.allocate(account, n + 2, kMemoryCode) || !result.column_log.allocate(account, n, kMemoryCode) ||
      !result.start.allocate(account, n + 1, kMemoryCode))
    return kNoMemory;
  memset(start.get(), 0, static_cast<size_t>(n + 2) * sizeof(int64_t));
  for (int j = 0; j < n; ++j) result.column_log[j] = -kFar;
  int64_t* const next = start.get() + 1;
  for_each_entry(a, [&](int i, int j, double weight) {
    ++next[i + 1];
    result.column_log[j] = fmax(result.column_log[j], weight);
  });
  for (int i = 0; i < n; ++i) next[i + 1] += next[i];
  result.n = n;
  if (!result.column.allocate(account, next[n], kMemoryCode) ||
      !result.cost.allocate(account, next[n], kMemoryCode))
    return kNoMemory;
  for_each_entry(a, [&](int i, int j, double weight) {
    result.column[next[i]] = j;
    result.cost[next[i]++] = result.column_log[j] - weight;
  });
  memcpy(result.start.get(), start.get(), static_cast<size_t>(n + 1) * sizeof(int64_t));
  return {};
}

stage_status match_rows(const cost_matrix& costs, memory_account& account, matching& result) {
  matcher work(costs, result);
  if (!work.allocate(account)) return kNoMemory;
  work.run();
  return {};
}

#define QEL_INSTANTIATE(T) \
  template stage_status build_costs<T>(const csr_view<T>&, memory_account&, cost_matrix&);
QEL_INSTANTIATE(float)
QEL_INSTANTIATE(double)
QEL_INSTANTIATE(complex8)
QEL_INSTANTIATE(complex16)
#undef QEL_INSTANTIATE

}  // namespace qel::pardiso
