// SPDX-License-Identifier: BSD-3-Clause
// A file with given contents that goes away with the test.
#pragma once

#include <unistd.h>

#include <cstdlib>
#include <fstream>
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

}  // namespace qel::test
