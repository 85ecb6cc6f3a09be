// SPDX-License-Identifier: BSD-3-Clause
// Carries a product out. Packed: a slice of k of a block of A and of B is packed by all threads together into
// shared panels, then each thread computes its cell of C; so a panel is packed once, and threads meet twice a
// block. Method: K. Goto, R. A. van de Geijn, ACM TOMS 34 (2008) 12, with the panel of A, the higher one, in
// the first cache. Without memory for panels the product goes in place or, for structured factors, by
// elements.
#include "blas/level3/native/product.h"

#include <omp.h>

#include <algorithm>

#include "blas/level3/native/copies.h"
#include "blas/level3/native/level3_native.h"
#include "blas/level3/native/plan.h"
#include "blas/plain/scratch.h"

namespace qel::native {

namespace {

using plain::scratch;

constexpr int kWidestPanel = 48;  ///< of all levels and types

template <class T>
constexpr T one() {
  return from_real<T>(1);
}

/// C = beta C, within the part.
template <class T>
void scale(const product<T>& what) {
  if (what.beta == one<T>()) return;
  for (core_int j = 0; j < what.n; ++j) {
    T* column = what.c + j * what.ldc;
    const core_int from = what.part == c_part::lower ? std::min(j, what.m) : 0;
    const core_int to = what.part == c_part::upper ? std::min(j + 1, what.m) : what.m;
    if (what.beta == T{}) {
      std::fill(column + from, column + std::max(from, to), T{});
    } else {
      for (core_int i = from; i < to; ++i) column[i] = what.beta * column[i];
    }
  }
}

template <class T>
using pack_fn = void(core_int count, core_int depth, const panel_source<T>& from, T* out);

/// Rows [i, i + count) of a factor, steps [p, p + depth), into panels. B is packed as the rows of its
/// transpose.
template <class T>
void pack_general(pack_fn<T>* pack, const operand<T>& a, core_int i, core_int count, core_int p,
                  core_int depth, T* out) {
  if (depth > 0) pack(count, depth, {a.address(i, p), a.row_step, a.column_step, a.conjugated}, out);
}

/// One panel of a symmetric or Hermitian factor: steps before its rows lie on one side of the diagonal, steps
/// behind them on the other; the square between is written out first. width: the panel's, with its zeros.
template <class T>
void pack_structured(pack_fn<T>* pack, const operand<T>& a, core_int i, core_int count, core_int width,
                     core_int p, core_int depth, T* out) {
  const core_int end = p + depth, near = std::clamp(i, p, end), far = std::clamp(i + count, p, end);
  const operand<T> before = a.upper ? a.mirrored() : a.direct(), behind = a.upper ? a.direct() : a.mirrored();
  pack_general(pack, before, i, count, p, near - p, out);
  if (far > near) {
    T square[kWidestPanel * kWidestPanel];
    for (core_int q = near; q < far; ++q) {
      for (core_int r = 0; r < count; ++r) square[r + (q - near) * count] = a.at(i + r, q);
    }
    pack(count, far - near, {square, 1, count, false}, out + (near - p) * width);
  }
  pack_general(pack, behind, i, count, far, end - far, out + (far - p) * width);
}

/// The blocks of a factor's panels that one thread packs.
template <class T>
void pack_rows_part(const level3_kernels<T>& kernels, const operand<T>& a, core_int first, core_int count,
                    core_int p, core_int depth, panel_range panels, T* out) {
  const auto begin = [&](core_int i) { return row_panel_begin(i, count, kernels.tile_rows, kernels.lanes); };
  if (panels.begin >= panels.end) return;
  if (a.kind == matrix_kind::kGeneral) {
    const core_int from = begin(panels.begin);
    pack_general(kernels.pack_rows, a, first + from, begin(panels.end) - from, p, depth, out + from * depth);
    return;
  }
  for (core_int i = panels.begin; i < panels.end; ++i) {
    const core_int from = begin(i), rows = begin(i + 1) - from;
    const core_int width = (rows + kernels.lanes - 1) / kernels.lanes * kernels.lanes;
    pack_structured(kernels.pack_rows, a, first + from, rows, width, p, depth, out + from * depth);
  }
}
template <class T>
void pack_columns_part(const level3_kernels<T>& kernels, const operand<T>& b_rows, core_int first,
                       core_int count, core_int p, core_int depth, panel_range panels, T* out) {
  const auto begin = [&](core_int i) { return column_panel_begin(i, count, kernels.tile_columns); };
  if (panels.begin >= panels.end) return;
  if (b_rows.kind == matrix_kind::kGeneral) {
    const core_int from = begin(panels.begin);
    pack_general(kernels.pack_columns, b_rows, first + from, begin(panels.end) - from, p, depth,
                 out + from * depth);
    return;
  }
  for (core_int i = panels.begin; i < panels.end; ++i) {
    const core_int from = begin(i), columns = begin(i + 1) - from;
    pack_structured(kernels.pack_columns, b_rows, first + from, columns, columns, p, depth,
                    out + from * depth);
  }
}

/// One block of C, a slice of k deep.
struct block {
  core_int i, rows, j, columns, p, depth;
};

template <class T>
class packed_product {
 public:
  packed_product(const product<T>& what, const product_plan& plan, const level3_kernels<T>& kernels)
      : what_(what), plan_(plan), kernels_(kernels) {
    const core_int rows = std::min(plan.rows, what.m), columns = std::min(plan.columns, what.n);
    a_size_ = (rows + kernels.tile_rows) * plan.depth;
    b_size_ = columns * plan.depth;
  }
  core_int panel_elements() const { return a_size_ + b_size_; }

  /// The work of one of the threads of a team; wait() lets them all meet. A smaller team than planned does
  /// the same parts, each thread several.
  template <class Wait>
  void run(int rank, int team, T* panels, const Wait& wait) const {
    T *const a_panels = panels, *const b_panels = panels + a_size_;
    for (core_int j = 0; j < what_.n; j += plan_.columns) {
      const core_int columns = std::min(plan_.columns, what_.n - j);
      for (core_int p = 0; p < what_.k; p += plan_.depth) {
        bool b_packed = false;
        for (core_int i = 0; i < what_.m; i += plan_.rows) {
          const block at{i, std::min(plan_.rows, what_.m - i), j, columns,
                         p, std::min(plan_.depth, what_.k - p)};
          if (outside(at)) continue;
          for (int t = rank; t < plan_.threads; t += team) pack(t, at, !b_packed, a_panels, b_panels);
          b_packed = true;
          wait();
          for (int t = rank; t < plan_.threads; t += team) compute(t, at, a_panels, b_panels);
          wait();
        }
      }
    }
  }

 private:
  bool outside(const block& at) const {
    if (what_.part == c_part::upper) return at.i > at.j + at.columns - 1;
    if (what_.part == c_part::lower) return at.i + at.rows - 1 < at.j;
    return false;
  }

  void pack(int t, const block& at, bool with_b, T* a_panels, T* b_panels) const {
    const core_int a_count = row_panels(at.rows, kernels_.tile_rows);
    pack_rows_part(kernels_, what_.a, at.i, at.rows, at.p, at.depth, even_part(a_count, plan_.threads, t),
                   a_panels);
    if (!with_b) return;
    const core_int b_count = column_panels(at.columns, kernels_.tile_columns);
    pack_columns_part(kernels_, what_.b.transposed(), at.j, at.columns, at.p, at.depth,
                      even_part(b_count, plan_.threads, t), b_panels);
  }

  void compute(int t, const block& at, const T* a_panels, const T* b_panels) const {
    if (t >= plan_.grid_rows * plan_.grid_columns) return;
    const int grid_row = t % plan_.grid_rows, grid_column = t / plan_.grid_rows;
    const core_int row_count = row_panels(at.rows, kernels_.tile_rows);
    const panel_range rows = even_part(row_count, plan_.grid_rows, grid_row);
    const panel_range columns =
        what_.part == c_part::whole
            ? even_part(column_panels(at.columns, kernels_.tile_columns), plan_.grid_columns, grid_column)
            : triangle_part(at.rows, at.columns, at.i - at.j, what_.part, kernels_.tile_columns,
                            plan_.grid_columns, grid_column);
    const auto row_begin = [&](core_int i) {
      return row_panel_begin(i, at.rows, kernels_.tile_rows, kernels_.lanes);
    };
    const auto column_begin = [&](core_int i) {
      return column_panel_begin(i, at.columns, kernels_.tile_columns);
    };
    const core_int i = row_begin(rows.begin);
    const core_int step = std::max<core_int>(plan_.columns_in_cache / kernels_.tile_columns, 1);
    for (core_int q = columns.begin; q < columns.end;) {
      core_int next = std::min(q + step, columns.end);
      if (columns.end - next < step / 2) next = columns.end;
      const core_int j = column_begin(q);
      panel_product<T> part{};
      part.m = row_begin(rows.end) - i;
      part.n = column_begin(next) - j;
      part.k = at.depth;
      part.alpha = what_.alpha;
      part.beta = at.p == 0 ? what_.beta : one<T>();
      part.a = a_panels + i * at.depth;
      part.b = b_panels + j * at.depth;
      part.c = what_.c + (at.i + i) + (at.j + j) * what_.ldc;
      part.ldc = what_.ldc;
      part.columns_outside = plan_.columns_outside;
      part.part = what_.part;
      part.below = (at.i + i) - (at.j + j);
      if (part.m > 0) kernels_.multiply(part);
      q = next;
    }
  }

  const product<T>& what_;
  const product_plan& plan_;
  const level3_kernels<T>& kernels_;
  core_int a_size_, b_size_;
};

template <class T>
direct_product<T> as_direct(const product<T>& what) {
  direct_product<T> direct{};
  direct.m = what.m;
  direct.n = what.n;
  direct.k = what.k;
  direct.alpha = what.alpha;
  direct.beta = what.beta;
  direct.a = what.a.data;
  direct.lda = what.a.column_step;
  direct.b = what.b.data;
  direct.b_row_step = what.b.row_step;
  direct.b_column_step = what.b.column_step;
  direct.a_conjugated = what.a.conjugated;
  direct.b_conjugated = what.b.conjugated;
  direct.c = what.c;
  direct.ldc = what.ldc;
  return direct;
}

/// Slices of the depth, both factors in place.
template <class T>
void run_direct(const product<T>& what, const product_plan& plan, const level3_kernels<T>& kernels) {
  direct_product<T> direct = as_direct(what);
  direct.columns_outside = plan.columns_outside;
  for (core_int p = 0; p < what.k; p += plan.depth) {
    direct.k = std::min(plan.depth, what.k - p);
    direct.a = what.a.address(0, p);
    direct.b = what.b.address(p, 0);
    if (p > 0) direct.beta = one<T>();
    kernels.multiply_direct(direct);
  }
}

/// Panels of as much of A as fits, B in place.
template <class T>
void run_a_packed(const product<T>& what, const product_plan& plan, const level3_kernels<T>& kernels) {
  constexpr core_int kOnStack = 16384 / static_cast<core_int>(sizeof(T));
  alignas(64) T on_stack[kOnStack];
  const core_int depth = std::min(plan.depth, kOnStack / kernels.tile_rows);
  core_int room = kOnStack;
  const core_int wanted = (what.m + kernels.tile_rows) * std::min(plan.depth, what.k);
  const scratch<T> beside(wanted > kOnStack ? wanted : 0);
  if (beside.get() != nullptr) room = wanted;
  T* const panels = beside.get() != nullptr ? beside.get() : on_stack;
  const core_int slice = beside.get() != nullptr ? std::min(plan.depth, what.k) : depth;
  const core_int group = room / slice / kernels.tile_rows * kernels.tile_rows;

  direct_product<T> direct = as_direct(what);
  direct.columns_outside = plan.columns_outside;
  direct.lda = 0;
  direct.a = panels;
  direct.a_conjugated = false;  // settled in packing
  for (core_int p = 0; p < what.k; p += slice) {
    direct.k = std::min(slice, what.k - p);
    direct.b = what.b.address(p, 0);
    if (p > 0) direct.beta = one<T>();
    for (core_int i = 0; i < what.m; i += group) {
      direct.m = std::min(group, what.m - i);
      direct.c = what.c + i;
      pack_general(kernels.pack_rows, what.a, i, direct.m, p, direct.k, panels);
      kernels.multiply_direct(direct);
    }
  }
}

/// The way that needs no memory.
template <class T>
void run_by_elements(const product<T>& what) {
  scale(what);
  for (core_int j = 0; j < what.n; ++j) {
    const core_int from = what.part == c_part::lower ? j : 0;
    const core_int to = what.part == c_part::upper ? std::min(j + 1, what.m) : what.m;
    for (core_int i = from; i < to; ++i) {
      T sum{};
      for (core_int p = 0; p < what.k; ++p) sum += what.a.at(i, p) * what.b.at(p, j);
      what.c[i + j * what.ldc] += what.alpha * sum;
    }
  }
}

template <class T>
bool is_general(const product<T>& what) {
  return what.a.kind == matrix_kind::kGeneral && what.b.kind == matrix_kind::kGeneral;
}

template <class T>
void run_without_memory(const product<T>& what, const level3_kernels<T>& kernels) {
  if (is_general(what) && what.part == c_part::whole) {
    product_plan plan{};
    plan.depth = what.k;
    return what.a.row_step == 1 ? run_direct(what, plan, kernels) : run_a_packed(what, plan, kernels);
  }
  run_by_elements(what);
}

template <class T>
void run_packed(const product<T>& what, const product_plan& plan, const level3_kernels<T>& kernels) {
  const packed_product<T> packed(what, plan, kernels);
  const scratch<T> panels(packed.panel_elements());
  if (panels.get() == nullptr) return run_without_memory(what, kernels);
  if (plan.threads == 1) return packed.run(0, 1, panels.get(), [] {});
#pragma omp parallel num_threads(plan.threads)
  packed.run(omp_get_thread_num(), omp_get_num_threads(), panels.get(), [] {
#pragma omp barrier
  });
}

/// Of a triangle about half of the products are formed.
template <class T>
double weight_of(const product<T>& what) {
  return kProductWeight<T> * (what.part == c_part::whole ? 1 : 0.5);
}

template <class T>
product_facts facts_of(const product<T>& what, const level3_kernels<T>& kernels, int threads) {
  product_facts facts{what.m,
                      what.n,
                      what.k,
                      static_cast<int>(sizeof(T)),
                      weight_of(what),
                      kernels.tile_rows,
                      kernels.tile_columns,
                      kernels.lanes,
                      what.part,
                      is_general(what),
                      what.a.row_step != 1,
                      what.b.row_step != 1,
                      {},
                      threads};
  serv_native_cache_sizes(facts.caches);
  return facts;
}

/// A plan that does not split the depth.
template <class T>
void carry_out(const product<T>& what, const product_plan& plan, const level3_kernels<T>& kernels) {
  switch (plan.scheme) {
    case product_scheme::direct:
      return run_direct(what, plan, kernels);
    case product_scheme::a_packed:
      return run_a_packed(what, plan, kernels);
    default:
      return run_packed(what, plan, kernels);
  }
}

template <class T>
void run_slabs(const product<T>& what, const product_plan& plan, const level3_kernels<T>& kernels) {
#pragma omp parallel for num_threads(plan.threads) schedule(static, 1)
  for (int t = 0; t < plan.threads; ++t) {
    const panel_range rows =
        even_part(row_panels(what.m, kernels.tile_rows), plan.grid_rows, t % plan.grid_rows);
    const panel_range columns =
        even_part(column_panels(what.n, kernels.tile_columns), plan.grid_columns, t / plan.grid_rows);
    const core_int i = row_panel_begin(rows.begin, what.m, kernels.tile_rows, kernels.lanes);
    const core_int j = column_panel_begin(columns.begin, what.n, kernels.tile_columns);
    product<T> slab = what;
    slab.m = row_panel_begin(rows.end, what.m, kernels.tile_rows, kernels.lanes) - i;
    slab.n = column_panel_begin(columns.end, what.n, kernels.tile_columns) - j;
    slab.a = what.a.from(i, 0);
    slab.b = what.b.from(0, j);
    slab.c = what.c + i + j * what.ldc;
    multiply(slab, 1);
  }
}

/// The first thread's part goes to C, the others' beside it; then all are added in the order of the threads.
template <class T>
void run_split_depth(const product<T>& what, const product_plan& plan) {
  const core_int size = what.m * what.n;
  const scratch<T> beside(size * (plan.threads - 1));
  if (beside.get() == nullptr) return multiply(what, 1);
#pragma omp parallel for num_threads(plan.threads) schedule(static, 1)
  for (int t = 0; t < plan.threads; ++t) {
    const panel_range steps = even_part(what.k, plan.threads, t);
    product<T> part = what;
    part.k = steps.end - steps.begin;
    part.a = what.a.from(0, steps.begin);
    part.b = what.b.from(steps.begin, 0);
    if (t > 0) {
      part.beta = T{};
      part.c = beside.get() + size * (t - 1);
      part.ldc = what.m;
    }
    multiply(part, 1);
  }
  for (int t = 1; t < plan.threads; ++t) {
    const T* from = beside.get() + size * (t - 1);
    for (core_int j = 0; j < what.n; ++j) {
      for (core_int i = 0; i < what.m; ++i) what.c[i + j * what.ldc] += from[i + j * what.m];
    }
  }
}

}  // namespace

template <class T>
void multiply_as_planned(const product<T>& what, const product_plan& plan) {
  const level3_kernels<T>& kernels = *native_kernels<T>();
  switch (plan.scheme) {
    case product_scheme::slabs:
      return run_slabs(what, plan, kernels);
    case product_scheme::split_depth:
      return run_split_depth(what, plan);
    default:
      return carry_out(what, plan, kernels);
  }
}

template <class T>
void multiply(const product<T>& what, int threads) {
  if (what.m <= 0 || what.n <= 0) return;
  if (what.k <= 0 || what.alpha == T{}) return scale(what);
  const bool a_structured = what.a.kind != matrix_kind::kGeneral;
  const copy_plan copies =
      plan_copies(what.m, what.n, what.k, a_structured, what.a.row_step != 1 || what.a.conjugated,
                  what.b.kind != matrix_kind::kGeneral, what.part);
  if (copies.pays) return multiply_on_copies(what, copies, *native_kernels<T>());
  if (threads == 0) {
    threads = may_fork(what.m, what.n, what.k, weight_of(what)) ? serv_threads_for_domain(1) : 1;
  }
  multiply_as_planned(what, plan_product(facts_of(what, *native_kernels<T>(), threads)));
}

template void multiply_as_planned(const product<float>&, const product_plan&);
template void multiply_as_planned(const product<double>&, const product_plan&);
template void multiply_as_planned(const product<complex8>&, const product_plan&);
template void multiply_as_planned(const product<complex16>&, const product_plan&);
template void multiply(const product<float>&, int);
template void multiply(const product<double>&, int);
template void multiply(const product<complex8>&, int);
template void multiply(const product<complex16>&, int);

}  // namespace qel::native
