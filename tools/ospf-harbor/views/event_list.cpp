#include "views/event_list.hpp"

#include <nlohmann/json.hpp>

#include "sources/time_point.hpp"
#include "views/lsa_names.hpp"
#include "views/named_json.hpp"

namespace tool {

namespace {

using namespace ospf_events;

std::string lsa_text(const Event &event) {
  const ospf_decode::LsdbKey &key = *event.lsa;
  char sequence[16];
  std::snprintf(sequence, sizeof sequence, "0x%08x", event.sequence);
  return type_name(key.version, key.type) + " " + ospf_decode::ipv4_text(key.link_state_id) +
         " of " + ospf_decode::ipv4_text(key.advertising_router) + ", " + sequence;
}

}  // namespace

std::string json_line(const Event &event, const std::vector<std::string> &captures,
                      const RouterNames &names) {
  using Json = nlohmann::ordered_json;
  Json routers = Json::array();
  for (const std::uint32_t router : event.routers)
    routers.push_back(ospf_decode::ipv4_text(router));
  Json lsa = nullptr;
  if (event.lsa) {
    char sequence[16];
    std::snprintf(sequence, sizeof sequence, "0x%08x", event.sequence);
    lsa = {{"scope", ospf_decode::scope_name(event.lsa->scope)},
           {"type", event.lsa->type},
           {"type_name", type_name(event.lsa->version, event.lsa->type)},
           {"lsa_id", ospf_decode::ipv4_text(event.lsa->link_state_id)},
           {"adv_router", ospf_decode::ipv4_text(event.lsa->advertising_router)},
           {"seq_num", sequence}};
  }
  const auto or_null = [](const std::string &text) {
    return text.empty() ? Json(nullptr) : Json(text);
  };
  const bool has_packet = event.packet.number != 0;
  const Json line = {
      {"time", time_text(event.time)},
      {"kind", name_of(event.kind)},
      {"file", has_packet ? Json(captures.at(event.packet.source)) : Json(nullptr)},
      {"packet", has_packet ? Json(event.packet.number) : Json(nullptr)},
      {"version", event.version},
      {"instance", event.instance_id},
      {"area", event.area ? Json(ospf_decode::ipv4_text(*event.area)) : Json(nullptr)},
      {"routers", routers},
      {"router_names", names_or_null(event.routers, names)},
      {"where", or_null(event.where)},
      {"why", or_null(event.why)},
      {"what", or_null(event.text)},
      {"lsa", lsa}};
  return line_of(line);
}

void EventPrinter::print(const Event &event) {
  const std::string time = time_text(event.time);
  const std::string day = time.substr(0, time.find('T'));
  if (day != day_) std::fprintf(out_, "%s\n", day.c_str());
  day_ = day;
  std::string packet = event.packet.number == 0 ? "-" : std::to_string(event.packet.number);
  if (captures_.size() > 1 && event.packet.number != 0) {
    packet = std::to_string(event.packet.source + 1) + ":" + packet;
  }
  std::string text = event.where;
  if (event.lsa) text = lsa_text(event) + (text.empty() ? "" : ", ") + text;
  if (event.area && event.lsa && event.lsa->scope == ospf_decode::Scope::area) {
    text += ", area " + ospf_decode::ipv4_text(*event.area);
  }
  if (!event.why.empty()) text += (text.empty() ? "" : ": ") + event.why;
  if (!event.text.empty()) text += (text.empty() ? "" : ": ") + event.text;
  std::fprintf(out_, "%s %6s v%u %-16s %s\n", time.substr(day.size() + 1, 12).c_str(),
               packet.c_str(), unsigned{event.version}, name_of(event.kind),
               labelled(text, event.routers, names_).c_str());
}

}  // namespace tool
