// SPDX-License-Identifier: BSD-3-Clause
#include "blas/level2/thread_plans.h"

#include <algorithm>
#include <cmath>

#include "service/serv.h"

namespace qel {
namespace {

constexpr core_int kMultipleOf8 = ~core_int{7}, kMultipleOf16 = ~core_int{15};

bool is_native(int level) { return level > 4; }

/// Native levels: bytes of the matrix that make a thread pay. A thread's start costs some microseconds, in
/// which a core reads this much from its second-level cache.
constexpr core_int kNativeBytesPerThread = 256 * 1024;
/// Rows and columns of a part: whole cache lines of y, whole groups of columns.
constexpr core_int kNativeRows = 16, kNativeColumns = 8;
/// Elements of a solution between two meetings of the threads.
constexpr core_int kSolutionBlock = 128;
/// A column of a triangle whose solution is shared has so many bytes at least.
constexpr core_int kSolutionColumnBytes = 8192;

int native_threads(core_int elements, int element_bytes, int threads) {
  const core_int paying = elements * element_bytes / kNativeBytesPerThread;
  return static_cast<int>(std::min<core_int>(threads, paying));
}

/// Elements of a triangle that pay in a product, which is more than one pass over it: x is copied, or the
/// threads meet a second time to add what each has found.
core_int paying_of_product(core_int stored) { return stored * 2 / 3; }

/// length elements in parts that are multiples of `unit`, for at most that many threads.
gemv_plan even_parts(core_int length, core_int unit, int threads) {
  const core_int units = (length + unit - 1) / unit;
  threads = static_cast<int>(std::min<core_int>(threads, units));
  if (threads < 2) return {1, length, "too little work to share"};
  const core_int chunk = (units + threads - 1) / threads * unit;
  return {static_cast<int>((length + chunk - 1) / chunk), chunk, "even parts"};
}

/// Start of a part of a triangle of order n whose parts have like areas.
core_int like_area_start(bool grows, core_int n, int threads, int thread) {
  const double share = static_cast<double>(grows ? thread : threads - thread) / threads;
  const auto width = static_cast<core_int>(std::sqrt(share) * static_cast<double>(n));
  return (grows ? width : n - width) & kMultipleOf16;
}

}  // namespace

bool level_has_level2_threads(int level) { return level == 2 || level == 3 || is_native(level); }

level2_facts current_level2_facts(core_int bytes) {
  const int level = serv_cpu_level();
  const bool asks = is_native(level) ? bytes >= 2 * kNativeBytesPerThread : level_has_level2_threads(level);
  return {level, asks ? serv_threads_for_domain(1) : 1};
}

gemv_plan choose_gemv_threads(bool transposed, core_int m, core_int n, int element_bytes,
                              const level2_facts& facts) {
  const core_int length = transposed ? n : m;
  if (m < kSmallestForkingGemv && n < kSmallestForkingGemv) return {1, length, "small matrix"};
  if (!level_has_level2_threads(facts.level)) return {1, length, "no threads on this processor level"};
  if (facts.threads < 2) return {1, length, "one thread in the domain"};
  if (is_native(facts.level)) {
    gemv_plan plan = even_parts(length, transposed ? kNativeColumns : kNativeRows,
                                native_threads(m * n, element_bytes, facts.threads));
    plan.by_lines = !transposed && plan.threads > 1;
    return plan;
  }
  // The test is on one thread's work, and on whether its part is long or short.
  core_int chunk = length / facts.threads;
  if (!transposed) chunk &= kMultipleOf8;
  const core_int work = chunk * (transposed ? m : n);
  const core_int least = chunk >= 64 ? (transposed ? 4096 : 3072) : (transposed ? 2048 : 1536);
  if (work < least) return {1, length, "too little work for a thread"};
  return {facts.threads, chunk, "all threads of the domain"};
}

part_range gemv_part(const gemv_plan& plan, core_int length, int thread, core_int past_line) {
  const auto start = [&](int t) { return t == 0 ? 0 : t * plan.chunk - past_line; };
  return {start(thread), thread == plan.threads - 1 ? length : start(thread + 1)};
}

gemv_plan choose_ger_threads(core_int m, core_int n, int element_bytes, const level2_facts& facts) {
  if (!is_native(facts.level)) return {1, n, "no threads on this processor level"};
  if (facts.threads < 2) return {1, n, "one thread in the domain"};
  return even_parts(n, kNativeColumns, native_threads(m * n, element_bytes, facts.threads));
}

gemv_plan choose_gbmv_threads(bool transposed, core_int m, core_int n, core_int kl, core_int ku,
                              int element_bytes, const level2_facts& facts) {
  const core_int length = transposed ? n : m;
  if (!is_native(facts.level)) return {1, length, "no threads on this processor level"};
  if (facts.threads < 2) return {1, length, "one thread in the domain"};
  const core_int stored = std::min(n, m + ku) * std::min(m, kl + ku + 1);
  return even_parts(length, transposed ? kNativeColumns : kNativeRows,
                    native_threads(stored, element_bytes, facts.threads));
}

triangle_plan choose_triangle_threads(triangle_work work, bool grows, core_int n, core_int k,
                                      int element_bytes, const level2_facts& facts) {
  const bool banded = k < n;
  const auto serial = [&](const char* reason) { return triangle_plan{1, grows, banded, reason}; };
  if (n < kSmallestForkingTrmv) return serial("small matrix");
  if (!is_native(facts.level)) return serial("no threads on this processor level");
  if (facts.threads < 2) return serial("one thread in the domain");
  const core_int stored = banded ? n * (k + 1) : n * n / 2;
  const core_int paying = work == triangle_work::kUpdate ? stored : paying_of_product(stored);
  const int threads = native_threads(paying, element_bytes, facts.threads);
  if (threads < 2) return serial("too little work to share");
  return {threads, grows, banded, banded ? "even parts" : "like areas"};
}

part_range triangle_part(const triangle_plan& plan, core_int n, int thread) {
  const auto start = [&](int t) -> core_int {
    if (t == plan.threads) return n;
    if (plan.banded) return (n * t / plan.threads) & kMultipleOf8;
    return like_area_start(plan.grows, n, plan.threads, t);
  };
  return {start(thread), start(thread + 1)};
}

solution_plan choose_solution_threads(core_int n, int element_bytes, const level2_facts& facts) {
  if (n < kSmallestForkingTrmv) return {1, n, "small matrix"};
  if (!is_native(facts.level)) return {1, n, "no threads on this processor level"};
  if (facts.threads < 2) return {1, n, "one thread in the domain"};
  // Threads meet at every block, and one of them solves while the others reduce: what a block's columns take
  // must be long beside that.
  const int threads = native_threads(n * n / 6, element_bytes, facts.threads);
  if (threads < 2 || n * element_bytes < kSolutionColumnBytes) return {1, n, "too little work to share"};
  return {threads, kSolutionBlock, "blocks"};
}

part_range solution_part(const solution_plan& plan, core_int depth, core_int rest, int thread) {
  // The first thread has the next block besides: to reduce and to solve it costs some two and a half times
  // as much as to reduce as many elements by one block.
  const core_int extra = plan.block * 5 / 2 * plan.block / depth;
  const core_int solver = std::max<core_int>(0, (rest + extra) / plan.threads - extra) & kMultipleOf8;
  const auto start = [&](int t) -> core_int {
    if (t == 0) return 0;
    if (t == plan.threads) return rest;
    return solver + ((rest - solver) * (t - 1) / (plan.threads - 1) & kMultipleOf8);
  };
  return {start(thread), start(thread + 1)};
}

trmv_plan choose_trmv_threads(bool upper, bool transposed, core_int n, core_int incx, int element_bytes,
                              const level2_facts& facts) {
  const bool grows = upper == transposed;
  const auto serial = [&](const char* reason) { return trmv_plan{1, 1, n, 0, grows, 1, reason}; };
  if (n < kSmallestForkingTrmv) return serial("small matrix");
  if (!level_has_level2_threads(facts.level)) return serial("no threads on this processor level");
  if (facts.threads < 2) return serial("one thread in the domain");
  const int copy_threads = incx == 1 && n >= 3000 ? std::min(facts.threads, 4) : 1;
  if (is_native(facts.level)) {
    const int threads = native_threads(paying_of_product(n * n / 2), element_bytes, facts.threads);
    if (threads < 2) return serial("too little work to share");
    return {threads, threads, 0, 0, grows, copy_threads, "like areas"};
  }
  if (facts.threads >= 9 && n < 191) return serial("too many threads for the size");
  // The zone whose rows cost less is the wider one, so that the zones' areas are alike.
  const core_int zone = n < 1025 ? n / 2 : grows ? 2 * n / 3 : n / 3;
  const int first_zone = facts.threads / 2, second_zone = facts.threads - first_zone;
  const core_int first_width = (zone / first_zone) & kMultipleOf8;
  const core_int second_width = ((n - first_zone * first_width) / second_zone) & kMultipleOf8;
  return {facts.threads, first_zone, first_width, second_width, grows, copy_threads, "two zones"};
}

part_range trmv_part(const trmv_plan& plan, core_int n, int thread) {
  const auto start = [&](int t) -> core_int {
    if (t == plan.threads) return n;
    if (plan.first_zone == plan.threads) return like_area_start(plan.grows, n, plan.threads, t);
    if (t <= plan.first_zone) return t * plan.first_width;
    return plan.first_zone * plan.first_width + (t - plan.first_zone) * plan.second_width;
  };
  return {start(thread), start(thread + 1)};
}

}  // namespace qel
