// SPDX-License-Identifier: BSD-3-Clause
// How a product of a CSR matrix and a vector is shared among threads: pure functions of explicit facts.
#pragma once

#include "service/core_types.h"

namespace qel::sparse {

/// What matdescra says.
struct csr_class {
  char kind = 'G';  ///< G, S, H, T, A or D
  bool lower = false, unit = false;
  int base = 1;
};
csr_class decode_matdescra(const char* matdescra);

struct csr_vector_facts {
  char kind;        ///< as in csr_class
  bool transposed;  ///< T or C
  core_int rows, columns, entries;
  int threads;  ///< as the thread policy has it, 1 inside a parallel region
  bool native;
  core_int bytes = 0, largest_cache = 0;  ///< of values and columns; 0: unknown
  double far_share =
      0;              ///< native, symmetric: entries that lie a thread's share of the rows off the diagonal
  double spread = 0;  ///< from memory: how far entries lie off the diagonal, as a share of the rows
};

enum class csr_scheme {
  kSerial,
  kRowBlocks,     ///< each thread has its rows of the result
  kAccumulators,  ///< each thread has a whole result of its own, added afterwards
  kFarRows,       ///< symmetric, native: own rows at once, those of others in blocks that are used
};

struct csr_vector_plan {
  csr_scheme scheme = csr_scheme::kSerial;
  int threads = 1;
  bool even_entries = false;  ///< the threads' rows are chosen by entries, else by count
  bool shared_sum = false;    ///< the accumulators are added by all threads
  bool streams = false;       ///< kernels ask for the matrix ahead
  const char* reason = "";
  bool first_in_place = false;  ///< accumulators: the first thread adds to the result itself
  bool in_steps = false;        ///< with streams: in two steps, as lines of the vectors are waited for, too
  core_int row_weight = 0;      ///< with even_entries: a row counts as so many entries more
  int blocks_each = 1;          ///< row blocks: so many for each thread, taken by whoever is free if several
};

csr_vector_plan plan_csr_vector(const csr_vector_facts& facts);

/// Rows first .. last - 1 of a thread: rows / threads each, the last one takes the rest.
struct row_range {
  core_int first, last;
};
constexpr row_range rows_of(core_int rows, int threads, int t) {
  const core_int block = rows / threads;
  return {t * block, t == threads - 1 ? rows : (t + 1) * block};
}

}  // namespace qel::sparse
