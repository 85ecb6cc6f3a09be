// SPDX-License-Identifier: BSD-3-Clause
// The qel command as a user runs it: exit codes, reports, JSON, files written.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <complex>
#include <nlohmann/json.hpp>
#include <string>

#include "cli/commands.h"
#include "cli/matrix_market.h"
#include "tests/cli/command.h"
#include "tests/cli/temporary_file.h"

namespace qel::cli {
namespace {

TEST(Solve, ReachesRoundingLevelOnRealSystems) {
  for (const char* system : {QEL_EXAMPLES "494_bus.mtx.gz", QEL_EXAMPLES "orsirr_1.mtx.gz",
                             QEL_DATA "bcsstk01.mtx.gz", QEL_DATA "c_west0067.mtx.gz"}) {
    for (const char* rhs : {"ones", "random"}) {
      const command_result result = run(std::string("solve --json ") + system + " --rhs " + rhs);
      ASSERT_EQ(result.exit_code, 0) << result.output;
      const nlohmann::json report = nlohmann::json::parse(result.output);
      EXPECT_LT(report["backward_error"].get<double>(), 1e-14) << system;
      EXPECT_EQ(report["status"], "solved");
      EXPECT_EQ(report["solution"], nullptr);
    }
  }
}

TEST(Solve, WritesTheSolutionOfAKnownSystem) {
  // [2 1; 1 3] x = b for b = (3, 4) and (i, 0)
  const test::temporary_file a(
      "%%MatrixMarket matrix coordinate real symmetric\n2 2 3\n1 1 2\n2 1 1\n2 2 3\n");
  const test::temporary_file b("%%MatrixMarket matrix array complex general\n2 2\n3 0\n4 0\n0 5\n0 0\n");
  const test::temporary_file x("");
  const command_result result = run("solve " + a.path() + " " + b.path() + " -o " + x.path());
  ASSERT_EQ(result.exit_code, 0) << result.output;
  EXPECT_TRUE(contains(result.output, "solution        " + x.path())) << result.output;
  const matrix_file solution = read_matrix_market(x.path());
  const std::complex<double> want[] = {1.0, 1.0, {0, 3}, {0, -1}};
  ASSERT_EQ(solution.entries.size(), 4u);
  for (size_t k = 0; k < 4; ++k) EXPECT_NEAR(std::abs(solution.entries[k].value - want[k]), 0, 1e-15);
}

TEST(Solve, TakesTheTypeThatSuitsAMatrix) {
  const std::string real = "%%MatrixMarket matrix coordinate real symmetric\n",
                    complex = "%%MatrixMarket matrix coordinate complex ";
  const test::temporary_file definite(real + "3 3 5\n1 1 4\n2 1 1\n2 2 3\n3 2 1\n3 3 2\n"),
      indefinite(real + "3 3 5\n1 1 1\n2 1 3\n2 2 1\n3 2 1\n3 3 2\n"),
      negative(real + "2 2 3\n1 1 -2\n2 1 1\n2 2 -2\n"), diagonal(real + "3 3 3\n1 1 4\n2 2 -1\n3 3 2\n"),
      hermitian(complex + "hermitian\n2 2 3\n1 1 3 0\n2 1 1 -1\n2 2 2 0\n"),
      hermitian_indefinite(complex + "hermitian\n2 2 3\n1 1 1 0\n2 1 3 -1\n2 2 1 0\n"),
      complex_symmetric(complex + "symmetric\n2 2 3\n1 1 3 1\n2 1 1 -1\n2 2 2 0\n"),
      general(complex + "general\n2 2 3\n1 1 3 1\n2 1 1 -1\n2 2 2 0\n");
  const struct {
    const test::temporary_file& file;
    std::string options;
    int type;
  } cases[] = {{definite, "", 2},           {definite, "--type 11", 11},
               {definite, "--type 4", 4},   {indefinite, "", -2},
               {negative, "", -2},          {diagonal, "", -2},
               {hermitian, "", 4},          {hermitian_indefinite, "", -4},
               {complex_symmetric, "", 6},  {general, "", 13},
               {hermitian, "--type 13", 13}};
  for (const auto& c : cases) {
    const command_result result = run("solve --json --rhs random " + c.options + " " + c.file.path());
    ASSERT_EQ(result.exit_code, 0) << result.output;
    const nlohmann::json report = nlohmann::json::parse(result.output);
    EXPECT_EQ(report["solver"]["type"], c.type) << c.options;
    EXPECT_LT(report["backward_error"].get<double>(), 1e-15);
    if (c.type == -2 && &c.file != &diagonal) {
      EXPECT_EQ(report["solver"]["inertia"]["negative"], &c.file == &negative ? 2 : 1);
    }
  }
}

TEST(Solve, DrawsPatternsAndTellsStatistics) {
  const test::temporary_file picture("");
  const command_result result =
      run("solve --stats --spy " + picture.path() + " " QEL_EXAMPLES "494_bus.mtx.gz");
  ASSERT_EQ(result.exit_code, 0) << result.output;
  for (const char* part : {"PARDISO: solving a symm. posit. def. system", "#supernodes:", "\nfill ",
                           "GFlop/s", "\nverdict         good: condition about "}) {
    EXPECT_TRUE(contains(result.output, part)) << part << '\n' << result.output;
  }
  FILE* const file = std::fopen(picture.path().c_str(), "r");
  char text[4096] = {};
  static_cast<void>(std::fread(text, 1, sizeof text - 1, file));
  std::fclose(file);
  EXPECT_TRUE(contains(text, "<svg ")) << text;
  EXPECT_TRUE(contains(text, "A: order 494, 1080 entries in its triangle")) << text;
}

TEST(Solve, KeepsFactorsInFilesOnRequest) {
  const test::temporary_file place("");
  const std::string folder = place.path() + ".d";
  ASSERT_EQ(mkdir(folder.c_str(), 0700), 0);
  const std::string system = " --ooc-path " + folder + " " QEL_EXAMPLES "orsirr_1.mtx.gz";
  const struct {
    const char* options;
    bool in_files;
  } cases[] = {{"--out-of-core", true}, {"--max-core 500", false}};
  for (const auto& c : cases) {
    const command_result result = run(std::string("solve --json ") + c.options + system);
    ASSERT_EQ(result.exit_code, 0) << result.output;
    const nlohmann::json report = nlohmann::json::parse(result.output);
    EXPECT_EQ(report["solver"]["out_of_core"], c.in_files);
    EXPECT_LT(report["backward_error"].get<double>(), 1e-14);
  }
  EXPECT_EQ(rmdir(folder.c_str()), 0) << "the files are gone";
  const command_result no_folder = run("solve --out-of-core" + system);
  EXPECT_EQ(no_folder.exit_code, 2);
  EXPECT_TRUE(contains(no_folder.output, "the files of the factors can't be opened")) << no_folder.output;
  const command_result too_little = run("solve --out-of-core --max-core 1 " QEL_EXAMPLES "orsirr_1.mtx.gz");
  EXPECT_EQ(too_little.exit_code, 2);
  EXPECT_TRUE(contains(too_little.output, "--max-core allows less")) << too_little.output;
}

TEST(Solve, TellsBadInputFromASingularMatrix) {
  const std::string header = "%%MatrixMarket matrix coordinate real general\n";
  const test::temporary_file rectangular(header + "2 3 1\n1 1 1\n"), malformed(header + "2 2 1\n1 1 x\n"),
      zero_row(header + "2 2 1\n1 1 1\n"), one(header + "1 1 1\n1 1 2\n"), empty(header + "0 0 0\n"),
      twins(header + "3 3 5\n1 1 1\n1 2 1\n2 1 1\n2 2 1\n3 3 2\n"),
      too_large(header + "2000000000 2000000000 0\n");
  const struct {
    std::string arguments;
    int exit_code;
    std::string says;
  } cases[] = {
      {"solve " + rectangular.path(), 2,
       rectangular.path() + ": the matrix is 2 by 3, but a system needs a square one"},
      {"solve " + malformed.path(), 2, malformed.path() + ":3: the value is not a number: \"x\""},
      {"solve /nonexistent.mtx", 2, "qel: /nonexistent.mtx: No such file or directory"},
      {"solve " + one.path() + " " + zero_row.path(), 2, zero_row.path() + ": 2 rows, but the matrix has 1"},
      {"solve " + one.path() + " -o /nonexistent/x.mtx", 2, "/nonexistent/x.mtx: No such file or directory"},
      {"solve " + one.path() + " b.mtx --rhs ones", 2, "excludes"},
      {"solve", 2, "A is required"},
      {"", 2, "subcommand is required"},
#ifndef QEL_NEW_ENDS_THE_PROCESS
      {"solve " + too_large.path(), 2, "not enough memory"},
#endif
      {"solve --dense " + zero_row.path(), 3, "the matrix is singular: pivot 2 of 2 is exactly zero"},
      {"solve " + zero_row.path(), 3, "singular: a diagonal matrix with a zero on its diagonal"},
      {"solve --rhs random " + twins.path(), 3, "the matrix is singular: 1 of 3 pivots were too small"},
      {"solve --type 2 " + twins.path(), 3, "the matrix is singular: no pivot in row"},
      {"solve --rhs random --type 6 " + twins.path(), 3, "the matrix is singular: 1 of 3"},
      {"solve --type 2 " QEL_EXAMPLES "orsirr_1.mtx.gz", 2,
       "type 2 (real symmetric, positive definite) does not suit the matrix"},
      {"solve --type 11 " QEL_DATA "c_west0067.mtx.gz", 2, "the matrix is complex, type 11 is real"},
      {"solve --type 5 " + one.path(), 2, "--type"},
      {"solve --dense --type 2 " + one.path(), 2, "excludes"},
      {"solve --spy /nonexistent/a.svg " + one.path(), 2, "/nonexistent/a.svg: No such file or directory"},
      {"solve --json " QEL_DATA "GD96_d.mtx.gz", 3, "\"status\": \"singular\""},
      {"solve " + empty.path(), 0, "0 by 0"},
      {"--version", 0, "qel 1."},
      {"solve --help", 0, "Exit codes"},
  };
  for (const auto& c : cases) {
    const command_result result = run(c.arguments);
    EXPECT_EQ(result.exit_code, c.exit_code) << c.arguments << '\n' << result.output;
    EXPECT_TRUE(contains(result.output, c.says)) << c.arguments << '\n' << result.output;
  }
}

/// A certified regression (NIST Misra1a) as a table.
const std::string kMisra =
    "# volume by pressure\ny,x\n10.07,77.6\n14.73,114.9\n17.94,141.1\n23.93,190.8\n29.61,239.9\n35.18,289.0\n"
    "40.02,332.8\n44.82,378.4\n50.76,434.8\n55.05,477.3\n61.01,536.8\n66.40,593.1\n75.47,689.1\n81.78,760."
    "0\n";

TEST(Fit, ReachesCertifiedValues) {
  const test::temporary_file data(kMisra), picture("");
  const command_result result = run("fit --json 'y = b1*(1-exp(-b2*x))' " + data.path() +
                                    " --start b1=500,b2=1e-4 --plot " + picture.path());
  ASSERT_EQ(result.exit_code, 0) << result.output;
  const nlohmann::json report = nlohmann::json::parse(result.output);
  const double want[2][2] = {{2.3894212918e2, 2.7070075241}, {5.5015643181e-4, 7.2668688436e-6}};
  for (size_t k = 0; k < 2; ++k) {
    const nlohmann::json& parameter = report["parameters"][k];
    EXPECT_NEAR(parameter["value"].get<double>(), want[k][0], 1e-7 * want[k][0]);
    EXPECT_NEAR(parameter["standard_error"].get<double>(), want[k][1], 1e-5 * want[k][1]);
  }
  EXPECT_NEAR(report["sum_of_squares"].get<double>(), 1.2455138894e-1, 1e-9);
  EXPECT_TRUE(contains(test::content_of(picture.path()), "<svg"));
  // The response is the last column unless named; a bound holds.
  const test::temporary_file line("x,y\n0,1\n1,3\n2,5\n3,7\n");
  const command_result bounded = run("fit 'a+b*x' " + line.path() + " --start a=0,b=1 --bounds b=:1.5");
  EXPECT_EQ(bounded.exit_code, 0);
  EXPECT_TRUE(contains(bounded.output, "b                                1.5")) << bounded.output;
}

TEST(Fit, NeverLeavesTheBounds) {
  // The best b is 0, below which the model is no number.
  const test::temporary_file data("x,y\n1,2\n2,4\n3,6.1\n4,7.9\n");
  const command_result result =
      run("fit --json 'y=a*x+sqrt(b)' " + data.path() + " --start a=1,b=1 --bounds b=0:");
  ASSERT_EQ(result.exit_code, 0) << result.output;
  const nlohmann::json report = nlohmann::json::parse(result.output);
  EXPECT_NEAR(report["parameters"][0]["value"].get<double>(), 2, 0.05);
  EXPECT_GE(report["parameters"][1]["value"].get<double>(), 0);
  EXPECT_LE(report["parameters"][1]["value"].get<double>(), 0.01);
}

TEST(Fit, TellsWhatIsWrong) {
  const test::temporary_file data(kMisra), short_row("x,y\n1,2\n3\n"), word("x,y\n1,2\n3,four\n"),
      empty("x,y\n");
  const struct {
    std::string arguments;
    const char* text;
  } rows[] = {
      {"'y=a*z' " + data.path() + " --start a=1",
       "z is neither a parameter (--start) nor a column of the data"},
      {"'y=a*(x' " + data.path() + " --start a=1", "the model: "},
      {"'w=a*x' " + data.path() + " --start a=1", "the response w is no column of the data"},
      {"'y=a*x' " + data.path() + " --start a=1,b=2", "parameter b does not occur in the model"},
      {"'y=a*x' " + data.path() + " --start a=one", "'one' in a=one is no number"},
      {"'y=a*x' " + data.path() + " --start a", "'a' is not NAME=VALUE"},
      {"'y=a*x' " + data.path() + " --start a=1 --bounds a=2:1", "bounds 'a=2:1' leave nothing"},
      {"'y=x*x' " + data.path() + " --start x=1", "x is a parameter and a column of the data"},
      {"'y=a*x' " + short_row.path() + " --start a=1", ":3: 1 values for 2 columns"},
      {"'y=a*x' " + word.path() + " --start a=1", ":3: 'four' is no number"},
      {"'y=a*x' " + empty.path() + " --start a=1", "no rows of numbers"},
      {"'y=a*x' /nowhere.csv --start a=1", "cannot be read"},
      {"'y=sqrt(-1-a*a)+x' " + data.path() + " --start a=1", "F or its Jacobian is not finite"},
  };
  for (const auto& row : rows) {
    const command_result result = run("fit " + row.arguments);
    EXPECT_NE(result.exit_code, 0) << row.arguments;
    EXPECT_TRUE(contains(result.output, row.text)) << row.arguments << '\n' << result.output;
  }
}

TEST(Check, TellsWhatIsUnusual) {
  const test::temporary_file odd(
      "%%MatrixMarket matrix coordinate real general\n3 3 5\n1 3 1\n1 1 2\n3 1 1\n3 3 3\n3 3 4\n");
  const command_result faulty = run("check " + odd.path());
  EXPECT_EQ(faulty.exit_code, 0);
  for (const char* line : {"3 by 3, 5 entries in full", "rows            0 to 3 entries, 1 of them empty",
                           "row 1 is not sorted: column 1 comes after a greater one",
                           "row 3 has column 3 more than once", "row 2 has no entry on the diagonal"})
    EXPECT_TRUE(contains(faulty.output, line)) << line << '\n' << faulty.output;
  const command_result good = run(std::string("check --json ") + QEL_EXAMPLES "494_bus.mtx.gz");
  const nlohmann::json report = nlohmann::json::parse(good.output);
  EXPECT_EQ(report["entries"], 1666);
  EXPECT_EQ(report["shortest_row"], 2);
  EXPECT_EQ(run("check /nowhere.mtx").exit_code, 2);
}

TEST(Info, TellsWhichVariablesHaveAnEffect) {
  setenv("QEL_DEBUG_CPU_TYPE", "2", 1);
  setenv("QEL_DEBUG_VECTOR_TYPE", "9", 1);
  unsetenv("QEL_MM_DISABLE");
  const command_result text = run("info"), json = run("info --json");
  unsetenv("QEL_DEBUG_CPU_TYPE");
  unsetenv("QEL_DEBUG_VECTOR_TYPE");
  EXPECT_EQ(text.exit_code, 0);
  EXPECT_TRUE(contains(text.output, "level       2 (forced by QEL_DEBUG_CPU_TYPE)")) << text.output;
  EXPECT_TRUE(contains(text.output, "\"9\" (ignored)")) << text.output;
  const nlohmann::json report = nlohmann::json::parse(json.output);
  EXPECT_EQ(report["processor"]["level"], 2);
  EXPECT_EQ(report["processor"]["on_line"].get<std::string>().front(), '0');
  EXPECT_GE(report["threads"]["BLAS"]["count"].get<int>(), 1);
  for (const auto& variable : report["environment"]) {
    EXPECT_EQ(variable["ignored"].get<bool>(), variable["name"] == "QEL_DEBUG_VECTOR_TYPE") << variable;
    if (variable["name"] == "QEL_MM_DISABLE") {
      EXPECT_EQ(variable["value"], nullptr);
    }
  }
}

}  // namespace
}  // namespace qel::cli
