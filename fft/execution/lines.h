// SPDX-License-Identifier: BSD-3-Clause
// Single lines and blocks of lines: brought to unit stride, transformed by the node's kernel, brought back.
#pragma once

#include <algorithm>

#include "fft/execution/node_kernels.h"
#include "fft/planning/driver_rules.h"
#include "fft/spec/moves.h"

namespace qel::fft {

/// Memory of serv_malloc for the length of a call.
class call_buffer {
 public:
  explicit call_buffer(size_t bytes, int alignment = 256) : block_(serv_malloc(bytes, alignment)) {}
  ~call_buffer() { serv_free(block_); }
  call_buffer(const call_buffer&) = delete;
  call_buffer& operator=(const call_buffer&) = delete;
  template <class T>
  T* as() const {
    return static_cast<T*>(block_);
  }

 private:
  void* block_;
};

/// A line's elements: where, how far apart, how many.
template <class T>
struct strided {
  T* data;
  core_int stride;
  core_int count;
};

/// One line of any strides. through_output: the kernel works in place on the output.
template <class T, class U>
int run_line(strided<const T> in, strided<U> out, const dfti_node* node, node_kernel* kernel,
             bool through_output, void* work) {
  const size_t in_bytes = static_cast<size_t>(in.count) * sizeof(T);
  const size_t out_bytes = static_cast<size_t>(out.count) * sizeof(U);
  if (out.stride != 1 || (in.stride != 1 && in_bytes > out_bytes)) {
    const call_buffer buffer(in_bytes > out_bytes ? in_bytes : out_bytes);
    if (buffer.as<char>() == nullptr) return DFTI_MEMORY_ERROR;
    gather(in.data, in.stride, buffer.as<T>(), in.count);
    const int status = kernel(buffer.as<T>(), buffer.as<U>(), node, work);
    if (status == DFTI_NO_ERROR) scatter(buffer.as<const U>(), out.data, out.stride, out.count);
    return status;
  }
  if (in.stride != 1 || through_output) {
    gather(in.data, in.stride, reinterpret_cast<T*>(out.data), in.count);
    return kernel(out.data, out.data, node, work);
  }
  return kernel(in.data, out.data, node, work);
}

/// Lines at unit stride; their scale is the node's.
template <class R>
int run_dense_lines(const dense_lines<R>& lines, const dfti_node* node, node_kernel* kernel, direction way,
                    void* work) {
  const dft_spec<R>* spec = ordered_spec_of<R>(*node);
  if (spec == nullptr) {
    for (core_int i = 0; i < lines.count; ++i) {
      if (const int status =
              kernel(lines.input + i * lines.in_step, lines.output + i * lines.out_step, node, work))
        return status;
    }
    return DFTI_NO_ERROR;
  }
  return spec_status(dft_spec_run_lines<R>(lines, *spec, work, way));
}

/// kWidth lines that lie step apart, from or to dense lines of n elements.
template <int kWidth, class C>
void gather_block(const C* from, core_int stride, core_int step, C* lines, core_int n) {
  for (core_int i = 0; i < n; ++i, from += stride) {
#pragma GCC unroll 8
    for (int w = 0; w < kWidth; ++w) lines[w * n + i] = element_at(from + w * step);
  }
}
template <int kWidth, class C>
void scatter_block(const C* lines, core_int n, C* to, core_int stride, core_int step) {
  for (core_int i = 0; i < n; ++i, to += stride) {
#pragma GCC unroll 8
    for (int w = 0; w < kWidth; ++w) set_element(to + w * step, lines[w * n + i]);
  }
}

/// Where lines begin and how their elements and the lines themselves lie.
template <class C>
struct line_places {
  C* data;
  core_int stride;
  core_int step;
};

/// kWidth lines through the buffer, which holds them side by side.
template <int kWidth, class R>
int run_block(line_places<const complex_of<R>> in, line_places<complex_of<R>> out, const dfti_node* node,
              node_kernel* kernel, complex_of<R>* buffer, void* work) {
  const core_int n = node->length;
  gather_block<kWidth>(in.data, in.stride, in.step, buffer, n);
  for (int w = 0; w < kWidth; ++w) {
    if (const int status = kernel(buffer + w * n, buffer + w * n, node, work)) return status;
  }
  scatter_block<kWidth>(buffer, n, out.data, out.stride, out.step);
  return DFTI_NO_ERROR;
}

inline node_kernel* kernel_of(const dfti_node& node, direction way) {
  return way == kForward ? node.node_forward : node.node_backward;
}

/// Bytes of a buffer for blocks of lines up to that length; native blocks have a width of their own.
template <class R>
size_t line_buffer_bytes(core_int longest, core_int width) {
  if (native_passes<R>() != nullptr) return column_work_bytes<R>(longest, kLongBlock<R>);
  return static_cast<size_t>(width * longest) * sizeof(complex_of<R>);
}

/// Native: lines side by side, straight from and to their places.
template <class R>
void run_side_by_side(line_places<const complex_of<R>> in, line_places<complex_of<R>> out, core_int count,
                      const dfti_node& node, direction way, void* buffer) {
  const dft_spec<R>& spec = *ordered_spec_of<R>(node);
  const R scale = scale_of<R>(node, way);
  const core_int ahead =
      asks_ahead_of_columns(node.length * count * core_int{sizeof(complex_of<R>)}) ? kLongBlock<R> : 0;
  core_int lines = first_block(reinterpret_cast<uintptr_t>(out.data), sizeof(complex_of<R>), count);
  for (core_int done = 0; done < count; done += lines, lines = std::min(kLongBlock<R>, count - done)) {
    dft_spec_run_columns<R>({in.data + done, in.stride}, {out.data + done, out.stride}, lines, spec, buffer,
                            way, ahead);
    if (scale == 1) continue;
    for (core_int k = 0; k < node.length; ++k) {
      level_kernels<R>().scale(out.data + done + k * out.stride, lines, scale);
    }
  }
}

/// count lines, width of them at a time and then by halves.
template <class R>
int run_lines(line_places<const complex_of<R>> in, line_places<complex_of<R>> out, core_int count,
              core_int width, const dfti_node* node, direction way, complex_of<R>* buffer, void* work) {
  const dft_spec<R>* spec = ordered_spec_of<R>(*node);
  if (spec != nullptr && takes_columns(*spec) && in.step == 1 && out.step == 1) {
    run_side_by_side<R>(in, out, count, *node, way, buffer);
    return DFTI_NO_ERROR;
  }
  node_kernel* kernel = kernel_of(*node, way);
  for (core_int done = 0; done < count;) {
    const core_int left = std::min(width, count - done);
    auto* block = run_block<1, R>;
    if (left >= 2) block = run_block<2, R>;
    if (left >= 4) block = run_block<4, R>;
    if (left >= 8) block = run_block<8, R>;
    const int status = block({in.data + done * in.step, in.stride, in.step},
                             {out.data + done * out.step, out.stride, out.step}, node, kernel, buffer, work);
    if (status != DFTI_NO_ERROR) return status;
    done += left >= 8 ? 8 : left >= 4 ? 4 : left >= 2 ? 2 : 1;
  }
  return DFTI_NO_ERROR;
}

}  // namespace qel::fft
