// SPDX-License-Identifier: BSD-3-Clause
#include "service/topology.h"

#include <omp.h>
#include <sched.h>
#include <unistd.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <fstream>
#include <sstream>
#include <string>

namespace qel {
namespace {

// The kernel's masks have no fixed size; this many processors are asked for at first, doubled on refusal.
constexpr size_t kFirstMaskBits = 1024, kLargestMaskBits = 1 << 20;

/// The affinity of a thread (0: the calling one); empty if it can't be had.
cpu_mask thread_mask(pid_t thread) {
  for (size_t bits = kFirstMaskBits; bits <= kLargestMaskBits; bits *= 2) {
    std::vector<cpu_set_t> set(bits / CPU_SETSIZE);
    const size_t bytes = set.size() * sizeof(cpu_set_t);
    if (sched_getaffinity(thread, bytes, set.data()) != 0) continue;
    cpu_mask mask(bits);
    for (size_t cpu = 0; cpu < bits; ++cpu) mask[cpu] = CPU_ISSET_S(cpu, bytes, set.data());
    return mask;
  }
  return {};
}

bool bind_calling_thread(const cpu_mask& mask) {
  std::vector<cpu_set_t> set(std::max<size_t>(1, (mask.size() + CPU_SETSIZE - 1) / CPU_SETSIZE));
  const size_t bytes = set.size() * sizeof(cpu_set_t);
  CPU_ZERO_S(bytes, set.data());
  for (size_t cpu = 0; cpu < mask.size(); ++cpu) {
    if (mask[cpu]) CPU_SET_S(cpu, bytes, set.data());
  }
  if (sched_setaffinity(0, bytes, set.data()) != 0) return false;
  sched_yield();
  return true;
}

size_t count_of(const cpu_mask& mask) {
  return static_cast<size_t>(std::count(mask.begin(), mask.end(), true));
}

/// A list as "0-3,8,10-11" (the file /sys/devices/system/cpu/online).
cpu_mask parse_cpu_list(const std::string& list) {
  cpu_mask mask;
  std::istringstream ranges(list);
  for (std::string range; std::getline(ranges, range, ',');) {
    unsigned long first = 0, last = 0;
    const int fields = std::sscanf(range.c_str(), "%lu-%lu", &first, &last);
    if (fields < 1) continue;
    if (fields == 1) last = first;
    if (last >= kLargestMaskBits || last < first) continue;
    if (mask.size() <= last) mask.resize(last + 1);
    std::fill(mask.begin() + static_cast<long>(first), mask.begin() + static_cast<long>(last) + 1, true);
  }
  return mask;
}

void linux_masks(cpu_mask& process, cpu_mask& system) {
  std::ifstream online("/sys/devices/system/cpu/online");
  std::string list;
  std::getline(online, list);
  system = parse_cpu_list(list);
  process = thread_mask(getpid());
  if (count_of(system) == 0) system = process;
  // With OMP_PROC_BIND the run time has bound the initial thread already; the number of processors that it
  // saw at start tells whether the process itself is restricted.
  if (static_cast<size_t>(omp_get_num_procs()) >= count_of(system)) process = system;
}

thread_local cpu_mask mask_before_walk;

bool linux_bind(int cpu) {
  if (mask_before_walk.empty()) mask_before_walk = thread_mask(0);
  cpu_mask one(static_cast<size_t>(cpu) + 1);
  one.back() = true;
  return bind_calling_thread(one);
}

void linux_restore() {
  if (!mask_before_walk.empty()) bind_calling_thread(mask_before_walk);
  mask_before_walk.clear();
}

int bits_for(uint32_t values) { return values <= 1 ? 0 : std::bit_width(values - 1); }

bool same_processors(const cpu_mask& a, const cpu_mask& b) {
  const auto has = [](const cpu_mask& mask, size_t cpu) { return cpu < mask.size() && mask[cpu]; };
  for (size_t cpu = 0; cpu < std::max(a.size(), b.size()); ++cpu) {
    if (has(a, cpu) != has(b, cpu)) return false;
  }
  return true;
}

/// Quota over period from one directory's files, in processors; 0 if unlimited or absent.
double quota_in(const std::string& directory) {
  std::ifstream unified(directory + "/cpu.max");
  std::string quota;
  double period = 0;
  if (unified >> quota >> period)
    return quota == "max" || period <= 0 ? 0 : std::atof(quota.c_str()) / period;
  std::ifstream old_quota(directory + "/cpu.cfs_quota_us"), old_period(directory + "/cpu.cfs_period_us");
  double microseconds = 0;
  if (old_quota >> microseconds && old_period >> period && microseconds > 0 && period > 0)
    return microseconds / period;
  return 0;
}

}  // namespace

const affinity_calls kLinuxAffinity{linux_masks, linux_bind, linux_restore};

package_layout read_package_layout(cpuid_reader cpuid) {
  const cpu_facts facts = read_cpu_facts(cpuid);
  constexpr uint32_t kHyperThreading = 1u << 28;
  uint32_t logical = 1, cores = 1;
  if (is_selected_vendor(facts) && (facts.features_d & kHyperThreading) != 0) {
    logical = std::max(cpuid(1, 0).ebx >> 16 & 255, 1u);
    if (cpuid(0, 0).eax >= 4) cores = (cpuid(4, 0).eax >> 26) + 1;
  }
  return {bits_for(logical / cores), bits_for(cores), bits_for(logical)};
}

uint32_t core_identity(uint32_t apic_id, const package_layout& layout) {
  const uint32_t core =
      apic_id & ((255u << layout.thread_bits) ^ (255u << (layout.thread_bits + layout.core_bits)));
  const uint32_t package = apic_id & (255u << layout.package_bits);
  return core | package;
}

processor_counts discover_processors(cpuid_reader cpuid, const affinity_calls& calls, bool count_restricted) {
  processor_counts counts;
  cpu_mask process, system;
  calls.masks(process, system);
  counts.restricted = !same_processors(process, system);
  if (counts.restricted && !count_restricted) return counts;

  const package_layout layout = read_package_layout(cpuid);
  const cpu_mask& walked = counts.restricted ? process : system;
  std::vector<uint32_t> identities;
  for (size_t cpu = 0; cpu < walked.size(); ++cpu) {
    if (!walked[cpu] || !calls.bind(static_cast<int>(cpu))) continue;
    identities.push_back(core_identity(cpuid(1, 0).ebx >> 24, layout));
  }
  calls.restore();
  if (identities.size() < 2) return counts;
  counts.logical = static_cast<int>(identities.size());
  std::sort(identities.begin(), identities.end());
  counts.cores = static_cast<int>(std::unique(identities.begin(), identities.end()) - identities.begin());
  return counts;
}

int control_group_quota(const char* membership_file, const char* tree) {
  double least = 0;
  const auto consider = [&least](double quota) {
    if (quota > 0 && (least == 0 || quota < least)) least = quota;
  };
  std::ifstream membership(membership_file);
  // Lines "0::/path" (version 2) and "4:cpu,cpuacct:/path" (version 1).
  for (std::string line; std::getline(membership, line);) {
    const size_t first = line.find(':'), second = line.find(':', first + 1);
    if (first == std::string::npos || second == std::string::npos) continue;
    const std::string controllers = line.substr(first + 1, second - first - 1);
    if (!controllers.empty() && ("," + controllers + ",").find(",cpu,") == std::string::npos) continue;
    const std::string base = tree + (controllers.empty() ? std::string() : "/" + controllers);
    for (std::string path = line.substr(second + 1);; path.erase(path.rfind('/'))) {
      consider(quota_in(base + path));
      if (path.find('/') == std::string::npos) break;
    }
  }
  return static_cast<int>(std::ceil(least));
}

}  // namespace qel
