// SPDX-License-Identifier: BSD-3-Clause
// The numbers were tuned for doubles (single precision and complex in part); what was not tuned for a type is
// the number for doubles by the element size.
#include "blas/level3/gemm_blocks.h"

#include <algorithm>

#include "blas/kernels/gemm_kernels.h"

namespace qel {
namespace {

core_int common_depth(core_int k) {
  if (k == 256 || k >= 512) return 256;
  if (k < 256) return std::max<core_int>(rounded_up(k, 4), 128);
  return rounded_up(k / 2, 4);
}
core_int complex_sse42_depth(core_int k) {
  if (k < 256) return common_depth(k);
  return k <= 1024 ? 128 : 256;
}

core_int scaled(element_type type, core_int of_doubles) { return of_doubles * 8 / bytes_of(type); }

// Complex blocks are smaller: twice these for single precision.
core_int sse42_rows(element_type type, bool small_cache) {
  if (is_complex_type(type)) return (small_cache ? 160 : 256) * 16 / bytes_of(type);
  return scaled(type, small_cache ? 384 : 640);
}
core_int sse42_columns(element_type type, core_int n, core_int nr) {
  const core_int most = is_complex_type(type) ? 2000 * 16 / bytes_of(type) : 5000;
  return rounded_up(std::clamp(n, nr, most), nr);
}

/// Rows by the depth of shallow and long products.
core_int long_rows(core_int depth) {
  return depth <= 16 ? 1536 : depth <= 32 ? 1024 : depth <= 64 ? 768 : 512;
}

constexpr core_int kLargestColumns = 10000;  ///< of a block of B

}  // namespace

gemm_path gemm_path_of(const dense_processor& processor) {
  switch (processor.level) {
    case 0:
      return processor.family_10h ? gemm_path::family_10h : gemm_path::strips;
    case 1:
      return gemm_path::sse3;
    case 2:
      return processor.sse41 ? gemm_path::sse41 : gemm_path::ssse3;
    case 4:
      return gemm_path::avx;
    default:
      return gemm_path::sse42;  // native levels, too, where they borrow level 3's kernels
  }
}

gemm_blocks gemm_widths(gemm_path path, element_type type) {
  const bool twice = type == element_type::s;  // lanes, or what a complex type has fewer of
  gemm_blocks w;
  w.ku = 4;
  switch (path) {
    case gemm_path::avx:
      w.mr = type == element_type::d || type == element_type::c ? 8 : twice ? 16 : 4;
      w.nr = is_complex_type(type) ? 2 : 4;
      break;
    case gemm_path::sse42:
      w.mr = type == element_type::d || type == element_type::c ? 2 : twice ? 4 : 1;
      w.nr = is_complex_type(type) ? 4 : 8;
      break;
    case gemm_path::strips:
      w.mr = type == element_type::d || type == element_type::c ? 2 : twice ? 4 : 1;
      w.nr = is_complex_type(type) ? kStripWidth / 2 : kStripWidth;
      break;
    case gemm_path::sse3:
      w.mr = type == element_type::d || type == element_type::c ? 4 : twice ? 8 : 2;
      w.nr = is_complex_type(type) ? 2 : 4;
      break;
    default:
      w.mr = type == element_type::d || twice ? 4 : 2;
      w.nr = type == element_type::d || type == element_type::c ? 4 : twice ? 8 : 2;
      break;
  }
  return w;
}

void choose_gemm_blocks(gemm_blocking blocking, element_type type, const dense_processor& processor,
                        core_int m, core_int n, core_int k, gemm_blocks& blocks) {
  const gemm_path path = gemm_path_of(processor);
  const gemm_blocks widths = gemm_widths(path, type);
  blocks.mr = widths.mr;
  blocks.nr = widths.nr;
  blocks.ku = widths.ku;
  if (blocks.kc == 0) {
    if (path == gemm_path::sse42 && is_complex_type(type)) {
      blocks.kc = complex_sse42_depth(k);
    } else if (blocking == gemm_blocking::family_10h_second && k >= 256) {
      blocks.kc = 256;
    } else {
      blocks.kc = common_depth(k);
    }
  }
  core_int mc = scaled(type, 512);
  core_int nc = rounded_up(std::clamp(n, blocks.nr, scaled(type, kLargestColumns)), blocks.nr);
  switch (path) {
    case gemm_path::sse41:
      mc = scaled(type, has_small_second_cache(processor) ? 448 : 1000);
      break;
    case gemm_path::sse42:
      mc = sse42_rows(type, has_small_third_cache(processor));
      nc = sse42_columns(type, n, blocks.nr);
      break;
    case gemm_path::family_10h:
      if (blocking == gemm_blocking::family_10h_second) {
        mc = std::min(rounded_up(m, 4), scaled(type, 128));
        nc = std::clamp<core_int>(n, 4, 384);
      } else {
        mc = std::min(std::max<core_int>(m, 4), scaled(type, 61440) / blocks.kc & ~core_int{7});
        nc = std::clamp<core_int>(n, 4, 5000);
      }
      mc = rounded_up(mc, blocks.mr);
      nc = rounded_up(nc, blocks.nr);
      break;
    default:
      break;
  }
  if (blocks.mc == 0) blocks.mc = mc;
  if (blocks.nc == 0) blocks.nc = nc;
}

bool goes_to_small_kernel(gemm_path path, core_int m, core_int n, core_int k) {
  switch (path) {
    case gemm_path::ssse3:
      return m < 2 || n < 2 || k < 2;
    case gemm_path::sse41:
      return m < 5 || n < 5 || k < 5;
    case gemm_path::sse42:
      return m < 3 || n < 5 || k < 5;
    case gemm_path::avx:
    case gemm_path::sse3:
      return m < 3 || n < 3 || k < 3;
    default:
      return false;
  }
}

bool packs_b_as_it_goes(gemm_path path, element_type type, core_int n, core_int k) {
  const core_int depth = std::min<core_int>(k, 256);
  switch (path) {
    case gemm_path::ssse3:
    case gemm_path::sse41:
      if (type == element_type::s) return depth * std::min<core_int>(n, 5000) * 4 <= 0x40000;
      return depth * std::min<core_int>(n, kLargestColumns) * bytes_of(type) <= 0x200000;
    case gemm_path::family_10h:
      return depth * std::min<core_int>(n, 5000) * bytes_of(type) <= 0x40000;
    default:
      return false;
  }
}

gemm_blocks choose_sse3_blocks(core_int m, core_int n, core_int k) {
  gemm_blocks b;
  b.kc = k > 112 && k <= 224 ? std::max<core_int>(rounded_up(k / 2, 4), 4) : 112;
  b.mc = 480;
  b.nc = 2000;
  if (k <= 224 && m + n >= 10000) {
    b.mc = long_rows(std::min(k, b.kc));
    b.nc = 5000;
  } else if (m >= 4000 && n >= 4000 && k >= 4000 && m + n >= 12000) {
    b.mc = 512;
    b.nc = 5000;
  }
  return b;
}

bool reads_b_unpacked(bool b_transposed, core_int m, core_int n, core_int k) {
  return !b_transposed && m + n + k <= 384;
}

gemm_strip_blocks choose_strip_blocks(element_type type, core_int mr, core_int m, core_int n, core_int k) {
  gemm_strip_blocks b;
  b.kc = k > 128 && k <= 256 ? std::max<core_int>(rounded_up(k / 2, 4), 4) : 128;
  b.mc = k <= 256 && m + n >= 10000 ? long_rows(std::min(k, b.kc)) : 512;
  b.nc = std::min<core_int>(n, 4992);
  b.rows = rounded_down(m, mr);
  b.columns = is_complex_type(type) ? n : rounded_down(n, 4);
  return b;
}

gemm_buffers lay_out_buffers(gemm_path path, element_type type, const gemm_blocks& blocks, bool with_a,
                             bool with_b) {
  constexpr core_int kSlackA = 8192, kSlackB = 8704, kBeforeStrip = 256;
  const core_int size = bytes_of(type);
  core_int a_bytes, strip_bytes, b_bytes, bytes;
  if (path == gemm_path::sse42 || path == gemm_path::ssse3 || path == gemm_path::sse41) {
    // As large as the level's largest blocks, so that a thread's next product finds the buffer again.
    const bool big = path == gemm_path::sse41;
    const core_int rows = path == gemm_path::sse42 ? 640 : big ? 1000 : 512;
    a_bytes = rows * 256 * 8;
    strip_bytes = big ? 8960 : 17152;
    b_bytes = (path == gemm_path::sse42 ? 5000 : kLargestColumns) * 256 * 8;
    a_bytes = std::max(a_bytes, rounded_up(blocks.mc, blocks.mr) * rounded_up(blocks.kc, blocks.ku) * size);
    b_bytes = std::max(b_bytes, rounded_up(blocks.nc, blocks.nr) * rounded_up(blocks.kc, blocks.ku) * size);
    bytes = kPage + strip_bytes + (with_a ? a_bytes + kSlackA : 0) + (with_b ? b_bytes + kSlackB : 0);
  } else {
    const core_int depth = rounded_up(blocks.kc, blocks.ku);
    a_bytes = rounded_up(blocks.mc, blocks.mr) * depth * size;
    b_bytes = rounded_up(blocks.nc, blocks.nr) * depth * size;
    strip_bytes = depth * (path == gemm_path::strips ? 16 * kStripWidth : 128);
    bytes = 13056 + strip_bytes + (with_a ? a_bytes : 0) + (with_b ? b_bytes + kSlackB : 0);
  }
  gemm_buffers layout;
  layout.strip = rounded_up(with_a ? a_bytes : 0, 128) + kBeforeStrip;
  layout.b = with_b ? rounded_up(layout.strip + strip_bytes, kPage) : 0;
  layout.bytes = bytes;
  return layout;
}

}  // namespace qel
