// SPDX-License-Identifier: BSD-3-Clause
#include "cli/plot.h"

#include <fmt/core.h>

namespace qel::cli {

std::string quoted(const std::string& text) {
  std::string result = "'";
  for (const char c : text) result += c == '\'' ? std::string("''") : std::string(1, c);
  return result + "'";
}

svg_plot::svg_plot(const std::string& path) : path_(path), stream_(popen("gnuplot 2>&1 >/dev/null", "w")) {
  if (stream_ == nullptr) throw plot_error("--plot needs gnuplot");
  fmt::print(stream_, "set terminal svg size 800,500 enhanced font 'sans,12' background '#ffffff'\n");
  fmt::print(stream_, "set output {}\nset grid\nset key top right\n", quoted(path));
}

svg_plot::~svg_plot() {
  if (stream_ != nullptr) pclose(stream_);
}

void svg_plot::finish() {
  const int status = pclose(stream_);
  stream_ = nullptr;
  if (status != 0) throw plot_error("gnuplot could not draw " + path_ + " (package gnuplot-nox)");
}

}  // namespace qel::cli
