// SPDX-License-Identifier: BSD-3-Clause
// A product in row form, and the system solved for what it was formed from.
#include "tavik/kernel/level_two_sparse_blas.h"
#include "tavik/kernel/qel_pardiso_solver.h"

#include "check.h"

using namespace Tavik::Core;

int main() {
  // [4 1 0; 1 4 1; 0 1 4], counted from 1
  const Array<double> a{4, 1, 1, 4, 1, 1, 4};
  const Array<int> ja{1, 2, 1, 2, 3, 2, 3}, ia{1, 3, 6, 8};
  const DataBlock<double> x{Array<double>{1, 2, 3}};
  const Array<double> b(3), solution(3);
  Tavik::Kernel::LevelTwoSparseBlas products;
  products.csrgemv('N', 3, a, ia, ja, x, b);
  check("an element of A x", b[1], 12, 0);

  Tavik::Kernel::QelPardisoSolver solver(0, 11);  // silent; real, nonsymmetric
  check("error of the factorisation", solver.Factor(3, a, ia, ja), 0, 0);
  check("error of the solution", solver.Solve(3, a, ia, ja, 1, b, solution), 0, 0);
  for (int k = 0; k < 3; ++k) check("an unknown", solution[k], k + 1, 1e-14);
  std::printf("solution %g %g %g\n", solution[0], solution[1], solution[2]);
  return 0;
}
