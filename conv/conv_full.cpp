// SPDX-License-Identifier: BSD-3-Clause
#include "conv/conv_full.h"

#include <algorithm>
#include <utility>

#include "blas/plain/scratch.h"
#include "conv/conv_plan.h"
#include "conv/native_conv.h"
#include "conv/sum_kernels.h"
#include "fft/spec/real_spec.h"

namespace qel::conv {
namespace {

using plain::scratch;

/// The sequences in their roles.
template <class R>
struct operands {
  const R* longer;
  core_int long_count;
  const R* shorter;
  core_int short_count;
  core_int result_count() const { return long_count + short_count - 1; }
};

/// The real transform of 2^order points, scaled on the way back, and what it works in.
template <class R>
class real_transform {
 public:
  explicit real_transform(int order) : length_(core_int{1} << order) {
    if (fft::dft_real_spec_create(&spec_, length_, fft::kBackwardByN) != 0) spec_ = nullptr;
  }
  ~real_transform() { fft::dft_real_spec_free(spec_); }
  real_transform(const real_transform&) = delete;
  real_transform& operator=(const real_transform&) = delete;
  /// False if memory is out.
  bool there() const { return spec_ != nullptr; }
  core_int length() const { return length_; }
  core_int work_bytes() const { return spec_->workspace_bytes + 32; }
  /// Packed: R0, R(n/2), then pairs; in place.
  bool forward(R* line, void* work) const {
    return fft::real_forward<R>(line, line, spec_, fft::packing::kPerm, work) == 0;
  }
  bool backward(R* line, void* work) const {
    return fft::real_backward<R>(line, line, spec_, fft::packing::kPerm, work) == 0;
  }

 private:
  fft::real_spec<R>* spec_ = nullptr;
  core_int length_;
};

template <class R>
void padded(const R* from, core_int count, core_int length, R* to) {
  std::copy_n(from, count, to);
  std::fill(to + count, to + length, R{});
}

/// a *= b for packed spectra.
template <class R>
void multiply_spectra(R* a, const R* b, core_int length) {
  a[0] *= b[0];
  a[1] *= b[1];
  for (core_int k = 2; k < length; k += 2) {
    const R real = a[k] * b[k] - a[k + 1] * b[k + 1];
    a[k + 1] = a[k] * b[k + 1] + a[k + 1] * b[k];
    a[k] = real;
  }
}

template <class R>
int by_transform(const operands<R>& c, const conv_plan& plan, R* w) {
  const real_transform<R> transform(plan.order);
  if (!transform.there()) return kConvNoMemory;
  const core_int length = transform.length();
  const scratch<R> a(length), b(length);
  const scratch<char> work(transform.work_bytes());
  if (a.get() == nullptr || b.get() == nullptr || work.get() == nullptr) return kConvNoMemory;
  padded(c.longer, c.long_count, length, a.get());
  padded(c.shorter, c.short_count, length, b.get());
  if (!transform.forward(a.get(), work.get()) || !transform.forward(b.get(), work.get()))
    return kConvNoMemory;
  multiply_spectra(a.get(), b.get(), length);
  if (!transform.backward(a.get(), work.get())) return kConvNoMemory;
  std::copy_n(a.get(), c.result_count(), w);
  return 0;
}

/// Each piece of the longer sequence overlaps the one before by the taps less one, whose results it drops.
template <class R>
int by_overlap_save(const operands<R>& c, const conv_plan& plan, R* w) {
  const real_transform<R> transform(plan.order);
  if (!transform.there()) return kConvNoMemory;
  const core_int length = transform.length(), overlap = c.short_count - 1, results = c.result_count();
  const scratch<R> taps(length), piece(length);
  const scratch<char> work(transform.work_bytes());
  if (taps.get() == nullptr || piece.get() == nullptr || work.get() == nullptr) return kConvNoMemory;
  padded(c.shorter, c.short_count, length, taps.get());
  if (!transform.forward(taps.get(), work.get())) return kConvNoMemory;
  for (core_int done = 0; done < results; done += plan.step) {
    // The first piece has nothing before it: it leaves room at its end instead, so that nothing wraps around.
    const core_int dropped = done == 0 ? 0 : overlap, from = done - dropped;
    const core_int there = std::clamp<core_int>(c.long_count - from, 0, plan.step + dropped);
    padded(c.longer + std::min(from, c.long_count), there, length, piece.get());
    if (!transform.forward(piece.get(), work.get())) return kConvNoMemory;
    multiply_spectra(piece.get(), taps.get(), length);
    if (!transform.backward(piece.get(), work.get())) return kConvNoMemory;
    std::copy_n(piece.get() + dropped, std::min(plan.step, results - done), w + done);
  }
  return 0;
}

/// The longer sequence piece by piece: each adds to what the one before has left over.
template <class R>
void by_blocks(const operands<R>& c, core_int block, R* w) {
  const core_int overlap = c.short_count - 1;
  std::fill_n(w, overlap, R{});
  for (core_int from = 0; from < c.long_count; from += block) {
    const core_int count = std::min(block, c.long_count - from);
    std::fill_n(w + from + overlap, count, R{});
    accumulate(c.shorter, c.short_count, c.longer + from, count, 0, count + overlap, w + from);
  }
}

}  // namespace

template <class R>
int conv_full(const R* a, core_int na, const R* b, core_int nb, R* w) {
  if (a == nullptr || b == nullptr || w == nullptr) return kConvNull;
  if (na < 1 || nb < 1) return kConvBadLength;
  if (has_native_sums()) return native_full(a, na, b, nb, w);
  const operands<R> c = na >= nb ? operands<R>{a, na, b, nb} : operands<R>{b, nb, a, na};
  const conv_plan plan = plan_conv(c.long_count, c.short_count);
  switch (plan.method) {
    case conv_method::kTransform:
      return by_transform(c, plan, w);
    case conv_method::kOverlapSave:
      return by_overlap_save(c, plan, w);
    case conv_method::kBlocks:
      by_blocks(c, plan.block_length, w);
      return 0;
    case conv_method::kDirect:
      conv_range(a, na, b, nb, 0, c.result_count(), w);
  }
  return 0;
}

template <class R>
void conv_range(const R* a, core_int na, const R* b, core_int nb, core_int first, core_int last, R* w) {
  if (na < nb) {
    std::swap(a, b);
    std::swap(na, nb);
  }
  if (has_native_sums()) return native_sums(b, nb, a, na, first, last, w);
  std::fill_n(w, last - first, R{});
  accumulate(b, nb, a, na, first, last, w);
}

template int conv_full(const float*, core_int, const float*, core_int, float*);
template int conv_full(const double*, core_int, const double*, core_int, double*);
template void conv_range(const float*, core_int, const float*, core_int, core_int, core_int, float*);
template void conv_range(const double*, core_int, const double*, core_int, core_int, core_int, double*);

}  // namespace qel::conv
