#include "describe.hpp"

#include <algorithm>

namespace ospf_decode::testing {
namespace {

std::string hex(std::uint64_t value) {
  char text[20];
  std::snprintf(text, sizeof text, "%llx", static_cast<unsigned long long>(value));
  return text;
}

std::string hex_octets(Bytes data) {
  std::string out;
  for (const std::uint8_t octet : data) {
    char text[3];
    std::snprintf(text, sizeof text, "%02x", octet);
    out += text;
  }
  return out;
}

std::string float_bits(float value) {
  char text[9];
  std::snprintf(text, sizeof text, "%08x", std::bit_cast<std::uint32_t>(value));
  return text;
}

std::string dec(std::uint64_t value) { return std::to_string(value); }

std::string addresses(const std::vector<std::uint32_t> &list) {
  std::string out;
  for (const std::uint32_t address : list) out += (out.empty() ? "" : ",") + ipv4_text(address);
  return out;
}

std::string header_fields(const LsaHeader &header) {
  return "age=" + dec(header.age_seconds()) + " dna=" + dec(header.do_not_age()) +
         " options=" + hex(header.options) + " type=" + hex(header.type) +
         " id=" + ipv4_text(header.link_state_id) + " adv=" + ipv4_text(header.advertising_router) +
         " seq=" + hex(header.sequence) + " checksum=" + hex(header.checksum) +
         " length=" + dec(header.length);
}

std::string prefix(const PrefixV3 &which) {
  return " [" + prefix_text(which) + ' ' + hex(which.options) + ' ' + dec(which.metric) + ']';
}

std::string te_sub_tlv(const TeLink &link, const Tlv &sub) {
  std::string out = dec(sub.type) + '/' + dec(sub.length);
  if (!sub.typed) return out + " raw=" + hex_octets(sub.value);
  switch (sub.type) {
    case 1:
      return out + " type=" + dec(link.link_type);
    case 2:
      return out + " id=" + ipv4_text(link.link_id);
    case 3:
      return out + " local=" + addresses(link.local_addresses);
    case 4:
      return out + " remote=" + addresses(link.remote_addresses);
    case 5:
      return out + " metric=" + dec(link.metric);
    case 6:
      return out + " bandwidth=" + float_bits(link.max_bandwidth);
    case 7:
      return out + " bandwidth=" + float_bits(link.max_reservable_bandwidth);
    case 8: {
      out += " unreserved=";
      const char *comma = "";
      for (const float bandwidth : link.unreserved_bandwidth) {
        out += comma + float_bits(bandwidth);
        comma = ",";
      }
      return out;
    }
    default:
      return out + " group=" + hex(link.admin_group);
  }
}

std::string opaque(const LsaV2 &lsa) {
  std::string out;
  std::size_t link = 0;
  for (const Tlv &tlv : lsa.opaque.tlvs) {
    out += " tlv=" + dec(tlv.type) + '/' + dec(tlv.length);
    switch (lsa.opaque_type()) {
      case opaque_traffic_engineering:
        if (tlv.type == 1) out += " router=" + ipv4_text(lsa.opaque.router_address);
        if (tlv.type == 2) {
          const TeLink &te = lsa.opaque.te_links()[link++];
          for (const Tlv &sub : te.sub_tlvs) out += " (" + te_sub_tlv(te, sub) + ')';
        }
        break;
      case opaque_router_information:
        if (tlv.type == 1) {
          out += " capabilities=" +
                 hex(lsa.opaque.router_information.informational_capabilities >> 24);
        }
        break;
      case opaque_grace:
        if (tlv.type == 1) out += " period=" + dec(lsa.opaque.grace.period);
        if (tlv.type == 2) out += " reason=" + dec(lsa.opaque.grace.reason);
        if (tlv.type == 3) out += " ip=" + ipv4_text(lsa.opaque.grace.interface_address);
        break;
      default:
        break;
    }
  }
  return out;
}

std::string router_v2(const RouterBodyV2 &router) {
  // The reference has the links sorted by their text.
  std::vector<std::string> links;
  for (const RouterLinkV2 &link : router.links) {
    std::string text =
        " [" + ipv4_text(link.link_id) + ' ' + ipv4_text(link.link_data) + ' ' + dec(link.type);
    for (const TopologyMetric &metric : router.metrics_of(link)) {
      text += ' ' + dec(metric.mt_id) + ':' + dec(metric.metric);
    }
    links.push_back(text + ']');
  }
  std::ranges::sort(links);
  std::string out = " flags=" + hex(router.flags) + " links=" + dec(router.link_count);
  for (const std::string &link : links) out += link;
  return out;
}

std::string body(const LsaV2 &lsa) {
  switch (lsa.header.type) {
    case lsa2_router:
      return router_v2(lsa.router);
    case lsa2_network:
      return " mask=" + ipv4_text(lsa.network.mask) +
             " attached=" + addresses(lsa.network.attached_routers);
    case lsa2_summary:
    case lsa2_asbr_summary: {
      std::string out = " mask=" + ipv4_text(lsa.summary.mask);
      for (const TopologyMetric &metric : lsa.summary.metrics) {
        out += " [" + dec(metric.mt_id) + ' ' + dec(metric.metric) + ']';
      }
      return out;
    }
    case lsa2_as_external:
    case lsa2_nssa: {
      std::string out = " mask=" + ipv4_text(lsa.external.mask);
      for (const ExternalEntryV2 &entry : lsa.external.entries) {
        out += " [" + dec(entry.mt_id) + ' ' + dec(entry.type_2) + ' ' + dec(entry.metric) + ' ' +
               ipv4_text(entry.forwarding_address) + ' ' + dec(entry.route_tag) + ']';
      }
      return out;
    }
    default:
      return opaque(lsa);
  }
}

std::string external_v3(const ExternalBodyV3 &external) {
  return " flags=" + hex(external.flags) + " metric=" + dec(external.metric) +
         " ref=" + hex(external.referenced_ls_type) +
         " forward=" + ipv6_text(external.forwarding_address) + " tag=" + dec(external.route_tag) +
         prefix(external.prefix);
}

std::string body(const LsaV3 &lsa) {
  std::string out;
  switch (lsa.header.type) {
    case lsa3_router:
      out = " flags=" + hex(lsa.router.flags) + " options=" + hex(lsa.router.options);
      for (const RouterLinkV3 &link : lsa.router.links) {
        out += " [" + dec(link.type) + ' ' + dec(link.metric) + ' ' + dec(link.interface_id) + ' ' +
               dec(link.neighbor_interface_id) + ' ' + ipv4_text(link.neighbor_router_id) + ']';
      }
      return out;
    case lsa3_network:
      return " options=" + hex(lsa.network.options) +
             " attached=" + addresses(lsa.network.attached_routers);
    case lsa3_inter_area_prefix:
      return " metric=" + dec(lsa.inter_area_prefix.metric) + prefix(lsa.inter_area_prefix.prefix);
    case lsa3_inter_area_router:
      return " options=" + hex(lsa.inter_area_router.options) +
             " metric=" + dec(lsa.inter_area_router.metric) +
             " router=" + ipv4_text(lsa.inter_area_router.destination_router_id);
    case lsa3_as_external:
      return external_v3(lsa.external);
    case lsa3_nssa:
      return external_v3(lsa.nssa);
    case lsa3_link:
      out = " priority=" + dec(lsa.link.priority) + " options=" + hex(lsa.link.options) +
            " address=" + ipv6_text(lsa.link.link_local_address) +
            " prefixes=" + dec(lsa.link.prefix_count);
      for (const PrefixV3 &one : lsa.link.prefixes) out += prefix(one);
      return out;
    case lsa3_intra_area_prefix: {
      const IntraAreaPrefixBody &intra = lsa.intra_area_prefix;
      out = " prefixes=" + dec(intra.prefix_count) + " ref=" + hex(intra.referenced_ls_type) +
            " refid=" + ipv4_text(intra.referenced_link_state_id) +
            " refadv=" + ipv4_text(intra.referenced_advertising_router);
      for (const PrefixV3 &one : intra.prefixes) out += prefix(one);
      return out;
    }
    default:
      return out;
  }
}

}  // namespace

void Describer::add(const Packet &packet, std::string line) {
  lines.push_back(std::to_string(packet.datagram.number) + ' ' + std::move(line));
}

void Describer::on_packet(const Packet &packet) {
  std::string out = "packet version=" + dec(packet.version) +
                    " type=" + dec(static_cast<unsigned>(packet.type)) +
                    " length=" + dec(packet.length) + " router=" + ipv4_text(packet.router_id) +
                    " area=" + ipv4_text(packet.area_id) + " checksum=" + hex(packet.checksum);
  if (packet.version == 2) {
    out += " auth=" + dec(static_cast<unsigned>(packet.auth.kind));
    if (packet.auth.kind == AuthKind::cryptographic) {
      out += " key=" + dec(packet.auth.key_id) + " sequence=" + dec(packet.auth.sequence) +
             " digest=" + hex_octets(packet.auth.digest);
    }
  } else {
    out += " instance=" + dec(packet.instance_id);
    if (packet.auth.kind == AuthKind::trailer) {
      out += " trailer=" + dec(packet.auth.trailer_type) +
             " association=" + dec(packet.auth.association_id) +
             " sequence=" + dec(packet.auth.sequence) + " digest=" + hex_octets(packet.auth.digest);
    }
  }
  add(packet, out);
}

void Describer::on_hello(const Packet &packet, const Hello &hello) {
  add(packet, "hello mask=" + ipv4_text(hello.network_mask) +
                  " interface=" + dec(hello.interface_id) + " hello=" + dec(hello.hello_interval) +
                  " dead=" + dec(hello.dead_interval) + " priority=" + dec(hello.priority) +
                  " options=" + hex(hello.options) + " dr=" + ipv4_text(hello.designated_router) +
                  " bdr=" + ipv4_text(hello.backup_designated_router) +
                  " neighbors=" + addresses(hello.neighbors));
}

void Describer::on_database_description(const Packet &packet, const DatabaseDescription &dd) {
  add(packet, "description mtu=" + dec(dd.mtu) + " options=" + hex(dd.options) +
                  " flags=" + hex(dd.flags) + " sequence=" + dec(dd.sequence));
  on_acknowledgement(packet, dd.headers);
}

void Describer::on_request(const Packet &packet, std::span<const LsaName> names) {
  for (const LsaName &name : names) {
    add(packet, "request type=" + hex(name.type) + " id=" + ipv4_text(name.link_state_id) +
                    " adv=" + ipv4_text(name.advertising_router));
  }
}

void Describer::on_lsa_v2(const Packet &packet, const LsaV2 &lsa) {
  add(packet, "lsa " + header_fields(lsa.header) + body(lsa));
}

void Describer::on_lsa_v3(const Packet &packet, const LsaV3 &lsa) {
  add(packet, "lsa " + header_fields(lsa.header) + body(lsa));
}

void Describer::on_acknowledgement(const Packet &packet, std::span<const LsaHeader> headers) {
  for (const LsaHeader &header : headers) add(packet, "header " + header_fields(header));
}

}  // namespace ospf_decode::testing
