// SPDX-License-Identifier: BSD-3-Clause
// Products and sums of CSR matrices.
#include "cli/explain/menu.h"
#include "service/largest_cache.h"
#include "service/native_level.h"
#include "service/serv.h"
#include "service/thread_policy.h"
#include "sparse/blas/csr_rows.h"
#include "sparse/blas/csr_vector_plan.h"

namespace qel::cli {
namespace {

struct vector_question {
  core_int rows = 0, columns = 0, entries = 0;
  std::string type = "d", kind = "G";
  bool transposed = false;
  double far_share = 0, spread = 0;
  core_int largest_cache = 0;
};
void declare_vector(CLI::App& command, vector_question& q) {
  add_size(command, "ROWS", q.rows, "Rows");
  add_size(command, "COLUMNS", q.columns, "Columns");
  add_size(command, "ENTRIES", q.entries, "Entries stored");
  add_type(command, q.type, {"d", "z"});
  command.add_option("--class", q.kind, "First letter of matdescra")
      ->check(CLI::IsMember({"G", "S", "H", "T", "A", "D"}))
      ->capture_default_str();
  command.add_flag("--transposed", q.transposed, "A^T x");
  command.add_option("--far-share", q.far_share, "Entries far off the diagonal, 0 to 1")
      ->capture_default_str();
  command
      .add_option("--spread", q.spread, "Entries' mean distance from the diagonal, as a share of the rows")
      ->capture_default_str();
  command.add_option("--largest-cache", q.largest_cache, "Bytes, instead of this processor's");
}

report explain_vector(const vector_question& q, const asked_machine& machine) {
  const int level = machine.level_or_own();
  const core_int element = q.type == "z" ? 16 : 8;
  const sparse::csr_vector_facts facts = {q.kind[0],
                                          q.transposed,
                                          q.rows,
                                          q.columns,
                                          q.entries,
                                          machine.threads_or_own(kDomainAll),
                                          level >= kFirstNativeLevel,
                                          q.entries * (element + core_int{sizeof(int)}),
                                          q.largest_cache > 0 ? q.largest_cache : largest_native_cache(),
                                          q.far_share,
                                          q.spread};
  const sparse::csr_vector_plan plan = sparse::plan_csr_vector(facts);
  constexpr const char* kNames[] = {"serial", "rows for each thread", "a result for each thread",
                                    "own rows at once, far ones in blocks"};
  report out = {{"level", level},
                {"threads_allowed", facts.threads},
                {"kernels", level >= kFirstNativeLevel ? "AVX2"
                            : level == 4               ? "AVX"
                                                       : "generic"},
                {"scheme", kNames[static_cast<int>(plan.scheme)]},
                {"reason", plan.reason},
                {"threads", plan.threads}};
  if (plan.threads > 1) {
    out["rows_shared_by"] = plan.even_entries ? "entries" : "count";
    if (plan.row_weight > 0) out["row_weight"] = plan.row_weight;
    if (plan.scheme == sparse::csr_scheme::kRowBlocks) out["blocks_of_each_thread"] = plan.blocks_each;
    if (!plan.even_entries) out["rows_per_thread"] = sparse::rows_of(q.rows, plan.threads, 0).last;
    if (plan.scheme != sparse::csr_scheme::kRowBlocks) out["results_added_by_all_threads"] = plan.shared_sum;
  }
  out["asks_ahead_for_the_matrix"] = plan.streams;
  if (plan.streams) out["asks_in_two_steps"] = plan.in_steps;
  return out;
}

struct rows_question {
  core_int rows = 0;
  int request = 0;
  bool transposed = false;
};
void declare_sum(CLI::App& command, rows_question& q) {
  add_size(command, "ROWS", q.rows, "Rows of the result");
  command.add_option("--request", q.request, "0 build at once, 1 count, 2 build what was counted")
      ->check(CLI::Range(0, 2))
      ->capture_default_str();
}
void declare_product(CLI::App& command, rows_question& q) {
  declare_sum(command, q);
  command.add_flag("--transposed", q.transposed, "A^T B");
}
report explain_rows(const rows_question& q, const asked_machine& machine) {
  const int allowed = machine.threads_or_own(kDomainAll),
            threads = sparse::threads_of_rows(allowed, q.request, q.transposed, q.rows);
  return {{"threads_allowed", allowed},
          {"threads", threads},
          {"reason", q.request == 0 ? "rows are built one behind the other"
                     : q.transposed ? "no threads for transposed products"
                     : threads > 1  ? "rows don't meet"
                                    : "one thread or one row"}};
}

}  // namespace

void add_sparse_products(explain_menu& menu) {
  constexpr const char* kFamily = "Sparse BLAS";
  menu.add<vector_question>(kFamily, "csrmv", "product of a CSR matrix and a vector", declare_vector,
                            explain_vector);
  menu.add<rows_question>(kFamily, "csradd", "sum of CSR matrices", declare_sum, explain_rows);
  menu.add<rows_question>(kFamily, "csrmultcsr", "product of CSR matrices", declare_product, explain_rows);
}

}  // namespace qel::cli
