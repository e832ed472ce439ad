// A sink that flushes is what makes each record visible at once.
#include "traces/trace_file.hpp"

#include <kelp/embed.h>
#include <kelp/trace.h>

#include "ospf_tables/input_error.hpp"
#include "traces/trace_texts.hpp"

namespace tool {

using namespace ospf_tables;

namespace {

int flush(void *, const kelp_trace_event *) {
  kelp_trace_flush();
  return 0;
}

}  // namespace

TraceFile::TraceFile(CLI::App &app) {
  CLI::Option *file =
      app.add_option("--trace-file", path_, "Append the trace of this run to a file");
  app.add_option("--trace-level", level_,
                 "What goes into it: this level and worse, of fatal, error, information and debug")
      ->needs(file);
}

void TraceFile::open() {
  if (path_.empty()) return;
  const std::uint8_t level = level_by_name("--trace-level", level_);
  kelp_error error{};
  const std::int32_t there = kelp_trace_read_file(path_.c_str(), nullptr, nullptr, &error);
  if (there != 0 && there != KELP_ERR_NOT_FOUND) throw InputError(error.text);
  if (kelp_trace_open_file(path_.c_str(), &error) != 0) throw InputError(error.text);
  open_ = true;
  kelp_trace_set_level(nullptr, level);
  kelp_trace_set_sink(flush, nullptr);
}

TraceFile::~TraceFile() {
  if (!open_) return;
  kelp_trace_set_sink(nullptr, nullptr);
  kelp_trace_open_file(nullptr, nullptr);
}

}  // namespace tool
