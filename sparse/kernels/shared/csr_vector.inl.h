// SPDX-License-Identifier: BSD-3-Clause
// Products of a CSR matrix and a vector, compiled once per level. Rows of kLongRow entries and more are
// summed in four accumulators, entry p of the row in number p mod 4, added as (0 + 1) + (2 + 3), then the
// tail in order; shorter ones in order. Where QEL_CSR_FUSED is defined, multiply and add are one rounding.

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
[[gnu::always_inline]] inline double negative(double a) { return -a; }
[[gnu::always_inline]] inline complex16 negative(complex16 a) { return {-a.real, -a.imag}; }
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

// Below, the start and the end of four sums cost more than they save.
constexpr core_int kLongRow = 10;

/// Asks for what the next rows will read: processors follow many short streams late.
template <class T>
[[gnu::always_inline]] inline void ask_ahead(const T* a, const int* columns) {
  constexpr uintptr_t kAhead = 1024;
  _mm_prefetch(reinterpret_cast<const char*>(reinterpret_cast<uintptr_t>(a) + kAhead), _MM_HINT_T0);
  _mm_prefetch(
      reinterpret_cast<const char*>(reinterpret_cast<uintptr_t>(columns) + kAhead * sizeof(int) / sizeof(T)),
      _MM_HINT_T0);
}
/// The same for a whole row.
template <class T>
[[gnu::always_inline]] inline void ask_ahead(const T* a, const int* columns, core_int count) {
  constexpr core_int kPerLine = 64 / sizeof(T);
  for (core_int p = 0; p < count; p += kPerLine) ask_ahead(a + p, columns + p);
}

constexpr bool is_unit(csr_part part) {
  return part == kLowerUnit || part == kUpperUnit || part == kDiagonalUnit;
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

/// The sum of a[p] * x[columns[p]] over a row's entries.
template <bool kConjugate, class T>
[[gnu::always_inline]] inline T row_sum(const T* a, const int* columns, core_int count, const T* x) {
  T sum{};
  core_int p = 0;
  if (count < kLongRow) {
    for (; p < count; ++p) sum = multiple(stored<kConjugate>(a[p]), x[columns[p]], sum);
    return sum;
  }
  T sum1{}, sum2{}, sum3{};
  for (; p + 4 <= count; p += 4) {
    sum = multiple(stored<kConjugate>(a[p]), x[columns[p]], sum);
    sum1 = multiple(stored<kConjugate>(a[p + 1]), x[columns[p + 1]], sum1);
    sum2 = multiple(stored<kConjugate>(a[p + 2]), x[columns[p + 2]], sum2);
    sum3 = multiple(stored<kConjugate>(a[p + 3]), x[columns[p + 3]], sum3);
  }
  sum = plus(plus(sum, sum1), plus(sum2, sum3));
  for (; p < count; ++p) sum = multiple(stored<kConjugate>(a[p]), x[columns[p]], sum);
  return sum;
}

template <csr_part kPart, bool kConjugate, class T>
void gather(const csr_slice* rows, const T* a, const T* alpha, const T* x, T* y) {
  const T scale = *alpha;
  const core_int base = rows->base;
  const T* const based_x = rebased(x, base);
  const int* const columns = rows->columns;
  const bool streams = rows->streams;
  for (core_int i = rows->first; i < rows->last; ++i) {
    const core_int begin = rows->begin[i] - base, end = rows->end[i] - base;
    if (streams) ask_ahead(a + begin, columns + begin, end - begin);
    T sum{};
    if constexpr (kPart == kWhole) {
      sum = row_sum<kConjugate>(a + begin, columns + begin, end - begin, based_x);
    } else {
      if constexpr (kPart != kDiagonalUnit) {
        for (core_int p = begin; p < end; ++p)
          if (takes_part<kPart>(i, columns[p] - base))
            sum = multiple(stored<kConjugate>(a[p]), based_x[columns[p]], sum);
      }
      if (is_unit(kPart) && i < rows->column_count) sum = plus(sum, x[i]);
    }
    y[i] = rows->overwrites ? times(scale, sum) : multiple(scale, sum, y[i]);
  }
}

template <csr_part kPart, bool kConjugate, class T>
void scatter(const csr_slice* rows, const T* a, const T* alpha, const T* x, T* y) {
  const core_int base = rows->base;
  T* const based_y = rebased(y, base);
  const int* const columns = rows->columns;
  for (core_int i = rows->first; i < rows->last; ++i) {
    const T factor = times(*alpha, x[i]);
    if constexpr (kPart != kDiagonalUnit) {
      for (core_int p = rows->begin[i] - base, end = rows->end[i] - base; p < end; ++p) {
        const core_int j = columns[p];
        if (takes_part<kPart>(i, j - base))
          based_y[j] = multiple(stored<kConjugate>(a[p]), factor, based_y[j]);
      }
    }
    if (is_unit(kPart) && i < rows->column_count) y[i] = plus(y[i], factor);
  }
}

template <class T>
[[gnu::noinline, gnu::cold]] void zero_block(const far_rows<T>& far, core_int block) {
  far.touched[block] = 1;
  T* const start = far.far + (block << kFarBlockBits);
  for (int k = 0; k < 1 << kFarBlockBits; ++k) start[k] = T{};
}
/// The accumulator's element for row j, whose block is zeroed at its first use.
template <class T>
[[gnu::always_inline]] inline T& far_row(const far_rows<T>& far, core_int j) {
  const core_int block = j >> kFarBlockBits;
  if (!far.touched[block]) [[unlikely]]
    zero_block(far, block);
  return far.far[j];
}

template <csr_mirror kMirror, class T>
[[gnu::always_inline]] inline T mirror(T value) {
  if constexpr (kMirror == kOpposite) return negative(value);
  if constexpr (kMirror == kConjugated) return stored<true>(value);
  return value;
}

template <csr_mirror kMirror, csr_part kPart, bool kConjugate, bool kFar, class T>
void symmetric_rows(const csr_slice* rows, const T* a, const T* alpha, const T* x, T* y,
                    [[maybe_unused]] const far_rows<T>* far) {
  constexpr bool kIsLower = kPart == kLower || kPart == kLowerUnit;
  // Everything below counts from the base.
  const core_int base = rows->base, slice_first = rows->first + base, slice_last = rows->last + base;
  const int* const columns = rebased(rows->columns, base);
  const int *const begin = rebased(rows->begin, base), *const end = rebased(rows->end, base);
  const bool overwrites = rows->overwrites, streams = rows->streams;
  const T scale = *alpha;
  a = rebased(a, base);
  x = rebased(x, base);
  y = rebased(y, base);
  // Rows go away from the triangle: each is met before any other one adds to it, so its first value is its
  // own.
  core_int i = kIsLower ? slice_first : slice_last - 1;
  for (core_int left = slice_last - slice_first; left > 0; --left, i += kIsLower ? 1 : -1) {
    const T factor = times(scale, x[i]);
    T sum{};
    // A number: four of them are combined without branches.
    const auto inside = [i](core_int j) -> int { return kIsLower ? j < i : j > i; };
    const auto both = [&](core_int p, core_int j) {
      const T value = stored<kConjugate>(a[p]);
      sum = multiple(value, x[j], sum);
      if constexpr (kFar) {
        if (kIsLower ? j < slice_first : j >= slice_last) {
          T& target = far_row(*far, j - base);
          target = multiple(mirror<kMirror>(value), factor, target);
          return;
        }
      }
      y[j] = multiple(mirror<kMirror>(value), factor, y[j]);
    };
    core_int p = begin[i];
    const core_int last = end[i];
    if (streams) ask_ahead(a + p, columns + p, last - p);
    for (; last - p >= kLongRow; p += 4) {
      const core_int j0 = columns[p], j1 = columns[p + 1], j2 = columns[p + 2], j3 = columns[p + 3];
      if (!(inside(j0) & inside(j1) & inside(j2) & inside(j3))) break;
      both(p, j0);
      both(p + 1, j1);
      both(p + 2, j2);
      both(p + 3, j3);
    }
    for (; p < last; ++p) {
      const core_int j = columns[p];
      if (inside(j)) {
        both(p, j);
      } else if (j == i && kMirror != kOpposite && !is_unit(kPart)) {
        sum = multiple(stored<kConjugate>(a[p]), x[j], sum);
      }
    }
    if (kMirror != kOpposite && is_unit(kPart)) sum = plus(sum, x[i]);
    y[i] = overwrites ? times(scale, sum) : multiple(scale, sum, y[i]);
  }
}

template <csr_mirror kMirror, csr_part kPart, bool kConjugate, class T>
void symmetric(const csr_slice* rows, const T* a, const T* alpha, const T* x, T* y, const far_rows<T>* far) {
  if (far != nullptr) return symmetric_rows<kMirror, kPart, kConjugate, true>(rows, a, alpha, x, y, far);
  symmetric_rows<kMirror, kPart, kConjugate, false>(rows, a, alpha, x, y, far);
}

// Real tables have the plain kernels in the places of the conjugating ones.
template <class T>
inline constexpr bool kHasConjugates = false;
template <>
inline constexpr bool kHasConjugates<complex16> = true;

#define QEL_CSR_BOTH(kernel, ...) \
  { kernel<__VA_ARGS__, false, T>, kernel<__VA_ARGS__, kHasConjugates<T>, T> }
#define QEL_CSR_PARTS(kernel)                                                                            \
  {                                                                                                      \
    QEL_CSR_BOTH(kernel, kWhole), QEL_CSR_BOTH(kernel, kLower), QEL_CSR_BOTH(kernel, kLowerUnit),        \
        QEL_CSR_BOTH(kernel, kUpper), QEL_CSR_BOTH(kernel, kUpperUnit), QEL_CSR_BOTH(kernel, kDiagonal), \
        QEL_CSR_BOTH(kernel, kDiagonalUnit)                                                              \
  }
#define QEL_CSR_TRIANGLES(mirror)                                                            \
  {                                                                                          \
    QEL_CSR_BOTH(symmetric, mirror, kLower), QEL_CSR_BOTH(symmetric, mirror, kLowerUnit),    \
        QEL_CSR_BOTH(symmetric, mirror, kUpper), QEL_CSR_BOTH(symmetric, mirror, kUpperUnit) \
  }
template <class T>
constexpr csr_kernels<T> csr_table() {
  return {QEL_CSR_PARTS(gather),
          QEL_CSR_PARTS(scatter),
          {QEL_CSR_TRIANGLES(kSame), QEL_CSR_TRIANGLES(kHasConjugates<T> ? kConjugated : kSame),
           QEL_CSR_TRIANGLES(kOpposite)}};
}
#undef QEL_CSR_TRIANGLES
#undef QEL_CSR_PARTS
#undef QEL_CSR_BOTH

}  // namespace

constexpr csr_kernels<double> csr_d = csr_table<double>();
constexpr csr_kernels<complex16> csr_z = csr_table<complex16>();

}  // namespace qel::QEL_LEVEL
