// SPDX-License-Identifier: BSD-3-Clause
// Waves of rotations against the plain routine, of every shape, side and direction; nothing beside the matrix
// is touched. The number of slices as a table.
#include "lapack/spectral/rotations.h"

#include <cmath>

#include "tests/lapack/wide_matrix.h"

namespace qel::lapack {
extern "C" {
#define QEL_LASR(T, R, name)                                                                               \
  void name(const char* side, const char* pivot, const char* direct, const core_int* m, const core_int* n, \
            const R* c, const R* s, T* a, const core_int* lda, size_t, size_t, size_t);
#define QEL_BOTH(T, R, p) QEL_LASR(T, R, qel_core_plain_##p##lasr_) QEL_LASR(T, R, qel_core_##p##lasr_)
QEL_BOTH(float, float, s)
QEL_BOTH(double, double, d)
QEL_BOTH(complex8, float, c)
QEL_BOTH(complex16, double, z)
#undef QEL_BOTH
#undef QEL_LASR
}

namespace {

template <class T>
constexpr auto pick(auto s, auto d, auto c, auto z) {
  if constexpr (__is_same(T, float)) {
    return s;
  } else if constexpr (__is_same(T, double)) {
    return d;
  } else if constexpr (__is_same(T, complex8)) {
    return c;
  } else {
    return z;
  }
}

TEST(rotation_plan, slices_by_facts) {
  EXPECT_EQ(plan_rotations({500, 500, 1}), 1);
  EXPECT_EQ(plan_rotations({500, 500, 4}), 4);
  EXPECT_EQ(plan_rotations({500, 100, 4}), 1);  // thin
  EXPECT_EQ(plan_rotations({100, 500, 4}), 1);  // little work
}

template <class T>
class rotations : public testing::Test {};
TYPED_TEST_SUITE(rotations, element_types);

TYPED_TEST(rotations, as_the_plain_routine) {
  using T = TypeParam;
  using R = real_of<T>;
  const auto own = pick<T>(qel_core_slasr_, qel_core_dlasr_, qel_core_clasr_, qel_core_zlasr_);
  const auto plain =
      pick<T>(qel_core_plain_slasr_, qel_core_plain_dlasr_, qel_core_plain_clasr_, qel_core_plain_zlasr_);
  const core_int shapes[][2] = {{1, 1},  {1, 7},   {7, 1},    {2, 2},    {5, 9},    {37, 30},
                                {64, 3}, {65, 17}, {128, 50}, {50, 128}, {200, 300}};
  for (const auto& [m, n] : shapes) {
    const core_int most = std::max(m, n);
    std::vector<R> c(static_cast<size_t>(most)), s(c);
    for (size_t i = 0; i < c.size(); ++i) {
      const double angle = static_cast<double>(i % 11);
      c[i] = static_cast<R>(std::cos(angle));
      s[i] = static_cast<R>(std::sin(angle));  // none for each eleventh
    }
    const matrix<T> a = random_matrix<T>(m, n, 12);
    for (const char* side : {"L", "R"}) {
      for (const char* direct : {"F", "B"}) {
        for (const char* pivot : {"V", "T"}) {
          matrix<T> expected = a, rotated = a;
          plain(side, pivot, direct, &m, &n, c.data(), s.data(), expected.data(), &a.lda, 1, 1, 1);
          const forced_threads team(most > 100 ? 3 : 1);
          own(side, pivot, direct, &m, &n, c.data(), s.data(), rotated.data(), &a.lda, 1, 1, 1);
          const wide_matrix difference =
              filled(a.lda, n, [&](core_int i, core_int j) { return widened(rotated(i, j)); });
          const wide_matrix wanted =
              filled(a.lda, n, [&](core_int i, core_int j) { return widened(expected(i, j)); });
          EXPECT_LT(apart<T>(difference, wanted, 1), 10) << m << " x " << n << side << direct << pivot;
        }
      }
    }
  }
}

}  // namespace
}  // namespace qel::lapack
