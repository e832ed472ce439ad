#include "views/topology_difference.hpp"

#include <algorithm>

namespace tool {

namespace {

using Change = TopologyChange;

template <typename Part>
Part with_change(Part part, Change change) {
  part.change = change;
  return part;
}

std::string facts_of(const TopologyRouter &router) {
  std::string text = router.roles();
  const std::string announcements = router.announcements();
  if (!announcements.empty()) text += (text.empty() ? "" : ", ") + announcements;
  if (!router.has_lsa) text += (text.empty() ? "" : ", ") + std::string("no LSA");
  return text.empty() ? "nothing special" : text;
}

// Changes of parts that are known by a key. `compare` is given both and marks the later one.
template <typename Map, typename Compare>
Map united(const Map &before, Map after, Compare compare) {
  for (auto &[key, part] : after) {
    const auto old = before.find(key);
    if (old == before.end()) {
      part.change = Change::came;
    } else if (compare(old->second, part)) {
      part.change = Change::changed;
    }
  }
  for (const auto &[key, part] : before) after.try_emplace(key, with_change(part, Change::went));
  return after;
}

// Another designated router makes another link-state ID for the same network: those of the earlier
// topology that the later one knows by another ID, with that.
std::map<NetworkId, NetworkId> renamed(const Topology &before, const Topology &after) {
  using Place = std::pair<std::uint32_t, std::vector<std::string>>;
  std::map<Place, std::vector<NetworkId>> later;
  const auto place_of = [](const auto &network) {
    return Place{std::get<0>(network.first), network.second.prefixes};
  };
  for (const auto &network : after.networks) {
    if (!network.second.prefixes.empty() && !before.networks.contains(network.first)) {
      later[place_of(network)].push_back(network.first);
    }
  }
  std::map<NetworkId, NetworkId> names;
  for (const auto &network : before.networks) {
    const auto same = later.find(place_of(network));
    if (same == later.end() || same->second.empty() || after.networks.contains(network.first)) {
      continue;
    }
    names[network.first] = same->second.back();
    same->second.pop_back();
  }
  return names;
}

// The earlier topology as the later one names its networks.
Topology with_names_of(const Topology &after, Topology before) {
  const std::map<NetworkId, NetworkId> names = renamed(before, after);
  for (const auto &[old_name, name] : names) {
    auto network = before.networks.extract(old_name);
    network.key() = name;
    before.networks.insert(std::move(network));
  }
  for (TopologyAttachment &each : before.attachments) {
    const auto name = names.find(each.network);
    if (name != names.end()) each.network = name->second;
  }
  return before;
}

// Puts lists together, whose parts are found again by each of the keys in turn.
template <typename Part, typename Compare, typename... Keys>
std::vector<Part> united(const std::vector<Part> &before, std::vector<Part> after, Compare compare,
                         Keys... keys) {
  std::vector<bool> found(before.size());
  for (Part &part : after) part.change = Change::came;
  const auto find_by = [&](auto key) {
    std::multimap<decltype(key(before.front())), std::size_t> places;
    for (std::size_t at = 0; at < before.size(); ++at) {
      if (!found[at]) places.emplace(key(before[at]), at);
    }
    for (Part &part : after) {
      if (part.change != Change::came) continue;
      const auto old = places.find(key(part));
      if (old == places.end()) continue;
      found[old->second] = true;
      part.change = compare(before[old->second], part) ? Change::changed : Change::none;
      places.erase(old);
    }
  };
  (find_by(keys), ...);
  for (std::size_t at = 0; at < before.size(); ++at) {
    if (!found[at]) after.push_back(with_change(before[at], Change::went));
  }
  return after;
}

bool compare_routers(const TopologyRouter &before, TopologyRouter &after) {
  if (facts_of(before) == facts_of(after) && before.areas == after.areas) return false;
  after.before = facts_of(before);
  return true;
}

bool compare_networks(const TopologyNetwork &before, TopologyNetwork &after) {
  after.designated_before = before.designated_router;
  return before.designated_router != after.designated_router || before.has_lsa != after.has_lsa ||
         before.prefixes != after.prefixes;
}

// The end of the later link that is the first end of the earlier one.
int first_end(const TopologyLink &before, const TopologyLink &after) {
  return before.routers[0] == after.routers[0] ? 0 : 1;
}

bool compare_links(const TopologyLink &before, TopologyLink &after) {
  const int first = first_end(before, after);
  after.costs_before[first] = before.costs[0];
  after.costs_before[1 - first] = before.costs[1];
  return after.costs_before[0] != after.costs[0] || after.costs_before[1] != after.costs[1];
}

auto ends_of(const TopologyLink &link) {
  const auto [low, high] = std::minmax(link.routers[0], link.routers[1]);
  return std::tuple(link.area, link.kind == LinkKind::virtual_link, low, high);
}

auto interfaces_of(const TopologyLink &link) {
  const int low = link.routers[0] < link.routers[1] ? 0 : 1;
  return std::tuple(ends_of(link), link.interfaces[low], link.interfaces[1 - low]);
}

template <typename Part>
bool compare_costs(const Part &before, Part &after) {
  after.cost_before = before.cost;
  return before.cost != after.cost;
}

bool compare_attachments(const TopologyAttachment &before, TopologyAttachment &after) {
  return compare_costs(before, after) || before.listed != after.listed;
}

auto place_of(const TopologyAttachment &attachment) {
  return std::tuple(attachment.network, attachment.router);
}

auto place_of(const TopologyStub &stub) { return std::tuple(stub.area, stub.router, stub.prefix); }

}  // namespace

Topology difference_of(const Topology &earlier, const Topology &after) {
  const Topology before = with_names_of(after, earlier);
  const auto place = [](const auto &part) { return place_of(part); };
  Topology both;
  both.instance = after.instance;
  both.is_difference = true;
  both.areas = after.areas;
  both.areas.insert(before.areas.begin(), before.areas.end());
  both.names = after.names;
  both.names.insert(before.names.begin(), before.names.end());
  both.routers = united(before.routers, after.routers, compare_routers);
  both.networks = united(before.networks, after.networks, compare_networks);
  both.links = united(before.links, after.links, compare_links, interfaces_of, ends_of);
  both.attachments = united(before.attachments, after.attachments, compare_attachments, place);
  both.stubs = united(before.stubs, after.stubs, compare_costs<TopologyStub>, place);
  return both;
}

}  // namespace tool
