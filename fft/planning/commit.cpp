// SPDX-License-Identifier: BSD-3-Clause
#include "fft/planning/commit.h"

namespace qel::fft {

commit_routine_type* commit_routine_for(int, int, core_int) { return nullptr; }

int count_compute_pointers(int placement, int domain, int complex_storage) {
  const int sides = placement == DFTI_INPLACE ? 1 : 2;
  return domain == DFTI_COMPLEX && complex_storage == DFTI_REAL_REAL ? 2 * sides : sides;
}

int commit_descriptor(dfti_node* first) {
  if (first == nullptr) return DFTI_BAD_DESCRIPTOR;
  if (first->commit_routine == nullptr) {
    return first->magic == kMagic ? DFTI_INTERNAL_ERROR : DFTI_BAD_DESCRIPTOR;
  }
  const int status = first->commit_routine(first);
  if (status == DFTI_NO_ERROR) {
    first->compute_pointers =
        count_compute_pointers(first->placement, first->forward_domain, first->complex_storage);
  }
  return status;
}

void release_plan(dfti_node*) {}
void release_fast_plan(dfti_node*) {}

}  // namespace qel::fft
