// SPDX-License-Identifier: BSD-3-Clause
// The drivers of vector math: the kernel of the processor type, on threads where they pay.
#include "vector/vml/vml.h"

#include <omp.h>

#include <algorithm>
#include <atomic>
#include <cstdint>

#include "service/largest_cache.h"
#include "service/serv.h"
#include "service/thread_policy.h"
#include "vector/vml/rules.h"
#include "vector/vml/state.h"
#include "vector/vml/vector_rows.h"

namespace qel {
namespace {

constexpr auto relaxed = std::memory_order_relaxed;

/// Calls work(start, length) for each thread's part: n / T elements, the last thread takes what is left.
template <class Work>
void for_parts(int n, int threads, const Work& work) {
#pragma omp parallel num_threads(threads)
  {
    const int team = omp_get_num_threads(), t = omp_get_thread_num();
    const int chunk = n / team, start = t * chunk;
    const int length = t + 1 >= team ? n - start : chunk;
    work(start, length);
  }
}

/// The topology in one word, 21 bits for each count; 0 before the first question.
constinit std::atomic<std::uint64_t> known_topology{0};

vml_topology topology() {
  constexpr int kBits = 21, kMask = (1 << kBits) - 1;
  std::uint64_t packed = known_topology.load(relaxed);
  if (packed == 0) [[unlikely]] {
    const vml_topology read = read_vml_topology(current_cpuid(), std::min(omp_get_num_procs(), kMask));
    packed = static_cast<std::uint64_t>(read.logical) | static_cast<std::uint64_t>(read.cores) << kBits |
             static_cast<std::uint64_t>(read.packages) << 2 * kBits;
    known_topology.store(packed, relaxed);
  }
  const auto count = [packed](int place) { return static_cast<int>(packed >> place * kBits & kMask); };
  return {count(0), count(1), count(2)};
}

/// The kernels of division and the row of each one's cost, by accuracy.
struct division {
  bind_slot<vml_kernel> slot;
  const type_row<vml_kernel>& kernels;
  vml_cost_row row;
};
constinit division divisions[] = {
    {nullptr, kDivHa, kDivisionHa}, {nullptr, kDivLa, kDivisionLa}, {nullptr, kDivEp, kDivisionEp}};
constinit std::atomic<int> division_fork_length{0};

/// The first slot, which is filled last, tells that all are filled and the length is known.
bool division_is_bound() { return divisions[0].slot.load(std::memory_order_acquire) != nullptr; }
void bind_division() {
  division_fork_length.store(vml_fork_length(topology(), kDivisionHa, serv_cpu_type()), relaxed);
  for (int i = 2; i >= 0; --i) {
    divisions[i].slot.store(choose_kernel(divisions[i].kernels), std::memory_order_release);
  }
}
const division& division_of(unsigned mode) {
  const unsigned accuracy = mode & kAccuracyBits;
  return divisions[accuracy == VML_HA ? 0 : accuracy == VML_LA ? 1 : 2];
}

/// For calls of at least the fork length.
vml_plan plan_of(bool divides, vml_cost_row row, int n, const double* a, const double* b, const double* r) {
  const int type = serv_cpu_type();
  return plan_vml({divides, row, n, type, serv_threads_for_domain(kDomainVml), serv_threads_dynamic() != 0,
                   topology(), type >= kFirstNativeType ? largest_native_cache() : 0, r == a || r == b, r});
}

[[gnu::noinline]] void divide_on_threads(const division& chosen, int n, const double* a, const double* b,
                                         double* r) {
  const vml_plan plan = plan_of(/*divides=*/true, chosen.row, n, a, b, r);
  vml_kernel* const kernel = plan.past_caches ? choose_kernel(kDivStreamed) : chosen.slot.load(relaxed);
  if (plan.threads == 1) return kernel(n, a, b, r);
  vml_record& master = vml_state();
  const unsigned mode = master.mode;
  const qel_vml_callback callback = master.callback;
  std::atomic<int> shared_status{VML_STATUS_OK};
  for_parts(n, plan.threads, [&](int start, int length) {
    vml_record& own = vml_state();
    own.mode = mode;
    own.callback = callback;
    own.base = a;
    own.status = VML_STATUS_OK;
    if (length > 0) kernel(length, a + start, b + start, r + start);
    if (own.status != VML_STATUS_OK) shared_status.store(own.status, relaxed);
    own.base = nullptr;
  });
  // Kept: a threaded division leaves the caller without its callback.
  master.callback = nullptr;
  master.status = shared_status.load(relaxed);
}

[[gnu::noinline, gnu::cold]] void divide_first(int n, const double* a, const double* b, double* r) {
  vml_state();
  if (!division_is_bound()) bind_division();
  core::vd_div(n, a, b, r);
}

/// Multiplication and subtraction have no modes; only native types have long ones.
template <const type_row<vml_kernel>& kRow, const type_row<vml_kernel>& kStreamed>
[[gnu::noinline]] void run_long(int n, const double* a, const double* b, double* r) {
  if (serv_cpu_type() < kFirstNativeType) return choose_kernel(kRow)(n, a, b, r);
  const vml_plan plan = plan_of(/*divides=*/false, kDivisionHa, n, a, b, r);
  vml_kernel* const kernel = choose_kernel(plan.past_caches ? kStreamed : kRow);
  if (plan.threads == 1) return kernel(n, a, b, r);
  for_parts(n, plan.threads, [=](int start, int length) {
    if (length > 0) kernel(length, a + start, b + start, r + start);
  });
}
template <auto& kSlot, const type_row<vml_kernel>& kRow, const type_row<vml_kernel>& kStreamed>
void run(int n, const double* a, const double* b, double* r) {
  if (n >= kNativeVmlFork) return run_long<kRow, kStreamed>(n, a, b, r);
  call_bound<kSlot, kRow>(n, a, b, r);
}
constinit bind_slot<vml_kernel> mul_slot{nullptr}, sub_slot{nullptr};

}  // namespace

// The way of short vectors is a jump into the kernel: nothing is saved on it.
void core::vd_div(int n, const double* a, const double* b, double* r) {
  const vml_record* const state = own_vml_record;
  if (state == nullptr || !division_is_bound()) [[unlikely]] {
    return divide_first(n, a, b, r);
  }
  const division& chosen = division_of(state->mode);
  if (n >= division_fork_length.load(relaxed)) return divide_on_threads(chosen, n, a, b, r);
  chosen.slot.load(relaxed)(n, a, b, r);
}
void core::vd_mul(int n, const double* a, const double* b, double* r) {
  run<mul_slot, kMul, kMulStreamed>(n, a, b, r);
}
void core::vd_sub(int n, const double* a, const double* b, double* r) {
  run<sub_slot, kSub, kSubStreamed>(n, a, b, r);
}

}  // namespace qel
