// SPDX-License-Identifier: BSD-3-Clause
#include "cli/npy.h"

#include <fmt/core.h>

#include <algorithm>
#include <charconv>
#include <climits>
#include <cstdint>
#include <cstring>
#include <fstream>
#include <iterator>

#include "cli/matrix_market.h"

namespace qel::cli {
namespace {

constexpr char kMagic[] = {'\x93', 'N', 'U', 'M', 'P', 'Y'};
constexpr size_t kAlignment = 64;

/// The header's dictionary: a literal with three keys.
class header {
 public:
  header(const std::string& path, std::string text) : path_(path), text_(std::move(text)) {}

  std::string string_of(const char* key) const {
    const size_t at = value_of(key);
    if (text_[at] != '\'' && text_[at] != '"') fail();
    const size_t end = text_.find(text_[at], at + 1);
    if (end == std::string::npos) fail();
    return text_.substr(at + 1, end - at - 1);
  }
  bool flag_of(const char* key) const {
    const size_t at = value_of(key);
    if (text_.compare(at, 4, "True") == 0) return true;
    if (text_.compare(at, 5, "False") != 0) fail();
    return false;
  }
  std::vector<int> tuple_of(const char* key) const {
    size_t at = value_of(key);
    const size_t end = text_.find(')', at);
    if (text_[at] != '(' || end == std::string::npos) fail();
    std::vector<int> result;
    while (true) {
      at = text_.find_first_not_of("(, ", at);
      if (at >= end) return result;
      int value = 0;
      const auto [stop, error] = std::from_chars(text_.data() + at, text_.data() + end, value);
      if (error != std::errc() || value < 0) fail();
      result.push_back(value);
      at = static_cast<size_t>(stop - text_.data());
    }
  }
  [[noreturn]] void fail() const { throw file_error(path_ + ": its header cannot be read: " + text_); }

 private:
  size_t value_of(const char* key) const {
    size_t at = text_.find(fmt::format("'{}'", key));
    if (at == std::string::npos) fail();
    at = text_.find(':', at);
    if (at != std::string::npos) at = text_.find_first_not_of(' ', at + 1);
    if (at == std::string::npos) fail();
    return at;
  }
  const std::string& path_;
  std::string text_;
};

template <class T>
double number_at(const char* p, bool swap) {
  char bytes[sizeof(T)];
  std::memcpy(bytes, p, sizeof(T));
  if (swap) std::reverse(bytes, bytes + sizeof(T));
  T value;
  std::memcpy(&value, bytes, sizeof(T));
  return static_cast<double>(value);
}

struct element_type {
  const char* name;
  size_t bytes;
  double (*read)(const char*, bool);
  bool is_complex;
};
constexpr element_type kTypes[] = {
    {"f8", 8, number_at<double>, false},   {"f4", 4, number_at<float>, false},
    {"c16", 8, number_at<double>, true},   {"c8", 4, number_at<float>, true},
    {"b1", 1, number_at<uint8_t>, false},  {"u1", 1, number_at<uint8_t>, false},
    {"u2", 2, number_at<uint16_t>, false}, {"u4", 4, number_at<uint32_t>, false},
    {"u8", 8, number_at<uint64_t>, false}, {"i1", 1, number_at<int8_t>, false},
    {"i2", 2, number_at<int16_t>, false},  {"i4", 4, number_at<int32_t>, false},
    {"i8", 8, number_at<int64_t>, false},
};

/// From Fortran's order, first index fastest, to C's.
void reorder(number_array* array) {
  const std::vector<std::complex<double>> given = array->values;
  std::vector<size_t> step(array->shape.size()), index(array->shape.size());
  size_t length = 1;
  for (size_t d = 0; d < step.size(); ++d) {
    step[d] = length;
    length *= static_cast<size_t>(array->shape[d]);
  }
  size_t at = 0;
  for (auto& value : array->values) {
    value = given[at];
    for (size_t d = step.size(); d-- > 0;) {
      at += step[d];
      if (++index[d] < static_cast<size_t>(array->shape[d])) break;
      at -= step[d] * index[d];
      index[d] = 0;
    }
  }
}

}  // namespace

number_array read_npy(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file) throw file_error(path + ": cannot be read");
  const std::string bytes{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  const auto byte = [&](size_t k) { return static_cast<size_t>(static_cast<unsigned char>(bytes[k])); };
  if (bytes.size() < 12 || !std::equal(std::begin(kMagic), std::end(kMagic), bytes.begin()))
    throw file_error(path + ": not an .npy file");
  const bool first_version = byte(6) == 1;
  size_t length = byte(8) | byte(9) << 8;
  if (!first_version) length |= byte(10) << 16 | byte(11) << 24;
  const size_t begin = first_version ? 10 : 12;
  if (bytes.size() - begin < length) throw file_error(path + ": ends within its header");
  const header head(path, bytes.substr(begin, length));
  const std::string type_name = head.string_of("descr");
  const auto* const type = std::find_if(std::begin(kTypes), std::end(kTypes), [&](const element_type& t) {
    return type_name.size() > 1 && type_name.substr(1) == t.name;
  });
  if (type == std::end(kTypes)) throw file_error(path + ": elements of type " + type_name + " are not read");

  number_array result;
  result.shape = head.tuple_of("shape");
  result.is_complex = type->is_complex;
  const size_t element = type->bytes * (type->is_complex ? 2 : 1),
               there = (bytes.size() - begin - length) / element;
  // A shape without lengths is one number; a length of 0 may come after more than there is.
  size_t count = 1;
  const bool empty = std::find(result.shape.begin(), result.shape.end(), 0) != result.shape.end();
  for (const int n : result.shape)
    if (count <= there) count *= static_cast<size_t>(n);
  if (empty) count = 0;
  if (count > there) throw file_error(path + ": holds fewer elements than its shape");
  const bool swap = type_name[0] == '>';
  const char* p = bytes.data() + begin + length;
  result.values.resize(count);
  for (auto& value : result.values) {
    value = {type->read(p, swap), type->is_complex ? type->read(p + type->bytes, swap) : 0.0};
    p += element;
  }
  if (head.flag_of("fortran_order")) reorder(&result);
  return result;
}

void write_npy(const std::string& path, const number_array& array) {
  std::string shape;
  for (const int n : array.shape) shape += fmt::format("{}, ", n);
  std::string head = fmt::format("{{'descr': '{}', 'fortran_order': False, 'shape': ({}), }}",
                                 array.is_complex ? "<c16" : "<f8", shape);
  head.resize((10 + head.size()) / kAlignment * kAlignment + kAlignment - 11, ' ');
  head += '\n';
  std::ofstream file(path, std::ios::binary);
  file.write(kMagic, sizeof kMagic);
  const char rest[] = {1, 0, static_cast<char>(head.size() & 255), static_cast<char>(head.size() >> 8)};
  file.write(rest, sizeof rest);
  file << head;
  for (const auto& value : array.values)
    file.write(reinterpret_cast<const char*>(&value), array.is_complex ? sizeof value : sizeof(double));
  file.close();
  if (!file) throw file_error(path + ": cannot be written");
}

}  // namespace qel::cli
