// The ring's records: adding, dropping, copying out.
#include "trace/ring.hpp"

#include <cstring>
#include <new>

#include "trace/record.hpp"

namespace kelp::trace {

bool Ring::resize(std::size_t bytes) {
  if (bytes > SIZE_MAX - 7) return false;
  const std::size_t rounded = (bytes + 7) / 8 * 8;
  std::unique_ptr<std::uint8_t[]> memory;
  if (rounded != 0) {
    memory.reset(new (std::nothrow) std::uint8_t[rounded]);
    if (memory == nullptr) return false;
  }
  bytes_ = std::move(memory);
  capacity_ = rounded;
  clear();
  return true;
}

void Ring::clear() { first_ = next_ = used_ = 0, wrap_ = capacity_; }

void Ring::drop_oldest() {
  const std::size_t length = record_length(bytes_.get() + first_);
  first_ += length;
  used_ -= length;
  if (used_ == 0) {
    clear();
  } else if (first_ == wrap_) {
    first_ = 0;
    wrap_ = capacity_;
  }
}

void Ring::add(const std::uint8_t *record, std::size_t length) {
  if (length > capacity_) return;
  for (;;) {
    if (used_ == 0) break;
    const bool behind = next_ > first_;  // free: from next_ to the end, and from 0 to first_
    if (behind && capacity_ - next_ >= length) break;
    if (behind && first_ >= length) {
      wrap_ = next_;
      next_ = 0;
      break;
    }
    if (!behind && first_ - next_ >= length) break;
    drop_oldest();
  }
  std::memcpy(bytes_.get() + next_, record, length);
  next_ += length;
  used_ += length;
  if (next_ > wrap_) wrap_ = capacity_;
}

void Ring::copy_to(std::uint8_t *target) const {
  if (used_ == 0) return;
  if (next_ > first_) {
    std::memcpy(target, bytes_.get() + first_, next_ - first_);
    return;
  }
  std::memcpy(target, bytes_.get() + first_, wrap_ - first_);
  std::memcpy(target + (wrap_ - first_), bytes_.get(), next_);
}

}  // namespace kelp::trace
