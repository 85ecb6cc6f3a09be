// SPDX-License-Identifier: BSD-3-Clause
// Solves with shared-out right-hand sides: the decision as a table, and for every routine and type the same
// bits as on one thread.
#include "lapack/solve/split.h"

#include <algorithm>
#include <cstring>
#include <functional>

#include "lapack/lapack.h"
#include "tests/lapack/matrices.h"

namespace qel::lapack {
namespace {

TEST(split_plan, slices_by_facts) {
  struct {
    core_int n, nrhs;
    double work;
    int threads, slices;
  } const rows[] = {
      {100, 50, 1e4, 1, 1}, {100, 1, 1e9, 8, 1},  {100, 0, 1e9, 8, 1},
      {100, 50, 1e4, 8, 8}, {100, 5, 1e5, 8, 5},   // no more slices than columns
      {100, 50, 1e3, 8, 1}, {100, 50, 2e3, 8, 3},  // by the work there is
      {0, 50, 0, 8, 1},
  };
  for (const auto& row : rows) {
    const split_plan plan = plan_split({"DGBTRS", row.n, row.nrhs, row.work, row.threads, {3, 0}});
    EXPECT_EQ(plan.slices, row.slices) << row.n << ' ' << row.nrhs << ' ' << row.work << plan.reason;
  }
  for (const int slices : {1, 3, 7}) {
    EXPECT_EQ(slice_begin(20, slices, 0), 0);
    EXPECT_EQ(slice_begin(20, slices, slices), 20);
    for (int s = 0; s < slices; ++s) EXPECT_LT(slice_begin(20, slices, s), slice_begin(20, slices, s + 1));
  }
}

constexpr core_int kOrder = 150, kSides = 40, kBand = 12;

/// One routine's call on B; info is returned.
template <class T>
struct solve_case {
  const char* name;
  std::function<core_int(const core_int* nrhs, T* b, const core_int* ldb)> solve;
};

/// Factors need not come from a matrix: a heavy diagonal and exchanges of neighbours will do.
template <class T>
struct data {
  matrix<T> a = positive_matrix<T>(kOrder, 7);
  std::vector<T> packed = std::vector<T>(kOrder * (kOrder + 1) / 2);
  std::vector<real_of<T>> diagonal = std::vector<real_of<T>>(kOrder);
  std::vector<core_int> near = std::vector<core_int>(kOrder), plain = near;
  data() {
    std::copy_n(a.data(), packed.size(), packed.begin());
    core_int below = 0;
    for (core_int i = 0; i < kOrder; ++i) {
      packed[static_cast<size_t>(below)] = from_real<T>(static_cast<real_of<T>>(kOrder));
      below += kOrder - i;  // of a lower triangle
      diagonal[static_cast<size_t>(i)] = static_cast<real_of<T>>(4 + i % 3);
      plain[static_cast<size_t>(i)] = i + 1;
      near[static_cast<size_t>(i)] = std::min(kOrder, i + 1 + i % 2);
    }
  }
};

#define QEL_CASE(routine, ...)                                                          \
  cases.push_back({#routine, [=, &d](const core_int* nrhs, T* b, const core_int* ldb) { \
                     core_int info = -77;                                               \
                     core::qel_core_##routine##_(__VA_ARGS__);                          \
                     return info;                                                       \
                   }})
#define QEL_CASES(s)                                                                                         \
  for (const char* turned : {"N", "T", "C"}) {                                                               \
    QEL_CASE(s##gttrs, turned, &n, nrhs, d.a.data(), d.a.data() + n, d.a.data() + 2 * n, d.a.data() + 3 * n, \
             d.near.data(), b, ldb, &info, 1);                                                               \
    QEL_CASE(s##gbtrs, turned, &n, &band, &band, nrhs, d.a.data(), &lda, d.near.data(), b, ldb, &info, 1);   \
    QEL_CASE(s##tptrs, "L", turned, "N", &n, nrhs, d.packed.data(), b, ldb, &info, 1, 1, 1);                 \
  }                                                                                                          \
  QEL_CASE(s##pptrs, "L", &n, nrhs, d.packed.data(), b, ldb, &info, 1);                                      \
  QEL_CASE(s##sptrs, "L", &n, nrhs, d.packed.data(), d.plain.data(), b, ldb, &info, 1);                      \
  QEL_CASE(s##pbtrs, "L", &n, &band, nrhs, d.a.data(), &lda, b, ldb, &info, 1)
#define QEL_COMPLEX_CASES(s)                                                            \
  QEL_CASES(s);                                                                         \
  QEL_CASE(s##hptrs, "L", &n, nrhs, d.packed.data(), d.plain.data(), b, ldb, &info, 1); \
  QEL_CASE(s##pttrs, "U", &n, nrhs, d.diagonal.data(), d.a.data(), b, ldb, &info, 1)

/// The cases refer to d, which must outlive them.
template <class T>
std::vector<solve_case<T>> all_cases(const data<T>& d, const core_int& n, const core_int& band,
                                     const core_int& lda) {
  std::vector<solve_case<T>> cases;
  if constexpr (__is_same(T, float)) {
    QEL_CASES(s);
    QEL_CASE(spttrs, &n, nrhs, d.diagonal.data(), d.a.data(), b, ldb, &info);
  } else if constexpr (__is_same(T, double)) {
    QEL_CASES(d);
    QEL_CASE(dpttrs, &n, nrhs, d.diagonal.data(), d.a.data(), b, ldb, &info);
  } else if constexpr (__is_same(T, complex8)) {
    QEL_COMPLEX_CASES(c);
  } else {
    QEL_COMPLEX_CASES(z);
  }
  return cases;
}

template <class T>
class split_solves : public testing::Test {};
TYPED_TEST_SUITE(split_solves, element_types);

TYPED_TEST(split_solves, same_bits_as_one_thread) {
  using T = TypeParam;
  const data<T> d;
  const core_int n = kOrder, band = kBand, lda = d.a.lda, zero = 0;
  const matrix<T> b = random_matrix<T>(kOrder, kSides, 3);
  for (const solve_case<T>& one : all_cases<T>(d, n, band, lda)) {
    matrix<T> serial = b;
    EXPECT_EQ(one.solve(&serial.n, serial.data(), &serial.lda), 0) << one.name;
    EXPECT_NE(std::memcmp(serial.data(), b.cells.data(), b.cells.size() * sizeof(T)), 0) << one.name;
    for (const int threads : {2, 5}) {
      const forced_threads several(threads);
      matrix<T> shared = b;
      EXPECT_EQ(one.solve(&shared.n, shared.data(), &shared.lda), 0) << one.name;
      EXPECT_EQ(std::memcmp(serial.data(), shared.data(), b.cells.size() * sizeof(T)), 0)
          << one.name << " on " << threads << " threads";
      EXPECT_LT(one.solve(&shared.n, shared.data(), &zero), 0) << one.name << " takes ldb 0";
    }
  }
}

TEST(split_solves_singular, packed_triangle_with_a_zero_pivot_is_left_alone) {
  const forced_threads several(4);
  data<double> d;
  d.packed[static_cast<size_t>(kOrder)] = 0;  // the second pivot
  const core_int n = kOrder, nrhs = kSides;
  const matrix<double> b = random_matrix<double>(kOrder, kSides, 3);
  matrix<double> x = b;
  core_int info = 0;
  core::qel_core_dtptrs_("L", "N", "N", &n, &nrhs, d.packed.data(), x.data(), &x.lda, &info, 1, 1, 1);
  EXPECT_EQ(info, 2);
  EXPECT_EQ(x.cells, b.cells);
}

}  // namespace
}  // namespace qel::lapack
