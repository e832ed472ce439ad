// Trace records out of bytes that arrive piece by piece, each checked before it is handed out.
// Knows the offset of each record, and keeps a record that is not there in full until the rest
// arrives. What is no record, as a full disk or a killed process leaves it, is passed over up to
// the next one, and counted.
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

  // Says that nothing follows. InputError when there were bytes and no record at all.
  void end();

  // What was passed over up to now, with the place of the first; empty for nothing.
  std::string passed_over() const;

 private:
  void read_on(bool at_end);
  void pass_over(std::size_t bytes, std::uint64_t offset, const std::string &why);

  std::string source_;
  Sink sink_;
  std::vector<std::uint8_t> kept_;  // the beginning of a record
  std::uint64_t offset_ = 0;        // of it in the file
  std::uint64_t records_ = 0;
  std::uint64_t bytes_passed_over_ = 0;
  std::uint64_t places_passed_over_ = 0;
  std::uint64_t end_of_last_place_ = 0;
  std::string first_place_;
};

}  // namespace tool
