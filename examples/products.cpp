// SPDX-License-Identifier: BSD-3-Clause
// Data blocks are views: a row of a matrix as a vector, a product of two matrices, a linear system.
#include "tavik/kernel/dot_net_blas.h"

#include "check.h"

using namespace Tavik::Core;

int main() {
  Tavik::Kernel::DotNetBlas kernel;
  // 2 x 3, column after column: element (i, j) is Data[Offset + i * 1 + j * 2]
  const DoubleDataBlock a{Array<double>{1, 4, 2, 5, 3, 6}};
  const DoubleDataBlock second_row{a.Data, 1};
  check("a dot product of rows", kernel.dot(3, a, 2, second_row, 2), 1 * 4 + 2 * 5 + 3 * 6, 0);

  // A A^T: the second operand is the same block with its strides exchanged
  const DoubleDataBlock gram{Array<double>(4)};
  kernel.Product(2, 2, 3, a, 1, 2, a, 2, 1, gram, 1, 2, true);
  check("an element of A A^T", gram.Data[1], 32, 0);

  const Array<int> pivots(2);
  const DoubleDataBlock x{Array<double>{14, 32}};  // A A^T (1, 0)
  check("info of the factorisation", kernel.LUFactorization(2, 2, gram, pivots), 0, 0);
  check("info of the solution", kernel.LUSolve(2, 1, gram, 2, pivots, x, 2), 0, 0);
  check("x[0]", x.Data[0], 1, 1e-13);
  check("x[1]", x.Data[1], 0, 1e-13);
  std::printf("x = %g %g\n", x.Data[0], x.Data[1]);
  return 0;
}
