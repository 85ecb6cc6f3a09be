// SPDX-License-Identifier: BSD-3-Clause
// Vector and matrix operations of DotNetBlas over level 1 and in its own loops: every operation in every
// element type, strides of both signs, gaps, offsets, views; what is not an operand stays as it was.
#include <functional>

#include "tavik/kernel/matrix_dot_net_blas.h"
#include "tests/facade/support.h"
#include "tests/support/count_allocations.h"

namespace Tavik::test {
namespace {

constexpr int kLengths[] = {0, 1, 2, 5, 17};
Kernel::DotNetBlas blas;
Kernel::MatrixDotNetBlas matrices;

/// One operation over up to three vectors: which of them it writes, and with what.
template <class T>
struct vector_case {
  const char* name;
  int target;  // 0 x, 1 y, 2 z
  std::function<void(int, const vector_operand<T>&, const vector_operand<T>&, const vector_operand<T>&)> run;
  std::function<wide(wide, wide)> want;  // of x and y
  double tolerance = 0;
};

template <class T>
void expect_vector_cases(const std::vector<vector_case<T>>& cases) {
  for (const auto& c : cases) {
    for (const int n : kLengths) {
      for (const placing px : kPlacings) {
        for (const placing py : {kPlacings[0], kPlacings[3]}) {
          const vector_operand<T> x(px, 1), y(py, 2), z(kPlacings[1], 3);
          c.run(n, x, y, z);
          const vector_operand<T>* operands[] = {&x, &y, &z};
          for (int i = 0; i < 3; ++i) {
            if (i == c.target) {
              operands[i]->expect(
                  n, [&](int k) { return c.want(x.was(k), y.was(k)); }, c.tolerance, c.name);
            } else {
              operands[i]->expect_unchanged(c.name);
            }
            if (testing::Test::HasFatalFailure()) return;
          }
        }
      }
    }
  }
}

template <class T>
class Vectors : public testing::Test {};
TYPED_TEST_SUITE(Vectors, AllTypes);

#define X x.block, x.inc
#define Y y.block, y.inc
#define Z z.block, z.inc
#define RUN(call)                                                            \
  [&](int n, [[maybe_unused]] const auto& x, [[maybe_unused]] const auto& y, \
      [[maybe_unused]] const auto& z) {                                      \
    (void)n;                                                                 \
    call;                                                                    \
  }

TYPED_TEST(Vectors, OfAllTypesGetTheRightElements) {
  using T = TypeParam;
  const T a = narrowed<T>({2.5, -1.5});
  const wide wa = widened(a);
  const double rounding = 4 * kEpsilon<T>;
  expect_vector_cases<T>({
      {"copy", 1, RUN(blas.copy(n, X, Y)), [](wide x, wide) { return x; }},
      {"copy with offsets", 1,
       RUN(blas.copy(n, {x.block.Data, x.block.Offset + 1}, -1, x.inc, {y.block.Data, y.block.Offset - 2}, 2,
                     y.inc)),
       [](wide x, wide) { return x; }},
      {"axpy", 1, RUN(blas.axpy(n, a, X, Y)), [=](wide x, wide y) { return y + wa * x; }},
      {"Negate", 0, RUN(blas.Negate(n, X)), [](wide x, wide) { return -x; }},
      {"Negate to", 1, RUN(blas.Negate(n, X, Y)), [](wide x, wide) { return -x; }},
      {"Add", 1, RUN(blas.Add(n, X, Y)), [](wide x, wide y) { return x + y; }},
      {"Add to", 2, RUN(blas.Add(n, X, Y, Z)), [](wide x, wide y) { return x + y; }},
      {"Subtract", 0, RUN(blas.Subtract(n, X, Y)), [](wide x, wide y) { return x - y; }},
      {"Subtract to", 2, RUN(blas.Subtract(n, X, Y, Z)), [](wide x, wide y) { return x - y; }},
      {"Multiply to", 2, RUN(blas.Multiply(n, X, Y, Z)), [](wide x, wide y) { return x * y; }},
      {"Divide", 0, RUN(blas.Divide(n, X, Y)), [](wide x, wide y) { return x / y; }, rounding},
      {"Divide to", 2, RUN(blas.Divide(n, X, Y, Z)), [](wide x, wide y) { return x / y; }, rounding},
  });
  if constexpr (!std::is_same_v<T, float>) {
    expect_vector_cases<T>(
        {{"Multiply", 1, RUN(blas.Multiply(n, X, Y)), [](wide x, wide y) { return x * y; }}});
  }
  if constexpr (is_complex<T>) {
    const auto real = static_cast<real_of<T>>(2.5);
    expect_vector_cases<T>({
        {"scal", 0, RUN(blas.scal(n, real, X)), [](wide x, wide) { return 2.5 * x; }},
        {"Multiply by", 0, RUN(blas.Multiply(n, a, X)), [=](wide x, wide) { return wa * x; }},
        {"Multiply by, to", 1, RUN(blas.Multiply(n, a, X, Y)), [=](wide x, wide) { return wa * x; }},
        {"Divide by complex", 0, RUN(blas.Divide(n, a, X)), [=](wide x, wide) { return x / wa; }, rounding},
        {"Divide real by", 0, RUN(blas.Divide(n, real, X)), [](wide x, wide) { return 2.5 / x; }, rounding},
    });
  } else {
    expect_vector_cases<T>({
        {"Scale", 0, RUN(blas.Scale(n, a, X)), [=](wide x, wide) { return wa * x; }},
        {"Multiply by", 0, RUN(blas.Multiply(n, a, X)), [=](wide x, wide) { return wa * x; }},
        {"Multiply by, to", 1, RUN(blas.Multiply(n, a, X, Y)), [=](wide x, wide) { return wa * x; }},
        {"Increment", 0, RUN(blas.Increment(n, X)), [](wide x, wide) { return x + 1.0; }},
        {"Decrement", 0, RUN(blas.Decrement(n, X)), [](wide x, wide) { return x - 1.0; }},
    });
  }
}

TYPED_TEST(Vectors, GiveTheirProductsSumsAndExtremes) {
  using T = TypeParam;
  for (const int n : {1, 2, 5, 17}) {
    for (const placing px : kPlacings) {
      const vector_operand<T> x(px, 5), y(kPlacings[3], 6);
      wide dot = 0, conjugated = 0, sum = 0;
      double absolute = 0;
      int largest = 0, smallest = 0;
      const auto size = [&x](int k) { return std::abs(x.was(k).real()) + std::abs(x.was(k).imag()); };
      for (int k = 0; k < n; ++k) {
        dot += x.was(k) * y.was(k);
        conjugated += std::conj(x.was(k)) * y.was(k);
        sum += x.was(k);
        absolute += size(k);
        if (size(k) > size(largest)) largest = k;
        if (size(k) < size(smallest)) smallest = k;
      }
      EXPECT_EQ(widened(blas.dot(n, X, Y)), dot);
      EXPECT_EQ(widened(blas.Sum(n, X)), sum);
      if (x.inc < 0) continue;  // the entries below count from the lowest address, or want positive strides
      EXPECT_EQ(blas.asum(n, X), absolute);
      EXPECT_EQ(blas.amax(n, X), largest);
      EXPECT_EQ(blas.amin(n, X), smallest);
      if constexpr (is_complex<T>) {
        EXPECT_EQ(widened(blas.conjdot(n, X, Y)), conjugated);
      }
    }
  }
  const vector_operand<T> x(kPlacings[0], 5);
  EXPECT_EQ(blas.amax(0, X), -1);
  EXPECT_EQ(blas.amin(0, X), -1);
  EXPECT_EQ(blas.asum(0, X), 0);
  EXPECT_EQ(widened(blas.dot(0, X, X)), wide());
}

TYPED_TEST(Vectors, RepeatAnElementWithStrideZero) {
  using T = TypeParam;
  const int n = 5;
  const vector_operand<T> x({100, 0}, 5), y(kPlacings[2], 6);
  const wide v = x.was(0);
  blas.copy(n, X, Y);
  y.expect(
      n, [=](int) { return v; }, 0, "copy");
  blas.Multiply(n, X, Y, Y);
  y.expect(
      n, [=](int) { return v * v; }, 0, "Multiply");
  EXPECT_EQ(widened(blas.Sum(n, X)), 5.0 * v);
  EXPECT_EQ(widened(blas.dot(n, X, X)), 5.0 * v * v);
  blas.Subtract(n, X, Y, X);  // copied onto itself, then one after the other is taken away
  EXPECT_EQ(x.is(0), v - 5.0 * v * v);
}

TEST(PlainArrays, StartAtTheirFirstElement) {
  const Array<double> x{-3, 4, 0, -4};
  const Array<DoubleComplex> z{{1, 1}, {-3, 4}, {0, 1}};
  EXPECT_EQ(blas.amax(4, x), 1);
  EXPECT_EQ(blas.amin(4, x), 2);
  EXPECT_EQ(blas.amax(3, z), 1);
  EXPECT_EQ(blas.amin(3, z), 2);
  EXPECT_EQ(blas.asum(2, x), 7);
  EXPECT_EQ(blas.asum(3, z), 10);
  EXPECT_EQ(blas.nrm2(2, x), 5);
  EXPECT_NEAR(blas.nrm2(3, z), std::sqrt(28.0), 1e-15);
  EXPECT_THROW(blas.amax(1, Array<double>()), std::out_of_range);
}

TYPED_TEST(Vectors, LookAtTheirBlocksFirst) {
  using T = TypeParam;
  const DataBlock<T> good{Array<T>(10), 0}, past{good.Data, 10}, high{good.Data, 8};
  EXPECT_THROW(blas.copy(1, past, 1, good, 1), std::out_of_range);
  EXPECT_THROW(blas.Multiply(3, good, 1, good, 1, high, 1), std::out_of_range)
      << "its own loops test the end, too";
  EXPECT_THROW(blas.Sum(3, good, -1), std::out_of_range);
  // Nothing to do: not looked at, but by the one form without a test of its own.
  blas.copy(0, past, 1, past, 1);
  if constexpr (std::is_same_v<T, float>) {
    EXPECT_THROW(blas.axpy(0, T(1), past, 1, past, 1), std::out_of_range);
  } else {
    blas.axpy(0, T(1), past, 1, past, 1);
    blas.Add(0, past, 1, past, 1, past, 1);
  }
}

/// One operation over up to three matrices.
template <class T>
struct matrix_case {
  const char* name;
  int target;
  std::function<void(int, int, const matrix_operand<T>&, const matrix_operand<T>&, const matrix_operand<T>&)>
      run;
  std::function<wide(wide, wide)> want;
  double tolerance = 0;
};
template <class T>
void expect_matrix_cases(const std::vector<matrix_case<T>>& cases) {
  for (const auto& c : cases) {
    for (const auto& [rows, cols] : {std::pair{5, 4}, {1, 1}, {3, 0}, {2, -1}, {5, 1}}) {
      for (const matrix_placing pa : kMatrixPlacings) {
        const matrix_operand<T> a(pa, 7), b(kMatrixPlacings[4], 8), d(kMatrixPlacings[2], 9);
        c.run(rows, cols, a, b, d);
        const matrix_operand<T>* operands[] = {&a, &b, &d};
        for (int i = 0; i < 3; ++i) {
          if (i == c.target) {
            operands[i]->expect(
                rows, cols, [&](int r, int s) { return c.want(a.was(r, s), b.was(r, s)); }, c.tolerance,
                c.name);
          } else {
            operands[i]->expect_unchanged(c.name);
          }
          if (testing::Test::HasFatalFailure()) return;
        }
      }
    }
  }
}

#define A a.block, a.row_stride, a.col_stride
#define B b.block, b.row_stride, b.col_stride
#define C d.block, d.row_stride, d.col_stride
#define RUN_ALL(call) \
  [&](int m, int n, const auto& a, [[maybe_unused]] const auto& b, [[maybe_unused]] const auto& d) { call; }

TYPED_TEST(Vectors, OfMatricesColumnByColumn) {
  using T = TypeParam;
  const T s = narrowed<T>({2.5, -1.5});
  const wide ws = widened(s);
  const double rounding = 4 * kEpsilon<T>;
  expect_matrix_cases<T>({
      {"Scale", 0, RUN_ALL(blas.Scale(m, n, s, A)), [=](wide a, wide) { return ws * a; }},
      {"Scale to", 1, RUN_ALL(blas.Scale(m, n, s, A, B)), [=](wide a, wide) { return ws * a; }},
      {"Add", 1, RUN_ALL(blas.Add(m, n, A, B)), [](wide a, wide b) { return a + b; }},
      {"Add to", 2, RUN_ALL(blas.Add(m, n, A, B, C)), [](wide a, wide b) { return a + b; }},
      {"Subtract", 0, RUN_ALL(blas.Subtract(m, n, A, B)), [](wide a, wide b) { return a - b; }},
      {"Subtract to", 2, RUN_ALL(blas.Subtract(m, n, A, B, C)), [](wide a, wide b) { return a - b; }},
      {"Copy", 1, RUN_ALL(blas.Copy(m, n, A, B)), [](wide a, wide) { return a; }},
      {"Multiply", 1, RUN_ALL(blas.Multiply(m, n, A, B)), [](wide a, wide b) { return a * b; }},
      {"Multiply to", 2, RUN_ALL(blas.Multiply(m, n, A, B, C)), [](wide a, wide b) { return a * b; }},
      {"Divide", 0, RUN_ALL(blas.Divide(m, n, A, B)), [](wide a, wide b) { return a / b; }, rounding},
      {"Divide to", 2, RUN_ALL(blas.Divide(m, n, A, B, C)), [](wide a, wide b) { return a / b; }, rounding},
  });
  if constexpr (!is_complex<T>) {
    expect_matrix_cases<T>({
        {"Increment", 0, RUN_ALL(blas.Increment(m, n, A)), [](wide a, wide) { return a + 1.0; }},
        {"Decrement", 0, RUN_ALL(blas.Decrement(m, n, A)), [](wide a, wide) { return a - 1.0; }},
    });
  }
  if constexpr (std::is_same_v<T, double>) {
    expect_matrix_cases<T>({
        {"SafeDivide", 0, RUN_ALL(blas.SafeDivide(m, n, A, B)), [](wide a, wide b) { return a / b; },
         rounding},
        {"SafeDivide to", 2, RUN_ALL(blas.SafeDivide(m, n, A, B, C)), [](wide a, wide b) { return a / b; },
         rounding},
        {"MakeNonNegative", 0, RUN_ALL(blas.MakeNonNegative(m, n, A)),
         [](wide a, wide) { return a.real() < 0 ? 0 : a; }},
    });
  }
}

TYPED_TEST(Vectors, CopyAPartOfAMatrix) {
  using T = TypeParam;
  const matrix_operand<T> a({40, 1, 10}, 1), b({30, -1, 9}, 2);
  blas.Copy(3, 2, a.block, 2, 20, 1, 10, b.block, 4, 9, -1, 9);
  b.expect(
      0, 0, [](int, int) { return wide(); }, 1e300, "");
  for (int j = 0; j < 2; ++j) {
    for (int i = 0; i < 3; ++i) EXPECT_EQ(widened(b.block.Data[30 + 13 + 9 * j - i]), a.was(i + 2, j + 2));
  }
}

TEST(SafeDivide, GuardsAgainstAnExactZero) {
  const Array<double> a{3, 0, 6}, b{0, -0.0, 2}, c(3);
  blas.SafeDivide(3, a, b, c);
  EXPECT_EQ(values_of(c), (std::vector<double>{3e9, 0, 3}));
  try {
    blas.SafeDivide(4, a, b, c);
    ADD_FAILURE() << "4 elements of 3";
  } catch (const ArgumentException& e) {
    EXPECT_STREQ(e.what(), "Arrays do not have enough elements.");
  }
  EXPECT_THROW(blas.SafeDivide(3, a, Array<double>{1, 1}, c), ArgumentException);
  EXPECT_THROW(blas.SafeDivide(3, a, b, Array<double>{1, 1}), ArgumentException);
}

TEST(FastDivide, IsVectorMathFromTheBlocksOffsets) {
  const DoubleDataBlock a{exact_numbers<double>(40, 1), 3}, b{exact_numbers<double>(40, 2), 5},
      c{Array<double>(40), 1};
  blas.FastDivide(30, a, b, c);
  for (int i = 0; i < 30; ++i) EXPECT_EQ(c.Data[1 + i], a.Data[3 + i] / b.Data[5 + i]);
  EXPECT_EQ(c.Data[0], 0);
  EXPECT_EQ(c.Data[31], 0);
}

TEST(UniformRandomNumbers, DependOnTheSeedAlone) {
  const Array<double> first(600), again(600), other(600);
  blas.UniformRandomNumbers(17, -2, 3, first);
  blas.UniformRandomNumbers(17, -2, 3, again);
  blas.UniformRandomNumbers(18, -2, 3, other);
  EXPECT_EQ(values_of(first), values_of(again));
  EXPECT_NE(values_of(first), values_of(other));
  for (const double v : values_of(first)) EXPECT_TRUE(v >= -2 && v < 3);
  testing::internal::CaptureStdout();
  blas.UniformRandomNumbers(17, 3, 3, again);
  EXPECT_EQ(testing::internal::GetCapturedStdout(),
            "\nQEL ERROR: Parameter 5 was incorrect on entry to vdRngUniform\n");
  EXPECT_EQ(values_of(first), values_of(again));
  blas.QelFreeBuffers();
}

TEST(Division, OfComplexNumbersRunsInTwoDirections) {
  const DoubleComplexDataBlock x{{{1, 1}}, 0};
  blas.Divide(1, 2.0, x, 1);
  EXPECT_EQ(x.Data[0], DoubleComplex(1, -1)) << "2 / x";
  blas.Divide(1, DoubleComplex(2, 0), x, 1);
  EXPECT_EQ(x.Data[0], DoubleComplex(0.5, -0.5)) << "x / 2";
}

TYPED_TEST(Vectors, TakeNoMemory) {
  using T = TypeParam;
  const vector_operand<T> x(kPlacings[0], 1), y(kPlacings[3], 2), z(kPlacings[1], 3);
  const matrix_operand<T> a(kMatrixPlacings[0], 4), b(kMatrixPlacings[0], 5), d(kMatrixPlacings[2], 6);
  const T s(2);
  long before = 0;
  for (int round = 0; round < 2; ++round) {  // the first one may set up the threads' state
    before = qel::test::allocation_count();
    blas.copy(17, X, Y);
    blas.axpy(17, s, X, Y);
    blas.Negate(17, X, Y);
    blas.Add(17, X, Y, Z);
    blas.Divide(17, X, Y, Z);
    (void)blas.Sum(17, X);
    (void)blas.Variance(17, X);
    (void)blas.amax(17, X);
    blas.Add(5, 4, A, B);
    blas.Multiply(5, 4, A, B, C);
    blas.Product(5, 5, 4, A, b.block, 1, 4, d.block, 1, 5, true);
    blas.Product(5, 5, 4, A, b.block, 1, 4, C);
    blas.Product(5, 4, A, X, Y);
    blas.SolveTriSystem('U', 'N', 5, 2, a.block, 5, b.block, 5);
    matrices.TriangularProduct('L', 'N', 5, a.block, 5, x.block, 1);
    matrices.BandedProduct('N', 4, 4, 1, 1, a.block, x.block, 1, y.block, 1);
    matrices.UpperTriangularProduct(4, a.block, x.block, 1);
    matrices.LowerTriangularProduct(4, a.block, 2, x.block, 1, z.block);
  }
  EXPECT_EQ(qel::test::allocation_count(), before);
}

}  // namespace
}  // namespace Tavik::test
