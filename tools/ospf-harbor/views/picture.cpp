#include "views/picture.hpp"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>

#include "ospf_tables/row_keys.hpp"
#include "views/text_forms.hpp"

namespace tool {

using namespace ospf_tables;

namespace {

std::string hexadecimal_colour(double hue, double saturation, double brightness) {
  const auto channel = [&](double place) {
    const double k = std::fmod(place + hue * 6, 6);
    const double fall = std::clamp(std::min(k, 4 - k), 0.0, 1.0);
    return static_cast<int>(255 * brightness * (1 - saturation * fall));
  };
  char text[8];
  std::snprintf(text, sizeof text, "#%02x%02x%02x", channel(5) & 0xff, channel(3) & 0xff,
                channel(1) & 0xff);
  return text;
}

// The first areas have colours that people with any eyesight tell apart; further ones go around the
// circle of hues.
PictureColours area_colours(std::size_t area) {
  static constexpr const char *pairs[][2] = {
      {"#dbe7f5", "#33689c"}, {"#fde3c8", "#c8690f"}, {"#d9efd7", "#3a8a3d"},
      {"#f6d5e3", "#b03a72"}, {"#e6dcf3", "#6f4ba3"}, {"#d2eeee", "#1a8083"},
      {"#f3ecc0", "#8f7a0a"}, {"#e9dcd3", "#7d543a"}, {"#f8cfc9", "#bf3b2b"},
      {"#e3e3e3", "#5c5c5c"}, {"#e4f2b8", "#6a8f0f"}, {"#c9d3fb", "#3d4fc4"},
  };
  if (area < std::size(pairs)) return {pairs[area][0], pairs[area][1]};
  const double turns = static_cast<double>(area) * 0.618034;
  const double hue = turns - std::floor(turns);
  return {hexadecimal_colour(hue, 0.16, 0.95), hexadecimal_colour(hue, 0.75, 0.60)};
}

std::string cost_text(std::optional<std::uint32_t> cost) {
  return cost ? std::to_string(*cost) : std::string();
}

std::string cost_text(TopologyChange change, std::optional<std::uint32_t> before,
                      std::optional<std::uint32_t> after) {
  if (change != TopologyChange::changed || before == after) return cost_text(after);
  return (before ? cost_text(before) : "-") + " > " + (after ? cost_text(after) : "-");
}

class PictureBuilder {
 public:
  PictureBuilder(const Topology &topology, const PictureChoice &choice)
      : topology_(topology), choice_(choice) {}

  Picture build() {
    picture_.instance = topology_.instance;
    picture_.routers = topology_.routers.size();
    picture_.is_difference = topology_.is_difference;
    picture_.shows_addresses = choice_.addresses;
    picture_.title = title_of(topology_.instance) + ": " +
                     counted(topology_.routers.size(), "router", "routers") + ", " +
                     counted(topology_.networks.size(), "network", "networks") + ", " +
                     counted(topology_.areas.size(), "area", "areas");
    for (const auto &[area, kind] : topology_.areas) add_area(area, kind);
    for (const auto &[id, router] : topology_.routers) add_router(id, router);
    for (const auto &[id, network] : topology_.networks) add_network(id, network);
    for (std::size_t at = 0; at < topology_.attachments.size(); ++at) add_attachment(at);
    for (std::size_t at = 0; at < topology_.links.size(); ++at) add_link(at);
    if (choice_.stubs) add_stubs();
    return std::move(picture_);
  }

 private:
  void add_area(std::uint32_t area, const std::string &kind) {
    places_[area] = picture_.areas.size();
    std::string title = "area " + dotted(area);
    if (!kind.empty() && kind != "normal") title += ", " + kind;
    picture_.areas.push_back({area, title, area_colours(picture_.areas.size())});
  }

  std::size_t place_of(std::uint32_t area) const {
    const auto at = places_.find(area);
    return at == places_.end() ? 0 : at->second;
  }

  std::string name_of_router(std::uint32_t id) const {
    const auto name = topology_.names.find(id);
    return name == topology_.names.end() || name->second.empty() ? dotted(id) : name->second;
  }

  PictureNode &add_node(PicturePart part, const std::string &name, TopologyChange change) {
    PictureNode node;
    node.part = part;
    node.name = name;
    node.change = change;
    picture_.nodes.push_back(std::move(node));
    return picture_.nodes.back();
  }

  void add_router(std::uint32_t id, const TopologyRouter &router) {
    routers_[id] = picture_.nodes.size();
    PictureNode &node = add_node(PicturePart::router, "router " + dotted(id), router.change);
    for (const std::uint32_t area : router.areas) node.areas.push_back(place_of(area));
    node.router = id;
    node.title = name_of_router(id);
    if (node.title != dotted(id)) node.lines.push_back(dotted(id));
    for (const std::string &line : {router.roles(), router.announcements()}) {
      if (!line.empty()) node.lines.push_back(line);
    }
    if (!router.before.empty()) node.lines.push_back("before: " + router.before);
    node.is_whole = router.has_lsa;
    node.is_boundary = router.as_boundary;
    node.is_on_way = choice_.way.routers.contains(id);
  }

  void add_network(const NetworkId &id, const TopologyNetwork &network) {
    const auto &[area, link_state_id, adv_router] = id;
    networks_[id] = picture_.nodes.size();
    PictureNode &node = add_node(PicturePart::network,
                                 "network " + dotted(area) + " " + dotted(link_state_id) +
                                     (adv_router == 0 ? "" : " " + dotted(adv_router)),
                                 network.change);
    node.areas.push_back(place_of(area));
    node.network = id;
    node.title = "network " + dotted(link_state_id);
    if (!network.prefixes.empty()) {
      node.title = network.prefixes.front();
      node.lines.assign(network.prefixes.begin() + 1, network.prefixes.end());
    }
    if (network.non_broadcast) node.lines.push_back("NBMA");
    if (network.designated_router != 0) {
      node.lines.push_back("DR " + name_of_router(network.designated_router));
    }
    if (network.change == TopologyChange::changed &&
        network.designated_before != network.designated_router) {
      node.lines.push_back(network.designated_before == 0
                               ? "no DR before"
                               : "before: DR " + name_of_router(network.designated_before));
    }
    node.is_whole = network.has_lsa;
  }

  PictureEdge &add_edge(std::size_t from, std::size_t to, std::uint32_t area,
                        TopologyChange change) {
    PictureEdge edge;
    edge.nodes[0] = from;
    edge.nodes[1] = to;
    edge.area = place_of(area);
    edge.change = change;
    if (change == TopologyChange::came || change == TopologyChange::went) {
      edge.label = name_of(change);
    }
    picture_.edges.push_back(std::move(edge));
    return picture_.edges.back();
  }

  void add_attachment(std::size_t at) {
    const TopologyAttachment &attachment = topology_.attachments[at];
    PictureEdge &edge = add_edge(routers_.at(attachment.router), networks_.at(attachment.network),
                                 std::get<0>(attachment.network), attachment.change);
    if (!attachment.both_ways()) edge.line = PictureLine::one_sided;
    edge.costs[0] = cost_text(attachment.change, attachment.cost_before, attachment.cost);
    edge.addresses[0] = attachment.address;
    edge.is_on_way = choice_.way.attachments.contains(at);
  }

  void add_link(std::size_t at) {
    const TopologyLink &link = topology_.links[at];
    PictureEdge &edge = add_edge(routers_.at(link.routers[0]), routers_.at(link.routers[1]),
                                 link.area, link.change);
    edge.is_between_routers = true;
    if (link.kind == LinkKind::virtual_link) edge.line = PictureLine::virtual_link;
    if (link.kind == LinkKind::point_to_multipoint) edge.line = PictureLine::multipoint;
    if (!link.both_ways()) edge.line = PictureLine::one_sided;
    for (const int end : {0, 1}) {
      edge.costs[end] = cost_text(link.change, link.costs_before[end], link.costs[end]);
      edge.addresses[end] = link.addresses[end];
    }
    if (choice_.stubs && edge.label.empty()) edge.label = link.prefix;
    edge.is_on_way = choice_.way.links.contains(at);
  }

  void add_stubs() {
    std::map<std::pair<std::uint32_t, std::string>, std::size_t> drawn;
    for (const TopologyStub &stub : topology_.stubs) {
      const auto [place, is_new] =
          drawn.try_emplace({stub.area, stub.prefix}, picture_.nodes.size());
      if (is_new) {
        PictureNode &node = add_node(PicturePart::stub,
                                     "stub " + dotted(stub.area) + " " + stub.prefix, stub.change);
        node.areas.push_back(place_of(stub.area));
        node.title = stub.prefix;
        node.router = stub.router;
      }
      PictureEdge &edge = add_edge(routers_.at(stub.router), place->second, stub.area, stub.change);
      edge.costs[0] = cost_text(stub.change, stub.cost_before, stub.cost);
    }
  }

  const Topology &topology_;
  const PictureChoice &choice_;
  Picture picture_;
  std::map<std::uint32_t, std::size_t> places_;
  std::map<std::uint32_t, std::size_t> routers_;
  std::map<NetworkId, std::size_t> networks_;
};

}  // namespace

const PictureColours &colours_of(TopologyChange change) {
  static const std::array<PictureColours, 4> colours{{{"#f4f4f4", "#8a8a8a"},
                                                      {"#cdf0d5", "#14752f"},
                                                      {"#fbd5d1", "#b3261e"},
                                                      {"#fdeab5", "#8f6200"}}};
  return colours.at(static_cast<std::size_t>(change));
}

const char *name_of(TopologyChange change) {
  constexpr std::array names{"", "came", "went", "changed"};
  return names.at(static_cast<std::size_t>(change));
}

bool Picture::has(PictureLine line) const {
  return std::ranges::any_of(edges, [&](const PictureEdge &each) { return each.line == line; });
}

bool Picture::has_way() const {
  return std::ranges::any_of(nodes, [](const PictureNode &each) { return each.is_on_way; });
}

Picture picture_of(const Topology &topology, const PictureChoice &choice) {
  return PictureBuilder(topology, choice).build();
}

std::vector<std::string> legend_of(const Picture &picture) {
  std::vector<std::string> signs{
      picture.is_difference ? "box: router" : "box: router, with the colours of its areas",
      "double border: AS boundary router", "ellipse: network",
      "number: cost, at the router that says it"};
  if (picture.has(PictureLine::one_sided)) signs.push_back("dashed: only one end speaks of it");
  if (picture.has(PictureLine::multipoint)) signs.push_back("double line: point-to-multipoint");
  if (picture.has(PictureLine::virtual_link)) signs.push_back("dotted: virtual link");
  if (picture.has_way()) signs.push_back("thick: the way");
  return signs;
}

}  // namespace tool
