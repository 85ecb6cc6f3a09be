// SPDX-License-Identifier: BSD-3-Clause
// Matrix-vector routines beside the peers, square matrices in the four element types, through the Fortran
// names that all of them have. Threads: OMP_NUM_THREADS (default 1), QEL_DYNAMIC; the processor level:
// QEL_DEBUG_CPU_TYPE for QEL, OPENBLAS_CORETYPE for OpenBLAS.
#include <complex>
#include <cstdlib>
#include <random>
#include <string>
#include <vector>

#include "bench/support/compare.h"

namespace qel::bench {
namespace {

template <class T>
struct element {
  static constexpr double kFlops = 2;  // of one multiplication and one addition
  static T of(double real, double) { return static_cast<T>(real); }
};
template <class R>
struct element<std::complex<R>> {
  static constexpr double kFlops = 8;
  static std::complex<R> of(double real, double imag) { return {static_cast<R>(real), static_cast<R>(imag)}; }
};

template <class T>
std::vector<T> random_numbers(size_t count) {
  std::mt19937_64 generator(1);
  std::uniform_real_distribution<double> uniform(-1, 1);
  std::vector<T> values(count);
  for (T& value : values) {
    const double real = uniform(generator), imag = uniform(generator);
    value = element<T>::of(real, imag);
  }
  return values;
}

template <class T>
struct operands {
  std::vector<T> a, x, y;
  int n, lda;
  operands(int order, int inc)
      : a(random_numbers<T>(static_cast<size_t>(order) * static_cast<size_t>(order))),
        x(random_numbers<T>(static_cast<size_t>(order) * static_cast<size_t>(inc))),
        y(x),
        n(order),
        lda(order) {
    // A near identity: products and solutions of triangles neither grow nor fade.
    for (T& value : a) value *= element<T>::of(1.0 / order, 0);
    for (int i = 0; i < order; ++i)
      a[static_cast<size_t>(i) * static_cast<size_t>(order + 1)] = element<T>::of(1, 0);
  }
};

/// `elements` of the matrix are read (and written) by a call; each takes part in `uses` products.
template <class T>
work_per_call work(double elements, double uses) {
  return {element<T>::kFlops * uses * elements, 0};
}

template <class T>
void register_type(const std::string& letter, int n, int inc) {
  using gemv_fn = void(const char*, const int*, const int*, const T*, const T*, const int*, const T*,
                       const int*, const T*, T*, const int*);
  using trmv_fn =
      void(const char*, const char*, const char*, const int*, const T*, const int*, T*, const int*);
  using ger_fn =
      void(const int*, const int*, const T*, const T*, const int*, const T*, const int*, T*, const int*);
  using symv_fn = void(const char*, const int*, const T*, const T*, const int*, const T*, const int*,
                       const T*, T*, const int*);
  const std::string size = "/n:" + std::to_string(n) + (inc == 1 ? "" : "/inc:" + std::to_string(inc));
  const double square = static_cast<double>(n) * n;
  const bool complex = letter == "c" || letter == "z";
  for (const char trans : {'N', 'T', 'C'}) {
    if (trans == 'C' && !complex) continue;
    compare<gemv_fn>(letter + "gemv/" + trans + size, (letter + "gemv_").c_str(), work<T>(square, 1),
                     [=](gemv_fn* gemv, benchmark::State& state) {
                       operands<T> o(n, inc);
                       const T alpha = element<T>::of(0.9, 0.1), beta = element<T>::of(0.5, 0.2);
                       for (auto _ : state) {
                         gemv(&trans, &n, &n, &alpha, o.a.data(), &n, o.x.data(), &inc, &beta, o.y.data(),
                              &inc);
                         benchmark::ClobberMemory();
                       }
                     });
  }
  for (const std::string routine : {"trmv", "trsv"}) {
    for (const char* form : {"UN", "UT", "LN", "LT"}) {
      compare<trmv_fn>(letter + routine + '/' + form + size, (letter + routine + '_').c_str(),
                       work<T>(square, 0.5), [=](trmv_fn* trmv, benchmark::State& state) {
                         operands<T> o(n, inc);
                         const char diag = 'U';
                         for (auto _ : state) {
                           trmv(form, form + 1, &diag, &n, o.a.data(), &n, o.x.data(), &inc);
                           benchmark::ClobberMemory();
                         }
                       });
    }
  }
  compare<ger_fn>(letter + "ger" + size, (letter + (complex ? "geru_" : "ger_")).c_str(), work<T>(square, 1),
                  [=](ger_fn* ger, benchmark::State& state) {
                    operands<T> o(n, inc);
                    const T alpha = element<T>::of(1e-6, 0);
                    for (auto _ : state) {
                      ger(&n, &n, &alpha, o.x.data(), &inc, o.y.data(), &inc, o.a.data(), &n);
                      benchmark::ClobberMemory();
                    }
                  });
  for (const char uplo : {'U', 'L'}) {
    compare<symv_fn>(letter + (complex ? "hemv/" : "symv/") + uplo + size,
                     (letter + (complex ? "hemv_" : "symv_")).c_str(), work<T>(square, 1),
                     [=](symv_fn* symv, benchmark::State& state) {
                       operands<T> o(n, inc);
                       const T alpha = element<T>::of(0.9, 0), beta = element<T>::of(0.5, 0);
                       for (auto _ : state) {
                         symv(&uplo, &n, &alpha, o.a.data(), &n, o.x.data(), &inc, &beta, o.y.data(), &inc);
                         benchmark::ClobberMemory();
                       }
                     });
  }
}

}  // namespace
}  // namespace qel::bench

int main(int argc, char** argv) {
  using namespace qel::bench;
  setenv("OMP_NUM_THREADS", "1", 0);  // before registration loads the peers, which read it then
  for (const int n : {8, 64, 100, 128, 192, 256, 384, 512, 1024, 4096}) {
    for (const int inc : {1, 3}) {
      if (inc > 1 && n != 64 && n != 1024) continue;
      register_type<float>("s", n, inc);
      register_type<double>("d", n, inc);
      register_type<std::complex<float>>("c", n, inc);
      register_type<std::complex<double>>("z", n, inc);
    }
  }
  return run_comparison(argc, argv);
}
