#include "router_answers/one_network.hpp"

#include <algorithm>
#include <map>
#include <set>
#include <tuple>

#include "ospf_tables/observed.hpp"
#include "ospf_tables/row_keys.hpp"

namespace router_answers {

using namespace ospf_decode;
using ospf_tables::dotted;

namespace {

using Name = std::pair<std::uint8_t, std::uint8_t>;  // version, instance ID

std::string hex(std::uint32_t value, int digits) {
  char text[16];
  std::snprintf(text, sizeof text, "0x%0*x", digits, value);
  return text;
}

std::string name_of(const LsaKey &key, std::uint8_t version) {
  std::string text = "OSPFv" + std::to_string(version);
  if (key.place.scope != Scope::as) text += " area " + dotted(key.place.area);
  if (key.place.scope == Scope::link && !key.place.interface.empty()) {
    text += " link of " + key.place.interface;
  }
  return text + ", " + lsa_vocabulary::type_name(version, key.name.type) + " " +
         dotted(key.name.link_state_id) + " of " + dotted(key.name.advertising_router);
}

// One copy of an LSA, and whose.
struct Copy {
  const std::string *router;
  const Place *place;
  const HeldLsa *lsa;
  bool is_shared;  // the router floods it and is sent it
};

// A router whose areas are all stub areas or NSSAs holds no LSAs of the AS but its own, which it
// sends to nobody.
bool takes_externals(const Process &process) {
  const auto &areas = process.instance.areas;
  return areas.empty() || std::ranges::any_of(areas, [](const ospf_tables::Area &area) {
           return area.kind != "stub" && area.kind != "nssa";
         });
}

bool same_instance(const HeldLsa &a, const HeldLsa &b) {
  return a.header.sequence == b.header.sequence && a.header.checksum == b.header.checksum;
}

bool is_gone(const HeldLsa &lsa) { return lsa.header.age_seconds() >= max_age; }

class Merger {
 public:
  explicit Merger(Name name) {
    process_.version = name.first;
    process_.instance_id = name.second;
    process_.instance.router_id = ospf_tables::observer_id({name.first, name.second});
  }

  void add(const Router &router, const Process &process) {
    process_.instance.family = process.instance.family;
    for (const ospf_tables::Area &area : process.instance.areas) add_area(process, area);
    for (const auto &[key, lsa] : process.database.lsas) {
      LsaKey shared = key;
      // Routers name a link each by its own interface. An LSA of link scope is known by its
      // originator and ID, which in OSPFv3 is the originator's interface.
      shared.place.interface.clear();
      const bool is_shared = key.place.scope != Scope::as || takes_externals(process);
      copies_[shared].push_back({&router.name, &key.place, &lsa, is_shared});
      if (is_shared) holders_[{key.place.scope, key.place.area}].insert(&router.name);
    }
    router_ids_[&router.name] = process.instance.router_id;
    names_[process.instance.router_id].insert(router.name);
  }

  Process merged(Network &network) {
    for (const auto &[id, names] : names_) {
      // A process that has no ID yet says 0.
      if (names.size() < 2 || id == 0) continue;
      network.shared_ids.push_back(
          {process_.version, process_.instance_id, id, {names.begin(), names.end()}});
    }
    for (const auto &[key, copies] : copies_) {
      const Copy *best = &copies.front();
      for (const Copy &copy : copies) {
        if (replaces(*copy.lsa, *best->lsa)) best = &copy;
      }
      Place place = key.place;
      if (place.scope == Scope::link) {
        place.interface = interface_names_[{router_ids_[best->router], best->place->interface}];
      }
      if (!is_gone(*best->lsa)) tell(key, copies, *best, network.differences);
      process_.database.lsas.emplace(LsaKey{place, key.name}, *best->lsa);
    }
    for (auto &[id, area] : areas_) process_.instance.areas.push_back(std::move(area));
    return std::move(process_);
  }

 private:
  static bool replaces(const HeldLsa &lsa, const HeldLsa &held) {
    const int newer = compare_instances(lsa.header, lsa.header.age_seconds(), held.header,
                                        held.header.age_seconds());
    return newer > 0 || (newer == 0 && lsa.exact && !held.exact);
  }

  void add_area(const Process &process, const ospf_tables::Area &from) {
    ospf_tables::Area &area = areas_[from.id];
    area.id = from.id;
    if (area.kind.empty()) area.kind = from.kind;
    const std::string router = dotted(process.instance.router_id);
    for (ospf_tables::Interface interface : from.interfaces) {
      const std::string own = interface.name;
      interface.name = router + '@' + (interface.address.empty() ? own : interface.address);
      while (!taken_.insert({from.id, interface.name}).second) interface.name += '+';
      interface_names_[{process.instance.router_id, own}] = interface.name;
      area.interfaces.push_back(std::move(interface));
    }
  }

  void tell(const LsaKey &key, const std::vector<Copy> &copies, const Copy &best,
            std::vector<Difference> &differences) {
    const std::string newest = hex(best.lsa->header.sequence, 8) + " (checksum " +
                               hex(best.lsa->header.checksum, 4) + ") of " + *best.router;
    std::set<const std::string *> lacking;
    // On whose links an LSA of link scope should be is not known.
    const bool is_shared = std::ranges::any_of(copies, &Copy::is_shared);
    if (key.place.scope != Scope::link && is_shared) {
      lacking = holders_[{key.place.scope, key.place.area}];
    }
    std::uint16_t age = max_age;
    for (const Copy &copy : copies) age = std::min(age, copy.lsa->header.age_seconds());
    const auto add = [&](const std::string &text) {
      differences.push_back({process_.version, process_.instance_id, age, text});
    };
    for (const Copy &copy : copies) {
      lacking.erase(copy.router);
      if (same_instance(*copy.lsa, *best.lsa)) continue;
      add(name_of(key, process_.version) + ": " + *copy.router + " has " +
          hex(copy.lsa->header.sequence, 8) + " (checksum " + hex(copy.lsa->header.checksum, 4) +
          "), the newest is " + newest);
    }
    for (const std::string *router : lacking) {
      add(name_of(key, process_.version) + ": " + *router + " lacks it, " + *best.router + " has " +
          hex(best.lsa->header.sequence, 8));
    }
  }

  Process process_;
  std::map<std::uint32_t, ospf_tables::Area> areas_;
  std::set<std::pair<std::uint32_t, std::string>> taken_;
  std::map<std::pair<std::uint32_t, std::string>, std::string> interface_names_;
  std::map<const std::string *, std::uint32_t> router_ids_;
  std::map<std::uint32_t, std::set<std::string>> names_;  // by router ID
  std::map<LsaKey, std::vector<Copy>> copies_;
  std::map<std::pair<Scope, std::uint32_t>, std::set<const std::string *>> holders_;
};

}  // namespace

Network one_network(const std::vector<Router> &routers) {
  std::map<Name, Merger> mergers;
  for (const Router &router : routers) {
    for (const Process &process : router.processes) {
      const Name name{process.version, process.instance_id};
      mergers.try_emplace(name, name).first->second.add(router, process);
    }
  }
  Network network;
  for (auto &[name, merger] : mergers) {
    network.processes.push_back(merger.merged(network));
  }
  return network;
}

}  // namespace router_answers
