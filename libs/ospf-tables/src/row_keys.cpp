#include "ospf_tables/row_keys.hpp"

#include <cstring>

namespace ospf_tables {

std::string dotted(std::uint32_t number) {
  return std::to_string(number >> 24) + "." + std::to_string(number >> 16 & 255) + "." +
         std::to_string(number >> 8 & 255) + "." + std::to_string(number & 255);
}

std::optional<std::uint32_t> parse_dotted(const std::string &text) {
  std::uint32_t number = 0;
  std::size_t at = 0;
  for (int octet = 0; octet < 4; ++octet) {
    if (octet != 0) {
      if (at >= text.size() || text[at] != '.') return std::nullopt;
      ++at;
    }
    const std::size_t start = at;
    std::uint32_t value = 0;
    while (at < text.size() && text[at] >= '0' && text[at] <= '9' && at - start < 3) {
      value = value * 10 + static_cast<std::uint32_t>(text[at++] - '0');
    }
    if (at == start || value > 255) return std::nullopt;
    number = number << 8 | value;
  }
  return at == text.size() ? std::optional(number) : std::nullopt;
}

std::string key_word(std::uint32_t number, KeyForm form) {
  if (form == KeyForm::family) return number == ADDR_FAMILY_IPV4 ? "ipv4" : "ipv6";
  return form == KeyForm::dotted ? dotted(number) : std::to_string(number);
}

std::string key_word(const kelp_vstring *text) { return kelp_vstring_text(text); }

std::string key_word(const ip_address *address) {
  char text[IP_ADDRESS_TEXT_SIZE] = "";
  ip_address_format(address, text, sizeof text);
  return text;
}

bool is_told(std::uint32_t number, KeyForm form) {
  return form != KeyForm::family || number == ADDR_FAMILY_IPV4 || number == ADDR_FAMILY_IPV6;
}

// A word ends at the first NUL.
bool is_told(const kelp_vstring *text) {
  return text == nullptr || std::strlen(kelp_vstring_text(text)) == text->length;
}

bool is_told(const ip_address *address) {
  ip_address read{};
  return ip_address_parse(key_word(address).c_str(), &read) == 0 &&
         ip_address_compare(&read, address) == 0;
}

}  // namespace ospf_tables
