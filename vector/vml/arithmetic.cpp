// SPDX-License-Identifier: BSD-3-Clause
// The drivers of vector math: the kernel of the processor type, on threads where they pay.
#include "vector/vml/vml.h"

#include <omp.h>

#include <algorithm>
#include <atomic>
#include <cstdint>

#include "service/serv.h"
#include "service/thread_policy.h"
#include "vector/vml/caches.h"
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

constinit std::atomic<int> division_fork_length{0};

int fork_length() {
  int length = division_fork_length.load(relaxed);
  if (length == 0) [[unlikely]] {
    length = vml_fork_length(topology(), kDivisionHa, serv_cpu_type());
    division_fork_length.store(length, relaxed);
  }
  return length;
}

/// The kernels of division and the row of each one's cost, by accuracy. The slots are filled together.
struct division {
  bind_slot<vml_kernel> slot;
  const type_row<vml_kernel>& kernels;
  vml_cost_row row;
};
constinit division divisions[] = {
    {nullptr, kDivHa, kDivisionHa}, {nullptr, kDivLa, kDivisionLa}, {nullptr, kDivEp, kDivisionEp}};

const division& division_of(unsigned mode) {
  if (divisions[0].slot.load(std::memory_order_acquire) == nullptr) [[unlikely]] {
    for (int i = 2; i >= 0; --i) {  // the first one last: it tells that all are there
      divisions[i].slot.store(choose_kernel(divisions[i].kernels), std::memory_order_release);
    }
  }
  const unsigned accuracy = mode & kAccuracyBits;
  return divisions[accuracy == VML_HA ? 0 : accuracy == VML_LA ? 1 : 2];
}

/// For calls of at least fork_length() elements.
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

/// Multiplication and subtraction have no modes; only native types have long ones.
template <const type_row<vml_kernel>& kStreamed>
[[gnu::noinline]] void run_long(vml_kernel* plain, int n, const double* a, const double* b, double* r) {
  const vml_plan plan = plan_of(/*divides=*/false, kDivisionHa, n, a, b, r);
  vml_kernel* const kernel = plan.past_caches ? choose_kernel(kStreamed) : plain;
  if (plan.threads == 1) return kernel(n, a, b, r);
  for_parts(n, plan.threads, [=](int start, int length) {
    if (length > 0) kernel(length, a + start, b + start, r + start);
  });
}
template <const type_row<vml_kernel>& kRow, const type_row<vml_kernel>& kStreamed>
void run(int n, const double* a, const double* b, double* r) {
  static constinit bind_slot<vml_kernel> slot{nullptr};
  vml_kernel* kernel = slot.load(relaxed);
  if (kernel == nullptr) [[unlikely]] {
    kernel = choose_kernel(kRow);
    slot.store(kernel, relaxed);
  }
  if (n >= kNativeVmlFork && serv_cpu_type() >= kFirstNativeType)
    return run_long<kStreamed>(kernel, n, a, b, r);
  kernel(n, a, b, r);
}

}  // namespace

void core::vd_div(int n, const double* a, const double* b, double* r) {
  const division& chosen = division_of(vml_get_mode());
  if (n < fork_length()) return chosen.slot.load(relaxed)(n, a, b, r);
  divide_on_threads(chosen, n, a, b, r);
}
void core::vd_mul(int n, const double* a, const double* b, double* r) { run<kMul, kMulStreamed>(n, a, b, r); }
void core::vd_sub(int n, const double* a, const double* b, double* r) { run<kSub, kSubStreamed>(n, a, b, r); }

}  // namespace qel
