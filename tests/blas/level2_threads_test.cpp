// SPDX-License-Identifier: BSD-3-Clause
// Level 2 on several threads, more than there are cores if need be: general products and updates have the
// bits of one thread, everything else agrees with long double sums and is the same in every run, and without
// work memory all stay right.
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <functional>

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

TYPED_TEST(Level2Threads, CutsGoWithTheLinesOfTheResultAndDoNotShow) {
  using T = TypeParam;
  constexpr core_int m = 523, n = 401;
  matrix<T> a(m, n, 1, this->random_);
  strided<T> x(n, 1, this->random_);
  alignas(64) T buffer[m + 64];
  for (const size_t bytes : {size_t{0}, sizeof(T), 5 * sizeof(T), sizeof(T) / 2}) {
    T* const y = reinterpret_cast<T*>(reinterpret_cast<char*>(buffer) + bytes);
    const auto multiply = [&](int threads) {
      serv_set_num_threads(threads);
      std::memset(static_cast<void*>(buffer), 0, sizeof buffer);
      call(core_of<T>::gemv, 'N', m, n, factor<T>(2), a.data(), a.ld(), x.data(), core_int{1}, factor<T>(2),
           y, core_int{1});
      return std::string(reinterpret_cast<const char*>(buffer), sizeof buffer);
    };
    const std::string serial = multiply(1);
    for (const int threads : {2, 3, 5}) EXPECT_EQ(serial, multiply(threads)) << bytes << ' ' << threads;
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

/// One routine on operands of an order that forks natively.
template <class T>
struct threaded_case {
  std::string name;
  bool exact;  ///< the bits of one thread on any number
  std::function<void(T* a, T* x, T* y)> run;
};

/// Everything beside full general matrices and full triangular products. n: order; k: diagonals of bands,
/// l and u of general ones; vectors have room for strides up to 2.
template <class T>
std::vector<threaded_case<T>> threaded_cases(core_int n, core_int k, core_int incx, core_int incy) {
  using core = core_of<T>;
  const T alpha = factor<T>(2), beta = factor<T>(2);
  const core_int m = n + 77, kl = k - 5, ld = n + 3, ldb = k + 2, ldg = kl + k + 2;
  std::vector<threaded_case<T>> cases;
  for (const char trans : {'N', 'T', 'C'}) {
    cases.push_back({std::string("gbmv ") + trans, false, [=](T* a, T* x, T* y) {
                       call(core::gbmv, trans, n, m, kl, k, alpha, a, ldg, x, incx, beta, y, incy);
                     }});
    cases.push_back({std::string("tall gbmv ") + trans, false, [=](T* a, T* x, T* y) {
                       call(core::gbmv, trans, m, n, kl, core_int{3}, alpha, a, ldg, x, incx, T{}, y, incy);
                     }});
  }
  for (const char uplo : {'U', 'L'}) {
    const auto name = [&](const char* routine, char trans = ' ') {
      return std::string(routine) + ' ' + uplo + trans;
    };
    for (const T b : {T{}, factor<T>(1), beta}) {
      cases.push_back({name("hemv"), false, [=](T* a, T* x, T* y) {
                         call(core::hemv, uplo, n, alpha, a, ld, x, incx, b, y, incy);
                       }});
    }
    cases.push_back({name("hbmv"), false, [=](T* a, T* x, T* y) {
                       call(core::hbmv, uplo, n, k, alpha, a, ldb, x, incx, beta, y, incy);
                     }});
    cases.push_back({name("hpmv"), false,
                     [=](T* a, T* x, T* y) { call(core::hpmv, uplo, n, alpha, a, x, incx, beta, y, incy); }});
    const real_of<T> size = real_part(alpha);
    cases.push_back(
        {name("her"), true, [=](T* a, T* x, T*) { call(core::her, uplo, n, size, x, incx, a, ld); }});
    cases.push_back({name("hpr"), true, [=](T* a, T* x, T*) { call(core::hpr, uplo, n, size, x, incx, a); }});
    cases.push_back({name("her2"), true,
                     [=](T* a, T* x, T* y) { call(core::her2, uplo, n, alpha, x, incx, y, incy, a, ld); }});
    cases.push_back({name("hpr2"), true,
                     [=](T* a, T* x, T* y) { call(core::hpr2, uplo, n, alpha, x, incx, y, incy, a); }});
    for (const char trans : {'N', 'T', 'C'}) {
      const char diag = trans == 'C' ? 'U' : 'N';
      cases.push_back({name("tbmv", trans), false,
                       [=](T* a, T* x, T*) { call(core::tbmv, uplo, trans, diag, n, k, a, ldb, x, incx); }});
      cases.push_back({name("tpmv", trans), false,
                       [=](T* a, T* x, T*) { call(core::tpmv, uplo, trans, diag, n, a, x, incx); }});
      cases.push_back({name("trsv", trans), false,
                       [=](T* a, T* x, T*) { call(core::trsv, uplo, trans, diag, n, a, ld, x, incx); }});
      cases.push_back({name("tpsv", trans), false,
                       [=](T* a, T* x, T*) { call(core::tpsv, uplo, trans, 'U', n, a, x, incx); }});
    }
  }
  return cases;
}

template <class T>
bool same_bits(const std::vector<T>& a, const std::vector<T>& b) {
  return std::memcmp(a.data(), b.data(), a.size() * sizeof(T)) == 0;
}
template <class T>
bool all_close(const std::vector<T>& got, const std::vector<T>& want, core_int terms) {
  long double largest = 0, worst = 0;
  for (std::size_t i = 0; i < got.size(); ++i) {
    const long double difference = std::abs(widen(got[i]) - widen(want[i]));
    if (!(difference <= worst)) worst = difference;
    largest = std::max(largest, std::abs(widen(want[i])));
  }
  return worst <= 4 * static_cast<long double>(terms) * epsilon<T>() * largest;
}

TYPED_TEST(Level2Threads, EverythingElseOnSeveralThreads) {
  using T = TypeParam;
  struct operands {
    std::vector<T> a, x, y;
  };
  // Just large enough for two threads of a solution, which take the most.
  const auto n = static_cast<core_int>(std::sqrt(3.3e6 / sizeof(T))), k = n / 3;
  const core_int incx = is_complex<T> == (sizeof(real_of<T>) == 8) ? 1 : -2, incy = std::abs(incx);
  operands before;
  // Small elements beside the full triangle's pivots: solutions neither grow nor fade.
  for (core_int i = 0; i < std::max((2 * k + 2) * (n + 77), n * (n + 3)); ++i) {
    before.a.push_back(element<T>(1 / static_cast<double>(n), 0) * this->random_.template next<T>());
  }
  for (core_int i = 0; i < n; ++i) before.a[static_cast<std::size_t>(i * (n + 4))] = element<T>(1.5, 0.5);
  for (core_int i = 0; i < 2 * (n + 77); ++i) {
    before.x.push_back(this->random_.template next<T>());
    before.y.push_back(this->random_.template next<T>());
  }
  for (const auto& c : threaded_cases<T>(n, k, incx, incy)) {
    const auto on = [&](int threads, bool without_memory) {
      serv_set_num_threads(threads);
      refuses = without_memory;
      operands o = before;
      c.run(o.a.data(), o.x.data(), o.y.data());
      refuses = false;
      return o;
    };
    // Once without memory, once again to see the same bits.
    const operands serial = on(1, false);
    const int threads = incx == 1 ? 2 : 3;
    const operands first = on(threads, false), again = on(threads, incx == 1);
    for (const operands& o : {first, again}) {
      EXPECT_TRUE(all_close(o.x, serial.x, n) && all_close(o.y, serial.y, n)) << c.name << threads;
      EXPECT_TRUE(c.exact ? same_bits(o.a, serial.a) : same_bits(o.a, before.a)) << c.name << threads;
    }
    if (incx != 1) {
      EXPECT_TRUE(same_bits(first.x, again.x) && same_bits(first.y, again.y)) << c.name << threads;
    }
  }
}

}  // namespace
}  // namespace qel::test
