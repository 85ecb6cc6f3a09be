// SPDX-License-Identifier: BSD-3-Clause
// Phases of the direct solver for all types, several factorisations, statistics, diagonal systems.
#include <gtest/gtest.h>

#include <map>
#include <thread>

#include "service/message_rows.h"
#include "sparse/pardiso/determinant.h"
#include "sparse/pardiso/report.h"
#include "tests/sparse/pardiso_calls.h"

namespace qel::test {
namespace {

template <class T>
void expect_all_phases_solve(int type, double tolerance) {
  for (const int columns : {1, 3}) {
    solver_calls<T> c(csr_of<T>(as_type(grid(9, 8, 1), type)), columns);
    c.iparm(28) = sizeof(real_of<T>) == 4;
    ASSERT_EQ(c.call(11), 0) << type;
    EXPECT_FALSE(c.empty());
    ASSERT_EQ(c.call(22), 0) << type;
    ASSERT_EQ(c.call(33), 0) << type;
    EXPECT_LT(c.backward_error(c.x, c.b), tolerance) << type;
    EXPECT_EQ(c.iparm(64), 108);

    // The parts of a solve, one after the other, are the solve.
    const std::vector<T> b = c.b, x = c.x;
    c.iparm(6) = 1;
    for (const int part : {331, 332, 333}) ASSERT_EQ(c.call(part), 0);
    EXPECT_LT(c.backward_error(c.b, b), tolerance) << type;
    c.b = b;

    // The solution in the place of b, with refinement by extended residuals.
    c.iparm(8) = -2;
    std::fill(c.x.begin(), c.x.end(), T{});
    ASSERT_EQ(c.call(33), 0);
    EXPECT_EQ(c.iparm(7), 2);
    EXPECT_LT(c.backward_error(c.b, b), tolerance) << type;
    EXPECT_TRUE(c.x[0] == T{}) << "x is left alone";
    c.b = b;

    c.iparm(6) = c.iparm(8) = 0;
    ASSERT_EQ(c.call(13), 0);
    EXPECT_LT(c.backward_error(c.x, c.b), tolerance) << type;
  }
}

TEST(Phases, SolveAllTypesInBothPrecisions) {
  for (const int type : {1, 2, -2, 11}) {
    expect_all_phases_solve<double>(type, 1e-14);
    expect_all_phases_solve<float>(type, 1e-5);
  }
  for (const int type : {3, 4, -4, 6, 13}) {
    expect_all_phases_solve<complex16>(type, 1e-14);
    expect_all_phases_solve<complex8>(type, 1e-5);
  }
}

TEST(Phases, TransposedSystems) {
  for (const int steps : {0, 2}) {
    solver_calls<complex16> c(csr_of<complex16>(as_type(grid(7, 6, 1), 13)), 2);
    ASSERT_EQ(c.call(12), 0);
    c.iparm(12) = 1;
    c.iparm(8) = steps;
    ASSERT_EQ(c.call(33), 0);
    EXPECT_LT(c.backward_error(c.x, c.b, true), 1e-14);
    c.iparm(1) = 1;  // with the caller's values the switch is not looked at
    ASSERT_EQ(c.call(33), 0);
    EXPECT_LT(c.backward_error(c.x, c.b), 1e-14);
  }
}

TEST(Phases, KeepSeveralFactorisationsApart) {
  calls c(small_general());
  c.maxfct = 3;
  ASSERT_EQ(c.call(11), 0);
  std::vector<csr_arrays<double>> kept;
  for (c.mnum = 1; c.mnum <= 3; ++c.mnum) {
    for (double& value : c.matrix.a) value *= 1 + 0.1 * c.mnum;
    kept.push_back(c.matrix);
    ASSERT_EQ(c.call(22), 0);
  }
  for (const int number : {2, 1, 3}) {
    c.mnum = number;
    c.matrix = kept[static_cast<size_t>(number) - 1];
    ASSERT_EQ(c.call(33), 0);
    EXPECT_LT(c.backward_error(c.x, c.b), 1e-14) << number;
  }
  c.mnum = 2;
  c.msglvl = 1;
  EXPECT_TRUE(contains(printed_by([&] { EXPECT_EQ(c.call(0), 0); }), " L&U for matrix number 2 deleted\n"));
  EXPECT_TRUE(contains(printed_by([&] { c.call(33); }), "clean impossible"));
  c.mnum = 4;
  EXPECT_TRUE(contains(printed_by([&] { EXPECT_EQ(c.call(0), -1); }), "wrong matrix number, clean 4"));
  c.mnum = 3;
  EXPECT_TRUE(contains(printed_by([&] { EXPECT_EQ(c.call(-1), 0); }),
                       "Summary PARDISO: ( clean )\n================\n cleaned memory, deleted number of "
                       "L&U-factorizations: 2\n"));
  EXPECT_TRUE(c.empty());
}

TEST(Phases, AnAnalysisForNoFactorsTakesThemLater) {
  calls c(small_general());
  c.maxfct = c.mnum = 0;
  ASSERT_EQ(c.call(11), 0);
  c.maxfct = c.mnum = 1;
  ASSERT_EQ(c.call(23), 0);
  EXPECT_LT(c.backward_error(c.x, c.b), 1e-14);
}

TEST(Phases, DeterminantsOfPairsMatchingsAndScalings) {
  const struct {
    csr_arrays<double> matrix;
    double mantissa, exponent;
  } cases[] = {
      // pivots of two; a permutation of three and one of two; numbers that call for scaling
      {{3, -2, {1, 3, 4, 5}, {1, 2, 2, 3}, {0, 2, 0, 5}}, -2, 1},
      {{3, 11, {1, 3, 4, 5}, {1, 2, 3, 1}, {1, 2, 3, 4}}, 2.4, 1},
      {{3, 11, {1, 2, 3, 5}, {2, 1, 1, 3}, {2e9, 3e-7, 1, 7}}, -4.2, 3},
      {{2, 13, {1, 3, 4}, {1, 2, 1}, {1, 2e200, 3e200}}, -6, 400},
  };
  for (const auto& row : cases) {
    const auto check = [&row]<class T>(const csr_arrays<T>& matrix) {
      solver_calls<T> c(matrix);
      c.iparm(1) = c.iparm(11) = c.iparm(13) = c.iparm(21) = 1;
      c.iparm(10) = 13;
      ASSERT_EQ(c.call(12), 0);
      const pardiso::scaled_number got = pardiso::determinant(c.pt.data(), 1);
      EXPECT_NEAR(got.real, row.mantissa, 1e-13) << row.matrix.type << ' ' << row.exponent;
      EXPECT_EQ(got.exponent, row.exponent);
    };
    if (row.matrix.type == 13) {
      csr_arrays<complex16> matrix{row.matrix.n, row.matrix.type, row.matrix.ia, row.matrix.ja, {}};
      for (const double value : row.matrix.a) matrix.a.push_back({value, 0});
      check(matrix);
    } else {
      check(row.matrix);
    }
  }
}

TEST(Phases, QueriesAndReleasesOfAnEmptyHandle) {
  calls c(small_spd());
  EXPECT_EQ(c.call(-2), 16);
  EXPECT_EQ(c.iparm(1), 23);
  EXPECT_EQ(c.call(-3), 300000);
  EXPECT_EQ(c.call(-1), 0);
  EXPECT_TRUE(c.empty());
}

TEST(Phases, DefaultsAreStoredByTheFirstCall) {
  calls c(small_general());
  c.iparm_values.fill(5);
  c.iparm(1) = c.iparm(27) = c.iparm(28) = 0;
  ASSERT_EQ(c.call(11), 0);
  const std::map<int, int> want = {{2, 2}, {4, 0}, {8, 0}, {10, 13}, {11, 1}, {13, 1}, {60, 0}};
  for (const auto& [number, value] : want) EXPECT_EQ(c.iparm(number), value) << number;
  EXPECT_GT(c.iparm(18), static_cast<int>(c.matrix.a.size()));
  EXPECT_EQ(c.iparm(26), 5);
  for (const int out : {15, 16, 17, 61, 62, 63}) EXPECT_GT(c.iparm(out), 0) << out;
  EXPECT_EQ(c.iparm(3), 1) << "42 equations are too few for two threads";
}

TEST(Phases, DifferentHandlesInThreadsOfTheirOwn) {
  constexpr int kThreads = 8;
  std::vector<double> errors(kThreads);
  std::vector<std::thread> threads;
  for (int t = 0; t < kThreads; ++t) {
    threads.emplace_back([t, &errors] {
      calls c(csr_of<double>(as_type(grid(12 + t, 10, 1), t % 2 == 0 ? 11 : -2)), 2);
      double& worst = errors[static_cast<size_t>(t)];
      for (int round = 0; round < 3; ++round) {
        worst = c.call(13) != 0 ? INFINITY : std::max(worst, c.backward_error(c.x, c.b));
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  for (const double error : errors) EXPECT_LT(error, 1e-14);
}

TEST(Statistics, HaveTheirLinesInOrder) {
  calls c(small_spd());
  c.msglvl = 2;
  const std::vector<std::string> lines = lines_of(printed_by([&] { ASSERT_EQ(c.call(13), 0); }));
  const char* const starts[] = {
      kInCore,
      "================  PARDISO: solving a symm. posit. def. system  ================",
      "",
      "",
      "Summary PARDISO: ( reorder to solve )",
      "================",
      "Times:",
      "======",
      "      Time fulladj: ",
      "      Time reorder: ",
      "      Time symbfct: ",
      "      Time parlist: ",
      "      Time A to LU: ",
      "      Time numfct : ",
      "      Time solve  : ",
      "      Time malloc : ",
      "      Time total  : ",
      "Statistics:",
      "===========",
      " < Parallel Direct Factorization with #processors: >         1",
      " < Numerical Factorization with Level-3 BLAS performance >",
      "",
      " < Linear system Ax = b> ",
      "             #equations:                                     42",
      "             #non-zeros in A:                                113",
      "             non-zeros in A (%):                            6.405896",
      "             #right-hand sides:                              1",
      "",
      " < Factors L and U > ",
      "             #columns for each panel:                        ",
      "             #independent subgraphs:                         ",
      " < Preprocessing with state of the art partitioning metis>",
      "             #supernodes:                                    ",
      "             size of largest supernode:                      ",
      "             number of nonzeros in L                       ",
      "             number of nonzeros in U                       ",
      "             number of nonzeros in L+U                     ",
      "             gflop   for the numerical factorization:        ",
      "             gflop/s for the numerical factorization:        ",
      "             ||A||                                           ",
      " local PARDISO version is 108",
  };
  size_t line = 0;
  for (const char* start : starts) {
    ASSERT_LT(line, lines.size());
    // No rate is given where the clock saw no time.
    if (contains(start, "gflop/s") && !contains(lines[line], "gflop/s")) continue;
    EXPECT_EQ(lines[line].substr(0, std::string(start).size()), start) << line;
    ++line;
  }
  EXPECT_EQ(line, lines.size());

  // What differs by ordering, transposition, phase and the iteration.
  const struct {
    std::function<void(calls&)> choose;
    int phase;
    std::vector<const char*> has, has_not;
  } cases[] = {
      {[](calls& d) { d.iparm(2) = 0; },
       11,
       {"( reorder to reorder )", "< Preprocessing with multiple minimum degree, tree height >\n",
        "< Reduction for efficient parallel factorization >\n"},
       {"metis", "gflop"}},
      {[](calls& d) { d.iparm(2) = 1; },
       12,
       {"( reorder to factorize )", " < Preprocessing with multiple minimum degree with constraints >\n"},
       {"Time solve", "metis"}},
      {[](calls& d) { d.iparm(2) = 3; }, 11, {}, {"< Preprocessing"}},
      {[](calls& d) { d.iparm(5) = 2; }, 11, {" < Preprocessing with input permutation >\n"}, {"metis"}},
      {[](calls& d) { d.iparm(4) = 31; },
       12,
       {" < Hybrid Solver PARDISO with CGS/CG Iteration >\n"},
       {"Level-3"}},
  };
  for (const auto& k : cases) {
    calls d(small_general());
    d.iparm(1) = 1;
    d.iparm(10) = 13;
    k.choose(d);
    d.msglvl = 1;
    const std::string text = printed_by([&] { ASSERT_EQ(d.call(k.phase), 0); });
    for (const char* part : k.has) EXPECT_TRUE(contains(text, part)) << part << '\n' << text;
    for (const char* part : k.has_not) EXPECT_FALSE(contains(text, part)) << part << '\n' << text;
  }
  // A new analysis says what it throws away.
  const std::string again = printed_by([&] { ASSERT_EQ(c.call(11), 0); });
  EXPECT_TRUE(contains(again, " cleaned memory, deleted number of L&U-factorizations: 1\n")) << again;
}

TEST(Statistics, UnknownRowsAreToldAsSuch) {
  EXPECT_EQ(printed_by([] { pardiso::tell(static_cast<solver_row>(1000)); }),
            "PARDISO Internationalization error! Message 1000 is unknown\n");
}

template <class T>
void expect_diagonal_solves(int type, bool single) {
  csr_arrays<T> a{200, type, {}, {}, {}};
  for (int i = 0; i < a.n; ++i) {
    a.ia.push_back(i + 1);
    a.ja.push_back(i + 1);
    a.a.push_back(scalar_from<T>({i + 1.0, type == 13 || type == 6 ? 0.5 : 0}));
  }
  a.ia.push_back(a.n + 1);
  solver_calls<T> c(a, 2);
  c.iparm(28) = single;
  EXPECT_EQ(c.call(11), 0);
  EXPECT_EQ(c.iparm(12), -1);
  EXPECT_EQ(c.call(22), 0);
  EXPECT_EQ(c.call(33), 0);
  EXPECT_TRUE(c.empty());
  EXPECT_LT(c.backward_error(c.x, c.b), single ? 1e-6 : 1e-15);
  c.matrix.a[150] = T{};
  c.msglvl = 1;
  EXPECT_EQ(lines_of(printed_by([&] { EXPECT_EQ(c.call(13), -7); })),
            (std::vector<std::string>{"*** Error in PARDISO  ( internal_error,unclass.) error_num= -7",
                                      "*** something wrong with diagonal matrix row 151"}));
  // The mark of the diagonal matrix keeps later calls quiet.
  EXPECT_EQ(c.call(0), 0);
}

TEST(Diagonal, MatricesNeedNoHandle) {
  for (const int type : {2, 11, -2}) expect_diagonal_solves<double>(type, false);
  for (const int type : {13, 4, 6}) expect_diagonal_solves<complex16>(type, false);
  expect_diagonal_solves<float>(1, true);
  expect_diagonal_solves<complex8>(13, true);
}

TEST(Precision, IsKeptByTheHandle) {
  solver_calls<float> c(csr_of<float>(grid(7, 6, 1)));
  c.iparm(28) = 1;
  ASSERT_EQ(c.call(12), 0);
  c.iparm(28) = 0;
  ASSERT_EQ(c.call(33), 0);
  EXPECT_LT(c.backward_error(c.x, c.b), 1e-5);
}

TEST(Types, MayChangeBetweenFactorisations) {
  // A positive definite matrix that turns out not to be: the same analysis serves the indefinite type.
  calls c(small_spd());
  ASSERT_EQ(c.call(11), 0);
  c.matrix.a[0] = -3;
  EXPECT_EQ(c.call(22), -4);
  EXPECT_GE(c.iparm(30), 1);
  c.mtype = -2;
  c.iparm(10) = 8;
  c.iparm(21) = 1;
  ASSERT_EQ(c.call(23), 0);
  EXPECT_EQ(c.iparm(22), 41);
  EXPECT_EQ(c.iparm(23), 1);
  EXPECT_LT(c.backward_error(c.x, c.b), 1e-14);
}

TEST(Types, OfASolveMayDifferFromThatOfItsFactors) {
  // A definite matrix's factors have no list of interchanges, which the indefinite type's have.
  calls c(small_spd());
  ASSERT_EQ(c.call(12), 0);
  c.mtype = -2;
  ASSERT_EQ(c.call(331), 0);
  ASSERT_EQ(c.call(33), 0);
  EXPECT_LT(c.backward_error(c.x, c.b), 1e-14);
}

}  // namespace
}  // namespace qel::test
