// SPDX-License-Identifier: BSD-3-Clause
#include "lapack/orthogonal/plans.h"

#include <algorithm>

#include "blas/kernels/factor_native.h"
#include "lapack/four_types.h"
#include "service/native_level.h"

namespace qel::lapack {

namespace {

core_int ask_block(char type, const char* real_name, const char* complex_name, core_int n1, core_int n2,
                   const tuning_processor& processor) {
  const char* const rest = type == 'S' || type == 'D' ? real_name : complex_name;
  const char name[] = {type, rest[0], rest[1], rest[2], rest[3], rest[4]};
  return std::max<core_int>(
      tuned_block_size({kBlockSize, {name, sizeof name}, " ", n1, n2, -1, -1}, processor), 1);
}

}  // namespace

qr_plan plan_qr(const qr_facts& facts) {
  constexpr core_int kSmall = 32, kSmallInCopy = 64, kLanes = 16;
  const core_int order = std::min(facts.m, facts.n),
                 copy = (facts.m + kLanes - 1) / kLanes * kLanes * facts.n * element_bytes(facts.type);
  if (order <= kSmall) return {1, "small: column by column"};
  if (facts.processor.level >= kFirstNativeLevel && order <= kSmallInCopy && copy <= kReflectBytes) {
    return {1, "small enough for a copy: column by column"};
  }
  if (facts.processor.level < kFirstNativeLevel) {
    const core_int block = ask_block(facts.type, "GEQRF", "GEQRF", facts.m, facts.n, facts.processor);
    return {std::min(order, block), "block size by name"};
  }
  // A wide block gives the products of the update their depth, a narrow one keeps the panel small.
  const core_int block = order < 200 ? 16 : order < 1000 ? 32 : order < 2500 ? 64 : 96;
  return {std::min(order, block), "wider blocks for larger matrices"};
}

core_int plan_qr_panel(char type, core_int rows, int level) {
  constexpr core_int kNarrow = 8, kMost = 32, kSpare = 16;
  if (level < kFirstNativeLevel) return kNarrow;
  // More while the panel fits into the kernel's copy.
  return std::clamp<core_int>(kReflectBytes / element_bytes(type) / (rows + kSpare), kNarrow, kMost);
}

q_product_plan plan_q_product(const q_product_facts& facts) {
  constexpr double kWorkToFork = 200000;  // operations of a slice; below it a region does not pay
  constexpr core_int kThinnest = 8;       // columns or rows of a slice
  constexpr core_int kFewReflectors = 8, kShort = 64;
  const bool native = facts.processor.level >= kFirstNativeLevel;
  if (facts.left && facts.n == 1) return {1, 1, "one column: making blocks would cost more"};
  // Whatever n is: callers compare a column's bits between products of different widths.
  if (facts.left && facts.k <= kFewReflectors && facts.m <= kShort) return {1, 1, "few short reflectors"};
  const core_int block = std::min<core_int>(
      facts.k, native ? (facts.k < 1000 ? 32 : 64)
                      : ask_block(facts.type, "ORMQR", "UNMQR", facts.m, facts.n, facts.processor));
  if (facts.threads < 2) return {block, 1, "one thread"};
  const core_int count = facts.left ? facts.n : facts.m;
  const double work =
      4 * static_cast<double>(facts.m) * static_cast<double>(facts.n) * static_cast<double>(facts.k);
  const double most = std::min(
      {work / kWorkToFork, static_cast<double>(count / kThinnest), static_cast<double>(facts.threads)});
  if (most < 2) return {block, 1, "too little work for slices"};
  return {block, static_cast<int>(most), facts.left ? "slices of columns" : "slices of rows"};
}

}  // namespace qel::lapack
