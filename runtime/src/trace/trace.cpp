// Making the process's trace, and where its messages go.
#include "trace/trace.hpp"

#include <pthread.h>

#include "base/undying.hpp"

namespace kelp::trace {

namespace {

thread_local bool t_in_callback = false;

// A fork finds the trace unlocked and the file's buffer empty, so that the child neither waits nor
// writes what its parent writes.
void before_fork() {
  Trace &trace = the_trace();
  trace.mutex.lock();
  if (trace.file.is_open()) trace.file.write_out();
}

void after_fork() { the_trace().mutex.unlock(); }

[[maybe_unused]] const int at_fork = pthread_atfork(before_fork, after_fork, after_fork);

}  // namespace

Trace::Trace() {
  for (auto &level : levels) level = KELP_TRACE_INFORMATION;
  ring.resize(kDefaultRingBytes);
}

Trace &the_trace() { return undying<Trace>(); }

InCallback::InCallback() : before_(t_in_callback) { t_in_callback = true; }
InCallback::~InCallback() { t_in_callback = before_; }

bool in_callback() { return t_in_callback; }

}  // namespace kelp::trace

using kelp::trace::the_trace;

extern "C" void kelp_trace_set_sink(kelp_trace_callback sink, void *context) {
  kelp::trace::Trace &trace = the_trace();
  const std::lock_guard lock(trace.mutex);
  trace.sink = sink;
  trace.sink_context = context;
}

extern "C" void kelp_trace_set_text_source(kelp_trace_text_source source, void *context) {
  kelp::trace::Trace &trace = the_trace();
  const std::lock_guard lock(trace.mutex);
  trace.text_source = source;
  trace.text_context = context;
}
