// SPDX-License-Identifier: BSD-3-Clause
// qel: the command line of the library.
#include <CLI/CLI.hpp>

#include <cstdio>
#include <exception>
#include <new>
#include <stdexcept>

#include "cli/command_tree.h"
#include "cli/commands.h"
#include "cli/explain/menu.h"
#include "cli/matrix_market.h"

namespace {

using namespace qel::cli;

int run(int argc, char** argv) {
  CLI::App app("QEL, a numeric kernel: what this build is, and small jobs done with it", "qel");
  app.require_subcommand(1);
  app.set_version_flag("--version", "qel " QEL_VERSION);

  info_options info;
  CLI::App* info_command = app.add_subcommand("info", "Version, build, processor and environment variables");
  CLI::Option* info_json = info_command->add_flag("--json", info.json, "Print JSON");
  info_command
      ->add_flag("--variables", info.variables, "Print the table of environment variables in Markdown")
      ->excludes(info_json);

  explain_menu explain(app);

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
  CLI::Option* json = solve_command->add_flag("--json", solve.json, "Print JSON");
  CLI::Option* dense =
      solve_command->add_flag("--dense", solve.dense, "Factor a dense matrix whatever the file's form is");
  solve_command
      ->add_option(
          "--type", solve.type,
          "Matrix type of the sparse solver: 1, 2, -2, 11 real; 3, 4, -4, 6, 13 complex (qel/pardiso.h)")
      ->check(CLI::IsMember({1, 2, -2, 3, 4, -4, 6, 11, 13}))
      ->excludes(dense);
  solve_command->add_flag("--stats", solve.statistics, "The sparse solver's own statistics")
      ->excludes(dense)
      ->excludes(json);
  solve_command->add_flag("--out-of-core", solve.out_of_core, "Keep the sparse solver's factors in files")
      ->excludes(dense);
  solve_command
      ->add_option("--ooc-path", solve.store_path, "Folder of these files, instead of the current one")
      ->excludes(dense);
  solve_command
      ->add_option("--max-core", solve.max_core,
                   "Megabytes that the sparse solver may take; beyond them its factors go into files")
      ->check(CLI::PositiveNumber)
      ->excludes(dense);
  solve_command->add_option("--spy", solve.spy, "Draw the patterns of A and of the factor into this SVG file")
      ->excludes(dense);

  check_options check;
  CLI::App* check_command = app.add_subcommand("check", "Look over the structure of a sparse matrix");
  check_command->add_option("A", check.matrix, "Matrix Market file (.mtx, .mtx.gz)")->required();
  check_command->add_flag("--json", check.json, "Print JSON");

  fit_options fit;
  CLI::App* fit_command = app.add_subcommand("fit", "Fit a model to the columns of a table by least squares");
  fit_command->footer(
      "Example: qel fit \"y = a*(1-exp(-b*x))\" data.csv --start a=500,b=1e-4\n"
      "Exit codes: 0 fitted, 2 bad input, 3 not converged.");
  fit_command->add_option("model", fit.model, "RESPONSE = EXPRESSION of columns and parameters")->required();
  fit_command->add_option("data", fit.data, "CSV file; the first line names the columns")->required();
  fit_command->add_option("--start", fit.start, "Start values: a=1,b=2")->required();
  fit_command->add_option("--bounds", fit.bounds, "Bounds: a=0:1,b=:5 (one side may be empty)");
  fit_command->add_option("--plot", fit.plot, "Draw data and curve into this SVG file (needs gnuplot)");
  fit_command->add_flag("--json", fit.json, "Print JSON");

  fft_options transform;
  CLI::App* transform_command = app.add_subcommand("fft", "Fourier transform of sampled data");
  transform_command->footer(
      "Example: qel fft sound.wav -o spectrum.csv --plot spectrum.svg\n"
      "Real data give frequencies 0 to n / 2 of the last dimension; the inverse divides by the number of "
      "data.");
  transform_command->add_option("IN", transform.input, "Data: .npy, WAV, or CSV with a line of names")
      ->required();
  transform_command->add_option("-o,--output", transform.output, "Result: .npy, or .csv of one dimension")
      ->required();
  CLI::Option* as_real = transform_command->add_flag(
      "--real", transform.real, "With --inverse: IN is half a spectrum, the result is real");
  transform_command->add_flag("--complex", transform.complex, "All frequencies, of real data too")
      ->excludes(as_real);
  transform_command->add_flag("--inverse", transform.inverse, "From the spectrum to the data");
  transform_command->add_option("--length", transform.length, "Last dimension of a real result, if it is odd")
      ->check(CLI::PositiveNumber);
  transform_command->add_option("--column", transform.column, "Column of a CSV file");
  transform_command->add_option("--channel", transform.channel, "Channel of a WAV file")
      ->capture_default_str();
  transform_command->add_option("--plot", transform.plot,
                                "Draw the spectrum into this SVG file (needs gnuplot)");
  transform_command->add_flag("--json", transform.json, "Print JSON");

  bench_options bench;
  CLI::App* bench_command =
      app.add_subcommand("bench", "How fast this machine is with it, beside other libraries");
  bench_command->footer(
      "Example: qel bench --quick --html report.html\n"
      "Exit codes: 0 done, 1 a family could not be run, 2 bad input.");
  bench_command->add_option("--family", bench.families, "Only this family; several may be given");
  bench_command->add_option("--peers", bench.peers, "auto, none, or names with commas")
      ->capture_default_str();
  bench_command->add_option("--threads", bench.threads, "Threads of every library")
      ->check(CLI::PositiveNumber)
      ->capture_default_str();
  bench_command->add_flag("--quick", bench.quick, "Few cases, under a minute in all");
  bench_command->add_option("--html", bench.html, "Write a page with plots and tables");
  bench_command->add_option("--json", bench.json, "Write all numbers");
  bench_command->add_option("--markdown", bench.markdown, "Write tables in Markdown");
  bench_command->add_option("--from", bench.from, "Show files of --json again instead of running anything");
  bench_command->add_flag("--list", bench.list, "Families and their peers");

  selftest_options selftest;
  CLI::App* selftest_command = app.add_subcommand(
      "selftest", "Whether this machine computes what it should, on every processor level");
  selftest_command->footer("Exit codes: 0 all ok, 1 something failed, 2 bad input.");
  selftest_command->add_option("--family", selftest.families, "Only this family; several may be given");
  selftest_command->add_option("--level", selftest.levels, "Only this processor level; several may be given")
      ->check(CLI::Range(0, 6));
  selftest_command->add_flag("--json", selftest.json, "Print JSON");
  // How it calls itself.
  selftest_command->add_option("--child-level", selftest.child_level)->group("");
  selftest_command->add_flag("--only-by-type", selftest.only_by_type)->group("");

  add_manual_options(app);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? kDone : kBadInput;
  }
  if (!right_hand_file.empty()) solve.right_hand_side = right_hand_file;
  if (*info_command) return run_info(info);
  if (*fit_command) return run_fit(fit);
  if (*transform_command) return run_fft(transform);
  if (*check_command) return run_check(check);
  if (*bench_command) return run_bench(bench);
  if (*selftest_command) return run_selftest(selftest);
  return explain.chosen() ? explain.run() : run_solve(solve);
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
