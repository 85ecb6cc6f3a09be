// SPDX-License-Identifier: BSD-3-Clause
// Fourier transforms beside FFTW, planned by estimate, by measuring or patiently (QEL_BENCH_FFTW: e, m, p or
// several of them; m if unset). Out of place, plans made beforehand. Names: z and c are complex, d and s real
// data of double and single precision. To hold the peer to 128 bits, preload a library whose
// fftw_have_simd_avx() and fftwf_have_simd_avx() return 0. OMP_NUM_THREADS is the threads of both (one team:
// both use the same OpenMP run time).
#include <fmt/core.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <cmath>
#include <complex>
#include <cstdlib>
#include <numeric>
#include <random>
#include <string>
#include <vector>

#include "bench/support/compare.h"
#include "qel/dfti.h"

namespace qel::bench {
namespace {

/// One case: count transforms of the lengths; interleaved: element by element, else one after the other.
struct fft_case {
  std::vector<int> lengths;
  bool real = false;
  int count = 1;
  bool interleaved = false;

  double elements() const {
    return std::accumulate(lengths.begin(), lengths.end(), 1.0, std::multiplies<>());
  }
  double flops() const { return (real ? 2.5 : 5.0) * elements() * std::log2(elements()) * count; }
  std::size_t reals_of_input() const { return static_cast<std::size_t>(elements() * count) * (real ? 1 : 2); }
  std::size_t reals_of_output() const {
    if (!real) return reals_of_input();
    return static_cast<std::size_t>(elements() / lengths.back() * (lengths.back() / 2 + 1) * count) * 2;
  }
};

template <class R>
std::vector<R> random_reals(std::size_t count) {
  std::mt19937_64 generator(1);
  std::uniform_real_distribution<double> uniform(-1, 1);
  std::vector<R> values(count);
  for (R& value : values) value = static_cast<R>(uniform(generator));
  return values;
}

/// QEL's entries.
struct qel_entries {
  decltype(&DftiCreateDescriptor) create;
  decltype(&DftiSetValue) set;
  decltype(&DftiCommitDescriptor) commit;
  decltype(&DftiComputeForward) forward;
  decltype(&DftiFreeDescriptor) release;
  explicit qel_entries(const contender& from)
      : create(from.find<decltype(DftiCreateDescriptor)>("DftiCreateDescriptor")),
        set(from.find<decltype(DftiSetValue)>("DftiSetValue")),
        commit(from.find<decltype(DftiCommitDescriptor)>("DftiCommitDescriptor")),
        forward(from.find<decltype(DftiComputeForward)>("DftiComputeForward")),
        release(from.find<decltype(DftiFreeDescriptor)>("DftiFreeDescriptor")) {}
};

template <class R>
DFTI_DESCRIPTOR_HANDLE make_descriptor(const qel_entries& qel, const fft_case& c) {
  DFTI_DESCRIPTOR_HANDLE handle = nullptr;
  const int precision = sizeof(R) == sizeof(double) ? DFTI_DOUBLE : DFTI_SINGLE;
  const int domain = c.real ? DFTI_REAL : DFTI_COMPLEX, dimension = static_cast<int>(c.lengths.size());
  if (dimension == 1) {
    qel.create(&handle, precision, domain, 1, c.lengths[0]);
  } else {
    qel.create(&handle, precision, domain, dimension, c.lengths.data());
  }
  qel.set(handle, DFTI_PLACEMENT, DFTI_NOT_INPLACE);
  std::vector<int> strides(c.lengths.size() + 1);
  int step = 1;
  for (std::size_t i = c.lengths.size(); i > 0; --i) {
    strides[i] = step;
    step *= i == c.lengths.size() && c.real ? c.lengths.back() / 2 + 1 : c.lengths[i - 1];
  }
  if (c.real) {
    qel.set(handle, DFTI_CONJUGATE_EVEN_STORAGE, DFTI_COMPLEX_COMPLEX);
    qel.set(handle, DFTI_OUTPUT_STRIDES, strides.data());
  }
  if (c.count > 1) {
    qel.set(handle, DFTI_NUMBER_OF_TRANSFORMS, c.count);
    const int side_by_side[] = {0, c.count};
    for (const int side : {DFTI_INPUT_STRIDES, DFTI_OUTPUT_STRIDES}) {
      if (c.interleaved) qel.set(handle, side, side_by_side);
    }
    qel.set(handle, DFTI_INPUT_DISTANCE, c.interleaved ? 1 : static_cast<int>(c.elements()));
    qel.set(handle, DFTI_OUTPUT_DISTANCE, c.interleaved ? 1 : step);
  }
  if (qel.commit(handle) != DFTI_NO_ERROR) std::exit(1);
  return handle;
}

/// FFTW's entries of one precision.
template <class R>
struct fftw_entries {
  using complex_plan = void*(int rank, const int* n, int howmany, R* in, const int* inembed, int istride,
                             int idist, R* out, const int* onembed, int ostride, int odist, int sign,
                             unsigned flags);
  using real_plan = void*(int rank, const int* n, int howmany, R* in, const int* inembed, int istride,
                          int idist, R* out, const int* onembed, int ostride, int odist, unsigned flags);
  complex_plan* plan_complex;
  real_plan* plan_real;
  void (*execute)(void*);
  void (*destroy)(void*);
  explicit fftw_entries(const contender& from) {
    const std::string prefix = sizeof(R) == sizeof(double) ? "fftw_" : "fftwf_";
    plan_complex = from.find<complex_plan>((prefix + "plan_many_dft").c_str());
    plan_real = from.find<real_plan>((prefix + "plan_many_dft_r2c").c_str());
    execute = from.find<void(void*)>((prefix + "execute").c_str());
    destroy = from.find<void(void*)>((prefix + "destroy_plan").c_str());
    // Of the library with threads only.
    const auto start_threads = from.find<int()>((prefix + "init_threads").c_str());
    const auto set_threads = from.find<void(int)>((prefix + "plan_with_nthreads").c_str());
    if (start_threads != nullptr && set_threads != nullptr) {
      start_threads();
      set_threads(std::max(1, std::atoi(std::getenv("OMP_NUM_THREADS"))));
    }
  }
};

template <class R>
void* make_plan(const fftw_entries<R>& fftw, const fft_case& c, R* in, R* out, unsigned flags) {
  const int rank = static_cast<int>(c.lengths.size()), stride = c.interleaved ? c.count : 1;
  const int in_distance = c.interleaved ? 1 : static_cast<int>(c.elements());
  const int out_distance = c.interleaved ? 1 : static_cast<int>(c.reals_of_output() / 2) / c.count;
  if (c.real) {
    return fftw.plan_real(rank, c.lengths.data(), c.count, in, nullptr, stride, in_distance, out, nullptr,
                          stride, out_distance, flags);
  }
  return fftw.plan_complex(rank, c.lengths.data(), c.count, in, nullptr, stride, in_distance, out, nullptr,
                           stride, out_distance, -1, flags);
}

template <class Body>
void add(const std::string& name, const std::string& contender_name, const fft_case& c, Body body) {
  add_run(name, contender_name, [=](benchmark::State& state) {
    body(state);
    state.counters["flop/s"] = benchmark::Counter(c.flops(), benchmark::Counter::kIsIterationInvariantRate);
  });
}

template <class R>
void compare_case(const fft_case& c, const std::string& kind) {
  constexpr bool kDouble = sizeof(R) == sizeof(double);
  const char letter = c.real ? (kDouble ? 'd' : 's') : (kDouble ? 'z' : 'c');
  std::string name = fmt::format("{}/{}/{}", kind, letter, fmt::join(c.lengths, "x"));
  if (c.count > 1) name = fmt::format("{}{}{}", name, c.interleaved ? 'i' : '*', c.count);
  if (!is_wanted_case(name)) return;
  remember_case(name);
  const std::vector<contender>& all = contenders();
  add(name, kSubject, c, [c, qel = qel_entries(all[0])](benchmark::State& state) {
    std::vector<R> in = random_reals<R>(c.reals_of_input()), out(c.reals_of_output() + 16);
    DFTI_DESCRIPTOR_HANDLE handle = make_descriptor<R>(qel, c);
    for (auto _ : state) {
      qel.forward(handle, in.data(), out.data());
      benchmark::ClobberMemory();
    }
    qel.release(&handle);
  });
  const std::string efforts = std::getenv("QEL_BENCH_FFTW") != nullptr ? std::getenv("QEL_BENCH_FFTW") : "m";
  constexpr struct {
    char letter;
    const char* name;
    unsigned flags;
  } kEfforts[] = {{'e', "FFTW-estimate", 64}, {'m', "FFTW-measure", 0}, {'p', "FFTW-patient", 32}};
  for (const contender& peer : all) {
    if (peer.name() != (kDouble ? "FFTW" : "FFTWf")) continue;
    for (const auto& effort : kEfforts) {
      if (efforts.find(effort.letter) == std::string::npos) continue;
      add(name, effort.name, c, [c, fftw = fftw_entries<R>(peer), effort](benchmark::State& state) {
        std::vector<R> in(c.reals_of_input()), out(c.reals_of_output() + 16);
        void* plan = make_plan<R>(fftw, c, in.data(), out.data(), effort.flags);
        // Planning writes to the arrays, and the plan keeps their addresses.
        const std::vector<R> values = random_reals<R>(in.size());
        std::copy(values.begin(), values.end(), in.begin());
        fftw.execute(plan);
        for (auto _ : state) {
          fftw.execute(plan);
          benchmark::ClobberMemory();
        }
        fftw.destroy(plan);
      });
    }
  }
}

template <class R>
void register_precision() {
  for (int n = 2; n <= 64; ++n) compare_case<R>({{n}}, "small");
  for (int order = 7; order <= 22; ++order) compare_case<R>({{1 << order}}, "pow2");
  for (const int n :
       {96,   100,  120,  144,  180,  240,  243,  360,   480,   500,   625,   720,   840,    1000,   1280,
        1920, 2187, 2520, 3125, 3600, 5040, 7200, 10000, 16807, 30030, 46080, 65520, 100000, 250000, 1000000})
    compare_case<R>({{n}}, "smooth");
  for (const int n :
       {67, 97, 101, 127, 151, 211, 257, 401, 509, 1009, 2003, 4001, 10007, 65537, 100003, 1000003})
    compare_case<R>({{n}}, "prime");
  for (int order = 4; order <= 20; order += 2) compare_case<R>({{1 << order}, true}, "rpow2");
  for (const int n : {60, 100, 360, 1000, 1920, 5040, 10000, 100000}) compare_case<R>({{n}, true}, "rsmooth");
  for (const int n : {45, 105, 243, 625, 1155, 2187, 15015, 101, 1009}) compare_case<R>({{n}, true}, "rodd");
  for (const int n : {64, 100, 128, 256, 512, 1000, 1024, 2048}) compare_case<R>({{n, n}}, "2d");
  for (const int n : {64, 256, 512, 1024, 2048}) compare_case<R>({{n, n}, true}, "r2d");
  for (const int n : {32, 64, 100, 128, 256}) compare_case<R>({{n, n, n}}, "3d");
  for (const int n : {32, 64, 128}) compare_case<R>({{n, n, n}, true}, "r3d");
  for (const bool interleaved : {false, true}) compare_case<R>({{256}, false, 1000, interleaved}, "batch");
  compare_case<R>({{256}, true, 1000, false}, "rbatch");
}

}  // namespace
}  // namespace qel::bench

int main(int argc, char** argv) {
  setenv(
      "QEL_BENCH_PEERS",
      "FFTW=/usr/lib/x86_64-linux-gnu/libfftw3_omp.so.3:FFTWf=/usr/lib/x86_64-linux-gnu/libfftw3f_omp.so.3",
      0);
  qel::bench::register_precision<double>();
  qel::bench::register_precision<float>();
  return qel::bench::run_comparison(argc, argv);
}
