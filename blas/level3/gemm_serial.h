// SPDX-License-Identifier: BSD-3-Clause
// The product on the calling thread, by processor level, and its blocked loop, which the thread schemes and
// the triangular routines run on panels of their own.
#pragma once

#include "blas/level3/gemm_blocks.h"
#include "blas/level3/gemm_call.h"

namespace qel {

/// The whole of C = alpha op(A) op(B) + beta C. Without work memory it goes unpacked.
template <class T>
void gemm_serial(const gemm_call<T>& call);
/// C = beta C; nothing if beta is 1.
template <class T>
void gemm_scale(core_int m, core_int n, T beta, T* c, core_int ldc);
/// C += alpha op(A) op(B) without work memory.
template <class T>
void gemm_small(const gemm_call<T>& call);

/// The kernels of packed panels of a path that has them (all but strips and sse3).
template <class T>
const gemm_kernels<T>& packed_kernels(gemm_path path);

/// Work memory of one product, freed with its scope.
template <class T>
class gemm_memory {
 public:
  gemm_memory(gemm_path path, const gemm_blocks& blocks, bool with_a, bool with_b);
  ~gemm_memory();
  gemm_memory(const gemm_memory&) = delete;
  gemm_memory& operator=(const gemm_memory&) = delete;
  /// False if there was none.
  explicit operator bool() const { return block_ != nullptr; }
  T *a = nullptr, *strip = nullptr, *b = nullptr;

 private:
  void* block_;
};

/// Panels that others have packed; null where a product packs for itself. Then the product is one depth block
/// (shared A: and one block of rows).
template <class T>
struct gemm_panels {
  const T* a = nullptr;
  core_int a_stride = 0;
  const T* b = nullptr;
  core_int b_stride = 0;
};

/// C += alpha op(A) op(B) by the blocked loop; beta is not looked at.
template <class T>
void gemm_packed(gemm_path path, const gemm_call<T>& call, const gemm_blocks& blocks,
                 const gemm_memory<T>& memory, const gemm_panels<T>& shared = {});

}  // namespace qel
