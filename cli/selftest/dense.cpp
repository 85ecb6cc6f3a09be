// SPDX-License-Identifier: BSD-3-Clause
#include "cli/selftest/dense.h"

namespace qel::cli::selftest {

wide_product multiply(const wide_matrix& a, const wide_matrix& b) {
  wide_product result{wide_matrix(a.rows, b.columns), {}};
  result.scale.assign(result.value.values.size(), 0);
  std::vector<double> moduli(a.values.size());
  std::transform(a.values.begin(), a.values.end(), moduli.begin(), [](const wide& x) {
    return static_cast<double>(std::fabs(x.real()) + std::fabs(x.imag()));
  });
  for (core_int j = 0; j < b.columns; ++j) {
    for (core_int l = 0; l < a.columns; ++l) {
      // Parts by hand: the operator of std::complex looks for infinities.
      const long double br = b(l, j).real(), bi = b(l, j).imag();
      const auto size = static_cast<double>(std::fabs(br) + std::fabs(bi));
      if (size == 0) continue;
      wide* const column = &result.value(0, j);
      double* const scale = result.scale.data() + j * a.rows;
      const wide* const left = &a(0, l);
      const double* const left_size = moduli.data() + l * a.rows;
      for (core_int i = 0; i < a.rows; ++i) {
        const long double ar = left[i].real(), ai = left[i].imag();
        column[i] += wide(ar * br - ai * bi, ar * bi + ai * br);
        scale[i] += left_size[i] * size;
      }
    }
  }
  return result;
}

double norm_of(const wide_matrix& a) {
  long double sum = 0;
  for (const wide& x : a.values) sum += std::norm(x);
  return static_cast<double>(std::sqrt(sum));
}

double distance(const wide_matrix& a, const wide_matrix& b) {
  wide_matrix difference = a;
  for (size_t i = 0; i < a.values.size(); ++i) difference.values[i] -= b.values[i];
  return norm_of(difference);
}

}  // namespace qel::cli::selftest
