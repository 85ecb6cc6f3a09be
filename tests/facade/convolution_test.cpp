// SPDX-License-Identifier: BSD-3-Clause
// Convolution and Correlation: offsets and strides, the shapes that the classes keep, statuses and
// exceptions.
#include <gtest/gtest.h>

#include "tavik/kernel/convolution.h"
#include "tavik/kernel/correlation.h"

namespace Tavik::Kernel {
namespace {

template <class T>
std::vector<T> values(const Array<T>& array) {
  std::vector<T> result;
  for (int i = 0; i < array.Length(); ++i) result.push_back(array[i]);
  return result;
}

/// The operations of an element type.
template <class T>
struct operations;
#define TAVIK_CONVOLUTION_TEST(T, create, execute, create_corr, execute_corr) \
  template <>                                                                 \
  struct operations<T> {                                                      \
    static constexpr auto new_conv = Convolution::create;                     \
    static constexpr auto run_conv = Convolution::execute;                    \
    static constexpr auto new_corr = Correlation::create_corr;                \
    static constexpr auto run_corr = Correlation::execute_corr;               \
  };
TAVIK_CONVOLUTION_TEST(double, NewConvTaskX1d, ExecuteX1DConvTask, NewCorrTaskX1d, ExecuteX1DCorrTask)
TAVIK_CONVOLUTION_TEST(float, NewConvTaskX1s, sExecuteX1DConvTask, NewCorrTaskX1s, ExecuteX1DCorrTasks)
TAVIK_CONVOLUTION_TEST(DoubleComplex, NewConvTaskX1z, ExecuteX1DConvTaskz, NewCorrTaskX1z,
                       ExecuteX1DCorrTaskz)
TAVIK_CONVOLUTION_TEST(FloatComplex, NewConvTaskX1c, sExecuteX1DConvTaskc, NewCorrTaskX1c,
                       ExecuteX1DCorrTaskc)

template <class T>
class ConvolutionClasses : public testing::Test {};
using element_types = testing::Types<double, float, DoubleComplex, FloatComplex>;
TYPED_TEST_SUITE(ConvolutionClasses, element_types);

TYPED_TEST(ConvolutionClasses, OffsetsAndStrides) {
  using T = TypeParam;
  using on = operations<T>;
  const Array<T> x{T(9), T(1), T(2), T(3)}, y{T(8), T(1), T(-1), T(2)}, z(8);
  // (1 2 3) with (1 -1 2) from element 1 on.
  TaskHandle task = on::new_conv(ConvolutionMode::Auto, 3, 3, 5, x, 1, 1);
  on::run_conv(task, y, 1, 1, z, 1, 2);
  EXPECT_EQ(values(z), (std::vector<T>{0, 0, 1, 1, 3, 1, 6, 0}));
  // y from its last element backwards, z as well.
  on::run_conv(task, y, -1, 3, z, -1, 6);
  EXPECT_EQ(values(z), (std::vector<T>{0, 0, 3, -1, 5, 3, 2, 0}));
  EXPECT_EQ(Convolution::ConvDeleteTask(task), 0);
  task = on::new_corr(CorrelationMode::Direct, 3, 3, 5, x, 1, 1);
  EXPECT_EQ(on::run_corr(task, y, 1, 1, z, 1, 0), 0);
  EXPECT_EQ(values(z), (std::vector<T>{3, -1, 5, 3, 2, 3, 2, 0}));
  EXPECT_EQ(Correlation::CorrDeleteTask(task), 0);
  EXPECT_THROW(on::new_conv(ConvolutionMode::Auto, 3, 3, 5, x, 1, 4), std::out_of_range);
}

TYPED_TEST(ConvolutionClasses, AStrideCountsTheElementsItself) {
  using T = TypeParam;
  using on = operations<T>;
  // Length 7 from element 1 on by twos: elements 1, 3, 5.
  const Array<T> x{T(9), T(1), T(9), T(2), T(9), T(3), T(9)}, one{T(1)}, z(3);
  const TaskHandle task = on::new_conv(ConvolutionMode::Auto, 77, 1, 3, x, 2, 1);
  on::run_conv(task, one, 1, 0, z, 1, 0);
  EXPECT_EQ(values(z), (std::vector<T>{1, 2, 3}));
  Convolution::ConvDeleteTask(task);
}

// Kept: the shapes are those of the task that was created last.
TEST(ConvolutionShapes, BelongToTheLastTask) {
  const Array<double> x{1, 2, 3}, y{1, 0, 0, 5}, z(6);
  const TaskHandle first = Convolution::NewConvTaskX1d(ConvolutionMode::Auto, 1, 2, 2, x, 1, 0);
  const TaskHandle second = Convolution::NewConvTaskX1d(ConvolutionMode::Auto, 1, 4, 4, x, 1, 0);
  // Two elements down from element 3 are wanted; the second task's shape takes them from element 0 on.
  Convolution::ExecuteX1DConvTask(first, y, -1, 3, z, 1, 0);
  EXPECT_EQ(z[0], 0);
  EXPECT_EQ(z[1], 1);
  Convolution::ConvDeleteTask(first);
  Convolution::ConvDeleteTask(second);
}

TEST(ConvolutionFailures, AreExceptions) {
  const Array<double> x{1, 2, 3}, z(6);
  EXPECT_EQ(Convolution::ConvDeleteTask(0), 0);
  EXPECT_EQ(Correlation::CorrDeleteTask(0), 0);
  TaskHandle task = Convolution::NewConvTaskX1d(ConvolutionMode::Auto, 0, 3, 5, x, 1, 0);
  const auto text = [&] {
    try {
      Convolution::ExecuteX1DConvTask(task, x, 1, 0, z, 1, 0);
    } catch (const TavikException& error) {
      return std::string(error.what());
    }
    return std::string("none");
  };
  EXPECT_EQ(text(), "Convolution Kernel Exception, error code = -2311");
  Convolution::ConvDeleteTask(task);
  task = Convolution::NewConvTaskX1d(ConvolutionMode::Auto, 3, 3, 5, x, 1, 0);
  EXPECT_EQ(Convolution::SetPrecisionHigh(task), 0);
  EXPECT_EQ(text(), "none");
  EXPECT_EQ(Convolution::SetPrecisionLow(task), 0);
  EXPECT_EQ(text(), "Convolution Kernel Exception, error code = -2000");
  EXPECT_EQ(Convolution::SetPrecisionHigh(task), -2000);
  Convolution::ConvDeleteTask(task);
  EXPECT_NO_THROW(Convolution::ProcessStatus(0));
}

TEST(CorrelationFailures, AreStatuses) {
  const Array<double> x{1, 2, 3}, z(6);
  TaskHandle task = Correlation::NewCorrTask1d(CorrelationMode::Auto, 3, 3, 6);
  EXPECT_EQ(Correlation::Execute1DCorrTask(task, x, 1, 0, x, 1, 0, z, 1, 0), -2303);
  Correlation::CorrDeleteTask(task);
  task = Correlation::NewCorrTask1d(CorrelationMode::Auto, 3, 3, 5);
  EXPECT_EQ(Correlation::Execute1DCorrTask(task, x, 1, 0, x, -1, 2, z, 1, 0), 0);
  EXPECT_EQ(values(z), (std::vector<double>{9, 12, 10, 4, 1, 0}));
  Correlation::CorrDeleteTask(task);
}

}  // namespace
}  // namespace Tavik::Kernel
