// SPDX-License-Identifier: BSD-3-Clause
#include "sparse/dss/record.h"

#include <algorithm>
#include <cstring>

#include "service/serv.h"
#include "sparse/dss/reporter.h"
#include "sparse/pardiso/call.h"

namespace qel::dss {

record* create_record() {
  void* const place = serv_platform_malloc(sizeof(record));
  if (place == nullptr) return nullptr;
  std::memset(place, 0, sizeof(record));
  auto* const made = static_cast<record*>(place);
  made->maxfct = made->mnum = 1;
  made->data = real_data;
  made->state = state_created;
  return made;
}

void delete_record(record* freed) { serv_platform_free(freed); }

int call_solver(record& r, int phase) {
  r.phase = phase;
  // The solver reads right-hand sides unless it is told to overwrite them, which this interface never does.
  const pardiso::solver_call call = {
      r.pt,        r.maxfct,       r.mnum, r.mtype, phase,   r.rows,   r.values,
      r.row_index, r.column_index, r.perm, r.nrhs,  r.iparm, r.msglvl, const_cast<void*>(r.rhs),
      r.solution};
  switch (pardiso::solve_system(call)) {
    case 0:
      return success;
    case -2:
      return out_of_memory;
    case -4:
      return zero_pivot;
    default:
      return failure;
  }
}

int starting_type(int structure, int data) {
  constexpr int kReal[] = {2, 1, 11}, kComplex[] = {4, 3, 13};
  return data == complex_data ? kComplex[structure] : kReal[structure];
}

int factored_type(int structure, int factor, int data) {
  if (structure != symmetric) return starting_type(structure, data);
  if (data == real_data) return factor == positive_definite ? 2 : -2;
  return factor == hermitian_indefinite ? -4 : factor == indefinite ? 6 : 4;
}

}  // namespace qel::dss
