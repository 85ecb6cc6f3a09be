// SPDX-License-Identifier: BSD-3-Clause
// The argument tests of levels 2 and 3: for every pattern the good call, each argument made bad in turn, and
// a call where several are bad, whose first position counts.
#include <gtest/gtest.h>

#include "blas/checks.h"

namespace qel::blas {
namespace {

struct check_case {
  const char* name;
  int want, got;
};

// clang-format off
const check_case kLevel2[] = {
  {"gemv good",        0, gemv_bad_argument("t", 2, 3, 2, -1, 1)},
  {"gemv empty",       0, gemv_bad_argument("N", 0, 0, 1, 1, 1)},
  {"gemv trans",       1, gemv_bad_argument("X", -1, 3, 0, 0, 0)},
  {"gemv m",           2, gemv_bad_argument("N", -1, -1, 0, 0, 0)},
  {"gemv n",           3, gemv_bad_argument("N", 2, -1, 1, 0, 0)},
  {"gemv lda",         6, gemv_bad_argument("N", 2, 3, 1, 0, 0)},
  {"gemv lda 0",       6, gemv_bad_argument("N", 0, 3, 0, 1, 1)},
  {"gemv incx",        8, gemv_bad_argument("N", 2, 3, 2, 0, 0)},
  {"gemv incy",       11, gemv_bad_argument("N", 2, 3, 2, 1, 0)},
  {"gbmv good",        0, gbmv_bad_argument("c", 4, 4, 1, 2, 4, 1, 1)},
  {"gbmv kl",          4, gbmv_bad_argument("N", 4, 4, -1, -1, 4, 1, 1)},
  {"gbmv ku",          5, gbmv_bad_argument("N", 4, 4, 1, -1, 4, 1, 1)},
  {"gbmv lda",         8, gbmv_bad_argument("N", 4, 4, 1, 2, 3, 0, 1)},
  {"gbmv incx",       10, gbmv_bad_argument("N", 4, 4, 1, 2, 4, 0, 0)},
  {"gbmv incy",       13, gbmv_bad_argument("N", 4, 4, 1, 2, 4, 1, 0)},
  {"symv good",        0, symv_bad_argument("l", 3, 3, 1, 1)},
  {"symv uplo",        1, symv_bad_argument("N", -1, 3, 1, 1)},
  {"symv n",           2, symv_bad_argument("U", -1, 0, 0, 1)},
  {"symv lda",         5, symv_bad_argument("U", 3, 2, 0, 1)},
  {"symv incx",        7, symv_bad_argument("U", 3, 3, 0, 0)},
  {"symv incy",       10, symv_bad_argument("U", 3, 3, 1, 0)},
  {"sbmv good",        0, sbmv_bad_argument("U", 5, 1, 2, 1, 1)},
  {"sbmv k",           3, sbmv_bad_argument("U", 5, -1, 2, 0, 1)},
  {"sbmv lda",         6, sbmv_bad_argument("U", 5, 2, 2, 0, 1)},
  {"sbmv incx",        8, sbmv_bad_argument("U", 5, 1, 2, 0, 0)},
  {"sbmv incy",       11, sbmv_bad_argument("U", 5, 1, 2, 1, 0)},
  {"spmv incx",        6, spmv_bad_argument("U", 5, 0, 0)},
  {"spmv incy",        9, spmv_bad_argument("U", 5, 1, 0)},
  {"trmv good",        0, trmv_bad_argument("u", "c", "u", 3, 3, -2)},
  {"trmv uplo",        1, trmv_bad_argument("N", "X", "X", 3, 3, 1)},
  {"trmv trans",       2, trmv_bad_argument("U", "U", "X", 3, 3, 1)},
  {"trmv diag",        3, trmv_bad_argument("U", "N", "L", -3, 3, 1)},
  {"trmv n",           4, trmv_bad_argument("U", "N", "N", -3, 0, 1)},
  {"trmv lda",         6, trmv_bad_argument("U", "N", "N", 3, 2, 0)},
  {"trmv incx",        8, trmv_bad_argument("U", "N", "N", 3, 3, 0)},
  {"tbmv k",           5, tbmv_bad_argument("U", "N", "N", 3, -1, 0, 0)},
  {"tbmv lda",         7, tbmv_bad_argument("U", "N", "N", 3, 1, 1, 0)},
  {"tbmv incx",        9, tbmv_bad_argument("U", "N", "N", 3, 1, 2, 0)},
  {"tpmv incx",        7, tpmv_bad_argument("U", "N", "N", 3, 0)},
  {"ger good",         0, ger_bad_argument(2, 3, 1, 1, 2)},
  {"ger m",            1, ger_bad_argument(-1, -1, 0, 1, 2)},
  {"ger n",            2, ger_bad_argument(2, -1, 0, 1, 2)},
  {"ger incx",         5, ger_bad_argument(2, 3, 0, 0, 2)},
  {"ger incy",         7, ger_bad_argument(2, 3, 1, 0, 1)},
  {"ger lda",          9, ger_bad_argument(2, 3, 1, 1, 1)},
  {"syr incx",         5, syr_bad_argument("U", 3, 0, 2)},
  {"syr lda",          7, syr_bad_argument("U", 3, 1, 2)},
  {"spr incx",         5, spr_bad_argument("U", 3, 0)},
  {"syr2 incy",        7, syr2_bad_argument("U", 3, 1, 0, 2)},
  {"syr2 lda",         9, syr2_bad_argument("U", 3, 1, 1, 2)},
  {"spr2 incx",        5, spr2_bad_argument("U", 3, 0, 0)},
  {"spr2 incy",        7, spr2_bad_argument("U", 3, 1, 0)},
};
const check_case kLevel3[] = {
  {"gemm good NN",     0, gemm_bad_argument("n", "N", 2, 3, 4, 2, 4, 2)},
  {"gemm good TC",     0, gemm_bad_argument("t", "c", 2, 3, 4, 4, 3, 2)},
  {"gemm transa",      1, gemm_bad_argument("H", "H", 2, 3, 4, 2, 4, 2)},
  {"gemm transb",      2, gemm_bad_argument("N", "H", -2, 3, 4, 2, 4, 2)},
  {"gemm m",           3, gemm_bad_argument("N", "N", -2, -3, 4, 2, 4, 2)},
  {"gemm n",           4, gemm_bad_argument("N", "N", 2, -3, -4, 2, 4, 2)},
  {"gemm k",           5, gemm_bad_argument("N", "N", 2, 3, -4, 0, 4, 2)},
  {"gemm lda N",       8, gemm_bad_argument("N", "N", 2, 3, 4, 1, 3, 1)},
  {"gemm lda T",       8, gemm_bad_argument("T", "N", 2, 3, 4, 3, 4, 2)},
  {"gemm ldb N",      10, gemm_bad_argument("N", "N", 2, 3, 4, 2, 3, 1)},
  {"gemm ldb T",      10, gemm_bad_argument("N", "T", 2, 3, 4, 2, 2, 2)},
  {"gemm ldc",        13, gemm_bad_argument("N", "N", 2, 3, 4, 2, 4, 1)},
  {"symm good R",      0, symm_bad_argument("r", "l", 2, 3, 3, 2, 2)},
  {"symm side",        1, symm_bad_argument("U", "U", 2, 3, 2, 2, 2)},
  {"symm uplo",        2, symm_bad_argument("L", "R", -2, 3, 2, 2, 2)},
  {"symm m",           3, symm_bad_argument("L", "U", -2, -3, 2, 2, 2)},
  {"symm n",           4, symm_bad_argument("L", "U", 2, -3, 0, 2, 2)},
  {"symm lda L",       7, symm_bad_argument("L", "U", 2, 3, 1, 1, 2)},
  {"symm lda R",       7, symm_bad_argument("R", "U", 2, 3, 2, 2, 2)},
  {"symm ldb",         9, symm_bad_argument("L", "U", 2, 3, 2, 1, 1)},
  {"symm ldc",        12, symm_bad_argument("L", "U", 2, 3, 2, 2, 1)},
  {"real syrk C",      0, syrk_bad_argument(update_letters::kNtc, "U", "C", 3, 2, 2, 3)},
  {"complex syrk C",   2, syrk_bad_argument(update_letters::kNt, "U", "c", 3, 2, 2, 3)},
  {"complex syrk T",   0, syrk_bad_argument(update_letters::kNt, "U", "t", 3, 2, 2, 3)},
  {"herk T",           2, syrk_bad_argument(update_letters::kNc, "U", "T", 3, 2, 2, 3)},
  {"herk C",           0, syrk_bad_argument(update_letters::kNc, "U", "c", 3, 2, 2, 3)},
  {"syrk n",           3, syrk_bad_argument(update_letters::kNt, "U", "N", -3, -2, 2, 3)},
  {"syrk k",           4, syrk_bad_argument(update_letters::kNt, "U", "N", 3, -2, 0, 3)},
  {"syrk lda N",       7, syrk_bad_argument(update_letters::kNt, "U", "N", 3, 2, 2, 2)},
  {"syrk ldc",        10, syrk_bad_argument(update_letters::kNt, "U", "N", 3, 2, 3, 2)},
  {"her2k T",          2, syr2k_bad_argument(update_letters::kNc, "L", "T", 3, 2, 2, 2, 3)},
  {"syr2k lda T",      7, syr2k_bad_argument(update_letters::kNt, "L", "T", 3, 4, 3, 3, 3)},
  {"syr2k ldb",        9, syr2k_bad_argument(update_letters::kNt, "L", "N", 3, 2, 3, 2, 2)},
  {"syr2k ldc",       12, syr2k_bad_argument(update_letters::kNt, "L", "N", 3, 2, 3, 3, 2)},
  {"trmm good",        0, trmm_bad_argument("R", "L", "C", "N", 2, 3, 3, 2)},
  {"trmm side",        1, trmm_bad_argument("N", "X", "N", "N", 2, 3, 2, 2)},
  {"trmm uplo",        2, trmm_bad_argument("L", "X", "X", "N", 2, 3, 2, 2)},
  {"trmm transa",      3, trmm_bad_argument("L", "U", "X", "X", 2, 3, 2, 2)},
  {"trmm diag",        4, trmm_bad_argument("L", "U", "N", "X", -2, 3, 2, 2)},
  {"trmm m",           5, trmm_bad_argument("L", "U", "N", "N", -2, -3, 2, 2)},
  {"trmm n",           6, trmm_bad_argument("L", "U", "N", "N", 2, -3, 1, 2)},
  {"trmm lda L",       9, trmm_bad_argument("L", "U", "N", "N", 2, 3, 1, 1)},
  {"trmm lda R",       9, trmm_bad_argument("R", "U", "N", "N", 2, 3, 2, 2)},
  {"trmm ldb",        11, trmm_bad_argument("L", "U", "N", "N", 2, 3, 2, 1)},
};
// clang-format on

TEST(BadArgument, FirstPositionOfLevel2) {
  for (const check_case& c : kLevel2) EXPECT_EQ(c.want, c.got) << c.name;
}
TEST(BadArgument, FirstPositionOfLevel3) {
  for (const check_case& c : kLevel3) EXPECT_EQ(c.want, c.got) << c.name;
}

}  // namespace
}  // namespace qel::blas
