// SPDX-License-Identifier: BSD-3-Clause
// Kernels of CSR products called as for matrices from memory, which no test is large enough to be: rows of
// all lengths, vectors that end before a page that can't be read, exact values.
#include "sparse/kernels/csr_kernels.h"
#include "service/serv.h"
#include "tests/sparse/csr_parts.h"
#include "tests/sparse/support.h"
#include "tests/support/guarded.h"

namespace qel::test {
namespace {

template <class T>
const csr_kernels<T>& kernels_of_level() {
  const int level = serv_cpu_level();
  return level >= 5   ? *pick<T>(0, &l5_avx2::csr_d, 0, &l5_avx2::csr_z)
         : level == 4 ? *pick<T>(0, &l4_avx::csr_d, 0, &l4_avx::csr_z)
                      : *pick<T>(0, &l0_generic::csr_d, 0, &l0_generic::csr_z);
}

/// Row i has i entries, in order or not; from the half on with columns twice.
template <class T>
csr<T> rows_of_all_lengths(int rows, int columns, bool sorted) {
  std::mt19937 random(21);
  csr<T> m{rows, columns, {1}, {}, {}};
  for (int i = 0; i < rows; ++i) {
    std::vector<int> row;
    for (int k = 0; k < i; ++k) {
      const int every = i < rows / 2 ? (k * columns) / i : static_cast<int>(random() % unsigned(columns));
      row.push_back(1 + every);
    }
    if (!sorted) std::shuffle(row.begin(), row.end(), random);
    for (const int j : row) {
      m.ja.push_back(j);
      m.a.push_back(exact_value<T>(random));
    }
    m.ia.push_back(static_cast<int>(m.ja.size()) + 1);
  }
  return m;
}

template <class T>
class CsrKernels : public testing::Test {};
using csr_types = testing::Types<double, complex16>;
TYPED_TEST_SUITE(CsrKernels, csr_types);

TYPED_TEST(CsrKernels, RowsOfAllLengths) {
  using T = TypeParam;
  const csr_kernels<T>& table = kernels_of_level<T>();
  for (const auto& [m, k] : {std::pair{40, 40}, {40, 17}, {17, 40}}) {
    for (const bool sorted : {true, false}) {
      const auto a = rows_of_all_lengths<T>(m, k, sorted);
      for (const csr_part part : {kWhole, kLower, kLowerUnit, kUpper, kUpperUnit}) {
        dense meant(m, k);
        for (int i = 0; i < m; ++i) {
          for (int p = a.ia[i] - 1; p < a.ia[i + 1] - 1; ++p)
            if (takes_part(part, i, a.ja[p] - 1)) meant(i, a.ja[p] - 1) += widen(a.a[p]);
          if ((part == kLowerUnit || part == kUpperUnit) && i < k) meant(i, i) += 1;
        }
        for (const int asks : {0, 1, 2}) {
          for (const bool transposed : {false, true}) {
            const auto x_values = make_vector<T>(transposed ? m : k, 22);
            guarded<T> x(x_values.size()), y(static_cast<std::size_t>(transposed ? k : m));
            x.assign(x_values);
            y.assign(std::vector<T>(y.size()));
            const csr_slice rows = {0, m, a.ja.data(), a.ia.data(), a.ia.data() + 1,
                                    1, k, false,       asks > 0,    asks > 1};
            const T alpha = make<T>(2);
            (transposed ? table.scatter : table.gather)[part][0](&rows, a.a.data(), &alpha, x.data(),
                                                                 y.data());
            const dense d = op(transposed ? 'T' : 'N', meant);
            for (int i = 0; i < d.rows; ++i) {
              reference sum = 0;
              for (int j = 0; j < d.columns; ++j) sum += d(i, j) * widen(x_values[j]);
              ASSERT_EQ(widen(y.data()[i]), widen(alpha) * sum)
                  << part << asks << transposed << " row " << i << " of " << m << 'x' << k;
            }
          }
        }
      }
    }
  }
}

TYPED_TEST(CsrKernels, WhatTakesNoPartMayBeAnything) {
  using T = TypeParam;
  // Row 20 has twenty entries; those behind the diagonal are not numbers, in the matrix and in x.
  const int n = 40;
  csr<T> a{n, n, {}, {}, {}};
  for (int i = 0; i <= n; ++i) a.ia.push_back(i <= 20 ? 1 : 21);
  for (int k = 0; k < 20; ++k) {
    a.ja.push_back(1 + (k * 7) % n);
    a.a.push_back(make<T>(a.ja.back() > 21 ? NAN : 1));
  }
  std::vector<T> x(n, make<T>(1)), y(n);
  std::fill(x.begin() + 21, x.end(), make<T>(INFINITY));
  for (const bool streams : {false, true}) {
    const csr_slice rows = {0, n, a.ja.data(), a.ia.data(), a.ia.data() + 1, 1, n, true, streams};
    const T one = make<T>(1);
    kernels_of_level<T>().gather[kLower][0](&rows, a.a.data(), &one, x.data(), y.data());
    const auto inside = std::count_if(a.ja.begin(), a.ja.end(), [](int j) { return j <= 21; });
    EXPECT_EQ(widen(y[20]), reference(static_cast<long double>(inside)));
  }
}

}  // namespace
}  // namespace qel::test
