// SPDX-License-Identifier: BSD-3-Clause
// Nonlinear least squares on problems whose solutions are known, and numerical Jacobians beside exact ones.
#include <fmt/core.h>

#include <cmath>
#include <functional>

#include "cli/selftest/recorder.h"
#include "qel/nls.h"

namespace qel::cli::selftest {
namespace {

struct problem {
  const char* name;
  std::vector<double> start, solution;
  int residuals;
  std::vector<double> lower, upper;  ///< both empty: no bounds
  /// f and, if wanted, the Jacobian (column-major).
  std::function<void(const double* x, double* f, double* jacobian)> evaluate;
};

/// F of Rosenbrock's valley, extended to any even number of unknowns.
problem valley(int n) {
  const auto size = static_cast<size_t>(n);
  problem p{"valley", std::vector(size, -1.2), std::vector(size, 1.0), n, {}, {}, {}};
  p.evaluate = [n](const double* x, double* f, double* j) {
    if (j != nullptr) std::fill_n(j, n * n, 0.0);
    for (int i = 0; i < n; i += 2) {
      f[i] = 10 * (x[i + 1] - x[i] * x[i]);
      f[i + 1] = 1 - x[i];
      if (j == nullptr) continue;
      j[i + i * n] = -20 * x[i];
      j[i + (i + 1) * n] = 10;
      j[i + 1 + i * n] = -1;
    }
  };
  return p;
}

/// Points of a decaying exponential on an offset, exact data.
problem decay(bool bounded) {
  constexpr int kPoints = 40;
  problem p{bounded ? "decay in bounds" : "decay", {1, 1, 0}, {3, 0.7, -0.5}, kPoints, {}, {}, {}};
  if (bounded) {
    p.lower = {0, 0, -2};
    p.upper = {10, 5, 2};
  }
  const std::vector<double> truth = p.solution;
  p.evaluate = [truth](const double* x, double* f, double* j) {
    for (int i = 0; i < kPoints; ++i) {
      const double t = 0.1 * i, e = std::exp(-x[1] * t);
      f[i] = x[0] * e + x[2] - (truth[0] * std::exp(-truth[1] * t) + truth[2]);
      if (j == nullptr) continue;
      j[i] = e;
      j[i + kPoints] = -t * x[0] * e;
      j[i + 2 * kPoints] = 1;
    }
  };
  return p;
}

/// A line through points, with many unknowns that only shrink: a Jacobian that threads share.
problem wide_linear() {
  constexpr int kUnknowns = 60, kResiduals = 500;
  problem p{"linear", std::vector(kUnknowns, 5.0), {}, kResiduals, {}, {}, {}};
  number_source source(3);
  std::vector<double> matrix(static_cast<size_t>(kUnknowns * kResiduals));
  for (double& value : matrix) value = source.next();
  for (int i = 0; i < kUnknowns; ++i) p.solution.push_back(source.next());
  const std::vector<double> truth = p.solution;
  p.evaluate = [matrix, truth](const double* x, double* f, double* j) {
    std::fill_n(f, kResiduals, 0.0);
    for (size_t k = 0; k < kUnknowns; ++k)
      for (size_t i = 0; i < kResiduals; ++i) f[i] += matrix[i + k * kResiduals] * (x[k] - truth[k]);
    if (j != nullptr) std::copy(matrix.begin(), matrix.end(), j);
  };
  return p;
}

struct solver {
  int (*solve)(void**, double*, double*, int*);
  int (*end)(void**);
};

void check_solve(recorder& out, const problem& p) {
  const int n = static_cast<int>(p.start.size()), m = p.residuals, steps = 1000, rounds = 100;
  const double eps[6] = {1e-14, 1e-14, 1e-14, 1e-14, 1e-14, 1e-14}, radius = 0;
  std::vector<double> x = p.start, f(static_cast<size_t>(m)), j(static_cast<size_t>(m * n));
  void* run = nullptr;
  const bool bounded = !p.lower.empty();
  const int made = bounded ? dtrnlspbc_init(&run, &n, &m, x.data(), p.lower.data(), p.upper.data(), eps,
                                            &steps, &rounds, &radius)
                           : dtrnlsp_init(&run, &n, &m, x.data(), eps, &steps, &rounds, &radius);
  const solver calls =
      bounded ? solver{dtrnlspbc_solve, dtrnlspbc_delete} : solver{dtrnlsp_solve, dtrnlsp_delete};
  const std::string name = bounded ? "dtrnlspbc" : "dtrnlsp", sizes = fmt::format("{} {}x{}", p.name, m, n);
  out.expect(name, sizes + " status", made == QEL_NLS_SUCCESS);
  const int modern = QEL_NLS_MODERN, on = 1;
  if (bounded) qel_dtrnlsp_option(&run, &modern, &on);
  int request = 0;
  constexpr int kMostCalls = 100000;
  for (int call = 0; call < kMostCalls && calls.solve(&run, f.data(), j.data(), &request) == QEL_NLS_SUCCESS;
       ++call) {
    if (request < 0) break;
    if (request == 1) p.evaluate(x.data(), f.data(), nullptr);
    if (request == 2) p.evaluate(x.data(), f.data(), j.data());
  }
  calls.end(&run);
  double worst = 0;
  for (size_t i = 0; i < x.size(); ++i) {
    const double error = std::fabs(x[i] - p.solution[i]) / std::numeric_limits<double>::epsilon();
    raise(worst, error);
  }
  // The residual is small long before the last bits of x.
  out.compare(name, sizes, worst, 1e8);
}

const problem* jacobian_problem = nullptr;

void check_jacobian(recorder& out, const problem& p) {
  const int n = static_cast<int>(p.start.size()), m = p.residuals;
  const double eps = 1e-6;
  std::vector<double> x = p.start, f(static_cast<size_t>(m)), exact(static_cast<size_t>(m * n)), got = exact;
  p.evaluate(x.data(), f.data(), exact.data());
  jacobian_problem = &p;
  const int status =
      djacobi([](int*, int*, double* at, double* values) { jacobian_problem->evaluate(at, values, nullptr); },
              &n, &m, got.data(), x.data(), &eps);
  out.expect("djacobi", p.name, status == QEL_NLS_SUCCESS);
  double worst = 0, largest = 0;
  for (const double value : exact) largest = std::max(largest, std::fabs(value));
  for (size_t i = 0; i < exact.size(); ++i) {
    const double error = std::fabs(got[i] - exact[i]) / (std::numeric_limits<double>::epsilon() * largest);
    raise(worst, error);
  }
  // Differences over a step of 1e-6 lose ten digits, and their own error is that step's square.
  out.compare("djacobi", fmt::format("{} {}x{}", p.name, m, n), worst, 1e8);
}

}  // namespace

void check_least_squares(recorder& out) {
  for (const problem& p : {valley(2), valley(20), decay(false), decay(true), wide_linear()}) {
    check_solve(out, p);
    check_jacobian(out, p);
  }
}

}  // namespace qel::cli::selftest
