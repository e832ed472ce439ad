// A strict UTF-8 reader: shortest forms only.
#include "xml/characters.hpp"

namespace kelp {
namespace {

// The bytes of the well-formed character at the start of text, which is not empty; 0 for none.
size_t take_character(std::string_view text, uint32_t *character) {
  const auto first = static_cast<unsigned char>(text[0]);
  if (first < 0x80) {
    *character = first;
    return 1;
  }
  size_t length = 0;
  uint32_t value = 0;
  uint32_t lowest = 0;
  if ((first & 0xE0) == 0xC0) {
    length = 2, value = first & 0x1F, lowest = 0x80;
  } else if ((first & 0xF0) == 0xE0) {
    length = 3, value = first & 0x0F, lowest = 0x800;
  } else if ((first & 0xF8) == 0xF0) {
    length = 4, value = first & 0x07, lowest = 0x10000;
  } else {
    return 0;
  }
  if (text.size() < length) return 0;
  for (size_t i = 1; i < length; ++i) {
    const auto next = static_cast<unsigned char>(text[i]);
    if ((next & 0xC0) != 0x80) return 0;
    value = (value << 6) | (next & 0x3F);
  }
  if (value < lowest) return 0;
  *character = value;
  return length;
}

}  // namespace

bool xml_has_character(uint32_t character) {
  if (character < 0x80) return xml_has_ascii(character);
  if (character >= 0xD800 && character <= 0xDFFF) return false;
  return character != 0xFFFE && character != 0xFFFF && character <= 0x10FFFF;
}

size_t xml_character(std::string_view text) {
  uint32_t character = 0;
  const size_t length = take_character(text, &character);
  return xml_has_character(character) ? length : 0;
}

size_t xml_prefix(std::string_view text) {
  size_t at = 0;
  while (at < text.size()) {
    const auto byte = static_cast<unsigned char>(text[at]);
    const size_t length = byte < 0x80 ? xml_has_ascii(byte) : xml_character(text.substr(at));
    if (length == 0) break;
    at += length;
  }
  return at;
}

}  // namespace kelp
