// What is wrong with something that came from outside: one line that says where, what was found and
// what was expected.
#pragma once

#include <stdexcept>
#include <string>

namespace tool {

class InputError : public std::runtime_error {
 public:
  // For what is one such line already.
  explicit InputError(const std::string &line) : std::runtime_error(line) {}

  // source: a file, or what stands for one; place: where in it, may be empty.
  InputError(const std::string &source, const std::string &place, const std::string &found,
             const std::string &expected)
      : std::runtime_error(source + ": " + (place.empty() ? "" : place + ": ") + "found " + found +
                           ", expected " + expected) {}
};

}  // namespace tool
