// SPDX-License-Identifier: BSD-3-Clause
#include "conv/execute_native.h"

#include <cstdint>
#include <new>
#include <type_traits>

#include "conv/native_conv.h"
#include "conv/sum_kernels.h"

namespace qel::conv {
namespace {

/// Memory for a call; none until it is asked for.
template <class E>
class own_numbers {
 public:
  own_numbers() = default;
  ~own_numbers() {
    if (numbers_ != nullptr) serv_free(numbers_);
  }
  own_numbers(const own_numbers&) = delete;
  own_numbers& operator=(const own_numbers&) = delete;
  /// Null if there was no memory.
  E* take(core_int count) {
    return numbers_ = static_cast<E*>(serv_malloc(static_cast<size_t>(count) * sizeof(E), 64));
  }

 private:
  E* numbers_ = nullptr;
};

/// n elements of the caller from the lowest address on.
struct extent {
  uintptr_t from, to;
  template <class T>
  extent(const T* lowest, core_int n, core_int stride)
      : from(reinterpret_cast<uintptr_t>(lowest)),
        to(reinterpret_cast<uintptr_t>(lowest + (n - 1) * std::abs(stride) + 1)) {}
  bool meets(const extent& other) const { return from < other.to && other.from < to; }
};

/// A sequence in the sums' precision, the caller's own where it lies like that.
template <class T, class E>
class sequence {
 public:
  sequence(const T* from, core_int n, core_int stride, bool reversed) {
    if constexpr (std::is_same_v<T, E>) {
      if (stride == 1 && !reversed) {
        data_ = from;
        return;
      }
    }
    E* const to = own_.take(n);
    data_ = to;
    if (to == nullptr) return;
    for (core_int i = 0; i < n; ++i)
      to[reversed ? n - 1 - i : i] = converted<E>(from[place_of(i, n, stride)]);
  }
  /// Null if there was no memory.
  const E* data() const { return data_; }

 private:
  own_numbers<E> own_;
  const E* data_;
};

template <class E>
int release_plan(void* kept) {
  static_cast<kept_plan<E>*>(kept)->~kept_plan();
  return kOk;
}

/// What an earlier execution with the same facts left in the task, or null.
template <class E>
const kept_plan<E>* find_kept(const vsl_cc_task& task, const native_conv_facts& facts) {
  if (task.plan_release != release_plan<E>) return nullptr;
  const auto* kept = static_cast<const kept_plan<E>*>(task.plan_data);
  return kept->facts == facts ? kept : nullptr;
}

/// Keeps the plan in the task in place of another, with its transform if it has one; null if memory is out.
template <class E>
const kept_plan<E>* keep(vsl_cc_task& task, const native_conv_facts& facts, const native_conv_plan& plan) {
  drop_plan(task);
  void* memory = serv_malloc(sizeof(kept_plan<E>), 0);
  if (memory == nullptr) return nullptr;
  auto* made = new (memory) kept_plan<E>{facts, plan, {}};
  task.plan_data = made;
  task.plan_release = release_plan<E>;
  if (plan.method != native_conv_method::kPieces || made->filter.make(plan.length)) return made;
  drop_plan(task);
  return nullptr;
}

}  // namespace

template <class T, class R>
int execute_native(const execution& e, vsl_cc_task& task) {
  using E = element_of<T, R>;
  const cc_axis& a = e.axes[0];
  // A reversed x makes a convolution of a correlation, whose outputs then count from 0.
  const bool correlates = e.job == kCorrelation;
  const core_int start = a.start + (correlates ? a.nx - 1 : 0);
  const auto* const from_x = static_cast<const T*>(e.x);
  const auto* const from_y = static_cast<const T*>(e.y);
  auto* const z = static_cast<T*>(e.z);
  const sequence<T, E> x(from_x, a.nx, a.sx, correlates), y(from_y, a.ny, a.sy, false);
  if (x.data() == nullptr || y.data() == nullptr) return kAllocationFailure;
  const dense_pair<E> c = make_pair(x.data(), a.nx, y.data(), a.ny);
  const native_conv_facts facts{c.long_count,
                                c.short_count,
                                start,
                                a.nz,
                                a.decimation,
                                is_complex<E>,
                                e.direct || !fft::filter_spec<E>::there()};
  const kept_plan<E>* kept = find_kept<E>(task, facts);
  const native_conv_plan plan = kept != nullptr ? kept->plan : plan_native_conv(facts);
  if (kept == nullptr && plan.weighed) kept = keep<E>(task, facts, plan);

  own_numbers<E> own;
  E* w = nullptr;
  if constexpr (std::is_same_v<T, E>) {
    const extent results(z, a.nz, a.sz);
    const bool apart = !results.meets({from_x, a.nx, a.sx}) && !results.meets({from_y, a.ny, a.sy});
    if (a.sz == 1 && a.decimation == 1 && apart) w = z;
  }
  const bool whole = plan.method != native_conv_method::kSingleSums;
  const core_int outputs = whole ? facts.last() - start : a.nz;
  if (w == nullptr && (w = own.take(outputs)) == nullptr) return kAllocationFailure;

  switch (plan.method) {
    case native_conv_method::kSums:
      native_sums(c.shorter, c.short_count, c.longer, c.long_count, start, facts.last(), w);
      break;
    case native_conv_method::kSingleSums:
      single_sums(x.data(), y.data(), a, start, w);
      break;
    case native_conv_method::kPieces:
      if (kept == nullptr || run_pieces(c, *kept, w) != 0) return kKernelFailure;
      break;
  }
  if constexpr (std::is_same_v<T, E>) {
    if (w == z) return kOk;
  }
  const core_int step = whole ? a.decimation : 1;
  for (core_int r = 0; r < a.nz; ++r) z[place_of(r, a.nz, a.sz)] = converted<T>(w[r * step]);
  return kOk;
}

#define QEL_INSTANTIATE(T, R) template int execute_native<T, R>(const execution&, vsl_cc_task&)
QEL_INSTANTIATE(float, float);
QEL_INSTANTIATE(float, double);
QEL_INSTANTIATE(double, double);
QEL_INSTANTIATE(complex8, float);
QEL_INSTANTIATE(complex8, double);
QEL_INSTANTIATE(complex16, double);
#undef QEL_INSTANTIATE

}  // namespace qel::conv
