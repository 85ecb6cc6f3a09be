// SPDX-License-Identifier: BSD-3-Clause
#include "sparse/pardiso/order/metis_adapter.h"

#include <metis.h>
#include <pthread.h>
#include <stdlib.h>

#include <atomic>

namespace qel::pardiso {
namespace {

static_assert(sizeof(idx_t) == sizeof(int), "the partitioner's indices are 32-bit integers");

pthread_mutex_t partitioner = PTHREAD_MUTEX_INITIALIZER;

/// A forked child has one thread, which does not hold the lock, whoever held it in the parent.
void free_in_child() { partitioner = PTHREAD_MUTEX_INITIALIZER; }

void watch_forks() {
  static std::atomic<bool> watched{false};
  if (!watched.exchange(true)) pthread_atfork(nullptr, nullptr, free_in_child);
}

/// One caller at a time, with random numbers apart from the application's rand().
class partitioner_call {
 public:
  partitioner_call() {
    watch_forks();
    pthread_mutex_lock(&partitioner);
    application_ = initstate(1, state_, sizeof state_);
  }
  ~partitioner_call() {
    setstate(application_);
    pthread_mutex_unlock(&partitioner);
  }
  partitioner_call(const partitioner_call&) = delete;
  partitioner_call& operator=(const partitioner_call&) = delete;

 private:
  char state_[128];
  char* application_;
};

void translate(const dissection_options& from, idx_t* to) {
  METIS_SetDefaultOptions(to);
  to[METIS_OPTION_NUMBERING] = 0;
  if (from.explicit_options == 0) return;
  to[METIS_OPTION_CTYPE] = from.coarsening == 3 ? METIS_CTYPE_SHEM : METIS_CTYPE_RM;
  to[METIS_OPTION_IPTYPE] = from.initial_partition == 1 ? METIS_IPTYPE_EDGE : METIS_IPTYPE_NODE;
  to[METIS_OPTION_RTYPE] = from.refinement == 2 ? METIS_RTYPE_SEP1SIDED : METIS_RTYPE_SEP2SIDED;
  to[METIS_OPTION_NSEPS] = from.separators;
  to[METIS_OPTION_DBGLVL] = from.debug;
}

}  // namespace

bool find_separator(int n, int* xadj, int* adjncy, int* weight, const dissection_options& options,
                    int* side) {
  idx_t translated[METIS_NOPTIONS];
  translate(options, translated);
  idx_t separator_weight = 0;
  const partitioner_call one_at_a_time;
  return METIS_ComputeVertexSeparator(&n, xadj, adjncy, weight, translated, &separator_weight, side) ==
         METIS_OK;
}

}  // namespace qel::pardiso
