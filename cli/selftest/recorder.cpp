// SPDX-License-Identifier: BSD-3-Clause
#include "cli/selftest/recorder.h"

#include <cmath>

namespace qel::cli::selftest {

void recorder::compare(const std::string& routine, const std::string& sizes, double error, double bound) {
  constexpr size_t kKept = 5;
  ++result_.cases;
  const auto nearness = [](double e, double b) { return b > 0 ? e / b : e; };
  if (!(nearness(error, bound) <= nearness(result_.worst, result_.worst_bound)) ||
      result_.worst_case.empty()) {
    result_.worst = error;
    result_.worst_bound = bound;
    result_.worst_case = routine + ' ' + sizes;
  }
  if (error <= bound) return;
  ++result_.failed;
  if (result_.failures.size() < kKept) result_.failures.push_back({routine, sizes, error, bound});
}

double sum_bound(double n) { return 8 + 2 * std::sqrt(n); }

// xorshift64* (S. Vigna, ACM Trans. Math. Softw. 42 (2016) 30).
double number_source::next() {
  state_ ^= state_ >> 12;
  state_ ^= state_ << 25;
  state_ ^= state_ >> 27;
  return static_cast<double>((state_ * 0x2545F4914F6CDD1Du) >> 11) * 0x1p-52 - 1;
}

}  // namespace qel::cli::selftest
