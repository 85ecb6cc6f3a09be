// SPDX-License-Identifier: BSD-3-Clause
// Each allocation in turn fails: the status says so, the handle stays as it was, nothing is lost. In a
// program of its own, since the library takes the allocator before its first use.
#include <cstdlib>
#include <vector>

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
    setenv("QEL_NUM_THREADS", "4", 1);
    setenv("QEL_DYNAMIC", "FALSE", 1);
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

/// Commits and computes with each allocation in turn failing.
TEST_F(NoMemory, EveryKindOfPlanSaysSo) {
  const struct {
    int domain;
    std::vector<int> lengths;
    int parameter, value;
  } cases[] = {{DFTI_COMPLEX, {12, 30}, DFTI_PLACEMENT, DFTI_NOT_INPLACE},
               {DFTI_COMPLEX, {100}, DFTI_COMPLEX_STORAGE, DFTI_REAL_REAL},
               {DFTI_COMPLEX, {5184}, DFTI_ORDERING, DFTI_BACKWARD_SCRAMBLED},
               {DFTI_COMPLEX, {100}, DFTI_NUMBER_OF_USER_THREADS, 3},
               {DFTI_COMPLEX, {1 << 16}, DFTI_PLACEMENT, DFTI_INPLACE},
               {DFTI_COMPLEX, {1 << 12}, DFTI_PLACEMENT, DFTI_NOT_INPLACE},
               {DFTI_REAL, {100}, DFTI_PACKED_FORMAT, DFTI_PACK_FORMAT},
               {DFTI_REAL, {179}, DFTI_PACKED_FORMAT, DFTI_PACK_FORMAT},
               {DFTI_REAL, {6, 20}, DFTI_PACKED_FORMAT, DFTI_PERM_FORMAT}};
  for (const auto& c : cases) {
    SCOPED_TRACE(testing::PrintToString(c.lengths));
    const auto make = [&](DFTI_DESCRIPTOR_HANDLE* handle) {
      const int dimension = static_cast<int>(c.lengths.size());
      int status = DftiCreateDescriptor_d_md(handle, c.domain, dimension, c.lengths.data());
      if (status == DFTI_NO_ERROR) {
        DftiSetValue(*handle, c.parameter, c.value);
        DftiSetValue(*handle, DFTI_FORWARD_SCALE, 0.3);
        status = DftiCommitDescriptor(*handle);
        if (status != DFTI_NO_ERROR) DftiFreeDescriptor(handle);
      }
      return status;
    };
    EXPECT_GE(fail_each(make), 3);
  }
  // A strided output needs a buffer: without it nothing is written.
  const owned_descriptor d(DFTI_DOUBLE, DFTI_COMPLEX, {20});
  const int strides[] = {0, 2};
  DftiSetValue(d.handle, DFTI_OUTPUT_STRIDES, strides);
  DftiSetValue(d.handle, DFTI_PLACEMENT, DFTI_NOT_INPLACE);
  ASSERT_EQ(DftiCommitDescriptor(d.handle), 0);
  std::vector<double> in(40, 1), out(80, 7);
  calls_left = 0;
  EXPECT_EQ(DftiComputeForward(d.handle, in.data(), out.data()), DFTI_MEMORY_ERROR);
  calls_left = -1;
  EXPECT_EQ(out, std::vector<double>(80, 7));
}

}  // namespace
}  // namespace qel::test
