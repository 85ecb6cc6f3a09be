// SPDX-License-Identifier: BSD-3-Clause
// Numbers of the R250 generator, y(k) = y(k - 250) ^ y(k - 147) (S. Kirkpatrick, E. P. Stoll, J. Comput.
// Phys. 40 (1981) 517), and the clamp of uniform numbers into their interval.
#include "vector/kernels/kernel_prelude.h"
#include "vector/kernels/lanes.inl.h"
#if defined(__AVX512F__)
#include "vector/kernels/r250_window.inl.h"
#elif defined(__AVX2__)
#include "vector/kernels/r250_ring.inl.h"
#else
#include "vector/kernels/r250_pieces.inl.h"
#endif

namespace qel::QEL_LEVEL {

void QEL_VSL_NAME(r250_fill)(r250_register& state, int n, double* r, double a, double scale, bool streamed) {
  fill(state, n, r, a, scale, streamed);
}

void QEL_VSL_NAME(clamp)(int n, double* r, double a, double b) {
  const doubles::reg low = doubles::all(a), high = doubles::all(b);
  int i = 0;
  for (; i < (n & ~(kBlock - 1)); i += kBlock) {
#pragma GCC unroll 8
    for (int k = i; k < i + kBlock; k += doubles::kCount) {
      doubles::store(r + k, doubles::min(high, doubles::max(low, doubles::load(r + k))));
    }
  }
  for (; i < n; ++i) {
    const double v = element_at(r + i), raised = a > v ? a : v;
    set_element(r + i, b < raised ? b : raised);
  }
}

}  // namespace qel::QEL_LEVEL
