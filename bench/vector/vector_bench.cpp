// SPDX-License-Identifier: BSD-3-Clause
// Vector math beside plain loops of this machine and a copy, in bytes per second; uniform numbers beside the
// standard library's and beside fills with a constant, into and past the caches.
#include <map>
#include <memory>
#include <string>

#include "bench/support/compare.h"
#include "bench/vector/plain_loops.h"
#include "qel/rng.h"

namespace qel::bench {
namespace {

struct release {
  void operator()(double* p) const { std::free(p); }
};
std::unique_ptr<double, release> numbers(int n) {
  auto* memory =
      static_cast<double*>(std::aligned_alloc(64, (static_cast<size_t>(n) * sizeof(double) + 63) / 64 * 64));
  for (int i = 0; i < n; ++i) memory[i] = 1 + 1.0 / (i + 1);
  return std::unique_ptr<double, release>(memory);
}

/// All contenders of a length work on the same arrays: where these lie, a page more or less, tells in the
/// time.
struct arrays {
  explicit arrays(int n) : a(numbers(n)), b(numbers(n)), r(numbers(n)) {}
  std::unique_ptr<double, release> a, b, r;
};
const arrays& arrays_of(int n) {
  static std::map<int, arrays> all;
  return all.try_emplace(n, n).first->second;
}

void add(const std::string& case_name, const std::string& contender_name, double bytes,
         const std::function<void(benchmark::State&)>& body) {
  add_run(case_name, contender_name, [=](benchmark::State& state) {
    body(state);
    state.counters["byte/s"] = benchmark::Counter(bytes, benchmark::Counter::kIsIterationInvariantRate);
  });
}

void add_arithmetic(const std::string& name, const std::string& who, vector_fn* function, int n, int count) {
  add(name, who, 8.0 * n * count, [=](benchmark::State& state) {
    const arrays& own = arrays_of(n);
    for (auto _ : state) {
      function(n, own.a.get(), own.b.get(), own.r.get());
      benchmark::ClobberMemory();
    }
  });
}

void add_fill(const std::string& name, const std::string& who, int n,
              const std::function<void(int, double*)>& fill) {
  add(name, who, 8.0 * n, [=](benchmark::State& state) {
    const arrays& own = arrays_of(n);
    for (auto _ : state) {
      fill(n, own.r.get());
      benchmark::ClobberMemory();
    }
  });
}

void register_all() {
  const contender& subject = contenders().front();
  auto* uniform = subject.find<decltype(vdRngUniform)>("vdRngUniform");
  static qel_random_stream_handle stream;
  subject.find<decltype(vslNewStream)>("vslNewStream")(&stream, QEL_BRNG_R250, 1);
  const struct {
    const char* symbol;
    vector_fn* plain;
  } routines[] = {{"vdDiv", plain_div}, {"vdMul", plain_mul}, {"vdSub", plain_sub}};
  // 103: with a rest that fills no register.
  for (const int n : {16, 100, 103, 1000, 10000, 100000, 1000000, 10000000}) {
    const std::string size = "/n:" + std::to_string(n);
    for (const auto& routine : routines) {
      remember_case(routine.symbol + size);
      add_arithmetic(routine.symbol + size, kSubject, subject.find<vector_fn>(routine.symbol), n, 3);
      add_arithmetic(routine.symbol + size, "plain", routine.plain, n, 3);
      add_arithmetic(routine.symbol + size, "copy", plain_copy, n, 2);
    }
    remember_case("uniform" + size);
    add_fill("uniform" + size, kSubject, n,
             [uniform](int length, double* r) { uniform(0, stream, length, r, 0, 1); });
    add_fill("uniform" + size, "standard", n, standard_uniform);
    add_fill("uniform" + size, "constant", n, constant_fill);
    add_fill("uniform" + size, "past-caches", n, constant_fill_past_caches);
  }
}

}  // namespace
}  // namespace qel::bench

int main(int argc, char** argv) {
  qel::bench::register_all();
  return qel::bench::run_comparison(argc, argv);
}
