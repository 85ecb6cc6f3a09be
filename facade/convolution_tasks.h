// SPDX-License-Identifier: BSD-3-Clause
// What Convolution and Correlation share.
#pragma once

#include <cmath>
#include <cstdlib>

#include "facade/calls.h"
#include "qel/conv.h"
#include "tavik/core/convolution.h"

namespace Tavik::Kernel {

inline vsl_cc_task* task_of(Core::TaskHandle handle) { return reinterpret_cast<vsl_cc_task*>(handle); }
inline Core::TaskHandle handle_of(vsl_cc_task* task) { return reinterpret_cast<Core::TaskHandle>(task); }

/// Elements from xoffset on, a stride apart; a stride of 1 leaves the given count.
template <class T>
int shape_of(int xshape, const Core::Array<T>& x, int xstride, int xoffset) {
  if (xstride == 1) return xshape;
  const double count = std::ceil(static_cast<double>(x.Length() - xoffset) / xstride);
  return count >= 0 && count <= x.Length() ? static_cast<int>(count) : 0;
}

/// The offset of the lowest address of n elements whose first stands at offset.
inline int lowest_offset(int offset, int stride, int n) {
  return stride < 0 ? offset - std::abs(stride) * (n - 1) : offset;
}

template <class Entry, class Mode, class T>
int create_task(Entry* entry, vsl_cc_task** task, Mode mode, int xshape, int yshape, int zshape,
                const Core::Array<T>& x, int xstride, int xoffset) {
  return entry(task, static_cast<int>(mode), shape_of(xshape, x, xstride, xoffset), yshape, zshape,
               entry_pointer(&x[xoffset]), xstride);
}

template <class Entry, class T>
int execute_task(Entry* entry, Core::TaskHandle task, const Core::Array<T>& y, int ystride, int yoffset,
                 int yshape, const Core::Array<T>& z, int zstride, int zoffset, int zshape) {
  return entry(task_of(task), entry_pointer(&y[lowest_offset(yoffset, ystride, yshape)]), ystride,
               entry_pointer(&z[lowest_offset(zoffset, zstride, zshape)]), zstride);
}

}  // namespace Tavik::Kernel
