/* The shape of each piece is written down once, as a function over a sink, and runs twice: over a sink
 * that counts, then, if the count fits the space, over one that stores. */
#include "element_writer.hpp"

#include <charconv>
#include <cstring>

#include "../primitives/failure.hpp"
#include "characters.hpp"

namespace kelp {
namespace {

struct CountingSink {
  uint64_t count = 0;
  void Put(std::string_view text) { count += text.size(); }
};

struct StoringSink {
  char *at;
  void Put(std::string_view text) {
    if (text.empty()) return;
    std::memcpy(at, text.data(), text.size());
    at += text.size();
  }
};

template <class Sink>
void PutOpeningTag(Sink &sink, std::string_view tag, uint32_t state_byte, bool hexadecimal) {
  sink.Put("<");
  sink.Put(tag);
  if (state_byte != 0) {
    char digits[10];
    const auto end = std::to_chars(digits, digits + sizeof digits, state_byte).ptr;
    sink.Put(" state=\"");
    sink.Put({digits, static_cast<size_t>(end - digits)});
    sink.Put("\"");
  }
  if (hexadecimal) {
    sink.Put(" ");
    sink.Put(kEncodingAttribute);
    sink.Put("=\"");
    sink.Put(kHexEncoding);
    sink.Put("\"");
  }
  sink.Put(">");
}

template <class Sink>
void PutClosingTag(Sink &sink, std::string_view tag) {
  sink.Put("</");
  sink.Put(tag);
  sink.Put(">");
}

/* A return would come back as a newline, so it goes as a character reference. */
std::string_view Escape(char byte) {
  switch (byte) {
    case '&':
      return "&amp;";
    case '<':
      return "&lt;";
    case '>':
      return "&gt;";
    default:
      return "&#13;";
  }
}

template <class Sink>
void PutEscaped(Sink &sink, std::string_view text) {
  while (!text.empty()) {
    const size_t plain = text.find_first_of("&<>\r");
    sink.Put(text.substr(0, plain));
    if (plain == std::string_view::npos) return;
    sink.Put(Escape(text[plain]));
    text.remove_prefix(plain + 1);
  }
}

template <class Sink>
void PutHexadecimal(Sink &sink, std::string_view text) {
  static constexpr char kDigits[] = "0123456789abcdef";
  for (const char byte : text) {
    const auto value = static_cast<unsigned char>(byte);
    const char pair[2] = {kDigits[value >> 4], kDigits[value & 15]};
    sink.Put({pair, 2});
  }
}

template <class Shape>
uint32_t Write(const XmlTarget &target, const Shape &shape) {
  CountingSink counted;
  shape(counted);
  if (counted.count > target.size) {
    Fail(target.handle, target.err, KELP_ERR_NO_ROOM);
    return 0;
  }
  StoringSink stored{target.buffer};
  shape(stored);
  if (counted.count < target.size) *stored.at = '\0';
  return static_cast<uint32_t>(counted.count);
}

/* False with 22 in the error word for a tag that no element can have. */
bool TagIsThere(const XmlTarget &target, const char *tag) {
  if (tag != nullptr && *tag != '\0') return true;
  Fail(target.handle, target.err, KELP_ERR_INVALID);
  return false;
}

}  // namespace

uint32_t WriteOpeningTag(const XmlTarget &target, const char *tag, uint32_t state_byte) {
  if (*target.err != 0 || !TagIsThere(target, tag)) return 0;
  return Write(target, [&](auto &sink) { PutOpeningTag(sink, tag, state_byte, false); });
}

uint32_t WriteClosingTag(const XmlTarget &target, const char *tag) {
  if (*target.err != 0 || !TagIsThere(target, tag)) return 0;
  return Write(target, [&](auto &sink) { PutClosingTag(sink, tag); });
}

uint32_t WriteRaw(const XmlTarget &target, std::string_view text) {
  if (*target.err != 0) return 0;
  return Write(target, [&](auto &sink) { sink.Put(text); });
}

uint32_t WriteElement(const XmlTarget &target, const XmlElement &element) {
  if (*target.err != 0 || !TagIsThere(target, element.tag)) return 0;
  const bool hexadecimal = element.has_value && XmlPrefix(element.text) < element.text.size();
  return Write(target, [&](auto &sink) {
    PutOpeningTag(sink, element.tag, element.state_byte, hexadecimal);
    if (hexadecimal) {
      PutHexadecimal(sink, element.text);
    } else if (element.has_value) {
      PutEscaped(sink, element.text);
    }
    PutClosingTag(sink, element.tag);
  });
}

}  // namespace kelp
