// SPDX-License-Identifier: BSD-3-Clause
#include "lapack/tuning/block_sizes.h"

#include <gtest/gtest.h>

#include "lapack/lapack.h"

namespace qel::lapack {
namespace {

constexpr int kClass6 = 6;

core_int getrf(core_int question, core_int n, core_int threads, int product_class = 0,
               std::string_view name = "DGETRF", std::string_view options = " ") {
  return tuned_block_size({question, name, options, n, n, threads, -1}, {0, product_class});
}

struct lu_row {
  core_int threads;
  int product_class;
  core_int n, block, group, lookahead;
};

TEST(block_sizes, threaded_lu) {
  const lu_row rows[] = {
      {2, 0, 900, 24, 4, 4},
      {4, 0, 901, 64, 3, 4},
      {3, 0, 3100, 64, 3, 4},
      {2, 0, 3101, 200, 2, 16},
      {4, 0, 3600, 200, 2, 16},
      {2, 0, 3601, 200, 3, 4},
      {5, 0, 700, 16, 2, 0},
      {8, 0, 701, 24, 2, 0},
      {8, 0, 1700, 24, 2, 0},
      {8, 0, 1701, 80, 2, 4},
      {6, 0, 2400, 80, 2, 4},
      {6, 0, 2401, 128, 1, 4},
      {7, 0, 2800, 128, 1, 4},
      {7, 0, 2801, 200, 1, 8},
      {8, 0, 10000, 200, 1, 8},
      {8, 0, 10001, 400, 2, 16},
      {9, 0, 1500, 16, 1, 0},
      {9, 0, 1501, 24, 1, 0},
      {9, 0, 2501, 32, 1, 0},
      {16, 0, 3501, 96, 1, 0},
      {16, 0, 4501, 120, 1, 0},
      {16, 0, 5501, 140, 1, 0},
      {16, 0, 6500, 140, 1, 0},
      {16, 0, 6501, 128, 1, 1000000},
      {16, 0, 8500, 128, 1, 1000000},
      {64, 0, 8501, 200, 1, 1000000},
      {64, 0, 20000, 200, 1, 1000000},
      {64, 0, 20001, 240, 1, 1000000},
      {64, 0, 35001, 300, 1, 1000000},
      // The class with a row of its own, and thread counts where it has none.
      {8, 6, 700, 16, 2, 0},
      {8, 6, 701, 24, 2, 0},
      {5, 6, 1700, 24, 2, 0},
      {5, 6, 1701, 80, 2, 1000000},
      {5, 6, 2401, 160, 1, 1000000},
      {5, 6, 4000, 160, 1, 1000000},
      {5, 6, 4001, 180, 1, 1000000},
      {5, 6, 10001, 200, 1, 1000000},
      {4, 6, 3101, 200, 2, 16},
      {9, 6, 6500, 140, 1, 0},
  };
  for (const lu_row& row : rows) {
    SCOPED_TRACE(testing::Message() << row.threads << " threads, n " << row.n << ", class "
                                    << row.product_class);
    EXPECT_EQ(getrf(kBlockSize, row.n, row.threads, row.product_class), row.block);
    EXPECT_EQ(getrf(kGroup, row.n, row.threads, row.product_class), row.group);
    EXPECT_EQ(getrf(kLookahead, row.n, row.threads, row.product_class), row.lookahead);
  }
}

TEST(block_sizes, lu_on_one_thread_goes_by_option) {
  struct {
    const char* options;
    core_int n, block;
  } const rows[] = {
      {" ", 5000, 1},    {"P", 8, 1},         {"p", 9, 8},           {"P", 32, 8},    {"P", 33, 32},
      {"P", 128, 32},    {"P", 129, 128},     {"S", 8, 1},           {"S", 32, 8},    {"S", 33, 32},
      {"S", 129, 128},   {"S", 256, 128},     {"S", 257, 256},       {"S", 512, 256}, {"S", 513, 512},
      {"s", 3000, 2048}, {"S", 65537, 32768}, {"S", 1 << 20, 32768},
  };
  for (const core_int threads : {-1, 0, 1}) {
    for (const auto& row : rows) {
      EXPECT_EQ(getrf(kBlockSize, row.n, threads, 0, "DGETRF", row.options), row.block)
          << row.options << ' ' << row.n;
    }
    for (const char* other : {"SGETRF", "cgetrf", "ZGETRF"}) {
      EXPECT_EQ(getrf(kBlockSize, 5000, threads, 0, other, "P"), 64);
    }
  }
}

TEST(block_sizes, lu_crossover_has_one_exception) {
  EXPECT_EQ(getrf(kCrossover, 5000, 8), 4000);
  EXPECT_EQ(getrf(kCrossover, 2801, 8), 4000);
  EXPECT_EQ(getrf(kCrossover, 2800, 8), 64);
  EXPECT_EQ(getrf(kCrossover, 5000, 7), 64);
  EXPECT_EQ(getrf(kCrossover, 5000, 8, kClass6), 64);
  EXPECT_EQ(getrf(kCrossover, 5000, 8, 0, "ZGETRF"), 64);
}

TEST(block_sizes, cholesky) {
  const auto block = [](core_int n, core_int threads, const char* uplo = "L", core_int n3 = -1) {
    return tuned_block_size({kBlockSize, "DPOTRF", uplo, n, threads, n3, -1}, {});
  };
  const core_int one_thread[][2] = {{128, 128},  {129, 24},   {450, 24},   {451, 32},   {700, 32},
                                    {701, 56},   {901, 96},   {1051, 128}, {1401, 192}, {1800, 192},
                                    {1801, 256}, {2001, 384}, {3000, 384}, {3001, 512}};
  for (const auto& [n, expected] : one_thread) {
    EXPECT_EQ(block(n, 1), expected) << n;
    EXPECT_EQ(block(n, -1), expected) << n;
  }
  struct {
    core_int n, threads, block;
  } const rows[] = {{100, 4, 128},     // small
                    {500, 2, 48},      // 500 * 0.074 + 16 = 53
                    {129, 32, 16},     // 129 * 0.014 + 16 = 17.8
                    {1000, 4, 80},     // 86
                    {1000, 40, 24},    // as 32 threads: 30
                    {4000, 2, 256},    // 312
                    {10000, 2, 512},   // 756
                    {10000, 8, 512},   // 636
                    {20000, 9, 256}};  // 1216
  for (const auto& row : rows) EXPECT_EQ(block(row.n, row.threads), row.block) << row.n << ' ' << row.threads;
  EXPECT_EQ(block(700, 4, "L", kAskTaskGrain), 2);
  EXPECT_EQ(block(700, 4, "U", kAskTaskGrain), 700);
}

TEST(block_sizes, answers_for_other_names) {
  struct {
    const char* name;
    core_int block, least, crossover;
  } const rows[] = {
      {"DGEQRF", 32, 2, 128},
      {"ZGELQF", 32, 2, 128},
      {"DGEHRD", 32, 2, 128},
      {"SGEBRD", 32, 2, 128},
      {"DGETRI", 64, 2, 0},
      {"DSYTRF", 64, 8, 0},
      {"ZSYTRF", 64, 8, 0},
      {"ZHETRF", 64, 2, 0},
      {"DSYTRD", 32, 2, 32},
      {"ZHETRD", 32, 2, 32},
      {"ZSYTRD", 1, 2, 0},
      {"DSYGST", 64, 2, 0},
      {"DORGQR", 32, 2, 128},
      {"ZUNGQR", 32, 2, 128},
      {"DORMQR", 32, 2, 0},
      {"ZORMQR", 1, 2, 0},
      {"DTRTRI", 64, 2, 0},
      {"DLAUUM", 64, 2, 0},
      {"DTREVC", 64, 2, 0},
      {"DSTEBZ", 1, 2, 0},
      {"DGGHD3", 32, 2, 128},
      {"dgeqrf", 32, 2, 128},
      {"DSYTRF_AA_2STAGE", 192, 8, 0},
      {"DLAORHR_GETRFNP", 32, 2, 0},
      {"DPPTRF", 1, 2, 0},
      {"XGETRF", 1, 1, 1},
      {"", 1, 1, 1},
      {"D", 1, 2, 0},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    EXPECT_EQ(tuned_block_size({kBlockSize, row.name, " ", 300, 300, -1, -1}, {}), row.block);
    EXPECT_EQ(tuned_block_size({kLeastBlockSize, row.name, " ", 300, 300, -1, -1}, {}), row.least);
    EXPECT_EQ(tuned_block_size({kCrossover, row.name, " ", 300, 300, -1, -1}, {}), row.crossover);
  }
  const auto banded = [](const char* name, core_int n2, core_int n4) {
    return tuned_block_size({kBlockSize, name, " ", 300, n2, -1, n4}, {});
  };
  EXPECT_EQ(banded("DGBTRF", 0, 64), 1);
  EXPECT_EQ(banded("DGBTRF", 0, 65), 32);
  EXPECT_EQ(banded("ZPBTRF", 64, 0), 1);
  EXPECT_EQ(banded("ZPBTRF", 65, 0), 32);

  const struct {
    const char* name;
    core_int n1, n2, n3, block;
  } by_shape[] = {
      {"DGEQR", 300, 300, 1, 300},   {"DGEQR", 8192, 100, 1, 8192},   {"DGEQR", 9000, 100, 1, 327},
      {"DGEQR", 300, 300, 2, 1},     {"ZGELQ", 9000, 100, 2, 327},    {"ZGELQ", 300, 300, 1, 1},
      {"DTRSYL", 200, 3000, -1, 48}, {"DTRSYL", 1000, 1001, -1, 160}, {"DTRSYL", 3000, 3000, -1, 240},
      {"ZTRSYL", 200, 300, -1, 24},  {"ZTRSYL", 700, 900, -1, 56},    {"ZTRSYL", 3000, 3000, -1, 80},
  };
  for (const auto& row : by_shape) {
    EXPECT_EQ(tuned_block_size({kBlockSize, row.name, " ", row.n1, row.n2, row.n3, -1}, {}), row.block)
        << row.name << ' ' << row.n1;
  }
}

TEST(block_sizes, constants) {
  const auto answer = [](core_int question, const char* name = "DGESDD", const char* options = " ") {
    return tuned_block_size({question, name, options, 100, 401, 8, -1}, {3, 0});
  };
  const core_int rows[][2] = {{4, 6},           {5, 2},          {6, 160}, {7, 1},   {8, 50},
                              {9, 25},          {10, 1},         {11, 1},  {17, 1},  {18, 0},
                              {19, 3},          {0, -1},         {20, -1}, {-5, -1}, {12, kPlainRule},
                              {13, kPlainRule}, {16, kPlainRule}};
  for (const auto& [question, expected] : rows) EXPECT_EQ(answer(question), expected) << question;
  EXPECT_EQ(answer(19, "XGESDD"), 1);
  EXPECT_EQ(answer(12, "DPBTRF"), 16);
  EXPECT_EQ(answer(12, "DGEQRF"), 16);
  const core_int widths[][2] = {{400, 24}, {401, 32},  {551, 48},  {800, 48},
                                {801, 64}, {1351, 96}, {1901, 128}};
  for (const auto& [n, expected] : widths) {
    EXPECT_EQ(tuned_block_size({12, "DGEQRF", "P", n, n, -1, -1}, {}), expected) << n;
  }
}

TEST(block_sizes, plain_lapack_gets_the_rule_for_qr_iterations) {
  const core_int crossover = 12, shifts = 15, n = 200, low = 1, lwork = 600;
  EXPECT_EQ(core::qel_core_ilaenv_(&crossover, "DHSEQR", "SV", &n, &low, &n, &lwork, 6, 2), 75);
  EXPECT_EQ(core::qel_core_ilaenv_(&shifts, "DHSEQR", "SV", &n, &low, &n, &lwork, 6, 2), 24);
}

}  // namespace
}  // namespace qel::lapack
