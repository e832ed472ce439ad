// Processor time, user and system, which a busy machine does not falsify.
#pragma once

#include <sys/resource.h>

namespace bench {

// who: RUSAGE_SELF or RUSAGE_CHILDREN.
inline double processor_seconds(int who = RUSAGE_SELF) {
  rusage usage{};
  getrusage(who, &usage);
  const auto seconds = [](const timeval &time) {
    return static_cast<double>(time.tv_sec) + 1e-6 * static_cast<double>(time.tv_usec);
  };
  return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

}  // namespace bench
