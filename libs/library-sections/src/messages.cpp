// Reads the tables first, since their lengths say how much text there may be, then the text.
#include "library_sections/messages.hpp"

#include <bzlib.h>

#include <algorithm>
#include <cstring>
#include <memory>

#include "library_sections/error.hpp"

namespace library_sections {

namespace {

constexpr std::uint64_t entry_bytes = 6;
constexpr std::uint16_t table_version = 1;
constexpr std::string_view compression_name{"bzip2\0\0", 7};

// More text than this is taken for an attack: the texts of a library fit a hundred times over.
constexpr std::uint64_t most_text = 64 * 1024 * 1024;

// A table whose texts are not known yet.
struct Lengths {
  MessageTable table;
  std::vector<std::uint16_t> lengths;
};

Lengths read_table(const std::string &name, Bytes bytes) {
  Cursor cursor("section " + name, bytes);
  Lengths result;
  MessageTable &table = result.table;
  table.section = name;
  const std::uint32_t head = cursor.u32("version and source number");
  if ((head & 0xffff) != table_version) {
    throw Error(cursor.where(), 0, "version", std::to_string(head & 0xffff),
                std::to_string(table_version));
  }
  table.source = static_cast<std::uint16_t>(head >> 16);
  const Bytes identity = cursor.take(table.identity.size(), "identity");
  std::ranges::copy(identity, table.identity.begin());
  if (name != std::string(message_table_prefix) + hex(identity)) {
    throw Error(cursor.where(), 4, "identity", hex(identity), "the one of the section's name");
  }
  if (cursor.left() % entry_bytes != 0) {
    throw Error(cursor.where(), cursor.at(), "message entries",
                std::to_string(cursor.left()) + " bytes",
                "a multiple of " + std::to_string(entry_bytes) + " (the section is cut)");
  }
  while (cursor.left() != 0) {
    const std::uint64_t at = cursor.at();
    Message message;
    message.attributes = cursor.u32("attribute word");
    if (message.signature() >= signatures.size()) {
      throw Error(
          cursor.where(), at, "signature of message " + std::to_string(table.messages.size()),
          std::to_string(message.signature()), "at most " + std::to_string(signatures.size() - 1));
    }
    table.messages.push_back(std::move(message));
    result.lengths.push_back(cursor.u16("length of a text"));
  }
  return result;
}

std::vector<Lengths> read_tables(const ElfFile &file) {
  std::vector<Lengths> tables;
  for (const Section &section : file.sections()) {
    if (!section.name.starts_with(message_table_prefix)) continue;
    tables.push_back(read_table(std::string(section.name), file.bytes(section)));
  }
  if (tables.empty()) {
    throw Error("sections " + std::string(message_table_prefix) + "*", "none",
                "one for each trace source");
  }
  std::ranges::sort(tables, {}, [](const Lengths &one) { return one.table.source; });
  for (std::size_t i = 0; i < tables.size(); ++i) {
    if (tables[i].table.source != i) {
      throw Error("section " + tables[i].table.section, 2, "number of the source",
                  std::to_string(tables[i].table.source), std::to_string(i));
    }
  }
  return tables;
}

// What the decoder section says of the rest has to be so.
void check_decoder(const ElfFile &file, const MessageStore &store, std::uint64_t sources,
                   std::uint64_t messages) {
  const std::string where = "section " + std::string(decoder_section);
  Cursor cursor(where, file.bytes(file.require(decoder_section)));
  const std::string name(text_of(cursor.take(compression_name.size(), "name of the compression")));
  if (name != compression_name) {
    throw Error(where, 0, "name of the compression", "\"" + escaped(name) + "\"",
                "\"" + escaped(compression_name) + "\"");
  }
  const auto check = [&](const char *what, std::uint64_t expected) {
    const std::uint64_t at = cursor.at();
    const std::uint32_t found = cursor.u32(what);
    if (found != expected) {
      throw Error(where, at, what, std::to_string(found), std::to_string(expected));
    }
  };
  check("layout of the message tables", table_version);
  check("number of sources", sources);
  check("number of messages", messages);
  check("bytes of text", store.text_bytes);
  check("bytes of compressed text", store.compressed_bytes);
  if (cursor.left() != 0) {
    throw Error(where, cursor.at(), "end of the section",
                std::to_string(cursor.left()) + " more bytes", "none");
  }
}

std::string complaint(int result) {
  switch (result) {
    case BZ_DATA_ERROR_MAGIC:
      return "no bzip2 stream";
    case BZ_DATA_ERROR:
      return "damaged bytes or a wrong checksum";
    case BZ_MEM_ERROR:
      return "no memory";
    default:
      return "bzip2 error " + std::to_string(result);
  }
}

// Decompresses one bzip2 stream that has to give exactly the expected bytes. Room is taken as text
// arrives, so that neither lengths nor a stream that lie cost memory.
std::string decompress(const std::string &where, Bytes bytes, std::uint64_t expected) {
  bz_stream stream{};
  if (const int result = BZ2_bzDecompressInit(&stream, 0, 0); result != BZ_OK) {
    throw Error(where, complaint(result), "a decompressor");
  }
  const std::unique_ptr<bz_stream, int (*)(bz_stream *)> guard(&stream, &BZ2_bzDecompressEnd);
  // The library's interface takes bytes that it does not change without const.
  stream.next_in = const_cast<char *>(text_of(bytes).data());
  stream.avail_in = static_cast<unsigned>(std::min<std::uint64_t>(bytes.size(), UINT32_MAX));
  std::string text;
  char piece[64 * 1024];
  for (int result = BZ_OK; result != BZ_STREAM_END;) {
    stream.next_out = piece;
    stream.avail_out = sizeof piece;
    result = BZ2_bzDecompress(&stream);
    const std::uint64_t at = bytes.size() - stream.avail_in;
    if (result != BZ_OK && result != BZ_STREAM_END) {
      throw Error(where, at, "compressed text", complaint(result), "a whole bzip2 stream");
    }
    const std::size_t got = sizeof piece - stream.avail_out;
    if (got > expected - text.size()) {
      throw Error(where, at, "compressed text", "more than " + std::to_string(expected) + " bytes",
                  "as many as the lengths of all messages add up to");
    }
    text.append(piece, got);
    if (result == BZ_OK && got == 0 && stream.avail_in == 0) {
      throw Error(where, at, "compressed text", "its end within a block (the section is cut)",
                  "a whole bzip2 stream");
    }
  }
  if (text.size() != expected) {
    throw Error(where, "a text of " + std::to_string(text.size()) + " bytes",
                std::to_string(expected) + ", as the lengths of all messages add up to");
  }
  if (stream.avail_in != 0) {
    throw Error(where, bytes.size() - stream.avail_in, "compressed text",
                std::to_string(stream.avail_in) + " bytes behind its end", "none");
  }
  return text;
}

// "%s %u" out of "Cannot reach %s at 100%% of %u".
std::string conversions_of(std::string_view text) {
  std::string result;
  for (std::size_t at = text.find('%'); at != std::string_view::npos; at = text.find('%', at + 2)) {
    const std::string_view conversion = text.substr(at, 2);
    if (conversion == "%%") continue;
    if (!result.empty()) result += ' ';
    result += conversion;
  }
  return result;
}

void check_text(const MessageTable &table, std::size_t index, std::string_view text) {
  const std::string where = "section " + table.section;
  const std::uint64_t entry = 20 + index * entry_bytes;
  const std::string name = "text of message " + std::to_string(index);
  if (text.empty() || text.front() != ' ') {
    throw Error(where, entry, name, text.empty() ? "no bytes" : "\"" + escaped(text) + "\"",
                "a text with a blank in front");
  }
  if (text.find('\0') != std::string_view::npos) {
    throw Error(where, entry, name, "a NUL in \"" + escaped(text) + "\"", "none");
  }
  const std::uint32_t signature = table.messages[index].signature();
  const std::string found = conversions_of(text);
  if (found != signatures[signature].conversions) {
    throw Error(where, entry, name,
                "\"" + escaped(text) + "\" with the conversions \"" + escaped(found) + "\"",
                "\"" + std::string(signatures[signature].conversions) + "\" of signature " +
                    std::to_string(signature));
  }
}

}  // namespace

const MessageTable *MessageStore::table(const std::uint8_t identity[16]) const {
  const auto found = std::ranges::find_if(tables, [&](const MessageTable &table) {
    return std::memcmp(table.identity.data(), identity, table.identity.size()) == 0;
  });
  return found == tables.end() ? nullptr : &*found;
}

MessageStore read_messages(const ElfFile &file) {
  std::vector<Lengths> tables = read_tables(file);
  MessageStore store;
  std::uint64_t messages = 0;
  for (const Lengths &one : tables) {
    messages += one.lengths.size();
    for (const std::uint16_t length : one.lengths) store.text_bytes += length;
  }
  const std::string where = "section " + std::string(text_section);
  if (store.text_bytes > most_text) {
    throw Error(where, "messages of " + std::to_string(store.text_bytes) + " bytes of text",
                "at most " + std::to_string(most_text));
  }
  const Bytes compressed = file.bytes(file.require(text_section));
  store.compressed_bytes = compressed.size();
  check_decoder(file, store, tables.size(), messages);
  store.compression = compression_name.data();
  const std::string all = decompress(where, compressed, store.text_bytes);
  std::string_view rest = all;
  for (Lengths &one : tables) {
    for (std::size_t i = 0; i < one.lengths.size(); ++i) {
      const std::string_view text = rest.substr(0, one.lengths[i]);
      check_text(one.table, i, text);
      one.table.messages[i].text = text.substr(1);
      rest.remove_prefix(one.lengths[i]);
    }
    store.tables.push_back(std::move(one.table));
  }
  return store;
}

}  // namespace library_sections
