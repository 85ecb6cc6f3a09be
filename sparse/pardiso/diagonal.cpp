// SPDX-License-Identifier: BSD-3-Clause
#include "sparse/pardiso/diagonal.h"

#include <omp.h>

#include <algorithm>

#include "sparse/pardiso/record.h"

namespace qel::pardiso {
namespace {

/// The first of rows first .. last - 1 without a usable entry, from 1; 0 if there is none.
template <class T>
int find_bad_row(const solver_call& call, const T* a, int first, int last) {
  for (int i = first; i < last; ++i) {
    if (call.ia[i] != i + 1 || call.ja[i] != i + 1 || a[i] == T{}) return i + 1;
  }
  return 0;
}

template <class T>
int solve_typed(const solver_call& call, int threads) {
  const T* const a = static_cast<const T*>(call.a);
  const T* const b = static_cast<const T*>(call.b);
  T* const x = static_cast<T*>(call.iparm()(p_solution_in_b) == 1 ? call.b : call.x);
  const bool solves = call.phase % 10 == 3;
  const int64_t n = call.n;
  int bad = 0;
  const auto work = [&](int64_t team, int64_t me) {
    const int first = static_cast<int>(n * me / team), last = static_cast<int>(n * (me + 1) / team);
    const int bad_here = find_bad_row(call, a, first, last);
#pragma omp critical(qel_pardiso_diagonal)
    if (bad_here != 0) bad = bad == 0 ? bad_here : std::min(bad, bad_here);
    if (team > 1) {
#pragma omp barrier
    }
    for (int64_t k = 0; bad == 0 && solves && k < call.nrhs; ++k) {
      for (int64_t i = first; i < last; ++i) x[i + n * k] = b[i + n * k] / a[i];
    }
  };
  // Not a region of one thread: it would dismiss the runtime's team.
  if (threads == 1) {
    work(1, 0);
  } else {
#pragma omp parallel num_threads(threads)
    work(omp_get_num_threads(), omp_get_thread_num());
  }
  return bad;
}

}  // namespace

bool looks_diagonal(const solver_call& call) {
  return call.phase >= 1 && call.n > 0 && call.ia[call.n] - 1 == call.n;
}

int solve_diagonal(const solver_call& call, bool single, int threads) {
  const int kind = call.mtype > 10 ? call.mtype - 10 : call.mtype;
  return with_element(kind > 2 || kind < -2, single,
                      [&](auto element) { return solve_typed<decltype(element)>(call, threads); });
}

}  // namespace qel::pardiso
