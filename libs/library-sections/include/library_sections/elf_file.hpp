// The sections of a 64-bit little-endian ELF file, by name, out of its bytes. Nothing here trusts
// the file: each range is checked against the bytes before it is used, and what does not fit is an
// Error that says which table, which byte, what was found and what was expected.
//
// This is a reader of its own rather than libelf: what is needed is one header, one table and the
// names, some hundred lines; libelf reports a damaged file as "invalid section header" without a
// place, and takes several shapes of damage silently. It never writes and keeps no copy: the bytes
// have to outlive it.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "library_sections/bytes.hpp"

namespace library_sections {

struct Section {
  std::string_view name;  // in the bytes of the file
  std::uint32_t type = 0;
  std::uint64_t flags = 0;
  std::uint64_t address = 0;  // when loaded
  std::uint64_t offset = 0;   // in the file
  std::uint64_t size = 0;

  bool loaded() const { return (flags & 2) != 0; }
};

// All bytes of a library's file. One that does not begin as such, or is larger than any library, is
// an Error before more of it is read.
std::vector<std::uint8_t> read_library(const std::string &path);

class ElfFile {
 public:
  // Reads header and section table; Error for a file that is none, of another class or byte order,
  // without a section table, or cut.
  explicit ElfFile(Bytes file);

  const std::vector<Section> &sections() const { return sections_; }

  // The one section of that name; Error when there is none, or more than one.
  const Section &require(std::string_view name) const;

  // A section's bytes in the file; Error when it has none, is compressed or lies outside the file.
  Bytes bytes(const Section &section) const;

 private:
  Bytes file_;
  std::vector<Section> sections_;
};

}  // namespace library_sections
