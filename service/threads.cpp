// SPDX-License-Identifier: BSD-3-Clause
// The process's thread settings and what the policy answers from them. The environment is read once, on the
// first query; processors are counted once, when a count first has to be limited by them, which never
// happens inside a parallel region.
#include <omp.h>

#include <algorithm>
#include <atomic>
#include <exception>

#include "service/fork_guard.h"
#include "service/serv.h"
#include "service/thread_policy.h"
#include "service/threads.h"
#include "service/topology.h"

namespace qel {
namespace {

constexpr auto relaxed = std::memory_order_relaxed;

/// thread_settings as the process keeps them. Written under threads_lock, read without.
struct shared_settings {
  std::atomic<int> count[kThreadDomains]{kUnset, kUnset, kUnset, kUnset};
  std::atomic<int> dynamic{kUnset}, omp_count{kUnset}, ranks_per_node{kUnset}, mpi_level{kUnset},
      process_mode{kUnset};

  thread_settings load() const {
    thread_settings copy;
    for (int d = 0; d < kThreadDomains; ++d) copy.count[d] = count[d].load(relaxed);
    copy.dynamic = dynamic.load(relaxed);
    copy.omp_count = omp_count.load(relaxed);
    copy.ranks_per_node = ranks_per_node.load(relaxed);
    copy.mpi_level = mpi_level.load(relaxed);
    copy.process_mode = process_mode.load(relaxed);
    return copy;
  }
  void store(const thread_settings& from) {
    for (int d = 0; d < kThreadDomains; ++d) count[d].store(from.count[d], relaxed);
    dynamic.store(from.dynamic, relaxed);
    omp_count.store(from.omp_count, relaxed);
    ranks_per_node.store(from.ranks_per_node, relaxed);
    mpi_level.store(from.mpi_level, relaxed);
    process_mode.store(from.process_mode, relaxed);
  }
};

constinit shared_settings settings;
constinit std::atomic<bool> environment_read{false};
constinit bool domain_from_environment[kThreadDomains] = {};  // under threads_lock
constinit std::atomic<bool> processors_counted{false};
constinit std::atomic<int> logical_count{1}, core_count{1};
constinit std::atomic<bool> mask_restricted{false};

[[gnu::tls_model("initial-exec")]] constinit thread_local int local_count = 0;

[[gnu::noinline, gnu::cold]] void read_environment_once() {
  guard_forks();
  const spin_guard guard(threads_lock());
  if (environment_read.load(relaxed)) return;
  const thread_settings before = settings.load();
  thread_settings after = before;
  read_thread_environment(after);
  for (int d = 1; d < kThreadDomains; ++d) domain_from_environment[d] = after.count[d] != before.count[d];
  settings.store(after);
  environment_read.store(true, std::memory_order_release);
}

void ensure_environment_read() {
  if (!environment_read.load(std::memory_order_acquire)) [[unlikely]] {
    read_environment_once();
  }
}

/// The counts that hold under QEL_AFFINITY, with the control group's quota where it is asked for.
processor_counts count_processors() {
  const bool count_restricted = counts_restricted_mask();
  processor_counts counts = discover_processors(current_cpuid(), kLinuxAffinity, count_restricted);
  const int quota = count_restricted ? control_group_quota("/proc/self/cgroup", "/sys/fs/cgroup") : 0;
  if (quota > 0) counts.cores = std::min(counts.cores, quota);
  return counts;
}

[[gnu::noinline, gnu::cold]] void count_processors_once() {
  const spin_guard guard(threads_lock());
  if (processors_counted.load(relaxed)) return;
  processor_counts counts;
  try {
    counts = count_processors();
  } catch (const std::exception&) {
    counts = {};  // no memory for the masks: one processor is what is left to assume
  }
  logical_count.store(counts.logical, relaxed);
  core_count.store(counts.cores, relaxed);
  mask_restricted.store(counts.restricted, relaxed);
  processors_counted.store(true, std::memory_order_release);
}

void ensure_processors_counted() {
  if (!processors_counted.load(std::memory_order_acquire)) [[unlikely]] {
    count_processors_once();
  }
}

}  // namespace

spin_lock& threads_lock() {
  static constinit spin_lock lock;
  return lock;
}

bool counts_restricted_mask() {
  char value[32];
  return read_environment("QEL_AFFINITY", value, sizeof value) && is_affinity_count(value);
}

thread_choice explain_threads(int domain) {
  ensure_environment_read();
  const thread_settings current = settings.load();
  thread_facts facts;
  facts.forked_child = in_forked_child();
  facts.local_count = local_count;
  facts.in_parallel = current.dynamic == 1 && omp_in_parallel() != 0;
  if (current.dynamic == 1 && !facts.in_parallel && !facts.forked_child) {
    ensure_processors_counted();
    facts.cores = core_count.load(relaxed);
  }
  facts.omp_max_threads = omp_get_max_threads();
  return choose_threads(current, domain, facts);
}

processor_counts known_processors() {
  ensure_processors_counted();
  return {logical_count.load(relaxed), core_count.load(relaxed), mask_restricted.load(relaxed)};
}

int serv_threads_for_domain(int domain) { return explain_threads(domain).threads; }
int serv_threads_all() { return explain_threads(kDomainAll).threads; }

int serv_threads_dynamic() {
  ensure_environment_read();
  return settings.dynamic.load(relaxed) == 1 ? 1 : 0;
}

int serv_in_parallel() { return omp_in_parallel(); }

void serv_set_num_threads(int n) {
  if (n > 0) settings.count[kDomainAll].store(n, relaxed);
}

int serv_set_domain_threads(int n, int domain) {
  if (n < 0 || domain < 0 || domain >= kThreadDomains) return 0;
  const spin_guard guard(threads_lock());
  settings.count[domain].store(n, relaxed);
  domain_from_environment[domain] = false;
  return 1;
}

void serv_set_dynamic(int flag) { settings.dynamic.store(flag != 0 ? 1 : 0, relaxed); }
void serv_set_process_mode(int flag) { settings.process_mode.store(flag == 1 ? 1 : 0, relaxed); }

void set_threads_over_environment(int n) {
  if (n <= 0) return;
  ensure_environment_read();
  const spin_guard guard(threads_lock());
  settings.count[kDomainAll].store(n, relaxed);
  for (int d = 1; d < kThreadDomains; ++d) {
    if (domain_from_environment[d]) settings.count[d].store(kUnset, relaxed);
    domain_from_environment[d] = false;
  }
}

int set_threads_of_this_thread(int n) {
  const int before = local_count;
  local_count = n > 0 ? n : 0;
  return before;
}

}  // namespace qel
