// SPDX-License-Identifier: BSD-3-Clause
// Vector math, whose results must be correctly rounded; random streams beside the plain recurrence.
#include <fmt/core.h>

#include <cmath>

#include "cli/selftest/recorder.h"
#include "qel/rng.h"
#include "qel/vml.h"

namespace qel::cli::selftest {
namespace {

/// Lengths around the registers, and some that fork and that go past the caches.
const std::vector<int>& lengths() {
  static const std::vector<int> all = [] {
    std::vector<int> list;
    for (int n = 0; n <= 40; ++n) list.push_back(n);
    for (const int n : {63, 64, 65, 127, 250, 251, 1000, 5003, 50001, 200003}) list.push_back(n);
    return list;
  }();
  return all;
}

/// How far r is from the exact result, in units of half an epsilon of it: up to 1 where it is correctly
/// rounded. Sums and products of doubles with a rest by fma are exact in pairs, so nothing is rounded here.
double off_by(char operation, double a, double b, double r) {
  long double rest = 0;
  if (operation == '/') {
    rest = static_cast<long double>(std::fma(-r, b, a)) / b;
  } else if (operation == '*') {
    rest = static_cast<long double>(std::fma(a, b, -r));
  } else {
    rest = (static_cast<long double>(a) - r) - b;
  }
  return rest == 0 ? 0 : static_cast<double>(std::fabs(rest)) / (0.5 * kEpsilon<double> * std::fabs(r));
}

}  // namespace

void check_vector_math(recorder& out) {
  const struct {
    const char* name;
    char operation;
    void (*call)(int, const double*, const double*, double*);
  } operations[] = {{"vdDiv", '/', vdDiv}, {"vdMul", '*', vdMul}, {"vdSub", '-', vdSub}};
  for (const int n : lengths()) {
    number_source source(static_cast<std::uint64_t>(n));
    std::vector<double> a = source.numbers<double>(n + 1), b = source.numbers<double>(n + 1);
    for (double& divisor : b) divisor += divisor < 0 ? -0.5 : 0.5;
    for (const auto& operation : operations) {
      for (const size_t shift : {size_t{0}, size_t{1}}) {
        std::vector<double> r(static_cast<size_t>(n) + 3, 77.0);
        operation.call(n, a.data(), b.data(), r.data() + shift);
        double worst = 0;
        for (size_t i = 0; i < r.size(); ++i) {
          const bool inside = i >= shift && i < shift + static_cast<size_t>(n);
          const double error = inside         ? off_by(operation.operation, a[i - shift], b[i - shift], r[i])
                               : r[i] == 77.0 ? 0
                                              : 1e300;
          raise(worst, error);
        }
        out.compare(operation.name, fmt::format("n {}{}", n, shift == 0 ? "" : " off the boundary"), worst,
                    1.001);
      }
    }
  }
}

void check_random_streams(recorder& out) {
  constexpr size_t kWords = 250, kShort = 147;
  for (const unsigned seed : {1u, 77u, 2147483647u}) {
    // The seeding sequence, its diagonal of ones, then the recurrence.
    std::vector<std::uint32_t> y;
    std::uint32_t word = seed;
    for (size_t i = 0; i < kWords; ++i) y.push_back(word *= 69069u);
    for (unsigned k = 0; k < 32; ++k) {
      std::uint32_t& x = y[3 + 7 * k];
      x = (x & (0xffffffffu >> k)) | (0x80000000u >> k);
    }
    qel_random_stream_handle stream = nullptr;
    out.expect("vslNewStream", fmt::format("seed {}", seed), vslNewStream(&stream, QEL_BRNG_R250, seed) == 0);
    for (const int n : lengths()) {
      std::vector<double> r(static_cast<size_t>(n) + 1, 77.0);
      const double from = n % 2 == 0 ? 0 : -3, to = n % 2 == 0 ? 1 : 5;
      vdRngUniform(QEL_RNG_UNIFORM_PLAIN, stream, n, r.data(), from, to);
      double worst = r.back() == 77.0 ? 0 : 1e300;
      for (size_t i = 0; i + 1 < r.size(); ++i) {
        y.push_back(y[y.size() - kWords] ^ y[y.size() - kShort]);
        const long double want = from + static_cast<long double>(y.back()) * (to - from) / 4294967296.0L;
        const double error = static_cast<double>(std::fabs(r[i] - want)) / (kEpsilon<double> * (to - from));
        raise(worst, error);
      }
      out.compare("vdRngUniform", fmt::format("seed {} n {}", seed, n), worst, 1);
    }
    vslDeleteStream(&stream);
  }
}

}  // namespace qel::cli::selftest
