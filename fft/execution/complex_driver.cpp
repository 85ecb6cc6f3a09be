// SPDX-License-Identifier: BSD-3-Clause
#include "fft/execution/complex_driver.h"

#include "fft/execution/boxes.h"
#include "fft/execution/passes.h"
#include "fft/execution/regions.h"

namespace qel::fft {
namespace {

pass_shape shape_of(const dfti_node* first) {
  pass_shape shape{};
  shape.dimension = first->dimension;
  for (core_int i = 0; i < first->dimension; ++i) {
    shape.count[i] = first[i].length;
    shape.in_stride[i] = first[i].input_stride;
    shape.out_stride[i] = first[i].output_stride;
  }
  return shape;
}
/// The shape of all passes but the first, which work on the output.
pass_shape on_output(pass_shape shape) {
  std::copy_n(shape.out_stride, shape.dimension, shape.in_stride);
  return shape;
}

core_int width_of(const dfti_node* first) {
  const pass_shape shape = shape_of(first);
  return block_width(first->dimension, shape.count, first->output_stride);
}
template <class R>
size_t buffer_bytes(const dfti_node* first) {
  return line_buffer_bytes<R>(first->max_length, width_of(first));
}

/// Transforms that lie side by side, each element's neighbours being those of the other transforms.
bool lie_interleaved(const dfti_node* first) {
  return first->input_distance == 1 && output_distance_of(*first) == 1 && first->dimension == 1 &&
         first->length != 1;
}

void* slice(const dfti_node* first, int part) {
  return static_cast<char*>(first->workspace) + core_int{part} * first->workspace_bytes;
}

/// One thread's part of the pass over node k.
template <class R>
int run_pass(const dfti_node* first, const pass_shape& shape, int k, const pass_range& range, direction way,
             const complex_of<R>* in, complex_of<R>* out, complex_of<R>* buffer, void* work) {
  node_kernel* kernel = kernel_of(first[k], way);
  if (kernel == nullptr) return DFTI_INVALID_CONFIGURATION;
  if (k > 0) {
    return run_strided_pass<R>(on_output(shape), k, range, out, out, width_of(first), first + k, way, buffer,
                               work);
  }
  using C = complex_of<R>;
  const core_int n = first->length;
  const bool through_output = first->ordering == DFTI_BACKWARD_SCRAMBLED;
  return for_places(shape, 0, 0, range, [&](core_int in_offset, core_int out_offset) {
    return run_line<C, C>({in + in_offset, shape.in_stride[0], n}, {out + out_offset, shape.out_stride[0], n},
                          first, kernel, through_output, work);
  });
}

/// A transform of several dimensions on a native level; work_of(part): the work of a thread.
template <class R, class Work>
int run_boxes(const dfti_node* first, const complex_of<R>* in, complex_of<R>* out, direction way, int threads,
              Work work_of) {
  using C = complex_of<R>;
  node_kernel* const kernel = kernel_of(*first, way);
  const pass_shape shape = shape_of(first);
  box_shape box{static_cast<int>(shape.dimension), {}, {}};
  std::copy_n(shape.count, shape.dimension, box.count);
  std::copy_n(shape.out_stride, shape.dimension, box.stride);
  const bool dense = shape.in_stride[0] == 1 && shape.out_stride[0] == 1;
  const R scale = scale_of<R>(*first, way);
  const auto rows = [&](core_int in_offset, core_int out_offset, core_int count, void* work) {
    const C* const from = in + in_offset;
    C* const to = out + out_offset;
    if (dense) {
      return run_dense_lines<R>({from, to, shape.in_stride[1], shape.out_stride[1], count, scale, false},
                                first, kernel, way, work);
    }
    int status = DFTI_NO_ERROR;
    for (core_int i = 0; i < count && status == DFTI_NO_ERROR; ++i) {
      status = run_line<C, C>({from + i * shape.in_stride[1], shape.in_stride[0], shape.count[0]},
                              {to + i * shape.out_stride[1], shape.out_stride[0], shape.count[0]}, first,
                              kernel, false, work);
    }
    return status;
  };
  return boxes<R>(first, box, shape.in_stride, out, way).run(threads, true, rows, work_of);
}

template <class R>
int run_sequential(const dfti_node* first, const complex_of<R>* in, complex_of<R>* out, core_int transforms,
                   direction way, void* work) {
  using C = complex_of<R>;
  node_kernel* kernel = kernel_of(*first, way);
  if (kernel == nullptr) return DFTI_INVALID_CONFIGURATION;
  if (first->dimension > 1 && native_passes<R>() != nullptr) {
    int status = DFTI_NO_ERROR;
    for (core_int t = 0; t < transforms && status == DFTI_NO_ERROR; ++t) {
      status = run_boxes<R>(first, in + t * first->input_distance, out + t * output_distance_of(*first), way,
                            1, [=](int) { return work; });
    }
    return status;
  }
  const bool blocks = first->dimension > 1 || lie_interleaved(first);
  const call_buffer buffer(blocks ? buffer_bytes<R>(first) : 0);
  if (blocks && buffer.as<C>() == nullptr) return DFTI_MEMORY_ERROR;
  if (lie_interleaved(first)) {
    return run_lines<R>({in, first->input_stride, 1}, {out, first->output_stride, 1}, transforms,
                        kWidestBlock, first, way, buffer.as<C>(), work);
  }
  if (first->dimension == 1 && first->input_stride == 1 && first->output_stride == 1 &&
      first->ordering == DFTI_ORDERED) {
    const core_int bytes = first->length * static_cast<core_int>(sizeof(C));
    return run_dense_lines<R>({in, out, first->input_distance, output_distance_of(*first), transforms,
                               scale_of<R>(*first, way), asks_ahead(transforms, bytes)},
                              first, kernel, way, work);
  }
  const pass_shape shape = shape_of(first);
  int status = DFTI_NO_ERROR;
  for (core_int t = 0; t < transforms && status == DFTI_NO_ERROR; ++t) {
    for (int k = 0; k < first->dimension && status == DFTI_NO_ERROR; ++k) {
      const pass_range range = first->dimension > 1 ? whole_pass(shape, k) : pass_range{-1, 0, 0};
      status = run_pass<R>(first, shape, k, range, way, in, out, buffer.as<C>(), work);
    }
    in += first->input_distance;
    out += output_distance_of(*first);
  }
  return status;
}

template <class R>
int run_threaded(const dfti_node* first, const complex_of<R>* in, complex_of<R>* out, direction way) {
  using C = complex_of<R>;
  if (first->number_of_transforms > 1) {
    const int threads = static_cast<int>(std::min<core_int>(first->threads, first->number_of_transforms));
    return over_shares(first->number_of_transforms, threads, [&](int part, core_int from, core_int to) {
      return run_sequential<R>(first, in + from * first->input_distance,
                               out + from * output_distance_of(*first), to - from, way, slice(first, part));
    });
  }
  if (first->dimension > 1 && native_passes<R>() != nullptr) {
    if (kernel_of(*first, way) == nullptr) return DFTI_INVALID_CONFIGURATION;
    return run_boxes<R>(first, in, out, way, first->threads, [=](int part) { return slice(first, part); });
  }
  const pass_shape shape = shape_of(first);
  int status = DFTI_NO_ERROR;
  for (int k = 0; k < first->dimension && status == DFTI_NO_ERROR; ++k) {
    const int axis = parallel_axis(first->dimension, k);
    status = over_shares(shape.count[axis], first->threads, [&](int part, core_int from, core_int to) {
      const call_buffer buffer(buffer_bytes<R>(first));
      if (buffer.as<C>() == nullptr) return int{DFTI_MEMORY_ERROR};
      return run_pass<R>(first, shape, k, {axis, from, to}, way, in, out, buffer.as<C>(), slice(first, part));
    });
  }
  return status;
}

}  // namespace

template <class R>
int dfti_sequential_forward(const dfti_node* first, const complex_of<R>* input, complex_of<R>* output,
                            core_int transforms, void* work) {
  return run_sequential<R>(first, input, output, transforms, kForward, work);
}
template <class R>
int dfti_sequential_backward(const dfti_node* first, const complex_of<R>* input, complex_of<R>* output,
                             core_int transforms, void* work) {
  return run_sequential<R>(first, input, output, transforms, kBackward, work);
}
template <class R>
int dfti_threaded_forward(const dfti_node* first, const complex_of<R>* input, complex_of<R>* output) {
  return run_threaded<R>(first, input, output, kForward);
}
template <class R>
int dfti_threaded_backward(const dfti_node* first, const complex_of<R>* input, complex_of<R>* output) {
  return run_threaded<R>(first, input, output, kBackward);
}

template <class R, direction kWay>
int run_split_lines(const dfti_node* first, split_line<const R> in, split_line<R> out, void* work) {
  if (first->dimension > 1) return DFTI_UNIMPLEMENTED;
  node_kernel* kernel = kernel_of(*first, kWay);
  if (kernel == nullptr) return DFTI_INVALID_CONFIGURATION;
  const core_int n = first->length, in_stride = first->input_stride, out_stride = first->output_stride;
  const bool strided = in_stride != 1 || out_stride != 1;
  const call_buffer buffer(strided ? static_cast<size_t>(n) * 2 * sizeof(R) : 0);
  if (strided && buffer.as<R>() == nullptr) return DFTI_MEMORY_ERROR;
  for (core_int t = 0; t < first->number_of_transforms; ++t) {
    const core_int in_offset = t * first->input_distance, out_offset = t * output_distance_of(*first);
    split_line<const R> from{in.real + in_offset, in.imag + in_offset};
    split_line<R> to{out.real + out_offset, out.imag + out_offset};
    const split_line<R> target = to;
    if (strided) {
      to = {buffer.as<R>(), buffer.as<R>() + n};
      gather(from.real, in_stride, to.real, n);
      gather(from.imag, in_stride, to.imag, n);
      from = {to.real, to.imag};
    }
    if (const int status = kernel(&from, &to, first, work)) return status;
    if (strided) {
      scatter(to.real, target.real, out_stride, n);
      scatter(to.imag, target.imag, out_stride, n);
    }
  }
  return DFTI_NO_ERROR;
}

#define QEL_INSTANTIATE(R)                                                                                   \
  template int dfti_sequential_forward<R>(const dfti_node*, const complex_of<R>*, complex_of<R>*, core_int,  \
                                          void*);                                                            \
  template int dfti_sequential_backward<R>(const dfti_node*, const complex_of<R>*, complex_of<R>*, core_int, \
                                           void*);                                                           \
  template int dfti_threaded_forward<R>(const dfti_node*, const complex_of<R>*, complex_of<R>*);             \
  template int dfti_threaded_backward<R>(const dfti_node*, const complex_of<R>*, complex_of<R>*);            \
  template int run_split_lines<R, kForward>(const dfti_node*, split_line<const R>, split_line<R>, void*);    \
  template int run_split_lines<R, kBackward>(const dfti_node*, split_line<const R>, split_line<R>, void*);
QEL_INSTANTIATE(float)
QEL_INSTANTIATE(double)
#undef QEL_INSTANTIATE

}  // namespace qel::fft
