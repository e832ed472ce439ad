// Trace records out of bytes that arrive piece by piece, each checked before it is handed out.
// Knows the offset of each record, keeps a record that is not there in full until the rest arrives,
// and throws InputError with the offset for what is no record.
#pragma once

#include <kelp/trace.h>

#include <functional>
#include <span>
#include <string>
#include <vector>

namespace tool {

class TraceReader {
 public:
  using Sink = std::function<void(const kelp_trace_event &, std::uint64_t offset)>;

  // source names the file in complaints.
  TraceReader(std::string source, Sink sink);

  void add(std::span<const std::uint8_t> bytes);

  // Says that nothing follows: InputError when a record is not complete.
  void end() const;

 private:
  std::string source_;
  Sink sink_;
  std::vector<std::uint8_t> kept_;  // the beginning of a record
  std::uint64_t offset_ = 0;        // of it in the file
};

}  // namespace tool
