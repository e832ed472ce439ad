#include "ospf_decode/ip.hpp"

#include "ospf_decode/checksum.hpp"

namespace ospf_decode {
namespace {

bool refuse(const Report &report) {
  report(ErrorKind::bad_ip_header);
  return false;
}

// Takes `length` octets of payload, or as many as the capture holds.
Bytes take_payload(Cursor &cursor, std::size_t length, bool &cut) {
  cut = length > cursor.remaining();
  return cut ? cursor.rest() : cursor.bytes(length);
}

bool parse_ipv4(Bytes data, IpPacket &out, const Report &report) {
  Cursor cursor(data);
  const std::size_t header_length = (cursor.u8() & 0x0fu) * 4u;
  cursor.skip(1);
  const std::size_t total_length = cursor.u16();
  out.fragment_id = cursor.u16();
  const std::uint16_t fragment = cursor.u16();
  out.ttl = cursor.u8();
  out.protocol = cursor.u8();
  const std::uint16_t checksum = cursor.u16();
  out.source = IpAddress::v4(cursor.u32());
  out.destination = IpAddress::v4(cursor.u32());
  if (!cursor.ok() || header_length < 20 || total_length < header_length) return refuse(report);
  cursor.skip(header_length - 20);
  if (!cursor.ok()) return refuse(report);
  // A field of zero was left to the network card by a capturing sender.
  if (checksum != 0) {
    InternetChecksum sum;
    sum.add(data.first(header_length));
    if (sum.value() != 0) {
      report(ErrorKind::bad_ip_checksum);
      return false;
    }
  }
  out.more_fragments = (fragment & 0x2000) != 0;
  out.fragment_offset = (fragment & 0x1fffu) * 8u;
  out.is_fragment = out.more_fragments || out.fragment_offset != 0;
  out.payload = take_payload(cursor, total_length - header_length, out.cut);
  return true;
}

bool parse_ipv6(Bytes data, IpPacket &out, const Report &report) {
  Cursor cursor(data);
  cursor.skip(4);
  const std::size_t payload_length = cursor.u16();
  out.protocol = cursor.u8();
  out.ttl = cursor.u8();
  out.source = IpAddress::v6(cursor.array<16>());
  out.destination = IpAddress::v6(cursor.array<16>());
  if (!cursor.ok()) return refuse(report);
  out.payload = take_payload(cursor, payload_length, out.cut);
  return skip_extension_headers(out, report);
}

}  // namespace

bool skip_extension_headers(IpPacket &out, const Report &report) {
  if (!out.source.is_v6) {
    // IPv4 knows one such header.
    if (out.protocol != ip_auth_header || out.is_fragment) return true;
  }
  Cursor cursor(out.payload);
  for (;;) {
    switch (out.protocol) {
      case ip_hop_by_hop:
      case ip_routing:
      case ip_destination_options: {
        out.protocol = cursor.u8();
        const std::size_t length = cursor.u8();
        cursor.skip(length * 8 + 6);
        break;
      }
      case ip_auth_header: {
        out.protocol = cursor.u8();
        const std::size_t length = cursor.u8();
        // In units of four octets less two; less than its fixed part cannot be.
        if (length < 1) return refuse(report);
        cursor.skip(length * 4 + 6);
        break;
      }
      case ip_fragment: {
        if (!out.source.is_v6) return true;
        out.protocol = cursor.u8();
        cursor.skip(1);
        const std::uint16_t fragment = cursor.u16();
        out.fragment_id = cursor.u32();
        if (!cursor.ok()) return refuse(report);
        out.fragment_offset = fragment & 0xfff8u;
        out.more_fragments = (fragment & 1) != 0;
        out.is_fragment = out.more_fragments || out.fragment_offset != 0;
        // What a fragment begins with is known only once the datagram is whole.
        if (out.is_fragment) {
          out.payload = cursor.rest();
          return true;
        }
        break;
      }
      default:
        out.payload = cursor.rest();
        return true;
    }
    if (!cursor.ok()) return refuse(report);
  }
}

bool parse_ip(Bytes data, IpPacket &out, const Report &report) {
  out = IpPacket{};
  if (data.empty()) return refuse(report);
  switch (data[0] >> 4) {
    case 4:
      return parse_ipv4(data, out, report) && skip_extension_headers(out, report);
    case 6:
      return parse_ipv6(data, out, report);
    default:
      return refuse(report);
  }
}

}  // namespace ospf_decode
