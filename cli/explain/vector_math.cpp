// SPDX-License-Identifier: BSD-3-Clause
// Vector math and random streams.
#include <omp.h>

#include <algorithm>

#include "cli/explain/menu.h"
#include "service/largest_cache.h"
#include "service/serv.h"
#include "service/thread_policy.h"
#include "vector/vml/rules.h"

namespace qel::cli {
namespace {

struct vector_question {
  std::string operation = "div", accuracy = "ha";
  int n = 0;
  int type = -1;
  std::vector<int> topology;  ///< logical processors, cores, packages
  bool in_place = false, fixed_threads = false;
};

void declare_length(CLI::App& command, vector_question& q) {
  add_size(command, "N", q.n, "Elements");
  command.add_option("--type", q.type, "Processor type 0 to 7, instead of the level's")
      ->check(CLI::Range(0, 7));
}
void declare_operation(CLI::App& command, vector_question& q) {
  command.add_option("OPERATION", q.operation, "div, mul or sub")
      ->required()
      ->check(CLI::IsMember({"div", "mul", "sub"}));
  declare_length(command, q);
  command.add_option("--accuracy", q.accuracy, "Of a division: ha, la or ep")
      ->check(CLI::IsMember({"ha", "la", "ep"}))
      ->capture_default_str();
  command.add_option("--topology", q.topology, "Logical processors, cores, packages")
      ->delimiter(',')
      ->expected(3)
      ->check(CLI::PositiveNumber);
  command.add_flag("--in-place", q.in_place, "The result overwrites an operand");
  command.add_flag("--fixed-threads", q.fixed_threads, "As with QEL_DYNAMIC=FALSE");
}

int type_of(const vector_question& q, const asked_machine& machine) {
  return q.type >= 0 ? q.type : machine.level >= 0 ? type_of_level(machine.level) : serv_cpu_type();
}

report explain_operation(const vector_question& q, const asked_machine& machine) {
  vml_facts facts{};
  facts.divides = q.operation == "div";
  facts.row = q.accuracy == "ha" ? kDivisionHa : q.accuracy == "la" ? kDivisionLa : kDivisionEp;
  facts.n = q.n;
  facts.type = type_of(q, machine);
  facts.threads = machine.threads_or_own(kDomainVml);
  facts.dynamic = !q.fixed_threads && serv_threads_dynamic() == 1;
  facts.topology = q.topology.empty() ? read_vml_topology(current_cpuid(), omp_get_num_procs())
                                      : vml_topology{q.topology[0], q.topology[1], q.topology[2]};
  facts.largest_cache = largest_native_cache();
  facts.in_place = q.in_place;
  const vml_plan plan = plan_vml(facts);
  report out = {{"processor_type", facts.type}, {"threads_allowed", facts.threads}};
  if (facts.divides && facts.type < kFirstNativeType) {
    out["cycles_of_an_element"] = vml_element_cost(facts.row, facts.type);
    out["cycles_of_a_parallel_region"] = vml_fork_overhead(facts.topology);
  }
  if (facts.divides || facts.type >= kFirstNativeType) {
    out["shortest_length_with_threads"] = vml_fork_length(facts.topology, kDivisionHa, facts.type);
  }
  out["threads"] = plan.threads;
  out["reason"] = plan.reason;
  if (plan.threads > 1) out["elements_per_thread"] = q.n / plan.threads;
  out["results_past_the_caches"] = plan.past_caches;
  return out;
}

report explain_uniform(const vector_question& q, const asked_machine& machine) {
  const int type = type_of(q, machine);
  const bool past_caches = q.n >= kLongFill && stores_past_caches({type, 1.0 * sizeof(double) * q.n,
                                                                   largest_native_cache(), false, nullptr});
  return {{"processor_type", type},
          {"generator", "R250"},
          {"threads", 1},
          {"reason", "a stream's numbers follow from one another"},
          {"results_past_the_caches", past_caches}};
}

}  // namespace

void add_vector_math(explain_menu& menu) {
  menu.add<vector_question>("Vector math", "vml", "an operation on vectors, element by element",
                            declare_operation, explain_operation);
  menu.add<vector_question>("Random streams", "uniform", "uniform random numbers", declare_length,
                            explain_uniform);
}

}  // namespace qel::cli
