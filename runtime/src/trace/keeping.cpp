// Where records are kept: the size of the ring, and the file.
#include <cinttypes>
#include <cstring>
#include <mutex>

#include "base/failure.hpp"
#include "trace/trace.hpp"

using kelp::trace::the_trace;

extern "C" int32_t kelp_trace_set_ring_size(size_t bytes) {
  kelp::trace::Trace &trace = the_trace();
  const std::lock_guard lock(trace.mutex);
  if (bytes > PTRDIFF_MAX) return KELP_ERR_INVALID;
  return trace.ring.resize(bytes) ? 0 : KELP_ERR_NO_MEMORY;
}

extern "C" void kelp_trace_clear_ring(void) {
  kelp::trace::Trace &trace = the_trace();
  const std::lock_guard lock(trace.mutex);
  trace.ring.clear();
}

extern "C" int32_t kelp_trace_open_file(const char *path, kelp_error *error) {
  constexpr const char *kFunction = "kelp_trace_open_file";
  kelp::trace::Trace &trace = the_trace();
  int code = 0;
  kelp::trace::File::Loss loss;
  {
    const std::lock_guard lock(trace.mutex);
    if (path == nullptr) {
      trace.file.close();
    } else {
      code = trace.file.open(path);
    }
    if (code == 0) loss = trace.file.take_loss();
  }
  if (code != 0) {
    return kelp::fail(error, code, "%s: '%s': %s, expected a file to write to", kFunction, path,
                      std::strerror(code));
  }
  if (loss.code != 0) {
    return kelp::fail(error, loss.code, "%s: %" PRIu64 " records of the file before were lost: %s",
                      kFunction, loss.records, std::strerror(loss.code));
  }
  return kelp::succeed(error);
}

extern "C" int32_t kelp_trace_flush(void) {
  kelp::trace::Trace &trace = the_trace();
  const std::lock_guard lock(trace.mutex);
  if (trace.file.is_open()) trace.file.write_out();
  return trace.file.take_loss().code;
}
