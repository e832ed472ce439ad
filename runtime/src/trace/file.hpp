// The file that records are appended to. Records are handed to the system whole, many at a time, so
// that only a full disk or the end of the machine can tear one. Not locked: the trace is.
#pragma once

#include <cstddef>
#include <cstdint>

namespace kelp::trace {

class File {
 public:
  // A file that is open stays as it is when the new one cannot be opened. 0 or errno.
  int open(const char *path);
  bool is_open() const { return descriptor_ >= 0; }

  void add(const std::uint8_t *record, std::size_t length);

  // Hands over what is buffered.
  void write_out();

  // Writes out and closes.
  void close();

  // What was lost since this was asked last: how many records, and why.
  struct Loss {
    std::uint64_t records = 0;
    int code = 0;
  };
  Loss take_loss();

 private:
  void count_lost(std::size_t written);

  static constexpr std::size_t kBuffer = 16 * 1024;

  int descriptor_ = -1;
  std::size_t used_ = 0;
  Loss loss_;
  std::uint8_t buffer_[kBuffer];
};

}  // namespace kelp::trace
