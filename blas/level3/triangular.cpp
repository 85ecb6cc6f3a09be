// SPDX-License-Identifier: BSD-3-Clause
// B is taken in slabs of columns (from the left) or rows. The triangle is cut into diagonal blocks, these
// again, and the smallest go through a kernel that works on rows of B, from the left on transposed copies.
// All else is matrix products: a solve takes each solved block out of what is left (alpha -1), a product adds
// to each block what the untouched ones contribute.
#include "blas/level3/triangular.h"

#include <algorithm>
#include <optional>

#include "blas/level3/gemm_serial.h"
#include "service/serv.h"

namespace qel {
namespace {

#define QEL_TRIANGLE_ROWS(T, x)                                                                   \
  void triangle_rows(bool solve, const triangle_block<T>& t, core_int rows, T* b, core_int ldb) { \
    const bool avx = this_processor().level == 4;                                                 \
    (avx ? l4_avx::x##triangle_rows : l0_generic::x##triangle_rows)(solve, t, rows, b, ldb);      \
  }
QEL_TRIANGLE_ROWS(float, s)
QEL_TRIANGLE_ROWS(double, d)
QEL_TRIANGLE_ROWS(complex8, c)
QEL_TRIANGLE_ROWS(complex16, z)
#undef QEL_TRIANGLE_ROWS

/// A slab of B with its triangle, and the memory that all its products share.
template <class T>
class triangular_work {
 public:
  triangular_work(const triangular_call<T>& call, const triangle_plan& plan)
      : call_(call), plan_(plan), path_(gemm_path_of(this_processor())), blocks_(blocks_of(path_)) {
    const bool has_products = (call.left ? call.m : call.n) > kInnerTriangle;
    if (has_products && uses_panels(path_)) memory_.emplace(path_, blocks_, true, true);
  }

  /// Columns (rows, from the right) first .. first + count - 1 of B.
  void run(core_int first, core_int count) {
    first_ = first;
    count_ = count;
    const core_int order = call_.left ? call_.m : call_.n;
    cut(0, order, order > plan_.outer ? plan_.outer : plan_.inner);
  }

 private:
  static bool uses_panels(gemm_path path) { return path != gemm_path::strips && path != gemm_path::sse3; }
  static gemm_blocks blocks_of(gemm_path path) {
    gemm_blocks blocks = gemm_widths(path, element_of<T>);
    blocks.mc = 512;
    blocks.nc = 1000;
    blocks.kc = 256;
    return blocks;
  }

  T element(core_int i, core_int j) const {
    const T v = call_.op == kNoTranspose ? call_.a[i + j * call_.lda] : call_.a[j + i * call_.lda];
    return call_.op == kConjugateTranspose ? conj(v) : v;
  }
  T* rows_of_b(core_int i) const {
    return call_.left ? call_.b + i + first_ * call_.ldb : call_.b + first_ + i * call_.ldb;
  }

  /// The diagonal block at `start`, in blocks of `step`.
  void cut(core_int start, core_int order, core_int step) {
    if (order <= step && order <= kInnerTriangle) return smallest(start, order);
    // op(A) lower from the left depends on the blocks before, from the right on those behind.
    const bool forward = (call_.left != call_.upper) == call_.solve;
    const core_int blocks = (order + step - 1) / step;
    for (core_int index = 0; index < blocks; ++index) {
      const core_int at = start + (forward ? index : blocks - 1 - index) * step;
      const core_int size = std::min(step, start + order - at);
      const core_int before = at - start, behind = start + order - at - size;
      cut(at, size, plan_.inner);
      if (call_.solve) {
        // Takes the solved block out of the blocks to come.
        if (forward && behind > 0) update(at + size, behind, at, size);
        if (!forward && before > 0) update(start, before, at, size);
      } else {
        // Adds the blocks that are still as they were.
        if (forward && behind > 0) update(at, size, at + size, behind);
        if (!forward && before > 0) update(at, size, start, before);
      }
    }
  }

  /// B[target] +-= op(A)[target, source] B[source], or B[source] op(A)[source, target].
  void update(core_int target, core_int target_size, core_int source, core_int source_size) {
    const core_int row = call_.left ? target : source, column = call_.left ? source : target;
    const T* a =
        call_.op == kNoTranspose ? call_.a + row + column * call_.lda : call_.a + column + row * call_.lda;
    const T factor = from_real<T>(call_.solve ? -1 : 1), one = from_real<T>(1);
    T* const into = rows_of_b(target);
    const T* const from = rows_of_b(source);
    if (call_.left) {
      multiply({call_.op, kNoTranspose, target_size, count_, source_size, factor, a, call_.lda, from,
                call_.ldb, one, into, call_.ldb});
    } else {
      multiply({kNoTranspose, call_.op, count_, target_size, source_size, factor, from, call_.ldb, a,
                call_.lda, one, into, call_.ldb});
    }
  }
  void multiply(const gemm_call<T>& product) {
    if (!uses_panels(path_)) return gemm_serial(product);
    if (!*memory_ || product.m < blocks_.mr || goes_to_small_kernel(path_, product.m, product.n, product.k)) {
      return gemm_small(product);
    }
    gemm_packed(path_, product, blocks_, *memory_);
  }

  void smallest(core_int start, core_int order) {
    T dense[kInnerTriangle * kInnerTriangle];
    // From the left: rows of the transposed copy times the transposed triangle.
    const bool upper = call_.upper != call_.left;
    for (core_int j = 0; j < order; ++j) {
      for (core_int i = upper ? 0 : j; i < (upper ? j + 1 : order); ++i) {
        if (i == j && call_.unit) continue;
        dense[i + j * kInnerTriangle] =
            call_.left ? element(start + j, start + i) : element(start + i, start + j);
      }
    }
    const triangle_block<T> block{dense, kInnerTriangle, order, upper, call_.unit};
    T* const b = rows_of_b(start);
    if (!call_.left) return triangle_rows(call_.solve, block, count_, b, call_.ldb);
    constexpr core_int kColumns = 48;
    T turned[kColumns * kInnerTriangle];
    for (core_int j = 0; j < count_; j += kColumns) {
      const core_int columns = std::min(kColumns, count_ - j);
      T* const part = b + j * call_.ldb;
      for (core_int c = 0; c < columns; ++c) {
        for (core_int i = 0; i < order; ++i) turned[c + i * kColumns] = part[i + c * call_.ldb];
      }
      triangle_rows(call_.solve, block, columns, turned, kColumns);
      for (core_int c = 0; c < columns; ++c) {
        for (core_int i = 0; i < order; ++i) part[i + c * call_.ldb] = turned[c + i * kColumns];
      }
    }
  }

  const triangular_call<T>& call_;
  const triangle_plan plan_;
  const gemm_path path_;
  const gemm_blocks blocks_;
  std::optional<gemm_memory<T>> memory_;
  core_int first_ = 0, count_ = 0;
};

}  // namespace

template <class T>
void triangular_serial(const triangular_call<T>& call) {
  if (call.m < 1 || call.n < 1) return;
  gemm_scale(call.m, call.n, call.alpha, call.b, call.ldb);
  if (call.alpha == T{}) return;
  const triangle_plan plan = choose_triangle_plan(serv_cpu_level(), call.left, call.n);
  triangular_work<T> work(call, plan);
  const core_int count = call.left ? call.n : call.m;
  for (core_int first = 0; first < count; first += plan.right_hand) {
    work.run(first, std::min(plan.right_hand, count - first));
  }
}

template <class T>
void triangular_driver(const triangular_call<T>& call) {
  if (call.m < 1 || call.n < 1) return;
  const side_facts facts = side_facts_now(call.left, call.m, call.n);
  const side_choice choice = call.solve ? choose_trsm(facts) : choose_trmm(facts);
  if (choice.threads < 2) return triangular_serial(call);
  const auto team = static_cast<int>(choice.threads);
#pragma omp parallel for num_threads(team) schedule(static, 1)
  for (core_int t = 0; t < choice.threads; ++t) {
    const core_int start = t * choice.chunk, all = call.left ? call.n : call.m;
    triangular_call<T> slab = call;
    (call.left ? slab.n : slab.m) = t < choice.threads - 1 ? choice.chunk : all - start;
    slab.b = call.b + (call.left ? start * call.ldb : start);
    triangular_serial(slab);
  }
}

#define QEL_INSTANTIATE(T)                                    \
  template void triangular_serial(const triangular_call<T>&); \
  template void triangular_driver(const triangular_call<T>&);
QEL_INSTANTIATE(float)
QEL_INSTANTIATE(double)
QEL_INSTANTIATE(complex8)
QEL_INSTANTIATE(complex16)
#undef QEL_INSTANTIATE

}  // namespace qel
