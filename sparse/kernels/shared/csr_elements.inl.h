// SPDX-License-Identifier: BSD-3-Clause
// What the loops over CSR rows do with single elements. Where QEL_CSR_FUSED is defined, multiply and add are
// one rounding. Part of csr_vector.inl.h.

namespace qel::QEL_LEVEL {
namespace {

[[gnu::always_inline]] inline double multiple(double a, double b, double sum) {
#ifdef QEL_CSR_FUSED
  return __builtin_fma(a, b, sum);
#else
  return sum + a * b;
#endif
}
[[gnu::always_inline]] inline complex16 multiple(complex16 a, complex16 b, complex16 sum) {
  return {multiple(-a.imag, b.imag, multiple(a.real, b.real, sum.real)),
          multiple(a.imag, b.real, multiple(a.real, b.imag, sum.imag))};
}
[[gnu::always_inline]] inline double plus(double a, double b) { return a + b; }
[[gnu::always_inline]] inline complex16 plus(complex16 a, complex16 b) {
  return {a.real + b.real, a.imag + b.imag};
}
[[gnu::always_inline]] inline constexpr double negative(double a) { return -a; }
[[gnu::always_inline]] inline constexpr complex16 negative(complex16 a) { return {-a.real, -a.imag}; }
[[gnu::always_inline]] inline double times(double a, double b) { return a * b; }
[[gnu::always_inline]] inline complex16 times(complex16 a, complex16 b) {
  return {a.real * b.real - a.imag * b.imag, a.real * b.imag + a.imag * b.real};
}
template <bool kConjugate>
[[gnu::always_inline]] inline double stored(double a) {
  return a;
}
template <bool kConjugate>
[[gnu::always_inline]] inline complex16 stored(complex16 a) {
  if constexpr (kConjugate) return {a.real, -a.imag};
  return a;
}

/// p - base. The compiler must not see through it: it would subtract base again at every access.
template <class E>
[[gnu::always_inline]] inline E* rebased(E* p, core_int base) {
  uintptr_t address = reinterpret_cast<uintptr_t>(p) - static_cast<uintptr_t>(base) * sizeof(E);
  asm("" : "+r"(address));
  return reinterpret_cast<E*>(address);
}

[[gnu::always_inline]] inline const char* moved(const void* p, intptr_t bytes) {
  return reinterpret_cast<const char*>(reinterpret_cast<intptr_t>(p) + bytes);
}
/// Asks for what the next rows will read: processors follow many short streams late. kWay is 1 or -1, as the
/// walk goes.
template <int kWay = 1, class T>
[[gnu::always_inline]] inline void ask_for_next_rows(const T* a, const int* columns, core_int count) {
  constexpr intptr_t kAhead = kWay * 2048, kShare = sizeof(T) / sizeof(int);
  for (core_int p = 0; p < count; p += 64 / sizeof(T)) {
    _mm_prefetch(moved(a + p, kAhead), _MM_HINT_T0);
    _mm_prefetch(moved(columns + p, kAhead / kShare), _MM_HINT_T0);
  }
}
/// In two steps, where rows wait for other lines, too: the first cache can wait for few at a time, and what
/// comes into it from the second one is there soon.
template <class T>
[[gnu::always_inline]] inline void ask_in_steps(const T* a, const int* columns, core_int count) {
  constexpr intptr_t kNear = 512, kFar = 4096, kShare = sizeof(T) / sizeof(int);
  for (core_int p = 0; p < count; p += 64 / sizeof(T)) {
    _mm_prefetch(moved(a + p, kNear), _MM_HINT_T0);
    _mm_prefetch(moved(columns + p, kNear / kShare), _MM_HINT_T0);
    _mm_prefetch(moved(a + p, kFar), _MM_HINT_T1);
    _mm_prefetch(moved(columns + p, kFar / kShare), _MM_HINT_T1);
  }
}
/// What rows ask for, as csr_slice has it.
enum asking : int { kAsksNothing, kAsksAhead, kAsksInSteps };
[[gnu::always_inline]] inline asking asking_of(const csr_slice* rows) {
  return rows->in_steps ? kAsksInSteps : rows->streams ? kAsksAhead : kAsksNothing;
}
template <asking kAsks, class T>
[[gnu::always_inline]] inline void ask_ahead(const T* a, const int* columns, core_int count) {
  if constexpr (kAsks == kAsksAhead) ask_for_next_rows(a, columns, count);
  if constexpr (kAsks == kAsksInSteps) ask_in_steps(a, columns, count);
}

/// Whether an entry at this place takes part; a unit diagonal is added apart.
template <csr_part kPart>
[[gnu::always_inline]] inline bool takes_part(core_int row, core_int column) {
  if constexpr (kPart == kLower) return column <= row;
  if constexpr (kPart == kLowerUnit) return column < row;
  if constexpr (kPart == kUpper) return column >= row;
  if constexpr (kPart == kUpperUnit) return column > row;
  if constexpr (kPart == kDiagonal) return column == row;
  return kPart == kWhole;
}

/// Whether products of this type have kernels in vectors.
#ifdef __AVX2__
template <class T>
constexpr bool kHasVectors = sizeof(T) == sizeof(double);
#else
template <class T>
constexpr bool kHasVectors = false;
#endif

}  // namespace
}  // namespace qel::QEL_LEVEL
