#include "ospf_routes/facts.hpp"

#include <algorithm>
#include <map>
#include <tuple>

namespace ospf_routes {

namespace {

using Subject = FactChange::Subject;

struct FactKey {
  Subject subject;
  std::optional<AreaId> area;
  RouterId router;
  std::string other;
  std::optional<Prefix> prefix;
  auto operator<=>(const FactKey &) const = default;
};

// What is said of each; of links side by side, and of a prefix that a router has twice, all of it.
using Facts = std::map<FactKey, std::string>;

class FactReader {
 public:
  explicit FactReader(const Database &database) : database_(database) {}

  Facts read() {
    for (const Area &area : database_.areas) {
      area_ = area.id;
      for (const RouterLsa &lsa : area.routers) read_links(area, lsa);
      for (const IntraAreaPrefixLsa &lsa : area.prefix_lsas) {
        for (const IntraAreaPrefix &each : lsa.prefixes) {
          add(Subject::prefix, lsa.referenced_router, "", each.prefix,
              "cost " + std::to_string(each.metric));
        }
      }
      for (const ExternalLsa &lsa : area.nssa) add_external(lsa);
    }
    area_.reset();
    for (const ExternalLsa &lsa : database_.externals) add_external(lsa);
    return std::move(facts_);
  }

 private:
  void add(Subject subject, RouterId router, std::string other, std::optional<Prefix> prefix,
           const std::string &text) {
    std::string &known = facts_[{subject, area_, router, std::move(other), prefix}];
    known += (known.empty() ? "" : ", ") + text;
  }

  void add_external(const ExternalLsa &lsa) {
    std::string text =
        std::string("type ") + (lsa.type_2 ? "2" : "1") + ", metric " + std::to_string(lsa.metric);
    if (lsa.forwarding) text += ", by " + text_of(*lsa.forwarding, database_.family);
    if (lsa.tag != 0) text += ", tag " + std::to_string(lsa.tag);
    add(Subject::external, lsa.router, "", lsa.prefix, text);
  }

  static bool links_back(const Area &area, RouterId from, const RouterLink &link) {
    return std::ranges::any_of(area.routers, [&](const RouterLsa &lsa) {
      return lsa.router == link.neighbor &&
             std::ranges::any_of(lsa.links, [&](const RouterLink &back) {
               return back.type == link.type && back.neighbor == from;
             });
    });
  }

  static const NetworkLsa *network_of(const Area &area, const RouterLink &link) {
    const auto at = std::ranges::find_if(area.networks, [&](const NetworkLsa &lsa) {
      return lsa.link_state_id == link.neighbor_interface &&
             (link.neighbor == 0 || lsa.router == link.neighbor);
    });
    return at == area.networks.end() ? nullptr : &*at;
  }

  void read_links(const Area &area, const RouterLsa &lsa) {
    for (const RouterLink &link : lsa.links) {
      if (link.type == LinkType::stub) {
        add(Subject::prefix, lsa.router, "", link.stub, "cost " + std::to_string(link.metric));
        continue;
      }
      const std::string cost = std::to_string(link.metric);
      if (link.type == LinkType::transit) {
        const std::string network = "network " + dotted(link.neighbor_interface) +
                                    (link.neighbor == 0 ? "" : " of " + dotted(link.neighbor));
        const NetworkLsa *found = network_of(area, link);
        if (found != nullptr &&
            std::ranges::find(found->attached, lsa.router) != found->attached.end()) {
          add(Subject::adjacency, lsa.router, network, std::nullopt, "up");
        }
        add(Subject::cost, lsa.router, network, std::nullopt, cost);
        continue;
      }
      const std::string to =
          (link.type == LinkType::virtual_link ? "virtual " : "") + dotted(link.neighbor);
      if (lsa.router < link.neighbor && links_back(area, lsa.router, link)) {
        add(Subject::adjacency, lsa.router, to, std::nullopt, "up");
      }
      add(Subject::cost, lsa.router, to, std::nullopt, cost);
    }
  }

  const Database &database_;
  std::optional<AreaId> area_;
  Facts facts_;
};

FactChange change_of(const FactKey &key, FactChange::Change change, std::string before,
                     std::string after) {
  return {key.subject, change,     key.area,          key.router,
          key.other,   key.prefix, std::move(before), std::move(after)};
}

}  // namespace

const char *name_of(Subject subject) {
  constexpr const char *names[] = {"adjacency", "cost", "prefix", "external"};
  return names[static_cast<std::size_t>(subject)];
}

const char *name_of(FactChange::Change change) {
  constexpr const char *names[] = {"came", "went", "changed"};
  return names[static_cast<std::size_t>(change)];
}

std::vector<FactChange> fact_changes(const Database &before, const Database &after) {
  const Facts old_facts = FactReader(before).read();
  const Facts new_facts = FactReader(after).read();
  std::vector<FactChange> changes;
  for (const auto &[key, text] : old_facts) {
    const auto now = new_facts.find(key);
    if (now == new_facts.end()) {
      changes.push_back(change_of(key, FactChange::Change::went, text, ""));
    } else if (now->second != text) {
      changes.push_back(change_of(key, FactChange::Change::changed, text, now->second));
    }
  }
  for (const auto &[key, text] : new_facts) {
    if (!old_facts.contains(key)) {
      changes.push_back(change_of(key, FactChange::Change::came, "", text));
    }
  }
  std::ranges::stable_sort(changes, {}, [](const FactChange &each) {
    return std::tuple(each.subject, each.area, each.router, each.other, each.prefix);
  });
  return changes;
}

}  // namespace ospf_routes
