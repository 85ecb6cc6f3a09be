// SPDX-License-Identifier: BSD-3-Clause
#include "cli/spy.h"

#include <fmt/core.h>

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstring>
#include <fstream>

#include "cli/matrix_market.h"

namespace qel::cli {
namespace {

constexpr int kMostCells = 200;

}  // namespace

pattern_picture::pattern_picture(std::string title, int n)
    : title_(std::move(title)),
      n_(n),
      cells_(std::min(n, kMostCells)),
      filled_(static_cast<size_t>(cells_) * static_cast<size_t>(cells_)) {}

void pattern_picture::add(int row, int first, int last) {
  const auto cell_of = [this](long at) { return static_cast<int>(at * cells_ / n_); };
  // The first entry of a cell.
  const auto start_of = [this](long cell) { return static_cast<int>((cell * n_ + cells_ - 1) / cells_); };
  double* const line = filled_.data() + static_cast<size_t>(cell_of(row)) * static_cast<size_t>(cells_);
  for (int cell = cell_of(first); cell <= cell_of(last); ++cell) {
    const int from = std::max(first, start_of(cell)), to = std::min(last + 1, start_of(cell + 1));
    line[cell] += to - from;
  }
}

std::string pattern_picture::svg(double x, double y) const {
  const double side = kPictureSide / cells_;
  const double places = static_cast<double>(n_) / cells_ * static_cast<double>(n_) / cells_;
  std::string out = fmt::format(
      "<text x=\"{}\" y=\"{}\" font-family=\"sans-serif\" font-size=\"14\">{}</text>\n"
      "<rect x=\"{}\" y=\"{}\" width=\"{}\" height=\"{}\" fill=\"none\" stroke=\"#888\"/>\n",
      x, y + 0.7 * kTitleHeight, title_, x, y + kTitleHeight, kPictureSide, kPictureSide);
  for (int i = 0; i < cells_; ++i) {
    for (int j = 0; j < cells_; ++j) {
      const double share =
          filled_[static_cast<size_t>(i) * static_cast<size_t>(cells_) + static_cast<size_t>(j)] / places;
      if (share <= 0) continue;
      // A single entry of a large matrix can still be seen.
      const double shade = std::min(1.0, 0.25 + 0.75 * std::sqrt(share));
      out += fmt::format(
          "<rect x=\"{:.2f}\" y=\"{:.2f}\" width=\"{:.2f}\" height=\"{:.2f}\" fill-opacity=\"{:.2f}\"/>\n",
          x + j * side, y + kTitleHeight + i * side, side, side, shade);
    }
  }
  return out;
}

void write_pictures(const std::string& path, const std::vector<pattern_picture>& pictures) {
  constexpr double kGap = 20;
  const double width = static_cast<double>(pictures.size()) * (kPictureSide + kGap) + kGap;
  std::ofstream file(path);
  file << fmt::format(
      "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"{}\" height=\"{}\" fill=\"#123a6b\">\n", width,
      kPictureSide + kTitleHeight + kGap);
  double x = kGap;
  for (const pattern_picture& picture : pictures) {
    file << picture.svg(x, 0);
    x += kPictureSide + kGap;
  }
  file << "</svg>\n";
  file.close();
  if (!file) throw file_error(path + ": " + std::strerror(errno));
}

}  // namespace qel::cli
