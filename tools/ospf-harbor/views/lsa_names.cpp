#include "views/lsa_names.hpp"

#include <algorithm>
#include <bit>
#include <cstdio>
#include <optional>
#include <string_view>

#include "ospf_tables/row_keys.hpp"
#include "sources/time_point.hpp"

namespace tool {

using namespace ospf_tables;

std::string list_of_type_names() {
  std::vector<std::string_view> names;
  for (const LsaType &type : lsa_types) {
    if (std::find(names.begin(), names.end(), type.name) == names.end()) names.push_back(type.name);
  }
  for (const LsaFunctionName &each : lsa3_function_names) names.push_back(each.name);
  std::string list;
  for (const std::string_view name : names) list.append(list.empty() ? "" : ", ").append(name);
  return list;
}

const char *link_type_name(std::uint8_t type) {
  const char *name = name_of(router_link_types, type);
  return name == nullptr ? "unknown" : name;
}

std::string opaque_type_name(std::uint8_t opaque_type) {
  const char *name = name_of(opaque_types, opaque_type);
  return name == nullptr ? "type " + std::to_string(opaque_type) : name;
}

std::string ages_text(const LsdbEntry &entry) {
  if (!entry.ages) return "";
  if (entry.ages->as_heard) return "heard";
  const std::string time = time_text(entry.ages->time);
  return "of " + time.substr(0, time.find('.')) + "Z";
}

std::string age_text(std::uint16_t age) {
  return ((age & 0x8000) != 0 ? "DNA " : "") + std::to_string(age & 0x7fff);
}

std::string joined(const BitNames &names) {
  std::string text;
  for (const char *name : names) text += (text.empty() ? "" : " ") + std::string(name);
  return text;
}

std::string prefix_text(std::uint32_t address, const std::string &mask) {
  const std::optional<std::uint32_t> bits = parse_dotted(mask);
  if (!bits) return dotted(address) + (mask.empty() ? "" : " mask " + mask);
  const std::string network = dotted(address & *bits);
  const int length = std::countl_one(*bits);
  if (std::popcount(*bits) != length) return network + " mask " + mask;
  return network + "/" + std::to_string(length);
}

std::string hex_text(const std::vector<std::uint8_t> &octets) {
  static constexpr char digits[] = "0123456789abcdef";
  std::string text;
  text.reserve(2 * octets.size());
  for (const std::uint8_t octet : octets) {
    text += digits[octet >> 4];
    text += digits[octet & 15];
  }
  return text;
}

}  // namespace tool
