// SPDX-License-Identifier: BSD-3-Clause
// The direct sparse solver: from sizes what follows from them alone; from a matrix file what its analysis
// finds, too.
#include <fmt/core.h>
#include <stdlib.h>

#include <array>
#include <stdexcept>

#include "cli/explain/menu.h"
#include "cli/sparse_matrix.h"
#include "qel/pardiso.h"
#include "service/cpu_facts.h"
#include "service/native_level.h"
#include "service/serv.h"
#include "service/thread_policy.h"
#include "sparse/pardiso/handle.h"
#include "sparse/pardiso/order/dissection.h"
#include "sparse/pardiso/order/ordering.h"
#include "sparse/pardiso/solve/refine.h"
#include "sparse/pardiso/symbolic/supernodes.h"
#include "sparse/pardiso/tuning.h"

namespace qel::cli {
namespace {

using namespace qel::pardiso;

struct solver_question {
  std::vector<std::string> system;  ///< a file, or the order and the entries stored
  int type = 0, nrhs = 1;
  int ordering = -1, matching = -1, steps = 0, hybrid = 0, max_core = 0;  ///< below 0: the type's default
  int longest_row = 0;
  bool single = false, out_of_core = false;
};

void declare(CLI::App& command, solver_question& q) {
  command.add_option("SYSTEM", q.system, "A Matrix Market file, or: order, entries stored")
      ->required()
      ->expected(1, 2);
  command.add_option("--type", q.type, "Matrix type; default: by the file's header, or 11")
      ->check(CLI::IsMember({1, 2, -2, 3, 4, -4, 6, 11, 13}));
  command.add_option("--nrhs", q.nrhs, "Right-hand sides")->check(CLI::PositiveNumber)->capture_default_str();
  command.add_option("--ordering", q.ordering, "iparm(2)")->check(CLI::Range(0, 3));
  command.add_option("--matching", q.matching, "iparm(13)")->check(CLI::Range(0, 1));
  command.add_option("--steps", q.steps, "iparm(8), refinement steps")->capture_default_str();
  command.add_option("--hybrid", q.hybrid, "iparm(4), iteration with earlier factors")->capture_default_str();
  command.add_option("--longest-row", q.longest_row, "Entries of the longest row; without a file");
  command
      .add_option("--max-core", q.max_core, "Megabytes from which on the factors go into files; with a file")
      ->check(CLI::PositiveNumber);
  command.add_flag("--out-of-core", q.out_of_core, "Factors in files; with a file");
  command.add_flag("--single", q.single, "iparm(28): factors in single precision");
}

const char* name_of_ordering(int method) {
  constexpr const char* kNames[] = {"minimum degree", "constrained minimum degree", "nested dissection",
                                    "nested dissection with subgraphs"};
  return kNames[method];
}
const char* name_of(matching_kind kind) {
  constexpr const char* kNames[] = {"none", "rows permuted", "columns paired", "refused"};
  return kNames[static_cast<int>(kind)];
}

/// The caller's parameters as a first call would have them.
std::array<int, 64> parameters_of(const solver_question& q, int type) {
  std::array<int, 64> values;
  void* pt[64];
  pardisoinit(pt, &type, values.data());
  const parameters iparm(values.data());
  if (q.ordering >= 0) iparm(p_ordering) = q.ordering;
  if (q.matching >= 0) iparm(p_matching) = q.matching;
  iparm(p_steps) = q.steps;
  iparm(p_hybrid) = q.hybrid;
  iparm(p_single) = q.single;
  iparm(p_out_of_core) = q.out_of_core ? 2 : q.max_core > 0 ? 1 : 0;
  return values;
}

/// What follows from the sizes.
report explain_sizes(const solver_question& q, const asked_machine& machine, int type, int n, int64_t nnz,
                     std::array<int, 64> values) {
  const matrix_type about{type};
  const parameters iparm(values.data());
  const int level = machine.level_or_own(), allowed = machine.threads_or_own(kDomainAll);
  const bool dynamic = serv_threads_dynamic() != 0;
  const int threads = pardiso::choose_threads(allowed, dynamic, n, q.nrhs);
  const bool selected = is_selected_vendor(read_cpu_facts(current_cpuid()));
  const int asked_width = panel_width(about, threads, n, selected);
  const supernode_plan supernodes =
      plan_supernodes({level >= kFirstNativeLevel, asked_width, about.unsymmetric()});
  const hybrid_choice hybrid = choose_hybrid(q.hybrid, 1e-12);
  const int64_t edges = about.symmetric() ? 2 * (nnz - n) : nnz - n;
  report out = {{"level", level},
                {"type", fmt::format("{} ({})", type, describe_type(type))},
                {"order", n},
                {"entries", nnz},
                {"precision_of_factors", q.single ? "single" : "double"},
                {"threads_allowed", allowed},
                {"threads", threads},
                {"reason_of_threads", threads < allowed ? "one per 50 equations" : "all that are allowed"},
                {"ordering", name_of_ordering(iparm(p_ordering))}};
  if (iparm(p_ordering) != 0) {
    out["parts_left_to_minimum_degree"] = choose_leaf(n, edges, q.longest_row);
    out["subgraphs"] = choose_subgraphs(n, type, threads, iparm(p_subgraph_exponent));
    if (q.longest_row > 0) {
      const bool dense = choose_dissection_options(n, q.longest_row).explicit_options != 0;
      out["dense_rows_last"] = dense;
    }
  }
  out["matching"] = name_of(choose_matching(about, iparm(p_matching)));
  out["scaling"] = iparm(p_scaling) == 1;
  out["panel_width"] = supernodes.width;
  out["supernodes_are_merged"] = supernodes.merge;
  out["schedule"] = threads > 1 ? "subtrees side by side" : "ascending";
  out["pivoting"] = about.definite()                          ? "none"
                    : about.indefinite() && iparm(p_pivoting) ? "2 by 2 inside a supernode"
                                                              : "inside a supernode";
  out["perturbed_below"] =
      iparm(p_perturbation) == 0 ? report("none") : report(fmt::format("1e-{}", iparm(p_perturbation)));
  out["refinement"] = wants_refinement(iparm(p_steps), 0) ? "asked for" : "if pivots are perturbed";
  out["iteration"] = !hybrid.wanted()               ? "none"
                     : hybrid.conjugate_gradients() ? "CG with earlier factors"
                                                    : "CGS with earlier factors";
  if (hybrid.wanted()) out["tolerance_of_iteration"] = hybrid.tolerance;
  return out;
}

/// The analysis of a matrix by the solver itself.
void add_analysis(report& out, const solver_question& q, int type, const sparse_matrix& a,
                  std::array<int, 64> values) {
  if (q.max_core > 0) setenv("QEL_PARDISO_OOC_MAX_CORE_SIZE", std::to_string(q.max_core).c_str(), 1);
  struct live_handle {
    void* pt[64] = {};
    const sparse_matrix& matrix;
    int type;
    int call(int phase, int* iparm, int nrhs) {
      const int one = 1, silent = 0;
      int error = 0;
      ::pardiso(pt, &one, &one, &type, &phase, &matrix.n, matrix.values.data(), matrix.ia.data(),
                matrix.ja.data(), nullptr, &nrhs, iparm, &silent, nullptr, nullptr, &error);
      return error;
    }
    ~live_handle() {
      int none[64] = {1};
      call(-1, none, 1);
    }
  } handle_of_call{{}, a, type};
  if (const int error = handle_of_call.call(11, values.data(), q.nrhs); error != 0) {
    throw std::runtime_error(fmt::format("the analysis ends with error {}", error));
  }
  const parameters iparm(values.data());
  if (iparm(p_transposed) == kDiagonalMark) {
    out["analysis"] = "a diagonal: divided by, nothing to factor";
    return;
  }
  const handle h(handle_of_call.pt);
  const basic_record& record = *h.record();
  const structure& form = h.analysed()->form;
  out["threads"] = record.threads;
  out["ordering"] = name_of_ordering(record.slots[slot_ordering]);
  if (record.slots[slot_ordering] != 0) out["dense_rows_last"] = h.analysed()->order.dense_rows;
  out["panel_width"] = form.panel_width;
  out["supernodes"] = form.supernodes;
  out["widest_run_of_like_columns"] = form.largest_run;
  out["height_of_tree"] = form.tree_height;
  out["entries_of_factors"] = form.nonzeros_l + form.nonzeros_u;
  out["operations"] = form.work;
  out["megabytes"] = {{"all", iparm(p_memory_total)},
                      {"factors", iparm(p_memory_factors)},
                      {"work", iparm(p_memory_working)}};
  out["factors_in"] = record.out_of_core != 0 ? "files" : "memory";
}

int as_number(const std::string& text) {
  size_t used = 0;
  int value = 0;
  try {
    value = std::stoi(text, &used);
  } catch (const std::exception&) {
    used = 0;
  }
  if (used == 0 || used != text.size() || value < 1) throw std::invalid_argument("'" + text + "' is no size");
  return value;
}

report answer(const solver_question& q, const asked_machine& machine) {
  take_level(q.system.size() == 1 ? machine.level : -1);
  if (q.system.size() == 2) {
    const int type = q.type != 0 ? q.type : 11;
    return explain_sizes(q, machine, type, as_number(q.system[0]), as_number(q.system[1]),
                         parameters_of(q, type));
  }
  if (machine.threads > 0) serv_set_num_threads(machine.threads);
  const std::string& name = q.system[0];
  const matrix_file file = read_matrix_market(name);
  if (file.rows != file.cols) throw file_error(name + ": the matrix is not square");
  const int type = types_to_try(file, q.type, name).front();
  const sparse_matrix a = sparse_form(file, type, name);
  report out =
      explain_sizes(q, machine, type, a.n, static_cast<int64_t>(a.ja.size()), parameters_of(q, type));
  add_analysis(out, q, type, a, parameters_of(q, type));
  return out;
}

}  // namespace

void add_direct_solver(explain_menu& menu) {
  menu.add<solver_question>("Direct solver", "pardiso", "a sparse system, from sizes or from its matrix",
                            declare, answer);
}

}  // namespace qel::cli
