// SPDX-License-Identifier: BSD-3-Clause
// Bad arguments, in a program that brings its own error entry: each is told by name and position, the first
// of several wins, and no output is touched. That the program's entry is called at all is part of the test.
#include <functional>
#include <string>

#include "tests/entry/support.h"

namespace {
struct report {
  std::string name;
  int position;
};
std::vector<report> reports;
}  // namespace

extern "C" void xerbla(const char* name, const int* code, int name_length) {
  reports.push_back({std::string(name, static_cast<std::size_t>(name_length)), *code});
}

namespace qel::test {
namespace {

/// Arguments of one call; an entry of the table changes one or two of them.
struct arguments {
  char side = 'L', uplo = 'u', trans = 'n', transb = 'T', diag = 'N';
  int m = 3, n = 4, k = 2, kl = 1, ku = 1, lda = 4, ldb = 4, ldc = 4, incx = 1, incy = -1;
};
struct bad_case {
  const char* what;
  int position;
  void (*spoil)(arguments&);
};

/// Runs the good call, which must report nothing and write, then each bad one, which must report and not
/// write.
template <class T>
void expect_reports(const std::string& name, const std::vector<bad_case>& table,
                    const std::function<void(const arguments&, const T*, T*)>& entry) {
  const std::vector<T> in(64, make<T>(2));
  std::vector<T> out(64, make<T>(1));
  reports.clear();
  entry({}, in.data(), out.data());
  EXPECT_TRUE(reports.empty()) << name;
  EXPECT_FALSE(out[0] == make<T>(1) && out[1] == make<T>(1)) << name << " must do something";
  for (const bad_case& c : table) {
    arguments changed;
    c.spoil(changed);
    out.assign(64, make<T>(1));
    reports.clear();
    entry(changed, in.data(), out.data());
    ASSERT_EQ(1u, reports.size()) << name << " " << c.what;
    EXPECT_EQ(name, reports[0].name);
    EXPECT_EQ(c.position, reports[0].position) << name << " " << c.what;
    for (const T& value : out) ASSERT_TRUE(value == make<T>(1)) << name << " " << c.what;
  }
}

template <class T>
std::string name_of(const char* rest) {
  return std::string(1, pick<T>('S', 'D', 'C', 'Z')).append(rest);
}

template <class T>
class Checks : public testing::Test {};
TYPED_TEST_SUITE(Checks, all_types);

TYPED_TEST(Checks, Gemm) {
  using T = TypeParam;
  expect_reports<T>(name_of<T>("GEMM "),
                    {{"transa", 1, [](arguments& a) { a.trans = 'X'; }},
                     {"transb", 2, [](arguments& a) { a.transb = 'R'; }},
                     {"m", 3, [](arguments& a) { a.m = -1; }},
                     {"n", 4, [](arguments& a) { a.n = -1; }},
                     {"k", 5, [](arguments& a) { a.k = -1; }},
                     {"lda plain", 8, [](arguments& a) { a.lda = 2; }},
                     {"lda transposed", 8, [](arguments& a) { a.trans = 'c', a.lda = 1; }},
                     {"ldb transposed", 10, [](arguments& a) { a.ldb = 3; }},
                     {"ldb plain", 10, [](arguments& a) { a.transb = 'n', a.ldb = 1; }},
                     {"ldc", 13, [](arguments& a) { a.ldc = 2; }},
                     {"ldc of nothing", 13, [](arguments& a) { a.m = 0, a.ldc = 0; }},
                     {"letters before sizes", 2, [](arguments& a) { a.m = -1, a.transb = 'Q'; }},
                     {"first of two", 3, [](arguments& a) { a.m = -1, a.ldc = 0; }}},
                    [](const arguments& a, const T* in, T* out) {
                      call(pick<T>(sgemm, dgemm, cgemm, zgemm), a.trans, a.transb, a.m, a.n, a.k, make<T>(1),
                           in, a.lda, in, a.ldb, make<T>(1), out, a.ldc);
                    });
}

TYPED_TEST(Checks, Trsm) {
  using T = TypeParam;
  expect_reports<T>(name_of<T>("TRSM "),
                    {{"side", 1, [](arguments& a) { a.side = 'M'; }},
                     {"uplo", 2, [](arguments& a) { a.uplo = 'X'; }},
                     {"trans", 3, [](arguments& a) { a.trans = 'U'; }},
                     {"diag", 4, [](arguments& a) { a.diag = 'T'; }},
                     {"m", 5, [](arguments& a) { a.m = -1; }},
                     {"n", 6, [](arguments& a) { a.n = -1; }},
                     {"lda left", 9, [](arguments& a) { a.lda = 2; }},
                     {"lda right", 9, [](arguments& a) { a.side = 'r', a.lda = 3; }},
                     {"ldb", 11, [](arguments& a) { a.ldb = 2; }},
                     {"first of two", 5, [](arguments& a) { a.m = -1, a.ldb = 0; }}},
                    [](const arguments& a, const T* in, T* out) {
                      call(pick<T>(strsm, dtrsm, ctrsm, ztrsm), a.side, a.uplo, a.trans, a.diag, a.m, a.n,
                           make<T>(1), in, a.lda, out, a.ldb);
                    });
}

TYPED_TEST(Checks, Gemv) {
  using T = TypeParam;
  expect_reports<T>(name_of<T>("GEMV "),
                    {{"trans", 1, [](arguments& a) { a.trans = 'L'; }},
                     {"m", 2, [](arguments& a) { a.m = -1; }},
                     {"n", 3, [](arguments& a) { a.n = -1; }},
                     {"lda", 6, [](arguments& a) { a.lda = 2; }},
                     {"incx", 8, [](arguments& a) { a.incx = 0; }},
                     {"incy", 11, [](arguments& a) { a.incy = 0; }},
                     {"first of two", 2, [](arguments& a) { a.incy = 0, a.m = -1; }}},
                    [](const arguments& a, const T* in, T* out) {
                      call(pick<T>(sgemv, dgemv, cgemv, zgemv), a.trans, a.m, a.n, make<T>(1), in, a.lda, in,
                           a.incx, make<T>(1), out, a.incy);
                    });
}

TYPED_TEST(Checks, Trmv) {
  using T = TypeParam;
  expect_reports<T>(name_of<T>("TRMV "),
                    {{"uplo", 1, [](arguments& a) { a.uplo = 'N'; }},
                     {"trans", 2, [](arguments& a) { a.trans = 'U'; }},
                     {"diag", 3, [](arguments& a) { a.diag = 'C'; }},
                     {"n", 4, [](arguments& a) { a.n = -1; }},
                     {"lda", 6, [](arguments& a) { a.lda = 3; }},
                     {"incx", 8, [](arguments& a) { a.incx = 0; }}},
                    [](const arguments& a, const T* in, T* out) {
                      call(pick<T>(strmv, dtrmv, ctrmv, ztrmv), a.uplo, a.trans, a.diag, a.n, in, a.lda, out,
                           a.incx);
                    });
  expect_reports<T>(name_of<T>("TPMV "),
                    {{"uplo", 1, [](arguments& a) { a.uplo = 'N'; }},
                     {"trans", 2, [](arguments& a) { a.trans = 'U'; }},
                     {"diag", 3, [](arguments& a) { a.diag = 'C'; }},
                     {"n", 4, [](arguments& a) { a.n = -1; }},
                     {"incx", 7, [](arguments& a) { a.incx = 0; }}},
                    [](const arguments& a, const T* in, T* out) {
                      call(pick<T>(stpmv, dtpmv, ctpmv, ztpmv), a.uplo, a.trans, a.diag, a.n, in, out,
                           a.incx);
                    });
}

TYPED_TEST(Checks, BandAndPacked) {
  using T = TypeParam;
  expect_reports<T>(name_of<T>("GBMV "),
                    {{"trans", 1, [](arguments& a) { a.trans = 'L'; }},
                     {"m", 2, [](arguments& a) { a.m = -1; }},
                     {"n", 3, [](arguments& a) { a.n = -1; }},
                     {"kl", 4, [](arguments& a) { a.kl = -1; }},
                     {"ku", 5, [](arguments& a) { a.ku = -1; }},
                     {"lda", 8, [](arguments& a) { a.lda = 2; }},
                     {"incx", 10, [](arguments& a) { a.incx = 0; }},
                     {"incy", 13, [](arguments& a) { a.incy = 0; }}},
                    [](const arguments& a, const T* in, T* out) {
                      call(pick<T>(sgbmv, dgbmv, cgbmv, zgbmv), a.trans, a.m, a.n, a.kl, a.ku, make<T>(1), in,
                           a.lda, in, a.incx, make<T>(1), out, a.incy);
                    });
  expect_reports<T>(name_of<T>(is_complex<T> ? "HBMV " : "SBMV "),
                    {{"uplo", 1, [](arguments& a) { a.uplo = 'N'; }},
                     {"n", 2, [](arguments& a) { a.n = -1; }},
                     {"k", 3, [](arguments& a) { a.k = -1; }},
                     {"lda", 6, [](arguments& a) { a.lda = 2; }},
                     {"incx", 8, [](arguments& a) { a.incx = 0; }},
                     {"incy", 11, [](arguments& a) { a.incy = 0; }}},
                    [](const arguments& a, const T* in, T* out) {
                      call(pick<T>(ssbmv, dsbmv, chbmv, zhbmv), a.uplo, a.n, a.k, make<T>(1), in, a.lda, in,
                           a.incx, make<T>(1), out, a.incy);
                    });
  const std::vector<bad_case> packed_cases = {{"uplo", 1, [](arguments& a) { a.uplo = 'N'; }},
                                              {"n", 2, [](arguments& a) { a.n = -1; }},
                                              {"incx", 6, [](arguments& a) { a.incx = 0; }},
                                              {"incy", 9, [](arguments& a) { a.incy = 0; }}};
  expect_reports<T>(name_of<T>("SPMV "), packed_cases, [](const arguments& a, const T* in, T* out) {
    call(pick<T>(sspmv, dspmv, cspmv, zspmv), a.uplo, a.n, make<T>(1), in, in, a.incx, make<T>(1), out,
         a.incy);
  });
  if constexpr (is_complex<T>) {
    expect_reports<T>(name_of<T>("HPMV "), packed_cases, [](const arguments& a, const T* in, T* out) {
      call(pick<T>(0, 0, chpmv, zhpmv), a.uplo, a.n, make<T>(1), in, in, a.incx, make<T>(1), out, a.incy);
    });
  }
}

TEST(ChecksDouble, Omatcopy) {
  expect_reports<double>(
      "QEL_DOMATCOPY",
      {{"ordering", 1, [](arguments& a) { a.uplo = 'U'; }},
       {"trans", 2, [](arguments& a) { a.trans = 'X'; }},
       {"lda", 7, [](arguments& a) { a.lda = 2; }},
       {"ldb", 9, [](arguments& a) { a.ldb = 2; }},
       {"ldb transposed", 9, [](arguments& a) { a.trans = 'T', a.ldb = 3; }},
       {"lda by rows", 7, [](arguments& a) { a.uplo = 'r', a.lda = 3; }}},
      [](const arguments& a, const double* in, double* out) {
        const char ordering = a.uplo == 'u' ? 'C' : a.uplo;
        QEL_Domatcopy(ordering, a.trans, static_cast<std::size_t>(a.m), static_cast<std::size_t>(a.n), 1.0,
                      in, static_cast<std::size_t>(a.lda), out, static_cast<std::size_t>(a.ldb));
      });
}

// LAPACK's own checks come through the same entry, and as -position through info.
TEST(ChecksLapack, ReportAndInfo) {
  double a[4] = {1, 0, 0, 1}, b[2] = {3, 4}, work[8];
  int pivots[2] = {7, 7};
  reports.clear();
  EXPECT_EQ(-7, run(dgesv, 2, 1, a, 2, pivots, b, 1));
  EXPECT_EQ(-1, run(dposv, 'x', 2, 1, a, 2, b, 2));
  QEL_FreeBuffers();  // brings the object of the library's own error entry into a static link
  EXPECT_EQ(0, call(dlange, 'F', 0, 0, a, 1, work));
  ASSERT_EQ(2u, reports.size());
  EXPECT_EQ("DGESV ", reports[0].name);
  EXPECT_EQ(7, reports[0].position);
  EXPECT_EQ("DPOSV ", reports[1].name);
  EXPECT_EQ(1, reports[1].position);
  EXPECT_TRUE(b[0] == 3 && b[1] == 4 && pivots[0] == 7 && pivots[1] == 7);
}

// The thread's record is kept all the same.
TEST(ChecksLapack, KeepTheRecordBesideTheProgramsOwnEntry) {
  double a[4] = {1, 0, 0, 1}, b[2] = {3, 4};
  int pivots[2];
  run(dgesv, 2, 1, a, 2, pivots, b, 1);
  EXPECT_STREQ("DGESV", qel_last_error()->routine) << "of the core";
  EXPECT_EQ(7, qel_last_error()->argument);
  call(dgemm, 'N', 'N', -1, 1, 1, 1.0, a, 1, a, 1, 1.0, b, 1);
  EXPECT_STREQ("DGEMM", qel_last_error()->routine) << "of an entry";
  EXPECT_STREQ("QEL ERROR: Parameter 3 was incorrect on entry to DGEMM ", qel_last_error()->text);
}

}  // namespace
}  // namespace qel::test
