// What is wrong with a library file: where (a section and a byte in it), what, found and expected,
// in one line. Every reader here throws it and nothing else; the caller names the file.
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>

namespace library_sections {

class Error : public std::runtime_error {
 public:
  // where: "section .halyard", "section table" and the like; offset: bytes from its beginning.
  Error(const std::string &where, std::uint64_t offset, const std::string &what,
        const std::string &found, const std::string &expected)
      : std::runtime_error(where + ", byte " + std::to_string(offset) + ": " + what + ": found " +
                           found + ", expected " + expected) {}
  // For a whole sentence.
  explicit Error(const std::string &sentence) : std::runtime_error(sentence) {}
  // For what has no place, such as a section that is missing.
  Error(const std::string &where, const std::string &found, const std::string &expected)
      : std::runtime_error(where + ": found " + found + ", expected " + expected) {}
};

}  // namespace library_sections
