// SPDX-License-Identifier: BSD-3-Clause
// NaN and infinity in the input: every driver comes to an end, on one thread and on several. Iterations that
// wait for a number to become small are what could go on forever; an alarm ends the program then.
#include <gtest/gtest.h>
#include <unistd.h>

#include <csignal>
#include <cstring>
#include <functional>

#include "lapack/lapack.h"
#include "tests/lapack/matrices.h"

namespace qel::lapack {

// Drivers that no entry has in all types.
extern "C" {
#define QEL_DRIVERS(T, p)                                                                                 \
  void qel_core_##p##gesv_(const core_int* n, const core_int* nrhs, T* a, const core_int* lda,            \
                           core_int* ipiv, T* b, const core_int* ldb, core_int* info);                    \
  void qel_core_##p##gels_(const char* trans, const core_int* m, const core_int* n, const core_int* nrhs, \
                           T* a, const core_int* lda, T* b, const core_int* ldb, T* work,                 \
                           const core_int* lwork, core_int* info, size_t);
QEL_DRIVERS(float, s)
QEL_DRIVERS(double, d)
QEL_DRIVERS(complex8, c)
QEL_DRIVERS(complex16, z)
#undef QEL_DRIVERS
}

namespace {

const char* running = "";
void out_of_time(int) {
  constexpr char kText[] = "does not end: ";
  ssize_t ignored = write(STDERR_FILENO, kText, sizeof kText - 1);
  ignored += write(STDERR_FILENO, running, std::strlen(running));
  _exit(ignored >= 0 ? 3 : 4);
}

/// The arrays that the drivers share.
template <class T>
struct arrays {
  using R = real_of<T>;
  core_int n, one = 1, lwork, rank = 0, ilo = 0, ihi = 0, found = 0, info = 0;
  R rcond = R(1e-6), norm = 0, bound = 0;
  matrix<T> a;
  std::vector<T> b, u, v, work, w;
  std::vector<R> s, scale, rconde, rcondv, rwork;
  std::vector<core_int> pivots, iwork;
  explicit arrays(const matrix<T>& from)
      : n(from.n), lwork(100 * n + 8 * n * n), a(from), b(static_cast<size_t>(n), from_real<T>(1)) {
    const auto size = static_cast<size_t>(n);
    u.resize(size * size);
    v.resize(size * size);
    w.resize(2 * size);
    work.resize(static_cast<size_t>(lwork));
    s.resize(2 * size);
    scale.resize(size);
    rconde.resize(size);
    rcondv.resize(size);
    rwork.resize(10 * size * size + 40 * size);
    pivots.resize(size);
    for (size_t i = 0; i < size; ++i) pivots[i] = static_cast<core_int>(i) + 1;
    iwork.resize(10 * size);
  }
};

template <class T>
struct driver {
  const char* name;
  std::function<void(arrays<T>&)> run;
};

#define QEL_CALL(routine, ...) \
  drivers.push_back({#routine, [](auto& x) { core::qel_core_##routine##_(__VA_ARGS__); }})
#define QEL_CALL_HERE(routine, ...) \
  drivers.push_back({#routine, [](auto& x) { qel_core_##routine##_(__VA_ARGS__); }})
#define QEL_BOTH(p)                                                                                       \
  QEL_CALL(p##getrf, &x.n, &x.n, x.a.data(), &x.a.lda, x.pivots.data(), &x.info);                         \
  QEL_CALL(p##getri, &x.n, x.a.data(), &x.a.lda, x.pivots.data(), x.work.data(), &x.lwork, &x.info);      \
  QEL_CALL(p##potrf, "L", &x.n, x.a.data(), &x.a.lda, &x.info, 1);                                        \
  QEL_CALL(p##potrf, "U", &x.n, x.a.data(), &x.a.lda, &x.info, 1);                                        \
  QEL_CALL_HERE(p##gesv, &x.n, &x.one, x.a.data(), &x.a.lda, x.pivots.data(), x.b.data(), &x.n, &x.info); \
  QEL_CALL_HERE(p##gels, "N", &x.n, &x.n, &x.one, x.a.data(), &x.a.lda, x.b.data(), &x.n, x.work.data(),  \
                &x.lwork, &x.info, 1)
// Routines whose complex form has an array of reals behind the work array.
#define QEL_REAL(p)                                                                                         \
  QEL_BOTH(p);                                                                                              \
  QEL_CALL(p##gelsy, &x.n, &x.n, &x.one, x.a.data(), &x.a.lda, x.b.data(), &x.n, x.pivots.data(), &x.rcond, \
           &x.rank, x.work.data(), &x.lwork, &x.info);                                                      \
  QEL_CALL(p##gesvd, "A", "A", &x.n, &x.n, x.a.data(), &x.a.lda, x.s.data(), x.u.data(), &x.n, x.v.data(),  \
           &x.n, x.work.data(), &x.lwork, &x.info, 1, 1);                                                   \
  QEL_CALL(p##gesdd, "A", &x.n, &x.n, x.a.data(), &x.a.lda, x.s.data(), x.u.data(), &x.n, x.v.data(), &x.n, \
           x.work.data(), &x.lwork, x.iwork.data(), &x.info, 1);                                            \
  QEL_CALL(p##geevx, "B", "V", "V", "B", &x.n, x.a.data(), &x.a.lda, x.w.data(), x.w.data() + x.n,          \
           x.u.data(), &x.n, x.v.data(), &x.n, &x.ilo, &x.ihi, x.scale.data(), &x.norm, x.rconde.data(),    \
           x.rcondv.data(), x.work.data(), &x.lwork, x.iwork.data(), &x.info, 1, 1, 1, 1);                  \
  QEL_CALL(p##spevx, "V", "A", "L", &x.n, x.a.data(), &x.bound, &x.bound, &x.one, &x.n, &x.bound, &x.found, \
           x.s.data(), x.u.data(), &x.n, x.work.data(), x.iwork.data(), x.pivots.data(), &x.info, 1, 1, 1); \
  QEL_CALL(p##spevx, "V", "I", "U", &x.n, x.a.data(), &x.bound, &x.bound, &x.one, &x.one, &x.bound,         \
           &x.found, x.s.data(), x.u.data(), &x.n, x.work.data(), x.iwork.data(), x.pivots.data(), &x.info, \
           1, 1, 1)
#define QEL_COMPLEX(p)                                                                                      \
  QEL_BOTH(p);                                                                                              \
  QEL_CALL(p##gelsy, &x.n, &x.n, &x.one, x.a.data(), &x.a.lda, x.b.data(), &x.n, x.pivots.data(), &x.rcond, \
           &x.rank, x.work.data(), &x.lwork, x.rwork.data(), &x.info);                                      \
  QEL_CALL(p##gesvd, "A", "A", &x.n, &x.n, x.a.data(), &x.a.lda, x.s.data(), x.u.data(), &x.n, x.v.data(),  \
           &x.n, x.work.data(), &x.lwork, x.rwork.data(), &x.info, 1, 1);                                   \
  QEL_CALL(p##gesdd, "A", &x.n, &x.n, x.a.data(), &x.a.lda, x.s.data(), x.u.data(), &x.n, x.v.data(), &x.n, \
           x.work.data(), &x.lwork, x.rwork.data(), x.iwork.data(), &x.info, 1);                            \
  QEL_CALL(p##geevx, "B", "V", "V", "B", &x.n, x.a.data(), &x.a.lda, x.w.data(), x.u.data(), &x.n,          \
           x.v.data(), &x.n, &x.ilo, &x.ihi, x.scale.data(), &x.norm, x.rconde.data(), x.rcondv.data(),     \
           x.work.data(), &x.lwork, x.rwork.data(), &x.info, 1, 1, 1, 1);                                   \
  QEL_CALL(p##hpevx, "V", "A", "L", &x.n, x.a.data(), &x.bound, &x.bound, &x.one, &x.n, &x.bound, &x.found, \
           x.s.data(), x.u.data(), &x.n, x.work.data(), x.rwork.data(), x.iwork.data(), x.pivots.data(),    \
           &x.info, 1, 1, 1)

template <class T>
std::vector<driver<T>> all_drivers() {
  std::vector<driver<T>> drivers;
  if constexpr (__is_same(T, float)) {
    QEL_REAL(s);
  } else if constexpr (__is_same(T, double)) {
    QEL_REAL(d);
  } else if constexpr (__is_same(T, complex8)) {
    QEL_COMPLEX(c);
  } else {
    QEL_COMPLEX(z);
  }
  return drivers;
}

template <class T>
class not_finite : public testing::Test {};
TYPED_TEST_SUITE(not_finite, element_types);

TYPED_TEST(not_finite, every_driver_ends) {
  using T = TypeParam;
  using R = real_of<T>;
  std::signal(SIGALRM, out_of_time);
  const R nan = std::numeric_limits<R>::quiet_NaN(), infinity = std::numeric_limits<R>::infinity();
  for (const int threads : {1, 3}) {
    const forced_threads team(threads);
    for (const core_int n : {3, 40}) {
      matrix<T> one_nan = positive_matrix<T>(n, 1), one_infinity = one_nan, all_nan = one_nan,
                row_of_infinities = one_nan, overflowing = one_nan;
      one_nan(n / 2, n / 3) = from_real<T>(nan);
      one_infinity(n - 1, n - 1) = from_real<T>(infinity);
      for (T& cell : all_nan.cells) cell = from_real<T>(nan);
      for (core_int j = 0; j < n; ++j) row_of_infinities(1, j) = from_real<T>(j % 2 ? infinity : -infinity);
      for (T& cell : overflowing.cells) cell = from_real<T>(std::numeric_limits<R>::max()) * cell;
      for (const auto& input : {one_nan, one_infinity, all_nan, row_of_infinities, overflowing}) {
        for (const driver<T>& one : all_drivers<T>()) {
          arrays<T> x(input);
          running = one.name;
          alarm(60);
          one.run(x);
          alarm(0);
        }
      }
    }
  }
}

}  // namespace
}  // namespace qel::lapack
