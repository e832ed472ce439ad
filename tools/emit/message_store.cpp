// The stored messages: entries by index in one table for each trace source, and the texts of both
// tables, compressed. docs/sections.md draws the layouts.
#include <bzlib.h>

#include <stdexcept>

#include "little_endian.hpp"
#include "module/message_text.hpp"
#include "module/trace_identity.hpp"
#include "sections.hpp"

namespace emit {

namespace {

using harbor::messages::Message;
using harbor::trace_identity::Identity;

constexpr std::uint32_t store_layout = 1;
constexpr std::uint32_t source_count = 2;

std::string hexadecimal(const Identity &identity) {
  constexpr std::string_view digits = "0123456789abcdef";
  std::string text;
  for (std::uint8_t byte : identity) {
    text += digits[byte >> 4];
    text += digits[byte & 15];
  }
  return text;
}

// What grows with each message of each source.
struct Store {
  std::string texts;
  std::uint32_t messages = 0;
};

std::string stored(const Message &message) { return " " + message.text; }

std::string entry(const Message &message, std::uint32_t place) {
  const std::string text = stored(message);
  if (text.size() > 0xffff || place > 0xffff) {
    throw std::runtime_error("message " + std::to_string(place) + " of " +
                             std::to_string(text.size()) + " bytes does not fit its entry: \"" +
                             message.text + "\"");
  }
  std::string bytes;
  append_u32(bytes, message.signature << 16 | place);
  append_u16(bytes, static_cast<std::uint16_t>(text.size()));
  return bytes;
}

Section table(Store &store, const std::string &file, std::uint32_t source, const Identity &identity,
              std::uint32_t count, Message (*message_at)(std::uint32_t)) {
  Section section{".xlog_luids_" + hexadecimal(identity), file, true, {}};
  append_u32(section.bytes, source << 16 | store_layout);
  section.bytes.append(identity.begin(), identity.end());
  for (std::uint32_t index = 0; index < count; ++index) {
    const Message message = message_at(index);
    section.bytes += entry(message, store.messages++);
    store.texts += stored(message);
  }
  return section;
}

std::string compressed(std::string texts) {
  auto length = static_cast<unsigned int>(texts.size() + texts.size() / 100 + 600);
  std::string bytes(length, '\0');
  const int result = BZ2_bzBuffToBuffCompress(bytes.data(), &length, texts.data(),
                                              static_cast<unsigned int>(texts.size()), 9, 0, 0);
  if (result != BZ_OK) {
    throw std::runtime_error("bzip2 cannot compress the messages: " + std::to_string(result));
  }
  bytes.resize(length);
  return bytes;
}

std::string decoder(const Store &store, std::size_t compressed_length) {
  std::string bytes("bzip2\0\0", 7);
  append_u32(bytes, store_layout);
  append_u32(bytes, source_count);
  append_u32(bytes, store.messages);
  append_u32(bytes, static_cast<std::uint32_t>(store.texts.size()));
  append_u32(bytes, static_cast<std::uint32_t>(compressed_length));
  return bytes;
}

}  // namespace

std::vector<Section> message_sections() {
  namespace messages = harbor::messages;
  namespace identity = harbor::trace_identity;
  Store store;
  std::vector<Section> sections{table(store, "xlog_luids_types.bin", 0, identity::types,
                                      messages::type_message_count, messages::type_message),
                                table(store, "xlog_luids_tables.bin", 1, identity::tables,
                                      messages::table_message_count, messages::table_message)};
  const std::string texts = compressed(store.texts);
  sections.push_back({".xlog_format_strings", "xlog_format_strings.bin", false, texts});
  sections.push_back({".xlog_decoder", "xlog_decoder.bin", false, decoder(store, texts.size())});
  return sections;
}

}  // namespace emit
