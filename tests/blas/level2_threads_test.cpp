// SPDX-License-Identifier: BSD-3-Clause
// Level 2 on several threads, more than there are cores if need be: general products and updates have the
// bits of one thread, triangular products agree with long double sums, and without work memory all stay
// right.
#include <cstdlib>
#include <cstring>

#include "blas/level2/thread_plans.h"
#include "service/serv.h"
#include "tests/blas/by_type.h"
#include "tests/blas/reference.h"

namespace qel::test {
namespace {

bool refuses = false;
int refusals = 0;
void* maybe_refuse(size_t size) {
  if (!refuses) return std::malloc(size);
  ++refusals;
  return nullptr;
}

template <class T>
class Level2Threads : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    setenv("QEL_DISABLE_FAST_MM", "1", 1);  // so that every request comes to the allocator
    serv_platform_malloc = maybe_refuse;
    serv_set_dynamic(0);
  }
  void SetUp() override { serv_set_num_threads(1); }
  random_source random_;
};
using element_types = testing::Types<float, double, complex8, complex16>;
TYPED_TEST_SUITE(Level2Threads, element_types);

constexpr int kCounts[] = {2, 5, 20};

TYPED_TEST(Level2Threads, GeneralProductsAndUpdatesHaveOneThreadsBits) {
  using T = TypeParam;
  for (const auto& [m, n] : {std::pair<core_int, core_int>{401, 403}, {70, 2000}, {2100, 65}}) {
    for (const core_int incy : {1, -2}) {
      for (const char trans : {'N', 'T', 'C'}) {
        matrix<T> a(m, n, 1, this->random_);
        strided<T> x(trans == 'N' ? n : m, -2, this->random_), y(trans == 'N' ? m : n, incy, this->random_);
        const strided<T> before = y;
        const auto multiply = [&, m = m, n = n](int threads) {
          serv_set_num_threads(threads);
          y = before;
          call(core_of<T>::gemv, trans, m, n, factor<T>(2), a.data(), a.ld(), x.data(), core_int{-2},
               factor<T>(2), y.data(), incy);
          EXPECT_TRUE(y.intact());
          return y.column().cells;
        };
        const auto serial = multiply(1);
        for (const int threads : kCounts) EXPECT_EQ(serial, multiply(threads)) << trans << threads;
      }
      matrix<T> a(m, n, 1, this->random_);
      strided<T> x(m, 2, this->random_), y(n, incy, this->random_);
      const matrix<T> before = a;
      const auto update = [&, m = m, n = n](int threads) {
        serv_set_num_threads(threads);
        a = before;
        call(core_of<T>::gerc, m, n, factor<T>(2), x.data(), core_int{2}, y.data(), incy, a.data(), a.ld());
        return a.meaning(shape::kGeneral).cells;
      };
      const auto serial = update(1);
      for (const int threads : {2, 5}) EXPECT_EQ(serial, update(threads)) << threads;
    }
  }
}

TYPED_TEST(Level2Threads, TriangularProductsWithAndWithoutMemory) {
  using T = TypeParam;
  for (const core_int n : {200, 1030}) {
    for (const char uplo : {'U', 'L'}) {
      for (const char trans : {'N', 'T', 'C'}) {
        const char diag = trans == 'T' ? 'U' : 'N';
        matrix<T> a(n, n, 1, this->random_, uplo, diag == 'U');
        const dense meaning = op(trans, a.meaning(diag == 'U' ? shape::kUnitTriangular : shape::kTriangular));
        for (const core_int inc : {1, -2}) {
          strided<T> x(n, inc, this->random_);
          const strided<T> before = x;
          std::vector<bounded> want(static_cast<std::size_t>(n));
          for (core_int i = 0; i < n; i += 13)
            add_product(want[static_cast<std::size_t>(i)], 1, meaning, before.column(), i, 0);
          for (const int threads : {2, 5}) {
            for (const bool without_memory : {false, true}) {
              serv_set_num_threads(threads);
              x = before;
              refuses = without_memory;
              refusals = 0;
              call(core_of<T>::trmv, uplo, trans, diag, n, a.data(), a.ld(), x.data(), inc);
              refuses = false;
              const bool forks = level_has_level2_threads(serv_cpu_level()) && threads > 1;
              if (without_memory && forks && (serv_cpu_level() < 5 || n > 1000)) {
                EXPECT_LT(0, refusals);
              }
              for (core_int i = 0; i < n; i += 13) {
                EXPECT_TRUE(close(x[i], want[static_cast<std::size_t>(i)], n))
                    << uplo << trans << threads << ' ' << i;
              }
              EXPECT_TRUE(x.intact());
            }
          }
        }
      }
    }
  }
}

}  // namespace
}  // namespace qel::test
