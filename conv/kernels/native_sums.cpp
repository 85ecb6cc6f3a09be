// SPDX-License-Identifier: BSD-3-Clause
// Sums of convolution for processor types with fused multiply and add. A block of outputs stays in registers
// while the taps go by, four taps a register's width apart together: output register r meets tap k of them at
// the data of r - k, so one load serves up to four products. Where only some outputs of a register meet a tap
// the others are masked: a product with data that is not there is never formed.
#include <immintrin.h>
#include <stdint.h>

#include "conv/kernels/conv_kernels.h"

#ifndef QEL_LEVEL
#error "kernel files are built by qel_add_level, which names the processor type"
#endif

namespace qel::QEL_LEVEL {
namespace {

#define QEL_INLINE [[gnu::always_inline]] static inline

#if defined(__AVX512F__)
constexpr int kRegisters = 32;
struct doubles {
  using real = double;
  using reg = __m512d;
  using mask = __mmask8;
  static constexpr int kCount = 8;
  QEL_INLINE reg all(double v) { return _mm512_set1_pd(v); }
  QEL_INLINE reg load(const double* p) { return _mm512_loadu_pd(p); }
  QEL_INLINE void store(double* p, reg v) { _mm512_storeu_pd(p, v); }
  QEL_INLINE void store_some(double* p, mask m, reg v) { _mm512_mask_storeu_pd(p, m, v); }
  QEL_INLINE reg plus_product(reg sum, reg a, reg b) { return _mm512_fmadd_pd(a, b, sum); }
  QEL_INLINE reg plus_some(reg sum, mask m, reg a, const double* p) {
    return _mm512_mask3_fmadd_pd(a, _mm512_maskz_loadu_pd(m, p), sum, m);
  }
  QEL_INLINE reg swapped(reg a) { return _mm512_maskz_permute_pd(0xFF, a, 0x55); }
  QEL_INLINE reg minus_plus(reg a, reg b) { return _mm512_fmaddsub_pd(a, all(1), b); }
  QEL_INLINE mask lanes(int64_t from, int64_t to) { return static_cast<mask>((1U << to) - (1U << from)); }
};
struct floats {
  using real = float;
  using reg = __m512;
  using mask = __mmask16;
  static constexpr int kCount = 16;
  QEL_INLINE reg all(float v) { return _mm512_set1_ps(v); }
  QEL_INLINE reg load(const float* p) { return _mm512_loadu_ps(p); }
  QEL_INLINE void store(float* p, reg v) { _mm512_storeu_ps(p, v); }
  QEL_INLINE void store_some(float* p, mask m, reg v) { _mm512_mask_storeu_ps(p, m, v); }
  QEL_INLINE reg plus_product(reg sum, reg a, reg b) { return _mm512_fmadd_ps(a, b, sum); }
  QEL_INLINE reg plus_some(reg sum, mask m, reg a, const float* p) {
    return _mm512_mask3_fmadd_ps(a, _mm512_maskz_loadu_ps(m, p), sum, m);
  }
  QEL_INLINE reg swapped(reg a) { return _mm512_maskz_permute_ps(0xFFFF, a, 0xB1); }
  QEL_INLINE reg minus_plus(reg a, reg b) { return _mm512_fmaddsub_ps(a, all(1), b); }
  QEL_INLINE mask lanes(int64_t from, int64_t to) { return static_cast<mask>((1U << to) - (1U << from)); }
};
#else
constexpr int kRegisters = 16;
struct doubles {
  using real = double;
  using reg = __m256d;
  using mask = __m256i;
  static constexpr int kCount = 4;
  QEL_INLINE reg all(double v) { return _mm256_set1_pd(v); }
  QEL_INLINE reg load(const double* p) { return _mm256_loadu_pd(p); }
  QEL_INLINE void store(double* p, reg v) { _mm256_storeu_pd(p, v); }
  QEL_INLINE void store_some(double* p, mask m, reg v) { _mm256_maskstore_pd(p, m, v); }
  QEL_INLINE reg plus_product(reg sum, reg a, reg b) { return _mm256_fmadd_pd(a, b, sum); }
  QEL_INLINE reg plus_some(reg sum, mask m, reg a, const double* p) {
    return _mm256_blendv_pd(sum, plus_product(sum, a, _mm256_maskload_pd(p, m)), _mm256_castsi256_pd(m));
  }
  QEL_INLINE reg swapped(reg a) { return _mm256_permute_pd(a, 5); }
  QEL_INLINE reg minus_plus(reg a, reg b) { return _mm256_addsub_pd(a, b); }
  QEL_INLINE mask lanes(int64_t from, int64_t to) {
    const mask lane = _mm256_set_epi64x(3, 2, 1, 0);
    return _mm256_andnot_si256(_mm256_cmpgt_epi64(_mm256_set1_epi64x(from), lane),
                               _mm256_cmpgt_epi64(_mm256_set1_epi64x(to), lane));
  }
};
struct floats {
  using real = float;
  using reg = __m256;
  using mask = __m256i;
  static constexpr int kCount = 8;
  QEL_INLINE reg all(float v) { return _mm256_set1_ps(v); }
  QEL_INLINE reg load(const float* p) { return _mm256_loadu_ps(p); }
  QEL_INLINE void store(float* p, reg v) { _mm256_storeu_ps(p, v); }
  QEL_INLINE void store_some(float* p, mask m, reg v) { _mm256_maskstore_ps(p, m, v); }
  QEL_INLINE reg plus_product(reg sum, reg a, reg b) { return _mm256_fmadd_ps(a, b, sum); }
  QEL_INLINE reg plus_some(reg sum, mask m, reg a, const float* p) {
    return _mm256_blendv_ps(sum, plus_product(sum, a, _mm256_maskload_ps(p, m)), _mm256_castsi256_ps(m));
  }
  QEL_INLINE reg swapped(reg a) { return _mm256_permute_ps(a, 0xB1); }
  QEL_INLINE reg minus_plus(reg a, reg b) { return _mm256_addsub_ps(a, b); }
  QEL_INLINE mask lanes(int64_t from, int64_t to) {
    const mask lane = _mm256_set_epi32(7, 6, 5, 4, 3, 2, 1, 0);
    return _mm256_andnot_si256(_mm256_cmpgt_epi32(_mm256_set1_epi32(static_cast<int>(from)), lane),
                               _mm256_cmpgt_epi32(_mm256_set1_epi32(static_cast<int>(to)), lane));
  }
};
#endif

/// Sums of real numbers, kLanes to a register.
template <class V>
struct reals {
  using element = typename V::real;
  using reg = typename V::reg;
  using mask = typename V::mask;
  using sum = reg;
  using tap = reg;
  static constexpr int kLanes = V::kCount, kMost = 8, kTogether = 4;
  static constexpr int kMostAtOnce = kRegisters == 32 ? 12 : 10;
  QEL_INLINE tap broadcast(const element* p) { return V::all(*p); }
  QEL_INLINE reg load(const element* p) { return V::load(p); }
  QEL_INLINE mask lanes(int64_t from, int64_t to) { return V::lanes(from, to); }
  QEL_INLINE void add(sum& s, tap a, reg data) { s = V::plus_product(s, a, data); }
  QEL_INLINE void add_some(sum& s, mask m, tap a, const element* p) { s = V::plus_some(s, m, a, p); }
  QEL_INLINE void store(element* p, sum s) { V::store(p, s); }
  QEL_INLINE void store_some(element* p, mask m, sum s) { V::store_some(p, m, s); }
};

/// Sums of complex numbers: products with a tap's real and with its imaginary part are kept apart to the end.
template <class V, class C>
struct complexes {
  using element = C;
  using real = typename V::real;
  using reg = typename V::reg;
  using mask = typename V::mask;
  struct sum {
    reg by_real, by_imag;
  };
  struct tap {
    reg real, imag;
  };
  static constexpr int kLanes = V::kCount / 2, kMost = kRegisters / 4, kTogether = kRegisters / 8;
  static constexpr int kMostAtOnce = kRegisters == 32 ? 12 : 5;
  QEL_INLINE tap broadcast(const C* p) { return {V::all(p->real), V::all(p->imag)}; }
  QEL_INLINE reg load(const C* p) { return V::load(parts(p)); }
  QEL_INLINE mask lanes(int64_t from, int64_t to) { return V::lanes(2 * from, 2 * to); }
  QEL_INLINE void add(sum& s, tap a, reg data) {
    s.by_real = V::plus_product(s.by_real, a.real, data);
    s.by_imag = V::plus_product(s.by_imag, a.imag, data);
  }
  QEL_INLINE void add_some(sum& s, mask m, tap a, const C* p) {
    s.by_real = V::plus_some(s.by_real, m, a.real, parts(p));
    s.by_imag = V::plus_some(s.by_imag, m, a.imag, parts(p));
  }
  QEL_INLINE void store(C* p, sum s) { V::store(reinterpret_cast<real*>(p), joined(s)); }
  QEL_INLINE void store_some(C* p, mask m, sum s) { V::store_some(reinterpret_cast<real*>(p), m, joined(s)); }

 private:
  QEL_INLINE const real* parts(const C* p) { return reinterpret_cast<const real*>(p); }
  QEL_INLINE reg joined(sum s) { return V::minus_plus(s.by_real, V::swapped(s.by_imag)); }
};

inline int64_t least(int64_t a, int64_t b) { return a < b ? a : b; }
inline int64_t greatest(int64_t a, int64_t b) { return a > b ? a : b; }

template <class S>
struct run {
  using element = typename S::element;
  const element* taps;
  int64_t tap_count;
  const element* data;
  int64_t data_count;
};

/// count times kTaps taps, a register's width apart, that meet data at every output.
template <class S, int kOutputs, int kTaps>
[[gnu::always_inline]] inline void whole_taps(const typename S::element* taps,
                                              const typename S::element* data, int64_t count,
                                              typename S::sum* sums) {
  if constexpr (kTaps > 0) {
#pragma GCC unroll 1
    for (int64_t j = 0; j < count; ++j, ++taps, --data) {
      typename S::tap tap[kTaps];
#pragma GCC unroll 4
      for (int k = 0; k < kTaps; ++k) tap[k] = S::broadcast(taps + k * S::kLanes);
#pragma GCC unroll 16
      for (int q = 1 - kTaps; q < kOutputs; ++q) {
        auto numbers = S::load(data + q * S::kLanes);
        // In a register: the compiler would load them again for each product.
        asm("" : "+v"(numbers));
#pragma GCC unroll 4
        for (int k = 0; k < kTaps; ++k)
          if (q + k >= 0 && q + k < kOutputs) S::add(sums[q + k], tap[k], numbers);
      }
    }
  }
}

/// The taps that are left over: rows of a register's width, the last of which is `over` longer.
template <class S, int kOutputs, int kRows>
[[gnu::always_inline]] inline void last_whole_taps(const typename S::element* taps,
                                                   const typename S::element* data, int64_t rows,
                                                   int64_t over, typename S::sum* sums) {
  if constexpr (kRows < S::kTogether) {
    if (rows == kRows) {
      whole_taps<S, kOutputs, kRows + 1>(taps, data, over, sums);
      whole_taps<S, kOutputs, kRows>(taps + over, data - over, S::kLanes - over, sums);
    } else {
      last_whole_taps<S, kOutputs, kRows + 1>(taps, data, rows, over, sums);
    }
  }
}

/// Taps m = from .. to - 1, counted from the first that misses an output of the block: kOld, from the first
/// that meets the data's end, of which the last outputs miss; otherwise from the first behind the data's
/// start, which the first outputs miss. Register kRegister is the one that they meet in part.
template <class S, int kOutputs, bool kOld, int kRegister = 0>
[[gnu::always_inline]] inline void part_taps(const typename S::element* taps, const typename S::element* data,
                                             int64_t from, int64_t to, typename S::sum* sums) {
  constexpr int64_t kBegin = kRegister * S::kLanes;
  const int64_t end = least(to, kBegin + S::kLanes);
#pragma GCC unroll 1
  for (int64_t m = greatest(from, kBegin); m < end; ++m) {
    const auto tap = S::broadcast(taps + m);
    const int64_t met = m - kBegin + 1;
    const auto lanes = kOld ? S::lanes(0, met) : S::lanes(met, S::kLanes);
    S::add_some(sums[kRegister], lanes, tap, data - m + kBegin);
#pragma GCC unroll 8
    for (int r = kOld ? 0 : kRegister + 1; r < (kOld ? kRegister : kOutputs); ++r)
      S::add(sums[r], tap, S::load(data - m + r * S::kLanes));
  }
  if constexpr (kRegister + 1 < kOutputs) {
    if (to > kBegin + S::kLanes) part_taps<S, kOutputs, kOld, kRegister + 1>(taps, data, from, to, sums);
  }
}

/// kOutputs registers of outputs from t on; there are as many data at least.
template <class S, int kOutputs>
void block(const run<S>& c, int64_t t, typename S::element* w) {
  constexpr int64_t kCount = kOutputs * S::kLanes, kGroup = S::kTogether * S::kLanes;
  typename S::sum sums[kOutputs] = {};
  // The tap that meets the end of the data at the first output.
  const int64_t old = t - c.data_count + 1;
  if (old + kCount - 1 > 0)
    part_taps<S, kOutputs, true>(c.taps + old, c.data + (t - old), greatest(-old, 0),
                                 least(kCount - 1, c.tap_count - old), sums);
  int64_t i = greatest(old + kCount - 1, 0), left = least(t + 1, c.tap_count) - i;
  for (; left >= kGroup; left -= kGroup, i += kGroup)
    whole_taps<S, kOutputs, S::kTogether>(c.taps + i, c.data + (t - i), S::kLanes, sums);
  if (left > 0)
    last_whole_taps<S, kOutputs, 0>(c.taps + i, c.data + (t - i), left / S::kLanes, left % S::kLanes, sums);
  if (t + 1 < c.tap_count)
    part_taps<S, kOutputs, false>(c.taps + t + 1, c.data - 1, 0, least(kCount - 1, c.tap_count - t - 1),
                                  sums);
#pragma GCC unroll 8
  for (int r = 0; r < kOutputs; ++r) S::store(w + r * S::kLanes, sums[r]);
}

/// Up to a register of outputs, all masked.
template <class S>
void few_outputs(const run<S>& c, int64_t t, int64_t count, typename S::element* w) {
  typename S::sum sum{};
  for (int64_t i = greatest(t - c.data_count + 1, 0); i < least(t + count, c.tap_count); ++i) {
    const auto lanes = S::lanes(greatest(i - t, 0), least(count, c.data_count - t + i));
    S::add_some(sum, lanes, S::broadcast(c.taps + i), c.data + (t - i));
  }
  S::store_some(w, S::lanes(0, count), sum);
}

/// A block of so many registers; S::kMost of them at most, and even.
template <class S, int kOutputs>
[[gnu::always_inline]] inline void block_of(int64_t outputs, const run<S>& c, int64_t t,
                                            typename S::element* w) {
  if (kOutputs == S::kMost || outputs == kOutputs) {
    block<S, kOutputs>(c, t, w);
  } else if constexpr (kOutputs < S::kMost) {
    block_of<S, kOutputs + 2>(outputs, c, t, w);
  }
}

/// Taps from .. to - 1 of the first register's width, each with those kTaps - 1 that are a width further,
/// over all outputs. Data begin in the first register and end in one of the last three, see fits_one_block.
template <class S, int kOutputs, int kTaps>
[[gnu::always_inline]] inline void taps_of_all(const run<S>& c, int64_t from, int64_t to,
                                               typename S::sum* sums) {
  constexpr int64_t kLanes = S::kLanes;
#pragma GCC unroll 1
  for (int64_t j = from; j < to; ++j) {
    typename S::tap tap[kTaps];
#pragma GCC unroll 2
    for (int k = 0; k < kTaps; ++k) tap[k] = S::broadcast(c.taps + j + k * kLanes);
    const auto* const data = c.data - j;
#pragma GCC unroll 16
    for (int q = 0; q < kOutputs; ++q) {
      const int64_t begin = q * kLanes;
      if (q == 0 || q >= kOutputs - 3) {
        const int64_t end = least(greatest(j + c.data_count - begin, 0), kLanes);
        const auto lanes = q == 0 ? S::lanes(j, kLanes) : S::lanes(0, end);
#pragma GCC unroll 2
        for (int k = 0; k < kTaps; ++k)
          if (q + k < kOutputs) S::add_some(sums[q + k], lanes, tap[k], data + begin);
      } else {
        auto numbers = S::load(data + begin);
        asm("" : "+v"(numbers));
#pragma GCC unroll 2
        for (int k = 0; k < kTaps; ++k) S::add(sums[q + k], tap[k], numbers);
      }
    }
  }
}

/// All outputs of a few taps in one block of kOutputs registers.
template <class S, int kOutputs>
void all_outputs(const run<S>& c, typename S::element* w) {
  typename S::sum sums[kOutputs] = {};
  const int64_t over = greatest(c.tap_count - S::kLanes, 0);
  taps_of_all<S, kOutputs, 2>(c, 0, over, sums);
  taps_of_all<S, kOutputs, 1>(c, over, least(c.tap_count, S::kLanes), sums);
#pragma GCC unroll 16
  for (int r = 0; r < kOutputs - 1; ++r) S::store(w + r * S::kLanes, sums[r]);
  const int64_t rest = c.data_count + c.tap_count - 1 - (kOutputs - 1) * S::kLanes;
  S::store_some(w + (kOutputs - 1) * S::kLanes, S::lanes(0, rest), sums[kOutputs - 1]);
}

template <class S, int kOutputs = 5>
[[gnu::always_inline]] inline void all_outputs_of(int64_t outputs, const run<S>& c, typename S::element* w) {
  if (kOutputs == S::kMostAtOnce || outputs == kOutputs) {
    all_outputs<S, kOutputs>(c, w);
  } else if constexpr (kOutputs < S::kMostAtOnce) {
    all_outputs_of<S, kOutputs + 1>(outputs, c, w);
  }
}

/// With at most two registers of taps, data fill all registers but the first and the last three.
template <class S>
[[gnu::always_inline]] inline bool fits_one_block(const run<S>& c, int64_t registers) {
  return c.tap_count <= 2 * S::kLanes && registers >= 5 && registers <= S::kMostAtOnce;
}

/// Blocks end where the taps that they meet change, so that most of them meet whole taps only; one that
/// would go beyond the last output begins earlier and repeats some.
template <class S>
void sums(const run<S>& c, int64_t first, int64_t last, typename S::element* w) {
  const int64_t all = c.data_count + c.tap_count - 1, registers = (all + S::kLanes - 1) / S::kLanes;
  if (last - first == all && fits_one_block(c, registers)) {
    all_outputs_of<S>(registers, c, w);
    return;
  }
  const int64_t room = least(c.data_count, last - first) / (2 * S::kLanes) * 2;
  const int64_t most = least(room, S::kMost);
  if (most == 0) {
    for (int64_t t = first; t < last; t += S::kLanes)
      few_outputs(c, t, least(S::kLanes, last - t), w + (t - first));
    return;
  }
  for (int64_t t = first; t < last;) {
    const int64_t change = t < c.tap_count - 1 ? c.tap_count - 1 : t < c.data_count ? c.data_count : last;
    const int64_t wanted = (least(change, last) - t + 2 * S::kLanes - 1) / (2 * S::kLanes) * 2;
    const int64_t outputs = least(most, wanted), count = outputs * S::kLanes;
    t = least(t, last - count);
    block_of<S, 2>(outputs, c, t, w + (t - first));
    t += count;
  }
}

}  // namespace

#define QEL_NATIVE_SUMS(letter, S, E)                                                                       \
  void sums_##letter(const E* taps, core_int tap_count, const E* data, core_int data_count, core_int first, \
                     core_int last, E* w) {                                                                 \
    sums<S>(run<S>{taps, tap_count, data, data_count}, first, last, w);                                     \
  }
using complex_floats = complexes<floats, complex8>;
using complex_doubles = complexes<doubles, complex16>;
QEL_NATIVE_SUMS(s, reals<floats>, float)
QEL_NATIVE_SUMS(d, reals<doubles>, double)
QEL_NATIVE_SUMS(c, complex_floats, complex8)
QEL_NATIVE_SUMS(z, complex_doubles, complex16)
#undef QEL_NATIVE_SUMS

}  // namespace qel::QEL_LEVEL
