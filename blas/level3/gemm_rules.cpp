// SPDX-License-Identifier: BSD-3-Clause
// The thread rules of the matrix product. The numbers were found by tuning, class by class, and some of the
// branches are odd; they are kept as they are.
#include "blas/level3/gemm_rules.h"

#include <algorithm>

#include "service/serv.h"

namespace qel {
namespace {

/// Rows of a block were tuned for doubles; other types get as many bytes.
core_int rows_for(element_type type, core_int rows_of_doubles) {
  return rows_of_doubles * 8 / bytes_of(type);
}

gemm_choice chosen(gemm_scheme scheme, core_int threads, const char* reason) {
  gemm_choice choice;
  choice.scheme = scheme;
  choice.threads = threads;
  choice.reason = reason;
  return choice;
}
gemm_choice serially(const char* reason) { return chosen(gemm_scheme::serial, 1, reason); }

gemm_choice grid_of(core_int threads, core_int grid_rows, const char* reason) {
  gemm_choice choice = chosen(gemm_scheme::grid, threads, reason);
  choice.grid_rows = grid_rows;
  choice.grid_cols = threads / grid_rows;
  return choice;
}

gemm_choice split_longer(const gemm_facts& f, core_int threads, const char* reason) {
  return chosen(f.m > f.n ? gemm_scheme::split_rows : gemm_scheme::split_cols, threads, reason);
}

gemm_choice choose_family_10h(const gemm_facts& f) {
  const core_int threads = f.threads;
  gemm_choice choice;
  if (threads % 2 == 0 && f.m <= 2 * f.n && f.n <= 2 * f.m) {
    choice = threads % 4 == 0 ? grid_of(threads, 4, "family 10h: nearly square, four rows of cells")
                              : grid_of(threads, 2, "family 10h: nearly square, two rows of cells");
  } else {
    choice = grid_of(threads, f.n < f.m ? threads : 1, "family 10h: slabs of the longer side");
  }
  const bool narrow = f.n / (threads / choice.grid_rows) <= 384;
  choice.blocking = narrow ? gemm_blocking::family_10h_second : gemm_blocking::family_10h_first;
  return choice;
}

gemm_choice choose_ssse3(const gemm_facts& f, core_int even) {
  if (f.m >= 8000 && f.k <= 512 && f.n >= 3000 && f.n < f.m) {
    gemm_choice choice = chosen(gemm_scheme::shared_b, even, "SSSE3: tall C, shallow product");
    choice.block_m = rows_for(f.type, 512);
    return choice;
  }
  return grid_of(even, 2, "SSSE3: two rows of cells");
}

gemm_choice choose_sse42(const gemm_facts& f, core_int even) {
  const core_int threads = f.threads;
  bool on_grid;
  if (threads < 8) {
    const bool short_slabs = f.m >= f.n && f.m / threads < 32;
    if (threads % 2 != 0 && !short_slabs) {
      return split_longer(f, threads, "SSE4.2: odd number of threads");
    }
    on_grid = true;
  } else {
    on_grid = f.m < 200 || ((f.k < 200 || f.k > 2 * f.m) && f.m <= 1000) || f.n < 128 || f.k >= 5 * f.n;
  }
  if (on_grid) {
    const core_int grid_rows = f.m > 4 * f.n ? even : f.m * even < f.n ? 1 : 2;
    return grid_of(even, grid_rows, "SSE4.2: grid");
  }
  gemm_choice choice = chosen(gemm_scheme::shared_a, even, "SSE4.2: 8 threads and more, large problem");
  choice.grid_rows = f.m == 256 || f.m == 512 ? 2 : std::min<core_int>(even, 4);
  choice.grid_cols = even / choice.grid_rows;
  choice.block_m = rows_for(f.type, has_small_third_cache(f.processor) ? 384 : 1000);
  choice.block_n = 10000;
  return choice;
}

/// Large enough for the blocked schemes, once rows and columns are in proportion.
bool is_big_from_7000_on(core_int m, core_int n, core_int k) {
  if (m >= 7000 && n >= 3000) return true;
  return m >= 1200 && n >= 1200 && k >= 128;
}
bool is_big(const gemm_facts& f) {
  if (f.m * f.threads < f.n || f.m < 1000) return false;
  if (f.k >= 150 && f.n >= 1000) return true;
  return is_big_from_7000_on(f.m, f.n, f.k);
}
// Kept: exactly 24 threads have a table of their own.
bool is_big_on_24(const gemm_facts& f) {
  if (24 * f.m < f.n || f.m < 500) return false;
  if (f.n >= 500 && f.k >= 150) return !(f.m < 601 && f.n >= 2000) && !(f.m >= 14000 && f.n <= 512);
  return is_big_from_7000_on(f.m, f.n, f.k);
}
bool streams_on_24(const gemm_facts& f) {
  const bool by_5000 = f.m % 5000 == 0 && f.n % 5000 == 0;
  return !(f.k > 256 && (f.m < 10000 || f.k > 512) && !by_5000 && (f.m <= 4700 || f.n < 1000 || f.n > 4000));
}

gemm_choice choose_sse41(const gemm_facts& f, core_int even, int class_number) {
  const bool small_cache = class_number == kClassSmallCache;
  if (small_cache && f.threads == 3) return split_longer(f, 3, "SSE4.1, small cache: three threads");
  const bool on_24 = small_cache && f.threads == 24;
  if (!(on_24 ? is_big_on_24(f) : is_big(f))) {
    if (f.threads * f.n < f.m) return grid_of(even, even, "SSE4.1: tall C");
    if (f.m * f.threads < f.n) return grid_of(even, 1, "SSE4.1: wide C");
    return grid_of(even, 2, "SSE4.1: two rows of cells");
  }
  if (on_24 && !streams_on_24(f)) {
    gemm_choice choice =
        chosen(gemm_scheme::grid_blocked, even, "SSE4.1, small cache: 24 threads in sub-blocks");
    choice.grid_rows = 2;
    choice.grid_cols = even / 2;
    choice.block_m = 200;
    choice.block_n = 800;
    choice.block_k = 128;
    return choice;
  }
  gemm_choice choice = chosen(gemm_scheme::private_pack, even, "SSE4.1: every thread packs for itself");
  choice.block_n = 8;
  const bool tall = f.m > 7000 && (f.k == 256 || f.k >= 512);
  choice.block_m = rows_for(f.type, small_cache ? 448 : tall ? 704 : 1024);
  return choice;
}

}  // namespace

const char* name_of(gemm_scheme scheme) {
  constexpr const char* kNames[] = {"serial",       "row_blocks",   "split_cols", "split_rows", "grid",
                                    "grid_blocked", "private_pack", "shared_b",   "shared_a"};
  return kNames[static_cast<int>(scheme)];
}

int gemm_class(const dense_processor& processor) {
  switch (processor.level) {
    case 0:
      return processor.family_10h ? kClassFamily10h : kClassDefault;
    case 1:
      return kClassDefault;
    case 2:
      if (!processor.sse41) return kClassSsse3;
      return has_small_second_cache(processor) ? kClassSmallCache : kClassBigCache;
    case 4:
      return kClassAvx;
    default:
      return kClassSse42;  // native levels, too, where they borrow level 3's kernels
  }
}

bool never_threaded(core_int m, core_int n, core_int k) {
  return k <= 4 || m / 2 <= 2 || n < 1 || (m <= 16 && n <= 16 && k <= 16);
}

bool threads_pay(element_type type, core_int m, core_int n, core_int k, core_int threads) {
  // Single precision counts as if there were four threads.
  const core_int h = type == element_type::s ? 2 : std::max<core_int>(threads / 2, 1);
  const core_int q = n / h, half = m / 2;
  if (q <= 1) return false;
  if (type == element_type::s) {
    return half >= 5 && (static_cast<double>((q * k * half) >> 9) > 18.0 ||
                         static_cast<double>(((k + half) * q + k * half) >> 8) > 24.0 || k > 256);
  }
  if (type == element_type::d) {
    return static_cast<double>((q * k * half) >> 9) > static_cast<double>(36 / h) ||
           static_cast<double>(((half + k) * q + k * half) >> 7) > static_cast<double>(48 / h) || k > 512 / h;
  }
  return static_cast<double>(8 * k * half * q / 1024) > static_cast<double>(24 / h) ||
         static_cast<double>(((half + q) * k + half * q) >> 6) > static_cast<double>(24 / h) || k > 256 / h;
}

gemm_choice choose_gemm(const gemm_facts& f) {
  if (f.m < 1 || f.n < 1) return serially("nothing to do");
  if (never_threaded(f.m, f.n, f.k)) return serially("too small for threads");
  const int class_number = gemm_class(f.processor);
  if (f.threads < 2) {
    // Kept: an inner product in a caller's region goes in blocks of rows on small caches.
    if (class_number == kClassSmallCache && f.in_parallel && !is_complex_type(f.type)) {
      gemm_choice choice =
          chosen(gemm_scheme::row_blocks, 1, "SSE4.1, small cache: inside a parallel region");
      choice.block_m = 128;
      return choice;
    }
    return serially("one thread in the domain");
  }
  const core_int even = f.threads & ~1;
  gemm_choice choice;
  switch (class_number) {
    case kClassDefault:
    case kClassAvx:
      return split_longer(f, f.threads, "slabs of the longer side");
    case kClassFamily10h:
      return choose_family_10h(f);
    default:
      break;
  }
  if (!threads_pay(f.type, f.m, f.n, f.k, f.threads)) return serially("threads don't pay for these sizes");
  switch (class_number) {
    case kClassSsse3:
      choice = choose_ssse3(f, even);
      break;
    case kClassSse42:
      choice = choose_sse42(f, even);
      break;
    default:
      choice = choose_sse41(f, even, class_number);
      break;
  }
  choice.scale_first = true;
  return choice;
}

gemm_facts gemm_facts_now(element_type type, core_int m, core_int n, core_int k) {
  gemm_facts facts{type, this_processor(), 1, false, m, n, k};
  if (never_threaded(m, n, k)) return facts;
  facts.threads = serv_threads_for_domain(1);
  facts.in_parallel = serv_in_parallel() == 1;
  return facts;
}

}  // namespace qel
