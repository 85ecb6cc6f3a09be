// SPDX-License-Identifier: BSD-3-Clause
// Products of a CSR matrix and a vector against the dense matrix that the description means, in exact
// arithmetic: all values are small integers.
#include "service/largest_cache.h"
#include "service/serv.h"
#include "sparse/blas/csr_checks.h"
#include "sparse/blas/csr_vector_plan.h"
#include "tests/sparse/support.h"

namespace qel::test {
namespace {

using sparse::csr_scheme;

std::size_t largest_grant = ~std::size_t{0};
void* limited_malloc(std::size_t size) { return size > largest_grant ? nullptr : std::malloc(size); }

template <class T>
class CsrVector : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    setenv("QEL_DISABLE_FAST_MM", "1", 1);
    serv_platform_malloc = limited_malloc;
    serv_set_dynamic(0);
  }
  void TearDown() override {
    largest_grant = ~std::size_t{0};
    serv_set_num_threads(1);
  }
};
using csr_types = testing::Types<double, complex16>;
TYPED_TEST_SUITE(CsrVector, csr_types);

/// The matrix that matdescra makes of the stored entries.
template <class T>
dense described(const csr<T>& m, const std::string& d) {
  const dense all = dense_of(m);
  if (d[0] == 'G') return all;
  dense r(m.rows, m.columns);
  for (int i = 0; i < m.rows; ++i) {
    for (int j = 0; j < m.columns; ++j) {
      const bool inside = d[1] == 'L' ? j < i : j > i;
      if (i == j) {
        if (d[0] != 'A') r(i, j) = d[2] == 'U' ? 1 : all(i, j);
      } else if (d[0] == 'T' && inside) {
        r(i, j) = all(i, j);
      } else if (std::string("SHA").find(d[0]) != std::string::npos && inside) {
        r(i, j) = all(i, j);
        r(j, i) = d[0] == 'H' ? std::conj(all(i, j)) : d[0] == 'A' ? -all(i, j) : all(i, j);
      }
    }
  }
  return r;
}

constexpr const char* kDescriptions[] = {"GXXF", "SLNF", "SUNF", "SLUF", "SUUF", "HLNF", "HUNF", "HUUF",
                                         "HLUF", "TLNF", "TUNF", "TLUF", "TUUF", "ALNF", "AUNF", "DLNF",
                                         "DXUF", "SLNC", "GXXC", "TUUC", "hlnc", "tlnc", "AUXC", "DXNc"};

template <class T>
void check_product(const csr<T>& m, std::string description, char trans, T alpha, T beta) {
  const auto csrmv = pick<T>(0, qel_dcsrmv, 0, qel_zcsrmv);
  const bool zero_based = std::toupper(description[3]) == 'C';
  const csr<T> stored = zero_based ? m.shifted(-1) : m;
  const int x_length = trans == 'N' ? m.columns : m.rows, y_length = trans == 'N' ? m.rows : m.columns;
  const std::vector<T> x = make_vector<T>(x_length, 3);
  std::vector<T> y = make_vector<T>(y_length, 4);
  std::vector<reference> want;
  std::string upper = description;
  for (char& c : upper) c = static_cast<char>(std::toupper(c));
  // The diagonal of a Hermitian matrix is real.
  csr<T> meant = m;
  if (upper[0] == 'H') {
    for (int i = 0; i < m.rows; ++i)
      for (int p = m.ia[i] - 1; p < m.ia[i + 1] - 1; ++p)
        if (m.ja[p] - 1 == i) meant.a[p] = from_real<T>(real_part(meant.a[p]));
  }
  const csr<T> given = upper[0] == 'H' ? (zero_based ? meant.shifted(-1) : meant) : stored;
  const dense a = op(trans, described(meant, upper));
  for (int i = 0; i < y_length; ++i) {
    reference sum = 0;
    for (int j = 0; j < x_length; ++j) sum += a(i, j) * widen(x[j]);
    want.push_back(widen(alpha) * sum + (beta == T{} ? reference() : widen(beta) * widen(y[i])));
  }
  if (beta == T{}) std::fill(y.begin(), y.end(), make<T>(NAN, NAN));
  call(csrmv, trans, m.rows, m.columns, alpha, description.c_str(), given.a.data(), given.ja.data(),
       given.ia.data(), given.ia.data() + 1, x.data(), beta, y.data());
  for (int i = 0; i < y_length; ++i)
    ASSERT_EQ(widen(y[i]), want[i]) << description << ' ' << trans << " row " << i << " of " << y_length;
}

TYPED_TEST(CsrVector, MeansWhatTheDescriptionSays) {
  using T = TypeParam;
  for (int threads = 1; threads <= 8; ++threads) {
    serv_set_num_threads(threads);
    for (const pattern kind : kPatterns) {
      for (const auto& [m, k] : {std::pair{0, 0}, {1, 1}, {2, 2}, {23, 23}, {23, 9}, {9, 23}}) {
        const auto a = make_csr<T>(kind, m, k, 11);
        for (const char* description : kDescriptions) {
          if (m != k && std::string("SHAsha").find(description[0]) != std::string::npos) continue;
          for (const char trans : {'N', 'T', 'C'}) {
            check_product(a, description, trans, make<T>(2, 1), make<T>(0));
            check_product(a, description, trans, make<T>(-1), make<T>(3, 1));
          }
        }
      }
    }
  }
}

/// Stretches of rows of one kind: lower triangles in the main, or all of it turned by half a circle.
template <class T>
csr<T> stretches_of_rows(int n, bool turned) {
  struct kind_of_row {
    int most;       ///< entries, less one
    int long_from;  ///< every tenth row has as many and up to three more, unless 0
    bool is_whole, is_sorted, has_diagonal;
  };
  constexpr kind_of_row kKinds[] = {{12, 0, false, true, true},  {6, 30, false, true, true},
                                    {9, 0, false, true, false},  {20, 0, true, true, true},
                                    {14, 45, true, false, true}, {1, 0, false, true, false},
                                    {4, 70, false, true, true}};
  std::mt19937 random(21);
  const auto below = [&](int limit) { return static_cast<int>(random() % static_cast<unsigned>(limit)); };
  std::vector<std::vector<int>> rows(n);
  for (int i = 0; i < n; ++i) {
    std::vector<int>& row = rows[i];
    const kind_of_row& kind = kKinds[i / 85 % std::size(kKinds)];
    const bool is_long = kind.long_from > 0 && i % 10 == 0;
    for (int count = is_long ? kind.long_from + i / 10 % 4 : below(kind.most); count > 0 && i > 0; --count)
      row.push_back(below(kind.is_whole ? n : i));
    std::sort(row.begin(), row.end());
    if (kind.has_diagonal || i % 5 == 0) row.insert(std::upper_bound(row.begin(), row.end(), i), i);
    if (!kind.is_sorted) std::shuffle(row.begin(), row.end(), random);
  }
  csr<T> m{n, n, {1}, {}, {}};
  for (int i = 0; i < n; ++i) {
    std::vector<int> row = rows[turned ? n - 1 - i : i];
    if (turned) std::reverse(row.begin(), row.end());
    for (const int j : row) {
      m.ja.push_back(1 + (turned ? n - 1 - j : j));
      m.a.push_back(exact_value<T>(random));
    }
    m.ia.push_back(static_cast<int>(m.ja.size()) + 1);
  }
  return m;
}
TYPED_TEST(CsrVector, RowsOfManyKinds) {
  using T = TypeParam;
  for (const bool turned : {false, true}) {
    const auto a = stretches_of_rows<T>(600, turned);
    for (const int threads : {1, 3}) {
      serv_set_num_threads(threads);
      for (const char* lower : {"GXXF", "SLNF", "SLUC", "HLNC", "ALNF", "TLNF", "TLUC"}) {
        std::string description = lower;
        if (turned && description[1] == 'L') description[1] = 'U';
        check_product(a, description, 'N', make<T>(2, 1), threads == 1 ? make<T>(0) : make<T>(3, 1));
      }
    }
  }
}

/// Rows that look sorted but for one entry, in any place behind the diagonal.
TYPED_TEST(CsrVector, EntriesOutOfOrder) {
  using T = TypeParam;
  const int n = 200;
  std::mt19937 random(23);
  for (const int length : {12, 16, 27, 45}) {
    for (const bool turned : {false, true}) {
      csr<T> m{n, n, {1}, {}, {}};
      for (int r = 0; r < n; ++r) {
        const int i = turned ? n - 1 - r : r;
        std::vector<int> row{i};
        if (const int k = i - 60; k >= 0 && k < 80) {
          row = {3, 9, 20, 31, i};
          while (static_cast<int>(row.size()) < length) row.push_back(i + static_cast<int>(row.size()));
          row[5 + static_cast<std::size_t>(k) % (row.size() - 5)] = 40;
        }
        for (const int j : row) {
          m.ja.push_back(1 + (turned ? n - 1 - j : j));
          m.a.push_back(exact_value<T>(random));
        }
        m.ia.push_back(static_cast<int>(m.ja.size()) + 1);
      }
      for (const char* description : {"TLNF", "TLUF", "TUNF", "TUUF", "SLNF", "SUNF"})
        check_product(m, description, 'N', make<T>(1), make<T>(0));
    }
  }
}

/// Above the sizes where the accumulators are added by all threads and the native plans take threads. Half of
/// the entries lie up to reach rows off the diagonal.
template <class T>
void check_many_rows(int reach, int per_row) {
  const int n = 100003;
  csr<T> a{n, n, {1}, {}, {}};
  std::mt19937 random(5);
  for (int i = 0; i < n; ++i) {
    for (int t = 0; t < per_row; ++t) {
      a.ja.push_back(
          1 + (i + (t < per_row / 2 ? static_cast<int>(random() % static_cast<unsigned>(reach)) : t)) % n);
      a.a.push_back(exact_value<T>(random));
    }
    a.ia.push_back(static_cast<int>(a.ja.size()) + 1);
  }
  const auto csrmv = pick<T>(0, qel_dcsrmv, 0, qel_zcsrmv);
  const std::vector<T> x = make_vector<T>(n, 6);
  const T alpha = make<T>(2), beta = make<T>(3);
  for (const char* description : {"GXXF", "SLNF", "HUUF", "AUNF", "TLNF"}) {
    for (const char trans : {'N', 'C'}) {
      std::vector<T> first;
      for (const int threads : {1, 2, 5}) {
        serv_set_num_threads(threads);
        std::vector<T> y = make_vector<T>(n, 7);
        call(csrmv, trans, n, n, alpha, description, a.a.data(), a.ja.data(), a.ia.data(), a.ia.data() + 1,
             x.data(), beta, y.data());
        if (threads == 1) first = y;
        for (int i = 0; i < n; ++i)
          ASSERT_EQ(widen(y[i]), widen(first[i])) << description << trans << threads << " row " << i;
      }
    }
  }
}
TYPED_TEST(CsrVector, ManyRowsOnSeveralThreads) {
  check_many_rows<TypeParam>(100003, 4);
  check_many_rows<TypeParam>(900, 4);
}
/// More than a third of the largest cache: kernels ask ahead, and threads take blocks as they are free.
TYPED_TEST(CsrVector, MatricesFromMemoryOnSeveralThreads) {
  const int bytes_of_one_a_row = 100003 * static_cast<int>(sizeof(TypeParam) + sizeof(int));
  check_many_rows<TypeParam>(100003, largest_native_cache() / 3 / bytes_of_one_a_row + 4);
}

TYPED_TEST(CsrVector, RowStartsNeedNotAscend) {
  using T = TypeParam;
  // The rows of a matrix stored from last to first.
  const auto a = make_csr<T>(pattern::random, 20000, 50, 8);
  const auto csrmv = pick<T>(0, qel_dcsrmv, 0, qel_zcsrmv);
  const int m = a.rows, k = a.columns;
  std::vector<int> begin(a.ia.rbegin() + 1, a.ia.rend()), end(a.ia.rbegin(), a.ia.rend() - 1);
  const std::vector<T> x = make_vector<T>(k, 9);
  const T one = make<T>(1), zero{};
  std::vector<T> y(m), backward(m);
  serv_set_num_threads(3);
  call(csrmv, 'N', m, k, one, "GXXF", a.a.data(), a.ja.data(), a.ia.data(), a.ia.data() + 1, x.data(), zero,
       y.data());
  call(csrmv, 'N', m, k, one, "GXXF", a.a.data(), a.ja.data(), begin.data(), end.data(), x.data(), zero,
       backward.data());
  for (int i = 0; i < m; ++i) ASSERT_EQ(widen(y[i]), widen(backward[m - 1 - i]));
}

TYPED_TEST(CsrVector, SymmetricWithoutMemoryRunsSerially) {
  using T = TypeParam;
  serv_set_num_threads(4);
  largest_grant = 1000;
  const auto a = make_csr<T>(pattern::random, 300, 300, 12);
  check_product(a, "SLNF", 'N', make<T>(2), make<T>(1));
  check_product(a, "AUNF", 'T', make<T>(2), make<T>(1));
}

TYPED_TEST(CsrVector, SquareProduct) {
  using T = TypeParam;
  const auto csrgemv = pick<T>(0, qel_dcsrgemv, 0, qel_zcsrgemv);
  for (const int threads : {1, 3}) {
    serv_set_num_threads(threads);
    for (const int n : {0, 1, 17}) {
      const auto a = make_csr<T>(pattern::random, n, n, 13);
      for (const char trans : {'N', 'T', 'c'}) {
        const auto x = make_vector<T>(n, 14);
        std::vector<T> y(n + 1, make<T>(NAN));
        call(csrgemv, trans, n, a.a.data(), a.ia.data(), a.ja.data(), x.data(), y.data());
        const dense d = op(static_cast<char>(std::toupper(trans)), dense_of(a));
        for (int i = 0; i < n; ++i) {
          reference sum = 0;
          for (int j = 0; j < n; ++j) sum += d(i, j) * widen(x[j]);
          ASSERT_EQ(widen(y[i]), sum);
        }
        EXPECT_TRUE(std::isnan(real_part(y[n]))) << "behind the end";
      }
    }
  }
}

TYPED_TEST(CsrVector, NanScaleIsNotZero) {
  using T = TypeParam;
  const auto csrmv = pick<T>(0, qel_dcsrmv, 0, qel_zcsrmv);
  const auto a = make_csr<T>(pattern::diagonal_only, 5, 5, 1);
  const auto x = make_vector<T>(5, 2);
  std::vector<T> y(5);
  call(csrmv, 'N', 5, 5, make<T>(1), "GLNF", a.a.data(), a.ja.data(), a.ia.data(), a.ia.data() + 1, x.data(),
       make<T>(NAN), y.data());
  for (const T value : y) EXPECT_TRUE(std::isnan(real_part(value)));
}

TEST(CsrVectorPlan, Table) {
  constexpr auto serial = csr_scheme::kSerial, blocks = csr_scheme::kRowBlocks,
                 sums = csr_scheme::kAccumulators, far = csr_scheme::kFarRows;
  const struct {
    sparse::csr_vector_facts facts;
    csr_scheme scheme;
    int threads;
    bool even, shared;
    core_int row_weight = 0;
    int blocks_each = 1;
  } rows[] = {
      // kind, transposed, rows, columns, entries, threads, native
      {{'G', false, 2, 2, 4, 4, false}, blocks, 4, false, false},
      {{'G', false, 100, 100, 500, 1, false}, serial, 1, false, false},
      {{'G', true, 200000, 9, 900000, 4, false}, serial, 1, false, false},
      {{'T', false, 100, 100, 500, 4, false}, blocks, 4, false, false},
      {{'T', true, 100, 100, 500, 4, false}, serial, 1, false, false},
      {{'D', false, 100, 100, 500, 4, false}, serial, 1, false, false},
      {{'S', false, 4, 4, 16, 4, false}, serial, 1, false, false},
      {{'S', true, 5, 5, 16, 4, false}, sums, 4, false, false},
      {{'H', false, 100000, 100000, 500000, 4, false}, sums, 4, false, false},
      {{'A', false, 100001, 100001, 500000, 4, false}, sums, 4, false, true},
      {{'G', false, 100, 100, 29999, 4, true}, serial, 1, false, false},
      {{'G', false, 100, 100, 30000, 4, true}, blocks, 4, true, false},
      {{'T', false, 100, 100, 30000, 4, true}, blocks, 4, true, false, 16},
      {{'T', false, 100, 100, 30000, 4, true, 1024, 3072, 0, 0.07}, blocks, 4, true, false, 16},
      {{'T', false, 100, 100, 30000, 4, true, 1025, 3072, 0, 0.06}, blocks, 4, true, false, 16},
      {{'T', false, 100, 100, 30000, 4, true, 1025, 3072, 0, 0.07}, blocks, 4, true, false, 16, 8},
      {{'T', false, 100, 100, 30000, 4, false, 1025, 3072, 0, 0.07}, blocks, 4, false, false},
      {{'G', false, 100, 100, 30000, 4, true, 1025, 3072, 0, 0.07}, blocks, 4, true, false},
      {{'T', true, 100, 100, 60000, 4, true}, sums, 4, true, true},
      {{'S', false, 100, 100, 30000, 4, true}, far, 4, true, true},
      {{'S', false, 100, 100, 30000, 4, true, 0, 0, 0.0625}, far, 4, true, true},
      {{'S', false, 100, 100, 30000, 4, true, 0, 0, 0.063}, sums, 4, true, true},
      {{'S', false, 4, 4, 30000, 4, true}, serial, 1, false, false},
      {{'G', true, 100, 100, 59999, 4, true}, serial, 1, false, false},
      {{'G', true, 100, 7500, 60000, 4, true}, sums, 4, true, true},
      {{'G', true, 100, 7501, 60000, 4, true}, serial, 1, false, false},
      {{'D', false, 100, 100, 30000, 4, true}, serial, 1, false, false},
  };
  for (const auto& row : rows) {
    const auto plan = sparse::plan_csr_vector(row.facts);
    const auto line = &row - rows;
    EXPECT_EQ(plan.scheme, row.scheme) << line;
    EXPECT_EQ(plan.threads, row.threads) << line;
    EXPECT_EQ(plan.even_entries, row.even) << line;
    EXPECT_EQ(plan.shared_sum, row.shared) << line;
    EXPECT_EQ(plan.row_weight, row.row_weight) << line;
    EXPECT_EQ(plan.blocks_each, row.blocks_each) << line;
  }
  EXPECT_FALSE(sparse::plan_csr_vector({'G', false, 9, 9, 100, 1, false, 1024, 3072}).streams);
  EXPECT_TRUE(sparse::plan_csr_vector({'G', false, 9, 9, 100, 1, false, 1025, 3072}).streams);
  for (const auto& [bytes, spread, in_steps] :
       {std::tuple{1025, 0.0625, false}, {1025, 0.063, true}, {1024, 0.063, false}})
    EXPECT_EQ(sparse::plan_csr_vector({'G', false, 9, 9, 100, 1, false, bytes, 3072, 0, spread}).in_steps,
              in_steps);
}

TEST(CsrVectorPlan, OnlyNativeThreadsAddToTheResultItself) {
  EXPECT_TRUE(sparse::plan_csr_vector({'G', true, 100, 100, 60000, 4, true}).first_in_place);
  EXPECT_FALSE(sparse::plan_csr_vector({'S', false, 100, 100, 30000, 4, true}).first_in_place);
  EXPECT_FALSE(sparse::plan_csr_vector({'S', false, 100, 100, 30000, 4, false}).first_in_place);
}

TEST(CsrChecks, FirstBadArgument) {
  using namespace sparse;
  EXPECT_EQ(csrgemv_bad_argument("x", -1), 1);
  EXPECT_EQ(csrgemv_bad_argument("c", -1), 2);
  EXPECT_EQ(csrgemv_bad_argument("t", 0), 0);
  EXPECT_EQ(csrmv_bad_argument("", -1, 0, "G"), 1);
  EXPECT_EQ(csrmv_bad_argument("N", -1, -1, "X"), 2);
  EXPECT_EQ(csrmv_bad_argument("N", 0, -1, "X"), 3);
  const struct {
    const char* description;
    int position;
  } descriptions[] = {{"GQQQ", 0}, {"XLNF", 5}, {"SLNQ", 0}, {"SQNF", 5}, {"SLQF", 5}, {"ALQF", 0},
                      {"AQNF", 5}, {"DQNF", 0}, {"DLQF", 5}, {"tuuc", 0}, {"TLXF", 5}, {"hlnf", 0}};
  for (const auto& row : descriptions)
    EXPECT_EQ(csrmv_bad_argument("N", 1, 1, row.description), row.position) << row.description;
  EXPECT_EQ(csradd_bad_argument("N", 3, -1, 0, 0), 2);
  EXPECT_EQ(csradd_bad_argument("N", 2, -1, -1, 0), 4);
  EXPECT_EQ(csradd_bad_argument("N", 2, 0, -1, 0), 5);
  EXPECT_EQ(csradd_bad_argument("N", 0, 0, 0, -1), 16);
  EXPECT_EQ(csradd_bad_argument("N", 1, 0, 0, -1), 0);
  EXPECT_EQ(csrmultcsr_bad_argument("N", 0, 0, 0, -1, -1), 6);
  EXPECT_EQ(csrmultd_bad_argument("N", 0, 0, 0, -1), 12);
  EXPECT_EQ(csrmultd_bad_argument("N", 0, 0, -1, -1), 4);
  const int job[6] = {0, 1, 1, 2, 10, 1};
  EXPECT_EQ(dnscsr_bad_argument(job, 1, 1, 1), 0);
  for (int i = 0; i < 6; ++i) {
    int bad[6];
    std::copy_n(job, 6, bad);
    bad[i] = i == 3 ? 3 : -1;
    EXPECT_EQ(dnscsr_bad_argument(bad, -1, 1, 1), 1) << i;
  }
  EXPECT_EQ(dnscsr_bad_argument(job, -1, -1, -1), 2);
  EXPECT_EQ(dnscsr_bad_argument(job, 0, -1, -1), 3);
  EXPECT_EQ(dnscsr_bad_argument(job, 0, 0, -1), 5);
}

}  // namespace
}  // namespace qel::test
