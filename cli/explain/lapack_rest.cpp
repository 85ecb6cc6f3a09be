// SPDX-License-Identifier: BSD-3-Clause
// Solves with band, packed and tridiagonal factors, eigenvectors of packed matrices, and the block sizes that
// plain LAPACK asks for by name.
#include <algorithm>
#include <cctype>

#include "cli/explain/dense_question.h"
#include "lapack/solve/split.h"
#include "lapack/spectral/slices.h"
#include "service/thread_policy.h"

namespace qel::cli {
namespace {

std::string in_capitals(std::string name) {
  std::transform(name.begin(), name.end(), name.begin(), [](unsigned char c) { return std::toupper(c); });
  return name;
}

struct solve_question : dense_question {
  std::string routine;
  core_int n = 0, nrhs = 0, below = 0, above = 0;
};
void declare_solve(CLI::App& command, solve_question& q) {
  command
      .add_option("ROUTINE", q.routine,
                  "Without its type: gttrs, pttrs, gbtrs, pbtrs, pptrs, sptrs, hptrs or tptrs")
      ->required()
      ->check(CLI::IsMember({"gttrs", "pttrs", "gbtrs", "pbtrs", "pptrs", "sptrs", "hptrs", "tptrs"}));
  add_size(command, "N", q.n, "Order");
  add_size(command, "NRHS", q.nrhs, "Right-hand sides");
  command.add_option("--kl", q.below, "Band: diagonals below the main one (of a Cholesky factor: all)");
  command.add_option("--ku", q.above, "Band: diagonals above the main one");
  declare_dense(command, q);
}
report explain_solve(const solve_question& q, const asked_machine& machine) {
  const std::string name = in_capitals(q.routine), full = q.capital() + name;
  const lapack::split_facts facts{full,
                                  q.n,
                                  q.nrhs,
                                  lapack::split_work(name, q.n, q.below, q.above),
                                  machine.threads_or_own(kDomainAll),
                                  q.tuning_processor(machine)};
  const lapack::split_plan plan = lapack::plan_split(facts);
  report out = {{"level", facts.processor.level},
                {"threads_allowed", facts.threads},
                {"operations_per_column", facts.work},
                {"threads", plan.slices},
                {"reason", plan.reason}};
  if (plan.slices > 1) out["columns_of_first_slice"] = lapack::slice_begin(q.nrhs, plan.slices, 1);
  return out;
}

struct vectors_question {
  core_int n = 0, vectors = 0;
};
void declare_vectors(CLI::App& command, vectors_question& q) {
  add_size(command, "N", q.n, "Order of the matrix");
  add_size(command, "VECTORS", q.vectors, "Eigenvectors wanted");
}
report explain_vectors(const vectors_question& q, const asked_machine& machine) {
  const int threads = machine.threads_or_own(kDomainAll);
  return {{"threads_allowed", threads},
          {"threads_of_inverse_iteration",
           lapack::plan_vectors({q.n, q.vectors, lapack::inverse_iteration_work(q.n), threads})},
          {"threads_of_back_transformation",
           lapack::plan_vectors({q.n, q.vectors, lapack::packed_q_work(q.n), threads})},
          {"reason", "as many as have enough vectors and work"}};
}

struct block_question : dense_question {
  std::string routine, options = " ";
  std::vector<core_int> sizes;
};
void declare_block(CLI::App& command, block_question& q) {
  command.add_option("ROUTINE", q.routine, "Name with its type, e.g. dsytrd")->required();
  command.add_option("SIZES", q.sizes, "What the routine passes as n1 to n4")->required()->expected(1, 4);
  command.add_option("--options", q.options, "Option letters, joined");
  command.add_option("--caches", q.caches, "Bytes of the first, second, third cache")->delimiter(',');
}
report explain_block(const block_question& q, const asked_machine& machine) {
  const std::string name = in_capitals(q.routine);
  core_int n[4] = {-1, -1, -1, -1};
  std::copy(q.sizes.begin(), q.sizes.end(), n);
  const lapack::tuning_processor processor = q.tuning_processor(machine);
  const auto ask = [&](core_int question) {
    return lapack::tuned_block_size({question, name, q.options, n[0], n[1], n[2], n[3]}, processor);
  };
  return {{"level", processor.level},
          {"class", processor.product_class},
          {"block", ask(lapack::kBlockSize)},
          {"least_block", ask(lapack::kLeastBlockSize)},
          {"crossover", ask(lapack::kCrossover)}};
}

}  // namespace

void add_lapack_rest(explain_menu& menu) {
  constexpr const char* kFamily = "LAPACK";
  menu.add<solve_question>(kFamily, "solve", "solve with a band, packed or tridiagonal factor", declare_solve,
                           explain_solve);
  menu.add<vectors_question>(kFamily, "spevx", "eigenvectors of a packed symmetric matrix", declare_vectors,
                             explain_vectors);
  menu.add<block_question>(kFamily, "block", "block sizes of a routine by its name", declare_block,
                           explain_block);
}

}  // namespace qel::cli
