// SPDX-License-Identifier: BSD-3-Clause
// A handle of the direct solver with its arguments, for tests that make calls.
#pragma once

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <functional>
#include <sstream>
#include <string>
#include <vector>

#include "service/complex_arithmetic.h"
#include "sparse/pardiso/call.h"
#include "tests/support/sparse_problems.h"

namespace qel::test {

/// What a good analysis says.
inline constexpr const char* kInCore = "=== PARDISO is running in In-Core mode, because iparam(60)=0 ===";

/// What body prints.
inline std::string printed_by(const std::function<void()>& body) {
  testing::internal::CaptureStdout();
  body();
  return testing::internal::GetCapturedStdout();
}

template <class T>
class solver_calls {
 public:
  explicit solver_calls(csr_arrays<T> arrays, int columns = 1)
      : matrix(std::move(arrays)),
        nrhs(columns),
        mtype(matrix.type),
        b(static_cast<size_t>(matrix.n) * static_cast<size_t>(columns)),
        x(b.size()) {
    for (size_t i = 0; i < b.size(); ++i) {
      b[i] = scalar_from<T>({1 + static_cast<double>(i % 7), static_cast<double>(i % 3)});
    }
  }
  solver_calls(const solver_calls&) = delete;
  solver_calls& operator=(const solver_calls&) = delete;
  ~solver_calls() {
    msglvl = 0;
    iparm(12) = 0;
    call(-1);
    for (const void* word : pt) EXPECT_EQ(word, nullptr);
  }

  int& iparm(int number) { return iparm_values[static_cast<size_t>(number) - 1]; }
  int call(int phase) {
    return pardiso::solve_system({pt.data(), maxfct, mnum, mtype, phase, n_given >= 0 ? n_given : matrix.n,
                                  matrix.a.data(), matrix.ia.data(), matrix.ja.data(), perm.data(), nrhs,
                                  iparm_values.data(), msglvl, b.data(), x.data()});
  }
  bool empty() const { return pt[0] == nullptr; }

  /// Largest |b - A x| / (|A| |x| + |b|) of the columns, infinity norms; op transposes.
  double backward_error(const std::vector<T>& solution, const std::vector<T>& rhs,
                        bool transposed = false) const {
    using wide = std::complex<long double>;
    const auto n = static_cast<size_t>(matrix.n);
    const auto value = [](T v) {
      if constexpr (is_complex<T>) {
        return wide(v.real, v.imag);
      } else {
        return wide(v);
      }
    };
    double worst = 0;
    for (size_t column = 0; column < static_cast<size_t>(nrhs); ++column) {
      std::vector<wide> r(n);
      std::vector<long double> sums(n);
      const auto add = [&](size_t i, size_t j, wide a) {
        r[i] -= a * value(solution[j + n * column]);
        sums[i] += std::abs(a);
      };
      for (size_t i = 0; i < n; ++i) r[i] = value(rhs[i + n * column]);
      for (size_t i = 0; i < n; ++i) {
        for (auto k = static_cast<size_t>(matrix.ia[i]) - 1; k < static_cast<size_t>(matrix.ia[i + 1]) - 1;
             ++k) {
          const auto j = static_cast<size_t>(matrix.ja[k]) - 1;
          const wide a = value(matrix.a[k]);
          if (transposed) {
            add(j, i, a);
          } else {
            add(i, j, a);
          }
          if (matrix.type % 2 == 0 && i != j)
            add(j, i, matrix.type == 4 || matrix.type == -4 ? std::conj(a) : a);
        }
      }
      long double a_norm = 0, x_norm = 0, b_norm = 0, r_norm = 0;
      for (size_t i = 0; i < n; ++i) {
        a_norm = std::max(a_norm, sums[i]);
        x_norm = std::max(x_norm, std::abs(value(solution[i + n * column])));
        b_norm = std::max(b_norm, std::abs(value(rhs[i + n * column])));
        if (!std::isfinite(std::abs(r[i]))) return INFINITY;
        r_norm = std::max(r_norm, std::abs(r[i]));
      }
      if (r_norm > 0) worst = std::max(worst, static_cast<double>(r_norm / (a_norm * x_norm + b_norm)));
    }
    return worst;
  }

  csr_arrays<T> matrix;
  int nrhs, mtype, maxfct = 1, mnum = 1, msglvl = 0, n_given = -1;
  std::array<void*, 64> pt{};
  std::array<int, 64> iparm_values{};
  std::vector<int> perm = std::vector<int>(static_cast<size_t>(matrix.n));
  std::vector<T> b, x;
};

using calls = solver_calls<double>;

inline csr_arrays<double> small_spd() { return csr_of<double>(grid(7, 6, 1)); }
inline csr_arrays<double> small_general() { return csr_of<double>(convection(7, 6, 1)); }

inline std::vector<std::string> lines_of(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}
inline bool contains(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

}  // namespace qel::test
