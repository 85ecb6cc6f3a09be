// SPDX-License-Identifier: BSD-3-Clause
// qel: the command line of the library.
#include <CLI/CLI.hpp>

#include <cstdio>
#include <exception>
#include <new>
#include <stdexcept>

#include "cli/commands.h"
#include "cli/matrix_market.h"

namespace {

using namespace qel::cli;

int run(int argc, char** argv) {
  CLI::App app("QEL, a numeric kernel: what this build is, and small jobs done with it", "qel");
  app.require_subcommand(1);
  app.set_version_flag("--version", "qel " QEL_VERSION);

  info_options info;
  CLI::App* info_command = app.add_subcommand("info", "Version, build, processor and environment variables");
  info_command->add_flag("--json", info.json, "Print JSON");

  explain_options explain;
  CLI::App* explain_command =
      app.add_subcommand("explain", "How an operation of given sizes would be done, and why");
  explain_command->add_option("operation", explain.operation, "gemm, trsm, trmm, symm or syrk")
      ->required()
      ->check(CLI::IsMember({"gemm", "trsm", "trmm", "symm", "syrk"}));
  explain_command->add_option("sizes", explain.sizes, "gemm: M N K; trsm, trmm, symm: M N; syrk: N K")
      ->required();
  explain_command->add_option("--type", explain.type, "Element type: s, d, c or z")->capture_default_str();
  explain_command->add_option("--side", explain.side, "Side of the matrix: L or R")->capture_default_str();
  explain_command->add_option("--threads", explain.threads, "Threads allowed, instead of this process's");
  explain_command->add_option("--level", explain.level, "Processor level 0 to 6, instead of this process's")
      ->check(CLI::Range(0, 6));
  explain_command->add_option("--caches", explain.caches, "Bytes of the first, second, third cache")
      ->delimiter(',');
  explain_command->add_flag("--in-parallel", explain.in_parallel, "Called from inside a parallel region");
  explain_command->add_flag("--json", explain.json, "Print JSON");

  solve_options solve;
  std::string right_hand_file;
  CLI::App* solve_command = app.add_subcommand("solve", "Solve A X = B for a Matrix Market file");
  solve_command->footer("Exit codes: 0 solved, 2 bad input, 3 singular matrix.");
  solve_command->add_option("A", solve.matrix, "Square matrix, Matrix Market (.mtx, .mtx.gz)")->required();
  CLI::Option* positional =
      solve_command->add_option("B", right_hand_file, "Right-hand sides, Matrix Market");
  solve_command
      ->add_option("--rhs", solve.right_hand_side, "Right-hand side: ones, random, or a Matrix Market file")
      ->capture_default_str()
      ->excludes(positional);
  solve_command->add_option("-o,--output", solve.output, "Write the solution there, Matrix Market array");
  solve_command->add_flag("--json", solve.json, "Print JSON");

  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? kDone : kBadInput;
  }
  if (!right_hand_file.empty()) solve.right_hand_side = right_hand_file;
  if (*info_command) return run_info(info);
  return *explain_command ? run_explain(explain) : run_solve(solve);
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return run(argc, argv);
  } catch (const file_error& error) {
    std::fprintf(stderr, "qel: %s\n", error.what());
  } catch (const std::bad_alloc&) {
    std::fprintf(stderr, "qel: not enough memory\n");
  } catch (const std::length_error&) {
    std::fprintf(stderr, "qel: not enough memory\n");
  } catch (const std::exception& error) {
    std::fprintf(stderr, "qel: %s\n", error.what());
  }
  return kBadInput;
}
