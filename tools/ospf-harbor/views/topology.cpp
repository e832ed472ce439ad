#include "views/topology.hpp"

#include <algorithm>

#include "views/text_forms.hpp"

namespace tool {

using namespace ospf_routes;

namespace {

// One router's word on a link to another router.
struct HalfLink {
  LinkKind kind;
  AreaId area;
  RouterId from;
  RouterId to;
  std::uint32_t cost;
  std::uint32_t own;    // OSPFv2: its address; OSPFv3: its interface ID
  std::uint32_t other;  // OSPFv3: the neighbour's interface ID
};

class Builder {
 public:
  explicit Builder(const Database &database) : database_(database) {
    topology_.instance = {database.version, database.instance};
  }

  Topology build() {
    for (const Area &area : database_.areas) {
      area_ = area.id;
      topology_.areas[area.id];
      for (const LinkLsa &lsa : area.links) add_address(lsa);
      for (const RouterLsa &lsa : area.routers) add_router(lsa);
      for (const NetworkLsa &lsa : area.networks) add_network(lsa);
      for (const IntraAreaPrefixLsa &lsa : area.prefix_lsas) add_prefixes(lsa);
    }
    attach();
    pair_half_links();
    give_prefixes();
    count_externals();
    return std::move(topology_);
  }

 private:
  bool is_v2() const { return database_.version == 2; }

  TopologyRouter &router(AreaId area, RouterId id) {
    TopologyRouter &router = topology_.routers[id];
    router.areas.insert(area);
    return router;
  }

  NetworkId network_id(std::uint32_t link_state_id, RouterId router) const {
    return {area_, link_state_id, is_v2() ? 0 : router};
  }

  // Addresses of OSPFv3 stand in link LSAs, of either family.
  void add_address(const LinkLsa &lsa) {
    const Family family = lsa.address.low != 0 ? Family::ipv6 : database_.family;
    addresses_[{lsa.router, lsa.interface}] = text_of(lsa.address, family);
  }

  std::string address_of(RouterId router, std::uint32_t interface) const {
    if (is_v2()) return interface >= lowest_address ? dotted(interface) : std::string();
    const auto at = addresses_.find({router, interface});
    return at == addresses_.end() ? std::string() : at->second;
  }

  void add_router(const RouterLsa &lsa) {
    TopologyRouter &added = router(area_, lsa.router);
    added.has_lsa = true;
    added.area_border |= lsa.border;
    added.as_boundary |= lsa.boundary;
    for (const RouterLink &link : lsa.links) add_link(lsa, link);
  }

  void add_link(const RouterLsa &lsa, const RouterLink &link) {
    switch (link.type) {
      case LinkType::stub:
        topology_.stubs.push_back(
            {area_, lsa.router, text_of(link.stub, database_.family), link.metric});
        return;
      case LinkType::transit:
        say_cost(network_id(link.neighbor_interface, link.neighbor), lsa.router, link);
        return;
      default:
        break;
    }
    const LinkKind kind =
        link.type == LinkType::virtual_link ? LinkKind::virtual_link : LinkKind::point_to_point;
    half_links_.push_back({kind, area_, lsa.router, link.neighbor, link.metric, link.interface,
                           link.neighbor_interface});
    if (kind == LinkKind::point_to_point && is_multipoint(lsa, link)) {
      multipoint_.insert({area_, lsa.router, link.interface});
    }
  }

  // A point-to-multipoint interface has several neighbours, and announces its own address as a
  // host of no cost (RFC 2328, 12.4.1.4).
  bool is_multipoint(const RouterLsa &lsa, const RouterLink &link) const {
    if (is_v2() && link.interface < lowest_address) return false;
    const auto is_so = [&](const RouterLink &each) {
      if (each.type == LinkType::stub) {
        return is_v2() && each.metric == 0 &&
               each.stub == make_prefix(ipv4_address(link.interface), 32);
      }
      return &each != &link && each.type == link.type && each.interface == link.interface;
    };
    return std::ranges::any_of(lsa.links, is_so);
  }

  // Of several interfaces of a router on one network the cheapest counts.
  void say_cost(const NetworkId &network, RouterId router, const RouterLink &link) {
    TopologyAttachment &said = attachment(network, router);
    if (said.cost && *said.cost <= link.metric) return;
    said.cost = link.metric;
    said.address = address_of(router, link.interface);
  }

  TopologyAttachment &attachment(const NetworkId &network, RouterId router) {
    TopologyAttachment &attachment = attachments_[{network, router}];
    attachment.network = network;
    attachment.router = router;
    return attachment;
  }

  void add_network(const NetworkLsa &lsa) {
    const NetworkId id = network_id(lsa.link_state_id, lsa.router);
    TopologyNetwork &network = topology_.networks[id];
    network.has_lsa = true;
    network.designated_router = lsa.router;
    for (const RouterId each : lsa.attached) attachment(id, each).listed = true;
    if (!is_v2()) return;
    const Prefix prefix = make_prefix(ipv4_address(lsa.link_state_id), lsa.length);
    network.prefixes.push_back(text_of(prefix, database_.family));
  }

  void add_prefixes(const IntraAreaPrefixLsa &lsa) {
    for (const IntraAreaPrefix &each : lsa.prefixes) {
      const std::string text = text_of(each.prefix, database_.family);
      if (lsa.of_network) {
        network_prefixes_[network_id(lsa.referenced_id, lsa.referenced_router)].push_back(text);
      } else {
        topology_.stubs.push_back({area_, lsa.referenced_router, text, each.metric});
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
    if (is_v2()) return a.own ^ b.own;
    if (a.own != b.other || a.other != b.own) return std::nullopt;
    return 0;
  }

  void pair_half_links() {
    std::map<std::pair<RouterId, RouterId>, std::vector<std::size_t>> between;
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
        add_link(half_links_[a], &half_links_[b]);
      }
      for (const std::size_t half : halves) {
        if (!paired.contains(half)) add_link(half_links_[half], nullptr);
      }
    }
  }

  void add_link(const HalfLink &half, const HalfLink *back) {
    router(half.area, half.to);
    TopologyLink link;
    link.area = half.area;
    link.kind = half.kind;
    link.routers[0] = half.from;
    link.routers[1] = half.to;
    const HalfLink *const halves[] = {&half, back};
    for (const int end : {0, 1}) {
      const HalfLink *const own = halves[end];
      if (own == nullptr) continue;
      link.costs[end] = own->cost;
      link.interfaces[end] = own->own;
      link.addresses[end] = address_of(own->from, own->own);
      if (multipoint_.contains({own->area, own->from, own->own})) {
        link.kind = LinkKind::point_to_multipoint;
      }
    }
    topology_.links.push_back(std::move(link));
  }

  // A prefix that both ends of a point-to-point link announce is the link's own, and no stub.
  void give_prefixes() {
    std::map<std::pair<AreaId, std::string>, std::set<RouterId>> announcers;
    for (const TopologyStub &stub : topology_.stubs) {
      announcers[{stub.area, stub.prefix}].insert(stub.router);
    }
    std::map<std::tuple<AreaId, RouterId, RouterId>, std::vector<TopologyLink *>> between;
    for (TopologyLink &link : topology_.links) {
      if (link.kind != LinkKind::point_to_point) continue;
      const auto [low, high] = std::minmax(link.routers[0], link.routers[1]);
      between[{link.area, low, high}].push_back(&link);
    }
    std::set<std::pair<AreaId, std::string>> given;
    for (const auto &[prefix, routers] : announcers) {
      if (routers.size() != 2) continue;
      for (TopologyLink *link : between[{prefix.first, *routers.begin(), *routers.rbegin()}]) {
        if (!link->prefix.empty() || !may_hold(prefix.second, link->interfaces[0])) continue;
        link->prefix = prefix.second;
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
    if (!is_v2()) return true;
    const auto parsed = parse_prefix(prefix, Family::ipv4);
    return parsed && covers(*parsed, ipv4_address(address));
  }

  void count_externals() {
    const auto count = [&](const ExternalLsa &lsa, std::size_t TopologyRouter::*counter,
                           const char *as) {
      const auto at = topology_.routers.find(lsa.router);
      if (at == topology_.routers.end()) return;
      if (lsa.prefix.length == 0) {
        at->second.defaults.insert(as);
      } else {
        ++(at->second.*counter);
      }
    };
    for (const ExternalLsa &lsa : database_.externals) {
      count(lsa, &TopologyRouter::externals, "default");
    }
    for (const Area &area : database_.areas) {
      const std::string into = " into " + dotted(area.id);
      for (const ExternalLsa &lsa : area.nssa) {
        count(lsa, &TopologyRouter::nssa_externals, ("default" + into).c_str());
      }
      for (const SummaryLsa &lsa : area.summaries) {
        const auto at = topology_.routers.find(lsa.router);
        if (lsa.prefix.length == 0 && at != topology_.routers.end()) {
          at->second.defaults.insert("default" + into);
        }
      }
    }
  }

  const Database &database_;
  Topology topology_;
  AreaId area_ = 0;
  std::map<std::pair<NetworkId, RouterId>, TopologyAttachment> attachments_;
  std::map<NetworkId, std::vector<std::string>> network_prefixes_;
  std::map<std::pair<RouterId, std::uint32_t>, std::string> addresses_;
  std::set<std::tuple<AreaId, RouterId, std::uint32_t>> multipoint_;
  std::vector<HalfLink> half_links_;
};

void join(std::string &to, const std::string &text) {
  if (!text.empty()) to += (to.empty() ? "" : ", ") + text;
}

// The networks that an interface is on: its designated router's is the one, which is known by its
// address in OSPFv2 and by its router ID in OSPFv3.
void mark_non_broadcast(Topology &topology, const InterfaceLine &interface) {
  for (const TopologyAttachment &each : topology.attachments) {
    const auto &[area, link_state_id, adv_router] = each.network;
    if (each.router != interface.router || area != interface.area) continue;
    const std::uint32_t designated = topology.instance.version == 2 ? link_state_id : adv_router;
    if (interface.dr == dotted(designated)) topology.networks[each.network].non_broadcast = true;
  }
}

// What the interface of an end is, where its address or its neighbour tells which it is.
void mark_link(TopologyLink &link, int end, const InterfaceLine &interface) {
  if (link.kind == LinkKind::virtual_link || link.area != interface.area) return;
  const bool is_its_address =
      !link.addresses[end].empty() && link.addresses[end] == interface.address;
  const bool has_neighbor = std::ranges::any_of(
      interface.neighbors,
      [&](const NeighborLine &neighbor) { return neighbor.router_id == link.routers[1 - end]; });
  if (interface.type == "point-to-multipoint" && (is_its_address || has_neighbor)) {
    link.kind = LinkKind::point_to_multipoint;
  } else if (interface.type == "point-to-point" && is_its_address) {
    link.kind = LinkKind::point_to_point;
  }
}

}  // namespace

std::string TopologyRouter::roles() const {
  std::string text;
  if (area_border) join(text, "ABR");
  if (as_boundary) join(text, "ASBR");
  return text;
}

std::string TopologyRouter::announcements() const {
  std::string text;
  if (externals != 0) join(text, counted(externals, "external", "externals"));
  if (nssa_externals != 0) join(text, std::to_string(nssa_externals) + " NSSA");
  for (const std::string &each : defaults) join(text, each);
  return text;
}

Topology topology_of(const Database &database) { return Builder(database).build(); }

void add_lists(Topology &topology, const NetworkLists &lists) {
  topology.names.insert(lists.names.begin(), lists.names.end());
  for (const AreaLine &line : lists.areas) {
    const auto at = topology.areas.find(line.area);
    if (line.instance == topology.instance && at != topology.areas.end()) at->second = line.kind;
  }
  std::map<std::uint32_t, std::vector<std::pair<TopologyLink *, int>>> ends;
  for (TopologyLink &link : topology.links) {
    for (const int end : {0, 1}) ends[link.routers[end]].emplace_back(&link, end);
  }
  for (const InterfaceLine &interface : lists.interfaces) {
    if (interface.instance != topology.instance) continue;
    if (interface.type == "non-broadcast") mark_non_broadcast(topology, interface);
    if (!interface.type.starts_with("point-to-")) continue;
    for (const auto &[link, end] : ends[interface.router]) mark_link(*link, end, interface);
  }
}

}  // namespace tool
