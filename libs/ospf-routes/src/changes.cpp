#include "ospf_routes/changes.hpp"

#include <algorithm>
#include <charconv>
#include <map>
#include <optional>
#include <set>
#include <tuple>

#include "resummarise.hpp"

namespace ospf_routes {

namespace {

RouterId parse_router(std::string_view text, std::string_view whole) {
  if (const auto router = parse_dotted(text)) return *router;
  throw ChangeError("\"" + std::string(whole) + "\": \"" + std::string(text) +
                    "\" is no router ID such as 10.0.0.1");
}

std::uint32_t parse_metric(std::string_view text, std::string_view whole) {
  std::uint32_t metric = 0;
  const auto [end, error] = std::from_chars(text.begin(), text.end(), metric);
  if (error != std::errc() || end != text.end() || metric == 0 || metric > highest_link_metric) {
    throw ChangeError("\"" + std::string(whole) + "\": \"" + std::string(text) +
                      "\" is no cost, which is a number from 1 to 65535");
  }
  return metric;
}

const char *form_of(Change::Kind kind) {
  constexpr const char *forms[] = {"10.0.0.1--10.0.0.2", "10.0.0.1", "10.0.0.1>10.0.0.2=7",
                                   "10.0.0.1--10.0.0.2=7"};
  return forms[static_cast<int>(kind)];
}

bool is_between(const RouterLink &link, RouterId to, LinkType type) {
  return link.type == type && link.neighbor == to;
}

// A network as router-LSAs name it: (router or 0, link-state ID).
using NetworkKey = std::pair<RouterId, std::uint32_t>;
NetworkKey key_of(const RouterLink &link) { return {link.neighbor, link.neighbor_interface}; }

class Editor {
 public:
  explicit Editor(Database &database) : database_(database) {}

  void apply(const Change &change) {
    for (const RouterId router : {change.from, change.to}) {
      if (router == change.to && change.kind == Change::Kind::without_router) continue;
      if (!has(router))
        fail(change, "there is no router-LSA of " + dotted(router) + nearest(router));
    }
    switch (change.kind) {
      case Change::Kind::without_link:
        return remove_link(change);
      case Change::Kind::without_router:
        return remove_router(change.from);
      case Change::Kind::cost:
        return set_cost(change);
      case Change::Kind::with_link:
        return add_link(change);
    }
  }

 private:
  [[noreturn]] static void fail(const Change &change, const std::string &why) {
    throw ChangeError("\"" + text_of(change) + "\": " + why);
  }

  bool has(RouterId router) const {
    return std::any_of(database_.areas.begin(), database_.areas.end(),
                       [&](const Area &area) { return is_in(area, router); });
  }
  static bool is_in(const Area &area, RouterId router) {
    return std::any_of(area.routers.begin(), area.routers.end(),
                       [&](const RouterLsa &lsa) { return lsa.router == router; });
  }

  std::string nearest(RouterId wanted) const {
    std::set<std::pair<std::uint32_t, RouterId>> near;
    for (const Area &area : database_.areas) {
      for (const RouterLsa &lsa : area.routers) {
        near.emplace(std::max(lsa.router, wanted) - std::min(lsa.router, wanted), lsa.router);
      }
    }
    std::string text;
    for (const auto &[apart, router] : near) {
      if (std::count(text.begin(), text.end(), ',') == 3) break;
      text += (text.empty() ? "; the nearest are " : ", ") + dotted(router);
    }
    return text;
  }

  // Calls act(area, lsa) for each router-LSA of a router.
  template <typename Act>
  void each_lsa(RouterId router, Act act) {
    for (Area &area : database_.areas) {
      for (RouterLsa &lsa : area.routers) {
        if (lsa.router == router) act(area, lsa);
      }
    }
  }

  // Networks that both are on, in an area.
  std::set<NetworkKey> shared(const Area &area, RouterId one, RouterId two) const {
    std::map<NetworkKey, std::set<RouterId>> on;
    for (const RouterLsa &lsa : area.routers) {
      for (const RouterLink &link : lsa.links) {
        if (link.type == LinkType::transit) on[key_of(link)].insert(lsa.router);
      }
    }
    std::set<NetworkKey> both;
    for (const auto &[key, routers] : on) {
      if (routers.contains(one) && routers.contains(two)) both.insert(key);
    }
    return both;
  }

  std::size_t routers_on(const Area &area, const NetworkKey &key) const {
    std::set<RouterId> routers;
    for (const RouterLsa &lsa : area.routers) {
      for (const RouterLink &link : lsa.links) {
        if (link.type == LinkType::transit && key_of(link) == key) routers.insert(lsa.router);
      }
    }
    return routers.size();
  }

  void remove_link(const Change &change) {
    if (remove_between(change, LinkType::point_to_point)) return;
    bool any = false;
    bool wider = false;
    for (Area &area : database_.areas) {
      for (const NetworkKey &key : shared(area, change.from, change.to)) {
        wider |= routers_on(area, key) > 2;
        if (routers_on(area, key) > 2) continue;
        remove_network(area, key);
        any = true;
      }
    }
    if (any || remove_between(change, LinkType::virtual_link)) return;
    fail(change, wider ? "the two are on a network with others, which has no link of theirs alone"
                       : "there is no link between the two; " + links_text(change.from));
  }

  // What could have been meant.
  std::string links_text(RouterId router) const {
    constexpr std::size_t most = 6;
    std::set<std::string> names;
    for (const Area &area : database_.areas) {
      for (const RouterLsa &lsa : area.routers) {
        for (const RouterLink &link : lsa.links) {
          if (lsa.router != router || link.type == LinkType::stub) continue;
          names.insert(link.type == LinkType::transit ? "network " + dotted(link.neighbor_interface)
                                                      : dotted(link.neighbor));
        }
      }
    }
    std::string text = dotted(router) + " has ";
    if (names.empty()) return text + "none";
    text += "those to ";
    std::size_t count = 0;
    for (const std::string &name : names) {
      if (count++ == most) return text + " and others";
      text += (count == 1 ? "" : ", ") + name;
    }
    return text;
  }

  bool remove_between(const Change &change, LinkType type) {
    bool any = false;
    for (const auto &[from, to] : {std::pair(change.from, change.to), {change.to, change.from}}) {
      each_lsa(from, [&, to = to](Area &area, RouterLsa &lsa) {
        const std::vector<RouterLink> links = lsa.links;
        for (const RouterLink &link : links) {
          if (!is_between(link, to, type)) continue;
          any = true;
          if (type == LinkType::point_to_point) remove_prefixes(area, lsa, link.interface);
        }
        std::erase_if(lsa.links,
                      [&](const RouterLink &link) { return is_between(link, to, type); });
      });
    }
    return any;
  }

  // What stands on an interface: in OSPFv2 the stub that its address is in, in OSPFv3 what its
  // link-LSA says. Addresses of hosts stay.
  void remove_prefixes(Area &area, RouterLsa &lsa, std::uint32_t interface) {
    if (database_.version == 2) {
      std::erase_if(lsa.links, [&](const RouterLink &link) { return stands_on(link, interface); });
      return;
    }
    std::set<Prefix> gone;
    for (const LinkLsa &link : area.links) {
      if (link.router == lsa.router && link.interface == interface) {
        gone.insert(link.prefixes.begin(), link.prefixes.end());
      }
    }
    for (IntraAreaPrefixLsa &prefixes : area.prefix_lsas) {
      if (prefixes.router != lsa.router || prefixes.of_network) continue;
      std::erase_if(prefixes.prefixes, [&](const IntraAreaPrefix &each) {
        return each.prefix.length < width(database_.family) && gone.contains(each.prefix);
      });
    }
  }

  static bool stands_on(const RouterLink &stub, std::uint32_t interface) {
    return stub.type == LinkType::stub && stub.stub.length < 32 && interface >= lowest_address &&
           covers(stub.stub, ipv4_address(interface));
  }

  void remove_network(Area &area, const NetworkKey &key) {
    for (RouterLsa &lsa : area.routers) {
      std::erase_if(lsa.links, [&](const RouterLink &link) {
        return link.type == LinkType::transit && key_of(link) == key;
      });
    }
    std::erase_if(area.networks, [&](const NetworkLsa &lsa) {
      return lsa.link_state_id == key.second && (key.first == 0 || lsa.router == key.first);
    });
    std::erase_if(area.prefix_lsas, [&](const IntraAreaPrefixLsa &lsa) {
      return lsa.of_network && NetworkKey(lsa.referenced_router, lsa.referenced_id) == key;
    });
  }

  void remove_router(RouterId router) {
    const auto from_it = [&](const auto &lsa) { return lsa.router == router; };
    for (Area &area : database_.areas) {
      std::erase_if(area.routers, from_it);
      std::erase_if(area.summaries, from_it);
      std::erase_if(area.boundaries, from_it);
      std::erase_if(area.nssa, from_it);
      std::erase_if(area.links, from_it);
      std::erase_if(area.prefix_lsas, [&](const IntraAreaPrefixLsa &lsa) {
        return lsa.router == router && !lsa.of_network;
      });
      for (NetworkLsa &lsa : area.networks) std::erase(lsa.attached, router);
    }
    std::erase_if(database_.externals, from_it);
  }

  void set_cost(const Change &change) {
    bool any = false;
    each_lsa(change.from, [&](Area &area, RouterLsa &lsa) {
      const std::set<NetworkKey> both = shared(area, change.from, change.to);
      std::set<std::uint32_t> interfaces;
      for (RouterLink &link : lsa.links) {
        const bool counts = is_between(link, change.to, LinkType::point_to_point) ||
                            (link.type == LinkType::transit && both.contains(key_of(link)));
        if (!counts) continue;
        any = true;
        link.metric = change.metric;
        interfaces.insert(link.interface);
      }
      for (RouterLink &link : lsa.links) {
        const bool follows = std::any_of(interfaces.begin(), interfaces.end(),
                                         [&](std::uint32_t each) { return stands_on(link, each); });
        if (follows) link.metric = change.metric;
      }
    });
    if (!any) fail(change, "the first has no link to the second; " + links_text(change.from));
  }

  void add_link(const Change &change) {
    Area *best = nullptr;
    for (Area &area : database_.areas) {
      if (!is_in(area, change.from) || !is_in(area, change.to)) continue;
      if (best == nullptr || area.id < best->id) best = &area;
    }
    if (best == nullptr) fail(change, "the two have no area in common");
    const std::uint32_t interfaces[] = {free_interface(change.from), free_interface(change.to)};
    const RouterId ends[] = {change.from, change.to};
    for (const int at : {0, 1}) {
      const auto lsa = std::find_if(best->routers.begin(), best->routers.end(),
                                    [&](const RouterLsa &each) { return each.router == ends[at]; });
      lsa->links.push_back({.neighbor = ends[1 - at],
                            .neighbor_interface = database_.version == 3 ? interfaces[1 - at] : 0,
                            .interface = interfaces[at],
                            .metric = change.metric,
                            .stub = {}});
    }
  }

  // A number that no interface of the router has, below those of addresses.
  std::uint32_t free_interface(RouterId router) {
    std::uint32_t highest = 0;
    each_lsa(router, [&](Area &, const RouterLsa &lsa) {
      for (const RouterLink &link : lsa.links) {
        if (link.interface < lowest_address) highest = std::max(highest, link.interface);
      }
    });
    return highest + 1;
  }

  Database &database_;
};

}  // namespace

Change parse_change(Change::Kind kind, std::string_view text) {
  Change change{kind, 0, 0, 0};
  std::string_view rest = text;
  if (kind == Change::Kind::cost || kind == Change::Kind::with_link) {
    const std::size_t equals = rest.rfind('=');
    if (equals == rest.npos) {
      throw ChangeError("\"" + std::string(text) + "\" has no cost, expected " + form_of(kind));
    }
    change.metric = parse_metric(rest.substr(equals + 1), text);
    rest = rest.substr(0, equals);
  }
  if (kind == Change::Kind::without_router) {
    change.from = parse_router(rest, text);
    return change;
  }
  const std::string_view between = kind == Change::Kind::cost ? ">" : "--";
  const std::size_t at = rest.find(between);
  if (at == rest.npos) {
    throw ChangeError("\"" + std::string(text) + "\" names no two routers, expected " +
                      form_of(kind));
  }
  change.from = parse_router(rest.substr(0, at), text);
  change.to = parse_router(rest.substr(at + between.size()), text);
  if (change.from == change.to) {
    throw ChangeError("\"" + std::string(text) + "\": the two are one router");
  }
  return change;
}

std::string text_of(const Change &change) {
  const std::string cost = "=" + std::to_string(change.metric);
  switch (change.kind) {
    case Change::Kind::without_router:
      return dotted(change.from);
    case Change::Kind::cost:
      return dotted(change.from) + ">" + dotted(change.to) + cost;
    case Change::Kind::with_link:
      return dotted(change.from) + "--" + dotted(change.to) + cost;
    default:
      return dotted(change.from) + "--" + dotted(change.to);
  }
}

void check_changes(const std::vector<Change> &changes) {
  for (std::size_t at = 0; at < changes.size(); ++at) {
    for (std::size_t other = 0; other < changes.size(); ++other) {
      const Change &a = changes[at];
      const Change &b = changes[other];
      if (at == other) continue;
      const auto refuse = [&](const std::string &why) {
        throw ChangeError("\"" + text_of(a) + "\" and \"" + text_of(b) + "\": " + why);
      };
      const bool without_a = a.kind == Change::Kind::without_router;
      if (without_a &&
          (b.from == a.from || (b.kind != Change::Kind::without_router && b.to == a.from))) {
        refuse("the router is gone");
      }
      const bool same_pair = std::minmax(a.from, a.to) == std::minmax(b.from, b.to);
      if (a.kind == Change::Kind::without_link && same_pair &&
          b.kind != Change::Kind::without_router) {
        refuse(b.kind == Change::Kind::without_link ? "the link is named twice"
                                                    : "the link is gone");
      }
      if (a.kind == Change::Kind::cost && b.kind == Change::Kind::cost && a.from == b.from &&
          a.to == b.to) {
        refuse("the cost is given twice");
      }
    }
  }
}

Database changed(const Database &database, const std::vector<Change> &changes, Rules rules) {
  check_changes(changes);
  Database after = database;
  Editor editor(after);
  // New links first, so that a cost can be one of theirs.
  for (const bool adding : {true, false}) {
    for (const Change &change : changes) {
      if ((change.kind == Change::Kind::with_link) == adding) editor.apply(change);
    }
  }
  if (database.areas.size() > 1) resummarise(database, after, rules);
  return after;
}

const char *name_of(Difference difference) {
  constexpr const char *names[] = {"lost", "gained", "longer", "shorter", "other-way"};
  return names[static_cast<int>(difference)];
}

std::vector<RouteChange> differences(const RoutingTable &before, const RoutingTable &after) {
  std::vector<RouteChange> found;
  auto one = before.routes.begin();
  auto two = after.routes.begin();
  const auto rank = [](const Route &route) {
    return std::tuple(route.kind, is_type_2(route.kind) ? route.type2_cost : 0, route.cost);
  };
  while (one != before.routes.end() || two != after.routes.end()) {
    if (two == after.routes.end() || (one != before.routes.end() && one->prefix < two->prefix)) {
      found.push_back({Difference::lost, &*one++, nullptr});
    } else if (one == before.routes.end() || two->prefix < one->prefix) {
      found.push_back({Difference::gained, nullptr, &*two++});
    } else {
      const auto hops_one = before.next_hops(*one);
      const auto hops_two = after.next_hops(*two);
      if (rank(*one) != rank(*two)) {
        found.push_back(
            {rank(*one) < rank(*two) ? Difference::longer : Difference::shorter, &*one, &*two});
      } else if (!std::equal(hops_one.begin(), hops_one.end(), hops_two.begin(), hops_two.end())) {
        found.push_back({Difference::other_way, &*one, &*two});
      }
      ++one;
      ++two;
    }
  }
  return found;
}

}  // namespace ospf_routes
