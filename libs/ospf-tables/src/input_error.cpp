#include "ospf_tables/input_error.hpp"

#include <cstdint>

namespace ospf_tables {

namespace {

// The octets of the character of UTF-8 that the text begins with, and the character; 0 for none.
struct Character {
  std::size_t size = 0;
  std::uint32_t code = 0;
};

Character first_character(std::string_view text) {
  const auto octet = [&](std::size_t at) { return static_cast<unsigned char>(text[at]); };
  if (octet(0) < 0x80) return {1, octet(0)};
  const std::size_t size = octet(0) >= 0xf0 ? 4 : octet(0) >= 0xe0 ? 3 : 2;
  if (octet(0) < 0xc2 || octet(0) > 0xf4 || text.size() < size) return {};
  std::uint32_t code = octet(0) & (0x7fu >> size);
  for (std::size_t at = 1; at < size; ++at) {
    if ((octet(at) & 0xc0) != 0x80) return {};
    code = code << 6 | (octet(at) & 0x3f);
  }
  constexpr std::uint32_t least[] = {0, 0, 0x80, 0x800, 0x10000};
  if (code < least[size] || code > 0x10ffff || (code >= 0xd800 && code < 0xe000)) return {};
  return {size, code};
}

// Marks that a terminal takes for something else than a sign: controls, the directions of writing
// (U+061C, U+200E, U+200F, U+202A to U+202E, U+2066 to U+2069), ends of lines and paragraphs.
bool is_sign(std::uint32_t code) {
  if (code < 0x20 || (code >= 0x7f && code < 0xa0)) return false;
  if (code == 0x061c || code == 0x200e || code == 0x200f) return false;
  return !(code >= 0x2028 && code <= 0x202e) && !(code >= 0x2066 && code <= 0x2069);
}

std::string escaped(std::string_view text, bool keep_line_ends) {
  constexpr char digits[] = "0123456789abcdef";
  std::string line;
  while (!text.empty()) {
    const Character first = first_character(text);
    const std::size_t size = first.size == 0 ? 1 : first.size;
    if (first.size != 0 && (is_sign(first.code) || (keep_line_ends && first.code == '\n'))) {
      line += text.substr(0, size);
    } else {
      for (const char c : text.substr(0, size)) {
        const auto octet = static_cast<unsigned char>(c);
        line += {'\\', 'x', digits[octet >> 4], digits[octet & 15]};
      }
    }
    text.remove_prefix(size);
  }
  return line;
}

}  // namespace

std::string in_one_line(std::string_view text) { return escaped(text, false); }

std::string in_lines(std::string_view text) { return escaped(text, true); }

}  // namespace ospf_tables
