// SPDX-License-Identifier: BSD-3-Clause
// The direct sparse solver beside CHOLMOD, UMFPACK, KLU, SuperLU and MUMPS: analysis, factorisation,
// solutions of 1 and 32 right-hand sides, and the total with one, over generated matrices and those of
// QEL_BENCH_MATRICES (Matrix Market files, separated by colons). QEL_BENCH_ORDERING: iparm(2). After the
// times: entries of the factors, and backward errors.
#include <fmt/core.h>
#include <unistd.h>

#include <map>
#include <sstream>
#include <stdexcept>

#include "bench/direct/solvers.h"
#include "bench/support/compare.h"
#include "cli/matrix_market.h"

namespace qel::bench {
namespace {

constexpr int kManySides = 32;

struct problem_case {
  test::sparse_problem (*make)();
  bool circuit;
};
/// By name, so that a filter leaves the others unmade.
const std::vector<std::pair<std::string, problem_case>>& generated() {
  using namespace test;
  static const std::vector<std::pair<std::string, problem_case>> all = {
      {"spd/grid2d:1e3", {[] { return grid(32, 32, 1); }, false}},
      {"spd/grid2d:1e4", {[] { return grid(100, 100, 1); }, false}},
      {"spd/grid2d:1e5", {[] { return grid(316, 316, 1); }, false}},
      {"spd/grid2d:1e6", {[] { return grid(1000, 1000, 1); }, false}},
      {"spd/grid3d:1e3", {[] { return grid(10, 10, 10); }, false}},
      {"spd/grid3d:1e4", {[] { return grid(22, 22, 22); }, false}},
      {"spd/grid3d:6e4", {[] { return grid(40, 40, 40); }, false}},
      {"spd/grid3d:1e5", {[] { return grid(50, 50, 50); }, false}},
      {"spd/box3d:3e4", {[] { return grid(30, 30, 30, true); }, false}},
      {"spd/elasticity:1e4", {[] { return elasticity(15, 15, 15); }, false}},
      {"spd/elasticity:5e4", {[] { return elasticity(25, 25, 25); }, false}},
      {"indefinite/saddle:1e4", {[] { return saddle_point(90, 1900); }, false}},
      {"indefinite/grid3d:1e4", {[] { return as_type(grid(22, 22, 22), -2); }, false}},
      {"unsymmetric/convection2d:1e4", {[] { return convection(100, 100, 1); }, false}},
      {"unsymmetric/convection2d:1e5", {[] { return convection(316, 316, 1); }, false}},
      {"unsymmetric/convection3d:1e4", {[] { return convection(22, 22, 22); }, false}},
      {"unsymmetric/convection3d:3e4", {[] { return convection(30, 30, 30); }, false}},
      {"unsymmetric/convection3d:6e4", {[] { return convection(40, 40, 40); }, false}},
      {"circuit/circuit:1e4", {[] { return circuit(10000, 1); }, true}},
      {"circuit/circuit:1e5", {[] { return circuit(100000, 1); }, true}},
  };
  return all;
}

/// A system and what each library has made of it so far.
class system_under_test {
 public:
  system_under_test(std::string name, problem_case from) : name_(std::move(name)), from_(from) {}
  system_under_test(std::string name, matrix a) : name_(std::move(name)), a_(std::move(a)), made_(true) {}

  const matrix& a() {
    if (!made_) a_ = test::csr_of<double>(from_.make());
    made_ = true;
    return a_;
  }
  direct_solver& solver(const direct_library& library) {
    auto& found = solvers_[library.name];
    if (!found) found = library.make(a());
    return *found;
  }
  direct_solver& analysed(const direct_library& library) {
    direct_solver& found = solver(library);
    if (stage_[library.name] < 1) found.analyse();
    stage_[library.name] = std::max(stage_[library.name], 1);
    return found;
  }
  direct_solver& factored(const direct_library& library) {
    direct_solver& found = analysed(library);
    if (stage_[library.name] < 2) found.factor();
    stage_[library.name] = 2;
    return found;
  }
  /// A repeated analysis drops the factor.
  void dropped(const direct_library& library) { stage_[library.name] = 0; }
  void note_error(const std::string& library, double error) {
    errors_[library] = std::max(errors_[library], error);
  }
  void print() const {
    if (errors_.empty()) return;
    fmt::print("{:<34}", name_);
    for (const auto& [library, error] : errors_)
      fmt::print("  {} {:.3g} {:.1e}", library, solvers_.at(library)->factor_entries(), error);
    fmt::print("\n");
  }
  const std::string& name() const { return name_; }

 private:
  std::string name_;
  problem_case from_{};
  matrix a_{};
  bool made_ = false;
  std::map<std::string, std::unique_ptr<direct_solver>> solvers_;
  std::map<std::string, int> stage_;
  std::map<std::string, double> errors_;
};

template <class Body>
void add(const std::string& phase, const std::shared_ptr<system_under_test>& system,
         const direct_library& library, const Body& body) {
  const std::string name = phase + "/" + system->name();
  if (library.name == kSubject) remember_case(name);
  add_run(name, library.name, [=](benchmark::State& state) {
    try {
      body(state);
    } catch (const std::exception& e) {
      state.SkipWithError(e.what());
    }
  });
}

void add_solve(const std::shared_ptr<system_under_test>& system, const direct_library& library, int nrhs) {
  add("solve" + std::to_string(nrhs), system, library, [=](benchmark::State& state) {
    direct_solver& solver = system->factored(library);
    const auto n = static_cast<size_t>(system->a().n);
    std::vector<double> b(n * static_cast<size_t>(nrhs)), x(b.size());
    for (size_t i = 0; i < b.size(); ++i) b[i] = 1.0 + static_cast<double>(i % 7);
    for (auto _ : state) solver.solve(nrhs, b.data(), x.data());
    system->note_error(library.name, backward_error(system->a(), b.data(), x.data()));
  });
}

void add_all(const std::shared_ptr<system_under_test>& system, int type, bool circuit) {
  const std::vector<direct_library> libraries = libraries_for(type, circuit);
  for (const direct_library& library : libraries)
    add("analysis", system, library, [=](benchmark::State& state) {
      direct_solver& solver = system->solver(library);
      system->dropped(library);
      for (auto _ : state) solver.analyse();
    });
  for (const direct_library& library : libraries)
    add("factor", system, library, [=](benchmark::State& state) {
      direct_solver& solver = system->analysed(library);
      for (auto _ : state) solver.factor();
    });
  for (const direct_library& library : libraries)
    add("total", system, library, [=](benchmark::State& state) {
      direct_solver& solver = system->solver(library);
      system->dropped(library);
      const std::vector<double> b(static_cast<size_t>(system->a().n), 1.0);
      std::vector<double> x(b.size());
      for (auto _ : state) {
        solver.analyse();
        solver.factor();
        solver.solve(1, b.data(), x.data());
      }
    });
  for (const int nrhs : {1, kManySides})
    for (const direct_library& library : libraries) add_solve(system, library, nrhs);
}

matrix read_file(const std::string& path) {
  const cli::matrix_file file = cli::read_matrix_market(path);
  const bool symmetric = file.symmetry == cli::matrix_symmetry::symmetric;
  test::sparse_problem problem{path, file.rows, symmetric ? -2 : 11, {}};
  for (const cli::matrix_entry& e : file.entries) problem.entries.push_back({e.row, e.col, e.value});
  return test::csr_of<double>(problem);
}

/// The peers are linked, so that their BLAS and its threads have read the environment before main: it is set,
/// and the program starts again. QEL_BENCH_PEER_BLAS: folder of the libblas.so.3 and liblapack.so.3 that the
/// peers get, in place of the system's.
void restart_with_environment(char** argv) {
  if (std::getenv("QEL_BENCH_RESTARTED") != nullptr) return;
  set_environment_defaults();
  setenv("QEL_BENCH_RESTARTED", "1", 1);
  if (const char* const folder = std::getenv("QEL_BENCH_PEER_BLAS")) setenv("LD_LIBRARY_PATH", folder, 1);
  execv("/proc/self/exe", argv);
}

}  // namespace
}  // namespace qel::bench

int main(int argc, char** argv) {
  using namespace qel::bench;
  restart_with_environment(argv);
  std::vector<std::shared_ptr<system_under_test>> systems;
  for (const auto& [name, from] : generated()) {
    systems.push_back(std::make_shared<system_under_test>(name, from));
    const int type = name.rfind("spd", 0) == 0 ? 2 : name.rfind("indefinite", 0) == 0 ? -2 : 11;
    add_all(systems.back(), type, from.circuit);
  }
  const char* const files = std::getenv("QEL_BENCH_MATRICES");
  std::istringstream paths(files != nullptr ? files : "");
  for (std::string path; std::getline(paths, path, ':');) {
    matrix a = read_file(path);
    const int type = a.type;
    const std::string name = "file/" + path.substr(path.rfind('/') + 1);
    systems.push_back(std::make_shared<system_under_test>(name, std::move(a)));
    add_all(systems.back(), type, true);
  }
  std::vector<char*> arguments(argv, argv + argc);
  char few[] = "--benchmark_repetitions=3";
  arguments.insert(arguments.begin() + 1, few);
  const int status = run_comparison(static_cast<int>(arguments.size()), arguments.data());
  fmt::print("\nentries of the factors, backward error of solve1 and solve32\n");
  for (const auto& system : systems) system->print();
  return status;
}
