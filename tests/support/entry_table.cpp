// SPDX-License-Identifier: BSD-3-Clause
#include "tests/support/entry_table.h"

#include <dlfcn.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <sstream>
#include <stdexcept>

namespace qel::test {
namespace {

constexpr size_t kMostArguments = 24;
constexpr int kRightHandSides = 3;

template <size_t>
using any_address = void*;

template <size_t... I>
void call_with(void* entry, void* const* a, std::index_sequence<I...>) {
  // All arguments are addresses; what an entry has fewer of it does not look at.
  reinterpret_cast<void (*)(any_address<I>...)>(entry)(a[I]...);
}

}  // namespace

double usual_number(size_t k) {
  uint64_t x = (k + 1) * 0x9e3779b97f4a7c15U;
  x = (x ^ x >> 31) * 0xbf58476d1ce4e5b9U;
  return static_cast<double>(x >> 11) * 0x1p-52 - 1;
}

entry_call::entry_call(const entry_row& row, char letter, int order, const number_source& numbers)
    : name_(row.name), letter_(letter), n_(order), numbers_(numbers) {
  std::replace(name_.begin(), name_.end(), '?', letter);
  std::istringstream words(row.arguments);
  for (std::string token; words >> token;) add_argument(token);
  if (arguments_.size() > kMostArguments) throw std::logic_error(name_ + ": too many arguments");
  arguments_.resize(kMostArguments);
}

entry_call::block& entry_call::add_block(size_t bytes, int kind, bool counts, bool fixed) {
  blocks_.push_back(std::make_unique<block>(block{std::vector<char>(bytes), kind, counts, fixed}));
  arguments_.push_back(blocks_.back()->bytes.data());
  return *blocks_.back();
}

void entry_call::add_ints(size_t count, const std::function<int(int)>& value) {
  block& made = add_block(count * sizeof(int), 2, true, true);
  for (size_t k = 0; k < count; ++k) {
    const int v = value(static_cast<int>(k));
    std::memcpy(made.bytes.data() + k * sizeof(int), &v, sizeof(int));
  }
}

void entry_call::add_elements(char role, const number_source& numbers, bool counts, bool fixed) {
  const bool single = letter_ == 's' || letter_ == 'c';
  const bool real = std::strchr("RDVt", role) != nullptr || letter_ == 's' || letter_ == 'd';
  const auto n = static_cast<size_t>(n_), parts = size_t{real ? 1U : 2U};
  size_t count = n * n;
  if (role == 'W' || role == 'V') count = 10 * n * n + 200 * n;
  if (role == 's' || role == 't') count = 1;
  block& made =
      add_block(count * parts * (single ? sizeof(float) : sizeof(double)), single ? 1 : 0, counts, fixed);
  const size_t stream = blocks_.size() * 100003;
  const auto put = [&](size_t k, double value) {
    const auto as_float = static_cast<float>(value);
    if (single) {
      std::memcpy(made.bytes.data() + k * sizeof(float), &as_float, sizeof(float));
    } else {
      std::memcpy(made.bytes.data() + k * sizeof(double), &value, sizeof(double));
    }
  };
  if (role == 's' || role == 't') {
    put(0, 1.25);
    if (parts == 2) put(1, 0.5);
    return;
  }
  if (role == 'W' || role == 'V') return;
  size_t next_packed = 0, column = 0;
  for (size_t k = 0; k < count; ++k) {
    bool heavy = role == 'A' ? k % (n + 1) == 0 : role == 'Q' ? k % 3 == 2 : role == 'D';
    if (role == 'B' && k == next_packed) {
      heavy = true;
      next_packed += ++column + 1;
    }
    for (size_t part = 0; part < parts; ++part) {
      const double value = numbers(stream + k * parts + part) * (role == 'T' ? 0.25 / n_ : 1);
      // A heavy element is real, as on the diagonal of a Hermitian matrix.
      put(k * parts + part, !heavy ? value : part == 0 ? std::fabs(value) + (role == 'D' ? 2 : n_) : 0);
    }
  }
}

void entry_call::add_argument(std::string token) {
  const bool fixed = token.size() < 2 || token[0] != '?';
  if (!fixed) token.erase(0, 1);
  const auto add_number = [&](int value, bool is_scalar) {
    add_ints(1, [&](int) { return value; });
    blocks_.back()->counts = !is_scalar;
    if (is_scalar) scalars_.push_back({arguments_.back(), false});
  };
  const auto n = static_cast<size_t>(n_);
  switch (token[0]) {
    case '\'':
    case '"': {
      const std::string text = token.substr(1);
      block& made = add_block(text.size() + 1, 2, false, true);
      std::memcpy(made.bytes.data(), text.c_str(), text.size() + 1);
      scalars_.push_back({arguments_.back(), true});
      break;
    }
    case 'n':
      add_number(n_, true);
      break;
    case 'h':
      add_number(n_ / 2, true);
      break;
    case 'r':
      add_number(kRightHandSides, true);
      break;
    case 'l':
      add_number(10 * n_ * n_ + 200 * n_, false);
      blocks_.back()->counts = false;
      break;
    case 'o':
      add_number(0, false);
      break;
    case 'i':
      arguments_.push_back(&info_);
      break;
    case '.':
      arguments_.push_back(nullptr);
      break;
    case 'P':
      add_ints(n, [](int k) { return k + 1; });
      break;
    case 'J':
      add_ints(10 * n, [](int) { return 0; });
      break;
    case 'X':
    case 'E':
      // Row k has columns k - 1, k, k + 1 as far as they are there.
      add_ints(n + 1, [&](int k) {
        return k + (token[0] == 'E') == 0 ? 1 : std::min(3 * (k + (token[0] == 'E')), 3 * n_ - 1);
      });
      break;
    case 'Y':
      add_ints(3 * n, [](int k) { return (k + 1) / 3 + (k + 1) % 3; });
      break;
    case 's':
    case 't':
      add_elements(token[0], numbers_, false, true);
      break;
    case 'W':
    case 'V':
      add_elements(token[0], numbers_, false, true);
      break;
    case 'A':
    case 'B':
    case 'Q':
    case 'T':
    case 'D':
    case 'R':
      add_elements(token[0], numbers_, true, fixed);
      break;
    default:
      add_number(std::stoi(token), true);
  }
}

void entry_call::make() {
  void* const entry = dlsym(RTLD_DEFAULT, name_.c_str());
  if (entry == nullptr) throw std::logic_error(name_ + " is not there");
  call_with(entry, arguments_.data(), std::make_index_sequence<kMostArguments>());
}

void entry_call::spoil(size_t k) {
  const scalar& spoilt = scalars_[k];
  const int minus_one = -1;
  if (spoilt.is_letter) {
    *static_cast<char*>(spoilt.at) = '?';
  } else {
    std::memcpy(spoilt.at, &minus_one, sizeof minus_one);
  }
}

void entry_call::for_results(const std::function<void(double, bool)>& take) const {
  for (const auto& one : blocks_) {
    if (!one->counts) continue;
    const auto take_all = [&](auto value) {
      for (size_t at = 0; at + sizeof value <= one->bytes.size(); at += sizeof value) {
        std::memcpy(&value, one->bytes.data() + at, sizeof value);
        take(static_cast<double>(value), one->fixed);
      }
    };
    if (one->kind == 0) take_all(double{});
    if (one->kind == 1) take_all(float{});
    if (one->kind == 2) take_all(int{});
  }
}

std::vector<double> entry_call::result() const {
  std::vector<double> values;
  for_results([&](double value, bool) { values.push_back(value); });
  return values;
}

double entry_call::distance(const std::vector<double>& other) const {
  double most = 0, largest = 1;
  size_t k = 0;
  for_results([&](double value, bool fixed) {
    if (!fixed) value = other[k];
    const double difference = std::fabs(value - other[k]);
    most = std::isfinite(difference) ? std::max(most, difference) : INFINITY;
    largest = std::max(largest, std::fabs(other[k]));
    ++k;
  });
  return most / largest;
}

const std::vector<entry_row>& entry_rows() {
  static const std::vector<entry_row> rows = {
      // Vectors.
      {"?copy", "sdcz", "n A 1 A 2"},
      {"?axpy", "sdcz", "n s A 1 A -2"},
      {"?scal", "sdcz", "n s A 2"},
      {"csscal", "c", "n t A 1"},
      {"zdscal", "z", "n t A 1"},
      {"?dot", "sd", "n A 1 A 2"},
      {"?dotu", "cz", "A n A 1 A 2"},
      {"?dotc", "cz", "A n A 1 A 2"},
      {"?asum", "sd", "n A 1"},
      {"?nrm2", "d", "n A 2"},
      {"scasum", "c", "n A 1"},
      {"dzasum", "z", "n A 1"},
      {"dznrm2", "z", "n A 1"},
      {"i?amax", "sdcz", "n A 1"},
      {"i?amin", "sdcz", "n A 1"},
      // Matrices and vectors.
      {"?gemv", "sdcz", "'T n h s A n A 2 s A 1"},
      {"?gemv", "sdcz", "'N n n s A n A -1 s A 2"},
      {"?gbmv", "sdcz", "'N n n 2 1 s A 4 A 2 s A 1"},
      {"?sbmv", "sd", "'U n 2 s A 3 A 2 s A 1"},
      {"?hbmv", "cz", "'L n 2 s A 3 A 2 s A 1"},
      {"?spmv", "sdcz", "'U n s A A 2 s A 1"},
      {"?hpmv", "cz", "'L n s A A 2 s A 1"},
      {"?tpmv", "sdcz", "'U 'N 'N n A A 2"},
      {"?trmv", "sdcz", "'L 'T 'N n A n A 2"},
      // Matrices.
      {"?gemm", "sdcz", "'N 'T n n n s A n A n s A n"},
      {"?gemm", "sdcz", "'C 'N h n n s A n A n s A n"},
      {"?trsm", "sdcz", "'L 'U 'N 'N n n s A n A n"},
      {"?trsm", "sdcz", "'R 'L 'C 'U n h s B n A n"},
      {"?lange", "sdcz", "'I n n A n V"},
      {"?lange", "sdcz", "'M n n A n ."},
      {"?lange", "sdcz", "'F n n A n ."},
      // Linear systems: full, band, tridiagonal.
      {"?getrf", "sdcz", "n n A n P i"},
      {"?getrs", "sdcz", "'T n r A n P A n i"},
      {"?getri", "sdcz", "n A n P W l i"},
      {"dgesv", "d", "n r A n P A n i"},
      {"dposv", "d", "'U n r A n A n i"},
      {"?gecon", "sd", "'1 n A n t R W J i"},
      {"?gecon", "cz", "'I n A n t R W V i"},
      {"?gbtrf", "sdcz", "n n 2 1 A 6 P i"},
      {"?gbtrs", "sdcz", "'N n 2 1 r A 6 P A n i"},
      {"?gbcon", "sd", "'1 n 2 1 A 6 P t R W J i"},
      {"?gbcon", "cz", "'1 n 2 1 A 6 P t R W V i"},
      {"?pbtrf", "sdcz", "'U n 2 Q 3 i"},
      {"?pbtrs", "sdcz", "'U n 2 r Q 3 A n i"},
      {"?pbcon", "sd", "'U n 2 Q 3 t R W J i"},
      {"?pbcon", "cz", "'U n 2 Q 3 t R W V i"},
      {"?gttrf", "sdcz", "n A A A A P i"},
      {"?gttrs", "sdcz", "'T n r A A A A P A n i"},
      {"?gtcon", "sd", "'1 n A A A A P t R W J i"},
      {"?gtcon", "cz", "'1 n A A A A P t R W i"},
      {"dgtsv", "d", "n r A D A A n i"},
      {"?pttrf", "sdcz", "n D A i"},
      {"?pttrs", "sd", "n r D A A n i"},
      {"?pttrs", "cz", "'U n r D A A n i"},
      {"?ptcon", "sdcz", "n D A t R V i"},
      {"?pocon", "sd", "'U n A n t R W J i"},
      {"?trcon", "sd", "'1 'U 'N n A n R W J i"},
      // Packed.
      {"?pptrf", "sdcz", "'U n B i"},
      {"?pptrs", "sdcz", "'U n r B A n i"},
      {"?pptri", "sdcz", "'U n B i"},
      {"?ppcon", "sd", "'U n B t R W J i"},
      {"?ppcon", "cz", "'U n B t R W V i"},
      {"?sptrf", "sdcz", "'U n A P i"},
      {"?sptrs", "sdcz", "'U n r B P A n i"},
      {"?sptri", "sdcz", "'U n B P W i"},
      {"?spcon", "sd", "'U n B P t R W J i"},
      {"?spcon", "cz", "'U n B P t R W i"},
      {"?hptrf", "cz", "'U n A P i"},
      {"?hptrs", "cz", "'U n r B P A n i"},
      {"?hptri", "cz", "'U n B P W i"},
      {"?hpcon", "cz", "'U n B P t R W i"},
      {"?tptrs", "sdcz", "'U 'N 'N n r B A n i"},
      {"?tptri", "sdcz", "'U 'N n B i"},
      {"?tpcon", "sd", "'1 'U 'N n B R W J i"},
      {"?tpcon", "cz", "'1 'U 'N n B R W V i"},
      // Orthogonal factors and least squares.
      {"?geqrf", "sdcz", "n h A n A W l i"},
      {"?geqp3", "sd", "n h A n J A W l i"},
      {"?geqp3", "cz", "n h A n J A W l V i"},
      {"?ormqr", "sd", "'L 'T n n h A n T A n W l i"},
      {"?unmqr", "cz", "'R 'C n n h A n T A n W l i"},
      {"?orgqr", "sd", "n h h A n T W l i"},
      {"?ungqr", "cz", "n h h A n T W l i"},
      {"dgels", "d", "'N n h r A n A n W l i"},
      {"?gelsy", "sd", "n h r A n A n J t o W l i"},
      {"?gelsy", "cz", "n h r A n A n J t o W l V i"},
      // Singular values and eigenvalues.
      {"?gesvd", "sd", "'A 'A n n ?A n R ?A n ?A n W l i"},
      {"?gesvd", "cz", "'S 'S n n ?A n R ?A n ?A n W l V i"},
      {"?gesdd", "sd", "'A n h ?A n R ?A n ?A n W l J i"},
      {"?gesdd", "cz", "'N n n ?A n R ?A n ?A n W l V J i"},
      {"?geevx", "sd", "'B 'V 'V 'B n ?A n ?R ?R ?A n ?A n o o R R ?R ?R W l J i"},
      {"?geevx", "cz", "'B 'V 'V 'B n ?A n ?A ?A n ?A n o o R R ?R ?R W l V i"},
      {"?gebak", "sdcz", "'B 'R n 1 n D n A n i"},
      {"?spevx", "sd", "'V 'A 'U n A t t 1 1 t o R ?A n W J J i"},
      {"?hpevx", "cz", "'V 'I 'U n A t t 1 h t o R ?A n W V J J i"},
      {"zgebal", "z", "'B n A n o o R i"},
      {"zgehrd", "z", "n 1 n A n A W l i"},
      {"zunghr", "z", "n 1 n A n T W l i"},
      {"zhseqr", "z", "'S 'I n 1 n ?A n A ?A n W l i"},
      {"ztrevc", "z", "'B 'A J n A n ?A n ?A n n o W V i"},
      // Sparse vectors and matrices.
      {"?axpyi", "sdz", "n s A P A"},
      {"ddoti", "d", "n A P A"},
      {"zdotui", "z", "A n A P A"},
      {"?gthr", "dz", "n A A P"},
      {"?gthrz", "dz", "n A A P"},
      {"?sctr", "dz", "n A P A"},
      {"qel_?csrgemv", "dz", "'N n A X Y A A"},
      {"qel_?csrgemv", "dz", "'T n A X Y A A"},
      {"qel_?csrmv", "dz", "'N n n s \"SLNF A Y X E A s A"},
      {"qel_?csrmv", "dz", "'C n n s \"TUUF A Y X E A s A"},
      {"qel_?csradd", "dz", "'N 0 0 n n A Y X s A Y X A J J 1000000 i"},
      {"qel_?csradd", "dz", "'T 1 3 n n A Y X s A Y X A J J 1 i"},
      {"qel_?csrmultcsr", "dz", "'N 0 1 n n n A Y X A Y X A J J 1000000 i"},
      {"qel_?csrmultcsr", "dz", "'T 1 0 n n n A Y X A Y X A J J 1 i"},
      {"qel_?csrmultd", "dz", "'N n n n A Y X A Y X A n"},
      {"qel_csr_check", "d", "n n X Y 1 1 . ."},
  };
  return rows;
}

}  // namespace qel::test
