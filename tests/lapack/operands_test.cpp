// SPDX-License-Identifier: BSD-3-Clause
// Factorisations and solves under hard conditions: operands at any address that end at a page which can't be
// touched, and no work memory at all. Each gives what it gives on a usual day, up to rounding.
#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <functional>
#include <string>

#include "lapack/lapack.h"
#include "tests/lapack/wide_matrix.h"
#include "tests/support/guarded.h"

namespace qel::lapack {

// Without an entry.
extern "C" {
#define QEL_INNER(T, p)                                                                                     \
  void qel_core_##p##potrs_(const char* uplo, const core_int* n, const core_int* nrhs, const T* a,          \
                            const core_int* lda, T* b, const core_int* ldb, core_int* info, size_t);        \
  void qel_core_##p##trtri_(const char* uplo, const char* diag, const core_int* n, T* a,                    \
                            const core_int* lda, core_int* info, size_t, size_t);                           \
  void qel_core_##p##lauum_(const char* uplo, const core_int* n, T* a, const core_int* lda, core_int* info, \
                            size_t);
QEL_INNER(float, s)
QEL_INNER(double, d)
QEL_INNER(complex8, c)
QEL_INNER(complex16, z)
#undef QEL_INNER
}

namespace {

constexpr core_int kSides = 40;

/// The operands of a call; lengths are exact.
template <class T>
struct operands {
  core_int n, nrhs = kSides, band = 0, ldab = 0, lwork = 0, info = 0;
  T *a, *b, *tau, *work;
  core_int* pivots;
};
template <class T>
struct operation {
  const char* name;
  std::function<void(operands<T>&)> run;
};

#define QEL_RUN(name, call) operations.push_back({name, [](operands<T>& x) { core::call; }})
#define QEL_RUN_HERE(name, call) operations.push_back({name, [](operands<T>& x) { call; }})
#define QEL_OPERATIONS(p, ormqr, turned)                                                                    \
  QEL_RUN("getrf", qel_core_##p##getrf_(&x.n, &x.n, x.a, &x.n, x.pivots, &x.info));                         \
  QEL_RUN("potrf L", qel_core_##p##potrf_("L", &x.n, x.a, &x.n, &x.info, 1));                               \
  QEL_RUN("potrf U", qel_core_##p##potrf_("U", &x.n, x.a, &x.n, &x.info, 1));                               \
  QEL_RUN("getrs", qel_core_##p##getrs_("N", &x.n, &x.nrhs, x.a, &x.n, x.pivots, x.b, &x.n, &x.info, 1));   \
  QEL_RUN("getrs T", qel_core_##p##getrs_("T", &x.n, &x.nrhs, x.a, &x.n, x.pivots, x.b, &x.n, &x.info, 1)); \
  QEL_RUN_HERE("potrs", qel_core_##p##potrs_("U", &x.n, &x.nrhs, x.a, &x.n, x.b, &x.n, &x.info, 1));        \
  QEL_RUN("getri", qel_core_##p##getri_(&x.n, x.a, &x.n, x.pivots, x.work, &x.lwork, &x.info));             \
  QEL_RUN_HERE("trtri L", qel_core_##p##trtri_("L", "N", &x.n, x.a, &x.n, &x.info, 1, 1));                  \
  QEL_RUN_HERE("trtri U", qel_core_##p##trtri_("U", "U", &x.n, x.a, &x.n, &x.info, 1, 1));                  \
  QEL_RUN_HERE("lauum L", qel_core_##p##lauum_("L", &x.n, x.a, &x.n, &x.info, 1));                          \
  QEL_RUN_HERE("lauum U", qel_core_##p##lauum_("U", &x.n, x.a, &x.n, &x.info, 1));                          \
  QEL_RUN("geqrf", qel_core_##p##geqrf_(&x.n, &x.n, x.a, &x.n, x.tau, x.work, &x.lwork, &x.info));          \
  QEL_RUN("ormqr", qel_core_##p##ormqr##_("L", turned, &x.n, &x.nrhs, &x.n, x.a, &x.n, x.tau, x.b, &x.n,    \
                                          x.work, &x.lwork, &x.info, 1, 1));                                \
  QEL_RUN("gbtrf", qel_core_##p##gbtrf_(&x.n, &x.n, &x.band, &x.band, x.a, &x.ldab, x.pivots, &x.info));    \
  QEL_RUN("gbtrs", qel_core_##p##gbtrs_("N", &x.n, &x.band, &x.band, &x.nrhs, x.a, &x.ldab, x.pivots, x.b,  \
                                        &x.n, &x.info, 1));                                                 \
  QEL_RUN("tptrs", qel_core_##p##tptrs_("L", "N", "U", &x.n, &x.nrhs, x.a, x.b, &x.n, &x.info, 1, 1, 1))

template <class T>
std::vector<operation<T>> all_operations() {
  std::vector<operation<T>> operations;
  if constexpr (__is_same(T, float)) {
    QEL_OPERATIONS(s, ormqr, "T");
  } else if constexpr (__is_same(T, double)) {
    QEL_OPERATIONS(d, ormqr, "T");
  } else if constexpr (__is_same(T, complex8)) {
    QEL_OPERATIONS(c, unmqr, "C");
  } else {
    QEL_OPERATIONS(z, unmqr, "C");
  }
  return operations;
}

/// Operands of order n, band storage where the name says so, each in a guarded buffer.
template <class T>
class guarded_operands {
 public:
  guarded_operands(core_int n, const std::string& name, size_t misalignment)
      : is_band_(name.starts_with("gb")),
        a_(cells(n), misalignment % 16),
        b_(static_cast<size_t>(n * kSides), misalignment % 16),
        tau_(static_cast<size_t>(n), misalignment % 16),
        work_(static_cast<size_t>(64 * n), misalignment % 16),
        pivots_(static_cast<size_t>(n)) {
    x_.n = n;
    x_.band = n / 3;
    x_.ldab = 3 * x_.band + 1;
    x_.lwork = 64 * n;
    x_.a = a_.data();
    x_.b = b_.data();
    x_.tau = tau_.data();
    x_.work = work_.data();
    x_.pivots = pivots_.data();
    matrix<T> a = random_matrix<T>(n, n, 2, 0);
    for (core_int j = 0; j < n; ++j) {
      for (core_int i = 0; i < n; ++i) a(i, j) = from_real<T>(1 / static_cast<real_of<T>>(n)) * a(i, j);
      a(j, j) = from_real<T>(2 + static_cast<real_of<T>>(j % 3));
    }
    a_.assign(a.cells);
    b_.assign(random_matrix<T>(n, kSides, 4, 0).cells);
    tau_.assign(std::vector<T>(static_cast<size_t>(n), from_real<T>(1)));
    for (core_int i = 0; i < n; ++i) pivots_.data()[i] = std::min(n, i + 1 + i % 2);
  }
  operands<T>& get() { return x_; }
  /// A, B and tau, one after the other.
  wide_matrix result() {
    std::vector<T> all(a_.size() + b_.size() + tau_.size());
    char* to = reinterpret_cast<char*>(all.data());
    for (guarded<T>* part : {&a_, &b_, &tau_}) {
      std::memcpy(to, static_cast<const void*>(part->data()), part->size() * sizeof(T));
      to += part->size() * sizeof(T);
    }
    return filled(static_cast<core_int>(all.size()), 1,
                  [&](core_int i, core_int) { return widened(all[static_cast<size_t>(i)]); });
  }
  std::vector<core_int> pivots() { return {x_.pivots, x_.pivots + x_.n}; }

 private:
  template <class U>
  using guarded = qel::test::guarded<U>;
  size_t cells(core_int n) const { return static_cast<size_t>(is_band_ ? (n / 3 * 3 + 1) * n : n * n); }
  bool is_band_;
  operands<T> x_{};
  guarded<T> a_, b_, tau_, work_;
  guarded<core_int> pivots_;
};

/// Nothing to be had while it lives.
class no_memory {
 public:
  no_memory() : malloc_(serv_platform_malloc) {
    serv_platform_malloc = [](size_t) -> void* { return nullptr; };
  }
  ~no_memory() { serv_platform_malloc = malloc_; }
  no_memory(const no_memory&) = delete;
  no_memory& operator=(const no_memory&) = delete;

 private:
  decltype(serv_platform_malloc) malloc_;
};

template <class T>
class hard_conditions : public testing::Test {
 protected:
  static void SetUpTestSuite() { setenv("QEL_DISABLE_FAST_MM", "1", 1); }  // every request asks the platform
};
TYPED_TEST_SUITE(hard_conditions, element_types);

TYPED_TEST(hard_conditions, same_results) {
  using T = TypeParam;
  for (const operation<T>& one : all_operations<T>()) {
    for (const core_int n : {5, 37, 100}) {
      guarded_operands<T> usual(n, one.name, 0);
      one.run(usual.get());
      const auto expect_same = [&](guarded_operands<T>& other, const char* condition) {
        EXPECT_EQ(other.get().info, usual.get().info) << one.name << condition;
        EXPECT_EQ(other.pivots(), usual.pivots()) << one.name << condition;
        EXPECT_LT(apart<T>(other.result(), usual.result(), largest(usual.result())), 10)
            << one.name << condition << " order " << n;
      };
      guarded_operands<T> askew(n, one.name, sizeof(real_of<T>) / 2 + 1);
      one.run(askew.get());
      expect_same(askew, " at odd addresses");
      for (const int threads : {1, 3}) {
        const forced_threads team(threads);
        guarded_operands<T> poor(n, one.name, 0);
        {
          const no_memory now;
          one.run(poor.get());
        }
        expect_same(poor, " without memory");
      }
    }
  }
}

}  // namespace
}  // namespace qel::lapack
