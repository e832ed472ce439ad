// What may be wrong with a capture, as data: a counter for each kind and the packet that was first.
//
// The decoders add to an ErrorCounts and go on; nothing in this library throws on account of what
// it reads. Packets are numbered from 1, as capture tools do; 0 stands for the file as a whole.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace ospf_decode {

enum class ErrorKind : std::uint8_t {
  damaged_capture,      // the capture file itself cannot be read on
  foreign_link_type,    // a link layer that is not decoded here
  cut_frame,            // the capture holds fewer octets than the frame had
  short_link_header,    // the frame ends inside its link header
  bad_ip_header,        // an IP header that is short or whose lengths lie
  bad_ip_checksum,      // IPv4 header checksum
  bad_gre_header,       // GRE of another version, with source routes, or short
  tunnel_too_deep,      // more encapsulations than are followed
  bad_fragment,         // fragments that overlap, leave 64 KiB or lie about their lengths
  fragments_missing,    // a datagram that was never complete
  fragment_limit,       // a datagram given up because too many were waiting
  short_packet,         // less than an OSPF header
  unsupported_version,  // neither OSPFv2 in IPv4 nor OSPFv3
  unknown_packet_type,  //
  lying_packet_length,  // the header's packet length is impossible or beyond the datagram
  bad_packet_checksum,  //
  unknown_auth_type,    //
  bad_auth_trailer,     // an authentication trailer that is cut or of an impossible length
  bad_lls,              // a link-local signalling block that is cut, absent or fails its checksum
  trailing_octets,      // octets after the packet that nothing announces
  bad_packet_body,      // hello, description, request or acknowledgement of an impossible length
  lsa_count_mismatch,   // an update with fewer or more LSAs than it says
  lying_lsa_length,     // an LSA shorter than its header or longer than its packet
  bad_lsa_checksum,     //
  bad_lsa_age,          // an age above MaxAge
  unknown_lsa_type,     // OSPFv2 type without a meaning, OSPFv3 reserved scope
  lsa_body_short,       // the body ends inside a structure that it announced
  lsa_body_long,        // octets are left over behind the body
  bad_prefix_length,    // a prefix longer than its address
  tlv_overrun,          // a TLV that runs over the end of its LSA
  sub_tlv_overrun,      // a sub-TLV that runs over the end of its TLV
  bad_tlv_length,       // a TLV of a known type with an impossible length
  count_,
};

inline constexpr std::size_t error_kind_count = static_cast<std::size_t>(ErrorKind::count_);

// Stable lower-case name of a kind, as in the enumeration.
std::string_view error_name(ErrorKind kind);
// One sentence for people.
std::string_view error_text(ErrorKind kind);

class ErrorCounts {
 public:
  struct Entry {
    std::uint64_t count = 0;
    std::uint64_t first_packet = 0;
  };

  void add(ErrorKind kind, std::uint64_t packet) {
    Entry &entry = entries_[static_cast<std::size_t>(kind)];
    if (entry.count++ == 0) entry.first_packet = packet;
  }
  const Entry &operator[](ErrorKind kind) const { return entries_[static_cast<std::size_t>(kind)]; }
  std::uint64_t total() const {
    std::uint64_t sum = 0;
    for (const Entry &entry : entries_) sum += entry.count;
    return sum;
  }

 private:
  std::array<Entry, error_kind_count> entries_{};
};

// Where a decoder reports: the counters, bound to the packet at hand.
class Report {
 public:
  Report(ErrorCounts &counts, std::uint64_t packet) : counts_(&counts), packet_(packet) {}
  void operator()(ErrorKind kind) const { counts_->add(kind, packet_); }
  std::uint64_t packet() const { return packet_; }

 private:
  ErrorCounts *counts_;
  std::uint64_t packet_;
};

}  // namespace ospf_decode
