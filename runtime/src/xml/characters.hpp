// Which bytes an XML document can carry. The parser refuses documents with others, and the writer
// turns texts with others into hexadecimal digits.
#pragma once

#include <cstdint>
#include <string_view>

namespace kelp {

// Whether XML has this character: no control characters but tab, newline and return, no surrogates,
// not U+FFFE or U+FFFF, nothing above U+10FFFF.
bool xml_has_character(uint32_t character);

constexpr bool xml_has_ascii(uint32_t character) {
  return character >= 0x20 || character == '\t' || character == '\n' || character == '\r';
}

// The length of the character at the start of text, which is not empty; 0 when it is not
// well-formed UTF-8 of such a character.
size_t xml_character(std::string_view text);

// The bytes at the start of text that are well-formed UTF-8 of such characters.
size_t xml_prefix(std::string_view text);

}  // namespace kelp
