// SPDX-License-Identifier: BSD-3-Clause
#include <stdexcept>

#include "cli/explain/dense_question.h"
#include "lapack/factor/plans.h"
#include "nls/trust_region.h"
#include "service/thread_policy.h"

namespace qel::cli {
namespace {

struct fit_question {
  int n = 0, m = 0;
  bool bounded = false;
};

void declare(CLI::App& command, fit_question& q) {
  command.add_option("N", q.n, "Unknowns")->required()->check(CLI::PositiveNumber);
  command.add_option("M", q.m, "Residuals, not fewer than unknowns")->required()->check(CLI::PositiveNumber);
  command.add_flag("--bounded", q.bounded, "Unknowns have bounds");
}

report answer(const fit_question& q, const asked_machine& machine) {
  const double eps[6] = {1, 1, 1, 1, 1, 1};
  if (!nls::valid_options(q.n, q.m, eps, 1, 1, 0)) {
    throw std::invalid_argument("there are fewer residuals than unknowns");
  }
  const int threads = machine.threads_or_own(kDomainAll);
  const dense_question real;
  const lapack::cholesky_plan factor =
      lapack::plan_cholesky({'D', false, q.n, threads, real.tuning_processor(machine)});
  const bool triangle = nls::forms_one_triangle(machine.level_or_own());
  return {
      {"level", machine.level_or_own()},
      {"threads_allowed", threads},
      {"step", q.bounded ? "secular iteration in the scaled space, cut at the bounds" : "secular iteration"},
      {"normal_matrix", triangle ? "one triangle, by syrk" : "whole, by gemm"},
      {"threads_of_its_factor", factor.threads},
      {"reason_of_factor_threads", factor.reason},
      {"threads_of_column_norms", nls::threads_for_norms(q.m, q.n, threads)},
      {"residuals_of_a_numerical_jacobian", 2 * core_int{q.n}}};
}

}  // namespace

void add_least_squares(explain_menu& menu) {
  menu.add<fit_question>("Least squares", "trnlsp", "an iteration of a nonlinear least-squares solve",
                         declare, answer);
}

}  // namespace qel::cli
