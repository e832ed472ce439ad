#include "views/dot_text.hpp"

#include <algorithm>
#include <cstdint>
#include <cstdio>

#include "ospf_tables/row_keys.hpp"
#include "views/text_forms.hpp"

namespace tool {

using namespace ospf_tables;

namespace {

// How a graph of its size is drawn. With more routers names and costs get smaller, and the engine
// is the one that is made for many nodes. Lines go around nodes that they have nothing to do with,
// until that takes too long to find out (seconds at 200 routers, with their number cubed): then
// they pass behind.
struct Style {
  std::size_t routers;  // up to which it is for
  const char *engine;
  const char *layout;  // attributes of the graph for that engine
  const char *cost_distance;
  int router_font;
  int network_font;
  int cost_font;
  int legend_font;
  double line_width;
};

// clang-format off
constexpr Style styles[] = {
    {50, "neato", "overlap=\"prism\", splines=\"true\", sep=\"+44,24\", esep=\"+8\"",
     "2.2", 12, 10, 9, 11, 1.6},
    {250, "sfdp", "overlap=\"prism\", overlap_scaling=\"-4\", splines=\"true\", sep=\"+32,24\", esep=\"+4\", K=\"1.3\"",
     "1.7", 9, 7, 7, 20, 1.1},
    {SIZE_MAX, "sfdp", "overlap=\"prism\", overlap_scaling=\"-4\", splines=\"line\", sep=\"+32,24\", K=\"1.3\"",
     "1.7", 9, 7, 7, 40, 1.1},
};
// clang-format on

const Style &style_for(std::size_t routers) {
  const Style *style = styles;
  while (routers > style->routers) ++style;
  return *style;
}

// Inches between the middles of the two ends, so that the costs of both have room.
constexpr char length_between_routers[] = "2.7";
constexpr char length_to_others[] = "1.9";

struct Colours {
  std::string fill;
  std::string line;
};

// The first areas have colours that people with any eyesight tell apart; further ones go around the
// circle of hues.
Colours colours_of(std::size_t area) {
  static constexpr const char *pairs[][2] = {
      {"#dbe7f5", "#33689c"}, {"#fde3c8", "#c8690f"}, {"#d9efd7", "#3a8a3d"},
      {"#f6d5e3", "#b03a72"}, {"#e6dcf3", "#6f4ba3"}, {"#d2eeee", "#1a8083"},
      {"#f3ecc0", "#8f7a0a"}, {"#e9dcd3", "#7d543a"}, {"#f8cfc9", "#bf3b2b"},
      {"#e3e3e3", "#5c5c5c"}, {"#e4f2b8", "#6a8f0f"}, {"#c9d3fb", "#3d4fc4"},
  };
  if (area < std::size(pairs)) return {pairs[area][0], pairs[area][1]};
  const double hue = static_cast<double>(area) * 0.618034;
  char fill[40];
  char line[40];
  std::snprintf(fill, sizeof fill, "%.3f 0.16 0.95", hue - static_cast<int>(hue));
  std::snprintf(line, sizeof line, "%.3f 0.75 0.60", hue - static_cast<int>(hue));
  return {fill, line};
}

std::string dot_string(const std::string &text) {
  std::string result = "\"";
  for (const char c : text) {
    if (c == '"' || c == '\\') result += '\\';
    if (static_cast<unsigned char>(c) >= 0x20) result += c;
  }
  return result + "\"";
}

// Inside a label of the HTML kind.
std::string label_text(const std::string &text) {
  std::string result;
  for (const char c : text) {
    switch (c) {
      case '&':
        result += "&amp;";
        break;
      case '<':
        result += "&lt;";
        break;
      case '>':
        result += "&gt;";
        break;
      case '"':
        result += "&quot;";
        break;
      default:
        if (static_cast<unsigned char>(c) >= 0x20) result += c;
    }
  }
  return result;
}

class DotWriter {
 public:
  DotWriter(const Topology &topology, const DotOptions &options)
      : topology_(topology), options_(options), style_(style_for(topology.routers.size())) {
    for (const std::uint32_t area : topology_.areas) {
      colours_[area] = colours_of(colours_.size());
    }
  }

  std::string write() {
    text_ = "graph " + dot_string("OSPFv" + std::to_string(topology_.version)) + " {\n";
    add_graph();
    for (const auto &[id, router] : topology_.routers) add_router(id, router);
    for (const auto &[id, network] : topology_.networks) add_network(id, network);
    for (std::size_t at = 0; at < topology_.attachments.size(); ++at) {
      add_edge(topology_.attachments[at], options_.way.attachments.contains(at));
    }
    for (std::size_t at = 0; at < topology_.links.size(); ++at) {
      add_edge(topology_.links[at], options_.way.links.contains(at));
    }
    if (options_.stubs) add_stubs();
    return text_ + "}\n";
  }

 private:
  const Colours &colours(std::uint32_t area) { return colours_[area]; }

  static std::string router_name(std::uint32_t id) { return dot_string("router " + dotted(id)); }
  static std::string network_name(const NetworkId &id) {
    const auto &[area, link_state_id, adv_router] = id;
    return dot_string("network " + dotted(area) + " " + dotted(link_state_id) +
                      (adv_router == 0 ? "" : " " + dotted(adv_router)));
  }

  void add_graph() {
    text_ += "  graph [layout=" + dot_string(style_.engine) + ", " + style_.layout +
             ", outputorder=\"edgesfirst\", fontname=\"Helvetica\", fontsize=" +
             points(style_.legend_font) +
             ", labelloc=\"b\", pad=\"0.3\", bgcolor=\"white\",\n    label=" + legend() + "];\n";
    text_ += "  node [fontname=\"Helvetica\", penwidth=\"1.4\"];\n";
    text_ += "  edge [fontname=\"Helvetica\", labelangle=\"0\", labeldistance=" +
             dot_string(style_.cost_distance) + "];\n";
  }

  std::string legend() const {
    std::string areas;
    std::size_t column = 0;
    for (const auto &[area, colours] : colours_) {
      if (column++ % 8 == 0) areas += areas.empty() ? "<TR>" : "</TR><TR>";
      areas += "<TD BGCOLOR=\"" + colours.fill + "\" COLOR=\"" + colours.line +
               "\" BORDER=\"1\">area " + dotted(area) + "</TD>";
    }
    const std::string title = "OSPFv" + std::to_string(topology_.version) + ": " +
                              counted(topology_.routers.size(), "router", "routers") + ", " +
                              counted(topology_.networks.size(), "network", "networks") + ", " +
                              counted(topology_.areas.size(), "area", "areas");
    return "<<TABLE BORDER=\"0\" CELLBORDER=\"0\" CELLSPACING=\"4\" CELLPADDING=\"3\">"
           "<TR><TD><B>" +
           title +
           "</B></TD></TR>"
           "<TR><TD><TABLE BORDER=\"0\" CELLSPACING=\"4\" CELLPADDING=\"4\">" +
           areas +
           "</TR></TABLE></TD></TR>"
           "<TR><TD><FONT POINT-SIZE=" +
           points(style_.legend_font - 2) +
           ">box: router, with the colours of its areas; "
           "double border: AS boundary router; ellipse: network<BR/>"
           "number: cost, at the router that says it; dashed: only one end speaks of it" +
           (has_virtual_links() ? std::string("; dotted: virtual link") : std::string()) +
           (options_.way.routers.empty() ? std::string() : std::string("; thick: the way")) +
           "</FONT></TD></TR></TABLE>>";
  }

  bool has_virtual_links() const {
    return std::any_of(topology_.links.begin(), topology_.links.end(),
                       [](const auto &link) { return link.kind == LinkKind::virtual_link; });
  }

  void add_router(std::uint32_t id, const TopologyRouter &router) {
    std::string roles;
    if (router.area_border) roles = "ABR";
    if (router.as_boundary) roles += roles.empty() ? "ASBR" : ", ASBR";
    std::string fill;
    for (const std::uint32_t area : router.areas) {
      fill += (fill.empty() ? "" : ":") + colours(area).fill;
    }
    const bool several = router.areas.size() > 1;
    const std::string line = several ? "#333333" : colours(*router.areas.begin()).line;
    std::string style = several ? "striped" : "filled,rounded";
    if (!router.has_lsa) style += ",dashed";
    text_ += "  " + router_name(id) + " [shape=\"box\", style=" + dot_string(style) +
             ", fillcolor=" + dot_string(fill) + ", color=" + dot_string(line) +
             ", fontsize=" + points(style_.router_font) +
             ", margin=\"0.09,0.05\", height=\"0.2\", width=\"0.4\"" +
             (router.as_boundary ? ", peripheries=\"2\"" : "") +
             (options_.way.routers.contains(id) ? ", penwidth=\"4\"" : "") + ", label=<<B>" +
             dotted(id) + "</B>" +
             (roles.empty() ? "" : "<BR/><FONT POINT-SIZE=" + small() + ">" + roles + "</FONT>") +
             ">];\n";
  }

  void add_network(const NetworkId &id, const TopologyNetwork &network) {
    std::string label;
    for (const std::string &prefix : network.prefixes) {
      label += (label.empty() ? "" : "<BR/>") + label_text(prefix);
    }
    if (label.empty()) label = "network " + dotted(std::get<1>(id));
    if (network.designated_router != 0) {
      label += "<BR/><FONT POINT-SIZE=" + small() + ">DR " + dotted(network.designated_router) +
               "</FONT>";
    }
    const Colours &area = colours(std::get<0>(id));
    text_ += "  " + network_name(id) + " [shape=\"ellipse\", style=" +
             dot_string(network.has_lsa ? "filled" : "filled,dashed") +
             ", fillcolor=\"white\", color=" + dot_string(area.line) +
             ", fontsize=" + points(style_.network_font) +
             ", margin=\"0.03,0.02\", height=\"0.2\", width=\"0.3\", label=<" + label + ">];\n";
  }

  void add_edge(const TopologyAttachment &attachment, bool on_the_way) {
    add_edge(router_name(attachment.router), network_name(attachment.network),
             std::get<0>(attachment.network), attachment.both_ways() ? "solid" : "dashed",
             attachment.cost, std::nullopt, "", length_to_others, on_the_way);
  }

  void add_edge(const TopologyLink &link, bool on_the_way) {
    const bool is_virtual = link.kind == LinkKind::virtual_link;
    add_edge(router_name(link.routers[0]), router_name(link.routers[1]), link.area,
             !link.both_ways() ? "dashed"
             : is_virtual      ? "dotted"
                               : "solid",
             link.costs[0], link.costs[1], options_.stubs ? link.prefix : "",
             length_between_routers, on_the_way);
  }

  void add_edge(const std::string &from, const std::string &to, std::uint32_t area,
                const char *style, std::optional<std::uint32_t> from_cost,
                std::optional<std::uint32_t> to_cost, const std::string &label, const char *length,
                bool on_the_way = false) {
    constexpr int thick = 4;
    char width[16];
    std::snprintf(width, sizeof width, "%.1f",
                  style_.line_width * (on_the_way                       ? thick
                                       : style == std::string("dotted") ? 2
                                                                        : 1));
    const std::string &colour = colours(area).line;
    text_ += "  " + from + " -- " + to + " [color=" + dot_string(colour) +
             ", penwidth=" + dot_string(width) + ", style=" + dot_string(style) +
             ", len=" + dot_string(length);
    if (from_cost) text_ += ", taillabel=" + cost_label(*from_cost, colour);
    if (to_cost) text_ += ", headlabel=" + cost_label(*to_cost, colour);
    if (!label.empty()) {
      text_ += ", fontsize=" + small() + ", fontcolor=" + dot_string(colour) + ", label=<" +
               label_text(label) + ">";
    }
    text_ += "];\n";
  }

  // On the line, with a white ground that keeps it legible there.
  std::string cost_label(std::uint32_t cost, const std::string &colour) const {
    return "<<TABLE BORDER=\"0\" CELLBORDER=\"0\" CELLSPACING=\"0\" CELLPADDING=\"1\" "
           "BGCOLOR=\"white\"><TR><TD><FONT POINT-SIZE=" +
           points(style_.cost_font) + " COLOR=\"" + colour + "\">" + std::to_string(cost) +
           "</FONT></TD></TR></TABLE>>";
  }

  void add_stubs() {
    std::map<std::pair<std::uint32_t, std::string>, bool> drawn;
    for (const TopologyStub &stub : topology_.stubs) {
      const std::string name = dot_string("stub " + dotted(stub.area) + " " + stub.prefix);
      bool &is_drawn = drawn[{stub.area, stub.prefix}];
      if (!is_drawn) {
        text_ += "  " + name + " [shape=\"plain\", fontsize=" + small() +
                 ", fontcolor=" + dot_string(colours(stub.area).line) + ", label=<" +
                 label_text(stub.prefix) + ">];\n";
      }
      is_drawn = true;
      add_edge(router_name(stub.router), name, stub.area, "solid", stub.cost, std::nullopt, "",
               length_to_others);
    }
  }

  static std::string points(int size) { return dot_string(std::to_string(size)); }
  std::string small() const { return points(style_.router_font - 3); }

  const Topology &topology_;
  const DotOptions &options_;
  const Style &style_;
  std::map<std::uint32_t, Colours> colours_;
  std::string text_;
};

}  // namespace

std::string dot_text(const Topology &topology, const DotOptions &options) {
  return DotWriter(topology, options).write();
}

}  // namespace tool
