// The shape of each piece is written down once, as a function over a sink. Where the space is
// beyond doubt it runs once, over a sink that stores; else over one that counts first.
#include "xml/element_writer.hpp"

#include <charconv>
#include <cinttypes>
#include <cstdio>
#include <cstring>

#include "base/failure.hpp"
#include "kelp/quick_text.hpp"
#include "xml/characters.hpp"

namespace kelp {
namespace {

struct CountingSink {
  uint64_t count = 0;
  void put(std::string_view text) { count += text.size(); }
};

template <class Sink>
void put_opening_tag(Sink &sink, std::string_view tag, uint32_t state_byte, bool hexadecimal) {
  quick::put_opening_tag(sink, tag, [&] {
    if (state_byte != 0) {
      char digits[10];
      const auto end = std::to_chars(digits, digits + sizeof digits, state_byte).ptr;
      sink.put(" state=\"");
      sink.put(std::string_view(digits, static_cast<size_t>(end - digits)));
      sink.put("\"");
    }
    if (hexadecimal) {
      sink.put(" ");
      sink.put(kEncodingAttribute);
      sink.put("=\"");
      sink.put(kHexEncoding);
      sink.put("\"");
    }
  });
}

// What stands for a byte in a text, empty for itself. A return would come back as a newline, so it
// goes as a character reference.
std::string_view escape(char byte) {
  switch (byte) {
    case '&':
      return "&amp;";
    case '<':
      return "&lt;";
    case '>':
      return "&gt;";
    case '\r':
      return "&#13;";
    default:
      return {};
  }
}

template <class Sink>
void put_escaped(Sink &sink, std::string_view text) {
  size_t plain = 0;  // start of the run of bytes that stand for themselves
  for (size_t at = 0; at < text.size(); ++at) {
    const std::string_view instead = escape(text[at]);
    if (instead.empty()) continue;
    sink.put(text.substr(plain, at - plain));
    sink.put(instead);
    plain = at + 1;
  }
  sink.put(text.substr(plain));
}

template <class Sink>
void put_hexadecimal(Sink &sink, std::string_view text) {
  static constexpr char kDigits[] = "0123456789abcdef";
  for (const char byte : text) {
    const auto value = static_cast<unsigned char>(byte);
    const char pair[2] = {kDigits[value >> 4], kDigits[value & 15]};
    sink.put(std::string_view(pair, 2));
  }
}

// most: bytes that the piece surely does not exceed.
template <class Shape>
uint32_t write(const XmlTarget &target, uint64_t most, const Shape &shape) {
  if (most < target.size) {
    quick::StoringSink stored(target.buffer);
    shape(stored);
    stored.end();
    return stored.used();
  }
  CountingSink counted;
  shape(counted);
  if (counted.count > target.size) {
    char found[80];
    std::snprintf(found, sizeof found, "found %" PRIu64 " bytes of buffer, expected %" PRIu64,
                  static_cast<uint64_t>(target.size), static_cast<uint64_t>(counted.count));
    raise(target.handle, target.err, KELP_ERR_NO_ROOM, found);
    return 0;
  }
  quick::StoringSink stored(target.buffer);
  shape(stored);
  if (counted.count < target.size) stored.end();
  return stored.used();
}

// False with 22 in the error word for a tag that no element can have.
bool tag_is_there(const XmlTarget &target, const char *tag) {
  if (tag != nullptr && *tag != '\0') return true;
  raise(target.handle, target.err, KELP_ERR_INVALID);
  return false;
}

}  // namespace

// What a piece takes beside its tags and its text: brackets and the attributes.
constexpr uint64_t kFrame = 64;

uint32_t write_opening_tag(const XmlTarget &target, const char *tag, uint32_t state_byte) {
  if (*target.err != 0 || !tag_is_there(target, tag)) return 0;
  const std::string_view name(tag);
  return write(target, name.size() + kFrame,
               [&](auto &sink) { put_opening_tag(sink, name, state_byte, false); });
}

uint32_t write_closing_tag(const XmlTarget &target, const char *tag) {
  if (*target.err != 0 || !tag_is_there(target, tag)) return 0;
  const std::string_view name(tag);
  return write(target, name.size() + kFrame,
               [&](auto &sink) { quick::put_closing_tag(sink, name); });
}

uint32_t write_raw(const XmlTarget &target, std::string_view text) {
  if (*target.err != 0) return 0;
  return write(target, text.size(), [&](auto &sink) { sink.put(text); });
}

uint32_t write_element(const XmlTarget &target, const XmlElement &element) {
  if (*target.err != 0 || !tag_is_there(target, element.tag)) return 0;
  const std::string_view name(element.tag);
  const bool hexadecimal = element.has_value && xml_prefix(element.text) < element.text.size();
  constexpr uint64_t kLongestEscape = 5;
  const uint64_t most = 2 * name.size() + kLongestEscape * element.text.size() + kFrame;
  return write(target, most, [&](auto &sink) {
    put_opening_tag(sink, name, element.state_byte, hexadecimal);
    if (hexadecimal) {
      put_hexadecimal(sink, element.text);
    } else if (element.has_value) {
      put_escaped(sink, element.text);
    }
    quick::put_closing_tag(sink, name);
  });
}

}  // namespace kelp
