// Links that only one end tells of, addresses that two routers have, virtual links.
#include <algorithm>
#include <array>
#include <functional>
#include <numeric>
#include <set>
#include <tuple>

#include "evidence.hpp"

namespace ospf_findings {

using namespace ospf_routes;
using namespace lsa_vocabulary;

namespace {

// Joins what is joined, for ever.
class Sets {
 public:
  explicit Sets(std::size_t count) : parents_(count) {
    std::iota(parents_.begin(), parents_.end(), std::size_t{0});
  }
  std::size_t root(std::size_t at) {
    while (parents_[at] != at) at = parents_[at] = parents_[parents_[at]];
    return at;
  }
  void join(std::size_t a, std::size_t b) { parents_[root(a)] = root(b); }

 private:
  std::vector<std::size_t> parents_;
};

using NetworkKey = std::pair<RouterId, std::uint32_t>;  // as links have it: 0 in OSPFv2

// What the router-LSAs and network-LSAs of an area say of each other.
struct AreaFacts {
  explicit AreaFacts(const Area &area) {
    for (const RouterLsa &lsa : area.routers) {
      routers.insert(lsa.router);
      for (const RouterLink &link : lsa.links) {
        if (link.type == LinkType::transit) {
          on_network[{link.neighbor, link.neighbor_interface}].insert(lsa.router);
        } else if (link.type != LinkType::stub) {
          ++direct[{link.type == LinkType::virtual_link, lsa.router, link.neighbor}];
        }
      }
    }
    for (const NetworkLsa &lsa : area.networks) {
      for (const NetworkKey &key : keys_of(lsa)) networks[key] = &lsa;
    }
  }
  // Whether the router tells of a link to the network.
  bool links_to(const NetworkLsa &lsa, RouterId router) const {
    return std::ranges::any_of(keys_of(lsa), [&](const NetworkKey &key) {
      const auto found = on_network.find(key);
      return found != on_network.end() && found->second.contains(router);
    });
  }
  static std::array<NetworkKey, 2> keys_of(const NetworkLsa &lsa) {
    return {{{0, lsa.link_state_id}, {lsa.router, lsa.link_state_id}}};
  }

  std::set<RouterId> routers;
  std::map<NetworkKey, std::set<RouterId>> on_network;
  std::map<NetworkKey, const NetworkLsa *> networks;
  std::map<std::tuple<bool, RouterId, RouterId>, std::size_t> direct;
};

}  // namespace

Parts::Parts(const Area &area) {
  const AreaFacts facts(area);
  std::map<RouterId, std::size_t> numbers;
  for (const RouterId router : facts.routers) numbers.emplace(router, numbers.size());
  Sets sets(numbers.size());
  std::set<RouterId> claims;  // routers that tell of a link that is not told of from there
  for (const auto &[key, count] : facts.direct) {
    const auto &[is_virtual, from, to] = key;
    if (!numbers.contains(to)) {
      claims.insert(from);
      continue;
    }
    const auto back = facts.direct.find({is_virtual, to, from});
    const std::size_t others = back == facts.direct.end() ? 0 : back->second;
    if (others != 0) sets.join(numbers.at(from), numbers.at(to));
    if (count > others) {
      claims.insert(from);
      one_way_.push_back({from, to, 0, false, is_virtual});
    }
  }
  for (const auto &[key, members] : facts.on_network) {
    const auto lsa = facts.networks.find(key);
    std::optional<std::size_t> first;
    for (const RouterId router : members) {
      const bool attached =
          lsa != facts.networks.end() &&
          std::ranges::find(lsa->second->attached, router) != lsa->second->attached.end();
      if (!attached) {
        claims.insert(router);
        if (lsa != facts.networks.end()) {
          one_way_.push_back({router, lsa->second->router, key.second, false, false});
        }
      } else if (!first) {
        first = numbers.at(router);
      } else {
        sets.join(numbers.at(router), *first);
      }
    }
  }
  for (const NetworkLsa &lsa : area.networks) {
    for (const RouterId router : lsa.attached) {
      if (!numbers.contains(router)) continue;
      if (!facts.links_to(lsa, router))
        one_way_.push_back({router, lsa.router, lsa.link_state_id, true, false});
    }
  }
  std::map<std::size_t, std::size_t> part_of_root;
  for (const auto &[router, number] : numbers) {
    const auto [at, is_new] = part_of_root.emplace(sets.root(number), members_.size());
    if (is_new) {
      members_.push_back({});
      stale_.push_back(false);
    }
    members_[at->second].push_back(router);
    part_of_[router] = at->second;
    if (claims.contains(router)) stale_[at->second] = true;
  }
}

bool Parts::connects(RouterId a, RouterId b) const {
  const auto one = part_of_.find(a);
  const auto other = part_of_.find(b);
  return one != part_of_.end() && other != part_of_.end() && one->second == other->second;
}

namespace {

void find_one_way(const Subject &subject, const Area &area, const Parts &parts,
                  std::vector<Finding> &findings) {
  for (const Parts::OneWay &link : parts.one_way()) {
    Finding found = finding(Severity::warning, Kind::one_way_link, subject.database, area.id);
    found.routers = {link.from, link.to};
    append(found.lsas, subject.evidence.of(area.id, link.from, lsa2_router, lsa3_router));
    if (link.network == 0) {
      found.where = dotted(link.from) + " > " + dotted(link.to);
      found.what = dotted(link.from) + " tells of a " +
                   (link.is_virtual ? "virtual link" : "link") + " to " + dotted(link.to) +
                   ", which tells of none back";
      append(found.lsas, subject.evidence.of(area.id, link.to, lsa2_router, lsa3_router));
    } else {
      found.where = "network " + dotted(link.network);
      found.what = link.is_network
                       ? "the network-LSA of " + dotted(link.to) + " lists " + dotted(link.from) +
                             ", which tells of no link to the network"
                       : dotted(link.from) + " tells of a link to the network of " +
                             dotted(link.to) + ", whose network-LSA does not list it";
      append(found.lsas,
             subject.evidence.of(area.id, link.to, lsa2_network, lsa3_network, link.network));
    }
    findings.push_back(std::move(found));
  }
}

void find_addresses(const Subject &subject, std::vector<Finding> &findings) {
  if (subject.database.version != 2) return;
  std::map<std::uint32_t, std::set<std::pair<RouterId, AreaId>>> owners;
  for (const Area &area : subject.database.areas) {
    for (const RouterLsa &lsa : area.routers) {
      for (const RouterLink &link : lsa.links) {
        if (link.type != LinkType::stub && link.interface >= lowest_address) {
          owners[link.interface].emplace(lsa.router, area.id);
        }
      }
    }
  }
  for (const auto &[address, who] : owners) {
    Finding found =
        finding(Severity::error, Kind::duplicate_address, subject.database, who.begin()->second);
    for (const auto &[router, area] : who) {
      if (!found.routers.empty() && found.routers.back() == router) continue;
      found.routers.push_back(router);
      append(found.lsas, subject.evidence.of(area, router, lsa2_router, lsa3_router));
    }
    if (found.routers.size() < 2) continue;
    found.where = dotted(address);
    found.what = "the router-LSAs of " + std::to_string(found.routers.size()) +
                 " routers have an interface of this address";
    findings.push_back(std::move(found));
  }
}

void find_virtual_links(const Subject &subject, const std::map<AreaId, Parts> &parts,
                        std::vector<Finding> &findings) {
  std::set<std::pair<RouterId, RouterId>> seen;
  for (const Area &area : subject.database.areas) {
    for (const RouterLsa &lsa : area.routers) {
      for (const RouterLink &link : lsa.links) {
        if (link.type != LinkType::virtual_link) continue;
        if (!seen.insert(std::minmax(lsa.router, link.neighbor)).second) continue;
        const bool has_transit = std::ranges::any_of(parts, [&](const auto &each) {
          return each.first != backbone && each.second.connects(lsa.router, link.neighbor);
        });
        if (has_transit) continue;
        Finding found =
            finding(Severity::error, Kind::virtual_link_without_transit, subject.database, area.id);
        found.routers = {lsa.router, link.neighbor};
        found.where = dotted(lsa.router) + " - " + dotted(link.neighbor);
        found.what = "a virtual link between routers that no other area connects";
        append(found.lsas, subject.evidence.of(area.id, lsa.router, lsa2_router, lsa3_router));
        append(found.lsas, subject.evidence.of(area.id, link.neighbor, lsa2_router, lsa3_router));
        findings.push_back(std::move(found));
      }
    }
  }
}

}  // namespace

void find_in_links(const Subject &subject, std::vector<Finding> &findings) {
  std::map<AreaId, Parts> parts;
  for (const Area &area : subject.database.areas) {
    const auto at = parts.emplace(area.id, Parts(area)).first;
    find_one_way(subject, area, at->second, findings);
  }
  find_addresses(subject, findings);
  find_virtual_links(subject, parts, findings);
}

}  // namespace ospf_findings
