// SPDX-License-Identifier: BSD-3-Clause
#include "sparse/pardiso/ooc/file_calls.h"

#include <errno.h>
#include <fcntl.h>
#include <stdio.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>

namespace qel::pardiso {
namespace {

/// The system transfers at most 2 GB in one call.
constexpr int64_t kLargestTransfer = int64_t{1} << 30;

int open_file(const char* path, open_mode mode) {
  const int flags = mode == open_mode::update   ? O_RDWR
                    : mode == open_mode::create ? O_RDWR | O_CREAT | O_TRUNC
                                                : O_RDWR | O_CREAT | O_EXCL;
  return ::open(path, flags | O_CLOEXEC, 0666);
}

bool seek_file(int descriptor, int64_t offset) { return lseek(descriptor, offset, SEEK_SET) == offset; }

/// Repeats a call that transfers part of what is left until all is done, nothing moves, or it fails.
template <class Call>
int64_t transfer_all(int64_t bytes, const Call& call) {
  int64_t done = 0;
  while (done < bytes) {
    const int64_t moved = call(done, static_cast<size_t>(std::min(bytes - done, kLargestTransfer)));
    if (moved < 0 && errno == EINTR) continue;
    if (moved < 0) return done > 0 ? done : -1;
    if (moved == 0) break;
    done += moved;
  }
  return done;
}

int64_t read_file(int descriptor, void* to, int64_t bytes) {
  return transfer_all(bytes, [&](int64_t done, size_t count) {
    return ::read(descriptor, static_cast<char*>(to) + done, count);
  });
}
int64_t write_file(int descriptor, const void* from, int64_t bytes) {
  return transfer_all(bytes, [&](int64_t done, size_t count) {
    return ::write(descriptor, static_cast<const char*>(from) + done, count);
  });
}

bool close_file(int descriptor) { return ::close(descriptor) == 0; }
bool remove_file(const char* path) { return ::remove(path) == 0; }
bool file_exists(const char* path) { return ::access(path, F_OK) == 0; }

std::atomic<const file_calls*> current{&kSystemFiles};

}  // namespace

const file_calls kSystemFiles = {open_file,  seek_file,   read_file,  write_file,
                                 close_file, remove_file, file_exists};

const file_calls& current_file_calls() { return *current.load(std::memory_order_acquire); }
void replace_file_calls(const file_calls* calls) {
  current.store(calls == nullptr ? &kSystemFiles : calls, std::memory_order_release);
}

}  // namespace qel::pardiso
