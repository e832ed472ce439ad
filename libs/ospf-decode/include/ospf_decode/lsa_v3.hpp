// OSPFv3 LSAs (RFC 5340, 5187, 7770) as typed records.
//
// Built and used like LsaV2: every kind of body has its place, one is filled, vectors keep their
// room, spans point into the octets given. Function codes without a typed body are kept raw.
#pragma once

#include <cstdint>
#include <vector>

#include "lsa_vocabulary/fields.hpp"
#include "ospf_decode/address.hpp"
#include "ospf_decode/cursor.hpp"
#include "ospf_decode/errors.hpp"
#include "ospf_decode/lsa_header.hpp"
#include "ospf_decode/tlv.hpp"

namespace ospf_decode {

struct RouterLinkV3 {
  std::uint8_t type = 0;
  std::uint16_t metric = 0;
  std::uint32_t interface_id = 0;
  std::uint32_t neighbor_interface_id = 0;
  std::uint32_t neighbor_router_id = 0;
};

struct RouterBodyV3 {
  std::uint8_t flags = 0;  // RouterFlag
  std::uint32_t options = 0;
  std::vector<RouterLinkV3> links;
};

struct NetworkBodyV3 {
  std::uint32_t options = 0;
  std::vector<std::uint32_t> attached_routers;
};

struct InterAreaPrefixBody {
  std::uint32_t metric = 0;
  PrefixV3 prefix;
};

struct InterAreaRouterBody {
  std::uint32_t options = 0;
  std::uint32_t metric = 0;
  std::uint32_t destination_router_id = 0;
};

// AS-external and NSSA alike.
struct ExternalBodyV3 {
  std::uint8_t flags = 0;
  std::uint32_t metric = 0;
  PrefixV3 prefix;
  std::uint16_t referenced_ls_type = 0;
  Ipv6Bytes forwarding_address{};              // zero without the F flag
  std::uint32_t route_tag = 0;                 // zero without the T flag
  std::uint32_t referenced_link_state_id = 0;  // zero if no type is referenced
};

struct LinkBodyV3 {
  std::uint8_t priority = 0;
  std::uint32_t options = 0;
  Ipv6Bytes link_local_address{};
  std::uint32_t prefix_count = 0;  // as the LSA says
  std::vector<PrefixV3> prefixes;
};

struct IntraAreaPrefixBody {
  std::uint16_t prefix_count = 0;  // as the LSA says
  std::uint16_t referenced_ls_type = 0;
  std::uint32_t referenced_link_state_id = 0;
  std::uint32_t referenced_advertising_router = 0;
  std::vector<PrefixV3> prefixes;
};

struct LsaV3 {
  LsaHeader header;
  Bytes raw;                 // header and body
  bool checksum_ok = false;  // false: the body is not decoded, and the LSA is not to be loaded
  bool complete = false;     // the body's typed fields hold all of it
  RouterBodyV3 router;
  NetworkBodyV3 network;
  InterAreaPrefixBody inter_area_prefix;
  InterAreaRouterBody inter_area_router;
  ExternalBodyV3 external;
  ExternalBodyV3 nssa;
  LinkBodyV3 link;
  IntraAreaPrefixBody intra_area_prefix;
  TlvContent tlvs;  // of grace and router-information LSAs

  std::uint16_t function_code() const { return header.type & lsa3_function_mask; }
  bool u_bit() const { return (header.type & lsa3_unknown_bit) != 0; }
};

// `raw` is one LSA, header included, as long as its header says.
void decode_lsa_v3(Bytes raw, LsaV3 &out, const Report &report);

}  // namespace ospf_decode
