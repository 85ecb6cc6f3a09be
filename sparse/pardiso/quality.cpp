// SPDX-License-Identifier: BSD-3-Clause
// The norm of the inverse by Hager's method with Higham's last vector (W. W. Hager, SIAM J. Sci. Stat.
// Comput. 5 (1984) 311; N. J. Higham, ACM Trans. Math. Softw. 14 (1988) 381).
#include "sparse/pardiso/quality.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "sparse/pardiso/handle.h"
#include "sparse/pardiso/solve/residual.h"

namespace qel::pardiso {
namespace {

template <class T>
double modulus(T x) {
  return sum_of_moduli(&x, 1);
}

/// x / |x|, and 1 for zero.
template <class T>
T sign_of(T x) {
  if constexpr (is_complex<T>) {
    const double size = modulus(x);
    if (size == 0) return {1, 0};
    return {static_cast<real_of<T>>(x.real / size), static_cast<real_of<T>>(x.imag / size)};
  } else {
    return x < 0 ? T{-1} : T{1};
  }
}

/// Solves with A and with its conjugate transpose by the factors at hand.
template <class T>
struct inverse {
  csr_view<T> a;
  const analysis& analysed;
  const factors<T>& made;
  int threads;
  T* work;
  void apply(T* x) const { run(x, false); }
  void apply_adjoint(T* x) const {
    // Hermitian matrices are their own adjoints; the others' are the conjugates of their transposes.
    const bool conjugates = is_complex<T> && !a.type.hermitian();
    if (conjugates) conjugate(x);
    run(x, a.type.unsymmetric());
    if (conjugates) conjugate(x);
  }

 private:
  void run(T* x, bool transposed) const {
    solve_options options;
    options.transposed = transposed;
    options.threads = threads;
    substitute(analysed, made, options, 1, x, x, work);
  }
  void conjugate(T* x) const {
    std::transform(x, x + a.n, x, [](T value) { return conj(value); });
  }
};

/// A lower bound of |A^-1| in the 1-norm, mostly within a factor of 3. x: n elements.
template <class T>
double norm_of_inverse(const inverse<T>& solve_with, T* x) {
  constexpr int kMostSteps = 5;
  const int n = solve_with.a.n;
  std::fill_n(x, n, from_real<T>(real_of<T>(1) / static_cast<real_of<T>>(n)));
  double estimate = 0;
  int last = -1;
  for (int step = 0; step < kMostSteps; ++step) {
    solve_with.apply(x);
    const double norm = sum_of_moduli(x, n);
    if (!(norm > estimate) && step > 0) break;
    estimate = norm;
    std::transform(x, x + n, x, [](T value) { return sign_of(value); });
    solve_with.apply_adjoint(x);
    const int largest =
        static_cast<int>(std::max_element(x, x + n, [](T p, T q) { return modulus(p) < modulus(q); }) - x);
    if (largest == last) break;
    last = largest;
    std::fill_n(x, n, T{});
    x[largest] = from_real<T>(real_of<T>(1));
  }
  // A vector of growing alternating numbers, against matrices that mislead the steps.
  for (int i = 0; i < n; ++i) {
    const double size = 1 + static_cast<double>(i) / std::max(n - 1, 1);
    x[i] = from_real<T>(static_cast<real_of<T>>(i % 2 == 0 ? size : -size));
  }
  solve_with.apply(x);
  return std::max(estimate, 2 * sum_of_moduli(x, n) / (3.0 * n));
}

/// Norms of a matrix, of its mirrored whole for one triangle: by columns (1) and by rows (infinity). sums: 2
/// n.
struct matrix_norms {
  double one, infinity;
};
template <class T>
matrix_norms norms_of(const csr_view<T>& a, double* sums) {
  double *const columns = sums, *const rows = sums + a.n;
  std::fill_n(sums, 2 * int64_t{a.n}, 0.0);
  for (int i = 0; i < a.n; ++i) {
    for (int k = a.ia[i] - 1; k < a.ia[i + 1] - 1; ++k) {
      const int j = a.ja[k] - 1;
      const double size = modulus(a.a[k]);
      columns[j] += size;
      rows[i] += size;
      if (a.type.symmetric() && j != i) columns[i] += size, rows[j] += size;
    }
  }
  return {*std::max_element(columns, columns + a.n), *std::max_element(rows, rows + a.n)};
}

template <class T>
double largest_modulus(const T* x, int n) {
  double largest = 0;
  for (int i = 0; i < n; ++i) {
    const double size = modulus(x[i]);
    if (!(size <= largest)) largest = size;
  }
  return largest;
}

template <class T>
quality judge_typed(const quality_question& question, const handle& h, double* backward_errors) {
  const basic_record& record = *h.record();
  quality result;
  const factors<T>* const made = h.factors_of<T>(question.mnum);
  if (made == nullptr || h.analysed() == nullptr) return result;
  result.single = record.single;
  result.perturbed_pivots = made->perturbed;
  result.positive = made->positive;
  result.negative = made->negative;
  const int n = record.n;
  const csr_view<T> a = {n, question.ia, question.ja, static_cast<const T*>(question.a), {record.mtype}};

  memory_account account;
  block<T> vectors;
  block<double> sums;
  residual_sums<T> residuals;
  if (!vectors.allocate(account, 2 * int64_t{n}, block_work_r0) ||
      !sums.allocate(account, 2 * int64_t{n}, block_work_r0) ||
      !residuals.allocate(a, {record.transposed, true, record.threads}, account)) {
    result.verdict = quality_no_memory;
    return result;
  }
  const matrix_norms norms = norms_of(a, sums.get());
  T* const x = vectors.get();
  result.condition =
      norms.one * norm_of_inverse<T>({a, *h.analysed(), *made, record.threads, vectors.get() + n}, x);
  for (int64_t j = 0; j < question.nrhs; ++j) {
    const T* const b_column = static_cast<const T*>(question.b) + n * j;
    const T* const x_column = static_cast<const T*>(question.x) + n * j;
    residuals.compute(a, 1, b_column, x_column, x);
    const double residual = largest_modulus(x, n);
    const double a_norm = record.transposed ? norms.one : norms.infinity;
    const double scale = a_norm * largest_modulus(x_column, n) + largest_modulus(b_column, n);
    const double error = residual == 0 ? 0 : residual / scale;
    if (backward_errors != nullptr) backward_errors[j] = error;
    if (!(error <= result.backward_error)) result.backward_error = error;
  }
  if (question.nrhs > 0) result.forward_error = result.condition * result.backward_error;
  result.verdict = verdict_of(result);
  return result;
}

}  // namespace

quality judge_quality(const quality_question& question, double* backward_errors) {
  const handle h(const_cast<void**>(question.pt));
  if (!h.live() || h.record() == nullptr) return {};
  const basic_record& record = *h.record();
  return with_element(scalar_words(record.mtype) == 2, record.single, [&](auto element) {
    return judge_typed<decltype(element)>(question, h, backward_errors);
  });
}

int verdict_of(const quality& figures) {
  const double precision = figures.single ? 0x1p-24 : 0x1p-53;
  const bool solved = figures.backward_error >= 0 || std::isnan(figures.backward_error);
  if (!(figures.condition < 1 / precision)) return quality_bad;
  if (solved && !(figures.backward_error <= std::sqrt(precision))) return quality_bad;
  if (solved && !(figures.forward_error <= 1e-2)) return quality_bad;
  if (figures.perturbed_pivots > 0 && !solved) return quality_doubtful;
  if (solved && figures.backward_error > 100 * precision) return quality_doubtful;
  return figures.condition > std::sqrt(1 / precision) ? quality_doubtful : quality_good;
}

void word_quality(const quality& figures, char* text, size_t size) {
  const char* const verdict = figures.verdict == quality_good        ? "good"
                              : figures.verdict == quality_doubtful  ? "to be looked at"
                              : figures.verdict == quality_bad       ? "not to be trusted"
                              : figures.verdict == quality_no_memory ? "not judged, memory is out"
                                                                     : "not judged, there are no factors";
  if (figures.verdict < 0) {
    std::snprintf(text, size, "%s", verdict);
    return;
  }
  const int length =
      std::snprintf(text, size, "%s: condition about %.1e, %d perturbed pivot%s", verdict, figures.condition,
                    figures.perturbed_pivots, figures.perturbed_pivots == 1 ? "" : "s");
  const auto at = std::min(static_cast<size_t>(std::max(length, 0)), size);
  if (figures.backward_error >= 0 && at < size) {
    std::snprintf(text + at, size - at, ", backward error %.1e, relative error of x about %.1e",
                  figures.backward_error, std::min(figures.forward_error, 1.0));
  }
}

}  // namespace qel::pardiso
