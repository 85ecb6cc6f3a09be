// SPDX-License-Identifier: BSD-3-Clause
// Convolution of doubles beside an overlap-save written on FFTW (plans measured beforehand, blocks chosen
// likewise) and a plain double loop, both compiled for this machine; and QEL's sums beside its automatic
// choice.
#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "bench/support/compare.h"
#include "qel/conv.h"

namespace qel::bench {
namespace {

std::vector<double> random_numbers(int n, unsigned seed) {
  std::mt19937_64 random(seed);
  std::uniform_real_distribution<double> uniform(-1, 1);
  std::vector<double> v;
  for (int i = 0; i < n; ++i) v.push_back(uniform(random));
  return v;
}

[[gnu::noinline]] void plain_loop(const double* x, int nx, const double* y, int ny, double* w) {
  for (int t = 0; t < nx + ny - 1; ++t) w[t] = 0;
  for (int i = 0; i < ny; ++i)
    for (int k = 0; k < nx; ++k) w[i + k] += y[i] * x[k];
}

/// Overlap-save of the longer sequence x; everything that does not depend on the data is made once.
class fftw_convolution {
 public:
  fftw_convolution(const contender& library, const std::vector<double>& x, const std::vector<double>& y)
      : x_(x), taps_(static_cast<int>(y.size())) {
    while (length_ < 4 * taps_) length_ *= 2;
    if (length_ > 2 * static_cast<int>(x.size() + y.size())) length_ /= 2;
    const auto complex_count = static_cast<size_t>(length_) + 2;
    line_.resize(static_cast<size_t>(length_));
    spectrum_.resize(complex_count);
    taps_spectrum_.resize(complex_count);
    const auto make_forward = library.find<void*(int, double*, void*, unsigned)>("fftw_plan_dft_r2c_1d");
    const auto make_backward = library.find<void*(int, void*, double*, unsigned)>("fftw_plan_dft_c2r_1d");
    execute_ = library.find<void(void*)>("fftw_execute");
    constexpr unsigned kMeasure = 0;
    forward_ = make_forward(length_, line_.data(), spectrum_.data(), kMeasure);
    backward_ = make_backward(length_, spectrum_.data(), line_.data(), kMeasure);
    std::fill(line_.begin(), line_.end(), 0);
    std::copy(y.begin(), y.end(), line_.begin());
    execute_(forward_);
    taps_spectrum_ = spectrum_;
    for (double& value : taps_spectrum_) value /= length_;
  }
  void run(double* w) {
    const int overlap = taps_ - 1, step = length_ - overlap, n = static_cast<int>(x_.size());
    for (int done = 0; done < n + overlap; done += step) {
      for (int k = 0; k < length_; ++k) {
        const int at = done - overlap + k;
        line_[static_cast<size_t>(k)] = at >= 0 && at < n ? x_[static_cast<size_t>(at)] : 0;
      }
      execute_(forward_);
      for (size_t k = 0; k + 1 < spectrum_.size(); k += 2) {
        const double re = spectrum_[k] * taps_spectrum_[k] - spectrum_[k + 1] * taps_spectrum_[k + 1];
        spectrum_[k + 1] = spectrum_[k] * taps_spectrum_[k + 1] + spectrum_[k + 1] * taps_spectrum_[k];
        spectrum_[k] = re;
      }
      execute_(backward_);
      const int valid = std::min(step, n + overlap - done);
      std::memcpy(w + done, line_.data() + overlap, static_cast<size_t>(valid) * sizeof(double));
    }
  }

 private:
  const std::vector<double>& x_;
  int taps_, length_ = 2;
  std::vector<double> line_, spectrum_, taps_spectrum_;
  void (*execute_)(void*);
  void *forward_, *backward_;
};

void add(const std::string& name, const std::string& who, const std::function<void()>& once) {
  add_run(name, who, [once](benchmark::State& state) {
    for (auto _ : state) {
      once();
      benchmark::ClobberMemory();
    }
  });
}

struct case_data {
  std::vector<double> x, y, w;
  vsl_cc_task* task[2] = {};  ///< automatic, direct
};

void register_case(int nx, int ny) {
  const std::string name = "conv/" + std::to_string(nx) + "x" + std::to_string(ny);
  if (!is_wanted_case(name)) return;
  const contender& qel = contenders().front();
  const auto create = qel.find<decltype(vsldConvNewTaskX1D)>("vsldConvNewTaskX1D");
  const auto execute = qel.find<decltype(vsldConvExecX1D)>("vsldConvExecX1D");
  const auto data = std::make_shared<case_data>();
  data->x = random_numbers(nx, 1);
  data->y = random_numbers(ny, 2);
  data->w.resize(static_cast<size_t>(nx + ny - 1));
  for (int mode : {0, 1}) create(&data->task[mode], mode, nx, ny, nx + ny - 1, data->x.data(), 1);
  remember_case(name);
  add(name, kSubject, [=] { execute(data->task[0], data->y.data(), 1, data->w.data(), 1); });
  add(name, "QEL-sums", [=] { execute(data->task[1], data->y.data(), 1, data->w.data(), 1); });
  add(name, "loop", [=] { plain_loop(data->x.data(), nx, data->y.data(), ny, data->w.data()); });
  for (const contender& peer : contenders()) {
    if (peer.name() != "FFTW") continue;
    const auto fftw = std::make_shared<fftw_convolution>(peer, data->x, data->y);
    add(name, "FFTW", [=] { fftw->run(data->w.data()); });
  }
}

}  // namespace
}  // namespace qel::bench

int main(int argc, char** argv) {
  setenv("QEL_BENCH_PEERS", "FFTW=/usr/lib/x86_64-linux-gnu/libfftw3.so.3", 0);
  qel::bench::set_environment_defaults();
  for (const auto& [nx, ny] : {std::pair{64, 16},
                               {512, 32},
                               {448, 64},
                               {449, 64},
                               {512, 128},
                               {512, 512},
                               {4096, 48},
                               {4096, 128},
                               {4096, 1024},
                               {4096, 4096},
                               {65536, 32},
                               {65536, 63},
                               {65536, 64},
                               {65536, 256},
                               {65536, 4096},
                               {1000000, 1000}})
    qel::bench::register_case(nx, ny);
  return qel::bench::run_comparison(argc, argv);
}
