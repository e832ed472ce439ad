// Names and sentences of the error kinds, one row each, in the order of the enumeration.
#include "ospf_decode/errors.hpp"

namespace ospf_decode {
namespace {

struct Row {
  std::string_view name;
  std::string_view text;
};

constexpr std::array<Row, error_kind_count> rows{{
    {"damaged_capture", "the capture file cannot be read to its end"},
    {"foreign_link_type", "a link layer that is not decoded"},
    {"cut_frame", "a frame of which the capture holds only a part"},
    {"short_link_header", "a frame that ends inside its link header"},
    {"bad_ip_header", "an IP header that is short or whose lengths cannot be"},
    {"bad_ip_checksum", "an IPv4 header with a bad checksum"},
    {"bad_gre_header", "a GRE header that is short or of another kind"},
    {"tunnel_too_deep", "more encapsulations than are followed"},
    {"bad_fragment", "fragments that overlap or leave the datagram"},
    {"fragments_missing", "a datagram whose fragments never were complete"},
    {"fragment_limit", "a datagram given up because too many were waiting"},
    {"short_packet", "less than an OSPF header"},
    {"unsupported_version", "neither OSPFv2 in IPv4 nor OSPFv3"},
    {"unknown_packet_type", "an OSPF packet of an unknown type"},
    {"lying_packet_length", "a packet length that cannot be or leaves the datagram"},
    {"bad_packet_checksum", "a packet with a bad checksum"},
    {"unknown_auth_type", "an unknown type of authentication"},
    {"bad_auth_trailer", "an authentication trailer that is cut or of an impossible length"},
    {"bad_lls", "a link-local signalling block that is cut, absent or fails its checksum"},
    {"trailing_octets", "octets behind the packet that nothing announces"},
    {"bad_packet_body", "a packet body of an impossible length"},
    {"lsa_count_mismatch", "an update with fewer or more LSAs than it says"},
    {"lying_lsa_length", "an LSA shorter than its header or longer than its packet"},
    {"bad_lsa_checksum", "an LSA with a bad checksum"},
    {"bad_lsa_age", "an LSA older than MaxAge"},
    {"unknown_lsa_type", "an LSA type without a meaning"},
    {"lsa_body_short", "an LSA that ends inside what it announces"},
    {"lsa_body_long", "an LSA with octets left over"},
    {"bad_prefix_length", "a prefix longer than its address"},
    {"tlv_overrun", "a TLV that runs over the end of its LSA"},
    {"sub_tlv_overrun", "a sub-TLV that runs over the end of its TLV"},
    {"bad_tlv_length", "a TLV of a known type with an impossible length"},
}};

}  // namespace

std::string_view error_name(ErrorKind kind) {
  return kind < ErrorKind::count_ ? rows[static_cast<std::size_t>(kind)].name : "unknown";
}

std::string_view error_text(ErrorKind kind) {
  return kind < ErrorKind::count_ ? rows[static_cast<std::size_t>(kind)].text : "unknown";
}

}  // namespace ospf_decode
