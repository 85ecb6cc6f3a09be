// SPDX-License-Identifier: BSD-3-Clause
// Factorisations of dense and band matrices.
#include "cli/explain/dense_question.h"
#include "lapack/factor/gbtrf.h"
#include "lapack/factor/plans.h"
#include "lapack/orthogonal/plans.h"
#include "service/thread_policy.h"

namespace qel::cli {
namespace {

struct factor_question : dense_question {
  core_int m = 0, n = 0, k = 0, below = 0, above = 0;
  std::string uplo = "L", side = "L";
};

void declare_rectangle(CLI::App& command, factor_question& q) {
  add_size(command, "M", q.m, "Rows");
  add_size(command, "N", q.n, "Columns");
  declare_dense(command, q);
}
void declare_potrf(CLI::App& command, factor_question& q) {
  add_size(command, "N", q.n, "Order");
  command.add_option("--uplo", q.uplo, "Triangle")->check(CLI::IsMember({"L", "U"}))->capture_default_str();
  declare_dense(command, q);
}
void declare_gbtrf(CLI::App& command, factor_question& q) {
  add_size(command, "M", q.m, "Rows");
  add_size(command, "N", q.n, "Columns");
  add_size(command, "KL", q.below, "Diagonals below the main one");
  add_size(command, "KU", q.above, "Diagonals above the main one");
  declare_dense(command, q);
}
void declare_ormqr(CLI::App& command, factor_question& q) {
  add_size(command, "M", q.m, "Rows of C");
  add_size(command, "N", q.n, "Columns of C");
  add_size(command, "K", q.k, "Reflectors of Q");
  command.add_option("--side", q.side, "Side of Q")->check(CLI::IsMember({"L", "R"}))->capture_default_str();
  declare_dense(command, q);
}

report start_of(int level, int threads) { return {{"level", level}, {"threads_allowed", threads}}; }

report explain_getrf(const factor_question& q, const asked_machine& machine) {
  const lapack::lu_facts facts{q.capital(), q.m, q.n, machine.threads_or_own(kDomainAll),
                               q.tuning_processor(machine)};
  const lapack::lu_plan plan = lapack::plan_lu(facts);
  constexpr const char* kNames[] = {"nothing", "recursive", "threads of the BLAS", "unblocked", "tasks"};
  report out = start_of(facts.processor.level, facts.threads);
  out["path"] = kNames[static_cast<int>(plan.path)];
  out["reason"] = plan.reason;
  out["threads"] = plan.threads;
  out["columns_without_halving"] = lapack::plan_lu_panel(facts.type, facts.m, facts.processor.level);
  if (plan.path == lapack::lu_path::tasks) {
    out["block"] = plan.block;
    out["columns_of_one_grant"] = plan.group;
    out["columns_kept_out_of_first_grants"] = plan.lookahead;
  }
  return out;
}

report explain_potrf(const factor_question& q, const asked_machine& machine) {
  const lapack::cholesky_facts facts{q.capital(), q.uplo == "U", q.n, machine.threads_or_own(kDomainAll),
                                     q.tuning_processor(machine)};
  const lapack::cholesky_plan plan = lapack::plan_cholesky(facts);
  constexpr const char* kNames[] = {"nothing", "unblocked", "serial", "tasks"};
  report out = start_of(facts.processor.level, facts.threads);
  out["path"] = kNames[static_cast<int>(plan.path)];
  out["reason"] = plan.reason;
  out["threads"] = plan.threads;
  if (plan.path == lapack::cholesky_path::tasks) {
    out["tile"] = plan.block;
    out["panels_of_one_task"] = plan.grain;
  }
  return out;
}

report explain_geqrf(const factor_question& q, const asked_machine& machine) {
  const lapack::qr_facts facts{q.capital(), q.m, q.n, q.tuning_processor(machine)};
  const lapack::qr_plan plan = lapack::plan_qr(facts);
  // Its threads are those of the products of an update.
  return {{"level", facts.processor.level},
          {"block", plan.block},
          {"columns_without_halving", lapack::plan_qr_panel(facts.type, facts.m, facts.processor.level)},
          {"reason", plan.reason},
          {"threads", "those of the matrix products between the panels"}};
}

report explain_ormqr(const factor_question& q, const asked_machine& machine) {
  const lapack::q_product_facts facts{q.capital(),
                                      q.side == "L",
                                      q.m,
                                      q.n,
                                      q.k,
                                      machine.threads_or_own(kDomainAll),
                                      q.tuning_processor(machine)};
  const lapack::q_product_plan plan = lapack::plan_q_product(facts);
  report out = start_of(facts.processor.level, facts.threads);
  out["block"] = plan.block;
  out["threads"] = plan.slices;
  out["reason"] = plan.reason;
  return out;
}

report explain_gbtrf(const factor_question& q, const asked_machine& machine) {
  const lapack::band_lu_facts facts{q.capital(),
                                    q.m,
                                    q.n,
                                    q.below,
                                    q.above,
                                    machine.threads_or_own(kDomainAll),
                                    q.tuning_processor(machine)};
  const lapack::band_lu_plan plan = lapack::plan_band_lu(facts);
  report out = start_of(facts.processor.level, facts.threads);
  out["path"] = plan.block > 0 ? "blocks" : "column by column";
  if (plan.block > 0) out["block"] = plan.block;
  out["threads"] = plan.slices;
  out["reason"] = plan.reason;
  return out;
}

}  // namespace

void add_factorisations(explain_menu& menu) {
  const auto add = [&](const char* name, const char* about, void (*declare)(CLI::App&, factor_question&),
                       report (*answer)(const factor_question&, const asked_machine&)) {
    menu.add<factor_question>("LAPACK", name, about, declare, answer);
  };
  add("getrf", "LU factorisation", declare_rectangle, explain_getrf);
  add("potrf", "Cholesky factorisation", declare_potrf, explain_potrf);
  add("gbtrf", "LU factorisation of a band matrix", declare_gbtrf, explain_gbtrf);
  add("geqrf", "QR factorisation", declare_rectangle, explain_geqrf);
  add("ormqr", "product with the Q of a QR factorisation", declare_ormqr, explain_ormqr);
}

}  // namespace qel::cli
