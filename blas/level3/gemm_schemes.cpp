// SPDX-License-Identifier: BSD-3-Clause
// The thread schemes of the matrix product. Each is one or more OpenMP regions of exactly the plan's threads,
// one iteration per thread, in a fixed order, so that the parts are the same even if OpenMP runs them one
// after the other. Threads write disjoint parts of C; where they share packed panels, the end of a region
// stands between packing and use. Without memory for shared panels the calling thread does it all.
#include <algorithm>

#include "blas/level3/gemm_partition.h"
#include "blas/level3/gemm_plan.h"
#include "service/serv.h"

namespace qel {
namespace {

template <class Work>
void run_region(core_int threads, const Work& work) {
  const auto team = static_cast<int>(threads);
#pragma omp parallel for num_threads(team) schedule(static, 1)
  for (core_int t = 0; t < threads; ++t) work(t);
}

/// The same over the cells of a grid; threads that it has no cell for do nothing.
template <class T, class Work>
void run_cells(const gemm_plan<T>& plan, const Work& work) {
  run_region(plan.threads, [&](core_int t) {
    if (t < plan.grid_rows * plan.grid_cols) work(t);
  });
}

template <gemm_blocking kBlocking, class T>
void blocking_for(const core_int* m, const core_int* n, const core_int* k, core_int* mc, core_int* nc,
                  core_int* kc, core_int* mr, core_int* nr, core_int* ku) {
  gemm_blocks blocks{*mc, *nc, *kc, 0, 0, 0};
  choose_gemm_blocks(kBlocking, element_of<T>, this_processor(), *m, *n, *k, blocks);
  *mc = blocks.mc;
  *nc = blocks.nc;
  *kc = blocks.kc;
  *mr = blocks.mr;
  *nr = blocks.nr;
  *ku = blocks.ku;
}
template <class T>
gemm_blocks blocks_of(const gemm_plan<T>& plan, const gemm_call<T>& call, core_int mc = 0, core_int nc = 0) {
  gemm_blocks b{mc, nc, 0, 0, 0, 0};
  plan.blocking(&call.m, &call.n, &call.k, &b.mc, &b.nc, &b.kc, &b.mr, &b.nr, &b.ku);
  return b;
}

// Cells.

template <class T>
void serial_cell(const gemm_call<T>& call, const gemm_blocks&, const gemm_panels<T>&) {
  gemm_serial(call);
}
template <class T>
void panel_cell(const gemm_call<T>& call, const gemm_blocks& blocks, const gemm_panels<T>& panels) {
  if (call.m < 1 || call.n < 1) return;
  const gemm_path path = gemm_path_of(this_processor());
  const gemm_memory<T> memory(path, blocks, panels.a == nullptr, panels.b == nullptr);
  if (!memory) return gemm_small(call);
  gemm_packed(path, call, blocks, memory, panels);
}
template <gemm_blocking kBlocking, class T>
void family_10h_cell(const gemm_call<T>& call, const gemm_blocks&, const gemm_panels<T>& panels) {
  if (call.m < 1 || call.n < 1) return;
  gemm_scale(call.m, call.n, call.beta, call.c, call.ldc);
  if (call.k < 1 || call.alpha == T{}) return;
  gemm_blocks blocks;
  choose_gemm_blocks(kBlocking, element_of<T>, this_processor(), call.m, call.n, call.k, blocks);
  panel_cell(call, blocks, panels);
}

// Slabs and grids: nothing shared.

template <class T>
void run_split(const gemm_plan<T>& plan, const gemm_call<T>& call, bool by_rows) {
  run_region(plan.threads, [&](core_int t) {
    const index_range slab = slab_of(by_rows ? call.m : call.n, plan.threads, t);
    plan.cell(by_rows ? call.rows(slab.start, slab.length) : call.columns(slab.start, slab.length), {}, {});
  });
}

template <class T>
void run_grid(const gemm_plan<T>& plan, const gemm_call<T>& call) {
  const core_int mr = blocks_of(plan, call).mr;
  run_cells(plan, [&](core_int t) {
    const grid_cell cell = cell_of_grid(call.m, call.n, plan.grid_rows, plan.grid_cols, mr, t);
    plan.cell(call.rows(cell.rows.start, cell.rows.length).columns(cell.columns.start, cell.columns.length),
              {}, {});
  });
}

template <class T>
void run_grid_blocked(const gemm_plan<T>& plan, const gemm_call<T>& call) {
  const core_int mr = blocks_of(plan, call).mr;
  run_cells(plan, [&](core_int t) {
    const grid_cell cell = cell_of_grid(call.m, call.n, plan.grid_rows, plan.grid_cols, mr, t);
    const gemm_call<T> own = call.rows(cell.rows.start, cell.rows.length)
                                 .columns(cell.columns.start, cell.columns.length)
                                 .with_beta(from_real<T>(1));
    for (core_int j = 0; j < own.n; j += plan.block_n) {
      const gemm_call<T> columns = own.columns(j, std::min(plan.block_n, own.n - j));
      for (core_int i = 0; i < own.m; i += plan.block_m) {
        const gemm_call<T> block = columns.rows(i, std::min(plan.block_m, own.m - i));
        for (core_int l = 0; l < own.k; l += plan.block_k) {
          plan.cell(block.depth(l, std::min(plan.block_k, own.k - l)), {}, {});
        }
      }
    }
  });
}

template <class T>
void run_row_blocks(const gemm_plan<T>& plan, const gemm_call<T>& call) {
  for (core_int i = 0; i < call.m; i += plan.block_m) {
    plan.cell(call.rows(i, std::min(plan.block_m, call.m - i)), {}, {});
  }
}

// Every thread packs for itself.

constexpr core_int kPanelSlack = 8704;  // bytes beyond a block of packed panels

/// Work memory in elements, freed with its scope.
template <class T>
class panel_memory {
 public:
  panel_memory(core_int elements, core_int slack_bytes)
      : at(static_cast<T*>(serv_malloc(
            static_cast<size_t>(elements * static_cast<core_int>(sizeof(T)) + slack_bytes), 128))) {}
  ~panel_memory() { serv_free(at); }
  panel_memory(const panel_memory&) = delete;
  panel_memory& operator=(const panel_memory&) = delete;
  T* const at;
};

/// A block of rows against all of B, strip by strip.
template <class T>
void walk_strips(const gemm_plan<T>& plan, const gemm_call<T>& part, const gemm_blocks& blocks,
                 core_int padded, const T* a, T* strip, core_int t) {
  const core_int width = plan.block_n, group = width * plan.threads, main = part.n / group * group;
  const auto take = [&](core_int j) {
    const core_int columns = std::min(width, part.n - j), b_stride = padded * blocks.nr;
    plan.pack_b(part.op_b)(columns, part.k, padded, part.b_at(0, j), part.ldb, nullptr, strip, b_stride);
    plan.cell(part.columns(j, columns), blocks, {a, padded * blocks.mr, strip, b_stride});
  };
  // At any moment the threads read different columns of B.
  for (core_int j = 0; j < main; j += group) {
    for (core_int turn = 0; turn < plan.threads; ++turn)
      take(j + width * rotated_strip(plan.threads, t, turn));
  }
  for (core_int j = main; j < part.n; j += width) take(j);
}

template <class T>
void run_private_pack(const gemm_plan<T>& plan, const gemm_call<T>& call) {
  const gemm_blocks blocks = blocks_of(plan, call, plan.block_m);
  run_region(plan.threads, [&](core_int t) {
    const index_range rows = part_of(call.m, plan.threads, t, blocks.mr);
    const gemm_call<T> slab = call.rows(rows.start, rows.length);
    const core_int main_rows = rounded_down(slab.m, blocks.mr);
    const bool last = t == plan.threads - 1;
    const panel_memory<T> a(blocks.mc * blocks.kc * (last ? 2 : 1), kPanelSlack * (last ? 2 : 1));
    const panel_memory<T> strip(blocks.kc * plan.block_n, kPanelSlack);
    if (a.at == nullptr || strip.at == nullptr) return gemm_small(slab);
    for (core_int l = 0; l < slab.k; l += blocks.kc) {
      const gemm_call<T> part = slab.depth(l, std::min(blocks.kc, slab.k - l));
      const core_int padded = rounded_up(part.k, blocks.ku);
      for (core_int i = 0; i < main_rows; i += blocks.mc) {
        const gemm_call<T> block = part.rows(i, std::min(blocks.mc, main_rows - i));
        plan.pack_a(block.op_a)(block.m, block.k, padded, block.a, block.lda, &block.alpha, a.at,
                                padded * blocks.mr);
        walk_strips(plan, block, blocks, padded, a.at, strip.at, t);
      }
      if (main_rows < slab.m) gemm_small(part.rows(main_rows, slab.m - main_rows));
    }
  });
}

// Shared panels.

template <class T>
void run_shared_b(const gemm_plan<T>& plan, const gemm_call<T>& call) {
  const gemm_blocks blocks = blocks_of(plan, call, plan.block_m);
  const gemm_memory<T> memory(gemm_path_of(this_processor()), blocks, false, true);
  if (!memory) return gemm_serial(call);
  for (core_int l = 0; l < call.k; l += blocks.kc) {
    for (core_int j = 0; j < call.n; j += blocks.nc) {
      const gemm_call<T> part =
          call.depth(l, std::min(blocks.kc, call.k - l)).columns(j, std::min(blocks.nc, call.n - j));
      const core_int padded = rounded_up(part.k, blocks.ku), b_stride = padded * blocks.nr;
      run_region(plan.threads, [&](core_int t) {
        const index_range columns = part_of(part.n, plan.threads, t, blocks.nr);
        plan.pack_b(part.op_b)(columns.length, part.k, padded, part.b_at(0, columns.start), part.ldb, nullptr,
                               memory.b + columns.start * padded, b_stride);
      });
      run_region(plan.threads, [&](core_int t) {
        const index_range rows = part_of(part.m, plan.threads, t, blocks.mr);
        for (core_int i = 0; i < rows.length; i += plan.block_m) {
          plan.cell(part.rows(rows.start + i, std::min(plan.block_m, rows.length - i)), blocks,
                    {nullptr, 0, memory.b, b_stride});
        }
      });
    }
  }
}

/// One thread's share in packing its team's block of A: steps of the depth if those are contiguous, else
/// rows.
template <class T>
void pack_share(const gemm_plan<T>& plan, const gemm_call<T>& block, const gemm_blocks& blocks,
                core_int padded, core_int member, T* panels) {
  const core_int stride = padded * blocks.mr;
  if (block.op_a == kNoTranspose) {
    const index_range steps = part_of(block.k, plan.grid_cols, member, 8);
    const bool last = member == plan.grid_cols - 1;
    plan.pack_a(block.op_a)(block.m, steps.length, last ? padded - steps.start : steps.length,
                            block.a_at(0, steps.start), block.lda, &block.alpha,
                            panels + steps.start * blocks.mr, stride);
  } else {
    const index_range rows = part_of(block.m, plan.grid_cols, member, std::max<core_int>(4, blocks.mr));
    plan.pack_a(block.op_a)(rows.length, block.k, padded, block.a_at(rows.start, 0), block.lda, &block.alpha,
                            panels + rows.start * padded, stride);
  }
}

template <class T>
void run_shared_a(const gemm_plan<T>& plan, const gemm_call<T>& call) {
  constexpr core_int kColumnsOfPass = 10000000;
  const gemm_blocks blocks = blocks_of(plan, call, plan.block_m);
  const core_int team_elements = blocks.mc * blocks.kc + kPanelSlack / static_cast<core_int>(sizeof(T));
  const panel_memory<T> memory(team_elements * plan.grid_rows, 0);
  if (memory.at == nullptr) return gemm_serial(call);
  // The last team has the most rows.
  const core_int most_rows = part_of(call.m, plan.grid_rows, plan.grid_rows - 1, blocks.mr).length;
  for (core_int j = 0; j < call.n; j += kColumnsOfPass) {
    const gemm_call<T> pass = call.columns(j, std::min(kColumnsOfPass, call.n - j));
    for (core_int l = 0; l < pass.k; l += blocks.kc) {
      const gemm_call<T> part = pass.depth(l, std::min(blocks.kc, pass.k - l));
      const core_int padded = rounded_up(part.k, blocks.ku);
      for (core_int i = 0; i < most_rows; i += blocks.mc) {
        const auto block_of_team = [&](core_int team) {
          const index_range rows = part_of(part.m, plan.grid_rows, team, blocks.mr);
          const core_int from = std::min(i, rows.length);
          return part.rows(rows.start + from, std::min(blocks.mc, rows.length - from));
        };
        run_cells(plan, [&](core_int t) {
          const core_int team = t % plan.grid_rows;
          gemm_call<T> block = block_of_team(team);
          block.m = rounded_down(block.m, blocks.mr);
          pack_share(plan, block, blocks, padded, t / plan.grid_rows, memory.at + team * team_elements);
        });
        run_cells(plan, [&](core_int t) {
          const core_int team = t % plan.grid_rows;
          const index_range columns = part_of(part.n, plan.grid_cols, t / plan.grid_rows, 4);
          plan.cell(block_of_team(team).columns(columns.start, columns.length), blocks,
                    {memory.at + team * team_elements, padded * blocks.mr, nullptr, 0});
        });
      }
    }
  }
}

template <class T>
void scale_by_threads(core_int threads, const gemm_call<T>& call) {
  if (call.beta == from_real<T>(1)) return;
  run_region(threads, [&](core_int t) {
    const index_range columns = part_of(call.n, threads, t, 1);
    gemm_scale(call.m, columns.length, call.beta, call.c + columns.start * call.ldc, call.ldc);
  });
}

}  // namespace

template <class T>
gemm_plan<T> plan_of(const gemm_choice& choice) {
  gemm_plan<T> plan{};
  plan.threads = choice.threads;
  plan.grid_rows = choice.grid_rows;
  plan.grid_cols = choice.grid_cols;
  plan.block_m = choice.block_m;
  plan.block_n = choice.block_n;
  plan.block_k = choice.block_k;
  const gemm_kernels<T>& kernels = packed_kernels<T>(gemm_path_of(this_processor()));
  plan.pack_a_n = kernels.pack_a[kNoTranspose];
  plan.pack_a_t = kernels.pack_a[kTranspose];
  plan.pack_a_c = kernels.pack_a[kConjugateTranspose];
  plan.pack_b_n = kernels.pack_b[kNoTranspose];
  plan.pack_b_t = kernels.pack_b[kTranspose];
  plan.pack_b_c = kernels.pack_b[kConjugateTranspose];
  switch (choice.blocking) {
    case gemm_blocking::family_10h_first:
      plan.blocking = blocking_for<gemm_blocking::family_10h_first, T>;
      plan.cell = family_10h_cell<gemm_blocking::family_10h_first, T>;
      break;
    case gemm_blocking::family_10h_second:
      plan.blocking = blocking_for<gemm_blocking::family_10h_second, T>;
      plan.cell = family_10h_cell<gemm_blocking::family_10h_second, T>;
      break;
    default:
      plan.blocking = blocking_for<gemm_blocking::of_level, T>;
      plan.cell = choice.scheme >= gemm_scheme::private_pack ? panel_cell<T> : serial_cell<T>;
      break;
  }
  return plan;
}

template <class T>
void run_gemm(const gemm_choice& choice, const gemm_call<T>& given) {
  gemm_call<T> call = given;
  if (choice.scheme == gemm_scheme::serial) return gemm_serial(call);
  if (choice.scale_first) {
    scale_by_threads(choice.threads, call);
    if (call.alpha == T{}) return;
    call.beta = from_real<T>(1);
  }
  const gemm_plan<T> plan = plan_of<T>(choice);
  switch (choice.scheme) {
    case gemm_scheme::split_cols:
      return run_split(plan, call, false);
    case gemm_scheme::split_rows:
      return run_split(plan, call, true);
    case gemm_scheme::grid:
      return run_grid(plan, call);
    case gemm_scheme::grid_blocked:
      return run_grid_blocked(plan, call);
    case gemm_scheme::private_pack:
      return run_private_pack(plan, call);
    case gemm_scheme::shared_b:
      return run_shared_b(plan, call);
    case gemm_scheme::shared_a:
      return run_shared_a(plan, call);
    default:
      return run_row_blocks(plan, call);
  }
}

template <class T>
void gemm_driver(const gemm_call<T>& call) {
  if (call.m < 1 || call.n < 1) return;
  if (never_threaded(call.m, call.n, call.k)) return gemm_serial(call);
  run_gemm(choose_gemm(gemm_facts_now(element_of<T>, call.m, call.n, call.k)), call);
}

#define QEL_INSTANTIATE(T)                                         \
  template gemm_plan<T> plan_of(const gemm_choice&);               \
  template void run_gemm(const gemm_choice&, const gemm_call<T>&); \
  template void gemm_driver(const gemm_call<T>&);
QEL_INSTANTIATE(float)
QEL_INSTANTIATE(double)
QEL_INSTANTIATE(complex8)
QEL_INSTANTIATE(complex16)
#undef QEL_INSTANTIATE

}  // namespace qel
