// SPDX-License-Identifier: BSD-3-Clause
// Products of a CSR matrix and a vector: carries a plan out over the kernels of this process.
#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "blas/level1/level1.h"
#include "blas/plain/scratch.h"
#include "service/complex_arithmetic.h"
#include "service/dispatch.h"
#include "service/largest_cache.h"
#include "sparse/blas/csr.h"
#include "sparse/blas/csr_vector_plan.h"
#include "sparse/kernels/csr_kernels.h"

namespace qel::sparse {
namespace {

constexpr int kAlignment = 128;

// clang-format off
#define QEL_CSR_ROW(letter)                                    \
  {{&l0_generic::csr_##letter, &l0_generic::csr_##letter,      \
    &l0_generic::csr_##letter, &l0_generic::csr_##letter,      \
    /* AVX */ &l4_avx::csr_##letter,                           \
    /* AVX2 and FMA, AVX-512 */ &l5_avx2::csr_##letter, &l5_avx2::csr_##letter}}
// clang-format on
template <class T>
constexpr level_row<const csr_kernels<T>> kKernels = QEL_CSR_ROW(z);
template <>
constexpr level_row<const csr_kernels<double>> kKernels<double> = QEL_CSR_ROW(d);
#undef QEL_CSR_ROW

template <class T>
constinit bind_slot<const csr_kernels<T>> slot{nullptr};

template <class T>
const csr_kernels<T>& kernels() {
  const csr_kernels<T>* table = slot<T>.load(std::memory_order_relaxed);
  if (table == nullptr) [[unlikely]] {
    table = choose_kernel(kKernels<T>);
    slot<T>.store(table, std::memory_order_relaxed);
  }
  return *table;
}

/// A product with all that its kernel needs but the rows.
template <class T>
struct csr_product {
  csr_slice matrix;  ///< all rows
  const T* a;
  T alpha;
  const T* x;
  T* y;
  core_int result_rows;
  bool zeroes;                              ///< y is set to zero first
  typename csr_kernels<T>::product* plain;  ///< one of these two
  typename csr_kernels<T>::mirrored* mirrored;
};

template <class T>
void run_rows(const csr_product<T>& product, row_range rows, T* y, const far_rows<T>* far = nullptr) {
  csr_slice slice = product.matrix;
  slice.first = rows.first;
  slice.last = rows.last;
  if (product.mirrored != nullptr) {
    product.mirrored(&slice, product.a, &product.alpha, product.x, y, far);
  } else {
    product.plain(&slice, product.a, &product.alpha, product.x, y);
  }
}

/// Where the rows of thread t begin if each has about the same number of entries, of which each row counts as
/// row_weight more. Row starts need not be in order: the balance is then lost, but never a row.
core_int first_row_by_entries(const csr_slice& matrix, core_int row_weight, int threads, int t) {
  const core_int rows = matrix.last, start = matrix.begin[0];
  if (t == threads) return rows;
  const core_int count = matrix.end[rows - 1] - start + row_weight * rows;
  core_int first = 0;
  for (int before = 1; before <= t; ++before) {
    const core_int target = start + count * before / threads;
    for (core_int end = rows; first < end;) {
      const core_int middle = first + (end - first) / 2;
      if (matrix.begin[middle] + row_weight * middle < target) {
        first = middle + 1;
      } else {
        end = middle;
      }
    }
  }
  return first;
}

template <class T>
row_range share(const csr_product<T>& product, const csr_vector_plan& plan, int t) {
  const csr_slice& matrix = product.matrix;
  if (!plan.even_entries) return rows_of(matrix.last, plan.threads, t);
  return {first_row_by_entries(matrix, plan.row_weight, plan.threads, t),
          first_row_by_entries(matrix, plan.row_weight, plan.threads, t + 1)};
}

template <class T>
void run_row_blocks(const csr_product<T>& product, const csr_vector_plan& plan) {
  if (plan.blocks_each == 1) {
#pragma omp parallel for num_threads(plan.threads) schedule(static, 1)
    for (int t = 0; t < plan.threads; ++t) run_rows(product, share(product, plan, t), product.y);
    return;
  }
#pragma omp parallel for num_threads(plan.threads) schedule(dynamic, 1)
  for (int block = 0; block < plan.threads * plan.blocks_each; ++block) {
    const row_range whole = share(product, plan, block / plan.blocks_each);
    const row_range part = rows_of(whole.last - whole.first, plan.blocks_each, block % plan.blocks_each);
    run_rows(product, {whole.first + part.first, whole.first + part.last}, product.y);
  }
}

/// False if there is no memory for the results of the threads.
template <class T>
bool run_accumulators(const csr_product<T>& product, const csr_vector_plan& plan) {
  const core_int n = product.result_rows;
  const int in_place = plan.first_in_place ? 1 : 0;
  const plain::scratch<T> all((plan.threads - in_place) * n, kAlignment);
  if (all.get() == nullptr) return false;
  if (in_place == 0 && product.zeroes) std::fill_n(product.y, n, T{});
  const auto sums_of = [&](int t) { return t < in_place ? product.y : all.get() + (t - in_place) * n; };
#pragma omp parallel for num_threads(plan.threads) schedule(static, 1)
  for (int t = 0; t < plan.threads; ++t) {
    T* const sums = sums_of(t);
    if (t >= in_place || product.zeroes) std::fill_n(sums, n, T{});
    run_rows(product, share(product, plan, t), sums);
  }
  const auto add_rows = [&](row_range rows) {
    for (int t = in_place; t < plan.threads; ++t) {
      const T* const sums = sums_of(t);
      for (core_int i = rows.first; i < rows.last; ++i) product.y[i] += sums[i];
    }
  };
  if (plan.shared_sum) {
#pragma omp parallel for num_threads(plan.threads) schedule(static, 1)
    for (int part = 0; part < plan.threads; ++part) add_rows(rows_of(n, plan.threads, part));
  } else {
    add_rows({0, n});
  }
  return true;
}

template <class T>
bool run_far_rows(const csr_product<T>& product, const csr_vector_plan& plan) {
  const core_int blocks = (product.result_rows >> kFarBlockBits) + 1, padded = blocks << kFarBlockBits;
  const plain::scratch<T> all(plan.threads * padded, kAlignment);
  const plain::scratch<unsigned char> marks(plan.threads * blocks, kAlignment);
  if (all.get() == nullptr || marks.get() == nullptr) return false;
  std::fill_n(marks.get(), plan.threads * blocks, 0);
  const auto far_of = [&](int t) { return far_rows<T>{all.get() + t * padded, marks.get() + t * blocks}; };
#pragma omp parallel for num_threads(plan.threads) schedule(static, 1)
  for (int t = 0; t < plan.threads; ++t) {
    const far_rows<T> far = far_of(t);
    run_rows(product, share(product, plan, t), product.y, &far);
  }
#pragma omp parallel for num_threads(plan.threads) schedule(static, 1)
  for (int part = 0; part < plan.threads; ++part) {
    const row_range own = rows_of(blocks, plan.threads, part);
    for (core_int block = own.first; block < own.last; ++block) {
      const core_int first = block << kFarBlockBits;
      const core_int last = std::min(first + (core_int{1} << kFarBlockBits), product.result_rows);
      for (int t = 0; t < plan.threads; ++t) {
        const far_rows<T> far = far_of(t);
        if (far.touched[block] == 0) continue;
        for (core_int i = first; i < last; ++i) product.y[i] += far.far[i];
      }
    }
  }
  return true;
}

template <class T>
void run_product(const csr_product<T>& product, const csr_vector_plan& plan) {
  switch (plan.scheme) {
    case csr_scheme::kRowBlocks:
      return run_row_blocks(product, plan);
    case csr_scheme::kAccumulators:
      if (run_accumulators(product, plan)) return;
      break;
    case csr_scheme::kFarRows:
      if (run_far_rows(product, plan)) return;
      break;
    case csr_scheme::kSerial:
      break;
  }
  if (product.zeroes) std::fill_n(product.y, product.result_rows, T{});
  run_rows(product, {0, product.matrix.last}, product.y);
}

constexpr csr_part triangle_part(const csr_class& about) {
  if (about.lower) return about.unit ? kLowerUnit : kLower;
  return about.unit ? kUpperUnit : kUpper;
}

/// Chooses the kernel. For a Hermitian matrix the transpose is the conjugate, the conjugate transpose itself;
/// for a symmetric one the other way round; an antisymmetric one changes its sign besides.
template <class T>
void choose(csr_product<T>& product, const csr_class& about, bool transposed, bool conjugated) {
  const csr_kernels<T>& table = kernels<T>();
  product.plain = nullptr;
  product.mirrored = nullptr;
  const auto& products = transposed ? table.scatter : table.gather;
  const csr_part part = triangle_part(about);
  const int triangle = (about.lower ? 0 : 2) + (about.unit ? 1 : 0);
  switch (about.kind) {
    case 'S':
      product.mirrored = table.symmetric[kSame][triangle][conjugated];
      break;
    case 'H':
      product.mirrored = table.symmetric[kConjugated][triangle][transposed && !conjugated];
      break;
    case 'A':
      product.mirrored = table.symmetric[kOpposite][triangle][conjugated];
      if (transposed) product.alpha = T{} - product.alpha;
      break;
    case 'T':
      product.plain = products[part][conjugated];
      break;
    case 'D':
      product.plain = products[about.unit ? kDiagonalUnit : kDiagonal][conjugated];
      break;
    default:
      product.plain = products[kWhole][conjugated];
  }
}

struct csr_options {
  csr_class about;
  bool transposed, conjugated;
};
csr_options options_of(const char* transa, const csr_class& about) {
  const char letter = static_cast<char>(*transa & ~0x20);
  return {about, letter != 'N', letter == 'C'};
}

/// How many entries lie in rows of other threads, estimated from a sample: an entry d rows off the diagonal
/// does so with probability d over the rows of a thread. Of one thread: how far they spread.
double far_share_of(const csr_slice& matrix, int threads) {
  constexpr core_int kSample = 64;
  const core_int rows = matrix.last, step = std::max<core_int>(rows / kSample, 1),
                 per_thread = rows / threads;
  core_int entries = 0;
  double far = 0;
  for (core_int i = 0; i < rows; i += step) {
    for (core_int p = matrix.begin[i] - matrix.base; p < matrix.end[i] - matrix.base; ++p, ++entries) {
      const core_int off = std::abs(matrix.columns[p] - matrix.base - i);
      far += std::min(1.0, static_cast<double>(off) / static_cast<double>(per_thread));
    }
  }
  return entries != 0 ? far / static_cast<double>(entries) : 0;
}

/// y = alpha op(A) x, A rows by columns, or with add set y += alpha op(A) x.
template <class T>
void multiply(const csr_options& options, core_int rows, core_int columns, T alpha, const T* a,
              const int* indx, const int* begin, const int* end, const T* x, bool add, T* y) {
  // Scattered products and those with accumulators add to zeros, the others write their rows.
  const bool scatters = options.transposed && std::strchr("GTD", options.about.kind) != nullptr;
  const core_int length = options.transposed ? columns : rows;
  if (rows < 1) {
    if (!add) std::fill_n(y, length, T{});
    return;
  }
  csr_product<T> product{};
  product.matrix = {0, rows, indx, begin, end, options.about.base, columns, !add && !scatters, false};
  product.a = a;
  product.alpha = alpha;
  product.x = x;
  product.y = y;
  product.result_rows = length;
  choose(product, options.about, options.transposed, options.conjugated);
  const core_int entries = core_int{end[rows - 1]} - begin[0];
  const core_int bytes = entries * static_cast<core_int>(sizeof(T) + sizeof(int));
  const int threads = serv_in_parallel() ? 1 : serv_threads_all();
  csr_vector_facts facts = {options.about.kind,
                            options.transposed,
                            rows,
                            columns,
                            entries,
                            threads,
                            serv_cpu_level() >= 5,
                            bytes,
                            largest_native_cache()};
  csr_vector_plan plan = plan_csr_vector(facts);
  if (plan.scheme == csr_scheme::kFarRows) {
    facts.far_share = far_share_of(product.matrix, facts.threads);
    plan = plan_csr_vector(facts);
  }
  if (plan.streams && product.plain != nullptr) {
    facts.spread = far_share_of(product.matrix, 1);
    plan = plan_csr_vector(facts);
  }
  product.matrix.streams = plan.streams;
  product.matrix.in_steps = plan.in_steps;
  product.zeroes = !add && (scatters || plan.scheme == csr_scheme::kAccumulators);
  if (product.zeroes) product.matrix.overwrites = false;
  run_product(product, plan);
}

template <class T>
void csrgemv(const char* transa, core_int m, const T* a, const int* ia, const int* ja, const T* x, T* y) {
  multiply(options_of(transa, {}), m, m, from_real<T>(1), a, ja, ia, ia + 1, x, /*add=*/false, y);
}

void scale(const core_int* n, const double* beta, double* y) {
  const core_int one = 1;
  core::dscal(n, beta, y, &one);
}
void scale(const core_int* n, const complex16* beta, complex16* y) {
  const core_int one = 1;
  core::zscal(n, beta, y, &one);
}

template <class T>
void csrmv(const char* transa, core_int m, core_int k, T alpha, const char* matdescra, const T* val,
           const int* indx, const int* pntrb, const int* pntre, const T* x, T beta, T* y) {
  const csr_options options = options_of(transa, decode_matdescra(matdescra));
  const core_int length = options.transposed ? k : m;
  const bool add = !(beta == T{});
  if (add) scale(&length, &beta, y);
  multiply(options, m, k, alpha, val, indx, pntrb, pntre, x, add, y);
}

}  // namespace
}  // namespace qel::sparse

namespace qel::core {

void dcsrgemv(const char* transa, const core_int* m, const double* a, const int* ia, const int* ja,
              const double* x, double* y) {
  sparse::csrgemv(transa, *m, a, ia, ja, x, y);
}
void zcsrgemv(const char* transa, const core_int* m, const complex16* a, const int* ia, const int* ja,
              const complex16* x, complex16* y) {
  sparse::csrgemv(transa, *m, a, ia, ja, x, y);
}

void dcsrmv(const char* transa, const core_int* m, const core_int* k, const double* alpha,
            const char* matdescra, const double* val, const int* indx, const int* pntrb, const int* pntre,
            const double* x, const double* beta, double* y) {
  sparse::csrmv(transa, *m, *k, *alpha, matdescra, val, indx, pntrb, pntre, x, *beta, y);
}
void zcsrmv(const char* transa, const core_int* m, const core_int* k, const complex16* alpha,
            const char* matdescra, const complex16* val, const int* indx, const int* pntrb, const int* pntre,
            const complex16* x, const complex16* beta, complex16* y) {
  sparse::csrmv(transa, *m, *k, *alpha, matdescra, val, indx, pntrb, pntre, x, *beta, y);
}

}  // namespace qel::core
