// SPDX-License-Identifier: BSD-3-Clause
#include <algorithm>
#include <cmath>

#include "fft/planning/native_plan.h"
#include "fft/spec/dft_spec.h"
#include "fft/spec/objects.h"

namespace qel::fft {
namespace {

int radix_index(int factor) {
  constexpr int kFactors[kRadices] = {2, 3, 4, 5, 7, 11};
  const int* found = std::find(kFactors, kFactors + kRadices, factor);
  return found == kFactors + kRadices ? -1 : static_cast<int>(found - kFactors);
}

template <class R>
table<complex_of<R>> roots_of(int factor, const complex16* roots, int n) {
  auto result = make_table<complex_of<R>>(factor);
  if (result == nullptr) return result;
  for (int k = 0; k < factor; ++k) {
    result[static_cast<size_t>(k)] =
        narrowed<complex_of<R>>(roots[static_cast<size_t>(k) * static_cast<size_t>(n / factor)]);
  }
  return result;
}

/// Twiddles in the order in which the join of the row reads them.
template <class R>
bool gather_twiddles(typename dft_spec<R>::factor_row& row, const complex16* roots, int n, bool in_planes) {
  using C = complex_of<R>;
  row.twiddles = make_table<C>(static_cast<core_int>(row.factor - 1) * row.remaining);
  if (row.twiddles == nullptr) return false;
  const core_int step = n / (static_cast<core_int>(row.factor) * row.remaining);
  if (in_planes) {
    fill_plane_twiddles<R>(row.twiddles.get(), row.factor, row.remaining,
                           [&](core_int product) { return roots[product * step]; });
    return true;
  }
  C* next = row.twiddles.get();
  for (core_int p = 1; p < row.factor; ++p) {
    for (core_int k = 0; k < row.remaining; ++k) *next++ = narrowed<C>(roots[p * k * step]);
  }
  return true;
}

/// Where the groups of the first pass over a cached block go: the digits of their number in reversed order.
template <class R>
bool make_places(dft_spec<R>& spec) {
  const int last = spec.plan.factor_count - 1, first = first_cached_row(spec.plan);
  spec.cached_row = first;
  const auto& top = spec.factors[first];
  spec.places = make_table<int>(top.factor * top.remaining / spec.plan.factors[last]);
  if (spec.places == nullptr) return false;
  int* const places = spec.places.get();
  places[0] = 0;
  for (int row = first, done = 1; row < last; done *= spec.factors[row++].factor) {
    for (int digit = 1; digit < spec.factors[row].factor; ++digit) {
      const int place = digit * spec.factors[row].remaining;
      for (int i = 0; i < done; ++i) places[digit * done + i] = places[i] + place;
    }
  }
  return true;
}

template <class R>
int build_mixed(dft_spec<R>& spec) {
  const auto roots = make_root_table(spec.length);
  if (roots == nullptr) return kSpecNoMemory;
  spec.in_planes = runs_in_planes(spec.plan, kPlaneBlock<R>);
  int before = 1;
  for (int i = 0; i < spec.plan.factor_count; ++i) {
    auto& row = spec.factors[i];
    row.factor = spec.plan.factors[i];
    row.stride_before = before;
    before *= row.factor;
    row.remaining = spec.length / before;
    row.radix = radix_index(row.factor);
    if (i + 1 < spec.plan.factor_count && !gather_twiddles<R>(row, roots.get(), spec.length, spec.in_planes))
      return kSpecNoMemory;
    if (row.radix >= 0) continue;
    spec.largest_generic = std::max(spec.largest_generic, row.factor);
    if (i > 0 && spec.factors[i - 1].factor == row.factor) {
      row.factor_roots = spec.factors[i - 1].factor_roots;
      continue;
    }
    row.own_roots = roots_of<R>(row.factor, roots.get(), spec.length);
    if (row.own_roots == nullptr) return kSpecNoMemory;
    row.factor_roots = row.own_roots.get();
  }
  return spec.in_planes && !make_places(spec) ? kSpecNoMemory : 0;
}

template <class R>
int build_direct(dft_spec<R>& spec) {
  const auto roots = make_root_table(spec.length);
  if (roots == nullptr) return kSpecNoMemory;
  const core_int n = spec.length, half = n / 2, block = kPlaneBlock<R>,
                 pitch = (half + block - 1) / block * block;
  spec.odd_table = make_table<complex_of<R>>(half * pitch);
  if (spec.odd_table == nullptr) return kSpecNoMemory;
  R* next = &spec.odd_table.get()->real;
  for (core_int j = 1; j <= half; ++j) {
    core_int at = 0;
    for (core_int k = 0; k < pitch; k += block, next += 2 * block) {
      for (core_int i = 0; i < block; ++i) {
        at += j;
        at -= at >= n ? n : 0;
        const complex16 root = roots[static_cast<size_t>(at)];
        next[i] = static_cast<R>(root.real);
        next[block + i] = static_cast<R>(-root.imag);
      }
    }
  }
  return 0;
}

template <class R>
int build_pow2(dft_spec<R>& spec, core_int points) {
  spec.pow2 = make_object<pow2_spec<R>>();
  if (spec.pow2 == nullptr) return kSpecNoMemory;
  int order = 0;
  while (core_int{1} << order < points) ++order;
  if (!spec.pow2->make(order)) return kSpecNoMemory;
  spec.workspace_bytes += spec.pow2->workspace_bytes;
  return 0;
}

/// A transform as a convolution with the chirp exp(-i pi k k / n), whose spectrum is kept.
template <class R>
int build_bluestein(dft_spec<R>& spec) {
  using C = complex_of<R>;
  const core_int n = spec.length, padded = spec.plan.padded;
  if (const int result = dft_spec_create(&spec.inner, padded, kUnscaled)) return result;
  spec.workspace_bytes += spec.inner->workspace_bytes + 64;
  spec.chirp = make_table<C>(n);
  spec.factor_spectrum = make_table<C>(padded);
  const auto squares = make_table<int>(n);
  const auto roots = make_table<complex16>(n);
  if (spec.chirp == nullptr || spec.factor_spectrum == nullptr || squares == nullptr || roots == nullptr)
    return kSpecNoMemory;
  for (int k = 0, square = 0; k < n; ++k) {
    squares[static_cast<size_t>(k)] = square;
    square += 2 * k + 1;
    if (square >= 2 * n) square -= static_cast<int>(2 * n);
  }
  if (!fill_roots_at(roots.get(), squares.get(), n, 2 * n)) return kSpecNoMemory;
  C *spectrum = spec.factor_spectrum.get(), *const chirp = spec.chirp.get();
  // The inverse transform's scale.
  const double scale = 1.0 / static_cast<double>(padded);
  for (core_int k = 0; k < n; ++k) {
    const complex16 w = roots[static_cast<size_t>(k)];
    chirp[k] = narrowed<C>(w);
    spectrum[k] = narrowed<C>({w.real * scale, -w.imag * scale});
  }
  std::fill(spectrum + n, spectrum + padded - n + 1, C{});
  for (core_int k = 1; k < n; ++k) spectrum[padded - k] = spectrum[k];
  // With the second buffer of a line's run, if it has one.
  table<C> second;
  if (spec.plan.second_buffer) {
    second = make_table<C>(padded);
    if (second == nullptr) return kSpecNoMemory;
    std::swap(second, spec.factor_spectrum);
  }
  return dft_spec_run<R>(spectrum, spec.factor_spectrum.get(), spec.inner, nullptr, kForward);
}

/// What is known of the spectrum of w^(g^-k), of n - 1 elements, takes half of its errors away: its absolute
/// value is sqrt(n), but 1 for the first element; half of its sequence is the conjugate of the other half, so
/// its elements k and n - 1 - k are conjugates if k is even, and negative conjugates if it is odd. Divided by
/// n - 1 for the inverse.
template <class C>
void polish_gauss_sums(C* spectrum, core_int n) {
  const core_int count = n - 1;
  const double factor = 1.0 / static_cast<double>(count), quarter_n = 0.25 / static_cast<double>(n);
  using R = decltype(C::real);
  spectrum[0] = {static_cast<R>(-factor), R{0}};
  for (core_int k = 1; 2 * k <= count; ++k) {
    const double sign = k % 2 == 0 ? 1 : -1;
    const C a = spectrum[k], b = spectrum[count - k];
    const double re = a.real + sign * b.real, im = a.imag - sign * b.imag;
    // 1 / sqrt(q) near q = 1, where q errs by some last places: the square of that does not count.
    const double size = factor * (0.75 - 0.25 * ((re * re + im * im) * quarter_n));
    spectrum[k] = narrowed<C>({re * size, im * size});
    spectrum[count - k] = narrowed<C>({sign * re * size, -sign * im * size});
  }
}

/// powers[k] = root^k modulo n, k < count.
void fill_powers(int* powers, core_int count, core_int root, core_int n) {
  // Chains, because each product waits for the one before it.
  const residues modulo(n);
  constexpr core_int kChains = 4;
  core_int power[kChains + 1] = {1};
  for (core_int i = 0; i < kChains; ++i) power[i + 1] = modulo.product(power[i], root);
  const core_int leap = power[kChains];
  for (core_int first = 0; first < count; first += kChains) {
    for (core_int i = 0; i < std::min(kChains, count - first); ++i) {
      powers[first + i] = static_cast<int>(power[i]);
      power[i] = modulo.product(power[i], leap);
    }
  }
}

/// A prime's transform as a cyclic convolution of x[g^k] with w^(g^-k), g a primitive root (Rader, Proc. IEEE
/// 56, 1968); the spectrum of the latter is kept.
template <class R>
int build_rader(dft_spec<R>& spec) {
  using C = complex_of<R>;
  const core_int n = spec.length, count = n - 1, root = primitive_root(n);
  if (const int result = dft_spec_create(&spec.inner, count, kUnscaled)) return result;
  spec.workspace_bytes += spec.inner->workspace_bytes + 64;
  spec.powers = make_table<int>(count);
  spec.factor_spectrum = make_table<C>(count);
  const core_int half = count / 2;
  const auto roots = make_table<complex16>(half);
  if (spec.powers == nullptr || spec.factor_spectrum == nullptr || roots == nullptr) return kSpecNoMemory;
  int* const powers = spec.powers.get();
  fill_powers(powers, half, root, n);
  if (!fill_roots_at(roots.get(), powers, half, n)) return kSpecNoMemory;
  // The power at half of the way is -1.
  C* const spectrum = spec.factor_spectrum.get();
  for (core_int k = 0; k < half; ++k) {
    powers[half + k] = static_cast<int>(n) - powers[k];
    const C w = narrowed<C>(roots[static_cast<size_t>(k)]);
    spectrum[k == 0 ? 0 : count - k] = w;
    spectrum[half - k] = {w.real, -w.imag};
  }
  if (const int result = dft_spec_run<R>(spectrum, spectrum, spec.inner, nullptr, kForward)) return result;
  polish_gauss_sums(spectrum, n);
  return 0;
}

template <class R>
int build_autosort(dft_spec<R>& spec) {
  spec.autosort = make_object<autosort_spec<R>>();
  if (spec.autosort == nullptr || !spec.autosort->make(spec.length, spec.use)) return kSpecNoMemory;
  spec.workspace_bytes += static_cast<int>(spec.autosort->work_reals(1) * core_int{sizeof(R)});
  return 0;
}

template <class R>
int build_long(dft_spec<R>& spec) {
  spec.long_line = make_object<long_spec<R>>();
  if (spec.long_line == nullptr || !spec.long_line->make(spec.plan.rows, spec.plan.columns))
    return kSpecNoMemory;
  const core_int reals = spec.long_line->work_reals() + 2 * (core_int{spec.length} + 8);
  spec.workspace_bytes += static_cast<int>(reals * core_int{sizeof(R)});
  return 0;
}

template <class R>
int build(dft_spec<R>& spec) {
  switch (spec.plan.method) {
    case line_method::kStraight:
      return 0;
    // 32 has a kernel of its own.
    case line_method::kPowerOfTwo:
      return spec.length == 32 ? 0 : build_pow2(spec, spec.length);
    case line_method::kMixed:
      return build_mixed(spec);
    case line_method::kDirect:
      return build_direct(spec);
    case line_method::kBluestein:
      return build_bluestein(spec);
    case line_method::kRader:
      return build_rader(spec);
    case line_method::kAutosort:
      return build_autosort(spec);
    case line_method::kLong:
      return build_long(spec);
    case line_method::kRefused:
      break;
  }
  return kSpecBadLength;
}

template <class R>
void pick_whole(dft_spec<R>& spec) {
  const auto& kernels = level_kernels<R>();
  const bool straight = spec.plan.method == line_method::kStraight;
  for (const direction way : {kForward, kBackward}) {
    auto* const in_registers = register_kernel<R>(spec.length, way);
    if (straight && spec.scaled[way] != 0) {
      spec.whole[way] = kernels.scaled[way][spec.length];
    } else if (straight && in_registers == nullptr) {
      spec.whole[way] = kernels.unscaled[way][spec.length];
    } else if (spec.scaled[way] == 0) {
      spec.whole[way] = in_registers;
    }
  }
}

/// A split line's pairs, aligned.
template <class R>
int split_bytes(core_int length) {
  return static_cast<int>((length + 7) / 8 * 8 * core_int{sizeof(complex_of<R>)});
}

/// The C library gives memory back to the system beyond twice the largest block that it has seen freed. A
/// plan's tables are many blocks, and each new plan would touch new pages; a block larger than all of them,
/// never touched, raises that bound.
template <class R>
void keep_memory_at_hand(const line_plan& plan, core_int length) {
  constexpr core_int kTables = 4, kShortest = 64, kLeast = 262144;
  if (length < kShortest) return;
  const core_int bytes = kTables * std::max<core_int>(length, plan.padded) * core_int{sizeof(complex_of<R>)};
  make_table<char>(std::max(bytes, kLeast));
}

}  // namespace

template <class R>
dft_spec<R>::~dft_spec() {
  free_object(pow2);
  free_object(autosort);
  free_object(long_line);
  dft_spec_free(inner);
  kind = 0;
}

template <class R>
int dft_spec_create(dft_spec<R>** result, core_int length, int flag, line_form form, line_use use) {
  if (length < 1) return kSpecBadLength;
  if (result == nullptr) return kSpecNull;
  if (flag != kForwardByN && flag != kBackwardByN && flag != kBothByRoot && flag != kUnscaled)
    return kSpecBadFlag;
  auto* spec = make_object<dft_spec<R>>();
  if (spec == nullptr) return kSpecNoMemory;
  const auto n = static_cast<double>(length);
  spec->kind = dft_spec<R>::kind_of(form);
  spec->form = form;
  spec->use = use;
  spec->length = static_cast<int>(length);
  spec->scaled[kForward] = flag == kForwardByN || flag == kBothByRoot;
  spec->scaled[kBackward] = flag == kBackwardByN || flag == kBothByRoot;
  spec->scale = flag == kUnscaled ? 1.0 : flag == kBothByRoot ? 1.0 / std::sqrt(n) : 1.0 / n;
  spec->plan = plan_line(length, form == line_form::kScrambled, native_passes<R>() != nullptr);
  spec->workspace_bytes = spec->plan.workspace_bytes;
  // A split line is put together in the work, before the method's own.
  if (form == line_form::kSplit) spec->workspace_bytes += split_bytes<R>(length);
  keep_memory_at_hand<R>(spec->plan, length);
  if (const int status = build(*spec)) {
    free_object(spec);
    return status;
  }
  pick_whole(*spec);
  *result = spec;
  return 0;
}

template <class R>
void dft_spec_free(dft_spec<R>* spec) {
  free_object(spec);
}

template struct dft_spec<float>;
template struct dft_spec<double>;
template int dft_spec_create<float>(dft_spec<float>**, core_int, int, line_form, line_use);
template int dft_spec_create<double>(dft_spec<double>**, core_int, int, line_form, line_use);
template void dft_spec_free<float>(dft_spec<float>*);
template void dft_spec_free<double>(dft_spec<double>*);

}  // namespace qel::fft
