// Header first, then the table, then the names: each is found through the one before, and checked.
#include "library_sections/elf_file.hpp"

#include <algorithm>
#include <cstring>

#include "library_sections/error.hpp"

namespace library_sections {

namespace {

constexpr std::uint64_t header_bytes = 64;
constexpr std::uint64_t section_entry_bytes = 64;
constexpr std::uint32_t type_without_bytes = 8;
constexpr std::uint64_t flag_compressed = 0x800;
constexpr std::uint32_t number_elsewhere = 0xffff;

void check_identification(Bytes file) {
  static constexpr std::uint8_t magic[4] = {0x7f, 'E', 'L', 'F'};
  const Bytes found = file.first(std::min<std::size_t>(file.size(), 4));
  if (!std::ranges::equal(found, magic)) {
    throw Error("file", 0, "magic of an ELF file", found.empty() ? "an empty file" : hex(found),
                hex(magic));
  }
  const Bytes identification = Cursor("ELF header", file).take(16, "identification");
  if (identification[4] != 2) {
    throw Error("ELF header", 4, "class",
                identification[4] == 1 ? "1 (32-bit)" : std::to_string(identification[4]),
                "2 (64-bit)");
  }
  if (identification[5] != 1) {
    throw Error("ELF header", 5, "byte order",
                identification[5] == 2 ? "2 (big-endian)" : std::to_string(identification[5]),
                "1 (little-endian)");
  }
}

// An entry of the section table, its name still a number.
struct Entry {
  std::uint32_t name = 0;
  std::uint32_t link = 0;
  Section section;
};

Entry read_entry(Bytes file, std::uint64_t at) {
  Cursor cursor("section table", file, at);
  Entry entry;
  entry.name = cursor.u32("name of a section");
  entry.section.type = cursor.u32("type of a section");
  entry.section.flags = cursor.u64("flags of a section");
  entry.section.address = cursor.u64("address of a section");
  entry.section.offset = cursor.u64("offset of a section");
  entry.section.size = cursor.u64("size of a section");
  entry.link = cursor.u32("link of a section");
  return entry;
}

std::string_view read_name(Bytes names, std::uint32_t at) {
  const Bytes rest = at < names.size() ? names.subspan(at) : Bytes{};
  // Many sections may share one long name: a search that looks at single octets would take minutes.
  const void *end = rest.empty() ? nullptr : std::memchr(rest.data(), 0, rest.size());
  if (end == nullptr) {
    throw Error(
        "section names", at, "name of a section",
        rest.empty() ? "an offset behind " + std::to_string(names.size()) + " bytes" : "no end",
        "a name that ends in a NUL");
  }
  return text_of(
      rest.first(static_cast<std::size_t>(static_cast<const std::uint8_t *>(end) - rest.data())));
}

Bytes bytes_of(Bytes file, const Section &section) {
  const std::string where = "section " + escaped(section.name);
  if (section.type == type_without_bytes) {
    throw Error(where, "no bytes in the file", "a section with bytes");
  }
  if ((section.flags & flag_compressed) != 0) {
    throw Error(where, "a compressed section", "one that is not compressed");
  }
  if (section.offset > file.size() || section.size > file.size() - section.offset) {
    throw Error(where,
                std::to_string(section.size) + " bytes at byte " + std::to_string(section.offset),
                "a range within the file's " + std::to_string(file.size()) +
                    " bytes (the file is cut or damaged)");
  }
  return file.subspan(section.offset, section.size);
}

}  // namespace

std::vector<std::uint8_t> read_library(const std::string &path) {
  constexpr std::size_t largest = std::size_t{1} << 30;
  return read_file(path, [&](Bytes read) {
    check_identification(read);
    if (read.size() > largest) {
      throw Error(path, "more than " + std::to_string(largest) + " bytes", "a library's file");
    }
  });
}

ElfFile::ElfFile(Bytes file) : file_(file) {
  check_identification(file);
  Cursor("ELF header", file).take(header_bytes, "header");
  const std::uint64_t table = Cursor("ELF header", file, 40).u64("offset of the section table");
  Cursor sizes("ELF header", file, 58);
  const std::uint16_t entry_size = sizes.u16("bytes of an entry of the section table");
  std::uint64_t count = sizes.u16("number of sections");
  std::uint32_t names_at = sizes.u16("section that holds the names");
  if (table == 0) throw Error("ELF header", 40, "offset of the section table", "0", "a table");
  if (entry_size != section_entry_bytes) {
    throw Error("ELF header", 58, "bytes of an entry of the section table",
                std::to_string(entry_size), std::to_string(section_entry_bytes));
  }
  if (table > file.size()) {
    throw Error("ELF header", 40, "offset of the section table", std::to_string(table),
                "at most the file's " + std::to_string(file.size()) +
                    " bytes (the file is cut or damaged)");
  }
  // Numbers that do not fit the header stand in the first entry.
  if (count == 0 || names_at == number_elsewhere) {
    const Entry first = read_entry(file, table);
    if (count == 0) count = first.section.size;
    if (names_at == number_elsewhere) names_at = first.link;
  }
  const std::uint64_t room = (file.size() - table) / section_entry_bytes;
  if (count > room) {
    throw Error("section table", table, "number of entries", std::to_string(count),
                "at most " + std::to_string(room) + " up to the end of the file, which has " +
                    std::to_string(file.size()) + " bytes (the file is cut or damaged)");
  }
  if (names_at >= count) {
    throw Error("ELF header", 62, "section that holds the names", std::to_string(names_at),
                "less than " + std::to_string(count));
  }
  Section names = read_entry(file, table + names_at * section_entry_bytes).section;
  names.name = "of the section names";
  const Bytes text = bytes_of(file, names);
  for (std::uint64_t i = 0; i < count; ++i) {
    Entry entry = read_entry(file, table + i * section_entry_bytes);
    entry.section.name = read_name(text, entry.name);
    sections_.push_back(std::move(entry.section));
  }
}

const Section &ElfFile::require(std::string_view name) const {
  const auto has_name = [&](const Section &section) { return section.name == name; };
  const auto count = std::ranges::count_if(sections_, has_name);
  if (count != 1) {
    throw Error("section " + std::string(name), count == 0 ? "none" : std::to_string(count),
                "one such section");
  }
  return *std::ranges::find_if(sections_, has_name);
}

Bytes ElfFile::bytes(const Section &section) const { return bytes_of(file_, section); }

}  // namespace library_sections
