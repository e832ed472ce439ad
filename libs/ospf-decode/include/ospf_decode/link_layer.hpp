// From a captured frame to the network-layer packet in it.
//
// Ethernet, Linux cooked capture 1 and 2, raw IP, loopback and null; VLAN tags (802.1Q and 802.1ad)
// are taken off however many are stacked. Called by FrameDecoder; it looks no further than the
// link header.
#pragma once

#include <cstdint>

#include "ospf_decode/cursor.hpp"

namespace ospf_decode {

inline constexpr std::uint16_t ether_type_ipv4 = 0x0800;
inline constexpr std::uint16_t ether_type_ipv6 = 0x86dd;

// The link types of capture files (the numbers of LINKTYPE_...), as far as they are known here.
enum LinkType : int {
  link_null = 0,
  link_ethernet = 1,
  link_raw_dlt = 12,
  link_raw_openbsd = 14,
  link_raw = 101,
  link_loop = 108,
  link_linux_cooked = 113,
  link_ipv4 = 228,
  link_ipv6 = 229,
  link_linux_cooked_2 = 276,
};

struct LinkFrame {
  std::uint16_t ether_type = 0;
  std::uint32_t vlan = 0;      // stacked VLAN numbers, 12 bits each, innermost lowest; 0 without
  std::uint64_t hardware = 0;  // the sender's address of 48 bits; 0 where there is none
  Bytes payload;
};

enum class LinkResult { decoded, foreign, too_short };

LinkResult decode_link_layer(int link_type, Bytes frame, LinkFrame &out);
// The same from an Ethernet type on: takes VLAN tags off `out.payload`.
LinkResult strip_vlan_tags(Cursor cursor, std::uint16_t ether_type, LinkFrame &out);
bool link_type_known(int link_type);

}  // namespace ospf_decode
