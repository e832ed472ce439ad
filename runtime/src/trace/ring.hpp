// The ring of the latest trace records in memory. A record lies in one piece; the oldest ones give
// way to a new one. Not locked: the trace is.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

namespace kelp::trace {

class Ring {
 public:
  // Empties the ring and gives it this many bytes, rounded up to 8. False without memory.
  bool resize(std::size_t bytes);
  void clear();

  // A record longer than the ring is not kept. The length is a multiple of 8.
  void add(const std::uint8_t *record, std::size_t length);

  // Copies all records, oldest first, one behind the other. target holds used() bytes.
  void copy_to(std::uint8_t *target) const;
  std::size_t used() const { return used_; }

 private:
  void drop_oldest();

  std::unique_ptr<std::uint8_t[]> bytes_;
  std::size_t capacity_ = 0;
  std::size_t first_ = 0;  // where the oldest record starts
  std::size_t next_ = 0;   // where the next one goes
  std::size_t wrap_ = 0;   // behind the last record before the ring starts over
  std::size_t used_ = 0;   // bytes of records
};

}  // namespace kelp::trace
