// SPDX-License-Identifier: BSD-3-Clause
// The configuration of Fourier transforms as an object over one descriptor (qel/dfti.h).
#pragma once

#include "tavik/core/fft.h"

struct DFTI_DESCRIPTOR;

namespace Tavik::Kernel {

/// Owns one descriptor. Created empty, configured once, then used; every write of a property commits at once
/// and reports nothing: a value that the transform can't have shows when CommitConfiguration or a transform
/// is called. Strides and distances are those of the input; the output is always tight. Real results are
/// packed (DFTI_PACK_FORMAT). For one thread at a time. Failures throw Core::FFTKernelException: "Memory
/// Error: ", "Invalid FFT Configuration: " or "Internal Error: Please contact support at Orbelle.".
class TAVIK_API FFTManager : public Core::IFFTManager {
 public:
  FFTManager() = default;
  FFTManager(const FFTManager&) = delete;
  FFTManager& operator=(const FFTManager&) = delete;
  ~FFTManager() override;
  /// A new empty manager.
  static std::unique_ptr<FFTManager> GetInstance() { return std::make_unique<FFTManager>(); }
  /// A manager with the stored configuration.
  static std::unique_ptr<FFTManager> FromSerializationInfo(const Core::SerializationInfo& info,
                                                           const Core::StreamingContext& context);

  /// Makes and commits the descriptor for the first `dimension` of the lengths. A second call does not
  /// release the first one's descriptor.
  void ConfigureFFTManager(Core::FFTPrecision precision, Core::FFTDomain domain,
                           const Core::Array<int>& lengths, int dimension) override;
  /// A manager with a committed copy of the descriptor; the lengths are shared.
  std::unique_ptr<Core::IFFTManager> Clone() const override;
  /// Stores the configuration under the names below.
  void GetObjectData(Core::SerializationInfo& info, const Core::StreamingContext& context) const override;

  /// The descriptor as an integer.
  std::intptr_t DescriptorHandle() const override { return reinterpret_cast<std::intptr_t>(desc_handel_); }
  /// The first length; 0 before the configuration.
  int Length() const override { return lengths_.Length() > 0 ? lengths_[0] : 0; }
  /// As configured.
  Core::FFTPrecision Precision() const override { return precision_; }
  Core::FFTDomain Domain() const override { return domain_; }
  int Dimension() const override { return dimension_; }
  /// Where results go, and where the input begins and how far its elements lie apart.
  bool IsInPlace() const override;
  int DataStride() const override;
  void DataStride(int stride) override;
  int DataOffset() const override;
  void DataOffset(int offset) override;
  /// Transforms of one call, and how far their first elements lie apart.
  int SignalCount() const override;
  void SignalCount(int count) override;
  int SignalStride() const override;
  void SignalStride(int stride) override;
  /// Each commits; scales are 1 at first.
  void SetInPlace() override;
  void SetOutOfPlace() override;
  void SetForwardScale(double scale) override;
  void SetBackwardScale(double scale) override;
  double GetForwardScaleFactor() const override;
  double GetBackwardScaleFactor() const override;
  /// Makes the descriptor ready after changes; throws what is wrong with it.
  void CommitConfiguration() override;
  /// Releases the descriptor; further calls do nothing.
  void Dispose() override;

  /// Names of the values in a store.
  static constexpr const char* DomainName = "Domain";
  static constexpr const char* PrecisionName = "Precision";
  static constexpr const char* DimensionName = "Dimension";
  static constexpr const char* LengthsName = "Lengths";
  static constexpr const char* InPlaceName = "InPlace";
  static constexpr const char* ForwardScaleName = "FowardScale";  // Kept: stored managers have the name so.
  static constexpr const char* BackwardScaleName = "BackwardScale";
  static constexpr const char* DataStrideName = "DataStride";
  static constexpr const char* DataOffsetName = "DataOffset";
  static constexpr const char* SignalStrideName = "SignalStride";
  static constexpr const char* SignalCountName = "SignalCount";

 private:
  void CreateDescriptor();
  void ProcessStatus(int status) const;
  int Read(int parameter) const;
  void Write(int parameter, int value);
  double ReadScale(int parameter) const;

  DFTI_DESCRIPTOR* desc_handel_ = nullptr;
  Core::FFTPrecision precision_ = Core::FFTPrecision::Float;
  Core::FFTDomain domain_ = Core::FFTDomain::Real;
  int dimension_ = 0;
  Core::Array<int> lengths_;
};

}  // namespace Tavik::Kernel
