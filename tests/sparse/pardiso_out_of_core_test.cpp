// SPDX-License-Identifier: BSD-3-Clause
// Calls whose factors go into files: the same solutions, the choice, the files' lives, failures and what is
// printed.
#include <omp.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>

#include "tests/sparse/pardiso_calls.h"

namespace qel::test {
namespace {

namespace fs = std::filesystem;

/// A folder for the files of a test, announced in the environment.
class OutOfCore : public testing::Test {
 protected:
  void SetUp() override {
    fs::create_directories(folder_);
    setenv("QEL_PARDISO_OOC_PATH", (folder_ + "/factors").c_str(), 1);
  }
  void TearDown() override {
    unsetenv("QEL_PARDISO_OOC_PATH");
    unsetenv("QEL_PARDISO_OOC_KEEP_FILE");
    unsetenv("QEL_PARDISO_OOC_MAX_CORE_SIZE");
    fs::remove_all(folder_);
  }
  std::vector<std::string> files() const {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(folder_)) names.push_back(entry.path().extension());
    std::sort(names.begin(), names.end());
    return names;
  }
  const std::string& folder() const { return folder_; }

 private:
  std::string folder_ = fs::temp_directory_path() / ("qel_calls_" + std::to_string(getpid()));
};

/// Everything as by default, but for the store.
template <class T>
void ask_for(solver_calls<T>& c, int mode) {
  const bool unsymmetric = c.mtype % 2 != 0;
  c.iparm(1) = 1;
  c.iparm(2) = 2;
  c.iparm(10) = unsymmetric ? 13 : 8;
  c.iparm(11) = c.iparm(13) = c.mtype == 11 || c.mtype == 13;
  c.iparm(18) = c.iparm(19) = -1;
  c.iparm(21) = 1;
  c.iparm(60) = mode;
}

template <class T>
void expect_same_solution(int type) {
  SCOPED_TRACE(type);
  const csr_arrays<T> matrix = csr_of<T>(as_type(grid(9, 8, 2), type));
  solver_calls<T> in_core(matrix, 2), in_files(matrix, 2);
  ask_for(in_core, 0);
  ask_for(in_files, 2);
  ASSERT_EQ(in_core.call(13), 0);
  ASSERT_EQ(in_files.call(11), 0);
  ASSERT_EQ(in_files.call(22), 0);
  ASSERT_EQ(in_files.call(33), 0);
  EXPECT_EQ(std::memcmp(in_core.x.data(), in_files.x.data(), in_core.x.size() * sizeof(T)), 0);
}

TEST_F(OutOfCore, SolutionsAreThoseOfMemory) {
  omp_set_num_threads(1);
  for (const int type : {1, 2, -2, 11}) expect_same_solution<double>(type);
  for (const int type : {3, 4, -4, 6, 13}) expect_same_solution<complex16>(type);
  EXPECT_EQ(files(), std::vector<std::string>());
}

TEST_F(OutOfCore, FilesLiveAsLongAsTheFactors) {
  const std::vector<std::string> symmetric = {".ind", ".jal", ".lnz", ".lup"};
  for (const char* keep : {"1", "0"}) {
    setenv("QEL_PARDISO_OOC_KEEP_FILE", keep, 1);
    {
      solver_calls<double> c(csr_of<double>(grid(9, 8, 1)));
      ask_for(c, 2);
      ASSERT_EQ(c.call(12), 0);
      EXPECT_EQ(files(), symmetric);
      EXPECT_EQ(fs::file_size(folder() + "/factors0.lnz") % sizeof(double), 0U);
      if (*keep == '1') {
        ASSERT_EQ(c.call(0), 0);
        EXPECT_EQ(files(), std::vector<std::string>());
        ASSERT_EQ(c.call(22), 0);
        ASSERT_EQ(c.call(11), 0);
        EXPECT_EQ(files(), std::vector<std::string>());
        ASSERT_EQ(c.call(23), 0);
      }
    }
    EXPECT_EQ(files(), *keep == '1' ? std::vector<std::string>() : symmetric);
  }
}

TEST_F(OutOfCore, TheChoiceAndItsLines) {
  const struct {
    const char* size;
    int mode, error;
    const char* line;
  } rows[] = {
      {"2000", 0, 0, "=== PARDISO is running in In-Core mode, because iparam(60)=0 ==="},
      {"2000", 1, 0,
       "=== PARDISO is running in In-Core mode, because iparam(60)=1 and there is enough RAM for In-Core "
       "==="},
      {"3", 1, 0,
       "=== PARDISO is running in Out-Of-Core mode, because iparam(60)=1 and there is not enough RAM for "
       "In-Core "
       "==="},
      {"2000", 2, 0, "=== PARDISO is running in Out-Of-Core mode, because iparam(60)=2 ==="},
      {"1", 2, -9, "=== PARDISO is running in Out-Of-Core mode, because iparam(60)=2 ==="},
  };
  for (const auto& row : rows) {
    setenv("QEL_PARDISO_OOC_MAX_CORE_SIZE", row.size, 1);
    solver_calls<double> c(csr_of<double>(grid(9, 8, 1)));
    ask_for(c, row.mode);
    c.msglvl = 1;
    const std::string text = printed_by([&] { EXPECT_EQ(c.call(11), row.error); });
    EXPECT_NE(text.find(row.line), std::string::npos) << text;
    const std::string echo = std::string("ooc_max_core_size\tgot by Env =  ") + row.size + "\n";
    EXPECT_EQ(text.find(echo) != std::string::npos, row.mode != 0) << text;
    if (row.error != 0) {
      EXPECT_NE(text.find("*** Error in PARDISO  ( not enough mem. for OOC) error_num= -9"),
                std::string::npos);
      EXPECT_GE(c.iparm(15), 2 * 1024);
    }
  }
}

TEST_F(OutOfCore, StatisticsTellOfTheFiles) {
  solver_calls<double> c(csr_of<double>(grid(30, 30, 1)));
  ask_for(c, 2);
  c.msglvl = 1;
  const std::string text = printed_by([&] { ASSERT_EQ(c.call(13), 0); });
  std::size_t from = 0;
  for (const char* part : {" Percentage of computed non-zeros for LL^T factorization\n",
                           " 100 % \n",
                           " Number of unknowns computed in forward solving step\n",
                           " 100 % \n",
                           " Number of unknowns computed in backward solving step\n",
                           " 100 % \n",
                           "      Time total  :",
                           " ==============================================================\n",
                           " ----------- Out of core time (in percent (%)) --------------\n",
                           "  Factorization step (100 (%)):\n",
                           "      write to files : ",
                           "      read from files: ",
                           "      factorization - write&read : ",
                           "  Solution step (100 (%)):\n",
                           "      solve - write&read: ",
                           "  Total time (100 (%)):\n",
                           "      total - write&read: ",
                           " ----------- Out of core Mb --------------\n",
                           "  Factorization step:\n",
                           "      write to files : ",
                           "  Solution step:\n",
                           "  Total size of data transferred :\n",
                           "      write&read        : ",
                           "      Factorization:\tTime for writing to files : ",
                           "      Factorization:\tTime for reading from files : ",
                           "      Solution:\tTime for reading from files : ",
                           "Statistics:\n"}) {
    const std::size_t at = text.find(part, from);
    ASSERT_NE(at, std::string::npos) << part << text;
    from = at + 1;
  }
}

TEST_F(OutOfCore, FailuresAreToldAndLeaveTheHandleUsable) {
  const csr_arrays<double> matrix = csr_of<double>(grid(9, 8, 1));
  {
    setenv("QEL_PARDISO_OOC_PATH", (folder() + "/nowhere/factors").c_str(), 1);
    solver_calls<double> c(matrix);
    ask_for(c, 2);
    c.msglvl = 1;
    ASSERT_EQ(c.call(11), 0);
    const std::string text = printed_by([&] { EXPECT_EQ(c.call(22), -10); });
    EXPECT_NE(text.find("*** Error in PARDISO  (      open OOC tmp files) error_num= -10"),
              std::string::npos);
    EXPECT_NE(text.find("The file open ind was not opened\n PARDISO_OOC_OPEN_FILE_ERROR occured: open ind\n"),
              std::string::npos)
        << text;
    EXPECT_NE(text.find("*** Error in PARDISO: unclassified error"), std::string::npos);
  }
  {
    // The limit leaves no room for panels in memory, so that the solve has to read what is gone.
    setenv("QEL_PARDISO_OOC_PATH", (folder() + "/factors").c_str(), 1);
    setenv("QEL_PARDISO_OOC_MAX_CORE_SIZE", "2", 1);
    solver_calls<double> c(matrix);
    ask_for(c, 2);
    ASSERT_EQ(c.call(12), 0);
    ASSERT_EQ(truncate((folder() + "/factors0.lnz").c_str(), 16), 0);
    c.msglvl = 1;
    c.iparm(4) = 31;  // else a solve does not fail
    const std::string text = printed_by([&] { EXPECT_EQ(c.call(33), -11); });
    EXPECT_NE(text.find("*** Error in PARDISO  (read/write OOC data file) error_num= -11"), std::string::npos)
        << text;
    EXPECT_NE(
        text.find("Read type = 2\nNumber of items read = 2\npardiso_read_ooc_file: Read error\nRead failed\n"
                  " PARDISO_OOC_NUMBER_OF_READ_NOT_EQUAL_COUNT occured: blkslv_ooc read for forward step"),
        std::string::npos)
        << text;
    c.msglvl = 0;
    c.iparm(4) = 0;
    EXPECT_EQ(c.call(23), 0);
    EXPECT_LT(c.backward_error(c.x, c.b), 1e-14);
  }
  EXPECT_EQ(files(), std::vector<std::string>());
}

}  // namespace
}  // namespace qel::test
