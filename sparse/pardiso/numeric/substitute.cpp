// SPDX-License-Identifier: BSD-3-Clause
// Right-hand sides are worked on in slices that lie side by side, row after row: what belongs to one
// equation is contiguous, so that a supernode's rows are gathered and scattered in pieces, and every
// operation is one on whole panels from the right.
#include "sparse/pardiso/numeric/substitute.h"

#include <omp.h>

#include <algorithm>

#include "lapack/factor/core_blas.h"
#include "service/native_level.h"
#include "service/serv.h"
#include "sparse/kernels/substitution_kernels.h"
#include "sparse/pardiso/numeric/diagonal_block.h"

namespace qel::pardiso {

namespace {

/// Right-hand sides of a slice at most.
constexpr int kSlice = 64;

/// One of the two triangular factors as a pass uses it.
struct triangle {
  bool upper_panel;  ///< U's panel, else L's
  char uplo, diag;   ///< of the diagonal block
  const int* interchanges;
};

/// y = A x (or A' x if turned), A rows x columns.
#define QEL_GEMV(T, letter)                                                                                \
  void times(bool turned, int rows, int columns, const T* a, int lda, const T* x, T* y, T alpha, T beta) { \
    const char trans = turned ? 'T' : 'N';                                                                 \
    const core_int m = rows, n = columns, ld = lda, one = 1;                                               \
    core::letter##gemv(&trans, &m, &n, &alpha, a, &ld, x, &one, &beta, y, &one);                           \
  }
QEL_GEMV(float, s)
QEL_GEMV(double, d)
QEL_GEMV(complex8, c)
QEL_GEMV(complex16, z)
#undef QEL_GEMV

/// Kernels for one right-hand side of real numbers; null for complex ones, whose products take long enough.
template <class T>
const substitution_kernels<T>* kernels_for_one() {
  const bool native = serv_cpu_level() >= kFirstNativeLevel;
  if constexpr (is_complex<T>) {
    return nullptr;
  } else if constexpr (sizeof(T) == sizeof(float)) {
    return native ? &l5_avx2::substitution_s : &l0_generic::substitution_s;
  } else {
    return native ? &l5_avx2::substitution_d : &l0_generic::substitution_d;
  }
}

template <class T>
class slice_solver {
 public:
  slice_solver(matrix_type type, const analysis& analysed, const factors<T>& f, panel_store<T>& store,
               const solve_options& options, int thread)
      : type_(type), analysed_(analysed), f_(f), store_(store), options_(options), thread_(thread) {
    const bool transposed = options.transposed && type.unsymmetric();
    if (type.unsymmetric()) {
      forward_ = {false, 'L', 'U', f.luperm_row.get()};
      backward_ = {true, 'U', 'N', f.luperm.get()};
      if (transposed) std::swap(forward_, backward_);
    } else {
      forward_ = {false, 'L', type.definite() ? 'N' : 'U', type.definite() ? nullptr : f.pivot.get()};
      backward_ = forward_;
    }
    row_of_a_ = analysed.order.matched_row ? analysed.order.matched_row.get() : nullptr;
    into_rows_ = transposed;
  }

  /// count columns of b and x, leading dimension n; y: n * count elements of work memory.
  bool run(int count, const T* b, T* x, T* y) {
    count_ = count;
    for_one_ = count == 1 ? kernels_for_one<T>() : nullptr;
    y_ = y;
    temp_ = x;
    const solve_part part = options_.part;
    const bool all = part == solve_part::all;
    load(b, all || part == solve_part::forward);
    if ((all || part == solve_part::forward) && !forward()) return false;
    if ((all || part == solve_part::diagonal) && type_.indefinite() && !diagonal()) return false;
    if ((all || part == solve_part::backward) && !backward()) return false;
    store_result(x, all || part == solve_part::backward);
    return true;
  }

 private:
  int n() const { return analysed_.form.n; }
  T* rows_of(int first) const { return y_ + static_cast<int64_t>(first) * count_; }

  /// The system in the order of the factors is M Dr A Dc (M: rows as matched), so its right-hand side takes
  /// the rows and their scale, its solution the columns' scale; the transposed system the other way round.
  void load(const T* b, bool permuted) const {
    const ordering& order = analysed_.order;
    for (int k = 0; k < n(); ++k) {
      int from = permuted ? order.perm[k] : k;
      real_of<T> scale = 1;
      if (permuted && !into_rows_ && row_of_a_ != nullptr) from = row_of_a_[from];
      if (permuted && order.row_scale) {
        scale = static_cast<real_of<T>>(into_rows_ ? order.column_scale[from] : order.row_scale[from]);
      }
      T* const to = rows_of(k);
      for (int j = 0; j < count_; ++j) to[j] = scale * b[from + static_cast<int64_t>(j) * n()];
    }
  }
  void store_result(T* x, bool permuted) const {
    const ordering& order = analysed_.order;
    for (int k = 0; k < n(); ++k) {
      int to = permuted ? order.perm[k] : k;
      real_of<T> scale = 1;
      if (permuted && into_rows_ && row_of_a_ != nullptr) to = row_of_a_[to];
      if (permuted && order.row_scale) {
        scale = static_cast<real_of<T>>(into_rows_ ? order.row_scale[to] : order.column_scale[to]);
      }
      const T* const from = rows_of(k);
      for (int j = 0; j < count_; ++j) x[to + static_cast<int64_t>(j) * n()] = scale * from[j];
    }
  }

  void interchange(const int* list, int first, int width, bool in_reverse) const {
    if (list == nullptr) return;
    for (int step = 0; step < width; ++step) {
      const int k = in_reverse ? width - 1 - step : step, other = swapped_with(list[first + k]);
      if (other != k)
        std::swap_ranges(rows_of(first + k), rows_of(first + k) + count_, rows_of(first + other));
    }
  }

  void tell(solve_part pass, int unknowns) const {
    if (thread_ == 0 && options_.progress != nullptr)
      options_.progress(options_.progress_context, pass, unknowns);
  }

  /// A supernode's rows of a single right-hand side into temp_.
  void gather(const supernode_shape& own, const T* y) const {
    std::copy_n(y, own.width, temp_);
    for (int i = own.width; i < own.rows; ++i) temp_[i] = y_[own.list[i]];
  }
  void step(typename substitution_kernels<T>::step* kernel, const supernode_shape& own,
            const const_panel_pair<T>& panels, const triangle& factor) const {
    const panel_substitution<T> work = {
        own.rows, own.width, panels.l, factor.upper_panel ? panels.u : panels.l, factor.diag == 'U', temp_};
    kernel(&work);
  }

  bool forward() const {
    const structure& form = analysed_.form;
    store_.start_pass(thread_, store_pass::forward);
    for (int s = 0; s < form.supernodes; ++s) {
      const supernode_shape own = shape_of(form, s);
      const_panel_pair<T> panels;
      if (!store_.read(s, thread_, panels)) return false;
      T* const y = rows_of(own.first);
      interchange(forward_.interchanges, own.first, own.width, false);
      tell(solve_part::forward, own.first + own.width);
      if (for_one_ != nullptr) {
        gather(own, y);
        step(forward_.uplo == 'L' ? for_one_->forward_lower : for_one_->forward_upper, own, panels, forward_);
        std::copy_n(temp_, own.width, y);
        for (int i = own.width; i < own.rows; ++i) y_[own.list[i]] = temp_[i];
        continue;
      }
      // The diagonal block is in L's panel whichever factor it is of.
      solve_block(own, panels.l, forward_, true, y);
      const int below = own.rows - own.width;
      if (below == 0) continue;
      const T* const panel = (forward_.upper_panel ? panels.u : panels.l) + own.width;
      if (count_ == 1) {
        times(false, below, own.width, panel, own.rows, y, temp_, from_real<T>(1), T{});
      } else {
        lapack::product('N', 'T', count_, below, own.width, 1, y, count_, panel, own.rows, 0, temp_, count_);
      }
      for (int i = 0; i < below; ++i) {
        T* const row = rows_of(own.list[own.width + i]);
        const T* const from = temp_ + static_cast<int64_t>(i) * count_;
        for (int j = 0; j < count_; ++j) row[j] = row[j] - from[j];
      }
    }
    return true;
  }

  bool backward() const {
    const structure& form = analysed_.form;
    store_.start_pass(thread_, store_pass::backward);
    if (type_.hermitian()) turn();
    for (int s = form.supernodes - 1; s >= 0; --s) {
      const supernode_shape own = shape_of(form, s);
      const_panel_pair<T> panels;
      if (!store_.read(s, thread_, panels)) return false;
      T* const y = rows_of(own.first);
      if (for_one_ != nullptr) {
        gather(own, y);
        step(backward_.uplo == 'L' ? for_one_->backward_lower : for_one_->backward_upper, own, panels,
             backward_);
        std::copy_n(temp_, own.width, y);
      } else {
        const int below = own.rows - own.width;
        if (below > 0) {
          for (int i = 0; i < below; ++i) {
            std::copy_n(rows_of(own.list[own.width + i]), count_, temp_ + static_cast<int64_t>(i) * count_);
          }
          const T* const panel = (backward_.upper_panel ? panels.u : panels.l) + own.width;
          if (count_ == 1) {
            times(true, below, own.width, panel, own.rows, temp_, y, from_real<T>(-1), from_real<T>(1));
          } else {
            lapack::product('N', 'N', count_, own.width, below, -1, temp_, count_, panel, own.rows, 1, y,
                            count_);
          }
        }
        solve_block(own, panels.l, backward_, false, y);
      }
      interchange(backward_.interchanges, own.first, own.width, true);
      tell(solve_part::backward, n() - own.first);
    }
    if (type_.hermitian()) turn();
    return true;
  }

  /// x = inv(F) x in the forward pass, where L or U' is the factor, and inv(F') x in the backward pass, where
  /// it is L' or U.
  void solve_block(const supernode_shape& own, const T* block, const triangle& factor, bool is_forward,
                   T* y) const {
    const bool plain = is_forward == (factor.uplo == 'L');
    if (own.width == 1) {
      if (factor.diag == 'N') {
        for (int j = 0; j < count_; ++j) y[j] = y[j] / *block;
      }
    } else if (count_ == 1) {
      lapack::solve('L', factor.uplo, plain ? 'N' : 'T', factor.diag, own.width, 1, block, own.rows, y, n());
    } else {
      lapack::solve('R', factor.uplo, plain ? 'T' : 'N', factor.diag, count_, own.width, block, own.rows, y,
                    count_);
    }
  }

  bool diagonal() const {
    const structure& form = analysed_.form;
    for (int s = 0; s < form.supernodes; ++s) {
      const supernode_shape own = shape_of(form, s);
      const_panel_pair<T> panels;
      if (!store_.read(s, thread_, panels)) return false;
      for (int k = 0; k < own.width;) {
        T* const first = rows_of(own.first + k);
        const T* const d = panels.l + k + static_cast<int64_t>(k) * own.rows;
        if (f_.pivot[own.first + k] > 0) {
          for (int j = 0; j < count_; ++j) first[j] = first[j] / *d;
          ++k;
          continue;
        }
        T* const second = first + count_;
        const T d21 = d[own.rows], d12 = type_.hermitian() ? conj(d21) : d21;
        const T e11 = d[own.rows + 1] / d21, e22 = *d / d12;
        const T t = from_real<T>(1) / (e11 * e22 - from_real<T>(1));
        for (int j = 0; j < count_; ++j) {
          const T one = first[j] / d12, two = second[j] / d21;
          first[j] = t * (e11 * one - two);
          second[j] = t * (e22 * two - one);
        }
        k += 2;
      }
    }
    return true;
  }

  /// With L**H in place of L' the conjugates solve the plain system.
  void turn() const {
    for (int64_t i = 0; i < static_cast<int64_t>(n()) * count_; ++i) y_[i] = conj(y_[i]);
  }

  matrix_type type_;
  const analysis& analysed_;
  const factors<T>& f_;
  panel_store<T>& store_;
  const solve_options& options_;
  int thread_;
  triangle forward_{}, backward_{};
  const int* row_of_a_;
  bool into_rows_;
  int count_ = 0;
  const substitution_kernels<T>* for_one_ = nullptr;
  T *y_ = nullptr, *temp_ = nullptr;
};

}  // namespace

template <class T>
bool substitute_from(matrix_type type, const analysis& analysed, const factors<T>& f, panel_store<T>& store,
                     const solve_options& options, int nrhs, const T* b, T* x, T* work) {
  const int n = analysed.form.n, most = std::min(std::max(nrhs, 1), store.threads());
  const int threads = std::clamp(options.threads, 1, most);
  int failed = 0;
  const auto work_on = [&](int thread) {
    const int begin = static_cast<int>(static_cast<int64_t>(nrhs) * thread / threads);
    const int end = static_cast<int>(static_cast<int64_t>(nrhs) * (thread + 1) / threads);
    slice_solver<T> solver(type, analysed, f, store, options, thread);
    bool good = true;
    for (int j = begin; good && j < end; j += kSlice) {
      const int64_t at = static_cast<int64_t>(j) * n;
      good = solver.run(std::min(kSlice, end - j), b + at, x + at, work + at);
    }
    return good;
  };
  if (threads == 1) return work_on(0);
#pragma omp parallel for num_threads(threads) schedule(static, 1) reduction(+ : failed)
  for (int thread = 0; thread < threads; ++thread) failed += work_on(thread) ? 0 : 1;
  return failed == 0;
}

template <class T>
stage_status substitute(const analysis& analysed, const factors<T>& f, const solve_options& options, int nrhs,
                        const T* b, T* x, T* work) {
  panels_in_core<T> in_core(analysed.form, f.lnz.get(), f.unz.get());
  panel_store<T>& store = f.store != nullptr ? *f.store : in_core;
  const bool done = substitute_from(f.type, analysed, f, store, options, nrhs, b, x, work);
  return done ? stage_status{} : store.failure();
}

#define QEL_INSTANTIATE(T)                                                                                  \
  template bool substitute_from(matrix_type, const analysis&, const factors<T>&, panel_store<T>&,           \
                                const solve_options&, int, const T*, T*, T*);                               \
  template stage_status substitute(const analysis&, const factors<T>&, const solve_options&, int, const T*, \
                                   T*, T*);
QEL_INSTANTIATE(float)
QEL_INSTANTIATE(double)
QEL_INSTANTIATE(complex8)
QEL_INSTANTIATE(complex16)
#undef QEL_INSTANTIATE

}  // namespace qel::pardiso
