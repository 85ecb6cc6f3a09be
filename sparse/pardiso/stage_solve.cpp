// SPDX-License-Identifier: BSD-3-Clause
#include <algorithm>
#include <chrono>
#include <cstdlib>

#include "sparse/pardiso/out_of_core.h"
#include "sparse/pardiso/solve/hybrid.h"
#include "sparse/pardiso/solve/refine.h"
#include "sparse/pardiso/solve/residual.h"
#include "sparse/pardiso/stages.h"

namespace qel::pardiso {
namespace {

using clock = std::chrono::steady_clock;

double seconds_since(clock::time_point start) {
  return std::chrono::duration<double>(clock::now() - start).count();
}

/// Substitutions of one call, with their work array.
template <class T>
struct substitution {
  csr_view<T> a;
  const analysis& analysed;
  const factors<T>& made;
  solve_options options;
  int nrhs;
  T* work;
  void operator()(const T* b, T* x) const { substitute(analysed, made, options, nrhs, b, x, work); }
};

template <class T>
substitution<T> substitution_of(const solver_call& call, const handle& h, T* work) {
  const basic_record& record = *h.record();
  solve_options options;
  options.part = static_cast<solve_part>(record.part);
  options.transposed = record.transposed;
  options.threads = record.threads;
  return {matrix_of<T>(call), *h.analysed(), *h.factors_of<T>(call.mnum), options, call.nrhs, work};
}

/// Improves x for the right-hand sides b; r: n * nrhs elements.
template <class T>
stage_status refine(const solver_call& call, basic_record& record, const substitution<T>& solve_with,
                    const residual_sums<T>& sums, const T* b, T* x, T* r) {
  const parameters iparm = call.iparm();
  const int64_t count = int64_t{call.n} * call.nrhs;
  const int limit = iparm(p_steps);
  refinement_norms norms = {sum_of_moduli(b, count), 0, 0, 0};
  refinement_verdict verdict;
  verdict.previous = norms.rhs;
  int it = 0;
  while (!verdict.stop) {
    ++it;
    sums.compute(solve_with.a, call.nrhs, b, x, r);
    norms.residual = sum_of_moduli(r, count);
    solve_with(r, r);
    norms.correction = sum_of_moduli(r, count);
    for (int64_t i = 0; i < count; ++i) x[i] += r[i];
    norms.solution = sum_of_moduli(x, count);
    if (call.msglvl != 0) trace_refinement(it, norms);
    verdict = judge_refinement(it, limit, verdict.previous, norms);
    if (verdict.warn && call.msglvl != 0) warn_of_refinement(it, norms);
  }
  iparm(p_steps_done) = it;
  if (verdict.iteration_code != 0) iparm(p_iteration) = verdict.iteration_code;
  if (verdict.keep_final) record.final_residual = norms.residual, record.final_rhs = norms.rhs;
  if (verdict.sub_code != 0) return {-4, verdict.sub_code};
  return {};
}

}  // namespace

template <class T>
stage_status solve(const solver_call& call, const handle& h) {
  basic_record& record = *h.record();
  const parameters iparm = call.iparm();
  const int64_t count = int64_t{call.n} * call.nrhs;
  const bool in_b = iparm(p_solution_in_b) == 1;
  T* const b = static_cast<T*>(call.b);
  const bool refines =
      record.part == 0 && wants_refinement(iparm(p_steps), h.factors_of<T>(call.mnum)->perturbed);
  iparm(p_steps_done) = 0;

  // work, and for a refinement the residual and, unless x is the caller's, the solution
  block<T> work;
  const int64_t blocks = !refines ? 1 : in_b ? 3 : 2;
  if (!work.allocate(record.account, blocks * count, block_work_r0)) return out_of_memory(record.account);
  substitution<T> solve_with = substitution_of<T>(call, h, work.get());
  solve_progress told;
  if (record.out_of_core != 0 && call.msglvl != 0) told.start(call.n, solve_with.options);
  T* const r = work.get() + count;
  T* const x = !in_b ? static_cast<T*>(call.x) : refines ? r + count : b;
  residual_sums<T> sums;
  const residual_options options = {record.transposed, iparm(p_steps) < 0, record.threads};
  if (refines && !sums.allocate(solve_with.a, options, record.account)) return out_of_memory(record.account);

  const transfer_totals before = transfers_so_far<T>(call, h);
  const clock::time_point start = clock::now();
  solve_with(b, x);
  stage_status status;
  if (refines) status = refine(call, record, solve_with, sums, b, x, r);
  if (refines && in_b) std::copy_n(x, count, b);
  record.times.solve = seconds_since(start);
  const stage_status transfers = transfers_of_solve<T>(call, h, before);
  return transfers.ok() ? status : transfers;
}

template <class T>
stage_status solve_by_iteration(const solver_call& call, const handle& h) {
  basic_record& record = *h.record();
  const parameters iparm = call.iparm();
  const hybrid_choice choice = choose_hybrid(iparm(p_hybrid), record.control[2]);
  iteration_rules rules = {choice.tolerance,
                           static_cast<double>(record.divergence_bound),
                           {record.slots[slot_iteration_limit], record.slots[slot_stall_step]},
                           choice.conjugate_gradients()};
  // Factors of a call without the iteration: nothing was measured.
  if (rules.limits.limit == kNotSet) rules.limits = choose_iteration_limits(record.krylov, 0, 1, false);
  if (rules.limits.limit <= 0) {
    iparm(p_iteration) = iteration_not_run;
    record.must_factor = true;
    return {};
  }

  const int64_t count = int64_t{call.n} * call.nrhs;
  const bool in_b = iparm(p_solution_in_b) == 1;
  block<T> work;
  if (!work.allocate(record.account, (in_b ? 2 : 1) * count, block_cgs_arr)) {
    return out_of_memory(record.account);
  }
  struct operator_context {
    substitution<T> solve_with;
    residual_sums<T> sums;
  } context = {substitution_of<T>(call, h, work.get()), {}};
  const residual_options options = {false, false, record.threads};
  if (!context.sums.allocate(context.solve_with.a, options, record.account)) {
    return out_of_memory(record.account);
  }
  const iteration_operators<T> operators = {
      [](void* p, const T* in, T* out) {
        const auto& c = *static_cast<operator_context*>(p);
        c.sums.compute(c.solve_with.a, c.solve_with.nrhs, nullptr, in, out);
      },
      [](void* p, const T* in, T* out) { static_cast<operator_context*>(p)->solve_with(in, out); }, &context};

  T* const b = static_cast<T*>(call.b);
  T* const x = in_b ? work.get() + count : static_cast<T*>(call.x);
  const transfer_totals before = transfers_so_far<T>(call, h);
  const clock::time_point start = clock::now();
  const iteration_result result = iterate(operators, call.n, call.nrhs, b, x, !(call.type().number == 6),
                                          rules, call.msglvl != 0, record.account);
  record.times.cgs = seconds_since(start);
  if (!result.memory.ok()) return result.memory;
  if (const stage_status transfers = transfers_of_solve<T>(call, h, before); !transfers.ok())
    return transfers;
  record.must_factor = result.status < 0;
  iparm(p_iteration) = result.status < 0 ? result.status : result.steps;
  iparm(p_steps_done) = 0;
  if (in_b && result.status == iteration_converged) std::copy_n(x, count, b);
  return {};
}

#define QEL_INSTANTIATE(T)                                           \
  template stage_status solve<T>(const solver_call&, const handle&); \
  template stage_status solve_by_iteration<T>(const solver_call&, const handle&);
QEL_INSTANTIATE(float)
QEL_INSTANTIATE(double)
QEL_INSTANTIATE(complex8)
QEL_INSTANTIATE(complex16)
#undef QEL_INSTANTIATE

}  // namespace qel::pardiso
