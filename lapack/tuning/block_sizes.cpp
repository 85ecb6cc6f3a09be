// SPDX-License-Identifier: BSD-3-Clause
#include "lapack/tuning/block_sizes.h"

#include <algorithm>
#include <initializer_list>

#include "blas/letters.h"
#include "blas/level3/dense_facts.h"
#include "blas/level3/gemm_rules.h"
#include "service/serv.h"

namespace qel::lapack {

namespace {

/// A row of steps: the value of the first step whose end lies above n.
struct step {
  core_int end, value;
};
inline constexpr core_int kNoEnd = INT64_MAX;
template <size_t kSteps>
core_int by_size(const step (&row)[kSteps], core_int n) {
  return std::find_if(row, row + kSteps - 1, [n](const step& s) { return n < s.end; })->value;
}

// The threaded LU. The uneven steps are measured optima.

constexpr step kBlock4[] = {{901, 24}, {3101, 64}, {kNoEnd, 200}};
constexpr step kGroup4[] = {{901, 4}, {3101, 3}, {3601, 2}, {kNoEnd, 3}};
constexpr step kLookahead4[] = {{3101, 4}, {3601, 16}, {kNoEnd, 4}};

constexpr step kBlock8[] = {{701, 16}, {1701, 24}, {2401, 80}, {2801, 128}, {10001, 200}, {kNoEnd, 400}};
constexpr step kGroup8[] = {{2401, 2}, {10001, 1}, {kNoEnd, 2}};
constexpr step kLookahead8[] = {{1701, 0}, {2801, 4}, {10001, 8}, {kNoEnd, 16}};

constexpr step kBlock8Class6[] = {{701, 16},   {1701, 24},   {2401, 80},
                                  {4001, 160}, {10001, 180}, {kNoEnd, 200}};
constexpr step kGroup8Class6[] = {{2401, 2}, {kNoEnd, 1}};
constexpr step kLookahead8Class6[] = {{1701, 0}, {kNoEnd, 1000000}};

constexpr step kBlockMany[] = {{1501, 16},  {2501, 24},  {3501, 32},   {4501, 96},   {5501, 120},
                               {6501, 140}, {8501, 128}, {20001, 200}, {35001, 240}, {kNoEnd, 300}};
constexpr step kLookaheadMany[] = {{6501, 0}, {kNoEnd, 1000000}};

constexpr step kBlockOptionP[] = {{9, 1}, {33, 8}, {129, 32}, {kNoEnd, 128}};
constexpr step kBlockOptionS[] = {{9, 1}, {33, 8}, {129, 32}, {257, 128}};

constexpr step kPotrfBlock[] = {{129, 128},  {451, 24},   {701, 32},   {901, 56},   {1051, 96},
                                {1401, 128}, {1801, 192}, {2001, 256}, {3001, 384}, {kNoEnd, 512}};
constexpr step kQrfBlock[] = {{401, 24}, {551, 32}, {801, 48}, {1351, 64}, {1901, 96}, {kNoEnd, 128}};

bool option_is(const tuning_query& query, char letter) {
  return !query.options.empty() && blas::letter_is(query.options.front(), letter);
}

core_int getrf_block(char type, const tuning_query& query, bool class6) {
  const core_int n = query.n2, threads = query.n3;
  if (threads > 8) return by_size(kBlockMany, n);
  if (threads > 4) return class6 ? by_size(kBlock8Class6, n) : by_size(kBlock8, n);
  if (threads >= 2) return by_size(kBlock4, n);
  if (type != 'D') return 64;
  if (option_is(query, 'P')) return by_size(kBlockOptionP, n);
  if (!option_is(query, 'S')) return 1;
  if (n < 257) return by_size(kBlockOptionS, n);
  core_int block = 256;
  while (block < 32768 && 2 * block < n) block *= 2;
  return block;
}
core_int getrf_group(const tuning_query& query, bool class6) {
  const core_int n = query.n2, threads = query.n3;
  if (threads > 8 || threads < 2) return 1;
  if (threads > 4) return class6 ? by_size(kGroup8Class6, n) : by_size(kGroup8, n);
  return by_size(kGroup4, n);
}
core_int getrf_lookahead(const tuning_query& query, bool class6) {
  const core_int n = query.n2, threads = query.n3;
  if (threads > 8) return by_size(kLookaheadMany, n);
  if (threads > 4) return class6 ? by_size(kLookahead8Class6, n) : by_size(kLookahead8, n);
  return threads < 2 ? 0 : by_size(kLookahead4, n);
}
core_int getrf_crossover(char type, const tuning_query& query, bool class6) {
  // Kept: eight threads do better with the blocked form up to this width.
  if (!class6 && type == 'D' && query.n3 == 8 && query.n2 > 2800) return 4000;
  return 64;
}

core_int potrf_block(const tuning_query& query) {
  const core_int n = query.n1, threads = query.n2;
  if (query.n3 == kAskTaskGrain) return option_is(query, 'L') ? 2 : n;
  if (n <= 128) return 128;
  if (threads < 2) return by_size(kPotrfBlock, n);
  const double share = 0.078 - static_cast<double>(std::min<core_int>(threads, 32)) * 0.002;
  const core_int block = static_cast<core_int>(static_cast<double>(n) * share + 16.0) & ~core_int{7};
  if (block <= 4) return 4;
  if (block <= 256) return block;
  return block <= 512 || threads >= 9 ? 256 : 512;
}

// The plain tree, by the letters after the type's.

bool one_of(std::string_view text, std::initializer_list<std::string_view> list) {
  return std::find(list.begin(), list.end(), text) != list.end();
}
bool is_orthogonal_factor(std::string_view routine) { return one_of(routine, {"QRF", "RQF", "LQF", "QLF"}); }
/// ORGQR, UNMBR and the like, of the right type.
bool is_orthogonal_matrix(bool real, std::string_view kind, std::string_view routine) {
  return kind == (real ? "OR" : "UN") && (routine.starts_with('G') || routine.starts_with('M')) &&
         one_of(routine.substr(1), {"QR", "RQ", "LQ", "QL", "HR", "TR", "BR"});
}
/// SYTRD, HETRD and the like, of the right type.
bool is_symmetric(bool real, std::string_view kind) { return kind == (real ? "SY" : "HE"); }

/// Width of the blocks of a tall or wide matrix reduced block by block.
core_int slab_width(core_int n1, core_int n2) {
  constexpr core_int kElements = 131072, kRows = 8192;
  return n1 * n2 <= kElements || n1 <= kRows ? n1 : kElements / 4 / n2;
}

core_int plain_block(bool real, std::string_view kind, std::string_view routine, const tuning_query& query,
                     bool two_stages) {
  if (kind == "GE") {
    if (one_of(routine, {"TRF", "TRI"})) return 64;
    if (is_orthogonal_factor(routine) || one_of(routine, {"HRD", "BRD"})) return 32;
    if (routine == "QR" && query.n3 == 1) return slab_width(query.n1, query.n2);
    if (routine == "LQ" && query.n3 == 2) return slab_width(query.n1, query.n2);
    return 1;
  }
  if (kind == "LA" && one_of(routine, {"ORH", "UNH"})) return 32;
  if ((kind == "PO" && routine == "TRF") || (kind == "LA" && routine == "UUM")) return 64;
  if ((kind == "SY" || is_symmetric(real, kind)) && routine == "TRF") return two_stages ? 192 : 64;
  if (is_symmetric(real, kind)) {
    if (routine == "GST") return 64;
    return routine == "TRD" ? 32 : 1;
  }
  if (is_orthogonal_matrix(real, kind, routine)) return 32;
  if (kind == "GB" && routine == "TRF") return query.n4 <= 64 ? 1 : 32;
  if (kind == "PB" && routine == "TRF") return query.n2 <= 64 ? 1 : 32;
  if (kind == "TR") {
    if (one_of(routine, {"TRI", "EVC"})) return 64;
    const core_int n = std::min(query.n1, query.n2);
    if (routine == "SYL") {
      return real ? std::clamp<core_int>(n * 16 / 100, 48, 240) : std::clamp<core_int>(n * 8 / 100, 24, 80);
    }
  }
  return kind == "GG" && routine == "HD3" ? 32 : 1;
}
core_int plain_least_block(std::string_view kind, std::string_view routine) {
  return kind == "SY" && routine == "TRF" ? 8 : 2;
}
core_int plain_crossover(bool real, std::string_view kind, std::string_view routine) {
  if (kind == "GE" && (is_orthogonal_factor(routine) || one_of(routine, {"HRD", "BRD"}))) return 128;
  if (is_symmetric(real, kind) && routine == "TRD") return 32;
  if (real ? kind == "OR" : kind == "UN") {
    return routine.starts_with('G') && is_orthogonal_matrix(real, kind, routine) ? 128 : 0;
  }
  return kind == "GG" && routine == "HD3" ? 128 : 0;
}

/// The answers that depend on the name, which is in capitals.
core_int by_name(std::string_view name, const tuning_query& query, const tuning_processor& processor) {
  const char type = name.empty() ? ' ' : name.front();
  if (type != 'S' && type != 'D' && type != 'C' && type != 'Z') return 1;
  if (query.question == kLevel) return processor.level;
  constexpr int kWideClass = 6;
  const bool real = type == 'S' || type == 'D', class6 = processor.product_class == kWideClass;
  const std::string_view rest = name.substr(1);
  const bool getrf = rest == "GETRF", potrf = rest == "POTRF";
  const std::string_view kind = rest.substr(0, 2);
  const std::string_view routine = rest.size() > 2 ? rest.substr(2, 3) : std::string_view();
  switch (query.question) {
    case kBlockSize:
      if (getrf) return getrf_block(type, query, class6);
      if (potrf) return potrf_block(query);
      return plain_block(real, kind, routine, query, rest.size() >= 10 && rest[9] == '2');
    case kLeastBlockSize:
      return plain_least_block(kind, routine);
    case kCrossover:
      return getrf ? getrf_crossover(type, query, class6) : plain_crossover(real, kind, routine);
    case kGroup:
      return getrf ? getrf_group(query, class6) : 1;
    case kLookahead:
      return getrf ? getrf_lookahead(query, class6) : 0;
    default:  // 12
      if (rest.ends_with("TRF")) return 16;
      if (!rest.ends_with("QRF")) return kPlainRule;
      return option_is(query, 'P') ? by_size(kQrfBlock, query.n2) : 16;
  }
}

}  // namespace

core_int tuned_block_size(const tuning_query& query, const tuning_processor& processor) {
  switch (query.question) {
    case 4:
      return 6;
    case 5:
      return 2;
    case 6:
      return static_cast<core_int>(static_cast<float>(std::min(query.n1, query.n2)) * 1.6F);
    case 7:
    case 10:  // plain constants: the arithmetic is not put to a test
    case 11:
      return 1;
    case 8:
      return 50;
    case 9:
      return 25;
    case 13:
    case 14:
    case 15:
    case 16:
      return kPlainRule;
    case kBlockSize:
    case kLeastBlockSize:
    case kCrossover:
    case 12:
    case kGroup:
    case kLookahead:
    case kLevel:
      break;
    default:
      return -1;
  }
  std::string_view padded = query.name;
  while (!padded.empty() && padded.back() == ' ') padded.remove_suffix(1);
  char capitals[16];
  const size_t length = std::min(padded.size(), sizeof capitals);
  std::transform(padded.begin(), padded.begin() + static_cast<ptrdiff_t>(length), capitals,
                 [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; });
  return by_name({capitals, length}, query, processor);
}

tuning_processor this_tuning_processor() { return {serv_cpu_level(), gemm_class(this_processor())}; }

}  // namespace qel::lapack
