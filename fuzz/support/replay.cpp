// SPDX-License-Identifier: BSD-3-Clause
// Runs a fuzzer's target over files and folders of kept inputs, where there is no libFuzzer.
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

#include "fuzz/support/input.h"

namespace {

int replay(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  const std::vector<char> bytes{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  // A block of just that size, so that a sanitizer sees each access past its end.
  const std::vector<uint8_t> exact(bytes.begin(), bytes.end());
  std::fprintf(stderr, "%s\n", path.c_str());
  LLVMFuzzerTestOneInput(exact.data(), exact.size());
  return 1;
}

}  // namespace

int main(int count, char** paths) {
  int done = 0;
  for (int k = 1; k < count; ++k) {
    if (!std::filesystem::is_directory(paths[k])) {
      done += replay(paths[k]);
      continue;
    }
    for (const auto& entry : std::filesystem::directory_iterator(paths[k])) done += replay(entry.path());
  }
  std::printf("%d inputs\n", done);
  return done == 0;
}
