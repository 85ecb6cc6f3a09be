// SPDX-License-Identifier: BSD-3-Clause
// The drivers of vector math: the kernel of the processor type, on threads where they pay.
#include "vector/vml/vml.h"

#include <omp.h>

#include <algorithm>
#include <atomic>

#include "service/serv.h"
#include "service/thread_policy.h"
#include "vector/vml/state.h"
#include "vector/vml/thread_rules.h"
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

const vml_topology& topology() {
  static const vml_topology known = read_vml_topology(current_cpuid(), omp_get_num_procs());
  return known;
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

/// How many threads a call of n elements gets.
int threads_for(vml_cost_row row, int n) {
  const int threads = serv_threads_for_domain(kDomainVml);
  if (threads == 1 || serv_threads_dynamic() == 0) return threads;
  return vml_refined_threads(threads, topology(), row, serv_cpu_type(), n);
}

[[gnu::noinline]] void divide_on_threads(const division& chosen, int n, const double* a, const double* b,
                                         double* r) {
  vml_kernel* const kernel = chosen.slot.load(relaxed);
  const int threads = threads_for(chosen.row, n);
  if (threads == 1) return kernel(n, a, b, r);
  vml_record& master = vml_state();
  const unsigned mode = master.mode;
  const qel_vml_callback callback = master.callback;
  std::atomic<int> shared_status{VML_STATUS_OK};
  for_parts(n, threads, [&](int start, int length) {
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

/// Multiplication and subtraction have no modes; only native types run them on threads.
template <const type_row<vml_kernel>& kRow>
void run(int n, const double* a, const double* b, double* r) {
  static constinit bind_slot<vml_kernel> slot{nullptr};
  vml_kernel* kernel = slot.load(relaxed);
  if (kernel == nullptr) [[unlikely]] {
    kernel = choose_kernel(kRow);
    slot.store(kernel, relaxed);
  }
  if (n >= kNativeVmlFork && serv_cpu_type() >= kFirstNativeType) {
    if (const int threads = threads_for(kDivisionHa, n); threads > 1) {
      return for_parts(n, threads, [=](int start, int length) {
        if (length > 0) kernel(length, a + start, b + start, r + start);
      });
    }
  }
  kernel(n, a, b, r);
}

}  // namespace

void core::vd_div(int n, const double* a, const double* b, double* r) {
  const division& chosen = division_of(vml_get_mode());
  if (n < fork_length()) return chosen.slot.load(relaxed)(n, a, b, r);
  divide_on_threads(chosen, n, a, b, r);
}
void core::vd_mul(int n, const double* a, const double* b, double* r) { run<kMul>(n, a, b, r); }
void core::vd_sub(int n, const double* a, const double* b, double* r) { run<kSub>(n, a, b, r); }

}  // namespace qel
