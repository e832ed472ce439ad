// Small library files for tests, built here byte by byte: an ELF file of any sections, and the
// sections of a store of two sources with one message of each signature.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace sample {

using File = std::vector<std::uint8_t>;

// Little-endian numbers at the end of a text of bytes.
void put16(std::string &bytes, std::uint64_t value);
void put32(std::string &bytes, std::uint64_t value);
void put64(std::string &bytes, std::uint64_t value);

struct Section {
  std::string name;
  std::string bytes;
  std::uint64_t flags = 0;
  std::uint32_t type = 1;
};

// A file of a header, the sections' bytes, the names and the section table, in this order.
File elf(const std::vector<Section> &sections);

struct Message {
  std::uint32_t signature;
  std::string text;
};

struct Source {
  std::uint16_t number;
  std::array<std::uint8_t, 16> identity;
  std::vector<Message> messages;
};

// What a library's sections are made of; a test changes what it wants to be wrong.
struct Library {
  Library();

  std::vector<Source> sources;
  std::string manifest;  // without the NUL
  std::string build;     // without the NUL

  std::string section_name(const Source &source) const;
  std::string table(const Source &source) const;
  std::string texts() const;    // not compressed
  std::string decoder() const;  // for the texts as they are
  std::string halyard() const;

  std::vector<Section> sections() const;
  File file() const { return elf(sections()); }
};

std::string compressed(const std::string &text);

// The section of that name, to be changed in place.
Section &section(std::vector<Section> &sections, const std::string &name);

}  // namespace sample
