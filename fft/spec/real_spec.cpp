// SPDX-License-Identifier: BSD-3-Clause
#include "fft/spec/real_spec.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include "fft/spec/moves.h"
#include "fft/spec/objects.h"

namespace qel::fft {
namespace {

constexpr int kLargestRealDirect = 180;  // Kept: not the 150 of complex lines

/// Moves count reals, which may overlap.
template <class R>
void shift(const R* from, R* to, core_int count) {
  std::memmove(to, from, static_cast<size_t>(count) * sizeof(R));
}

/// From R0, Rh, R1, I1, ... to the format, in place.
template <class R>
void finish_format(R* x, core_int n, packing format) {
  if (format == packing::kPerm) return;
  const bool even = n % 2 == 0;
  if (format == packing::kPack) {
    if (!even || n < 4) return;
    const R last = element_at(x + 1);
    shift(x + 2, x + 1, n - 2);
    set_element(x + n - 1, last);
  } else if (even) {
    set_element(x + n, element_at(x + 1));
    set_element(x + n + 1, R{0});
    set_element(x + 1, R{0});
  } else {
    shift(x + 1, x + 2, n - 1);
    set_element(x + 1, R{0});
  }
}

/// Back, from input to output, which may be the same.
template <class R>
void undo_format(const R* input, R* output, core_int n, packing format) {
  const bool even = n % 2 == 0;
  if (format == packing::kPerm || (format == packing::kPack && (!even || n < 4))) {
    if (input != output) shift(input, output, n);
  } else if (format == packing::kPack) {
    const R last = element_at(input + n - 1);
    shift(input + 1, output + 2, n - 2);
    set_element(output, element_at(input));
    set_element(output + 1, last);
  } else if (even) {
    const R last = element_at(input + n);
    if (input != output) shift(input, output, n);
    set_element(output + 1, last);
  } else {
    set_element(output, element_at(input));
    shift(input + 2, output + 1, n - 1);
  }
}

template <class R>
void transform_whole(const real_spec<R>& spec, const R* input, R* output, complex_of<R>* work,
                     direction way) {
  using C = complex_of<R>;
  const core_int n = spec.length;
  C* line = work;
  void* inner = work + (n + 3) / 4 * 4;
  if (way == kForward) {
    for (core_int i = 0; i < n; ++i) line[i] = {element_at(input + i), R{0}};
    dft_spec_run<R>(line, line, spec.complex, inner, way);
    set_element(output, line[0].real);
    std::memcpy(output + 1, line + 1, static_cast<size_t>(n - 1) * sizeof(R));
  } else {
    line[0] = {element_at(input), R{0}};
    std::memcpy(line + 1, input + 1, static_cast<size_t>(n - 1) * sizeof(R));
    for (core_int k = 1; 2 * k < n; ++k) line[n - k] = {line[k].real, -line[k].imag};
    dft_spec_run<R>(line, line, spec.complex, inner, way);
    for (core_int i = 0; i < n; ++i) set_element(output + i, line[i].real);
  }
}

/// Between reals and R0, Rh, R1, I1, ...
template <class R>
void transform(const real_spec<R>& spec, const R* input, R* output, void* work, direction way) {
  using C = complex_of<R>;
  const auto& kernels = level_kernels<R>();
  const R factor = spec.scaled[way] != 0 ? static_cast<R>(spec.scale) : R{1};
  const auto* pairs = reinterpret_cast<const C*>(input);
  auto* out_pairs = reinterpret_cast<C*>(output);
  const core_int half = spec.length / 2;
  switch (spec.method) {
    case real_method::kStraight:
      kernels.real[way][spec.length](input, output, factor);
      return;
    case real_method::kHalf:
      if (way == kForward) {
        dft_spec_run<R>(pairs, out_pairs, spec.complex, work, way);
        kernels.real_ends[way](out_pairs, half, spec.end_roots.get());
      } else {
        if (pairs != out_pairs) shift(input, output, spec.length);
        kernels.real_ends[way](out_pairs, half, spec.end_roots.get());
        dft_spec_run<R>(out_pairs, out_pairs, spec.complex, work, way);
      }
      break;
    case real_method::kDirect:
      kernels.direct_real[way](input, output, spec.length, spec.odd_table.get(), static_cast<R*>(work));
      break;
    case real_method::kWhole:
      transform_whole(spec, input, output, static_cast<C*>(work), way);
      break;
  }
  if (spec.scaled[way] != 0) {
    for (core_int i = 0; i < spec.length; ++i) set_element(output + i, element_at(output + i) * factor);
  }
}

/// -i exp(-2 pi i k / n) / 2 for a quarter of the circle.
template <class R>
bool make_end_roots(real_spec<R>& spec) {
  using C = complex_of<R>;
  const core_int n = spec.length;
  // The second half of the quarter mirrors the first, bit by bit, and needs no sines and cosines.
  const core_int computed = n % 4 == 0 ? n / 8 : n / 4;
  const auto roots = make_table<complex16>(computed + 1);
  spec.end_roots = make_table<C>(n / 4 + 1);
  if (roots == nullptr || spec.end_roots == nullptr) return false;
  fill_roots(roots.get(), computed + 1, n);
  C* const ends = spec.end_roots.get();
  for (core_int k = 0; k <= computed; ++k) {
    const complex16 w = roots[static_cast<size_t>(k)];
    ends[k] = narrowed<C>({w.imag / 2, -w.real / 2});
  }
  for (core_int k = computed + 1; k <= n / 4; ++k) ends[k] = {ends[n / 4 - k].imag, ends[n / 4 - k].real};
  return true;
}

template <class R>
int build(real_spec<R>& spec) {
  const core_int n = spec.length;
  const core_int inner = spec.method == real_method::kHalf ? n / 2 : n;
  switch (spec.method) {
    case real_method::kStraight:
      return 0;
    case real_method::kDirect:
      spec.odd_table = make_table<complex_of<R>>(n);
      if (spec.odd_table == nullptr) return kSpecNoMemory;
      for (core_int k = 0; k < n; ++k) {
        spec.odd_table[static_cast<size_t>(k)] = narrowed<complex_of<R>>(unit_root(k, n));
      }
      spec.workspace_bytes = 8 * spec.length + 32;
      return 0;
    case real_method::kHalf:
      if (!make_end_roots(spec)) return kSpecNoMemory;
      break;
    case real_method::kWhole:
      spec.workspace_bytes = static_cast<int>((n + 3) / 4 * 4 * core_int{sizeof(complex_of<R>)});
      break;
  }
  if (const int result = dft_spec_create(&spec.complex, inner, kUnscaled)) return result;
  spec.workspace_bytes += spec.complex->workspace_bytes + 64;
  return 0;
}

template <class R, class Run>
int with_work(const real_spec<R>* spec, const void* input, void* output, void* work, Run run) {
  if (input == nullptr || output == nullptr || spec == nullptr) return kSpecNull;
  if (spec->kind != real_spec<R>::kKind) return kSpecBadKind;
  table<char> own;
  if (work == nullptr && spec->workspace_bytes > 0) {
    own = make_table<char>(spec->workspace_bytes + 64);
    if (own == nullptr) return kSpecNoMemory;
    work = own.get();
  }
  run(reinterpret_cast<void*>((reinterpret_cast<uintptr_t>(work) + 63) & ~uintptr_t{63}));
  return 0;
}

}  // namespace

real_method choose_real_method(core_int length, bool native) {
  if (length <= kLargestStraight) return real_method::kStraight;
  if (length % 2 == 0) return real_method::kHalf;
  const bool sum = !native && length <= kLargestRealDirect && plan_line(length).method != line_method::kMixed;
  return sum ? real_method::kDirect : real_method::kWhole;
}

template <class R>
real_spec<R>::~real_spec() {
  dft_spec_free(complex);
  kind = 0;
}

template <class R>
int dft_real_spec_create(real_spec<R>** result, core_int length, int flag) {
  if (length < 1) return kSpecBadLength;
  if (result == nullptr) return kSpecNull;
  if (length > core_int{1} << kLargestOrder) return kSpecBadLength;
  if (flag != kForwardByN && flag != kBackwardByN && flag != kBothByRoot && flag != kUnscaled)
    return kSpecBadFlag;
  auto* spec = make_object<real_spec<R>>();
  if (spec == nullptr) return kSpecNoMemory;
  const auto n = static_cast<double>(length);
  spec->kind = real_spec<R>::kKind;
  spec->length = static_cast<int>(length);
  spec->scaled[kForward] = flag == kForwardByN || flag == kBothByRoot;
  spec->scaled[kBackward] = flag == kBackwardByN || flag == kBothByRoot;
  spec->scale = flag == kUnscaled ? 1.0 : flag == kBothByRoot ? 1.0 / std::sqrt(n) : 1.0 / n;
  spec->method = choose_real_method(length, native_passes<R>() != nullptr);
  if (const int status = build(*spec)) {
    free_object(spec);
    return status;
  }
  *result = spec;
  return 0;
}

template <class R>
void dft_real_spec_free(real_spec<R>* spec) {
  free_object(spec);
}

template <class R>
int real_forward(const R* input, R* output, const real_spec<R>* spec, packing format, void* work) {
  return with_work(spec, input, output, work, [&](void* aligned) {
    transform(*spec, input, output, aligned, kForward);
    finish_format(output, spec->length, format);
  });
}

template <class R>
int real_backward(const R* input, R* output, const real_spec<R>* spec, packing format, void* work) {
  return with_work(spec, input, output, work, [&](void* aligned) {
    if (format != packing::kPerm) {
      undo_format(input, output, spec->length, format);
      input = output;
    }
    transform(*spec, input, output, aligned, kBackward);
  });
}

#define QEL_INSTANTIATE(R)                                                         \
  template struct real_spec<R>;                                                    \
  template int dft_real_spec_create<R>(real_spec<R>**, core_int, int);             \
  template void dft_real_spec_free<R>(real_spec<R>*);                              \
  template int real_forward<R>(const R*, R*, const real_spec<R>*, packing, void*); \
  template int real_backward<R>(const R*, R*, const real_spec<R>*, packing, void*);
QEL_INSTANTIATE(float)
QEL_INSTANTIATE(double)
#undef QEL_INSTANTIATE

}  // namespace qel::fft
