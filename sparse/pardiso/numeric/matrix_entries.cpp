// SPDX-License-Identifier: BSD-3-Clause
#include "sparse/pardiso/numeric/matrix_entries.h"

#include <algorithm>
#include <cmath>

namespace qel::pardiso {

namespace {

template <class T>
double squared(T x) {
  if constexpr (is_complex<T>) {
    return static_cast<double>(x.real) * x.real + static_cast<double>(x.imag) * x.imag;
  } else {
    return static_cast<double>(x) * x;
  }
}

}  // namespace

template <class T>
bool matrix_entries<T>::sort(const csr_view<T>& a, const analysis& analysed, memory_account& account) {
  a_ = &a;
  analysed_ = &analysed;
  const structure& form = analysed.form;
  const ordering& order = analysed.order;
  const bool symmetric = a.type.symmetric();
  const int64_t entries = a.ia[a.n] - 1;
  if (!start_.allocate(account, form.supernodes + 1, block_loc_int2) ||
      !row_.allocate(account, entries, block_loc_int2 - 1) ||
      !entry_.allocate(account, entries, block_loc_int2 - 2) ||
      (order.matched_row && !position_of_row_.allocate(account, a.n, block_loc_int2 - 3))) {
    return false;
  }
  for (int i = 0; order.matched_row && i < a.n; ++i)
    position_of_row_[order.matched_row[i]] = order.inverse[i];
  const int* const position = order.matched_row ? position_of_row_.get() : order.inverse.get();
  // Entries below the diagonal of a symmetric matrix repeat those above.
  const auto for_each = [&](const auto& visit) {
    for (int r = 0; r < a.n; ++r) {
      const int own = form.snode[position[r]];
      for (int p = a.ia[r] - 1; p < a.ia[r + 1] - 1; ++p) {
        const int c = a.ja[p] - 1;
        if (symmetric && c < r) continue;
        visit(std::min(own, form.snode[order.inverse[c]]), r, p, c);
      }
    }
  };
  std::fill(start_.begin(), start_.end(), 0);
  double sum = 0;
  for_each([&](int supernode, int r, int p, int c) {
    ++start_[supernode + 1];
    sum += squared(a.a[p]) * (symmetric && c != r ? 2 : 1);
  });
  norm_ = std::sqrt(sum);
  for (int s = 0; s < form.supernodes; ++s) start_[s + 1] += start_[s];
  for_each([&](int supernode, int r, int p, int) {
    const int64_t to = start_[supernode]++;
    row_[to] = r;
    entry_[to] = p;
  });
  for (int s = form.supernodes; s > 0; --s) start_[s] = start_[s - 1];
  start_[0] = 0;
  return true;
}

template <class T>
bool matrix_entries<T>::scatter(int supernode, const int* indmap, T* l, T* u) const {
  const structure& form = analysed_->form;
  const ordering& order = analysed_->order;
  const int* const list = form.lindx.get() + form.xlindx[supernode];
  const int rows = static_cast<int>(form.xlindx[supernode + 1] - form.xlindx[supernode]);
  const int first = form.xsup[supernode], end = form.xsup[supernode + 1];
  const bool symmetric = a_->type.symmetric(), hermitian = a_->type.hermitian();
  const bool scaled = static_cast<bool>(order.row_scale);
  const int* const position = order.matched_row ? position_of_row_.get() : order.inverse.get();
  for (int64_t e = start_[supernode]; e < start_[supernode + 1]; ++e) {
    const int r = row_[e], c = a_->ja[entry_[e]] - 1;
    T value = a_->a[entry_[e]];
    if (scaled) value = static_cast<real_of<T>>(order.row_scale[r] * order.column_scale[c]) * value;
    int row = position[r], column = order.inverse[c];
    T* panel = l;
    if (symmetric) {
      if (row < column) {
        std::swap(row, column);
        if (hermitian) value = conj(value);
      }
    } else if (column >= end) {
      std::swap(row, column);
      panel = u;
    }
    const int place = indmap[row];
    if (place < 0 || place >= rows || list[place] != row) return false;
    T& target = panel[place + static_cast<int64_t>(column - first) * rows];
    target = target + value;
  }
  return true;
}

template class matrix_entries<float>;
template class matrix_entries<double>;
template class matrix_entries<complex8>;
template class matrix_entries<complex16>;

}  // namespace qel::pardiso
