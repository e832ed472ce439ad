// A sink that flushes is what makes each record visible at once.
#include "traces/trace_file.hpp"

#include <kelp/embed.h>
#include <kelp/trace.h>

#include <cstring>

#include "ospf_tables/input_error.hpp"
#include "traces/trace_texts.hpp"
#include "views/notes.hpp"

namespace tool {

using namespace ospf_tables;

// Each record is flushed, so that each flush that fails has lost one.
int TraceFile::flush(void *self, const kelp_trace_event *) {
  auto &file = *static_cast<TraceFile *>(self);
  const int reason = kelp_trace_flush();
  if (reason == 0) return 0;
  int none = 0;
  file.reason_.compare_exchange_strong(none, reason);
  ++file.lost_;
  return 0;
}

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
  kelp_trace_set_sink(flush, this);
}

// Closes the file; what was lost, in words, or nothing.
std::string TraceFile::losses() {
  open_ = false;
  kelp_trace_set_sink(nullptr, nullptr);
  const int reason = kelp_trace_open_file(nullptr, nullptr);
  if (reason != 0 && lost_++ == 0) reason_ = reason;
  if (lost_ == 0) return "";
  return "cannot write " + path_ + ": " + std::strerror(reason_) + "; " + std::to_string(lost_) +
         " of the trace's records are lost";
}

void TraceFile::close() {
  if (!open_) return;
  if (const std::string lost = losses(); !lost.empty()) throw InputError(lost);
}

// Of a run that failed otherwise.
TraceFile::~TraceFile() {
  if (!open_) return;
  if (const std::string lost = losses(); !lost.empty()) note("ospf-harbor: " + lost);
}

}  // namespace tool
