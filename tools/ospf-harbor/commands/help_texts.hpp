// What help says of a command beyond its options: what is typed, and what its statuses mean.
#pragma once

#include <cstddef>
#include <string>

namespace tool {

struct Statuses {
  const char *zero = "all went well";
  const char *one = "something is wrong with the data, or there is nothing to show";
  const char *two = "the command line is wrong";
  // Whether 1 says what was found; then what cannot be read has 2.
  bool one_is_an_answer = false;
};

struct HelpText {
  const char *command;   // such as "load frr"
  const char *examples;  // lines, without "ospf-harbor"
  Statuses statuses{};
};

// That of a command; the last of a command that has none, without examples.
const HelpText &help_text(const std::string &command);

// The end of a command's help: examples and statuses.
std::string footer_of(const std::string &command);

// Lines that are longer than the width are broken at blanks, under the column that they are in.
std::string wrapped(const std::string &text, std::size_t width = 80);

}  // namespace tool
