#include "views/finding_list.hpp"

#include <nlohmann/json.hpp>

#include "ospf_routes/address.hpp"
#include "ospf_tables/input_error.hpp"
#include "views/named_json.hpp"

namespace tool {

namespace {

using namespace ospf_findings;

constexpr std::size_t line_width = 80;

// Words in lines that a terminal has room for; a word that is longer stays whole.
void print_wrapped(const std::string &head, const std::string &text, std::FILE *out) {
  const std::string indent(head.size(), ' ');
  std::string line = head;
  bool empty = true;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t end = std::min(text.find(' ', at), text.size());
    const std::string word = text.substr(at, end - at);
    if (!empty && line.size() + 1 + word.size() > line_width) {
      std::fprintf(out, "%s\n", line.c_str());
      line = indent;
      empty = true;
    }
    line += (empty ? "" : " ") + word;
    empty = false;
    at = end + 1;
  }
  std::fprintf(out, "%s\n", line.c_str());
}

std::string joined(const std::vector<std::string> &texts, std::size_t most) {
  std::string all;
  for (std::size_t at = 0; at < std::min(most, texts.size()); ++at) {
    all += (all.empty() ? "" : "; ") + texts[at];
  }
  if (texts.size() > most) all += "; and " + std::to_string(texts.size() - most) + " more";
  return all;
}

std::string packets_text(const std::vector<ospf_events::PacketName> &packets,
                         const std::vector<std::string> &captures) {
  std::string text;
  for (const ospf_events::PacketName &packet : packets) {
    text += (text.empty() ? "packet " : ", ") + std::to_string(packet.number);
    if (captures.size() > 1) text += " of " + captures.at(packet.source);
  }
  return text;
}

}  // namespace

std::string json_line(const Finding &finding, const std::vector<std::string> &captures,
                      const RouterNames &names) {
  using Json = nlohmann::ordered_json;
  Json routers = Json::array();
  for (const auto router : finding.routers) routers.push_back(ospf_routes::dotted(router));
  Json packets = Json::array();
  for (const ospf_events::PacketName &packet : finding.packets) {
    packets.push_back({{"file", captures.at(packet.source)}, {"packet", packet.number}});
  }
  const auto or_null = [](const std::string &text) {
    return text.empty() ? Json(nullptr) : Json(text);
  };
  const Json line = {
      {"severity", name_of(finding.severity)},
      {"kind", name_of(finding.kind)},
      {"version", finding.version},
      {"instance", finding.instance},
      {"area", finding.area ? Json(ospf_routes::dotted(*finding.area)) : Json(nullptr)},
      {"routers", routers},
      {"router_names", names_or_null(finding.routers, names)},
      {"where", or_null(finding.where)},
      {"field", or_null(finding.field)},
      {"what", finding.what},
      {"lsas", finding.lsas},
      {"packets", packets},
      {"look_at", advice_for(finding.kind)}};
  return line_of(line);
}

void print_finding(const Finding &finding, const std::vector<std::string> &captures,
                   const RouterNames &names, std::FILE *out) {
  const auto named = [&](const std::string &text) {
    return labelled(text, finding.routers, names);
  };
  constexpr std::size_t lsas_shown = 4;
  std::string place = "OSPFv" + std::to_string(finding.version);
  if (finding.instance != 0) place += ", instance " + std::to_string(finding.instance);
  if (finding.area) place += ", area " + ospf_routes::dotted(*finding.area);
  std::fprintf(out, "%s: %s%s%s (%s)\n", name_of(finding.severity), name_of(finding.kind),
               finding.field.empty() ? "" : ": ", finding.field.c_str(), place.c_str());
  if (!finding.where.empty()) print_wrapped("  where    ", named(finding.where), out);
  print_wrapped("  what     ", named(ospf_tables::in_one_line(finding.what)), out);
  std::string shown = joined(finding.lsas, lsas_shown);
  const std::string packets = packets_text(finding.packets, captures);
  if (!packets.empty()) shown += (shown.empty() ? "" : "; ") + packets;
  if (!shown.empty() && shown != finding.where) print_wrapped("  seen in  ", named(shown), out);
  print_wrapped("  look at  ", advice_for(finding.kind), out);
}

}  // namespace tool
