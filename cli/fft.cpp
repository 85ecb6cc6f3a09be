// SPDX-License-Identifier: BSD-3-Clause
// qel fft: transforms the samples of a file.
#include <fmt/core.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <nlohmann/json.hpp>

#include "cli/commands.h"
#include "cli/descriptor.h"
#include "cli/matrix_market.h"
#include "cli/plot.h"
#include "cli/signal_file.h"

namespace qel::cli {
namespace {

size_t elements_of(const std::vector<int>& shape) {
  size_t count = 1;
  for (const int n : shape) count *= static_cast<size_t>(n);
  return count;
}

/// Offset 0 and the strides of a dense array.
std::vector<int> dense_strides(const std::vector<int>& shape) {
  std::vector<int> strides(shape.size() + 1);
  int step = 1;
  for (size_t d = shape.size(); d > 0; --d) {
    strides[d] = step;
    step *= shape[d - 1];
  }
  return strides;
}

struct task {
  std::vector<int> data_shape, spectrum_shape;
  bool real, inverse;
};

task make_task(const fft_options& options, const number_array& in) {
  if (in.shape.empty() || elements_of(in.shape) == 0) throw file_error(options.input + ": no samples");
  task result{in.shape, in.shape, options.real, options.inverse};
  if (!options.inverse) {
    if (options.real && in.is_complex) throw file_error(options.input + ": the data are complex");
    result.real = !in.is_complex && !options.complex;
    if (result.real) result.spectrum_shape.back() = in.shape.back() / 2 + 1;
    return result;
  }
  if (!result.real) return result;
  const int half = in.shape.back();
  result.data_shape.back() = options.length > 0 ? options.length : std::max(2 * (half - 1), 1);
  if (result.data_shape.back() / 2 + 1 != half)
    throw std::invalid_argument(fmt::format("length {} has {} frequencies, the data hold {}", options.length,
                                            options.length / 2 + 1, half));
  return result;
}

number_array transform(const task& what, const number_array& in, double* seconds) {
  descriptor made;
  const int dimension = static_cast<int>(what.data_shape.size());
  expect_done(DftiCreateDescriptor_d_md(&made.handle, what.real ? DFTI_REAL : DFTI_COMPLEX, dimension,
                                        what.data_shape.data()));
  const auto set = [&](int parameter, auto value) {
    expect_done(DftiSetValue(made.handle, parameter, value));
  };
  set(DFTI_PLACEMENT, int{DFTI_NOT_INPLACE});
  set(DFTI_BACKWARD_SCALE, 1 / static_cast<double>(elements_of(what.data_shape)));
  const std::vector<int> data = dense_strides(what.data_shape), spectrum = dense_strides(what.spectrum_shape);
  if (what.real) {
    set(DFTI_CONJUGATE_EVEN_STORAGE, int{DFTI_COMPLEX_COMPLEX});
    set(DFTI_INPUT_STRIDES, what.inverse ? spectrum.data() : data.data());
    set(DFTI_OUTPUT_STRIDES, what.inverse ? data.data() : spectrum.data());
  }
  expect_done(DftiCommitDescriptor(made.handle));

  number_array out;
  out.shape = what.inverse ? what.data_shape : what.spectrum_shape;
  out.is_complex = !(what.real && what.inverse);
  out.values.resize(elements_of(out.shape));
  std::vector<double> reals(what.real ? elements_of(what.data_shape) : 0);
  if (what.real && !what.inverse)
    std::transform(in.values.begin(), in.values.end(), reals.begin(), [](auto z) { return z.real(); });
  std::vector<std::complex<double>> given = in.values;
  const auto start = std::chrono::steady_clock::now();
  if (!what.real) {
    const auto compute = what.inverse ? DftiComputeBackward : DftiComputeForward;
    expect_done(compute(made.handle, given.data(), out.values.data()));
  } else if (what.inverse) {
    expect_done(DftiComputeBackward(made.handle, given.data(), reals.data()));
    std::copy(reals.begin(), reals.end(), out.values.begin());
  } else {
    expect_done(DftiComputeForward(made.handle, reals.data(), out.values.data()));
  }
  *seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  return out;
}

/// Places along one dimension: times or frequencies where the rate is known, else indices. The upper half of
/// a whole spectrum are the negative frequencies.
std::vector<double> places_of(const task& what, bool spectrum, double rate) {
  const int n = what.data_shape[0], count = spectrum ? what.spectrum_shape[0] : n;
  const double step = rate <= 0 ? 1 : spectrum ? rate / n : 1 / rate;
  std::vector<double> places;
  for (int k = 0; k < count; ++k) {
    const bool negative = spectrum && rate > 0 && 2 * k > n;
    places.push_back((negative ? k - n : k) * step);
  }
  return places;
}

void draw(const std::string& path, const std::vector<double>& places, const number_array& spectrum,
          const char* axis) {
  svg_plot picture(path);
  fmt::print(picture.stream(), "set xlabel '{}'\nset ylabel 'amplitude'\nset logscale y\nset format y '%g'\n",
             axis);
  fmt::print(picture.stream(), "plot '-' using 1:2 with lines lw 1.5 lc rgb '#1f5fa8' notitle\n");
  std::vector<std::pair<double, double>> points;
  for (size_t k = 0; k < places.size(); ++k) points.emplace_back(places[k], std::abs(spectrum.values[k]));
  std::sort(points.begin(), points.end());
  // A logarithmic axis has no place for 0, nor a picture for a spectrum of nothing else.
  double greatest = 0;
  for (const auto& point : points) greatest = std::max(greatest, point.second);
  const double floor = greatest > 0 ? greatest * 1e-16 : 1;
  for (const auto& [place, amplitude] : points)
    fmt::print(picture.stream(), "{:.17g} {:.17g}\n", place, std::max(amplitude, floor));
  fmt::print(picture.stream(), "e\n");
  picture.finish();
}

bool ends_with_csv(const std::string& path) {
  return path.size() > 4 && path.substr(path.size() - 4) == ".csv";
}

}  // namespace

int run_fft(const fft_options& options) {
  const signal in = read_signal(options.input, {options.column, options.channel});
  const task what = make_task(options, in.samples);
  const bool line = what.data_shape.size() == 1, csv = ends_with_csv(options.output);
  if (!line && csv) throw std::invalid_argument("a CSV file takes one dimension; write .npy");
  if (!line && !options.plot.empty()) throw std::invalid_argument("--plot draws one dimension");
  double seconds = 0;
  const number_array out = transform(what, in.samples, &seconds);
  if (csv) {
    const char* const name = what.inverse ? "t" : in.rate > 0 ? "frequency" : "k";
    write_columns(options.output, name, places_of(what, !what.inverse, in.rate), out);
  } else {
    write_npy(options.output, out);
  }
  const char* const domain = what.real ? "real" : "complex";
  const char* const way = what.inverse ? "backward" : "forward";
  if (options.json) {
    nlohmann::ordered_json json = {{"lengths", what.data_shape}, {"domain", domain},
                                   {"direction", way},           {"rate", in.rate},
                                   {"seconds", seconds},         {"output", options.output}};
    fmt::print("{}\n", json.dump(2));
  } else {
    fmt::print("data            {}\n", fmt::join(what.data_shape, " x "));
    if (in.rate > 0) fmt::print("rate            {:g}\n", in.rate);
    fmt::print("transform       {}, {}\ntime            {:.3g} s\nresult          {}\n", domain, way, seconds,
               options.output);
  }
  if (!options.plot.empty()) {
    draw(options.plot, places_of(what, true, in.rate), what.inverse ? in.samples : out,
         in.rate > 0 ? "frequency" : "k");
    if (!options.json) fmt::print("picture         {}\n", options.plot);
  }
  return kDone;
}

}  // namespace qel::cli
