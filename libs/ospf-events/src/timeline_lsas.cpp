// What becomes of LSAs, and what it shows: restarts, storms, and what is sent again.
#include <algorithm>

#include "ospf_decode/tlv.hpp"
#include "ospf_events/timeline.hpp"

namespace ospf_events {

using namespace ospf_decode;

namespace {

constexpr std::uint32_t last_sequence = 0x7fffffff;

// Routers count ages each for itself, with a second more for each hop.
constexpr std::uint16_t expiry_slack = 30;
constexpr char not_refreshed[] = "not refreshed for an hour";

// So many LSAs flushed with no more than this between two of them are a storm.
constexpr std::size_t storm_size = 10;
constexpr Time storm_gap = second;

constexpr std::size_t contents_kept = 8;
constexpr std::size_t packets_kept = 8;

// Of an LSA without its age, sequence number and checksum; never 0.
std::uint64_t content_of(Bytes raw, std::uint8_t version) {
  std::uint64_t hash = 0xcbf29ce484222325;
  const auto add = [&](std::uint8_t octet) { hash = (hash ^ octet) * 0x100000001b3; };
  if (version == 2 && raw.size() > 2) add(raw[2]);
  for (std::size_t at = lsa_header_length; at < raw.size(); ++at) add(raw[at]);
  return hash | 1;
}

std::string plural(std::size_t count, const char *one, const char *many) {
  return std::to_string(count) + " " + (count == 1 ? one : many);
}

bool is_router_lsa(std::uint8_t version, std::uint16_t type) {
  return type == (version == 2 ? std::uint16_t{lsa2_router} : std::uint16_t{lsa3_router});
}

bool is_grace_lsa(const LsdbKey &key) {
  return key.version == 2 ? key.type == lsa2_opaque_link && key.link_state_id >> 24 == opaque_grace
                          : key.type == lsa3_grace;
}

bool is_older(std::uint32_t sequence, std::uint32_t than) {
  return static_cast<std::int32_t>(sequence) < static_cast<std::int32_t>(than);
}

}  // namespace

void Timeline::aged_out(const Expiry &expiry) {
  const LsdbEntry *entry = lsdb().find(expiry.key);
  // Another instance may have come, whose age ends later.
  if (entry == nullptr || entry->flushed || !entry->gone_at(expiry.time) ||
      entry->received + (max_age - std::min(entry->header.age_seconds(), max_age)) * second !=
          expiry.time) {
    return;
  }
  tell_gone(*entry, expiry.time, not_refreshed);
}

// Routers may drop these without a word.
void Timeline::end_graces(Time now) {
  std::erase_if(graces_, [&](const LsdbKey &key) {
    const LsdbEntry *entry = lsdb().find(key);
    if (entry == nullptr || entry->gone_at(now)) return true;
    if (!grace_over(*entry, now)) return false;
    tell_gone(*entry, now, "the restart that it was for is over");
    return true;
  });
}

void Timeline::tell_gone(const LsdbEntry &entry, Time when, const char *why) {
  Event event;
  event.time = when;
  event.kind = EventKind::lsa_aged_out;
  event.version = entry.key.version;
  event.instance_id = entry.key.instance_id;
  if (entry.key.scope == Scope::area) event.area = entry.key.domain;
  if (entry.key.scope == Scope::link) {
    for (const Interface &of : interfaces()) {
      if (of.router_id == entry.key.advertising_router && of.version == entry.key.version) {
        event.area = of.area_id;
      }
    }
  }
  event.routers = {entry.key.advertising_router};
  event.lsa = entry.key;
  event.sequence = entry.header.sequence;
  event.text = why;
  tell(event);
}

void Timeline::see_restart(const Packet &packet, const LsaHeader &own) {
  if (!is_router_lsa(packet.version, own.type) || own.advertising_router != packet.router_id)
    return;
  LsdbKey key;
  key.version = packet.version;
  key.instance_id = packet.instance_id;
  key.scope = Scope::area;
  key.type = own.type;
  key.domain = packet.area_id;
  key.link_state_id = own.link_state_id;
  key.advertising_router = own.advertising_router;
  const LsdbEntry *held = lsdb().find(key);
  const Time now = packet.datagram.time;
  if (held == nullptr || held->gone_at(now) || !is_older(own.sequence, held->header.sequence)) {
    return;
  }
  // A description may be of a moment ago, when there was no newer one yet.
  constexpr Time slack = 2 * second;
  const Time made = now - own.age_seconds() * second;
  if (made <= held->received - held->header.age_seconds() * second + slack) return;
  const Interface &of = interfaces()[sending_interface()];
  const auto last = restarted_.find(packet.router_id);
  const Time quiet = 4 * std::max<Time>(of.hello.dead_interval, 1) * second;
  const bool told = last != restarted_.end() && now - last->second < quiet;
  restarted_[packet.router_id] = now;
  if (told) return;
  Event restart = event_of(EventKind::restart, packet, key, own);
  restart.where = ospf_events::name_of(of);
  restart.text = "its router-LSA begins anew, behind that which the others have";
  tell(restart);
}

void Timeline::bad_lsa(const Packet &packet, const LsaHeader &header) {
  LsdbKey key;
  key.version = packet.version;
  key.instance_id = packet.instance_id;
  key.scope = scope_of(packet.version, header.type).value_or(Scope::area);
  key.type = header.type;
  key.domain = key.scope == Scope::area ? packet.area_id : 0;
  key.link_state_id = header.link_state_id;
  key.advertising_router = header.advertising_router;
  Event bad = event_of(EventKind::bad_checksum, packet, key, header);
  bad.routers.push_back(packet.router_id);
  bad.where = ipv4_text(packet.router_id) + "@" + ip_text(packet.datagram.source);
  bad.why = "lsa";
  bad.text = "the checksum of the LSA is wrong; routers drop it";
  tell(bad);
}

void Timeline::on_lsa_v2(const Packet &packet, const LsaV2 &lsa) {
  if (!lsa.checksum_ok) bad_lsa(packet, lsa.header);
  before_.neighbors.clear();
  for (const RouterLinkV2 &link : lsa.router.links) {
    if (link.type != router_link_stub) before_.neighbors.insert(link.link_id);
  }
  Network::on_lsa_v2(packet, lsa);
}

void Timeline::on_lsa_v3(const Packet &packet, const LsaV3 &lsa) {
  if (!lsa.checksum_ok) bad_lsa(packet, lsa.header);
  before_.neighbors.clear();
  for (const RouterLinkV3 &link : lsa.router.links) {
    before_.neighbors.insert(link.neighbor_router_id);
  }
  Network::on_lsa_v3(packet, lsa);
}

void Timeline::on_offer(const Packet &packet, const LsdbKey &key, const LsaHeader &header,
                        Bytes raw) {
  const LsdbEntry *held = lsdb().find(key);
  const bool is_there = held != nullptr && !held->gone_at(packet.datagram.time);
  before_.held = is_there;
  before_.sequence = held == nullptr ? 0 : held->header.sequence;
  before_.age = is_there ? held->age_at(packet.datagram.time) : std::uint16_t{0};
  before_.content = content_of(raw, key.version);
  before_.same_content = is_there && before_.content == content_of(Bytes(held->raw), key.version);
  before_.was_requested =
      is_requested({header.type, header.link_state_id, header.advertising_router});
}

void Timeline::on_offered(const Packet &packet, const LsdbKey &key, const LsaHeader &header,
                          Lsdb::Outcome outcome) {
  see_sending(packet, key, header, outcome == Lsdb::Outcome::duplicate);
  switch (outcome) {
    case Lsdb::Outcome::duplicate:
      return;
    case Lsdb::Outcome::older:
      see_restart(packet, header);
      return;
    case Lsdb::Outcome::flushed: {
      if (!before_.held) return;
      // Whoever has it tells the others when its age ends; its router would have flushed it
      // earlier.
      const bool by_age = before_.age + expiry_slack >= max_age;
      Event flush =
          event_of(by_age ? EventKind::lsa_aged_out : EventKind::lsa_flushed, packet, key, header);
      if (by_age) flush.text = not_refreshed;
      tell(flush);
      see_flush(flush);
      remember(packet, key, 0);
      return;
    }
    case Lsdb::Outcome::installed:
    case Lsdb::Outcome::replaced:
      break;
  }
  if (!header.do_not_age()) {
    expiries_.push(
        {packet.datagram.time + (max_age - std::min(header.age_seconds(), max_age)) * second, key});
  }
  const EventKind kind = !before_.held          ? EventKind::lsa_new
                         : before_.same_content ? EventKind::lsa_refreshed
                                                : EventKind::lsa_changed;
  tell(event_of(kind, packet, key, header));
  if (before_.sequence == last_sequence) {
    Event wrap = event_of(EventKind::sequence_wrap, packet, key, header);
    wrap.text = "its sequence numbers begin anew, behind the last one";
    tell(wrap);
  }
  if (kind != EventKind::lsa_refreshed) {
    if (is_grace_lsa(key)) {
      Event grace = event_of(EventKind::graceful_restart, packet, key, header);
      grace.text = "it asks its neighbours to wait while it restarts";
      tell(grace);
      graces_.push_back(key);
    } else if (is_router_lsa(key.version, key.type)) {
      end_graces(packet.datagram.time);
    }
    remember(packet, key, before_.content);
  }
}

void Timeline::see_flush(const Event &flush) {
  end_storm_before(flush.time);
  storm_.push_back(flush);
}

void Timeline::end_storm_before(Time now) {
  if (!storm_.empty() && storm_.back().time + storm_gap < now) end_storm();
}

void Timeline::end_storm() {
  const std::vector<Event> flushed = std::move(storm_);
  storm_.clear();
  if (flushed.size() < storm_size) return;
  Event storm = flushed.front();
  storm.kind = EventKind::max_age_storm;
  storm.lsa.reset();
  storm.area.reset();
  storm.sequence = 0;
  std::set<std::uint32_t> routers;
  for (const Event &each : flushed) routers.insert(each.routers.begin(), each.routers.end());
  storm.routers.assign(routers.begin(), routers.end());
  storm.text = plural(flushed.size(), "LSA", "LSAs") + " of " +
               plural(routers.size(), "router", "routers") + " flushed within " +
               std::to_string((flushed.back().time - flushed.front().time) / (second / 1000)) +
               " ms";
  tell(storm);
}

// What one packet sends again is one event.
void Timeline::end_packet() {
  if (sent_again_.empty()) return;
  Event event = std::move(sent_again_.front());
  const std::size_t others = sent_again_.size() - 1;
  sent_again_.clear();
  event.text = "sent again";
  if (others != 0) event.text += " with " + plural(others, "other", "others");
  tell(event);
}

void Timeline::see_sending(const Packet &packet, const LsdbKey &key, const LsaHeader &header,
                           bool is_duplicate) {
  std::uint64_t hash = 0xcbf29ce484222325;
  for (const std::uint64_t part :
       {std::uint64_t{sending_interface()}, std::uint64_t{key.domain},
        std::uint64_t{key.type} << 8 | key.version, std::uint64_t{key.link_state_id},
        std::uint64_t{key.advertising_router}}) {
    hash = (hash ^ part) * 0x9e3779b97f4a7c15;
    hash ^= hash >> 29;
  }
  // What a capture has twice was sent once.
  constexpr Time shortest = second / 5;
  Sent &sent = sent_[hash];
  const IpAddress &to = packet.datagram.destination;
  const Time now = packet.datagram.time;
  const bool again = sent.sequence == header.sequence && sent.checksum == header.checksum &&
                     (sent.to.is_multicast() || sent.to == to);
  if (again && is_duplicate && !before_.was_requested && now - sent.time >= shortest) {
    Event event = event_of(EventKind::retransmission, packet, key, header);
    event.routers = {packet.router_id};
    event.where = ospf_events::name_of(interfaces()[sending_interface()]) + " - " + ip_text(to);
    sent_again_.push_back(std::move(event));
  }
  sent = {header.sequence, header.checksum, to, now};
}

void Timeline::remember(const Packet &packet, const LsdbKey &key, std::uint64_t content) {
  LsaHistory &history = histories_[key];
  const std::vector<std::uint64_t> &known = history.contents;
  const bool returned =
      known.size() > 1 && std::find(known.begin(), known.end() - 1, content) != known.end() - 1;
  if (history.changes++ == 0) history.first = packet.datagram.time;
  history.last = packet.datagram.time;
  if (history.packets.size() < packets_kept) {
    history.packets.push_back({capture(), packet.datagram.number});
  }
  if (is_router_lsa(key.version, key.type) && content != 0) {
    std::set<std::uint32_t> &last = router_links_[key];
    if (returned) {
      const bool shares = std::ranges::any_of(
          last, [&](std::uint32_t each) { return before_.neighbors.contains(each); });
      history.nothing_shared = !shares && !last.empty() && !before_.neighbors.empty();
    }
    last = before_.neighbors;
  }
  if (returned) ++history.returns;
  history.contents.push_back(content);
  if (history.contents.size() > contents_kept) history.contents.erase(history.contents.begin());
}

}  // namespace ospf_events
