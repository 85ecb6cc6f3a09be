// SPDX-License-Identifier: BSD-3-Clause
#include <stdlib.h>

#include <algorithm>
#include <cstring>
#include <limits>

#include "service/cpu_facts.h"
#include "service/environment.h"
#include "service/native_level.h"
#include "service/serv.h"
#include "sparse/pardiso/checks.h"
#include "sparse/pardiso/out_of_core.h"
#include "sparse/pardiso/stages.h"
#include "sparse/pardiso/tuning.h"

namespace qel::pardiso {
namespace {

int clipped(int64_t value) {
  return static_cast<int>(std::min<int64_t>(value, std::numeric_limits<int>::max()));
}
int clipped(double value) {
  return static_cast<int>(std::min<double>(value, std::numeric_limits<int>::max()));
}

bool environment_says(const char* name, const char* wanted) {
  char value[16];
  return read_environment(name, value, sizeof value) && std::strcmp(value, wanted) == 0;
}

ordering_options options_of(const solver_call& call, const basic_record& record) {
  const parameters iparm = call.iparm();
  ordering_options options;
  options.method = iparm(p_ordering);
  options.permutation_mode = iparm(p_permutation);
  options.scaling = iparm(p_scaling);
  options.matching = iparm(p_matching);
  options.subgraph_exponent = iparm(p_subgraph_exponent);
  options.threads = record.threads;
  options.choose_by_fill = environment_says("QEL_PARDISO_ORDERING", "auto");
  return options;
}

template <class T>
memory_prediction store_sizes(const solver_call& call, basic_record& record, const analysis& made,
                              const structure_options& options) {
  const ordering& order = made.order;
  const structure& form = made.form;
  const parameters iparm = call.iparm();
  record.scaled = static_cast<bool>(order.row_scale);
  record.nonzeros_l = form.nonzeros_l;
  record.nonzeros_u = form.nonzeros_u;
  record.work = form.work;
  record.times.fulladj = order.fulladj_seconds;
  record.times.reorder = order.reorder_seconds;
  record.times.symbfct = form.symbfct_seconds;
  record.times.parlist = form.parlist_seconds;
  record.slots[slot_subgraphs] = order.subgraphs;
  record.slots[slot_ordering] = order.method;
  record.slots[slot_permutation_mode] = iparm(p_permutation);
  record.slots[slot_separators_by_degree] = order.separators_by_degree;
  record.slots[slot_supernodes] = form.supernodes;
  record.slots[slot_largest_supernode] = form.largest_run;
  record.slots[slot_tree_height] = form.tree_height;
  record.slots[slot_peak_analysis] = clipped(record.account.peak());
  record.slots[slot_permanent_analysis] = clipped(record.account.now());

  const memory_prediction memory = predict_memory(form, options, sizeof(T));
  iparm(p_memory_total) = memory.total;
  iparm(p_memory_working) = memory.working;
  iparm(p_memory_factors) = memory.factors;
  iparm(p_peak_analysis) = record.slots[slot_peak_analysis];
  iparm(p_permanent_analysis) = record.slots[slot_permanent_analysis];
  const auto bytes = [](int64_t elements) { return static_cast<size_t>(elements) * sizeof(T); };
  iparm(p_numeric_memory) = record.slots[slot_numeric_memory] =
      clipped(memory_account::kilobytes(bytes(form.factor_elements)) +
              memory_account::kilobytes(bytes(form.work_elements * record.threads)));
  if (iparm(p_factor_nonzeros) < 0) iparm(p_factor_nonzeros) = clipped(form.nonzeros_l + form.nonzeros_u);
  if (iparm(p_factor_work) < 0) iparm(p_factor_work) = clipped(form.work / 1e6);
  return memory;
}

}  // namespace

stage_status out_of_memory(const memory_account& account) { return {-2, account.failed_code()}; }

template <class T>
stage_status analyse(const solver_call& call, const handle& h) {
  handle owner = h;
  basic_record& record = *h.record();
  record.account.restart_peak();
  analysis* const made = owner.new_analysis();
  if (made == nullptr) return out_of_memory(record.account);

  graph adjacency;
  stage_status status = compute_ordering(matrix_of<T>(call), options_of(call, record), call.perm,
                                         record.account, made->order, adjacency);
  structure_options options;
  options.panel_width = record.slots[slot_panel_width];
  options.unsymmetric = call.type().unsymmetric();
  options.is_complex = is_complex<T>;
  options.threads = record.threads;
  options.native = serv_cpu_level() >= kFirstNativeLevel;
  if (status.ok()) status = build_structure(adjacency, options, made->order, record.account, made->form);
  if (!status.ok()) {
    owner.release_analysis();
    return status;
  }
  adjacency = {};
  const memory_prediction memory = store_sizes<T>(call, record, *made, options);
  const bool checks_pattern = environment_says("QEL_PARDISO_CHECK_PATTERN", "1");
  record.pattern = checks_pattern ? pattern_fingerprint(call.n, call.ia, call.ja) : 0;
  status = choose_store_of(call, h, memory);
  if (!status.ok()) owner.release_analysis();
  return status;
}

template stage_status analyse<float>(const solver_call&, const handle&);
template stage_status analyse<double>(const solver_call&, const handle&);
template stage_status analyse<complex8>(const solver_call&, const handle&);
template stage_status analyse<complex16>(const solver_call&, const handle&);

}  // namespace qel::pardiso
