// What is wrong with something that came from outside: one line that says where, what was found and
// what was expected.
#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

namespace ospf_tables {

// Text that came from outside as it may stand in a line on a terminal: control characters, those of
// U+0080 to U+009F and what is no UTF-8 by their octets, as \xNN, and so marks that turn or hide
// the text around them.
std::string in_one_line(std::string_view text);

// The same for a text of lines, whose ends stay.
std::string in_lines(std::string_view text);

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
