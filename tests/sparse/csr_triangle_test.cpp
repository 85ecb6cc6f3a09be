// SPDX-License-Identifier: BSD-3-Clause
// Kernels for real triangles: rows of every length, cut by the diagonal in every place, at the ends of their
// pages, with neighbours that must not come in.
#include <cmath>
#include <limits>

#include "service/serv.h"
#include "sparse/kernels/csr_kernels.h"
#include "tests/sparse/csr_parts.h"
#include "tests/sparse/support.h"
#include "tests/support/guarded.h"

namespace qel::test {
namespace {

const csr_kernels<double>& kernels_of_level() {
  const int level = serv_cpu_level();
  return level >= 5 ? l5_avx2::csr_d : level == 4 ? l4_avx::csr_d : l0_generic::csr_d;
}

struct row {
  int count, before;  ///< entries, and those with columns up to the row's
  bool is_sorted;
};

/// Rows of which all cuts are tried, and ones out of order among them.
std::vector<row> rows_to_try() {
  std::vector<row> rows;
  for (const int count :
       {0,  1,  2,  3,  4,  5,  6,  7,  8,  9,  10, 11, 12, 13, 14, 15,  16,  17,  18,  20,  23,  24,  25, 31,
        32, 33, 40, 57, 63, 64, 65, 66, 71, 72, 73, 95, 96, 97, 98, 103, 104, 127, 128, 129, 135, 136, 160}) {
    const int step = count > 40 ? 3 : 1;
    for (int before = 0; before <= count;
         before += before + step > count && before < count ? count - before : step)
      rows.push_back({count, before, true});
    for (int before = 1; before < count; before += 5) rows.push_back({count, before, false});
  }
  return rows;
}

void check_triangles(csr_part part, int base, int asks, bool overwrites) {
  constexpr int kReach = 200;
  constexpr double kAlpha = 3;
  const std::vector<row> rows = rows_to_try();
  const int n = static_cast<int>(rows.size()), columns_in_all = n + 2 * kReach;
  std::mt19937 random(7);
  const auto below = [&](int limit) { return static_cast<int>(random() % static_cast<unsigned>(limit)); };
  std::vector<double> x(columns_in_all);
  for (double& element : x) element = 1 + below(4);
  for (int j = 50; j < columns_in_all; j += 97) x[j] = std::numeric_limits<double>::infinity();
  // The first rows of the matrix are empty, so that what comes before the diagonal has room.
  std::vector<int> begin(kReach, base), end(kReach, base), columns;
  std::vector<double> values, want(kReach + n), y(kReach + n);
  for (double& element : y) element = below(5);
  const auto finish = [&](int i, double sum) {
    if (is_unit(part)) sum += x[i];
    want[i] = overwrites ? kAlpha * sum : kAlpha * sum + y[i];
  };
  for (int i = 0; i < kReach; ++i) finish(i, 0);
  for (int r = 0; r < n; ++r) {
    const int i = kReach + r;
    std::vector<int> row(rows[r].count);
    for (int k = 0; k < rows[r].count; ++k)
      row[k] = i + (k - rows[r].before + 1) + (k < rows[r].before ? 0 : below(2));
    for (int k = 1; k < rows[r].count; ++k) row[k] = std::max(row[k], row[k - 1] + 1);
    if (!rows[r].is_sorted)
      std::swap(row[below(rows[r].before)], row[rows[r].before + below(rows[r].count - rows[r].before)]);
    begin.push_back(static_cast<int>(columns.size()) + base);
    double sum = 0;
    for (const int j : row) {
      const bool taken = takes_part(part, i, j);
      columns.push_back(j + base);
      values.push_back(taken ? 1.0 + below(4) : std::nan(""));
      if (taken) sum += values.back() * x[j];
    }
    end.push_back(static_cast<int>(columns.size()) + base);
    finish(i, sum);
  }
  guarded<int> begin_at(begin.size(), 4), end_at(end.size(), 4), columns_at(columns.size(), 4);
  guarded<double> values_at(values.size(), 8), x_at(x.size(), 8), y_at(y.size(), 8);
  begin_at.assign(begin);
  end_at.assign(end);
  columns_at.assign(columns);
  values_at.assign(values);
  x_at.assign(x);
  y_at.assign(y);
  const csr_slice slice = {0,    kReach + n,     columns_at.data(), begin_at.data(), end_at.data(),
                           base, columns_in_all, overwrites,        asks > 0,        asks > 1};
  kernels_of_level().gather[part][0](&slice, values_at.data(), &kAlpha, x_at.data(), y_at.data());
  for (int i = kReach; i < kReach + n; ++i)
    ASSERT_EQ(y_at.data()[i], want[i])
        << "part " << part << " base " << base << " asks " << asks << " overwrites " << overwrites
        << " count " << rows[i - kReach].count << " before " << rows[i - kReach].before << " sorted "
        << rows[i - kReach].is_sorted;
}

TEST(CsrTriangle, EveryCut) {
  for (const csr_part part : {kLower, kLowerUnit, kUpper, kUpperUnit})
    for (const int base : {0, 1})
      for (const int asks : {0, 1, 2})
        for (const bool overwrites : {false, true}) check_triangles(part, base, asks, overwrites);
}

/// What a row gives does not depend on the rows around it, nor on where a slice ends.
TEST(CsrTriangle, SlicesChangeNoBit) {
  constexpr double kAlpha = 0.7;
  const int n = 400;
  std::mt19937 random(8);
  const auto fraction = [&] { return std::ldexp(static_cast<double>(random()), -32) - 0.4; };
  std::vector<int> begin{0}, columns;
  std::vector<double> values, x(n), whole(n, 1), parts(n, 1);
  for (double& element : x) element = fraction();
  for (int i = 0; i < n; ++i) {
    const int count = i % 7 == 0 ? 5 : i % 31 == 0 ? 80 : 8 + static_cast<int>(random() % 30);
    std::vector<int> row;
    for (int k = 0; k < count; ++k) row.push_back(static_cast<int>(random() % n));
    if (i % 11 != 0) std::sort(row.begin(), row.end());
    for (const int j : row) {
      columns.push_back(j);
      values.push_back(fraction());
    }
    begin.push_back(static_cast<int>(columns.size()));
  }
  for (const csr_part part : {kLower, kUpperUnit}) {
    csr_slice slice = {0, n, columns.data(), begin.data(), begin.data() + 1, 0, n, true, false};
    const auto gather = kernels_of_level().gather[part][0];
    gather(&slice, values.data(), &kAlpha, x.data(), whole.data());
    for (core_int first = 0, size = 1; first < n; first = slice.last, size = 1 + (size + 3) % 19) {
      slice.first = first;
      slice.last = std::min<core_int>(n, first + size);
      gather(&slice, values.data(), &kAlpha, x.data(), parts.data());
    }
    EXPECT_EQ(parts, whole) << part;
  }
}

}  // namespace
}  // namespace qel::test
