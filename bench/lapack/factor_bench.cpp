// SPDX-License-Identifier: BSD-3-Clause
// LU and Cholesky factorisations beside the peers. Each call works on a fresh copy of the matrix, whose
// copying all contenders pay alike.
#include "bench/lapack/matrices.h"

namespace qel::bench {
namespace {

template <class T>
using getrf_fn = void(const int* m, const int* n, T* a, const int* lda, int* ipiv, int* info);
template <class T>
using potrf_fn = void(const char* uplo, const int* n, T* a, const int* lda, int* info, size_t);

template <class T>
void register_type() {
  for (const int n : {8, 16, 32, 64, 100, 200, 300, 500, 1000, 2000, 3000}) {
    compare<getrf_fn<T>>(title<T>("getrf", n), symbol<T>("getrf").c_str(), {2 * cube<T>(n) / 3, 0},
                         [=](getrf_fn<T>* getrf, benchmark::State& state) {
                           const std::vector<T> a = random_matrix<T>(n, n);
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
      compare<potrf_fn<T>>(title<T>("potrf", n) + "/" + uplo, symbol<T>("potrf").c_str(), {cube<T>(n) / 3, 0},
                           [=](potrf_fn<T>* potrf, benchmark::State& state) {
                             const std::vector<T> a = random_matrix<T>(n, n, 2 * n);
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
  register_solvers();
  register_spectral();
  return run_comparison(argc, argv);
}
