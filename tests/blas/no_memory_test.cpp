// SPDX-License-Identifier: BSD-3-Clause
// Level 3 without work memory: the platform allocator refuses everything, and results must be right all the
// same. In a program of its own, since the library takes the allocator before its first use.
#include <atomic>

#include "service/serv.h"
#include "tests/blas/by_type.h"
#include "tests/blas/reference.h"

namespace qel::test {
namespace {

std::atomic<int> refusals = 0;  // threads of a region ask, too
void* refuse(size_t) {
  ++refusals;
  return nullptr;
}

template <class T>
class NoMemory : public testing::Test {
 protected:
  static void SetUpTestSuite() { serv_platform_malloc = refuse; }
  random_source random_;
};
using element_types = testing::Types<float, double, complex8, complex16>;
TYPED_TEST_SUITE(NoMemory, element_types);

TYPED_TEST(NoMemory, GemmIsRight) {
  using T = TypeParam;
  const core_int m = 37, n = 19,
                 k = 3100;  // large enough for work memory of one option at least on every level
  const T alpha = factor<T>(2), beta = factor<T>(2);
  const int refused = refusals;
  for (const char transa : {'N', 'T', 'C'}) {
    for (const char transb : {'N', 'T', 'C'}) {
      matrix<T> a(transa == 'N' ? m : k, transa == 'N' ? k : m, 1, this->random_);
      matrix<T> b(transb == 'N' ? k : n, transb == 'N' ? n : k, 1, this->random_), c(m, n, 1, this->random_);
      const dense left = op(transa, a.meaning(shape::kGeneral)),
                  right = op(transb, b.meaning(shape::kGeneral));
      const dense before = c.meaning(shape::kGeneral);
      call(core_of<T>::gemm, transa, transb, m, n, k, alpha, a.data(), a.ld(), b.data(), b.ld(), beta,
           c.data(), c.ld());
      c.for_stored([&](core_int i, core_int j) {
        bounded sum;
        sum.add(widen(beta) * before(i, j));
        add_product(sum, widen(alpha), left, right, i, j);
        EXPECT_TRUE(close(c.at(i, j), sum, k)) << transa << transb << i << ' ' << j;
      });
    }
  }
  EXPECT_LT(refused, refusals) << "no option asked for memory";
}

TYPED_TEST(NoMemory, HemmAndHerkAndTrsmAreRight) {
  using T = TypeParam;
  using core = core_of<T>;
  const core_int n = 70, columns = 9;
  const shape kind = is_complex<T> ? shape::kHermitian : shape::kSymmetric;
  const T one = factor<T>(1), zero{};
  for (const char uplo : {'U', 'L'}) {
    matrix<T> a(n, n, 1, this->random_, uplo), b(n, columns, 0, this->random_),
        c(n, columns, 0, this->random_);
    call(core::hemm, 'L', uplo, n, columns, one, a.data(), a.ld(), b.data(), b.ld(), zero, c.data(), c.ld());
    const dense full = a.meaning(kind), right = b.meaning(shape::kGeneral);
    c.for_stored([&](core_int i, core_int j) {
      bounded sum;
      add_product(sum, 1, full, right, i, j);
      EXPECT_TRUE(close(c.at(i, j), sum, n)) << uplo << i << ' ' << j;
    });

    matrix<T> s(n, n, 1, this->random_, uplo);
    s.as_output();
    const dense closing = op('C', right);
    call(core::herk, uplo, 'N', n, columns, real_part(one), b.data(), b.ld(), real_part(zero), s.data(),
         s.ld());
    s.for_stored([&](core_int i, core_int j) {
      bounded sum;
      add_product(sum, 1, right, closing, i, j);
      EXPECT_TRUE(close(s.at(i, j), sum, columns)) << uplo << i << ' ' << j;
    });
    EXPECT_TRUE(s.intact());

    for (core_int i = 0; i < n; ++i) a.set(i, i, element<T>(n, 0));
    call(core::trsm, 'L', uplo, 'C', 'N', n, columns, one, a.data(), a.ld(), b.data(), b.ld());
    const dense t = op('C', a.meaning(shape::kTriangular)), x = b.meaning(shape::kGeneral);
    b.for_stored([&](core_int i, core_int j) {
      bounded residual;
      add_product(residual, 1, t, x, i, j);
      residual.add(-right(i, j));
      EXPECT_LE(std::abs(residual.value), 4 * (n + 4) * epsilon<T>() * residual.size)
          << uplo << i << ' ' << j;
    });
  }
}

}  // namespace
}  // namespace qel::test
