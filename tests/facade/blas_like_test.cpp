// SPDX-License-Identifier: BSD-3-Clause
// BlasLikeFunctions: scaled copies in both orderings, matrix norms, reports.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <stdexcept>

#include "tavik/kernel/blas_like_functions.h"

namespace Tavik {
namespace {

using Core::Array;
constexpr double kUntouched = -77;

TEST(OmatCopy, PlacesEveryElementInBothOrderings) {
  Kernel::BlasLikeFunctions functions;
  const int rows = 37, cols = 19, lda = 41, ldb = 43;
  for (const char ordering : {'C', 'c', 'R', 'r'}) {
    for (const char trans : {'N', 'n', 'T', 't', 'C', 'c', 'R', 'r'}) {
      const bool column_major = ordering == 'C' || ordering == 'c';
      const bool transposed = trans == 'T' || trans == 't' || trans == 'C' || trans == 'c';
      Array<double> a(lda * lda), b(ldb * ldb);
      for (int i = 0; i < a.Length(); ++i) a[i] = std::numeric_limits<double>::quiet_NaN();
      for (int i = 0; i < b.Length(); ++i) b[i] = kUntouched;
      const auto at = [column_major](int i, int j, int ld) { return column_major ? i + j * ld : i * ld + j; };
      for (int i = 0; i < rows; ++i) {
        for (int j = 0; j < cols; ++j) a[at(i, j, lda)] = 100 * i + j;
      }
      functions.omatcopy(ordering, trans, rows, cols, 2.0, a, lda, b, ldb);
      int touched = 0;
      for (int i = 0; i < b.Length(); ++i) touched += b[i] != kUntouched;
      EXPECT_EQ(touched, rows * cols) << ordering << trans;
      for (int i = 0; i < rows; ++i) {
        for (int j = 0; j < cols; ++j) {
          ASSERT_EQ(b[transposed ? at(j, i, ldb) : at(i, j, ldb)], 2.0 * (100 * i + j)) << ordering << trans;
        }
      }
    }
  }
}

TEST(OmatCopy, ReportsWhatIsWrongAndLeavesTheTargetAlone) {
  Kernel::BlasLikeFunctions functions;
  const Array<double> a(100);
  const struct {
    char ordering, trans;
    int rows, cols, lda, ldb;
  } cases[] = {{'X', 'N', 3, 3, 3, 3},  {'C', 'X', 3, 3, 3, 3}, {'C', 'N', -1, 3, 3, 3},
               {'C', 'N', 3, -1, 3, 3}, {'C', 'N', 3, 3, 2, 3}, {'C', 'T', 3, 4, 3, 3},
               {'R', 'N', 3, 4, 3, 4}};
  for (const auto& c : cases) {
    Array<double> b{kUntouched, kUntouched};
    testing::internal::CaptureStdout();
    functions.omatcopy(c.ordering, c.trans, c.rows, c.cols, 1.0, a, c.lda, b, c.ldb);
    EXPECT_NE(testing::internal::GetCapturedStdout().find("QEL ERROR: Parameter"), std::string::npos);
    EXPECT_EQ(b[0], kUntouched);
  }
  EXPECT_THROW(functions.omatcopy('C', 'N', 0, 0, 1.0, Array<double>(), 1, a, 1), std::out_of_range);
}

TEST(Lange, ComputesEveryNormInEitherCase) {
  Kernel::BlasLikeFunctions functions;
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const Array<double> a{1, -2, nan, -3, 4, nan, 5, -6};  // 2 x 3 in columns of 3
  const struct {
    const char* letters;
    double want;
  } cases[] = {{"Mm", 6}, {"1Oo", 11}, {"Ii", 12}, {"FfEe", std::sqrt(1. + 4 + 9 + 16 + 25 + 36)}};
  for (const auto& c : cases) {
    for (const char* letter = c.letters; *letter; ++letter) {
      EXPECT_NEAR(functions.lange(*letter, 2, 3, a, 3), c.want, 1e-14) << *letter;
    }
  }
  EXPECT_EQ(functions.lange('I', 0, 3, a, 3), 0);
}

}  // namespace
}  // namespace Tavik
