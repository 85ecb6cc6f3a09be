// SPDX-License-Identifier: BSD-3-Clause
// The library's own reports of bad arguments, which test programs replace by theirs and so never see: one
// line on standard error, the position as the caller wrote it, outputs untouched, and the process goes on.
#include <gtest/gtest.h>

#include <cstdlib>
#include <functional>
#include <new>
#include <string>
#include <vector>

#include "dropin/blas_names.h"
#include "dropin/cblas_names.h"

namespace {
bool memory_is_out = false;
}

// What the library allocates by; this program's definitions are the ones that every library gets. The
// throwing form is there because the others of its family must match it.
void* operator new[](std::size_t size) {
  if (void* memory = std::malloc(size)) return memory;
  throw std::bad_alloc();
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
  return memory_is_out ? nullptr : std::malloc(size);
}
void operator delete[](void* pointer) noexcept { std::free(pointer); }
void operator delete[](void* pointer, std::size_t) noexcept { std::free(pointer); }

namespace qel::dropin {
namespace {

std::string reported(const std::function<void()>& action) {
  testing::internal::CaptureStderr();
  action();
  return testing::internal::GetCapturedStderr();
}

TEST(FortranReport, NamesRoutineAndPosition) {
  const int m = 2, n = 2, short_ld = 1;
  const double one = 1;
  std::vector<double> a(4, 1), c(4, 5);
  EXPECT_EQ(" ** On entry to DGEMM parameter number 13 had an illegal value\n", reported([&] {
              dgemm_("N", "t", &m, &n, &m, &one, a.data(), &m, a.data(), &m, &one, c.data(), &short_ld);
            }));
  EXPECT_EQ(" ** On entry to DTRSV parameter number  3 had an illegal value\n",
            reported([&] { dtrsv_("u", "N", "x", &n, a.data(), &n, c.data(), &m); }));
  EXPECT_EQ(std::vector<double>(4, 5), c);
}

TEST(FortranReport, TakesNamesAsSingleCharacters) {
  const int position = 7;
  const struct {
    std::string name;
    int length;
    const char* want;
  } rows[] = {{"ZHER2K", 6, "ZHER2K"},
              {"DGEMV   ", 8, "DGEMV"},
              {"DGESVXX", 5, "DGESV"},
              {"", -1, ""},
              {std::string(40, 'A'), 40, "AAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAA"}};
  for (const auto& row : rows) {
    EXPECT_EQ(std::string(" ** On entry to ") + row.want + " parameter number  7 had an illegal value\n",
              reported([&] { xerbla_array_(row.name.data(), &row.length, &position); }));
  }
}

// Leading dimensions, sizes and strides that are bad in the caller's order of arguments.
TEST(CReport, CountsArgumentsAsWritten) {
  std::vector<double> d(64, 1);
  std::vector<complex16> z(64, complex16{1, 1});
  double* p = d.data();
  complex16* q = z.data();
  const complex16 unit{1, 0};
  const struct {
    const char* routine;
    int position;
    std::function<void(CBLAS_LAYOUT)> action;
  } rows[] = {
      {"cblas_dgemm", 4,
       [&](CBLAS_LAYOUT l) { cblas_dgemm(l, CblasNoTrans, CblasNoTrans, -1, 2, 2, 1, p, 9, p, 9, 0, p, 9); }},
      {"cblas_dgemm", 5,
       [&](CBLAS_LAYOUT l) { cblas_dgemm(l, CblasNoTrans, CblasNoTrans, 2, -1, 2, 1, p, 9, p, 9, 0, p, 9); }},
      {"cblas_dgemm", 9,
       [&](CBLAS_LAYOUT l) { cblas_dgemm(l, CblasNoTrans, CblasNoTrans, 2, 2, 2, 1, p, 1, p, 9, 0, p, 9); }},
      {"cblas_dgemm", 11,
       [&](CBLAS_LAYOUT l) { cblas_dgemm(l, CblasNoTrans, CblasNoTrans, 2, 2, 2, 1, p, 9, p, 1, 0, p, 9); }},
      {"cblas_zhemm", 4,
       [&](CBLAS_LAYOUT l) { cblas_zhemm(l, CblasLeft, CblasUpper, -1, 2, &unit, q, 9, q, 9, &unit, q, 9); }},
      {"cblas_dtrsm", 7,
       [&](CBLAS_LAYOUT l) {
         cblas_dtrsm(l, CblasLeft, CblasUpper, CblasTrans, CblasUnit, 2, -1, 1, p, 9, p, 9);
       }},
      {"cblas_dgemv", 4, [&](CBLAS_LAYOUT l) { cblas_dgemv(l, CblasTrans, 2, -1, 1, p, 9, p, 1, 0, p, 1); }},
      {"cblas_dgbmv", 5,
       [&](CBLAS_LAYOUT l) { cblas_dgbmv(l, CblasTrans, 2, 2, -1, 0, 1, p, 9, p, 1, 0, p, 1); }},
      {"cblas_dger", 6, [&](CBLAS_LAYOUT l) { cblas_dger(l, 2, 2, 1, p, 0, p, 1, p, 9); }},
      {"cblas_zgerc", 8, [&](CBLAS_LAYOUT l) { cblas_zgerc(l, 2, 2, &unit, q, 1, q, 0, q, 9); }},
      {"cblas_zher2", 8, [&](CBLAS_LAYOUT l) { cblas_zher2(l, CblasUpper, 2, &unit, q, 1, q, 0, q, 9); }},
      {"cblas_dsyr2", 6, [&](CBLAS_LAYOUT l) { cblas_dsyr2(l, CblasUpper, 2, 1, p, 0, p, 1, p, 9); }},
      {"cblas_zher2k", 4,
       [&](CBLAS_LAYOUT l) { cblas_zher2k(l, CblasUpper, CblasNoTrans, -1, 2, &unit, q, 9, q, 9, 1, q, 9); }},
  };
  for (const auto& row : rows) {
    for (const CBLAS_LAYOUT layout : {CblasColMajor, CblasRowMajor}) {
      EXPECT_EQ(
          "Parameter " + std::to_string(row.position) + " to routine " + row.routine + " was incorrect\n",
          reported([&] { row.action(layout); }))
          << layout;
    }
  }
  EXPECT_EQ(std::vector<double>(64, 1), d);
}

TEST(CReport, TellsTheWrongOption) {
  double x = 1;
  EXPECT_EQ("Parameter 1 to routine cblas_dtrmv was incorrect\nIllegal layout setting, 7\n", reported([&] {
              cblas_dtrmv(static_cast<CBLAS_LAYOUT>(7), static_cast<CBLAS_UPLO>(0), CblasTrans, CblasUnit, -1,
                          &x, 1, &x, 1);
            }));
  EXPECT_EQ("Parameter 3 to routine cblas_dtrmv was incorrect\nIllegal transposition setting, 115\n",
            reported([&] {
              cblas_dtrmv(CblasRowMajor, CblasUpper, static_cast<CBLAS_TRANSPOSE>(115),
                          static_cast<CBLAS_DIAG>(0), 1, &x, 1, &x, 1);
            }));
}

TEST(CReport, NoMemoryForAConjugateLeavesTheOutputAlone) {
  const complex16 unit{1, 0};
  const std::vector<complex16> x(2, complex16{1, 2});
  std::vector<complex16> a(4, complex16{3, 4}), y(2, complex16{5, 6});
  memory_is_out = true;
  const std::string text = reported([&] {
    cblas_zgerc(CblasRowMajor, 2, 2, &unit, x.data(), 1, x.data(), 1, a.data(), 2);
    cblas_zhemv(CblasRowMajor, CblasUpper, 2, &unit, a.data(), 2, x.data(), 1, &unit, y.data(), 1);
  });
  memory_is_out = false;
  EXPECT_EQ(
      "cblas_zgerc: no memory for the conjugate of a vector\n"
      "cblas_zhemv: no memory for the conjugate of a vector\n",
      text);
  for (const complex16& element : a) EXPECT_EQ(4, element.imag);
  for (const complex16& element : y) EXPECT_EQ(6, element.imag);
}

}  // namespace
}  // namespace qel::dropin
