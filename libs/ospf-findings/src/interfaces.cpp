#include "ospf_findings/interfaces.hpp"

#include <algorithm>
#include <map>
#include <set>
#include <tuple>

#include "mismatch.hpp"

namespace ospf_findings {

using namespace ospf_routes;
using ospf_events::Difference;

namespace {

using Pair = std::pair<std::size_t, std::size_t>;  // the lower position first

const InterfaceFacts::Neighbor *seen(const InterfaceFacts &by, const InterfaceFacts &of) {
  const auto at = std::ranges::find_if(by.neighbors, [&](const InterfaceFacts::Neighbor &each) {
    return each.router == of.router &&
           (!each.address || !of.address || *each.address == *of.address);
  });
  return at == by.neighbors.end() ? nullptr : &*at;
}

// Which interfaces face each other: those of which one has the other for a neighbour, and those
// with a prefix in common.
class Pairs {
 public:
  explicit Pairs(const std::vector<InterfaceFacts> &all) : all_(all) {
    for (std::size_t at = 0; at < all.size(); ++at) by_router_[all[at].router].push_back(at);
    for (std::size_t at = 0; at < all.size(); ++at) {
      add_neighbors(at);
      for (const Prefix &prefix : all[at].prefixes) links_[{all[at].version, prefix}].push_back(at);
    }
    for (auto at = links_.begin(); at != links_.end(); ++at) add_link(at);
  }
  const std::set<Pair> &found() const { return found_; }

 private:
  using Links = std::map<std::pair<std::uint8_t, Prefix>, std::vector<std::size_t>>;

  bool hears_nobody(std::size_t at) const {
    return std::ranges::none_of(all_[at].neighbors, &InterfaceFacts::Neighbor::is_heard);
  }

  // Two instances share a link and mean nothing to each other; where each end is alone in its own,
  // one of them is wrong.
  bool may_face(std::size_t one, std::size_t other) const {
    if (one == other || all_[one].version != all_[other].version) return false;
    if (all_[one].instance == all_[other].instance) return true;
    return all_[one].router != all_[other].router && hears_nobody(one) && hears_nobody(other);
  }

  void add(std::size_t one, std::size_t other) {
    if (may_face(one, other)) found_.insert(std::minmax(one, other));
  }

  void add_neighbors(std::size_t at) {
    for (const InterfaceFacts::Neighbor &neighbor : all_[at].neighbors) {
      const auto its = by_router_.find(neighbor.router);
      if (its == by_router_.end()) continue;
      for (const std::size_t other : its->second) {
        const bool by_address = neighbor.address && all_[other].address;
        // Without addresses it must be the only one that has this one for a neighbour.
        if (by_address ? *neighbor.address == *all_[other].address
                       : only_one_back(at, its->second) == other) {
          add(at, other);
        }
      }
    }
  }

  std::size_t only_one_back(std::size_t at, const std::vector<std::size_t> &others) const {
    std::size_t found = at;
    for (const std::size_t other : others) {
      if (!may_face(at, other) || seen(all_[other], all_[at]) == nullptr) continue;
      if (found != at) return at;
      found = other;
    }
    return found;
  }

  // Prefixes within the link's are of the same link where masks differ.
  void add_link(Links::const_iterator link) {
    for (auto within = link; within != links_.end(); ++within) {
      if (within->first.first != link->first.first ||
          !covers(link->first.second, within->first.second)) {
        break;
      }
      for (const std::size_t one : link->second) {
        for (const std::size_t other : within->second) add(one, other);
      }
    }
  }

  const std::vector<InterfaceFacts> &all_;
  std::map<RouterId, std::vector<std::size_t>> by_router_;
  Links links_;
  std::set<Pair> found_;
};

// Whether areas take externals, as each of their routers says.
using AreaTypes = std::map<std::tuple<std::uint8_t, std::uint8_t, AreaId, RouterId>, bool>;

AreaTypes area_types(const std::vector<Database> &databases) {
  AreaTypes types;
  for (const Database &database : databases) {
    for (const Area &area : database.areas) {
      for (const RouterLsa &lsa : area.routers) {
        types[{database.version, database.instance, area.id, lsa.router}] = lsa.takes_externals;
      }
    }
  }
  return types;
}

// The stub links of OSPFv2 that routers' interfaces are in, and the networks that they are on.
void add_prefixes(std::vector<InterfaceFacts> &interfaces, const std::vector<Database> &databases) {
  std::map<std::pair<std::uint8_t, RouterId>, std::set<Prefix>> prefixes;
  for (const Database &database : databases) {
    if (database.version != 2) continue;
    for (const Area &area : database.areas) {
      std::map<std::uint32_t, const NetworkLsa *> networks;
      for (const NetworkLsa &lsa : area.networks) networks[lsa.link_state_id] = &lsa;
      for (const RouterLsa &lsa : area.routers) {
        std::set<Prefix> &its = prefixes[{database.instance, lsa.router}];
        for (const RouterLink &link : lsa.links) {
          if (link.type == LinkType::stub) its.insert(link.stub);
          const auto network = networks.find(link.neighbor_interface);
          if (link.type == LinkType::transit && network != networks.end()) {
            its.insert(make_prefix(ipv4_address(link.interface), network->second->length));
          }
        }
      }
    }
  }
  for (InterfaceFacts &of : interfaces) {
    if (of.version != 2 || !of.prefixes.empty() || !of.address) continue;
    const auto its = prefixes.find({of.instance, of.router});
    if (its == prefixes.end()) continue;
    for (const Prefix &prefix : its->second) {
      // That of a host is no link's.
      if (prefix.length != 0 && prefix.length < 32 && covers(prefix, *of.address)) {
        of.prefixes.push_back(prefix);
      }
    }
  }
}

class Comparison {
 public:
  Comparison(const AreaTypes &types, const InterfaceFacts &a, const InterfaceFacts &b,
             std::vector<Finding> &findings)
      : types_(types), a_(a), b_(b), findings_(findings) {}

  void run() {
    if (a_.instance != b_.instance) {
      tell(Difference::instance, std::to_string(a_.instance), std::to_string(b_.instance));
      return;
    }
    if (a_.router == b_.router) {
      if (a_.address != b_.address) tell(Difference::router_id, dotted(a_.router), "");
      return;
    }
    const InterfaceFacts::Neighbor *there = seen(a_, b_);
    const InterfaceFacts::Neighbor *back = seen(b_, a_);
    if (a_.address && a_.address == b_.address && a_.version == 2) {
      tell(Difference::address, text_of(*a_.address, Family::ipv4), "");
    }
    // Neighbours that hear each other agree in what hellos say.
    const bool agree = (there != nullptr && there->hears_us) || (back != nullptr && back->hears_us);
    const std::size_t before = findings_.size();
    if (!agree) compare_hellos();
    if (a_.elects && b_.elects && *a_.elects != *b_.elects) {
      const auto word = [](bool elects) {
        return elects ? "elects a designated router" : "elects none";
      };
      tell(Difference::network_type, word(*a_.elects), word(*b_.elects));
    }
    const bool is_full = there != nullptr && back != nullptr && there->is_full && back->is_full;
    if (!is_full) compare(Difference::mtu, a_.mtu, b_.mtu, "");
    if (findings_.size() == before) compare_hearing(there, back);
  }

 private:
  void tell(Difference difference, const std::string &value, const std::string &other,
            bool turned = false) {
    const MismatchEnd a{a_.router, a_.name, value};
    const MismatchEnd b{b_.router, b_.name, other};
    Finding found = turned ? mismatch(difference, b, a) : mismatch(difference, a, b);
    found.version = a_.version;
    found.instance = a_.instance;
    found.area = a_.area;
    findings_.push_back(std::move(found));
  }

  template <typename Number>
  void compare(Difference difference, const std::optional<Number> &value,
               const std::optional<Number> &other, const char *unit) {
    if (!value || !other || *value == *other) return;
    tell(difference, std::to_string(*value) + unit, std::to_string(*other) + unit);
  }

  void compare_hellos() {
    compare(Difference::hello_interval, a_.hello_interval, b_.hello_interval, " s");
    compare(Difference::dead_interval, a_.dead_interval, b_.dead_interval, " s");
    const bool have_masks = a_.version == 2 && a_.prefixes.size() == 1 && b_.prefixes.size() == 1;
    const bool elect = a_.elects.value_or(false) && b_.elects.value_or(false);
    if (have_masks && elect && a_.prefixes.front().length != b_.prefixes.front().length) {
      const auto length = [](const InterfaceFacts &of) {
        return "/" + std::to_string(of.prefixes.front().length);
      };
      tell(Difference::network_mask, length(a_), length(b_));
    }
    if (a_.area != b_.area) {
      tell(Difference::area, dotted(a_.area), dotted(b_.area));
    } else {
      compare_area_types();
    }
    const bool known = !a_.authentication.empty() && !b_.authentication.empty();
    const bool any = a_.authentication == "key" || b_.authentication == "key";
    const bool none = a_.authentication == "none" || b_.authentication == "none";
    if (known && a_.authentication != b_.authentication && (none || !any)) {
      tell(Difference::authentication, a_.authentication, b_.authentication);
    }
  }

  void compare_area_types() {
    const auto type = [&](const InterfaceFacts &of) {
      return types_.find({of.version, of.instance, of.area, of.router});
    };
    const auto one = type(a_);
    const auto other = type(b_);
    if (one == types_.end() || other == types_.end() || one->second == other->second) return;
    const auto word = [](bool takes) { return takes ? "takes externals" : "takes none"; };
    tell(Difference::area_type, word(one->second), word(other->second));
  }

  void compare_hearing(const InterfaceFacts::Neighbor *there,
                       const InterfaceFacts::Neighbor *back) {
    const bool hears = there != nullptr && there->is_heard && !there->hears_us;
    const bool is_heard = back != nullptr && back->is_heard && !back->hears_us;
    if (hears && (back == nullptr || !back->is_heard)) tell(Difference::one_way, "", "");
    if (is_heard && (there == nullptr || !there->is_heard)) tell(Difference::one_way, "", "", true);
  }

  const AreaTypes &types_;
  const InterfaceFacts &a_;
  const InterfaceFacts &b_;
  std::vector<Finding> &findings_;
};

}  // namespace

std::vector<Finding> findings_of(std::vector<InterfaceFacts> interfaces,
                                 const std::vector<Database> &databases) {
  add_prefixes(interfaces, databases);
  const AreaTypes types = area_types(databases);
  std::vector<Finding> findings;
  const Pairs pairs(interfaces);
  for (const auto &[one, other] : pairs.found()) {
    Comparison(types, interfaces[one], interfaces[other], findings).run();
  }
  return findings;
}

}  // namespace ospf_findings
