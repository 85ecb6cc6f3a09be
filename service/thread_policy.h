// SPDX-License-Identifier: BSD-3-Clause
// How many threads a region may use: the settings, how the environment fills them, and the decision, all as
// plain records and pure functions. threads.cpp keeps the process's settings and asks the run time.
#pragma once

#include "service/environment.h"

namespace qel {

enum thread_domain : int { kDomainAll = 0, kDomainBlas = 1, kDomainFft = 2, kDomainVml = 3 };
inline constexpr int kThreadDomains = 4;

/// No value yet: what every setting starts with.
inline constexpr int kUnset = -1;

/// What the environment and the setters have said.
struct thread_settings {
  int count[kThreadDomains] = {kUnset, kUnset, kUnset, kUnset};  ///< by domain; [kDomainAll] is for all
  int dynamic = kUnset;                                          ///< dynamic adjustment: 1 on, 0 off
  int omp_count = kUnset;                                        ///< OMP_NUM_THREADS as a number
  int ranks_per_node = kUnset;                                   ///< MPI processes on this node
  int mpi_level = kUnset;                                        ///< MPI threading level, 0..3
  int process_mode = kUnset;  ///< -1 automatic, 0 one thread, 1 no reduction for ranks
};

/// Fills what is still unset from QEL_NUM_THREADS, QEL_DOMAIN_NUM_THREADS, QEL_DYNAMIC, OMP_NUM_THREADS,
/// I_MPI_NUMBER_OF_MPI_PROCESSES_PER_NODE and I_MPI_THREAD_LEVEL.
void read_thread_environment(thread_settings& settings);

/// A count as text: 1 if it is empty or has anything but digits.
int parse_thread_count(const char* text);
/// Applies a list as "QEL_ALL=2, QEL_BLAS=4" to the counts that are still unset.
void apply_domain_list(const char* list, int count[kThreadDomains]);
/// True for the value of QEL_AFFINITY that counts a restricted mask's processors: exactly "count".
bool is_affinity_count(const char* text);
/// False for the words FALSE and false, alone or in quotes.
bool parse_dynamic(const char* text);

/// What the decision needs beside the settings.
struct thread_facts {
  bool forked_child = false;  ///< a forked process, which can't have an OpenMP team
  bool in_parallel = false;   ///< the caller stands in a parallel region
  int omp_max_threads = 1;    ///< what OpenMP would start
  int cores = 1;              ///< physical cores; looked at only with dynamic adjustment on
  int local_count = 0;        ///< the calling thread's own wish; 0 if it has none
};

/// A thread count and the rule that settled it, in words.
struct thread_choice {
  int threads;
  const char* reason;
};
/// The decision for a domain; an unknown domain counts as kDomainAll. At least 1.
thread_choice choose_threads(const thread_settings& settings, int domain, const thread_facts& facts);

}  // namespace qel
