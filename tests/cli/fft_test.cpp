// SPDX-License-Identifier: BSD-3-Clause
// qel fft on files of every kind, and the .npy reader on what other programs write.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <nlohmann/json.hpp>

#include "cli/commands.h"
#include "cli/matrix_market.h"
#include "cli/npy.h"
#include "cli/table.h"
#include "tests/cli/command.h"
#include "tests/cli/temporary_file.h"

namespace qel::cli {
namespace {

using test::temporary_file;

constexpr double kPi = 3.14159265358979323846;

std::string npy(const std::string& head, const std::string& data) {
  const auto length = static_cast<char>(head.size());
  return std::string("\x93NUMPY\x01\x00", 8) + length + '\0' + head + data;
}
std::string dictionary(const char* type, const char* order, const char* shape) {
  return std::string("{'descr': '") + type + "', 'fortran_order': " + order + ", 'shape': " + shape + ", }\n";
}

/// A file with a suffix that the command looks at.
struct result_file {
  explicit result_file(const char* suffix) : base(""), path(base.path() + suffix) {}
  ~result_file() { unlink(path.c_str()); }
  temporary_file base;
  std::string path;
};

TEST(Npy, ReadsOrdersAndTypes) {
  const double doubles[] = {1, 2, 3, 4, 5, 6};
  const std::string six(reinterpret_cast<const char*>(doubles), sizeof doubles);
  const struct {
    std::string bytes;
    std::vector<std::complex<double>> values;
  } rows[] = {
      {npy(dictionary("<f8", "False", "(2, 3)"), six), {1, 2, 3, 4, 5, 6}},
      {npy(dictionary("<f8", "True", "(2, 3)"), six), {1, 3, 5, 2, 4, 6}},
      {npy(dictionary("<c16", "False", "(3,)"), six), {{1, 2}, {3, 4}, {5, 6}}},
      {npy(dictionary("<f8", "False", "()"), six), {1}},
      {npy(dictionary("<f8", "True", "(3, 0)"), ""), {}},
      {npy(dictionary(">i2", "False", "(2,)"), std::string("\x01\x02\xff\xff", 4)), {258, -1}},
      {npy(dictionary("|b1", "False", "(2,)"), std::string("\x01\x00", 2)), {1, 0}},
      {npy(dictionary(">f4", "False", "(1,)"), std::string("\x3f\xc0\x00\x00", 4)), {1.5}},
  };
  for (const auto& row : rows) {
    const temporary_file file(row.bytes);
    EXPECT_EQ(read_npy(file.path()).values, row.values);
  }
}

TEST(Npy, RefusesWhatIsBroken) {
  const std::string bad[] = {
      "\x93NUMPY",
      npy(dictionary("<f8", "False", "(2,)"), "12345678"),
      npy(dictionary("<f8", "False", "()"), "1234567"),
      npy(dictionary("<f8", "False", "(2147483647, 2147483647, 2147483647)"), ""),
      npy(dictionary("<f8", "False", "(-1,)"), "12345678"),
      npy(dictionary("<f8", "False", "(99999999999,)"), "12345678"),
      npy(dictionary("<f8", "Maybe", "(1,)"), "12345678"),
      npy(dictionary("<f8", "False", "(1"), "12345678"),
      npy(dictionary("|O", "False", "(1,)"), "12345678"),
      npy("{'descr': '<f8'", "12345678"),
      npy("{'descr': [('a', '<f8')], 'fortran_order': False, 'shape': (1,)}", "12345678"),
      npy("'descr", ""),
      npy("", ""),
      std::string("\x93NUMPY\x02\x00\xff\xff\xff\xff", 12),
  };
  for (const std::string& bytes : bad) {
    const temporary_file file(bytes);
    EXPECT_THROW(read_npy(file.path()), file_error) << bytes;
  }
}

TEST(Fft, ComesBackFromFiles) {
  for (const auto& shape : std::vector<std::vector<int>>{{7}, {8}, {4, 6}, {3, 5}, {2, 3, 4}}) {
    for (const bool is_complex : {false, true}) {
      number_array data{shape, is_complex, {}};
      int count = 1;
      for (const int n : shape) count *= n;
      for (int k = 0; k < count; ++k)
        data.values.emplace_back(std::sin(k * k), is_complex ? std::cos(3 * k) : 0.0);
      const result_file in(".npy"), spectrum(".npy"), back(".npy");
      write_npy(in.path, data);
      ASSERT_EQ(run("fft " + in.path + " -o " + spectrum.path).exit_code, 0);
      const number_array found = read_npy(spectrum.path);
      EXPECT_EQ(found.shape.back(), is_complex ? shape.back() : shape.back() / 2 + 1);
      std::complex<double> sum = 0;
      for (const auto& value : data.values) sum += value;
      EXPECT_LT(std::abs(found.values[0] - sum), 1e-13);
      const std::string way = is_complex ? "" : " --real --length " + std::to_string(shape.back());
      ASSERT_EQ(run("fft --inverse " + spectrum.path + " -o " + back.path + way).exit_code, 0);
      const number_array again = read_npy(back.path);
      ASSERT_EQ(again.shape, shape);
      for (size_t k = 0; k < again.values.size(); ++k)
        EXPECT_LT(std::abs(again.values[k] - data.values[k]), 1e-14);
    }
  }
}

TEST(Fft, FindsATone) {
  // 16-bit sound of two channels at 800 per second: 100 Hz in the second one.
  constexpr int kFrames = 400;
  std::string wave("RIFF\0\0\0\0WAVEfmt \x10\0\0\0\x01\0\x02\0\x20\x03\0\0\x80\x0c\0\0\x04\0\x10\0data", 40);
  const auto add = [&](int value, int bytes) {
    for (int k = 0; k < bytes; ++k) wave += static_cast<char>(value >> 8 * k & 255);
  };
  add(4 * kFrames, 4);
  for (int k = 0; k < kFrames; ++k) {
    add(0, 2);
    add(static_cast<int>(std::lround(16384 * std::sin(2 * kPi * k / 8))), 2);
  }
  const temporary_file sound(wave);
  const result_file spectrum(".csv"), picture(".svg");
  const command_result result =
      run("fft --json --channel 2 " + sound.path() + " -o " + spectrum.path + " --plot " + picture.path);
  ASSERT_EQ(result.exit_code, 0) << result.output;
  EXPECT_EQ(nlohmann::json::parse(result.output)["rate"], 800);
  const table found = read_table(spectrum.path);
  ASSERT_EQ(found.rows(), static_cast<size_t>(kFrames / 2 + 1));
  for (size_t k = 0; k < found.rows(); ++k) {
    EXPECT_EQ(found.columns[0][k], 2.0 * static_cast<double>(k));
    EXPECT_NEAR(std::hypot(found.columns[1][k], found.columns[2][k]), k == 50 ? kFrames / 4 : 0, 0.02);
  }
  EXPECT_TRUE(contains(test::content_of(picture.path), "<svg"));
}

TEST(Fft, ReadsTables) {
  // Times give the rate; a spectrum's own table comes back.
  const temporary_file data("t,y\n0,1\n0.5,0\n1,-1\n1.5,0\n");
  const result_file spectrum(".csv"), back(".csv");
  ASSERT_EQ(run("fft --complex " + data.path() + " -o " + spectrum.path).exit_code, 0);
  const table found = read_table(spectrum.path);
  EXPECT_EQ(found.columns[0], (std::vector<double>{0, 0.5, 1, -0.5}));
  EXPECT_EQ(found.columns[1], (std::vector<double>{0, 2, 0, 2}));
  ASSERT_EQ(run("fft --inverse " + spectrum.path + " -o " + back.path).exit_code, 0);
  EXPECT_EQ(read_table(back.path).columns[1], (std::vector<double>{1, 0, -1, 0}));
}

TEST(Fft, TellsWhatIsWrong) {
  const temporary_file two("a,b\n1,2\n3,4\n"), matrix(npy(dictionary("|b1", "False", "(2, 1)"), "\1\1")),
      none(npy(dictionary("<f8", "False", "(0,)"), "")), pair("re,im\n1,2\n3,4\n"), sound("RIFF0000WAVE");
  const struct {
    std::string arguments;
    const char* text;
  } rows[] = {
      {two.path() + " -o /tmp/x.npy", "choose one by --column"},
      {two.path() + " --column c -o /tmp/x.npy", "no column c"},
      {matrix.path() + " -o /tmp/x.csv", "a CSV file takes one dimension"},
      {matrix.path() + " -o /tmp/x.npy --plot /tmp/x.svg", "--plot draws one dimension"},
      {none.path() + " -o /tmp/x.npy", "no samples"},
      {pair.path() + " --real -o /tmp/x.npy", "the data are complex"},
      {pair.path() + " --inverse --real --length 5 -o /tmp/x.npy",
       "length 5 has 3 frequencies, the data hold 2"},
      {pair.path() + " -o /nowhere/x.npy", "cannot be written"},
      {"/nowhere.csv -o /tmp/x.npy", "cannot be read"},
      {sound.path() + " -o /tmp/x.npy", sound.path().c_str()},
  };
  for (const auto& row : rows) {
    const command_result result = run("fft " + row.arguments);
    EXPECT_EQ(result.exit_code, kBadInput) << row.arguments;
    EXPECT_TRUE(contains(result.output, row.text)) << row.arguments << '\n' << result.output;
  }
}

}  // namespace
}  // namespace qel::cli
