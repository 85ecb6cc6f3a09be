// SPDX-License-Identifier: BSD-3-Clause
// Scaled copy or transposition out of place. A matrix in row order is the transpose in column order, so one
// direction serves both. The transposition goes in tiles of 8 x 8, a cache line wide on both sides, over
// panels that are narrow enough for the pages they touch to stay in the translation cache.
#include "blas/utilities/omatcopy.h"

#include <algorithm>
#include <cstdint>

namespace qel {
namespace {

constexpr size_t kTile = 8;    // doubles of a cache line
constexpr size_t kPanel = 64;  // columns of A whose pages are in use at a time

constexpr size_t kLargest = PTRDIFF_MAX;  // a size above was negative before it was widened

char upper(char letter) { return letter >= 'a' && letter <= 'z' ? static_cast<char>(letter - 32) : letter; }
bool transposes(char trans) { return upper(trans) == 'T' || upper(trans) == 'C'; }

void copy(size_t m, size_t n, double alpha, const double* a, size_t lda, double* b, size_t ldb) {
  for (size_t j = 0; j < n; ++j) {
    for (size_t i = 0; i < m; ++i) b[i + j * ldb] = alpha * a[i + j * lda];
  }
}

/// One full tile, through a local one: all of a line is read before any is written, and written at once.
void transpose_tile(double alpha, const double* a, size_t lda, double* b, size_t ldb) {
  double tile[kTile][kTile];
  for (size_t j = 0; j < kTile; ++j) {
    for (size_t i = 0; i < kTile; ++i) tile[i][j] = alpha * a[i + j * lda];
  }
  for (size_t i = 0; i < kTile; ++i) {
    for (size_t j = 0; j < kTile; ++j) b[j + i * ldb] = tile[i][j];
  }
}

void transpose_edge(size_t m, size_t n, double alpha, const double* a, size_t lda, double* b, size_t ldb) {
  for (size_t i = 0; i < m; ++i) {
    for (size_t j = 0; j < n; ++j) b[j + i * ldb] = alpha * a[i + j * lda];
  }
}

/// B = alpha A^T for A of m x n.
void transpose(size_t m, size_t n, double alpha, const double* a, size_t lda, double* b, size_t ldb) {
  for (size_t panel = 0; panel < n; panel += kPanel) {
    const size_t panel_end = std::min(n, panel + kPanel);
    for (size_t i = 0; i < m; i += kTile) {
      for (size_t j = panel; j < panel_end; j += kTile) {
        const double* from = a + i + j * lda;
        double* to = b + j + i * ldb;
        const size_t height = std::min(kTile, m - i), width = std::min(kTile, panel_end - j);
        if (height == kTile && width == kTile) {
          transpose_tile(alpha, from, lda, to, ldb);
        } else {
          transpose_edge(height, width, alpha, from, lda, to, ldb);
        }
      }
    }
  }
}

}  // namespace

int blas::omatcopy_bad_argument(char ordering, char trans, size_t rows, size_t cols, size_t lda, size_t ldb) {
  const bool by_columns = upper(ordering) == 'C';
  const size_t line_a = by_columns ? rows : cols;
  const size_t line_b = by_columns == transposes(trans) ? cols : rows;
  if (!by_columns && upper(ordering) != 'R') return 1;
  if (!transposes(trans) && upper(trans) != 'N' && upper(trans) != 'R') return 2;
  if (rows > kLargest) return 3;
  if (cols > kLargest) return 4;
  if (lda < std::max<size_t>(1, line_a) || lda > kLargest) return 7;
  if (ldb < std::max<size_t>(1, line_b) || ldb > kLargest) return 9;
  return 0;
}

void core::domatcopy(char ordering, char trans, size_t rows, size_t cols, double alpha, const double* a,
                     size_t lda, double* b, size_t ldb) {
  const bool by_columns = upper(ordering) == 'C';
  const size_t m = by_columns ? rows : cols, n = by_columns ? cols : rows;
  if (m == 0 || n == 0) return;
  if (alpha == 0) {
    const size_t height = transposes(trans) ? n : m, width = transposes(trans) ? m : n;
    for (size_t j = 0; j < width; ++j) std::fill_n(b + j * ldb, height, 0.0);
  } else if (transposes(trans)) {
    transpose(m, n, alpha, a, lda, b, ldb);
  } else {
    copy(m, n, alpha, a, lda, b, ldb);
  }
}

}  // namespace qel
