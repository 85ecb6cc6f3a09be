// SPDX-License-Identifier: BSD-3-Clause
// Pictures by gnuplot, as SVG files.
#pragma once

#include <cstdio>
#include <stdexcept>
#include <string>

namespace qel::cli {

class plot_error : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// text as a string of gnuplot's, with quotes.
std::string quoted(const std::string& text);

/// A gnuplot at work on one picture: commands and data go to stream(), finish() sees that it could draw.
class svg_plot {
 public:
  explicit svg_plot(const std::string& path);
  ~svg_plot();
  svg_plot(const svg_plot&) = delete;
  svg_plot& operator=(const svg_plot&) = delete;
  std::FILE* stream() const { return stream_; }
  /// Throws plot_error.
  void finish();

 private:
  std::string path_;
  std::FILE* stream_;
};

}  // namespace qel::cli
