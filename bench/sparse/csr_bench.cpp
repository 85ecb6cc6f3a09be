// SPDX-License-Identifier: BSD-3-Clause
// CSR matrices beside Eigen (row-major, its products threaded by OpenMP) and a plain loop, both compiled for
// this machine: products with a vector, sums, sparse products. Matrices: grids of 5 and 7 points, random
// columns, and rows whose lengths follow a power law. The ratio to "stream" is the share of the bandwidth
// that a product has of what reading its operands in order has: the same arrays, on as many threads. Bytes
// count 12 for an entry and 20 for a row (its start, x, y); lines of y that are fetched to be written count
// for neither. "elements" does the same but reads x (for mirrored rows y, too) at the columns, in any order:
// where columns are random, that is what the caches allow. Of the triangles grid3d:80 half stays in a last
// cache of 32 MiB, grid3d:100 doesn't.
#include <Eigen/Sparse>
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <functional>
#include <memory>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "bench/support/compare.h"
#include "qel/sparse.h"

namespace qel::bench {
namespace {

using sparse = Eigen::SparseMatrix<double, Eigen::RowMajor, int>;
using vector = Eigen::VectorXd;

sparse from_lists(int n, std::vector<Eigen::Triplet<double>> entries) {
  sparse a(n, n);
  a.setFromTriplets(entries.begin(), entries.end());
  a.makeCompressed();
  return a;
}
/// Grid of side^dimensions points, each tied to its neighbours.
sparse grid(int side, int dimensions) {
  const int n = static_cast<int>(std::lround(std::pow(side, dimensions)));
  std::vector<Eigen::Triplet<double>> entries;
  for (int i = 0; i < n; ++i) {
    entries.emplace_back(i, i, 2.0 * dimensions);
    for (int d = 0, step = 1; d < dimensions; ++d, step *= side) {
      if (i / step % side > 0) entries.emplace_back(i, i - step, -1.0);
      if (i / step % side < side - 1) entries.emplace_back(i, i + step, -1.0);
    }
  }
  return from_lists(n, entries);
}
sparse random_columns(int n, int per_row) {
  std::mt19937 random(1);
  std::vector<Eigen::Triplet<double>> entries;
  for (int i = 0; i < n; ++i) {
    entries.emplace_back(i, i, 4.0);
    for (int k = 1; k < per_row; ++k)
      entries.emplace_back(i, static_cast<int>(random() % static_cast<unsigned>(n)), 0.5);
  }
  return from_lists(n, entries);
}
/// Row i has about n / (i + 1) entries more than the others; columns are as unequal.
sparse power_law(int n) {
  std::mt19937 random(2);
  std::uniform_real_distribution<double> uniform(0, 1);
  std::vector<Eigen::Triplet<double>> entries;
  for (int i = 0; i < n; ++i) {
    entries.emplace_back(i, i, 4.0);
    const int count = 3 + std::min(n / (i + 1), n / 4);
    for (int k = 0; k < count; ++k) {
      const int j = static_cast<int>(std::pow(uniform(random), 3) * n);
      entries.emplace_back(i, std::min(j, n - 1), 0.5);
    }
  }
  return from_lists(n, entries);
}

/// Eigen's own arrays, from 0: where pages lie makes a tenth of a product from a cache.
struct csr_view {
  std::shared_ptr<const sparse> owner;
  int n;
  const int *ia, *ja;
  const double* a;
  explicit csr_view(std::shared_ptr<const sparse> m)
      : owner(std::move(m)),
        n(static_cast<int>(owner->rows())),
        ia(owner->outerIndexPtr()),
        ja(owner->innerIndexPtr()),
        a(owner->valuePtr()) {}
};
/// The same counted from 1, as sums and products of two matrices take them.
struct one_based {
  int n;
  std::vector<int> ia, ja;
  std::vector<double> a;
  explicit one_based(const sparse& m) : n(static_cast<int>(m.rows())) {
    for (int i = 0; i <= n; ++i) ia.push_back(m.outerIndexPtr()[i] + 1);
    for (int p = 0; p < ia.back() - 1; ++p) {
      ja.push_back(m.innerIndexPtr()[p] + 1);
      a.push_back(m.valuePtr()[p]);
    }
  }
};

using work = std::function<void()>;
void add(const std::string& name, const char* contender, work_per_call per_call, const work& once) {
  add_run(name, contender, [=](benchmark::State& state) {
    for (auto _ : state) {
      once();
      benchmark::ClobberMemory();
    }
    const auto rate = benchmark::Counter::kIsIterationInvariantRate;
    if (per_call.bytes > 0) state.counters["byte/s"] = benchmark::Counter(per_call.bytes, rate);
  });
}

[[gnu::noinline]] void plain_product(int n, const int* ia, const int* ja, const double* a, const double* x,
                                     double* y) {
  for (int i = 0; i < n; ++i) {
    double sum = 0;
    for (int p = ia[i]; p < ia[i + 1]; ++p) sum += a[p] * x[ja[p]];
    y[i] = sum;
  }
}
[[gnu::noinline]] void plain_triangle(int n, const int* ia, const int* ja, const double* a, const double* x,
                                      double* y) {
  for (int i = 0; i < n; ++i) {
    double sum = 0;
    for (int p = ia[i]; p < ia[i + 1]; ++p)
      if (ja[p] <= i) sum += a[p] * x[ja[p]];
    y[i] = sum;
  }
}
[[gnu::noinline]] void plain_symmetric(int n, const int* ia, const int* ja, const double* a, const double* x,
                                       double* y) {
  for (int i = 0; i < n; ++i) y[i] = 0;
  for (int i = 0; i < n; ++i) {
    double sum = 0;
    for (int p = ia[i]; p < ia[i + 1]; ++p) {
      sum += a[p] * x[ja[p]];
      if (ja[p] < i) y[ja[p]] += a[p] * x[i];
    }
    y[i] += sum;
  }
}

// Words of any array: their sums wait for one another less than those of real numbers do.
using word [[gnu::may_alias]] = std::uint64_t;
struct words {
  const word* data;
  std::ptrdiff_t count;
};
template <class T>
words words_of(const T* data, std::ptrdiff_t count) {
  constexpr std::ptrdiff_t kPerWord = sizeof(word) / sizeof(T);
  return {reinterpret_cast<const word*>(data), count / kPerWord};
}
/// All that a product must read and write, each once: what memory and caches allow. x in order or at the
/// columns, of mirrored rows y at the columns, too.
enum class reading { kInOrder, kAtColumns, kBothAtColumns };
template <reading kReading>
[[gnu::noinline]] void stream(const csr_view& a, const double* x, double* y) {
  constexpr bool kAtColumns = kReading != reading::kInOrder, kBoth = kReading == reading::kBothAtColumns;
  const std::ptrdiff_t entries = a.ia[a.n], n = a.n;
  const words parts[] = {words_of(a.a, kAtColumns ? 0 : entries), words_of(a.ja, kAtColumns ? 0 : entries),
                         words_of(a.ia, n), words_of(x, kAtColumns ? 0 : n)};
  const word* const values = words_of(a.a, entries).data;
  const word *const elements = words_of(x, n).data, *const results = words_of(y, n).data;
  const int* const columns = a.ja;
  word sum = 0;
#pragma omp parallel reduction(+ : sum)
  {
    for (const auto& [data, count] : parts) {
#pragma omp for simd nowait
      for (std::ptrdiff_t p = 0; p < count; ++p) sum += data[p];
    }
    if constexpr (kAtColumns) {
      // Together, as products read them. In eights without the last ones: a compiler vectorises them or not.
#pragma omp for nowait
      for (std::ptrdiff_t p = 0; p < entries / 8; ++p) {
        word eight = 0;
        for (std::ptrdiff_t k = 8 * p; k < 8 * p + 8; ++k)
          eight += values[k] + elements[columns[k]] + (kBoth ? results[columns[k]] : 0);
        sum += eight;
      }
    }
#pragma omp for simd nowait
    for (std::ptrdiff_t i = 0; i < n; ++i) y[i] = 1;
  }
  benchmark::DoNotOptimize(sum);
}

struct vectors {
  vector x, y;
  explicit vectors(Eigen::Index n) : x(vector::Random(n)), y(vector::Zero(n)) {}
};

void vector_cases(const std::string& pattern, const std::shared_ptr<sparse>& m) {
  using csrmv = decltype(qel_dcsrmv);
  const auto lower = std::make_shared<sparse>(m->triangularView<Eigen::Lower>());
  const csr_view whole_view(m), lower_view(lower);
  const auto v = std::make_shared<vectors>(m->rows());
  const int n = whole_view.n;
  const double nonzeros = static_cast<double>(m->nonZeros()),
               lower_nonzeros = static_cast<double>(lower->nonZeros());
  const work_per_call whole{0, 12 * nonzeros + 20.0 * n}, half{0, 12 * lower_nonzeros + 20.0 * n};
  const auto call = [v, n](csrmv* multiply, const char* transa, const char* description, const csr_view& a) {
    const double one = 1, zero = 0;
    multiply(transa, &n, &n, &one, description, a.a, a.ja, a.ia, a.ia + 1, v->x.data(), &zero, v->y.data());
  };
  const auto start_case = [=](const std::string& name, work_per_call per_call, const csr_view& a,
                              const char* transa, const char* description) {
    remember_case(name);
    // Another build of the library may take part as a peer.
    for (const contender& one : contenders()) {
      if (csrmv* const multiply = one.find<csrmv>("qel_dcsrmv"))
        add(name, one.name().c_str(), per_call, [=] { call(multiply, transa, description, a); });
    }
    add(name, "stream", per_call, [=] { stream<reading::kInOrder>(a, v->x.data(), v->y.data()); });
  };
  const auto add_elements = [=](const std::string& name, work_per_call per_call, auto read,
                                const csr_view& a) {
    if (pattern.starts_with("grid")) return;  // x comes in order there
    add(name, "elements", per_call, [=] { read(a, v->x.data(), v->y.data()); });
  };
  std::string name = "csrmv/general/" + pattern;
  start_case(name, whole, whole_view, "N", "GLNC");
  add(name, "Eigen", whole, [=] { v->y.noalias() = *m * v->x; });
  add(name, "loop", whole, [=] {
    plain_product(n, m->outerIndexPtr(), m->innerIndexPtr(), m->valuePtr(), v->x.data(), v->y.data());
  });
  add_elements(name, whole, stream<reading::kAtColumns>, whole_view);
  name = "csrmv/transposed/" + pattern;
  start_case(name, whole, whole_view, "T", "GLNC");
  add(name, "Eigen", whole, [=] { v->y.noalias() = m->transpose() * v->x; });
  name = "csrmv/symmetric/" + pattern;
  start_case(name, half, lower_view, "N", "SLNC");
  add(name, "Eigen", half, [=] { v->y.noalias() = lower->selfadjointView<Eigen::Lower>() * v->x; });
  add(name, "loop", half, [=] {
    plain_symmetric(n, lower->outerIndexPtr(), lower->innerIndexPtr(), lower->valuePtr(), v->x.data(),
                    v->y.data());
  });
  add_elements(name, half, stream<reading::kBothAtColumns>, lower_view);
  name = "csrmv/triangle/" + pattern;
  start_case(name, whole, whole_view, "N", "TLNC");
  add(name, "Eigen", whole, [=] { v->y.noalias() = m->triangularView<Eigen::Lower>() * v->x; });
  add(name, "loop", whole, [=] {
    plain_triangle(n, m->outerIndexPtr(), m->innerIndexPtr(), m->valuePtr(), v->x.data(), v->y.data());
  });
  add_elements(name, whole, stream<reading::kAtColumns>, whole_view);
}

/// What a caller does for a result of unknown size: count, allocate, fill. Eigen allocates, too, and like
/// here sets nothing to zero.
struct sparse_result {
  std::unique_ptr<int[]> ic, jc;
  std::unique_ptr<double[]> c;
};

void matrix_cases(const std::string& pattern, const std::shared_ptr<sparse>& m) {
  using csradd = decltype(qel_dcsradd);
  using csrmult = decltype(qel_dcsrmultcsr);
  csradd* const sum = contenders().front().find<csradd>("qel_dcsradd");
  csrmult* const product = contenders().front().find<csrmult>("qel_dcsrmultcsr");
  const auto a = std::make_shared<one_based>(*m);
  const auto other = std::make_shared<sparse>(m->transpose());
  const auto b = std::make_shared<one_based>(*other);
  const int n = a->n;
  const auto twice = [n](auto run) {
    sparse_result r;
    r.ic = std::make_unique_for_overwrite<int[]>(static_cast<size_t>(n) + 1);
    run(1, r);
    const auto entries = static_cast<size_t>(r.ic[n]) - 1;
    r.jc = std::make_unique_for_overwrite<int[]>(entries);
    r.c = std::make_unique_for_overwrite<double[]>(entries);
    run(2, r);
    benchmark::DoNotOptimize(r.c.get());
  };
  std::string name = "csradd/" + pattern;
  remember_case(name);
  add(name, kSubject, {}, [=] {
    twice([&](int request, sparse_result& r) {
      const int sort = 0, nzmax = 0;
      const double beta = 2;
      int info;
      sum("N", &request, &sort, &n, &n, a->a.data(), a->ja.data(), a->ia.data(), &beta, b->a.data(),
          b->ja.data(), b->ia.data(), r.c.get(), r.jc.get(), r.ic.get(), &nzmax, &info);
    });
  });
  add(name, "Eigen", {}, [=] {
    sparse c = *m + 2.0 * *other;
    benchmark::DoNotOptimize(c.valuePtr());
  });
  name = "csrmultcsr/" + pattern;
  remember_case(name);
  add(name, kSubject, {}, [=] {
    twice([&](int request, sparse_result& r) {
      const int sort = 0, nzmax = 0;
      int info;
      product("N", &request, &sort, &n, &n, &n, a->a.data(), a->ja.data(), a->ia.data(), b->a.data(),
              b->ja.data(), b->ia.data(), r.c.get(), r.jc.get(), r.ic.get(), &nzmax, &info);
    });
  });
  add(name, "Eigen", {}, [=] {
    sparse c = *m * *other;
    benchmark::DoNotOptimize(c.valuePtr());
  });
}

/// The memory bandwidth that the products are held against: sum of a large array.
void bandwidth_case() {
  const auto data = std::make_shared<vector>(vector::Ones(16 << 20));
  const std::string name = "read/128MB";
  remember_case(name);
  add(name, kSubject, {0, 8.0 * static_cast<double>(data->size())}, [=] {
    const double* const p = data->data();
    const Eigen::Index size = data->size();
    double total = 0;
#pragma omp parallel for simd reduction(+ : total)
    for (Eigen::Index i = 0; i < size; ++i) total += p[i];
    benchmark::DoNotOptimize(total);
  });
}

void register_cases() {
  bandwidth_case();
  const std::pair<const char*, sparse (*)()> patterns[] = {
      {"grid2d:100", [] { return grid(100, 2); }},
      {"grid2d:300", [] { return grid(300, 2); }},
      {"grid2d:1000", [] { return grid(1000, 2); }},
      {"grid3d:20", [] { return grid(20, 3); }},
      {"grid3d:40", [] { return grid(40, 3); }},
      {"grid3d:80", [] { return grid(80, 3); }},
      {"grid3d:100", [] { return grid(100, 3); }},
      {"random:5000", [] { return random_columns(5000, 20); }},
      {"random:40000", [] { return random_columns(40000, 20); }},
      {"random:300000", [] { return random_columns(300000, 20); }},
      {"power:3000", [] { return power_law(3000); }},
      {"power:20000", [] { return power_law(20000); }},
      {"power:100000", [] { return power_law(100000); }}};
  constexpr const char* kVectorCases[] = {"csrmv/general/", "csrmv/transposed/", "csrmv/symmetric/",
                                          "csrmv/triangle/"};
  constexpr const char* kMatrixCases[] = {"csradd/", "csrmultcsr/"};
  for (const auto& [name, make] : patterns) {
    const auto wanted = [&pattern = name](const char* of) {
      return is_wanted_case(std::string(of) + pattern);
    };
    const bool vectors_wanted = std::any_of(std::begin(kVectorCases), std::end(kVectorCases), wanted),
               matrices_wanted = std::any_of(std::begin(kMatrixCases), std::end(kMatrixCases), wanted);
    if (!vectors_wanted && !matrices_wanted) continue;
    const auto matrix = std::make_shared<sparse>(make());
    if (vectors_wanted) vector_cases(name, matrix);
    if (matrices_wanted && matrix->nonZeros() < 4000000 && std::string(name) != "power:100000")
      matrix_cases(name, matrix);
  }
}

}  // namespace
}  // namespace qel::bench

int main(int argc, char** argv) {
  qel::bench::set_environment_defaults();
  qel::bench::register_cases();
  return qel::bench::run_comparison(argc, argv);
}
