#include "row_keys.hpp"

namespace tool {

std::string dotted(std::uint32_t number) {
  return std::to_string(number >> 24) + "." + std::to_string(number >> 16 & 255) + "." +
         std::to_string(number >> 8 & 255) + "." + std::to_string(number & 255);
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

}  // namespace tool
