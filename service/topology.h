// SPDX-License-Identifier: BSD-3-Clause
// How many processors and physical cores there are: a walk that binds the calling thread to each processor
// in turn and reads its APIC id. The platform's calls come through a record that tests replace.
#pragma once

#include <stdint.h>

#include <vector>

#include "service/cpu_facts.h"

namespace qel {

/// A set of processors by number.
using cpu_mask = std::vector<bool>;

/// The platform's affinity calls.
struct affinity_calls {
  /// The processors that the process may use, and those that are on line.
  void (*masks)(cpu_mask& process, cpu_mask& system);
  /// Binds the calling thread to one processor and yields; false if that fails.
  bool (*bind)(int cpu);
  /// Gives the calling thread back the affinity that it had before the first bind, and yields.
  void (*restore)();
};
/// Linux: any number of processors. A thread binding that the OpenMP run time made at start does not count
/// as a restriction of the process.
extern const affinity_calls kLinuxAffinity;

/// From CPUID: how APIC ids are composed.
struct package_layout {
  int thread_bits;   ///< width of the thread's number within a core
  int core_bits;     ///< width of the core's number within a package
  int package_bits;  ///< width of everything below the package's number
};
package_layout read_package_layout(cpuid_reader cpuid);
/// Core id OR package id: equal for the threads of one core.
uint32_t core_identity(uint32_t apic_id, const package_layout& layout);

struct processor_counts {
  int logical = 1;
  int cores = 1;
  bool restricted = false;  ///< the process may not use all processors
};
/// Walks all processors. With a restricted mask nothing is assumed and both counts stay 1, unless
/// count_restricted: then the walk is over the process's own processors.
processor_counts discover_processors(cpuid_reader cpuid, const affinity_calls& calls, bool count_restricted);

/// The CPU quota of the control group whose membership file (as /proc/self/cgroup) and tree (as
/// /sys/fs/cgroup) are given, in whole processors rounded up, the least along the path to the root; 0 if
/// there is none. Both versions of the interface.
int control_group_quota(const char* membership_file, const char* tree);

}  // namespace qel
