// SPDX-License-Identifier: BSD-3-Clause
// Refinement and iteration of the direct solver, its report on quality, progress.
#include <gtest/gtest.h>

#include <cmath>

#include "service/environment.h"
#include "sparse/pardiso/progress.h"
#include "sparse/pardiso/quality.h"
#include "tests/sparse/pardiso_calls.h"

namespace qel::test {
namespace {

TEST(Refinement, TracesAndStops) {
  calls c(small_spd());
  ASSERT_EQ(c.call(12), 0);
  c.iparm(8) = 2;
  c.msglvl = 1;
  const std::vector<std::string> lines = lines_of(printed_by([&] { ASSERT_EQ(c.call(33), 0); }));
  EXPECT_EQ(c.iparm(7), 2);
  EXPECT_EQ(lines[0].substr(0, 20), " ref_it: 1. rel res ");
  EXPECT_EQ(lines[1].substr(0, 20), " ref_it: 2. rel res ");
  EXPECT_EQ(lines[0].substr(18).find(" rel err"), 13u) << lines[0];

  std::fill(c.b.begin(), c.b.end(), 0);
  const std::vector<std::string> zeros = lines_of(printed_by([&] { ASSERT_EQ(c.call(33), 0); }));
  EXPECT_EQ(zeros[0], " ref_it: 1. sumdx,sumx   0.000E+00   0.000E+00");
  EXPECT_EQ(zeros[1], " ref_it: 1. sumres,sumrhs   0.000E+00   0.000E+00");

  // Factors of another matrix: the residual grows, and the limit is reached with a large error.
  for (double& value : c.matrix.a) value *= -30;
  std::fill(c.b.begin(), c.b.end(), 1);
  c.iparm(4) = 0;
  const std::string text = printed_by([&] { EXPECT_EQ(c.call(33), 0); });
  EXPECT_TRUE(contains(text, "*** warning ref_it: 1. sumres,sumrhs")) << text;
  EXPECT_TRUE(contains(text, "*** error PARDISO: iterative refinement\n exceeds max. iteration number 2\n"))
      << text;
}

TEST(Refinement, TwoStepsAfterPerturbedPivots) {
  // A singular Laplacian with a consistent right-hand side.
  sparse_problem problem = grid(6, 6, 1);
  problem.type = 11;
  for (sparse_entry& e : problem.entries) {
    if (e.row != e.col) continue;
    e.value = 0;
    for (const sparse_entry& o : problem.entries) {
      if (o.row == e.row && o.col != e.col) e.value -= o.value;
    }
  }
  calls c(csr_of<double>(problem));
  std::fill(c.b.begin(), c.b.end(), 0.0);
  c.b[0] = 1, c.b[35] = -1;
  ASSERT_EQ(c.call(13), 0);
  EXPECT_EQ(c.iparm(14), 1);
  EXPECT_LE(c.iparm(7), 2);
  EXPECT_GE(c.iparm(7), 1);
  EXPECT_EQ(c.iparm(20), c.iparm(7) == 2 ? -34 : 0);
}

template <class T>
void expect_iteration(int type, int iparm4, bool cg) {
  solver_calls<T> c(csr_of<T>(as_type(grid(10, 10, 1), type)), 2);
  c.iparm(1) = 1;
  c.iparm(2) = 2;
  c.iparm(4) = iparm4;
  c.iparm(10) = 13;
  c.msglvl = 1;
  std::string text = printed_by([&] { ASSERT_EQ(c.call(13), 0); });
  EXPECT_FALSE(contains(text, "iteration:"));
  EXPECT_LT(c.backward_error(c.x, c.b), 1e-14);
  const std::vector<T> factored = c.matrix.a;
  for (size_t k = 0; k < c.matrix.a.size(); k += 3) c.matrix.a[k] = real_of<T>(1.01) * c.matrix.a[k];
  text = printed_by([&] { ASSERT_EQ(c.call(23), 0); });
  EXPECT_TRUE(contains(text, cg ? " cg-iteration:   0.100E+01   0.100E-05\n" : " cgs-init:  0.   0.100E+01"))
      << text;
  EXPECT_TRUE(contains(text, cg ? " cg-iteration:  1." : " cgs-iteration:  1.")) << text;
  EXPECT_TRUE(contains(text, "      Time cgs    : ")) << text;
  EXPECT_FALSE(contains(text, "Time numfct")) << "no new factors: " << text;
  EXPECT_GT(c.iparm(20), 0);
  EXPECT_LT(c.backward_error(c.x, c.b), 1e-5) << type;

  // Far from the old factors the iteration gives up, and there are new ones.
  for (size_t k = 0; k < c.matrix.a.size(); ++k) {
    c.matrix.a[k] = real_of<T>(k % 2 == 0 ? 7 : 0.001) * factored[k];
  }
  if (cg) return;  // the spoiled matrix may not be definite
  text = printed_by([&] { ASSERT_EQ(c.call(23), 0); });
  if (c.iparm(20) < 0) {
    EXPECT_TRUE(contains(text, "Time numfct")) << text;
    EXPECT_LT(c.backward_error(c.x, c.b), 1e-12) << type;
  }
}

TEST(Iteration, UsesTheFactorsOfEarlierValues) {
  // Below 0: steps are not bounded by the times, which are of microseconds here.
  expect_iteration<double>(11, -61, false);
  expect_iteration<double>(2, -62, true);
  expect_iteration<complex16>(13, -61, false);
  expect_iteration<complex16>(4, -62, true);
  expect_iteration<complex16>(6, -62, true);
}

TEST(Iteration, FailureLeadsToNewFactors) {
  calls c(csr_of<double>(convection(8, 8, 1)));
  c.iparm(1) = 1;
  c.iparm(2) = 2;
  c.iparm(10) = 13;
  c.iparm(4) = -121;
  c.iparm(8) = 3;
  ASSERT_EQ(c.call(12), 0);
  for (size_t k = 0; k < c.matrix.a.size(); ++k)
    c.matrix.a[k] *= std::sin(static_cast<double>(k) * 12.9898) * 40;
  ASSERT_EQ(c.call(33), 0);
  EXPECT_LT(c.iparm(20), 0);
  EXPECT_LT(c.backward_error(c.x, c.b), 1e-10) << "solved with new factors";
  c.b[3] = NAN;
  c.call(33);
  EXPECT_EQ(c.iparm(20), -4);
}

TEST(Report, TellsConditionAndErrors) {
  for (const int type : {11, 2, -2}) {
    calls c(csr_of<double>(as_type(grid(5, 5, 1), type)), 2);
    ASSERT_EQ(c.call(13), 0);
    const pardiso::quality_question question = {
        c.pt.data(),        1,      c.matrix.a.data(), c.matrix.ia.data(),
        c.matrix.ja.data(), c.nrhs, c.b.data(),        c.x.data()};
    double errors[2];
    const pardiso::quality found = pardiso::judge_quality(question, errors);
    EXPECT_EQ(found.verdict, pardiso::quality_good);
    EXPECT_NEAR(found.backward_error, c.backward_error(c.x, c.b), 1e-17);
    EXPECT_EQ(found.backward_error, std::max(errors[0], errors[1]));
    // The norm of the inverse, column by column.
    calls inverse(c.matrix, c.matrix.n);
    std::fill(inverse.b.begin(), inverse.b.end(), 0.0);
    const auto n = static_cast<size_t>(c.matrix.n);
    for (size_t j = 0; j < n; ++j) inverse.b[j * (n + 1)] = 1;
    ASSERT_EQ(inverse.call(13), 0);
    std::vector<double> column_sums(n);
    for (size_t i = 0; i < n; ++i) {
      for (auto k = static_cast<size_t>(c.matrix.ia[i]) - 1; k < static_cast<size_t>(c.matrix.ia[i + 1]) - 1;
           ++k) {
        const auto j = static_cast<size_t>(c.matrix.ja[k]) - 1;
        column_sums[j] += std::fabs(c.matrix.a[k]);
        if (type % 2 == 0 && i != j) column_sums[i] += std::fabs(c.matrix.a[k]);
      }
    }
    double inverse_norm = 0;
    for (size_t j = 0; j < n; ++j) {
      double sum = 0;
      for (size_t i = 0; i < n; ++i) sum += std::fabs(inverse.x[i + n * j]);
      inverse_norm = std::max(inverse_norm, sum);
    }
    const double condition = inverse_norm * *std::max_element(column_sums.begin(), column_sums.end());
    EXPECT_LE(found.condition, condition * (1 + 1e-10));
    EXPECT_GE(found.condition, condition / 3);
    char text[256];
    pardiso::word_quality(found, text, sizeof text);
    EXPECT_EQ(std::string(text).substr(0, 22), "good: condition about ");
  }
  void* empty[64] = {};
  EXPECT_EQ(
      pardiso::judge_quality({empty, 1, nullptr, nullptr, nullptr, 0, nullptr, nullptr}, nullptr).verdict,
      pardiso::quality_no_factors);
}

TEST(Progress, TellsAndCancels) {
  struct watcher {
    int calls = 0, cancel_in = 0;
    double last = 0;
    bool rises = true;
  } seen;
  const auto watch = [](void* context, int stage, double share) {
    auto& w = *static_cast<watcher*>(context);
    ++w.calls;
    w.rises = w.rises && stage + share >= w.last;
    w.last = stage + share;
    return static_cast<int>(stage == w.cancel_in && share > 0.1);
  };
  pardiso::watch_progress({watch, &seen});
  calls c(small_spd());
  ASSERT_EQ(c.call(13), 0);
  EXPECT_GT(seen.calls, 6);
  EXPECT_TRUE(seen.rises);
  seen = {.cancel_in = 2};
  c.msglvl = 1;
  EXPECT_TRUE(
      contains(printed_by([&] { EXPECT_EQ(c.call(22), -4); }), "*** PARDISO: cancelled by the caller\n"));
  c.msglvl = 0;
  pardiso::watch_progress({});
  ASSERT_EQ(c.call(23), 0);
  EXPECT_LT(c.backward_error(c.x, c.b), 1e-14);
}

TEST(Pattern, IsComparedOnRequest) {
  const environment_lookup former = replace_environment([](const char* name) -> const char* {
    return std::string(name) == "QEL_PARDISO_CHECK_PATTERN" ? "1" : nullptr;
  });
  calls c(small_general());
  ASSERT_EQ(c.call(12), 0);
  replace_environment(former);
  c.msglvl = 1;
  const size_t other = c.matrix.ja.size() - 1;
  const int column = c.matrix.ja[other];
  c.matrix.ja[other] = column - 1 == c.matrix.ja[other - 1] ? column - 2 : column - 1;
  for (const int phase : {22, 33}) {
    EXPECT_EQ(lines_of(printed_by([&] { EXPECT_EQ(c.call(phase), -1); })),
              (std::vector<std::string>{"*** Error in PARDISO  (incorrect input matrix  ) error_num= -1",
                                        "*** Input check: ia, ja are not those of the analysis"}));
  }
  c.matrix.ja[other] = column;
  c.msglvl = 0;
  EXPECT_EQ(c.call(23), 0);
}

}  // namespace
}  // namespace qel::test
