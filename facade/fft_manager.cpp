// SPDX-License-Identifier: BSD-3-Clause
#include "tavik/kernel/fft_manager.h"

#include "qel/dfti.h"

namespace Tavik::Kernel {
namespace {

constexpr int kLargestDimension = 7;

/// Offset and strides of the input.
struct strides {
  int values[kLargestDimension + 1] = {};
};
strides read_strides(const DFTI_DESCRIPTOR* descriptor) {
  strides result;
  DftiGetValue(descriptor, DFTI_INPUT_STRIDES, result.values);
  return result;
}

void write_strides(DFTI_DESCRIPTOR* descriptor, int offset, int stride) {
  strides values = read_strides(descriptor);
  values.values[0] = offset;
  values.values[1] = stride;
  DftiSetValue(descriptor, DFTI_INPUT_STRIDES, values.values);
  DftiCommitDescriptor(descriptor);
}

}  // namespace

FFTManager::~FFTManager() { FFTManager::Dispose(); }

void FFTManager::Dispose() {
  if (desc_handel_ != nullptr) DftiFreeDescriptor(&desc_handel_);
}

void FFTManager::CreateDescriptor() {
  const int domain = domain_ == Core::FFTDomain::Real ? DFTI_REAL : DFTI_COMPLEX;
  const bool is_double = precision_ == Core::FFTPrecision::Double;
  desc_handel_ = nullptr;
  // Kept: a failure shows at the commit, as a bad descriptor.
  if (dimension_ == 1) {
    (is_double ? DftiCreateDescriptor_d_1d : DftiCreateDescriptor_s_1d)(&desc_handel_, domain, lengths_[0]);
  } else {
    const int* lengths = lengths_.Length() > 0 ? &lengths_[0] : nullptr;
    (is_double ? DftiCreateDescriptor_d_md : DftiCreateDescriptor_s_md)(&desc_handel_, domain, dimension_,
                                                                        lengths);
  }
  DftiSetValue(desc_handel_, DFTI_PACKED_FORMAT, DFTI_PACK_FORMAT);
}

void FFTManager::ConfigureFFTManager(Core::FFTPrecision precision, Core::FFTDomain domain,
                                     const Core::Array<int>& lengths, int dimension) {
  Core::Array<int> kept(dimension);
  for (int i = 0; i < dimension; ++i) kept[i] = lengths[i];
  lengths_ = kept;
  precision_ = precision;
  domain_ = domain;
  dimension_ = dimension;
  CreateDescriptor();
  CommitConfiguration();
}

std::unique_ptr<FFTManager> FFTManager::FromSerializationInfo(const Core::SerializationInfo& info,
                                                              const Core::StreamingContext&) {
  auto manager = std::make_unique<FFTManager>();
  manager->precision_ = info.GetValue<Core::FFTPrecision>(PrecisionName);
  manager->domain_ = info.GetValue<Core::FFTDomain>(DomainName);
  manager->dimension_ = info.GetValue<int>(DimensionName);
  manager->lengths_ = info.GetValue<Core::Array<int>>(LengthsName);
  manager->CreateDescriptor();
  if (info.GetValue<bool>(InPlaceName)) {
    manager->SetInPlace();
  } else {
    manager->SetOutOfPlace();
  }
  manager->SetForwardScale(info.GetValue<double>(ForwardScaleName));
  manager->SetBackwardScale(info.GetValue<double>(BackwardScaleName));
  manager->DataStride(info.GetValue<int>(DataStrideName));
  manager->DataOffset(info.GetValue<int>(DataOffsetName));
  manager->SignalStride(info.GetValue<int>(SignalStrideName));
  manager->SignalCount(info.GetValue<int>(SignalCountName));
  manager->CommitConfiguration();
  return manager;
}

void FFTManager::GetObjectData(Core::SerializationInfo& info, const Core::StreamingContext&) const {
  info.AddValue(DimensionName, dimension_);
  info.AddValue(LengthsName, lengths_);
  info.AddValue(PrecisionName, precision_);
  info.AddValue(DomainName, domain_);
  info.AddValue(InPlaceName, IsInPlace());
  info.AddValue(BackwardScaleName, GetBackwardScaleFactor());
  info.AddValue(ForwardScaleName, GetForwardScaleFactor());
  info.AddValue(DataStrideName, DataStride());
  info.AddValue(DataOffsetName, DataOffset());
  info.AddValue(SignalStrideName, SignalStride());
  info.AddValue(SignalCountName, SignalCount());
}

std::unique_ptr<Core::IFFTManager> FFTManager::Clone() const {
  auto clone = std::make_unique<FFTManager>();
  DftiCopyDescriptor(desc_handel_, &clone->desc_handel_);
  const int status = DftiCommitDescriptor(clone->desc_handel_);
  clone->ProcessStatus(status);
  clone->precision_ = precision_;
  clone->domain_ = domain_;
  clone->dimension_ = dimension_;
  clone->lengths_ = lengths_;
  return clone;
}

int FFTManager::Read(int parameter) const {
  int value = 0;
  DftiGetValue(desc_handel_, parameter, &value);
  return value;
}
void FFTManager::Write(int parameter, int value) {
  DftiSetValue(desc_handel_, parameter, value);
  DftiCommitDescriptor(desc_handel_);
}

bool FFTManager::IsInPlace() const { return Read(DFTI_PLACEMENT) == DFTI_INPLACE; }
void FFTManager::SetInPlace() { Write(DFTI_PLACEMENT, DFTI_INPLACE); }
void FFTManager::SetOutOfPlace() { Write(DFTI_PLACEMENT, DFTI_NOT_INPLACE); }
int FFTManager::DataStride() const { return read_strides(desc_handel_).values[1]; }
int FFTManager::DataOffset() const { return read_strides(desc_handel_).values[0]; }
void FFTManager::DataStride(int stride) { write_strides(desc_handel_, DataOffset(), stride); }
void FFTManager::DataOffset(int offset) { write_strides(desc_handel_, offset, DataStride()); }
int FFTManager::SignalCount() const { return Read(DFTI_NUMBER_OF_TRANSFORMS); }
void FFTManager::SignalCount(int count) { Write(DFTI_NUMBER_OF_TRANSFORMS, count); }
int FFTManager::SignalStride() const { return Read(DFTI_INPUT_DISTANCE); }
void FFTManager::SignalStride(int stride) { Write(DFTI_INPUT_DISTANCE, stride); }

void FFTManager::SetForwardScale(double scale) {
  DftiSetValue(desc_handel_, DFTI_FORWARD_SCALE, scale);
  DftiCommitDescriptor(desc_handel_);
}
void FFTManager::SetBackwardScale(double scale) {
  DftiSetValue(desc_handel_, DFTI_BACKWARD_SCALE, scale);
  DftiCommitDescriptor(desc_handel_);
}

double FFTManager::ReadScale(int parameter) const {
  if (precision_ == Core::FFTPrecision::Double) {
    double scale = 0;
    DftiGetValue(desc_handel_, parameter, &scale);
    return scale;
  }
  float scale = 0;
  if (precision_ == Core::FFTPrecision::Float) {
    DftiGetValue(desc_handel_, parameter, &scale);
  } else {
    ProcessStatus(DFTI_BAD_DESCRIPTOR);
  }
  return static_cast<double>(scale);
}
double FFTManager::GetForwardScaleFactor() const { return ReadScale(DFTI_FORWARD_SCALE); }
double FFTManager::GetBackwardScaleFactor() const { return ReadScale(DFTI_BACKWARD_SCALE); }

void FFTManager::CommitConfiguration() { ProcessStatus(DftiCommitDescriptor(desc_handel_)); }

void FFTManager::ProcessStatus(int status) const {
  if (DftiErrorClass(status, DFTI_NO_ERROR) != 0) return;
  const char* text = "Internal Error: Please contact support at Orbelle.";
  if (DftiErrorClass(status, DFTI_MEMORY_ERROR) != 0) text = "Memory Error: ";
  if (DftiErrorClass(status, DFTI_BAD_DESCRIPTOR) != 0 ||
      DftiErrorClass(status, DFTI_INCONSISTENT_CONFIGURATION) != 0) {
    text = "Invalid FFT Configuration: ";
  }
  throw Core::FFTKernelException(text, status, dimension_, Length(), precision_, domain_);
}

}  // namespace Tavik::Kernel
