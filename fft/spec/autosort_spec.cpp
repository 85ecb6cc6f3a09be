// SPDX-License-Identifier: BSD-3-Clause
#include "fft/spec/autosort_spec.h"

#include <algorithm>
#include <iterator>

#include "fft/planning/line_plan.h"
#include "service/largest_cache.h"

namespace qel::fft {
namespace {

int index_of(int radix) {
  const auto* found = std::find(std::begin(kAutosortRadices), std::end(kAutosortRadices), radix);
  return found == std::end(kAutosortRadices) ? -1 : static_cast<int>(found - kAutosortRadices);
}

}  // namespace

template <class R>
bool autosort_spec<R>::make(core_int n, line_use use) {
  kernels = native_passes<R>();
  in_columns = use == line_use::kAny;
  length = static_cast<int>(n);
  const bool held = register_kernel<R>(n, kForward) != nullptr;
  if (n <= kStraightLengths || (held && !in_columns)) return true;
  half_circle roots;
  if (!roots.make(n)) return false;
  if (!held) {
    whole = plan_whole_line(n);
    if (!make_whole(roots)) return false;
    if (whole.method != whole_line::kPasses && !in_columns) return true;
  }
  return make_passes(roots);
}

template <class R>
bool autosort_spec<R>::make_passes(const half_circle& roots) {
  const autosort_plan plan = plan_autosort(length);
  pass_count = plan.count;
  core_int left = length;
  for (int i = 0; i < plan.count; ++i) {
    pass& p = passes[i];
    p.radix = plan.radices[i];
    p.index = index_of(p.radix);
    const core_int step = length / left;
    p.m = left / p.radix;
    if (i > 0 || in_columns) {
      p.twiddles = make_table<C>(std::max<core_int>(1, (p.radix - 1) * p.m));
      if (p.twiddles == nullptr) return false;
      C* next = p.twiddles.get();
      for (core_int j = 0; j < p.m; ++j) {
        for (core_int k = 1, at = j * step; k < p.radix; ++k, at += j * step)
          *next++ = narrowed<C>(roots.anywhere(at));
      }
    }
    if (p.index < 0) {
      p.roots = make_table<C>(p.radix);
      if (p.roots == nullptr) return false;
      for (core_int j = 0; j < p.radix; ++j) {
        p.roots[static_cast<size_t>(j)] = narrowed<C>(roots[j * (length / p.radix)]);
      }
      largest_generic = std::max(largest_generic, p.radix);
    }
    left = p.m;
  }
  const pass& first = passes[0];
  line_twiddles = make_table<R>(std::max<core_int>(1, 2 * (first.radix - 1) * first.m));
  if (line_twiddles == nullptr) return false;
  R* next = line_twiddles.get();
  for (core_int k = 1; k < first.radix; ++k, next += 2 * first.m)
    kernels->spread_roots(roots.get(), k, first.m, length, next, next + first.m);
  return true;
}

template <class R>
bool autosort_spec<R>::make_whole(const half_circle& roots) {
  if (whole.method == whole_line::kTwoSteps) {
    step_twiddles = make_table<C>(length);
    if (step_twiddles == nullptr) return false;
    for (int k = 0; k < whole.rows; ++k)
      for (int j = 0; j < whole.columns; ++j)
        step_twiddles[static_cast<size_t>(k * whole.columns + j)] = narrowed<C>(roots.anywhere(j * k));
  } else if (whole.method == whole_line::kSums) {
    const core_int half = length / 2, pitch = sum_pitch();
    sum_factors = make_table<R>(2 * half * pitch);
    if (sum_factors == nullptr) return false;
    for (core_int j = 1; j <= half; ++j) {
      R *const cosines = sum_factors.get() + (j - 1) * pitch, *const sines = cosines + half * pitch;
      core_int angle = 0;
      for (core_int k = 0; k < half; ++k) {
        angle += j;
        angle -= angle >= length ? length : 0;
        const complex16 root = roots.anywhere(angle);
        cosines[k] = static_cast<R>(root.real);
        sines[k] = static_cast<R>(-root.imag);
      }
      std::fill(cosines + half, cosines + pitch, R{0});
      std::fill(sines + half, sines + pitch, R{0});
    }
  }
  return true;
}

template <class R>
core_int autosort_spec<R>::work_reals(core_int lines) const {
  return length <= kStraightLengths ? 0 : 4 * pitch_of_parts(lines) + scratch_reals();
}

template <class R>
core_int autosort_spec<R>::most_work_reals(core_int longest, core_int lines) {
  return 4 * (longest * lines + 4 * kCacheLine) + 2 * 16 * (core_int{kLargestDirect} + 1);
}

template <class R>
void autosort_spec<R>::run_pass(const pass& p, const pass_part& part, const R* from, R* to, core_int pitch,
                                R* scratch) const {
  if (p.index >= 0) {
    kernels->middles[p.index](from, from + pitch, to, to + pitch, part, p.twiddles.get());
  } else {
    kernels->any_middle(from, from + pitch, to, to + pitch, part, p.twiddles.get(), p.radix, p.roots.get(),
                        scratch);
  }
}

/// All passes but the first and the last; the parts that the last one reads.
template <class R>
const R* autosort_spec<R>::run_middle(R* work, core_int lines) const {
  const core_int pitch = pitch_of_parts(lines);
  R *from = work, *to = work + 2 * pitch;
  core_int s = lines * passes[0].radix;
  for (int i = 1; i + 1 < pass_count; ++i) {
    const pass& p = passes[i];
    run_pass(p, {p.m, 0, p.m, 0, s, s, s}, from, to, pitch, work + 4 * pitch);
    s *= p.radix;
    std::swap(from, to);
  }
  return from;
}

template <class R>
void autosort_spec<R>::run_line(const C* input, C* output, R* work, direction way) const {
  if (length <= kStraightLengths) {
    level_kernels<R>().unscaled[way][length](input, output, R{1});
    return;
  }
  if (length <= kRegisterLengths && kernels->registers[way][length] != nullptr) {
    kernels->registers[way][length](input, output, R{1});
    return;
  }
  if (whole.method == whole_line::kTwoSteps) {
    C* const buffer = reinterpret_cast<C*>(work);
    kernels->of_columns[way][whole.rows](input, whole.columns, buffer, step_twiddles.get());
    kernels->of_rows[way][whole.columns](buffer, whole.rows, output);
    return;
  }
  if (whole.method == whole_line::kSums) {
    const core_int half = length / 2, pitch = sum_pitch();
    kernels->by_sums[way](input, output, length, pitch, sum_factors.get(), sum_factors.get() + half * pitch,
                          work);
    return;
  }
  const pass& first = passes[0];
  kernels->line[way][first.index](input, first.m, work, work + pitch_of_parts(1), first.m,
                                  line_twiddles.get());
  const pass& last = passes[pass_count - 1];
  const core_int s = length / last.radix;
  const R* const parts = run_middle(work, 1);
  kernels->line_lasts[way][last.index](parts, parts + pitch_of_parts(1), s, s, output, s);
}

// The first passes know nothing of the points p that they leave but for their twiddles, and the last ones
// nothing of the q that the first made: so threads share out first the ones and then the others, and meet
// once in between. A thread's data lie side by side, where the last of its first passes leaves them for all.
template <class R>
void autosort_spec<R>::run_line(const C* input, C* output, R* work, direction way,
                                const team& members) const {
  if (members.parts == 1) return run_line(input, output, work, way);
  constexpr core_int kGrain = 64 / static_cast<core_int>(sizeof(R));
  const pass &first = passes[0], &joint = passes[pass_count - 2], &last = passes[pass_count - 1];
  const int alone = pass_count - passes_after_meeting(last.radix, members.parts);
  const bool joins = alone == pass_count - 2;
  const core_int pitch = pitch_of_parts(1), block = passes[alone - 1].m;
  R *from = work, *to = work + 2 * pitch;
  R* const scratch = work + 4 * pitch + members.part * scratch_reals();
  const team::range points = members.share_of(block, kPointGrain);
  const core_int own = points.to - points.from, start = points.from * (length / block);
  for (core_int e = 0; e * block < first.m; ++e) {
    const core_int p = e * block + points.from;
    R* const re = from + start + first.radix * e * own;
    kernels->line[way][first.index](input + p, own, re, re + pitch, first.m, line_twiddles.get() + p);
  }
  core_int s = first.radix;
  for (int i = 1; i < alone; ++i) {
    const pass& each = passes[i];
    const core_int blocks = each.m / block;
    for (core_int e = 0; e < blocks; ++e) {
      const core_int p = e * own, origin = e * (block - own) + points.from;
      run_pass(each, {blocks * own, p, p + own, origin, s, s, s}, from + start, to + start, pitch, scratch);
    }
    s *= each.radix;
    std::swap(from, to);
  }
  members.wait();
  const team::range lines = members.share_of(s, kGrain);
  const core_int count = lines.to - lines.from;
  from += lines.from;
  const auto hand_back_others = [&] {
    for (core_int p = 0; p < block; ++p) {
      if (p >= points.from && p < points.to) continue;
      hand_back(from + p * s, count);
      hand_back(from + pitch + p * s, count);
    }
  };
  auto* const last_pass = kernels->line_lasts[way][last.index];
  if (!joins) {
    last_pass(from, from + pitch, count, s, output + lines.from, s);
    return hand_back_others();
  }
  to += lines.from * block;
  run_pass(joint, {joint.m, 0, joint.m, 0, count, s, count}, from, to, pitch, scratch);
  hand_back_others();
  for (core_int k = 0; k < joint.radix; ++k) {
    last_pass(to + k * count, to + pitch + k * count, count, count * joint.radix, output + lines.from + k * s,
              s * joint.radix);
  }
}

template <class R>
void autosort_spec<R>::run_columns(columns_of<const C> input, columns_of<C> output, core_int lines, R* work,
                                   direction way, core_int ahead) const {
  if (length <= kStraightLengths) {
    kernels->short_lines[way][length](input.data, input.pitch, output.data, output.pitch, lines, ahead);
    return;
  }
  const pass& first = passes[0];
  kernels->columns[way][first.index](input.data, input.pitch, lines, work, work + pitch_of_parts(lines),
                                     first.m, first.twiddles.get(), ahead);
  const pass& last = passes[pass_count - 1];
  const R* const parts = run_middle(work, lines);
  kernels->column_lasts[way][last.index](parts, parts + pitch_of_parts(lines), lines, length / last.radix,
                                         output.data, output.pitch);
}

template <class R>
bool long_spec<R>::make(core_int row_count, core_int column_count) {
  rows = row_count;
  columns = column_count;
  const core_int n = rows * columns;
  hands_back = hands_back_lines(n * core_int{sizeof(C)}, largest_native_cache());
  if (!of_rows.make(rows, line_use::kAny) || !of_columns.make(columns, line_use::kAny)) return false;
  bases = make_table<C>(blocks_of_columns() * rows);
  powers = make_table<C>(rows * kBlock);
  if (bases == nullptr || powers == nullptr) return false;
  for (core_int k = 0; k < rows; ++k) {
    for (core_int l = 0; l < kBlock; ++l) {
      powers[static_cast<size_t>(k * kBlock + l)] = narrowed<C>(unit_root(k * l % n, n));
    }
  }
  for (core_int b = 0; b < blocks_of_columns(); ++b) {
    for (core_int k = 0; k < rows; ++k) {
      bases[static_cast<size_t>(b * rows + k)] = narrowed<C>(unit_root(b * kBlock * k % n, n));
    }
  }
  return true;
}

template <class R>
core_int long_spec<R>::work_reals() const {
  const core_int reals =
      std::max(of_rows.work_reals(kBlock), of_columns.work_reals(kBlock)) + 2 * rows * kBlock;
  return (reals + kBlock - 1) / kBlock * kBlock;
}

template <class R>
void long_spec<R>::run(const C* input, C* middle, C* output, R* work, direction way,
                       const team& members) const {
  R* const own = work + members.part * work_reals();
  const team::range of_first = members.share_of(blocks_of_columns());
  first_half(input, middle, of_first.from, of_first.to, own, way);
  members.wait();
  const team::range of_second = members.share_of(blocks_of_rows());
  const core_int mine = of_first.from * kBlock, others = std::min(columns, of_first.to * kBlock);
  const bool hands = members.parts > 1 && hands_back;
  for (core_int b = of_second.from; b < of_second.to; ++b) {
    second_half(middle, output, b, b + 1, own, way);
    if (!hands) continue;
    const core_int first = b * kBlock, width = std::min(kBlock, rows - first);
    R* const block = reinterpret_cast<R*>(middle + first * columns);
    hand_back(block, 2 * width * mine);
    hand_back(block + 2 * width * others, 2 * width * (columns - others));
  }
}

template <class R>
void long_spec<R>::first_half(const C* input, C* middle, core_int from, core_int to, R* work,
                              direction way) const {
  const auto& kernels = *of_rows.kernels;
  C* lines = reinterpret_cast<C*>(work);
  R* passes_work = work + 2 * rows * kBlock;
  for (core_int b = from; b < to; ++b) {
    const core_int first = b * kBlock, count = std::min(kBlock, columns - first);
    of_rows.run_columns({input + first, columns}, {lines, count}, count, passes_work, way, kBlock);
    kernels.turn_and_deal_blocks[way](lines, rows, count, bases.get() + b * rows, powers.get(), middle,
                                      columns, first);
  }
}

template <class R>
void long_spec<R>::second_half(const C* middle, C* output, core_int from, core_int to, R* work,
                               direction way) const {
  for (core_int b = from; b < to; ++b) {
    const core_int first = b * kBlock, count = std::min(kBlock, rows - first);
    of_columns.run_columns({middle + first * columns, count}, {output + first, rows}, count, work, way, 0);
  }
}

template struct autosort_spec<float>;
template struct autosort_spec<double>;
template struct long_spec<float>;
template struct long_spec<double>;

}  // namespace qel::fft
