#include "views/picture_page.hpp"

#include <algorithm>
#include <cmath>
#include <map>
#include <nlohmann/json.hpp>
#include <set>
#include <tuple>

#include "ospf_tables/input_error.hpp"
#include "ospf_tables/observed.hpp"
#include "ospf_tables/row_keys.hpp"
#include "views/dot_text.hpp"
#include "views/graphviz.hpp"
#include "views/lsa_detail.hpp"

// The files of views/page. The frame has @STYLE@, @DATA@ and @SCRIPT@ where the other two and the
// pictures go.
extern "C" {
extern const char ospf_harbor_page_frame[];
extern const char ospf_harbor_page_style[];
extern const char ospf_harbor_page_script[];
}

namespace tool {

using namespace ospf_tables;

namespace {

using Json = nlohmann::ordered_json;

bool is_of(const LsdbEntry &entry, const InstanceName &instance) {
  return ospf_tables::instance_name(entry.router_id, entry.lsa.version == 2) == instance;
}

// A tenth of a point is less than anybody sees.
double rounded(double number) { return std::round(number * 10) / 10; }

std::string place_of(const LsdbEntry &entry) {
  if (!entry.area) return "autonomous system";
  std::string text = "area " + dotted(*entry.area);
  if (entry.interface) text += ", link " + in_one_line(*entry.interface);
  return text;
}

Json json_of(const PageLsa &lsa) {
  const std::string text = in_lines(detail_of(lsa.entry->lsa));
  const std::size_t start = std::min(text.find_first_not_of(' '), text.size());
  const std::size_t end = std::min(text.find('\n', start), text.size());
  Json fields = Json::array();
  for (const FieldChange &field : lsa.fields) {
    fields.push_back({{"field", field.field}, {"before", field.before}, {"after", field.after}});
  }
  return {{"title", text.substr(start, end - start)},
          {"where", place_of(*lsa.entry)},
          {"text", end < text.size() ? text.substr(end + 1) : std::string()},
          {"change", name_of(lsa.change)},
          {"fields", fields}};
}

// Which LSAs tell of which parts.
class LsaIndex {
 public:
  explicit LsaIndex(const std::vector<PageLsa> &lsas) {
    for (std::size_t at = 0; at < lsas.size(); ++at) add(*lsas[at].entry, at);
  }

  std::vector<std::size_t> of(const PictureNode &node) const {
    return node.part == PicturePart::network ? found(networks_, node.network)
                                             : found(routers_, node.router);
  }

  // Of a line the router LSAs of its ends, and what tells of the network at one of them.
  std::vector<std::size_t> of(const Picture &picture, const PictureEdge &edge) const {
    std::vector<std::size_t> all;
    const std::uint32_t area = picture.areas.at(edge.area).id;
    for (const std::size_t end : edge.nodes) {
      const PictureNode &node = picture.nodes.at(end);
      const std::vector<std::size_t> more = node.part == PicturePart::network ? of(node)
                                            : node.part == PicturePart::stub
                                                ? std::vector<std::size_t>()
                                                : found(router_lsas_, std::pair(area, node.router));
      all.insert(all.end(), more.begin(), more.end());
    }
    return all;
  }

 private:
  template <typename Key>
  using Index = std::map<Key, std::vector<std::size_t>>;

  template <typename Key>
  static std::vector<std::size_t> found(const Index<Key> &index, const Key &key) {
    const auto at = index.find(key);
    return at == index.end() ? std::vector<std::size_t>() : at->second;
  }

  void add(const LsdbEntry &entry, std::size_t at) {
    const LsaView &lsa = entry.lsa;
    routers_[lsa.adv_router].push_back(at);
    if (!entry.area) return;
    const std::uint32_t area = *entry.area;
    if (std::holds_alternative<RouterViewV2>(lsa.body) ||
        std::holds_alternative<RouterViewV3>(lsa.body)) {
      router_lsas_[{area, lsa.adv_router}].push_back(at);
    } else if (std::holds_alternative<NetworkViewV2>(lsa.body)) {
      networks_[{area, lsa.link_state_id, 0}].push_back(at);
    } else if (std::holds_alternative<NetworkViewV3>(lsa.body)) {
      networks_[{area, lsa.link_state_id, lsa.adv_router}].push_back(at);
    } else if (const auto *prefixes = std::get_if<IntraAreaPrefixView>(&lsa.body)) {
      if (prefixes->referenced_ls_type != lsa3_network) return;
      const std::uint32_t router = parse_dotted(prefixes->referenced_adv_router).value_or(0);
      networks_[{area, prefixes->referenced_link_state_id, router}].push_back(at);
    }
  }

  Index<std::uint32_t> routers_;
  Index<std::pair<std::uint32_t, std::uint32_t>> router_lsas_;
  Index<NetworkId> networks_;
};

Json json_of(const PictureNode &node, const NodePlace &place, const LsaIndex &index) {
  return {{"part", static_cast<int>(node.part)},
          {"title", node.title},
          {"lines", node.lines},
          {"areas", node.areas},
          {"whole", node.is_whole},
          {"boundary", node.is_boundary},
          {"way", node.is_on_way},
          {"change", name_of(node.change)},
          {"x", rounded(place.x)},
          {"y", rounded(place.y)},
          {"width", rounded(place.width)},
          {"height", rounded(place.height)},
          {"lsas", index.of(node)}};
}

Json json_of(const Picture &picture, const PictureEdge &edge, std::vector<double> points,
             const LsaIndex &index) {
  for (double &each : points) each = rounded(each);
  return {{"nodes", edge.nodes},
          {"area", edge.area},
          {"line", static_cast<int>(edge.line)},
          {"costs", edge.costs},
          {"addresses", edge.addresses},
          {"label", edge.label},
          {"way", edge.is_on_way},
          {"change", name_of(edge.change)},
          {"points", points},
          {"lsas", index.of(picture, edge)}};
}

Json json_of(const PagePicture &page) {
  const Picture &picture = page.picture;
  const Layout layout = laid_out(dot_text(picture), picture.nodes.size(), picture.edges.size());
  const LsaIndex index(page.lsas);
  const DotStyle &style = dot_style(picture);
  Json json = {{"name", title_of(picture.instance)},
               {"title", picture.title},
               {"difference", picture.is_difference},
               {"addresses", picture.shows_addresses},
               {"fonts",
                {{"router", style.router_font},
                 {"network", style.network_font},
                 {"cost", style.cost_font},
                 {"line", style.line_width}}},
               {"legend", legend_of(picture)},
               {"changes", Json::object()},
               {"areas", Json::array()},
               {"nodes", Json::array()},
               {"edges", Json::array()},
               {"lsas", Json::array()}};
  for (const TopologyChange change : {TopologyChange::none, TopologyChange::came,
                                      TopologyChange::went, TopologyChange::changed}) {
    json["changes"][name_of(change)] = colours_of(change).line;
  }
  for (const PictureArea &area : picture.areas) {
    json["areas"].push_back({{"title", area.title}, {"colour", area.colours.line}});
  }
  for (std::size_t at = 0; at < picture.nodes.size(); ++at) {
    json["nodes"].push_back(json_of(picture.nodes[at], layout.nodes[at], index));
  }
  for (std::size_t at = 0; at < picture.edges.size(); ++at) {
    json["edges"].push_back(json_of(picture, picture.edges[at], layout.edges[at], index));
  }
  for (const PageLsa &lsa : page.lsas) json["lsas"].push_back(json_of(lsa));
  return json;
}

// JSON that ends no script element, whatever texts are in it.
std::string harmless(const Json &json) {
  std::string text;
  for (const char c : json.dump(-1, ' ', true, Json::error_handler_t::replace)) {
    if (c == '<') {
      text += "\\u003c";
    } else {
      text += c;
    }
  }
  return text;
}

}  // namespace

std::vector<PageLsa> page_lsas(const std::vector<LsdbEntry> &entries,
                               const InstanceName &instance) {
  std::set<std::tuple<std::optional<std::uint32_t>, std::optional<std::string>, std::uint16_t,
                      std::uint32_t, std::uint32_t>>
      seen;
  std::vector<PageLsa> lsas;
  for (const LsdbEntry &entry : entries) {
    const LsaView &lsa = entry.lsa;
    if (!is_of(entry, instance)) continue;
    if (seen.insert({entry.area, entry.interface, lsa.type, lsa.link_state_id, lsa.adv_router})
            .second) {
      lsas.push_back({&entry, TopologyChange::none, {}});
    }
  }
  return lsas;
}

std::vector<PageLsa> page_lsas(const std::vector<LsdbEntry> &before,
                               const std::vector<LsdbEntry> &after, const InstanceName &instance) {
  std::vector<PageLsa> lsas = page_lsas(after, instance);
  std::map<const LsdbEntry *, LsaChange> changes;
  for (LsaChange &change : lsa_changes(before, after, false)) {
    if (change.after != nullptr) {
      changes[change.after] = std::move(change);
    } else if (is_of(*change.before, instance)) {
      lsas.push_back({change.before, TopologyChange::went, {}});
    }
  }
  for (PageLsa &lsa : lsas) {
    const auto at = changes.find(lsa.entry);
    if (at == changes.end()) continue;
    lsa.change = at->second.before == nullptr ? TopologyChange::came : TopologyChange::changed;
    lsa.fields = std::move(at->second.fields);
  }
  return lsas;
}

std::string page_of(const std::vector<PagePicture> &pictures) {
  Json all = Json::array();
  for (const PagePicture &picture : pictures) all.push_back(json_of(picture));
  const std::pair<std::string, std::string> parts[] = {{"@STYLE@", ospf_harbor_page_style},
                                                       {"@DATA@", harmless(all)},
                                                       {"@SCRIPT@", ospf_harbor_page_script}};
  // In the order of the frame, as nothing that is put in is looked through for another place.
  std::string page;
  std::string rest = ospf_harbor_page_frame;
  for (const auto &[place, content] : parts) {
    const std::size_t at = rest.find(place);
    page += rest.substr(0, at) + content;
    rest.erase(0, at + place.size());
  }
  return page + rest;
}

}  // namespace tool
