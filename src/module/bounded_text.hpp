// A short text put together in a place of fixed size: element paths, labels and words of failures.
// What is beyond the room is left out without a message, and a NUL stands behind the rest.
#pragma once

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace harbor {

template <std::size_t size>
class BoundedText {
 public:
  BoundedText() { bytes_[0] = '\0'; }

  BoundedText &put(std::string_view text) {
    const std::size_t length = std::min(text.size(), size - 1 - used_);
    std::memcpy(bytes_.data() + used_, text.data(), length);
    used_ += length;
    bytes_[used_] = '\0';
    return *this;
  }
  BoundedText &put(std::uint32_t number) {
    std::array<char, 10> digits;
    const char *end = std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
    return put({digits.data(), static_cast<std::size_t>(end - digits.data())});
  }
  const char *data() const { return bytes_.data(); }
  // Whether so many bytes more fit.
  bool has_room(std::size_t more) const { return more < size - used_; }

 private:
  std::array<char, size> bytes_;
  std::size_t used_ = 0;
};

}  // namespace harbor
