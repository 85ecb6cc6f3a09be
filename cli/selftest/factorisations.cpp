// SPDX-License-Identifier: BSD-3-Clause
// LAPACK: what is factored is put together again, what is solved goes back into its equations, and singular
// vectors must be orthogonal; nothing is compared with another factorisation.
#include <fmt/core.h>

#include "cli/selftest/core_calls.h"
#include "cli/selftest/dense.h"
#include "lapack/lapack.h"

namespace qel::cli::selftest {
namespace {

template <class T>
struct lapack_calls;
#define QEL_LAPACK_OF(T, t, q)                                \
  template <>                                                 \
  struct lapack_calls<T> {                                    \
    static constexpr auto getrf = core::qel_core_##t##getrf_; \
    static constexpr auto getrs = core::qel_core_##t##getrs_; \
    static constexpr auto getri = core::qel_core_##t##getri_; \
    static constexpr auto potrf = core::qel_core_##t##potrf_; \
    static constexpr auto gbtrf = core::qel_core_##t##gbtrf_; \
    static constexpr auto gbtrs = core::qel_core_##t##gbtrs_; \
    static constexpr auto geqrf = core::qel_core_##t##geqrf_; \
    static constexpr auto q_of = core::qel_core_##t##q##gqr_; \
    static constexpr auto pptrf = core::qel_core_##t##pptrf_; \
    static constexpr auto pptrs = core::qel_core_##t##pptrs_; \
    static constexpr auto gesvd = core::qel_core_##t##gesvd_; \
  };
QEL_LAPACK_OF(float, s, or)
QEL_LAPACK_OF(double, d, or)
QEL_LAPACK_OF(complex8, c, un)
QEL_LAPACK_OF(complex16, z, un)
#undef QEL_LAPACK_OF

constexpr double kBound = 30;  // residuals over n epsilon and the norms of what takes part

template <class T>
class factor_checks {
 public:
  factor_checks(recorder& out, core_int m, core_int n)
      : out_(out),
        m_(m),
        n_(n),
        source_(static_cast<std::uint64_t>(m * 1000 + n)),
        sizes_(fmt::format("{}x{}", m, n)) {}

  /// P L U = A, and A X = B.
  void lu() {
    const dense<T> a(source_, m_, n_);
    dense<T> f = a;
    const core_int order = std::min(m_, n_);
    std::vector<core_int> pivots(static_cast<size_t>(order));
    core_int info = 0;
    calls::getrf(&m_, &n_, f.data(), &f.ld, pivots.data(), &info);
    out_.expect(name("getrf"), sizes_ + " info", info == 0);
    wide_matrix lower(m_, order), upper(order, n_), original = operand(a);
    for (core_int j = 0; j < order; ++j)
      for (core_int i = j; i < m_; ++i) lower(i, j) = i == j ? wide(1) : f.at(i, j);
    for (core_int j = 0; j < n_; ++j)
      for (core_int i = 0; i <= std::min(j, order - 1); ++i) upper(i, j) = f.at(i, j);
    for (core_int i = 0; i < order; ++i) {
      const core_int other = pivots[static_cast<size_t>(i)] - 1;
      out_.expect(name("getrf"), sizes_ + " pivots", other >= i && other < m_);
      if (other < i || other >= m_) return;
      for (core_int j = 0; j < n_; ++j) std::swap(original(i, j), original(other, j));
    }
    compare("getrf", multiply(lower, upper).value, original, norm_of(original));
    if (m_ != n_) return;
    for (const char trans : {'N', 'T', 'C'}) {
      const dense<T> b(source_, n_, kColumns);
      dense<T> x = b;
      calls::getrs(&trans, &n_, &kColumns, f.data(), &f.ld, pivots.data(), x.data(), &x.ld, &info, 1);
      compare_solution("getrs", operand(a, trans), x, b);
    }
    core_int length = 64 * n_;
    std::vector<T> work(static_cast<size_t>(length));
    dense<T> inverse = f;
    calls::getri(&n_, inverse.data(), &inverse.ld, pivots.data(), work.data(), &length, &info);
    const wide_matrix back = multiply(operand(a), operand(inverse)).value;
    wide_matrix one(n_, n_);
    for (core_int i = 0; i < n_; ++i) one(i, i) = 1;
    compare("getri", back, one, norm_of(operand(a)) * norm_of(operand(inverse)));
  }

  /// Cholesky factors, full and packed, of B B^H + n.
  void cholesky() {
    const wide_matrix b = operand(dense<T>(source_, n_, n_));
    const wide_matrix square = multiply(b, turned(b, 'C')).value;
    dense<T> a(source_, n_, n_);
    for (core_int j = 0; j < n_; ++j)
      for (core_int i = 0; i < n_; ++i)
        a(i, j) = narrowed<T>(square(i, j) + wide(i == j ? static_cast<long double>(n_) : 0));
    for (const char uplo : {'U', 'L'}) {
      const wide_matrix whole = special_operand(a, uplo, special::kHermitian);
      dense<T> f = a;
      core_int info = 0;
      calls::potrf(&uplo, &n_, f.data(), &f.ld, &info, 1);
      const wide_matrix triangle = special_operand(f, uplo, special::kTriangle);
      compare("potrf",
              uplo == 'U' ? multiply(turned(triangle, 'C'), triangle).value
                          : multiply(triangle, turned(triangle, 'C')).value,
              whole, norm_of(whole));
      std::vector<T> packed;
      for (core_int j = 0; j < n_; ++j)
        for (core_int i = uplo == 'U' ? 0 : j; i < (uplo == 'U' ? j + 1 : n_); ++i) packed.push_back(a(i, j));
      const dense<T> right(source_, n_, kColumns);
      dense<T> x = right;
      calls::pptrf(&uplo, &n_, packed.data(), &info, 1);
      calls::pptrs(&uplo, &n_, &kColumns, packed.data(), x.data(), &x.ld, &info, 1);
      compare_solution("pptrs", whole, x, right);
    }
  }

  void band() {
    const core_int below = std::min<core_int>(n_ - 1, 20), above = std::min<core_int>(n_ - 1, 7),
                   ld = 2 * below + above + 1;
    dense<T> a(source_, n_, n_);
    std::vector<T> band(static_cast<size_t>(ld * n_));
    for (core_int j = 0; j < n_; ++j) {
      for (core_int i = 0; i < n_; ++i) {
        if (i - j > below || j - i > above) {
          a(i, j) = T{};
        } else {
          band[static_cast<size_t>(below + above + i - j + j * ld)] = a(i, j);
        }
      }
    }
    std::vector<core_int> pivots(static_cast<size_t>(n_));
    core_int info = 0;
    calls::gbtrf(&n_, &n_, &below, &above, band.data(), &ld, pivots.data(), &info);
    const dense<T> b(source_, n_, kColumns);
    dense<T> x = b;
    calls::gbtrs("N", &n_, &below, &above, &kColumns, band.data(), &ld, pivots.data(), x.data(), &x.ld, &info,
                 1);
    compare_solution("gbtrs", operand(a), x, b);
  }

  /// Q R = A with an orthogonal Q.
  void qr() {
    if (m_ < n_) return;
    const dense<T> a(source_, m_, n_);
    dense<T> f = a;
    std::vector<T> tau(static_cast<size_t>(n_)), work(static_cast<size_t>(64 * n_));
    const auto length = static_cast<core_int>(work.size());
    core_int info = 0;
    calls::geqrf(&m_, &n_, f.data(), &f.ld, tau.data(), work.data(), &length, &info);
    wide_matrix r(n_, n_);
    for (core_int j = 0; j < n_; ++j)
      for (core_int i = 0; i <= j; ++i) r(i, j) = f.at(i, j);
    calls::q_of(&m_, &n_, &n_, f.data(), &f.ld, tau.data(), work.data(), &length, &info);
    const wide_matrix q = operand(f), original = operand(a);
    compare("geqrf", multiply(q, r).value, original, norm_of(original));
    compare_orthogonal("geqrf", q);
  }

  void singular_values() {
    const dense<T> a(source_, m_, n_);
    dense<T> f = a, u(source_, m_, std::min(m_, n_)), vt(source_, std::min(m_, n_), n_);
    const core_int order = std::min(m_, n_), length = 64 * (m_ + n_);
    using R = real_of<T>;
    std::vector<R> s(static_cast<size_t>(order)), real_work(static_cast<size_t>(5 * order + 1));
    std::vector<T> work(static_cast<size_t>(length));
    core_int info = 0;
    if constexpr (is_complex<T>) {
      calls::gesvd("S", "S", &m_, &n_, f.data(), &f.ld, s.data(), u.data(), &u.ld, vt.data(), &vt.ld,
                   work.data(), &length, real_work.data(), &info, 1, 1);
    } else {
      calls::gesvd("S", "S", &m_, &n_, f.data(), &f.ld, s.data(), u.data(), &u.ld, vt.data(), &vt.ld,
                   work.data(), &length, &info, 1, 1);
    }
    const wide_matrix left = operand(u), right = operand(vt), original = operand(a);
    wide_matrix scaled = left;
    for (core_int j = 0; j < order; ++j)
      for (core_int i = 0; i < m_; ++i) scaled(i, j) *= static_cast<long double>(s[static_cast<size_t>(j)]);
    compare("gesvd", multiply(scaled, right).value, original, norm_of(original));
    compare_orthogonal("gesvd", left);
    compare_orthogonal("gesvd", turned(right, 'C'));
  }

 private:
  using calls = lapack_calls<T>;
  static constexpr core_int kColumns = 3;
  std::string name(const char* routine) const { return std::string(1, kLetter<T>) + routine; }

  void compare(const char* routine, const wide_matrix& got, const wide_matrix& want, double scale) {
    const auto order = static_cast<double>(std::max(m_, n_));
    out_.compare(name(routine), sizes_, distance(got, want) / (order * kEpsilon<T> * scale), kBound);
  }
  void compare_orthogonal(const char* routine, const wide_matrix& q) {
    wide_matrix one(q.columns, q.columns);
    for (core_int i = 0; i < q.columns; ++i) one(i, i) = 1;
    compare(routine, multiply(turned(q, 'C'), q).value, one, 1);
  }
  void compare_solution(const char* routine, const wide_matrix& a, const dense<T>& x, const dense<T>& b) {
    const wide_matrix solution = operand(x);
    compare(routine, multiply(a, solution).value, operand(b), norm_of(a) * norm_of(solution));
  }

  recorder& out_;
  const core_int m_, n_;
  number_source source_;
  const std::string sizes_;
};

}  // namespace

void check_factorisations(recorder& out) {
  for_each_type([&]<class T>() {
    for (const core_int n : {1, 2, 3, 5, 8, 13, 17, 33, 60, 130}) {
      factor_checks<T> checks(out, n, n);
      checks.lu();
      checks.cholesky();
      checks.band();
      checks.qr();
      if (n <= 60) checks.singular_values();
    }
    for (const auto& [m, n] : {std::pair<core_int, core_int>{7, 3}, {3, 7}, {40, 11}, {150, 40}}) {
      factor_checks<T> checks(out, m, n);
      checks.lu();
      checks.qr();
      checks.singular_values();
    }
  });
}

}  // namespace qel::cli::selftest
