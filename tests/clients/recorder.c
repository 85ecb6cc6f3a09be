/* SPDX-License-Identifier: BSD-3-Clause */
/* Preloaded into a client: when a process of it ends, the libraries that it has mapped are appended to a file
 * of its own in the folder QEL_CLIENT_MAPS, the program first.
 */
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

__attribute__((destructor)) static void record(void) {
  const char* folder = getenv("QEL_CLIENT_MAPS");
  if (folder == NULL) return;
  char path[4096], line[4352], last[4352] = "";
  snprintf(path, sizeof path, "%s/%ld", folder, (long)getpid());
  FILE* maps = fopen("/proc/self/maps", "r");
  FILE* out = fopen(path, "a");
  while (maps != NULL && out != NULL && fgets(line, sizeof line, maps) != NULL) {
    const char* file = strchr(line, '/');
    if (file == NULL || strcmp(file, last) == 0) continue;
    strcpy(last, file);
    fputs(file, out);
  }
  if (maps != NULL) fclose(maps);
  if (out != NULL) fclose(out);
}
