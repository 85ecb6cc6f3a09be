// SPDX-License-Identifier: BSD-3-Clause
// The names that plain LAPACK calls: bad arguments are reported under the padded name and stop the call,
// complex functions return as Fortran's do, and a LAPACK routine runs on them.
#include "lapack/plain_names.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "service/serv.h"

extern "C" void qel_core_zgesv_(const qel::core_int* n, const qel::core_int* nrhs, qel::complex16* a,
                                const qel::core_int* lda, qel::core_int* pivots, qel::complex16* b,
                                const qel::core_int* ldb, qel::core_int* info);

namespace qel {
namespace {

std::string reported;
void record(const char* name, const int* code, int length) {
  reported = std::string(name, static_cast<std::size_t>(length)) + ':' + std::to_string(*code);
}

class PlainNames : public testing::Test {
 protected:
  void SetUp() override {
    reported.clear();
    serv_set_xerbla(record);
  }
  void TearDown() override { serv_set_xerbla(nullptr); }
  const core_int two_ = 2, zero_ = 0, one_ = 1;
};

TEST_F(PlainNames, BadArgumentsAreReportedAndStopTheCall) {
  const double a[4] = {1, 1, 1, 1}, factor = 1;
  double y[2] = {5, 6};
  qel_core_dgemv_("N", &two_, &two_, &factor, a, &two_, a, &one_, &factor, y, &zero_);
  EXPECT_EQ("DGEMV :11", reported);
  EXPECT_EQ(5, y[0]);
  complex16 z[4] = {};
  const complex16 one{1, 0};
  qel_core_zher2k_("U", "T", &two_, &two_, &one, z, &two_, z, &two_, &factor, z, &two_);
  EXPECT_EQ("ZHER2K:2", reported);
  qel_core_ztrsm_("L", "U", "N", "X", &two_, &two_, &one, z, &two_, z, &two_);
  EXPECT_EQ("ZTRSM :4", reported);
  qel_core_dsyrk_("U", "C", &two_, &two_, &factor, a, &two_, &factor, std::vector<double>(4).data(), &two_);
  EXPECT_EQ("ZTRSM :4", reported) << "C is as good as T for a real matrix";
}

TEST_F(PlainNames, ErrorsOfLapackReachTheReporter) {
  const core_int minus = -1;
  complex16 a[1], b[1];
  core_int pivot = 0, info = 0;
  qel_core_zgesv_(&minus, &one_, a, &one_, &pivot, b, &one_, &info);
  EXPECT_EQ("ZGESV :1", reported);
}

TEST_F(PlainNames, ComplexFunctionsReturnInRegisters) {
  const complex16 x[2] = {{1, 2}, {3, -1}}, y[2] = {{2, 1}, {0, 4}};
  const complex16 c = qel_core_zdotc_(&two_, x, &one_, y, &one_),
                  u = qel_core_zdotu_(&two_, x, &one_, y, &one_);
  EXPECT_EQ(0, c.real);
  EXPECT_EQ(9, c.imag);
  EXPECT_EQ(4, u.real);
  EXPECT_EQ(17, u.imag);
}

TEST_F(PlainNames, LapackSolvesOnThem) {
  constexpr core_int kOrder = 60;
  std::vector<complex16> a(kOrder * kOrder), b(kOrder);
  for (core_int j = 0; j < kOrder; ++j) {
    for (core_int i = 0; i < kOrder; ++i) {
      a[static_cast<std::size_t>(i + j * kOrder)] = {std::sin(static_cast<double>(3 * i + 7 * j + i * j)),
                                                     std::cos(static_cast<double>(i - 5 * j + i * i))};
    }
  }
  // Right-hand side of the solution of ones.
  for (core_int j = 0; j < kOrder; ++j) {
    for (core_int i = 0; i < kOrder; ++i) {
      b[static_cast<std::size_t>(i)].real += a[static_cast<std::size_t>(i + j * kOrder)].real;
      b[static_cast<std::size_t>(i)].imag += a[static_cast<std::size_t>(i + j * kOrder)].imag;
    }
  }
  std::vector<core_int> pivots(kOrder);
  core_int info = 7;
  qel_core_zgesv_(&kOrder, &one_, a.data(), &kOrder, pivots.data(), b.data(), &kOrder, &info);
  EXPECT_EQ(0, info);
  for (const complex16& x : b) {
    EXPECT_NEAR(1, x.real, 1e-10);
    EXPECT_NEAR(0, x.imag, 1e-10);
  }
}

}  // namespace
}  // namespace qel
