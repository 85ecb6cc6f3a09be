// SPDX-License-Identifier: BSD-3-Clause
// The reference's routines, kept from matrices that are not finite where those lead them astray: balancing
// and the QR iteration do not end then, and the packed symmetric factorisation reads and writes outside of
// its array. A part of own_or_plain.inl.h.

namespace qel::lapack {
namespace {

/// There is nothing to permute or to scale by in a matrix that is not finite.
template <class T, class Plain>
void gebal_or(core_int n, const T* a, core_int lda, QEL_INT* ilo, QEL_INT* ihi, real_of<T>* scale,
              QEL_INT* info, const Plain& call_plain) {
  if (n <= 0 || lda < n || fitness_of(n, n, a, lda, false) != fitness::not_finite) return call_plain();
  *ilo = 1;
  *ihi = static_cast<QEL_INT>(n);
  for (core_int i = 0; i < n; ++i) set(scale + i, real_of<T>(1));
  *info = 0;
}

/// The last row, from 1, of the lowest block between zeros below the diagonal that is not finite; ilo - 1 if
/// there is none.
template <class T>
core_int last_unfit_row(core_int ilo, core_int ihi, const T* h, core_int ldh) {
  for (core_int last = ihi; last >= ilo;) {
    core_int first = last;
    while (first > ilo && element(h + first - 1 + (first - 2) * ldh) != T{}) --first;
    const core_int rows = last - first + 1;
    const T* const block = h + first - 1 + (first - 1) * ldh;
    if (fitness_of(rows, rows, block, ldh, true) == fitness::not_finite) return last;
    last = first - 1;
  }
  return ilo - 1;
}

/// values: one or two arrays of eigenvalues, in reals. call_plain_from(ilo): from another row on.
template <class T, class Plain, class PlainFrom>
void hseqr_or(core_int n, core_int ilo, core_int ihi, T* h, core_int ldh, core_int lwork,
              std::initializer_list<T*> values, QEL_INT* info, const Plain& call_plain,
              const PlainFrom& call_plain_from) {
  using R = real_of<T>;
  const bool good = n > 0 && 1 <= ilo && ilo <= ihi && ihi <= n && ldh >= n && lwork >= n;
  const fitness found = good ? fitness_of(n, n, h, ldh, true) : fitness::fit;
  if (found == fitness::fit) return call_plain();
  if (found == fitness::not_finite) {
    // What lies below the lowest block that is not finite has eigenvalues all the same.
    const core_int unfit = last_unfit_row(ilo, ihi, h, ldh);
    *info = 0;
    if (unfit < ihi) call_plain_from(static_cast<QEL_INT>(unfit + 1));
    for (T* w : values)
      for (core_int i = ilo - 1; i < unfit; ++i)
        set(w + i, from_real<T>(std::numeric_limits<R>::quiet_NaN()));
    if (*info == 0 && unfit >= ilo) *info = static_cast<QEL_INT>(unfit);
    return;
  }
  scale_hessenberg(n, h, ldh, kCalming<T>);
  call_plain();
  scale_hessenberg(n, h, ldh, 1 / kCalming<T>);
  for (T* w : values)
    for (core_int i = 0; i < n; ++i) set(w + i, (1 / kCalming<T>)*element(w + i));
}

/// Column j of a packed triangle: its first element and the row of that.
struct packed_column {
  core_int start, first, count;
};
inline packed_column column_of(bool upper, core_int n, core_int j) {
  return upper ? packed_column{j * (j + 1) / 2, 0, j + 1} : packed_column{j * n - j * (j - 1) / 2, j, n - j};
}

/// The full form's routine makes the same factors and knows what to do with NaN.
template <class T, class Plain, class Full>
void sptrf_or(char uplo, core_int n, T* ap, QEL_INT* ipiv, QEL_INT* info, const Plain& call_plain,
              const Full& call_full) {
  const bool upper = blas::letter_is(uplo, 'U'), good = n > 0 && (upper || blas::letter_is(uplo, 'L'));
  if (!good || is_calm(n * (n + 1) / 2, ap)) return call_plain();
  const plain::scratch<T> full(n * n);
  if (full.get() == nullptr) {
    *info = 1;  // as for a pivot that can't be divided by
    for (core_int i = 0; i < n; ++i) set(ipiv + i, static_cast<QEL_INT>(i + 1));
    return;
  }
  const auto each_column = [&](const auto& move) {
    for (core_int j = 0; j < n; ++j) {
      const packed_column c = column_of(upper, n, j);
      move(full.get() + j * n + c.first, ap + c.start, static_cast<size_t>(c.count) * sizeof(T));
    }
  };
  each_column([](T* a, const T* packed, size_t bytes) { std::memcpy(static_cast<void*>(a), packed, bytes); });
  call_full(full.get());
  each_column([](const T* a, T* packed, size_t bytes) { std::memcpy(static_cast<void*>(packed), a, bytes); });
}

}  // namespace
}  // namespace qel::lapack

extern "C" {

#define QEL_PACKED_FACTORS(T, packed, full)                                                                  \
  void QEL_OWN(full)(QEL_LETTER uplo, QEL_SIZE n, T * a, QEL_SIZE lda, QEL_INT * ipiv, QEL_INT * info,       \
                     size_t length);                                                                         \
  QEL_OWN_OR_PLAIN(packed,                                                                                   \
                   (QEL_LETTER uplo, QEL_SIZE n, T * ap, QEL_INT * ipiv, QEL_INT * info, size_t length),     \
                   (uplo, n, ap, ipiv, info, length), sptrf_or(*uplo, *n, ap, ipiv, info, plain, [=](T* a) { \
                     QEL_OWN(full)(uplo, n, a, n, ipiv, info, length);                                       \
                   }))
QEL_PACKED_FACTORS(float, ssptrf, ssytf2)
QEL_PACKED_FACTORS(double, dsptrf, dsytf2)
QEL_PACKED_FACTORS(qel::complex8, csptrf, csytf2)
QEL_PACKED_FACTORS(qel::complex16, zsptrf, zsytf2)
QEL_PACKED_FACTORS(qel::complex8, chptrf, chetf2)
QEL_PACKED_FACTORS(qel::complex16, zhptrf, zhetf2)

#define QEL_GUARDED_ITERATIONS(T, R, s, eigenvalue_parameters, eigenvalues)                                \
  QEL_OWN_OR_PLAIN(s##gebal,                                                                               \
                   (QEL_LETTER job, QEL_SIZE n, T * a, QEL_SIZE lda, QEL_INT * ilo, QEL_INT * ihi,         \
                    R * scale, QEL_INT * info, size_t length),                                             \
                   (job, n, a, lda, ilo, ihi, scale, info, length),                                        \
                   gebal_or(*n, a, *lda, ilo, ihi, scale, info, plain))                                    \
  QEL_OWN_OR_PLAIN(                                                                                        \
      s##hseqr,                                                                                            \
      (QEL_LETTER job, QEL_LETTER compz, QEL_SIZE n, QEL_SIZE ilo, QEL_SIZE ihi, T * h, QEL_SIZE ldh,      \
       QEL_ITSELF eigenvalue_parameters, T * z, QEL_SIZE ldz, T * work, QEL_SIZE lwork, QEL_INT * info,    \
       size_t length1, size_t length2),                                                                    \
      (job, compz, n, ilo, ihi, h, ldh, QEL_ITSELF eigenvalues, z, ldz, work, lwork, info, length1,        \
       length2),                                                                                           \
      hseqr_or(*n, *ilo, *ihi, h, *ldh, *lwork, {QEL_ITSELF eigenvalues}, info, plain, [=](QEL_INT from) { \
        QEL_PLAIN(s##hseqr)                                                                                \
        (job, compz, n, &from, ihi, h, ldh, QEL_ITSELF eigenvalues, z, ldz, work, lwork, info, length1,    \
         length2);                                                                                         \
      }))
#define QEL_ITSELF(...) __VA_ARGS__
QEL_GUARDED_ITERATIONS(float, float, s, (float* wr, float* wi), (wr, wi))
QEL_GUARDED_ITERATIONS(double, double, d, (double* wr, double* wi), (wr, wi))
QEL_GUARDED_ITERATIONS(qel::complex8, float, c, (qel::complex8 * w), (w))
QEL_GUARDED_ITERATIONS(qel::complex16, double, z, (qel::complex16 * w), (w))
#undef QEL_ITSELF

}  // extern "C"
