// SPDX-License-Identifier: BSD-3-Clause
#include "sparse/blas/csr_vector_plan.h"

#include <cctype>
#include <cstring>

namespace qel::sparse {
namespace {

constexpr core_int kSharedSumRows = 100001;
// Native: a fork and a join cost as much as some ten thousand entries.
constexpr core_int kNativeThreadEntries = 30000;
// A transposed product with results per thread forks twice and moves three more numbers per column and
// further thread, in lines that another thread has read.
constexpr core_int kTransposedThreadEntries = 60000;
constexpr core_int kEntriesPerAccumulator = 2;

// Of a triangle's entries those outside cost little, and where lengths differ long rows often have many: a
// row weighs as much as some entries.
constexpr core_int kTriangleRowWeight = 16;

// How many lines of the vectors a triangle's rows wait for is known when they are done.
constexpr int kTriangleBlocksEach = 8;

// Larger matrices come from memory, at least in part: others need the last cache, too. Those that stay in it
// come by themselves: asked for, a product takes up to a third longer; from memory, a third to a half
// shorter.
constexpr core_int kShareOfCache = 3;

// From here on telling far rows from near ones costs more than whole accumulators.
constexpr double kManyFarRows = 1.0 / 16;

// Rows of grids and bands share lines of the vectors; from here on most entries have lines of their own.
constexpr double kWideSpread = 1.0 / 16;

char upper(char c) { return static_cast<char>(std::toupper(static_cast<unsigned char>(c))); }

bool is_mirrored(char kind) { return std::strchr("SHA", kind) != nullptr; }

csr_vector_plan serial(const char* reason) {
  csr_vector_plan plan;
  plan.reason = reason;
  return plan;
}

csr_vector_plan native_plan(const csr_vector_facts& facts) {
  if (facts.entries < kNativeThreadEntries) return serial("few entries");
  if (is_mirrored(facts.kind)) {
    const bool many = facts.far_share > kManyFarRows;
    return {many ? csr_scheme::kAccumulators : csr_scheme::kFarRows,
            facts.threads,
            /*even_entries=*/true,
            /*shared_sum=*/true,
            false,
            many ? "many entries far off the diagonal" : "near the diagonal"};
  }
  if (!facts.transposed)
    return {csr_scheme::kRowBlocks, facts.threads, /*even_entries=*/true, false, false, "rows don't meet"};
  if (facts.entries < kTransposedThreadEntries) return serial("few entries");
  if (facts.entries < kEntriesPerAccumulator * facts.columns * facts.threads)
    return serial("results per thread would cost more than the entries");
  return {csr_scheme::kAccumulators, facts.threads, /*even_entries=*/true,
          /*shared_sum=*/true,       false,         "columns meet in the result"};
}

}  // namespace

csr_class decode_matdescra(const char* matdescra) {
  csr_class result;
  result.kind = upper(matdescra[0]);
  result.lower = upper(matdescra[1]) == 'L';
  result.unit = upper(matdescra[2]) == 'U';
  result.base = upper(matdescra[3]) == 'C' ? 0 : 1;
  return result;
}

namespace {

csr_vector_plan shared_plan(const csr_vector_facts& facts) {
  const bool mirrored = is_mirrored(facts.kind);
  if (facts.threads < 2) return serial("one thread");
  if (facts.kind == 'D') return serial("a diagonal");
  if (mirrored && facts.rows <= facts.threads) return serial("few rows");
  if (facts.native) return native_plan(facts);
  if (mirrored)
    return {csr_scheme::kAccumulators,    facts.threads, false,
            facts.rows >= kSharedSumRows, false,         "both triangles meet in the result"};
  if (facts.transposed) return serial("no threads for transposed products on this level");
  return {csr_scheme::kRowBlocks, facts.threads, false, false, false, "rows don't meet"};
}

}  // namespace

csr_vector_plan plan_csr_vector(const csr_vector_facts& facts) {
  csr_vector_plan plan = shared_plan(facts);
  plan.streams = facts.bytes > facts.largest_cache / kShareOfCache;
  plan.in_steps = plan.streams && facts.spread > kWideSpread;
  plan.first_in_place = facts.native && plan.scheme == csr_scheme::kAccumulators;
  if (facts.kind == 'T' && plan.scheme == csr_scheme::kRowBlocks && plan.even_entries) {
    plan.row_weight = kTriangleRowWeight;
    plan.blocks_each = plan.in_steps ? kTriangleBlocksEach : 1;
  }
  return plan;
}

}  // namespace qel::sparse
