#include "views/topology.hpp"

#include <algorithm>

#include "ospf_tables/observed.hpp"
#include "ospf_tables/row_keys.hpp"
#include "views/lsa_names.hpp"

namespace tool {

using namespace ospf_tables;

namespace {

// Without the bit that says that an LSA does not age.
bool is_at_its_end(const LsaView &lsa) { return (lsa.age & 0x7fff) >= 3600; }

// One router's word on a link to another router.
struct HalfLink {
  LinkKind kind;
  std::uint32_t area;
  std::uint32_t from;
  std::uint32_t to;
  std::uint32_t cost;
  std::uint32_t own;    // OSPFv2: its address; OSPFv3: its interface ID
  std::uint32_t other;  // OSPFv3: the neighbour's interface ID
};

class Builder {
 public:
  explicit Builder(std::uint32_t version) { topology_.version = version; }

  void add(const LsdbEntry &entry) {
    const LsaView &lsa = entry.lsa;
    if (lsa.version != topology_.version || !entry.area || is_at_its_end(lsa)) return;
    const std::uint32_t area = *entry.area;
    if (!seen_.insert({area, lsa.type, lsa.link_state_id, lsa.adv_router}).second) return;
    topology_.areas.insert(area);
    if (const auto *router = std::get_if<RouterViewV2>(&lsa.body)) {
      add_router(area, lsa.adv_router, router->flags);
      for (const RouterLinkViewV2 &link : router->links) add_link(area, lsa.adv_router, link);
    } else if (const auto *router3 = std::get_if<RouterViewV3>(&lsa.body)) {
      add_router(area, lsa.adv_router, router3->flags);
      for (const RouterLinkViewV3 &link : router3->links) add_link(area, lsa.adv_router, link);
    } else if (const auto *network = std::get_if<NetworkViewV2>(&lsa.body)) {
      TopologyNetwork &to =
          add_network({area, lsa.link_state_id, 0}, lsa.adv_router, network->attached_routers);
      const std::string prefix = prefix_text(lsa.link_state_id, network->mask);
      if (std::find(to.prefixes.begin(), to.prefixes.end(), prefix) == to.prefixes.end()) {
        to.prefixes.push_back(prefix);
      }
    } else if (const auto *network3 = std::get_if<NetworkViewV3>(&lsa.body)) {
      add_network({area, lsa.link_state_id, lsa.adv_router}, lsa.adv_router,
                  network3->attached_routers);
    } else if (const auto *prefixes = std::get_if<IntraAreaPrefixView>(&lsa.body)) {
      add_prefixes(area, *prefixes);
    }
  }

  Topology finish() {
    attach();
    pair_half_links();
    give_prefixes();
    return std::move(topology_);
  }

 private:
  TopologyRouter &router(std::uint32_t area, std::uint32_t id) {
    TopologyRouter &router = topology_.routers[id];
    router.areas.insert(area);
    return router;
  }

  void add_router(std::uint32_t area, std::uint32_t id, const BitNames &flags) {
    TopologyRouter &added = router(area, id);
    added.has_lsa = true;
    for (const std::string flag : flags) {
      if (flag == "B") added.area_border = true;
      if (flag == "E") added.as_boundary = true;
    }
  }

  TopologyNetwork &add_network(const NetworkId &id, std::uint32_t designated_router,
                               const std::vector<std::uint32_t> &attached) {
    TopologyNetwork &network = topology_.networks[id];
    network.has_lsa = true;
    network.designated_router = designated_router;
    for (const std::uint32_t router : attached) attachment(id, router).listed = true;
    return network;
  }

  TopologyAttachment &attachment(const NetworkId &network, std::uint32_t router) {
    TopologyAttachment &attachment = attachments_[{network, router}];
    attachment.network = network;
    attachment.router = router;
    return attachment;
  }

  // Of several interfaces of a router on one network the cheapest counts.
  void say_cost(const NetworkId &network, std::uint32_t router, std::uint32_t cost) {
    TopologyAttachment &said = attachment(network, router);
    said.cost = said.cost ? std::min(*said.cost, cost) : cost;
  }

  void add_link(std::uint32_t area, std::uint32_t from, const RouterLinkViewV2 &link) {
    if (link.type == router_link_transit) {
      say_cost({area, link.link_id, 0}, from, link.metric());
    } else if (link.type == router_link_stub) {
      topology_.stubs.push_back(
          {area, from, prefix_text(link.link_id, dotted(link.link_data)), link.metric()});
    } else {
      add_half_link(link.type, area, from, link.link_id, link.metric(), link.link_data, 0);
    }
  }

  void add_link(std::uint32_t area, std::uint32_t from, const RouterLinkViewV3 &link) {
    if (link.type == router_link_transit) {
      say_cost({area, link.neighbor_interface_id, link.neighbor_router_id}, from, link.metric);
    } else {
      add_half_link(link.type, area, from, link.neighbor_router_id, link.metric, link.interface_id,
                    link.neighbor_interface_id);
    }
  }

  void add_half_link(std::uint8_t type, std::uint32_t area, std::uint32_t from, std::uint32_t to,
                     std::uint32_t cost, std::uint32_t own, std::uint32_t other) {
    if (type != router_link_point_to_point && type != router_link_virtual) return;
    const LinkKind kind =
        type == router_link_virtual ? LinkKind::virtual_link : LinkKind::point_to_point;
    half_links_.push_back({kind, area, from, to, cost, own, other});
  }

  void add_prefixes(std::uint32_t area, const IntraAreaPrefixView &body) {
    const auto referenced = parse_dotted(body.referenced_adv_router);
    if (!referenced) return;
    for (const PrefixView &prefix : body.prefixes) {
      if (body.referenced_ls_type == lsa3_network) {
        network_prefixes_[{area, body.referenced_link_state_id, *referenced}].push_back(
            prefix.prefix);
      } else if (body.referenced_ls_type == lsa3_router) {
        topology_.stubs.push_back({area, *referenced, prefix.prefix, std::nullopt});
      }
    }
  }

  // Networks and routers that others alone speak of appear as well.
  void attach() {
    for (const auto &[key, attachment] : attachments_) {
      topology_.networks[attachment.network];
      router(std::get<0>(attachment.network), attachment.router);
      topology_.attachments.push_back(attachment);
    }
    for (auto &[id, prefixes] : network_prefixes_) {
      const auto network = topology_.networks.find(id);
      if (network != topology_.networks.end()) network->second.prefixes = std::move(prefixes);
    }
    for (const TopologyStub &stub : topology_.stubs) router(stub.area, stub.router);
  }

  // How badly two halves fit, nothing if they cannot be one link. In OSPFv3 each names the
  // interface of the other. In OSPFv2 nothing does, but the addresses of the two ends of a link
  // differ in their last bits alone.
  std::optional<std::uint32_t> misfit(const HalfLink &a, const HalfLink &b) const {
    if (a.kind != b.kind || a.area != b.area || a.from != b.to || a.to != b.from) {
      return std::nullopt;
    }
    if (topology_.version == 2) return a.own ^ b.own;
    if (a.own != b.other || a.other != b.own) return std::nullopt;
    return 0;
  }

  void pair_half_links() {
    std::map<std::pair<std::uint32_t, std::uint32_t>, std::vector<std::size_t>> between;
    for (std::size_t at = 0; at < half_links_.size(); ++at) {
      const HalfLink &half = half_links_[at];
      between[std::minmax(half.from, half.to)].push_back(at);
    }
    for (const auto &[ends, halves] : between) {
      std::vector<std::tuple<std::uint32_t, std::size_t, std::size_t>> candidates;
      for (const std::size_t a : halves) {
        if (half_links_[a].from != ends.first) continue;
        for (const std::size_t b : halves) {
          if (a == b) continue;
          if (const auto badness = misfit(half_links_[a], half_links_[b])) {
            candidates.emplace_back(*badness, a, b);
          }
        }
      }
      std::sort(candidates.begin(), candidates.end());
      std::set<std::size_t> paired;
      for (const auto &[badness, a, b] : candidates) {
        if (paired.contains(a) || paired.contains(b)) continue;
        paired.insert({a, b});
        add_link(half_links_[a], half_links_[b].cost);
      }
      for (const std::size_t half : halves) {
        if (!paired.contains(half)) add_link(half_links_[half], std::nullopt);
      }
    }
  }

  void add_link(const HalfLink &half, std::optional<std::uint32_t> cost_back) {
    router(half.area, half.to);
    topology_.links.push_back(
        {half.kind, half.area, {half.from, half.to}, {half.cost, cost_back}, ""});
    addresses_.push_back(half.own);
  }

  // A prefix that both ends of a point-to-point link announce is the link's own, and no stub.
  void give_prefixes() {
    std::map<std::pair<std::uint32_t, std::string>, std::set<std::uint32_t>> announcers;
    for (const TopologyStub &stub : topology_.stubs) {
      announcers[{stub.area, stub.prefix}].insert(stub.router);
    }
    std::set<std::pair<std::uint32_t, std::string>> given;
    for (const auto &[prefix, routers] : announcers) {
      if (routers.size() != 2) continue;
      for (std::size_t at = 0; at < topology_.links.size(); ++at) {
        TopologyLink &link = topology_.links[at];
        if (link.kind != LinkKind::point_to_point || link.area != prefix.first ||
            !link.prefix.empty() || !routers.contains(link.routers[0]) ||
            !routers.contains(link.routers[1]) || !may_hold(prefix.second, addresses_[at])) {
          continue;
        }
        link.prefix = prefix.second;
        given.insert(prefix);
        break;
      }
    }
    std::erase_if(topology_.stubs, [&](const TopologyStub &stub) {
      return given.contains({stub.area, stub.prefix});
    });
  }

  // Whether the end of a link with that address can lie in the prefix.
  bool may_hold(const std::string &prefix, std::uint32_t address) const {
    if (topology_.version != 2) return true;
    const std::size_t slash = prefix.find('/');
    const auto network = parse_dotted(prefix.substr(0, slash));
    if (!network || slash == std::string::npos) return false;
    const int length = std::stoi(prefix.substr(slash + 1));
    const std::uint32_t mask = length == 0 ? 0 : ~0u << (32 - length);
    return (address & mask) == *network;
  }

  Topology topology_;
  std::set<std::tuple<std::uint32_t, std::uint16_t, std::uint32_t, std::uint32_t>> seen_;
  std::map<std::pair<NetworkId, std::uint32_t>, TopologyAttachment> attachments_;
  std::map<NetworkId, std::vector<std::string>> network_prefixes_;
  std::vector<HalfLink> half_links_;
  std::vector<std::uint32_t> addresses_;  // of the first ends of the links, one for each
};

}  // namespace

Topology build_topology(const std::vector<LsdbEntry> &entries, std::uint32_t version,
                        std::uint8_t instance_id) {
  Builder builder(version);
  const InstanceName wanted{static_cast<std::uint8_t>(version), instance_id};
  for (const LsdbEntry &entry : entries) {
    if (instance_name(entry.router_id, entry.lsa.version == 2) == wanted) builder.add(entry);
  }
  return builder.finish();
}

}  // namespace tool
