// SPDX-License-Identifier: BSD-3-Clause
// Each allocation in turn fails: the status says so, the handle stays as it was, nothing is lost. In a
// program of its own, since the library takes the allocator before its first use.
#include <cstdlib>

#include "service/serv.h"
#include "tests/fft/support.h"

namespace qel::test {
namespace {

int calls_left = -1;  // below zero: never fails
long blocks = 0;

void* allocate(size_t size) {
  if (calls_left == 0) return nullptr;
  if (calls_left > 0) --calls_left;
  ++blocks;
  return std::malloc(size);
}
void release(void* block) {
  if (block != nullptr) --blocks;
  std::free(block);
}

/// Runs make with the first, second, ... allocation failing until it succeeds; returns how many there are.
template <class Make>
int fail_each(Make make) {
  for (int failing = 0;; ++failing) {
    const long before = blocks;
    calls_left = failing;
    DFTI_DESCRIPTOR_HANDLE handle = nullptr;
    const int status = make(&handle);
    calls_left = -1;
    if (status == DFTI_NO_ERROR) {
      EXPECT_EQ(DftiFreeDescriptor(&handle), DFTI_NO_ERROR);
      EXPECT_EQ(blocks, before);
      return failing;
    }
    EXPECT_EQ(status, DFTI_MEMORY_ERROR) << failing;
    EXPECT_EQ(handle, nullptr);
    EXPECT_EQ(blocks, before) << failing;
  }
}

class NoMemory : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    setenv("QEL_DISABLE_FAST_MM", "1", 1);  // a cached block would serve a request that is to fail
    serv_platform_malloc = allocate;
    serv_platform_free = release;
  }
};

TEST_F(NoMemory, CreateAndCopySaySo) {
  const int lengths[] = {3, 4, 5};
  EXPECT_GE(fail_each([&](DFTI_DESCRIPTOR_HANDLE* handle) {
              return DftiCreateDescriptor(handle, DFTI_DOUBLE, DFTI_COMPLEX, 3, lengths);
            }),
            1);
  const owned_descriptor source(DFTI_SINGLE, DFTI_REAL, {4, 8});
  EXPECT_GE(
      fail_each([&](DFTI_DESCRIPTOR_HANDLE* handle) { return DftiCopyDescriptor(source.handle, handle); }),
      1);
}

TEST_F(NoMemory, CommitSaysSo) {
  for (const int n : {8, 60, 300, 149, 151, 1024, 13 * 13, 5000}) {
    SCOPED_TRACE(n);
    EXPECT_GE(fail_each([&](DFTI_DESCRIPTOR_HANDLE* handle) {
                const int status = DftiCreateDescriptor(handle, DFTI_DOUBLE, DFTI_COMPLEX, 1, n);
                if (status != DFTI_NO_ERROR) return status;
                DftiSetValue(*handle, DFTI_FORWARD_SCALE, 0.3);
                const int committed = DftiCommitDescriptor(*handle);
                if (committed == DFTI_NO_ERROR) return committed;
                int state = 0;
                DftiGetValue(*handle, DFTI_COMMIT_STATUS, &state);
                EXPECT_EQ(state, DFTI_UNCOMMITTED);
                DftiFreeDescriptor(handle);
                return committed;
              }),
              3);
  }
}

}  // namespace
}  // namespace qel::test
