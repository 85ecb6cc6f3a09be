// SPDX-License-Identifier: BSD-3-Clause
#include "sparse/pardiso/solve/residual.h"

#include <omp.h>

#include <algorithm>
#include <cmath>

namespace qel::pardiso {
namespace {

/// The sum of products of elements in the real type R.
template <class T, class R>
struct accumulator {
  R value;
  void set(T start) { value = start; }
  void subtract(T a, T x) { value -= static_cast<R>(a) * static_cast<R>(x); }
  void add(const accumulator& other) { value += other.value; }
  T result() const { return static_cast<T>(value); }
};
template <complex_pair T, class R>
struct accumulator<T, R> {
  R real, imag;
  void set(T start) { real = start.real, imag = start.imag; }
  void subtract(T a, T x) {
    const R a_real = a.real, a_imag = a.imag, x_real = x.real, x_imag = x.imag;
    real -= a_real * x_real - a_imag * x_imag;
    imag -= a_real * x_imag + a_imag * x_real;
  }
  void add(const accumulator& other) { real += other.real, imag += other.imag; }
  T result() const { return {static_cast<real_of<T>>(real), static_cast<real_of<T>>(imag)}; }
};

template <class T>
using wider = std::conditional_t<sizeof(real_of<T>) == 4, double, long double>;

struct row_range {
  int first, last;
};
row_range share(int n, int threads, int thread) {
  const auto bound = [&](int64_t t) { return static_cast<int>(n * t / threads); };
  return {bound(thread), bound(thread + 1)};
}

/// r := b - A x, a row at a time.
template <class T, class R>
void gather(const csr_view<T>& a, row_range rows, const T* b, const T* x, T* r) {
  for (int i = rows.first; i < rows.last; ++i) {
    accumulator<T, R> sum;
    sum.set(b != nullptr ? b[i] : T{});
    for (int k = a.ia[i] - 1; k < a.ia[i + 1] - 1; ++k) sum.subtract(a.a[k], x[a.ja[k] - 1]);
    r[i] = sum.result();
  }
}

/// sums -= A x for rows that add to others, too: of a triangle, or of the transposed matrix.
template <class T, class R>
void scatter(const csr_view<T>& a, row_range rows, const T* x, accumulator<T, R>* sums) {
  const bool triangle = a.type.symmetric(), hermitian = a.type.hermitian();
  for (int i = rows.first; i < rows.last; ++i) {
    for (int k = a.ia[i] - 1; k < a.ia[i + 1] - 1; ++k) {
      const int j = a.ja[k] - 1;
      if (triangle) sums[i].subtract(a.a[k], x[j]);
      if (!triangle || j != i) sums[j].subtract(hermitian ? conj(a.a[k]) : a.a[k], x[i]);
    }
  }
}

}  // namespace

template <class T>
bool residual_sums<T>::allocate(const csr_view<T>& a, const residual_options& options,
                                memory_account& account) {
  options_ = options;
  scatters_ = a.type.symmetric() || options.transposed;
  if (!scatters_) return true;
  const size_t sum_bytes =
      options.extended ? sizeof(accumulator<T, wider<T>>) : sizeof(accumulator<T, real_of<T>>);
  return sums_.allocate(account, static_cast<int64_t>(sum_bytes) * options.threads * a.n, block_work_r0);
}

template <class T>
void residual_sums<T>::compute(const csr_view<T>& a, int nrhs, const T* b, const T* x, T* r) const {
  if (options_.extended) {
    compute_in<wider<T>>(a, nrhs, b, x, r);
  } else {
    compute_in<real_of<T>>(a, nrhs, b, x, r);
  }
}

template <class T>
template <class R>
void residual_sums<T>::compute_in(const csr_view<T>& a, int nrhs, const T* b, const T* x, T* r) const {
  using sum = accumulator<T, R>;
  const int64_t n = a.n;
  sum* const all_sums = reinterpret_cast<sum*>(sums_.get());
  const auto wait_for_all = [](int team) {
    if (team > 1) {
#pragma omp barrier
    }
  };
  const auto work = [&](int team, int me) {
    const row_range rows = share(a.n, team, me);
    for (int64_t column = 0; column < nrhs; ++column) {
      const T* const b_column = b != nullptr ? b + n * column : nullptr;
      const T* const x_column = x + n * column;
      T* const r_column = r + n * column;
      if (!scatters_) {
        gather<T, R>(a, rows, b_column, x_column, r_column);
        continue;
      }
      sum* const sums = all_sums + n * me;
      for (int i = 0; i < a.n; ++i) sums[i].set(me == 0 && b_column != nullptr ? b_column[i] : T{});
      scatter<T, R>(a, rows, x_column, sums);
      wait_for_all(team);
      for (int i = rows.first; i < rows.last; ++i) {
        sum total = all_sums[i];
        for (int t = 1; t < team; ++t) total.add(all_sums[n * t + i]);
        r_column[i] = total.result();
      }
      wait_for_all(team);
    }
  };
  // Not a region of one thread: it would dismiss the runtime's team.
  if (options_.threads == 1) {
    work(1, 0);
  } else {
#pragma omp parallel num_threads(options_.threads)
    work(omp_get_num_threads(), omp_get_thread_num());
  }
}

template <class T>
double sum_of_moduli(const T* x, int64_t count) {
  double sum = 0;
  for (int64_t i = 0; i < count; ++i) {
    if constexpr (is_complex<T>) {
      const double real = x[i].real, imag = x[i].imag;
      sum += std::sqrt(real * real + imag * imag);
    } else {
      sum += std::fabs(static_cast<double>(x[i]));
    }
  }
  return sum;
}

#define QEL_INSTANTIATE(T)         \
  template class residual_sums<T>; \
  template double sum_of_moduli(const T*, int64_t);
QEL_INSTANTIATE(float)
QEL_INSTANTIATE(double)
QEL_INSTANTIATE(complex8)
QEL_INSTANTIATE(complex16)
#undef QEL_INSTANTIATE

}  // namespace qel::pardiso
