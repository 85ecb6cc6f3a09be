// SPDX-License-Identifier: BSD-3-Clause
// Division, multiplication, subtraction: blocks of 16 elements in registers, then one element at a time.
#include "vector/kernels/kernel_prelude.h"
#include "vector/kernels/lanes.inl.h"

namespace qel::QEL_LEVEL {
namespace {

constexpr int kSingularity = 2;
constexpr int kRegisters = kBlock / doubles::kCount;

/// Stores quotient i. A divisor that is exactly zero is reported, and the report may change the result.
inline void divide_one(int i, const double* a, const double* b, double* r, double x, double y) {
  set_element(r + i, x / y);
  if (y == 0) vml_error(kSingularity, i, a, b, r, r, "vdDiv");
}

/// Elements with a divisor of exponent field 0 among them, which may be zero. In order; operands are read
/// before anything is stored, since r may be a or b.
[[gnu::noinline, gnu::cold]] void divide_small(int start, int count, const double* a, const double* b,
                                               double* r) {
  double x[kBlock], y[kBlock];
  for (int k = 0; k < count; ++k) {
    x[k] = element_at(a + start + k);
    y[k] = element_at(b + start + k);
  }
  for (int k = 0; k < count; ++k) divide_one(start + k, a, b, r, x[k], y[k]);
}

[[gnu::noinline]] void divide_rest(int i, int n, const double* a, const double* b, double* r) {
  for (; i < n; ++i) divide_one(i, a, b, r, element_at(a + i), element_at(b + i));
}

/// A block of kRegs registers; false, with nothing stored, if a divisor has exponent field 0.
template <int kRegs, class Access>
[[gnu::always_inline]] inline bool divide_registers(Access access, const double* a, const double* b,
                                                    double* r) {
  doubles::reg quotient[kRegs];
  doubles::flags small = doubles::none();
#pragma GCC unroll 8
  for (int k = 0; k < kRegs; ++k) {
    const doubles::reg divisor = access.load(b + k * doubles::kCount);
    small = doubles::zero_exponents(divisor, small);
    quotient[k] = doubles::div(access.load(a + k * doubles::kCount), divisor);
  }
  if (doubles::any(small)) [[unlikely]] {
    return false;
  }
#pragma GCC unroll 8
  for (int k = 0; k < kRegs; ++k) access.store(r + k * doubles::kCount, quotient[k]);
  return true;
}

/// Quotients from element i on, with small divisors among them.
template <bool kStreamed>
[[gnu::noinline, gnu::cold]] void divide_with_care(int i, int n, const double* a, const double* b,
                                                   double* r) {
  for (; i + kBlock <= n; i += kBlock) {
    if (!divide_registers<kRegisters>(whole_register<kStreamed>(), a + i, b + i, r + i))
      divide_small(i, kBlock, a, b, r);
  }
  if (kStreamed) _mm_sfence();
  if (i < n) divide_small(i, n - i, a, b, r);
}

/// A block with small divisors ends it: what follows is done with care, so that this way needs no frame.
template <bool kStreamed>
[[gnu::always_inline]] inline void divide(int n, const double* a, const double* b, double* r) {
  int i = kStreamed ? elements_ahead_of_line(r, n) : 0;
  if (kStreamed) divide_rest(0, i, a, b, r);
  for (; i + kBlock <= n; i += kBlock) {
    if (!divide_registers<kRegisters>(whole_register<kStreamed>(), a + i, b + i, r + i)) [[unlikely]]
      return divide_with_care<kStreamed>(i, n, a, b, r);
  }
  if (kStreamed) _mm_sfence();
  for (; i + doubles::kCount <= n; i += doubles::kCount) {
    if (!divide_registers<1>(whole_register<false>(), a + i, b + i, r + i)) [[unlikely]]
      return divide_with_care<false>(i, n, a, b, r);
  }
  if (i == n) return;
#if defined(__AVX512F__)
  if (!divide_registers<1>(part_of_register{doubles::first(n - i)}, a + i, b + i, r + i)) [[unlikely]]
    divide_with_care<false>(i, n, a, b, r);
#else
  divide_rest(i, n, a, b, r);
#endif
}

/// Op works on registers and on single numbers.
template <int kRegs, class Access, class Op>
[[gnu::always_inline]] inline void join_registers(Access access, const double* a, const double* b, double* r,
                                                  Op op) {
  doubles::reg result[kRegs];
#pragma GCC unroll 8
  for (int k = 0; k < kRegs; ++k) {
    result[k] = op(access.load(a + k * doubles::kCount), access.load(b + k * doubles::kCount));
  }
#pragma GCC unroll 8
  for (int k = 0; k < kRegs; ++k) access.store(r + k * doubles::kCount, result[k]);
}
template <class Op>
[[gnu::always_inline]] inline void join_rest(int i, int n, const double* a, const double* b, double* r,
                                             Op op) {
#pragma GCC unroll 1
  for (; i < n; ++i) set_element(r + i, op(element_at(a + i), element_at(b + i)));
}
template <bool kStreamed, class Op>
[[gnu::always_inline]] inline void join(int n, const double* a, const double* b, double* r, Op op) {
  int i = kStreamed ? elements_ahead_of_line(r, n) : 0;
  if (kStreamed) join_rest(0, i, a, b, r, op);
  for (; i + kBlock <= n; i += kBlock)
    join_registers<kRegisters>(whole_register<kStreamed>(), a + i, b + i, r + i, op);
  if (kStreamed) _mm_sfence();
  for (; i + doubles::kCount <= n; i += doubles::kCount)
    join_registers<1>(whole_register<false>(), a + i, b + i, r + i, op);
  if (i == n) return;
#if defined(__AVX512F__)
  join_registers<1>(part_of_register{doubles::first(n - i)}, a + i, b + i, r + i, op);
#else
  join_rest(i, n, a, b, r, op);
#endif
}

struct times {
  doubles::reg operator()(doubles::reg x, doubles::reg y) const { return doubles::mul(x, y); }
  double operator()(double x, double y) const { return x * y; }
};
struct minus {
  doubles::reg operator()(doubles::reg x, doubles::reg y) const { return doubles::sub(x, y); }
  double operator()(double x, double y) const { return x - y; }
};

}  // namespace

void QEL_VML_NAME(dDiv_HA)(int n, const double* a, const double* b, double* r) { divide<false>(n, a, b, r); }
void QEL_VML_NAME(dDiv_50)(int n, const double* a, const double* b, double* r) { divide<false>(n, a, b, r); }
void QEL_VML_NAME(dDiv_26)(int n, const double* a, const double* b, double* r) { divide<false>(n, a, b, r); }
void QEL_VML_NAME(dMul)(int n, const double* a, const double* b, double* r) {
  join<false>(n, a, b, r, times());
}
void QEL_VML_NAME(dSub)(int n, const double* a, const double* b, double* r) {
  join<false>(n, a, b, r, minus());
}

#ifdef __AVX2__  // the native types
void QEL_VML_NAME(dDiv_streamed)(int n, const double* a, const double* b, double* r) {
  divide<true>(n, a, b, r);
}
void QEL_VML_NAME(dMul_streamed)(int n, const double* a, const double* b, double* r) {
  join<true>(n, a, b, r, times());
}
void QEL_VML_NAME(dSub_streamed)(int n, const double* a, const double* b, double* r) {
  join<true>(n, a, b, r, minus());
}
#endif

}  // namespace qel::QEL_LEVEL
