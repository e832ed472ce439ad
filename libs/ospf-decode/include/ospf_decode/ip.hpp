// IPv4 and IPv6 headers, with IPv6 extension headers and the authentication header.
//
// parse_ip yields what a fragment or whole datagram carries; putting fragments together is
// reassembly.hpp's. Lengths are those of the IP header: link padding is left off.
#pragma once

#include <cstdint>

#include "ospf_decode/address.hpp"
#include "ospf_decode/cursor.hpp"
#include "ospf_decode/errors.hpp"

namespace ospf_decode {

enum IpProtocol : std::uint8_t {
  ip_hop_by_hop = 0,
  ip_in_ip = 4,
  ip_ipv6 = 41,
  ip_routing = 43,
  ip_fragment = 44,
  ip_gre = 47,
  ip_auth_header = 51,
  ip_no_next = 59,
  ip_destination_options = 60,
  ip_ospf = 89,
};

struct IpPacket {
  IpAddress source;
  IpAddress destination;
  std::uint8_t ttl = 0;
  std::uint8_t protocol = 0;
  bool is_fragment = false;
  bool more_fragments = false;
  bool cut = false;  // the capture holds less than the IP length
  std::uint32_t fragment_offset = 0;
  std::uint32_t fragment_id = 0;
  Bytes payload;
};

// False if there is nothing to go on with; the reason has been reported.
bool parse_ip(Bytes data, IpPacket &out, const Report &report);
// Goes on through extension headers from `protocol` at the head of `out.payload`, up to the first
// that is none or to a fragment header.
bool skip_extension_headers(IpPacket &out, const Report &report);

}  // namespace ospf_decode
