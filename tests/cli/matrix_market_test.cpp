// SPDX-License-Identifier: BSD-3-Clause
// The Matrix Market reader: every form and symmetry, and what it says of malformed files.
#include "cli/matrix_market.h"

#include <gtest/gtest.h>

#include <map>
#include <utility>

#include "tests/cli/temporary_file.h"

namespace qel::cli {
namespace {

using complex = std::complex<double>;
using dense = std::map<std::pair<int, int>, complex>;  // one-based, without zeros

dense read(const std::string& text) {
  const test::temporary_file file(text);
  dense matrix;
  for (const matrix_entry& e : read_matrix_market(file.path()).entries)
    matrix[{e.row + 1, e.col + 1}] += e.value;
  std::erase_if(matrix, [](const auto& entry) { return entry.second == 0.0; });
  return matrix;
}

TEST(MatrixMarket, ReadsEveryFormAndSymmetry) {
  const struct {
    const char* name;
    const char* text;
    dense want;
  } cases[] = {
      {"real general with comments, blank lines, both signs and all exponents",
       "%%MatrixMarket matrix coordinate real general\n% comment\n\n3 2 4\n 1 1 1.5\n%in between\n2 1 "
       "-2e1\r\n\n3 2 +3D0\n1 2 1d-1",
       {{{1, 1}, 1.5}, {{2, 1}, -20}, {{3, 2}, 3}, {{1, 2}, 0.1}}},
      {"header in any case",
       "%%matrixmarket MATRIX Coordinate INTEGER General\n1 1 1\n1 1 -7\n",
       {{{1, 1}, -7}}},
      {"duplicates add up",
       "%%MatrixMarket matrix coordinate real general\n1 1 2\n1 1 2\n1 1 3\n",
       {{{1, 1}, 5}}},
      {"pattern",
       "%%MatrixMarket matrix coordinate pattern symmetric\n2 2 2\n1 1\n2 1\n",
       {{{1, 1}, 1}, {{2, 1}, 1}, {{1, 2}, 1}}},
      {"symmetric",
       "%%MatrixMarket matrix coordinate real symmetric\n2 2 2\n2 1 4\n2 2 5\n",
       {{{2, 1}, 4}, {{1, 2}, 4}, {{2, 2}, 5}}},
      {"skew",
       "%%MatrixMarket matrix coordinate real skew-symmetric\n2 2 1\n2 1 4\n",
       {{{2, 1}, 4}, {{1, 2}, -4}}},
      {"hermitian",
       "%%MatrixMarket matrix coordinate complex hermitian\n2 2 2\n1 1 3 0\n2 1 1 2\n",
       {{{1, 1}, 3}, {{2, 1}, {1, 2}}, {{1, 2}, {1, -2}}}},
      {"complex symmetric",
       "%%MatrixMarket matrix coordinate complex symmetric\n2 2 1\n2 1 1 2\n",
       {{{2, 1}, {1, 2}}, {{1, 2}, {1, 2}}}},
      {"array",
       "%%MatrixMarket matrix array real general\n2 3\n1\n2\n3\n4\n5\n6\n",
       {{{1, 1}, 1}, {{2, 1}, 2}, {{1, 2}, 3}, {{2, 2}, 4}, {{1, 3}, 5}, {{2, 3}, 6}}},
      {"array symmetric: the lower triangle by columns",
       "%%MatrixMarket matrix array real symmetric\n2 2\n1\n2\n3\n",
       {{{1, 1}, 1}, {{2, 1}, 2}, {{1, 2}, 2}, {{2, 2}, 3}}},
      {"array skew: without the diagonal",
       "%%MatrixMarket matrix array real skew-symmetric\n3 3\n1\n2\n3\n",
       {{{2, 1}, 1}, {{1, 2}, -1}, {{3, 1}, 2}, {{1, 3}, -2}, {{3, 2}, 3}, {{2, 3}, -3}}},
      {"array complex hermitian",
       "%%MatrixMarket matrix array complex hermitian\n2 2\n1 0\n2 3\n4 0\n",
       {{{1, 1}, 1}, {{2, 1}, {2, 3}}, {{1, 2}, {2, -3}}, {{2, 2}, 4}}},
      {"empty", "%%MatrixMarket matrix coordinate real general\n0 0 0\n", {}},
      {"empty skew array", "%%MatrixMarket matrix array real skew-symmetric\n0 0\n", {}},
      {"subnormal",
       "%%MatrixMarket matrix array real general\n1 1\n4.9406564584124654e-324\n",
       {{{1, 1}, 5e-324}}},
  };
  for (const auto& c : cases) {
    try {
      EXPECT_EQ(read(c.text), c.want) << c.name;
    } catch (const file_error& error) {
      ADD_FAILURE() << c.name << ": " << error.what();
    }
  }
}

TEST(MatrixMarket, NamesTheLineOfWhatIsWrong) {
  const std::string real = "%%MatrixMarket matrix coordinate real general\n";
  const struct {
    std::string text;
    const char* want;
  } cases[] = {
      {"", ":1: the file is empty"},
      {"1 1 1\n", ":1: the first line does not start with %%MatrixMarket"},
      {"%%MatrixMarket vector coordinate real general\n", ":1: object \"vector\" is none of matrix"},
      {"%%MatrixMarket matrix sparse real general\n", ":1: format \"sparse\" is none of coordinate, array"},
      {"%%MatrixMarket matrix array pattern general\n1 1\n", ":1: an array has no pattern field"},
      {"%%MatrixMarket matrix coordinate real hermitian\n1 1 0\n",
       ":1: only a complex matrix can be hermitian"},
      {"%%MatrixMarket matrix coordinate pattern skew-symmetric\n1 1 0\n",
       ":1: a pattern can't be skew-symmetric"},
      {"%%MatrixMarket matrix coordinate real\n1 1 0\n", ":1: symmetry \"\" is none of"},
      {real + "% only comments\n", ":2: the line with the sizes is missing"},
      {real + "2 2\n", ":2: the number of entries is missing"},
      {real + "2 -2 1\n", ":2: the number of columns -2 is outside 0 .. 2147483647"},
      {real + "2 99999999999999999999 1\n", ":2: the number of columns 99999999999999999999 is outside"},
      {real + "2 2 1 7\n", ":2: \"7\" after the end of the line's data"},
      {"%%MatrixMarket matrix coordinate real symmetric\n2 3 1\n", ":2: a symmetric matrix can't be 2 by 3"},
      {real + "2 2 2\n1 1 1\n", ":3: the file ends after 1 of 2 entries"},
      {real + "2 2 9000000000000000000\n1 1 1\n", ":3: the file ends after 1 of"},
      {real + "2 2 1\n1 1 1\n2 2 2\n", ":4: more data than the 1 entries announced"},
      {real + "2 2 1\n\n%\n3 1 1\n", ":5: the row 3 is outside 1 .. 2"},
      {real + "2 2 1\n1 0 1\n", ":3: the column 0 is outside 1 .. 2"},
      {real + "2 2 1\n1 x 1\n", ":3: the column is not an integer: \"x\""},
      {real + "2 2 1\n1 1.5 1\n", ":3: the column is not an integer: \"1.5\""},
      {real + "2 2 1\n1 1\n", ":3: the value is missing"},
      {real + "2 2 1\n1 1 1,5\n", ":3: the value is not a number: \"1,5\""},
      {real + "2 2 1\n1 1 +-1\n", ":3: the value is not a number: \"+-1\""},
      {real + "2 2 1\n1 1 nan\n", ":3: the value is not finite: \"nan\""},
      {real + "2 2 1\n1 1 1e999\n", ":3: the value is not finite: \"1e999\""},
      {real + "2 2 1\n1 1 1 2\n", ":3: \"2\" after the end of the line's data"},
      {"%%MatrixMarket matrix coordinate complex general\n1 1 1\n1 1 1\n",
       ":3: the imaginary part is missing"},
      {"%%MatrixMarket matrix coordinate real symmetric\n2 2 1\n1 2 1\n",
       ":3: entry (1, 2) lies above the diagonal"},
      {"%%MatrixMarket matrix coordinate real skew-symmetric\n1 1 1\n1 1 1\n",
       ":3: a skew-symmetric matrix has a zero diagonal"},
      {"%%MatrixMarket matrix coordinate complex hermitian\n1 1 1\n1 1 1 2\n",
       ":3: a hermitian matrix has a real diagonal"},
      {"\x1f\x8b\x08", ":1: "},
      {std::string("\0\n", 2) + real, ":1: a zero byte"},
      {real + std::string("1 1\0 1\n1 1 1\n", 13), ":2: a zero byte"},
  };
  for (const auto& c : cases) {
    const test::temporary_file file(c.text);
    try {
      read_matrix_market(file.path());
      ADD_FAILURE() << "accepted: " << c.text;
    } catch (const file_error& error) {
      EXPECT_EQ(std::string(error.what()).rfind(file.path() + c.want, 0), 0u)
          << error.what() << "\nfor " << c.text;
    }
  }
}

TEST(MatrixMarket, WritesWhatItReads) {
  const std::vector<complex> values{{1.0 / 3, 0}, {-1e-300, 0}, {5e-324, 0}, {1.7976931348623157e308, 0}};
  const std::vector<complex> complex_values{{1, -2}, {0.1, 3}};
  const test::temporary_file file("");
  write_matrix_market(file.path(), 2, 2, values, false);
  const matrix_file back = read_matrix_market(file.path());
  EXPECT_EQ(back.rows, 2);
  for (size_t k = 0; k < 4; ++k) EXPECT_EQ(back.entries[k].value, values[k]);
  write_matrix_market(file.path(), 1, 2, complex_values, true);
  EXPECT_EQ(read_matrix_market(file.path()).entries[1].value, complex_values[1]);
  EXPECT_THROW(write_matrix_market("/nonexistent/x.mtx", 1, 1, {1.0}, false), file_error);
  EXPECT_THROW(write_matrix_market("/dev/full", 2, 2, values, false), file_error);
}

}  // namespace
}  // namespace qel::cli
