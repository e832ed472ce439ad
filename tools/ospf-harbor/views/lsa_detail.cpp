#include "views/lsa_detail.hpp"

#include <bit>
#include <cstdio>
#include <cstdlib>

#include "ospf_tables/row_keys.hpp"
#include "views/lsa_names.hpp"
#include "views/text_forms.hpp"

namespace tool {

using namespace ospf_tables;

namespace {

std::string hexadecimal(std::uint32_t number) {
  char text[16];
  std::snprintf(text, sizeof text, "0x%x", number);
  return text;
}

std::string decimal(double number) {
  char text[40];
  std::snprintf(text, sizeof text, "%.10g", number);
  return text;
}

std::string list(const std::vector<std::string> &texts) {
  std::string result;
  for (const std::string &text : texts) result += (result.empty() ? "" : ", ") + text;
  return result;
}

// "flags B E" or "no flags".
std::string bits(const char *what, const BitNames &names) {
  return names.empty() ? "no " + std::string(what) : what + (" " + joined(names));
}

// The options by name; as they stand when they are no number.
std::string with_options(const PrefixView &prefix) {
  char *end = nullptr;
  const unsigned long bits = std::strtoul(prefix.options.c_str(), &end, 16);
  BitNames set;
  for (const Named &option : prefix_options) {
    if ((bits & option.number) != 0) set.push_back(option.name);
  }
  const std::string options = *end != '\0' ? prefix.options : joined(set);
  return prefix.prefix + (options.empty() ? "" : ", prefix options " + options);
}

std::uint32_t word_at(const std::vector<std::uint8_t> &octets, std::size_t at) {
  std::uint32_t number = 0;
  for (std::size_t end = at + 4; at < end; ++at) number = number << 8 | octets[at];
  return number;
}

bool is_some_address(const std::string &address) {
  return !address.empty() && address != "0.0.0.0" && address != "::";
}

// What a TLV of these opaque types says when it is text or a number that people read.
std::string known_tlv(std::uint8_t opaque_type, const TlvView &tlv) {
  const auto word = [&] { return word_at(tlv.value, 0); };
  const bool is_grace = opaque_type == opaque_grace;
  if (is_grace && tlv.type == grace_tlv_period && tlv.value.size() == 4) {
    return "grace period: " + counted(word(), "second", "seconds");
  }
  if (is_grace && tlv.type == grace_tlv_reason && tlv.value.size() == 1) {
    const char *reason = name_of(grace_reasons, tlv.value[0]);
    return std::string("restart reason: ") + (reason == nullptr ? "unknown" : reason);
  }
  if (is_grace && tlv.type == grace_tlv_address && tlv.value.size() == 4) {
    return "interface address: " + dotted(word());
  }
  if (opaque_type != opaque_router_information) return "";
  if (tlv.type == ri_tlv_informational && tlv.value.size() >= 4) {
    return "informational capabilities: " + hexadecimal(word());
  }
  if (tlv.type == ri_tlv_hostname) {
    std::string name(tlv.value.begin(), tlv.value.end());
    for (char &c : name) {
      if (static_cast<unsigned char>(c) < 0x20 || c == 0x7f) c = '.';
    }
    return "host name: " + name;
  }
  return "";
}

class Detail {
 public:
  std::string text;

  void operator()(const OtherView &body) {
    for (const TlvView &tlv : body.tlvs) add_tlv(0, tlv);
  }

  void operator()(const RouterViewV2 &body) {
    line(4, bits("flags", body.flags) + "; " + counted(body.num_of_links, "link", "links"));
    for (const RouterLinkViewV2 &link : body.links) {
      const std::string id = dotted(link.link_id);
      const std::string data = dotted(link.link_data);
      std::string what =
          "link of type " + std::to_string(link.type) + ", ID " + id + ", data " + data;
      switch (static_cast<RouterLinkType>(link.type)) {
        case router_link_point_to_point:
          what = "point-to-point to router " + id + ", own address " + data;
          break;
        case router_link_transit:
          what = "transit network, designated router's address " + id + ", own address " + data;
          break;
        case router_link_stub:
          what = "stub network " + prefix_text(link.link_id, data);
          break;
        case router_link_virtual:
          what = "virtual link to router " + id + ", own address " + data;
          break;
      }
      line(4, what + ", metric " + std::to_string(link.metric()));
      add_topologies(6, link.metrics);
    }
  }

  void operator()(const NetworkViewV2 &body) {
    line(4, "network " + prefix_text(link_state_id_, body.mask));
    add_attached(body.attached_routers);
  }

  void operator()(const SummaryViewV2 &body) {
    const std::string what = type_ == lsa2_asbr_summary
                                 ? "AS boundary router " + dotted(link_state_id_)
                                 : "network " + prefix_text(link_state_id_, body.mask);
    std::string metric;
    for (const TopologyMetricView &each : body.metrics) {
      if (each.mt_id == 0) metric = ", metric " + std::to_string(each.metric);
    }
    line(4, what + metric);
    add_topologies(4, body.metrics);
  }

  void operator()(const ExternalViewV2 &body) {
    line(4, "network " + prefix_text(link_state_id_, body.mask));
    for (const ExternalEntryViewV2 &entry : body.entries) {
      add_external(entry.mt_id == 0 ? "" : "topology " + std::to_string(entry.mt_id) + ": ",
                   entry.metric, entry.type_2, entry.forwarding_address, entry.route_tag);
    }
  }

  void operator()(const OpaqueViewV2 &body) {
    line(4, "opaque type " + std::to_string(body.opaque_type) + " (" +
                opaque_type_name(body.opaque_type) + "), opaque ID " +
                std::to_string(body.opaque_id));
    if (!body.router_address.empty()) line(4, "router address " + body.router_address);
    add_te_link(body.te_link);
    for (const SubTlvView &tlv : body.sub_tlvs) add_sub_tlv(tlv);
    for (const TlvView &tlv : body.tlvs) add_tlv(body.opaque_type, tlv);
  }

  void operator()(const RouterViewV3 &body) {
    line(4, bits("flags", body.flags) + "; " + bits("options", body.options) + "; " +
                counted(body.links.size(), "link", "links"));
    for (const RouterLinkViewV3 &link : body.links) {
      line(4, std::string(link_type_name(link.type)) + " from interface " +
                  std::to_string(link.interface_id) + " to interface " +
                  std::to_string(link.neighbor_interface_id) + " of router " +
                  dotted(link.neighbor_router_id) + ", metric " + std::to_string(link.metric));
    }
  }

  void operator()(const NetworkViewV3 &body) {
    line(4, bits("options", body.options));
    add_attached(body.attached_routers);
  }

  void operator()(const InterAreaPrefixView &body) {
    line(4, "prefix " + with_options(body.prefix) + ", metric " + std::to_string(body.metric));
  }

  void operator()(const InterAreaRouterView &body) {
    line(4, "AS boundary router " + dotted(body.destination_router_id) + ", metric " +
                std::to_string(body.metric) + "; " + bits("options", body.options));
  }

  void operator()(const ExternalViewV3 &body) {
    line(4, "prefix " + with_options(body.prefix));
    add_external("", body.metric, body.type_2, body.forwarding_address, body.route_tag);
    if (body.referenced_ls_type != 0) {
      line(4, "refers to " + type_name(3, body.referenced_ls_type) + " " +
                  dotted(body.referenced_link_state_id));
    }
  }

  void operator()(const LinkViewV3 &body) {
    line(4, "priority " + std::to_string(body.priority) + ", link-local address " +
                body.link_local_address + "; " + bits("options", body.options));
    add_prefixes(body.num_of_prefixes, body.prefixes);
  }

  void operator()(const IntraAreaPrefixView &body) {
    line(4, "refers to " + type_name(3, body.referenced_ls_type) + " " +
                dotted(body.referenced_link_state_id) + " of router " + body.referenced_adv_router);
    add_prefixes(body.num_of_prefixes, body.prefixes);
  }

  explicit Detail(const LsaView &lsa) : type_(lsa.type), link_state_id_(lsa.link_state_id) {}

  void line(std::size_t margin, const std::string &content) {
    text += std::string(margin, ' ') + content + "\n";
  }

 private:
  void add_topologies(std::size_t margin, const std::vector<TopologyMetricView> &metrics) {
    for (const TopologyMetricView &each : metrics) {
      if (each.mt_id == 0) continue;
      line(margin,
           "topology " + std::to_string(each.mt_id) + ": metric " + std::to_string(each.metric));
    }
  }

  void add_attached(const std::vector<std::uint32_t> &routers) {
    for (const std::uint32_t router : routers) line(4, "attached router " + dotted(router));
  }

  void add_prefixes(std::size_t count, const std::vector<PrefixView> &prefixes) {
    line(4, counted(count, "prefix", "prefixes") + (prefixes.empty() ? "" : ":"));
    for (const PrefixView &prefix : prefixes) line(6, with_options(prefix));
  }

  void add_external(const std::string &before, std::uint32_t metric, std::optional<bool> type_2,
                    const std::string &forwarding_address, std::uint32_t tag) {
    std::string content = before + "metric " + std::to_string(metric);
    if (type_2) content += *type_2 ? " of type 2" : " of type 1";
    if (is_some_address(forwarding_address))
      content += ", forwarding address " + forwarding_address;
    line(4, content + ", tag " + std::to_string(tag));
  }

  void add_te_link(const TeLinkView &link) {
    if (!link.is_set()) return;
    const char *kind = name_of(te_link_types, link.link_type);
    line(4, std::string("link: ") + (kind == nullptr ? "unknown" : kind) + ", link ID " +
                dotted(link.link_id));
    if (!link.local_addresses.empty()) line(6, "local address " + list(link.local_addresses));
    if (!link.remote_addresses.empty()) line(6, "remote address " + list(link.remote_addresses));
    line(6, "metric " + std::to_string(link.te_metric) + ", administrative group " +
                hexadecimal(link.admin_group));
    line(6, "bandwidth " + decimal(link.max_bandwidth) + ", reservable " +
                decimal(link.max_reservable_bandwidth) + ", unreserved " +
                decimal(link.unreserved_bandwidth) + " octets/s");
  }

  // Of a traffic-engineering link, unless its fields say all of it.
  void add_sub_tlv(const SubTlvView &tlv) {
    if (tlv.type != te_sub_unreserved || tlv.value.size() != 32)
      return add_raw_tlv(6, "sub-TLV", tlv);
    std::string content = "unreserved by priority";
    for (std::size_t at = 0; at < 32; at += 4) {
      content += (at == 0 ? " " : ", ") + decimal(std::bit_cast<float>(word_at(tlv.value, at)));
    }
    line(6, content + " octets/s");
  }

  template <typename Tlv>
  void add_raw_tlv(std::size_t margin, const char *what, const Tlv &tlv) {
    line(margin, std::string(what) + " " + std::to_string(tlv.type) + ", " +
                     counted(tlv.length, "octet", "octets") + (tlv.value.empty() ? "" : ": ") +
                     hex_text(tlv.value));
  }

  void add_tlv(std::uint8_t opaque_type, const TlvView &tlv) {
    const std::string known = known_tlv(opaque_type, tlv);
    if (!known.empty()) {
      line(4, known);
    } else if (tlv.router_address.empty() && !tlv.te_link.is_set()) {
      add_raw_tlv(4, "TLV", tlv);
    }
    if (!tlv.router_address.empty()) line(4, "router address " + tlv.router_address);
    add_te_link(tlv.te_link);
    for (const SubTlvView &sub : tlv.sub_tlvs) add_sub_tlv(sub);
  }

  std::uint16_t type_;
  std::uint32_t link_state_id_;
};

}  // namespace

std::string detail_of(const LsaView &lsa) {
  Detail detail(lsa);
  detail.line(2, type_name(lsa.version, lsa.type) + " LSA " + dotted(lsa.link_state_id) +
                     ", advertised by " + dotted(lsa.adv_router));
  detail.line(4, "age " + age_text(lsa.age) + ", sequence " + lsa.sequence + ", checksum " +
                     lsa.checksum + ", length " + std::to_string(lsa.length) +
                     (lsa.version == 2 ? ", " + bits("options", lsa.options) : ""));
  if (!lsa.decoded_completed) detail.line(4, "the fields do not hold all of its octets:");
  std::visit(detail, lsa.body);
  if (!lsa.decoded_completed && !lsa.raw_data.empty()) {
    const std::string octets = hex_text(lsa.raw_data);
    for (std::size_t at = 0; at < octets.size(); at += 64) detail.line(6, octets.substr(at, 64));
  }
  return detail.text;
}

}  // namespace tool
