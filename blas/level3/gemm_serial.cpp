// SPDX-License-Identifier: BSD-3-Clause
// Three nested loops over blocks for the caches: columns of C by nc, depth by kc, rows by mc. B's block is
// packed once per depth block, A's once per block of rows, with alpha. The depth of a block is rounded up to
// a multiple of ku; packed zeros make that harmless. Rows beyond the last whole panel of A go through the
// small kernel. Method: K. Goto, R. A. van de Geijn, ACM TOMS 34 (2008) 12.
#include "blas/level3/gemm_serial.h"

#include <algorithm>
#include <cstdint>

#include "service/dispatch.h"

namespace qel {
namespace {

/// What a level has for an element type.
template <class T>
struct level_sets;
#define QEL_LEVEL_SETS(T, x)                                              \
  template <>                                                             \
  struct level_sets<T> {                                                  \
    static constexpr auto* small = l0_generic::x##gemm_small;             \
    static constexpr auto* scale = l0_generic::x##gemm_scale;             \
    static constexpr const auto& strips = l0_generic::x##gemm_strips;     \
    static constexpr const auto& family_10h = l0_generic::x##gemm_panels; \
    static constexpr const auto& sse3 = l1_sse3::x##gemm_panels;          \
    static constexpr const auto& ssse3 = l2_ssse3::x##gemm_panels;        \
    static constexpr const auto& sse42 = l3_sse42::x##gemm_panels;        \
    static constexpr const auto& avx = l4_avx::x##gemm_panels;            \
  };
QEL_LEVEL_SETS(float, s)
QEL_LEVEL_SETS(double, d)
QEL_LEVEL_SETS(complex8, c)
QEL_LEVEL_SETS(complex16, z)
#undef QEL_LEVEL_SETS

template <class T>
bool c_is_aligned(const gemm_call<T>& call, int bytes) {
  const auto size = static_cast<core_int>(sizeof(T));
  return reinterpret_cast<std::uintptr_t>(call.c) % static_cast<unsigned>(bytes) == 0 &&
         call.ldc * size % bytes == 0;
}

/// What is left to do after beta; false if that was all.
template <class T>
bool scale_and_go_on(const gemm_call<T>& call) {
  gemm_scale(call.m, call.n, call.beta, call.c, call.ldc);
  return call.k > 0 && !(call.alpha == T{});
}

// Level 0.

template <class T>
void strip_columns(const gemm_call<T>& call, const gemm_strip_blocks& blocks, const gemm_memory<T>& memory,
                   core_int rows, core_int padded) {
  const gemm_strip_kernels<T>& kernels = level_sets<T>::strips;
  gemm_strip_block_fn<T>* const multiply = padded == kStripDepth ? kernels.whole_depth : kernels.any_depth;
  for (core_int j = 0, width = 0; j < blocks.columns; j += width) {
    core_int reals = std::min<core_int>((blocks.columns - j) * (is_complex<T> ? 2 : 1), kStripWidth);
    reals = reals >= 12 ? 12 : reals >= 8 ? 8 : reals >= 4 ? 4 : 2;
    width = is_complex<T> ? reals / 2 : reals;
    kernels.make_strip[call.op_b](width, call.k, padded, call.b_at(0, j), call.ldb, memory.strip);
    multiply(rows, width, padded, memory.a, padded * kernels.mr, memory.strip, call.c + j * call.ldc,
             call.ldc);
  }
}

template <class T>
void gemm_by_strips(const gemm_call<T>& call) {
  if (!scale_and_go_on(call)) return;
  const gemm_strip_kernels<T>& kernels = level_sets<T>::strips;
  const gemm_strip_blocks blocks = choose_strip_blocks(element_of<T>, kernels.mr, call.m, call.n, call.k);
  gemm_blocks sizes = gemm_widths(gemm_path::strips, element_of<T>);
  sizes.mc = std::min(blocks.mc, blocks.rows);
  sizes.kc = blocks.kc;
  if (blocks.rows == 0 || blocks.columns == 0) return gemm_small(call);
  const gemm_memory<T> memory(gemm_path::strips, sizes, true, false);
  if (!memory) return gemm_small(call);
  for (core_int jj = 0; jj < blocks.columns; jj += blocks.nc) {
    gemm_strip_blocks here = blocks;
    here.columns = std::min(blocks.nc, blocks.columns - jj);
    for (core_int ll = 0; ll < call.k; ll += blocks.kc) {
      const gemm_call<T> part = call.columns(jj, here.columns).depth(ll, std::min(blocks.kc, call.k - ll));
      const core_int padded = rounded_up(part.k, sizes.ku);
      for (core_int ii = 0; ii < blocks.rows; ii += blocks.mc) {
        const core_int rows = std::min(blocks.mc, blocks.rows - ii);
        kernels.pack_a[call.op_a](rows, part.k, padded, part.a_at(ii, 0), part.lda, &part.alpha, memory.a,
                                  padded * kernels.mr);
        strip_columns(part.rows(ii, rows), here, memory, rows, padded);
      }
    }
  }
  if (blocks.rows < call.m)
    gemm_small(call.columns(0, blocks.columns).rows(blocks.rows, call.m - blocks.rows));
  for (core_int j = blocks.columns; j < call.n; ++j) gemm_small(call.columns(j, 1));
}

// Level 1.

template <class T>
class sse3_product {
 public:
  sse3_product(const gemm_call<T>& call, const gemm_blocks& blocks, bool packed, const gemm_memory<T>& memory)
      : call_(call), blocks_(blocks), packed_(packed), memory_(memory) {}
  void run() const {
    for (core_int jj = 0; jj < call_.n; jj += blocks_.nc) {
      const gemm_call<T> columns = call_.columns(jj, std::min(blocks_.nc, call_.n - jj));
      // The remainder of the depth goes first, and whichever is first applies beta.
      const core_int remainder = call_.k % blocks_.kc;
      if (remainder > 0) depth_block(columns.depth(0, remainder));
      for (core_int ll = remainder; ll < call_.k; ll += blocks_.kc) {
        depth_block(columns.depth(ll, blocks_.kc).with_beta(ll == 0 ? call_.beta : from_real<T>(1)));
      }
    }
  }

 private:
  void depth_block(const gemm_call<T>& part) const {
    const gemm_sse3_kernels<T>& kernels = level_sets<T>::sse3;
    const core_int b_stride = packed_ ? part.k * kernels.nr : part.ldb;
    if (packed_) {
      kernels.pack_b[part.op_b](part.n, part.k, part.k, part.b, part.ldb, nullptr, memory_.b, b_stride);
    }
    const T* b = packed_ ? memory_.b : part.b;
    for (core_int ii = 0; ii < part.m; ii += blocks_.mc) {
      const core_int rows = std::min(blocks_.mc, part.m - ii);
      kernels.pack_a[part.op_a](rows, part.k, part.k, part.a_at(ii, 0), part.lda, &part.alpha, memory_.a,
                                part.k * kernels.mr);
      kernel_for(rows, part)(rows, part.n, part.k, memory_.a, part.k * kernels.mr, b, b_stride, packed_,
                             &part.beta, part.c + ii, part.ldc);
    }
  }
  gemm_sse3_fn<T>* kernel_for(core_int rows, const gemm_call<T>& part) const {
    const gemm_sse3_kernels<T>& kernels = level_sets<T>::sse3;
    if (part.k != kSse3Depth) return kernels.any_depth;
    const int beta = part.beta == from_real<T>(1) ? kBetaOne : part.beta == T{} ? kBetaZero : kBetaOther;
    const bool whole_tiles = rows % kernels.mr == 0 && part.n % kernels.nr == 0;
    return kernels.whole_depth[packed_ ? 1 : 0][beta][whole_tiles ? 1 : 0];
  }
  const gemm_call<T>& call_;
  const gemm_blocks& blocks_;
  bool packed_;
  const gemm_memory<T>& memory_;
};

template <class T>
void gemm_by_sse3(const gemm_call<T>& call) {
  if (call.k <= 0 || call.alpha == T{} || goes_to_small_kernel(gemm_path::sse3, call.m, call.n, call.k)) {
    if (scale_and_go_on(call)) gemm_small(call);
    return;
  }
  gemm_blocks blocks = choose_sse3_blocks(call.m, call.n, call.k);
  const gemm_blocks widths = gemm_widths(gemm_path::sse3, element_of<T>);
  blocks.mr = widths.mr;
  blocks.nr = widths.nr;
  blocks.ku = widths.ku;
  blocks.mc = rounded_up(std::min(blocks.mc, call.m), blocks.mr);
  const bool packed = !reads_b_unpacked(call.op_b != kNoTranspose, call.m, call.n, call.k);
  gemm_blocks room = blocks;
  room.nc = std::min(blocks.nc, call.n);
  const gemm_memory<T> memory(gemm_path::sse3, room, true, packed);
  if (memory) return sse3_product<T>(call, blocks, packed, memory).run();
  if (scale_and_go_on(call)) gemm_small(call);
}

// Levels 2 to 4, and family 10h.

template <class T>
void gemm_by_panels(gemm_path path, const gemm_call<T>& call) {
  if (!scale_and_go_on(call)) return;
  gemm_blocks blocks;
  choose_gemm_blocks(gemm_blocking::of_level, element_of<T>, this_processor(), call.m, call.n, call.k,
                     blocks);
  if (goes_to_small_kernel(path, call.m, call.n, call.k) || call.m < blocks.mr) return gemm_small(call);
  const gemm_memory<T> memory(path, blocks, true, true);
  if (!memory) return gemm_small(call);
  gemm_packed(path, call, blocks, memory);
}

template <class T, int kLevel>
void serial_at(const gemm_call<T>* call) {
  if (call->m < 1 || call->n < 1) return;
  if constexpr (kLevel == 0) {
    if (this_processor().family_10h) return gemm_by_panels(gemm_path::family_10h, *call);
    gemm_by_strips(*call);
  } else if constexpr (kLevel == 1) {
    gemm_by_sse3(*call);
  } else if constexpr (kLevel == 2) {
    gemm_by_panels(this_processor().sse41 ? gemm_path::sse41 : gemm_path::ssse3, *call);
  } else if constexpr (kLevel == 3) {
    gemm_by_panels(gemm_path::sse42, *call);
  } else {
    gemm_by_panels(gemm_path::avx, *call);
  }
}

template <class T>
using serial_fn = void(const gemm_call<T>* call);
// Native levels borrow level 3 where they have no loops of their own.
template <class T>
constexpr level_row<serial_fn<T>> kSerial = {{serial_at<T, 0>, serial_at<T, 1>, serial_at<T, 2>,
                                              serial_at<T, 3>, serial_at<T, 4>, serial_at<T, 3>,
                                              serial_at<T, 3>}};
template <class T>
constinit bind_slot<serial_fn<T>> serial_slot{nullptr};

}  // namespace

template <class T>
void gemm_serial(const gemm_call<T>& call) {
  call_bound<serial_slot<T>, kSerial<T>>(&call);
}

template <class T>
void gemm_scale(core_int m, core_int n, T beta, T* c, core_int ldc) {
  if (!(beta == from_real<T>(1))) level_sets<T>::scale(m, n, &beta, c, ldc);
}

template <class T>
void gemm_small(const gemm_call<T>& call) {
  level_sets<T>::small(call.op_a, call.op_b, call.m, call.n, call.k, &call.alpha, call.a, call.lda, call.b,
                       call.ldb, call.c, call.ldc);
}

template <class T>
const gemm_kernels<T>& packed_kernels(gemm_path path) {
  switch (path) {
    case gemm_path::family_10h:
      return level_sets<T>::family_10h;
    case gemm_path::avx:
      return level_sets<T>::avx;
    case gemm_path::sse42:
      return level_sets<T>::sse42;
    default:
      return level_sets<T>::ssse3;
  }
}

template <class T>
gemm_memory<T>::gemm_memory(gemm_path path, const gemm_blocks& blocks, bool with_a, bool with_b) {
  const gemm_buffers layout = lay_out_buffers(path, element_of<T>, blocks, with_a, with_b);
  block_ = serv_malloc(static_cast<size_t>(layout.bytes), 128);
  if (block_ == nullptr) return;
  const auto page = (reinterpret_cast<std::uintptr_t>(block_) + kPage - 1) / kPage * kPage;
  auto* const first = static_cast<char*>(block_) + (page - reinterpret_cast<std::uintptr_t>(block_));
  if (with_a) a = reinterpret_cast<T*>(first);
  strip = reinterpret_cast<T*>(first + layout.strip);
  if (with_b) b = reinterpret_cast<T*>(first + layout.b);
}
template <class T>
gemm_memory<T>::~gemm_memory() {
  serv_free(block_);
}

template <class T>
void gemm_packed(gemm_path path, const gemm_call<T>& call, const gemm_blocks& blocks,
                 const gemm_memory<T>& memory, const gemm_panels<T>& shared) {
  const gemm_kernels<T>& kernels = packed_kernels<T>(path);
  gemm_block_fn<T>* const multiply = kernels.block[c_is_aligned(call, kernels.c_alignment) ? 1 : 0];
  const core_int main_rows = rounded_down(call.m, blocks.mr);
  const bool as_it_goes = shared.b == nullptr && packs_b_as_it_goes(path, element_of<T>, call.n, call.k);
  for (core_int jj = 0; jj < call.n; jj += blocks.nc) {
    const gemm_call<T> columns = call.columns(jj, std::min(blocks.nc, call.n - jj));
    for (core_int ll = 0; ll < call.k; ll += blocks.kc) {
      const gemm_call<T> part = columns.depth(ll, std::min(blocks.kc, call.k - ll));
      const core_int padded = rounded_up(part.k, blocks.ku), a_width = padded * blocks.mr,
                     b_width = padded * blocks.nr;
      const auto pack_b = [&](core_int j, core_int count, T* panels) {
        kernels.pack_b[part.op_b](count, part.k, padded, part.b_at(0, j), part.ldb, nullptr, panels, b_width);
      };
      if (shared.b == nullptr && !as_it_goes) pack_b(0, part.n, memory.b);
      for (core_int ii = 0; ii < main_rows; ii += blocks.mc) {
        const core_int rows = std::min(blocks.mc, main_rows - ii);
        if (shared.a == nullptr) {
          kernels.pack_a[part.op_a](rows, part.k, padded, part.a_at(ii, 0), part.lda, &part.alpha, memory.a,
                                    a_width);
        }
        const T* const a = shared.a == nullptr ? memory.a : shared.a;
        const core_int a_stride = shared.a == nullptr ? a_width : shared.a_stride;
        T* const c = part.c + ii;
        if (!as_it_goes) {
          const bool own = shared.b == nullptr;
          multiply(rows, part.n, padded, a, a_stride, own ? memory.b : shared.b,
                   own ? b_width : shared.b_stride, memory.strip, c, part.ldc);
          continue;
        }
        for (core_int j = 0; j < part.n; j += blocks.nr) {
          const core_int width = std::min(blocks.nr, part.n - j);
          pack_b(j, width, memory.strip);
          multiply(rows, width, padded, a, a_stride, memory.strip, b_width, nullptr, c + j * part.ldc,
                   part.ldc);
        }
      }
      if (main_rows < call.m) gemm_small(part.rows(main_rows, call.m - main_rows));
    }
  }
}

#define QEL_INSTANTIATE(T)                                                                             \
  template void gemm_serial(const gemm_call<T>&);                                                      \
  template void gemm_scale(core_int, core_int, T, T*, core_int);                                       \
  template void gemm_small(const gemm_call<T>&);                                                       \
  template const gemm_kernels<T>& packed_kernels(gemm_path);                                           \
  template class gemm_memory<T>;                                                                       \
  template void gemm_packed(gemm_path, const gemm_call<T>&, const gemm_blocks&, const gemm_memory<T>&, \
                            const gemm_panels<T>&);
QEL_INSTANTIATE(float)
QEL_INSTANTIATE(double)
QEL_INSTANTIATE(complex8)
QEL_INSTANTIATE(complex16)
#undef QEL_INSTANTIATE

}  // namespace qel
