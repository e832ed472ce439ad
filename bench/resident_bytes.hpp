// What the process has in memory, as the system counts it.
#pragma once

#include <unistd.h>

#include <cstdio>

namespace bench {

inline double resident_bytes() {
  long pages = 0;
  long resident = 0;
  if (std::FILE *file = std::fopen("/proc/self/statm", "r")) {
    if (std::fscanf(file, "%ld %ld", &pages, &resident) != 2) resident = 0;
    std::fclose(file);
  }
  return static_cast<double>(resident) * static_cast<double>(sysconf(_SC_PAGESIZE));
}

}  // namespace bench
