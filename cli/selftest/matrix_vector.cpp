// SPDX-License-Identifier: BSD-3-Clause
// Level 2: products, solves and updates of general, symmetric and triangular matrices.
#include <fmt/core.h>

#include "cli/selftest/core_calls.h"
#include "cli/selftest/dense.h"

namespace qel::cli::selftest {
namespace {

template <class T>
class matrix_vector_checks {
 public:
  matrix_vector_checks(recorder& out, core_int m, core_int n, core_int incx, core_int incy)
      : out_(out),
        m_(m),
        n_(n),
        incx_(incx),
        incy_(incy),
        source_(static_cast<std::uint64_t>(m * 1000 + n)) {}

  void general() {
    const dense<T> a(source_, m_, n_);
    for (const char trans : {'N', 'T', 'C'}) {
      check_product("gemv", operand(a, trans), fmt::format("{} {}x{}", trans, m_, n_),
                    [&](const T* alpha, const T* x, const T* beta, T* y) {
                      calls::gemv(&trans, &m_, &n_, alpha, a.data(), &a.ld, x, &incx_, beta, y, &incy_);
                    });
    }
    // A band inside of it: two diagonals below and one above.
    const core_int below = 2, above = 1, ld = below + above + 1;
    dense<T> full = a;
    std::vector<T> band(static_cast<size_t>(ld * n_), narrowed<T>(77));
    for (core_int j = 0; j < n_; ++j) {
      for (core_int i = 0; i < m_; ++i) {
        if (i - j > below || j - i > above) {
          full(i, j) = T{};
        } else {
          band[static_cast<size_t>(above + i - j + j * ld)] = full(i, j);
        }
      }
    }
    for (const char trans : {'N', 'T', 'C'}) {
      check_product("gbmv", operand(full, trans), fmt::format("{} {}x{}", trans, m_, n_),
                    [&](const T* alpha, const T* x, const T* beta, T* y) {
                      calls::gbmv(&trans, &m_, &n_, &below, &above, alpha, band.data(), &ld, x, &incx_, beta,
                                  y, &incy_);
                    });
    }
    for (const bool conjugated : {false, true}) {
      if (conjugated && !is_complex<T>) continue;
      dense<T> c = a;
      const std::vector<T> x = source_.numbers<T>(m_ * incx_ + 1), y = source_.numbers<T>(n_ * incy_ + 1);
      const T alpha = source_.number<T>();
      std::vector<wide> want = c.expected();
      std::vector<double> scale(want.size(), 0);
      for (core_int j = 0; j < n_; ++j) {
        for (core_int i = 0; i < m_; ++i) {
          wide right = widened(y[static_cast<size_t>(j * incy_)]);
          if (conjugated) right = std::conj(right);
          const wide term = widened(alpha) * widened(x[static_cast<size_t>(i * incx_)]) * right;
          scale[c.place(i, j)] = static_cast<double>(std::abs(term) + std::abs(c.at(i, j)));
          want[c.place(i, j)] += term;
        }
      }
      (conjugated ? calls::gerc : calls::geru)(&m_, &n_, &alpha, x.data(), &incx_, y.data(), &incy_, c.data(),
                                               &c.ld);
      out_.compare(name(conjugated ? "gerc" : "ger"), fmt::format("{}x{}", m_, n_),
                   worst_error(c.memory, want, scale), 8);
    }
  }

  void symmetric() {
    dense<T> a(source_, n_, n_);
    for (core_int j = 0; j < n_; ++j) a(j, j) = narrowed<T>(a.at(j, j).real());
    for (const char uplo : {'U', 'L'}) {
      const wide_matrix whole = special_operand(a, uplo, special::kHermitian);
      const std::string sizes = fmt::format("{} {}", uplo, n_);
      check_product("hemv", whole, sizes, [&](const T* alpha, const T* x, const T* beta, T* y) {
        calls::hemv(&uplo, &n_, alpha, a.data(), &a.ld, x, &incx_, beta, y, &incy_);
      });
      std::vector<T> packed;
      for (core_int j = 0; j < n_; ++j)
        for (core_int i = uplo == 'U' ? 0 : j; i < (uplo == 'U' ? j + 1 : n_); ++i) packed.push_back(a(i, j));
      check_product("hpmv", whole, sizes, [&](const T* alpha, const T* x, const T* beta, T* y) {
        calls::hpmv(&uplo, &n_, alpha, packed.data(), x, &incx_, beta, y, &incy_);
      });
      check_updates(a, uplo, sizes);
    }
  }

  void triangular() {
    dense<T> a(source_, n_, n_);
    // Far from singular, and the other triangle may hold anything.
    for (core_int j = 0; j < n_; ++j) {
      for (core_int i = 0; i < n_; ++i) {
        a(i, j) = narrowed<T>(a.at(i, j) / static_cast<long double>(n_));
      }
      a(j, j) = narrowed<T>(a.at(j, j) + wide(1));
    }
    for (const char uplo : {'U', 'L'}) {
      for (const char trans : {'N', 'T', 'C'}) {
        for (const char diag : {'N', 'U'}) check_triangle(a, uplo, trans, diag);
      }
    }
  }

 private:
  using calls = core_calls<T>;
  std::string name(const char* routine) const { return std::string(1, kLetter<T>) + routine; }

  /// y = alpha op(A) x + beta y
  template <class Call>
  void check_product(const char* routine, const wide_matrix& op, const std::string& sizes, const Call& call) {
    const std::vector<T> x = source_.numbers<T>(op.columns * incx_ + 2);
    std::vector<T> y = source_.numbers<T>(op.rows * incy_ + 2);
    const T alpha = source_.number<T>(), beta = source_.number<T>();
    std::vector<wide> want(y.size());
    std::vector<double> scale(y.size(), 0);
    for (size_t i = 0; i < y.size(); ++i) want[i] = widened(y[i]);
    wide_matrix vector(op.columns, 1);
    for (core_int j = 0; j < op.columns; ++j) vector(j, 0) = widened(x[static_cast<size_t>(j * incx_)]);
    const wide_product product = multiply(op, vector);
    for (core_int i = 0; i < op.rows; ++i) {
      const auto at = static_cast<size_t>(i * incy_);
      scale[at] = static_cast<double>(std::abs(widened(alpha))) * product.scale[static_cast<size_t>(i)] +
                  static_cast<double>(std::abs(want[at]));
      want[at] = widened(alpha) * product.value(i, 0) + widened(beta) * want[at];
    }
    call(&alpha, x.data(), &beta, y.data());
    out_.compare(name(routine), sizes, worst_error(y, want, scale),
                 sum_bound(static_cast<double>(op.columns)));
  }

  void check_updates(const dense<T>& a, char uplo, const std::string& sizes) {
    const std::vector<T> x = source_.numbers<T>(n_ * incx_ + 1), y = source_.numbers<T>(n_ * incy_ + 1);
    const auto u = [&](core_int i) { return widened(x[static_cast<size_t>(i * incx_)]); };
    const auto v = [&](core_int i) { return widened(y[static_cast<size_t>(i * incy_)]); };
    const auto real_alpha = narrowed<real_of<T>>(wide(0.75L));
    const T alpha = source_.number<T>();
    const auto run = [&](const char* routine, auto term, const auto& call) {
      dense<T> c = a;
      std::vector<wide> want = c.expected();
      std::vector<double> scale(want.size(), 0);
      for (core_int j = 0; j < n_; ++j) {
        for (core_int i = uplo == 'U' ? 0 : j; i < (uplo == 'U' ? j + 1 : n_); ++i) {
          const wide change = term(i, j);
          scale[c.place(i, j)] = static_cast<double>(std::abs(c.at(i, j))) + 4;
          want[c.place(i, j)] += change;
          if (i == j) want[c.place(i, j)] = want[c.place(i, j)].real();
        }
      }
      call(c);
      out_.compare(name(routine), sizes, worst_error(c.memory, want, scale), 8);
    };
    run(
        "her",
        [&](core_int i, core_int j) { return static_cast<long double>(real_alpha) * u(i) * std::conj(u(j)); },
        [&](dense<T>& c) { calls::her(&uplo, &n_, &real_alpha, x.data(), &incx_, c.data(), &c.ld); });
    run(
        "her2",
        [&](core_int i, core_int j) {
          return widened(alpha) * u(i) * std::conj(v(j)) + std::conj(widened(alpha)) * v(i) * std::conj(u(j));
        },
        [&](dense<T>& c) {
          calls::her2(&uplo, &n_, &alpha, x.data(), &incx_, y.data(), &incy_, c.data(), &c.ld);
        });
  }

  void check_triangle(const dense<T>& a, char uplo, char trans, char diag) {
    const wide_matrix op =
        turned(special_operand(a, uplo, diag == 'U' ? special::kUnitTriangle : special::kTriangle), trans);
    const std::string sizes = fmt::format("{}{}{} {}", uplo, trans, diag, n_);
    const std::vector<T> start = source_.numbers<T>(n_ * incx_ + 2);
    const auto gathered = [&](const std::vector<T>& from) {
      wide_matrix column(n_, 1);
      for (core_int i = 0; i < n_; ++i) column(i, 0) = widened(from[static_cast<size_t>(i * incx_)]);
      return column;
    };
    std::vector<T> x = start;
    calls::trmv(&uplo, &trans, &diag, &n_, a.data(), &a.ld, x.data(), &incx_);
    const wide_product product = multiply(op, gathered(start));
    std::vector<wide> want(x.size());
    std::vector<double> scale(x.size(), 0);
    for (size_t i = 0; i < x.size(); ++i) want[i] = widened(start[i]);
    for (core_int i = 0; i < n_; ++i) {
      want[static_cast<size_t>(i * incx_)] = product.value(i, 0);
      scale[static_cast<size_t>(i * incx_)] = product.scale[static_cast<size_t>(i)];
    }
    out_.compare(name("trmv"), sizes, worst_error(x, want, scale), sum_bound(static_cast<double>(n_)));

    // The solution put back into the equations.
    x = start;
    calls::trsv(&uplo, &trans, &diag, &n_, a.data(), &a.ld, x.data(), &incx_);
    const wide_matrix solution = gathered(x), right = gathered(start);
    const wide_product back = multiply(op, solution);
    double worst = 0;
    for (core_int i = 0; i < n_; ++i) {
      const double error = static_cast<double>(std::abs(back.value(i, 0) - right(i, 0))) /
                           (back.scale[static_cast<size_t>(i)] * kEpsilon<T>);
      raise(worst, error);
    }
    out_.compare(name("trsv"), sizes, worst, sum_bound(static_cast<double>(n_)));
  }

  recorder& out_;
  const core_int m_, n_, incx_, incy_;
  number_source source_;
};

}  // namespace

void check_matrix_vector(recorder& out) {
  for_each_type([&]<class T>() {
    for (const auto& [m, n] : {std::pair<core_int, core_int>{1, 1},
                               {2, 3},
                               {3, 7},
                               {5, 4},
                               {8, 8},
                               {9, 17},
                               {16, 15},
                               {31, 6},
                               {33, 40},
                               {70, 65}}) {
      matrix_vector_checks<T>(out, m, n, 1, 1).general();
    }
    matrix_vector_checks<T>(out, 19, 23, 2, 3).general();
    matrix_vector_checks<T>(out, 330, 290, 1, 1).general();
    for (const core_int n : {1, 2, 3, 4, 5, 7, 8, 13, 17, 33, 65, 200}) {
      matrix_vector_checks<T> checks(out, n, n, 1, 1);
      checks.symmetric();
      checks.triangular();
    }
    matrix_vector_checks<T> strided(out, 21, 21, 2, 3);
    strided.symmetric();
    strided.triangular();
  });
}

}  // namespace qel::cli::selftest
