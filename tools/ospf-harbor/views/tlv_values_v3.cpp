#include "views/tlv_values_v3.hpp"

#include <arpa/inet.h>

#include <algorithm>

namespace tool {

using namespace ospf_tables;

namespace {

std::string address_text(TlvValue &value, std::size_t octets) {
  std::uint8_t address[16] = {};
  for (std::size_t at = 0; at < std::min(octets, sizeof address); ++at) {
    address[at] = static_cast<std::uint8_t>(value.number(1));
  }
  char text[INET6_ADDRSTRLEN];
  inet_ntop(AF_INET6, address, text, sizeof text);
  return text;
}

std::string prefix_text_v3(TlvValue &value, std::uint32_t length) {
  if (length > 128) value.refuse();
  return address_text(value, padded((length + 7) / 8)) + "/" + std::to_string(length);
}

void say_options(std::uint32_t options, TlvSays &says) {
  static constexpr Named names[] = {{option3_v6, "V6"}, {option3_e, "E"},   {option3_n, "N"},
                                    {option3_r, "R"},   {option3_dc, "DC"}, {option3_af, "AF"},
                                    {option3_l, "L"},   {option3_at, "AT"}};
  says.emplace_back("options", named_flags(options, names));
}

// An address prefix with its length and options in front of it.
void read_prefix_with_options(TlvValue &value, TlvSays &says) {
  const std::uint32_t length = value.number(1);
  const std::uint32_t options = value.number(1);
  value.number(2);
  says.emplace_back("", prefix_text_v3(value, length));
  says.emplace_back("options", named_flags(options, prefix_options));
}

}  // namespace

bool is_extended_v3(std::uint16_t ls_type) {
  const unsigned function = ls_type & lsa3_function_mask;
  return function >= lsa3_function_e_router && function <= lsa3_function_e_intra_area_prefix;
}

std::size_t head_length_v3(const LsaView &lsa) {
  if (lsa.version != 3 || !is_extended_v3(lsa.type)) return 0;
  switch (lsa.type & lsa3_function_mask) {
    case lsa3_function_e_router:
    case lsa3_function_e_network:
    case lsa3_function_e_link:
      return 4;
    case lsa3_function_e_intra_area_prefix:
      return 12;
    default:
      return 0;
  }
}

void read_head_v3(std::uint16_t ls_type, TlvValue &value, TlvSays &says) {
  const unsigned function = ls_type & lsa3_function_mask;
  if (function == lsa3_function_e_intra_area_prefix) {
    value.number(2);
    says.emplace_back("refers to", type_name(3, static_cast<std::uint16_t>(value.number(2))));
    says.emplace_back("ID", value.quad());
    says.emplace_back("of router", value.quad());
    return;
  }
  const std::uint32_t first = value.number(1);
  if (function == lsa3_function_e_link) says.emplace_back("priority", first);
  if (function == lsa3_function_e_router) {
    static constexpr Named flags[] = {
        {router_flag_b, "B"}, {router_flag_e, "E"}, {router_flag_v, "V"}, {router_flag_nt, "Nt"}};
    says.emplace_back("flags", named_flags(first, flags));
  }
  say_options(value.number(3), says);
}

void read_address_v3(TlvValue &value, TlvSays &says) {
  says.emplace_back("", address_text(value, 16));
}

void read_addresses_v3(TlvValue &value, TlvSays &says) {
  auto list = nlohmann::ordered_json::array();
  while (value.left() != 0) list.push_back(address_text(value, 16));
  says.emplace_back("", std::move(list));
}

void read_neighbor_v3(TlvValue &value, TlvSays &says) {
  says.emplace_back("interface", value.number(4));
  says.emplace_back("router", value.quad());
}

void read_router_link_v3(TlvValue &value, TlvSays &says) {
  const std::uint32_t type = value.number(1);
  value.number(1);
  says.emplace_back("", name_or_number(name_of(router_link_types, type), type));
  says.emplace_back("metric", value.number(2));
  says.emplace_back("interface", value.number(4));
  says.emplace_back("neighbour's interface", value.number(4));
  says.emplace_back("neighbour", value.quad());
}

void read_prefix_v3(TlvValue &value, TlvSays &says) {
  const std::uint32_t metric = value.number(4) & 0xffffff;
  read_prefix_with_options(value, says);
  says.emplace_back("metric", metric);
}

void read_router_v3(TlvValue &value, TlvSays &says) {
  const std::uint32_t options = value.number(4) & 0xffffff;
  const std::uint32_t metric = value.number(4) & 0xffffff;
  says.emplace_back("", value.quad());
  say_options(options, says);
  says.emplace_back("metric", metric);
}

void read_external_v3(TlvValue &value, TlvSays &says) {
  const std::uint32_t flags = value.number(1);
  const std::uint32_t metric = value.number(3);
  read_prefix_with_options(value, says);
  says.emplace_back("metric", metric);
  says.emplace_back("metric type", (flags & external3_e) != 0 ? 2 : 1);
}

void read_prefix_range_v3(TlvValue &value, TlvSays &says) {
  const std::uint32_t length = value.number(1);
  const std::uint32_t family = value.number(1);
  const std::uint32_t size = value.number(2);
  const std::uint32_t flags = value.number(1);
  value.number(3);
  static constexpr Named names[] = {{0x80, "IA"}};
  says.emplace_back("", family == 0 ? value.quad() + "/" + std::to_string(length)
                                    : prefix_text_v3(value, length));
  says.emplace_back("size", size);
  says.emplace_back("flags", named_flags(flags, names));
}

void read_prefix_sid_v3(TlvValue &value, TlvSays &says) {
  const std::uint32_t flags = value.number(1);
  const std::uint32_t algorithm = value.number(1);
  value.number(2);
  read_sid(value, says);
  says.emplace_back("flags", named_flags(flags, prefix_sid_flags));
  says.emplace_back("algorithm", algorithm_name(algorithm));
}

}  // namespace tool
