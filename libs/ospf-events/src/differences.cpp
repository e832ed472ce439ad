#include "ospf_events/differences.hpp"

#include <algorithm>
#include <iterator>
#include <map>
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
  if (a.version != b.version || a.instance_id != b.instance_id || !is_alive(a, now) ||
      !is_alive(b, now)) {
    return found;
  }
  const bool one_link = network.link_of(one) == network.link_of(other);
  const bool two_masks = have_two_masks(a, b);
  if (a.version == 2 && !a.is_virtual && !b.is_virtual && a.address == b.address &&
      a.router_id != b.router_id) {
    found.add(Difference::address);
  }
  if (!one_link && !two_masks) return found;
  if (a.router_id == b.router_id) {
    if (a.address != b.address) found.add(Difference::router_id);
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

std::vector<std::pair<std::uint32_t, std::uint32_t>> facing(const Network &network) {
  std::set<std::pair<std::uint32_t, std::uint32_t>> pairs;
  const auto add = [&](std::uint32_t a, std::uint32_t b) {
    if (a != b) pairs.emplace(std::min(a, b), std::max(a, b));
  };
  for (const auto &[link, members] : network.links()) {
    for (const std::uint32_t a : members) {
      for (const std::uint32_t b : members) add(a, b);
    }
  }
  const std::vector<Interface> &all = network.interfaces();
  std::map<std::uint32_t, std::vector<std::uint32_t>> by_address;
  for (std::uint32_t index = 0; index < all.size(); ++index) {
    if (all[index].version == 2 && !all[index].is_virtual) {
      by_address[all[index].address.as_v4()].push_back(index);
    }
  }
  for (std::uint32_t index = 0; index < all.size(); ++index) {
    const Interface &of = all[index];
    if (of.version != 2 || of.is_virtual || of.hello_count == 0) continue;
    // Without a mask it is alone with its address.
    const std::uint32_t mask = of.hello.network_mask == 0 ? ~0u : of.hello.network_mask;
    const std::uint32_t first = of.address.as_v4() & mask;
    for (auto at = by_address.lower_bound(first);
         at != by_address.end() && at->first <= (first | ~mask); ++at) {
      for (const std::uint32_t other : at->second) add(index, other);
    }
  }
  return {pairs.begin(), pairs.end()};
}

}  // namespace ospf_events
