// SPDX-License-Identifier: BSD-3-Clause
// Products with a symmetric matrix: its order is halved until a diagonal block is small; the block between
// the halves enters two general products, as it is and mirrored, and a small diagonal block is filled up
// first.
#include <algorithm>

#include "blas/level3/gemm_serial.h"
#include "blas/level3/symmetric.h"

namespace qel {
namespace {

constexpr core_int kDiagonalBlock = 64;

template <class T>
void multiply_diagonal_block(const symm_call<T>& call, core_int start, core_int order) {
  T full[kDiagonalBlock * kDiagonalBlock];
  const auto stored = [&](core_int i, core_int j) { return call.a[start + i + (start + j) * call.lda]; };
  for (core_int j = 0; j < order; ++j) {
    for (core_int i = 0; i < order; ++i) {
      T& v = full[i + j * kDiagonalBlock];
      if (i == j) {
        v = call.hermitian ? from_real<T>(real_part(stored(i, i))) : stored(i, i);
      } else if (call.upper == (i < j)) {
        v = stored(i, j);
      } else {
        v = call.hermitian ? conj(stored(j, i)) : stored(j, i);
      }
    }
  }
  const T one = from_real<T>(1);
  if (call.left) {
    gemm_serial<T>({kNoTranspose, kNoTranspose, order, call.n, order, call.alpha, full, kDiagonalBlock,
                    call.b + start, call.ldb, one, call.c + start, call.ldc});
  } else {
    gemm_serial<T>({kNoTranspose, kNoTranspose, call.m, order, order, call.alpha, call.b + start * call.ldb,
                    call.ldb, full, kDiagonalBlock, one, call.c + start * call.ldc, call.ldc});
  }
}

/// C += alpha A B for the diagonal block of A at `start`.
template <class T>
void multiply(const symm_call<T>& call, core_int start, core_int order) {
  if (order <= kDiagonalBlock) return multiply_diagonal_block(call, start, order);
  const core_int half = (order / 2 + kDiagonalBlock - 1) / kDiagonalBlock * kDiagonalBlock,
                 rest = order - half;
  const core_int second = start + half;
  multiply(call, start, half);
  const int mirrored = call.hermitian ? op_of<T>('C') : kTranspose;
  // The stored block: rows of one half, columns of the other.
  const core_int row = call.upper ? start : second, column = call.upper ? second : start;
  const core_int rows = call.upper ? half : rest, columns = call.upper ? rest : half;
  const T* block = call.a + row + column * call.lda;
  const T one = from_real<T>(1);
  if (call.left) {
    gemm_serial<T>({kNoTranspose, kNoTranspose, rows, call.n, columns, call.alpha, block, call.lda,
                    call.b + column, call.ldb, one, call.c + row, call.ldc});
    gemm_serial<T>({mirrored, kNoTranspose, columns, call.n, rows, call.alpha, block, call.lda, call.b + row,
                    call.ldb, one, call.c + column, call.ldc});
  } else {
    gemm_serial<T>({kNoTranspose, kNoTranspose, call.m, columns, rows, call.alpha, call.b + row * call.ldb,
                    call.ldb, block, call.lda, one, call.c + column * call.ldc, call.ldc});
    gemm_serial<T>({kNoTranspose, mirrored, call.m, rows, columns, call.alpha, call.b + column * call.ldb,
                    call.ldb, block, call.lda, one, call.c + row * call.ldc, call.ldc});
  }
  multiply(call, second, rest);
}

template <class T>
void symm_serial(const symm_call<T>& call) {
  if (call.m < 1 || call.n < 1) return;
  gemm_scale(call.m, call.n, call.beta, call.c, call.ldc);
  if (call.alpha == T{}) return;
  multiply(call, 0, call.left ? call.m : call.n);
}

}  // namespace

template <class T>
void symm_driver(const symm_call<T>& call) {
  const side_choice choice = choose_trmm(side_facts_now(call.left, call.m, call.n));
  if (choice.threads < 2) return symm_serial(call);
  const auto team = static_cast<int>(choice.threads);
#pragma omp parallel for num_threads(team) schedule(static, 1)
  for (core_int t = 0; t < choice.threads; ++t) {
    const core_int start = t * choice.chunk, all = call.left ? call.n : call.m;
    symm_call<T> slab = call;
    (call.left ? slab.n : slab.m) = t < choice.threads - 1 ? choice.chunk : all - start;
    slab.b = call.b + (call.left ? start * call.ldb : start);
    slab.c = call.c + (call.left ? start * call.ldc : start);
    symm_serial(slab);
  }
}

template void symm_driver(const symm_call<float>&);
template void symm_driver(const symm_call<double>&);
template void symm_driver(const symm_call<complex8>&);
template void symm_driver(const symm_call<complex16>&);

}  // namespace qel
