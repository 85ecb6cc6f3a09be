// SPDX-License-Identifier: BSD-3-Clause
#include <algorithm>
#include <cstdint>

#include "fft/spec/dft_spec.h"
#include "fft/spec/moves.h"

namespace qel::fft {
namespace {

constexpr team kAlone{0, 1};
constexpr core_int kShareGrain = 16;

/// The passes over a factor table.
template <class R>
class mixed_passes {
  using C = complex_of<R>;

 public:
  mixed_passes(const dft_spec<R>& spec, C* scratch, direction way)
      : spec_(spec),
        kernels_(level_kernels<R>()),
        scratch_(scratch),
        way_(way),
        last_(spec.plan.factor_count - 1) {}

  /// All passes into target; the last one writes to output.
  void run(const C* input, C* target, C* output) {
    if (last_ == 1 || spec_.length < kCachedBlock) {
      leaves(input, 0, target);
      for (int row = last_ - 1; row > 0; --row) join(row, target, target, spec_.factors[row].stride_before);
    } else {
      sub_blocks(input, 0, target);
    }
    join(0, target, output, 1);
  }

  /// Forward into, backward out of the order in which the leaves lie side by side.
  void run_scrambled(const C* input, C* output) {
    if (input != output) std::copy_n(input, spec_.length, output);
    scrambled_block(output, 0);
  }

 private:
  void scrambled_block(C* data, int row) {
    const auto& of = spec_.factors[row];
    if (row == last_) {
      leaf_of(data, 1, of.factor, data, 1);
      return;
    }
    if (way_ == kForward) split(row, data);
    if (row + 1 == last_) {
      leaf_of(data, 1, of.remaining, data, of.factor);
    } else {
      for (core_int i = 0; i < of.factor; ++i) scrambled_block(data + i * of.remaining, row + 1);
    }
    if (way_ == kBackward) join(row, data, data, 1);
  }
  /// The blocks that row joins, from input to target.
  void sub_blocks(const C* input, int row, C* target) {
    const auto& of = spec_.factors[row];
    for (core_int i = 0; i < of.factor; ++i) {
      block(input + i * of.stride_before, row + 1, target + i * of.remaining);
    }
  }
  /// The transform of a block whose last join is that of row.
  void block(const C* input, int row, C* target) {
    const auto& of = spec_.factors[row];
    if (of.factor * of.remaining < kCachedBlock) {
      leaves(input, row, target);
      for (int r = last_ - 1; r >= row; --r) {
        join(r, target, target, spec_.factors[r].stride_before / of.stride_before);
      }
    } else if (row + 1 == last_) {
      leaves(input, row, target);
      join(row, target, target, 1);
    } else {
      sub_blocks(input, row, target);
      join(row, target, target, 1);
    }
  }
  /// The first pass over all elements of the block of row.
  void leaves(const C* input, int row, C* target) {
    const auto& of = spec_.factors[row];
    if (row == last_) {
      leaf(input, 0, target, 1);
    } else if (row + 1 == last_) {
      leaf(input, of.stride_before, target, of.factor);
    } else {
      for (core_int i = 0; i < of.factor; ++i) {
        leaves(input + i * of.stride_before, row + 1, target + i * of.remaining);
      }
    }
  }
  void leaf(const C* input, core_int step, C* target, core_int count) {
    leaf_of(input, spec_.factors[last_].stride_before, step, target, count);
  }
  void leaf_of(const C* input, core_int stride, core_int step, C* target, core_int count) {
    const auto& of = spec_.factors[last_];
    if (of.radix >= 0) {
      kernels_.leaf[way_][of.radix](input, stride, step, target, count);
    } else {
      kernels_.any_leaf[way_](input, stride, step, target, count, of.factor, of.factor_roots, scratch_);
    }
  }
  void split(int row, C* data) {
    const auto& of = spec_.factors[row];
    if (of.radix >= 0) {
      kernels_.split[way_][of.radix](data, data, 1, of.remaining, of.twiddles.get());
    } else {
      kernels_.any_split[way_](data, data, 1, of.remaining, of.twiddles.get(), of.factor, of.factor_roots,
                               scratch_);
    }
  }
  void join(int row, const C* source, C* target, core_int blocks) {
    const auto& of = spec_.factors[row];
    if (of.radix >= 0) {
      kernels_.join[way_][of.radix](source, target, blocks, of.remaining, of.twiddles.get());
    } else {
      kernels_.any_join[way_](source, target, blocks, of.remaining, of.twiddles.get(), of.factor,
                              of.factor_roots, scratch_);
    }
  }

  const dft_spec<R>& spec_;
  const typename precision_types<R>::kernels& kernels_;
  C* scratch_;
  direction way_;
  int last_;
};

/// The same over lines as planes.
template <class R>
class plane_passes {
  using C = complex_of<R>;

 public:
  plane_passes(const dft_spec<R>& spec, direction way)
      : spec_(spec),
        kernels_(level_kernels<R>()),
        way_(way),
        last_(spec.plan.factor_count - 1),
        cached_(spec.cached_row) {}

  void run(const C* input, C* target, C* output) {
    if (cached_ == 0) {
      cached_block(input, target);
    } else {
      sub_blocks(input, 0, target);
    }
    join(0, target, output, 1, kPairs);
  }

 private:
  void sub_blocks(const C* input, int row, C* target) {
    const auto& of = spec_.factors[row];
    for (core_int i = 0; i < of.factor; ++i) {
      block(input + i * of.stride_before, row + 1, target + i * of.remaining);
    }
  }
  void block(const C* input, int row, C* target) {
    if (row == cached_) {
      cached_block(input, target);
    } else {
      sub_blocks(input, row, target);
    }
    join(row, target, target, 1, kPlanes);
  }
  /// All passes of the first cached row's block but its own join.
  void cached_block(const C* input, C* target) {
    const auto& of = spec_.factors[cached_];
    const int leaf = spec_.factors[last_].factor;
    const core_int groups = of.factor * of.remaining / leaf;
    kernels_.first_planes[way_][leaf == 2 ? 0 : 1](input, of.stride_before, of.stride_before * groups, target,
                                                   spec_.places.get(), groups);
    for (int row = last_ - 1; row > cached_; --row) {
      join(row, target, target, spec_.factors[row].stride_before / of.stride_before, kPlanes);
    }
  }
  void join(int row, const C* source, C* target, core_int blocks, plane_side side) {
    const auto& of = spec_.factors[row];
    if (of.radix >= 0) {
      kernels_.plane_join[way_][side][of.radix](source, of.remaining, target, of.remaining, of.remaining,
                                                blocks, of.twiddles.get());
    } else {
      kernels_.any_plane_join[way_][side](source, of.remaining, target, of.remaining, of.remaining, blocks,
                                          of.twiddles.get(), of.factor, of.factor_roots);
    }
  }

  const dft_spec<R>& spec_;
  const typename precision_types<R>::kernels& kernels_;
  direction way_;
  int last_, cached_;
};

template <class R>
void run_line(const complex_of<R>* input, complex_of<R>* output, const dft_spec<R>& spec, complex_of<R>* work,
              direction way, const team& members);

/// data *= factor, or into another array: what one thread has of it.
template <class R>
void multiply_share(const complex_of<R>* source, const complex_of<R>* factor, complex_of<R>* target,
                    core_int n, const team& members) {
  const auto [from, to] = members.share_of(n, kShareGrain);
  level_kernels<R>().multiply[kForward](source + from, factor + from, target + from, to - from);
}

template <class R>
void run_bluestein(const complex_of<R>* input, complex_of<R>* output, const dft_spec<R>& spec,
                   complex_of<R>* work, direction way, const team& members) {
  using C = complex_of<R>;
  const core_int n = spec.length, padded = spec.plan.padded;
  C* const middle = spec.plan.second_buffer ? work + padded : work;
  C* const inner = middle + padded;
  multiply_share<R>(input, spec.chirp.get(), work, n, members);
  const team::range zeros = members.share_of(padded - n, kShareGrain);
  std::fill(work + n + zeros.from, work + n + zeros.to, C{});
  members.wait();
  run_line<R>(work, middle, *spec.inner, inner, kForward, members);
  members.wait();
  multiply_share<R>(middle, spec.factor_spectrum.get(), middle, padded, members);
  members.wait();
  run_line<R>(middle, work, *spec.inner, inner, kBackward, members);
  members.wait();
  multiply_share<R>(work, spec.chirp.get(), output, n, members);
  if (way == kForward) return;
  members.wait();
  const team::range pairs = members.share_of((n - 1) / 2, kShareGrain);
  for (core_int k = 1 + pairs.from; k <= pairs.to; ++k) std::swap(output[k], output[n - k]);
}

template <class R>
void run_rader(const complex_of<R>* input, complex_of<R>* output, const dft_spec<R>& spec,
               complex_of<R>* work, direction way, const team& members) {
  using C = complex_of<R>;
  const core_int count = spec.length - 1, half = count / 2;
  const int* const powers = spec.powers.get();
  C* const inner = work + (count + 7) / 8 * 8;
  const team::range own = members.share_of(count, kShareGrain);
  const C first = input[0];
  for (core_int k = own.from; k < own.to; ++k) work[k] = input[powers[k]];
  members.wait();
  run_line<R>(work, work, *spec.inner, inner, kForward, members);
  members.wait();
  C sum{};  // only the thread that will change work[0] may look at it here
  if (members.part == 0) sum = {first.real + work[0].real, first.imag + work[0].imag};
  multiply_share<R>(work, spec.factor_spectrum.get(), work, count, members);
  // The first element is a term of all results but the first.
  if (members.part == 0) work[0] = {work[0].real + first.real, work[0].imag + first.imag};
  members.wait();
  // Forward once more: that turns the order of the results round, and with it the powers.
  run_line<R>(work, work, *spec.inner, inner, kForward, members);
  members.wait();
  if (members.part == 0) output[0] = sum;
  // The backward transform is the forward one of -k, and -1 is the power at half of the way.
  const core_int shift = way == kForward ? 0 : half, turn = std::clamp(count - shift, own.from, own.to);
  for (core_int k = own.from; k < turn; ++k) output[powers[k + shift]] = work[k];
  for (core_int k = turn; k < own.to; ++k) output[powers[k + shift - count]] = work[k];
}

template <class R>
void run_line(const complex_of<R>* input, complex_of<R>* output, const dft_spec<R>& spec, complex_of<R>* work,
              direction way, const team& members) {
  const auto& kernels = level_kernels<R>();
  switch (spec.plan.method) {
    case line_method::kPowerOfTwo:
      if (spec.pow2 == nullptr) {
        kernels.of_32[way](input, output, R{1});
      } else if (spec.plan.scrambled) {
        spec.pow2->run_scrambled(input, output, work, way);
      } else {
        spec.pow2->run(input, output, work, way);
      }
      break;
    case line_method::kMixed: {
      if (spec.plan.scrambled) {
        mixed_passes<R>(spec, work, way).run_scrambled(input, output);
        break;
      }
      constexpr auto kGenericWork = 16 / static_cast<core_int>(sizeof(complex_of<R>));
      complex_of<R>* target = input == output ? work + spec.largest_generic * kGenericWork : output;
      if (spec.in_planes) {
        plane_passes<R>(spec, way).run(input, target, output);
      } else {
        mixed_passes<R>(spec, work, way).run(input, target, output);
      }
      break;
    }
    case line_method::kDirect:
      kernels.direct_sums[way](input, output, spec.length, spec.odd_table.get());
      break;
    case line_method::kAutosort:
      spec.autosort->run_line(input, output, reinterpret_cast<R*>(work), way, members);
      break;
    case line_method::kLong: {
      const long_spec<R>& line = *spec.long_line;
      R* const rest = reinterpret_cast<R*>(work + (line.rows * line.columns + 7) / 8 * 8);
      line.run(input, work, output, rest, way, members);
      break;
    }
    case line_method::kBluestein:
      run_bluestein(input, output, spec, work, way, members);
      break;
    case line_method::kRader:
      run_rader(input, output, spec, work, way, members);
      break;
    default:
      break;
  }
}

/// The line itself, its scale and all; work is aligned.
template <class R>
void run_scaled(const complex_of<R>* input, complex_of<R>* output, const dft_spec<R>& spec, void* work,
                direction way) {
  const auto factor = static_cast<R>(spec.scale);
  if (auto* const whole = spec.whole[way]) {
    whole(input, output, factor);
    return;
  }
  run_line(input, output, spec, static_cast<complex_of<R>*>(work), way, kAlone);
  if (spec.scaled[way] != 0) level_kernels<R>().scale(output, spec.length, factor);
}

/// written: to be written to.
template <class C>
void ask_for(const C* line, core_int elements, bool written) {
  constexpr core_int kCacheLine = 64;
  const auto* at = reinterpret_cast<const char*>(line);
  const core_int bytes = elements * static_cast<core_int>(sizeof(C));
  for (core_int i = 0; i < bytes; i += kCacheLine) {
    if (written) {
      __builtin_prefetch(at + i, 1);
    } else {
      __builtin_prefetch(at + i, 0);
    }
  }
}

/// Calls run with the aligned work, the caller's or the call's own.
template <class R, class Run>
int with_work(const dft_spec<R>& spec, void* work, Run run) {
  table<char> own;
  if (work == nullptr && spec.workspace_bytes > 0) {
    own = make_table<char>(spec.workspace_bytes + 64);
    if (own == nullptr) return kSpecNoMemory;
    work = own.get();
  }
  run(reinterpret_cast<void*>((reinterpret_cast<uintptr_t>(work) + 63) & ~uintptr_t{63}));
  return 0;
}

}  // namespace

template <class R>
int dft_spec_run(const complex_of<R>* input, complex_of<R>* output, const dft_spec<R>* spec, void* work,
                 direction way) {
  if (input == nullptr || output == nullptr || spec == nullptr) return kSpecNull;
  if (spec->kind != dft_spec<R>::kind_of(line_form::kOrdered) &&
      spec->kind != dft_spec<R>::kind_of(line_form::kScrambled)) {
    return kSpecBadKind;
  }
  return with_work(*spec, work, [&](void* aligned) { run_scaled(input, output, *spec, aligned, way); });
}

template <class R>
void dft_spec_run_shared(const complex_of<R>* input, complex_of<R>* output, const dft_spec<R>& spec,
                         void* work, direction way, const team& members) {
  run_line(input, output, spec, static_cast<complex_of<R>*>(work), way, members);
}

template <class R>
size_t shared_bytes(const dft_spec<R>& spec, int threads) {
  const dft_spec<R>* innermost = &spec;
  while (innermost->inner != nullptr) innermost = innermost->inner;
  const core_int own = innermost->long_line != nullptr ? innermost->long_line->work_reals()
                                                       : innermost->autosort->scratch_reals();
  return static_cast<size_t>(spec.workspace_bytes) +
         static_cast<size_t>(threads - 1) * static_cast<size_t>(own) * sizeof(R);
}

template <class R>
int dft_spec_run_lines(const dense_lines<R>& lines, const dft_spec<R>& spec, void* work, direction way) {
  return with_work(spec, work, [&](void* aligned) {
    const complex_of<R>* input = lines.input;
    complex_of<R>* output = lines.output;
    const bool in_place = input == output;
    for (core_int i = 0; i < lines.count; ++i, input += lines.in_step, output += lines.out_step) {
      if (lines.ahead && i + 1 < lines.count) {
        ask_for(input + lines.in_step, spec.length, in_place);
        if (!in_place) ask_for(output + lines.out_step, spec.length, true);
      }
      run_scaled(input, output, spec, aligned, way);
      if (lines.scale != 1) level_kernels<R>().scale(output, spec.length, lines.scale);
    }
  });
}

template <class R>
int dft_spec_run_split(split_line<const R> input, split_line<R> output, const dft_spec<R>* spec, void* work,
                       direction way) {
  if (input.real == nullptr || input.imag == nullptr || output.real == nullptr || output.imag == nullptr ||
      spec == nullptr) {
    return kSpecNull;
  }
  if (spec->kind != dft_spec<R>::kind_of(line_form::kSplit)) return kSpecBadKind;
  using C = complex_of<R>;
  const core_int n = spec->length;
  return with_work(*spec, work, [&](void* aligned) {
    C* line = static_cast<C*>(aligned);
    join_parts(input.real, input.imag, 1, line, n);
    run_scaled<R>(line, line, *spec, line + (n + 7) / 8 * 8, way);
    part(line, n, output.real, output.imag, 1);
  });
}

template <class R>
bool takes_columns(const dft_spec<R>& spec) {
  if (spec.autosort != nullptr) return spec.autosort->in_columns;
  return spec.plan.method == line_method::kStraight && native_passes<R>() != nullptr;
}

template <class R>
void dft_spec_run_columns(columns_of<const complex_of<R>> input, columns_of<complex_of<R>> output,
                          core_int lines, const dft_spec<R>& spec, void* work, direction way,
                          core_int ahead) {
  if (spec.autosort != nullptr) {
    spec.autosort->run_columns(input, output, lines, static_cast<R*>(work), way, ahead);
  } else {
    native_passes<R>()->short_lines[way][spec.length](input.data, input.pitch, output.data, output.pitch,
                                                      lines, ahead);
  }
}

template <class R>
size_t column_work_bytes(core_int length, core_int lines) {
  return static_cast<size_t>(autosort_spec<R>::most_work_reals(length, lines)) * sizeof(R);
}

#define QEL_INSTANTIATE(R)                                                                              \
  template void dft_spec_run_shared<R>(const complex_of<R>*, complex_of<R>*, const dft_spec<R>&, void*, \
                                       direction, const team&);                                         \
  template size_t shared_bytes<R>(const dft_spec<R>&, int);                                             \
  template int dft_spec_run_lines<R>(const dense_lines<R>&, const dft_spec<R>&, void*, direction);      \
  template bool takes_columns<R>(const dft_spec<R>&);                                                   \
  template void dft_spec_run_columns<R>(columns_of<const complex_of<R>>, columns_of<complex_of<R>>,     \
                                        core_int, const dft_spec<R>&, void*, direction, core_int);      \
  template size_t column_work_bytes<R>(core_int, core_int);
QEL_INSTANTIATE(float)
QEL_INSTANTIATE(double)
#undef QEL_INSTANTIATE

template int dft_spec_run<float>(const complex8*, complex8*, const dft_spec<float>*, void*, direction);
template int dft_spec_run<double>(const complex16*, complex16*, const dft_spec<double>*, void*, direction);
template int dft_spec_run_split<float>(split_line<const float>, split_line<float>, const dft_spec<float>*,
                                       void*, direction);
template int dft_spec_run_split<double>(split_line<const double>, split_line<double>, const dft_spec<double>*,
                                        void*, direction);

}  // namespace qel::fft
