// SPDX-License-Identifier: BSD-3-Clause
// Level 1 beside the peers in all four types, through the Fortran names that all of them have. Vectors start
// on a cache line, so that no contender's memory lies better than another's.
#include <cstdlib>
#include <memory>
#include <random>
#include <string>

#include "bench/support/compare.h"
#include "qel/types.h"

namespace qel::bench {
namespace {

using complex8 = _QEL_Complex8;
using complex16 = _QEL_Complex16;
constexpr int kOne = 1;

template <class T>
struct type_names;
template <>
struct type_names<float> {
  using real = float;
  static constexpr const char *letter = "s", *dot = "sdot", *norm = "s";
};
template <>
struct type_names<double> {
  using real = double;
  static constexpr const char *letter = "d", *dot = "ddot", *norm = "d";
};
template <>
struct type_names<complex8> {
  using real = float;
  static constexpr const char *letter = "c", *dot = "cdotu", *norm = "sc";
};
template <>
struct type_names<complex16> {
  using real = double;
  static constexpr const char *letter = "z", *dot = "zdotu", *norm = "dz";
};

/// Random numbers that start on a cache line.
template <class T>
class vector_on_line {
 public:
  explicit vector_on_line(int n) : data_(allocate(n)) {
    using R = typename type_names<T>::real;
    std::mt19937_64 generator(1);
    std::uniform_real_distribution<R> uniform(-1, 1);
    auto* number = reinterpret_cast<R*>(data_.get());
    for (size_t i = 0; i < static_cast<size_t>(n) * sizeof(T) / sizeof(R); ++i)
      number[i] = uniform(generator);
  }
  T* data() { return data_.get(); }

 private:
  static T* allocate(int n) {
    const size_t bytes = (static_cast<size_t>(n) * sizeof(T) + 63) / 64 * 64;
    return static_cast<T*>(std::aligned_alloc(64, bytes));
  }
  struct release {
    void operator()(T* p) const { std::free(p); }
  };
  std::unique_ptr<T, release> data_;
};

/// A number of the type, small enough that a vector that it multiplies over and over stays finite.
template <class T>
T factor() {
  T value{};
  *reinterpret_cast<typename type_names<T>::real*>(&value) = static_cast<typename type_names<T>::real>(-1);
  return value;
}

template <class T, class Fn, class Call>
void register_case(const std::string& routine, int n, double vectors_moved, const Call& call) {
  compare<Fn>(routine + "/n:" + std::to_string(n), (routine + "_").c_str(),
              {0, vectors_moved * n * static_cast<double>(sizeof(T))}, [=](Fn* fn, benchmark::State& state) {
                vector_on_line<T> x(n), y(n);
                for (auto _ : state) {
                  call(fn, &n, x.data(), y.data());
                  benchmark::ClobberMemory();
                }
              });
}

template <class T>
void register_type(int n) {
  using R = typename type_names<T>::real;
  using dot_fn = T(const int*, const T*, const int*, const T*, const int*);
  using axpy_fn = void(const int*, const T*, const T*, const int*, T*, const int*);
  using copy_fn = void(const int*, const T*, const int*, T*, const int*);
  using swap_fn = void(const int*, T*, const int*, T*, const int*);
  using scal_fn = void(const int*, const T*, T*, const int*);
  using norm_fn = R(const int*, const T*, const int*);
  using index_fn = int(const int*, const T*, const int*);
  using rot_fn = void(const int*, T*, const int*, T*, const int*, const R*, const R*);
  using names = type_names<T>;
  const std::string letter = names::letter, norm = names::norm;

  register_case<T, dot_fn>(names::dot, n, 2, [](dot_fn* fn, const int* length, T* x, T* y) {
    benchmark::DoNotOptimize(fn(length, x, &kOne, y, &kOne));
  });
  register_case<T, axpy_fn>(letter + "axpy", n, 3, [](axpy_fn* fn, const int* length, T* x, T* y) {
    const T alpha = factor<T>();
    fn(length, &alpha, x, &kOne, y, &kOne);
  });
  register_case<T, scal_fn>(letter + "scal", n, 2, [](scal_fn* fn, const int* length, T* x, T*) {
    const T alpha = factor<T>();
    fn(length, &alpha, x, &kOne);
  });
  register_case<T, copy_fn>(letter + "copy", n, 2, [](copy_fn* fn, const int* length, T* x, T* y) {
    fn(length, x, &kOne, y, &kOne);
  });
  register_case<T, swap_fn>(letter + "swap", n, 4, [](swap_fn* fn, const int* length, T* x, T* y) {
    fn(length, x, &kOne, y, &kOne);
  });
  register_case<T, norm_fn>(norm + "asum", n, 1, [](norm_fn* fn, const int* length, T* x, T*) {
    benchmark::DoNotOptimize(fn(length, x, &kOne));
  });
  register_case<T, norm_fn>(norm + "nrm2", n, 1, [](norm_fn* fn, const int* length, T* x, T*) {
    benchmark::DoNotOptimize(fn(length, x, &kOne));
  });
  register_case<T, index_fn>("i" + letter + "amax", n, 1, [](index_fn* fn, const int* length, T* x, T*) {
    benchmark::DoNotOptimize(fn(length, x, &kOne));
  });
  register_case<T, rot_fn>(
      letter == "c" || letter == "z" ? letter + (letter == "c" ? "srot" : "drot") : letter + "rot", n, 4,
      [](rot_fn* fn, const int* length, T* x, T* y) {
        const R c = static_cast<R>(0.8), s = static_cast<R>(0.6);
        fn(length, x, &kOne, y, &kOne, &c, &s);
      });
}

}  // namespace
}  // namespace qel::bench

int main(int argc, char** argv) {
  using namespace qel::bench;
  for (const int n : {10, 100, 1000, 10000, 1000000}) {
    register_type<float>(n);
    register_type<double>(n);
    register_type<complex8>(n);
    register_type<complex16>(n);
  }
  return run_comparison(argc, argv);
}
