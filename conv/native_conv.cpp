// SPDX-License-Identifier: BSD-3-Clause
#include "conv/native_conv.h"

#include <algorithm>

#include "blas/plain/scratch.h"
#include "conv/conv_full.h"
#include "conv/sum_kernels.h"

namespace qel::conv {
namespace {

template <class E>
void padded(const E* from, core_int count, core_int length, E* to) {
  std::copy_n(from, count, to);
  std::fill(to + count, to + length, E{});
}

}  // namespace

template <class E>
int run_pieces(const dense_pair<E>& c, const kept_plan<E>& kept, E* w) {
  const fft::filter_spec<E>& filter = kept.filter;
  const core_int length = filter.length(), first = kept.facts.first;
  const plain::scratch<E> lines(3 * length + filter.work_bytes() / core_int{sizeof(E)} + 1);
  if (lines.get() == nullptr) return kConvNoMemory;
  E *const factors = lines.get(), *const middle = factors + length, *const line = middle + length,
           *const work = line + length;
  padded(c.shorter, c.short_count, length, line);
  if (filter.make_factors(line, factors, work) != 0) return kConvNoMemory;
  // From the last piece to the first: what a piece leaves before its first output, the ones before it write
  // anew, so most results go straight to w.
  for (core_int index = kept.plan.pieces - 1; index >= 0; --index) {
    const conv_piece piece = piece_of(kept.facts, kept.plan, index);
    const E* data = c.longer + piece.data_from;
    if (piece.data_count < length) {
      padded(data, piece.data_count, length, line);
      data = line;
    }
    const bool fits = piece.data_from >= first && piece.data_from + length <= piece.to;
    E* const result = fits ? w + (piece.data_from - first) : line;
    if (filter.run(data, factors, middle, result, work) != 0) return kConvNoMemory;
    if (!fits)
      std::copy(line + (piece.from - piece.data_from), line + (piece.to - piece.data_from),
                w + (piece.from - first));
  }
  return 0;
}

template <class E>
int native_full(const E* a, core_int na, const E* b, core_int nb, E* w) {
  const dense_pair<E> c = make_pair(a, na, b, nb);
  kept_plan<E> kept{{c.long_count, c.short_count, 0, na + nb - 1, 1, is_complex<E>, false}, {}, {}};
  kept.facts.only_sums = !fft::filter_spec<E>::there();
  kept.plan = plan_native_conv(kept.facts);
  if (kept.plan.method != native_conv_method::kPieces) {
    native_sums(c.shorter, c.short_count, c.longer, c.long_count, core_int{0}, na + nb - 1, w);
    return 0;
  }
  if (!kept.filter.make(kept.plan.length)) return kConvNoMemory;
  return run_pieces(c, kept, w);
}

#define QEL_INSTANTIATE(E) template int run_pieces(const dense_pair<E>&, const kept_plan<E>&, E*)
QEL_INSTANTIATE(float);
QEL_INSTANTIATE(double);
QEL_INSTANTIATE(complex8);
QEL_INSTANTIATE(complex16);
#undef QEL_INSTANTIATE
template int native_full(const float*, core_int, const float*, core_int, float*);
template int native_full(const double*, core_int, const double*, core_int, double*);

}  // namespace qel::conv
