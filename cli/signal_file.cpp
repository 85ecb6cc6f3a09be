// SPDX-License-Identifier: BSD-3-Clause
#include "cli/signal_file.h"

#include <fmt/core.h>
#include <sndfile.h>

#include <cmath>
#include <cstring>
#include <fstream>
#include <memory>

#include "cli/matrix_market.h"
#include "cli/table.h"

namespace qel::cli {
namespace {

signal read_sound(const std::string& path, int channel) {
  SF_INFO info{};
  const std::unique_ptr<SNDFILE, int (*)(SNDFILE*)> file(sf_open(path.c_str(), SFM_READ, &info), sf_close);
  if (file == nullptr) throw file_error(path + ": " + sf_strerror(nullptr));
  if (channel < 1 || channel > info.channels)
    throw file_error(fmt::format("{}: channel {} of {}", path, channel, info.channels));
  const auto channels = static_cast<size_t>(info.channels);
  signal result;
  result.rate = info.samplerate;
  // By pieces: the number of frames in the header may be anything.
  std::vector<double> piece(4096 * channels);
  for (;;) {
    const sf_count_t frames = sf_readf_double(file.get(), piece.data(), 4096);
    if (frames <= 0) break;
    for (size_t k = 0; k < static_cast<size_t>(frames); ++k)
      result.samples.values.emplace_back(piece[k * channels + static_cast<size_t>(channel - 1)]);
  }
  result.samples.shape = {static_cast<int>(result.samples.values.size())};
  return result;
}

int find_either(const table& data, const char* name, const char* other) {
  const int found = data.find(name);
  return found >= 0 ? found : data.find(other);
}

/// Samples in a unit of time; 0 if the times are not evenly apart.
double rate_of(const std::vector<double>& times) {
  if (times.size() < 2) return 0;
  const double step = (times.back() - times.front()) / static_cast<double>(times.size() - 1);
  for (size_t k = 1; k < times.size(); ++k)
    if (!(std::fabs(times[k] - times[k - 1] - step) <= 1e-3 * std::fabs(step))) return 0;
  return step > 0 ? 1 / step : 0;
}

signal read_columns(const std::string& path, const std::string& column) {
  const table data = read_table(path);
  const int time = find_either(data, "t", "time"), real = find_either(data, "real", "re"),
            imag = find_either(data, "imag", "im");
  signal result;
  if (time >= 0) result.rate = rate_of(data.columns[static_cast<size_t>(time)]);
  int chosen = column.empty() ? real : data.find(column);
  result.samples.is_complex = column.empty() && real >= 0 && imag >= 0;
  for (int k = 0; column.empty() && real < 0 && k < static_cast<int>(data.names.size()); ++k) {
    if (k == time) continue;
    if (chosen >= 0) throw file_error(path + ": several columns of data: choose one by --column");
    chosen = k;
  }
  if (chosen < 0) throw file_error(path + ": no column " + (column.empty() ? "of data" : column));
  for (size_t k = 0; k < data.rows(); ++k) {
    result.samples.values.emplace_back(
        data.columns[static_cast<size_t>(chosen)][k],
        result.samples.is_complex ? data.columns[static_cast<size_t>(imag)][k] : 0.0);
  }
  result.samples.shape = {static_cast<int>(data.rows())};
  return result;
}

}  // namespace

signal read_signal(const std::string& path, const signal_choice& choice) {
  char head[12] = {};
  std::ifstream file(path, std::ios::binary);
  if (!file) throw file_error(path + ": cannot be read");
  file.read(head, sizeof head);
  if (std::memcmp(head, "\x93NUMPY", 6) == 0) return {read_npy(path), 0};
  const bool sound = (std::memcmp(head, "RIFF", 4) == 0 && std::memcmp(head + 8, "WAVE", 4) == 0) ||
                     std::memcmp(head, "RF64", 4) == 0 || std::memcmp(head, "fLaC", 4) == 0;
  return sound ? read_sound(path, choice.channel) : read_columns(path, choice.column);
}

void write_columns(const std::string& path, const std::string& name, const std::vector<double>& places,
                   const number_array& values) {
  std::ofstream file(path);
  file << name << (values.is_complex ? ",real,imag\n" : ",value\n");
  for (size_t k = 0; k < places.size(); ++k) {
    file << fmt::format("{:.17g},{:.17g}", places[k], values.values[k].real());
    if (values.is_complex) file << fmt::format(",{:.17g}", values.values[k].imag());
    file << '\n';
  }
  file.close();
  if (!file) throw file_error(path + ": cannot be written");
}

}  // namespace qel::cli
