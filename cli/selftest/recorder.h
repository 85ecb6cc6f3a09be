// SPDX-License-Identifier: BSD-3-Clause
// qel selftest: what a family's checks report, and the numbers that they work with. Every check compares with
// a computation of its own in wider arithmetic, with a residual or with a known solution, never with another
// level of the library.
#pragma once

#include <complex>
#include <cstdint>
#include <limits>
#include <string>
#include <type_traits>
#include <vector>

#include "service/complex_arithmetic.h"

namespace qel::cli::selftest {

struct failure {
  std::string routine, sizes;
  double error, bound;  ///< in units of the type's epsilon
};

/// What one family found on one processor level.
struct family_result {
  std::string family;
  long cases = 0;
  double worst = 0, worst_bound = 0;  ///< error and bound of the case that came nearest to its bound
  std::string worst_case;
  long failed = 0;
  std::vector<failure> failures;  ///< the first ones
};

class recorder {
 public:
  explicit recorder(std::string family) { result_.family = std::move(family); }
  /// A case: error and bound in units of epsilon. An error that is no number fails.
  void compare(const std::string& routine, const std::string& sizes, double error, double bound);
  /// A case that is right or wrong.
  void expect(const std::string& routine, const std::string& sizes, bool right) {
    compare(routine, sizes, right ? 0 : 1, 0);
  }
  const family_result& result() const { return result_; }

 private:
  family_result result_;
};

using wide = std::complex<long double>;

inline wide widened(float x) { return x; }
inline wide widened(double x) { return x; }
inline wide widened(complex8 x) { return {x.real, x.imag}; }
inline wide widened(complex16 x) { return {x.real, x.imag}; }

template <class T>
T narrowed(const wide& x) {
  using R = real_of<T>;
  if constexpr (is_complex<T>) {
    return {static_cast<R>(x.real()), static_cast<R>(x.imag())};
  } else {
    return static_cast<T>(x.real());
  }
}
template <class T>
constexpr double kEpsilon = std::numeric_limits<real_of<T>>::epsilon();
template <class T>
constexpr char kLetter = is_complex<T> ? (sizeof(T) == 8 ? 'c' : 'z') : (sizeof(T) == 4 ? 's' : 'd');

/// What sums of n products may be off, in epsilons of the sum of the moduli: rounding errors of random data
/// add up like a walk.
double sum_bound(double n);

/// Uniform in -1 .. 1, parts of complex numbers each; the same on every machine.
class number_source {
 public:
  explicit number_source(std::uint64_t seed) : state_(seed * 2 + 1) {}
  double next();
  template <class T>
  T number() {
    const double real = next();
    if constexpr (is_complex<T>) return narrowed<T>({real, next()});
    return narrowed<T>(real);
  }
  template <class T>
  std::vector<T> numbers(std::int64_t count) {
    std::vector<T> values(static_cast<size_t>(count));
    for (T& value : values) value = number<T>();
    return values;
  }

 private:
  std::uint64_t state_;
};

/// Keeps the greater of both in worst, for ever what is no number.
inline void raise(double& worst, double error) {
  if (worst == worst && !(error <= worst)) worst = error;
}

/// Worst error of the elements of `got` against `want`, in epsilons of each element's scale.
template <class T>
double worst_error(const std::vector<T>& got, const std::vector<wide>& want,
                   const std::vector<double>& scale) {
  double worst = 0;
  for (size_t i = 0; i < want.size(); ++i) {
    const auto error = static_cast<double>(std::abs(widened(got[i]) - want[i]));
    const double relative = error == 0 ? 0 : error / (scale[i] * kEpsilon<T>);
    raise(worst, relative);
  }
  return worst;
}

// The families.
void check_vectors(recorder& out);
void check_matrix_vector(recorder& out);
void check_matrix_products(recorder& out);
void check_factorisations(recorder& out);
void check_transforms(recorder& out);
void check_convolutions(recorder& out);
void check_sparse_products(recorder& out);
void check_direct_solver(recorder& out);
void check_least_squares(recorder& out);
void check_vector_math(recorder& out);
void check_random_streams(recorder& out);

struct family {
  const char* name;  ///< for --family
  const char* title;
  void (*check)(recorder&);
  bool by_type;  ///< kernels are chosen by processor type, of which there is one more than levels
};
const std::vector<family>& families();

}  // namespace qel::cli::selftest
