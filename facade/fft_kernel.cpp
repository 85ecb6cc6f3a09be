// SPDX-License-Identifier: BSD-3-Clause
#include "tavik/kernel/fft_kernel.h"

#include "qel/dfti.h"

namespace Tavik::Kernel {
namespace {

DFTI_DESCRIPTOR* descriptor_of(const Core::IFFTManager& manager) {
  return reinterpret_cast<DFTI_DESCRIPTOR*>(manager.DescriptorHandle());
}

}  // namespace

template <class T>
void FFTKernel<T>::ProcessStatus(int status, const IFFTManager& manager) {
  if (status == DFTI_NO_ERROR) return;
  const char* text =
      status == DFTI_MEMORY_ERROR ? "Memory Error: " : "Internal Error: Please contact support at Orbelle.";
  throw Core::FFTKernelException(text, status, manager.Dimension(), manager.Length(), manager.Precision(),
                                 manager.Domain());
}

template <class T>
void FFTKernel<T>::Forward1DFFT(IFFTManager& manager, const Core::Array<T>& data, int offset) {
  ProcessStatus(tavik_dfticomputeforward(descriptor_of(manager), &data[offset]), manager);
}
template <class T>
void FFTKernel<T>::Backward1DFFT(IFFTManager& manager, const Core::Array<T>& data, int offset) {
  ProcessStatus(tavik_dfticomputebackward(descriptor_of(manager), &data[offset]), manager);
}
template <class T>
void FFTKernel<T>::Forward1DFFT(IFFTManager& manager, const Core::Array<T>& input, int inputOffset,
                                const Core::Array<T>& output, int outputOffset) {
  ProcessStatus(tavik_dfticomputeforward(descriptor_of(manager), &input[inputOffset], &output[outputOffset]),
                manager);
}
template <class T>
void FFTKernel<T>::Backward1DFFT(IFFTManager& manager, const Core::Array<T>& input, int inputOffset,
                                 const Core::Array<T>& output, int outputOffset) {
  ProcessStatus(tavik_dfticomputebackward(descriptor_of(manager), &input[inputOffset], &output[outputOffset]),
                manager);
}
template <class T>
void FFTKernel<T>::Forward2DFFT(IFFTManager& manager, const Core::Array2D<T>& data) {
  ProcessStatus(tavik_dfticomputeforward(descriptor_of(manager), &data(0, 0)), manager);
}
template <class T>
void FFTKernel<T>::Backward2DFFT(IFFTManager& manager, const Core::Array2D<T>& data) {
  ProcessStatus(tavik_dfticomputebackward(descriptor_of(manager), &data(0, 0)), manager);
}
template <class T>
void FFTKernel<T>::Forward2DFFT(IFFTManager& manager, const Core::Array2D<T>& input,
                                const Core::Array2D<T>& output) {
  ProcessStatus(tavik_dfticomputeforward(descriptor_of(manager), &input(0, 0), &output(0, 0)), manager);
}
template <class T>
void FFTKernel<T>::Backward2DFFT(IFFTManager& manager, const Core::Array2D<T>& input,
                                 const Core::Array2D<T>& output) {
  ProcessStatus(tavik_dfticomputebackward(descriptor_of(manager), &input(0, 0), &output(0, 0)), manager);
}

// The set-up stays if the transform fails.
template <class T>
void FFTKernel<T>::Forward1DRowArrayFFT(IFFTManager& manager, const Core::Array2D<T>& data) {
  tavik_dfti1darraysetup(descriptor_of(manager), data.Columns(), data.Rows());
  ProcessStatus(tavik_dfticomputeforward(descriptor_of(manager), &data(0, 0)), manager);
  tavik_dfti1darrayteardown(descriptor_of(manager));
}
template <class T>
void FFTKernel<T>::Backward1DRowArrayFFT(IFFTManager& manager, const Core::Array2D<T>& data) {
  tavik_dfti1darraysetup(descriptor_of(manager), data.Columns(), data.Rows());
  ProcessStatus(tavik_dfticomputebackward(descriptor_of(manager), &data(0, 0)), manager);
  tavik_dfti1darrayteardown(descriptor_of(manager));
}

template <class T>
int FFTKernel<T>::tavik_dfticreatedescriptor(DFTI_DESCRIPTOR** descriptor, int precision, int domain,
                                             int dimension, const int* length) {
  if (precision == DFTI_SINGLE) {
    return dimension == 1 ? DftiCreateDescriptor_s_1d(descriptor, domain, *length)
                          : DftiCreateDescriptor_s_md(descriptor, domain, dimension, length);
  }
  if (precision == DFTI_DOUBLE) {
    return dimension == 1 ? DftiCreateDescriptor_d_1d(descriptor, domain, *length)
                          : DftiCreateDescriptor_d_md(descriptor, domain, dimension, length);
  }
  return dimension == 1 ? DftiCreateDescriptor(descriptor, precision, domain, dimension, *length)
                        : DftiCreateDescriptor(descriptor, precision, domain, dimension, length);
}
template <class T>
int FFTKernel<T>::tavik_dfticommitdescriptor(DFTI_DESCRIPTOR* descriptor) {
  return DftiCommitDescriptor(descriptor);
}
template <class T>
int FFTKernel<T>::tavik_dftifreedescriptor(DFTI_DESCRIPTOR** descriptor) {
  return DftiFreeDescriptor(descriptor);
}

template <class T>
int FFTKernel<T>::tavik_dfti1darraysetup(DFTI_DESCRIPTOR* descriptor, int stride, int count) {
  DftiSetValue(descriptor, DFTI_NUMBER_OF_TRANSFORMS, count);
  DftiSetValue(descriptor, DFTI_INPUT_DISTANCE, stride);
  DftiSetValue(descriptor, DFTI_PACKED_FORMAT, DFTI_PACK_FORMAT);
  return DftiCommitDescriptor(descriptor);
}
template <class T>
int FFTKernel<T>::tavik_dfti1darrayteardown(DFTI_DESCRIPTOR* descriptor) {
  DftiSetValue(descriptor, DFTI_NUMBER_OF_TRANSFORMS, 1);
  DftiSetValue(descriptor, DFTI_INPUT_DISTANCE, 0);
  // Kept: not the format that the configuration had set.
  DftiSetValue(descriptor, DFTI_PACKED_FORMAT, DFTI_CCS_FORMAT);
  return DftiCommitDescriptor(descriptor);
}

template <class T>
bool FFTKernel<T>::IsInPlace(DFTI_DESCRIPTOR* descriptor) {
  int placement = 0;
  DftiGetValue(descriptor, DFTI_PLACEMENT, &placement);
  return placement == DFTI_INPLACE;
}
template <class T>
int FFTKernel<T>::SetInPlace(DFTI_DESCRIPTOR* descriptor) {
  DftiSetValue(descriptor, DFTI_PLACEMENT, DFTI_INPLACE);
  return DftiCommitDescriptor(descriptor);
}
template <class T>
int FFTKernel<T>::SetOutOfPlace(DFTI_DESCRIPTOR* descriptor) {
  DftiSetValue(descriptor, DFTI_PLACEMENT, DFTI_NOT_INPLACE);
  return DftiCommitDescriptor(descriptor);
}

template <class T>
int FFTKernel<T>::tavik_dfticomputeforward(DFTI_DESCRIPTOR* descriptor, T* data) {
  if (!IsInPlace(descriptor)) SetInPlace(descriptor);
  return DftiComputeForward(descriptor, data);
}
template <class T>
int FFTKernel<T>::tavik_dfticomputebackward(DFTI_DESCRIPTOR* descriptor, T* data) {
  if (!IsInPlace(descriptor)) SetInPlace(descriptor);
  return DftiComputeBackward(descriptor, data);
}
template <class T>
int FFTKernel<T>::tavik_dfticomputeforward(DFTI_DESCRIPTOR* descriptor, T* input, T* output) {
  if (IsInPlace(descriptor)) SetOutOfPlace(descriptor);
  return DftiComputeForward(descriptor, input, output);
}
template <class T>
int FFTKernel<T>::tavik_dfticomputebackward(DFTI_DESCRIPTOR* descriptor, T* input, T* output) {
  if (IsInPlace(descriptor)) SetOutOfPlace(descriptor);
  return DftiComputeBackward(descriptor, input, output);
}

template class TAVIK_API FFTKernel<double>;
template class TAVIK_API FFTKernel<float>;
template class TAVIK_API FFTKernel<Core::DoubleComplex>;
template class TAVIK_API FFTKernel<Core::FloatComplex>;

std::unique_ptr<Core::IFFTKernel<double>> FFTKernelInstantiator::CreateDoubleKernel() {
  return std::make_unique<FFTKernel<double>>();
}
std::unique_ptr<Core::IFFTKernel<Core::DoubleComplex>> FFTKernelInstantiator::CreateDoubleComplexKernel() {
  return std::make_unique<FFTKernel<Core::DoubleComplex>>();
}
std::unique_ptr<Core::IFFTKernel<float>> FFTKernelInstantiator::CreateFloatKernel() {
  return std::make_unique<FFTKernel<float>>();
}
std::unique_ptr<Core::IFFTKernel<Core::FloatComplex>> FFTKernelInstantiator::CreateFloatComplexKernel() {
  return std::make_unique<FFTKernel<Core::FloatComplex>>();
}

}  // namespace Tavik::Kernel
