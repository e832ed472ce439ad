#include "views/dot_text.hpp"

#include <cstdint>
#include <cstdio>

namespace tool {

namespace {

// clang-format off
constexpr DotStyle styles[] = {
    {50, "neato", "overlap=\"prism\", splines=\"true\", sep=\"+44,24\", esep=\"+8\"",
     "2.2", 12, 10, 9, 11, 1.6},
    {250, "sfdp", "overlap=\"prism\", overlap_scaling=\"-4\", splines=\"true\", sep=\"+32,24\", esep=\"+4\", K=\"1.3\"",
     "1.7", 9, 7, 7, 20, 1.1},
    {SIZE_MAX, "sfdp", "overlap=\"prism\", overlap_scaling=\"-4\", splines=\"line\", sep=\"+32,24\", K=\"1.3\"",
     "1.7", 9, 7, 7, 40, 1.1},
};
// clang-format on

// Inches between the middles of the two ends, so that the costs of both have room.
constexpr char length_between_routers[] = "2.7";
constexpr char length_to_others[] = "1.9";
constexpr char length_with_addresses[] = "3.6";
constexpr char distance_with_addresses[] = "3.6";  // of the texts at an end from its node

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
  explicit DotWriter(const Picture &picture) : picture_(picture), style_(dot_style(picture)) {}

  std::string write() {
    text_ = "graph " + dot_string("OSPFv" + std::to_string(picture_.instance.version)) + " {\n";
    add_graph();
    for (std::size_t at = 0; at < picture_.nodes.size(); ++at) {
      const PictureNode &node = picture_.nodes[at];
      text_ += "  " + dot_string(node.name) + " [id=\"n" + std::to_string(at) + "\", ";
      switch (node.part) {
        case PicturePart::router:
          add_router(node);
          break;
        case PicturePart::network:
          add_network(node);
          break;
        case PicturePart::stub:
          text_ += "shape=\"plain\", fontsize=" + small() +
                   ", fontcolor=" + dot_string(colours(node).line) + ", label=<" +
                   label_text(node.title) + ">";
      }
      text_ += "];\n";
    }
    for (std::size_t at = 0; at < picture_.edges.size(); ++at) add_edge(at);
    return text_ + "}\n";
  }

 private:
  // Of an area, but where changes are what is shown.
  const PictureColours &colours(std::size_t area, TopologyChange change) const {
    return picture_.is_difference ? colours_of(change) : picture_.areas.at(area).colours;
  }
  const PictureColours &colours(const PictureNode &node) const {
    return colours(node.areas.front(), node.change);
  }

  void add_graph() {
    text_ += "  graph [layout=" + dot_string(style_.engine) + ", " + style_.layout +
             ", outputorder=\"edgesfirst\", fontname=\"Helvetica\", fontsize=" +
             points(style_.legend_font) +
             ", labelloc=\"b\", pad=\"0.3\", bgcolor=\"white\",\n    label=" + legend() + "];\n";
    text_ += "  node [fontname=\"Helvetica\", penwidth=\"1.4\"];\n";
    text_ += "  edge [fontname=\"Helvetica\", labelangle=\"0\", labeldistance=" +
             dot_string(picture_.shows_addresses ? distance_with_addresses : style_.cost_distance) +
             "];\n";
  }

  std::string swatches() const {
    std::string cells;
    std::size_t column = 0;
    const auto add = [&](const PictureColours &colours, const std::string &title) {
      if (column++ % 8 == 0) cells += cells.empty() ? "<TR>" : "</TR><TR>";
      cells += "<TD BGCOLOR=\"" + colours.fill + "\" COLOR=\"" + colours.line + "\" BORDER=\"1\">" +
               label_text(title) + "</TD>";
    };
    if (!picture_.is_difference) {
      for (const PictureArea &area : picture_.areas) add(area.colours, area.title);
      return cells + "</TR>";
    }
    for (const TopologyChange change :
         {TopologyChange::came, TopologyChange::went, TopologyChange::changed}) {
      add(colours_of(change), name_of(change));
    }
    add(colours_of(TopologyChange::none), "as before");
    return cells + "</TR>";
  }

  std::string legend() const {
    std::string signs;
    std::size_t in_line = 0;
    constexpr std::size_t most = 3;
    for (const std::string &sign : legend_of(picture_)) {
      if (!signs.empty()) signs += in_line % most == 0 ? "<BR/>" : "; ";
      ++in_line;
      signs += sign;
    }
    return "<<TABLE BORDER=\"0\" CELLBORDER=\"0\" CELLSPACING=\"4\" CELLPADDING=\"3\">"
           "<TR><TD><B>" +
           label_text(picture_.title) +
           "</B></TD></TR>"
           "<TR><TD><TABLE BORDER=\"0\" CELLSPACING=\"4\" CELLPADDING=\"4\">" +
           swatches() +
           "</TABLE></TD></TR><TR><TD><FONT POINT-SIZE=" + points(style_.legend_font - 2) + ">" +
           signs + "</FONT></TD></TR></TABLE>>";
  }

  std::string text_of(const PictureNode &node) const {
    const char *const mark = node.change == TopologyChange::none ? "" : name_of(node.change);
    std::string text = "<B>" + label_text(node.title) + "</B>";
    if (*mark != 0) text += " <I>" + std::string(mark) + "</I>";
    return text + lines_of(node);
  }

  std::string lines_of(const PictureNode &node) const {
    std::string text;
    for (const std::string &line : node.lines) {
      text += "<BR/><FONT POINT-SIZE=" + small() + ">" + label_text(line) + "</FONT>";
    }
    return text;
  }

  // A router of several areas has a stripe of their colours above its text.
  void add_router(const PictureNode &node) {
    const bool striped = node.areas.size() > 1 && !picture_.is_difference;
    std::string stripe;
    for (const std::size_t area : node.areas) {
      stripe += "<TD BGCOLOR=\"" + picture_.areas.at(area).colours.line + "\" HEIGHT=\"" +
                std::to_string(style_.router_font / 2) + "\"></TD>";
    }
    text_ += "shape=\"box\", style=" +
             dot_string(std::string(striped ? "filled" : "filled,rounded") +
                        (node.is_whole ? "" : ",dashed")) +
             ", fillcolor=" + dot_string(striped ? "white" : colours(node).fill) +
             ", color=" + dot_string(striped ? "#333333" : colours(node).line) +
             ", fontsize=" + points(style_.router_font) +
             ", margin=" + dot_string(striped ? "0" : "0.09,0.05") +
             ", height=\"0.2\", width=\"0.4\"" + (node.is_boundary ? ", peripheries=\"2\"" : "") +
             (node.is_on_way ? ", penwidth=\"4\"" : "") + ", label=<";
    if (!striped) {
      text_ += text_of(node) + ">";
      return;
    }
    constexpr char table[] =
        "<TABLE BORDER=\"0\" CELLBORDER=\"0\" CELLSPACING=\"0\" CELLPADDING=\"0\"><TR>";
    text_ += std::string(table) + "<TD>" + table + stripe +
             "</TR></TABLE></TD></TR><TR><TD CELLPADDING=\"5\">" + text_of(node) +
             "</TD></TR></TABLE>>";
  }

  void add_network(const PictureNode &node) {
    const bool is_changed = node.change != TopologyChange::none;
    text_ +=
        "shape=\"ellipse\", style=" + dot_string(node.is_whole ? "filled" : "filled,dashed") +
        ", fillcolor=" + dot_string(is_changed ? colours(node).fill : "white") +
        ", color=" + dot_string(colours(node).line) + ", fontsize=" + points(style_.network_font) +
        ", margin=\"0.03,0.02\", height=\"0.2\", width=\"0.3\", label=<" + label_text(node.title) +
        (is_changed ? " <I>" + std::string(name_of(node.change)) + "</I>" : std::string()) +
        lines_of(node) + ">";
  }

  static const char *style_of(PictureLine line) {
    switch (line) {
      case PictureLine::one_sided:
        return "dashed";
      case PictureLine::virtual_link:
        return "dotted";
      default:
        return "solid";
    }
  }

  double width_of(const PictureEdge &edge) const {
    constexpr double thick = 4;
    if (edge.is_on_way) return style_.line_width * thick;
    const bool is_stronger =
        edge.line == PictureLine::virtual_link || edge.change != TopologyChange::none;
    return is_stronger ? style_.line_width * 2 : style_.line_width;
  }

  void add_edge(std::size_t at) {
    const PictureEdge &edge = picture_.edges[at];
    const PictureNode &from = picture_.nodes[edge.nodes[0]];
    const PictureNode &to = picture_.nodes[edge.nodes[1]];
    const std::string &colour = colours(edge.area, edge.change).line;
    char width[16];
    std::snprintf(width, sizeof width, "%.1f", width_of(edge));
    text_ +=
        "  " + dot_string(from.name) + " -- " + dot_string(to.name) + " [id=\"e" +
        std::to_string(at) + "\", color=" +
        dot_string(edge.line == PictureLine::multipoint ? colour + ":white:" + colour : colour) +
        ", penwidth=" + dot_string(width) + ", style=" + dot_string(style_of(edge.line)) +
        ", len=" + dot_string(length_of(edge));
    add_end("taillabel", edge, 0, colour);
    add_end("headlabel", edge, 1, colour);
    if (!edge.label.empty()) {
      text_ += ", label=" + on_white(label_text(edge.label), small(), colour);
    }
    text_ += "];\n";
  }

  const char *length_of(const PictureEdge &edge) const {
    if (picture_.shows_addresses) return length_with_addresses;
    return edge.is_between_routers ? length_between_routers : length_to_others;
  }

  void add_end(const char *attribute, const PictureEdge &edge, int end, const std::string &colour) {
    std::string text = label_text(edge.costs[end]);
    if (picture_.shows_addresses && !edge.addresses[end].empty()) {
      text += (text.empty() ? "" : "<BR/>") + label_text(edge.addresses[end]);
    }
    if (text.empty()) return;
    text_ += std::string(", ") + attribute + "=" + on_white(text, points(style_.cost_font), colour);
  }

  // For a text on a line: a white ground keeps it legible there.
  static std::string on_white(const std::string &text, const std::string &size,
                              const std::string &colour) {
    return "<<TABLE BORDER=\"0\" CELLBORDER=\"0\" CELLSPACING=\"0\" CELLPADDING=\"1\" "
           "BGCOLOR=\"white\"><TR><TD><FONT POINT-SIZE=" +
           size + " COLOR=\"" + colour + "\">" + text + "</FONT></TD></TR></TABLE>>";
  }

  static std::string points(int size) { return dot_string(std::to_string(size)); }
  std::string small() const { return points(style_.router_font - 3); }

  const Picture &picture_;
  const DotStyle &style_;
  std::string text_;
};

}  // namespace

const DotStyle &dot_style(const Picture &picture) {
  const DotStyle *style = styles;
  while (picture.routers > style->routers) ++style;
  return *style;
}

std::string dot_text(const Picture &picture) { return DotWriter(picture).write(); }

}  // namespace tool
