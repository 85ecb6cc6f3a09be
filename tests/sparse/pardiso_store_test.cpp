// SPDX-License-Identifier: BSD-3-Clause
// Factors in files: the same numbers as in memory, whatever part of them the cache holds, and told failures.
#include <unistd.h>

#include <atomic>
#include <cstring>
#include <filesystem>

#include "sparse/pardiso/ooc/file_calls.h"
#include "sparse/pardiso/ooc/panel_files.h"
#include "tests/sparse/pardiso_systems.h"

namespace qel::test {
namespace {

using namespace qel::pardiso;

/// A file set in a folder of its own.
class store_files {
 public:
  store_files(bool symmetric, int threads) {
    std::filesystem::create_directories(folder_);
    prefix_ = folder_ + "/ooc";
    set_ = {prefix_.c_str(), -1, threads, symmetric, true, {}};
    EXPECT_EQ(start_ooc_files(set_), PARDISO_OOC_NO_ERROR);
  }
  ~store_files() {
    replace_file_calls(nullptr);
    EXPECT_EQ(delete_ooc_files(set_), PARDISO_OOC_NO_ERROR);
    EXPECT_TRUE(std::filesystem::is_empty(folder_));
    std::filesystem::remove_all(folder_);
  }
  ooc_file_set& set() { return set_; }
  int64_t bytes(const char* extension) const {
    return static_cast<int64_t>(
        std::filesystem::file_size(prefix_ + std::to_string(set_.number) + extension));
  }

 private:
  std::string folder_ = std::filesystem::temp_directory_path() / ("qel_store_" + std::to_string(getpid()));
  std::string prefix_;
  ooc_file_set set_;
};

TEST(PanelRing, KeepsWhatIsPinnedAndNeverOverlaps) {
  std::mt19937 random(3);
  for (const int64_t room : {0, 640, 4096}) {
    memory_account account;
    panel_ring ring;
    ASSERT_TRUE(ring.allocate(40, room, account));
    std::map<int, int64_t> sizes;
    for (int s = 0; s < 40; ++s) sizes[s] = 1 + static_cast<int64_t>(random() % 900);
    std::vector<int> pinned;
    int found = 0;
    for (int step = 0; step < 4000; ++step) {
      if (pinned.size() > 3 || (!pinned.empty() && random() % 3 == 0)) {
        const std::size_t which = random() % pinned.size();
        ring.unpin(pinned[which]);
        pinned.erase(pinned.begin() + static_cast<std::ptrdiff_t>(which));
        continue;
      }
      const int s = static_cast<int>(random() % 40);
      const auto bytes = static_cast<std::size_t>(sizes[s]);
      char* place = ring.find(s);
      if (place != nullptr) {
        for (std::size_t i = 0; i < bytes; ++i) ASSERT_EQ(place[i], static_cast<char>(s + 1));
        pinned.push_back(s);
        ++found;
        continue;
      }
      place = ring.place(s, sizes[s]);
      if (place == nullptr) continue;
      std::memset(place, s + 1, bytes);
      if (random() % 10 == 0) {
        ring.drop(s);
      } else {
        ring.complete(s);
        pinned.push_back(s);
      }
    }
    EXPECT_EQ(found > 0, room > 0);
  }
}

template <class T>
class PardisoStore : public testing::Test {};
TYPED_TEST_SUITE(PardisoStore, all_types);

TYPED_TEST(PardisoStore, SameBitsAsInMemory) {
  using T = TypeParam;
  std::mt19937 random(9);
  const int nx = 17, ny = 14, n = nx * ny, nrhs = 3;
  const std::vector<int> types =
      is_complex<T> ? std::vector<int>{3, 4, -4, 6, 13} : std::vector<int>{1, 2, -2, 11};
  for (const int type : types) {
    const sparse_system<T> s = make_system<T>(type, n, grid_edges(nx, ny), 1.1, random);
    const std::vector<T> b = random_vector<T>(n * nrhs, random);
    for (const int threads : {1, 2}) {
      factored<T> memory;
      memory.analyse(s, {dissected_grid(nx, ny), 7, threads});
      memory.factor(s);
      ASSERT_TRUE(memory.status.ok());
      const std::vector<T> wanted = memory.solve(b, nrhs);
      const int64_t all = memory.analysed.form.factor_elements * static_cast<int64_t>(sizeof(T));
      for (const int64_t cache : {int64_t{0}, all / 10, 2 * all}) {
        SCOPED_TRACE(testing::Message() << "type " << type << " threads " << threads << " cache " << cache);
        factored<T> files;
        files.analyse(s, {dissected_grid(nx, ny), 7, threads});
        store_files set(s.type.symmetric(), threads);
        panels_in_files<T> store;
        ASSERT_TRUE(
            store.prepare(files.analysed.form, s.type, set.set(), true, threads, cache, files.account).ok());
        files.f.store = &store;
        files.factor(s);
        ASSERT_TRUE(files.status.ok());
        ASSERT_TRUE(store.write_lists(files.f).ok());
        EXPECT_FALSE(files.f.lnz);
        const std::vector<T> x = files.solve(b, nrhs, {solve_part::all, false, threads});
        if (threads == 1) {
          EXPECT_EQ(std::memcmp(x.data(), wanted.data(), x.size() * sizeof(T)), 0);
        } else {
          EXPECT_LT(residual(s, b, x, nrhs),
                    100 * static_cast<double>(std::numeric_limits<real_of<T>>::epsilon()));
        }
        const int64_t one = all / (s.type.symmetric() ? 1 : 2);
        EXPECT_EQ(set.bytes(".lnz"), one);
        EXPECT_EQ(store.totals().bytes_written, all);
        EXPECT_EQ(store.totals().bytes_read > 0, cache < all);
        EXPECT_EQ(set.bytes(".ind"), files.analysed.form.lindx.size() * 4);
        files.f.store = nullptr;
      }
    }
  }
}

TEST(PardisoStoreMemory, StaysWithinTheSmallestWorkingSet) {
  std::mt19937 random(9);
  const int m = 15, n = m * m * m;
  const sparse_system<double> s = make_system<double>(11, n, grid_edges(m, m, m), 1.1, random);
  for (const int threads : {1, 2}) {
    factored<double> files;
    files.analyse(s, {dissected_grid(m, m, m), 32, threads});
    const memory_prediction predicted = predict_memory(files.analysed.form, {32, true, false, threads}, 8);
    EXPECT_LT(predicted.out_of_core_minimum, predicted.total * 3 / 4);
    files.account.restart_peak();
    store_files set(false, threads);
    panels_in_files<double> store;
    const int64_t cache = panel_cache_bytes(predicted, predicted.out_of_core_minimum + 2);
    EXPECT_EQ(cache, 1 << 20);
    ASSERT_TRUE(
        store.prepare(files.analysed.form, s.type, set.set(), true, threads, cache, files.account).ok());
    files.f.store = &store;
    files.factor(s);
    ASSERT_TRUE(files.status.ok());
    EXPECT_LT(static_cast<double>(files.account.peak()), 1.1 * 1024 * (predicted.out_of_core_minimum + 2));
    files.f.store = nullptr;
  }
}

/// Transfers until one of them goes wrong.
std::atomic<int> transfers_left;
int64_t failing_write(int descriptor, const void* from, int64_t bytes) {
  if (--transfers_left >= 0) return kSystemFiles.write(descriptor, from, bytes);
  return kSystemFiles.write(descriptor, from, bytes / 16 * 8);
}
int64_t failing_read(int descriptor, void* to, int64_t bytes) {
  return --transfers_left >= 0 ? kSystemFiles.read(descriptor, to, bytes) : -1;
}

TEST(PardisoStoreFailures, EndTheStageWithTheirCodeAndLabel) {
  std::mt19937 random(9);
  const int nx = 17, ny = 14, n = nx * ny;
  const sparse_system<double> s = make_system<double>(11, n, grid_edges(nx, ny), 1.1, random);
  const std::vector<double> b = random_vector<double>(n, random);
  for (const int threads : {1, 2}) {
    for (const int step : {0, 1, 2, 3}) {  // in the writes, reads of the factorisation, forward, backward
      factored<double> files;
      files.analyse(s, {dissected_grid(nx, ny), 7, threads});
      store_files set(false, threads);
      panels_in_files<double> store;
      ASSERT_TRUE(
          store.prepare(files.analysed.form, s.type, set.set(), true, threads, 0, files.account).ok());
      files.f.store = &store;
      file_calls calls = kSystemFiles;
      if (step == 0) {
        calls.write = failing_write;
      } else {
        calls.read = failing_read;
      }
      transfers_left = step < 2 ? 25 : 1 << 30;
      replace_file_calls(&calls);
      files.factor(s);
      if (step < 2) {
        EXPECT_EQ(files.status.error, -11);
        EXPECT_EQ(files.status.sub_code, step == 0 ? PARDISO_OOC_NUMBER_OF_WRITE_NOT_EQUAL_COUNT
                                                   : PARDISO_OOC_NUMBER_OF_READ_EQUAL_ZERO);
        EXPECT_EQ(std::string(store.fault().label).substr(0, step == 0 ? 18 : 17),
                  step == 0 ? "blklu_unsym write " : "blklu_unsym read ");
      } else {
        ASSERT_TRUE(files.status.ok());
        transfers_left = step == 2 ? 4 : 2 * files.analysed.form.supernodes + 4;
        std::vector<double> x(b.size()), work(b.size());
        const stage_status solved =
            substitute(files.analysed, files.f, {}, 1, b.data(), x.data(), work.data());
        EXPECT_EQ(solved.error, -11);
        EXPECT_STREQ(store.fault().label, step == 2 ? "blkslv_unsym_ooc read for forward step"
                                                    : "blkslv_unsym_ooc read lnz for backward step");
      }
      files.f.store = nullptr;
      replace_file_calls(nullptr);
    }
  }
}

}  // namespace
}  // namespace qel::test
