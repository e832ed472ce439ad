// OSPFv3 LSAs (RFC 5340, 5187, 7770) as typed records.
//
// Built and used like LsaV2: every kind of body has its place, one is filled, vectors keep their
// room, spans point into the octets given. Function codes without a typed body are kept raw.
#pragma once

#include <cstdint>
#include <vector>

#include "ospf_decode/address.hpp"
#include "ospf_decode/cursor.hpp"
#include "ospf_decode/errors.hpp"
#include "ospf_decode/lsa_header.hpp"
#include "ospf_decode/tlv.hpp"

namespace ospf_decode {

// Types in full: the function code with its scope bits.
enum LsaTypeV3 : std::uint16_t {
  lsa3_router = 0x2001,
  lsa3_network = 0x2002,
  lsa3_inter_area_prefix = 0x2003,
  lsa3_inter_area_router = 0x2004,
  lsa3_as_external = 0x4005,
  lsa3_nssa = 0x2007,
  lsa3_link = 0x0008,
  lsa3_intra_area_prefix = 0x2009,
  lsa3_grace = 0x000b,
};
inline constexpr std::uint16_t lsa3_unknown_bit = 0x8000;              // U
inline constexpr std::uint16_t lsa3_function_mask = 0x1fff;            //
inline constexpr std::uint16_t lsa3_function_router_information = 12;  // in any scope

enum OptionV3 : std::uint32_t {
  option3_v6 = 0x000001,
  option3_e = 0x000002,
  option3_n = 0x000008,
  option3_r = 0x000010,
  option3_dc = 0x000020,
  option3_af = 0x000100,
  option3_l = 0x000200,   // LLS block
  option3_at = 0x000400,  // authentication trailer
};

enum ExternalFlagV3 : std::uint8_t {
  external3_t = 0x01,  // a route tag follows
  external3_f = 0x02,  // a forwarding address follows
  external3_e = 0x04,  // metric of type 2
};

enum PrefixOption : std::uint8_t {
  prefix_nu = 0x01,
  prefix_la = 0x02,
  prefix_mc = 0x04,
  prefix_p = 0x08,
  prefix_dn = 0x10,
};

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
