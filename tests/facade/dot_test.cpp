// SPDX-License-Identifier: BSD-3-Clause
// DotNetBlas::dot from the caller's blocks to the result: strides of every sign, views with offsets, the
// four element types. Data are small integers, so every sum is exact in any order.
#include <gtest/gtest.h>

#include <stdexcept>

#include "tavik/kernel/dot_net_blas.h"
#include "tests/support/count_allocations.h"

namespace Tavik {
namespace test = qel::test;
namespace {

using Core::Array;
using Core::DataBlock;

template <class T>
T number(int k) {
  return static_cast<T>(k % 7 - 3);
}
template <>
Core::DoubleComplex number(int k) {
  return {number<double>(k), number<double>(k + 2)};
}
template <>
Core::FloatComplex number(int k) {
  return {number<float>(k), number<float>(k + 2)};
}

template <class T>
class Dot : public testing::Test {
 protected:
  static Array<T> numbers(int length, int first) {
    Array<T> array(length);
    for (int i = 0; i < length; ++i) array[i] = number<T>(first + i);
    return array;
  }
  Kernel::DotNetBlas blas;
};
using Elements = testing::Types<double, float, Core::DoubleComplex, Core::FloatComplex>;
TYPED_TEST_SUITE(Dot, Elements);

TYPED_TEST(Dot, FollowsStridesOfEverySign) {
  using T = TypeParam;
  const int length = 400;
  const Array<T> x = this->numbers(length, 0), y = this->numbers(length, 11);
  for (const int n : {0, 1, 2, 3, 4, 5, 8, 17, 33, 65}) {
    for (const int incx : {-3, -2, -1, 0, 1, 2, 3}) {
      for (const int incy : {-3, -1, 0, 1, 2}) {
        for (const int offset : {198, 199}) {
          T want(0);
          for (int k = 0; k < n; ++k) want = want + x[offset + k * incx] * y[200 + k * incy];
          EXPECT_EQ(this->blas.dot(n, DataBlock<T>{x, offset}, incx, DataBlock<T>{y, 200}, incy), want)
              << n << " strides " << incx << ' ' << incy << " offset " << offset;
        }
      }
    }
  }
}

TYPED_TEST(Dot, BlocksMayShareOneArray) {
  using T = TypeParam;
  const Array<T> data = this->numbers(20, 5);
  T want(0);
  for (int k = 0; k < 10; ++k) want = want + data[19 - k] * data[k];
  EXPECT_EQ(this->blas.dot(10, DataBlock<T>{data, 19}, -1, DataBlock<T>{data, 0}, 1), want);
}

TYPED_TEST(Dot, ThrowsBeforeTheCallForAnIndexOutsideTheArray) {
  using T = TypeParam;
  const Array<T> data = this->numbers(10, 0);
  const DataBlock<T> good{data, 0}, empty{}, past{data, 10}, negative{data, -1}, last{data, 9};
  EXPECT_THROW(this->blas.dot(0, empty, 1, good, 1), std::out_of_range);
  EXPECT_THROW(this->blas.dot(1, past, 1, good, 1), std::out_of_range);
  EXPECT_THROW(this->blas.dot(1, good, 1, negative, 1), std::out_of_range);
  EXPECT_THROW(this->blas.dot(2, good, -1, good, 1), std::out_of_range) << "the lowest address is at -1";
  // The adjustment is made for n = 0 too, and then moves up by one stride.
  EXPECT_THROW(this->blas.dot(0, last, -1, good, 1), std::out_of_range);
  EXPECT_EQ(this->blas.dot(0, good, -1, good, 1), T(0));
  EXPECT_EQ(this->blas.dot(-5, good, 1, good, 1), T(0));
}

TYPED_TEST(Dot, AllocatesNothing) {
  using T = TypeParam;
  const DataBlock<T> x{this->numbers(100, 0), 0}, y{this->numbers(100, 3), 0};
  this->blas.dot(100, x, 1, y, 1);
  const long before = test::allocation_count();
  this->blas.dot(100, x, 1, y, 1);
  this->blas.dot(50, x, 2, {y.Data, 99}, -1);
  EXPECT_EQ(test::allocation_count(), before);
}

TEST(DotNetBlas, ServesThroughItsInterface) {
  Kernel::DotNetBlas blas;
  Core::ITavikKernel& kernel = blas;
  const Core::DoubleDataBlock x{{1, 2, 3}, 0};
  EXPECT_EQ(kernel.dot(3, x, 1, {x.Data, 2}, -1), 1 * 3 + 2 * 2 + 3 * 1);
}

}  // namespace
}  // namespace Tavik
