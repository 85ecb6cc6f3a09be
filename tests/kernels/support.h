// SPDX-License-Identifier: BSD-3-Clause
// What the level-1 kernel tests share: operands at any address that end at a page nobody may touch, numbers
// whose sums show the order of summation, and the kernels of an element type by operation.
#pragma once

#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <new>
#include <random>
#include <vector>

#include "blas/level1/level1_rows.h"
#include "service/complex_arithmetic.h"

namespace qel::test {

/// From here on the order of summation is free, products are fused, and the processor must be new enough.
inline constexpr int kFirstNative = 5;

/// Tests of one level's kernels; instantiated for all levels, so that one can be picked by the name's end.
class ByLevel : public testing::TestWithParam<int> {
 protected:
  int level() const { return GetParam(); }
  bool native() const { return level() >= kFirstNative; }
  void SetUp() override {
    if (native() && !(__builtin_cpu_supports("avx2") && __builtin_cpu_supports("fma"))) {
      GTEST_SKIP() << "needs AVX2 and FMA";
    }
  }
};
/// Calls body.operator()<T>() for each type.
template <class... T, class Body>
void for_types(const Body& body) {
  (body.template operator()<T>(), ...);
}
template <class Body>
void for_element_types(const Body& body) {
  for_types<float, double, complex8, complex16>(body);
}

/// Memory for one operand at a time, between two forbidden pages. An operand lies at the asked distance from
/// a 64-byte boundary, as near to the second page as that allows, and all around it is poisoned.
template <class T>
class arena {
 public:
  explicit arena(std::size_t max_size) {
    static unsigned char next_poison = 0x5A;  // a large number in every type
    poison_ = next_poison++;
    page_ = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    mapped_ = (max_size * sizeof(T) + 256 + page_ - 1) / page_ * page_ + 2 * page_;
    void* map = mmap(nullptr, mapped_, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (map == MAP_FAILED) throw std::bad_alloc();
    first_ = static_cast<unsigned char*>(map) + page_;
    last_ = first_ + (mapped_ - 2 * page_);
    mprotect(first_, mapped_ - 2 * page_, PROT_READ | PROT_WRITE);
  }
  ~arena() { munmap(first_ - page_, mapped_); }
  arena(const arena&) = delete;
  arena& operator=(const arena&) = delete;

  /// The operand's address; misalignment in bytes, 0..63.
  T* place(const std::vector<T>& values, std::size_t misalignment) {
    bytes_ = values.size() * sizeof(T);
    const auto highest = reinterpret_cast<std::uintptr_t>(last_) - bytes_;
    start_ = last_ - bytes_ - (highest - misalignment) % (misalignment < 16 ? 16 : 64);
    const unsigned char* from = start_ - 64 < first_ ? first_ : start_ - 64;
    std::memset(const_cast<unsigned char*>(from), poison_, static_cast<std::size_t>(last_ - from));
    if (bytes_ != 0) std::memcpy(start_, values.data(), bytes_);
    return reinterpret_cast<T*>(start_);
  }
  std::vector<T> values() const {
    std::vector<T> copy(bytes_ / sizeof(T));
    if (bytes_ != 0) std::memcpy(copy.data(), start_, bytes_);
    return copy;
  }
  /// True if nothing around the operand was written.
  bool intact() const {
    for (const unsigned char* at = start_ - 64 < first_ ? first_ : start_ - 64; at < last_; ++at) {
      if ((at < start_ || at >= start_ + bytes_) && *at != poison_) return false;
    }
    return true;
  }

 private:
  unsigned char poison_;
  std::size_t page_, mapped_, bytes_ = 0;
  unsigned char *first_, *last_, *start_ = nullptr;
};

/// Numbers of widely different size, so that almost every change of the order changes the last bits of a sum.
template <class T>
std::vector<T> order_sensitive(std::size_t n, unsigned seed) {
  using R = real_of<T>;
  std::mt19937 random(seed);
  std::uniform_real_distribution<R> mantissa(-1, 1);
  std::uniform_int_distribution<int> exponent(-9, 9);
  const auto next = [&] {
    const int power = exponent(random);  // drawn first: as arguments, compilers draw them in different orders
    return std::ldexp(mantissa(random), power);
  };
  std::vector<T> values(n);
  for (T& v : values) {
    if constexpr (is_complex<T>) {
      v.real = next();
      v.imag = next();
    } else {
      v = next();
    }
  }
  return values;
}

/// Cells that n elements of a stride take, and the cell of element i.
inline std::size_t span_of(core_int n, core_int inc) {
  return n <= 0 ? 0 : static_cast<std::size_t>((n - 1) * std::abs(inc) + 1);
}
inline std::size_t cell_of(core_int i, core_int n, core_int inc) {
  return static_cast<std::size_t>(inc >= 0 ? i * inc : (i + 1 - n) * inc);
}
/// The n elements of a strided vector in their logical order.
template <class T>
std::vector<T> elements(const std::vector<T>& cells, core_int n, core_int inc) {
  std::vector<T> result;
  for (core_int i = 0; i < n; ++i) result.push_back(cells[cell_of(i, n, inc)]);
  return result;
}

/// Whether got is sum up to the rounding of n additions of terms whose magnitudes add up to size.
template <class R>
testing::AssertionResult near_sum(long double sum, long double size, core_int n, R got) {
  const auto bound = static_cast<long double>(n + 4) * std::numeric_limits<R>::epsilon() * size +
                     std::numeric_limits<R>::denorm_min();
  if (std::fabs(static_cast<long double>(got) - sum) <= bound) return testing::AssertionSuccess();
  return testing::AssertionFailure() << got << " is not near " << sum << ", n " << n;
}

/// Lanes of a register, and neighbours added first.
template <class R>
inline constexpr std::size_t kLanes = 16 / sizeof(R);
template <class R>
R neighbours_first(std::vector<R> v) {
  for (; v.size() > 1; v.resize(v.size() / 2)) {
    for (std::size_t i = 0; i < v.size() / 2; ++i) v[i] = v[2 * i] + v[2 * i + 1];
  }
  return v[0];
}

/// Four accumulators: peeled terms to lanes 0, 1, .. of the first; whole rounds of registers to all four; of
/// up to three registers that remain the second goes to accumulator 1 if asked, the others to 0; single terms
/// in turn to lanes 0 and 1 of accumulator 0.
template <class R>
R four_sums(const std::vector<R>& terms, std::size_t peeled, bool pair_of_registers) {
  constexpr std::size_t kWidth = kLanes<R>;
  std::vector<R> sum[4];
  for (auto& s : sum) s.assign(kWidth, 0);
  std::size_t i = 0;
  for (; i < peeled && i < terms.size(); ++i) sum[0][i] = terms[i];
  const std::size_t registers = (terms.size() - i) / kWidth, rounds = registers / 4 * 4;
  for (std::size_t r = 0; r < registers; ++r) {
    const std::size_t target =
        r < rounds ? r % 4 : (pair_of_registers && r == rounds + 1 && registers >= rounds + 2 ? 1 : 0);
    for (std::size_t l = 0; l < kWidth; ++l) sum[target][l] += terms[i++];
  }
  for (std::size_t k = 0; i < terms.size(); ++k) sum[0][k % 2] += terms[i++];
  for (std::size_t l = 0; l < kWidth; ++l) sum[0][l] = (sum[0][l] + sum[1][l]) + (sum[2][l] + sum[3][l]);
  return neighbours_first(sum[0]);
}
/// Terms in front of a 16-byte boundary; 0 if no number of them ends on one.
template <class R>
std::size_t terms_to_boundary(const void* address) {
  const auto off = reinterpret_cast<std::uintptr_t>(address) % 16;
  return off % sizeof(R) == 0 ? (16 - off) % 16 / sizeof(R) : 0;
}

template <class T>
struct rows;
template <>
struct rows<float> {
  static constexpr const auto& dot = kSdot;
  static constexpr const auto& axpy = kSaxpy;
  static constexpr const auto& copy = kScopy;
  static constexpr const auto& scal = kSscal;
  static constexpr const auto& real_scal = kSscal;
  static constexpr const auto& asum = kSasum;
  static constexpr const auto& nrm2 = kSnrm2;
  static constexpr const auto& amax = kIsamax;
  static constexpr const auto& amin = kIsamin;
  static constexpr const auto& swap = kSswap;
  static constexpr const auto& rot = kSrot;
  static constexpr const auto& rotm = kSrotm;
  static constexpr const auto& amax_slice = kIsamaxSlice;
  static constexpr const auto& amin_slice = kIsaminSlice;
};
template <>
struct rows<double> {
  static constexpr const auto& dot = kDdot;
  static constexpr const auto& axpy = kDaxpy;
  static constexpr const auto& copy = kDcopy;
  static constexpr const auto& scal = kDscal;
  static constexpr const auto& real_scal = kDscal;
  static constexpr const auto& asum = kDasum;
  static constexpr const auto& nrm2 = kDnrm2;
  static constexpr const auto& amax = kIdamax;
  static constexpr const auto& amin = kIdamin;
  static constexpr const auto& swap = kDswap;
  static constexpr const auto& rot = kDrot;
  static constexpr const auto& rotm = kDrotm;
  static constexpr const auto& amax_slice = kIdamaxSlice;
  static constexpr const auto& amin_slice = kIdaminSlice;
};
template <>
struct rows<complex8> {
  static constexpr const auto& dotu = kCdotu;
  static constexpr const auto& dotc = kCdotc;
  static constexpr const auto& axpy = kCaxpy;
  static constexpr const auto& copy = kCcopy;
  static constexpr const auto& scal = kCscal;
  static constexpr const auto& real_scal = kCsscal;
  static constexpr const auto& asum = kScasum;
  static constexpr const auto& nrm2 = kScnrm2;
  static constexpr const auto& amax = kIcamax;
  static constexpr const auto& amin = kIcamin;
  static constexpr const auto& swap = kCswap;
  static constexpr const auto& rot = kCsrot;
  static constexpr const auto& amax_slice = kIcamaxSlice;
  static constexpr const auto& amin_slice = kIcaminSlice;
};
template <>
struct rows<complex16> {
  static constexpr const auto& dotu = kZdotu;
  static constexpr const auto& dotc = kZdotc;
  static constexpr const auto& axpy = kZaxpy;
  static constexpr const auto& copy = kZcopy;
  static constexpr const auto& scal = kZscal;
  static constexpr const auto& real_scal = kZdscal;
  static constexpr const auto& asum = kDzasum;
  static constexpr const auto& nrm2 = kDznrm2;
  static constexpr const auto& amax = kIzamax;
  static constexpr const auto& amin = kIzamin;
  static constexpr const auto& swap = kZswap;
  static constexpr const auto& rot = kZdrot;
  static constexpr const auto& amax_slice = kIzamaxSlice;
  static constexpr const auto& amin_slice = kIzaminSlice;
};

}  // namespace qel::test
