// SPDX-License-Identifier: BSD-3-Clause
// qel bench with programs that only pretend to measure, and its page as a browser shows it.
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <sstream>
#include <thread>

#include "cli/bench/families.h"
#include "cli/bench/results.h"
#include "cli/bench/writers.h"
#include "tests/cli/command.h"

namespace qel::cli {
namespace {

using nlohmann::ordered_json;
namespace files = std::filesystem;

std::string text_of(const files::path& path) {
  std::ifstream file(path);
  std::stringstream text;
  text << file.rdbuf();
  return text.str();
}

/// A folder with the command in it and benchmark programs that are shell scripts.
class staged_command {
 public:
  staged_command() {
    char name[] = "/tmp/qel_bench_XXXXXX";
    folder_ = mkdtemp(name);
    std::error_code error;
    files::create_hard_link(QEL_COMMAND, folder_ / "qel", error);
    if (error) files::copy_file(QEL_COMMAND, folder_ / "qel");
    add("machine", record("peak", "QEL", "2e-3", ",\"flop/s\":4e10") +
                       record("read", "QEL", "1e-2", ",\"byte/s\":2e10"));
  }
  ~staged_command() { files::remove_all(folder_); }
  staged_command(const staged_command&) = delete;
  staged_command& operator=(const staged_command&) = delete;

  void add(const std::string& family, const std::string& script) const {
    const files::path path = folder_ / ("qel-bench-" + family);
    std::ofstream(path) << "#!/bin/sh\necho \"$@\" > " << (folder_ / family).string() << ".arguments\nenv > "
                        << (folder_ / family).string() << ".environment\n"
                        << script;
    chmod(path.c_str(), 0755);
  }
  static std::string record(const std::string& name, const std::string& contender, const std::string& seconds,
                            const std::string& more = "") {
    return "printf '\\036{\"case\":\"" + name + "\",\"contender\":\"" + contender +
           "\",\"seconds\":" + seconds + ",\"least\":1e-3,\"most\":1" + more + "}\\n'\n";
  }
  command_result run(const std::string& arguments) const {
    return run_program((folder_ / "qel").string(), "bench " + arguments);
  }
  std::string path(const std::string& name) const { return (folder_ / name).string(); }

 private:
  files::path folder_;
};

TEST(Bench, ReadsWhatTheProgramsTell) {
  const staged_command staged;
  staged.add("vector", "echo noise\nprintf '\\036{\"planned_runs\":4}\\n\\036run\\n\\036run\\n'\n" +
                           staged_command::record("vdDiv/n:100", "QEL", "2e-3", ",\"byte/s\":1.2e9") +
                           staged_command::record("vdDiv/n:100", "plain", "3e-3", ",\"byte/s\":8e8") +
                           staged_command::record("vdDiv/n:100", "copy", "1e-3") +
                           staged_command::record("peer only", "plain", "1e-3"));
  const command_result result =
      staged.run("--family vector --quick --threads 3 --json " + staged.path("out.json") + " --html " +
                 staged.path("out.html") + " --markdown " + staged.path("out.md"));
  ASSERT_EQ(result.exit_code, 0) << result.output;
  EXPECT_TRUE(contains(result.output, "1.50   1.50 vdDiv/n:100 (plain)")) << result.output;
  const ordered_json document = ordered_json::parse(text_of(staged.path("out.json")));
  EXPECT_EQ(document["processor"]["peak_flops"], 8e10);  // of the best repetition
  EXPECT_EQ(document["settings"]["threads"], 3);
  ASSERT_EQ(document["families"][0]["cases"].size(), 1u);
  EXPECT_EQ(document["families"][0]["cases"][0]["panel"], "vdDiv");
  EXPECT_EQ(document["families"][0]["cases"][0]["results"].size(), 3u);
  EXPECT_TRUE(contains(text_of(staged.path("vector.environment")), "OMP_NUM_THREADS=3\n"));
  EXPECT_TRUE(contains(text_of(staged.path("vector.environment")), "QEL_BENCH_CASES=^(vdDiv|"));
  EXPECT_TRUE(contains(text_of(staged.path("vector.arguments")), "--benchmark_repetitions=5"));
  EXPECT_TRUE(contains(text_of(staged.path("out.md")), "| `vdDiv/n:100` | 2 ms | 1.2 GB/s | 1.50 | 0.50 |"))
      << text_of(staged.path("out.md"));
  EXPECT_TRUE(contains(text_of(staged.path("out.html")), "\"vdDiv/n:100\""));
}

TEST(Bench, ChoosesPeers) {
  const staged_command staged;
  staged.add("vector", staged_command::record("vdDiv/n:100", "QEL", "2e-3"));
  const struct {
    const char *peers, *variable;
  } cases[] = {{"none", "QEL_BENCH_ONLY=none\n"}, {"plain,standard", "QEL_BENCH_ONLY=none,plain,standard\n"}};
  for (const auto& c : cases) {
    EXPECT_EQ(staged.run(std::string("--quick --family vector --peers ") + c.peers).exit_code, 0);
    EXPECT_TRUE(contains(text_of(staged.path("vector.environment")), c.variable)) << c.peers;
  }
  EXPECT_EQ(staged.run("--quick --family vector").exit_code, 0);
  EXPECT_FALSE(contains(text_of(staged.path("vector.environment")), "QEL_BENCH_ONLY"));
}

TEST(Bench, RefusesWhatThereIsNot) {
  const struct {
    const char *arguments, *text;
  } cases[] = {{"--family nothing", "there is no family nothing; there are level1, "},
               {"--peers Nobody", "there is no peer 'Nobody'"},
               {"--peers OpenBLAS,", "there is no peer ''"},
               {"--threads 0", "--threads"},
               {"--from " QEL_BENCH_RESULTS " --html /nowhere/page.html", "can't be written"},
               {"--from /nowhere.json", "can't be read"},
               {"--from /proc/self/status", "no file of qel bench"}};
  for (const auto& c : cases) {
    const command_result result = run(std::string("bench ") + c.arguments);
    EXPECT_EQ(result.exit_code, 2) << c.arguments;
    EXPECT_TRUE(contains(result.output, c.text)) << result.output;
  }
}

TEST(Bench, TellsOfProgramsThatFail) {
  const staged_command staged;
  staged.add("vector", staged_command::record("vdDiv/n:100", "QEL", "2e-3") + "kill -9 $$\n");
  staged.add("conv", "exit 3\n");
  const command_result result = staged.run("--quick --family vector --family conv --family nls");
  EXPECT_EQ(result.exit_code, 1);
  for (const char* text : {"qel-bench-vector was ended by signal 9", "qel-bench-conv ended with code 3",
                           "qel-bench-nls is not there"})
    EXPECT_TRUE(contains(result.output, text)) << result.output;
}

/// Whether any process has this in its environment.
bool lives(const std::string& mark) {
  for (const auto& entry : files::directory_iterator("/proc")) {
    const std::string name = entry.path().filename().string();
    if (name.find_first_not_of("0123456789") != std::string::npos || name == std::to_string(getpid()))
      continue;
    if (contains(text_of(entry.path() / "environ"), mark)) return true;
  }
  return false;
}

TEST(Bench, LeavesNoChildrenBehind) {
  const staged_command staged;
  staged.add("vector", "exec sleep 60\n");
  const std::string mark = "QEL_TEST_MARK=" + staged.path("mark");
  const pid_t pid = fork();
  if (pid == 0) {
    signal(SIGINT, SIG_DFL);  // what runs the tests in the background has it ignored
    setenv("QEL_TEST_MARK", staged.path("mark").c_str(), 1);
    execl(staged.path("qel").c_str(), "qel", "bench", "--family", "vector", "--quick", nullptr);
    _exit(127);
  }
  const auto wait_until = [](const auto& condition) {
    for (int i = 0; i < 500 && !condition(); ++i) std::this_thread::sleep_for(std::chrono::milliseconds(20));
    return condition();
  };
  EXPECT_TRUE(wait_until([&] { return files::exists(staged.path("vector.environment")); }));
  EXPECT_TRUE(lives(mark));
  kill(pid, SIGINT);
  waitpid(pid, nullptr, 0);
  EXPECT_TRUE(wait_until([&] { return !lives(mark); }));
}

TEST(Bench, PutsCasesIntoPanels) {
  const struct {
    const char *name, *panel;
    double size;
  } cases[] = {{"ddot/n:1000", "ddot", 1000},
               {"dgemm/NN/m:64/n:64/k:64", "dgemm NN", 64},
               {"dtrsm/LLN/m:300/n:300/k:0", "dtrsm LLN", 300},
               {"dgemm/NN/m:2000/n:2000/k:32", "dgemm NN", 0},
               {"dgetrs/n:64/nrhs:16", "dgetrs nrhs:16", 64},
               {"dpotrf/n:100/U", "dpotrf U", 100},
               {"sgemv/N/n:64/inc:3", "sgemv N inc:3", 64},
               {"pow2/z/1024", "pow2 z", 1024},
               {"2d/z/64x64", "2d z", 4096},
               {"batch/z/256*1000", "batch z 256*1000", 0},
               {"conv/4096x128", "conv", 524288},
               {"csrmv/general/grid2d:300", "csrmv general grid2d", 300},
               {"factor/spd/grid3d:1e4", "factor spd grid3d", 10000}};
  for (const auto& c : cases) {
    const bench::case_place place = bench::place_of(c.name);
    EXPECT_EQ(place.panel, c.panel) << c.name;
    EXPECT_EQ(place.size, c.size) << c.name;
  }
}

TEST(Bench, SummarisesBesideTheBestPeer) {
  bench::family_results family;
  const auto add = [&](const char* name, std::vector<std::pair<const char*, double>> seconds) {
    for (const auto& [contender, time] : seconds)
      bench::add_record(family, {{"case", name}, {"contender", contender}, {"seconds", time}});
  };
  add("one", {{"QEL", 1}, {"slow", 9}, {"fast", 4}, {"copy", 0.1}, {"QEL-other", 0.5}});
  add("two", {{"QEL", 2}, {"fast", 2}});
  add("alone", {{"QEL", 2}, {"copy", 1}});
  const bench::family_summary summary = bench::summarise(family);
  EXPECT_EQ(summary.cases, 3);
  EXPECT_EQ(summary.compared, 2);
  EXPECT_DOUBLE_EQ(summary.ratio, 2);
  EXPECT_EQ(summary.worst_case, "two");
  EXPECT_EQ(summary.worst_peer, "fast");
  EXPECT_EQ(summary.best, 4);
  EXPECT_DOUBLE_EQ(summary.share, std::sqrt(0.1 * 0.5));
}

TEST(Bench, WhatReadsTheOperandsIsALimitAndNoPeer) {
  bench::family_results family;
  for (const auto& [contender, time] : {std::pair{"QEL", 2}, {"stream", 1}, {"Eigen", 3}})
    bench::add_record(family, {{"case", "csrmv"}, {"contender", contender}, {"seconds", time}});
  const bench::family_summary summary = bench::summarise(family);
  EXPECT_EQ(summary.worst_peer, "Eigen");
  EXPECT_DOUBLE_EQ(summary.ratio, 1.5);
  EXPECT_DOUBLE_EQ(summary.share, 0.5);
}

TEST(Bench, ShowsAPageThatFitsPhonesAndDesks) {
  const std::string page = "/tmp/qel_bench_page_" + std::to_string(getpid()) + ".html";
  ASSERT_EQ(run("bench --from " QEL_BENCH_RESULTS " --html " + page).exit_code,
            1);  // it has a family with a note
  EXPECT_FALSE(contains(text_of(page), "</script><b>")) << "data end the script";
  const command_result looked = run_program("python3 " QEL_LOOK_AT_PAGE, page + " 360 1280");
  files::remove(page);
  if (looked.exit_code == 77 || looked.exit_code == 127) GTEST_SKIP() << "no browser";
  const ordered_json found = ordered_json::parse(looked.output, nullptr, false);
  ASSERT_TRUE(found.is_array() && found.size() == 2) << looked.output;
  for (const ordered_json& view : found) {
    EXPECT_EQ(view["plots"], 4) << view;
    EXPECT_EQ(view["curves"], 12) << view;
    EXPECT_EQ(view["marks"], 47) << view;
    EXPECT_EQ(view["overview"], 1) << view;
    EXPECT_EQ(view["tables"], 4) << view;
    EXPECT_EQ(view["page_scrolls"], false) << view;
    for (const char* nothing : {"overflowing", "loaded", "console"})
      EXPECT_TRUE(view[nothing].empty()) << view;
  }
}

}  // namespace
}  // namespace qel::cli
