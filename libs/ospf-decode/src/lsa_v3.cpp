#include "ospf_decode/lsa_v3.hpp"

#include "body_end.hpp"

namespace ospf_decode {
namespace {

void clear_body(LsaV3 &out) {
  out.router.flags = 0;
  out.router.options = 0;
  out.router.links.clear();
  out.network.options = 0;
  out.network.attached_routers.clear();
  out.inter_area_prefix = InterAreaPrefixBody{};
  out.inter_area_router = InterAreaRouterBody{};
  out.external = ExternalBodyV3{};
  out.nssa = ExternalBodyV3{};
  out.link.priority = 0;
  out.link.options = 0;
  out.link.link_local_address.fill(0);
  out.link.prefix_count = 0;
  out.link.prefixes.clear();
  out.intra_area_prefix.prefix_count = 0;
  out.intra_area_prefix.referenced_ls_type = 0;
  out.intra_area_prefix.referenced_link_state_id = 0;
  out.intra_area_prefix.referenced_advertising_router = 0;
  out.intra_area_prefix.prefixes.clear();
  out.tlvs.clear();
}

// The address of a prefix: as many 32-bit words as its length needs. Bits beyond the length are
// cleared, as a receiver is to ignore them.
bool read_prefix_address(Cursor &cursor, PrefixV3 &prefix, const Report &report) {
  if (prefix.length > 128) {
    report(ErrorKind::bad_prefix_length);
    return false;
  }
  Cursor words = cursor.sub((prefix.length + 31u) / 32u * 4u);
  std::size_t bits = prefix.length;
  for (std::uint8_t &octet : prefix.address) {
    if (bits == 0) break;
    octet = words.u8();
    if (bits < 8) {
      octet = static_cast<std::uint8_t>(octet & (0xff00u >> bits));
      break;
    }
    bits -= 8;
  }
  return true;
}

// Length, options, the 16 bits that are a metric, a type or reserved, and the address.
bool read_prefix(Cursor &cursor, PrefixV3 &prefix, std::uint16_t &third, const Report &report) {
  prefix.length = cursor.u8();
  prefix.options = cursor.u8();
  third = cursor.u16();
  return read_prefix_address(cursor, prefix, report);
}

enum class Third { reserved, metric };

// As many prefixes as the LSA says, or as many as are there.
bool read_prefixes(Cursor &cursor, std::uint32_t count, Third meaning,
                   std::vector<PrefixV3> &prefixes, const Report &report) {
  for (std::uint32_t i = 0; i < count && cursor.ok(); ++i) {
    PrefixV3 prefix;
    std::uint16_t third = 0;
    if (!read_prefix(cursor, prefix, third, report)) return false;
    if (meaning == Third::metric) prefix.metric = third;
    if (cursor.ok()) prefixes.push_back(prefix);
  }
  return true;
}

bool decode_router(Cursor body, RouterBodyV3 &out, const Report &report) {
  out.flags = body.u8();
  out.options = body.u24();
  while (body.remaining() >= 16) {
    RouterLinkV3 link;
    link.type = body.u8();
    body.skip(1);
    link.metric = body.u16();
    link.interface_id = body.u32();
    link.neighbor_interface_id = body.u32();
    link.neighbor_router_id = body.u32();
    out.links.push_back(link);
  }
  return ends_here(body, report);
}

bool decode_network(Cursor body, NetworkBodyV3 &out, const Report &report) {
  body.skip(1);
  out.options = body.u24();
  while (body.remaining() >= 4) out.attached_routers.push_back(body.u32());
  return ends_here(body, report);
}

bool decode_inter_area_prefix(Cursor body, InterAreaPrefixBody &out, const Report &report) {
  body.skip(1);
  out.metric = body.u24();
  std::uint16_t reserved = 0;
  return read_prefix(body, out.prefix, reserved, report) && ends_here(body, report);
}

bool decode_inter_area_router(Cursor body, InterAreaRouterBody &out, const Report &report) {
  body.skip(1);
  out.options = body.u24();
  body.skip(1);
  out.metric = body.u24();
  out.destination_router_id = body.u32();
  return ends_here(body, report);
}

bool decode_external(Cursor body, ExternalBodyV3 &out, const Report &report) {
  out.flags = body.u8();
  out.metric = body.u24();
  if (!read_prefix(body, out.prefix, out.referenced_ls_type, report)) return false;
  if ((out.flags & external3_f) != 0) out.forwarding_address = body.array<16>();
  if ((out.flags & external3_t) != 0) out.route_tag = body.u32();
  if (out.referenced_ls_type != 0) out.referenced_link_state_id = body.u32();
  return ends_here(body, report);
}

bool decode_link(Cursor body, LinkBodyV3 &out, const Report &report) {
  out.priority = body.u8();
  out.options = body.u24();
  out.link_local_address = body.array<16>();
  out.prefix_count = body.u32();
  return read_prefixes(body, out.prefix_count, Third::reserved, out.prefixes, report) &&
         ends_here(body, report);
}

bool decode_intra_area_prefix(Cursor body, IntraAreaPrefixBody &out, const Report &report) {
  out.prefix_count = body.u16();
  out.referenced_ls_type = body.u16();
  out.referenced_link_state_id = body.u32();
  out.referenced_advertising_router = body.u32();
  return read_prefixes(body, out.prefix_count, Third::metric, out.prefixes, report) &&
         ends_here(body, report);
}

bool decode_body(Cursor body, LsaV3 &out, const Report &report) {
  switch (static_cast<LsaTypeV3>(out.header.type)) {
    case lsa3_router:
      return decode_router(body, out.router, report);
    case lsa3_network:
      return decode_network(body, out.network, report);
    case lsa3_inter_area_prefix:
      return decode_inter_area_prefix(body, out.inter_area_prefix, report);
    case lsa3_inter_area_router:
      return decode_inter_area_router(body, out.inter_area_router, report);
    case lsa3_as_external:
      return decode_external(body, out.external, report);
    case lsa3_nssa:
      return decode_external(body, out.nssa, report);
    case lsa3_link:
      return decode_link(body, out.link, report);
    case lsa3_intra_area_prefix:
      return decode_intra_area_prefix(body, out.intra_area_prefix, report);
    case lsa3_grace:
      return decode_tlvs(body.rest(), TlvContentKind::grace, out.tlvs, report);
  }
  if (out.function_code() == lsa3_function_router_information) {
    return decode_tlvs(body.rest(), TlvContentKind::router_information, out.tlvs, report);
  }
  return false;  // no typed body: raw only
}

}  // namespace

void decode_lsa_v3(Bytes raw, LsaV3 &out, const Report &report) {
  clear_body(out);
  decode_lsa(raw, out, report, read_lsa_header_v3, decode_body);
}

}  // namespace ospf_decode
