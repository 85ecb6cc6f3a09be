// SPDX-License-Identifier: BSD-3-Clause
// Execution of a task: its routine by rank, mode and precisions, with the tests that each begins with.
#include <algorithm>
#include <type_traits>

#include "blas/plain/scratch.h"
#include "conv/conv_full.h"
#include "conv/execute_line.h"
#include "conv/execute_native.h"
#include "conv/sum_kernels.h"

namespace qel::conv {
namespace {

using plain::scratch;

/// A line in its sums' precision: for each part (real, imaginary) n numbers. Data that lie like that are not
/// copied.
template <class T, class R>
class dense_line {
 public:
  static constexpr int kParts = is_complex<T> ? 2 : 1;
  using element = element_of<T, R>;
  dense_line(const T* from, core_int n, core_int stride, bool reversed)
      : numbers_(lies_dense(stride, reversed) ? 1 : kParts * n), data_(numbers_.get()), n_(n) {
    if constexpr (std::is_same_v<T, R>) {
      if (lies_dense(stride, reversed)) data_ = from;
    }
    if (!there() || data_ != numbers_.get()) return;
    for (int part = 0; part < kParts; ++part)
      gather_part(from, n, stride, reversed, part, numbers_.get() + part * n);
  }
  bool there() const { return numbers_.get() != nullptr; }
  const R* part(int which) const { return data_ + which * n_; }
  element operator[](core_int i) const {
    if constexpr (kParts == 2) {
      return {data_[i], data_[n_ + i]};
    } else {
      return data_[i];
    }
  }

 private:
  static constexpr bool lies_dense(core_int stride, bool reversed) {
    return std::is_same_v<T, R> && stride == 1 && !reversed;
  }
  scratch<R> numbers_;
  const R* data_;
  core_int n_;
};

/// w of one pair of real lines, from first to last - 1 where the whole isn't wanted. 0 or below.
template <class R>
int one_run(bool direct, const R* x, core_int nx, const R* y, core_int ny, core_int first, core_int last,
            R* w) {
  if (!direct) return conv_full(x, nx, y, ny, w);
  conv_range(x, nx, y, ny, first, last, w);
  return 0;
}

template <class T, class R>
int execute_line(const execution& e) {
  constexpr int kParts = dense_line<T, R>::kParts;
  const cc_axis& a = e.axes[0];
  // A reversed x makes a convolution of a correlation, whose outputs then count from 0.
  const bool correlates = e.job == kCorrelation;
  const core_int start = a.start + (correlates ? a.nx - 1 : 0);
  auto* const z = static_cast<T*>(e.z);
  const dense_line<T, R> x(static_cast<const T*>(e.x), a.nx, a.sx, correlates);
  const dense_line<T, R> y(static_cast<const T*>(e.y), a.ny, a.sy, false);
  if (!x.there() || !y.there()) return kAllocationFailure;
  if (e.direct && a.decimation > 1) {
    const scratch<typename dense_line<T, R>::element> w(a.nz);
    if (w.get() == nullptr) return kAllocationFailure;
    single_sums(x, y, a, start, w.get());
    for (core_int r = 0; r < a.nz; ++r) z[place_of(r, a.nz, a.sz)] = converted<T>(w.get()[r]);
    return kOk;
  }
  // Where only sums are wanted they begin at the first output.
  const core_int first = e.direct ? start : 0, count = e.direct ? a.nz : a.nx + a.ny - 1;
  const scratch<R> w(count), second(kParts == 2 ? count : 1);
  if (w.get() == nullptr || second.get() == nullptr) return kAllocationFailure;
  const auto run = [&](int of_x, int of_y, R* to) {
    return one_run(e.direct, x.part(of_x), a.nx, y.part(of_y), a.ny, first, first + count, to);
  };
  for (int part = 0; part < kParts; ++part) {
    if (run(0, part, w.get()) != 0) return kKernelFailure;
    if constexpr (kParts == 2) {
      if (run(1, 1 - part, second.get()) != 0) return kKernelFailure;
      const R sign = part == 0 ? R{-1} : R{1};
      for (core_int t = 0; t < count; ++t) w.get()[t] += sign * second.get()[t];
    }
    if constexpr (std::is_same_v<T, R>) {
      if (a.sz == 1 && a.decimation == 1) {
        std::copy_n(w.get() + (start - first), a.nz, z);
        continue;
      }
    }
    for (core_int r = 0; r < a.nz; ++r) {
      const R value = w.get()[start - first + r * a.decimation];
      set_part(z[place_of(r, a.nz, a.sz)], part, static_cast<real_of<T>>(value));
    }
  }
  return kOk;
}

template <class T, class R>
int execute_typed(const execution& e, vsl_cc_task& task) {
  if (e.dims == 1) {
    if (const int status = check_line(e); status != kOk) return status;
    return has_native_sums() ? execute_native<T, R>(e, task) : execute_line<T, R>(e);
  }
  if (e.x == nullptr) return kNullX;
  if (e.y == nullptr) return kNullY;
  if (e.z == nullptr) return kNullZ;
  if (const int status = check_axes(e.job, e.dims, e.axes); status != kOk) return status;
  return execute_ranks<T, R>(e.job, e.dims, e.axes, static_cast<const T*>(e.x), static_cast<const T*>(e.y),
                             static_cast<T*>(e.z));
}

/// Shapes that were never given count as 0, strides as dense, start and decimation as all of the result.
void fill_axes(const vsl_cc_task& task, const int* xstride, const int* ystride, const int* zstride,
               cc_axis* axes) {
  core_int x_dense = 1, y_dense = 1, z_dense = 1;
  for (int d = 0; d < std::clamp(task.dims, 0, kMaxDims); ++d) {
    const auto given = [d](const int* values, core_int otherwise) {
      return values != nullptr ? core_int{values[d]} : otherwise;
    };
    cc_axis& a = axes[d];
    a.nx = given(task.xshape, 0);
    a.ny = given(task.yshape, 0);
    a.nz = given(task.zshape, 0);
    a.sx = given(xstride, x_dense);
    a.sy = given(ystride, y_dense);
    a.sz = given(zstride, z_dense);
    a.start = given(task.start, task.job == kConvolution ? 0 : 1 - a.nx);
    a.decimation = given(task.decimation, 1);
    x_dense *= std::max<core_int>(a.nx, 1);
    y_dense *= std::max<core_int>(a.ny, 1);
    z_dense *= std::max<core_int>(a.nz, 1);
  }
}

int execute_any(vsl_cc_task& task, const execution& e) {
  const bool external_double = task.external_precision == kDouble;
  if (external_double && task.internal_precision == kSingle) return kNotImplemented;
  const bool sums_in_double = external_double || task.internal_precision == kDouble;
  if (task.type == kReal) {
    if (external_double) return execute_typed<double, double>(e, task);
    return sums_in_double ? execute_typed<float, double>(e, task) : execute_typed<float, float>(e, task);
  }
  if (external_double) return execute_typed<complex16, double>(e, task);
  return sums_in_double ? execute_typed<complex8, double>(e, task) : execute_typed<complex8, float>(e, task);
}

}  // namespace

int vsl_cc_execute(vsl_cc_task* task, const void* x, const int* xstride, const void* y, const int* ystride,
                   void* z, const int* zstride) {
  if (task == nullptr) return kNullPointer;
  if (task->status != kOk) return task->status;
  task->committed = 1;
  execution e;
  e.job = task->job, e.dims = task->dims, e.direct = task->mode == kDirectMode;
  e.x = x, e.y = y, e.z = z;
  fill_axes(*task, xstride, ystride, zstride, e.axes);
  return task->status = execute_any(*task, e);
}

}  // namespace qel::conv
