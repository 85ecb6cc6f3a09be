// SPDX-License-Identifier: BSD-3-Clause
#include "fft/execution/real_driver.h"

#include "fft/execution/boxes.h"
#include "fft/execution/edge_columns.h"
#include "fft/execution/packed_spectrum.h"
#include "fft/execution/passes.h"
#include "fft/execution/regions.h"

namespace qel::fft {
namespace {

/// One side of a call: its strides and distance, in elements of that side.
struct side {
  core_int stride[kMaxDimension];
  core_int distance;
};
side side_of(const dfti_node* first, bool input) {
  side result{};
  for (core_int i = 0; i < first->dimension; ++i) {
    result.stride[i] = input ? first[i].input_stride : first[i].output_stride;
  }
  result.distance = input ? first->input_distance : first->output_distance;
  return result;
}

/// Transforms from real_side to spectrum_side or back.
template <class R, direction kWay>
class real_call {
  using C = complex_of<R>;

 public:
  real_call(const dfti_node* first, const void* input, void* output, void* work)
      : first_(first), work_(work), in_place_(input == output) {
    // In place there is one array: the input's strides are those of the reals, the output's those of the
    // spectrum.
    const bool reals_are_input = in_place_ || kWay == kForward;
    reals_ = side_of(first, reals_are_input);
    spectrum_ = side_of(first, !reals_are_input);
    real_data_ = static_cast<R*>(kWay == kForward ? const_cast<void*>(input) : output);
    spectrum_data_ = kWay == kForward ? output : const_cast<void*>(input);
    complex_ = has_complex_spectrum(*first);
    packing_of(*first, &format_);
  }

  int run() const {
    const core_int transforms = first_->number_of_transforms;
    if (first_->threads > 1 && transforms > 1) {
      const int threads = static_cast<int>(std::min<core_int>(first_->threads, transforms));
      return over_shares(transforms, threads, [&](int part, core_int from, core_int to) {
        return several(from, to, 1, slice(part));
      });
    }
    return several(0, transforms, first_->threads, work_);
  }

 private:
  void* slice(int part) const { return static_cast<char*>(work_) + core_int{part} * first_->workspace_bytes; }
  R* reals(core_int transform) const { return real_data_ + transform * reals_.distance; }
  template <class T>
  T* spectrum(core_int transform) const {
    if (in_place_ && spectrum_.distance == 0) return reinterpret_cast<T*>(reals(transform));
    return static_cast<T*>(spectrum_data_) + transform * spectrum_.distance;
  }

  int several(core_int from, core_int to, int threads, void* work) const {
    for (core_int t = from; t < to; ++t) {
      const int status = first_->dimension > 1 ? many_dimensions(t, threads, work)
                         : complex_            ? line<C>(t, first_->length / 2 + 1, work)
                                               : line<R>(t, packed_reals(format_, first_->length), work);
      if (status != DFTI_NO_ERROR) return status;
    }
    return DFTI_NO_ERROR;
  }

  template <class T>
  int line(core_int t, core_int count, void* work) const {
    const core_int n = first_->length;
    if constexpr (kWay == kForward) {
      return run_line<R, T>({reals(t), reals_.stride[0], n}, {spectrum<T>(t), spectrum_.stride[0], count},
                            first_, first_->node_forward, false, work);
    } else {
      return run_line<T, R>({spectrum<T>(t), spectrum_.stride[0], count}, {reals(t), reals_.stride[0], n},
                            first_, first_->node_backward, false, work);
    }
  }

  /// Counts of the reals, strides of both sides; the spectrum's are given.
  pass_shape row_shape(const core_int* spectrum_strides) const {
    pass_shape shape{};
    shape.dimension = first_->dimension;
    for (core_int i = 0; i < first_->dimension; ++i) {
      shape.count[i] = first_[i].length;
      shape.in_stride[i] = kWay == kForward ? reals_.stride[i] : spectrum_strides[i];
      shape.out_stride[i] = kWay == kForward ? spectrum_strides[i] : reals_.stride[i];
    }
    return shape;
  }
  pass_shape column_shape(const core_int* spectrum_strides) const {
    pass_shape shape = row_shape(spectrum_strides);
    shape.count[0] = first_->packed_length;
    std::copy_n(spectrum_strides, first_->dimension, shape.in_stride);
    std::copy_n(spectrum_strides, first_->dimension, shape.out_stride);
    return shape;
  }

  int rows(R* real, C* half, const core_int* strides, int threads, void* work) const {
    const pass_shape shape = row_shape(strides);
    const int axis = parallel_axis(first_->dimension, 0);
    const core_int n = first_->length, count = first_->packed_length;
    return over_shares(shape.count[axis], threads, [&](int part, core_int from, core_int to) {
      void* own = threads > 1 ? slice(part) : work;
      return for_places(shape, 0, 0, {axis, from, to}, [&](core_int in, core_int out) {
        if constexpr (kWay == kForward) {
          return run_line<R, C>({real + in, shape.in_stride[0], n}, {half + out, shape.out_stride[0], count},
                                first_, first_->node_forward, false, own);
        } else {
          return run_line<C, R>({half + in, shape.in_stride[0], count}, {real + out, shape.out_stride[0], n},
                                first_, first_->node_backward, false, own);
        }
      });
    });
  }

  int columns(C* half, const core_int* strides, int threads, void* work) const {
    const pass_shape shape = column_shape(strides);
    const core_int width = block_width(first_->dimension, shape.count, strides[0]);
    for (int pass = 1; pass < first_->dimension; ++pass) {
      const int k = kWay == kForward ? pass : static_cast<int>(first_->dimension) - pass;
      const int axis = parallel_axis(first_->dimension, k);
      const int status = over_shares(shape.count[axis], threads, [&](int part, core_int from, core_int to) {
        const call_buffer buffer(line_buffer_bytes<R>(first_->max_length, width));
        if (buffer.template as<C>() == nullptr) return int{DFTI_MEMORY_ERROR};
        return run_strided_pass<R>(shape, k, {axis, from, to}, half, half, width, first_ + k, kWay,
                                   buffer.template as<C>(), threads > 1 ? slice(part) : work);
      });
      if (status != DFTI_NO_ERROR) return status;
    }
    return DFTI_NO_ERROR;
  }

  int many_dimensions(core_int t, int threads, void* work) const {
    core_int dense[kMaxDimension] = {1};
    core_int elements = first_->packed_length;
    for (core_int i = 1; i < first_->dimension; ++i) {
      dense[i] = elements;
      elements *= first_[i].length;
    }
    // A spectrum that is packed, or that must not be written to, is worked on in a buffer.
    const bool direct = complex_ && (in_place_ || kWay == kForward);
    if (direct) {
      // In place the spectrum begins where the reals do.
      C* half = in_place_ ? reinterpret_cast<C*>(reals(t)) : spectrum<C>(t);
      return both(t, half, spectrum_.stride, threads, work);
    }
    const call_buffer buffer(static_cast<size_t>(elements) * sizeof(C), 64);
    C* half = buffer.template as<C>();
    if (half == nullptr) return DFTI_MEMORY_ERROR;
    if (kWay == kBackward) fetch(t, half, dense);
    const int status = both(t, half, dense, threads, work);
    if (kWay == kForward && status == DFTI_NO_ERROR) {
      pack_spectrum(packed_walk(row_shape(dense), spectrum_.stride, format_), half, packed(t));
    }
    return status;
  }

  R* packed(core_int t) const { return in_place_ ? reals(t) : spectrum<R>(t); }

  int both(core_int t, C* half, const core_int* strides, int threads, void* work) const {
    if (native_passes<R>() != nullptr) return in_boxes(reals(t), half, strides, threads, work);
    int status = kWay == kForward ? rows(reals(t), half, strides, threads, work)
                                  : columns(half, strides, threads, work);
    if (status != DFTI_NO_ERROR) return status;
    return kWay == kForward ? columns(half, strides, threads, work)
                            : rows(reals(t), half, strides, threads, work);
  }

  /// One real row and its spectrum.
  int row(R* real, C* half, core_int half_stride, packing format, void* work) const {
    const core_int n = first_->length, count = first_->packed_length;
    if (reals_.stride[0] != 1 || half_stride != 1) {
      if constexpr (kWay == kForward) {
        return run_line<R, C>({real, reals_.stride[0], n}, {half, half_stride, count}, first_,
                              first_->node_forward, false, work);
      } else {
        return run_line<C, R>({half, half_stride, count}, {real, reals_.stride[0], n}, first_,
                              first_->node_backward, false, work);
      }
    }
    if (format == packing::kCcs) {
      return kWay == kForward ? first_->node_forward(real, half, first_, work)
                              : first_->node_backward(half, real, first_, work);
    }
    const auto* spec = static_cast<const real_spec<R>*>(first_->specs[kRealSpec][kSpecPrecision<R>]);
    R* const packed = reinterpret_cast<R*>(half);
    R* const result = kWay == kForward ? packed : real;
    if (const int status = kWay == kForward ? real_forward(real, packed, spec, format, work)
                                            : real_backward(packed, real, spec, format, work))
      return spec_status(status);
    const R scale = scale_of<R>(*first_, kWay);
    if (scale != 1) level_kernels<R>().scale(reinterpret_cast<C*>(result), n / 2, scale);
    // As the line's kernel leaves it in place.
    if (kWay == kBackward && in_place_ && first_->packed_format == DFTI_CCS_FORMAT)
      set_element(real + n, R{0});
    return DFTI_NO_ERROR;
  }

  /// Rows and columns of a transform on a native level.
  int in_boxes(R* real, C* half, const core_int* strides, int threads, void* work) const {
    box_shape box{static_cast<int>(first_->dimension), {}, {}};
    std::copy_n(strides, box.dimension, box.stride);
    for (int i = 0; i < box.dimension; ++i) box.count[i] = first_[i].length;
    const bool joined =
        reals_.stride[0] == 1 && strides[0] == 1 && joins_edge_columns(first_->length, kLongBlock<R>);
    box.count[0] = joined ? first_->length / 2 : first_->packed_length;
    const edge_columns<R> edges(box, half);
    if (joined && kWay == kBackward) edges.join();
    const packing format = joined ? packing::kPerm : packing::kCcs;
    const int status = boxes<R>(first_, box, reals_.stride, half, kWay)
                           .run(
                               threads, kWay == kForward,
                               [&](core_int other, core_int at, core_int count, void* own) {
                                 int result = DFTI_NO_ERROR;
                                 for (core_int i = 0; i < count && result == DFTI_NO_ERROR; ++i) {
                                   result = row(real + other + i * reals_.stride[1],
                                                half + at + i * strides[1], strides[0], format, own);
                                 }
                                 return result;
                               },
                               [&](int part) { return threads > 1 ? slice(part) : work; });
    if (joined && kWay == kForward && status == DFTI_NO_ERROR) edges.part();
    return status;
  }

  /// The spectrum of the input, dense.
  void fetch(core_int t, C* half, const core_int* dense) const {
    if (!complex_) {
      unpack_spectrum(packed_walk(row_shape(dense), spectrum_.stride, format_), packed(t), half);
      return;
    }
    pass_shape shape = column_shape(dense);
    std::copy_n(spectrum_.stride, first_->dimension, shape.in_stride);
    for_places(shape, 0, 0, {-1, 0, 0}, [&](core_int in, core_int out) {
      gather(spectrum<const C>(t) + in, spectrum_.stride[0], half + out, first_->packed_length);
      return int{DFTI_NO_ERROR};
    });
  }

  const dfti_node* first_;
  void* work_;
  bool in_place_;
  bool complex_;
  packing format_ = packing::kCcs;
  side reals_, spectrum_;
  R* real_data_;
  void* spectrum_data_;
};

}  // namespace

template <class R, direction kWay>
int run_real_call(const dfti_node* first, const void* input, void* output, void* work) {
  return real_call<R, kWay>(first, input, output, work).run();
}

bool rows_coincide(const dfti_node& first) {
  // A packed spectrum of several dimensions is put together in a buffer.
  if (first.placement != DFTI_INPLACE || first.dimension == 1 || !has_complex_spectrum(first)) return true;
  if (first.input_stride != 1 || first.output_stride != 1) return false;
  for (const dfti_node* node = first.next_node; node != nullptr; node = node->next_node) {
    if (node->input_stride != 2 * node->output_stride) return false;
  }
  return true;
}

template int run_real_call<float, kForward>(const dfti_node*, const void*, void*, void*);
template int run_real_call<float, kBackward>(const dfti_node*, const void*, void*, void*);
template int run_real_call<double, kForward>(const dfti_node*, const void*, void*, void*);
template int run_real_call<double, kBackward>(const dfti_node*, const void*, void*, void*);

}  // namespace qel::fft
