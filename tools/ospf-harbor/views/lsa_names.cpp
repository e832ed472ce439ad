#include "views/lsa_names.hpp"

#include <bit>
#include <cstdio>
#include <optional>

#include "ospf_tables/row_keys.hpp"

namespace tool {

using namespace ospf_tables;

namespace {

struct TypeName {
  std::uint32_t version;
  std::uint16_t ls_type;
  const char *name;
};

constexpr TypeName type_names[] = {
    {2, ls2_router, "Router"},
    {2, ls2_network, "Network"},
    {2, ls2_summary, "Summary"},
    {2, ls2_asbr_summary, "ASBR-Sum"},
    {2, ls2_external, "External"},
    {2, ls2_nssa, "NSSA"},
    {2, ls2_opaque_link, "Opaque-link"},
    {2, ls2_opaque_area, "Opaque-area"},
    {2, ls2_opaque_as, "Opaque-AS"},
    {3, ls3_router, "Router"},
    {3, ls3_network, "Network"},
    {3, ls3_inter_area_prefix, "Inter-Prefix"},
    {3, ls3_inter_area_router, "Inter-Router"},
    {3, ls3_external, "AS-Ext"},
    {3, ls3_nssa, "NSSA-Ext"},
    {3, ls3_link, "Link"},
    {3, ls3_intra_area_prefix, "Intra-Prefix"},
};

}  // namespace

std::string type_name(std::uint32_t version, std::uint16_t ls_type) {
  for (const TypeName &each : type_names) {
    if (each.version == version && each.ls_type == ls_type) return each.name;
  }
  char text[8];
  std::snprintf(text, sizeof text, "0x%04x", ls_type);
  return text;
}

std::string list_of_type_names() {
  std::string list;
  for (const TypeName &each : type_names) {
    if (list.find(each.name) != std::string::npos) continue;
    list += (list.empty() ? "" : ", ") + std::string(each.name);
  }
  return list;
}

const char *scope_name(Scope scope) {
  switch (scope) {
    case Scope::link:
      return "link";
    case Scope::area:
      return "area";
    default:
      return "as";
  }
}

const char *link_type_name(std::uint8_t type) {
  switch (type) {
    case link_point_to_point:
      return "point-to-point";
    case link_transit:
      return "transit";
    case link_stub:
      return "stub";
    case link_virtual:
      return "virtual";
    default:
      return "unknown";
  }
}

std::string opaque_type_name(std::uint8_t opaque_type) {
  switch (opaque_type) {
    case 1:
      return "traffic engineering";
    case 3:
      return "grace";
    case 4:
      return "router information";
    case 7:
      return "extended prefix";
    case 8:
      return "extended link";
    default:
      return "type " + std::to_string(opaque_type);
  }
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
