// SPDX-License-Identifier: BSD-3-Clause
// The checks themselves: residuals of a linear system of 150 unknowns (large enough for blocked code, which
// calls the BLAS of whoever wins), products against a plain sum, an ordering that must be a permutation.
#include "tests/whole/coexistence_checks.h"

#include <cmath>
#include <cstdio>
#include <random>
#include <vector>

namespace coexistence {

namespace {

constexpr int kOrder = 150;
constexpr double kTolerance = 1e-12;

int complain(const char* what, double size) {
  std::printf("wrong: %s (%g)\n", what, size);
  return 1;
}

std::vector<double> random_numbers(size_t count, unsigned seed) {
  std::mt19937 generator(seed);
  std::uniform_real_distribution<double> uniform(-1, 1);
  std::vector<double> numbers(count);
  for (double& number : numbers) number = uniform(generator);
  return numbers;
}

size_t at(int row, int column) { return static_cast<size_t>(row) + static_cast<size_t>(column) * kOrder; }

template <class Solve>
int wrong_solution(const char* what, Solve* solve) {
  const int n = kOrder, right_sides = 3;
  const std::vector<double> a = random_numbers(at(0, n), 1), b = random_numbers(at(0, right_sides), 2);
  std::vector<double> factors = a, x = b;
  std::vector<int> pivots(kOrder, -1);
  int info = -99;
  solve(&n, &right_sides, factors.data(), &n, pivots.data(), x.data(), &n, &info);
  if (info != 0) return complain(what, info);
  double residual = 0, size = 0;
  for (int j = 0; j < right_sides; ++j) {
    for (int i = 0; i < n; ++i) {
      double sum = -b[at(i, j)];
      for (int k = 0; k < n; ++k) sum += a[at(i, k)] * x[at(k, j)];
      residual = std::fmax(residual, std::isnan(sum) ? HUGE_VAL : std::fabs(sum));
      size = std::fmax(size, std::fabs(x[at(i, j)]));
    }
  }
  return residual <= kTolerance * n * size ? 0 : complain(what, residual);
}

int wrong_product(const char* what, gemm_function* gemm) {
  const int n = kOrder;
  const double alpha = 2, beta = -1;
  const std::vector<double> a = random_numbers(at(0, n), 3), b = random_numbers(at(0, n), 4);
  std::vector<double> c(at(0, n), 1);
  gemm("T", "N", &n, &n, &n, &alpha, a.data(), &n, b.data(), &n, &beta, c.data(), &n);
  double error = 0;
  for (int j = 0; j < n; ++j) {
    for (int i = 0; i < n; ++i) {
      double sum = 0;
      for (int k = 0; k < n; ++k) sum += a[at(k, i)] * b[at(k, j)];
      const double off = std::fabs(c[at(i, j)] - (2 * sum - 1));
      error = std::fmax(error, std::isnan(off) ? HUGE_VAL : off);
    }
  }
  return error <= kTolerance ? 0 : complain(what, error);
}

constexpr complex16 kX[] = {{1, 2}, {3, -1}}, kY[] = {{2, -1}, {-1, 4}};
constexpr int kTwo = 2, kOne = 1;
int wrong_dot(const char* what, complex16 dot) {
  return dot.real == -7 && dot.imag == 6 ? 0 : complain(what, dot.real);
}

// Nested dissection of a square grid: permutation and inverse must be inverse to each other.
int wrong_ordering(node_nd_function* node_nd) {
  constexpr int kSide = 12, kVertices = kSide * kSide, kMetisOk = 1;
  std::vector<int32_t> starts = {0}, neighbours;
  for (int v = 0; v < kVertices; ++v) {
    const int row = v / kSide, column = v % kSide;
    if (row > 0) neighbours.push_back(v - kSide);
    if (column > 0) neighbours.push_back(v - 1);
    if (column < kSide - 1) neighbours.push_back(v + 1);
    if (row < kSide - 1) neighbours.push_back(v + kSide);
    starts.push_back(static_cast<int32_t>(neighbours.size()));
  }
  int32_t vertices = kVertices;
  std::vector<int32_t> permutation(kVertices, -1), inverse(kVertices, -1);
  const int code = node_nd(&vertices, starts.data(), neighbours.data(), nullptr, nullptr, permutation.data(),
                           inverse.data());
  if (code != kMetisOk) return complain("METIS_NodeND", code);
  for (int v = 0; v < kVertices; ++v) {
    const int32_t place = permutation[static_cast<size_t>(v)];
    if (place < 0 || place >= kVertices || inverse[static_cast<size_t>(place)] != v) {
      return complain("METIS_NodeND's permutation", v);
    }
  }
  return 0;
}

}  // namespace

int wrong_results(const functions& of) {
  int wrong = 0;
  for (int turn = 0; turn < 2; ++turn) {
    wrong += wrong_solution("dgesv of libqel", of.qel_dgesv);
    wrong += wrong_solution("dgesv_ of LAPACK", of.dgesv_);
    wrong += wrong_ordering(of.metis_node_nd);
    wrong += wrong_product("dgemm of libqel", of.qel_dgemm);
    wrong += wrong_product("dgemm_ of the BLAS", of.dgemm_);
    complex16 dot{};
    of.qel_zdotc(&dot, &kTwo, kX, &kOne, kY, &kOne);
    wrong += wrong_dot("zdotc of libqel", dot);
    wrong += wrong_dot("zdotc_ of the BLAS", of.zdotc_(&kTwo, kX, &kOne, kY, &kOne));
  }
  return wrong;
}

}  // namespace coexistence
