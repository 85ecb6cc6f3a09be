// SPDX-License-Identifier: BSD-3-Clause
// Level 1: strides of both signs, gaps that must stay, lengths from 0 to some that fork.
#include <fmt/core.h>

#include <algorithm>
#include <cstdlib>

#include "cli/selftest/core_calls.h"
#include "cli/selftest/recorder.h"

namespace qel::cli::selftest {
namespace {

/// A strided vector with a few elements beyond its end; at() counts elements of the vector.
template <class T>
struct strided {
  core_int n, inc;
  std::vector<T> memory;
  strided(number_source& source, core_int length, core_int stride)
      : n(length), inc(stride), memory(source.numbers<T>(std::max<core_int>(n, 1) * std::abs(stride) + 3)) {}
  size_t place(core_int i) const { return static_cast<size_t>(inc > 0 ? i * inc : (i + 1 - n) * inc); }
  wide at(core_int i) const { return widened(memory[place(i)]); }
  /// All of the memory, to be changed where the operation writes.
  std::vector<wide> expected() const {
    std::vector<wide> all(memory.size());
    std::transform(memory.begin(), memory.end(), all.begin(), [](T x) { return widened(x); });
    return all;
  }
};

template <class T>
class vector_checks {
 public:
  vector_checks(recorder& out, core_int n, core_int incx, core_int incy)
      : out_(out),
        n_(n),
        incx_(incx),
        incy_(incy),
        source_(static_cast<std::uint64_t>(n * 100 + incx * 10 + incy + 50)),
        sizes_(fmt::format("n {} strides {} {}", n, incx, incy)) {}

  void run() {
    check_dot(false);
    if (is_complex<T>) check_dot(true);
    check_updates();
    check_moves();
    check_reductions();
  }

 private:
  using calls = core_calls<T>;
  std::string name(const char* routine) const { return std::string(1, kLetter<T>) + routine; }
  strided<T> x() { return strided<T>(source_, n_, incx_); }
  strided<T> y() { return strided<T>(source_, n_, incy_); }

  /// The vector's elements have the scale, what lies between them none: it must not change.
  void compare(const char* routine, const strided<T>& got, const std::vector<wide>& want,
               const std::vector<double>& scale, double bound) {
    out_.compare(name(routine), sizes_, worst_error(got.memory, want, scale), bound);
  }

  void check_dot(bool conjugated) {
    const strided<T> a = x(), b = y();
    wide want = 0;
    double scale = 0;
    for (core_int i = 0; i < n_; ++i) {
      const wide term = (conjugated ? std::conj(a.at(i)) : a.at(i)) * b.at(i);
      want += term;
      scale += static_cast<double>(std::abs(a.at(i)) * std::abs(b.at(i)));
    }
    const T got = calls::dot(conjugated, n_, a.memory.data(), incx_, b.memory.data(), incy_);
    out_.compare(name(conjugated ? "dotc" : "dot"), sizes_, worst_error<T>({got}, {want}, {scale}),
                 sum_bound(static_cast<double>(n_)));
  }

  void check_updates() {
    const strided<T> a = x();
    strided<T> b = y();
    const T alpha = source_.number<T>();
    const wide factor = widened(alpha);
    std::vector<wide> want = b.expected();
    std::vector<double> scale(want.size(), 0);
    for (core_int i = 0; i < n_; ++i) {
      want[b.place(i)] += factor * a.at(i);
      scale[b.place(i)] = static_cast<double>(std::abs(factor) * std::abs(a.at(i)) + std::abs(b.at(i)));
    }
    calls::axpy(&n_, &alpha, a.memory.data(), &incx_, b.memory.data(), &incy_);
    compare("axpy", b, want, scale, 4);

    strided<T> scaled = x();
    want = scaled.expected();
    scale.assign(want.size(), 0);
    for (core_int i = 0; i < n_; ++i) {
      scale[scaled.place(i)] = static_cast<double>(std::abs(factor) * std::abs(scaled.at(i)));
      want[scaled.place(i)] *= factor;
    }
    const core_int stride = std::abs(incx_);
    calls::scal(&n_, &alpha, scaled.memory.data(), &stride);
    compare("scal", scaled, want, scale, 4);

    strided<T> left = x(), right = y();
    const auto c = static_cast<real_of<T>>(0.6), s = static_cast<real_of<T>>(0.8);
    std::vector<wide> want_left = left.expected(), want_right = right.expected();
    std::vector<double> left_scale(want_left.size(), 0), right_scale(want_right.size(), 0);
    for (core_int i = 0; i < n_; ++i) {
      const wide u = left.at(i), v = right.at(i);
      const auto wc = static_cast<long double>(c), ws = static_cast<long double>(s);
      want_left[left.place(i)] = wc * u + ws * v;
      want_right[right.place(i)] = wc * v - ws * u;
      left_scale[left.place(i)] = right_scale[right.place(i)] =
          static_cast<double>(std::abs(u) + std::abs(v));
    }
    calls::rot(&n_, left.memory.data(), &incx_, right.memory.data(), &incy_, &c, &s);
    compare("rot", left, want_left, left_scale, 4);
    compare("rot", right, want_right, right_scale, 4);
  }

  void check_moves() {
    strided<T> a = x(), b = y();
    std::vector<wide> want_a = a.expected(), want_b = b.expected();
    for (core_int i = 0; i < n_; ++i) want_b[b.place(i)] = a.at(i);
    strided<T> copied = b;
    calls::copy(&n_, a.memory.data(), &incx_, copied.memory.data(), &incy_);
    compare("copy", copied, want_b, std::vector<double>(want_b.size(), 0), 0);
    for (core_int i = 0; i < n_; ++i) want_a[a.place(i)] = b.at(i);
    calls::swap(&n_, a.memory.data(), &incx_, b.memory.data(), &incy_);
    compare("swap", a, want_a, std::vector<double>(want_a.size(), 0), 0);
    compare("swap", b, want_b, std::vector<double>(want_b.size(), 0), 0);
  }

  void check_reductions() {
    if (incx_ < 1) return;  // these count no elements then
    const strided<T> a = x();
    long double sum = 0, squares = 0;
    core_int largest = 0, least = 0;
    const auto size = [&](core_int i) { return std::fabs(a.at(i).real()) + std::fabs(a.at(i).imag()); };
    for (core_int i = 0; i < n_; ++i) {
      sum += size(i);
      squares += std::norm(a.at(i));
      if (size(i) > size(largest)) largest = i;
      if (size(i) < size(least)) least = i;
    }
    using R = real_of<T>;
    const auto compare_sum = [&](const char* routine, R got, long double want) {
      out_.compare(name(routine), sizes_, worst_error<R>({got}, {wide(want)}, {static_cast<double>(want)}),
                   sum_bound(static_cast<double>(n_)));
    };
    compare_sum("asum", calls::asum(&n_, a.memory.data(), &incx_), sum);
    compare_sum("nrm2", calls::nrm2(&n_, a.memory.data(), &incx_), std::sqrt(squares));
    // Complex moduli that rounding makes equal may be told by either index.
    const auto same = [&](core_int found, core_int wanted) {
      return n_ < 1 ? found == 0
                    : found >= 1 && found <= n_ &&
                          std::fabs(size(found - 1) - size(wanted)) <=
                              static_cast<long double>(is_complex<T> ? 2 * kEpsilon<T> : 0);
    };
    out_.expect(name("iamax"), sizes_, same(calls::iamax(&n_, a.memory.data(), &incx_), largest));
    out_.expect(name("iamin"), sizes_, same(calls::iamin(&n_, a.memory.data(), &incx_), least));
  }

  recorder& out_;
  const core_int n_, incx_, incy_;
  number_source source_;
  const std::string sizes_;
};

}  // namespace

void check_vectors(recorder& out) {
  const core_int short_ones[] = {0,  1,  2,  3,  4,  5,  6,  7,  8,  9,   11,
                                 15, 16, 17, 23, 31, 33, 63, 64, 65, 100, 129};
  for_each_type([&]<class T>() {
    for (const core_int n : short_ones) {
      for (const auto& [incx, incy] : {std::pair<core_int, core_int>{1, 1}, {2, 1}, {1, -1}, {-3, 2}}) {
        vector_checks<T>(out, n, incx, incy).run();
      }
    }
    for (const core_int n : {1000, 2600, 30011}) vector_checks<T>(out, n, 1, 1).run();
    vector_checks<T>(out, 5003, -1, 2).run();
  });
}

}  // namespace qel::cli::selftest
