// SPDX-License-Identifier: BSD-3-Clause
// The sparse classes: where operands begin, which entry an overload reaches, null results, checked accesses.
#include <gtest/gtest.h>

#include "tavik/kernel/level_one_sparse_blas.h"
#include "tavik/kernel/level_two_sparse_blas.h"

namespace Tavik::Kernel {
namespace {

using namespace Core;

template <class T>
std::vector<T> values(const Array<T>& array) {
  std::vector<T> result;
  for (int i = 0; i < array.Length(); ++i) result.push_back(array[i]);
  return result;
}

template <class T>
class SparseFacade : public testing::Test {};
using element_types = testing::Types<double, DoubleComplex>;
TYPED_TEST_SUITE(SparseFacade, element_types);

TYPED_TEST(SparseFacade, CompressedVectors) {
  using T = TypeParam;
  LevelOneSparseBlas blas;
  const Array<int> indx{3, 1};
  const Array<T> x{T(2), T(5)}, y{T(100), T(10), T(20), T(30)};
  blas.axpyi(2, T(3), x, indx, y, 1);
  EXPECT_EQ(values(y), (std::vector<T>{100, 25, 20, 36}));
  EXPECT_EQ(blas.doti(2, x, indx, y, 1), T(2 * 36 + 5 * 25));
  EXPECT_EQ(blas.doti(2, x, indx, y, 0), T(2 * 20 + 5 * 100));
  const Array<T> gathered(2);
  blas.gthr(2, y, 1, gathered, indx);
  EXPECT_EQ(values(gathered), (std::vector<T>{36, 25}));
  blas.gthrz(2, y, 0, gathered, indx);
  EXPECT_EQ(values(gathered), (std::vector<T>{20, 100}));
  EXPECT_EQ(values(y), (std::vector<T>{0, 25, 0, 36}));
  blas.sctr(2, x, indx, y);
  EXPECT_EQ(values(y), (std::vector<T>{5, 25, 2, 36}));
  blas.scal(2, T(2), y, 2);
  EXPECT_EQ(values(y), (std::vector<T>{10, 25, 4, 36}));
  EXPECT_THROW(blas.gthr(2, y, 4, gathered, indx), std::out_of_range);
  EXPECT_THROW(blas.axpyi(0, T(3), Array<T>(), indx, y, 0), std::out_of_range);
}

TEST(SparseFacadeFloat, AxpyiAndScal) {
  LevelOneSparseBlas blas;
  const Array<float> x{2, 5}, y{1, 1, 1};
  blas.axpyi(2, 3.0f, x, {2, 1}, y, 1);
  EXPECT_EQ(values(y), (std::vector<float>{1, 16, 7}));
  blas.scal(3, 2.0f, y, 1);
  EXPECT_EQ(values(y), (std::vector<float>{2, 32, 14}));
}

// A = [1 2; 0 3], B = [4 0; 5 6].
template <class T>
struct two_by_two {
  Array<T> a{T(1), T(2), T(3)}, b{T(4), T(5), T(6)};
  Array<int> ja{1, 2, 2}, ia{1, 3, 4}, jb{1, 1, 2}, ib{1, 2, 4};
};

TYPED_TEST(SparseFacade, MatrixAndVector) {
  using T = TypeParam;
  LevelTwoSparseBlas blas;
  const two_by_two<T> m;
  const Array<T> x{T(9), T(10), T(20)}, y(2);
  blas.csrgemv('N', 2, m.a, m.ia, m.ja, {x, 1}, y);
  EXPECT_EQ(values(y), (std::vector<T>{50, 60}));
  blas.csrgemv('t', 2, m.a, m.ia, m.ja, {x, 1}, y);
  EXPECT_EQ(values(y), (std::vector<T>{10, 80}));
  // Columns from element 2 on, everything counted from 0.
  blas.csrmv('N', 2, 2, T(2), {'G', ' ', ' ', 'C'}, m.a, {7, 7, 0, 1, 1}, {0, 2, 3}, x, 2, T(1), y);
  EXPECT_EQ(values(y), (std::vector<T>{10 + 2 * (9 + 20), 80 + 2 * 30}));
  EXPECT_THROW(blas.csrgemv('N', 2, m.a, m.ia, m.ja, {x, 3}, y), std::out_of_range);
}

TYPED_TEST(SparseFacade, SparseAndDenseResults) {
  using T = TypeParam;
  LevelTwoSparseBlas blas;
  const two_by_two<T> m;
  const Array<T> c(4), none;
  const Array<int> jc(4), ic(3), no_columns;
  EXPECT_EQ(blas.csradd('N', 1, 0, 2, 2, m.a, m.ja, m.ia, T(10), m.b, m.jb, m.ib, none, no_columns, ic, 0),
            0);
  EXPECT_EQ(values(ic), (std::vector<int>{1, 3, 5}));
  EXPECT_EQ(blas.csradd('N', 2, 0, 2, 2, m.a, m.ja, m.ia, T(10), m.b, m.jb, m.ib, c, jc, ic, 0), 0);
  EXPECT_EQ(values(c), (std::vector<T>{41, 2, 50, 63}));
  EXPECT_EQ(blas.csradd('N', 0, 0, 2, 2, m.a, m.ja, m.ia, T(10), m.b, m.jb, m.ib, c, jc, ic, 3), 2);
  EXPECT_EQ(blas.csrmultcsr('N', 0, 0, 2, 2, 2, m.a, m.ja, m.ia, m.b, m.jb, m.ib, c, jc, ic, 4), 0);
  EXPECT_EQ(values(c), (std::vector<T>{14, 12, 15, 18}));
  EXPECT_EQ(blas.csrmultcsr('N', 1, 0, 2, 2, 2, m.a, m.ja, m.ia, m.b, m.jb, m.ib, none, no_columns, ic, 0),
            0);
  EXPECT_EQ(values(ic), (std::vector<int>{1, 3, 5}));
  blas.csrmultd('T', 2, 2, 2, m.a, m.ja, m.ia, m.b, m.jb, m.ib, c, 2);
  EXPECT_EQ(values(c), (std::vector<T>{4, 23, 0, 18}));
}

TEST(SparseFacadeDense, Conversion) {
  LevelTwoSparseBlas blas;
  const Array<double> dense{1, 2, 0, 3}, a(3), none;
  const Array<int> ja(3), ia(3), no_columns;
  EXPECT_EQ(blas.ddnscsr({0, 0, 1, 2, 0, 0}, 2, 2, dense, 2, none, no_columns, ia), 0);
  EXPECT_EQ(values(ia), (std::vector<int>{1, 3, 4}));
  EXPECT_EQ(blas.ddnscsr({0, 0, 1, 2, 2, 1}, 2, 2, dense, 2, a, ja, ia), 2);
  EXPECT_EQ(blas.ddnscsr({0, 0, 1, 2, 3, 1}, 2, 2, dense, 2, a, ja, ia), 0);
  EXPECT_EQ(values(a), (std::vector<double>{1, 2, 3}));
  EXPECT_EQ(values(ja), (std::vector<int>{1, 2, 2}));
}

}  // namespace
}  // namespace Tavik::Kernel
