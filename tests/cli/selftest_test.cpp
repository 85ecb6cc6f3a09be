// SPDX-License-Identifier: BSD-3-Clause
// The self-test passes where nothing is wrong, and names family, level and routine where a kernel is broken.
#include <gtest/gtest.h>

#include <cmath>
#include <nlohmann/json.hpp>
#include <set>
#include <string>

#include "cli/selftest/levels.h"
#include "cli/selftest/recorder.h"
#include "tests/cli/command.h"

namespace qel::cli {
namespace {

using nlohmann::json;
using selftest::level_run;

bool has_level(int level) {
  for (const level_run& run : selftest::runs_of({}))
    if (run.level == level && !run.only_by_type) return true;
  return false;
}

TEST(Selftest, PassesOnEveryLevelOfThisMachine) {
  // Short families only: the whole of it is for users, and its parts are what the other tests are made of.
  const command_result result =
      run("selftest --json --family vectors --family conv --family direct --family nls --family random "
          "--family vml");
  ASSERT_EQ(result.exit_code, 0) << result.output;
  const json report = json::parse(result.output);
  EXPECT_EQ(report["verdict"], "ok");
  ASSERT_EQ(report["families"].size(), 6u);
  const size_t runs = selftest::runs_of({}).size();
  for (const json& family : report["families"]) {
    EXPECT_EQ(family["failed"], 0) << family;
    EXPECT_GE(family["cases"].get<int>(), 21) << family;
    const bool by_type = family.contains("types");
    EXPECT_EQ(family[by_type ? "types" : "levels"].size(), by_type ? runs : runs - (has_level(3) ? 1 : 0))
        << family;
  }
}

TEST(Selftest, FindsBrokenKernels) {
  const struct {
    const char *family, *levels, *routine;
    std::set<int> broken;
  } cases[] = {
      {"vectors", "levels", "ddot", {2, 3, 4}},  // the dot products of level 2 serve the next ones, too
      {"matrix", "levels", "dgemm", {3}},
      {"sparse", "levels", "dcsrmv", {4}},
      {"vml", "types", "vdMul", {4}},
  };
  for (const auto& c : cases) {
    const command_result result =
        run_program(QEL_FAULTY, std::string("selftest --json --family random --family ") + c.family);
    if (!has_level(*c.broken.rbegin())) continue;
    EXPECT_EQ(result.exit_code, 1) << c.family;
    const json report = json::parse(result.output);
    EXPECT_EQ(report["verdict"], "failed");
    for (const json& family : report["families"]) {
      EXPECT_EQ(family["verdict"], family["family"] == c.family ? "failed" : "ok") << family;
      std::set<int> found;
      for (const json& failure : family["failures"]) {
        found.insert(failure[c.levels == std::string("types") ? "type" : "level"].get<int>());
        EXPECT_EQ(failure["routine"], c.routine);
        EXPECT_GT(failure["error"].get<double>(), failure["bound"].get<double>());
      }
      if (family["family"] == c.family) {
        EXPECT_EQ(found, c.broken) << family;
      }
    }
  }
  const command_result text = run_program(QEL_FAULTY, "selftest --family vml");
  EXPECT_TRUE(contains(text.output, "FAILED")) << text.output;
  EXPECT_TRUE(contains(text.output, "type 4: vdMul n 9:")) << text.output;
}

TEST(Selftest, TellsOfAProcessThatEnds) {
  // A child that is told to be on another level than it is.
  const command_result result = run("selftest --child-level 9 --family random");
  EXPECT_TRUE(contains(result.output, "\"routine\":\"level\"")) << result.output;
}

TEST(Selftest, RefusesWhatThereIsNot) {
  const command_result family = run("selftest --family nothing");
  EXPECT_EQ(family.exit_code, 2);
  EXPECT_TRUE(contains(family.output, "there are vectors, ")) << family.output;
  EXPECT_EQ(run("selftest --level 7").exit_code, 2);
}

TEST(Selftest, KnowsWhatAProcessorCanRun) {
  constexpr uint32_t kUpToSse41 = 1 | 1 << 9 | 1 << 19, kUpToAvx = kUpToSse41 | 1 << 20 | 1 << 27 | 1 << 28;
  const struct {
    uint32_t features;
    uint64_t xcr0;
    size_t runs;
    int last_level;
  } cases[] = {{0, 0, 1, 0}, {1, 0, 2, 1}, {kUpToSse41, 0, 4, 2}, {kUpToAvx, 0, 5, 3}, {kUpToAvx, 7, 6, 4}};
  for (const auto& c : cases) {
    cpu_facts facts{};
    facts.features_c = c.features;
    facts.xcr0 = c.xcr0;
    const std::vector<level_run> runs = selftest::runs_on(facts);
    EXPECT_EQ(runs.size(), c.runs) << c.features;
    EXPECT_EQ(runs.back().level, c.last_level) << c.features;
  }
}

TEST(Selftest, CountsErrorsThatAreNoNumbers) {
  selftest::recorder out("any");
  out.compare("good", "1", 3, 4);
  out.compare("bad", "2", NAN, 4);
  out.compare("worse", "3", INFINITY, 4);
  EXPECT_EQ(out.result().cases, 3);
  EXPECT_EQ(out.result().failed, 2);
  const std::vector<double> got = {1, NAN, 1};
  EXPECT_TRUE(std::isnan(selftest::worst_error<double>(got, {{1, 0}, {1, 0}, {1, 0}}, {1, 1, 1})));
}

}  // namespace
}  // namespace qel::cli
