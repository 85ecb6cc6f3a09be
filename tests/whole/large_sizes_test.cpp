// SPDX-License-Identifier: BSD-3-Clause
// Operands that span more than 2^31 elements, on mappings of which few pages are ever touched: results must
// be those of the same numbers side by side. Any product of sizes or strides formed in 32 bits would fault or
// miss.
#include <gtest/gtest.h>
#include <sys/mman.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <vector>

#include "qel/qel.h"

namespace qel::test {
namespace {

constexpr int kRows = 7, kColumns = 25;
constexpr int kApart = 100'000'008;  // times 24 columns: beyond 2^31 elements

/// Room for kColumns columns of complex numbers kApart apart; pages come when they are touched.
class wide_space {
 public:
  wide_space() {
    void* map =
        mmap(nullptr, kBytes, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    data_ = map == MAP_FAILED ? nullptr : static_cast<double*>(map);
  }
  ~wide_space() {
    if (data_ != nullptr) munmap(data_, kBytes);
  }
  wide_space(const wide_space&) = delete;
  wide_space& operator=(const wide_space&) = delete;
  double* data() const { return data_; }

 private:
  static constexpr size_t kBytes = 2 * sizeof(double) * kApart * kColumns;
  double* data_;
};

/// The same numbers side by side and apart. Element (i, j) stands in for element i + j * ld of either.
struct matrix {
  int rows, columns;
  size_t apart;
  std::vector<double> near;
  wide_space far;
  matrix(int rows_, int columns_, unsigned seed, size_t apart_ = kApart)
      : rows(rows_), columns(columns_), apart(apart_) {
    for (int k = 0; k < rows * columns; ++k) {
      seed = seed * 1664525u + 1013904223u;
      near.push_back(seed / 4294967296.0 - 0.5);
    }
    if (far.data() == nullptr) return;
    for (int j = 0; j < columns; ++j)
      std::memcpy(far.data() + size_t(j) * apart, &near[size_t(j) * size_t(rows)],
                  sizeof(double) * size_t(rows));
  }
  /// The largest difference of the two.
  double difference() const {
    double largest = 0;
    for (int j = 0; j < columns; ++j)
      for (int i = 0; i < rows; ++i) {
        const double d = near[size_t(i + j * rows)] - far.data()[size_t(j) * apart + size_t(i)];
        largest = std::max(largest, std::abs(d));
      }
    return largest;
  }
};

constexpr int one = 1, far_apart = kApart;
constexpr double plus = 1.25, minus = -0.5;

#define REQUIRE_SPACE(t) \
  if ((t).far.data() == nullptr) GTEST_SKIP() << "no address space"

TEST(LargeSizes, Vectors) {
  matrix x(1, kColumns, 1), y(1, kColumns, 2);
  REQUIRE_SPACE(y);
  const int n = kColumns;
  for (const int sign : {1, -1}) {
    const int near_step = sign, far_step = sign * kApart;
    daxpy(&n, &plus, x.near.data(), &one, y.near.data(), &near_step);
    daxpy(&n, &plus, x.far.data(), &far_apart, y.far.data(), &far_step);
    EXPECT_EQ(y.difference(), 0) << "axpy " << sign;
    EXPECT_NEAR(ddot(&n, x.near.data(), &one, y.near.data(), &near_step),
                ddot(&n, x.far.data(), &far_apart, y.far.data(), &far_step), 1e-14);
    dcopy(&n, x.near.data(), &one, y.near.data(), &near_step);
    dcopy(&n, x.far.data(), &far_apart, y.far.data(), &far_step);
    EXPECT_EQ(y.difference(), 0) << "copy " << sign;
  }
}

TEST(LargeSizes, ProductsAndSolutions) {
  matrix a(kRows, kColumns, 1), b(kColumns, kColumns, 2), c(kRows, kColumns, 3),
      square(kColumns, kColumns, 4);
  REQUIRE_SPACE(square);
  const int m = kRows, n = kColumns;
  std::vector<double> near_y(kColumns, 1), far_y(kColumns, 1);
  for (const char* trans : {"N", "T"}) {
    dgemv(trans, &m, &n, &plus, a.near.data(), &m, b.near.data(), &one, &minus, near_y.data(), &one);
    dgemv(trans, &m, &n, &plus, a.far.data(), &far_apart, b.far.data(), &one, &minus, far_y.data(), &one);
    for (int k = 0; k < n; ++k) EXPECT_NEAR(near_y[size_t(k)], far_y[size_t(k)], 1e-13) << trans;
    dgemm("N", trans, &m, &n, &n, &plus, a.near.data(), &m, b.near.data(), &n, &minus, c.near.data(), &m);
    dgemm("N", trans, &m, &n, &n, &plus, a.far.data(), &far_apart, b.far.data(), &far_apart, &minus,
          c.far.data(), &far_apart);
    EXPECT_LT(c.difference(), 1e-13) << "gemm " << trans;
  }
  for (int k = 0; k < n; ++k) {
    square.near[size_t(k * (n + 1))] += 4;
    square.far.data()[size_t(k) * (size_t{kApart} + 1)] += 4;
  }
  dtrsm("R", "U", "T", "N", &m, &n, &plus, square.near.data(), &n, c.near.data(), &m);
  dtrsm("R", "U", "T", "N", &m, &n, &plus, square.far.data(), &far_apart, c.far.data(), &far_apart);
  EXPECT_LT(c.difference(), 1e-13) << "trsm";

  std::vector<double> work(kColumns);
  for (const char* norm : {"M", "1", "I", "F"})
    EXPECT_NEAR(dlange(norm, &m, &n, a.near.data(), &m, work.data()),
                dlange(norm, &m, &n, a.far.data(), &far_apart, work.data()), 1e-13)
        << norm;

  std::vector<int> near_pivots(kColumns), far_pivots(kColumns);
  int near_info = -1, far_info = -1;
  dgetrf(&n, &n, square.near.data(), &n, near_pivots.data(), &near_info);
  dgetrf(&n, &n, square.far.data(), &far_apart, far_pivots.data(), &far_info);
  EXPECT_EQ(near_info, far_info);
  EXPECT_EQ(near_pivots, far_pivots);
  EXPECT_LT(square.difference(), 1e-13) << "getrf";
  dgetrs("T", &n, &n, square.near.data(), &n, near_pivots.data(), b.near.data(), &n, &near_info);
  dgetrs("T", &n, &n, square.far.data(), &far_apart, far_pivots.data(), b.far.data(), &far_apart, &far_info);
  EXPECT_LT(b.difference(), 1e-12) << "getrs";
}

TEST(LargeSizes, Transposition) {
  matrix a(kRows, kColumns, 1), b(kColumns, kRows, 2);
  REQUIRE_SPACE(b);
  QEL_Domatcopy('C', 'T', kRows, kColumns, plus, a.near.data(), kRows, b.near.data(), kColumns);
  QEL_Domatcopy('C', 'T', kRows, kColumns, plus, a.far.data(), kApart, b.far.data(), kApart);
  EXPECT_EQ(b.difference(), 0);
}

TEST(LargeSizes, Transforms) {
  constexpr int kLength = 8;
  // many short lines far apart; one line whose elements lie far apart
  for (const bool batch : {true, false}) {
    matrix data(batch ? 2 * kLength : 2, kColumns, 5, 2 * size_t{kApart});
    REQUIRE_SPACE(data);
    const auto compute = [&](double* at, int apart) {
      DFTI_DESCRIPTOR_HANDLE plan = nullptr;
      DftiCreateDescriptor(&plan, DFTI_DOUBLE, DFTI_COMPLEX, 1, batch ? kLength : kColumns);
      const int strides[] = {0, apart};
      if (batch) DftiSetValue(plan, DFTI_NUMBER_OF_TRANSFORMS, kColumns);
      if (batch) DftiSetValue(plan, DFTI_INPUT_DISTANCE, apart);
      if (!batch) DftiSetValue(plan, DFTI_INPUT_STRIDES, strides);
      if (!batch) DftiSetValue(plan, DFTI_OUTPUT_STRIDES, strides);
      EXPECT_EQ(DftiCommitDescriptor(plan), 0);
      EXPECT_EQ(DftiComputeForward(plan, at), 0);
      DftiFreeDescriptor(&plan);
    };
    compute(data.near.data(), batch ? kLength : 1);
    compute(data.far.data(), kApart);
    EXPECT_LT(data.difference(), 1e-14);
  }
}

TEST(LargeSizes, FactorsBeyondThirtyTwoBitsAreRefused) {
  // An arrow whose point comes first: elimination in this order fills the whole triangle, n^2 / 2 entries.
  constexpr int kOrder = 70'000;
  std::vector<double> a;
  std::vector<int> ia, ja, perm;
  for (int i = 0; i < kOrder; ++i) {
    ia.push_back(int(ja.size()) + 1);
    for (int j = i; j < (i == 0 ? kOrder : i + 1); ++j) {
      ja.push_back(j + 1);
      a.push_back(i == j ? 2 * kOrder : 1);
    }
    perm.push_back(i + 1);
  }
  ia.push_back(int(ja.size()) + 1);
  void* handle[64] = {};
  int iparm[64] = {}, error = 0, phase = 11;
  const int mtype = -2, n = kOrder, silent = 0;
  pardisoinit(handle, &mtype, iparm);
  iparm[4] = 1;  // in the given order
  pardiso(handle, &one, &one, &mtype, &phase, &n, a.data(), ia.data(), ja.data(), perm.data(), &one, iparm,
          &silent, nullptr, nullptr, &error);
  EXPECT_EQ(error, -8);
  phase = -1;
  pardiso(handle, &one, &one, &mtype, &phase, &n, nullptr, nullptr, nullptr, nullptr, &one, iparm, &silent,
          nullptr, nullptr, &error);
  EXPECT_EQ(error, 0);
}

}  // namespace
}  // namespace qel::test
