// SPDX-License-Identifier: BSD-3-Clause
// The out-of-core store below the solver: the choice, the configuration, the files and what goes wrong with
// them.
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <numeric>
#include <string>
#include <vector>

#include "service/environment.h"
#include "sparse/pardiso/ooc/configuration.h"
#include "sparse/pardiso/ooc/file_calls.h"
#include "sparse/pardiso/ooc/files.h"
#include "sparse/pardiso/ooc/store_choice.h"
#include "tests/support/in_child.h"

namespace qel::test {
namespace {

using namespace pardiso;  // NOLINT: the codes are many
namespace fs = std::filesystem;

TEST(StoreChoice, ByRequestAndMemory) {
  using enum store_reason;
  const struct {
    store_facts facts;
    store_choice expected;
  } cases[] = {
      {{0, 5000, 4000, 100, 2000}, {false, requested_in_core, true, 0}},
      {{1, 1999, 1500, 100, 2000}, {false, enough_memory, true, 0}},
      {{1, 2000, 1500, 100, 2000}, {true, not_enough_memory, true, 101}},
      {{1, 1990, 1998, 100, 2000}, {true, not_enough_memory, true, 101}},
      {{1, 1990, 1997, 100, 2000}, {false, enough_memory, true, 0}},
      {{1, 9000, 8000, 2000, 2000}, {true, not_enough_memory, false, 2001}},
      {{2, 10, 5, 1999, 2000}, {true, requested_out_of_core, true, 2000}},
      {{2, 10, 5, 2000, 2000}, {true, requested_out_of_core, false, 2001}},
  };
  for (const auto& one : cases) {
    const store_choice got = choose_store(one.facts);
    EXPECT_EQ(got.out_of_core, one.expected.out_of_core);
    EXPECT_EQ(got.reason, one.expected.reason);
    EXPECT_EQ(got.fits, one.expected.fits);
    EXPECT_EQ(got.need, one.expected.need);
  }
}

TEST(StoreConfiguration, Lines) {
  const struct {
    const char* line;
    const char* path;
    int max_core_size, keep_file;
  } cases[] = {
      {"qel_pardiso_ooc_path = /tmp/a b  # where\n", "/tmp/a b", 2000, 1},
      {"qel_pardiso_ooc_path=x\r\n", "x", 2000, 1},
      {"\tqel_pardiso_ooc_max_core_size  =\t512 MB\n", "ooc_temp", 512, 1},
      {"qel_pardiso_ooc_keep_file = 0", "ooc_temp", 2000, 0},
      {"# qel_pardiso_ooc_keep_file = 0", "ooc_temp", 2000, 1},
      {"qel_pardiso_ooc_max_core_size = many", "ooc_temp", 2000, 1},
      {"qel_pardiso_ooc_path =", "ooc_temp", 2000, 1},
      {"qel_pardiso_ooc_paths = x", "ooc_temp", 2000, 1},
      {"qel_pardiso_ooc_flag = 2", "ooc_temp", 2000, 1},
      {"no equals sign", "ooc_temp", 2000, 1},
      {"", "ooc_temp", 2000, 1},
  };
  for (const auto& one : cases) {
    store_configuration got;
    apply_store_line(one.line, got);
    EXPECT_STREQ(got.path, one.path) << one.line;
    EXPECT_EQ(got.max_core_size, one.max_core_size) << one.line;
    EXPECT_EQ(got.keep_file, one.keep_file) << one.line;
  }
  store_configuration longest;
  apply_store_line(("qel_pardiso_ooc_path=" + std::string(3000, 'p')).c_str(), longest);
  EXPECT_EQ(std::string(longest.path), std::string(1000, 'p'));
}

class StoreFiles : public testing::Test {
 protected:
  StoreFiles() {
    char made[] = "/tmp/qel-store-XXXXXX";
    folder_ = mkdtemp(made);
    prefix_ = folder_ + "/t";
    set_ = {prefix_.c_str(), -1, 1, false, false, {}};
  }
  ~StoreFiles() override {
    replace_file_calls(nullptr);
    fs::remove_all(folder_);
  }
  size_t files() const {
    return static_cast<size_t>(std::distance(fs::directory_iterator(folder_), fs::directory_iterator{}));
  }
  std::string folder_, prefix_;
  ooc_file_set set_;
};

std::map<std::string, std::string> variables;

TEST_F(StoreFiles, EnvironmentWinsOverTheFile) {
  std::ofstream(folder_ + "/mine.cfg")
      << "# a comment\nqel_pardiso_ooc_path = from_file\n"
         "qel_pardiso_ooc_max_core_size = 77\nqel_pardiso_ooc_keep_file = 0\n";
  variables = {{"QEL_PARDISO_OOC_CFG_PATH", folder_},
               {"QEL_PARDISO_OOC_CFG_FILE_NAME", "mine.cfg"},
               {"QEL_PARDISO_OOC_MAX_CORE_SIZE", "88"}};
  const environment_lookup before = replace_environment([](const char* name) -> const char* {
    const auto found = variables.find(name);
    return found == variables.end() ? nullptr : found->second.c_str();
  });
  store_configuration got;
  const store_environment from = read_store_configuration(got);
  EXPECT_STREQ(got.path, "from_file");
  EXPECT_EQ(got.max_core_size, 88);
  EXPECT_EQ(got.keep_file, 0);
  EXPECT_TRUE(from.configuration_path && from.configuration_file && from.max_core_size);
  EXPECT_FALSE(from.path || from.keep_file);

  variables["QEL_PARDISO_OOC_PATH"] = "from_variable";
  variables["QEL_PARDISO_OOC_CFG_FILE_NAME"] = "missing.cfg";
  store_configuration without_file;
  EXPECT_TRUE(read_store_configuration(without_file).path);
  EXPECT_STREQ(without_file.path, "from_variable");
  EXPECT_EQ(without_file.keep_file, 1);
  replace_environment(before);
}

TEST_F(StoreFiles, ArraysComeBack) {
  ASSERT_EQ(start_ooc_files(set_), PARDISO_OOC_NO_ERROR);
  std::vector<double> written(1000), back(600);
  std::iota(written.begin(), written.end(), 1.0);
  ooc_file file;
  ASSERT_EQ(open_ooc_file(set_, ooc_lnz, "w+b", file), PARDISO_OOC_NO_ERROR);
  // Out of order, so that a hole is filled later.
  EXPECT_EQ(pardiso_write_ooc_file(file, 8, 500, 500, written.data() + 500), PARDISO_OOC_NO_ERROR);
  EXPECT_EQ(pardiso_write_ooc_file(file, 8, 0, 500, written.data()), PARDISO_OOC_NO_ERROR);
  EXPECT_EQ(close_ooc_file(file), PARDISO_OOC_NO_ERROR);
  EXPECT_EQ(fs::file_size(prefix_ + "0.lnz"), 8000U);

  ASSERT_EQ(open_ooc_file(set_, ooc_lnz, "r+b", file), PARDISO_OOC_NO_ERROR);
  EXPECT_EQ(pardiso_read_ooc_file(file, 8, 200, 600, back.data()), PARDISO_OOC_NO_ERROR);
  EXPECT_TRUE(std::equal(back.begin(), back.end(), written.begin() + 200));
  EXPECT_EQ(file.bytes_read, 4800);
  EXPECT_EQ(pardiso_read_ooc_file(file, 8, 1000, 0, nullptr), PARDISO_OOC_NO_ERROR);
  EXPECT_EQ(pardiso_read_ooc_file(file, 8, 999, 2, back.data()), PARDISO_OOC_NUMBER_OF_READ_NOT_EQUAL_COUNT);
  EXPECT_EQ(pardiso_read_ooc_file(file, 8, 1000, 2, back.data()), PARDISO_OOC_NUMBER_OF_READ_EQUAL_ZERO);
  EXPECT_EQ(pardiso_read_ooc_file(file, 8, -1, 2, back.data()), PARDISO_OOC_READ_EOF_ERROR);
  EXPECT_EQ(pardiso_read_ooc_file(file, 8, -2, 2, back.data()), PARDISO_OOC_READ_INPUT_PARAMETERS_INCORRECT);
  EXPECT_EQ(pardiso_read_ooc_file(file, 0, 0, 2, back.data()), PARDISO_OOC_READ_INPUT_PARAMETERS_INCORRECT);
  EXPECT_EQ(pardiso_read_ooc_file(file, 8, 0, -1, back.data()), PARDISO_OOC_READ_INPUT_PARAMETERS_INCORRECT);
  EXPECT_EQ(pardiso_read_ooc_file(file, 8, 0, INT64_MAX / 4, back.data()),
            PARDISO_OOC_READ_INPUT_PARAMETERS_INCORRECT);
  EXPECT_EQ(pardiso_write_ooc_file(file, 8, -1, 1, back.data()), PARDISO_OOC_WRITE_EOF_ERROR);
  EXPECT_EQ(pardiso_write_ooc_file(file, 8, 0, 1, nullptr), PARDISO_OOC_WRITE_INPUT_PARAMETERS_INCORRECT);
  close_ooc_file(file);
  EXPECT_EQ(pardiso_read_ooc_file(file, 8, 0, 1, back.data()), PARDISO_OOC_READ_INPUT_PARAMETERS_INCORRECT);
  EXPECT_EQ(open_ooc_file(set_, ooc_lnz, "rb", file), PARDISO_OOC_OPEN_MODE_FILE_ERROR);
}

TEST_F(StoreFiles, SetsKeepApartAndDeleteTheirOwn) {
  ooc_file_set other = set_;
  ASSERT_EQ(start_ooc_files(set_), PARDISO_OOC_NO_ERROR);
  ASSERT_EQ(start_ooc_files(other), PARDISO_OOC_NO_ERROR);
  EXPECT_NE(set_.number, other.number);
  const struct {
    bool symmetric, scaled;
    int threads;
    std::vector<int> kinds;
  } cases[] = {{true, false, 1, {1, 2, 4, 6}},
               {true, true, 2, {1, 2, 4, 6, 8, 10, 11}},
               {false, false, 1, {1, 2, 3, 4, 5, 6, 7}},
               {false, true, 1, {1, 2, 3, 4, 5, 6, 7, 8, 9}}};
  for (const auto& one : cases) {
    set_.symmetric = one.symmetric, set_.scaled = one.scaled, set_.threads = one.threads;
    std::vector<int> kinds;
    for (int kind = 0; kind <= kOocKinds + 1; ++kind)
      if (has_kind(set_, kind)) kinds.push_back(kind);
    EXPECT_EQ(kinds, one.kinds);
  }
  ooc_file file;
  for (const int kind : {ooc_lnz, ooc_unz, ooc_u_perm_row}) {
    ASSERT_EQ(open_ooc_file(set_, kind, "w+b", file), PARDISO_OOC_NO_ERROR);
    close_ooc_file(file);
  }
  EXPECT_EQ(files(), 5U);
  EXPECT_EQ(delete_ooc_files(set_), PARDISO_OOC_NO_ERROR);
  EXPECT_EQ(files(), 1U);
  EXPECT_EQ(open_ooc_file(set_, ooc_lnz, "w+b", file), PARDISO_OOC_OPEN_FILE_ERROR);
  fs::remove(prefix_ + std::to_string(other.number) + ".ind");
  EXPECT_EQ(delete_ooc_files(other), PARDISO_OOC_DELETE_FILE_ERROR);
}

// The first file goes first: what is left of a set belongs to an owner who still deletes.
TEST_F(StoreFiles, SetsThatAreBeingDeletedAreNotTaken) {
  for (const char* const left : {"0.lnz", "1.sle"}) std::ofstream(prefix_ + left) << "x";
  ASSERT_EQ(start_ooc_files(set_), PARDISO_OOC_NO_ERROR);
  EXPECT_EQ(set_.number, 2);
  EXPECT_EQ(files(), 3U);
}

TEST_F(StoreFiles, PlacesThatCannotBeWritten) {
  std::ofstream(folder_ + "/file") << "x";
  for (const std::string& prefix :
       {folder_ + "/missing/t", folder_ + "/file/t", std::string("/proc/t"), std::string(990, 'x') + "/t"}) {
    set_.path = prefix.c_str();
    EXPECT_EQ(start_ooc_files(set_), PARDISO_OOC_OPEN_FILE_ERROR) << prefix;
    EXPECT_EQ(ooc_status(PARDISO_OOC_OPEN_FILE_ERROR).error, -10);
  }
}

TEST_F(StoreFiles, FullDisk) {
  const child_result child = in_child([&] {
    signal(SIGXFSZ, SIG_IGN);
    const rlimit limit{5000, 5000};
    setrlimit(RLIMIT_FSIZE, &limit);
    const std::vector<char> bytes(4000);
    ooc_file file;
    if (start_ooc_files(set_) != PARDISO_OOC_NO_ERROR) return 1;
    if (open_ooc_file(set_, ooc_lnz, "w+b", file) != PARDISO_OOC_NO_ERROR) return 2;
    if (pardiso_write_ooc_file(file, 8, 0, 500, bytes.data()) != PARDISO_OOC_NO_ERROR) return 3;
    if (pardiso_write_ooc_file(file, 8, 500, 500, bytes.data()) !=
        PARDISO_OOC_NUMBER_OF_WRITE_NOT_EQUAL_COUNT)
      return 4;
    if (pardiso_write_ooc_file(file, 8, 1000, 500, bytes.data()) != PARDISO_OOC_NUMBER_OF_WRITE_EQUAL_ZERO)
      return 5;
    close_ooc_file(file);
    return delete_ooc_files(set_) == PARDISO_OOC_NO_ERROR ? 0 : 6;
  });
  EXPECT_EQ(child.exit_status, 0);
  EXPECT_EQ(files(), 0U);
}

TEST_F(StoreFiles, FaultsOfTheSystem) {
  static file_calls faulty;
  faulty = kSystemFiles;
  replace_file_calls(&faulty);
  ooc_file file;
  double item = 1;
  ASSERT_EQ(start_ooc_files(set_), PARDISO_OOC_NO_ERROR);
  ASSERT_EQ(open_ooc_file(set_, ooc_lnz, "w+b", file), PARDISO_OOC_NO_ERROR);
  faulty.seek = [](int, int64_t) { return false; };
  EXPECT_EQ(pardiso_read_ooc_file(file, 8, 0, 1, &item), PARDISO_OOC_READ_SEEK_ERROR);
  EXPECT_EQ(pardiso_write_ooc_file(file, 8, 0, 1, &item), PARDISO_OOC_WRITE_SEEK_ERROR);
  faulty.seek = kSystemFiles.seek;
  faulty.read = [](int, void*, int64_t) -> int64_t { return -1; };
  faulty.write = [](int, const void*, int64_t) -> int64_t { return -1; };
  EXPECT_EQ(pardiso_read_ooc_file(file, 8, 0, 1, &item), PARDISO_OOC_NUMBER_OF_READ_EQUAL_ZERO);
  EXPECT_EQ(pardiso_write_ooc_file(file, 8, 0, 1, &item), PARDISO_OOC_NUMBER_OF_WRITE_EQUAL_ZERO);
  EXPECT_EQ(file.bytes_written, 0);
  faulty.close = [](int descriptor) { return kSystemFiles.close(descriptor) && false; };
  EXPECT_EQ(close_ooc_file(file), PARDISO_OOC_CLOSE_FILE_ERROR);
  EXPECT_EQ(close_ooc_file(file), PARDISO_OOC_NO_ERROR);
  for (int code = PARDISO_OOC_OPEN_MODE_FILE_ERROR; code <= PARDISO_OOC_WRITE_INPUT_PARAMETERS_INCORRECT;
       ++code) {
    const auto named = static_cast<pardiso_ooc_code>(code);
    EXPECT_EQ(std::string(name_of(named)).rfind("PARDISO_OOC_", 0), 0U);
    EXPECT_EQ(ooc_status(named).error, code <= PARDISO_OOC_OPEN_FILE_ERROR ? -10 : -11);
  }
}

}  // namespace
}  // namespace qel::test
