// SPDX-License-Identifier: BSD-3-Clause
// Level 3: products, rank-k updates and triangles, of sizes around the tiles and beyond a cache block.
#include <fmt/core.h>

#include "cli/selftest/core_calls.h"
#include "cli/selftest/dense.h"

namespace qel::cli::selftest {
namespace {

template <class T>
class product_checks {
 public:
  product_checks(recorder& out, core_int m, core_int n, core_int k)
      : out_(out), m_(m), n_(n), k_(k), source_(static_cast<std::uint64_t>((m * 1000 + n) * 1000 + k)) {}

  void gemm(char transa, char transb) {
    const dense<T> a = transa == 'N' ? dense<T>(source_, m_, k_) : dense<T>(source_, k_, m_);
    const dense<T> b = transb == 'N' ? dense<T>(source_, k_, n_) : dense<T>(source_, n_, k_);
    check("gemm", fmt::format("{}{} {}x{}x{}", transa, transb, m_, n_, k_), 'G',
          multiply(operand(a, transa), operand(b, transb)), k_,
          [&](const T* alpha, const T* beta, dense<T>& c) {
            calls::gemm(&transa, &transb, &m_, &n_, &k_, alpha, a.data(), &a.ld, b.data(), &b.ld, beta,
                        c.data(), &c.ld);
          });
  }

  void symmetric(char side, char uplo) {
    const core_int order = side == 'L' ? m_ : n_;
    const dense<T> a(source_, order, order), b(source_, m_, n_);
    const wide_matrix right = operand(b);
    for (const bool hermitian : {false, true}) {
      if (hermitian && !is_complex<T>) continue;
      const wide_matrix whole =
          special_operand(a, uplo, hermitian ? special::kHermitian : special::kSymmetric);
      check(hermitian ? "hemm" : "symm", fmt::format("{}{} {}x{}", side, uplo, m_, n_), 'G',
            side == 'L' ? multiply(whole, right) : multiply(right, whole), order,
            [&](const T* alpha, const T* beta, dense<T>& c) {
              (hermitian ? calls::hemm : calls::symm)(&side, &uplo, &m_, &n_, alpha, a.data(), &a.ld,
                                                      b.data(), &b.ld, beta, c.data(), &c.ld);
            });
    }
  }

  void rank_update(char uplo, char trans) {
    const dense<T> a = trans == 'N' ? dense<T>(source_, n_, k_) : dense<T>(source_, k_, n_);
    const wide_matrix left = operand(a, trans), right = turned(left, 'T');
    const std::string sizes = fmt::format("{}{} {}x{}", uplo, trans, n_, k_);
    check("syrk", sizes, uplo, multiply(left, right), k_, [&](const T* alpha, const T* beta, dense<T>& c) {
      calls::syrk(&uplo, &trans, &n_, &k_, alpha, a.data(), &a.ld, beta, c.data(), &c.ld);
    });
    const dense<T> b = trans == 'N' ? dense<T>(source_, n_, k_) : dense<T>(source_, k_, n_);
    const wide_matrix second = operand(b, trans);
    wide_product both = multiply(left, turned(second, 'T'));
    const wide_product mirrored = multiply(second, right);
    for (size_t i = 0; i < both.scale.size(); ++i) {
      both.value.values[i] += mirrored.value.values[i];
      both.scale[i] += mirrored.scale[i];
    }
    check("syr2k", sizes, uplo, both, 2 * k_, [&](const T* alpha, const T* beta, dense<T>& c) {
      calls::syr2k(&uplo, &trans, &n_, &k_, alpha, a.data(), &a.ld, b.data(), &b.ld, beta, c.data(), &c.ld);
    });
  }

  void triangle(char side, char uplo, char trans, char diag) {
    const core_int order = side == 'L' ? m_ : n_;
    dense<T> a(source_, order, order);
    for (core_int j = 0; j < order; ++j) {
      for (core_int i = 0; i < order; ++i)
        a(i, j) = narrowed<T>(a.at(i, j) / static_cast<long double>(order));
      a(j, j) = narrowed<T>(a.at(j, j) + wide(1));
    }
    const wide_matrix op =
        turned(special_operand(a, uplo, diag == 'U' ? special::kUnitTriangle : special::kTriangle), trans);
    const dense<T> start(source_, m_, n_);
    const wide_matrix given = operand(start);
    const std::string sizes = fmt::format("{}{}{}{} {}x{}", side, uplo, trans, diag, m_, n_);
    const auto product_with = [&](const wide_matrix& b) {
      return side == 'L' ? multiply(op, b) : multiply(b, op);
    };
    const T alpha = narrowed<T>(wide(0.5L));

    dense<T> b = start;
    calls::trmm(&side, &uplo, &trans, &diag, &m_, &n_, &alpha, a.data(), &a.ld, b.data(), &b.ld);
    wide_product product = product_with(given);
    for (wide& value : product.value.values) value *= 0.5L;
    compare("trmm", sizes, b, start, product, order);

    // The solution put back into the equations.
    b = start;
    calls::trsm(&side, &uplo, &trans, &diag, &m_, &n_, &alpha, a.data(), &a.ld, b.data(), &b.ld);
    const wide_product back = product_with(operand(b));
    double worst = 0;
    for (size_t i = 0; i < back.scale.size(); ++i) {
      const double error = static_cast<double>(std::abs(back.value.values[i] - 0.5L * given.values[i])) /
                           (back.scale[i] * kEpsilon<T>);
      raise(worst, error);
    }
    out_.compare(name("trsm"), sizes, worst, sum_bound(static_cast<double>(order)));
  }

 private:
  using calls = core_calls<T>;
  std::string name(const char* routine) const { return std::string(1, kLetter<T>) + routine; }

  /// C = alpha product + beta C in the part: G all, U or L a triangle.
  template <class Call>
  void check(const char* routine, const std::string& sizes, char part, const wide_product& product,
             core_int depth, const Call& call) {
    const core_int rows = product.value.rows, columns = product.value.columns;
    dense<T> c(source_, rows, columns, 2);
    const T alpha = source_.number<T>(), beta = source_.number<T>();
    std::vector<wide> want = c.expected();
    std::vector<double> scale(want.size(), 0);
    const auto alpha_size = static_cast<double>(std::abs(widened(alpha)));
    for (core_int j = 0; j < columns; ++j) {
      for (core_int i = part == 'L' ? j : 0; i < (part == 'U' ? j + 1 : rows); ++i) {
        const size_t at = c.place(i, j);
        scale[at] = alpha_size * product.scale[static_cast<size_t>(i + j * rows)] +
                    static_cast<double>(std::abs(want[at]));
        want[at] = widened(alpha) * product.value(i, j) + widened(beta) * want[at];
      }
    }
    call(&alpha, &beta, c);
    out_.compare(name(routine), sizes, worst_error(c.memory, want, scale),
                 sum_bound(static_cast<double>(depth)));
  }

  void compare(const char* routine, const std::string& sizes, const dense<T>& got, const dense<T>& start,
               const wide_product& product, core_int depth) {
    std::vector<wide> want = start.expected();
    std::vector<double> scale(want.size(), 0);
    for (core_int j = 0; j < start.columns; ++j) {
      for (core_int i = 0; i < start.rows; ++i) {
        want[start.place(i, j)] = product.value(i, j);
        scale[start.place(i, j)] = product.scale[static_cast<size_t>(i + j * start.rows)];
      }
    }
    out_.compare(name(routine), sizes, worst_error(got.memory, want, scale),
                 sum_bound(static_cast<double>(depth)));
  }

  recorder& out_;
  const core_int m_, n_, k_;
  number_source source_;
};

struct sizes {
  core_int m, n, k;
};

}  // namespace

void check_matrix_products(recorder& out) {
  for_each_type([&]<class T>() {
    for (const sizes& s : {sizes{1, 1, 1},
                           {2, 3, 4},
                           {4, 4, 4},
                           {5, 7, 3},
                           {8, 4, 9},
                           {13, 5, 6},
                           {16, 16, 16},
                           {17, 9, 33},
                           {25, 31, 18},
                           {48, 40, 50}}) {
      product_checks<T> checks(out, s.m, s.n, s.k);
      for (const char transa : {'N', 'T', 'C'})
        for (const char transb : {'N', 'T', 'C'}) checks.gemm(transa, transb);
    }
    product_checks<T>(out, 131, 70, 300).gemm('N', 'N');
    product_checks<T>(out, 70, 131, 150).gemm('T', 'N');
    product_checks<T>(out, 200, 3, 40).gemm('N', 'T');
    product_checks<T>(out, 3, 200, 40).gemm('C', 'C');
    for (const sizes& s : {sizes{3, 5, 4}, {9, 6, 7}, {20, 17, 12}, {70, 33, 40}, {33, 90, 21}}) {
      product_checks<T> checks(out, s.m, s.n, s.k);
      for (const char uplo : {'U', 'L'}) {
        for (const char trans : {'N', 'T'}) checks.rank_update(uplo, trans);
        for (const char side : {'L', 'R'}) {
          checks.symmetric(side, uplo);
          for (const char trans : {'N', 'T', 'C'})
            for (const char diag : {'N', 'U'}) checks.triangle(side, uplo, trans, diag);
        }
      }
    }
  });
}

}  // namespace qel::cli::selftest
