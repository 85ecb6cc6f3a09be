// SPDX-License-Identifier: BSD-3-Clause
// A program of somebody else, in C++: a facade class, its exception across the library's border, and an
// entry.
#include <qel/qel.h>
#include <tavik/kernel/dot_net_blas.h>

#include <cstdio>
#include <stdexcept>

int main() {
  using Tavik::Core::Array;
  using Tavik::Core::DoubleDataBlock;
  Tavik::Kernel::DotNetBlas blas;
  const Array<double> x{1, 2, 3, 4}, y{4, 3, 2, 1};
  const double sum = blas.dot(4, DoubleDataBlock{x, 0}, 1, DoubleDataBlock{y, 0}, 1);
  bool thrown = false;
  try {
    blas.dot(4, DoubleDataBlock{x, 9}, 1, DoubleDataBlock{y, 0}, 1);
  } catch (const std::out_of_range&) {
    thrown = true;
  }
  const int n = 4, one = 1;
  const double same = ddot(&n, &x[0], &one, &y[0], &one);
  if (sum != 20 || same != 20 || !thrown) {
    std::printf("facade %g, entry %g, thrown %d\n", sum, same, thrown);
    return 1;
  }
  std::puts("right");
}
