#include "ospf_decode/link_layer.hpp"

namespace ospf_decode {
namespace {

constexpr std::uint16_t tag_8021q = 0x8100;
constexpr std::uint16_t tag_8021ad = 0x88a8;
constexpr std::uint16_t tag_qinq_old = 0x9100;
constexpr std::uint16_t smallest_ether_type = 0x0600;

// Raw IP tells its version by its first four bits.
LinkResult raw_ip(Cursor cursor, LinkFrame &out) {
  out.payload = cursor.rest();
  if (out.payload.empty()) return LinkResult::too_short;
  const int version = out.payload[0] >> 4;
  out.ether_type = version == 4 ? ether_type_ipv4 : version == 6 ? ether_type_ipv6 : 0;
  return LinkResult::decoded;
}

// The null header holds an address family in the byte order of the machine that captured, the loop
// header in network order. The IPv6 families are those of the BSDs, Darwin and Linux.
LinkResult null_header(Cursor cursor, LinkFrame &out) {
  std::uint32_t family = cursor.u32();
  if (!cursor.ok()) return LinkResult::too_short;
  if (family > 0xffff) family = __builtin_bswap32(family);
  switch (family) {
    case 2:
      out.ether_type = ether_type_ipv4;
      break;
    case 10:
    case 24:
    case 28:
    case 30:
      out.ether_type = ether_type_ipv6;
      break;
    default:
      out.ether_type = 0;
  }
  out.payload = cursor.rest();
  return LinkResult::decoded;
}

// Addresses of another length tell no port here.
std::uint64_t hardware_address(Cursor &cursor, std::size_t length) {
  std::uint64_t address = 0;
  for (std::size_t at = 0; at < 6; ++at) address = address << 8 | cursor.u8();
  return length == 6 ? address : 0;
}

}  // namespace

LinkResult strip_vlan_tags(Cursor cursor, std::uint16_t ether_type, LinkFrame &out) {
  while (ether_type == tag_8021q || ether_type == tag_8021ad || ether_type == tag_qinq_old) {
    out.vlan = out.vlan << 12 | (cursor.u16() & 0x0fffu);
    ether_type = cursor.u16();
  }
  if (!cursor.ok()) return LinkResult::too_short;
  // Below this the field is a length, and the frame carries no IP.
  out.ether_type = ether_type >= smallest_ether_type ? ether_type : std::uint16_t{0};
  out.payload = cursor.rest();
  return LinkResult::decoded;
}

bool link_type_known(int link_type) {
  switch (link_type) {
    case link_null:
    case link_ethernet:
    case link_raw_dlt:
    case link_raw_openbsd:
    case link_raw:
    case link_loop:
    case link_linux_cooked:
    case link_ipv4:
    case link_ipv6:
    case link_linux_cooked_2:
      return true;
    default:
      return false;
  }
}

LinkResult decode_link_layer(int link_type, Bytes frame, LinkFrame &out) {
  out = LinkFrame{};
  Cursor cursor(frame);
  switch (link_type) {
    case link_ethernet: {
      cursor.skip(6);
      out.hardware = hardware_address(cursor, 6);
      const std::uint16_t ether_type = cursor.u16();
      return strip_vlan_tags(cursor, ether_type, out);
    }
    case link_linux_cooked: {
      cursor.skip(4);
      const std::uint16_t length = cursor.u16();
      out.hardware = hardware_address(cursor, length);
      cursor.skip(2);
      const std::uint16_t ether_type = cursor.u16();
      return strip_vlan_tags(cursor, ether_type, out);
    }
    case link_linux_cooked_2: {
      const std::uint16_t ether_type = cursor.u16();
      cursor.skip(9);
      const std::uint8_t length = cursor.u8();
      out.hardware = hardware_address(cursor, length);
      cursor.skip(2);
      return strip_vlan_tags(cursor, ether_type, out);
    }
    case link_null:
    case link_loop:
      return null_header(cursor, out);
    case link_raw_dlt:
    case link_raw_openbsd:
    case link_raw:
    case link_ipv4:
    case link_ipv6:
      return raw_ip(cursor, out);
    default:
      return LinkResult::foreign;
  }
}

}  // namespace ospf_decode
