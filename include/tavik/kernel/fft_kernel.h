// SPDX-License-Identifier: BSD-3-Clause
// Fourier transforms of arrays through a manager.
#pragma once

#include "tavik/core/fft.h"

struct DFTI_DESCRIPTOR;

namespace Tavik::Kernel {

/// T: double, float (real transforms), Core::DoubleComplex or Core::FloatComplex. A call with one array works
/// in place, one with two arrays out of place; if the manager stands otherwise it is switched over, which
/// costs a commit. Arrays begin at element `offset`, rectangular ones at their first element. Failures throw
/// Core::FFTKernelException.
template <class T>
class TAVIK_API FFTKernel : public Core::IFFTKernel<T> {
 public:
  /// The configuration.
  using IFFTManager = Core::IFFTManager;

  /// One transform, or as many as the manager's SignalCount, in place or from input to output.
  void Forward1DFFT(IFFTManager& manager, const Core::Array<T>& data, int offset) override;
  void Backward1DFFT(IFFTManager& manager, const Core::Array<T>& data, int offset) override;
  void Forward1DFFT(IFFTManager& manager, const Core::Array<T>& input, int inputOffset,
                    const Core::Array<T>& output, int outputOffset) override;
  void Backward1DFFT(IFFTManager& manager, const Core::Array<T>& input, int inputOffset,
                     const Core::Array<T>& output, int outputOffset) override;

  /// One two-dimensional transform of a rectangular array.
  void Forward2DFFT(IFFTManager& manager, const Core::Array2D<T>& data) override;
  void Backward2DFFT(IFFTManager& manager, const Core::Array2D<T>& data) override;
  void Forward2DFFT(IFFTManager& manager, const Core::Array2D<T>& input,
                    const Core::Array2D<T>& output) override;
  void Backward2DFFT(IFFTManager& manager, const Core::Array2D<T>& input,
                     const Core::Array2D<T>& output) override;
  /// Each row on its own, in place; leaves the manager on one transform and, real data, on DFTI_CCS_FORMAT.
  void Forward1DRowArrayFFT(IFFTManager& manager, const Core::Array2D<T>& data) override;
  void Backward1DRowArrayFFT(IFFTManager& manager, const Core::Array2D<T>& data) override;

  // Each forwards to the entries of qel/dfti.h and returns their status; compute calls see to the placement.
  static int tavik_dfticreatedescriptor(DFTI_DESCRIPTOR** descriptor, int precision, int domain,
                                        int dimension, const int* length);
  static int tavik_dfticommitdescriptor(DFTI_DESCRIPTOR* descriptor);
  static int tavik_dftifreedescriptor(DFTI_DESCRIPTOR** descriptor);
  static int tavik_dfti1darraysetup(DFTI_DESCRIPTOR* descriptor, int stride, int count);
  static int tavik_dfti1darrayteardown(DFTI_DESCRIPTOR* descriptor);
  static int tavik_dfticomputeforward(DFTI_DESCRIPTOR* descriptor, T* data);
  static int tavik_dfticomputebackward(DFTI_DESCRIPTOR* descriptor, T* data);
  static int tavik_dfticomputeforward(DFTI_DESCRIPTOR* descriptor, T* input, T* output);
  static int tavik_dfticomputebackward(DFTI_DESCRIPTOR* descriptor, T* input, T* output);
  static bool IsInPlace(DFTI_DESCRIPTOR* descriptor);
  static int SetInPlace(DFTI_DESCRIPTOR* descriptor);
  static int SetOutOfPlace(DFTI_DESCRIPTOR* descriptor);

 private:
  static void ProcessStatus(int status, const IFFTManager& manager);
};

/// Makes the kernels of the four element types; each call gives a new one.
class TAVIK_API FFTKernelInstantiator : public Core::IFFTKernelInstantiator {
 public:
  /// A new kernel for real or complex data of double or single precision.
  std::unique_ptr<Core::IFFTKernel<double>> CreateDoubleKernel() override;
  std::unique_ptr<Core::IFFTKernel<Core::DoubleComplex>> CreateDoubleComplexKernel() override;
  std::unique_ptr<Core::IFFTKernel<float>> CreateFloatKernel() override;
  std::unique_ptr<Core::IFFTKernel<Core::FloatComplex>> CreateFloatComplexKernel() override;
};

}  // namespace Tavik::Kernel
