// SPDX-License-Identifier: BSD-3-Clause
// Matrix products and their kin: threads, blocks and kernels.
#include <fmt/core.h>

#include <algorithm>

#include "blas/level3/gemm_blocks.h"
#include "blas/level3/gemm_rules.h"
#include "blas/level3/side_rules.h"
#include "cli/explain/dense_question.h"
#include "cli/explain/native_level3.h"
#include "service/native_level.h"
#include "service/serv.h"
#include "service/thread_policy.h"

namespace qel::cli {
namespace {

struct level3_question : dense_question {
  std::string operation;  ///< gemm, trsm, trmm, symm or syrk
  core_int m = 0, n = 0, k = 0;
  std::string side = "L";
  bool in_parallel = false;

  bool left() const { return side == "L"; }
};

void declare_common(CLI::App& command, level3_question& q) {
  declare_dense(command, q);
  command.add_flag("--in-parallel", q.in_parallel, "Called from inside a parallel region");
}
void declare_gemm(CLI::App& command, level3_question& q) {
  q.operation = "gemm";
  add_size(command, "M", q.m, "Rows of C");
  add_size(command, "N", q.n, "Columns of C");
  add_size(command, "K", q.k, "Columns of A, rows of B");
  declare_common(command, q);
}
void declare_syrk(CLI::App& command, level3_question& q) {
  q.operation = "syrk";
  add_size(command, "N", q.n, "Order of C");
  add_size(command, "K", q.k, "Columns of A");
  declare_common(command, q);
}
template <const char* kOperation>
void declare_side(CLI::App& command, level3_question& q) {
  q.operation = kOperation;
  add_size(command, "M", q.m, "Rows of B");
  add_size(command, "N", q.n, "Columns of B");
  command.add_option("--side", q.side, "Side of the special matrix")
      ->check(CLI::IsMember({"L", "R"}))
      ->capture_default_str();
  declare_common(command, q);
}
constexpr char kTrsm[] = "trsm", kTrmm[] = "trmm", kSymm[] = "symm";

int threads_of(const level3_question& q, const asked_machine& machine) {
  return q.in_parallel ? 1 : machine.threads_or_own(kDomainBlas);
}

const char* path_name(gemm_path path) {
  constexpr const char* kNames[] = {
      "SSE2, strips of B", "SSE3", "SSSE3", "SSSE3 with SSE4.1", "SSE4.2", "AVX", "AMD family 10h"};
  return kNames[static_cast<int>(path)];
}

void add_serial_part(report& out, element_type type, const dense_processor& processor,
                     const gemm_choice& choice, core_int m, core_int n, core_int k) {
  const gemm_path path = gemm_path_of(processor);
  out["kernels"] = path_name(path);
  gemm_blocks blocks;
  if (path == gemm_path::strips) {
    const gemm_strip_blocks strips = choose_strip_blocks(type, gemm_widths(path, type).mr, m, n, k);
    blocks = gemm_widths(path, type);
    blocks.mc = strips.mc;
    blocks.nc = strips.nc;
    blocks.kc = strips.kc;
  } else if (path == gemm_path::sse3) {
    blocks = choose_sse3_blocks(m, n, k);
    const gemm_blocks widths = gemm_widths(path, type);
    blocks.mr = widths.mr;
    blocks.nr = widths.nr;
    blocks.ku = widths.ku;
    out["b_without_transpose"] = reads_b_unpacked(false, m, n, k) ? "read as it lies" : "packed";
  } else {
    blocks.mc = choice.scheme == gemm_scheme::private_pack || choice.scheme == gemm_scheme::shared_a ||
                        choice.scheme == gemm_scheme::shared_b
                    ? choice.block_m
                    : 0;
    choose_gemm_blocks(choice.blocking, type, processor, m, n, k, blocks);
    out["b"] = packs_b_as_it_goes(path, type, n, k) ? "packed strip by strip" : "packed in blocks";
  }
  out["small_kernel"] = goes_to_small_kernel(path, m, n, k);
  out["tile"] = fmt::format("{} x {}", blocks.mr, blocks.nr);
  out["blocks"] = {{"mc", blocks.mc}, {"nc", blocks.nc}, {"kc", blocks.kc}};
}

report explain_gemm(const level3_question& q, const asked_machine& machine) {
  const gemm_facts facts{
      q.element(), q.processor(machine), machine.threads_or_own(kDomainBlas), q.in_parallel, q.m, q.n, q.k};
  const gemm_choice choice = choose_gemm(facts);
  report out;
  out["level"] = facts.processor.level;
  out["class"] = gemm_class(facts.processor);
  out["threads_allowed"] = facts.threads;
  out["scheme"] = name_of(choice.scheme);
  out["reason"] = choice.reason;
  out["threads"] = choice.threads;
  if (choice.grid_rows != 0) out["grid"] = fmt::format("{} x {}", choice.grid_rows, choice.grid_cols);
  for (const auto& [key, value] :
       {std::pair{"block_m", choice.block_m}, {"block_n", choice.block_n}, {"block_k", choice.block_k}}) {
    if (value != 0) out[key] = value;
  }
  out["beta_in_a_region_of_its_own"] = choice.scale_first;
  add_serial_part(out, facts.type, facts.processor, choice, q.m, q.n, q.k);
  return out;
}

report explain_side(const level3_question& q, const asked_machine& machine) {
  const side_facts facts{q.left(), machine.level_or_own(), q.m, q.n, threads_of(q, machine)};
  const side_choice choice = q.operation == kTrsm ? choose_trsm(facts) : choose_trmm(facts);
  report out;
  out["level"] = facts.level;
  out["threads_allowed"] = facts.threads;
  out["threads"] = choice.threads;
  out["reason"] = choice.reason;
  if (choice.threads > 1) out[facts.left ? "columns_per_thread" : "rows_per_thread"] = choice.chunk;
  if (q.operation != kSymm) {
    const triangle_plan plan = choose_triangle_plan(facts.level, facts.left, facts.n);
    out["diagonal_blocks"] = {plan.outer, plan.inner};
    out[facts.left ? "columns_at_a_time" : "rows_at_a_time"] = plan.right_hand;
  }
  return out;
}

report explain_syrk(const level3_question& q, const asked_machine& machine) {
  const syrk_facts facts{machine.level_or_own(), q.n, q.k, machine.threads_or_own(kDomainBlas),
                         q.in_parallel};
  const syrk_choice choice = choose_syrk(facts);
  constexpr const char* kNames[] = {"nothing", "order 4", "serial", "slices", "triangle_blocks"};
  report out;
  out["level"] = facts.level;
  out["threads_allowed"] = facts.threads;
  out["scheme"] = kNames[static_cast<int>(choice.scheme)];
  out["reason"] = choice.reason;
  out["threads"] = choice.threads;
  if (choice.threads > 1) {
    out["columns_per_piece"] = choice.chunk;
    out["pieces"] = choice.items;
  }
  return out;
}

/// The sizes of a native operation as those of its product.
native_question native_question_of(const level3_question& q, const asked_machine& machine) {
  native_question question{};
  question.operation = q.operation;
  question.type = q.type[0];
  question.level = machine.level_or_own();
  question.left = q.left();
  question.m = q.operation == "syrk" ? q.n : q.m;
  question.n = q.n;
  question.k = q.operation == "gemm" || q.operation == "syrk" ? q.k : q.left() ? q.m : q.n;
  question.threads = threads_of(q, machine);
  serv_native_cache_sizes(question.caches);
  if (!q.caches.empty()) {
    const dense_processor replaced = q.processor(machine);
    std::copy(std::begin(replaced.caches), std::end(replaced.caches), question.caches);
  }
  return question;
}

report explain_level3(const level3_question& q, const asked_machine& machine) {
  if (machine.level_or_own() >= kFirstNativeLevel) return explain_native(native_question_of(q, machine));
  if (q.operation == "gemm") return explain_gemm(q, machine);
  return q.operation == "syrk" ? explain_syrk(q, machine) : explain_side(q, machine);
}

}  // namespace

void add_blas_products(explain_menu& menu) {
  const auto add = [&](const char* name, const char* about, void (*declare)(CLI::App&, level3_question&)) {
    menu.add<level3_question>("BLAS", name, about, declare, explain_level3);
  };
  add("gemm", "product of matrices", declare_gemm);
  add(kTrsm, "solve with a triangle", declare_side<kTrsm>);
  add(kTrmm, "product with a triangle", declare_side<kTrmm>);
  add(kSymm, "product with a symmetric matrix", declare_side<kSymm>);
  add("syrk", "rank-k update of a symmetric matrix", declare_syrk);
}

}  // namespace qel::cli
