// SPDX-License-Identifier: BSD-3-Clause
// A row per routine without its type letter: the formula over its numbers in the order of the call. Sources:
// L. S. Blackford, J. Dongarra, LAPACK Working Note 41, appendix with the operation counts, additions and
// multiplications summed; for the BLAS its leading terms, without scaling by alpha and beta. LQ counts as the
// QR of the transposed matrix.
#include "service/flops.h"

#include <algorithm>
#include <cstring>
#include <string_view>

#include "service/verbose.h"

namespace qel {
namespace {

/// Letters and numbers of a call, counted apart from 0; what the call doesn't have reads as ' ' and 0.
class operands {
 public:
  explicit operands(const traced_call& call) : call_(call) {}

  double operator[](int wanted) const {
    for (int i = 0; i < call_.argument_count; ++i) {
      const traced_argument& argument = call_.argument[i];
      if (argument.letter == '\0' && wanted-- == 0) return static_cast<double>(argument.number);
    }
    return 0;
  }
  bool first_letter_is(char upper) const {
    const char letter = call_.argument_count > 0 ? call_.argument[0].letter : ' ';
    return letter == upper || letter == upper + ('a' - 'A');
  }
  bool last_is_query() const {
    if (call_.argument_count == 0) return false;
    const traced_argument& last = call_.argument[call_.argument_count - 1];
    return last.letter == '\0' && last.number == -1;
  }

 private:
  const traced_call& call_;
};

using formula = double (*)(const operands&);

double once(const operands& x) { return x[0]; }
double twice(const operands& x) { return 2 * x[0]; }
double four_times(const operands& x) { return 4 * x[0]; }
double square(const operands& x) { return x[0] * x[0]; }
double twice_square(const operands& x) { return 2 * x[0] * x[0]; }
double gemv(const operands& x) { return 2 * x[0] * x[1]; }
double gemm(const operands& x) { return 2 * x[0] * x[1] * x[2]; }

/// Cells of a rows x cols matrix more than width diagonals below its main one.
double below_band(double rows, double cols, double width) {
  const double longest = std::max(rows - 1 - width, 0.0);  // in the first column; each next one has one less
  const double columns = std::min(cols, longest);
  return columns * longest - columns * (columns - 1) / 2;
}
double gbmv(const operands& x) {
  const double m = x[0], n = x[1], kl = x[2], ku = x[3];
  return 2 * (m * n - below_band(m, n, kl) - below_band(n, m, ku));
}
double sbmv(const operands& x) {
  const double n = x[0], k = x[1];
  return 2 * (n * n - 2 * below_band(n, n, k));
}
double trsm(const operands& x) {
  const double m = x[0], n = x[1];
  return x.first_letter_is('L') ? m * m * n : m * n * n;
}

double lu(double m, double n) {
  const double k = std::min(m, n), l = std::max(m, n);
  return k * k * l - k * k * k / 3 - k * k / 2 + 5 * k / 6;
}
double lu_solve(double n, double nrhs) { return nrhs * (2 * n * n - n); }
double getrf(const operands& x) { return lu(x[0], x[1]); }
double getrs(const operands& x) { return lu_solve(x[0], x[1]); }
double gesv(const operands& x) { return lu(x[0], x[0]) + lu_solve(x[0], x[1]); }
double getri(const operands& x) {
  const double n = x[0];
  return 4 * n * n * n / 3 - n * n + 5 * n / 3;
}
double posv(const operands& x) {
  const double n = x[0], nrhs = x[1];
  return n * n * n / 3 + n * n / 2 + n / 6 + 2 * n * n * nrhs;
}

double qr(double m, double n) {
  if (m >= n) return 2 * m * n * n - 2 * n * n * n / 3 + m * n + n * n + 14 * n / 3;
  return 2 * m * m * n - 2 * m * m * m / 3 + 3 * m * n - m * m + 14 * m / 3;
}
double apply_q(bool left, double m, double n, double k) {
  if (left) return 4 * m * n * k - 2 * n * k * k + 3 * n * k;
  return 4 * m * n * k - 2 * m * k * k + 2 * m * k + n * k - k * k / 2 + k / 2;
}
double geqrf(const operands& x) { return qr(x[0], x[1]); }
double ormqr(const operands& x) { return apply_q(x.first_letter_is('L'), x[0], x[1], x[2]); }
double orgqr(const operands& x) {
  const double m = x[0], n = x[1], k = x[2];
  return 4 * m * n * k - 2 * (m + n) * k * k + 4 * k * k * k / 3 + 3 * n * k - m * k - k * k - 4 * k / 3;
}
double gels(const operands& x) {
  const double k = std::min(x[0], x[1]), l = std::max(x[0], x[1]), nrhs = x[2];
  if (nrhs <= 0) return 0;
  return qr(l, k) + apply_q(true, l, nrhs, k) + k * k * nrhs;
}

struct flop_row {
  std::string_view name;
  formula count;
  bool has_query;  ///< its last number is the size of the work space
};

/// Real arithmetic on complex vectors: whole names.
constexpr flop_row kMixedRows[] = {
    {"csscal", twice, false}, {"zdscal", twice, false},      {"scasum", twice, false},
    {"dzasum", twice, false}, {"dznrm2", four_times, false},
};
/// Names without their type letter.
constexpr flop_row kRows[] = {
    {"axpy", twice, false},  {"scal", once, false},         {"dot", twice, false},
    {"dotu", twice, false},  {"dotc", twice, false},        {"asum", once, false},
    {"nrm2", twice, false},  {"axpyi", twice, false},       {"doti", twice, false},
    {"dotui", twice, false}, {"gemv", gemv, false},         {"gbmv", gbmv, false},
    {"sbmv", sbmv, false},   {"hbmv", sbmv, false},         {"spmv", twice_square, false},
    {"trmv", square, false}, {"hpmv", twice_square, false}, {"tpmv", square, false},
    {"gemm", gemm, false},   {"trsm", trsm, false},         {"getrf", getrf, false},
    {"getrs", getrs, false}, {"getri", getri, true},        {"gesv", gesv, false},
    {"posv", posv, false},   {"geqrf", geqrf, true},        {"ormqr", ormqr, true},
    {"unmqr", ormqr, true},  {"orgqr", orgqr, true},        {"ungqr", orgqr, true},
    {"gels", gels, true},
};

template <size_t kCount>
const flop_row* find(const flop_row (&rows)[kCount], std::string_view name) {
  const flop_row* row =
      std::find_if(rows, rows + kCount, [name](const flop_row& r) { return r.name == name; });
  return row != rows + kCount ? row : nullptr;
}

}  // namespace

double flops_of(const traced_call& call) {
  const std::string_view name = call.name;
  const operands x(call);
  if (const flop_row* mixed = find(kMixedRows, name)) return std::max(mixed->count(x), 0.0);
  if (name.empty() || std::strchr("sdcz", name.front()) == nullptr) return 0;
  const flop_row* row = find(kRows, name.substr(1));
  if (row == nullptr || (row->has_query && x.last_is_query())) return 0;
  const double weight = name.front() == 'c' || name.front() == 'z' ? 4 : 1;
  return weight * std::max(row->count(x), 0.0);
}

}  // namespace qel
