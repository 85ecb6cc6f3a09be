// SPDX-License-Identifier: BSD-3-Clause
#include "fft/planning/long_plan.h"

#include <algorithm>

#include "fft/descriptor/life.h"
#include "fft/execution/lines.h"
#include "fft/execution/node_kernels.h"
#include "fft/execution/split_driver.h"
#include "fft/planning/driver_rules.h"
#include "fft/planning/node_plan.h"
#include "fft/spec/objects.h"

namespace qel::fft {
namespace {

/// A descriptor of one line on one thread, without work of its own.
template <class R>
int make_inner(dfti_node** made, core_int length, const dfti_node* scales) {
  const int n = static_cast<int>(length);
  if (const int status = create_descriptor(
          made, {sizeof(R) == sizeof(double) ? DFTI_DOUBLE : DFTI_SINGLE, DFTI_COMPLEX, 1, &n})) {
    return status;
  }
  dfti_node* inner = *made;
  if (scales != nullptr) {
    inner->forward_scale_f32 = scales->forward_scale_f32;
    inner->forward_scale_f64 = scales->forward_scale_f64;
    inner->backward_scale_f32 = scales->backward_scale_f32;
    inner->backward_scale_f64 = scales->backward_scale_f64;
  }
  if (const int status = plan_nodes<R>(inner)) return status;
  serv_free(inner->workspace);
  inner->workspace = nullptr;
  return DFTI_NO_ERROR;
}

template <class R>
bool make_tables(split_plan<R>& plan) {
  using C = complex_of<R>;
  const core_int n = plan.rows * plan.columns;
  int order = 0;
  while (n >> (order + 1) != 0) ++order;
  plan.twiddle_block = core_int{1} << (order / 2 + 1);
  const core_int block = plan.twiddle_block;
  plan.twiddles = make_table<complex16>(2 * block);
  plan.powers = make_table<C>(plan.rows * kWidestBlock);
  if (plan.twiddles == nullptr || plan.powers == nullptr) return false;
  for (core_int k = 0; k < block; ++k) {
    plan.twiddles[static_cast<size_t>(k)] = unit_root(k % n, n);
    plan.twiddles[static_cast<size_t>(block + k)] = unit_root(k * block % n, n);
  }
  for (core_int k = 0; k < plan.rows; ++k) {
    for (core_int l = 0; l < kWidestBlock; ++l) {
      plan.powers[static_cast<size_t>(k * kWidestBlock + l)] = narrowed<C>(unit_root(k * l % n, n));
    }
  }
  return true;
}

/// All twiddles, by blocks of columns.
template <class R>
bool make_all_twiddles(split_plan<R>& plan) {
  using C = complex_of<R>;
  const core_int n = plan.rows * plan.columns;
  plan.all_twiddles = make_table<C>(n);
  quarter_wave wave;
  if (plan.all_twiddles == nullptr || !wave.make(n)) return false;
  C* next = plan.all_twiddles.get();
  for (core_int first = 0; first < plan.columns; first += kWidestBlock) {
    const core_int width = std::min(kWidestBlock, plan.columns - first);
    for (core_int k = 0; k < plan.rows; ++k) {
      for (core_int l = 0; l < width; ++l) *next++ = narrowed<C>(wave.root((first + l) * k));
    }
  }
  return true;
}

template <class R>
int build(split_plan<R>& plan, const dfti_node& first, const long_choice& choice) {
  if (choice.tier == long_tier::kShared)
    return spec_status(dft_spec_create(&plan.shared, first.length, kUnscaled));
  plan.rows = choice.rows;
  plan.columns = choice.columns;
  const bool fixed = choice.tier == long_tier::kFixed;
  plan.parts = fixed ? choice.parts : 0;
  const bool scaled = scale_of<R>(first, kForward) != 1 || scale_of<R>(first, kBackward) != 1;
  if (const int status = make_inner<R>(&plan.row_descriptor, plan.rows, nullptr)) return status;
  if (plan.rows == plan.columns && !scaled) {
    plan.column_descriptor = plan.row_descriptor;
  } else if (const int status = make_inner<R>(&plan.column_descriptor, plan.columns, &first)) {
    return status;
  }
  const bool made = fixed ? make_all_twiddles(plan) : make_tables(plan);
  return made ? DFTI_NO_ERROR : DFTI_MEMORY_ERROR;
}

void release_extra(dfti_node* first) {
  if (first->precision == DFTI_DOUBLE) {
    free_object(static_cast<split_plan<double>*>(first->extra_buffer));
  } else {
    free_object(static_cast<split_plan<float>*>(first->extra_buffer));
  }
}
void release_thread_buffer(dfti_node* first) {
  if (first->precision == DFTI_DOUBLE) {
    free_object(static_cast<split_plan<double>*>(first->thread_buffer));
  } else {
    free_object(static_cast<split_plan<float>*>(first->thread_buffer));
  }
}

}  // namespace

template <class R>
split_plan<R>::~split_plan() {
  dft_spec_free(shared);
  if (column_descriptor != nullptr && column_descriptor != row_descriptor)
    free_descriptor(&column_descriptor);
  if (row_descriptor != nullptr) free_descriptor(&row_descriptor);
}

template <class R>
int make_long_plan(dfti_node* first, const long_choice& choice) {
  auto* plan = make_object<split_plan<R>>();
  if (plan == nullptr) return DFTI_MEMORY_ERROR;
  if (const int status = build(*plan, *first, choice)) {
    free_object(plan);
    return status;
  }
  if (choice.tier == long_tier::kFixed) {
    first->thread_buffer = plan;
  } else {
    if (choice.tier == long_tier::kShared) first->threads = choice.parts;
    first->extra_buffer = plan;
    first->extra_release = release_extra;
  }
  first->threaded_forward = dfti_split_forward<R>;
  first->threaded_backward = dfti_split_backward<R>;
  return DFTI_NO_ERROR;
}

template <class R>
int long_workspace(const dfti_node& first) {
  const auto& plan = *static_cast<const split_plan<R>*>(first.extra_buffer != nullptr ? first.extra_buffer
                                                                                      : first.thread_buffer);
  if (plan.shared != nullptr) {
    // One for all of them.
    const auto threads = static_cast<size_t>(first.threads);
    return static_cast<int>((shared_bytes<R>(*plan.shared, first.threads) + 64 + threads - 1) / threads);
  }
  const auto lines = static_cast<int>(line_buffer_bytes<R>(std::max(plan.rows, plan.columns), kWidestBlock));
  return lines + 64 + std::max(plan.row_descriptor->workspace_bytes, plan.column_descriptor->workspace_bytes);
}

void release_long_plan(dfti_node* first) {
  if (first->extra_buffer != nullptr) first->extra_release(first);
  first->extra_buffer = nullptr;
  first->extra_release = nullptr;
  if (first->thread_buffer != nullptr) release_thread_buffer(first);
  first->thread_buffer = nullptr;
  first->threaded_forward = nullptr;
  first->threaded_backward = nullptr;
}

#define QEL_INSTANTIATE(R)                                        \
  template struct split_plan<R>;                                  \
  template int make_long_plan<R>(dfti_node*, const long_choice&); \
  template int long_workspace<R>(const dfti_node&);
QEL_INSTANTIATE(float)
QEL_INSTANTIATE(double)
#undef QEL_INSTANTIATE

}  // namespace qel::fft
