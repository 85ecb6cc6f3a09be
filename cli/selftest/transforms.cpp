// SPDX-License-Identifier: BSD-3-Clause
// Fourier transforms: sums of the definition in wide arithmetic at all frequencies of short lengths, at a
// sample of them for long ones, whose way back must lead to the data.
#include <fmt/core.h>

#include <cmath>

#include "cli/descriptor.h"
#include "cli/selftest/recorder.h"

namespace qel::cli::selftest {
namespace {

constexpr long double kTwoPi = 6.283185307179586476925286766559005768L;

/// exp(-2 pi i k / n) for k = 0 .. n - 1
std::vector<wide> unit_roots(int n) {
  std::vector<wide> roots(static_cast<size_t>(n));
  for (int k = 0; k < n; ++k) {
    const long double angle = kTwoPi * k / n;
    roots[static_cast<size_t>(k)] = {std::cos(angle), -std::sin(angle)};
  }
  return roots;
}

wide direct_sum(const std::vector<wide>& x, const std::vector<wide>& roots, int frequency) {
  const auto n = x.size();
  wide sum = 0;
  size_t place = 0;
  for (size_t j = 0; j < n; ++j) {
    const wide &a = x[j], &w = roots[place];
    sum += wide(a.real() * w.real() - a.imag() * w.imag(), a.real() * w.imag() + a.imag() * w.real());
    place = (place + static_cast<size_t>(frequency)) % n;
  }
  return sum;
}

template <class R>
using pair_of = std::conditional_t<sizeof(R) == 4, complex8, complex16>;

template <class R>
std::vector<wide> widened_all(const std::vector<R>& data) {
  std::vector<wide> all;
  for (const R& x : data) all.push_back(widened(x));
  return all;
}

double norm_of(const std::vector<wide>& data) {
  long double sum = 0;
  for (const wide& x : data) sum += std::norm(x);
  return static_cast<double>(std::sqrt(sum));
}

/// What a transform may be off, in epsilons of the norm.
double transform_bound(double n) { return 8 + 4 * std::log2(n + 1); }

template <class R>
class transform_checks {
 public:
  transform_checks(recorder& out, std::vector<int> lengths)
      : out_(out), lengths_(std::move(lengths)), count_(1), source_(1) {
    for (const int length : lengths_) {
      count_ *= length;
      sizes_ += fmt::format("{}{}", sizes_.empty() ? "" : "x", length);
    }
    source_ = number_source(static_cast<std::uint64_t>(count_));
  }

  void complex_data(bool in_place) {
    using T = pair_of<R>;
    const std::vector<T> data = source_.numbers<T>(count_);
    std::vector<T> spectrum(data.size()), back(data.size());
    descriptor made;
    create(made, DFTI_COMPLEX);
    if (in_place) {
      expect_done(DftiCommitDescriptor(made.handle));
      spectrum = data;
      expect_done(DftiComputeForward(made.handle, spectrum.data()));
      back = spectrum;
      expect_done(DftiComputeBackward(made.handle, back.data()));
    } else {
      expect_done(DftiSetValue(made.handle, DFTI_PLACEMENT, DFTI_NOT_INPLACE));
      expect_done(DftiCommitDescriptor(made.handle));
      // The input of a transform out of place stays as it is.
      std::vector<T> input = data;
      expect_done(DftiComputeForward(made.handle, input.data(), spectrum.data()));
      std::vector<T> kept = spectrum;
      expect_done(DftiComputeBackward(made.handle, kept.data(), back.data()));
      compare_same("input", input, data);
    }
    const char* const name = in_place ? "complex in place" : "complex";
    compare_spectrum(name, widened_all(data),
                     [&](int k) { return widened(spectrum[static_cast<size_t>(k)]); });
    compare_back(name, data, back);
  }

  /// Real data of one dimension: the half spectrum as pairs of numbers.
  void real_data() {
    const std::vector<R> data = source_.numbers<R>(count_);
    std::vector<R> spectrum(data.size() + 2), back(data.size() + 2);
    descriptor made;
    create(made, DFTI_REAL);
    expect_done(DftiSetValue(made.handle, DFTI_PLACEMENT, DFTI_NOT_INPLACE));
    expect_done(DftiSetValue(made.handle, DFTI_PACKED_FORMAT, DFTI_CCS_FORMAT));
    expect_done(DftiCommitDescriptor(made.handle));
    std::vector<R> input = data;
    expect_done(DftiComputeForward(made.handle, input.data(), spectrum.data()));
    std::vector<R> kept = spectrum;
    expect_done(DftiComputeBackward(made.handle, kept.data(), back.data()));
    back.resize(data.size());
    compare_spectrum("real", widened_all(data), [&](int k) {
      const bool mirrored = 2 * k > count_;
      const auto at = static_cast<size_t>(2 * (mirrored ? count_ - k : k));
      const wide value(spectrum[at], spectrum[at + 1]);
      return mirrored ? std::conj(value) : value;
    });
    compare_back("real", data, back);
  }

 private:
  void create(descriptor& made, int domain) {
    expect_done((sizeof(R) == 4 ? DftiCreateDescriptor_s_md : DftiCreateDescriptor_d_md)(
        &made.handle, domain, static_cast<int>(lengths_.size()), lengths_.data()));
    expect_done(DftiSetValue(made.handle, DFTI_BACKWARD_SCALE, 1.0 / static_cast<double>(count_)));
  }
  std::string name(const char* kind) const {
    return fmt::format("{} {}", sizeof(R) == 4 ? "single" : "double", kind);
  }

  /// Several dimensions: line by line, by the definition, the last length fastest.
  std::vector<wide> whole_spectrum(std::vector<wide> x) const {
    size_t stride = 1;
    for (size_t d = lengths_.size(); d-- > 0;) {
      const int n = lengths_[d];
      const std::vector<wide> roots = unit_roots(n);
      std::vector<wide> line(static_cast<size_t>(n));
      for (size_t first = 0; first < x.size(); ++first) {
        if (first / stride % static_cast<size_t>(n) != 0) continue;
        for (size_t j = 0; j < line.size(); ++j) line[j] = x[first + j * stride];
        for (int k = 0; k < n; ++k) x[first + static_cast<size_t>(k) * stride] = direct_sum(line, roots, k);
      }
      stride *= static_cast<size_t>(n);
    }
    return x;
  }

  template <class At>
  void compare_spectrum(const char* kind, const std::vector<wide>& data, const At& at) {
    constexpr int kAll = 160, kSample = 9;
    double worst = 0;
    const auto judge = [&](int k, const wide& want) {
      const double error = static_cast<double>(std::abs(at(k) - want));
      raise(worst, error);
    };
    if (lengths_.size() > 1) {
      const std::vector<wide> want = whole_spectrum(data);
      for (int k = 0; k < count_; ++k) judge(k, want[static_cast<size_t>(k)]);
    } else {
      const std::vector<wide> roots = unit_roots(count_);
      for (int s = 0; s < std::min(count_, kSample); ++s) {
        if (count_ <= kAll) break;
        const int k = static_cast<int>((static_cast<std::int64_t>(s) * count_ / kSample + s) % count_);
        judge(k, direct_sum(data, roots, k));
      }
      for (int k = 0; k < count_ && count_ <= kAll; ++k) judge(k, direct_sum(data, roots, k));
    }
    out_.compare(name(kind), sizes_,
                 worst / (norm_of(data) * static_cast<double>(std::numeric_limits<R>::epsilon())),
                 transform_bound(count_));
  }
  template <class T>
  void compare_back(const char* kind, const std::vector<T>& data, const std::vector<T>& back) {
    const std::vector<wide> want = widened_all(data), got = widened_all(back);
    double worst = 0;
    for (size_t i = 0; i < want.size(); ++i) {
      const double error = static_cast<double>(std::abs(got[i] - want[i]));
      raise(worst, error);
    }
    out_.compare(name(kind) + " and back", sizes_, worst / kEpsilon<T>, transform_bound(count_));
  }
  template <class T>
  void compare_same(const char* kind, const std::vector<T>& got, const std::vector<T>& want) {
    bool same = true;
    for (size_t i = 0; i < want.size(); ++i) same = same && widened(got[i]) == widened(want[i]);
    out_.expect(name(kind), sizes_, same);
  }

  recorder& out_;
  const std::vector<int> lengths_;
  int count_;
  number_source source_;
  std::string sizes_;
};

template <class R>
void check_precision(recorder& out) {
  const auto line = [&](int n) {
    transform_checks<R> checks(out, {n});
    checks.complex_data(false);
    checks.complex_data(true);
    checks.real_data();
  };
  for (int n = 1; n <= 66; ++n) line(n);
  for (const int n :
       {96,  100,  101,  121,  127,  128,  144,  169,  243,  251,  256,   343,   512,   625,  720,
        997, 1000, 1024, 1155, 2048, 3125, 4096, 5041, 6561, 8192, 10007, 16384, 30030, 65536}) {
    line(n);
  }
  for (const std::vector<int>& lengths :
       {std::vector{2, 3}, {5, 8}, {16, 16}, {13, 10}, {32, 7}, {3, 4, 5}, {8, 1, 6}, {2, 3, 4, 5}}) {
    transform_checks<R>(out, lengths).complex_data(false);
    transform_checks<R>(out, lengths).complex_data(true);
  }
}

}  // namespace

void check_transforms(recorder& out) {
  check_precision<double>(out);
  check_precision<float>(out);
}

}  // namespace qel::cli::selftest
