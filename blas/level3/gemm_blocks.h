// SPDX-License-Identifier: BSD-3-Clause
// Blocking of the serial product: panel widths, block sizes, the gates of the small kernel, and the layout of
// the work memory. Pure functions; gemm_serial.cpp carries them out.
#pragma once

#include "blas/level3/gemm_rules.h"

namespace qel {

/// Panel widths mr, nr, multiple ku of the depth, and block sizes.
struct gemm_blocks {
  core_int mc = 0, nc = 0, kc = 0;
  core_int mr = 0, nr = 0, ku = 0;
};
constexpr core_int rounded_down(core_int n, core_int step) { return n / step * step; }
constexpr core_int rounded_up(core_int n, core_int step) { return (n + step - 1) / step * step; }

/// How a level blocks its product. `levels` 0 and 1 have loops of their own; 6 is AMD's family 10h.
enum class gemm_path : int { strips, sse3, ssse3, sse41, sse42, avx, family_10h };
gemm_path gemm_path_of(const dense_processor& processor);

/// Panel widths of a path's packed kernels.
gemm_blocks gemm_widths(gemm_path path, element_type type);
/// Fills mc, nc, kc where they are 0, and mr, nr, ku always.
void choose_gemm_blocks(gemm_blocking blocking, element_type type, const dense_processor& processor,
                        core_int m, core_int n, core_int k, gemm_blocks& blocks);
/// The same for this process, as plans hold it.
using gemm_blocking_fn = void(const core_int* m, const core_int* n, const core_int* k, core_int* mc,
                              core_int* nc, core_int* kc, core_int* mr, core_int* nr, core_int* ku);

/// True if packing does not pay: the small kernel takes the whole problem.
bool goes_to_small_kernel(gemm_path path, core_int m, core_int n, core_int k);
/// True if B is packed panel by panel as it is used, because a block of it stays in the cache meanwhile.
bool packs_b_as_it_goes(gemm_path path, element_type type, core_int n, core_int k);

/// Level 1: block sizes, and whether B is read as it lies.
gemm_blocks choose_sse3_blocks(core_int m, core_int n, core_int k);
bool reads_b_unpacked(bool b_transposed, core_int m, core_int n, core_int k);
/// Level 0: block sizes, the rows and columns that tiles take, and the depth that has a kernel of its own.
struct gemm_strip_blocks {
  core_int mc, nc, kc;
  core_int rows, columns;  ///< of C, the rest goes through the small kernel
};
gemm_strip_blocks choose_strip_blocks(element_type type, core_int mr, core_int m, core_int n, core_int k);

/// Work memory of one product: the block of A at the first page, the strip 256 bytes beyond the next 128-byte
/// boundary, the block of B at the next page. Offsets count from the first page boundary in the memory.
struct gemm_buffers {
  core_int bytes;  ///< to be allocated
  core_int strip, b;
};
/// with_a, with_b: false where a shared panel makes the own block needless.
gemm_buffers lay_out_buffers(gemm_path path, element_type type, const gemm_blocks& blocks, bool with_a,
                             bool with_b);
inline constexpr core_int kPage = 4096;

}  // namespace qel
