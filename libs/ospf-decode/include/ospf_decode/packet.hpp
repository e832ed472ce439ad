// OSPF packets of both versions: header, authentication, LLS and the bodies that are not LSAs.
//
// PacketDecoder fills these and hands them to a Visitor; LSAs go to it one by one and are not
// gathered. All of it is valid during the visit only.
#pragma once

#include <cstdint>
#include <vector>

#include "ospf_decode/address.hpp"
#include "ospf_decode/cursor.hpp"
#include "ospf_decode/lsa_header.hpp"
#include "ospf_decode/tlv.hpp"

namespace ospf_decode {

enum class PacketType : std::uint8_t {
  hello = 1,
  database_description = 2,
  request = 3,
  update = 4,
  acknowledgement = 5,
};

enum class ChecksumState : std::uint8_t {
  unchecked,  // cryptographic authentication stands in for it, or the packet is cut
  good,
  bad,  // the body is not decoded
};

enum class AuthKind : std::uint8_t { none, simple, cryptographic, trailer };

struct Authentication {
  AuthKind kind = AuthKind::none;
  std::uint8_t key_id = 0;           // cryptographic
  std::uint16_t trailer_type = 0;    // trailer (RFC 7166)
  std::uint16_t association_id = 0;  // trailer
  std::uint64_t sequence = 0;        // cryptographic and trailer
  Bytes password;                    // simple: the eight octets
  Bytes digest;                      // cryptographic and trailer
};

// Link-local signalling, RFC 5613.
struct LinkLocalSignalling {
  bool present = false;
  std::uint16_t checksum = 0;
  std::uint16_t words = 0;
  bool has_extended_options = false;
  std::uint32_t extended_options = 0;
  std::vector<Tlv> tlvs;
};

// What one datagram brought, before it is known to be good.
struct Datagram {
  Time time = 0;
  std::uint64_t number = 0;  // of the packet in the capture, from 1
  std::uint32_t vlan = 0;
  std::uint64_t hardware = 0;  // the sender's on the link; 0 where it is not known
  IpAddress source;
  IpAddress destination;
  std::uint8_t ttl = 0;
  bool cut = false;
  Bytes payload;
};

struct Packet {
  Datagram datagram;
  std::uint8_t version = 0;
  PacketType type = PacketType::hello;
  std::uint16_t length = 0;
  std::uint32_t router_id = 0;
  std::uint32_t area_id = 0;
  std::uint16_t checksum = 0;
  std::uint8_t instance_id = 0;  // OSPFv3, and OSPFv2 by RFC 6549
  ChecksumState checksum_state = ChecksumState::unchecked;
  Authentication auth;
  LinkLocalSignalling lls;
};

struct Hello {
  std::uint32_t network_mask = 0;  // OSPFv2
  std::uint32_t interface_id = 0;  // OSPFv3
  std::uint16_t hello_interval = 0;
  std::uint32_t dead_interval = 0;
  std::uint8_t priority = 0;
  std::uint32_t options = 0;
  std::uint32_t designated_router = 0;  // OSPFv2: address; OSPFv3: router
  std::uint32_t backup_designated_router = 0;
  std::vector<std::uint32_t> neighbors;
};

enum DescriptionFlag : std::uint8_t {
  description_master = 0x01,
  description_more = 0x02,
  description_init = 0x04,
  description_resync = 0x08,
};

struct DatabaseDescription {
  std::uint16_t mtu = 0;
  std::uint32_t options = 0;
  std::uint8_t flags = 0;
  std::uint32_t sequence = 0;
  std::vector<LsaHeader> headers;
};

}  // namespace ospf_decode
