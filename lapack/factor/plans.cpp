// SPDX-License-Identifier: BSD-3-Clause
#include "lapack/factor/plans.h"

#include <algorithm>

#include "blas/kernels/factor_native.h"
#include "lapack/four_types.h"
#include "service/native_level.h"

namespace qel::lapack {

namespace {

/// Ask by the factorisation's name of this type.
core_int ask(core_int question, char type, const char* routine, const char* options, core_int n1, core_int n2,
             core_int n3, const tuning_processor& processor) {
  const char name[] = {type, routine[0], routine[1], routine[2], routine[3], routine[4]};
  return tuned_block_size({question, {name, sizeof name}, options, n1, n2, n3, -1}, processor);
}

/// Native levels: panels run at the speed of the product, so blocks are wide enough for it and each thread
/// takes one at a time.
lu_plan plan_native_lu(const lu_facts& facts) {
  constexpr core_int kOrderForTasks = 512;
  if (facts.threads < 2) return {lu_path::recursive, 1, 0, 0, 0, "one thread"};
  const core_int order = std::min(facts.m, facts.n);
  if (order < kOrderForTasks) return {lu_path::recursive, 1, 0, 0, 0, "too small for tasks"};
  const core_int block = order < 1500 ? 64 : order < 4000 ? 128 : 256;
  return {lu_path::tasks, facts.threads, block, 1, 0, "block columns for each thread"};
}

cholesky_plan plan_native_cholesky(const cholesky_facts& facts) {
  constexpr core_int kOrderForTasks = 512;
  if (facts.threads < 2) return {cholesky_path::serial, 1, 0, 0, "one thread"};
  if (facts.n < kOrderForTasks) return {cholesky_path::serial, 1, 0, 0, "too small for tasks"};
  const core_int block = facts.n < 1500 ? 128 : 256;
  return {cholesky_path::tasks, facts.threads, block, facts.n, "tiles for each thread"};
}

}  // namespace

lu_plan plan_lu(const lu_facts& facts) {
  if (facts.m <= 0 || facts.n <= 0) return {lu_path::nothing, 1, 0, 0, 0, "no elements"};
  if (facts.processor.level >= kFirstNativeLevel) return plan_native_lu(facts);
  const auto getrf = [&](core_int question, core_int threads) {
    return ask(question, facts.type, "GETRF", " ", facts.m, facts.n, threads, facts.processor);
  };
  if (getrf(kCrossover, -1) >= facts.n) return {lu_path::recursive, 1, 0, 0, 0, "narrow"};
  if (facts.threads < 2) return {lu_path::recursive, 1, 0, 0, 0, "one thread"};
  if (getrf(kCrossover, facts.threads) >= facts.n) {
    return {lu_path::blas_threads, facts.threads, 0, 0, 0, "up to the crossover of this thread count"};
  }
  const core_int block = getrf(kBlockSize, facts.threads);
  if (block < 2 || block >= std::min(facts.m, facts.n)) {
    return {lu_path::unblocked, 1, 0, 0, 0, "no more than one block"};
  }
  return {lu_path::tasks,
          facts.threads,
          block,
          getrf(kGroup, facts.threads),
          getrf(kLookahead, facts.threads),
          "block columns for each thread"};
}

bool inverts_halves_at_once(core_int n, int threads) {
  constexpr core_int kLeast = 128, kShared = 512;
  return threads >= 2 && n >= kLeast && (threads == 2 || n <= kShared);
}

int plan_column_moves(core_int n, int threads) {
  constexpr core_int kRows = 256;
  return static_cast<int>(std::clamp<core_int>(n / kRows, 1, std::max(threads, 1)));
}

core_int plan_lu_panel(char type, core_int rows, int level) {
  constexpr core_int kNarrow = 8, kCache = 32768, kPanel = kFactorColumns / 2;
  if (level < kFirstNativeLevel) return kNarrow;
  // Small matrices of doubles whole; else more than a few while the panel stays in the first cache.
  if ((type == 'D' || type == 'Z') && rows <= kFactorColumns) return kFactorColumns;
  return rows * kPanel * element_bytes(type) <= kCache ? kPanel : kNarrow;
}

cholesky_plan plan_cholesky(const cholesky_facts& facts) {
  if (facts.n <= 0) return {cholesky_path::nothing, 1, 0, 0, "no elements"};
  if (facts.processor.level >= kFirstNativeLevel) return plan_native_cholesky(facts);
  const auto potrf = [&](core_int question, core_int n3) {
    return ask(question, facts.type, "POTRF", facts.upper ? "U" : "L", facts.n, facts.threads, n3,
               facts.processor);
  };
  const core_int block = potrf(kBlockSize, -1);
  if (facts.n <= block || block <= 1) return {cholesky_path::unblocked, 1, 0, 0, "no more than one block"};
  if (facts.threads < 2) return {cholesky_path::serial, 1, 0, 0, "one thread"};
  if (potrf(kCrossover, -1) >= facts.n) return {cholesky_path::serial, 1, 0, 0, "up to the crossover"};
  return {cholesky_path::tasks, facts.threads, block, potrf(kBlockSize, kAskTaskGrain),
          "tiles for each thread"};
}

}  // namespace qel::lapack
