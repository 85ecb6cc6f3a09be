// SPDX-License-Identifier: BSD-3-Clause
// Runs of rows with one pattern: what is taken for one, and products of matrices whose runs begin, break off
// and end at every place, against single rows in their order of operations.
#include <cmath>
#include <cstring>

#include "service/serv.h"
#include "sparse/kernels/csr_kernels.h"
#include "sparse/kernels/row_runs.h"
#include "tests/sparse/csr_parts.h"
#include "tests/sparse/support.h"
#include "tests/support/guarded.h"

namespace qel::test {
namespace {

const csr_kernels<double>& kernels_of_level() {
  const int level = serv_cpu_level();
  return level >= 5 ? l5_avx2::csr_d : level == 4 ? l4_avx::csr_d : l0_generic::csr_d;
}

using offsets = std::vector<int>;
const offsets kPatterns[] = {{0},
                             {-1},
                             {7},
                             {-1, 0},
                             {-1, 1},
                             {-1, 0, 1},
                             {0, 1, 2},
                             {-30, 0, 30},
                             {-30, -1, 0, 1},
                             {-20, -1, 0},
                             {-40, -20, -1, 0},
                             {0, 1, 16},
                             {0, 1, 20, 40},
                             {-20, -1, 0, 1, 20},
                             {-16, -1, 0, 1, 16},
                             {-15, -1, 0, 1, 15},
                             {-2, -1, 0, 1, 2},
                             {-41, -20, -1, 1, 20, 41},
                             {-40, -20, -1, 0, 1, 20, 40},
                             {-50, -40, -33, -17, 17, 33, 40, 50},
                             {-21, -20, -19, -1, 0, 1, 19, 20, 21},
                             {-20, -18, 0, 18, 20},
                             {-60, -50, -40, -30, -20, -1, 0, 1, 20, 30, 40, 50, 60},
                             {3, -3},
                             {0, 0, 1}};

struct matrix {
  int n, base;
  std::vector<int> begin, end, columns;
  std::vector<double> values;
};
enum class data { kIntegers, kReals };
/// Odd rows, a run, an odd row, a run, odd rows. Entries outside of the matrix are left out, so that runs end
/// in rows with fewer of them, too.
matrix with_runs(const offsets& pattern, int before, int run, int base, data kind) {
  const int n = before + run + 1 + 40 + 3;
  std::mt19937 random(31);
  matrix m{n, base, {}, {}, {}, {}};
  for (int i = 0; i < n; ++i) {
    const bool is_odd = i < before || i == before + run || i >= n - 3;
    m.begin.push_back(static_cast<int>(m.columns.size()) + base);
    for (const int offset : is_odd ? offsets{i % 2, 2} : pattern) {
      if (i + offset < 0 || i + offset >= n) continue;
      m.columns.push_back(i + offset + base);
      m.values.push_back(kind == data::kIntegers ? exact_value<double>(random)
                                                 : std::ldexp(static_cast<double>(random()), -32) - 0.3);
    }
    m.end.push_back(static_cast<int>(m.columns.size()) + base);
  }
  return m;
}
std::vector<double> numbers(int n, unsigned seed, data kind) {
  if (kind == data::kIntegers) return make_vector<double>(n, seed);
  std::mt19937 random(seed);
  std::vector<double> x;
  for (int i = 0; i < n; ++i) x.push_back(std::ldexp(static_cast<double>(random()), -32) - 0.6);
  return x;
}

constexpr double kAlpha = 3;
using result = std::vector<double>;

void gather_rows(const matrix& m, csr_part part, bool overwrites, const result& x, result& y) {
  for (int i = 0; i < m.n; ++i) {
    double sum = 0;
    for (int p = m.begin[i] - m.base; p < m.end[i] - m.base; ++p) {
      const int j = m.columns[p] - m.base;
      if (takes_part(part, i, j)) sum = std::fma(m.values[p], x[j], sum);
    }
    if (is_unit(part)) sum += x[i];
    y[i] = overwrites ? kAlpha * sum : std::fma(kAlpha, sum, y[i]);
  }
}
void scatter_rows(const matrix& m, csr_part part, const result& x, result& y) {
  for (int i = 0; i < m.n; ++i) {
    const double factor = kAlpha * x[i];
    for (int p = m.begin[i] - m.base; p < m.end[i] - m.base; ++p) {
      const int j = m.columns[p] - m.base;
      if (takes_part(part, i, j)) y[j] = std::fma(m.values[p], factor, y[j]);
    }
    if (is_unit(part)) y[i] += factor;
  }
}
/// Rows first .. last - 1; what they add to others goes to far.
void mirrored_rows(const matrix& m, csr_mirror mirror, csr_part part, int first, int last, bool overwrites,
                   const result& x, result& y, result& far) {
  const bool is_lower = part == kLower || part == kLowerUnit;
  for (int step = 0; step < last - first; ++step) {
    const int i = is_lower ? first + step : last - 1 - step;
    const double factor = kAlpha * x[i];
    double sum = 0;
    for (int p = m.begin[i] - m.base; p < m.end[i] - m.base; ++p) {
      const int j = m.columns[p] - m.base;
      const double v = m.values[p];
      if (is_lower ? j < i : j > i) {
        sum = std::fma(v, x[j], sum);
        double& target = (is_lower ? j < first : j >= last) ? far[j] : y[j];
        target = std::fma(mirror == kOpposite ? -v : v, factor, target);
      } else if (j == i && mirror != kOpposite && !is_unit(part)) {
        sum = std::fma(v, x[j], sum);
      }
    }
    if (mirror != kOpposite && is_unit(part)) sum += x[i];
    y[i] = overwrites ? kAlpha * sum : std::fma(kAlpha, sum, y[i]);
  }
}

/// A matrix and vectors at the ends of their pages.
struct guarded_product {
  guarded<int> begin, end, columns;
  guarded<double> values, x, y;
  csr_slice rows;
  guarded_product(const matrix& m, const result& x_values, bool one_array, bool streams)
      : begin(m.begin.size() + 1, 4 * (m.begin.size() % 4)),
        end(m.end.size(), 4 * (m.end.size() % 4)),
        columns(m.columns.size(), 4),
        values(m.values.size(), 8),
        x(x_values.size(), 8),
        y(x_values.size(), 8) {
    std::vector<int> starts = m.begin;
    starts.push_back(m.end.empty() ? m.base : m.end.back());
    begin.assign(starts);
    end.assign(m.end);
    columns.assign(m.columns);
    values.assign(m.values);
    x.assign(x_values);
    rows = {0,      m.n, columns.data(), begin.data(), one_array ? begin.data() + 1 : end.data(),
            m.base, m.n, false,          streams};
  }
};

void expect_same(guarded_product& product, const result& want, const char* what, const std::string& about) {
  for (std::size_t i = 0; i < want.size(); ++i)
    ASSERT_EQ(std::memcmp(&product.y.data()[i], &want[i], sizeof(double)), 0)
        << what << about << " row " << i << ": " << product.y.data()[i] << " for " << want[i];
}

/// One row leaves out its first entry, another one its last: the other arrays are those of a run.
matrix with_gaps(matrix m, int row) {
  for (const int i : {row + 7, row + 13}) {
    if (i + 1 >= m.n || m.end[i] == m.begin[i]) continue;
    (i == row + 7 ? ++m.begin[i] : --m.end[i]);
  }
  return m;
}

struct case_of_runs {
  const offsets& pattern;
  int before, run, base;
  bool one_array, streams;
  data kind;
};
std::string name(const case_of_runs& c, int part, bool overwrites) {
  std::string text = " of offsets";
  for (const int offset : c.pattern) text += ' ' + std::to_string(offset);
  return text + " before " + std::to_string(c.before) + " run " + std::to_string(c.run) + " base " +
         std::to_string(c.base) + " streams " + std::to_string(c.streams) + " part " + std::to_string(part) +
         " overwrites " + std::to_string(overwrites);
}

void check_plain(const case_of_runs& c) {
  const csr_kernels<double>& table = kernels_of_level();
  const matrix whole = with_runs(c.pattern, c.before, c.run, c.base, c.kind);
  const matrix m = c.one_array ? whole : with_gaps(whole, c.before);
  const result x = numbers(m.n, 5, c.kind), start = numbers(m.n, 6, c.kind);
  guarded_product product(m, x, c.one_array, c.streams);
  // In slices, as threads have them, whose ends cut runs.
  const auto run_in_slices = [&](csr_kernels<double>::product* take) {
    const int slices = 1 + c.run % 3;
    product.y.assign(start);
    for (int s = 0; s < slices; ++s) {
      product.rows.first = m.n * s / slices;
      product.rows.last = m.n * (s + 1) / slices;
      take(&product.rows, product.values.data(), &kAlpha, product.x.data(), product.y.data());
    }
  };
  for (const csr_part part : {kWhole, kLower, kLowerUnit, kUpper, kUpperUnit}) {
    for (const bool overwrites : {false, true}) {
      product.rows.overwrites = overwrites;
      result want = start;
      gather_rows(m, part, overwrites, x, want);
      run_in_slices(table.gather[part][0]);
      expect_same(product, want, "gathered", name(c, part, overwrites));
    }
    result want = start;
    scatter_rows(m, part, x, want);
    run_in_slices(table.scatter[part][0]);
    expect_same(product, want, "scattered", name(c, part, false));
  }
}

void check_mirrored(const case_of_runs& c) {
  constexpr csr_part kTriangles[] = {kLower, kLowerUnit, kUpper, kUpperUnit};
  const csr_kernels<double>& table = kernels_of_level();
  const matrix whole = with_runs(c.pattern, c.before, c.run, c.base, c.kind);
  const matrix m = c.one_array ? whole : with_gaps(whole, c.before);
  const result x = numbers(m.n, 7, c.kind), start = numbers(m.n, 8, c.kind);
  guarded_product product(m, x, c.one_array, c.streams);
  for (int triangle = 0; triangle < 4; ++triangle) {
    const csr_part part = kTriangles[triangle];
    for (const csr_mirror mirror : {kSame, kOpposite}) {
      for (const bool overwrites : {false, true}) {
        for (const int slices : {1, 2, 3}) {
          result want = start, far(m.n), far_got(m.n + (1 << kFarBlockBits), NAN);
          std::vector<unsigned char> touched(m.n / (1 << kFarBlockBits) + 1);
          const far_rows<double> far_of_slices{far_got.data(), touched.data()};
          product.rows.overwrites = overwrites;
          product.y.assign(start);
          for (int s = 0; s < slices; ++s) {
            product.rows.first = m.n * s / slices;
            product.rows.last = m.n * (s + 1) / slices;
            mirrored_rows(m, mirror, part, static_cast<int>(product.rows.first),
                          static_cast<int>(product.rows.last), overwrites, x, want, far);
            table.symmetric[mirror][triangle][0](&product.rows, product.values.data(), &kAlpha,
                                                 product.x.data(), product.y.data(),
                                                 slices == 1 ? nullptr : &far_of_slices);
          }
          expect_same(product, want, "mirrored", name(c, part, overwrites));
          for (int i = 0; i < m.n; ++i)
            ASSERT_EQ(touched[i >> kFarBlockBits] != 0 ? far_got[i] : 0, far[i])
                << "far " << name(c, part, overwrites) << " row " << i;
        }
      }
    }
  }
}

template <class Check>
void for_all_runs(Check check) {
  for (const offsets& pattern : kPatterns) {
    // Native levels fuse multiply and add; rows in four sums are exact only.
    const bool in_order = serv_cpu_level() >= 5 && pattern.size() <= 9;
    for (const int before : {0, 1, 2, 5, 62}) {
      for (const int run :
           {0, 1, 3, 7, 8, 11, 12, 13, 14, 15, 16, 19, 20, 21, 22, 23, 24, 25, 26, 27, 33, 66, 131, 150}) {
        if (before == 62 && run > 40) continue;
        for (const bool streams : {false, true}) {
          const bool one_array = run % 2 == 0;
          check({pattern, before, run, before % 2, one_array, streams,
                 in_order ? data::kReals : data::kIntegers});
          if (testing::Test::HasFatalFailure()) return;
        }
      }
    }
  }
}
TEST(CsrRuns, PlainProductsAreThoseOfSingleRows) { for_all_runs(check_plain); }
TEST(CsrRuns, MirroredProductsAreThoseOfSingleRows) { for_all_runs(check_mirrored); }

TEST(CsrRuns, LongMirroredRunsMeetSlicesAndBlocksOfFarRows) {
  const data kind = serv_cpu_level() >= 5 ? data::kReals : data::kIntegers;
  const offsets patterns[] = {{-1, 0},     {-700, -1, 0},    {-1400, -20, -1, 0}, {0, 1},
                              {0, 1, 513}, {0, 1, 16, 1400}, {-20, -1, 0, 1}};
  for (const offsets& pattern : patterns) {
    for (const int before : {0, 3}) {
      for (const int run : {1597, 1598, 1599, 1600}) {
        check_mirrored({pattern, before, run, 1, true, run % 2 == 0, kind});
        if (testing::Test::HasFatalFailure()) return;
      }
    }
  }
}

TEST(CsrRuns, NothingOfOtherRowsComesIn) {
  // A row of infinities inside of the run's reach: it meets its own columns only.
  const offsets pattern = {-20, -1, 0, 1, 20};
  matrix m = with_runs(pattern, 5, 33, 0, data::kIntegers);
  const int odd = 5 + 33;
  for (int p = m.begin[odd]; p < m.end[odd]; ++p) m.values[p] = INFINITY;
  const result x(m.n, 1), start(m.n);
  guarded_product product(m, x, true, false);
  product.rows.overwrites = true;
  product.y.assign(start);
  kernels_of_level().gather[kWhole][0](&product.rows, product.values.data(), &kAlpha, product.x.data(),
                                       product.y.data());
  for (int i = 0; i < m.n; ++i) EXPECT_EQ(std::isfinite(product.y.data()[i]), i != odd) << i;
  product.y.assign(start);
  kernels_of_level().scatter[kWhole][0](&product.rows, product.values.data(), &kAlpha, product.x.data(),
                                        product.y.data());
  for (int i = 0; i < m.n; ++i) {
    const bool met = std::find(m.columns.begin() + m.begin[odd], m.columns.begin() + m.end[odd], i) !=
                     m.columns.begin() + m.end[odd];
    EXPECT_EQ(std::isfinite(product.y.data()[i]), !met) << i;
  }
}

TEST(RunShape, Table) {
  const struct {
    const char* name;
    run_use use;
    csr_part part;
    offsets pattern;
    bool served;
    int first, last, targets, single_targets, diagonal;
  } rows[] = {
      {"any order", run_use::kGather, kWhole, {3, -3}, true, 0, 2, 0, 0, -1},
      {"31 entries", run_use::kGather, kWhole, offsets(31, 0), true, 0, 31, 0, 0, -1},
      {"32 entries", run_use::kGather, kWhole, offsets(32, 0), false, 0, 0, 0, 0, -1},
      {"no entries", run_use::kGather, kWhole, {}, false, 0, 0, 0, 0, -1},
      {"lower", run_use::kGather, kLower, {-5, 0, 5}, true, 0, 2, 0, 0, -1},
      {"lower, unit", run_use::kGather, kLowerUnit, {-5, 0, 5}, true, 0, 1, 0, 0, -1},
      {"upper", run_use::kGather, kUpper, {-5, 0, 5}, true, 1, 3, 0, 0, -1},
      {"upper, unit", run_use::kGather, kUpperUnit, {-5, 0, 5}, true, 2, 3, 0, 0, -1},
      {"none inside", run_use::kGather, kUpper, {-5, -4}, false, 2, 2, 0, 0, -1},
      {"triangle, any order", run_use::kGather, kUpper, {5, 0}, false, 0, 2, 0, 0, -1},
      {"diagonal", run_use::kGather, kDiagonal, {0}, false, 0, 0, 0, 0, -1},
      {"scattered", run_use::kScatter, kWhole, {-16, -1, 0, 1, 16}, true, 0, 5, 3, 2, -1},
      {"too near", run_use::kScatter, kWhole, {-15, -1, 0, 1, 16}, false, 0, 5, 1, 1, -1},
      {"twice", run_use::kScatter, kWhole, {0, 0}, false, 0, 2, 0, 0, -1},
      {"unit, scattered", run_use::kScatter, kLowerUnit, {-16, 0}, false, 0, 1, 0, 0, -1},
      {"hole", run_use::kScatter, kWhole, {-1, 1}, true, 0, 2, 1, 0, -1},
      {"mirrored", run_use::kMirror, kLower, {-16, -1, 0, 1}, true, 0, 3, 1, 1, 2},
      {"mirrored, upper", run_use::kMirror, kUpper, {-1, 0, 1, 16}, true, 1, 4, 1, 1, 0},
      {"own row is near", run_use::kMirror, kLowerUnit, {-15}, false, 0, 1, 1, 1, -1},
      {"own row is far", run_use::kMirror, kLowerUnit, {-16}, true, 0, 1, 1, 1, -1},
      {"band", run_use::kMirror, kLower, {-2, -1, 0}, false, 0, 3, 1, 0, -1},
  };
  for (const auto& row : rows) {
    const run_shape shape =
        shape_of_run(row.use, row.part, row.pattern.data(), static_cast<int>(row.pattern.size()));
    EXPECT_EQ(shape.served, row.served) << row.name;
    EXPECT_EQ(shape.first, row.first) << row.name;
    EXPECT_EQ(shape.last, row.last) << row.name;
    EXPECT_EQ(shape.targets, row.targets) << row.name;
    EXPECT_EQ(shape.single_targets, row.single_targets) << row.name;
    EXPECT_EQ(shape.diagonal, row.diagonal) << row.name;
  }
}

TEST(RunShape, GridsComeInBlocks) {
  const struct {
    const char* name;
    run_use use;
    csr_part part;
    offsets pattern;
    bool in_blocks;
  } rows[] = {
      {"chain", run_use::kMirror, kLower, {-1, 0}, true},
      {"flat grid", run_use::kMirror, kLower, {-16, -1, 0}, true},
      {"grid", run_use::kMirror, kLower, {-40, -20, -1, 0}, true},
      {"upper grid", run_use::kMirror, kUpper, {0, 1, 20, 40}, true},
      {"four dimensions", run_use::kMirror, kLower, {-60, -40, -20, -1, 0}, false},
      {"more is stored", run_use::kMirror, kLower, {-16, -1, 0, 1}, false},
      {"no diagonal", run_use::kMirror, kLower, {-16, -1}, false},
      {"unit", run_use::kMirror, kLowerUnit, {-16, -1, 0}, false},
      {"nothing beside", run_use::kMirror, kLower, {-40, -20, 0}, false},
      {"corners", run_use::kMirror, kLower, {-21, -20, -1, 0}, false},
      {"near", run_use::kMirror, kLower, {-15, -1, 0}, false},
      {"gathered, any order", run_use::kGather, kWhole, {7, -1, 7}, true},
      {"one entry", run_use::kGather, kWhole, {0}, false},
      {"9 entries", run_use::kGather, kWhole, {-21, -20, -19, -1, 0, 1, 19, 20, 21}, true},
      {"10 entries", run_use::kGather, kWhole, {-21, -20, -19, -1, 0, 1, 19, 20, 21, 22}, false},
      {"gathered triangle", run_use::kGather, kLower, {-20, -1, 0}, true},
      {"lower half", run_use::kGather, kLower, {-20, -1, 0, 1, 20}, true},
      {"upper half, unit", run_use::kGather, kUpperUnit, {-20, -1, 0, 1, 20}, true},
      {"less than half", run_use::kGather, kUpper, {-20, -10, -5, -1, 0}, false},
      {"even", run_use::kGather, kLower, {-20, -1, 0, 1}, false},
      {"scattered triangle", run_use::kScatter, kWhole, {-16, -1, 0}, false},
      {"scattered chain", run_use::kScatter, kWhole, {-1, 0, 1}, true},
      {"scattered grid", run_use::kScatter, kWhole, {-40, -20, -1, 0, 1, 20, 40}, true},
      {"scattered, four dimensions", run_use::kScatter, kWhole, {-80, -40, -20, -1, 0, 1, 20, 40, 80}, false},
      {"part of a grid", run_use::kScatter, kLower, {-20, -1, 0, 1, 20}, false},
      {"scattered, no neighbours", run_use::kScatter, kWhole, {-20, 0, 20}, false},
  };
  for (const auto& row : rows) {
    const run_shape shape =
        shape_of_run(row.use, row.part, row.pattern.data(), static_cast<int>(row.pattern.size()));
    EXPECT_EQ(shape.in_blocks, row.in_blocks) << row.name;
  }
}

TEST(RunShape, NeighboursShareATarget) {
  const int pattern[] = {-20, -1, 0, 1, 30, 31};
  const run_shape shape = shape_of_run(run_use::kScatter, kWhole, pattern, 6);
  ASSERT_EQ(shape.targets, 3);
  const run_target want[] = {{-20, -1, 0, -1}, {0, 3, 2, 1}, {31, -1, 5, 4}};
  for (int t = 0; t < 3; ++t) {
    EXPECT_EQ(shape.at[t].offset, want[t].offset);
    EXPECT_EQ(shape.at[t].before, want[t].before);
    EXPECT_EQ(shape.at[t].same, want[t].same);
    EXPECT_EQ(shape.at[t].after, want[t].after);
  }
}

TEST(RunShape, GridsHaveTheirThreeInTheMiddle) {
  const struct {
    offsets pattern;
    bool is_grid;
  } rows[] = {{{-1, 0, 1}, true},
              {{-20, -1, 0, 1, 20}, true},
              {{-40, -20, -1, 0, 1, 20, 40}, true},
              {{-20, 0, 20}, false},
              {{-1, 0, 1, 20}, false},
              {{-20, -1, 0, 1}, false},
              {{-1, 0, 1, 20, 40}, false},
              {{-21, -20, -19, -1, 0, 1}, false},
              {{-60, -40, -20, 20, 40, 60, 80}, false},
              {{-20, -1, 1, 20, 40}, false}};
  for (const auto& row : rows) {
    const run_shape shape =
        shape_of_run(run_use::kScatter, kWhole, row.pattern.data(), static_cast<int>(row.pattern.size()));
    EXPECT_EQ(is_grid(shape), row.is_grid) << row.pattern.front() << ' ' << row.pattern.size();
  }
}

TEST(RunLimits, Table) {
  const struct {
    const char* name;
    run_use use;
    csr_part part;
    bool streams;
    core_int least, largest;
  } rows[] = {
      {"gathered", run_use::kGather, kWhole, false, 12, 128},
      {"gathered triangle", run_use::kGather, kUpper, false, 12, 128},
      {"gathered from memory", run_use::kGather, kLower, true, 8, 0},
      {"scattered", run_use::kScatter, kWhole, false, 20, 128},
      {"scattered triangle", run_use::kScatter, kLower, false, 12, 128},
      {"scattered from memory", run_use::kScatter, kWhole, true, 0, 0},
      {"mirrored", run_use::kMirror, kLower, false, 24, 128},
      {"mirrored from memory", run_use::kMirror, kLower, true, 12, 32},
  };
  for (const auto& row : rows) {
    const run_limits limits = limits_of_runs(row.use, row.part, row.streams);
    EXPECT_EQ(limits.least, row.least) << row.name;
    EXPECT_EQ(limits.largest, row.largest) << row.name;
  }
}

TEST(RunShape, PartsOfGatheredRows) {
  const struct {
    int length, first, last, part;
  } rows[] = {{7, 0, 7, 0},  {6, 0, 6, 0},  {7, 0, 4, 1},  {7, 0, 3, 2},  {7, 3, 7, 3},
              {7, 4, 7, 4},  {3, 0, 1, 2},  {3, 2, 3, 4},  {9, 4, 9, 3},  {7, 0, 5, -1},
              {7, 2, 7, -1}, {7, 1, 6, -1}, {6, 0, 3, -1}, {1, 0, 1, -1}, {10, 0, 10, -1}};
  for (const auto& row : rows) {
    run_shape shape;
    shape.first = row.first;
    shape.last = row.last;
    EXPECT_EQ(gathered_part(shape, row.length), row.part)
        << row.length << ' ' << row.first << ' ' << row.last;
  }
}

TEST(RunLimits, GapsOfGridsAreExpectedAgain) {
  for (const auto& [last, next] : {std::pair<core_int, core_int>{0, 0}, {2, 2}, {32, 32}, {33, 0}, {7000, 0}})
    EXPECT_EQ(gap_to_next(last), next);
}

TEST(RunLimits, PausesGrow) {
  const core_int want[] = {1, 1, 2, 4, 8, 16, 32, 64, 128, 256, 512, 1024, 1024};
  for (int failures = 1; failures <= 13; ++failures) EXPECT_EQ(pause_after(failures), want[failures - 1]);
}

}  // namespace
}  // namespace qel::test
