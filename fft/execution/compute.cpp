// SPDX-License-Identifier: BSD-3-Clause
#include "fft/execution/compute.h"

#include "fft/execution/complex_driver.h"
#include "fft/execution/real_driver.h"
#include "service/memory_lock.h"

namespace qel::fft {
namespace {

/// A place among the user's threads for the length of a call.
class user_slot {
 public:
  explicit user_slot(dfti_node* first) : first_(first) {
    const spin_guard guard(memory_lock());
    for (int i = 0; i < first->number_of_user_threads; ++i) {
      if (first->user_thread_busy[i] != 0) continue;
      first->user_thread_busy[i] = 1;
      index_ = i;
      return;
    }
  }
  ~user_slot() {
    if (index_ < 0) return;
    const spin_guard guard(memory_lock());
    first_->user_thread_busy[index_] = 0;
  }
  user_slot(const user_slot&) = delete;
  user_slot& operator=(const user_slot&) = delete;
  bool taken() const { return index_ >= 0; }
  void* work() const {
    return static_cast<char*>(first_->workspace) + core_int{index_} * first_->workspace_bytes;
  }

 private:
  dfti_node* first_;
  int index_ = -1;
};

/// run(work) with the workspace of a free place.
template <class Run>
int as_user(dfti_node* first, Run run) {
  const user_slot slot(first);
  return slot.taken() ? run(slot.work()) : int{DFTI_NUMBER_OF_THREADS_ERROR};
}

template <class R, direction kWay>
int compute_pairs(dfti_node* first, complex_of<R>* input, complex_of<R>* output) {
  node_kernel* kernel = kWay == kForward ? first->node_forward : first->node_backward;
  if ((first->flags & kDirectFlag) != 0 && kernel != nullptr) {
    return kernel(input, output, first, first->workspace);
  }
  const auto sequential = [&](void* work) {
    constexpr auto* kDriver = kWay == kForward ? dfti_sequential_forward<R> : dfti_sequential_backward<R>;
    return kDriver(first, input, output, first->number_of_transforms, work);
  };
  if (first->number_of_user_threads > 1) {
    return as_user(first, [&](void* work) {
      return (first->flags & kUnitFlag) != 0 ? kernel(input, output, first, work) : sequential(work);
    });
  }
  if (first->threads == 1 || first->number_of_transforms < 1) return sequential(first->workspace);
  threaded_kernel* threaded = kWay == kForward ? first->threaded_forward : first->threaded_backward;
  if (first->number_of_transforms == 1 && threaded != nullptr) {
    return threaded(first, input, output,
                    first->extra_buffer != nullptr ? first->workspace : first->thread_buffer);
  }
  constexpr auto* kDriver = kWay == kForward ? dfti_threaded_forward<R> : dfti_threaded_backward<R>;
  return kDriver(first, input, output);
}

template <class R, direction kWay>
int compute_in_place(dfti_node* first, void* data) {
  auto* start = static_cast<complex_of<R>*>(data) + first->input_offset;
  return compute_pairs<R, kWay>(first, start, start);
}
template <class R, direction kWay>
int compute_out_of_place(dfti_node* first, void* input, void* output) {
  return compute_pairs<R, kWay>(first, static_cast<complex_of<R>*>(input) + first->input_offset,
                                static_cast<complex_of<R>*>(output) + first->output_offset);
}
template <class R>
int dfti_forward_in_place(dfti_node* first, void* data, void*, void*, void*) {
  return compute_in_place<R, kForward>(first, data);
}
template <class R>
int dfti_backward_in_place(dfti_node* first, void* data, void*, void*, void*) {
  return compute_in_place<R, kBackward>(first, data);
}
template <class R>
int dfti_forward_out_of_place(dfti_node* first, void* input, void* output, void*, void*) {
  return compute_out_of_place<R, kForward>(first, input, output);
}
template <class R>
int dfti_backward_out_of_place(dfti_node* first, void* input, void* output, void*, void*) {
  return compute_out_of_place<R, kBackward>(first, input, output);
}

/// Split data never takes a place among the user's threads: with several of them each call has work of its
/// own.
template <class R, direction kWay, bool kInPlace>
int compute_split(dfti_node* first, void* a, void* b, void* c, void* d) {
  auto* real = static_cast<R*>(a) + first->input_offset;
  auto* imag = static_cast<R*>(b) + first->input_offset;
  void* work = first->number_of_user_threads > 1 ? nullptr : first->workspace;
  if constexpr (kInPlace) {
    return run_split_lines<R, kWay>(first, {real, imag}, {real, imag}, work);
  } else {
    return run_split_lines<R, kWay>(
        first, {real, imag},
        {static_cast<R*>(c) + first->output_offset, static_cast<R*>(d) + first->output_offset}, work);
  }
}

template <class R, direction kWay, bool kInPlace>
int compute_real(dfti_node* first, void* a, void* b, void*, void*) {
  // Offsets count elements of their side.
  const bool pairs = has_complex_spectrum(*first);
  const auto offset = [&](void* data, core_int elements, bool spectrum) -> void* {
    return static_cast<R*>(data) + (spectrum && pairs ? 2 * elements : elements);
  };
  void* input = offset(a, first->input_offset, !kInPlace && kWay == kBackward);
  void* output = kInPlace ? input : offset(b, first->output_offset, kWay == kForward);
  if ((first->flags & kDirectFlag) != 0 && first->dimension == 1) {
    node_kernel* kernel = kWay == kForward ? first->node_forward : first->node_backward;
    return kernel(input, output, first, first->workspace);
  }
  if (first->number_of_user_threads > 1) {
    return as_user(first, [&](void* work) { return run_real_call<R, kWay>(first, input, output, work); });
  }
  return run_real_call<R, kWay>(first, input, output, first->workspace);
}

}  // namespace

template <class R>
void install_compute_entries(dfti_node* first) {
  const bool in_place = first->placement == DFTI_INPLACE;
  if (first->forward_domain == DFTI_REAL) {
    first->compute_forward = in_place ? compute_real<R, kForward, true> : compute_real<R, kForward, false>;
    first->compute_backward = in_place ? compute_real<R, kBackward, true> : compute_real<R, kBackward, false>;
  } else if (first->complex_storage == DFTI_REAL_REAL) {
    first->compute_forward = in_place ? compute_split<R, kForward, true> : compute_split<R, kForward, false>;
    first->compute_backward =
        in_place ? compute_split<R, kBackward, true> : compute_split<R, kBackward, false>;
  } else {
    first->compute_forward = in_place ? dfti_forward_in_place<R> : dfti_forward_out_of_place<R>;
    first->compute_backward = in_place ? dfti_backward_in_place<R> : dfti_backward_out_of_place<R>;
  }
}

template void install_compute_entries<float>(dfti_node*);
template void install_compute_entries<double>(dfti_node*);

}  // namespace qel::fft
