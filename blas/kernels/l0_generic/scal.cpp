// SPDX-License-Identifier: BSD-3-Clause
// x = alpha x for all levels. A factor of 1 touches nothing; a factor of 0 multiplies, so NaN stays.
// Strides 1 and -1: elements are peeled up to a 16-byte boundary, then 16 registers a step, then 8, 4, 2, 1,
// then single elements; vectors that no peeling aligns take the same steps with unaligned access. A real
// factor sees a complex vector as twice as many reals. Other strides: four elements a step, then two, then
// one, strictly in order, since a stride of 0 multiplies one element n times.
#include "blas/kernels/kernel_prelude.h"
#include "blas/kernels/shared/multiple.inl.h"
#include "blas/kernels/shared/streams.inl.h"

namespace qel::QEL_LEVEL {
namespace {

template <class T, bool kAligned>
struct contiguous_scal {
  using R = typename parts<T>::real;
  using L = lanes<R>;
  multiple<T> alpha_times;
  R* x;
  template <int kRegisters>
  [[gnu::always_inline]] void registers() {
#pragma GCC unroll 16
    for (int k = 0; k < kRegisters; ++k) {
      R* at = x + k * L::kCount;
      if (kAligned) {
        L::store(at, alpha_times.of(L::load(at)));
      } else {
        L::storeu(at, alpha_times.of(L::loadu(at)));
      }
    }
    x += kRegisters * L::kCount;
  }
};

template <class Product, class T>
inline void scal_elements(core_int n, const Product& product, T* x, core_int inc) {
  const auto update = [&](core_int i) { set_element(x + i * inc, product(element_at(x + i * inc))); };
  for (; n >= 4; n -= 4, x += 4 * inc) {
    update(0);
    update(1);
    update(2);
    update(3);
  }
  if (n >= 2) {
    update(0);
    update(1);
  }
  if (n % 2 != 0) update(n - 1);
}

template <bool kAligned, class T>
inline void scal_registers(core_int n, const multiple<T>& alpha_times, T* x) {
  using R = typename parts<T>::real;
  contiguous_scal<T, kAligned> scal{alpha_times, reinterpret_cast<R*>(x)};
  const core_int left = run_tiers<16, 8, 4, 2, 1>(scal, n, lanes<R>::kCount / parts<T>::kCount, 0);
  const auto product = [&](T v) { return alpha_times.of_element(v); };
  for (core_int i = n - left; i < n; ++i) set_element(x + i, product(element_at(x + i)));
}

template <class T>
inline void scal_contiguous(core_int n, T alpha, T* x) {
  const multiple<T> alpha_times(alpha);
  core_int peeled = elements_to_boundary(x);
  if (peeled < 0) return scal_registers<false>(n, alpha_times, x);
  if (peeled > n) peeled = n;
  for (core_int i = 0; i < peeled; ++i) set_element(x + i, alpha_times.of_element(element_at(x + i)));
  scal_registers<true>(n - peeled, alpha_times, x + peeled);
}

inline bool is_contiguous(core_int inc) { return inc == 1 || inc == -1; }

template <class R>
inline bool is_one(R a) {
  return a == 1;
}
inline bool is_one(complex8 a) { return a.real == 1 && a.imag == 0; }
inline bool is_one(complex16 a) { return a.real == 1 && a.imag == 0; }

template <class T>
inline void scal(core_int n, T alpha, T* x, core_int incx) {
  if (n <= 0 || is_one(alpha)) return;
  if (is_contiguous(incx)) return scal_contiguous(n, alpha, x);
  const multiple<T> alpha_times(alpha);
  scal_elements(
      n, [&](T v) { return alpha_times.of_element(v); }, first_element(x, n, incx), incx);
}

template <class R, class C>
inline void real_scal(core_int n, R alpha, C* x, core_int incx) {
  if (n <= 0 || alpha == 1) return;
  if (is_contiguous(incx)) return scal_contiguous(2 * n, alpha, reinterpret_cast<R*>(x));
  scal_elements(
      n,
      [=](C v) {
        return C{alpha * v.real, alpha * v.imag};
      },
      first_element(x, n, incx), incx);
}

}  // namespace
}  // namespace qel::QEL_LEVEL

#include "blas/kernels/shared/scal_exports.inl.h"
