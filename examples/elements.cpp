// SPDX-License-Identifier: BSD-3-Clause
// Element-wise arithmetic of arrays, and random numbers that a seed determines.
#include "check.h"
#include "tavik/kernel/dot_net_blas.h"
#include "tavik/kernel/vector_math_functions.h"

using namespace Tavik::Core;

int main() {
  Tavik::Kernel::VectorMathFunctions arithmetic;
  const Array<double> a{1, 4, 9}, b{2, 2, 3}, r(3);
  arithmetic.div(3, a, b, r);
  check("a quotient", r[2], 3, 0);
  arithmetic.mul(3, r, b, r);  // the result may be an operand
  arithmetic.sub(3, r, a, r);
  for (int k = 0; k < 3; ++k) check("quotient times divisor less dividend", r[k], 0, 0);

  Tavik::Kernel::DotNetBlas kernel;
  const Array<double> once(1000), again(1000);
  kernel.UniformRandomNumbers(7, 0, 10, once);
  kernel.UniformRandomNumbers(7, 0, 10, again);
  double sum = 0;
  for (int k = 0; k < once.Length(); ++k) {
    check("the same number", again[k], once[k], 0);
    sum += once[k];
  }
  check("the mean", sum / once.Length(), 5, 0.5);
  std::printf("mean of %d numbers in [0, 10): %.3f\n", once.Length(), sum / once.Length());
  return 0;
}
