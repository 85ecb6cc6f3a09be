// SPDX-License-Identifier: BSD-3-Clause
// Pictures of sparse patterns: squares that are the darker the fuller they are.
#pragma once

#include <string>
#include <vector>

namespace qel::cli {

/// The pattern of an n x n matrix on a grid of at most 200 x 200 squares.
class pattern_picture {
 public:
  pattern_picture(std::string title, int n);
  /// Entries of row in columns first .. last, counted from 0.
  void add(int row, int first, int last);
  const std::string& title() const { return title_; }
  /// The SVG elements, the picture's upper left corner at x, y.
  std::string svg(double x, double y) const;

 private:
  std::string title_;
  int n_, cells_;
  std::vector<double> filled_;  ///< entries of each square
};
/// Side of a picture and height of its title.
inline constexpr double kPictureSide = 400, kTitleHeight = 24;

/// Writes the pictures side by side. Throws file_error.
void write_pictures(const std::string& path, const std::vector<pattern_picture>& pictures);

}  // namespace qel::cli
