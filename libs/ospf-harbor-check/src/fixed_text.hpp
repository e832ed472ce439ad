// A text of limited length in place: what would go beyond is left out, and a NUL always stands
// behind the rest. Used for all that the checker says, so that it needs no memory of its own.
#pragma once

#include <charconv>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace ospf_harbor_check {

class TextBuffer {
 public:
  TextBuffer(char *start, std::size_t size) : start_(start), size_(size) { start_[0] = '\0'; }
  template <std::size_t size>
  explicit TextBuffer(char (&place)[size]) : TextBuffer(place, size) {}

  TextBuffer &put(std::string_view text) {
    const std::size_t room = size_ - 1 - length_;
    const std::size_t taken = text.size() < room ? text.size() : room;
    if (taken != 0) std::memcpy(start_ + length_, text.data(), taken);
    length_ += taken;
    start_[length_] = '\0';
    return *this;
  }
  TextBuffer &number(std::uint64_t value, int base = 10) {
    char digits[24];
    const auto end = std::to_chars(digits, digits + sizeof digits, value, base).ptr;
    return put({digits, static_cast<std::size_t>(end - digits)});
  }
  // One byte as two digits.
  TextBuffer &hexadecimal(std::uint8_t byte) {
    if (byte < 16) put("0");
    return number(byte, 16);
  }
  TextBuffer &fill_to(std::size_t column) {
    while (length_ < column && length_ < size_ - 1) put(" ");
    return *this;
  }

  std::string_view view() const { return {start_, length_}; }
  const char *c_str() const { return start_; }
  std::size_t size() const { return length_; }

 private:
  char *start_;
  std::size_t size_;
  std::size_t length_ = 0;
};

template <std::size_t capacity>
class FixedText : public TextBuffer {
 public:
  FixedText() : TextBuffer(place_) {}
  explicit FixedText(std::string_view text) : FixedText() { put(text); }
  FixedText(const FixedText &) = delete;
  FixedText &operator=(const FixedText &) = delete;

 private:
  char place_[capacity];
};

}  // namespace ospf_harbor_check
