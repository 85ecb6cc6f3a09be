// SPDX-License-Identifier: BSD-3-Clause
// Matrix-matrix operations in all four types beside the peers, and what the registers of the machine could
// do: a loop of multiplications and additions on registers only, in 16-byte and 32-byte registers. Restrict a
// peer to a level's instructions for a fair comparison, e.g. OPENBLAS_CORETYPE=Nehalem beside
// QEL_DEBUG_CPU_TYPE=3.
#include <immintrin.h>

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
  using real = float;
  static constexpr char kLetter = 's';
  static constexpr double kFlops = 1;
};
template <>
struct named<double> {
  using real = double;
  static constexpr char kLetter = 'd';
  static constexpr double kFlops = 1;
};
template <>
struct named<std::complex<float>> {
  using real = float;
  static constexpr char kLetter = 'c';
  static constexpr double kFlops = 4;
};
template <>
struct named<std::complex<double>> {
  using real = double;
  static constexpr char kLetter = 'z';
  static constexpr double kFlops = 4;
};

template <class T>
using gemm_fn = void(const char*, const char*, const int*, const int*, const int*, const T*, const T*,
                     const int*, const T*, const int*, const T*, T*, const int*);
template <class T>
using triangular_fn = void(const char* side, const char* uplo, const char* trans, const char* diag,
                           const int* m, const int* n, const T* alpha, const T* a, const int* lda, T* b,
                           const int* ldb);
template <class T>
using syrk_fn = void(const char* uplo, const char* trans, const int* n, const int* k, const T* alpha,
                     const T* a, const int* lda, const T* beta, T* c, const int* ldc);
template <class T>
using symm_fn = void(const char* side, const char* uplo, const int* m, const int* n, const T* alpha,
                     const T* a, const int* lda, const T* b, const int* ldb, const T* beta, T* c,
                     const int* ldc);

template <class T>
std::vector<T> random_numbers(int rows, int columns) {
  using real = typename named<T>::real;
  std::mt19937_64 generator(1);
  std::uniform_real_distribution<real> uniform(-1, 1);
  std::vector<T> values(static_cast<size_t>(rows) * static_cast<size_t>(columns));
  for (T& value : values) value = static_cast<T>(uniform(generator));
  return values;
}
/// Far from singular, so that repeated solves keep their size.
template <class T>
std::vector<T> dominant_matrix(int n) {
  std::vector<T> a = random_numbers<T>(n, n);
  for (T& value : a) value = value / static_cast<T>(static_cast<typename named<T>::real>(n));
  for (int i = 0; i < n; ++i) a[static_cast<size_t>(i) * static_cast<size_t>(n + 1)] = static_cast<T>(1);
  return a;
}

template <class T>
std::string symbol(const char* name) {
  return named<T>::kLetter + std::string(name) + "_";
}
std::string sizes(int m, int n, int k) {
  return "/m:" + std::to_string(m) + "/n:" + std::to_string(n) + "/k:" + std::to_string(k);
}

template <class T>
void register_gemm(int m, int n, int k, char transa = 'N', char transb = 'N') {
  const double flops = 2 * named<T>::kFlops * m * static_cast<double>(n) * k;
  compare<gemm_fn<T>>(std::string(1, named<T>::kLetter) + "gemm/" + transa + transb + sizes(m, n, k),
                      symbol<T>("gemm").c_str(), {flops, 0}, [=](gemm_fn<T>* gemm, benchmark::State& state) {
                        const int lda = transa == 'N' ? m : k, ldb = transb == 'N' ? k : n;
                        const std::vector<T> a = random_numbers<T>(m, k), b = random_numbers<T>(k, n);
                        std::vector<T> c = random_numbers<T>(m, n);
                        const T alpha = 1, beta = 0;
                        for (auto _ : state) {
                          gemm(&transa, &transb, &m, &n, &k, &alpha, a.data(), &lda, b.data(), &ldb, &beta,
                               c.data(), &m);
                          benchmark::ClobberMemory();
                        }
                      });
}

template <class T>
void register_triangular(const char* name, char side, char uplo, char trans, int m, int n) {
  const double order = side == 'L' ? m : n;
  compare<triangular_fn<T>>(
      named<T>::kLetter + std::string(name) + "/" + side + uplo + trans + sizes(m, n, 0),
      symbol<T>(name).c_str(), {named<T>::kFlops * m * n * order, 0},
      [=](triangular_fn<T>* routine, benchmark::State& state) {
        const int lda = side == 'L' ? m : n;
        const char diag = 'N';
        const std::vector<T> a = dominant_matrix<T>(lda);
        std::vector<T> b = random_numbers<T>(m, n);
        const T alpha = 1;
        for (auto _ : state) {
          routine(&side, &uplo, &trans, &diag, &m, &n, &alpha, a.data(), &lda, b.data(), &m);
          benchmark::ClobberMemory();
        }
      });
}

template <class T>
void register_syrk(int n, int k, char uplo, char trans) {
  compare<syrk_fn<T>>(named<T>::kLetter + std::string("syrk/") + uplo + trans + sizes(n, n, k),
                      symbol<T>("syrk").c_str(), {named<T>::kFlops * n * (n + 1.0) * k, 0},
                      [=](syrk_fn<T>* routine, benchmark::State& state) {
                        const int lda = trans == 'N' ? n : k;
                        const std::vector<T> a = random_numbers<T>(n, k);
                        std::vector<T> c = random_numbers<T>(n, n);
                        const T alpha = 1, beta = 0;
                        for (auto _ : state) {
                          routine(&uplo, &trans, &n, &k, &alpha, a.data(), &lda, &beta, c.data(), &n);
                          benchmark::ClobberMemory();
                        }
                      });
}

template <class T>
void register_symm(int n, char side, char uplo) {
  compare<symm_fn<T>>(named<T>::kLetter + std::string("symm/") + side + uplo + sizes(n, n, 0),
                      symbol<T>("symm").c_str(), {2 * named<T>::kFlops * n * static_cast<double>(n) * n, 0},
                      [=](symm_fn<T>* routine, benchmark::State& state) {
                        const std::vector<T> a = random_numbers<T>(n, n), b = random_numbers<T>(n, n);
                        std::vector<T> c(a.size());
                        const T alpha = 1, beta = 0;
                        for (auto _ : state) {
                          routine(&side, &uplo, &n, &n, &alpha, a.data(), &n, b.data(), &n, &beta, c.data(),
                                  &n);
                          benchmark::ClobberMemory();
                        }
                      });
}

// Ten independent sums hide the latencies; the products cannot be moved out of the loop because the compiler
// is told that the factor changes.
template <class V>
[[gnu::always_inline]] inline void multiply_and_add(benchmark::State& state) {
  constexpr int kSums = 10, kSteps = 1000;
  V factor = V{} + 1;
  asm("" : "+x"(factor));  // not known to be one
  V sum[kSums] = {};
  for (auto _ : state) {
    for (int step = 0; step < kSteps; ++step) {
#pragma GCC unroll 10
      for (V& s : sum) {
        V product = factor;
        asm volatile("" : "+x"(product));
        s += product * factor;
      }
    }
  }
  for (V& s : sum) benchmark::DoNotOptimize(s);
  state.counters["flop/s"] = benchmark::Counter(2.0 * kSums * kSteps * sizeof(V) / sizeof(double),
                                                benchmark::Counter::kIsIterationInvariantRate);
}
typedef double two_doubles __attribute__((vector_size(16)));
typedef double four_doubles __attribute__((vector_size(32)));
void peak_of_16_bytes(benchmark::State& state) { multiply_and_add<two_doubles>(state); }
__attribute__((target("avx"))) void peak_of_32_bytes(benchmark::State& state) {
  multiply_and_add<four_doubles>(state);
}

/// As if it were a case of QEL's, so that the table shows the rate.
void register_peak(const std::string& name, void (*peak)(benchmark::State&)) {
  remember_case(name);
  add_run(name, kSubject, peak);
}

template <class T>
void register_type() {
  for (const int n : {4, 8, 16, 24, 32, 48, 64, 100, 128, 256, 512, 1000, 2000}) register_gemm<T>(n, n, n);
  for (const int n : {100, 1000}) {
    for (const char transa : {'N', 'T'}) register_gemm<T>(n, n, n, transa, 'T');
    register_gemm<T>(n, n, n, 'T', 'N');
  }
  register_gemm<T>(2000, 2000, 32);
  register_gemm<T>(4000, 32, 1000);
  register_gemm<T>(32, 4000, 1000);
  register_gemm<T>(64, 64, 4000);
  for (const int n : {32, 100, 300, 1000, 2000}) {
    for (const char* name : {"trsm", "trmm"}) {
      register_triangular<T>(name, 'L', 'L', 'N', n, n);
      register_triangular<T>(name, 'L', 'U', 'T', n, n);
      register_triangular<T>(name, 'R', 'U', 'N', n, n);
      register_triangular<T>(name, 'R', 'L', 'T', n, n);
    }
    register_syrk<T>(n, n, 'L', 'N');
    register_syrk<T>(n, n, 'U', 'T');
    register_symm<T>(n, 'L', 'L');
    register_symm<T>(n, 'R', 'U');
  }
}

}  // namespace
}  // namespace qel::bench

int main(int argc, char** argv) {
  using namespace qel::bench;
  register_peak("peak/16 bytes", peak_of_16_bytes);
  if (__builtin_cpu_supports("avx")) register_peak("peak/32 bytes", peak_of_32_bytes);
  register_type<double>();
  register_type<float>();
  register_type<std::complex<double>>();
  register_type<std::complex<float>>();
  return run_comparison(argc, argv);
}
