// SPDX-License-Identifier: BSD-3-Clause
#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "sparse/pardiso/numeric/factor.h"
#include "sparse/pardiso/numeric/modulus.h"

namespace qel::pardiso {

template <class T>
double pivot_threshold(const csr_view<T>& a, int k) {
  if (k == 0) return 0;
  using R = real_of<T>;
  constexpr double kLogTen = sizeof(R) == 4 ? 2.3025851 : 2.302585092994046;
  const double threshold = std::exp(std::abs(static_cast<double>(k)) * -kLogTen);
  if (!a.type.indefinite()) return threshold;
  // Kept: only the first row's entries behind its first one count, for every row the same ones.
  double largest = 0;
  for (int p = a.n > 0 ? a.ia[0] : 0; a.n > 0 && p < a.ia[1] - 1; ++p) {
    largest = std::max(largest, static_cast<double>(modulus(a.a[p])));
  }
  if (largest == 0) largest = 1;
  return largest >= 1 ? threshold / std::sqrt(largest) : threshold * std::sqrt(largest);
}

template double pivot_threshold(const csr_view<float>&, int);
template double pivot_threshold(const csr_view<double>&, int);
template double pivot_threshold(const csr_view<complex8>&, int);
template double pivot_threshold(const csr_view<complex16>&, int);

}  // namespace qel::pardiso
