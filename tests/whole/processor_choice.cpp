// SPDX-License-Identifier: BSD-3-Clause
// usage: processor_choice LEVEL TYPE
// Prints the processor level and type that this process chooses; fails if they are others than the given
// ones. scripts/run_emulated.sh runs it on emulated processors.
#include <cstdio>
#include <cstdlib>

#include "service/serv.h"

int main(int argument_count, char** arguments) {
  if (argument_count != 3) return 2;
  const int level = std::atoi(arguments[1]), type = std::atoi(arguments[2]);
  std::printf("level %d type %d, expected %d and %d\n", qel::serv_cpu_level(), qel::serv_cpu_type(), level,
              type);
  return qel::serv_cpu_level() == level && qel::serv_cpu_type() == type ? 0 : 1;
}
