// SPDX-License-Identifier: BSD-3-Clause
// Levels 1 and 2: on how many threads, and how the vectors are cut.
#include <fmt/core.h>

#include <stdexcept>

#include "blas/level1/thread_rules.h"
#include "blas/level2/thread_plans.h"
#include "cli/explain/dense_question.h"
#include "service/serv.h"
#include "service/thread_policy.h"

namespace qel::cli {
namespace {

struct level1_question {
  std::string routine;  ///< "ddot", "idamax" ...
  core_int n = 0, incx = 1, incy = 1;
  bool fixed_threads = false;  ///< as with QEL_DYNAMIC=FALSE
};
void declare_level1(CLI::App& command, level1_question& q) {
  command.add_option("ROUTINE", q.routine, "Name, e.g. ddot")->required();
  add_size(command, "N", q.n, "Elements");
  command.add_option("--incx", q.incx, "Stride of x")->capture_default_str();
  command.add_option("--incy", q.incy, "Stride of y")->capture_default_str();
  command.add_flag("--fixed-threads", q.fixed_threads, "As with QEL_DYNAMIC=FALSE");
}

level1_member member_of(const std::string& name) {
  for (int i = 0; i < kLevel1Members; ++i) {
    if (name == name_of(static_cast<level1_member>(i))) return static_cast<level1_member>(i);
  }
  throw std::invalid_argument(name + " is not a level-1 routine with threads");
}

report explain_level1(const level1_question& q, const asked_machine& machine) {
  level1_facts facts{};
  facts.member = member_of(q.routine);
  facts.n = q.n;
  facts.incx = q.incx;
  facts.incy = q.incy;
  facts.level = machine.level_or_own();
  facts.threads = machine.threads_or_own(kDomainBlas);
  facts.dynamic = !q.fixed_threads && serv_threads_dynamic() == 1;
  serv_cache_sizes(facts.caches);
  const level1_choice choice = choose_level1_threads(facts);
  return {{"level", facts.level},
          {"threads_allowed", facts.threads},
          {"dynamic_adjustment", facts.dynamic},
          {"threads", choice.threads},
          {"reason", choice.reason}};
}

struct level2_question : dense_question {
  core_int m = 0, n = 0, incx = 1, kl = 0, ku = 0, diagonals = -1;
  std::string uplo = "U";
  bool transposed = false;

  int element_bytes() const { return static_cast<int>(bytes_of(element())); }
};
void declare_gemv(CLI::App& command, level2_question& q) {
  add_size(command, "M", q.m, "Rows");
  add_size(command, "N", q.n, "Columns");
  add_type(command, q.type, {"s", "d", "c", "z"});
  command.add_flag("--transposed", q.transposed, "A^T x");
}
void declare_gbmv(CLI::App& command, level2_question& q) {
  declare_gemv(command, q);
  add_size(command, "KL", q.kl, "Diagonals below the main one");
  add_size(command, "KU", q.ku, "Diagonals above it");
}
void declare_ger(CLI::App& command, level2_question& q) {
  add_size(command, "M", q.m, "Rows");
  add_size(command, "N", q.n, "Columns");
  add_type(command, q.type, {"s", "d", "c", "z"});
}
void declare_trmv(CLI::App& command, level2_question& q) {
  add_size(command, "N", q.n, "Order");
  add_type(command, q.type, {"s", "d", "c", "z"});
  command.add_option("--uplo", q.uplo, "Triangle")->check(CLI::IsMember({"L", "U"}))->capture_default_str();
  command.add_option("--incx", q.incx, "Stride of x")->capture_default_str();
  command.add_flag("--transposed", q.transposed, "A^T x");
}

void declare_triangle(CLI::App& command, level2_question& q) {
  add_size(command, "N", q.n, "Order");
  add_type(command, q.type, {"s", "d", "c", "z"});
  command.add_option("--uplo", q.uplo, "Triangle")->check(CLI::IsMember({"L", "U"}))->capture_default_str();
}
void declare_band(CLI::App& command, level2_question& q) {
  declare_triangle(command, q);
  command.add_option("--diagonals", q.diagonals, "Diagonals beside the main one, if the matrix is banded");
}
void declare_product(CLI::App& command, level2_question& q) {
  declare_band(command, q);
  command.add_flag("--transposed", q.transposed, "A^T x");
}

level2_facts facts_of(const asked_machine& machine) {
  return {machine.level_or_own(), machine.threads_or_own(kDomainBlas)};
}
report start_of(const level2_facts& facts) {
  return {{"level", facts.level}, {"threads_allowed", facts.threads}};
}

report describe(report out, const gemv_plan& plan, const char* cut) {
  out["threads"] = plan.threads;
  out["reason"] = plan.reason;
  if (plan.threads > 1) out[cut] = plan.chunk;
  return out;
}

report explain_gemv(const level2_question& q, const asked_machine& machine) {
  const level2_facts facts = facts_of(machine);
  return describe(start_of(facts), choose_gemv_threads(q.transposed, q.m, q.n, q.element_bytes(), facts),
                  q.transposed ? "columns_per_thread" : "rows_per_thread");
}
report explain_ger(const level2_question& q, const asked_machine& machine) {
  const level2_facts facts = facts_of(machine);
  return describe(start_of(facts), choose_ger_threads(q.m, q.n, q.element_bytes(), facts),
                  "columns_per_thread");
}

report explain_gbmv(const level2_question& q, const asked_machine& machine) {
  const level2_facts facts = facts_of(machine);
  return describe(start_of(facts),
                  choose_gbmv_threads(q.transposed, q.m, q.n, q.kl, q.ku, q.element_bytes(), facts),
                  q.transposed ? "columns_per_thread" : "rows_per_thread");
}

report explain_triangle(triangle_work work, bool grows, const level2_question& q,
                        const asked_machine& machine) {
  const level2_facts facts = facts_of(machine);
  const core_int k = q.diagonals < 0 ? q.n : q.diagonals;
  const triangle_plan plan = choose_triangle_threads(work, grows, q.n, k, q.element_bytes(), facts);
  report out = start_of(facts);
  out["threads"] = plan.threads;
  out["reason"] = plan.reason;
  if (plan.threads < 2) return out;
  out["first_elements"] = report::array();
  for (int t = 0; t < plan.threads; ++t) out["first_elements"].push_back(triangle_part(plan, q.n, t).first);
  return out;
}
report explain_symv(const level2_question& q, const asked_machine& machine) {
  return explain_triangle(triangle_work::kMirroredProduct, q.uplo == "U", q, machine);
}
report explain_syr(const level2_question& q, const asked_machine& machine) {
  return explain_triangle(triangle_work::kUpdate, q.uplo == "U", q, machine);
}
report explain_tpmv(const level2_question& q, const asked_machine& machine) {
  return explain_triangle(triangle_work::kProduct, (q.uplo == "U") == q.transposed, q, machine);
}
report explain_trsv(const level2_question& q, const asked_machine& machine) {
  const level2_facts facts = facts_of(machine);
  const solution_plan plan = choose_solution_threads(q.n, q.element_bytes(), facts);
  report out = start_of(facts);
  out["threads"] = plan.threads;
  out["reason"] = plan.reason;
  if (plan.threads > 1) out["block"] = plan.block;
  return out;
}

report explain_trmv(const level2_question& q, const asked_machine& machine) {
  const level2_facts facts = facts_of(machine);
  const trmv_plan plan =
      choose_trmv_threads(q.uplo == "U", q.transposed, q.n, q.incx, q.element_bytes(), facts);
  report out = start_of(facts);
  out["threads"] = plan.threads;
  out["reason"] = plan.reason;
  if (plan.threads < 2) return out;
  out["threads_that_copy_x"] = plan.copy_threads;
  out["first_elements"] = report::array();
  for (int t = 0; t < plan.threads; ++t) out["first_elements"].push_back(trmv_part(plan, q.n, t).first);
  return out;
}

}  // namespace

void add_blas_vectors(explain_menu& menu) {
  constexpr const char* kFamily = "BLAS";
  menu.add<level1_question>(kFamily, "level1", "threads of a vector operation", declare_level1,
                            explain_level1);
  menu.add<level2_question>(kFamily, "gemv", "product of a matrix and a vector", declare_gemv, explain_gemv);
  menu.add<level2_question>(kFamily, "ger", "rank-1 update of a matrix", declare_ger, explain_ger);
  menu.add<level2_question>(kFamily, "trmv", "product of a triangle and a vector", declare_trmv,
                            explain_trmv);
  menu.add<level2_question>(kFamily, "gbmv", "product of a band and a vector", declare_gbmv, explain_gbmv);
  menu.add<level2_question>(kFamily, "tpmv", "product of a packed or banded triangle and a vector",
                            declare_product, explain_tpmv);
  menu.add<level2_question>(kFamily, "symv",
                            "product of a symmetric matrix, full, packed or banded, and a vector",
                            declare_band, explain_symv);
  menu.add<level2_question>(kFamily, "syr", "updates of a symmetric matrix of rank 1 and 2", declare_triangle,
                            explain_syr);
  menu.add<level2_question>(kFamily, "trsv", "solution of a triangular system", declare_triangle,
                            explain_trsv);
}

}  // namespace qel::cli
