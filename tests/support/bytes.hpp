// Bytes for tests: a writer in network order, and packets, LSAs and frames built from parts.
//
// What it writes is right unless a test spoils it afterwards: checksums and lengths are filled in.
#pragma once

#include <bit>
#include <cstdint>
#include <initializer_list>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "ospf_decode/frame_decoder.hpp"
#include "support/hexadecimal.hpp"

namespace ospf_decode::testing {

using Octets = std::vector<std::uint8_t>;

class Writer {
 public:
  Writer &u8(unsigned value) {
    out_.push_back(static_cast<std::uint8_t>(value));
    return *this;
  }
  Writer &u16(unsigned value) { return u8(value >> 8).u8(value); }
  Writer &u24(unsigned value) { return u8(value >> 16).u16(value); }
  Writer &u32(std::uint32_t value) { return u16(value >> 16).u16(value); }
  Writer &u64(std::uint64_t value) {
    return u32(static_cast<std::uint32_t>(value >> 32)).u32(static_cast<std::uint32_t>(value));
  }
  Writer &f32(float value) { return u32(std::bit_cast<std::uint32_t>(value)); }
  Writer &bytes(const Octets &value) {
    out_.insert(out_.end(), value.begin(), value.end());
    return *this;
  }
  Writer &zeros(std::size_t count) {
    out_.resize(out_.size() + count);
    return *this;
  }
  // A type, a length and a value, padded.
  Writer &tlv(unsigned type, const Octets &value) {
    u16(type).u16(static_cast<unsigned>(value.size())).bytes(value);
    return zeros((4 - value.size() % 4) % 4);
  }
  operator Octets() const { return out_; }
  const Octets &get() const { return out_; }

 private:
  Octets out_;
};

inline void put16(Octets &where, std::size_t at, unsigned value) {
  where.at(at) = static_cast<std::uint8_t>(value >> 8);
  where.at(at + 1) = static_cast<std::uint8_t>(value);
}

inline unsigned internet_checksum(const Octets &data) {
  std::uint32_t sum = 0;
  for (std::size_t i = 0; i < data.size(); ++i) sum += data[i] << (i % 2 == 0 ? 8 : 0);
  while (sum >> 16 != 0) sum = (sum & 0xffff) + (sum >> 16);
  return ~sum & 0xffff;
}

// Fills in length and Fletcher checksum of an LSA, by the textbook: the two octets that make both
// running sums zero.
inline Octets seal_lsa(Octets lsa) {
  put16(lsa, 18, static_cast<unsigned>(lsa.size()));
  put16(lsa, 16, 0);
  int c0 = 0;
  int c1 = 0;
  for (std::size_t i = 2; i < lsa.size(); ++i) {
    c0 = (c0 + lsa[i]) % 255;
    c1 = (c1 + c0) % 255;
  }
  const int behind = static_cast<int>(lsa.size()) - 17;  // octets from the field's first to the end
  int x = (behind * c0 - c1) % 255;
  if (x <= 0) x += 255;
  int y = 510 - c0 - x;
  if (y > 255) y -= 255;
  lsa.at(16) = static_cast<std::uint8_t>(x);
  lsa.at(17) = static_cast<std::uint8_t>(y);
  return lsa;
}

struct LsaParts {
  unsigned age = 1;
  unsigned options = 2;
  unsigned type = 1;
  std::uint32_t id = 0x0a000001;
  std::uint32_t router = 0x0a000001;
  std::uint32_t sequence = 0x80000001;
};

inline Octets make_lsa_v2(const LsaParts &parts, const Octets &body) {
  Writer out;
  out.u16(parts.age).u8(parts.options).u8(parts.type).u32(parts.id).u32(parts.router);
  return seal_lsa(out.u32(parts.sequence).u32(0).bytes(body));
}

inline Octets make_lsa_v3(const LsaParts &parts, const Octets &body) {
  Writer out;
  out.u16(parts.age).u16(parts.type).u32(parts.id).u32(parts.router);
  return seal_lsa(out.u32(parts.sequence).u32(0).bytes(body));
}

struct PacketParts {
  unsigned type = 1;
  std::uint32_t router = 0x0a000001;
  std::uint32_t area = 0;
  unsigned instance = 0;
};

// An OSPFv2 packet without authentication.
inline Octets make_packet_v2(const PacketParts &parts, const Octets &body) {
  Octets out = Writer()
                   .u8(2)
                   .u8(parts.type)
                   .u16(static_cast<unsigned>(24 + body.size()))
                   .u32(parts.router)
                   .u32(parts.area)
                   .u16(0)
                   .u8(parts.instance)
                   .u8(0)
                   .zeros(8)
                   .bytes(body);
  put16(out, 12, internet_checksum(out));
  return out;
}

inline const Octets v6_source = Writer().u32(0xfe800000).zeros(8).u32(1);
inline const Octets v6_destination = Writer().u32(0xff020000).zeros(8).u32(5);

// An OSPFv3 packet between v6_source and v6_destination.
inline Octets make_packet_v3(const PacketParts &parts, const Octets &body) {
  Octets out = Writer()
                   .u8(3)
                   .u8(parts.type)
                   .u16(static_cast<unsigned>(16 + body.size()))
                   .u32(parts.router)
                   .u32(parts.area)
                   .u16(0)
                   .u8(parts.instance)
                   .u8(0)
                   .bytes(body);
  const Octets pseudo = Writer()
                            .bytes(v6_source)
                            .bytes(v6_destination)
                            .u32(static_cast<std::uint32_t>(out.size()))
                            .u32(89)
                            .bytes(out);
  put16(out, 12, internet_checksum(pseudo));
  return out;
}

inline Octets make_update(unsigned count, std::initializer_list<Octets> lsas) {
  Writer out;
  out.u32(count);
  for (const Octets &lsa : lsas) out.bytes(lsa);
  return out;
}

struct Ip4Parts {
  unsigned protocol = 89;
  std::uint32_t source = 0x0a000001;
  std::uint32_t destination = 0xe0000005;
  unsigned id = 1;
  unsigned fragment = 0;  // flags and offset as in the header
  unsigned ttl = 1;
};

inline Octets make_ipv4(const Ip4Parts &parts, const Octets &payload) {
  Octets out = Writer()
                   .u8(0x45)
                   .u8(0xc0)
                   .u16(static_cast<unsigned>(20 + payload.size()))
                   .u16(parts.id)
                   .u16(parts.fragment)
                   .u8(parts.ttl)
                   .u8(parts.protocol)
                   .u16(0)
                   .u32(parts.source)
                   .u32(parts.destination);
  put16(out, 10, internet_checksum(out));
  return Writer().bytes(out).bytes(payload);
}

inline Octets make_ipv6(unsigned next_header, const Octets &payload) {
  return Writer()
      .u32(0x60000000)
      .u16(static_cast<unsigned>(payload.size()))
      .u8(next_header)
      .u8(1)
      .bytes(v6_source)
      .bytes(v6_destination)
      .bytes(payload);
}

inline Octets make_ethernet(unsigned ether_type, const Octets &payload) {
  return Writer().zeros(12).u16(ether_type).bytes(payload);
}

inline Octets make_hello_v2(std::initializer_list<std::uint32_t> neighbors = {},
                            std::uint32_t mask = 0xffffff00, unsigned options = 2,
                            std::uint32_t dr = 0, std::uint32_t bdr = 0) {
  Writer out;
  out.u32(mask).u16(10).u8(options).u8(1).u32(40).u32(dr).u32(bdr);
  for (const std::uint32_t neighbor : neighbors) out.u32(neighbor);
  return out;
}

// The head of a capture file, and a frame in it of which `missing` octets were not captured.
inline Octets make_pcap_header(unsigned link_type = 1, std::uint32_t magic = 0xa1b2c3d4) {
  return Writer().u32(magic).u16(2).u16(4).u32(0).u32(0).u32(65535).u32(link_type);
}

inline Octets make_pcap_record(std::uint32_t seconds, std::uint32_t fraction, const Octets &data,
                               std::uint32_t missing = 0) {
  const auto size = static_cast<std::uint32_t>(data.size());
  return Writer().u32(seconds).u32(fraction).u32(size).u32(size + missing).bytes(data);
}

// Collects what a decoder hands out.
struct Collector : Visitor {
  std::vector<std::uint64_t> packets;
  std::vector<ChecksumState> checksum_states;
  std::vector<AuthKind> auth_kinds;
  std::vector<std::size_t> digests;
  std::vector<bool> lls;
  std::vector<std::uint32_t> lls_options;
  std::vector<std::uint32_t> vlans;
  std::vector<std::uint8_t> instances;
  std::vector<Hello> hellos;
  std::vector<DatabaseDescription> descriptions;
  std::vector<LsaName> requests;
  std::vector<LsaHeader> lsas;
  std::vector<bool> lsa_good;
  std::vector<bool> lsa_complete;
  std::vector<LsaHeader> acknowledgements;

  void on_packet(const Packet &packet) override {
    packets.push_back(packet.datagram.number);
    checksum_states.push_back(packet.checksum_state);
    auth_kinds.push_back(packet.auth.kind);
    digests.push_back(packet.auth.digest.size());
    lls.push_back(packet.lls.present);
    lls_options.push_back(packet.lls.extended_options);
    vlans.push_back(packet.datagram.vlan);
    instances.push_back(packet.instance_id);
  }
  void on_hello(const Packet &, const Hello &hello) override { hellos.push_back(hello); }
  void on_database_description(const Packet &, const DatabaseDescription &dd) override {
    descriptions.push_back(dd);
  }
  void on_request(const Packet &, std::span<const LsaName> names) override {
    requests.insert(requests.end(), names.begin(), names.end());
  }
  void on_lsa_v2(const Packet &, const LsaV2 &lsa) override { add(lsa); }
  void on_lsa_v3(const Packet &, const LsaV3 &lsa) override { add(lsa); }
  void on_acknowledgement(const Packet &, std::span<const LsaHeader> headers) override {
    acknowledgements.insert(acknowledgements.end(), headers.begin(), headers.end());
  }

 private:
  template <typename Lsa>
  void add(const Lsa &lsa) {
    lsas.push_back(lsa.header);
    lsa_good.push_back(lsa.checksum_ok);
    lsa_complete.push_back(lsa.complete);
  }
};

// A decoder with a Collector, fed with frames numbered from 1.
struct Bench {
  Collector seen;
  FrameDecoder decoder{seen};
  std::uint64_t number = 0;
  Time time = 1000 * second;

  void frame(const Octets &data, int link_type = 1, std::uint32_t missing = 0) {
    Frame one;
    one.link_type = link_type;
    one.time = time;
    one.number = ++number;
    one.wire_length = static_cast<std::uint32_t>(data.size()) + missing;
    one.data = data;
    decoder.decode(one);
  }
  void ipv4(const Octets &payload, const Ip4Parts &parts = {}) {
    frame(make_ethernet(0x0800, make_ipv4(parts, payload)));
  }
  void ipv6(const Octets &payload, unsigned next_header = 89) {
    frame(make_ethernet(0x86dd, make_ipv6(next_header, payload)));
  }
  std::uint64_t count(ErrorKind kind) const { return decoder.errors()[kind].count; }
  std::uint64_t first(ErrorKind kind) const { return decoder.errors()[kind].first_packet; }
  std::uint64_t errors() const { return decoder.errors().total(); }
};

}  // namespace ospf_decode::testing
