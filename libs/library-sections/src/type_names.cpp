// By way of the dynamic symbols: symbol, section, place in the section, record.
#include "library_sections/type_names.hpp"

#include <algorithm>

#include "library_sections/error.hpp"

namespace library_sections {

namespace {

constexpr std::uint64_t symbol_bytes = 24;
constexpr std::string_view record_magic = "0df0efbe";  // as its bytes lie
constexpr std::string_view record_suffix = "_type_info_internal";
constexpr std::uint16_t undefined = 0;

struct Symbol {
  std::uint32_t name = 0;
  std::uint16_t section = 0;
  std::uint64_t address = 0;
};

Symbol read_symbol(Cursor &cursor) {
  Symbol symbol;
  symbol.name = cursor.u32("name of a symbol");
  cursor.take(2, "kind of a symbol");
  symbol.section = cursor.u16("section of a symbol");
  symbol.address = cursor.u64("address of a symbol");
  cursor.u64("size of a symbol");
  return symbol;
}

std::string_view until_nul(std::string_view text) { return text.substr(0, text.find('\0')); }

void read_record(const ElfFile &file, const Symbol &symbol, std::string_view name,
                 std::map<std::string, std::string> &names) {
  const std::string where = "type record " + escaped(name);
  if (symbol.section >= file.sections().size()) {
    throw Error(where, "section " + std::to_string(symbol.section),
                "one of " + std::to_string(file.sections().size()));
  }
  const Section &section = file.sections()[symbol.section];
  if (symbol.address < section.address) {
    throw Error(where, "address " + std::to_string(symbol.address),
                "one within section " + escaped(section.name));
  }
  Cursor cursor(where + " in section " + escaped(section.name), file.bytes(section),
                symbol.address - section.address);
  const std::uint64_t at = cursor.at();
  const std::string magic = hex(cursor.take(4, "magic"));
  if (magic != record_magic) {
    throw Error(cursor.where(), at, "magic", magic, std::string(record_magic));
  }
  const std::string md5 = hex(cursor.take(16, "MD5"));
  const std::string_view digits = until_nul(text_of(cursor.take(33, "MD5 as text")));
  if (digits != md5) {
    throw Error(cursor.where(), at + 20, "MD5 as text", "\"" + escaped(digits) + "\"", md5);
  }
  names[md5] = until_nul(text_of(cursor.take(64, "name")));
}

}  // namespace

std::map<std::string, std::string> read_type_names(const ElfFile &file) {
  std::map<std::string, std::string> names;
  const bool has_symbols = std::ranges::any_of(
      file.sections(), [](const Section &section) { return section.name == ".dynsym"; });
  if (!has_symbols) return names;
  const std::string_view texts = text_of(file.bytes(file.require(".dynstr")));
  const Bytes symbols = file.bytes(file.require(".dynsym"));
  Cursor cursor("section .dynsym", symbols);
  while (cursor.left() >= symbol_bytes) {
    const std::uint64_t at = cursor.at();
    const Symbol symbol = read_symbol(cursor);
    if (symbol.name > texts.size()) {
      throw Error(cursor.where(), at, "name of a symbol", std::to_string(symbol.name),
                  "at most the " + std::to_string(texts.size()) + " bytes of section .dynstr");
    }
    const std::string_view name = until_nul(texts.substr(symbol.name));
    if (symbol.section == undefined || !name.ends_with(record_suffix)) continue;
    read_record(file, symbol, name, names);
  }
  return names;
}

}  // namespace library_sections
