// SPDX-License-Identifier: BSD-3-Clause
// LU and Cholesky factorisations and their solves beside the peers. Each call works on a fresh copy of the
// matrix, whose copying all contenders pay alike.
#include <algorithm>
#include <cmath>
#include <complex>
#include <random>
#include <string>
#include <vector>

#include "bench/support/compare.h"

namespace qel::bench {
namespace {

template <class T>
struct named;
template <>
struct named<float> {
  static constexpr char kLetter = 's';
  static constexpr double kFlops = 1;
};
template <>
struct named<double> {
  static constexpr char kLetter = 'd';
  static constexpr double kFlops = 1;
};
template <>
struct named<std::complex<float>> {
  static constexpr char kLetter = 'c';
  static constexpr double kFlops = 4;
};
template <>
struct named<std::complex<double>> {
  static constexpr char kLetter = 'z';
  static constexpr double kFlops = 4;
};

template <class T>
using getrf_fn = void(const int* m, const int* n, T* a, const int* lda, int* ipiv, int* info);
template <class T>
using potrf_fn = void(const char* uplo, const int* n, T* a, const int* lda, int* info, size_t);

template <class T>
std::vector<T> random_matrix(int n, double diagonal) {
  using real = decltype(std::abs(T{}));
  std::mt19937_64 generator(1);
  std::uniform_real_distribution<double> uniform(-1, 1);
  std::vector<T> values(static_cast<size_t>(n) * static_cast<size_t>(n));
  for (T& value : values) value = static_cast<T>(static_cast<real>(uniform(generator)));
  for (int i = 0; i < n; ++i)
    values[static_cast<size_t>(i) * static_cast<size_t>(n + 1)] +=
        static_cast<T>(static_cast<real>(diagonal));
  return values;
}

template <class T>
std::string symbol(const char* name) {
  return named<T>::kLetter + std::string(name) + "_";
}
template <class T>
std::string title(const char* name, int n) {
  return named<T>::kLetter + std::string(name) + "/n:" + std::to_string(n);
}

template <class T>
void register_type() {
  for (const int n : {8, 16, 32, 64, 100, 200, 300, 500, 1000, 2000, 3000}) {
    const double cube = named<T>::kFlops * n * static_cast<double>(n) * n;
    compare<getrf_fn<T>>(title<T>("getrf", n), symbol<T>("getrf").c_str(), {2 * cube / 3, 0},
                         [=](getrf_fn<T>* getrf, benchmark::State& state) {
                           const std::vector<T> a = random_matrix<T>(n, 0);
                           std::vector<T> f = a;
                           std::vector<int> pivots(static_cast<size_t>(n));
                           int info = 0;
                           for (auto _ : state) {
                             std::copy(a.begin(), a.end(), f.begin());
                             getrf(&n, &n, f.data(), &n, pivots.data(), &info);
                             benchmark::ClobberMemory();
                           }
                         });
    for (const char uplo : {'L', 'U'}) {
      compare<potrf_fn<T>>(title<T>("potrf", n) + "/" + uplo, symbol<T>("potrf").c_str(), {cube / 3, 0},
                           [=](potrf_fn<T>* potrf, benchmark::State& state) {
                             const std::vector<T> a = random_matrix<T>(n, 2 * n);
                             std::vector<T> f = a;
                             int info = 0;
                             for (auto _ : state) {
                               std::copy(a.begin(), a.end(), f.begin());
                               potrf(&uplo, &n, f.data(), &n, &info, 1);
                               benchmark::ClobberMemory();
                             }
                           });
    }
  }
}

}  // namespace
}  // namespace qel::bench

int main(int argc, char** argv) {
  using namespace qel::bench;
  register_type<double>();
  register_type<float>();
  register_type<std::complex<double>>();
  register_type<std::complex<float>>();
  return run_comparison(argc, argv);
}
