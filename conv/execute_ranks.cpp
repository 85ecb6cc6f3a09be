// SPDX-License-Identifier: BSD-3-Clause
// Any number of dimensions: for every output row along the first dimension, one-dimensional sums over all
// pairs of rows of x and y whose other indices meet there.
#include "conv/execute_ranks.h"

#include <algorithm>

#include "blas/plain/scratch.h"
#include "conv/conv_full.h"
#include "conv/lines.h"
#include "conv/task.h"

namespace qel::conv {
namespace {

/// An index over the dimensions from the second on.
class row_index {
 public:
  row_index(int dims, const core_int* counts) : dims_(dims), counts_(counts) {}
  core_int operator[](int d) const { return at_[d]; }
  /// The next row; false after the last.
  bool next() {
    for (int d = 1; d < dims_; ++d) {
      if (++at_[d] < counts_[d]) return true;
      at_[d] = 0;
    }
    return false;
  }

 private:
  int dims_;
  const core_int* counts_;
  core_int at_[kMaxDims] = {};
};

/// The places of a row's first element, without the first dimension's part.
core_int row_place(int dims, const row_index& at, const core_int* n, const core_int* stride) {
  core_int place = 0;
  for (int d = 1; d < dims; ++d) place += place_of(at[d], n[d], stride[d]);
  return place;
}

struct shape {
  core_int n[kMaxDims], stride[kMaxDims];
};

}  // namespace

int check_axis(int job, const cc_axis& a) {
  if (a.nx < 1) return kBadXShape;
  if (a.ny < 1) return kBadYShape;
  if (a.nz < 1) return kBadZShape;
  if (a.sz == 0) return kBadZStride;
  const core_int least = job == kConvolution ? 0 : 1 - a.nx,
                 end = job == kConvolution ? a.nx + a.ny - 1 : a.ny;
  if (a.start < least || a.start >= end) return kBadStart;
  if (a.decimation < 1 || (a.nz - 1) * a.decimation + a.start >= end) return kBadDecimation;
  return kOk;
}

int check_axes(int job, int dims, const cc_axis* axes) {
  if (dims < 1 || dims > kMaxDims) return kBadDims;
  for (int d = 0; d < dims; ++d)
    if (const int status = check_axis(job, axes[d]); status != kOk) return status;
  return kOk;
}

template <class T, class R>
int execute_ranks(int job, int dims, const cc_axis* axes, const T* x, const T* y, T* z) {
  constexpr int kParts = is_complex<T> ? 2 : 1;
  shape xs{}, zs{};
  for (int d = 0; d < dims; ++d) {
    xs.n[d] = axes[d].nx, xs.stride[d] = axes[d].sx;
    zs.n[d] = axes[d].nz, zs.stride[d] = axes[d].sz;
  }
  const cc_axis& first = axes[0];
  const bool correlates = job == kCorrelation;
  // In w's own numbering, from 0, which a reversed x gives a correlation too.
  const core_int start = first.start + (correlates ? first.nx - 1 : 0);
  const core_int count = (first.nz - 1) * first.decimation + 1;
  const plain::scratch<R> x_row(kParts * first.nx), y_row(kParts * first.ny), row(count), sum(kParts * count);
  if (x_row.get() == nullptr || y_row.get() == nullptr || row.get() == nullptr || sum.get() == nullptr)
    return kAllocationFailure;

  row_index out(dims, zs.n);
  do {
    std::fill_n(sum.get(), kParts * count, R{});
    row_index of_x(dims, xs.n);
    do {
      core_int y_place = 0;
      bool meets = true;
      for (int d = 1; d < dims && meets; ++d) {
        const core_int t = axes[d].start + out[d] * axes[d].decimation;
        const core_int of_y = correlates ? t + of_x[d] : t - of_x[d];
        meets = of_y >= 0 && of_y < axes[d].ny;
        if (meets) y_place += place_of(of_y, axes[d].ny, axes[d].sy);
      }
      if (!meets) continue;
      const core_int x_place = row_place(dims, of_x, xs.n, xs.stride);
      for (int part = 0; part < kParts; ++part) {
        gather_part(x + x_place, first.nx, first.sx, correlates, part, x_row.get() + part * first.nx);
        gather_part(y + y_place, first.ny, first.sy, false, part, y_row.get() + part * first.ny);
      }
      for (int pair = 0; pair < kParts * kParts; ++pair) {
        const int of_left = pair / kParts, of_right = pair % kParts, into = (of_left + of_right) % 2;
        conv_range(x_row.get() + of_left * first.nx, first.nx, y_row.get() + of_right * first.ny, first.ny,
                   start, start + count, row.get());
        R* const to = sum.get() + into * count;
        for (core_int k = 0; k < count; ++k) to[k] += of_left + of_right == 2 ? -row.get()[k] : row.get()[k];
      }
    } while (of_x.next());
    T* const z_row = z + row_place(dims, out, zs.n, zs.stride);
    for (core_int r = 0; r < first.nz; ++r) {
      T& target = z_row[place_of(r, first.nz, first.sz)];
      for (int part = 0; part < kParts; ++part)
        set_part(target, part, static_cast<real_of<T>>(sum.get()[part * count + r * first.decimation]));
    }
  } while (out.next());
  return kOk;
}

#define QEL_CONV_RANKS(T, R) \
  template int execute_ranks<T, R>(int, int, const cc_axis*, const T*, const T*, T*)
QEL_CONV_RANKS(float, float);
QEL_CONV_RANKS(float, double);
QEL_CONV_RANKS(double, double);
QEL_CONV_RANKS(complex8, float);
QEL_CONV_RANKS(complex8, double);
QEL_CONV_RANKS(complex16, double);
#undef QEL_CONV_RANKS

}  // namespace qel::conv
