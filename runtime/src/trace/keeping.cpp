// Where records are kept: the size of the ring, and the file.
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <mutex>

#include "base/failure.hpp"
#include "trace/trace.hpp"

using kelp::trace::the_trace;

extern "C" int32_t kelp_trace_set_ring_size(size_t bytes) {
  kelp::trace::Trace &trace = the_trace();
  const std::lock_guard lock(trace.mutex);
  return trace.ring.resize(bytes) ? 0 : KELP_ERR_NO_MEMORY;
}

extern "C" void kelp_trace_clear_ring(void) {
  kelp::trace::Trace &trace = the_trace();
  const std::lock_guard lock(trace.mutex);
  trace.ring.clear();
}

extern "C" int32_t kelp_trace_open_file(const char *path, kelp_error *error) {
  kelp::trace::Trace &trace = the_trace();
  std::FILE *opened = nullptr;
  if (path != nullptr) {
    opened = std::fopen(path, "abe");
    if (opened == nullptr) {
      return kelp::fail(error, errno, "kelp_trace_open_file: '%s': %s, expected a file to write to",
                        path, std::strerror(errno));
    }
  }
  std::FILE *closed = nullptr;
  {
    const std::lock_guard lock(trace.mutex);
    closed = trace.file;
    trace.file = opened;
  }
  if (closed != nullptr && std::fclose(closed) != 0) {
    return kelp::fail(error, errno, "kelp_trace_open_file: closing the file before: %s",
                      std::strerror(errno));
  }
  return kelp::succeed(error);
}

extern "C" void kelp_trace_flush(void) {
  kelp::trace::Trace &trace = the_trace();
  const std::lock_guard lock(trace.mutex);
  if (trace.file != nullptr) std::fflush(trace.file);
}
