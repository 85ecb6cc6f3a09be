// SPDX-License-Identifier: BSD-3-Clause
#include "fft/execution/split_driver.h"

#include <algorithm>
#include <cstdint>

#include "fft/execution/lines.h"
#include "fft/execution/regions.h"
#include "fft/planning/long_plan.h"

namespace qel::fft {
namespace {

template <class R, direction kWay>
class split_call {
  using C = complex_of<R>;

 public:
  split_call(const dfti_node* first, const split_plan<R>& plan, const C* input, C* output)
      : first_(first), plan_(plan), input_(input), output_(output) {}

  int run() const {
    if (plan_.shared != nullptr) return run_shared();
    const core_int n = plan_.rows * plan_.columns;
    const call_buffer buffer(static_cast<size_t>(n) * sizeof(C), 64);
    if (buffer.as<C>() == nullptr) return DFTI_MEMORY_ERROR;
    C* middle = buffer.as<C>();
    const int status = plan_.parts == 0 ? columns_by_groups(middle) : columns_by_blocks(middle);
    if (status != DFTI_NO_ERROR) return status;
    return over_shares(plan_.rows, threads(), [&](int part, core_int from, core_int to) {
      const dfti_node* lines = plan_.column_descriptor;
      return run_lines<R>({middle + from * plan_.columns, 1, plan_.columns}, {output_ + from, plan_.rows, 1},
                          to - from, kWidestBlock, lines, kWay, line_buffer(part), work(part));
    });
  }

 private:
  int threads() const { return plan_.parts == 0 ? first_->threads : plan_.parts; }
  C* line_buffer(int part) const {
    char* start = static_cast<char*>(first_->workspace) + core_int{part} * first_->workspace_bytes;
    return reinterpret_cast<C*>((reinterpret_cast<uintptr_t>(start) + 63) & ~uintptr_t{63});
  }
  void* work(int part) const {
    return reinterpret_cast<char*>(line_buffer(part)) +
           line_buffer_bytes<R>(std::max(plan_.rows, plan_.columns), kWidestBlock);
  }

  int run_shared() const {
    const R scale = scale_of<R>(*first_, kWay);
    in_team(first_->threads, [&](const team& members) {
      dft_spec_run_shared<R>(input_, output_, *plan_.shared, line_buffer(0), kWay, members);
      if (scale == 1) return;
      members.wait();
      const team::range own = members.share_of(plan_.shared->length, kWidestBlock);
      level_kernels<R>().scale(output_ + own.from, own.to - own.from, scale);
    });
    return DFTI_NO_ERROR;
  }

  int columns_by_groups(C* middle) const {
    const column_groups groups = deal_columns(plan_.columns, threads());
    return over_shares(groups.count, std::min(threads(), groups.count),
                       [&](int part, core_int from, core_int to) {
                         const core_int last = to == groups.count ? plan_.columns : to * groups.width;
                         return columns(middle, from * groups.width, last, part);
                       });
  }
  /// Whole blocks for each part, since the twiddles lie by blocks.
  int columns_by_blocks(C* middle) const {
    const core_int blocks = (plan_.columns + kWidestBlock - 1) / kWidestBlock;
    return over_shares(blocks, threads(), [&](int part, core_int from, core_int to) {
      return columns(middle, from * kWidestBlock, std::min(plan_.columns, to * kWidestBlock), part);
    });
  }

  int columns(C* middle, core_int from, core_int to, int part) const {
    const dfti_node* lines = plan_.row_descriptor;
    for (core_int first = from; first < to; first += kWidestBlock) {
      const core_int width = std::min(kWidestBlock, to - first);
      const int status = run_lines<R>({input_ + first, plan_.columns, 1}, {middle + first, plan_.columns, 1},
                                      width, kWidestBlock, lines, kWay, line_buffer(part), work(part));
      if (status != DFTI_NO_ERROR) return status;
      turn(middle + first, first, width);
    }
    return DFTI_NO_ERROR;
  }

  /// The block's elements times exp(-+ 2 pi i j2 k1 / n).
  void turn(C* block, core_int first, core_int width) const {
    const auto& kernels = level_kernels<R>();
    if (plan_.all_twiddles != nullptr) {
      const C* twiddles = plan_.all_twiddles.get() + first * plan_.rows;
      for (core_int k = 0; k < plan_.rows; ++k) {
        C* row = block + k * plan_.columns;
        kernels.multiply[kWay](row, twiddles + k * width, row, width);
      }
      return;
    }
    for (core_int k = 1; k < plan_.rows; ++k) {
      kernels.turn_row[kWay](block + k * plan_.columns, width, narrowed<C>(twiddle(k * first)),
                             plan_.powers.get() + k * kWidestBlock);
    }
  }
  complex16 twiddle(core_int exponent) const {
    const core_int block = plan_.twiddle_block;
    const complex16 a = plan_.twiddles[static_cast<size_t>(exponent & (block - 1))];
    const complex16 b = plan_.twiddles[static_cast<size_t>(block + exponent / block)];
    return {a.real * b.real - a.imag * b.imag, a.real * b.imag + a.imag * b.real};
  }

  const dfti_node* first_;
  const split_plan<R>& plan_;
  const C* input_;
  C* output_;
};

template <class R, direction kWay>
int run_split(dfti_node* first, const void* input, void* output) {
  using C = complex_of<R>;
  const void* plan = first->extra_buffer != nullptr ? first->extra_buffer : first->thread_buffer;
  return split_call<R, kWay>(first, *static_cast<const split_plan<R>*>(plan), static_cast<const C*>(input),
                             static_cast<C*>(output))
      .run();
}

}  // namespace

template <class R>
int dfti_split_forward(dfti_node* first, const void* input, void* output, void*) {
  return run_split<R, kForward>(first, input, output);
}
template <class R>
int dfti_split_backward(dfti_node* first, const void* input, void* output, void*) {
  return run_split<R, kBackward>(first, input, output);
}

template int dfti_split_forward<float>(dfti_node*, const void*, void*, void*);
template int dfti_split_forward<double>(dfti_node*, const void*, void*, void*);
template int dfti_split_backward<float>(dfti_node*, const void*, void*, void*);
template int dfti_split_backward<double>(dfti_node*, const void*, void*, void*);

}  // namespace qel::fft
