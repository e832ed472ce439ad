// Gathering: what each packet adds to the facts.
#include "ospf_decode/network.hpp"

#include <algorithm>

namespace ospf_decode {
namespace {

constexpr std::uint32_t host_mask = 0xffffffff;

// A hello over a virtual link: to one address, and without a mask or from a global address.
bool is_virtual_hello(const Packet &packet, const Hello &hello) {
  const Datagram &datagram = packet.datagram;
  if (datagram.destination.is_multicast() || packet.area_id != 0) return false;
  return packet.version == 2 ? hello.network_mask == 0 : !datagram.source.is_link_local();
}

bool same_timers(const Interface &a, const Interface &b) {
  return a.version == b.version && a.instance_id == b.instance_id && a.area_id == b.area_id &&
         a.vlan == b.vlan && a.is_virtual == b.is_virtual && a.hello_count != 0 &&
         b.hello_count != 0 && a.hello.hello_interval == b.hello.hello_interval &&
         a.hello.dead_interval == b.hello.dead_interval;
}

}  // namespace

bool Interface::demand_circuit() const {
  const std::uint32_t bit = version == 2 ? std::uint32_t{option2_dc} : option3_dc;
  return (hello.options & bit) != 0;
}

bool Interface::multicasts_hellos() const {
  return last_multicast_hello && last_hello - *last_multicast_hello <= hello.dead_interval * second;
}

Network::Network()
    : links_([this](std::uint32_t from, std::uint32_t to) {
        lsdb_.join_links(from, to);
        ++link_changes_;
      }) {}

Network::SourceKey Network::source_of(const Packet &packet) {
  return {packet.version, packet.instance_id, packet.router_id, packet.datagram.vlan,
          packet.datagram.source};
}

LinkName Network::name_of(std::uint32_t interface) const {
  const Interface &of = interfaces_[interface];
  LinkName name;
  name.version = of.version;
  name.instance_id = of.instance_id;
  if (of.is_virtual && of.version == 2) {
    name.kind = LinkName::Kind::address_pair;
    name.a = std::min(of.address, of.virtual_peer);
    name.b = std::max(of.address, of.virtual_peer);
  } else if (of.version == 2 && of.hello_count != 0 && of.hello.network_mask != 0 &&
             of.hello.network_mask != host_mask) {
    name.kind = LinkName::Kind::subnet;
    name.a = IpAddress::v4(of.address.as_v4() & of.hello.network_mask);
    name.b = IpAddress::v4(of.hello.network_mask);
  } else if (of.version == 3 && of.hello_count != 0) {
    name.kind = LinkName::Kind::router_interface;
    name.a = IpAddress::v4(of.router_id);
    name.b = IpAddress::v4(of.hello.interface_id);
  } else {
    name.kind = LinkName::Kind::interface_index;
    name.a = IpAddress::v4(interface);
  }
  return name;
}

std::uint32_t Network::link_of(std::uint32_t interface) const {
  return links_.number_of(name_of(interface));
}

std::map<std::uint32_t, std::vector<std::uint32_t>> Network::links() const {
  std::map<std::uint32_t, std::vector<std::uint32_t>> out;
  for (std::uint32_t i = 0; i < interfaces_.size(); ++i) out[link_of(i)].push_back(i);
  return out;
}

std::uint32_t Network::add_interface(const Packet &packet) {
  const auto index = static_cast<std::uint32_t>(interfaces_.size());
  Interface &added = interfaces_.emplace_back();
  added.version = packet.version;
  added.instance_id = packet.instance_id;
  added.router_id = packet.router_id;
  added.area_id = packet.area_id;
  added.vlan = packet.datagram.vlan;
  added.hardware = packet.datagram.hardware;
  added.capture = capture_;
  added.address = packet.datagram.source;
  by_source_[source_of(packet)].push_back(index);
  by_address_[added.address].push_back(index);
  by_router_[added.router_id].push_back(index);
  return index;
}

// An OSPFv3 virtual link has no address of its own: its packets have one of any of the router's
// interfaces, now this one and now that. Its interface ID stays. Without an ID: the router's only
// one.
std::optional<std::uint32_t> Network::virtual_end(const Packet &packet,
                                                  std::optional<std::uint32_t> id) const {
  const auto there = by_router_.find(packet.router_id);
  const bool may_be = packet.version == 3 && packet.area_id == 0 &&
                      !packet.datagram.source.is_link_local() && there != by_router_.end();
  std::optional<std::uint32_t> found;
  if (!may_be) return found;
  for (const std::uint32_t index : there->second) {
    const Interface &of = interfaces_[index];
    if (of.version != 3 || of.instance_id != packet.instance_id || !of.is_virtual ||
        (id && of.hello.interface_id != *id)) {
      continue;
    }
    if (found) return std::nullopt;
    found = index;
  }
  return found;
}

std::uint32_t Network::hello_sender(const Packet &packet, const Hello &hello) {
  const bool is_virtual = is_virtual_hello(packet, hello);
  const IpAddress &destination = packet.datagram.destination;
  const auto fits = [&](std::uint32_t index) {
    const Interface &of = interfaces_[index];
    if (of.hello_count == 0) return of.area_id == packet.area_id;
    if (of.is_virtual != is_virtual) return false;
    if (of.version == 3) return of.hello.interface_id == hello.interface_id;
    return !is_virtual || of.virtual_peer == destination;
  };
  std::vector<std::uint32_t> &known = by_source_[source_of(packet)];
  auto found = std::find_if(known.begin(), known.end(), fits);
  std::uint32_t index = 0;
  if (found != known.end()) {
    index = *found;
  } else if (const auto moved = virtual_end(packet, hello.interface_id); is_virtual && moved) {
    index = *moved;
    known.push_back(index);
    by_address_[packet.datagram.source].push_back(index);
  } else {
    index = add_interface(packet);
  }
  Interface &of = interfaces_[index];
  of.address = packet.datagram.source;
  // The name that the interface's link had before is joined with the one that the hello gives it.
  const LinkName before = name_of(index);
  of.is_virtual = is_virtual;
  if (is_virtual) of.virtual_peer = destination;
  of.area_id = packet.area_id;
  if ((of.hello.designated_router == 0) != (hello.designated_router == 0) || of.hello_count == 0) {
    of.elected_since = packet.datagram.time;
  }
  of.hello = hello;
  ++of.hello_count;
  const LinkName after = name_of(index);
  if (before != after) ++link_changes_;
  if (before.kind == LinkName::Kind::interface_index && before != after) links_.join(before, after);
  return index;
}

std::uint32_t Network::sender(const Packet &packet) {
  // What speaks in one area is no interface whose hellos speak in another, though a virtual link
  // and the interface beneath it share an address.
  std::vector<std::uint32_t> known = by_source_[source_of(packet)];
  std::erase_if(known,
                [&](std::uint32_t index) { return interfaces_[index].area_id != packet.area_id; });
  if (known.empty()) {
    const std::optional<std::uint32_t> end = virtual_end(packet, std::nullopt);
    return end ? *end : add_interface(packet);
  }
  if (known.size() == 1) return known.front();
  const IpAddress &destination = packet.datagram.destination;
  const auto best = [&](std::uint32_t index) {
    const Interface &of = interfaces_[index];
    if (of.is_virtual) return of.version == 3 || of.virtual_peer == destination ? 4 : 0;
    int score = 1;
    if (const auto peer = by_address_.find(destination); peer != by_address_.end()) {
      const std::uint32_t link = link_of(index);
      for (const std::uint32_t other : peer->second) {
        if (other != index && link_of(other) == link) score += 3;
      }
    }
    return score;
  };
  return *std::max_element(known.begin(), known.end(),
                           [&](std::uint32_t a, std::uint32_t b) { return best(a) < best(b); });
}

void Network::join_by_unicast(std::uint32_t interface, const Packet &packet) {
  const IpAddress &destination = packet.datagram.destination;
  const LinkName name = name_of(interface);
  if (destination.is_multicast() || name.kind == LinkName::Kind::address_pair ||
      name.kind == LinkName::Kind::subnet || (destination.is_v6 && !destination.is_link_local())) {
    return;
  }
  const auto there = by_address_.find(destination);
  if (there == by_address_.end()) return;
  std::optional<std::uint32_t> peer;
  for (const std::uint32_t index : there->second) {
    const Interface &of = interfaces_[index];
    if (of.version != packet.version || of.instance_id != packet.instance_id || of.is_virtual ||
        of.area_id != packet.area_id || of.vlan != packet.datagram.vlan) {
      continue;
    }
    if (peer) return;  // an address that stands for several interfaces tells nothing
    peer = index;
  }
  if (peer) links_.join(name, name_of(*peer));
}

// The only interface of a router that may stand on the link of `of` and that `also` takes.
template <typename Also>
std::optional<std::uint32_t> Network::only_one(const Interface &of, std::uint32_t router,
                                               Also also) const {
  std::optional<std::uint32_t> out;
  const auto there = by_router_.find(router);
  if (there == by_router_.end()) return out;
  for (const std::uint32_t index : there->second) {
    // Subnets say themselves on which link they are.
    if (!same_timers(of, interfaces_[index]) || name_of(index).kind == LinkName::Kind::subnet ||
        !also(interfaces_[index])) {
      continue;
    }
    if (out) return std::nullopt;
    out = index;
  }
  return out;
}

void Network::join_by_hello(std::uint32_t interface) {
  const Interface &of = interfaces_[interface];
  const LinkName name = name_of(interface);
  if (name.kind == LinkName::Kind::subnet) return;
  const auto any = [](const Interface &) { return true; };
  const bool alone = only_one(of, of.router_id, any) == interface;
  // By then whoever hears it on another link lists it too.
  const Time settled = of.last_hello - 2 * of.hello.hello_interval * second;
  const auto lists = [&](std::uint32_t router) {
    return [=](const Interface &each) {
      const auto listed = each.listed_since.find(router);
      return listed != each.listed_since.end() && listed->second <= settled;
    };
  };
  for (const std::uint32_t neighbor : of.hello.neighbors) {
    if (neighbor == of.router_id) continue;
    auto peer = alone ? only_one(of, neighbor, any) : std::nullopt;
    if (!peer && only_one(of, of.router_id, lists(neighbor)) == interface) {
      peer = only_one(of, neighbor, lists(of.router_id));
    }
    if (peer && *peer != interface && interfaces_[*peer].listed_since.contains(of.router_id)) {
      links_.join(name, name_of(*peer));
    }
  }
}

void Network::on_packet(const Packet &packet) {
  last_time_ = std::max(last_time_, packet.datagram.time);
  if (packet.checksum_state == ChecksumState::bad || packet.type == PacketType::hello) return;
  sender_ = sender(packet);
  join_by_unicast(sender_, packet);
  if (packet.type == PacketType::update || packet.type == PacketType::acknowledgement) {
    interfaces_[sender_].last_flooding = packet.datagram.time;
  }
  areas_[{packet.version, packet.instance_id, packet.area_id}].routers.insert(packet.router_id);
}

void Network::on_hello(const Packet &packet, const Hello &hello) {
  sender_ = hello_sender(packet, hello);
  Interface &of = interfaces_[sender_];
  const Datagram &datagram = packet.datagram;
  if (of.hello_count == 1) of.first_hello = datagram.time;
  const bool has_gap = datagram.time - of.last_hello > hello.dead_interval * second;
  of.last_hello = datagram.time;
  if (datagram.destination.is_multicast()) {
    of.last_multicast_hello = datagram.time;
  } else {
    of.hello_targets[datagram.destination] = datagram.time;
  }
  of.had_designated_router |= hello.designated_router != 0;
  of.lls |= packet.lls.present;
  of.auth_kind = packet.auth.kind;
  of.auth_key_id =
      packet.auth.kind == AuthKind::trailer ? packet.auth.association_id : packet.auth.key_id;
  of.auth_digest_length = packet.auth.digest.size();

  std::map<std::uint32_t, Time> listed;
  for (const std::uint32_t neighbor : hello.neighbors) {
    const auto before = of.listed_since.find(neighbor);
    listed[neighbor] = before != of.listed_since.end() ? before->second : datagram.time;
  }
  const auto is_listed_too = [](const auto &a, const auto &b) { return a.first == b.first; };
  if (of.hello_count == 1 || has_gap ||
      !std::ranges::equal(listed, of.listed_since, is_listed_too)) {
    of.steady_since = datagram.time;
  }
  of.listed_since = std::move(listed);

  const bool is_v2 = packet.version == 2;
  Area &area = areas_[{packet.version, packet.instance_id, packet.area_id}];
  area.routers.insert(packet.router_id);
  area.hello_seen = true;
  area.external_capable |= (hello.options & (is_v2 ? std::uint32_t{option2_e} : option3_e)) != 0;
  area.nssa |= (hello.options & (is_v2 ? std::uint32_t{option2_np} : option3_n)) != 0;

  join_by_unicast(sender_, packet);
  join_by_hello(sender_);
}

ExchangeFacts &Network::exchange_of(Interface &interface, const IpAddress &destination) {
  const IpAddress to = destination.is_multicast() ? IpAddress{} : destination;
  for (ExchangeFacts &facts : interface.exchanges) {
    if (facts.to == to) return facts;
  }
  ExchangeFacts &added = interface.exchanges.emplace_back();
  added.to = to;
  return added;
}

void Network::on_database_description(const Packet &packet, const DatabaseDescription &dd) {
  Interface &of = interfaces_[sender_];
  of.mtu = dd.mtu;
  ExchangeFacts &facts = exchange_of(of, packet.datagram.destination);
  facts.flags = dd.flags;
  facts.sequence = dd.sequence;
  facts.last = packet.datagram.time;
  if ((dd.flags & description_init) != 0) {
    facts.going_on = false;
    facts.sent_last = false;
    facts.requested.clear();
  } else {
    facts.going_on = true;
    facts.sent_last |= (dd.flags & description_more) == 0;
  }
}

void Network::on_request(const Packet &packet, std::span<const LsaName> names) {
  ExchangeFacts &facts = exchange_of(interfaces_[sender_], packet.datagram.destination);
  facts.requested.insert(names.begin(), names.end());
  if (!facts.requested.empty()) requesting_.insert(sender_);
}

bool Network::is_requested(const LsaName &name) const {
  if (requesting_.empty()) return false;
  const std::uint32_t link = link_of(sender_);
  return std::ranges::any_of(requesting_, [&](std::uint32_t index) {
    if (index == sender_ || link_of(index) != link) return false;
    return std::ranges::any_of(interfaces_[index].exchanges, [&](const ExchangeFacts &facts) {
      return facts.requested.contains(name);
    });
  });
}

void Network::answered(const LsaHeader &header) {
  if (requesting_.empty()) return;
  const LsaName name{header.type, header.link_state_id, header.advertising_router};
  const std::uint32_t link = link_of(sender_);
  for (auto it = requesting_.begin(); it != requesting_.end();) {
    const std::uint32_t index = *it++;
    if (index == sender_ || link_of(index) != link) continue;
    bool all = true;
    for (ExchangeFacts &facts : interfaces_[index].exchanges) {
      facts.requested.erase(name);
      all &= facts.requested.empty();
    }
    if (all) requesting_.erase(index);
  }
}

void Network::load(const Packet &packet, const LsaHeader &header, Bytes raw, bool complete,
                   Scope scope) {
  LsdbKey key;
  key.version = packet.version;
  key.instance_id = packet.instance_id;
  key.scope = scope;
  key.type = header.type;
  key.link_state_id = header.link_state_id;
  key.advertising_router = header.advertising_router;
  if (scope == Scope::area) key.domain = packet.area_id;
  if (scope == Scope::link) key.domain = link_of(sender_);
  on_offer(packet, key, header, raw);
  answered(header);
  const Lsdb::Outcome outcome =
      lsdb_.offer(key, header, raw, complete, packet.datagram.time, packet.datagram.number);
  on_offered(packet, key, header, outcome);
}

void Network::on_lsa_v2(const Packet &packet, const LsaV2 &lsa) {
  const std::optional<Scope> scope = scope_of(2, lsa.header.type);
  if (!lsa.checksum_ok || !scope) return;
  load(packet, lsa.header, lsa.raw, lsa.complete, *scope);
}

void Network::on_lsa_v3(const Packet &packet, const LsaV3 &lsa) {
  const std::optional<Scope> scope = scope_of(3, lsa.header.type);
  if (!lsa.checksum_ok || !scope) return;
  const auto interface_name = [&](std::uint32_t router, std::uint32_t interface_id) {
    LinkName name;
    name.kind = LinkName::Kind::router_interface;
    name.version = packet.version;
    name.instance_id = packet.instance_id;
    name.a = IpAddress::v4(router);
    name.b = IpAddress::v4(interface_id);
    return name;
  };
  const std::uint32_t router = lsa.header.advertising_router;
  if (lsa.header.type == lsa3_link && !interfaces_[sender_].is_virtual) {
    links_.join(interface_name(router, lsa.header.link_state_id), name_of(sender_));
  } else if (lsa.header.type == lsa3_router) {
    for (const RouterLinkV3 &link : lsa.router.links) {
      if (link.type != router_link_point_to_point && link.type != router_link_transit &&
          link.type != router_link_virtual) {
        continue;
      }
      links_.join(interface_name(router, link.interface_id),
                  interface_name(link.neighbor_router_id, link.neighbor_interface_id));
    }
  }
  load(packet, lsa.header, lsa.raw, lsa.complete, *scope);
}

}  // namespace ospf_decode
