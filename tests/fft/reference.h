// SPDX-License-Identifier: BSD-3-Clause
// A transform in long double, by other means than the library's: recursion over the smallest prime factor,
// sums for primes.
#pragma once

#include <cmath>
#include <complex>
#include <cstdint>
#include <random>
#include <vector>

namespace qel::test {

using wide = std::complex<long double>;

/// exp(sign 2 pi i k / n)
inline wide wide_root(std::int64_t k, std::int64_t n, int sign) {
  constexpr long double kTurn = 6.283185307179586476925286766559005768L;
  const long double angle = kTurn * static_cast<long double>(k % n) / static_cast<long double>(n);
  return {std::cos(angle), static_cast<long double>(sign) * std::sin(angle)};
}

inline void wide_transform(const wide* in, std::size_t stride, wide* out, std::size_t n,
                           const std::vector<wide>& roots) {
  if (n == 1) {
    *out = *in;
    return;
  }
  std::size_t factor = 2;
  while (n % factor != 0) factor = factor * factor > n ? n : factor + 1;
  const std::size_t m = n / factor, step = roots.size() / n;
  std::vector<wide> sub(n);
  for (std::size_t p = 0; p < factor; ++p)
    wide_transform(in + p * stride, stride * factor, sub.data() + p * m, m, roots);
  for (std::size_t k = 0; k < n; ++k) {
    wide sum = 0;
    for (std::size_t p = 0; p < factor; ++p) sum += sub[p * m + k % m] * roots[p * k % n * step];
    out[k] = sum;
  }
}

/// sign -1: forward, 1: backward; no scale.
inline std::vector<wide> wide_transform(const std::vector<wide>& x, int sign) {
  std::vector<wide> roots(x.size()), y(x.size());
  for (std::size_t k = 0; k < x.size(); ++k) {
    roots[k] = wide_root(static_cast<std::int64_t>(k), static_cast<std::int64_t>(x.size()), sign);
  }
  wide_transform(x.data(), 1, y.data(), x.size(), roots);
  return y;
}

/// The same over an array of several dimensions in row-major order.
inline std::vector<wide> wide_transform_of(std::vector<wide> x, const std::vector<int>& lengths, int sign) {
  std::size_t step = 1;
  for (std::size_t d = lengths.size(); d-- > 0;) {
    const auto n = static_cast<std::size_t>(lengths[d]);
    for (std::size_t first = 0; first < x.size(); ++first) {
      if (first / step % n != 0) continue;
      std::vector<wide> line(n);
      for (std::size_t j = 0; j < n; ++j) line[j] = x[first + j * step];
      line = wide_transform(line, sign);
      for (std::size_t j = 0; j < n; ++j) x[first + j * step] = line[j];
    }
    step *= n;
  }
  return x;
}

template <class R>
std::vector<std::complex<R>> random_line(std::size_t n, unsigned seed) {
  std::mt19937 source(seed);
  std::uniform_real_distribution<R> parts(-1, 1);
  std::vector<std::complex<R>> line(n);
  for (auto& z : line) z = {parts(source), parts(source)};
  return line;
}

/// |got - want| / |want|, both as vectors.
template <class R>
long double relative_error(const std::complex<R>* got, const std::vector<wide>& want) {
  long double error = 0, size = 0;
  for (std::size_t k = 0; k < want.size(); ++k) {
    error += std::norm(wide(got[k].real(), got[k].imag()) - want[k]);
    size += std::norm(want[k]);
  }
  return std::sqrt(error / size);
}

}  // namespace qel::test
