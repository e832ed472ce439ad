// What TLVs of OSPFv3 say that OSPFv2 has otherwise: traffic engineering (RFC 5329), extended LSAs
// (RFC 8362) and the segment routing within them (RFC 8666).
#pragma once

#include "ospf_tables/lsa_view.hpp"
#include "views/tlv_values.hpp"

namespace tool {

bool is_extended_v3(std::uint16_t ls_type);

// What stands in an extended LSA between its header and its TLVs.
std::size_t head_length_v3(const ospf_tables::LsaView &lsa);
void read_head_v3(std::uint16_t ls_type, TlvValue &value, TlvSays &says);

void read_address_v3(TlvValue &value, TlvSays &says);
void read_addresses_v3(TlvValue &value, TlvSays &says);
void read_neighbor_v3(TlvValue &value, TlvSays &says);
void read_router_link_v3(TlvValue &value, TlvSays &says);
void read_prefix_v3(TlvValue &value, TlvSays &says);
void read_router_v3(TlvValue &value, TlvSays &says);
void read_external_v3(TlvValue &value, TlvSays &says);
void read_prefix_range_v3(TlvValue &value, TlvSays &says);
void read_prefix_sid_v3(TlvValue &value, TlvSays &says);

template <bool on_lan>
void read_adjacency_sid_v3(TlvValue &value, TlvSays &says) {
  const std::uint32_t flags = value.number(1);
  const std::uint32_t weight = value.number(1);
  value.number(2);
  if (on_lan) says.emplace_back("neighbour", value.quad());
  read_sid(value, says);
  says.emplace_back("flags", named_flags(flags, adjacency_sid_flags));
  says.emplace_back("weight", weight);
}

}  // namespace tool
