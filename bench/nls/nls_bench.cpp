// SPDX-License-Identifier: BSD-3-Clause
// Least squares beside cminpack, GSL and Ceres: how many of the classic problems each solves from x0, 10 x0
// and 100 x0 and at what cost, then the time of five iterations on a large dense problem.
#include <fmt/core.h>

#include <cmath>
#include <cstdlib>
#include <memory>

#include "bench/nls/peers.h"
#include "bench/support/compare.h"
#include "bench/support/contenders.h"
#include "tests/nls/problems.h"

namespace qel::bench {
namespace {

bool is_minimum(const test::nls_problem& problem, double squares) {
  for (const double known : problem.minima)
    if (std::fabs(squares - known) <= 1e-4 * known + 1e-10) return true;
  return false;
}

void count_evaluations(const std::vector<solver>& all) {
  constexpr int kIterations = 1000;
  fmt::print("evaluations of F and J; - where no known minimum was reached within {} iterations\n{:<28}",
             kIterations, "");
  for (const solver& one : all) fmt::print("{:>14}", one.name);
  fmt::print("\n");
  std::vector<int> solved(all.size());
  for (const test::nls_problem& problem : test::classic_problems()) {
    const least_squares p = {
        problem.unknowns(), problem.residuals,
        [&](const double* x, double* f, double* fjac) { test::evaluate(problem, x, f, fjac); }};
    for (const int factor : {1, 10, 100}) {
      std::vector<double> x = problem.start;
      bool zero = true;
      for (const double value : x) zero = zero && value == 0;
      for (double& value : x) value = zero && factor > 1 ? factor : value * factor;
      fmt::print("{:<22}x {:<4}", problem.name, factor);
      for (size_t s = 0; s < all.size(); ++s) {
        const cost c = all[s].solve(p, x, kIterations);
        const bool reached = is_minimum(problem, c.squares);
        solved[s] += reached;
        fmt::print("{:>14}", reached ? fmt::format("{} {}", c.residuals, c.jacobians) : "-");
      }
      fmt::print("\n");
    }
  }
  fmt::print("{:<28}", "solved");
  for (const int count : solved) fmt::print("{:>14}", count);
  fmt::print("\n\n");
}

/// f_i = tanh-like saturation of a dense linear form: no solver finishes in a few iterations.
least_squares dense_problem(int n, int m) {
  auto a = std::make_shared<std::vector<double>>(static_cast<size_t>(n) * static_cast<size_t>(m));
  unsigned state = 1;
  for (double& value : *a) {
    state = state * 1664525u + 1013904223u;
    value = static_cast<double>(state >> 8) / (1 << 24) - 0.5;
  }
  return {n, m, [=](const double* x, double* f, double* fjac) {
            for (int i = 0; i < m; ++i) f[i] = -1;
            for (int j = 0; j < n; ++j)
              for (int i = 0; i < m; ++i)
                f[i] += (*a)[static_cast<size_t>(j) * static_cast<size_t>(m) + static_cast<size_t>(i)] * x[j];
            for (int i = 0; i < m; ++i) {
              const double root = std::sqrt(1 + f[i] * f[i]);
              if (fjac != nullptr)
                for (int j = 0; j < n; ++j) {
                  const size_t at = static_cast<size_t>(j) * static_cast<size_t>(m) + static_cast<size_t>(i);
                  fjac[at] = (*a)[at] / (root * root * root);
                }
              f[i] /= root;
            }
          }};
}

void register_iterations(const std::vector<solver>& all) {
  constexpr int kResidualsPerUnknown = 10, kMostUnblocked = 100;
  for (const int n : {20, 50, 100, 200, 500}) {
    const std::string name = "five-iterations/n:" + std::to_string(n);
    if (!is_wanted_case(name)) continue;
    const auto p = std::make_shared<least_squares>(dense_problem(n, kResidualsPerUnknown * n));
    remember_case(name);
    for (const solver& one : all) {
      // Without blocked linear algebra large ones take minutes.
      const bool unblocked = one.name == "GSL" || one.name == "cminpack";
      if (unblocked && n > kMostUnblocked) continue;
      add_run(name, one.name, [&one, p, n](benchmark::State& state) {
        const std::vector<double> start(static_cast<size_t>(n), 0.1);
        for (auto _ : state) benchmark::DoNotOptimize(one.solve(*p, start, 5).squares);
      });
    }
  }
}

}  // namespace
}  // namespace qel::bench

int main(int argc, char** argv) {
  qel::bench::set_environment_defaults();
  static const auto all = qel::bench::solvers();
  if (std::getenv("QEL_BENCH_REPORT") == nullptr) qel::bench::count_evaluations(all);
  qel::bench::register_iterations(all);
  return qel::bench::run_comparison(argc, argv);
}
