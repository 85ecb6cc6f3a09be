// SPDX-License-Identifier: BSD-3-Clause
// The native levels' way over one transform of several dimensions: box by box of the inner dimensions, so
// that a pass finds in a cache what the one before it left there.
#pragma once

#include "fft/execution/lines.h"
#include "fft/execution/regions.h"
#include "fft/planning/box_rules.h"

namespace qel::fft {

/// The dimensions of one transform from node 1 on, as lines of complex numbers in place. Rows are the lines
/// along node 0, from or to another side of the call.
template <class R>
class boxes {
  using C = complex_of<R>;

 public:
  /// shape: of the complex numbers; other_stride: of the rows' other side, by node.
  boxes(const dfti_node* first, const box_shape& shape, const core_int* other_stride, C* data, direction way)
      : first_(first), shape_(shape), other_stride_(other_stride), data_(data), way_(way) {}

  /// rows(other offset, offset, count, work) transforms the rows of so many indices of node 1; work_of(part):
  /// the work of a thread. Columns follow their rows, or come before them. A status.
  template <class Rows, class Work>
  int run(int threads, bool rows_first, Rows rows, Work work_of) const {
    const int last = shape_.dimension - 1;
    if (threads == 1) {
      const room own(*this, work_of(0));
      return own ? walk(last, 0, 0, rows_first, rows, own) : int{DFTI_MEMORY_ERROR};
    }
    const auto rows_and_boxes = [&] {
      return over_shares(shape_.count[last], threads, [&](int part, core_int from, core_int to) {
        const room own(*this, work_of(part));
        if (!own) return int{DFTI_MEMORY_ERROR};
        return inner(last, from * other_stride_[last], from * shape_.stride[last], to - from, rows_first,
                     rows, own);
      });
    };
    const column_axes axes = columns_below(shape_, last);
    const int outer = axes.count - 1;
    const core_int unit = outer == 0 ? kLongBlock<R> : 1, extent = axes.extent[outer];
    const auto last_columns = [&] {
      return over_shares((extent + unit - 1) / unit, threads, [&](int part, core_int from, core_int to) {
        const room own(*this, work_of(part));
        if (!own) return int{DFTI_MEMORY_ERROR};
        return columns(last, axes, 0, from * unit, std::min(extent, to * unit), own);
      });
    };
    const int status = rows_first ? rows_and_boxes() : last_columns();
    if (status != DFTI_NO_ERROR) return status;
    return rows_first ? last_columns() : rows_and_boxes();
  }

 private:
  /// What a thread works with.
  class room {
   public:
    room(const boxes& of, void* thread_work)
        : buffer_(line_buffer_bytes<R>(of.first_->max_length, kWidestBlock)), work(thread_work) {}
    explicit operator bool() const { return lines() != nullptr; }
    C* lines() const { return buffer_.template as<C>(); }

   private:
    call_buffer buffer_;

   public:
    void* const work;
  };

  template <class Rows>
  int walk(int top, core_int other, core_int at, bool rows_first, Rows& rows, const room& own) const {
    const column_axes axes = columns_below(shape_, top);
    const auto passes = [&] { return columns(top, axes, at, 0, axes.extent[axes.count - 1], own); };
    int status = rows_first ? int{DFTI_NO_ERROR} : passes();
    if (status == DFTI_NO_ERROR) status = inner(top, other, at, shape_.count[top], rows_first, rows, own);
    return rows_first && status == DFTI_NO_ERROR ? passes() : status;
  }
  /// All nodes below one, for count of its indices.
  template <class Rows>
  int inner(int node, core_int other, core_int at, core_int count, bool rows_first, Rows& rows,
            const room& own) const {
    if (node == 1) return rows(other, at, count, own.work);
    int status = DFTI_NO_ERROR;
    for (core_int i = 0; i < count && status == DFTI_NO_ERROR; ++i) {
      status = walk(node - 1, other + i * other_stride_[node], at + i * shape_.stride[node], rows_first, rows,
                    own);
    }
    return status;
  }

  /// The lines of a node, for all indices of the axes, those of the outermost axis limited.
  int columns(int node, const column_axes& axes, core_int at, core_int from, core_int to,
              const room& own) const {
    if (shape_.count[node] == 1) return DFTI_NO_ERROR;
    const int outer = axes.count - 1;
    core_int index[kMaxDimension] = {};
    const core_int runs = outer == 0 ? 1 : (to - from) * inner_runs(axes);
    core_int offset = at + from * axes.stride[outer];
    const core_int count = outer == 0 ? to - from : axes.extent[0];
    for (core_int run = 0; run < runs; ++run) {
      C* const here = data_ + offset;
      const int status = run_lines<R>({here, shape_.stride[node], axes.stride[0]},
                                      {here, shape_.stride[node], axes.stride[0]}, count, kWidestBlock,
                                      first_ + node, way_, own.lines(), own.work);
      if (status != DFTI_NO_ERROR) return status;
      for (int i = 1; i <= outer; ++i) {
        offset += axes.stride[i];
        if (++index[i] < axes.extent[i] || i == outer) break;
        offset -= axes.extent[i] * axes.stride[i];
        index[i] = 0;
      }
    }
    return DFTI_NO_ERROR;
  }
  static core_int inner_runs(const column_axes& axes) {
    core_int runs = 1;
    for (int i = 1; i < axes.count - 1; ++i) runs *= axes.extent[i];
    return runs;
  }

  const dfti_node* first_;
  box_shape shape_;
  const core_int* other_stride_;
  C* data_;
  direction way_;
};

}  // namespace qel::fft
