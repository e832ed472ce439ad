#include "ospf_decode/lsa_v2.hpp"

#include "body_end.hpp"

namespace ospf_decode {
namespace {

void clear_body(LsaV2 &out) {
  out.router.flags = 0;
  out.router.link_count = 0;
  out.router.links.clear();
  out.router.metrics.clear();
  out.network.mask = 0;
  out.network.attached_routers.clear();
  out.summary.mask = 0;
  out.summary.metrics.clear();
  out.external.mask = 0;
  out.external.entries.clear();
  out.opaque.clear();
}

bool decode_router(Cursor body, RouterBodyV2 &out, const Report &report) {
  out.flags = body.u8();
  body.skip(1);
  out.link_count = body.u16();
  for (std::uint32_t i = 0; i < out.link_count && body.ok(); ++i) {
    RouterLinkV2 link;
    link.link_id = body.u32();
    link.link_data = body.u32();
    link.type = body.u8();
    const std::uint8_t more_metrics = body.u8();
    const std::uint16_t metric = body.u16();
    Cursor more = body.sub(more_metrics * 4u);
    if (!body.ok()) break;
    link.first_metric = static_cast<std::uint16_t>(out.metrics.size());
    link.metric_count = static_cast<std::uint16_t>(more_metrics + 1u);
    out.metrics.push_back({0, metric});
    while (!more.at_end()) {
      const std::uint8_t mt_id = more.u8();
      more.skip(1);
      out.metrics.push_back({mt_id, more.u16()});
    }
    out.links.push_back(link);
  }
  return ends_here(body, report);
}

bool decode_network(Cursor body, NetworkBodyV2 &out, const Report &report) {
  out.mask = body.u32();
  while (body.remaining() >= 4) out.attached_routers.push_back(body.u32());
  return ends_here(body, report);
}

bool decode_summary(Cursor body, SummaryBodyV2 &out, const Report &report) {
  out.mask = body.u32();
  do {
    const std::uint8_t mt_id = body.u8();
    const std::uint32_t metric = body.u24();
    if (body.ok()) out.metrics.push_back({mt_id, metric});
  } while (body.remaining() >= 4);
  return ends_here(body, report);
}

bool decode_external(Cursor body, ExternalBodyV2 &out, const Report &report) {
  out.mask = body.u32();
  do {
    ExternalEntryV2 entry;
    const std::uint8_t first = body.u8();
    entry.type_2 = (first & 0x80) != 0;
    entry.mt_id = first & 0x7f;
    entry.metric = body.u24();
    entry.forwarding_address = body.u32();
    entry.route_tag = body.u32();
    if (body.ok()) out.entries.push_back(entry);
  } while (body.remaining() >= 12);
  return ends_here(body, report);
}

// Whether the opaque type is made of TLVs at all; the content of others is unknown and stays raw.
bool opaque_content_kind(std::uint8_t opaque_type, TlvContentKind &kind) {
  switch (static_cast<OpaqueType>(opaque_type)) {
    case opaque_traffic_engineering:
      kind = TlvContentKind::traffic_engineering;
      return true;
    case opaque_grace:
      kind = TlvContentKind::grace;
      return true;
    case opaque_router_information:
      kind = TlvContentKind::router_information;
      return true;
    case opaque_l1vpn:
    case opaque_inter_as_te:
    case opaque_extended_prefix:
    case opaque_extended_link:
      kind = TlvContentKind::other;
      return true;
  }
  return false;
}

bool decode_body(Cursor body, LsaV2 &out, const Report &report) {
  switch (static_cast<LsaTypeV2>(out.header.type)) {
    case lsa2_router:
      return decode_router(body, out.router, report);
    case lsa2_network:
      return decode_network(body, out.network, report);
    case lsa2_summary:
    case lsa2_asbr_summary:
      return decode_summary(body, out.summary, report);
    case lsa2_as_external:
    case lsa2_nssa:
      return decode_external(body, out.external, report);
    case lsa2_opaque_link:
    case lsa2_opaque_area:
    case lsa2_opaque_as: {
      TlvContentKind kind{};
      return opaque_content_kind(out.opaque_type(), kind) &&
             decode_tlvs(body.rest(), kind, out.opaque, report);
    }
    case lsa2_group_membership:
    case lsa2_external_attributes:
      break;
  }
  return false;  // no typed body: raw only
}

}  // namespace

void decode_lsa_v2(Bytes raw, LsaV2 &out, const Report &report) {
  clear_body(out);
  decode_lsa(raw, out, report, read_lsa_header_v2, decode_body);
}

}  // namespace ospf_decode
