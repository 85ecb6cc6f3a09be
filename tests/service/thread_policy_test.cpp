// SPDX-License-Identifier: BSD-3-Clause
// The thread policy: how variables are read, what is decided from them, how processors are counted, each on
// invented facts; and the process-wide queries in processes of their own.
#include "service/thread_policy.h"

#include <gtest/gtest.h>
#include <omp.h>
#include <sched.h>

#include <climits>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <map>
#include <string>
#include <thread>

#include "service/serv.h"
#include "service/threads.h"
#include "tests/support/in_child.h"

namespace qel {
namespace {

using variables = std::map<std::string, std::string>;
variables invented;

thread_settings read(const variables& values, thread_settings before = {}) {
  invented = values;
  const environment_lookup former = replace_environment([](const char* name) -> const char* {
    const auto found = invented.find(name);
    return found == invented.end() ? nullptr : found->second.c_str();
  });
  read_thread_environment(before);
  replace_environment(former);
  return before;
}

TEST(ThreadEnvironment, ReadsCountsAsTold) {
  const struct {
    const char* value;
    int want;
  } cases[] = {{"4", 4},     {"abc", 1}, {"4x", 1},
               {" 4", 1},    {"-3", 1},  {"0", kUnset},
               {"", kUnset}, {"007", 7}, {"99999999999999999999999", INT_MAX}};
  for (const auto& c : cases) {
    EXPECT_EQ(read({{"QEL_NUM_THREADS", c.value}}).count[kDomainAll], c.want) << c.value;
    EXPECT_EQ(read({{"OMP_NUM_THREADS", c.value}}).omp_count, c.want) << c.value;
  }
  thread_settings set_before;
  set_before.count[kDomainAll] = 3;
  EXPECT_EQ(read({{"QEL_NUM_THREADS", "8"}}, set_before).count[kDomainAll], 3) << "a setter came first";
}

TEST(ThreadEnvironment, ParsesDomainLists) {
  const struct {
    const char* list;
    int all, blas, fft, vml;
  } cases[] = {
      {"QEL_ALL=2, QEL_BLAS=4", 2, 4, kUnset, kUnset},
      {"\"QEL_BLAS=2;QEL_FFT=3\"", kUnset, 2, 3, kUnset},
      {"QEL_BLAS = = 5:QEL_VML 6", kUnset, 5, kUnset, 6},
      {"QEL_FFT=2 QEL_FFT=9", kUnset, kUnset, 2, kUnset},
      {"QEL_FFT=x2,QEL_VML=", kUnset, kUnset, 1, 1},
      {"qel_fft=4;QEL_NONE=3;QEL_VML=7", kUnset, kUnset, kUnset, 7},
      {"QEL_BLAS=0,QEL_BLAS=3", kUnset, 3, kUnset, kUnset},
      {"=4,QEL_BLAS=3", kUnset, kUnset, kUnset, kUnset},  // an empty name ends the list
      {"QEL_BLAS=4=QEL_FFT", kUnset, 1, kUnset, kUnset},  // "4=QEL_FFT" is no number
      {",;: '\"", kUnset, kUnset, kUnset, kUnset},
      {"QEL_BLAS", kUnset, 1, kUnset, kUnset},
      {"QEL_BLAS=12'QEL_FFT=3", kUnset, 12, 3, kUnset},
  };
  for (const auto& c : cases) {
    const thread_settings got = read({{"QEL_DOMAIN_NUM_THREADS", c.list}});
    EXPECT_EQ(got.count[kDomainAll], c.all) << c.list;
    EXPECT_EQ(got.count[kDomainBlas], c.blas) << c.list;
    EXPECT_EQ(got.count[kDomainFft], c.fft) << c.list;
    EXPECT_EQ(got.count[kDomainVml], c.vml) << c.list;
  }
  EXPECT_EQ(read({{"QEL_NUM_THREADS", "5"}, {"QEL_DOMAIN_NUM_THREADS", "QEL_ALL=2"}}).count[kDomainAll], 5);
}

TEST(ThreadEnvironment, DynamicIsOffOnlyForTwoWords) {
  const struct {
    const char* value;
    int want;
  } cases[] = {{"FALSE", 0},  {"false", 0}, {" 'FALSE'", 0}, {"\"false\" x", 0}, {"False", 1}, {"0", 1},
               {"FALSEX", 1}, {"TRUE", 1},  {"", 1}};
  for (const auto& c : cases) EXPECT_EQ(read({{"QEL_DYNAMIC", c.value}}).dynamic, c.want) << c.value;
  thread_settings set_before;
  set_before.dynamic = 1;
  EXPECT_EQ(read({{"QEL_DYNAMIC", "FALSE"}}, set_before).dynamic, 1);
}

TEST(ThreadEnvironment, MpiValuesIgnoreWhatIsMalformed) {
  const thread_settings good =
      read({{"I_MPI_NUMBER_OF_MPI_PROCESSES_PER_NODE", "4"}, {"I_MPI_THREAD_LEVEL", "2"}});
  EXPECT_EQ(good.ranks_per_node, 4);
  EXPECT_EQ(good.mpi_level, 2);
  const thread_settings bad =
      read({{"I_MPI_NUMBER_OF_MPI_PROCESSES_PER_NODE", "4x"}, {"I_MPI_THREAD_LEVEL", "9"}});
  EXPECT_EQ(bad.ranks_per_node, kUnset);
  EXPECT_EQ(bad.mpi_level, 0) << "present, but no level: 0";
  EXPECT_EQ(read({{"I_MPI_THREAD_LEVEL", "serial"}}).mpi_level, 0);
  EXPECT_EQ(read({}).mpi_level, kUnset);
}

struct decision_case {
  const char* name;
  variables environment;
  int domain;
  thread_facts facts;
  int want;
};

TEST(ThreadDecision, FollowsTheOrderOfPrecedence) {
  const auto facts = [](int omp, int cores) {
    thread_facts f;
    f.omp_max_threads = omp;
    f.cores = cores;
    return f;
  };
  thread_facts inside = facts(8, 8), local = facts(8, 8), child = facts(8, 8);
  inside.in_parallel = true;
  local.local_count = 3;
  child.forked_child = true;
  const char* kRanks = "I_MPI_NUMBER_OF_MPI_PROCESSES_PER_NODE";
  const decision_case cases[] = {
      {"nothing set", {}, 1, facts(8, 4), 4},
      {"nothing set, fewer wished", {}, 1, facts(2, 4), 2},
      {"malformed count", {{"QEL_NUM_THREADS", "abc"}}, 1, facts(8, 8), 1},
      {"count over cores", {{"QEL_NUM_THREADS", "64"}}, 1, facts(8, 4), 4},
      {"count over cores, not dynamic",
       {{"QEL_NUM_THREADS", "64"}, {"QEL_DYNAMIC", "FALSE"}},
       1,
       facts(8, 4),
       64},
      {"domain before all",
       {{"QEL_NUM_THREADS", "2"}, {"QEL_DOMAIN_NUM_THREADS", "QEL_FFT=3"}},
       2,
       facts(8, 8),
       3},
      {"all for other domains",
       {{"QEL_NUM_THREADS", "2"}, {"QEL_DOMAIN_NUM_THREADS", "QEL_FFT=3"}},
       1,
       facts(8, 8),
       2},
      {"domain 0 looks at all only", {{"QEL_DOMAIN_NUM_THREADS", "QEL_FFT=3"}}, 0, facts(8, 8), 8},
      {"unknown domain", {{"QEL_DOMAIN_NUM_THREADS", "QEL_ALL=3"}}, 77, facts(8, 8), 3},
      {"in a region", {{"QEL_NUM_THREADS", "4"}}, 1, inside, 1},
      {"in a region, not dynamic", {{"QEL_NUM_THREADS", "4"}, {"QEL_DYNAMIC", "false"}}, 1, inside, 4},
      {"restricted mask", {{"QEL_NUM_THREADS", "4"}}, 1, facts(8, 1), 1},
      {"rank alone", {{kRanks, "4"}}, 1, facts(16, 16), 1},
      {"rank with thread support", {{kRanks, "4"}, {"I_MPI_THREAD_LEVEL", "1"}}, 1, facts(16, 16), 4},
      {"rank, more ranks than cores", {{kRanks, "40"}, {"I_MPI_THREAD_LEVEL", "1"}}, 1, facts(16, 16), 1},
      {"rank with OpenMP count", {{kRanks, "4"}, {"OMP_NUM_THREADS", "8"}}, 1, facts(8, 16), 8},
      {"rank with explicit count", {{kRanks, "4"}, {"QEL_NUM_THREADS", "6"}}, 1, facts(16, 16), 6},
      {"rank, not dynamic", {{kRanks, "4"}, {"QEL_DYNAMIC", "FALSE"}}, 1, facts(16, 16), 16},
      {"local before domain", {{"QEL_DOMAIN_NUM_THREADS", "QEL_BLAS=6"}}, 1, local, 3},
      {"forked child", {{"QEL_DYNAMIC", "FALSE"}, {"QEL_NUM_THREADS", "6"}}, 1, child, 1},
      {"no OpenMP answer", {{"QEL_DYNAMIC", "FALSE"}}, 1, facts(0, 8), 1},
  };
  for (const decision_case& c : cases) {
    EXPECT_EQ(choose_threads(read(c.environment), c.domain, c.facts).threads, c.want) << c.name;
  }
}

TEST(ThreadDecision, ProcessModeOverridesTheRankRules) {
  thread_settings settings = read({{"I_MPI_NUMBER_OF_MPI_PROCESSES_PER_NODE", "4"}});
  thread_facts facts;
  facts.omp_max_threads = facts.cores = 8;
  settings.process_mode = 1;
  EXPECT_EQ(choose_threads(settings, 1, facts).threads, 8);
  settings.process_mode = 0;
  EXPECT_EQ(choose_threads(settings, 1, facts).threads, 1);
}

// An invented machine: packages x cores x threads, APIC ids composed of power-of-two fields.
struct machine {
  const char* vendor;
  int packages, cores, threads;
  int bits(int count) const { return count <= 1 ? 0 : 32 - __builtin_clz(static_cast<unsigned>(count - 1)); }
  uint32_t apic_id(int cpu) const {
    const int thread = cpu % threads, core = cpu / threads % cores, package = cpu / threads / cores;
    return static_cast<uint32_t>((package << (bits(cores) + bits(threads))) | core << bits(threads) | thread);
  }
};
machine present;
int bound_to = -1, binds = 0, restores = 0;
cpu_mask process_mask, system_mask;

cpuid_answer invented_cpuid(uint32_t leaf, uint32_t) {
  cpuid_answer answer{};
  if (leaf == 0) {
    answer.eax = 11;
    std::memcpy(&answer.ebx, present.vendor, 4);
    std::memcpy(&answer.edx, present.vendor + 4, 4);
    std::memcpy(&answer.ecx, present.vendor + 8, 4);
  } else if (leaf == 1) {
    const int logical = 1 << (present.bits(present.cores) + present.bits(present.threads));
    answer.ebx = (present.apic_id(std::max(bound_to, 0)) & 255) << 24 | static_cast<uint32_t>(logical) << 16;
    answer.edx = logical > 1 ? 1u << 28 : 0;
  } else if (leaf == 4) {
    answer.eax = static_cast<uint32_t>((1 << present.bits(present.cores)) - 1) << 26;
  }
  return answer;
}

constexpr affinity_calls kInvented{[](cpu_mask& process, cpu_mask& system) {
                                     process = process_mask;
                                     system = system_mask;
                                   },
                                   [](int cpu) {
                                     bound_to = cpu;
                                     ++binds;
                                     return true;
                                   },
                                   [] { ++restores; }};

processor_counts discover(const machine& m, const cpu_mask& process, const cpu_mask& system,
                          bool count = false) {
  present = m;
  process_mask = process;
  system_mask = system;
  binds = restores = 0;
  return discover_processors(invented_cpuid, kInvented, count);
}

TEST(Processors, CountsCoresByTheirApicIds) {
  const struct {
    machine what;
    int logical, cores;
  } cases[] = {
      {{"GenuineIntel", 1, 1, 1}, 1, 1},   {{"GenuineIntel", 1, 4, 2}, 8, 4},
      {{"GenuineIntel", 2, 6, 2}, 24, 12}, {{"GenuineIntel", 4, 8, 1}, 32, 32},
      {{"AuthenticAMD", 1, 8, 2}, 16, 16},
  };
  for (const auto& c : cases) {
    const auto all = static_cast<size_t>(c.what.packages * c.what.cores * c.what.threads);
    const processor_counts got = discover(c.what, cpu_mask(all, true), cpu_mask(all, true));
    EXPECT_EQ(got.logical, c.logical);
    EXPECT_EQ(got.cores, c.cores) << c.what.packages << ' ' << c.what.cores << ' ' << c.what.threads;
    EXPECT_FALSE(got.restricted);
    EXPECT_EQ(restores, 1);
  }
}

TEST(Processors, WalksManyAndSkipsOnesThatAreOffLine) {
  cpu_mask system(1024, true);
  EXPECT_EQ(discover({"GenuineIntel", 16, 32, 2}, system, system).logical, 1024);
  system.assign(1024, false);
  system[0] = system[2] = system[1023] = true;
  EXPECT_EQ(discover({"GenuineIntel", 16, 32, 2}, system, system).logical, 3);
  EXPECT_EQ(binds, 3);
}

TEST(Processors, ARestrictedMaskCountsOnlyOnRequest) {
  const cpu_mask system(8, true), process{true, true, false, false, true};
  const processor_counts assumed = discover({"GenuineIntel", 1, 4, 2}, process, system);
  EXPECT_TRUE(assumed.restricted);
  EXPECT_EQ(assumed.cores, 1);
  EXPECT_EQ(binds, 0) << "nothing is tried";
  const processor_counts counted = discover({"GenuineIntel", 1, 4, 2}, process, system, true);
  EXPECT_EQ(counted.logical, 3);
  EXPECT_EQ(counted.cores, 2) << "0 and 1 are threads of one core";
  EXPECT_FALSE(discover({"GenuineIntel", 1, 4, 2}, cpu_mask(8, true), cpu_mask{system}).restricted);
}

TEST(Processors, ReadsTheQuotaOfEitherControlGroupVersion) {
  namespace fs = std::filesystem;
  const fs::path root = fs::temp_directory_path() / ("qel_cgroup_" + std::to_string(getpid()));
  fs::create_directories(root / "v2/a/b");
  fs::create_directories(root / "v1/cpu,cpuacct/job");
  const auto write = [&](const char* name, const char* text) { std::ofstream(root / name) << text; };
  const auto quota = [&](const char* membership, const char* tree) {
    return control_group_quota((root / membership).c_str(), (root / tree).c_str());
  };
  write("member2", "0::/a/b\n");
  write("member1", "5:memory:/x\n4:cpu,cpuacct:/job\n");
  write("v2/a/b/cpu.max", "max 100000\n");
  EXPECT_EQ(quota("member2", "v2"), 0);
  write("v2/a/cpu.max", "250000 100000\n");
  EXPECT_EQ(quota("member2", "v2"), 3) << "two and a half processors, set above";
  write("v2/a/b/cpu.max", "100000 100000\n");
  EXPECT_EQ(quota("member2", "v2"), 1);
  write("v1/cpu,cpuacct/job/cpu.cfs_quota_us", "-1\n");
  write("v1/cpu,cpuacct/job/cpu.cfs_period_us", "100000\n");
  EXPECT_EQ(quota("member1", "v1"), 0);
  write("v1/cpu,cpuacct/job/cpu.cfs_quota_us", "400000\n");
  EXPECT_EQ(quota("member1", "v1"), 4);
  EXPECT_EQ(quota("absent", "v1"), 0);
  fs::remove_all(root);
}

/// body's int in a process with these variables.
template <class Body>
int in_process(const variables& values, Body body) {
  return test::in_child([&] {
           for (const char* name :
                {"QEL_NUM_THREADS", "QEL_DOMAIN_NUM_THREADS", "QEL_DYNAMIC", "QEL_AFFINITY"}) {
             unsetenv(name);
           }
           for (const auto& [name, value] : values) setenv(name.c_str(), value.c_str(), 1);
           return body();
         })
      .exit_status;
}

TEST(ThreadQueries, ReadTheEnvironmentOnce) {
  EXPECT_EQ(in_process({{"QEL_NUM_THREADS", "7"}, {"QEL_DYNAMIC", "FALSE"}},
                       [] {
                         const int first = serv_threads_all();
                         setenv("QEL_NUM_THREADS", "9", 1);
                         return 10 * first + serv_threads_for_domain(2);
                       }),
            77);
  EXPECT_EQ(in_process({}, [] { return serv_threads_dynamic(); }), 1);
}

TEST(ThreadQueries, SettersWinOverLaterReading) {
  const variables seven{
      {"QEL_NUM_THREADS", "7"}, {"QEL_DOMAIN_NUM_THREADS", "QEL_BLAS=6"}, {"QEL_DYNAMIC", "FALSE"}};
  EXPECT_EQ(in_process(seven,
                       [] {
                         serv_set_num_threads(3);
                         serv_set_num_threads(0);
                         return serv_threads_all();
                       }),
            3);
  EXPECT_EQ(in_process(seven,
                       [] {
                         const int refused = serv_set_domain_threads(-1, 1) + serv_set_domain_threads(2, 4) +
                                             serv_set_domain_threads(2, -1);
                         return 100 * refused + 10 * serv_set_domain_threads(5, 2) +
                                serv_threads_for_domain(2);
                       }),
            15);
  EXPECT_EQ(in_process(seven,
                       [] {
                         serv_set_domain_threads(0, 1);  // 0 is stored: the domain has no wish
                         return serv_threads_for_domain(1);
                       }),
            7);
  EXPECT_EQ(in_process(seven,
                       [] {
                         set_threads_over_environment(2);
                         return 10 * serv_threads_for_domain(1) + serv_threads_all();
                       }),
            22);
  EXPECT_EQ(in_process(seven,
                       [] {
                         const int before = set_threads_of_this_thread(4);
                         int other = 0;
                         std::thread([&] { other = serv_threads_for_domain(1); }).join();
                         const int own = serv_threads_for_domain(1), former = set_threads_of_this_thread(0);
                         return before == 0 && other == 6 && own == 4 && former == 4 &&
                                        serv_threads_for_domain(1) == 6
                                    ? 1
                                    : 0;
                       }),
            1);
}

// Apart, because a pragma inside a macro's argument would move out of it.
int query_in_and_after_a_region() {
  cpu_set_t before, after;
  sched_getaffinity(0, sizeof before, &before);
  int inside = -1;
#pragma omp parallel num_threads(2)
  {
#pragma omp master
    inside = serv_threads_for_domain(1);  // the first query of all
  }
  const int outside = serv_threads_for_domain(1);
  sched_getaffinity(0, sizeof after, &after);
  const int cores = known_processors().cores;
  return inside == 1 && outside == std::min(2, cores) && CPU_EQUAL(&before, &after) ? 1 : 0;
}

TEST(ThreadQueries, RefuseNestedRegionsAndRestoreTheAffinity) {
  EXPECT_EQ(in_process({{"QEL_NUM_THREADS", "2"}}, query_in_and_after_a_region), 1);
}

TEST(ThreadQueries, ARestrictedProcessRunsOnOneThreadUnlessCounted) {
  const auto restricted = [](const variables& values) {
    return in_process(values, [] {
      cpu_set_t one;
      CPU_ZERO(&one);
      CPU_SET(sched_getcpu(), &one);
      sched_setaffinity(0, sizeof one, &one);
      return serv_threads_all();
    });
  };
  EXPECT_EQ(restricted({{"QEL_NUM_THREADS", "2"}, {"QEL_AFFINITY", "count"}}), 1) << "one processor, counted";
}

TEST(ThreadQueries, AForkedChildGetsOneThread) {
  EXPECT_EQ(in_process({{"QEL_NUM_THREADS", "4"}, {"QEL_DYNAMIC", "FALSE"}},
                       [] {
                         if (serv_threads_all() != 4) return 9;
                         return test::in_child([] { return serv_threads_all(); }).exit_status;
                       }),
            1);
}

}  // namespace
}  // namespace qel
