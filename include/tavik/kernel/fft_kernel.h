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
  using IFFTManager = Core::IFFTManager;
  void Forward1DFFT(IFFTManager& manager, const Core::Array<T>& data, int offset) override;
  void Backward1DFFT(IFFTManager& manager, const Core::Array<T>& data, int offset) override;
  void Forward1DFFT(IFFTManager& manager, const Core::Array<T>& input, int inputOffset,
                    const Core::Array<T>& output, int outputOffset) override;
  void Backward1DFFT(IFFTManager& manager, const Core::Array<T>& input, int inputOffset,
                     const Core::Array<T>& output, int outputOffset) override;
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

class TAVIK_API FFTKernelInstantiator : public Core::IFFTKernelInstantiator {
 public:
  std::unique_ptr<Core::IFFTKernel<double>> CreateDoubleKernel() override;
  std::unique_ptr<Core::IFFTKernel<Core::DoubleComplex>> CreateDoubleComplexKernel() override;
  std::unique_ptr<Core::IFFTKernel<float>> CreateFloatKernel() override;
  std::unique_ptr<Core::IFFTKernel<Core::FloatComplex>> CreateFloatComplexKernel() override;
};

}  // namespace Tavik::Kernel
