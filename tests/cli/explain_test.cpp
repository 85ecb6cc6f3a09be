// SPDX-License-Identifier: BSD-3-Clause
// What qel explain tells, as JSON, for facts that differ from this machine's.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <string>
#include <utility>
#include <vector>

#include "conv/conv_plan.h"
#include "sparse/pardiso/order/dissection.h"
#include "sparse/pardiso/tuning.h"
#include "tests/cli/command.h"
#include "vector/vml/rules.h"

namespace qel::cli {
namespace {

using nlohmann::json;

json answer(const std::string& arguments) {
  const command_result result = run("explain " + arguments + " --json");
  EXPECT_EQ(result.exit_code, 0) << arguments << '\n' << result.output;
  return json::parse(result.output, nullptr, /*allow_exceptions=*/false);
}

TEST(Explain, ShowsThePlanOfTheGivenFacts) {
  struct {
    const char* arguments;
    std::vector<std::pair<const char*, json>> wanted;
  } const cases[] = {
      // Level 1 and 2
      {"level1 ddot 2500 --level 3 --threads 8", {{"threads", 1}, {"reason", "short vector"}}},
      {"level1 ddot 2501 --level 3 --threads 8", {{"threads", 4}}},
      {"level1 ddot 2501 --level 3 --threads 8 --fixed-threads",
       {{"threads", 8}, {"dynamic_adjustment", false}}},
      {"level1 idamax 200000 --level 4 --threads 8", {{"threads", 1}}},
      {"level1 idamax 200000 --level 5 --threads 2", {{"threads", 2}}},
      {"level1 dcopy 200000 --level 5 --incx 0 --threads 2", {{"threads", 1}, {"reason", "stride 0"}}},
      {"gemv 1000 1000 --level 3 --threads 4", {{"threads", 4}, {"rows_per_thread", 248}}},
      {"gemv 1000 1000 --level 3 --threads 4 --transposed", {{"columns_per_thread", 250}}},
      {"gemv 1000 1000 --level 4 --threads 4",
       {{"threads", 1}, {"reason", "no threads on this processor level"}}},
      {"ger 600 600 --level 5 --threads 8", {{"threads", 8}, {"columns_per_thread", 80}}},
      {"ger 600 600 --level 3 --threads 8", {{"threads", 1}}},
      {"trmv 1000 --level 2 --threads 2", {{"reason", "two zones"}, {"first_elements", {0, 496}}}},
      {"gbmv 4096 4096 8 7 --level 5 --threads 4", {{"threads", 2}, {"rows_per_thread", 2048}}},
      {"symv 4096 --uplo L --diagonals 23 --level 5 --threads 8", {{"first_elements", {0, 2048}}}},
      {"syr 1000 --level 5 --threads 2", {{"reason", "like areas"}, {"first_elements", {0, 704}}}},
      {"trsv 1024 --level 5 --threads 8", {{"threads", 5}, {"block", 128}}},
      {"trsv 1000 --level 3 --threads 8", {{"threads", 1}}},
      // Level 3
      {"gemm 2000 2000 2000 --threads 8 --level 3 --caches 32768,262144,8388608",
       {{"scheme", "shared_a"}, {"grid", "4 x 2"}, {"block_m", 1000}, {"class", 3}, {"tile", "2 x 8"}}},
      {"gemm 5 1000 1000 --threads 8 --level 4", {{"scheme", "serial"}, {"threads", 1}, {"tile", "8 x 4"}}},
      {"gemm 100 100 258 --threads 1 --level 0", {{"scheme", "serial"}, {"level", 0}}},
      {"gemm 100 100 113 --threads 1 --level 1 --type z", {{"b_without_transpose", "read as it lies"}}},
      {"trsm 600 31 --threads 4 --level 1", {{"threads", 1}, {"reason", "narrow slabs"}}},
      {"trsm 600 40 --side R --threads 4 --level 3", {{"threads", 4}, {"rows_per_thread", 148}}},
      {"trsm 600 40 --side R --threads 4 --level 3 --in-parallel", {{"threads", 1}}},
      {"syrk 1000 100 --threads 3 --level 4", {{"scheme", "triangle_blocks"}, {"pieces", 10}}},
      {"gemm 20 20 20 --threads 4 --level 5", {{"scheme", "in place"}, {"threads", 1}, {"tile", "12 x 4"}}},
      {"gemm 1000 1000 1000 --threads 6 --level 5", {{"scheme", "packed"}, {"grid", "3 x 2"}}},
      {"trsm 600 400 --threads 4 --level 6", {{"threads", 4}, {"diagonal_blocks", 64}}},
      {"syrk 1000 100 --threads 3 --level 6 --type z", {{"grid", "1 x 3"}, {"tile", "12 x 4"}}},
      // LAPACK
      {"getrf 3300 3300 --threads 4 --level 3",
       {{"path", "tasks"},
        {"block", 200},
        {"columns_of_one_grant", 2},
        {"columns_kept_out_of_first_grants", 16}}},
      {"getrf 3300 3300 --threads 1 --level 3", {{"path", "recursive"}}},
      {"potrf 500 --uplo U --threads 2 --level 3",
       {{"path", "tasks"}, {"tile", 48}, {"panels_of_one_task", 500}}},
      {"gbtrf 2000 2000 200 200 --level 5 --threads 4", {{"path", "blocks"}, {"threads", 4}}},
      {"gbtrf 2000 2000 2 2 --level 5 --threads 4", {{"path", "column by column"}, {"threads", 1}}},
      {"geqrf 20 3000 --level 5", {{"block", 1}}},
      {"geqrf 3000 2999 --level 5", {{"block", 96}}},
      {"ormqr 500 500 100 --level 5 --threads 4",
       {{"block", 32}, {"threads", 4}, {"reason", "slices of columns"}}},
      {"ormqr 500 500 100 --level 5 --threads 4 --side R", {{"reason", "slices of rows"}}},
      {"ormqr 500 1 100 --level 5 --threads 4", {{"block", 1}, {"threads", 1}}},
      {"solve gttrs 100000 1 --level 3 --threads 4",
       {{"threads", 1}, {"reason", "one block of right-hand sides"}}},
      {"solve pptrs 500 1000 --level 3 --threads 4", {{"threads", 4}, {"operations_per_column", 500000.0}}},
      {"solve gbtrs 100 1000 --kl 3 --ku 2 --level 3 --threads 4", {{"operations_per_column", 1600.0}}},
      {"spevx 400 400 --threads 3",
       {{"threads_of_inverse_iteration", 3}, {"threads_of_back_transformation", 3}}},
      {"spevx 400 8 --threads 3", {{"threads_of_inverse_iteration", 1}}},
      // Sparse BLAS
      {"csrmv 10 10 30 --threads 4 --level 3", {{"scheme", "rows for each thread"}, {"rows_per_thread", 2}}},
      {"csrmv 10 10 30 --threads 4 --level 5", {{"scheme", "serial"}, {"reason", "few entries"}}},
      {"csrmv 10 10 30 --threads 4 --level 3 --transposed", {{"scheme", "serial"}}},
      {"csrmv 100000 100000 900000 --class S --threads 4 --level 5",
       {{"scheme", "own rows at once, far ones in blocks"}, {"rows_shared_by", "entries"}}},
      {"csrmv 100000 100000 900000 --class S --threads 4 --level 5 --far-share 0.2",
       {{"scheme", "a result for each thread"}, {"results_added_by_all_threads", true}}},
      {"csrmv 100001 100001 900000 --class S --threads 4 --level 0",
       {{"results_added_by_all_threads", true}}},
      {"csrmv 100 100 900 --class D --threads 4", {{"scheme", "serial"}, {"reason", "a diagonal"}}},
      {"csrmv 9 9 1000 --type z --largest-cache 60000", {{"asks_ahead_for_the_matrix", false}}},
      {"csrmv 9 9 1001 --type z --largest-cache 60000",
       {{"asks_ahead_for_the_matrix", true}, {"asks_in_two_steps", false}}},
      {"csrmv 9 9 1001 --type z --largest-cache 60000 --spread 0.07", {{"asks_in_two_steps", true}}},
      {"csrmv 99 99 30000 --class T --threads 3 --level 5 --largest-cache 60000 --spread 0.07",
       {{"row_weight", 16}, {"blocks_of_each_thread", 8}}},
      {"csradd 1000 --request 1 --threads 3", {{"threads", 3}}},
      {"csradd 1000 --threads 3", {{"threads", 1}}},
      {"csrmultcsr 1000 --request 2 --transposed --threads 3", {{"threads", 1}}},
      {"trmm 32 32 --level 5", {{"scheme", "on copies"}}},
      {"trmm 32 33 --level 5", {{"diagonal_blocks", 64}}},
      {"symm 20 20 --side R --level 5", {{"scheme", "on copies"}, {"copied", "B"}}},
      {"syrk 32 32 --level 6", {{"scheme", "on copies"}, {"copied", "C"}}},
      {"gemm 32 32 32 --level 5 --threads 1", {{"scheme", "in place"}}},
      // Least squares
      {"trnlsp 100 199 --threads 3 --level 3",
       {{"threads_of_column_norms", 1}, {"normal_matrix", "whole, by gemm"}}},
      {"trnlsp 100 200 --threads 3 --level 5",
       {{"threads_of_column_norms", 3}, {"residuals_of_a_numerical_jacobian", 200}}},
      {"trnlsp 600 2000 --threads 3 --level 5", {{"threads_of_its_factor", 3}}},
      // Vector math
      {"vml mul 100000000 --threads 4 --level 4",
       {{"threads", 1}, {"reason", "no threads on this processor type"}}},
      {"vml div 99 --threads 4 --type 4 --topology 4,4,1", {{"threads", 1}, {"reason", "short vectors"}}},
      {"vml div 10000000 --threads 4 --type 5 --topology 4,4,1", {{"threads", 1}}},
      {"vml div 10000000 --threads 3 --type 6 --topology 4,4,1", {{"threads", 3}}},
      {"vml div 10000000 --threads 3 --type 4 --topology 1,1,1", {{"threads", 1}}},
      {"vml mul 100000000 --level 5 --threads 2", {{"results_past_the_caches", true}}},
      {"vml mul 100000000 --level 5 --threads 2 --in-place", {{"results_past_the_caches", false}}},
      {"uniform 100000000 --type 7", {{"results_past_the_caches", true}, {"threads", 1}}},
      {"uniform 100000000 --level 4", {{"results_past_the_caches", false}, {"processor_type", 5}}},
  };
  for (const auto& c : cases) {
    const json report = answer(c.arguments);
    for (const auto& [key, value] : c.wanted) EXPECT_EQ(report[key], value) << c.arguments << ' ' << key;
  }
}

TEST(Explain, TellsThreadsOfADivisionByItsCost) {
  const vml_topology machine{8, 8, 1};
  const json report = answer("vml div 100000 --type 2 --threads 8 --topology 8,8,1");
  EXPECT_EQ(report["shortest_length_with_threads"], vml_fork_length(machine, kDivisionHa, 2));
  EXPECT_EQ(report["threads"], vml_refined_threads(8, machine, kDivisionHa, 2, 100000));
}

TEST(Explain, TellsTheMethodOfAConvolution) {
  const char* const kNames[] = {"sums", "sums in blocks", "one transform", "transforms of pieces"};
  for (const auto& [x, y] : {std::pair{10, 10}, {63, 100000}, {300, 300}, {64, 100000}}) {
    const conv::conv_plan plan = conv::plan_conv(std::max(x, y), std::min(x, y));
    const std::string lengths = "conv " + std::to_string(x) + ' ' + std::to_string(y);
    const json report = answer(lengths + " --level 4");
    EXPECT_EQ(report["method"], kNames[static_cast<int>(plan.method)]) << x << ' ' << y;
    EXPECT_EQ(report.value("transform", 0), plan.order == 0 ? 0 : 1 << plan.order) << x << ' ' << y;
    const json native = answer(lengths + " --level 6");
    const conv::native_conv_plan own =
        conv::plan_native_conv({std::max(x, y), std::min(x, y), 0, x + y - 1, 1, false, false});
    EXPECT_EQ(native.value("transform", core_int{0}), own.length) << x << ' ' << y;
    EXPECT_EQ(native.value("pieces", core_int{0}), own.pieces) << x << ' ' << y;
  }
  EXPECT_EQ(answer("conv 300 300 --direct")["method"], "sums");
  EXPECT_EQ(answer("conv 300 300 --dims 2 --type z")["runs_of_real_sequences"], 4);
}

TEST(Explain, TellsTheDirectSolversChoicesFromSizes) {
  for (const auto& [longest_row, part] : {std::pair{0, 400}, {5, 5000}, {40000, 30000}}) {
    const json asked =
        answer("pardiso 300000 1200000 --type 11 --longest-row " + std::to_string(longest_row));
    EXPECT_EQ(asked["parts_left_to_minimum_degree"], part) << longest_row;
  }
  const json large = answer("pardiso 300000 2000000 --threads 8 --type 11 --level 3 --longest-row 40000");
  EXPECT_EQ(large["threads"], 8);
  EXPECT_EQ(large["panel_width"], pardiso::panel_width({11}, 8, 300000, false));
  EXPECT_EQ(large["subgraphs"], pardiso::choose_subgraphs(300000, 11, 8, 0));
  EXPECT_EQ(large["dense_rows_last"], true);
  EXPECT_EQ(large["supernodes_are_merged"], false);
  EXPECT_EQ(large["matching"], "rows permuted");
  EXPECT_EQ(large["perturbed_below"], "1e-13");
  const json small = answer("pardiso 120 400 --threads 8 --type -2 --level 5 --ordering 0 --hybrid 62");
  EXPECT_EQ(small["threads"], 2);
  EXPECT_EQ(small["ordering"], "minimum degree");
  EXPECT_FALSE(small.contains("subgraphs"));
  EXPECT_EQ(small["pivoting"], "2 by 2 inside a supernode");
  EXPECT_EQ(small["iteration"], "CG with earlier factors");
  EXPECT_NEAR(small["tolerance_of_iteration"].get<double>(), 1e-6, 1e-12);
}

TEST(Explain, AnalysesAMatrixFile) {
  const std::string file = QEL_EXAMPLES "494_bus.mtx.gz";
  const json in_core = answer("pardiso " + file + " --threads 1");
  EXPECT_EQ(in_core["order"], 494);
  EXPECT_EQ(in_core["threads"], 1);
  EXPECT_EQ(in_core["factors_in"], "memory");
  EXPECT_GT(in_core["entries_of_factors"].get<int>(), 1080);
  EXPECT_EQ(answer("pardiso " + file + " --out-of-core")["factors_in"], "files");
  EXPECT_EQ(answer("pardiso " + file + " --ordering 0")["ordering"], "minimum degree");
}

TEST(Explain, RunsTransformsOnTheGivenLevel) {
  const json two = answer("fft 1000 --level 2"), own = answer("fft 12 1009 --real");
  EXPECT_EQ(two["level"], 2);
  EXPECT_EQ(two["line_1000"].get<std::string>().substr(0, 11), "mixed radix");
  EXPECT_TRUE(contains(own["line_1009"].get<std::string>(), "as complex numbers"));

  const struct {
    const char *arguments, *key, *beginning;
  } plans[] = {
      {"8 --level 2", "line_8", "straight-line kernel"},
      {"1024 --level 2 --single", "plan", "fast"},
      {"1024 --level 2 --single", "line_1024", "power of two, radices"},
      {"1009 --level 2", "line_1009", "convolution (Bluestein) of 2048 points: power of two"},
      {"1009 --level 5", "line_1009", "cyclic convolution (Rader) of 1008 points"},
      {"1000000 --level 5 --threads 1", "line_1000000", "1000 rows times 1000 columns"},
      {"30 1024 --level 2", "line_30", "mixed radix, factors 5 3 2"},
      {"64 --real --level 2", "line_64", "32 complex numbers and an end pass: straight-line kernel"},
      {"15 --real --level 2", "line_15", "straight-line kernel"},
      {"1048576 --threads 4 --level 2", "plan", "2 fixed parts"},
  };
  for (const auto& row : plans) {
    const json told = answer(std::string("fft ") + row.arguments);
    EXPECT_EQ(told[row.key].get<std::string>().rfind(row.beginning, 0), 0u) << row.arguments << '\n' << told;
  }
}

TEST(Explain, ListsItsSubjects) {
  const command_result text = run("explain");
  EXPECT_EQ(text.exit_code, 0);
  const json list = answer("");
  ASSERT_GE(list.size(), 25u);
  for (const json& one : list) {
    const std::string name = one["name"].get<std::string>();
    EXPECT_TRUE(contains(text.output, name)) << name;
    EXPECT_EQ(run("explain " + name.substr(0, name.find(' ')) + " --help").exit_code, 0) << name;
  }
}

TEST(Explain, RefusesWhatItCannotRead) {
  for (const char* arguments :
       {"gemm 1 2", "trsm 1 2 3", "gemm 1 2 3 --type q", "trsm 1 2 --side X", "dot 5", "gemm 1 -2 3",
        "syrk 5 5 --level 9", "getrf 5", "potrf 5 --uplo X", "level1 nothing 5", "fft 0", "conv 0 5",
        "trnlsp 5 4", "vml add 5", "pardiso five 10", "pardiso /nowhere.mtx", "csrmv 5 5 5 --class X"}) {
    EXPECT_EQ(run(std::string("explain ") + arguments).exit_code, 2) << arguments;
  }
}

}  // namespace
}  // namespace qel::cli
