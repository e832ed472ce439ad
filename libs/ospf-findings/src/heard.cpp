#include "ospf_findings/heard.hpp"

#include <algorithm>
#include <map>
#include <set>

#include "evidence.hpp"
#include "mismatch.hpp"

namespace ospf_findings {

using namespace ospf_events;
using ospf_decode::LsdbKey;

namespace {

// So often must an LSA have gone back to what it was before: three times there and back. Routers
// that start, and links that fail once, make it go fewer times.
constexpr std::uint32_t flaps = 6;
constexpr std::size_t packets_shown = 8;

// Who hears whom is told by router IDs: nothing is told of it where two routers have one.
std::set<std::uint32_t> links_of_two_with_one_id(
    const Timeline &timeline, const std::vector<std::pair<std::uint32_t, std::uint32_t>> &pairs) {
  std::set<std::uint32_t> links;
  for (const auto &[one, other] : pairs) {
    if (differences(timeline, one, other, timeline.now()).has(Difference::router_id)) {
      links.insert(timeline.link_of(one));
    }
  }
  return links;
}

void find_mismatches(const Timeline &timeline, const std::vector<Event> &events,
                     std::vector<Finding> &findings) {
  const auto pairs = Facing(timeline).pairs();
  const std::set<std::uint32_t> unclear = links_of_two_with_one_id(timeline, pairs);
  // The packet that first showed it.
  std::map<std::pair<std::string, std::string>, PacketName> shown;
  for (const Event &event : events) {
    if (event.kind == EventKind::mismatch) {
      shown.try_emplace({event.where, event.why}, event.packet);
    }
  }
  for (const auto &[one, other] : pairs) {
    const ospf_decode::Interface &a = timeline.interfaces()[one];
    const ospf_decode::Interface &b = timeline.interfaces()[other];
    for (const Difference each : differences(timeline, one, other, timeline.now()).list()) {
      if (kind_of(each) == Kind::hello_one_way && unclear.contains(timeline.link_of(one))) continue;
      const MismatchEnd first{a.router_id, ospf_events::name_of(a), value_text(a, each)};
      const MismatchEnd second{b.router_id, ospf_events::name_of(b), value_text(b, each)};
      Finding found = mismatch(each, first, second);
      if (each == Difference::one_way && !a.listed_since.contains(b.router_id)) {
        found.what = mismatch(each, second, first).what;
      }
      found.version = a.version;
      found.instance = a.instance_id;
      found.area = a.area_id;
      for (const std::string &where :
           {found.where, ospf_events::name_of(b) + " - " + ospf_events::name_of(a)}) {
        const auto at = shown.find({where, ospf_events::name_of(each)});
        if (at != shown.end()) found.packets.push_back(at->second);
      }
      findings.push_back(std::move(found));
    }
  }
}

std::string lsa_name_of(const LsdbKey &key) {
  return lsa_name(key.version, key.type, key.link_state_id, key.advertising_router,
                  key.scope == ospf_decode::Scope::area ? std::optional(key.domain) : std::nullopt);
}

void find_flaps(const Timeline &timeline, std::vector<Finding> &findings) {
  for (const auto &[key, history] : timeline.histories()) {
    if (history.returns < flaps) continue;
    Finding found;
    found.severity = history.nothing_shared ? Severity::error : Severity::warning;
    found.kind = history.nothing_shared ? Kind::duplicate_router_id : Kind::flapping_lsa;
    found.version = key.version;
    found.instance = key.instance_id;
    if (key.scope == ospf_decode::Scope::area) found.area = key.domain;
    found.routers = {key.advertising_router};
    found.lsas = {lsa_name_of(key)};
    found.packets = history.packets;
    const auto seconds = (history.last - history.first) / ospf_decode::second;
    const std::string often =
        std::to_string(history.changes) + " times in " + std::to_string(seconds) + " s";
    if (history.nothing_shared) {
      found.where = ospf_decode::ipv4_text(key.advertising_router);
      found.what = "its router-LSA goes between contents that share no neighbour, " + often +
                   ": two routers have this ID";
    } else {
      found.where = found.lsas.front();
      found.what = "it comes and goes, or changes back and forth: " + often;
    }
    findings.push_back(std::move(found));
  }
}

void find_checksums(const std::vector<Event> &events, std::vector<Finding> &findings) {
  std::map<std::pair<std::string, std::string>, Finding> by_sender;
  std::map<const Finding *, std::size_t> counts;
  for (const Event &event : events) {
    if (event.kind != EventKind::bad_checksum) continue;
    Finding &found = by_sender[{event.where, event.why}];
    found.severity = Severity::warning;
    found.kind = Kind::wrong_checksum;
    found.version = event.version;
    found.instance = event.instance_id;
    found.area = event.area;
    found.routers = {event.routers.back()};
    found.where = event.where;
    const std::size_t count = ++counts[&found];
    found.what = std::to_string(count) + (event.why == "lsa" ? " LSA" : " packet") +
                 (count == 1 ? "" : "s") + " with a wrong checksum, which routers drop";
    if (event.lsa) {
      const std::string name = lsa_name_of(*event.lsa);
      if (std::ranges::find(found.lsas, name) == found.lsas.end()) found.lsas.push_back(name);
    }
    if (found.packets.size() < packets_shown) found.packets.push_back(event.packet);
  }
  for (auto &[sender, found] : by_sender) findings.push_back(std::move(found));
}

void find_storms(const std::vector<Event> &events, std::vector<Finding> &findings) {
  for (const Event &event : events) {
    if (event.kind != EventKind::max_age_storm) continue;
    Finding found;
    found.severity = Severity::notice;
    found.kind = Kind::max_age_storm;
    found.version = event.version;
    found.instance = event.instance_id;
    found.routers = event.routers;
    found.what = event.text;
    found.packets = {event.packet};
    findings.push_back(std::move(found));
  }
}

}  // namespace

std::vector<Finding> findings_of(const Timeline &timeline, const std::vector<Event> &events) {
  std::vector<Finding> findings;
  find_mismatches(timeline, events, findings);
  find_flaps(timeline, findings);
  find_checksums(events, findings);
  find_storms(events, findings);
  return findings;
}

}  // namespace ospf_findings
