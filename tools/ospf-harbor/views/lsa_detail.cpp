#include "views/lsa_detail.hpp"

#include <cstdlib>

#include "ospf_tables/row_keys.hpp"
#include "views/lsa_names.hpp"
#include "views/text_forms.hpp"
#include "views/tlv_words.hpp"

namespace tool {

using namespace ospf_tables;

namespace {

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

bool is_some_address(const std::string &address) {
  return !address.empty() && address != "0.0.0.0" && address != "::";
}

class Detail {
 public:
  std::string text;

  void operator()(const OtherView &) {
    if (!head_.empty()) line(4, tool::text_of(head_));
    add_tlvs(4, tlvs_);
  }

  void operator()(const RouterViewV2 &body) {
    line(4, bits("flags", body.flags) + "; " + counted(body.num_of_links, "link", "links"));
    for (const RouterLinkViewV2 &link : body.links) {
      const std::string id = dotted(link.link_id);
      const std::string router = labelled(link.link_id, names_);
      const std::string data = dotted(link.link_data);
      std::string what =
          "link of type " + std::to_string(link.type) + ", ID " + id + ", data " + data;
      switch (static_cast<RouterLinkType>(link.type)) {
        case router_link_point_to_point:
          what = "point-to-point to router " + router + ", own address " + data;
          break;
        case router_link_transit:
          what = "transit network, designated router's address " + id + ", own address " + data;
          break;
        case router_link_stub:
          what = "stub network " + prefix_text(link.link_id, data);
          break;
        case router_link_virtual:
          what = "virtual link to router " + router + ", own address " + data;
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
                                 ? "AS boundary router " + labelled(link_state_id_, names_)
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
    add_tlvs(4, tlvs_);
  }

  void operator()(const RouterViewV3 &body) {
    line(4, bits("flags", body.flags) + "; " + bits("options", body.options) + "; " +
                counted(body.links.size(), "link", "links"));
    for (const RouterLinkViewV3 &link : body.links) {
      line(4, std::string(link_type_name(link.type)) + " from interface " +
                  std::to_string(link.interface_id) + " to interface " +
                  std::to_string(link.neighbor_interface_id) + " of router " +
                  labelled(link.neighbor_router_id, names_) + ", metric " +
                  std::to_string(link.metric));
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
    line(4, "AS boundary router " + labelled(body.destination_router_id, names_) + ", metric " +
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

  Detail(const LsaView &lsa, const RouterNames &names)
      : type_(lsa.type),
        link_state_id_(lsa.link_state_id),
        head_(head_words(lsa)),
        tlvs_(tlv_words(lsa)),
        names_(names) {}

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
    for (const std::uint32_t router : routers)
      line(4, "attached router " + labelled(router, names_));
  }

  void add_prefixes(std::size_t count, const std::vector<PrefixView> &prefixes) {
    line(4, counted(count, "prefix", "prefixes") + (prefixes.empty() ? "" : ":"));
    for (const PrefixView &prefix : prefixes) {
      line(6, with_options(prefix) +
                  (prefix.metric ? ", metric " + std::to_string(*prefix.metric) : ""));
    }
  }

  void add_external(const std::string &before, std::uint32_t metric, std::optional<bool> type_2,
                    const std::string &forwarding_address, std::optional<std::uint32_t> tag) {
    std::string content = before + "metric " + std::to_string(metric);
    if (type_2) content += *type_2 ? " of type 2" : " of type 1";
    if (is_some_address(forwarding_address))
      content += ", forwarding address " + forwarding_address;
    line(4, content + (tag ? ", tag " + std::to_string(*tag) : ""));
  }

  void add_tlvs(std::size_t margin, const std::vector<TlvWords> &tlvs) {
    for (const TlvWords &tlv : tlvs) {
      line(margin, text_of(tlv));
      add_tlvs(margin + 2, tlv.sub_tlvs);
    }
  }

  std::uint16_t type_;
  std::uint32_t link_state_id_;
  TlvSays head_;
  std::vector<TlvWords> tlvs_;
  const RouterNames &names_;
};

}  // namespace

std::string detail_of(const LsaView &lsa, const RouterNames &names) {
  Detail detail(lsa, names);
  detail.line(2, type_name(lsa.version, lsa.type) + " LSA " + dotted(lsa.link_state_id) +
                     ", advertised by " + labelled(lsa.adv_router, names));
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
