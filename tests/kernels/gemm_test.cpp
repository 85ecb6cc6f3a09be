// SPDX-License-Identifier: BSD-3-Clause
// The matrix product of every level and every thread scheme: order of summation to the bit, differences from
// long double sums over options and sizes around tiles and blocks, alignment, NaN, no access outside the
// operands.
#include <tuple>

#include "blas/level3/gemm_plan.h"
#include "tests/blas/reference.h"
#include "tests/kernels/support.h"

namespace qel::test {
namespace {

constexpr gemm_path kPanelPaths[] = {gemm_path::ssse3, gemm_path::sse41, gemm_path::sse42, gemm_path::avx,
                                     gemm_path::family_10h};
bool can_run(gemm_path path) { return path != gemm_path::avx || __builtin_cpu_supports("avx"); }

constexpr char kLetters[] = {'N', 'T', 'C'};

/// A product with its operands; C's columns are padded with cells that must not change.
template <class T>
struct problem {
  core_int m, n, k;
  int op_a, op_b;
  core_int lda, ldb, ldc;
  T alpha, beta;
  std::vector<T> a, b, c;

  problem(core_int rows, core_int columns, core_int depth, char transa, char transb, core_int pad, T factor_a,
          T factor_c)
      : m(rows),
        n(columns),
        k(depth),
        op_a(op_of<T>(transa)),
        op_b(op_of<T>(transb)),
        lda((transa == 'N' ? m : k) + pad),
        ldb((transb == 'N' ? k : n) + pad),
        ldc(m + pad),
        alpha(factor_a),
        beta(factor_c),
        a(random_cells(lda * (transa == 'N' ? k : m), 1)),
        b(random_cells(ldb * (transb == 'N' ? n : k), 2)),
        c(random_cells(ldc * n, 3)) {}

  static std::vector<T> random_cells(core_int count, unsigned seed) {
    std::mt19937 engine(seed);
    std::uniform_real_distribution<double> uniform(-1, 1);
    std::vector<T> cells(static_cast<std::size_t>(std::max<core_int>(count, 1)));
    for (T& cell : cells) {
      const double real = uniform(engine);
      cell = element<T>(real, uniform(engine));
    }
    return cells;
  }
  gemm_call<T> call(T* into) const {
    return {op_a, op_b, m, n, k, alpha, a.data(), lda, b.data(), ldb, beta, into, ldc};
  }
  T left(core_int i, core_int l) const {
    const T v = *call(nullptr).a_at(i, l);
    return op_a == kConjugateTranspose ? conj(v) : v;
  }
  T right(core_int l, core_int j) const {
    const T v = *call(nullptr).b_at(l, j);
    return op_b == kConjugateTranspose ? conj(v) : v;
  }
  bounded wanted(core_int i, core_int j) const {
    // In parts: products of complex long doubles are slow.
    long double re = 0, im = 0, size = 0;
    for (core_int l = 0; l < k; ++l) {
      const auto x = widen(left(i, l)), y = widen(right(l, j));
      re += x.real() * y.real() - x.imag() * y.imag();
      im += x.real() * y.imag() + x.imag() * y.real();
      size += (std::fabs(x.real()) + std::fabs(x.imag())) * (std::fabs(y.real()) + std::fabs(y.imag()));
    }
    bounded sum;
    if (!(beta == T{})) sum.add(widen(beta) * widen(c[static_cast<std::size_t>(i + j * ldc)]));
    sum.value += widen(alpha) * wide(re, im);
    sum.size += std::abs(widen(alpha)) * size;
    return sum;
  }
  /// Compares got with the sums, and its padding with what was there.
  void check(const std::vector<T>& got, const std::string& what, int only_every = 1) const {
    for (core_int j = 0; j < n; ++j) {
      for (core_int i = 0; i < ldc; ++i) {
        const auto at = static_cast<std::size_t>(i + j * ldc);
        if (i >= m) {
          ASSERT_TRUE(got[at] == c[at]) << what << " padding " << i << ' ' << j;
        } else if ((i + j) % only_every == 0) {
          ASSERT_TRUE(close(got[at], wanted(i, j), k)) << what << " (" << i << ", " << j << ")";
        }
      }
    }
  }
};
template <class T>
T some_alpha() {
  return element<T>(-0.75, 0.5);
}
template <class... A>
std::string text(A... parts) {
  std::string all;
  ((all += std::to_string(parts) + ' '), ...);
  return all;
}

// To the bit, real types: one sum per element and depth block, from zero, then into C.
template <class R>
void check_order(gemm_path path) {
  const core_int m = 85, n = 29,
                 k = 300;  // blocks of many tiles and of few; depth blocks of different length
  problem<R> p(m, n, k, 'N', 'T', 3, R{-0.75F}, R{1});
  gemm_blocks blocks = gemm_widths(path, element_of<R>);
  blocks.mc = 64;
  blocks.nc = 16;
  blocks.kc = 152;
  const core_int main_rows = rounded_down(m, blocks.mr);
  std::vector<R> got = p.c, want = p.c;
  const gemm_memory<R> memory(path, blocks, true, true);
  gemm_packed(path, p.call(got.data()), blocks, memory);
  for (core_int j = 0; j < n; ++j) {
    for (core_int i = 0; i < main_rows; ++i) {
      R& c = want[static_cast<std::size_t>(i + j * p.ldc)];
      for (core_int first = 0; first < k; first += blocks.kc) {
        R sum = 0;
        for (core_int l = first; l < std::min(k, first + blocks.kc); ++l) {
          const R scaled = p.alpha * p.left(i, l);
          sum += scaled * p.right(l, j);
        }
        c += sum;
      }
      ASSERT_EQ(c, got[static_cast<std::size_t>(i + j * p.ldc)]) << i << ' ' << j;
    }
  }
  p.check(got, text(static_cast<int>(path)));
}
TEST(GemmPanels, SumInTheDocumentedOrder) {
  for (const gemm_path path : kPanelPaths) {
    if (!can_run(path)) continue;
    for_types<float, double>([&]<class R>() { check_order<R>(path); });
  }
}

TEST(GemmPanels, AllOpsAndOddSizesOfEveryPath) {
  constexpr core_int kSizes[][3] = {{1, 1, 1},   {3, 9, 5},     {8, 8, 8},
                                    {17, 13, 6}, {33, 31, 130}, {40, 5, 257}};
  for (const gemm_path path : kPanelPaths) {
    if (!can_run(path)) continue;
    for_element_types([&]<class T>() {
      for (const char transa : kLetters) {
        for (const char transb : kLetters) {
          for (const auto& [m, n, k] : kSizes) {
            for (const core_int pad : {0, 1}) {
              const problem<T> p(m, n, k, transa, transb, pad, some_alpha<T>(), from_real<T>(1));
              gemm_blocks blocks = gemm_widths(path, element_of<T>);
              blocks.mc = 16;
              blocks.nc = 16;
              blocks.kc = 128;
              const gemm_memory<T> memory(path, blocks, true, true);
              std::vector<T> got = p.c;
              gemm_packed(path, p.call(got.data()), blocks, memory);
              p.check(got, text(static_cast<int>(path), m, n, k, pad) + transa + transb);
            }
          }
        }
      }
    });
  }
}

// The level of this process from here on.

constexpr core_int kSides[] = {1, 2, 3, 4, 5, 7, 8, 9, 12, 13, 16, 17, 24, 31, 33, 50, 67};
TEST(GemmSerial, SizesAboutTilesAndBlocks) {
  for_element_types([]<class T>() {
    int turn = 0;
    for (const core_int m : kSides) {
      for (const core_int n : {1, 2, 3, 4, 5, 6, 9, 11, 25, 38}) {
        for (const core_int k : {1, 2, 4, 5, 8, 31, 112, 113, 128, 131}) {
          if ((++turn & 3) != 0) continue;  // all combinations of neighbours, in a quarter of the time
          const int index = turn / 4;
          const problem<T> p(m, n, k, kLetters[index % 3], kLetters[index / 3 % 3], index % 2,
                             index % 5 == 0 ? from_real<T>(1) : some_alpha<T>(),
                             index % 4 == 0   ? T{}
                             : index % 4 == 1 ? from_real<T>(1)
                                              : element<T>(0.5, -1));
          std::vector<T> got = p.c;
          gemm_serial(p.call(got.data()));
          p.check(got, text(m, n, k) + kLetters[index % 3] + kLetters[index / 3 % 3]);
        }
      }
    }
  });
}

constexpr core_int kBeyondBlocks[][3] = {{1100, 9, 20}, {9, 2100, 12},  {12, 16, 600},
                                         {70, 70, 258}, {64, 64, 512},  {200, 140, 511},
                                         {60, 72, 257}, {129, 65, 224}, {48, 40, 336}};
TEST(GemmSerial, BeyondBlocksInEveryDirection) {
  for_element_types([]<class T>() {
    for (const auto& [m, n, k] : kBeyondBlocks) {
      for (const T beta : {T{}, from_real<T>(1), element<T>(0.5, -1)}) {
        const problem<T> p(m, n, k, 'N', 'N', 2, some_alpha<T>(), beta);
        std::vector<T> got = p.c;
        gemm_serial(p.call(got.data()));
        p.check(got, text(m, n, k), 7);
      }
      const problem<T> p(m, n, k, 'C', 'T', 1, from_real<T>(1), from_real<T>(1));
      std::vector<T> got = p.c;
      gemm_serial(p.call(got.data()));
      p.check(got, text(m, n, k) + "turned", 7);
    }
  });
}

TEST(GemmSerial, SameBitsAtEveryAlignmentAndNoAccessOutside) {
  for_element_types([]<class T>() {
    constexpr core_int kSizes[][3] = {{21, 14, 19}, {4, 3, 40}, {32, 16, 128}};
    for (const auto& [m, n, k] : kSizes) {
      for (const core_int pad : {0, 1}) {
        const problem<T> p(m, n, k, 'N', 'N', pad, some_alpha<T>(), element<T>(0.5, -1));
        const problem<T> turned(m, n, k, 'T', 'C', pad, some_alpha<T>(), T{});
        for (const problem<T>* one : {&p, &turned}) {
          arena<T> a(6000), b(6000), c(6000);
          std::vector<T> wanted = one->c;
          gemm_serial(one->call(wanted.data()));
          // The last column of each operand ends at the page nobody may touch.
          const auto trimmed = [](std::vector<T> cells, core_int ld, core_int used, core_int lines) {
            cells.resize(static_cast<std::size_t>(ld * (lines - 1) + used));
            return cells;
          };
          const bool turned_a = one->op_a != kNoTranspose, turned_b = one->op_b != kNoTranspose;
          for (const std::size_t off : {std::size_t{0}, sizeof(real_of<T>), std::size_t{8}, std::size_t{2}}) {
            gemm_call<T> call = one->call(nullptr);
            call.a = a.place(trimmed(one->a, one->lda, turned_a ? k : m, turned_a ? m : k), off);
            call.b = b.place(trimmed(one->b, one->ldb, turned_b ? n : k, turned_b ? k : n), off / 2);
            call.c = c.place(trimmed(one->c, one->ldc, m, n), off);
            gemm_serial(call);
            const std::vector<T> got = c.values();
            EXPECT_EQ(0, std::memcmp(wanted.data(), got.data(), got.size() * sizeof(T)))
                << text(m, n, k, off);
            EXPECT_TRUE(a.intact() && b.intact() && c.intact());
          }
        }
      }
    }
  });
}

struct special_case {
  const char* name;
  double alpha, beta, in_a, in_c;  ///< in_a, in_c: what stands in A and C
  core_int k;
  char wanted;  ///< '0' zeros, 'n' NaN, 'c' C as it was
};
TEST(GemmSerial, ZerosAndNan) {
  const double nan = std::nan("");
  const special_case cases[] = {
      {"no depth, beta 0", 1, 0, 1, nan, 0, '0'},   {"no depth, beta 1", 1, 1, 1, 5, 0, 'c'},
      {"alpha 0, beta 1", 0, 1, nan, 5, 30, 'c'},   {"alpha 0, beta 0", 0, 0, nan, nan, 30, '0'},
      {"alpha NaN", nan, 1, 1, 5, 30, 'n'},         {"beta NaN", 1, nan, 1, 5, 30, 'n'},
      {"beta NaN, alpha 0", 0, nan, 1, 5, 30, 'n'}, {"NaN in A", 1, 0, nan, 5, 30, 'n'},
      {"NaN in C, beta 1", 1, 1, 1, nan, 30, 'n'},
  };
  for_element_types([&]<class T>() {
    for (const special_case& s : cases) {
      for (const core_int size : {2, 13, 40}) {
        problem<T> p(size, size, s.k, 'N', 'N', 0, element<T>(s.alpha, 0), element<T>(s.beta, 0));
        std::fill(p.a.begin(), p.a.end(), element<T>(s.in_a, 0));
        std::fill(p.c.begin(), p.c.end(), element<T>(s.in_c, 0));
        std::vector<T> got = p.c;
        gemm_serial(p.call(got.data()));
        for (const T& cell : got) {
          if (s.wanted == 'n') {
            ASSERT_TRUE(is_nan(widen(cell))) << s.name << size;
          } else {
            ASSERT_TRUE(cell == element<T>(s.wanted == '0' ? 0 : s.in_c, 0)) << s.name << size;
          }
        }
      }
    }
  });
}

// An infinity in one row of A must not reach other rows, nor the zeros that pad panels.
TEST(GemmSerial, InfinityStaysInItsRow) {
  for_element_types([]<class T>() {
    problem<T> p(13, 11, 37, 'N', 'N', 0, from_real<T>(1), from_real<T>(1));
    const core_int row = 6;
    for (core_int l = 0; l < p.k; ++l) {
      p.a[static_cast<std::size_t>(row + l * p.lda)] = element<T>(std::numeric_limits<double>::infinity(), 0);
    }
    std::vector<T> got = p.c;
    gemm_serial(p.call(got.data()));
    for (core_int j = 0; j < p.n; ++j) {
      for (core_int i = 0; i < p.m; ++i) {
        const auto cell = widen(got[static_cast<std::size_t>(i + j * p.ldc)]);
        EXPECT_EQ(i == row, !std::isfinite(cell.real()) || !std::isfinite(cell.imag())) << i << ' ' << j;
      }
    }
  });
}

// Schemes by hand, with whatever threads: each computes every cell once, with the right operands.
template <class T>
void check_scheme(gemm_choice choice, core_int m, core_int n, core_int k, char transa, char transb) {
  for (const bool scale_first : {false, true}) {
    choice.scale_first = scale_first;
    const bool needs_scaled =
        choice.scheme == gemm_scheme::grid_blocked || choice.scheme >= gemm_scheme::private_pack;
    if (needs_scaled && !scale_first) continue;
    const problem<T> p(m, n, k, transa, transb, 1, some_alpha<T>(), element<T>(0.5, -1));
    std::vector<T> got = p.c;
    run_gemm(choice, p.call(got.data()));
    p.check(got,
            std::string(name_of(choice.scheme)) + " " +
                text(choice.threads, choice.grid_rows, choice.grid_cols, m, n, k) + transa + transb,
            5);
  }
}
gemm_choice scheme_of(gemm_scheme scheme, core_int threads, core_int grid_rows, core_int block_m,
                      core_int block_n, core_int block_k) {
  gemm_choice choice;
  choice.scheme = scheme;
  choice.threads = threads;
  choice.grid_rows = grid_rows;
  choice.grid_cols = grid_rows == 0 ? 0 : threads / grid_rows;
  choice.block_m = block_m;
  choice.block_n = block_n;
  choice.block_k = block_k;
  return choice;
}

TEST(GemmSchemes, ComputeEveryCellOnce) {
  const bool panels = serv_cpu_level() >= 2;
  for_element_types([&]<class T>() {
    int turn = 0;
    for (const core_int threads : {2, 3, 4, 6, 8, 10, 24}) {
      for (const auto& [m, n, k] :
           {std::tuple<core_int, core_int, core_int>{75, 53, 40}, {43, 210, 300}, {9, 3, 20}}) {
        const char transa = kLetters[turn % 3], transb = kLetters[turn++ / 3 % 3];
        const auto check = [&, m = m, n = n, k = k](gemm_choice choice) {
          check_scheme<T>(choice, m, n, k, transa, transb);
        };
        check(scheme_of(gemm_scheme::split_cols, threads, 0, 0, 0, 0));
        check(scheme_of(gemm_scheme::split_rows, threads, 0, 0, 0, 0));
        check(scheme_of(gemm_scheme::row_blocks, 1, 0, 16, 0, 0));
        for (const core_int grid_rows : {core_int{1}, core_int{2}, threads}) {
          check(scheme_of(gemm_scheme::grid, threads, grid_rows, 0, 0, 0));
        }
        check(scheme_of(gemm_scheme::grid_blocked, threads, 2, 12, 20, 16));
        if (!panels) continue;
        check(scheme_of(gemm_scheme::private_pack, threads, 0, 16, 8, 0));
        check(scheme_of(gemm_scheme::shared_b, threads, 0, 16, 0, 0));
        check(scheme_of(gemm_scheme::shared_a, threads, 2, 16, 10000, 0));
        check(scheme_of(gemm_scheme::shared_a, threads, std::min<core_int>(threads, 4), 32, 10000, 0));
      }
    }
  });
}

// Through the driver: what the rules choose on this level, the same bits in every run.
TEST(GemmDriver, ThreadedIsRightAndRepeats) {
  serv_set_dynamic(0);
  for_element_types([]<class T>() {
    for (const int threads : {1, 2, 3, 4, 6, 8, 24}) {
      serv_set_domain_threads(threads, 1);
      for (const auto& [m, n, k] :
           {std::tuple<core_int, core_int, core_int>{210, 130, 40}, {60, 300, 33}, {300, 60, 270}}) {
        const problem<T> p(m, n, k, 'N', 'T', 1, some_alpha<T>(), element<T>(0.5, -1));
        std::vector<T> got = p.c, again = p.c;
        gemm_driver(p.call(got.data()));
        gemm_driver(p.call(again.data()));
        p.check(got, text(threads, m, n, k), 7);
        EXPECT_EQ(0, std::memcmp(got.data(), again.data(), got.size() * sizeof(T)));
      }
    }
  });
  serv_set_domain_threads(1, 1);
}

}  // namespace
}  // namespace qel::test
