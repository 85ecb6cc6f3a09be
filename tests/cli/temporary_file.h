// SPDX-License-Identifier: BSD-3-Clause
// A file with given contents that goes away with the test.
#pragma once

#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <string>

namespace qel::test {

class temporary_file {
 public:
  explicit temporary_file(const std::string& contents) {
    char name[] = "/tmp/qel_test_XXXXXX";
    close(mkstemp(name));
    path_ = name;
    std::ofstream(path_, std::ios::binary) << contents;
  }
  ~temporary_file() { unlink(path_.c_str()); }
  temporary_file(const temporary_file&) = delete;
  temporary_file& operator=(const temporary_file&) = delete;
  const std::string& path() const { return path_; }

 private:
  std::string path_;
};

inline std::string content_of(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

}  // namespace qel::test
