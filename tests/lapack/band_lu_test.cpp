// SPDX-License-Identifier: BSD-3-Clause
// Band factorisations by blocks against the plain routine: the same pivots, factors up to rounding, nothing
// written outside the band and its fill-in. The decision as a table.
#include "lapack/factor/gbtrf.h"

#include "lapack/lapack.h"
#include "tests/lapack/wide_matrix.h"

namespace qel::lapack {
extern "C" {
#define QEL_PLAIN(T, s)                                                                            \
  void qel_core_plain_##s##gbtrf_(const core_int* m, const core_int* n, const core_int* kl,        \
                                  const core_int* ku, T* ab, const core_int* ldab, core_int* ipiv, \
                                  core_int* info);
QEL_PLAIN(float, s)
QEL_PLAIN(double, d)
QEL_PLAIN(complex8, c)
QEL_PLAIN(complex16, z)
#undef QEL_PLAIN
}

namespace {

constexpr auto plain_gbtrf(const float*) { return qel_core_plain_sgbtrf_; }
constexpr auto plain_gbtrf(const double*) { return qel_core_plain_dgbtrf_; }
constexpr auto plain_gbtrf(const complex8*) { return qel_core_plain_cgbtrf_; }
constexpr auto plain_gbtrf(const complex16*) { return qel_core_plain_zgbtrf_; }

TEST(band_lu_plan, by_facts) {
  const struct {
    core_int kl, ku;
    int threads;
    core_int block;
    int slices;
  } rows[] = {{100, 64, 8, 0, 1},   {31, 100, 8, 0, 1},   {32, 65, 8, 32, 1},
              {400, 400, 1, 32, 1}, {400, 400, 8, 32, 8}, {100, 100, 8, 32, 6}};
  for (const auto& row : rows) {
    const band_lu_plan plan = plan_band_lu({'D', 2000, 2000, row.kl, row.ku, row.threads, {5, 0}});
    EXPECT_EQ(plan.block, row.block) << row.kl << ' ' << row.ku << ' ' << plan.reason;
    EXPECT_EQ(plan.slices, row.slices) << row.kl << ' ' << row.ku << ' ' << plan.reason;
  }
}

template <class T>
class band_lu : public testing::Test {};
TYPED_TEST_SUITE(band_lu, element_types);

TYPED_TEST(band_lu, as_the_plain_routine) {
  using T = TypeParam;
  const struct {
    core_int m, n, kl, ku;
  } shapes[] = {{60, 60, 12, 9},  {60, 60, 12, 3}, {40, 70, 13, 30}, {70, 40, 20, 7},
                {30, 30, 29, 29}, {90, 90, 8, 70}, {9, 9, 8, 8}};
  for (const auto& [m, n, kl, ku] : shapes) {
    for (const core_int zero : {core_int{-1}, n / 2}) {  // a column of zeros
      const core_int order = std::min(m, n);
      matrix<T> ab = random_matrix<T>(2 * kl + ku + 1, n, 11);
      for (core_int i = 0; zero >= 0 && i < ab.m; ++i) ab(i, zero) = T{};
      matrix<T> expected = ab;
      std::vector<core_int> pivots(static_cast<size_t>(order)), expected_pivots = pivots;
      core_int expected_zero = 0;
      plain_gbtrf(ab.data())(&m, &n, &kl, &ku, expected.data(), &expected.lda, expected_pivots.data(),
                             &expected_zero);
      for (const core_int block : {4, 8}) {
        for (const int slices : {1, 3}) {
          SCOPED_TRACE(testing::Message() << m << " x " << n << " band " << kl << ", " << ku << " block "
                                          << block << " slices " << slices << " zero " << zero);
          matrix<T> f = ab;
          core_int first_zero = -1;
          ASSERT_TRUE(factor_band_as_planned<T>({block, slices, ""}, m, n, kl, ku, f.data(), f.lda,
                                                pivots.data(), &first_zero));
          EXPECT_EQ(first_zero, expected_zero);
          EXPECT_EQ(pivots, expected_pivots);
          EXPECT_LT(apart<T>(whole(f), whole(expected), 1000), 10);
          for (core_int j = 0; j < n; ++j) {
            for (core_int i = 0; i < f.lda; ++i) {
              const core_int row = i - kl - ku + j;
              if (row < 0 || row >= m || i >= f.m) {
                ASSERT_TRUE(f(i, j) == ab(i, j)) << i << " " << j;
              }
            }
          }
        }
      }
    }
  }
}

}  // namespace
}  // namespace qel::lapack
