// SPDX-License-Identifier: BSD-3-Clause
// FFTManager and FFTKernel: placement, rows, properties, exceptions, copies, stored configurations.
#include <gtest/gtest.h>

#include <cmath>
#include <type_traits>

#include "qel/dfti.h"
#include "tavik/kernel/fft_kernel.h"
#include "tavik/kernel/fft_manager.h"

namespace Tavik {
namespace {

using Core::Array;
using Core::Array2D;
using Core::DoubleComplex;
using Core::FFTDomain;
using Core::FFTPrecision;
using Kernel::FFTKernel;
using Kernel::FFTManager;

int read(const Core::IFFTManager& manager, int parameter) {
  int value = -1;
  DftiGetValue(reinterpret_cast<DFTI_DESCRIPTOR*>(manager.DescriptorHandle()), parameter, &value);
  return value;
}

Array<DoubleComplex> signal(int n) {
  Array<DoubleComplex> data(n);
  for (int i = 0; i < n; ++i) data[i] = {0.25 * i, 1.0 - i % 3};
  return data;
}

TEST(FFTKernel, PlacementFollowsTheCall) {
  FFTManager manager;
  manager.ConfigureFFTManager(FFTPrecision::Double, FFTDomain::Complex, {12}, 1);
  FFTKernel<DoubleComplex> kernel;
  const Array<DoubleComplex> input = signal(14), output(14), data = signal(14);
  EXPECT_TRUE(manager.IsInPlace());
  kernel.Forward1DFFT(manager, input, 2, output, 1);
  EXPECT_FALSE(manager.IsInPlace());
  kernel.Forward1DFFT(manager, data, 2);
  EXPECT_TRUE(manager.IsInPlace());
  for (int i = 0; i < 12; ++i) EXPECT_EQ(data[2 + i], output[1 + i]);
  EXPECT_EQ(input[3], signal(14)[3]);
  manager.SetBackwardScale(1.0 / 12);
  kernel.Backward1DFFT(manager, data, 2);
  for (int i = 0; i < 14; ++i) EXPECT_NEAR(data[i].Real, input[i].Real, 1e-14);
  EXPECT_THROW(kernel.Forward1DFFT(manager, data, 14), std::out_of_range);
}

TEST(FFTKernel, RowsAndRectangles) {
  Kernel::FFTKernelInstantiator make;
  FFTManager line, rectangle;
  line.ConfigureFFTManager(FFTPrecision::Double, FFTDomain::Real, {6}, 1);
  EXPECT_EQ(read(line, DFTI_PACKED_FORMAT), DFTI_PACK_FORMAT);
  rectangle.ConfigureFFTManager(FFTPrecision::Double, FFTDomain::Real, {4, 6}, 2);
  const auto kernel = make.CreateDoubleKernel();
  const Array2D<double> rows(4, 6), data(4, 6), out(4, 6);
  for (int i = 0; i < 4; ++i) {
    for (int j = 0; j < 6; ++j) rows(i, j) = data(i, j) = i * i - 2.0 * j;
  }
  kernel->Forward1DRowArrayFFT(line, rows);
  for (int i = 0; i < 4; ++i) {
    double sum = 0;
    for (int j = 0; j < 6; ++j) sum += data(i, j);
    EXPECT_NEAR(rows(i, 0), sum, 1e-13);
  }
  // The rows' set-up is taken back, but for the packed format.
  EXPECT_EQ(line.SignalCount(), 1);
  EXPECT_EQ(line.SignalStride(), 0);
  EXPECT_EQ(read(line, DFTI_PACKED_FORMAT), DFTI_CCS_FORMAT);
  line.SetBackwardScale(1.0 / 6);
  kernel->Backward1DRowArrayFFT(line, rows);
  kernel->Forward2DFFT(rectangle, data, out);
  rectangle.SetBackwardScale(1.0 / 24);
  kernel->Backward2DFFT(rectangle, out);
  for (int i = 0; i < 4; ++i) {
    for (int j = 0; j < 6; ++j) {
      EXPECT_NEAR(rows(i, j), data(i, j), 1e-13);
      EXPECT_NEAR(out(i, j), data(i, j), 1e-13);
    }
  }
}

/// Lines and rectangles there and back, out of place, by the kernel and by its plain entries.
template <class T>
void expect_round_trips(Core::IFFTKernel<T>& kernel, FFTPrecision precision, FFTDomain domain, double error) {
  using Real = std::conditional_t<sizeof(T) == 4 || std::is_same_v<T, Core::FloatComplex>, float, double>;
  const auto distance = [](T a, T b) {
    if constexpr (std::is_floating_point_v<T>) {
      return std::abs(double(a) - double(b));
    } else {
      return std::hypot(double(a.Real) - double(b.Real), double(a.Imag) - double(b.Imag));
    }
  };
  constexpr int kRows = 4, kColumns = 6;
  FFTManager line, rectangle;
  line.ConfigureFFTManager(precision, domain, {kColumns}, 1);
  line.SetBackwardScale(1.0 / kColumns);
  const Array<T> input(9), output(11), back(9);
  for (int i = 0; i < 9; ++i) input[i] = T(static_cast<Real>(i * i % 5 - 1));
  kernel.Forward1DFFT(line, input, 2, output, 1);
  kernel.Backward1DFFT(line, output, 1, back, 2);
  for (int i = 2; i < 2 + kColumns; ++i) EXPECT_LT(distance(back[i], input[i]), error) << i;
  line.SetInPlace();
  EXPECT_TRUE(line.IsInPlace());

  if constexpr (!std::is_floating_point_v<T>) {
    rectangle.ConfigureFFTManager(precision, domain, {kRows, kColumns}, 2);
    rectangle.SetBackwardScale(1.0 / (kRows * kColumns));
    const Array2D<T> from(kRows, kColumns), to(kRows, kColumns), again(kRows, kColumns);
    for (int i = 0; i < kRows; ++i)
      for (int j = 0; j < kColumns; ++j) from(i, j) = T(static_cast<Real>(i * i - 2 * j));
    kernel.Forward2DFFT(rectangle, from, to);
    kernel.Backward2DFFT(rectangle, to, again);
    for (int i = 0; i < kRows; ++i)
      for (int j = 0; j < kColumns; ++j) EXPECT_LT(distance(again(i, j), from(i, j)), 4 * error);
  }
}

TEST(FFTKernel, RoundTripsOutOfPlaceInAllTypes) {
  Kernel::FFTKernelInstantiator make;
  expect_round_trips(*make.CreateDoubleKernel(), FFTPrecision::Double, FFTDomain::Real, 1e-14);
  expect_round_trips(*make.CreateFloatKernel(), FFTPrecision::Float, FFTDomain::Real, 1e-5);
  expect_round_trips(*make.CreateDoubleComplexKernel(), FFTPrecision::Double, FFTDomain::Complex, 1e-14);
  expect_round_trips(*make.CreateFloatComplexKernel(), FFTPrecision::Float, FFTDomain::Complex, 1e-5);
}

TEST(FFTManager, PropertiesReadBack) {
  FFTManager manager;
  EXPECT_EQ(manager.Length(), 0);
  EXPECT_FALSE(manager.IsInPlace());
  manager.ConfigureFFTManager(FFTPrecision::Float, FFTDomain::Complex, {16}, 1);
  manager.DataStride(3);
  manager.DataOffset(2);
  manager.SignalCount(4);
  manager.SignalStride(50);
  manager.SetForwardScale(0.1);
  EXPECT_EQ(manager.DataStride(), 3);
  EXPECT_EQ(manager.DataOffset(), 2);
  EXPECT_EQ(manager.SignalCount(), 4);
  EXPECT_EQ(manager.SignalStride(), 50);
  EXPECT_EQ(manager.GetForwardScaleFactor(), static_cast<double>(0.1F));
  EXPECT_EQ(manager.GetBackwardScaleFactor(), 1);
  EXPECT_EQ(read(manager, DFTI_COMMIT_STATUS), DFTI_COMMITTED);
}

TEST(FFTManager, FailuresAsExceptions) {
  const auto text = [](auto action) -> std::string {
    try {
      action();
    } catch (const Core::FFTKernelException& e) {
      return e.what();
    }
    return "";
  };
  FFTManager bad, never;
  EXPECT_EQ(text([&] { bad.ConfigureFFTManager(FFTPrecision::Double, FFTDomain::Complex, {0}, 1); }),
            "Invalid FFT Configuration: ");
  EXPECT_EQ(text([&] { never.Clone(); }), "Invalid FFT Configuration: ");
  FFTManager odd;
  odd.ConfigureFFTManager(static_cast<FFTPrecision>(5), FFTDomain::Complex, {8}, 1);
  EXPECT_EQ(text([&] { odd.GetForwardScaleFactor(); }), "Invalid FFT Configuration: ");
  FFTKernel<DoubleComplex> kernel;
  EXPECT_EQ(text([&] { kernel.Forward1DFFT(never, signal(8), 0); }),
            "Internal Error: Please contact support at Orbelle.");
  const Core::FFTKernelException e("text", 3, 2, 8, FFTPrecision::Double, FFTDomain::Real);
  EXPECT_EQ(e.Status, 3);
  EXPECT_EQ(e.Length, 8);
}

TEST(FFTManager, ClonesStoresAndDisposal) {
  FFTManager manager;
  manager.ConfigureFFTManager(FFTPrecision::Double, FFTDomain::Complex, {8, 4}, 2);
  manager.SetOutOfPlace();
  manager.SetForwardScale(0.5);
  manager.SignalStride(40);
  Core::SerializationInfo store;
  manager.GetObjectData(store, {});
  EXPECT_EQ(store.GetValue<double>("FowardScale"), 0.5);
  EXPECT_THROW(store.GetValue<double>("InPlace"), Core::Exception);
  const auto clone = manager.Clone();
  const auto stored = FFTManager::FromSerializationInfo(store, {});
  for (const Core::IFFTManager* copy : {clone.get(), static_cast<Core::IFFTManager*>(stored.get())}) {
    EXPECT_NE(copy->DescriptorHandle(), manager.DescriptorHandle());
    EXPECT_EQ(copy->Dimension(), 2);
    EXPECT_EQ(copy->Length(), 8);
    EXPECT_FALSE(copy->IsInPlace());
    EXPECT_EQ(copy->GetForwardScaleFactor(), 0.5);
    EXPECT_EQ(copy->SignalStride(), 40);
    EXPECT_EQ(read(*copy, DFTI_COMMIT_STATUS), DFTI_COMMITTED);
  }
  manager.Dispose();
  EXPECT_EQ(manager.DescriptorHandle(), 0);
  manager.Dispose();
  const Array2D<DoubleComplex> data(8, 4), out(8, 4);
  data(1, 1) = {1, 0};
  FFTKernel<DoubleComplex>().Forward2DFFT(*clone, data, out);
  EXPECT_EQ(out(0, 0), DoubleComplex(0.5, 0));
}

}  // namespace
}  // namespace Tavik
