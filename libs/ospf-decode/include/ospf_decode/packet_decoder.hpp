// From the payload of IP protocol 89 to a Visitor: checks lengths, checksum, authentication
// trailer and LLS block, then decodes the body.
//
// Verification of digests needs keys and is not done. Reused buffers make it one decoder for one
// thread.
#pragma once

#include "ospf_decode/errors.hpp"
#include "ospf_decode/packet.hpp"
#include "ospf_decode/visitor.hpp"

namespace ospf_decode {

class PacketDecoder {
 public:
  PacketDecoder(Visitor &visitor, ErrorCounts &errors) : visitor_(visitor), errors_(errors) {}

  void decode(const Datagram &datagram);

  std::uint64_t packets() const { return packets_; }
  std::uint64_t lsas() const { return lsas_; }

 private:
  bool read_header(const Report &report);
  bool check_lengths(const Report &report);
  void check_packet_checksum(const Report &report);
  bool read_trailers(const Report &report);
  bool read_auth_trailer_v2(Cursor &after, const Report &report);
  bool read_auth_trailer_v3(Cursor &after, bool announced, const Report &report);
  bool read_lls(Cursor &after, const Report &report);
  std::uint32_t peek_options() const;

  void decode_hello(Cursor body, const Report &report);
  void decode_description(Cursor body, const Report &report);
  void decode_request(Cursor body, const Report &report);
  void decode_update(Cursor body, const Report &report);
  void decode_acknowledgement(Cursor body, const Report &report);
  // Reads headers to the end of the body; false if it does not end with one.
  bool read_headers(Cursor &body);
  // A body that ends in the middle of something: a fault of the packet, unless the capture cut it.
  void short_body(const Report &report, ErrorKind kind = ErrorKind::bad_packet_body);

  Visitor &visitor_;
  ErrorCounts &errors_;
  std::uint64_t packets_ = 0;
  std::uint64_t lsas_ = 0;

  Packet packet_;
  Bytes body_;  // of the packet, without its header and what follows its length
  Hello hello_;
  DatabaseDescription description_;
  std::vector<LsaHeader> headers_;
  std::vector<LsaName> names_;
  LsaV2 lsa_v2_;
  LsaV3 lsa_v3_;
};

}  // namespace ospf_decode
