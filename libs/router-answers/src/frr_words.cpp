#include "frr_words.hpp"

#include <arpa/inet.h>

#include <algorithm>
#include <cctype>
#include <cstdlib>

#include "ospf_tables/row_keys.hpp"
#include "prefix_text.hpp"

namespace router_answers {

std::uint32_t dotted_of(const JsonView &view, const std::string &text, const char *expected) {
  const auto value = ospf_tables::parse_dotted(text);
  if (!value) view.fail(expected);
  return *value;
}

std::uint32_t dotted_of(const JsonView &view, const char *expected) {
  return dotted_of(view, view.text(expected), expected);
}

std::uint32_t area_of(const JsonView &view, const std::string &text) {
  const std::string id = text.substr(0, text.find(' '));
  if (const auto value = ospf_tables::parse_dotted(id)) return *value;
  char *end = nullptr;
  const unsigned long long number = std::strtoull(id.c_str(), &end, 10);
  if (id.empty() || id[0] < '0' || id[0] > '9' || *end != '\0' || number > UINT32_MAX) {
    view.fail("an area ID as a dotted quad or a number");
  }
  return static_cast<std::uint32_t>(number);
}

std::uint32_t hexadecimal_of(const JsonView &view, std::uint32_t highest, const char *expected) {
  const std::string text = view.text(expected);
  char *end = nullptr;
  const unsigned long long number = std::strtoull(text.c_str(), &end, 16);
  const bool starts_well = !text.empty() && std::isxdigit(static_cast<unsigned char>(text[0]));
  if (!starts_well || *end != '\0' || number > highest) view.fail(expected);
  return static_cast<std::uint32_t>(number);
}

std::uint32_t flags_of(const JsonView &view, unsigned count, const char *expected) {
  const std::string text = view.text(expected);
  std::uint32_t flags = 0;
  unsigned seen = 0;
  for (std::size_t begin = 0; begin <= text.size(); ++seen) {
    const std::size_t end = std::min(text.find('|', begin), text.size());
    const std::string flag = text.substr(begin, end - begin);
    if (flag.empty()) view.fail(expected);
    flags = flags << 1 | (flag[0] == '-' || flag[0] == '*' ? 0u : 1u);
    begin = end + 1;
  }
  if (seen != count) view.fail(expected);
  return flags;
}

std::uint32_t letters_of(const JsonView &view, unsigned count, const char *expected) {
  const std::string text = view.text(expected);
  if (text.size() != count) view.fail(expected);
  std::uint32_t flags = 0;
  for (const char letter : text) flags = flags << 1 | (letter == '-' ? 0u : 1u);
  return flags;
}

ospf_decode::Ipv6Bytes address_v6_of(const JsonView &view, const char *expected) {
  ospf_decode::Ipv6Bytes bytes{};
  if (inet_pton(AF_INET6, view.text(expected).c_str(), bytes.data()) != 1) view.fail(expected);
  return bytes;
}

ospf_decode::PrefixV3 prefix_of(const JsonView &view, const char *expected) {
  const std::string text = view.text(expected);
  if (text == "::" || text == "0.0.0.0") return {};  // how the daemon writes the default route
  const auto prefix = parse_prefix(text);
  if (!prefix) view.fail(expected);
  return *prefix;
}

std::uint32_t mask_of_length(std::uint32_t length) {
  return length == 0 ? 0 : ~std::uint32_t{0} << (32 - length);
}

}  // namespace router_answers
