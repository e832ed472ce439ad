#include "ospf_events/differences.hpp"

#include <algorithm>
#include <iterator>
#include <set>

namespace ospf_events {

using namespace ospf_decode;

namespace {

std::uint32_t area_bits(const Interface &of) {
  return of.hello.options & (of.version == 2 ? std::uint32_t{option2_e} | option2_np
                                             : std::uint32_t{option3_e} | option3_n);
}

bool lists(const Interface &of, const Interface &with) {
  return of.listed_since.contains(with.router_id);
}

// Whether an interface has said the same for so long that it has found whom it can hear.
bool is_settled(const Interface &of, Time now) {
  return now - of.steady_since > of.hello.dead_interval * second;
}

bool is_alone(const Interface &of, Time now) {
  return of.listed_since.empty() && is_settled(of, now);
}

bool is_by_key(const Interface &of) {
  return of.auth_kind == AuthKind::cryptographic || of.auth_kind == AuthKind::trailer;
}

// Both list each other, and only one names a designated router, though the other has had the time
// to name it too.
bool elects_alone(const Interface &one, const Interface &other, Time now) {
  if (one.is_virtual || one.hello.designated_router == 0 || other.hello.designated_router != 0) {
    return false;
  }
  const auto here = one.listed_since.find(other.router_id);
  const auto there = other.listed_since.find(one.router_id);
  if (here == one.listed_since.end() || there == other.listed_since.end()) return false;
  const Time since = std::max({one.elected_since, here->second, there->second});
  return now - since > 2 * other.hello.hello_interval * second;
}

// Neighbours that have gone on from the first descriptions have taken each other's MTU.
bool has_gone_on(const Interface &of) {
  return std::ranges::any_of(of.exchanges,
                             [](const ExchangeFacts &facts) { return facts.going_on; });
}

void compare_keys(const Interface &a, const Interface &b, Time now, DifferenceSet &found) {
  const bool heard = lists(a, b) || lists(b, a);
  if (a.auth_kind != b.auth_kind) {
    found.add(Difference::authentication);
  } else if (heard) {
    return;
  } else if (is_by_key(a) &&
             (a.auth_key_id != b.auth_key_id || a.auth_digest_length != b.auth_digest_length)) {
    found.add(Difference::authentication_key);
  } else if (a.auth_kind != AuthKind::none && !found.says_why() && is_settled(a, now) &&
             is_settled(b, now)) {
    found.add(Difference::authentication_key);
  }
}

// Point-to-multipoint: both hear others, and there is no designated router that all must hear.
bool are_in_a_mesh(const Interface &a, const Interface &b) {
  return a.hello.designated_router == 0 && b.hello.designated_router == 0 &&
         !a.hello.neighbors.empty() && !b.hello.neighbors.empty();
}

void compare_hearing(const Interface &a, const Interface &b, Time now, DifferenceSet &found) {
  if (found.says_why() || !is_settled(a, now) || !is_settled(b, now)) return;
  const bool one = lists(a, b);
  const bool other = lists(b, a);
  if (one != other) {
    const Interface &hearing = one ? a : b;
    const Time since = hearing.listed_since.at(one ? b.router_id : a.router_id);
    if (now - since > std::max(a.hello.dead_interval, b.hello.dead_interval) * second) {
      found.add(Difference::one_way);
    }
  } else if (!one && !a.is_virtual && !are_in_a_mesh(a, b)) {
    found.add(Difference::unheard);
  }
}

bool within(const Interface &of, const Interface &whose) {
  const std::uint32_t mask = whose.hello.network_mask;
  return mask != 0 && (of.address.as_v4() & mask) == (whose.address.as_v4() & mask);
}

// Interfaces of one subnet that give it two masks stand on two links as Network has them.
bool have_two_masks(const Interface &a, const Interface &b) {
  return a.version == 2 && !a.is_virtual && !b.is_virtual && a.vlan == b.vlan &&
         a.hello.network_mask != b.hello.network_mask && (within(a, b) || within(b, a));
}

}  // namespace

const char *name_of(Difference difference) {
  constexpr const char *names[] = {"hello_interval",
                                   "dead_interval",
                                   "network_mask",
                                   "area",
                                   "area_type",
                                   "network_type",
                                   "authentication",
                                   "authentication_key",
                                   "mtu",
                                   "router_id",
                                   "address",
                                   "instance_id",
                                   "one_way",
                                   "unheard"};
  static_assert(std::size(names) == difference_count);
  return names[static_cast<std::size_t>(difference)];
}

bool DifferenceSet::says_why() const {
  DifferenceSet others;
  others.add(Difference::one_way);
  others.add(Difference::unheard);
  return (bits_ & ~others.bits_) != 0;
}

std::vector<Difference> DifferenceSet::list() const {
  std::vector<Difference> all;
  for (std::size_t at = 0; at < difference_count; ++at) {
    if (has(static_cast<Difference>(at))) all.push_back(static_cast<Difference>(at));
  }
  return all;
}

bool is_alive(const Interface &of, Time now) {
  return of.hello_count != 0 && now - of.last_hello <= of.hello.dead_interval * second;
}

DifferenceSet differences(const Network &network, std::uint32_t one, std::uint32_t other,
                          Time now) {
  const Interface &a = network.interfaces()[one];
  const Interface &b = network.interfaces()[other];
  DifferenceSet found;
  if (a.version != b.version || !is_alive(a, now) || !is_alive(b, now)) return found;
  if (a.instance_id != b.instance_id) {
    if (is_alone(a, now) && is_alone(b, now)) found.add(Difference::instance);
    return found;
  }
  const bool one_link = network.link_of(one) == network.link_of(other);
  const bool two_masks = have_two_masks(a, b);
  if (a.version == 2 && !a.is_virtual && !b.is_virtual && a.address == b.address &&
      a.router_id != b.router_id) {
    found.add(Difference::address);
  }
  if (a.version == 2 && !one_link && !two_masks) return found;
  // Those that find neighbours elsewhere are on another link, whatever speaks for this one.
  if (!one_link && a.version == 3 && !is_alone(a, now) && !is_alone(b, now)) return found;
  if (a.router_id == b.router_id) {
    // Without an ID: routers that have just started say 0.
    if (a.address != b.address && a.router_id != 0) found.add(Difference::router_id);
    return found;
  }
  if (a.hello.hello_interval != b.hello.hello_interval) found.add(Difference::hello_interval);
  if (a.hello.dead_interval != b.hello.dead_interval) found.add(Difference::dead_interval);
  if (two_masks && a.had_designated_router && b.had_designated_router) {
    found.add(Difference::network_mask);
  }
  if (a.area_id != b.area_id) {
    found.add(Difference::area);
  } else if (area_bits(a) != area_bits(b)) {
    found.add(Difference::area_type);
  }
  if (elects_alone(a, b, now) || elects_alone(b, a, now)) found.add(Difference::network_type);
  if (a.mtu.value_or(0) != 0 && b.mtu.value_or(0) != 0 && *a.mtu != *b.mtu &&
      !(has_gone_on(a) && has_gone_on(b))) {
    found.add(Difference::mtu);
  }
  compare_keys(a, b, now, found);
  if (one_link) compare_hearing(a, b, now, found);
  return found;
}

std::string value_text(const Interface &of, Difference difference) {
  switch (difference) {
    case Difference::hello_interval:
      return std::to_string(of.hello.hello_interval) + " s";
    case Difference::dead_interval:
      return std::to_string(of.hello.dead_interval) + " s";
    case Difference::network_mask:
      return ipv4_text(of.hello.network_mask);
    case Difference::area:
      return ipv4_text(of.area_id);
    case Difference::area_type: {
      const std::uint32_t bits = area_bits(of);
      const std::uint32_t external = of.version == 2 ? std::uint32_t{option2_e} : option3_e;
      if ((bits & external) != 0) return "takes externals";
      return bits == 0 ? "stub area" : "NSSA";
    }
    case Difference::network_type:
      return of.hello.designated_router != 0 ? "elects a designated router" : "elects none";
    case Difference::authentication:
    case Difference::authentication_key:
      switch (of.auth_kind) {
        case AuthKind::none:
          return "none";
        case AuthKind::simple:
          return "password";
        default:
          return "digest of " + std::to_string(of.auth_digest_length) + " octets by key " +
                 std::to_string(of.auth_key_id);
      }
    case Difference::mtu:
      return std::to_string(of.mtu.value_or(0));
    case Difference::router_id:
      return ipv4_text(of.router_id);
    case Difference::instance:
      return std::to_string(of.instance_id);
    case Difference::address:
      return ip_text(of.address);
    default:
      return "";
  }
}

std::string name_of(const Interface &of) {
  return ipv4_text(of.router_id) + "@" + ip_text(of.address) +
         (of.is_virtual ? ">" + ip_text(of.virtual_peer) : "");
}

Facing::Facing(const Network &network) : all_(network.interfaces()), links_(network.links()) {
  link_of_.resize(all_.size());
  for (const auto &[link, members] : links_) {
    for (const std::uint32_t index : members) link_of_[index] = link;
  }
  // Routers by where they were heard: a second interface of one shows that a capture is of several
  // links.
  std::set<std::tuple<std::uint32_t, std::uint32_t, std::uint8_t, std::uint8_t, std::uint32_t>>
      heard;
  std::set<std::pair<std::uint32_t, std::uint32_t>> several;
  for (std::uint32_t index = 0; index < all_.size(); ++index) {
    const Interface &of = all_[index];
    if (of.is_virtual || of.hello_count == 0) continue;
    if (of.version == 2) by_address_[of.address.as_v4()].push_back(index);
    if (of.hardware != 0) ports_[of.version - 2][{of.vlan, of.hardware}].push_back(index);
    if (of.version == 3) captures_[{of.capture, of.vlan}].push_back(index);
    if (!heard.emplace(of.capture, of.vlan, of.version, of.instance_id, of.router_id).second) {
      several.emplace(of.capture, of.vlan);
    }
  }
  for (const auto &place : several) captures_.erase(place);
}

void Facing::add_by_subnet(std::uint32_t interface, std::vector<std::uint32_t> &to) const {
  const Interface &of = all_[interface];
  // Without a mask it is alone with its address.
  const std::uint32_t mask = of.hello.network_mask == 0 ? ~0u : of.hello.network_mask;
  const std::uint32_t first = of.address.as_v4() & mask;
  for (auto at = by_address_.lower_bound(first);
       at != by_address_.end() && at->first <= (first | ~mask); ++at) {
    to.insert(to.end(), at->second.begin(), at->second.end());
  }
}

void Facing::add_by_port(std::uint32_t interface, std::vector<std::uint32_t> &to) const {
  const Interface &of = all_[interface];
  const auto port = ports_[0].find({of.vlan, of.hardware});
  // One hardware address may serve several subnets, and tells nothing then.
  if (port == ports_[0].end() || port->second.size() != 1) return;
  for (const std::uint32_t beside : on_link_of(port->second.front())) {
    const auto peer = ports_[1].find({of.vlan, all_[beside].hardware});
    if (peer != ports_[1].end()) to.insert(to.end(), peer->second.begin(), peer->second.end());
  }
}

std::vector<std::uint32_t> Facing::with(std::uint32_t interface) const {
  const Interface &of = all_[interface];
  std::vector<std::uint32_t> found = on_link_of(interface);
  if (!of.is_virtual && of.hello_count != 0) {
    if (of.version == 2) {
      add_by_subnet(interface, found);
    } else {
      add_by_port(interface, found);
      const auto capture = captures_.find({of.capture, of.vlan});
      if (capture != captures_.end()) {
        found.insert(found.end(), capture->second.begin(), capture->second.end());
      }
    }
  }
  std::ranges::sort(found);
  found.erase(std::unique(found.begin(), found.end()), found.end());
  std::erase(found, interface);
  return found;
}

std::vector<std::pair<std::uint32_t, std::uint32_t>> Facing::pairs() const {
  std::set<std::pair<std::uint32_t, std::uint32_t>> found;
  for (std::uint32_t index = 0; index < all_.size(); ++index) {
    for (const std::uint32_t other : with(index)) found.insert(std::minmax(index, other));
  }
  return {found.begin(), found.end()};
}

}  // namespace ospf_events
