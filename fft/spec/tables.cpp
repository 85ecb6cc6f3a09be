// SPDX-License-Identifier: BSD-3-Clause
#include "fft/spec/tables.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <numbers>

#include "fft/spec/level_kernels.h"

namespace qel::fft {

complex16 unit_root(core_int k, core_int n) {
  if (2 * k > n) {
    const complex16 z = unit_root(n - k, n);
    return {z.real, -z.imag};
  }
  if (4 * k > n) {
    const complex16 z = unit_root(n - 2 * k, 2 * n);
    return {-z.real, z.imag};
  }
  if (8 * k > n) {
    const complex16 z = unit_root(n - 4 * k, 4 * n);
    return {-z.imag, -z.real};
  }
  const double angle = 2 * std::numbers::pi * static_cast<double>(k) / static_cast<double>(n);
  return {std::cos(angle), -std::sin(angle)};
}

void fill_roots(complex16* roots, core_int count, core_int n) {
  if (const auto* const native = native_passes<double>())
    return native->roots_of_unity(roots, nullptr, count, n);
  for (core_int k = 0; k < count; ++k) roots[k] = unit_root(k, n);
}

bool fill_roots_at(complex16* roots, const int* numerators, core_int count, core_int n) {
  if (const auto* const native = native_passes<double>()) {
    native->roots_of_unity(roots, numerators, count, n);
    return true;
  }
  half_circle all;
  if (!all.make(n)) return false;
  for (core_int i = 0; i < count; ++i) roots[i] = all.anywhere(numerators[i]);
  return true;
}

namespace {

/// Roots 0 .. n / 2, the functions called for as few of them as symmetries leave.
void fill_half_circle(complex16* w, core_int n) {
  const bool quarters = n % 4 == 0, halves = n % 2 == 0;
  const core_int computed = quarters ? n / 8 : halves ? n / 4 : n / 2;
  fill_roots(w, computed + 1, n);
  if (quarters) {
    for (core_int k = computed + 1; k <= n / 4; ++k) w[k] = {-w[n / 4 - k].imag, -w[n / 4 - k].real};
  }
  if (halves) {
    for (core_int k = n / 4 + 1; k <= n / 2; ++k) w[k] = {-w[n / 2 - k].real, w[n / 2 - k].imag};
  }
}

}  // namespace

table<complex16> make_root_table(core_int n) {
  auto roots = make_table<complex16>(n);
  if (roots == nullptr) return roots;
  complex16* w = roots.get();
  fill_half_circle(w, n);
  for (core_int k = n / 2 + 1; k < n; ++k) w[k] = {w[n - k].real, -w[n - k].imag};
  return roots;
}

bool half_circle::make(core_int n) {
  n_ = n;
  roots_ = make_table<complex16>(n / 2 + 1);
  if (roots_ == nullptr) return false;
  fill_half_circle(roots_.get(), n);
  return true;
}

bool quarter_wave::make(core_int n) {
  order_of_quarter_ = std::countr_zero(static_cast<uint64_t>(n / 4));
  sines_ = make_table<double>(n / 4 + 1);
  if (sines_ == nullptr) return false;
  const double step = 2 * std::numbers::pi / static_cast<double>(n);
  for (core_int k = 0; k <= n / 4; ++k) {
    sines_[static_cast<size_t>(k)] = 8 * k <= n ? std::sin(step * static_cast<double>(k))
                                                : std::cos(step * static_cast<double>(n / 4 - k));
  }
  return true;
}

complex16 quarter_wave::root(core_int k) const {
  const core_int quarter = core_int{1} << order_of_quarter_, turn = k >> order_of_quarter_ & 3,
                 rest = k & (quarter - 1);
  const double s = sines_[static_cast<size_t>(rest)], c = sines_[static_cast<size_t>(quarter - rest)];
  switch (turn) {
    case 0:
      return {c, -s};
    case 1:
      return {-s, -c};
    case 2:
      return {-c, s};
    default:
      return {s, c};
  }
}

}  // namespace qel::fft
