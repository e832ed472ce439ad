// A library's file in memory, and the one way to say that something is wrong in it: the reader's
// complaint with the file's path in front.
#pragma once

#include <library_sections/elf_file.hpp>
#include <library_sections/error.hpp>

#include "ospf_tables/input_error.hpp"

namespace tool {

class LibraryFile {
 public:
  explicit LibraryFile(const std::string &path) : path_(path), bytes_(read_bytes(path)) {}

  const std::string &path() const { return path_; }
  library_sections::Bytes bytes() const { return bytes_; }

  // What reading gives; InputError instead of library_sections::Error.
  template <typename Reading>
  auto read(Reading reading) const {
    try {
      return reading();
    } catch (const library_sections::Error &error) {
      throw ospf_tables::InputError(path_ + ": " + error.what());
    }
  }

 private:
  static std::vector<std::uint8_t> read_bytes(const std::string &path) {
    try {
      return library_sections::read_library(path);
    } catch (const library_sections::Error &error) {
      const std::string text = error.what();
      throw ospf_tables::InputError(text.find(path) != text.npos ? text : path + ": " + text);
    }
  }

  std::string path_;
  std::vector<std::uint8_t> bytes_;
};

}  // namespace tool
