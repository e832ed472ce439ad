#include "calculation.hpp"

#include <algorithm>
#include <tuple>

namespace ospf_routes {

Calculation::Calculation(const Compiled &compiled, RouterId router)
    : compiled_(compiled),
      root_(compiled, router),
      entries_(compiled.prefixes.size()),
      chosen_(compiled.routers.size()),
      chosen_class_(compiled.routers.size()),
      chosen_area_(compiled.routers.size()) {}

RoutingTable Calculation::run() {
  grow_trees();
  for (const AreaTree &tree : trees_) add_intra_area(tree);
  // A border router with a working backbone believes what the backbone says and nothing else; one
  // without looks into every area, as any other router does (RFC 3509).
  const bool backbone_alone = root_.is_border() && backbone_is_active();
  for (const AreaTree &tree : trees_) {
    const bool examined = !backbone_alone || tree.graph().id() == backbone;
    if (examined) add_inter_area(tree);
    add_boundaries(tree, examined);
  }
  if (backbone_alone) {
    for (const AreaTree &tree : trees_) {
      if (tree.graph().id() != backbone && tree.is_transit()) improve_by_transit(tree);
    }
  }
  choose_boundaries();
  add_externals();
  return finish();
}

// The backbone comes last: its virtual links lead through the other areas.
void Calculation::grow_trees() {
  trees_.reserve(compiled_.areas.size());
  boundaries_.reserve(compiled_.areas.size());
  DistanceHeap heap;
  for (const bool backbone_now : {false, true}) {
    for (std::size_t area = 0; area < compiled_.areas.size(); ++area) {
      if (root_.vertex(area) == none) continue;
      if ((compiled_.areas[area].graph.id() == backbone) != backbone_now) continue;
      trees_.emplace_back(compiled_, root_, area, hops_, heap, &trees_);
      boundaries_.emplace_back(compiled_.routers.size());
    }
  }
}

bool Calculation::backbone_is_active() const {
  return std::any_of(trees_.begin(), trees_.end(), [](const AreaTree &tree) {
    return tree.graph().id() == backbone && tree.has_neighbor();
  });
}

// A path of the same kind takes a place or joins those there by its cost; any other by its kind.
void Calculation::offer(Entry &entry, const Entry &path) {
  if (entry.present && entry.kind < path.kind) return;
  if (!entry.present || path.kind < entry.kind || path.cost < entry.cost) {
    entry = path;
  } else if (path.cost == entry.cost) {
    entry.hops = hops_.join(entry.hops, path.hops);
    entry.area = std::min(entry.area, path.area);
  }
}

void Calculation::add_intra_area(const AreaTree &tree) {
  for (const CompiledPrefix &each : tree.area().prefixes) {
    if (!tree.reaches(each.vertex)) continue;
    Entry &entry = entries_[each.prefix];
    const std::uint32_t cost = tree.distance(each.vertex) + each.metric;
    if (entry.present && entry.cost < cost) continue;
    Entry path{true, Kind::intra, tree.graph().id(), cost, 0, 0, 0};
    if (each.vertex == tree.root_vertex()) {
      const Prefix &prefix = compiled_.prefixes[each.prefix];
      path.hops = hops_.add({{root_.interface_of(tree.area(), prefix), std::nullopt, true}});
    } else {
      path.hops = tree.hops_to(each.vertex);
    }
    offer(entry, path);
  }
}

// What a router summarises into the backbone is its own areas' routes and their ranges. Of a range
// it must not believe others, or packets to what is missing in it would circle.
bool Calculation::is_summarised_by_root(const AreaTree &tree, std::uint32_t prefix) const {
  const auto &said = tree.area().summarised;
  return std::binary_search(said.begin(), said.end(), std::pair(root_.id(), prefix));
}

void Calculation::add_inter_area(const AreaTree &tree) {
  const bool is_backbone = tree.graph().id() == backbone;
  for (const CompiledSummary &summary : tree.area().summaries) {
    if (summary.border == tree.root_vertex() || !tree.reaches(summary.border)) continue;
    Entry &entry = entries_[summary.prefix];
    const std::uint32_t cost = tree.distance(summary.border) + summary.metric;
    if (entry.present && (entry.kind == Kind::intra || entry.cost < cost)) continue;
    if (is_backbone && root_.is_border() && is_summarised_by_root(tree, summary.prefix)) continue;
    offer(entry, {true, Kind::inter, tree.graph().id(), cost, 0, 0, tree.hops_to(summary.border)});
  }
}

void Calculation::add_boundaries(const AreaTree &tree, bool with_summaries) {
  BoundaryPaths &paths = boundary_paths(tree);
  const AreaGraph &graph = tree.graph();
  for (std::uint32_t vertex = graph.first_router(); vertex < graph.size(); ++vertex) {
    const GraphRouter &router = graph.router(vertex);
    if (!router.boundary || vertex == tree.root_vertex() || !tree.reaches(vertex)) continue;
    paths[compiled_.router_number(router.id)] = {tree.distance(vertex), tree.hops_to(vertex), true};
  }
  if (!with_summaries) return;
  for (const CompiledBoundary &summary : tree.area().boundaries) {
    if (summary.border == tree.root_vertex() || !tree.reaches(summary.border)) continue;
    BoundaryPath &path = paths[summary.boundary];
    const std::uint32_t cost = tree.distance(summary.border) + summary.metric;
    if (path.is_intra || path.cost < cost) continue;
    const std::uint32_t hops = tree.hops_to(summary.border);
    path = {cost, path.cost == cost ? hops_.join(path.hops, hops) : hops, false};
  }
}

// The way into the backbone over a virtual link need not be the shortest through its transit area:
// what other border routers say there may be nearer (RFC 2328, 16.3).
void Calculation::improve_by_transit(const AreaTree &tree) {
  const auto improve = [&](auto &path, std::uint32_t border, std::uint32_t metric) {
    const std::uint32_t cost = tree.distance(border) + metric;
    if (cost > path.cost) return;
    const std::uint32_t hops = tree.hops_to(border);
    path.hops = cost == path.cost ? hops_.join(path.hops, hops) : hops;
    path.cost = cost;
  };
  const auto counts = [&](std::uint32_t border) {
    return border != tree.root_vertex() && tree.reaches(border);
  };
  for (const CompiledSummary &summary : tree.area().summaries) {
    Entry &entry = entries_[summary.prefix];
    if (!counts(summary.border) || !entry.present || entry.area != backbone) continue;
    improve(entry, summary.border, summary.metric);
  }
  const auto of_backbone = std::find_if(trees_.begin(), trees_.end(), [](const AreaTree &each) {
    return each.graph().id() == backbone;
  });
  BoundaryPaths &paths = boundary_paths(*of_backbone);
  for (const CompiledBoundary &summary : tree.area().boundaries) {
    BoundaryPath &path = paths[summary.boundary];
    if (!counts(summary.border) || path.cost == unreachable) continue;
    improve(path, summary.border, summary.metric);
  }
}

// Of the paths to a boundary router through several areas one counts (RFC 2328, 16.4, step 3): with
// the preferences of 16.4.1 those inside an area that is not the backbone first; then the cheapest;
// then that of the highest area.
void Calculation::choose_boundaries() {
  for (std::size_t router = 0; router < chosen_.size(); ++router) {
    std::tuple<bool, std::uint32_t, AreaId> best;
    for (std::size_t at = 0; at < trees_.size(); ++at) {
      const AreaGraph &graph = trees_[at].graph();
      const BoundaryPath &path = boundaries_[at][router];
      if (path.cost == unreachable || !graph.router(trees_[at].root_vertex()).takes_externals) {
        continue;
      }
      const bool is_second = !path.is_intra || graph.id() == backbone;
      const std::tuple rank(is_second && !compiled_.rules.rfc1583_compatibility, path.cost,
                            ~graph.id());
      if (chosen_[router] != nullptr && best < rank) continue;
      best = rank;
      chosen_[router] = &path;
      chosen_class_[router] = is_second;
      chosen_area_[router] = graph.id();
    }
  }
}

struct Calculation::ExternalPath {
  Entry entry;
  bool is_second = false;  // by RFC 2328, 16.4.1
  // Which of several that are equal gives its tag and kind (RFC 3101, 2.5, 6e).
  int source = 0;
  RouterId router = 0;

  // Equal ones share their next hops.
  auto rank(bool rfc1583) const {
    const bool type_2 = is_type_2(entry.kind);
    return std::tuple(type_2, type_2 ? entry.type2_cost : 0, is_second && !rfc1583, entry.cost);
  }
  auto full_rank() const { return std::tuple(source, ~router); }
};

// Conditions under which an LSA is not looked at (RFC 2328, 16.4; RFC 3101, 2.5).
bool Calculation::is_passed_over(const CompiledExternal &external) const {
  const ExternalLsa &lsa = *external.lsa;
  if (lsa.router == root_.id()) return true;
  // A router does not route to itself: its own route, translated by another, comes back so.
  if (lsa.forwarding && root_.has_address(*lsa.forwarding)) return true;
  if (external.area == none || !root_.is_border() || lsa.prefix.length != 0) return false;
  if (!lsa.propagate) return true;
  const auto &said = compiled_.areas[external.area].summarised;
  return std::binary_search(said.begin(), said.end(), std::pair(root_.id(), external.prefix));
}

bool Calculation::path_of(const CompiledExternal &external, ExternalPath &path) {
  const ExternalLsa &lsa = *external.lsa;
  const bool is_nssa = external.area != none;
  const BoundaryPath *boundary = nullptr;
  if (is_nssa) {
    for (std::size_t at = 0; at < trees_.size(); ++at) {
      if (&trees_[at].area() == &compiled_.areas[external.area]) {
        boundary = &boundaries_[at][external.router];
      }
    }
    path.is_second = false;
  } else {
    boundary = chosen_[external.router];
    path.is_second = chosen_class_[external.router];
  }
  if (boundary == nullptr || boundary->cost == unreachable || is_passed_over(external))
    return false;
  std::uint32_t cost = boundary->cost;
  std::uint32_t hops = boundary->hops;
  if (lsa.forwarding) {
    std::uint32_t at = external.covering;
    while (at != none && (!entries_[at].present || is_external(entries_[at].kind))) {
      at = compiled_.covering[at];
    }
    if (at == none) return false;
    const Entry &entry = entries_[at];
    if (is_nssa &&
        (entry.kind != Kind::intra || entry.area != compiled_.areas[external.area].graph.id())) {
      return false;
    }
    cost = entry.cost;
    hops = hops_to_forwarding(entry, *lsa.forwarding);
    path.is_second = entry.kind != Kind::intra || entry.area == backbone;
  }
  const Kind first = is_nssa ? Kind::nssa_1 : Kind::external_1;
  const Kind second = is_nssa ? Kind::nssa_2 : Kind::external_2;
  path.entry = {true,
                lsa.type_2 ? second : first,
                is_nssa ? compiled_.areas[external.area].graph.id() : 0,
                lsa.type_2 ? cost : cost + lsa.metric,
                lsa.type_2 ? lsa.metric : 0,
                lsa.tag,
                hops};
  path.source = !is_nssa ? 1 : lsa.propagate ? 0 : 2;
  path.router = lsa.router;
  return true;
}

// To a forwarding address on an attached network packets go straight.
std::uint32_t Calculation::hops_to_forwarding(const Entry &entry, const Address &address) {
  const std::span<const NextHop> hops = hops_.of(entry.hops);
  if (std::none_of(hops.begin(), hops.end(), [](const NextHop &hop) { return hop.attached; })) {
    return entry.hops;
  }
  std::vector<NextHop> changed(hops.begin(), hops.end());
  for (NextHop &hop : changed) {
    if (hop.attached) hop = {hop.interface, address, false};
  }
  return hops_.add(std::move(changed));
}

void Calculation::add_externals() {
  const bool rfc1583 = compiled_.rules.rfc1583_compatibility;
  ExternalPath best;
  ExternalPath path;
  const auto &all = compiled_.externals;
  // The entries stay as they are until all is calculated: what externals are found by is the routes
  // within the autonomous system.
  std::vector<std::pair<std::uint32_t, Entry>> found;
  for (std::size_t at = 0; at < all.size();) {
    const std::uint32_t prefix = all[at].prefix;
    const bool wanted = !entries_[prefix].present;
    best.entry.present = false;
    for (; at < all.size() && all[at].prefix == prefix; ++at) {
      if (!wanted || !path_of(all[at], path)) continue;
      if (!best.entry.present || path.rank(rfc1583) < best.rank(rfc1583)) {
        best = path;
      } else if (path.rank(rfc1583) == best.rank(rfc1583)) {
        const std::uint32_t hops = hops_.join(best.entry.hops, path.entry.hops);
        if (path.full_rank() < best.full_rank()) best = path;
        best.entry.hops = hops;
      }
    }
    if (best.entry.present) found.emplace_back(prefix, best.entry);
  }
  for (const auto &[prefix, entry] : found) entries_[prefix] = entry;
}

RoutingTable Calculation::finish() {
  RoutingTable table;
  table.router = root_.id();
  for (std::size_t at = 0; at < entries_.size(); ++at) {
    const Entry &entry = entries_[at];
    if (!entry.present) continue;
    table.routes.push_back({compiled_.prefixes[at], entry.kind, entry.cost, entry.type2_cost,
                            entry.tag, entry.area, entry.hops});
  }
  for (const AreaTree &tree : trees_) {
    for (const auto &[router, interface] : tree.without_address()) {
      const std::string why =
          compiled_.database.version == 2
              ? "the link has no address"
              : "there is no link-LSA for its interface " + std::to_string(interface);
      table.lacks.push_back("area " + dotted(tree.graph().id()) + ": no address of next hop " +
                            dotted(router) + ": " + why);
    }
  }
  for (std::size_t at = 0; at < chosen_.size(); ++at) {
    if (chosen_[at] == nullptr) continue;
    table.boundaries.push_back(
        {compiled_.routers[at], chosen_[at]->cost, chosen_area_[at], chosen_[at]->is_intra});
  }
  table.hops = std::move(hops_);
  return table;
}

}  // namespace ospf_routes
