#include "ospf_decode/tlv.hpp"

#include <algorithm>

namespace ospf_decode {
namespace {

bool length_is(bool fits, const Report &report) {
  if (!fits) report(ErrorKind::bad_tlv_length);
  return fits;
}

void read_addresses(Cursor value, std::vector<std::uint32_t> &out) {
  while (value.remaining() >= 4) out.push_back(value.u32());
}

// Fills the typed field of one sub-TLV; false if it has none or an impossible length. A sub-TLV
// that comes again replaces what the first said, except addresses, which add up.
bool read_te_sub_tlv(const Tlv &sub, TeLink &link, const Report &report) {
  Cursor value(sub.value);
  const auto with_length = [&](std::size_t length) {
    return length_is(sub.length == length, report);
  };
  switch (sub.type) {
    case te_sub_link_type:
      if (!with_length(1)) return false;
      link.link_type = value.u8();
      link.present |= te_link_type;
      return true;
    case te_sub_link_id:
      if (!with_length(4)) return false;
      link.link_id = value.u32();
      link.present |= te_link_id;
      return true;
    case te_sub_local_addresses:
    case te_sub_remote_addresses:
      if (!length_is(sub.length != 0 && sub.length % 4 == 0, report)) return false;
      if (sub.type == te_sub_local_addresses) {
        read_addresses(value, link.local_addresses);
        link.present |= te_local_addresses;
      } else {
        read_addresses(value, link.remote_addresses);
        link.present |= te_remote_addresses;
      }
      return true;
    case te_sub_metric:
      if (!with_length(4)) return false;
      link.metric = value.u32();
      link.present |= te_metric;
      return true;
    case te_sub_max_bandwidth:
      if (!with_length(4)) return false;
      link.max_bandwidth = value.f32();
      link.present |= te_max_bandwidth;
      return true;
    case te_sub_max_reservable:
      if (!with_length(4)) return false;
      link.max_reservable_bandwidth = value.f32();
      link.present |= te_max_reservable;
      return true;
    case te_sub_unreserved:
      if (!with_length(32)) return false;
      for (float &bandwidth : link.unreserved_bandwidth) bandwidth = value.f32();
      link.present |= te_unreserved;
      return true;
    case te_sub_admin_group:
      if (!with_length(4)) return false;
      link.admin_group = value.u32();
      link.present |= te_admin_group;
      return true;
    default:
      return false;
  }
}

bool decode_te_link(Bytes value, TeLink &link, const Report &report) {
  Cursor cursor(value);
  while (!cursor.at_end()) {
    Tlv sub;
    if (!next_tlv(cursor, sub)) {
      report(ErrorKind::sub_tlv_overrun);
      return false;
    }
    sub.typed = read_te_sub_tlv(sub, link, report);
    link.sub_tlvs.push_back(sub);
  }
  return true;
}

bool read_router_information(const Tlv &tlv, RouterInformation &out, const Report &report) {
  Cursor value(tlv.value);
  switch (tlv.type) {
    case ri_tlv_informational:
    case ri_tlv_functional:
      // Bits beyond the first 32 have no field here; the TLV then stays among the raw ones.
      if (!length_is(tlv.length != 0 && tlv.length % 4 == 0, report)) return false;
      if (tlv.type == ri_tlv_informational) {
        out.has_informational = true;
        out.informational_capabilities = value.u32();
      } else {
        out.has_functional = true;
        out.functional_capabilities = value.u32();
      }
      return tlv.length == 4;
    case ri_tlv_hostname:
      if (!length_is(tlv.length != 0 && tlv.length <= 255, report)) return false;
      out.hostname = tlv.value;
      return true;
    default:
      return false;
  }
}

bool read_grace(const Tlv &tlv, Grace &out, const Report &report) {
  Cursor value(tlv.value);
  switch (tlv.type) {
    case grace_tlv_period:
      if (!length_is(tlv.length == 4, report)) return false;
      out.has_period = true;
      out.period = value.u32();
      return true;
    case grace_tlv_reason:
      if (!length_is(tlv.length == 1, report)) return false;
      out.has_reason = true;
      out.reason = value.u8();
      return true;
    case grace_tlv_address:
      if (!length_is(tlv.length == 4, report)) return false;
      out.has_address = true;
      out.interface_address = value.u32();
      return true;
    default:
      return false;
  }
}

}  // namespace

bool next_tlv(Cursor &cursor, Tlv &out) {
  out.type = cursor.u16();
  out.length = cursor.u16();
  out.value = cursor.bytes(out.length);
  out.typed = false;
  if (!cursor.ok()) return false;
  cursor.skip(std::min<std::size_t>((4u - out.length % 4u) % 4u, cursor.remaining()));
  return true;
}

void TeLink::clear() {
  present = 0;
  link_type = 0;
  link_id = 0;
  local_addresses.clear();
  remote_addresses.clear();
  metric = 0;
  max_bandwidth = 0;
  max_reservable_bandwidth = 0;
  unreserved_bandwidth.fill(0);
  admin_group = 0;
  sub_tlvs.clear();
}

TeLink &TlvContent::add_te_link() {
  if (used_links_ == links_.size()) links_.emplace_back();
  TeLink &link = links_[used_links_++];
  link.clear();
  return link;
}

void TlvContent::clear() {
  tlvs.clear();
  has_router_address = false;
  router_address = 0;
  grace = Grace{};
  router_information = RouterInformation{};
  used_links_ = 0;
}

bool decode_tlvs(Bytes body, TlvContentKind kind, TlvContent &out, const Report &report) {
  bool whole = true;
  Cursor cursor(body);
  while (!cursor.at_end()) {
    Tlv tlv;
    if (!next_tlv(cursor, tlv)) {
      report(ErrorKind::tlv_overrun);
      return false;
    }
    switch (kind) {
      case TlvContentKind::traffic_engineering:
        if (tlv.type == te_tlv_router_address) {
          tlv.typed = length_is(tlv.length == 4, report);
          if (tlv.typed) {
            out.has_router_address = true;
            out.router_address = Cursor(tlv.value).u32();
          }
        } else if (tlv.type == te_tlv_link) {
          tlv.typed = decode_te_link(tlv.value, out.add_te_link(), report);
          whole &= tlv.typed;
        }
        break;
      case TlvContentKind::router_information:
        tlv.typed = read_router_information(tlv, out.router_information, report);
        break;
      case TlvContentKind::grace:
        tlv.typed = read_grace(tlv, out.grace, report);
        break;
      case TlvContentKind::other:
        break;
    }
    out.tlvs.push_back(tlv);
  }
  return whole;
}

}  // namespace ospf_decode
