// SPDX-License-Identifier: BSD-3-Clause
// The classes over the direct sparse solver: systems solved, errors handed back, memory given back.
#include <gtest/gtest.h>

#include <cmath>

#include "qel/pardiso.h"
#include "tavik/kernel/qel_direct_sparse_solver.h"
#include "tavik/kernel/qel_pardiso_solver.h"
#include "tests/support/in_child.h"
#include "tests/support/sanitized.h"

namespace Tavik::Kernel {
namespace {

using Core::Array;
using Core::DoubleComplex;

// [4 1 0; 1 3 1; 0 1 2] and its upper triangle.
const Array<int> kRows = {1, 3, 6, 8}, kColumns = {1, 2, 1, 2, 3, 2, 3};
const Array<double> kValues = {4, 1, 1, 3, 1, 1, 2};
const Array<int> kUpperRows = {1, 3, 5, 6}, kUpperColumns = {1, 2, 2, 3, 3};
const Array<double> kUpperValues = {4, 1, 3, 1, 2};

void expect_near(const Array<double>& x, const Array<double>& want) {
  for (int i = 0; i < want.Length(); ++i) EXPECT_NEAR(x[i], want[i], 1e-14) << i;
}

TEST(QelPardisoSolver, FactorsOnceAndSolvesOften) {
  const std::unique_ptr<Matrix::IQelPardisoSolverKernel> solver = QelPardisoSolver::GetInstance(0, 11);
  Array<double> b = {6, 10, 8, 1, 0, 0}, x(6);
  ASSERT_EQ(solver->Factor(3, kValues, kRows, kColumns), 0);
  ASSERT_EQ(solver->Solve(3, kValues, kRows, kColumns, 2, b, x), 0);
  expect_near(x, {1, 2, 3, 5.0 / 18, -2.0 / 18, 1.0 / 18});
  solver->Dispose();
  solver->Dispose();
  // A system of another order, after the release.
  const Array<int> rows = {1, 3, 5}, columns = {1, 2, 1, 2};
  ASSERT_EQ(solver->Factor(2, Array<double>{2, 1, 1, 3}, rows, columns), 0);
  ASSERT_EQ(solver->Solve(2, Array<double>{2, 1, 1, 3}, rows, columns, 1, Array<double>{3, 4}, x), 0);
  expect_near(x, {1, 1});
}

TEST(QelPardisoSolver, ComplexSystems) {
  QelPardisoSolver solver(0, 6);
  const DoubleComplex i(0, 1);
  // [2 i; i 1] with x = (1, i)
  const Array<DoubleComplex> a = {2, i, 1}, b = {DoubleComplex(2) + i * i, i + i}, x(2);
  const Array<int> rows = {1, 3, 4}, columns = {1, 2, 2};
  ASSERT_EQ(solver.Factor(2, a, rows, columns), 0);
  ASSERT_EQ(solver.Solve(2, a, rows, columns, 1, b, x), 0);
  EXPECT_NEAR(x[0].Real, 1, 1e-14);
  EXPECT_NEAR(x[1].Imag, 1, 1e-14);
  EXPECT_EQ(solver.Iparm[63], 108);
}

TEST(QelPardisoSolver, HandsErrorsBack) {
  for (const int msglvl : {0, 1}) {
    QelPardisoSolver solver(msglvl, 11);
    Array<double> b(3), x(3);
    testing::internal::CaptureStdout();
    EXPECT_EQ(solver.Solve(3, kValues, kRows, kColumns, 1, b, x), msglvl == 0 ? -7 : -1) << "no factors";
    EXPECT_EQ(solver.Pt[0], nullptr);
    EXPECT_EQ(solver.Factor(3, kValues, kRows, kColumns), 0);
    const Array<int> rows = {1, 3, 5}, columns = {1, 2, 1, 2};
    EXPECT_EQ(solver.Factor(2, Array<double>{2, 1, 1, 3}, rows, columns), msglvl == 0 ? -7 : -1);
    const std::string text = testing::internal::GetCapturedStdout();
    EXPECT_EQ(text.find("neqns_new 2 _old 3") != std::string::npos, msglvl == 1) << text;
    solver.Msglvl = 0;
    EXPECT_THROW(solver.Factor(3, Array<double>(), kRows, kColumns), std::out_of_range);
  }
  QelPardisoSolver indefinite(0, 2);
  EXPECT_EQ(indefinite.Factor(3, Array<double>{-4, 1, 3, 1, 2}, kUpperRows, kUpperColumns), -4);
}

TEST(QelPardisoSolver, TheEntriesAreOne) {
  // volatile: a compiler may hold that two functions have two addresses.
  void* const volatile upper = reinterpret_cast<void*>(&PARDISO);
  EXPECT_EQ(upper, reinterpret_cast<void*>(&pardiso));
  void* pt[64];
  int iparm[64];
  const int mtype = -2;
  EXPECT_EQ(pardisoinit(pt, &mtype, iparm), -1);
  EXPECT_EQ(iparm[20], 1);
  qel_pardiso_quality quality;
  EXPECT_EQ(qel_pardiso_report(pt, 1, nullptr, nullptr, nullptr, 0, nullptr, nullptr, nullptr, &quality), -1);
  EXPECT_STREQ(quality.text, "not judged, there are no factors");
}

TEST(QelDirectSparseSolver, SolvesAndEndsTheProcessOnErrors) {
  if (qel::test::kWithThreadSanitizer) GTEST_SKIP() << "children that end by exit()";
  const struct {
    QelDirectSparseSolver::MatrixType type;
    const Array<int>&rows, &columns;
    const Array<double>& values;
  } cases[] = {{QelDirectSparseSolver::NonSymmetric, kRows, kColumns, kValues},
               {QelDirectSparseSolver::Symmetric, kUpperRows, kUpperColumns, kUpperValues},
               {QelDirectSparseSolver::SymmetricPositiveDefinite, kUpperRows, kUpperColumns, kUpperValues}};
  // In a process of its own: nothing releases the handles.
  for (const auto& c : cases) {
    const qel::test::child_result result = qel::test::in_child([&c] {
      QelDirectSparseSolver solver;
      const Array<double> x(3);
      if (solver.Factor(3, c.type, c.values.Length(), c.values, c.rows, c.columns) != 0) return 1;
      if (solver.Solve(1, Array<double>{6, 10, 8}, x) != 0) return 2;
      for (int i = 0; i < 3; ++i) {
        if (std::abs(x[i] - (i + 1)) > 1e-14) return 3;
      }
      return 0;
    });
    EXPECT_EQ(result.exit_status, 0) << c.type;
  }
  const qel::test::child_result refused = qel::test::in_child([] {
    QelDirectSparseSolver solver;
    return solver.Factor(3, QelDirectSparseSolver::Symmetric, 2, kUpperValues, kUpperRows, kUpperColumns);
  });
  EXPECT_EQ(refused.exit_status, 250);  // status -6
  EXPECT_EQ(refused.output, "QEL-DSS-DSS-Error, Number of non-zeros less than nRows\n");
}

}  // namespace
}  // namespace Tavik::Kernel
