// SPDX-License-Identifier: BSD-3-Clause
// Dense BLAS beside the peers, through the Fortran names that all of them have.
#include <random>
#include <vector>

#include "bench/support/compare.h"

namespace qel::bench {
namespace {

using dot_fn = double(const int* n, const double* x, const int* incx, const double* y, const int* incy);
using gemm_fn = void(const char* transa, const char* transb, const int* m, const int* n, const int* k,
                     const double* alpha, const double* a, const int* lda, const double* b, const int* ldb,
                     const double* beta, double* c, const int* ldc);

std::vector<double> random_numbers(size_t count) {
  std::mt19937_64 generator(1);
  std::uniform_real_distribution<double> uniform(-1, 1);
  std::vector<double> values(count);
  for (double& value : values) value = uniform(generator);
  return values;
}

void register_dot(int n, int inc) {
  const auto elements = static_cast<double>(n);
  compare<dot_fn>("ddot/n:" + std::to_string(n) + "/inc:" + std::to_string(inc), "ddot_",
                  {2 * elements, 16 * elements}, [n, inc](dot_fn* dot, benchmark::State& state) {
                    const auto length = static_cast<size_t>(n) * static_cast<size_t>(inc);
                    const std::vector<double> x = random_numbers(length), y = random_numbers(length);
                    for (auto _ : state) benchmark::DoNotOptimize(dot(&n, x.data(), &inc, y.data(), &inc));
                  });
}

void register_gemm(int n, char transa, char transb) {
  const double order = n;
  compare<gemm_fn>(std::string("dgemm/") + transa + transb + "/n:" + std::to_string(n), "dgemm_",
                   {2 * order * order * order, 0}, [=](gemm_fn* gemm, benchmark::State& state) {
                     const auto elements = static_cast<size_t>(n) * static_cast<size_t>(n);
                     const std::vector<double> a = random_numbers(elements), b = random_numbers(elements);
                     std::vector<double> c(elements);
                     const double alpha = 1, beta = 0;
                     for (auto _ : state) {
                       gemm(&transa, &transb, &n, &n, &n, &alpha, a.data(), &n, b.data(), &n, &beta, c.data(),
                            &n);
                       benchmark::ClobberMemory();
                     }
                   });
}

}  // namespace
}  // namespace qel::bench

int main(int argc, char** argv) {
  using namespace qel::bench;
  for (const int n : {10, 100, 1000, 10000, 1000000}) register_dot(n, 1);
  register_dot(1000, 2);
  for (const int n : {8, 64, 256, 512, 1000}) register_gemm(n, 'N', 'N');
  for (const char transa : {'N', 'T'}) register_gemm(512, transa, 'T');
  return run_comparison(argc, argv);
}
