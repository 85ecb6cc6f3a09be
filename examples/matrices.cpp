// SPDX-License-Identifier: BSD-3-Clause
// A packed symmetric matrix: Cholesky factors, a solution, the condition; singular values of a general one.
#include "tavik/kernel/matrix_dot_net_blas.h"

#include "check.h"

using namespace Tavik::Core;

int main() {
  Tavik::Kernel::MatrixDotNetBlas kernel;
  const DoubleDataBlock a{Array<double>{4, 2, 5, 0, 3, 6}};  // the upper triangle, column after column
  const DoubleDataBlock b{Array<double>{6, 10, 9}};          // A (1, 1, 1)
  check("info of the factorisation", kernel.SymPDFact(3, a), 0, 0);
  check("info of the solution", kernel.SolveSymPDFromFact(3, 1, a, b, 3), 0, 0);
  for (int k = 0; k < 3; ++k) check("an unknown", b.Data[k], 1, 1e-14);

  const DoubleDataBlock general{Array<double>{0, 2, -3, 0}};  // [0 -3; 2 0]
  const DoubleDataBlock values{Array<double>(2)}, none{Array<double>(1)};
  check("info of the decomposition",
        kernel.SVDFromGeneral('N', 'N', 2, 2, general, 2, values, none, 2, none, 2), 0, 0);
  check("the larger value", values.Data[0], 3, 1e-14);
  check("the smaller one", values.Data[1], 2, 1e-14);
  std::printf("solution %g %g %g; singular values %g %g\n", b.Data[0], b.Data[1], b.Data[2], values.Data[0],
              values.Data[1]);
  return 0;
}
