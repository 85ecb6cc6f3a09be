// SPDX-License-Identifier: BSD-3-Clause
#include "cli/matrix_market.h"

#include <fmt/format.h>
#include <zlib.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <cerrno>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <iterator>
#include <memory>
#include <string_view>

namespace qel::cli {
namespace {

// Words of the header, in the order of the enumerators.
constexpr std::array kFormats{"coordinate", "array"};
constexpr std::array kFields{"real", "integer", "complex", "pattern"};
constexpr std::array kSymmetries{"general", "symmetric", "skew-symmetric", "hermitian"};

/// Lines of a plain or gzip file, with their numbers.
class line_reader {
 public:
  explicit line_reader(std::string path)
      : path_(std::move(path)), file_(gzopen(path_.c_str(), "rb"), gzclose) {
    if (!file_) throw file_error(fmt::format("{}: {}", path_, std::strerror(errno)));
    gzbuffer(file_.get(), 1 << 17);
  }
  /// The next line without its end; false at the end of the file.
  bool next() {
    line_.clear();
    char buffer[4096];
    while (gzgets(file_.get(), buffer, sizeof buffer) != nullptr) {
      const size_t length = std::strlen(buffer);
      line_.append(buffer, length);
      if (length > 0 && buffer[length - 1] == '\n') break;
      if (length + 1 < sizeof buffer) {
        if (gzeof(file_.get())) break;
        ++number_;
        fail("a zero byte, which no text has");
      }
      if (line_.size() > kLongestLine) {
        ++number_;
        fail("line is too long");
      }
    }
    int code = Z_OK;
    const char* what = gzerror(file_.get(), &code);
    if (code != Z_OK && code != Z_BUF_ERROR) {
      fail_at(number_ + 1, code == Z_ERRNO ? std::strerror(errno) : what);
    }
    if (code == Z_BUF_ERROR) fail_at(number_ + 1, "the compressed file ends early");
    if (line_.empty()) return false;
    ++number_;
    while (!line_.empty() && std::isspace(static_cast<unsigned char>(line_.back()))) line_.pop_back();
    return true;
  }
  /// The next line that is neither blank nor a comment.
  bool next_with_data() {
    while (next()) {
      const size_t first = line_.find_first_not_of(" \t\r");
      if (first != std::string::npos && line_[first] != '%') return true;
    }
    return false;
  }
  const std::string& line() const { return line_; }
  [[noreturn]] void fail(const std::string& what) const { fail_at(number_, what); }
  [[noreturn]] void fail_at(long number, const std::string& what) const {
    throw file_error(fmt::format("{}:{}: {}", path_, std::max(number, 1L), what));
  }

 private:
  static constexpr size_t kLongestLine = 1 << 20;
  std::string path_, line_;
  std::unique_ptr<gzFile_s, int (*)(gzFile)> file_;
  long number_ = 0;
};

/// Takes the words of one line apart and turns them into numbers; complains with the line's number.
class line_words {
 public:
  explicit line_words(const line_reader& reader) : reader_(reader), rest_(reader.line()) {}
  std::string_view word() {
    rest_.remove_prefix(std::min(rest_.find_first_not_of(" \t"), rest_.size()));
    const std::string_view found = rest_.substr(0, rest_.find_first_of(" \t"));
    rest_.remove_prefix(found.size());
    return found;
  }
  long integer(const char* what, long low, long high) {
    const std::string_view text = word();
    if (text.empty()) reader_.fail(fmt::format("{} is missing", what));
    long value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error == std::errc::invalid_argument || end != text.data() + text.size()) {
      reader_.fail(fmt::format("{} is not an integer: \"{}\"", what, shown(text)));
    }
    if (error == std::errc::result_out_of_range || value < low || value > high) {
      reader_.fail(fmt::format("{} {} is outside {} .. {}", what, shown(text), low, high));
    }
    return value;
  }
  double number(const char* what) {
    const std::string_view text = word();
    if (text.empty()) reader_.fail(fmt::format("{} is missing", what));
    // Fortran writes exponents with D, and C's readers accept a plus sign; from_chars takes neither.
    std::string plain(text.substr(text.front() == '+' ? 1 : 0));
    std::replace_if(
        plain.begin(), plain.end(), [](char c) { return c == 'd' || c == 'D'; }, 'e');
    double value = 0;
    const auto [end, error] = std::from_chars(plain.data(), plain.data() + plain.size(), value);
    const bool two_signs = text.size() > 1 && text[0] == '+' && text[1] == '-';
    if (error == std::errc::invalid_argument || end != plain.data() + plain.size() || two_signs) {
      reader_.fail(fmt::format("{} is not a number: \"{}\"", what, shown(text)));
    }
    if (error == std::errc::result_out_of_range) value = std::strtod(plain.c_str(), nullptr);
    if (!std::isfinite(value)) reader_.fail(fmt::format("{} is not finite: \"{}\"", what, shown(text)));
    return value;
  }
  void end() {
    const std::string_view text = word();
    if (!text.empty()) reader_.fail(fmt::format("\"{}\" after the end of the line's data", shown(text)));
  }

 private:
  static std::string_view shown(std::string_view text) { return text.substr(0, 40); }
  const line_reader& reader_;
  std::string_view rest_;
};

template <size_t kCount>
int choose(const line_reader& reader, line_words& words, const char* what,
           const std::array<const char*, kCount>& names) {
  std::string word(words.word());
  std::transform(word.begin(), word.end(), word.begin(), [](unsigned char c) { return std::tolower(c); });
  const auto found = std::find(names.begin(), names.end(), word);
  if (found == names.end()) {
    std::string known;
    for (const char* name : names) known += (known.empty() ? "" : ", ") + std::string(name);
    reader.fail(fmt::format("{} \"{}\" is none of {}", what, word.substr(0, 40), known));
  }
  return static_cast<int>(found - names.begin());
}

matrix_file read_header(line_reader& reader) {
  if (!reader.next()) reader.fail("the file is empty");
  line_words words(reader);
  std::string banner(words.word());
  std::transform(banner.begin(), banner.end(), banner.begin(),
                 [](unsigned char c) { return std::tolower(c); });
  if (banner != "%%matrixmarket") reader.fail("the first line does not start with %%MatrixMarket");
  choose(reader, words, "object", std::array{"matrix"});
  matrix_file matrix{};
  matrix.format = static_cast<matrix_format>(choose(reader, words, "format", kFormats));
  matrix.field = static_cast<matrix_field>(choose(reader, words, "field", kFields));
  matrix.symmetry = static_cast<matrix_symmetry>(choose(reader, words, "symmetry", kSymmetries));
  words.end();
  if (matrix.format == matrix_format::array && matrix.field == matrix_field::pattern) {
    reader.fail("an array has no pattern field");
  }
  if (matrix.symmetry == matrix_symmetry::hermitian && matrix.field != matrix_field::complex) {
    reader.fail("only a complex matrix can be hermitian");
  }
  if (matrix.symmetry == matrix_symmetry::skew_symmetric && matrix.field == matrix_field::pattern) {
    reader.fail("a pattern can't be skew-symmetric");
  }
  return matrix;
}

void read_sizes(line_reader& reader, matrix_file& matrix) {
  constexpr long kMost = 2147483647;
  if (!reader.next_with_data()) reader.fail("the line with the sizes is missing");
  line_words words(reader);
  matrix.rows = static_cast<int>(words.integer("the number of rows", 0, kMost));
  matrix.cols = static_cast<int>(words.integer("the number of columns", 0, kMost));
  const long rows = matrix.rows, cols = matrix.cols;
  if (matrix.symmetry != matrix_symmetry::general && rows != cols) {
    reader.fail(fmt::format("a {} matrix can't be {} by {}", name_of(matrix.symmetry), rows, cols));
  }
  if (matrix.format == matrix_format::coordinate) {
    matrix.stored = words.integer("the number of entries", 0, 0x7fffffffffffffff);
  } else if (matrix.symmetry == matrix_symmetry::general) {
    matrix.stored = rows * cols;
  } else {
    matrix.stored =
        matrix.symmetry == matrix_symmetry::skew_symmetric ? rows * (rows - 1) / 2 : rows * (rows + 1) / 2;
  }
  words.end();
}

std::complex<double> read_value(line_words& words, matrix_field field) {
  if (field == matrix_field::pattern) return 1.0;
  const double real = words.number("the value");
  return {real, field == matrix_field::complex ? words.number("the imaginary part") : 0.0};
}

/// Adds an entry and its mirror image.
void add_entry(const line_reader& reader, matrix_file& matrix, const matrix_entry& entry) {
  matrix.entries.push_back(entry);
  if (matrix.symmetry == matrix_symmetry::general) return;
  if (entry.row < entry.col) {
    reader.fail(fmt::format("entry ({}, {}) lies above the diagonal of a {} matrix", entry.row + 1,
                            entry.col + 1, name_of(matrix.symmetry)));
  }
  if (entry.row == entry.col) {
    if (matrix.symmetry == matrix_symmetry::skew_symmetric && entry.value != 0.0) {
      reader.fail("a skew-symmetric matrix has a zero diagonal");
    }
    if (matrix.symmetry == matrix_symmetry::hermitian && entry.value.imag() != 0.0) {
      reader.fail("a hermitian matrix has a real diagonal");
    }
    return;
  }
  std::complex<double> mirrored = entry.value;
  if (matrix.symmetry == matrix_symmetry::skew_symmetric) mirrored = -mirrored;
  if (matrix.symmetry == matrix_symmetry::hermitian) mirrored = std::conj(mirrored);
  matrix.entries.push_back({entry.col, entry.row, mirrored});
}

/// Calls take(k) with the reader on the line of stored entry k.
template <class Take>
void for_each_line(line_reader& reader, const matrix_file& matrix,
                   const std::function<void(long, long)>& progress, Take take) {
  for (long k = 0; k < matrix.stored; ++k) {
    if (!reader.next_with_data()) {
      reader.fail(fmt::format("the file ends after {} of {} entries", k, matrix.stored));
    }
    take();
    if (progress && k % 65536 == 65535) progress(k + 1, matrix.stored);
  }
  if (reader.next_with_data())
    reader.fail(fmt::format("more data than the {} entries announced", matrix.stored));
}

void read_coordinates(line_reader& reader, matrix_file& matrix,
                      const std::function<void(long, long)>& progress) {
  for_each_line(reader, matrix, progress, [&] {
    line_words words(reader);
    matrix_entry entry{};
    entry.row = static_cast<int>(words.integer("the row", 1, matrix.rows)) - 1;
    entry.col = static_cast<int>(words.integer("the column", 1, matrix.cols)) - 1;
    entry.value = read_value(words, matrix.field);
    words.end();
    add_entry(reader, matrix, entry);
  });
}

void read_array(line_reader& reader, matrix_file& matrix, const std::function<void(long, long)>& progress) {
  const bool general = matrix.symmetry == matrix_symmetry::general;
  const int below = matrix.symmetry == matrix_symmetry::skew_symmetric ? 1 : 0;
  int row = general ? 0 : below, col = 0;
  for_each_line(reader, matrix, progress, [&] {
    line_words words(reader);
    const std::complex<double> value = read_value(words, matrix.field);
    words.end();
    add_entry(reader, matrix, {row, col, value});
    if (++row == matrix.rows) {
      ++col;
      row = general ? 0 : col + below;
    }
  });
}

}  // namespace

const char* name_of(matrix_format format) { return kFormats[static_cast<size_t>(format)]; }
const char* name_of(matrix_field field) { return kFields[static_cast<size_t>(field)]; }
const char* name_of(matrix_symmetry symmetry) { return kSymmetries[static_cast<size_t>(symmetry)]; }

matrix_file read_matrix_market(const std::string& path, const std::function<void(long, long)>& progress) {
  line_reader reader(path);
  matrix_file matrix = read_header(reader);
  read_sizes(reader, matrix);
  // A wrong count in the file must not reserve memory that its lines don't fill.
  matrix.entries.reserve(static_cast<size_t>(std::min(matrix.stored, 1L << 16)));
  if (matrix.format == matrix_format::coordinate) {
    read_coordinates(reader, matrix, progress);
  } else {
    read_array(reader, matrix, progress);
  }
  return matrix;
}

void write_matrix_market(const std::string& path, int rows, int cols,
                         const std::vector<std::complex<double>>& values, bool is_complex) {
  const auto fail = [&path] { throw file_error(fmt::format("{}: {}", path, std::strerror(errno))); };
  std::FILE* out = std::fopen(path.c_str(), "w");
  if (out == nullptr) fail();
  fmt::memory_buffer text;
  fmt::format_to(std::back_inserter(text), "%%MatrixMarket matrix array {} general\n{} {}\n",
                 is_complex ? "complex" : "real", rows, cols);
  for (const std::complex<double>& value : values) {
    fmt::format_to(std::back_inserter(text), "{:.17g}", value.real());
    if (is_complex) fmt::format_to(std::back_inserter(text), " {:.17g}", value.imag());
    text.push_back('\n');
  }
  const bool written = std::fwrite(text.data(), 1, text.size(), out) == text.size();
  const int write_error = errno;
  if (std::fclose(out) != 0) fail();
  errno = write_error;
  if (!written) fail();
}

}  // namespace qel::cli
