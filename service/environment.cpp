// SPDX-License-Identifier: BSD-3-Clause
#include "service/environment.h"

#include <atomic>
#include <cstdlib>
#include <cstring>

namespace qel {
namespace {

const char* process_lookup(const char* name) { return std::getenv(name); }

constinit std::atomic<environment_lookup> current_lookup{process_lookup};

const char* value_of(const char* name) {
  const char* value = current_lookup.load(std::memory_order_acquire)(name);
  return value != nullptr && *value != '\0' ? value : nullptr;
}

}  // namespace

bool read_environment(const char* name, char* buffer, size_t size) {
  const char* value = value_of(name);
  if (value == nullptr || size == 0) return false;
  const size_t length = strnlen(value, size - 1);
  std::memcpy(buffer, value, length);
  buffer[length] = '\0';
  return true;
}

bool environment_has(const char* name) { return value_of(name) != nullptr; }

environment_lookup replace_environment(environment_lookup lookup) {
  return current_lookup.exchange(lookup != nullptr ? lookup : process_lookup, std::memory_order_acq_rel);
}

}  // namespace qel
