// The layouts as the readers' headers state them, written out once more.
#include "support/sample_library.hpp"

#include <bzlib.h>

#include <stdexcept>

namespace sample {

namespace {

void put(std::string &bytes, std::uint64_t value, int width) {
  for (int i = 0; i < width; ++i) bytes += static_cast<char>(value >> (8 * i) & 0xff);
}

void put_entry(std::string &table, std::uint64_t name, const Section &section,
               std::uint64_t offset) {
  put32(table, name);
  put32(table, section.type);
  put64(table, section.flags);
  put64(table, 0);  // address
  put64(table, offset);
  put64(table, section.bytes.size());
  put32(table, 0);  // link
  put32(table, 0);  // info
  put64(table, 1);  // alignment
  put64(table, 0);  // size of entries
}

}  // namespace

void put16(std::string &bytes, std::uint64_t value) { put(bytes, value, 2); }
void put32(std::string &bytes, std::uint64_t value) { put(bytes, value, 4); }
void put64(std::string &bytes, std::uint64_t value) { put(bytes, value, 8); }

File elf(const std::vector<Section> &sections) {
  std::string names(1, '\0');
  std::string bodies;
  std::string table;
  put_entry(table, 0, {"", "", 0, 0}, 0);
  for (const Section &one : sections) {
    put_entry(table, names.size(), one, 64 + bodies.size());
    names += one.name + '\0';
    bodies += one.bytes;
  }
  const std::size_t own_name = names.size();
  names += std::string(".shstrtab") + '\0';
  put_entry(table, own_name, {"", names, 0, 3}, 64 + bodies.size());
  bodies += names;

  std::string file(
      "\x7f"
      "ELF\2\1\1",
      7);
  file.resize(16);
  put16(file, 3);   // shared object
  put16(file, 62);  // machine
  put32(file, 1);
  put64(file, 0);  // entry
  put64(file, 0);  // program headers
  put64(file, 64 + bodies.size());
  put32(file, 0);  // flags
  put16(file, 64);
  put16(file, 0);
  put16(file, 0);
  put16(file, 64);
  put16(file, sections.size() + 2);
  put16(file, sections.size() + 1);
  file += bodies + table;
  return {file.begin(), file.end()};
}

Library::Library() {
  Source types{0, {}, {}};
  Source tables{1, {}, {}};
  for (std::size_t i = 0; i < 16; ++i) {
    types.identity[i] = static_cast<std::uint8_t>(0x10 + i);
    tables.identity[i] = static_cast<std::uint8_t>(0xf0 - i);
  }
  types.messages = {{0, "error in thing create %s"},
                    {1, "Corrupted Handle"},
                    {2, "variant %u requested only %u variants present"},
                    {3, "read_len %d base %d jump %d"}};
  tables.messages = {{4, "reference to %p lost. Error %s"},
                     {5, "no mapping for %s/%s"},
                     {6, "unknown key:%d"},
                     {7, "no root in DB %s. Open type: %u"}};
  sources = {types, tables};
  manifest =
      "# sample.minime\n"
      "2b42e5c02e3225d440f9f5bec13c63de:5a730a756af0b63bd1546cec964c5687enum000:00016N\n"
      "0f58589be39f59b1ec820d0a75d12853:00112233445566778899aabbccddeefftype001:00272N\n";
  build =
      "sample\nbuilt by: someone\non host: here\npid: 12\n"
      "at: 2026-01-02 03:04:05.000000006 UTC\ncomment: made for a test\n";
}

std::string Library::section_name(const Source &source) const {
  std::string name = ".xlog_luids_";
  for (const std::uint8_t byte : source.identity) {
    name += "0123456789abcdef"[byte >> 4];
    name += "0123456789abcdef"[byte & 15];
  }
  return name;
}

std::string Library::table(const Source &source) const {
  std::string bytes;
  put16(bytes, 1);
  put16(bytes, source.number);
  bytes.append(source.identity.begin(), source.identity.end());
  std::uint64_t row = 0;
  for (const Message &message : source.messages) {
    put32(bytes, std::uint64_t{message.signature} << 16 | row++);
    put16(bytes, message.text.size() + 1);
  }
  return bytes;
}

std::string Library::texts() const {
  std::string text;
  for (const Source &source : sources) {
    for (const Message &message : source.messages) text += " " + message.text;
  }
  return text;
}

std::string Library::decoder() const {
  std::size_t messages = 0;
  for (const Source &source : sources) messages += source.messages.size();
  std::string bytes("bzip2\0\0", 7);
  put32(bytes, 1);
  put32(bytes, sources.size());
  put32(bytes, messages);
  put32(bytes, texts().size());
  put32(bytes, compressed(texts()).size());
  return bytes;
}

std::string Library::halyard() const {
  std::string bytes;
  put32(bytes, manifest.size() + 1);
  put32(bytes, 2);
  bytes += manifest + '\0';
  put32(bytes, build.size() + 1);
  put32(bytes, 1);
  bytes += build + '\0';
  return bytes;
}

std::vector<Section> Library::sections() const {
  std::vector<Section> result;
  for (const Source &source : sources) {
    result.push_back({section_name(source), table(source), 2, 1});
  }
  result.push_back({".xlog_format_strings", compressed(texts()), 0, 1});
  result.push_back({".xlog_decoder", decoder(), 0, 1});
  result.push_back({".halyard", halyard(), 0, 1});
  return result;
}

std::string compressed(const std::string &text) {
  std::string in = text;
  auto length = static_cast<unsigned>(text.size() + text.size() / 100 + 600);
  std::string bytes(length, '\0');
  if (BZ2_bzBuffToBuffCompress(bytes.data(), &length, in.data(), static_cast<unsigned>(in.size()),
                               9, 0, 0) != BZ_OK) {
    throw std::runtime_error("bzip2 does not compress");
  }
  bytes.resize(length);
  return bytes;
}

Section &section(std::vector<Section> &sections, const std::string &name) {
  for (Section &one : sections) {
    if (one.name == name) return one;
  }
  throw std::runtime_error("no section " + name);
}

}  // namespace sample
