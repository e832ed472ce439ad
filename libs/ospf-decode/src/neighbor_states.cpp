// Judging: what the facts say of interfaces and neighbours. The rules stand in network.hpp.
#include <algorithm>

#include "ospf_decode/network.hpp"

namespace ospf_decode {
namespace {

// Decoding again what was decoded before reports nothing new.
class Redecode {
 public:
  const RouterBodyV2 &router_v2(const LsdbEntry &entry) {
    decode_lsa_v2(entry.raw, v2_, report_);
    return v2_.router;
  }
  const NetworkBodyV2 &network_v2(const LsdbEntry &entry) {
    decode_lsa_v2(entry.raw, v2_, report_);
    return v2_.network;
  }
  const RouterBodyV3 &router_v3(const LsdbEntry &entry) {
    decode_lsa_v3(entry.raw, v3_, report_);
    return v3_.router;
  }
  const Grace &grace(const LsdbEntry &entry) {
    if (entry.key.version == 2) {
      decode_lsa_v2(entry.raw, v2_, report_);
      return v2_.opaque.grace;
    }
    decode_lsa_v3(entry.raw, v3_, report_);
    return v3_.tlvs.grace;
  }
  const NetworkBodyV3 &network_v3(const LsdbEntry &entry) {
    decode_lsa_v3(entry.raw, v3_, report_);
    return v3_.network;
  }

 private:
  ErrorCounts counts_;
  Report report_{counts_, 0};
  LsaV2 v2_;
  LsaV3 v3_;
};

// What a hello calls a router when it names it designated: an address in OSPFv2, an ID in OSPFv3.
std::uint32_t designation(const Interface &of) {
  return of.version == 2 ? of.address.as_v4() : of.router_id;
}

bool declares_designated(const Interface &by, const Interface &which) {
  return by.hello.designated_router == designation(which);
}

bool declares_backup(const Interface &by, const Interface &which) {
  return by.hello.backup_designated_router == designation(which);
}

}  // namespace

std::string_view neighbor_state_text(NeighborState state) {
  switch (state) {
    case NeighborState::down:
      return "Down";
    case NeighborState::attempt:
      return "Attempt";
    case NeighborState::init:
      return "Init";
    case NeighborState::two_way:
      return "2-Way";
    case NeighborState::ex_start:
      return "ExStart";
    case NeighborState::exchange:
      return "Exchange";
    case NeighborState::loading:
      return "Loading";
    case NeighborState::full:
      return "Full";
  }
  return "unknown";
}

std::string_view evidence_text(Evidence evidence) {
  switch (evidence) {
    case Evidence::hello:
      return "hello";
    case Evidence::description:
      return "exchange";
    case Evidence::database:
      return "database";
    case Evidence::flooding:
      return "flooding";
    case Evidence::role:
      return "role";
    case Evidence::lasting:
      return "lasting";
  }
  return "unknown";
}

std::string_view network_type_text(NetworkType type) {
  switch (type) {
    case NetworkType::unknown:
      return "unknown";
    case NetworkType::broadcast:
      return "broadcast";
    case NetworkType::non_broadcast:
      return "non-broadcast";
    case NetworkType::point_to_multipoint:
      return "point-to-multipoint";
    case NetworkType::point_to_point:
      return "point-to-point";
    case NetworkType::virtual_link:
      return "virtual link";
  }
  return "unknown";
}

std::string_view interface_state_text(InterfaceState state) {
  switch (state) {
    case InterfaceState::unknown:
      return "unknown";
    case InterfaceState::down:
      return "Down";
    case InterfaceState::waiting:
      return "Waiting";
    case InterfaceState::point_to_point:
      return "Point-to-point";
    case InterfaceState::dr_other:
      return "DROther";
    case InterfaceState::backup:
      return "Backup";
    case InterfaceState::designated:
      return "DR";
  }
  return "unknown";
}

NetworkType Network::network_type(std::uint32_t interface) const {
  const Interface &of = interfaces_[interface];
  if (of.hello_count == 0) return NetworkType::unknown;
  if (of.is_virtual) return NetworkType::virtual_link;
  if (of.had_designated_router) {
    return of.multicasts_hellos() ? NetworkType::broadcast : NetworkType::non_broadcast;
  }
  if (!of.multicasts_hellos()) {
    // Before an election a non-broadcast network looks the same; adjacencies form without one only
    // where there is none.
    return of.exchanges.empty() ? NetworkType::unknown : NetworkType::point_to_multipoint;
  }
  // Without a designated router after the time that one is waited for, there is none.
  if (of.last_hello - of.first_hello <= of.hello.dead_interval * second && of.exchanges.empty()) {
    return NetworkType::unknown;
  }
  // Who has one neighbour shares a point-to-multipoint network with one who has several.
  const std::uint32_t link = link_of(interface);
  for (const auto &[neighbor, since] : of.listed_since) {
    const auto there = by_router_.find(neighbor);
    if (there == by_router_.end()) continue;
    for (const std::uint32_t peer : there->second) {
      const Interface &with = interfaces_[peer];
      if (with.hello.neighbors.size() > 1 && !with.had_designated_router && link_of(peer) == link) {
        return NetworkType::point_to_multipoint;
      }
    }
  }
  return of.hello.neighbors.size() > 1 ? NetworkType::point_to_multipoint
                                       : NetworkType::point_to_point;
}

InterfaceState Network::interface_state(std::uint32_t interface) const {
  const Interface &of = interfaces_[interface];
  if (of.hello_count != 0 && last_time_ - of.last_hello > of.hello.dead_interval * second) {
    return InterfaceState::down;
  }
  switch (network_type(interface)) {
    case NetworkType::virtual_link:
    case NetworkType::point_to_point:
    case NetworkType::point_to_multipoint:
      return InterfaceState::point_to_point;
    case NetworkType::broadcast:
    case NetworkType::non_broadcast:
      if (declares_designated(of, of)) return InterfaceState::designated;
      if (declares_backup(of, of)) return InterfaceState::backup;
      return of.hello.designated_router == 0 ? InterfaceState::waiting : InterfaceState::dr_other;
    case NetworkType::unknown:
      return of.hello_count == 0 ? InterfaceState::unknown : InterfaceState::waiting;
  }
  return InterfaceState::unknown;
}

const LsdbEntry *Network::lsa_of_area(const Interface &interface, std::uint16_t type_v2,
                                      std::uint16_t type_v3, std::uint32_t id_v2,
                                      std::uint32_t id_v3) const {
  LsdbKey key;
  key.version = interface.version;
  key.instance_id = interface.instance_id;
  key.scope = Scope::area;
  key.domain = interface.area_id;
  key.type = interface.version == 2 ? type_v2 : type_v3;
  key.link_state_id = interface.version == 2 ? id_v2 : id_v3;
  key.advertising_router = interface.router_id;
  return lsdb_.find(key);
}

// An OSPFv3 router may spread its links over several router LSAs, numbered as it likes; small
// numbers are what implementations use.
std::vector<const LsdbEntry *> Network::router_lsas(const Interface &interface, Time now) const {
  constexpr std::uint32_t numbers_tried = 16;
  std::vector<const LsdbEntry *> out;
  const std::uint32_t count = interface.version == 2 ? 1 : numbers_tried;
  for (std::uint32_t id = 0; id < count; ++id) {
    const LsdbEntry *entry =
        lsa_of_area(interface, lsa2_router, lsa3_router, interface.router_id, id);
    if (entry != nullptr && !entry->gone_at(now)) out.push_back(entry);
  }
  return out;
}

bool Network::grace_over(const LsdbEntry &entry, Time now) const {
  const bool is_grace = entry.key.version == 2 ? entry.key.type == lsa2_opaque_link &&
                                                     entry.key.link_state_id >> 24 == opaque_grace
                                               : entry.key.type == lsa3_grace;
  if (!is_grace) return false;
  Redecode decode;
  const Grace &grace = decode.grace(entry);
  if (grace.has_period && entry.age_at(now) > grace.period) return true;
  for (const Interface &of : interfaces_) {
    if (of.version != entry.key.version || of.instance_id != entry.key.instance_id ||
        of.router_id != entry.key.advertising_router) {
      continue;
    }
    for (const LsdbEntry *router : router_lsas(of, now)) {
      if (router->received > entry.received) return true;
    }
  }
  return false;
}

std::optional<std::uint16_t> Network::interface_cost(std::uint32_t interface) const {
  constexpr std::uint16_t max_link_metric = 0xffff;
  const Interface &of = interfaces_[interface];
  std::optional<std::uint16_t> cost;
  Redecode decode;
  for (const LsdbEntry *entry : router_lsas(of, last_time_)) {
    if (of.version == 3) {
      for (const RouterLinkV3 &link : decode.router_v3(*entry).links) {
        if (link.interface_id == of.hello.interface_id) return link.metric;
      }
      continue;
    }
    const RouterBodyV2 &body = decode.router_v2(*entry);
    for (const RouterLinkV2 &link : body.links) {
      const bool stub = link.type == router_link_stub && link.link_data == of.hello.network_mask &&
                        link.link_id == (of.address.as_v4() & of.hello.network_mask);
      const bool virtual_link = link.type == router_link_virtual;
      const bool same_kind = virtual_link == of.is_virtual;
      // The data of a virtual link may be another address than its packets have.
      const bool end = virtual_link ? of.listed_since.contains(link.link_id)
                                    : link.link_data == of.address.as_v4();
      const bool adjacency = link.type != router_link_stub && same_kind && end;
      const auto metric = static_cast<std::uint16_t>(body.metrics_of(link).front().metric);
      if (stub && !of.is_virtual) return metric;
      // A stub router gives the highest cost to links that lead on (RFC 6987), not to its subnets.
      if (adjacency && (!cost || *cost == max_link_metric)) cost = metric;
    }
  }
  return cost;
}

std::optional<Time> Network::full_since(const Interface &of, const Interface &with,
                                        Time now) const {
  Redecode decode;
  const bool is_v2 = of.version == 2;
  for (const LsdbEntry *entry : router_lsas(of, now)) {
    const auto describes = [&](std::uint8_t type, std::uint32_t id, std::uint32_t data,
                               std::uint32_t peer_interface) {
      if (type == router_link_transit) {
        return declares_designated(of, with) && !declares_designated(of, of) &&
               (is_v2 ? id == with.address.as_v4() && data == of.address.as_v4()
                      : id == with.router_id && data == of.hello.interface_id);
      }
      const std::uint8_t wanted = of.is_virtual ? router_link_virtual : router_link_point_to_point;
      if (type != wanted || id != with.router_id) return false;
      if (is_v2) {
        // An unnumbered link has its number among the router's interfaces as its data.
        return data == of.address.as_v4() || data <= 0xffffff;
      }
      return data == of.hello.interface_id && peer_interface == with.hello.interface_id;
    };
    bool found = false;
    if (is_v2) {
      for (const RouterLinkV2 &link : decode.router_v2(*entry).links) {
        found |= describes(link.type, link.link_id, link.link_data, 0);
      }
    } else {
      for (const RouterLinkV3 &link : decode.router_v3(*entry).links) {
        found |= describes(link.type, link.neighbor_router_id, link.interface_id,
                           link.neighbor_interface_id);
      }
    }
    if (found) return entry->received;
  }
  if (!declares_designated(of, of)) return std::nullopt;
  const LsdbEntry *network =
      lsa_of_area(of, lsa2_network, lsa3_network, of.address.as_v4(), of.hello.interface_id);
  if (network == nullptr || network->gone_at(now)) return std::nullopt;
  const std::vector<std::uint32_t> &attached = is_v2 ? decode.network_v2(*network).attached_routers
                                                     : decode.network_v3(*network).attached_routers;
  if (std::ranges::find(attached, with.router_id) == attached.end()) return std::nullopt;
  return network->received;
}

bool Network::in_transit_network(const Interface &interface, Time now) const {
  Redecode decode;
  for (const LsdbEntry *entry : router_lsas(interface, now)) {
    if (interface.version == 2) {
      for (const RouterLinkV2 &link : decode.router_v2(*entry).links) {
        if (link.type == router_link_transit && link.link_data == interface.address.as_v4()) {
          return true;
        }
      }
    } else {
      for (const RouterLinkV3 &link : decode.router_v3(*entry).links) {
        if (link.type == router_link_transit && link.interface_id == interface.hello.interface_id) {
          return true;
        }
      }
    }
  }
  return false;
}

Time Network::relation_since(const Interface &of, const Interface &with) {
  Time since = 0;
  if (const auto it = of.listed_since.find(with.router_id); it != of.listed_since.end()) {
    since = std::max(since, it->second);
  }
  if (const auto it = with.listed_since.find(of.router_id); it != with.listed_since.end()) {
    since = std::max(since, it->second);
  }
  // The hello that shows the relation may be sent one interval after the relation began.
  return since - of.hello.hello_interval * second;
}

const ExchangeFacts *Network::valid_exchange(const Interface &of, const Interface &with) const {
  const Time since = relation_since(of, with);
  const ExchangeFacts *best = nullptr;
  for (const ExchangeFacts &facts : of.exchanges) {
    if (facts.last < since || (!facts.to.is_zero() && facts.to != with.address)) continue;
    if (best == nullptr || facts.last > best->last) best = &facts;
  }
  return best;
}

// RFC 2328, 10.4. Who is designated is what the router itself declares.
bool Network::wants_adjacency(std::uint32_t interface, std::uint32_t peer) const {
  const NetworkType type = network_type(interface);
  if (type != NetworkType::broadcast && type != NetworkType::non_broadcast) return true;
  const Interface &of = interfaces_[interface];
  const Interface &with = interfaces_[peer];
  return declares_designated(of, of) || declares_backup(of, of) || declares_designated(of, with) ||
         declares_backup(of, with);
}

Neighbor Network::neighbor(std::uint32_t interface, std::uint32_t peer, bool only_two,
                           Time now) const {
  const Interface &of = interfaces_[interface];
  const Interface &with = interfaces_[peer];
  Neighbor out;
  out.interface = interface;
  out.peer = peer;
  out.router_id = with.router_id;
  out.address = with.address;
  out.designated_router = with.hello.designated_router;
  out.backup_designated_router = with.hello.backup_designated_router;
  if (with.hello_count == 0 || now - with.last_hello > of.hello.dead_interval * second) {
    out.state = NeighborState::down;
    return out;
  }
  if (!of.listed_since.contains(with.router_id) && of.last_hello > with.first_hello) {
    // It may have been heard since the last hello, but not if it was there before that.
    out.state = NeighborState::down;
    return out;
  }
  if (!with.listed_since.contains(of.router_id)) {
    out.state = NeighborState::init;
    return out;
  }
  out.state = NeighborState::two_way;
  if (!wants_adjacency(interface, peer)) return out;
  const ExchangeFacts *sent = valid_exchange(of, with);
  if (sent != nullptr) {
    const ExchangeFacts *received = valid_exchange(with, of);
    const bool over =
        sent->sent_last && received != nullptr && received->going_on && received->sent_last;
    out.evidence = Evidence::description;
    out.state = !sent->going_on            ? NeighborState::ex_start
                : !over                    ? NeighborState::exchange
                : !sent->requested.empty() ? NeighborState::loading
                                           : NeighborState::full;
    if (out.state == NeighborState::full) return out;
  }
  const std::optional<Time> full = full_since(of, with, now);
  if (full && (sent == nullptr || *full >= sent->last)) {
    out.state = NeighborState::full;
    out.evidence = Evidence::database;
  } else if (sent == nullptr && only_two && of.last_flooding &&
             *of.last_flooding >= relation_since(of, with)) {
    out.state = NeighborState::full;
    out.evidence = Evidence::flooding;
  } else if (sent == nullptr && (declares_backup(of, of) || declares_backup(of, with)) &&
             in_transit_network(of, now) && in_transit_network(with, now)) {
    out.state = NeighborState::full;
    out.evidence = Evidence::role;
  } else if (sent == nullptr && network_type(interface) != NetworkType::unknown &&
             now - relation_since(of, with) > of.hello.dead_interval * second) {
    out.state = NeighborState::full;
    out.evidence = Evidence::lasting;
  }
  return out;
}

// Of equal links between two routers packets may not tell which ends are one link's; when all of
// them list the other router, each pair hears each other, whichever they are.
bool Network::hear_each_other(const std::map<std::uint32_t, std::vector<std::uint32_t>> &links,
                              std::uint32_t interface, std::uint32_t router) const {
  const Interface &of = interfaces_[interface];
  const auto there = by_router_.find(router);
  const NetworkType type = network_type(interface);
  if (there == by_router_.end() || type == NetworkType::broadcast ||
      type == NetworkType::non_broadcast || of.hello.neighbors.size() != 1) {
    return false;
  }
  bool any = false;
  for (const std::uint32_t index : there->second) {
    const Interface &with = interfaces_[index];
    if (with.hello_count == 0 || with.version != of.version || with.area_id != of.area_id ||
        with.instance_id != of.instance_id || with.is_virtual != of.is_virtual) {
      continue;
    }
    const bool paired = links.at(link_of(index)).size() > 1;
    if (paired) continue;
    if (!with.listed_since.contains(of.router_id)) return false;
    any = true;
  }
  return any;
}

std::vector<Neighbor> Network::neighbors(Time now) const {
  std::vector<Neighbor> out;
  const std::map<std::uint32_t, std::vector<std::uint32_t>> by_link = links();
  for (const auto &[link, members] : by_link) {
    for (const std::uint32_t interface : members) {
      const Interface &of = interfaces_[interface];
      if (of.hello_count == 0) continue;
      std::set<std::uint32_t> seen;
      for (const std::uint32_t peer : members) {
        if (peer == interface || interfaces_[peer].router_id == of.router_id) continue;
        seen.insert(interfaces_[peer].router_id);
        out.push_back(neighbor(interface, peer, members.size() == 2, now));
      }
      // Heard by the router, but not by the capture.
      for (const auto &[router, since] : of.listed_since) {
        if (seen.contains(router)) continue;
        Neighbor &heard = out.emplace_back();
        heard.interface = interface;
        heard.router_id = router;
        heard.state = NeighborState::init;
        if (!hear_each_other(by_link, interface, router)) continue;
        const bool has_lasted = now - since > of.hello.dead_interval * second;
        heard.state = has_lasted ? NeighborState::full : NeighborState::two_way;
        if (has_lasted) heard.evidence = Evidence::lasting;
      }
      for (const auto &[target, last] : of.hello_targets) {
        const auto there = by_address_.find(target);
        if (there != by_address_.end() || now - last > of.hello.dead_interval * second ||
            of.is_virtual) {
          continue;
        }
        Neighbor &attempted = out.emplace_back();
        attempted.interface = interface;
        attempted.address = target;
        attempted.state = NeighborState::attempt;
      }
    }
  }
  return out;
}

}  // namespace ospf_decode
