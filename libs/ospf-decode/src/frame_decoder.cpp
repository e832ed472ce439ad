#include "ospf_decode/frame_decoder.hpp"

#include "ospf_decode/checksum.hpp"
#include "ospf_decode/link_layer.hpp"

namespace ospf_decode {
namespace {

constexpr int deepest_tunnel = 4;
constexpr std::uint16_t ether_type_bridged = 0x6558;  // Ethernet in GRE

enum GreFlag : std::uint16_t {
  gre_checksum = 0x8000,
  gre_routing = 0x4000,
  gre_key = 0x2000,
  gre_sequence = 0x1000,
  gre_version = 0x0007,
};

// Whether OSPF can be in a datagram of this protocol.
bool leads_to_ospf(std::uint8_t protocol) {
  switch (protocol) {
    case ip_ospf:
    case ip_gre:
    case ip_in_ip:
    case ip_ipv6:
    case ip_auth_header:
    case ip_hop_by_hop:
    case ip_routing:
    case ip_destination_options:
      return true;
    default:
      return false;
  }
}

}  // namespace

void FrameDecoder::cut_frame(const Report &report) {
  if (!cut_reported_) report(ErrorKind::cut_frame);
  cut_reported_ = true;
}

void FrameDecoder::decode(const Frame &frame) {
  ++frames_;
  frame_ = frame;
  cut_reported_ = false;
  const Report report(errors_, frame.number);
  LinkFrame link;
  switch (decode_link_layer(frame.link_type, frame.data, link)) {
    case LinkResult::decoded:
      vlan_ = link.vlan;
      hardware_ = link.hardware;
      decode_ether(link.ether_type, link.payload, 0, report);
      break;
    case LinkResult::foreign:
      report(ErrorKind::foreign_link_type);
      break;
    case LinkResult::too_short:
      if (frame.data.size() < frame.wire_length) {
        cut_frame(report);
      } else {
        report(ErrorKind::short_link_header);
      }
      break;
  }
}

void FrameDecoder::decode_ether(std::uint16_t ether_type, Bytes payload, int depth,
                                const Report &report) {
  if (ether_type == ether_type_ipv4 || ether_type == ether_type_ipv6) {
    decode_ip(payload, depth, report);
  } else {
    ++other_frames_;
  }
}

void FrameDecoder::decode_ip(Bytes data, int depth, const Report &report) {
  if (depth > deepest_tunnel) return report(ErrorKind::tunnel_too_deep);
  const bool frame_is_cut = frame_.data.size() < frame_.wire_length;
  IpPacket ip;
  if (frame_is_cut) {
    // Whatever is wrong with the header, that the frame is cut explains it.
    ErrorCounts ignored;
    if (!parse_ip(data, ip, Report(ignored, frame_.number))) return cut_frame(report);
  } else if (!parse_ip(data, ip, report)) {
    return;
  }
  if (!leads_to_ospf(ip.protocol)) {
    ++other_frames_;
    return;
  }
  if (ip.cut) {
    if (frame_is_cut) {
      cut_frame(report);
    } else {
      report(ErrorKind::bad_ip_header);
    }
  }
  if (ip.is_fragment) {
    if (!fragments_.add(ip, vlan_, frame_.time, frame_.number)) return;
    if (!skip_extension_headers(ip, report)) return;
  }
  switch (ip.protocol) {
    case ip_ospf: {
      Datagram datagram;
      datagram.time = frame_.time;
      datagram.number = frame_.number;
      datagram.vlan = vlan_;
      // Behind a tunnel the port is another.
      if (depth == 0) datagram.hardware = hardware_;
      datagram.source = ip.source;
      datagram.destination = ip.destination;
      datagram.ttl = ip.ttl;
      datagram.cut = ip.cut;
      datagram.payload = ip.payload;
      packets_.decode(datagram);
      break;
    }
    case ip_gre:
      decode_gre(ip.payload, depth, report);
      break;
    case ip_in_ip:
    case ip_ipv6:
      decode_ip(ip.payload, depth + 1, report);
      break;
    default:
      ++other_frames_;
      break;
  }
}

void FrameDecoder::decode_gre(Bytes data, int depth, const Report &report) {
  Cursor cursor(data);
  const std::uint16_t flags = cursor.u16();
  const std::uint16_t protocol = cursor.u16();
  if (cursor.ok() && (flags & gre_version) != 0) {
    ++other_frames_;  // version 1 carries PPP
    return;
  }
  if ((flags & gre_checksum) != 0) cursor.skip(4);
  if ((flags & gre_key) != 0) cursor.skip(4);
  if ((flags & gre_sequence) != 0) cursor.skip(4);
  const bool frame_is_cut = frame_.data.size() < frame_.wire_length;
  bool good = cursor.ok() && (flags & gre_routing) == 0;
  if (good && (flags & gre_checksum) != 0 && !frame_is_cut) {
    InternetChecksum sum;
    sum.add(data);
    good = sum.value() == 0;
  }
  if (!good) {
    if (frame_is_cut) return cut_frame(report);
    return report(ErrorKind::bad_gre_header);
  }
  if (protocol != ether_type_bridged) {
    return decode_ether(protocol, cursor.rest(), depth + 1, report);
  }
  LinkFrame link;
  if (decode_link_layer(link_ethernet, cursor.rest(), link) != LinkResult::decoded) {
    return report(ErrorKind::short_link_header);
  }
  vlan_ = link.vlan;
  decode_ether(link.ether_type, link.payload, depth + 1, report);
}

}  // namespace ospf_decode
