// The options --trace-file and --trace-level: the trace of this run in a file, for `trace` to
// print. A record is in the file when the call that emitted it returns, so that another terminal
// can follow it.
#pragma once

#include <kelp/trace.h>

#include <CLI/CLI.hpp>
#include <atomic>
#include <string>

namespace tool {

class TraceFile {
 public:
  explicit TraceFile(CLI::App &app);
  ~TraceFile();
  TraceFile(const TraceFile &) = delete;
  TraceFile &operator=(const TraceFile &) = delete;

  // Opens the file, when one was given. InputError for one that cannot be written, or that holds
  // something else than whole trace records: nothing is appended to it then.
  void open();

  // The end of the trace. InputError when records of the run did not get into the file.
  void close();

 private:
  static int flush(void *self, const kelp_trace_event *);
  std::string losses();

  std::string path_;
  std::string level_ = "debug";
  bool open_ = false;
  std::atomic<std::uint64_t> lost_ = 0;  // records
  std::atomic<int> reason_ = 0;          // of the first
};

}  // namespace tool
