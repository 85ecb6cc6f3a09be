// SPDX-License-Identifier: BSD-3-Clause
// Sums, products and conversions of CSR matrices against dense ones, in exact arithmetic.
#include <atomic>

#include "service/serv.h"
#include "sparse/blas/csr_rows.h"
#include "tests/sparse/support.h"
#include "tests/support/in_child.h"

namespace qel::test {
namespace {

std::size_t failing_request;
std::atomic<std::size_t> requests;
void* failing_malloc(std::size_t size) { return ++requests == failing_request ? nullptr : std::malloc(size); }

template <class T>
class CsrProduct : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    setenv("QEL_DISABLE_FAST_MM", "1", 1);
    serv_platform_malloc = failing_malloc;
    serv_set_dynamic(0);
  }
  void SetUp() override { failing_request = 0; }
  void TearDown() override { serv_set_num_threads(1); }
};
using csr_types = testing::Types<double, complex16>;
TYPED_TEST_SUITE(CsrProduct, csr_types);

/// An operation with a sparse result: add (k unused) or multiply, all its arguments but the result's.
template <class T>
struct operation {
  bool multiplies;
  char trans;
  int sort;
  csr<T> a, b;
  int k;
  T beta = make<T>(2, -1);

  int result_rows() const { return multiplies && trans != 'N' ? a.columns : a.rows; }
  int result_columns() const { return multiplies ? k : a.columns; }
  int operator()(int request, T* c, int* jc, int* ic, int nzmax) {
    const auto add = pick<T>(0, qel_dcsradd, 0, qel_zcsradd);
    const auto multiply = pick<T>(0, qel_dcsrmultcsr, 0, qel_zcsrmultcsr);
    int info = 99;
    if (multiplies) {
      call(multiply, trans, request, sort, a.rows, a.columns, k, a.a.data(), a.ja.data(), a.ia.data(),
           b.a.data(), b.ja.data(), b.ia.data(), c, jc, ic, nzmax, &info);
    } else {
      call(add, trans, request, sort, a.rows, a.columns, a.a.data(), a.ja.data(), a.ia.data(), beta,
           b.a.data(), b.ja.data(), b.ia.data(), c, jc, ic, nzmax, &info);
    }
    return info;
  }
  csr<T> in_one_pass(int nzmax, int* info) {
    csr<T> c{result_rows(), result_columns(), std::vector<int>(result_rows() + 1, -7),
             std::vector<int>(nzmax), std::vector<T>(nzmax)};
    *info = (*this)(0, c.a.data(), c.ja.data(), c.ia.data(), nzmax);
    return c;
  }
  csr<T> in_two_passes() {
    csr<T> c{result_rows(), result_columns(), std::vector<int>(result_rows() + 1, -7), {}, {}};
    EXPECT_EQ((*this)(1, static_cast<T*>(nullptr), static_cast<int*>(nullptr), c.ia.data(), -1), 0);
    c.ja.resize(c.ia.back() - 1);
    c.a.resize(c.ia.back() - 1);
    EXPECT_EQ((*this)(2, c.a.data(), c.ja.data(), c.ia.data(), -1), 0);
    return c;
  }
  dense want() const {
    if (multiplies) {
      const dense left = op(trans, dense_of(a)), right = dense_of(b);
      dense c(left.rows, k);
      for (int i = 0; i < left.rows; ++i)
        for (int l = 0; l < k; ++l)
          for (int j = 0; j < left.columns; ++j) c(i, l) += left(i, j) * right(j, l);
      return c;
    }
    const dense right = op(trans, dense_of(b));
    dense c = dense_of(a);
    for (std::size_t p = 0; p < c.at.size(); ++p) c.at[p] += widen(beta) * right.at[p];
    return c;
  }
};

template <class T>
operation<T> make_operation(bool multiplies, char trans, pattern kind, int m, int n, int k, int sort) {
  operation<T> o{multiplies, trans, sort, make_csr<T>(kind, m, n, 21), {}, k};
  if (multiplies) {
    o.b = make_csr<T>(kind, trans == 'N' ? n : m, k, 22);
  } else {
    o.b = trans == 'N' ? make_csr<T>(kind, m, n, 22) : make_csr<T>(kind, n, m, 22);
  }
  return o;
}

template <class T>
void expect_sorted(const csr<T>& c) {
  for (int i = 0; i < c.rows; ++i)
    for (int p = c.ia[i]; p < c.ia[i + 1] - 1; ++p) ASSERT_LT(c.ja[p - 1], c.ja[p]) << "row " << i;
}

constexpr std::tuple<int, int, int> kSizes[] = {{0, 0, 0}, {1, 1, 1}, {5, 7, 3}, {31, 17, 90}, {60, 60, 60}};

TYPED_TEST(CsrProduct, OneAndTwoPasses) {
  using T = TypeParam;
  for (const int threads : {1, 2, 8}) {
    serv_set_num_threads(threads);
    for (const bool multiplies : {false, true}) {
      for (const char trans : {'N', 'T', 'C'}) {
        for (const pattern kind : kPatterns) {
          // A sum needs rows of different columns.
          if (!multiplies && kind == pattern::duplicates) continue;
          for (const auto& [m, n, k] : kSizes) {
            auto o = make_operation<T>(multiplies, trans, kind, m, n, k, multiplies ? 0 : 3);
            const dense want = o.want();
            const csr<T> counted = o.in_two_passes();
            expect_sorted(counted);
            ASSERT_EQ(dense_of(counted).at, want.at) << multiplies << trans << static_cast<int>(kind) << m;
            int info;
            const int entries = counted.ia.back() - 1;
            csr<T> built = o.in_one_pass(entries + 1, &info);
            EXPECT_EQ(info, 0);
            built.ja.pop_back();
            built.a.pop_back();
            ASSERT_TRUE(built == counted);
          }
        }
      }
    }
  }
}

TYPED_TEST(CsrProduct, TooFewPlaces) {
  using T = TypeParam;
  for (const bool multiplies : {false, true}) {
    for (const char trans : {'N', 'T'}) {
      auto o = make_operation<T>(multiplies, trans, pattern::dense_row, 12, 12, 12, 3);
      const csr<T> whole = o.in_two_passes();
      const int entries = whole.ia.back() - 1;
      for (int nzmax = 0; nzmax < entries; ++nzmax) {
        int info;
        const csr<T> part = o.in_one_pass(nzmax, &info);
        int row = 1;
        while (whole.ia[row] - 1 <= nzmax) ++row;
        ASSERT_EQ(info, row) << nzmax;
        for (int i = 0; i < row; ++i) ASSERT_EQ(part.ia[i], whole.ia[i]);
        for (int p = 0; p < whole.ia[row - 1] - 1; ++p) {
          ASSERT_EQ(part.ja[p], whole.ja[p]);
          ASSERT_EQ(widen(part.a[p]), widen(whole.a[p]));
        }
      }
    }
  }
}

TYPED_TEST(CsrProduct, SortsTheCallersRows) {
  using T = TypeParam;
  for (const bool multiplies : {false, true}) {
    for (const char trans : {'N', 'C'}) {
      for (const int sort : {0, 1, 2, 3, 4, -1}) {
        auto o = make_operation<T>(multiplies, trans, pattern::random, 20, 20, 20, sort);
        const auto before = o;
        auto sorted_a = o.a, sorted_b = o.b;
        for (csr<T>* m : {&sorted_a, &sorted_b}) {
          for (int i = 0; i < m->rows; ++i) {
            std::vector<std::pair<int, T>> row;
            for (int p = m->ia[i] - 1; p < m->ia[i + 1] - 1; ++p) row.emplace_back(m->ja[p], m->a[p]);
            std::sort(row.begin(), row.end(), [](auto& l, auto& r) { return l.first < r.first; });
            for (std::size_t p = 0; p < row.size(); ++p)
              std::tie(m->ja[m->ia[i] - 1 + p], m->a[m->ia[i] - 1 + p]) = row[p];
          }
        }
        int info;
        o.in_one_pass(4000, &info);
        EXPECT_TRUE(o.a == (sort == 1 || sort == 3 ? sorted_a : before.a)) << sort;
        EXPECT_TRUE(o.b == (sort == 2 || sort == 3 ? sorted_b : before.b)) << sort;
      }
    }
  }
}

TYPED_TEST(CsrProduct, UnsortedRowsMergeWrong) {
  using T = TypeParam;
  // Row 2 1 against row 1: column 1 of A is met too late.
  operation<T> o{
      false, 'N', 0, {1, 2, {1, 3}, {2, 1}, {make<T>(5), make<T>(6)}}, {1, 2, {1, 2}, {1}, {make<T>(1)}}, 0};
  const csr<T> c = o.in_two_passes();
  EXPECT_EQ(c.ja, (std::vector<int>{1, 2, 1}));
}

TYPED_TEST(CsrProduct, ZeroSumsStay) {
  using T = TypeParam;
  operation<T> o{false, 'N',       0, {1, 1, {1, 2}, {1}, {make<T>(5)}}, {1, 1, {1, 2}, {1}, {make<T>(-5)}},
                 0,     make<T>(1)};
  const csr<T> c = o.in_two_passes();
  ASSERT_EQ(c.ja.size(), 1u);
  EXPECT_EQ(widen(c.a[0]), reference());
}

TYPED_TEST(CsrProduct, NoMemoryIsReported) {
  using T = TypeParam;
  for (const bool multiplies : {false, true}) {
    for (const char trans : {'N', 'T'}) {
      if (!multiplies && trans == 'N') continue;  // takes none
      const std::string name = multiplies ? "CSRMULTCSR" : "CSRADD";
      for (std::size_t k = 1;; ++k) {
        auto o = make_operation<T>(multiplies, trans, pattern::random, 9, 9, 9, 0);
        int info = 0;
        const child_result child = in_child([&] {
          requests = 0;
          failing_request = k;
          o.in_one_pass(500, &info);
          return info == 0 ? 0 : info == -1023 ? 1 : 2;
        });
        ASSERT_LT(child.exit_status, 2);
        if (child.exit_status == 0) break;
        EXPECT_EQ(child.output, "\nQEL ERROR: Parameter 1079 was incorrect on entry to QEL_" +
                                    std::string(is_complex<T> ? "Z" : "D") + name + "\n");
        ASSERT_LT(k, 20u);
      }
    }
  }
}

TYPED_TEST(CsrProduct, DenseResult) {
  using T = TypeParam;
  const auto multiply = pick<T>(0, qel_dcsrmultd, 0, qel_zcsrmultd);
  for (const char trans : {'N', 'T', 'C'}) {
    for (const pattern kind : kPatterns) {
      for (const auto& [m, n, k] : kSizes) {
        const auto o = make_operation<T>(true, trans, kind, m, n, k, 0);
        const dense want = o.want();
        const int ldc = want.rows + 2;
        std::vector<T> c(static_cast<std::size_t>(ldc) * static_cast<std::size_t>(k), make<T>(99));
        call(multiply, trans, m, n, k, o.a.a.data(), o.a.ja.data(), o.a.ia.data(), o.b.a.data(),
             o.b.ja.data(), o.b.ia.data(), c.data(), ldc);
        for (int l = 0; l < k; ++l)
          for (int i = 0; i < ldc; ++i)
            ASSERT_EQ(widen(c[l * ldc + i]), i < want.rows ? want(i, l) : reference(99));
      }
    }
  }
}

TEST(CsrDense, ThereAndBack) {
  const int m = 7, n = 5, lda = 6;
  std::mt19937 random(2);
  std::vector<double> given(m * lda);
  for (double& x : given) x = random() % 3 == 0 ? exact_value<double>(random) : 0;
  given[3] = NAN;
  for (const int base : {0, 1}) {
    for (const int part : {0, 1, 2}) {
      const auto inside = [&](int i, int j) { return part == 2 || (part == 0 ? j <= i : j >= i); };
      std::vector<int> ia(m + 1), ja(m * n), ia_only(m + 1);
      std::vector<double> a(m * n), dense = given;
      int job[6] = {0, 1 - base, base, part, m * n, 1}, info = 9;
      qel_ddnscsr(job, &m, &n, dense.data(), &lda, a.data(), ja.data(), ia.data(), &info);
      EXPECT_EQ(info, 0);
      job[5] = job[4] = 0;
      qel_ddnscsr(job, &m, &n, dense.data(), &lda, nullptr, nullptr, ia_only.data(), &info);
      EXPECT_EQ(info, 0);
      EXPECT_EQ(ia, ia_only);
      int count = 0;
      for (int i = 0; i < m; ++i) {
        EXPECT_EQ(ia[i], count + base);
        for (int j = 0; j < n; ++j) {
          if (!inside(i, j) || given[i * lda + j] == 0) continue;
          EXPECT_EQ(ja[count], j + base);
          EXPECT_TRUE(std::isnan(a[count]) || a[count] == given[i * lda + j]);
          ++count;
        }
      }
      EXPECT_EQ(ia[m], count + base);

      // With too few places: the row that didn't fit.
      int few[6] = {0, 0, base, part, ia[3] - base, 1};
      qel_ddnscsr(few, &m, &n, dense.data(), &lda, a.data(), ja.data(), ia_only.data(), &info);
      int row = 3;
      while (row < m && ia[row + 1] == ia[3]) ++row;
      EXPECT_EQ(info, row < m ? row + base : 0);

      std::vector<double> back(m * lda, 77);
      job[0] = 1;
      qel_ddnscsr(job, &m, &n, back.data(), &lda, a.data(), ja.data(), ia.data(), &info);
      for (int i = 0; i < m; ++i) {
        for (int j = 0; j < lda; ++j) {
          const double want = j < n && inside(i, j) ? given[i * lda + j] : 77;
          EXPECT_TRUE(back[i * lda + j] == want || (std::isnan(want) && std::isnan(back[i * lda + j])));
        }
      }
    }
  }
}

TEST(CsrThreads, OfRows) {
  // Threads allowed, request, transposed, rows, threads taken.
  const int rows[][5] = {{4, 0, 0, 100, 1}, {4, 1, 0, 100, 4}, {4, 2, 0, 100, 4}, {4, 1, 1, 100, 1},
                         {4, 2, 0, 3, 3},   {4, 2, 0, 1, 1},   {4, 1, 0, 0, 1},   {1, 1, 0, 100, 1}};
  for (const auto& row : rows)
    EXPECT_EQ(sparse::threads_of_rows(row[0], row[1], row[2] != 0, row[3]), row[4]) << &row - rows;
}

}  // namespace
}  // namespace qel::test
