// What is wrong with something that came from outside: one line that says where, what was found and
// what was expected.
#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

namespace ospf_tables {

// Text that came from outside as it may stand in a line: control characters as \xNN.
inline std::string in_one_line(std::string_view text) {
  constexpr char digits[] = "0123456789abcdef";
  std::string line;
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte >= 0x20 && byte != 0x7f) {
      line += c;
    } else {
      line += {'\\', 'x', digits[byte >> 4], digits[byte & 15]};
    }
  }
  return line;
}

class InputError : public std::runtime_error {
 public:
  // For what is one such line already.
  explicit InputError(const std::string &line) : std::runtime_error(in_one_line(line)) {}

  // source: a file, or what stands for one; text: says what was found and expected.
  InputError(const std::string &source, const std::string &text)
      : InputError(source + ": " + text) {}

  // place: where in the source, may be empty.
  InputError(const std::string &source, const std::string &place, const std::string &found,
             const std::string &expected)
      : InputError(source, (place.empty() ? "" : place + ": ") + "found " + found + ", expected " +
                               expected) {}
};

}  // namespace ospf_tables
