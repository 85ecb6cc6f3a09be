// SPDX-License-Identifier: BSD-3-Clause
// The measures: the triangle's own work and that of one slab, in units in which a region's cost is about 6.
#include "blas/level3/side_rules.h"

#include "service/serv.h"

namespace qel {
namespace {

struct work {
  double triangle, slab;
};
work work_of(core_int order, core_int chunk) {
  const auto n = static_cast<double>(order);
  return {(n + 1) * n / 256, n * static_cast<double>(chunk) / 128};
}

bool both_small(const side_facts& f) { return f.m < 17 && f.n < 17; }

/// Null if threads pay.
const char* reason_against_left(const side_facts& f, core_int chunk) {
  const work w = work_of(f.m, chunk);
  if (both_small(f)) return "both sizes small";
  if (w.triangle < 1 && w.slab < 6) return "little work in triangle and slab";
  if (w.triangle + w.slab <= 6) return "little work";
  return nullptr;
}
const char* reason_against_right(const side_facts& f, core_int chunk) {
  const work w = work_of(f.n, chunk);
  if (both_small(f)) return "both sizes small";
  if (w.triangle <= 1) return "little work in the triangle";
  if (w.slab < 4) return "little work in a slab";
  if (w.triangle + w.slab <= 10) return "little work";
  return nullptr;
}

/// The tests from level 1 on; chunk is rounded to whole fours where the level does.
side_choice by_work(const side_facts& f) {
  core_int chunk = (f.left ? f.n : f.m) / f.threads;
  if (f.level >= 2 && (!f.left || f.m > 512)) chunk &= ~core_int{3};
  const char* against = f.left ? reason_against_left(f, chunk) : reason_against_right(f, chunk);
  if (against == nullptr && f.level == 1 && f.left && f.m > 512 && chunk < 8) against = "narrow slabs";
  if (against != nullptr) return {1, 0, against};
  return {f.threads, chunk, "a slab per thread"};
}

}  // namespace

side_choice choose_trsm(const side_facts& f) {
  if (f.n == 0) return {1, 0, "nothing to do"};
  if (f.threads < 2) return {1, 0, "one thread in the domain"};
  if (f.level > 0) return by_work(f);
  if (both_small(f)) return {1, 0, "both sizes small"};
  return {f.threads, (f.left ? f.n : f.m) / f.threads, "a slab per thread"};
}

side_choice choose_trmm(const side_facts& f) {
  if (f.n == 0) return {1, 0, "nothing to do"};
  if (f.threads < 2) return {1, 0, "one thread in the domain"};
  if (f.level >= 2) return by_work(f);
  // Kept: from the left only the number of columns counts.
  if (f.n < 17 && (f.left || f.m < 17)) return {1, 0, "few columns"};
  if (f.level == 1) return by_work(f);
  return {f.threads, (f.left ? f.n : f.m) / f.threads, "a slab per thread"};
}

side_facts side_facts_now(bool left, core_int m, core_int n) {
  return {left, serv_cpu_level(), m, n, serv_threads_for_domain(1)};
}

syrk_choice choose_syrk(const syrk_facts& f) {
  if (f.n == 0 || f.changes_nothing) return {syrk_scheme::nothing, 1, 0, 0, "nothing to do"};
  if (f.level < 2) {
    if (f.n > 16 && f.threads > 1) {
      return {syrk_scheme::slices, f.threads, f.n / f.threads, f.threads, "a slice of columns per thread"};
    }
    return {syrk_scheme::serial, 1, 0, 0, f.threads > 1 ? "few columns" : "one thread in the domain"};
  }
  if (f.n == 4) return {syrk_scheme::four, 1, 0, 0, "order 4"};
  if (f.n < 8 * f.threads) return {syrk_scheme::serial, 1, 0, 0, "fewer than 8 columns per thread"};
  if (f.threads < 2) return {syrk_scheme::serial, 1, 0, 0, "one thread in the domain"};
  return {syrk_scheme::triangle_blocks, f.threads, f.n / (2 * f.threads) & ~core_int{3}, 4 * f.threads - 2,
          "diagonal blocks and the rectangles beside them"};
}

syrk_facts syrk_facts_now(core_int n, core_int k, bool changes_nothing) {
  return {serv_cpu_level(), n, k, serv_threads_for_domain(1), changes_nothing};
}

triangle_plan choose_triangle_plan(int level, bool left, core_int n) {
  if (level < 2) return {256, kInnerTriangle, 1024};
  if (left) return {128, kInnerTriangle, 1000};
  return {512, kInnerTriangle, n < 2000 ? 128 : 256};
}

}  // namespace qel
