// Which bytes an XML document can carry. The parser refuses documents with others, and the writer
// turns texts with others into hexadecimal digits.
#pragma once

#include <cstdint>
#include <string_view>

namespace kelp {

// Whether XML has this character: no control characters but tab, newline and return, no surrogates,
// not U+FFFE or U+FFFF, nothing above U+10FFFF.
bool xml_has_character(uint32_t character);

// The bytes at the start of text that are well-formed UTF-8 of such characters.
size_t xml_prefix(std::string_view text);

}  // namespace kelp
