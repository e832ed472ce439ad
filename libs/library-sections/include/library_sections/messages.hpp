// The stored trace messages of a library: one table for each trace source, and one compressed text
// for all of them.
//
//   .xlog_luids_<32 digits>   offset size
//                                  0    4 low 16 bits 1, high 16 bits the number of the source
//                                  4   16 identity of the source; the section is named after it
//                                 20  6 n entries: u32 attribute word, u16 length of the text
//   .xlog_format_strings      bzip2 of all texts in the order of sources and entries, without
//                             separators, each with a blank in front that its length counts
//   .xlog_decoder             offset size
//                                  0    7 name of the compression, "bzip2", padded with NULs
//                                  7    4 layout of the tables, 1
//                                 11    4 number of sources
//                                 15    4 messages of all sources
//                                 19    4 bytes of text
//                                 23    4 bytes of compressed text
//
// The bits of an attribute word above the low 16 are the signature, which has to agree with the
// conversions in the text: who applies arguments to a text may rely on it. A decompressed text is
// never longer than the lengths add up to, however long the compressed one says it is.
#pragma once

#include <array>

#include "library_sections/elf_file.hpp"

namespace library_sections {

struct Signature {
  std::string_view conversions;  // as they stand in the text, "%u %u"
  std::string_view digits;       // of the emitter, "44"
};

// By number.
inline constexpr std::array<Signature, 8> signatures{{
    {"%s", "1"},
    {"", "0"},
    {"%u %u", "44"},
    {"%d %d %d", "444"},
    {"%p %s", "51"},
    {"%s %s", "11"},
    {"%d", "4"},
    {"%s %u", "14"},
}};

using Identity = std::array<std::uint8_t, 16>;

struct Message {
  std::uint32_t attributes = 0;
  std::string text;  // without the blank

  std::uint32_t signature() const { return attributes >> 16; }
};

struct MessageTable {
  std::string section;
  std::uint16_t source = 0;
  Identity identity{};
  std::vector<Message> messages;  // by index
};

struct MessageStore {
  std::vector<MessageTable> tables;  // by source
  std::string compression;
  std::uint64_t text_bytes = 0;  // with the blanks
  std::uint64_t compressed_bytes = 0;

  // Null when no table has the identity.
  const MessageTable *table(const std::uint8_t identity[16]) const;
};

inline constexpr std::string_view message_table_prefix = ".xlog_luids_";
inline constexpr std::string_view text_section = ".xlog_format_strings";
inline constexpr std::string_view decoder_section = ".xlog_decoder";

// Reads all of it; Error for the first thing that is wrong or that does not agree with the rest.
MessageStore read_messages(const ElfFile &file);

}  // namespace library_sections
