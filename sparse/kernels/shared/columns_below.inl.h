// SPDX-License-Identifier: BSD-3-Clause
// Where the diagonal cuts a sorted row: found without a branch that depends on it. Part of csr_vector.inl.h.

namespace qel::QEL_LEVEL {
namespace {

/// Rows of up to so many entries are counted at once: they have a bit each.
constexpr core_int kMostCounted = 64;
/// In place of a count: columns below the cut stand behind others.
constexpr core_int kUnsorted = -1;

/// How many of 8 to kMostCounted columns lie below the cut, which all elements have, if those come first;
/// or kUnsorted.
[[gnu::always_inline]] inline core_int columns_below(__m256i cut, const int* columns, core_int count) {
  const auto below = [=](core_int p) {
    const __m256i found = _mm256_cmpgt_epi32(cut, eight(columns + p));
    return static_cast<uint64_t>(static_cast<unsigned>(_mm256_movemask_ps(_mm256_castsi256_ps(found)))) << p;
  };
  uint64_t found = below(0) | below(count - 8);
  for (core_int p = 8; p + 8 < count; p += 8) found |= below(p);
  if ((found & (found + 1)) != 0) [[unlikely]]
    return kUnsorted;
  return __builtin_popcountll(found);
}

/// The same of more than kMostCounted columns: whole blocks before the cut, what stands around it, and the
/// least column behind.
[[gnu::noinline]] core_int many_columns_below(__m256i cut, const int* columns, core_int count) {
  constexpr core_int kBlock = 32;
  const auto any_below = [cut](__m256i j) { return _mm256_movemask_epi8(_mm256_cmpgt_epi32(cut, j)); };
  const auto largest = [columns](core_int p) {
    return _mm256_max_epi32(_mm256_max_epi32(eight(columns + p), eight(columns + p + 8)),
                            _mm256_max_epi32(eight(columns + p + 16), eight(columns + p + 24)));
  };
  const auto least = [columns](core_int p) {
    return _mm256_min_epi32(_mm256_min_epi32(eight(columns + p), eight(columns + p + 8)),
                            _mm256_min_epi32(eight(columns + p + 16), eight(columns + p + 24)));
  };
  core_int first = 0;
  while (first + kMostCounted <= count && any_below(largest(first)) == -1) first += kBlock;
  if (first + kMostCounted > count) first = count - kMostCounted;
  const core_int split = columns_below(cut, columns + first, kMostCounted);
  core_int p = first + kMostCounted;
  __m256i behind = cut;
  for (; p + kBlock <= count; p += kBlock) behind = _mm256_min_epi32(behind, least(p));
  for (; p + 8 <= count; p += 8) behind = _mm256_min_epi32(behind, eight(columns + p));
  int others = any_below(behind);
  for (; p < count; ++p) others |= columns[p] < _mm_cvtsi128_si32(_mm256_castsi256_si128(cut));
  return split < 0 || others != 0 ? -1 : first + split;
}

}  // namespace
}  // namespace qel::QEL_LEVEL
