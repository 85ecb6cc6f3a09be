// SPDX-License-Identifier: BSD-3-Clause
// What the class library says of Fourier transforms: precisions, domains, the store of an object's values,
// the exception, the interfaces of the kernel's classes.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <variant>

#include "tavik/core/array2d.h"
#include "tavik/core/complex.h"
#include "tavik/core/exceptions.h"

namespace Tavik::Core {

/// Precision of a transform.
enum class FFTPrecision : int { Float = 0, Double = 1 };
/// Real or complex data on the forward side.
enum class FFTDomain : int { Real = 0, Complex = 1 };

/// A store of typed values by name. Reading a name that is not there, or as another type, throws
/// Core::Exception.
class TAVIK_API SerializationInfo {
 public:
  /// What a store can hold.
  using Value = std::variant<bool, int, double, FFTPrecision, FFTDomain, Array<int>>;
  /// Stores or replaces the value of a name.
  void AddValue(const std::string& name, Value value) { values_[name] = std::move(value); }
  /// The value of a name; T is the type that it was stored with.
  template <class T>
  T GetValue(const std::string& name) const {
    const auto found = values_.find(name);
    if (found == values_.end()) throw Exception("no value of the name " + name);
    const T* value = std::get_if<T>(&found->second);
    if (value == nullptr) throw Exception("the value of the name " + name + " has another type");
    return *value;
  }

 private:
  std::map<std::string, Value> values_;
};
/// Where a store comes from or goes to; nothing looks at it.
struct StreamingContext {};

/// A transform or its set-up failed.
class TAVIK_API FFTKernelException : public Exception {
 public:
  /// The text, the entry's status and the configuration that failed.
  FFTKernelException(const std::string& text, int status, int dimension, int length, FFTPrecision precision,
                     FFTDomain domain)
      : Exception(text),
        Status(status),
        Dimension(dimension),
        Length(length),
        Precision(precision),
        Domain(domain) {}
  int Status;     ///< of the numeric entry
  int Dimension;  ///< of the transform
  int Length;     ///< of its first dimension
  FFTPrecision Precision;
  FFTDomain Domain;
};

/// The configuration of a transform; FFTManager says what each operation does.
class TAVIK_API IFFTManager {
 public:
  virtual ~IFFTManager() = default;
  /// Kernel::FFTManager says what each does.
  virtual void ConfigureFFTManager(FFTPrecision precision, FFTDomain domain, const Array<int>& lengths,
                                   int dimension) = 0;
  virtual std::unique_ptr<IFFTManager> Clone() const = 0;
  virtual void GetObjectData(SerializationInfo& info, const StreamingContext& context) const = 0;
  virtual std::intptr_t DescriptorHandle() const = 0;
  virtual int Length() const = 0;
  virtual FFTPrecision Precision() const = 0;
  virtual FFTDomain Domain() const = 0;
  virtual int Dimension() const = 0;
  virtual bool IsInPlace() const = 0;
  virtual int DataStride() const = 0;
  virtual void DataStride(int stride) = 0;
  virtual int DataOffset() const = 0;
  virtual void DataOffset(int offset) = 0;
  virtual int SignalCount() const = 0;
  virtual void SignalCount(int count) = 0;
  virtual int SignalStride() const = 0;
  virtual void SignalStride(int stride) = 0;
  virtual void SetInPlace() = 0;
  virtual void SetOutOfPlace() = 0;
  virtual void SetForwardScale(double scale) = 0;
  virtual void SetBackwardScale(double scale) = 0;
  virtual double GetForwardScaleFactor() const = 0;
  virtual double GetBackwardScaleFactor() const = 0;
  virtual void CommitConfiguration() = 0;
  virtual void Dispose() = 0;
};

/// Transforms of arrays; FFTKernel says what each operation does.
template <class T>
class TAVIK_API IFFTKernel {
 public:
  virtual ~IFFTKernel() = default;
  /// Kernel::FFTKernel says what each does.
  virtual void Forward1DFFT(IFFTManager& manager, const Array<T>& data, int offset) = 0;
  virtual void Backward1DFFT(IFFTManager& manager, const Array<T>& data, int offset) = 0;
  virtual void Forward1DFFT(IFFTManager& manager, const Array<T>& input, int inputOffset,
                            const Array<T>& output, int outputOffset) = 0;
  virtual void Backward1DFFT(IFFTManager& manager, const Array<T>& input, int inputOffset,
                             const Array<T>& output, int outputOffset) = 0;
  virtual void Forward2DFFT(IFFTManager& manager, const Array2D<T>& data) = 0;
  virtual void Backward2DFFT(IFFTManager& manager, const Array2D<T>& data) = 0;
  virtual void Forward2DFFT(IFFTManager& manager, const Array2D<T>& input, const Array2D<T>& output) = 0;
  virtual void Backward2DFFT(IFFTManager& manager, const Array2D<T>& input, const Array2D<T>& output) = 0;
  virtual void Forward1DRowArrayFFT(IFFTManager& manager, const Array2D<T>& data) = 0;
  virtual void Backward1DRowArrayFFT(IFFTManager& manager, const Array2D<T>& data) = 0;
};

/// Makes the kernels of the four element types.
class TAVIK_API IFFTKernelInstantiator {
 public:
  virtual ~IFFTKernelInstantiator() = default;
  /// A new kernel for real or complex data of double or single precision.
  virtual std::unique_ptr<IFFTKernel<double>> CreateDoubleKernel() = 0;
  virtual std::unique_ptr<IFFTKernel<DoubleComplex>> CreateDoubleComplexKernel() = 0;
  virtual std::unique_ptr<IFFTKernel<float>> CreateFloatKernel() = 0;
  virtual std::unique_ptr<IFFTKernel<FloatComplex>> CreateFloatComplexKernel() = 0;
};

}  // namespace Tavik::Core
