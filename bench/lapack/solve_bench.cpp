// SPDX-License-Identifier: BSD-3-Clause
// Solves, inverses and least squares beside the peers. getrs has 1 and n / 4 right-hand sides.
#include "bench/lapack/matrices.h"

namespace qel::bench {
namespace {

template <class T>
using getrf_fn = void(const int* m, const int* n, T* a, const int* lda, int* ipiv, int* info);
template <class T>
using getrs_fn = void(const char* trans, const int* n, const int* nrhs, const T* a, const int* lda,
                      const int* ipiv, T* b, const int* ldb, int* info, size_t);
template <class T>
using getri_fn = void(const int* n, T* a, const int* lda, const int* ipiv, T* work, const int* lwork,
                      int* info);
template <class T>
using gesv_fn = void(const int* n, const int* nrhs, T* a, const int* lda, int* ipiv, T* b, const int* ldb,
                     int* info);
template <class T>
using posv_fn = void(const char* uplo, const int* n, const int* nrhs, T* a, const int* lda, T* b,
                     const int* ldb, int* info, size_t);
template <class T>
using potri_fn = void(const char* uplo, const int* n, T* a, const int* lda, int* info, size_t);
template <class T>
using geqrf_fn = void(const int* m, const int* n, T* a, const int* lda, T* tau, T* work, const int* lwork,
                      int* info);
template <class T>
using gels_fn = void(const char* trans, const int* m, const int* n, const int* nrhs, T* a, const int* lda,
                     T* b, const int* ldb, T* work, const int* lwork, int* info, size_t);

constexpr int kOne = 1;

/// Rows exchanged as a factorisation would have it.
std::vector<int> some_pivots(int n) {
  std::vector<int> pivots(static_cast<size_t>(n));
  for (int i = 0; i < n; ++i) pivots[static_cast<size_t>(i)] = std::min(n, i + 1 + i % 7 * n / 9);
  return pivots;
}

template <class T>
void register_solves(int n) {
  for (const int nrhs : {1, std::max(n / 4, 2)}) {
    const std::string sides = "/nrhs:" + std::to_string(nrhs);
    const double solve = cube<T>(n) / n * 2 * nrhs;
    compare<getrs_fn<T>>(title<T>("getrs", n) + sides, symbol<T>("getrs").c_str(), {solve, 0},
                         [=](getrs_fn<T>* getrs, benchmark::State& state) {
                           const std::vector<T> a = random_matrix<T>(n, n, 2 * n);
                           const std::vector<T> b = random_matrix<T>(n, nrhs);
                           std::vector<T> x = b;
                           const std::vector<int> pivots = some_pivots(n);
                           int info = 0;
                           for (auto _ : state) {
                             std::copy(b.begin(), b.end(), x.begin());
                             getrs("N", &n, &nrhs, a.data(), &n, pivots.data(), x.data(), &n, &info, 1);
                             benchmark::ClobberMemory();
                           }
                         });
  }
  const double solve = cube<T>(n) / n * 2;
  compare<gesv_fn<T>>(title<T>("gesv", n), symbol<T>("gesv").c_str(), {2 * cube<T>(n) / 3 + solve, 0},
                      [=](gesv_fn<T>* gesv, benchmark::State& state) {
                        const std::vector<T> a = random_matrix<T>(n, n);
                        std::vector<T> f = a, x = random_matrix<T>(n, 1);
                        std::vector<int> pivots(static_cast<size_t>(n));
                        int info = 0;
                        for (auto _ : state) {
                          std::copy(a.begin(), a.end(), f.begin());
                          std::copy_n(a.begin(), n, x.begin());
                          gesv(&n, &kOne, f.data(), &n, pivots.data(), x.data(), &n, &info);
                          benchmark::ClobberMemory();
                        }
                      });
  compare<posv_fn<T>>(title<T>("posv", n), symbol<T>("posv").c_str(), {cube<T>(n) / 3 + solve, 0},
                      [=](posv_fn<T>* posv, benchmark::State& state) {
                        const std::vector<T> a = random_matrix<T>(n, n, 2 * n);
                        std::vector<T> f = a, x = random_matrix<T>(n, 1);
                        int info = 0;
                        for (auto _ : state) {
                          std::copy(a.begin(), a.end(), f.begin());
                          std::copy_n(a.begin(), n, x.begin());
                          posv("L", &n, &kOne, f.data(), &n, x.data(), &n, &info, 1);
                          benchmark::ClobberMemory();
                        }
                      });
}

template <class T>
void register_inverses(int n) {
  compare<getri_fn<T>>(title<T>("getri", n), symbol<T>("getri").c_str(), {4 * cube<T>(n) / 3, 0},
                       [=](getri_fn<T>* getri, benchmark::State& state) {
                         const std::vector<T> a = random_matrix<T>(n, n, 2 * n);
                         std::vector<T> f = a;
                         const std::vector<int> pivots = some_pivots(n);
                         int info = 0;
                         std::vector<T> work = queried_work<T>([&](T* most, int length) {
                           getri(&n, f.data(), &n, pivots.data(), most, &length, &info);
                         });
                         const int length = static_cast<int>(work.size());
                         for (auto _ : state) {
                           std::copy(a.begin(), a.end(), f.begin());
                           getri(&n, f.data(), &n, pivots.data(), work.data(), &length, &info);
                           benchmark::ClobberMemory();
                         }
                       });
  compare<potri_fn<T>>(title<T>("potri", n), symbol<T>("potri").c_str(), {2 * cube<T>(n) / 3, 0},
                       [=](potri_fn<T>* potri, benchmark::State& state) {
                         const std::vector<T> a = random_matrix<T>(n, n, 2 * n);
                         std::vector<T> f = a;
                         int info = 0;
                         for (auto _ : state) {
                           std::copy(a.begin(), a.end(), f.begin());
                           potri("L", &n, f.data(), &n, &info, 1);
                           benchmark::ClobberMemory();
                         }
                       });
}

template <class T>
void register_least_squares(int n) {
  compare<geqrf_fn<T>>(title<T>("geqrf", n), symbol<T>("geqrf").c_str(), {4 * cube<T>(n) / 3, 0},
                       [=](geqrf_fn<T>* geqrf, benchmark::State& state) {
                         const std::vector<T> a = random_matrix<T>(n, n);
                         std::vector<T> f = a, tau(static_cast<size_t>(n));
                         int info = 0;
                         std::vector<T> work = queried_work<T>([&](T* most, int length) {
                           geqrf(&n, &n, f.data(), &n, tau.data(), most, &length, &info);
                         });
                         const int length = static_cast<int>(work.size());
                         for (auto _ : state) {
                           std::copy(a.begin(), a.end(), f.begin());
                           geqrf(&n, &n, f.data(), &n, tau.data(), work.data(), &length, &info);
                           benchmark::ClobberMemory();
                         }
                       });
  const int m = n + n / 2;
  const double flops = cube<T>(n) / n * 2 * (m - n / 3.0);
  compare<gels_fn<T>>(title<T>("gels", n), symbol<T>("gels").c_str(), {flops, 0},
                      [=](gels_fn<T>* gels, benchmark::State& state) {
                        const std::vector<T> a = random_matrix<T>(m, n);
                        std::vector<T> f = a, b = random_matrix<T>(m, 1);
                        int info = 0;
                        std::vector<T> work = queried_work<T>([&](T* most, int length) {
                          gels("N", &m, &n, &kOne, f.data(), &m, b.data(), &m, most, &length, &info, 1);
                        });
                        const int length = static_cast<int>(work.size());
                        for (auto _ : state) {
                          std::copy(a.begin(), a.end(), f.begin());
                          std::copy_n(a.begin(), m, b.begin());
                          gels("N", &m, &n, &kOne, f.data(), &m, b.data(), &m, work.data(), &length, &info,
                               1);
                          benchmark::ClobberMemory();
                        }
                      });
}

template <class T>
void register_type() {
  for (const int n : {8, 16, 32, 64, 100, 300, 500, 1000, 2000, 3000}) {
    register_solves<T>(n);
    register_inverses<T>(n);
    register_least_squares<T>(n);
  }
}

}  // namespace

void register_solvers() {
  register_type<double>();
  register_type<float>();
  register_type<std::complex<double>>();
  register_type<std::complex<float>>();
}

}  // namespace qel::bench
