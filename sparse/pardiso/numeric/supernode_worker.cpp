// SPDX-License-Identifier: BSD-3-Clause
#include "sparse/pardiso/numeric/supernode_worker.h"

#include <algorithm>
#include <cmath>

#include "lapack/factor/cholesky_block.h"
#include "lapack/factor/core_blas.h"
#include "sparse/pardiso/numeric/update_plan.h"

namespace qel::pardiso {

/// One update of the open supernode: rows of the source from `from` on, the first `columns` of which are
/// columns of the updated supernode too.
template <class T>
struct supernode_worker<T>::update_shape {
  int rows, columns;
  const int* relind;  ///< place of every row in the updated panel
  bool triangular;    ///< only the part on and below the diagonal is wanted
  bool contiguous() const { return relind[rows - 1] - relind[0] == rows - 1; }
};

template <class T>
bool supernode_worker<T>::prepare(const factorisation<T>& shared, int thread, memory_account& account) {
  shared_ = &shared;
  thread_ = thread;
  const structure& form = shared.form;
  if (!indmap_.allocate(account, form.n, block_loc_int2 - 4) ||
      !relind_.allocate(account, form.longest_rows, block_loc_int2 - 5) ||
      !temp_.allocate(account, form.work_elements, block_work_r0)) {
    return false;
  }
  std::fill(indmap_.begin(), indmap_.end(), 0);
  return true;
}

template <class T>
void supernode_worker<T>::release() {
  indmap_.reset();
  relind_.reset();
  temp_.reset();
}

template <class T>
step_result supernode_worker<T>::begin(int supernode) {
  supernode_ = supernode;
  own_ = shape_of(shared_->form, supernode);
  if (!shared_->store.open(supernode, thread_, panels_)) return step_result::io_failed;
  const int64_t elements = static_cast<int64_t>(own_.rows) * own_.width;
  std::fill_n(panels_.l, elements, T{});
  if (panels_.u != nullptr) std::fill_n(panels_.u, elements, T{});
  for (int i = 0; i < own_.rows; ++i) indmap_[own_.list[i]] = i;
  const bool known = shared_->entries.scatter(supernode, indmap_.get(), panels_.l, panels_.u);
  return known ? step_result::done : step_result::bad_entry;
}

template <class T>
step_result supernode_worker<T>::update(const update_source* sources, int count) {
  const int* const run = shared_->form.run.get();
  for (int i = 0, next = 0; i < count; i = next) {
    // Panels of one run that end above the updated supernode have the same rows from here on.
    next = i + 1;
    while (next < count && run[sources[next].supernode] == run[sources[i].supernode] &&
           run[sources[i].supernode] != run[supernode_]) {
      ++next;
    }
    if (const step_result result = apply(sources + i, next - i); result != step_result::done) return result;
  }
  return step_result::done;
}

namespace {

/// out = L D for the rows of a panel.
template <class T>
void times_d(const T* panel, int ld, const int* interchanges, int w, bool hermitian, int rows, const T* l,
             T* out) {
  for (int k = 0; k < w;) {
    const T* const from = l + static_cast<int64_t>(k) * ld;
    T* const to = out + static_cast<int64_t>(k) * rows;
    const T* const d = panel + k + static_cast<int64_t>(k) * ld;
    if (interchanges[k] > 0) {
      for (int i = 0; i < rows; ++i) to[i] = from[i] * *d;
      ++k;
      continue;
    }
    const T d21 = d[ld], d12 = hermitian ? conj(d21) : d21, d22 = d[ld + 1];
    for (int i = 0; i < rows; ++i) {
      const T first = from[i], second = from[i + ld];
      to[i] = first * *d + second * d21;
      to[i + rows] = first * d12 + second * d22;
    }
    k += 2;
  }
}

/// X = X D**-1 for the rows of a panel below its diagonal block.
template <class T>
void over_d(T* panel, int ld, const int* interchanges, int w, bool hermitian, int rows, T* x) {
  for (int k = 0; k < w;) {
    T* const first = x + static_cast<int64_t>(k) * ld;
    const T* const d = panel + k + static_cast<int64_t>(k) * ld;
    if (interchanges[k] > 0) {
      for (int i = 0; i < rows; ++i) first[i] = first[i] / *d;
      ++k;
      continue;
    }
    T* const second = first + ld;
    const T d21 = d[ld], d12 = hermitian ? conj(d21) : d21;
    const T e11 = d[ld + 1] / d21, e22 = *d / d12;
    const T t = from_real<T>(1) / (e11 * e22 - from_real<T>(1));
    const T left = t / d12, right = t / d21;
    for (int i = 0; i < rows; ++i) {
      const T one = first[i], two = second[i];
      first[i] = (e11 * one - two) * left;
      second[i] = (e22 * two - one) * right;
    }
    k += 2;
  }
}

/// The interchanges of rows (columns) of a diagonal block, for the columns of what lies below it.
template <class T>
void swap_columns(const int* interchanges, int w, int rows, T* x, int ld) {
  for (int k = 0; k < w; ++k) {
    const int other = swapped_with(interchanges[k]);
    if (other == k) continue;
    T *const one = x + static_cast<int64_t>(k) * ld, *const two = x + static_cast<int64_t>(other) * ld;
    std::swap_ranges(one, one + rows, two);
  }
}

}  // namespace

template <class T>
step_result supernode_worker<T>::apply(const update_source* sources, int count) {
  const structure& form = shared_->form;
  const bool lu = shared_->type.unsymmetric(), hermitian = shared_->type.hermitian();
  const bool ldl = shared_->type.indefinite();
  const char turned = hermitian ? 'C' : 'T';
  const supernode_shape first = shape_of(form, sources[0].supernode);
  const int* const list = first.list + sources[0].from;
  update_shape u{first.rows - sources[0].from, 0, relind_.get(), !lu};
  for (int i = 0; i < u.rows; ++i) relind_[i] = indmap_[list[i]];
  const int end = own_.first + own_.width;
  u.columns = static_cast<int>(std::lower_bound(list, list + u.rows, end) - list);

  const bool direct = u.contiguous();
  const int64_t corner = u.relind[0] + static_cast<int64_t>(u.relind[0]) * own_.rows;
  T* const temp = temp_.get();
  T* const temp_u = temp + static_cast<int64_t>(u.rows) * u.columns;  // both for L and U
  for (int i = 0; i < count; ++i) {
    const supernode_shape k = shape_of(form, sources[i].supernode);
    const_panel_pair<T> from;
    if (!shared_->store.read(sources[i].supernode, thread_, from)) return step_result::io_failed;
    const T* const left = from.l + sources[i].from;
    const T* right = lu ? from.u + sources[i].from : left;
    int ld_right = k.rows;
    if (ldl) {
      T* const scaled = temp_.end() - static_cast<int64_t>(u.columns) * k.width;
      times_d(from.l, k.rows, shared_->pivot + k.first, k.width, hermitian, u.columns, left, scaled);
      right = scaled;
      ld_right = u.columns;
    }
    const update_plan plan = plan_update({u.rows, u.columns, k.width, count, is_complex<T>, !lu});
    if (plan.scheme == update_scheme::elements) {
      add_small(u, left, k.rows, right, ld_right, k.width, 0, panels_.l);
      if (lu) add_small(u, from.u + sources[i].from, k.rows, left, k.rows, k.width, u.columns, panels_.u);
      continue;
    }
    T* const target = direct ? panels_.l + corner : temp;
    const int ld = direct ? own_.rows : u.rows;
    const real_of<T> alpha = direct ? -1 : 1, beta = direct || i > 0 ? 1 : 0;
    for (int j = 0; j < u.columns; j += plan.column_step) {
      const int columns = std::min(plan.column_step, u.columns - j), skipped = u.triangular ? j : 0;
      lapack::product('N', lu ? 'T' : turned, u.rows - skipped, columns, k.width, alpha, left + skipped,
                      k.rows, right + j, ld_right, beta, target + skipped + static_cast<int64_t>(j) * ld, ld);
    }
    const int below = u.rows - u.columns;
    if (!lu || below == 0) continue;
    T* const target_u = direct ? panels_.u + corner + u.columns : temp_u;
    lapack::product('N', 'T', below, u.columns, k.width, alpha, from.u + sources[i].from + u.columns, k.rows,
                    left, k.rows, beta, target_u, direct ? own_.rows : below);
  }
  const bool by_elements = plan_update({u.rows, u.columns, first.width, count, is_complex<T>, !lu}).scheme ==
                           update_scheme::elements;
  if (direct || by_elements) return step_result::done;
  scatter(u, temp, 0, panels_.l);
  if (lu) scatter(u, temp_u, u.columns, panels_.u);
  return step_result::done;
}

/// Panel rows from `skipped` on -= left right', straight into their places.
template <class T>
void supernode_worker<T>::add_small(const update_shape& u, const T* left, int ld_left, const T* right,
                                    int ld_right, int w, int skipped, T* panel) const {
  const bool conjugated = shared_->type.hermitian();
  for (int j = 0; j < u.columns; ++j) {
    T* const column = panel + static_cast<int64_t>(u.relind[j]) * own_.rows;
    const int top = u.triangular ? j : skipped;
    for (int k = 0; k < w; ++k) {
      const T* const from = left + static_cast<int64_t>(k) * ld_left;
      const T other = right[j + static_cast<int64_t>(k) * ld_right];
      const T factor = conjugated ? conj(other) : other;
      for (int i = top; i < u.rows; ++i) column[u.relind[i]] = column[u.relind[i]] - from[i] * factor;
    }
  }
}

template <class T>
void supernode_worker<T>::scatter(const update_shape& u, const T* temp, int skipped, T* panel) const {
  const int rows = u.rows - skipped;
  for (int j = 0; j < u.columns; ++j) {
    T* const column = panel + static_cast<int64_t>(u.relind[j]) * own_.rows;
    const T* const from = temp + static_cast<int64_t>(j) * rows - skipped;
    for (int i = u.triangular ? j : skipped; i < u.rows; ++i) {
      column[u.relind[i]] = column[u.relind[i]] - from[i];
    }
  }
}

template <class T>
step_result supernode_worker<T>::finish() {
  if (!factor_diagonal()) return step_result::bad_pivot;
  solve_below();
  return shared_->store.close(supernode_, thread_) ? step_result::done : step_result::io_failed;
}

template <class T>
bool supernode_worker<T>::factor_diagonal() {
  const real_of<T> threshold = static_cast<real_of<T>>(shared_->options.threshold);
  const int w = own_.width, at = own_.first;
  if (shared_->type.unsymmetric()) {
    factor_lu_block(w, panels_.l, own_.rows, threshold, shared_->luperm + at, shared_->luperm_row + at,
                    counts_);
    return true;
  }
  if (shared_->type.indefinite()) {
    factor_ldl_block(shared_->type.hermitian(), shared_->options.bunch_kaufman, w, panels_.l, own_.rows,
                     threshold, shared_->pivot + at, counts_);
    return true;
  }
  const core_int minor = lapack::factor_cholesky(false, w, panels_.l, own_.rows);
  if (minor != 0) failed_column_ = at + static_cast<int>(minor) - 1;
  return minor == 0;
}

template <class T>
void supernode_worker<T>::solve_below() {
  const int w = own_.width, below = own_.rows - w, ld = own_.rows;
  if (below == 0) return;
  T* const l = panels_.l + w;
  if (shared_->type.unsymmetric()) {
    T* const u = panels_.u + w;
    swap_columns(shared_->luperm + own_.first, w, below, l, ld);
    swap_columns(shared_->luperm_row + own_.first, w, below, u, ld);
    lapack::solve('R', 'U', 'N', 'N', below, w, panels_.l, ld, l, ld);
    lapack::solve('R', 'L', 'T', 'U', below, w, panels_.l, ld, u, ld);
    return;
  }
  const bool hermitian = shared_->type.hermitian();
  const char turned = hermitian ? 'C' : 'T';
  if (shared_->type.definite()) {
    lapack::solve('R', 'L', turned, 'N', below, w, panels_.l, ld, l, ld);
    return;
  }
  const int* const interchanges = shared_->pivot + own_.first;
  swap_columns(interchanges, w, below, l, ld);
  lapack::solve('R', 'L', turned, 'U', below, w, panels_.l, ld, l, ld);
  over_d(panels_.l, ld, interchanges, w, hermitian, below, l);
}

template class supernode_worker<float>;
template class supernode_worker<double>;
template class supernode_worker<complex8>;
template class supernode_worker<complex16>;

}  // namespace qel::pardiso
