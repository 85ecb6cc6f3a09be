// SPDX-License-Identifier: BSD-3-Clause
#include "sparse/pardiso/solve/hybrid.h"

#include <algorithm>
#include <cmath>

#include "sparse/pardiso/solve/trace.h"

namespace qel::pardiso {
namespace {

double machine_epsilon() {
  double e = 1;
  while (1 + e != 1) e *= 0.5;
  return e;
}

template <class T>
double square_norm(const T* x, int64_t n) {
  double sum = 0;
  for (int64_t i = 0; i < n; ++i) {
    if constexpr (is_complex<T>) {
      sum += static_cast<double>(x[i].real) * x[i].real + static_cast<double>(x[i].imag) * x[i].imag;
    } else {
      sum += static_cast<double>(x[i]) * x[i];
    }
  }
  return sum;
}

/// The columns of an iteration and the scalars of each.
template <class T>
class iteration {
 public:
  iteration(const iteration_operators<T>& operators, int n, int nrhs, const T* b, T* x)
      : operators_(operators), n_(n), nrhs_(nrhs), b_(b), x_(x) {}

  bool allocate(int vectors, memory_account& account) {
    return vectors_.allocate(account, int64_t{n_} * nrhs_ * vectors, block_cgs_arr) &&
           scalars_.allocate(account, 3 * int64_t{nrhs_}, block_cgs_arr) &&
           norms_.allocate(account, nrhs_, block_cgs_arr);
  }
  /// x := 0, r := b. False if b isn't finite.
  bool start(T* r) {
    bool finite = true;
    for (int j = 0; j < nrhs_; ++j) {
      norms_[j] = square_norm(b_ + at(j), n_);
      finite = finite && std::isfinite(norms_[j]);
    }
    std::fill_n(x_, total(), T{});
    std::copy_n(b_, total(), r);
    return finite;
  }
  /// sqrt of the largest ||r_j||^2 / ||b_j||^2; a column that is down to rounding is left alone from then on.
  double relative_size(const T* r) {
    double largest = 0;
    for (int j = 0; j < nrhs_; ++j) {
      if (norms_[j] == 0) continue;
      const double ratio = square_norm(r + at(j), n_) / norms_[j];
      if (!(ratio <= largest)) largest = ratio;  // takes a NaN
    }
    return std::sqrt(largest);
  }
  bool finished(const T* r, int j) const {
    return square_norm(r + at(j), n_) <= epsilon_ * epsilon_ * norms_[j];
  }

  int64_t at(int j) const { return int64_t{n_} * j; }
  int64_t total() const { return int64_t{n_} * nrhs_; }
  T* vector(int k) const { return vectors_.get() + total() * k; }
  T& scalar(int k, int j) const { return scalars_[int64_t{nrhs_} * k + j]; }
  T inner(const T* x, const T* y, int j, bool hermitian) const {
    T sum{};
    for (int64_t i = at(j); i < at(j) + n_; ++i) sum += (hermitian ? conj(x[i]) : x[i]) * y[i];
    return sum;
  }
  /// y := y + alpha x in column j.
  void add(T alpha, const T* x, T* y, int j) const {
    for (int64_t i = at(j); i < at(j) + n_; ++i) y[i] += alpha * x[i];
  }
  /// A quotient whose denominator has broken down is 0: the column stands still, and the tests see it.
  static T quotient(T a, T b) { return b == T{} ? T{} : a / b; }

  const iteration_operators<T>& operators_;
  const int n_, nrhs_;
  const T* const b_;
  T* const x_;

 private:
  const double epsilon_ = machine_epsilon();
  block<T> vectors_, scalars_;
  block<double> norms_;
};

template <class T>
void cg_step(iteration<T>& it, int step, bool hermitian) {
  T *const r = it.vector(0), *const z = it.vector(1), *const p = it.vector(2);
  it.operators_.precondition(it.operators_.context, r, z);
  for (int j = 0; j < it.nrhs_; ++j) {
    const T rho = it.inner(r, z, j, hermitian);
    const T beta = step == 1 ? T{} : it.quotient(rho, it.scalar(0, j));
    it.scalar(0, j) = rho;
    for (int64_t i = it.at(j); i < it.at(j) + it.n_; ++i) p[i] = step == 1 ? z[i] : z[i] + beta * p[i];
  }
  it.operators_.minus_product(it.operators_.context, p, z);
  for (int j = 0; j < it.nrhs_; ++j) {
    if (it.finished(r, j)) continue;
    const T alpha = it.quotient(it.scalar(0, j), -it.inner(p, z, j, hermitian));
    it.add(alpha, p, it.x_, j);
    it.add(alpha, z, r, j);
  }
}

template <class T>
void cgs_step(iteration<T>& it, int step) {
  T *const r = it.vector(0), *const shadow = it.vector(1), *const u = it.vector(2), *const p = it.vector(3);
  T *const q = it.vector(4), *const v = it.vector(5), *const preconditioned = it.vector(6);
  if (step == 1) std::copy_n(r, it.total(), shadow);
  for (int j = 0; j < it.nrhs_; ++j) {
    const T rho = it.inner(shadow, r, j, true);
    const T beta = step == 1 ? T{} : it.quotient(rho, it.scalar(0, j));
    it.scalar(0, j) = rho;
    for (int64_t i = it.at(j); i < it.at(j) + it.n_; ++i) {
      u[i] = step == 1 ? r[i] : r[i] + beta * q[i];
      p[i] = step == 1 ? u[i] : u[i] + beta * (q[i] + beta * p[i]);
    }
  }
  it.operators_.precondition(it.operators_.context, p, preconditioned);
  it.operators_.minus_product(it.operators_.context, preconditioned, v);
  for (int j = 0; j < it.nrhs_; ++j) {
    const T alpha = it.quotient(it.scalar(0, j), -it.inner(shadow, v, j, true));
    it.scalar(1, j) = it.finished(r, j) ? T{} : alpha;
    for (int64_t i = it.at(j); i < it.at(j) + it.n_; ++i) {
      q[i] = u[i] + it.scalar(1, j) * v[i];
      u[i] += q[i];
    }
  }
  it.operators_.precondition(it.operators_.context, u, preconditioned);
  it.operators_.minus_product(it.operators_.context, preconditioned, v);
  for (int j = 0; j < it.nrhs_; ++j) {
    it.add(it.scalar(1, j), preconditioned, it.x_, j);
    it.add(it.scalar(1, j), v, r, j);
  }
}

}  // namespace

iteration_status judge_iteration(int step, double rel, double best, const iteration_rules& rules) {
  if (rules.tolerance > rel) return iteration_converged;
  if (!(rel <= rules.divergence_bound)) return iteration_diverged;
  // Kept: CGS makes the test once, CG from its step on.
  const bool stall_test =
      rules.conjugate_gradients ? step >= rules.limits.stall_step : step == rules.limits.stall_step;
  if (stall_test && best > std::sqrt(rules.tolerance)) return iteration_stalled;
  return step >= rules.limits.limit ? iteration_at_limit : iteration_goes_on;
}

template <class T>
iteration_result iterate(const iteration_operators<T>& operators, int n, int nrhs, const T* b, T* x,
                         bool hermitian, const iteration_rules& rules, bool trace, memory_account& account) {
  iteration<T> run(operators, n, nrhs, b, x);
  iteration_result result;
  if (!run.allocate(rules.conjugate_gradients ? 3 : 7, account)) {
    result.memory = {-2, account.failed_code()};
    return result;
  }
  T* const r = run.vector(0);
  if (!run.start(r)) return result;
  double rel = run.relative_size(r), best = 1e30;
  if (trace && rules.conjugate_gradients) {
    tell_trace({" cg-iteration:", 0, 0, "", rel, "", 2, rules.tolerance});
  } else if (trace) {
    tell_trace({" cgs-init:", 4, 0, "", rel, "", 2, rules.tolerance});
  }
  // Only right-hand sides of zeros: x = 0 solves it.
  result.status = rel == 0 ? iteration_converged : iteration_goes_on;
  while (result.status == iteration_goes_on) {
    const int step = ++result.steps;
    if (rules.conjugate_gradients) {
      cg_step(run, step, hermitian);
    } else {
      cgs_step(run, step);
    }
    rel = run.relative_size(r);
    best = std::min(best, rel);
    if (trace) {
      tell_trace({rules.conjugate_gradients ? " cg-iteration:" : " cgs-iteration:", 4, step, "", rel});
    }
    result.status = judge_iteration(step, rel, best, rules);
  }
  return result;
}

#define QEL_INSTANTIATE(T)                                                                       \
  template iteration_result iterate(const iteration_operators<T>&, int, int, const T*, T*, bool, \
                                    const iteration_rules&, bool, memory_account&);
QEL_INSTANTIATE(float)
QEL_INSTANTIATE(double)
QEL_INSTANTIATE(complex8)
QEL_INSTANTIATE(complex16)
#undef QEL_INSTANTIATE

}  // namespace qel::pardiso
