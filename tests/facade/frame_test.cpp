// SPDX-License-Identifier: BSD-3-Clause
// Arrays, data blocks, complex numbers and the frame's helpers.
#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <stdexcept>

#include "tavik/kernel/dot_net_blas.h"

namespace Tavik {
namespace {

using Core::Array;
using Core::DoubleComplex;
using Kernel::DotNetBlas;

TEST(Frame, AdjustsOnlyNegativeStrides) {
  const struct {
    int n, inc, offset, want;
  } cases[] = {{4, -2, 10, 4}, {0, -2, 10, 12},  {5, 0, 7, 7},        {5, 3, 7, 7},
               {1, -9, 7, 7},  {-1, -2, 10, 14}, {INT_MAX, -2, 0, 4}, {2, INT_MIN, 0, INT_MIN}};
  for (const auto& c : cases) {
    EXPECT_EQ(DotNetBlas::AdjustVectorOffset(c.n, c.inc, c.offset), c.want) << c.n << ' ' << c.inc;
  }
}

TEST(Frame, CompactMeansColumnMajorWithoutGaps) {
  const struct {
    int rows, row_stride, col_stride;
    bool want;
  } cases[] = {{1, 1, 1, true},  {4, 1, 4, true}, {4, 1, 5, false},
               {4, 4, 1, false}, {0, 1, 0, true}, {4, -1, 4, false}};
  for (const auto& c : cases)
    EXPECT_EQ(DotNetBlas::IsCompactStride(c.rows, c.row_stride, c.col_stride), c.want);
}

TEST(Frame, ShiftsIndicesInSharedStorage) {
  const Array<int> indices{0, 5, -3};
  const Array<int> same_storage = indices;
  DotNetBlas::AdjustIndicesUp(indices);
  EXPECT_EQ(same_storage[1], 6);
  EXPECT_EQ(same_storage[2], -2);
  DotNetBlas::AdjustIndicesDown(indices);
  DotNetBlas::AdjustIndicesDown(indices);
  EXPECT_EQ(same_storage[0], -1);
  DotNetBlas::AdjustIndicesUp(Array<int>());
}

TEST(Frame, TransposesSizes) {
  int rows = 1, cols = 2, row_stride = 3, col_stride = 4;
  DotNetBlas::TransposeSizes(rows, cols, row_stride, col_stride);
  EXPECT_EQ(rows, 2);
  EXPECT_EQ(cols, 1);
  EXPECT_EQ(row_stride, 4);
  EXPECT_EQ(col_stride, 3);
}

TEST(Arrays, CheckEveryAccess) {
  const Array<double> array{1, 2, 3};
  EXPECT_THROW(array[3], std::out_of_range);
  EXPECT_THROW(array[-1], std::out_of_range);
  EXPECT_THROW(array[INT_MIN], std::out_of_range);
  EXPECT_THROW(Array<double>()[0], std::out_of_range);
  EXPECT_THROW(Array<double>(-1), std::length_error);
}

TEST(Arrays, WrapTheCallersMemory) {
  double memory[] = {1, 2};
  Array<double> array = Array<double>::Around(memory, 2);
  array[1] = 7;
  EXPECT_EQ(memory[1], 7);
  EXPECT_THROW(array[2], std::out_of_range);
}

TEST(Complex, DividesWithoutOverflow) {
  const DoubleComplex huge(1e300, 1e300);
  EXPECT_EQ(huge / huge, DoubleComplex(1, 0));
  EXPECT_EQ(DoubleComplex(4, 2) / DoubleComplex(0, 2), DoubleComplex(1, -2));
  EXPECT_EQ(DoubleComplex(-5, 10) / DoubleComplex(1, 2), DoubleComplex(3, 4));
  EXPECT_EQ(DoubleComplex(1, 2) * 3.0 - 1.0, DoubleComplex(2, 6));
}

}  // namespace
}  // namespace Tavik
