// SPDX-License-Identifier: BSD-3-Clause
// B is taken in slabs of columns (from the left) or rows. The triangle is cut into diagonal blocks, these
// again, and the smallest go through a kernel that works on rows of B, from the left on transposed copies.
// All else is matrix products: a solve takes each solved block out of what is left (alpha -1), a product adds
// to each block what the untouched ones contribute.
#include "blas/level3/triangular.h"

#include <algorithm>
#include <optional>
#include <type_traits>

#include "blas/level3/gemm_serial.h"
#include "service/serv.h"

namespace qel {
namespace {

// Diagonal blocks are small but decide the accuracy of a solve: single precision goes through them in double,
// rounded once at the end.
template <class T>
struct wide_type {
  using type = double;
};
template <complex_pair T>
struct wide_type<T> {
  using type = complex16;
};
template <class T>
using wide_of = typename wide_type<T>::type;
template <class To, class From>
To converted(From v) {
  using R = real_of<To>;
  if constexpr (is_complex<From>) {
    return {static_cast<R>(v.real), static_cast<R>(v.imag)};
  } else {
    return static_cast<R>(v);
  }
}

void triangle_rows(bool solve, const triangle_block<double>& t, core_int rows, double* b, core_int ldb) {
  const bool avx = this_processor().level == 4;
  (avx ? l4_avx::dtriangle_rows : l0_generic::dtriangle_rows)(solve, t, rows, b, ldb);
}
void triangle_rows(bool solve, const triangle_block<complex16>& t, core_int rows, complex16* b,
                   core_int ldb) {
  const bool avx = this_processor().level == 4;
  (avx ? l4_avx::ztriangle_rows : l0_generic::ztriangle_rows)(solve, t, rows, b, ldb);
}

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
    using W = wide_of<T>;
    W dense[kInnerTriangle * kInnerTriangle];
    // From the left: rows of the transposed copy times the transposed triangle.
    const bool upper = call_.upper != call_.left;
    for (core_int j = 0; j < order; ++j) {
      for (core_int i = upper ? 0 : j; i < (upper ? j + 1 : order); ++i) {
        if (i == j && call_.unit) continue;
        dense[i + j * kInnerTriangle] =
            converted<W>(call_.left ? element(start + j, start + i) : element(start + i, start + j));
      }
    }
    const triangle_block<W> block{dense, kInnerTriangle, order, upper, call_.unit};
    T* const b = rows_of_b(start);
    if constexpr (std::is_same_v<T, W>) {
      if (!call_.left) return triangle_rows(call_.solve, block, count_, b, call_.ldb);
    }
    constexpr core_int kLines = 48;
    W lines[kLines * kInnerTriangle];
    const core_int line_step = call_.left ? call_.ldb : 1, step = call_.left ? 1 : call_.ldb;
    for (core_int first = 0; first < count_; first += kLines) {
      const core_int count = std::min(kLines, count_ - first);
      T* const part = b + first * line_step;
      const auto for_each_element = [&](const auto& visit) {
        // Along the columns of B.
        const core_int inner = call_.left ? order : count, outer = call_.left ? count : order;
        for (core_int q = 0; q < outer; ++q) {
          for (core_int p = 0; p < inner; ++p) {
            const core_int c = call_.left ? q : p, i = call_.left ? p : q;
            visit(lines[c + i * kLines], part[c * line_step + i * step]);
          }
        }
      };
      for_each_element([](W& line, const T& v) { line = converted<W>(v); });
      triangle_rows(call_.solve, block, count, lines, kLines);
      for_each_element([](const W& line, T& v) { v = converted<T>(line); });
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
