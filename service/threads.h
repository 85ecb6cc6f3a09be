// SPDX-License-Identifier: BSD-3-Clause
// What the public thread settings and the command line need beside serv.h.
#pragma once

#include "service/spin_lock.h"
#include "service/thread_policy.h"
#include "service/topology.h"

namespace qel {

/// The policy's answer for a domain, with its reason.
thread_choice explain_threads(int domain);
/// The processors as the policy counts them.
processor_counts known_processors();
/// Sets the count for all domains and drops what the environment said of single ones; n <= 0 does nothing.
void set_threads_over_environment(int n);
/// Sets the calling thread's own count, which comes before all others; n <= 0 clears it. Returns the former
/// one, 0 if there was none.
int set_threads_of_this_thread(int n);

/// True if QEL_AFFINITY asks for the processors of a restricted mask to be counted.
bool counts_restricted_mask();

/// Guards the settings and the discovery; held across a fork.
spin_lock& threads_lock();

}  // namespace qel
